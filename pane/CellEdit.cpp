#include "pane/CellEdit.h"

#include "platform/grid/Grid.h"

#include <QLineEdit>

namespace qir {

void CellEdit::begin(int row, int column) {
    m_row = row;
    m_column = column;
    ++m_number;
}

void CellEdit::end() {
    for (const Editor &editor : m_editors) {
        // Also while another window is active: a hidden control would get the keys when this one is again.
        if (editor.txtEdit->window()->focusWidget() == editor.txtEdit)
            editor.grid->setFocus(Qt::OtherFocusReason);
        editor.txtEdit->hide();
        editor.grid->setUserResizing(true);
    }
    m_row = -1;
    m_column = -1;
}

} // namespace qir
