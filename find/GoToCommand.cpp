#include "find/GoToCommand.h"

#include "base/Collation.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/grid/Grid.h"
#include "view/AreaClipboard.h"
#include "view/GridAlignment.h"

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

void GoToCommand::addCommands() {
    m_editor.commands().add(Command::GoToMenu, tr("&Go To..."), [this] { GoToMenu_Click(); },
                            {.shortcut = QKeySequence(Qt::CTRL | Qt::Key_G), .needs = Needs::Database});
}

int GoToCommand::recordOf(const QString &text, int pane) const {
    bool whole = false;
    const int record = text.trimmed().toInt(&whole);
    return whole && record >= 1 && record < m_editor.Tabella(pane).Rows() ? record : 0;
}

int GoToCommand::columnOf(const QString &name, int pane) const {
    const Grid &grid = m_editor.Tabella(pane);
    const QString key = collationKey(name);
    for (int column = 1; !key.isEmpty() && column < grid.Cols(); ++column) {
        if (collationKey(m_editor.OggettoDtb(pane).QIRTableFieldName(grid.ColData(column))) == key)
            return column;
    }
    return 0;
}

void GoToCommand::GoToMenu_Click() {
    const int pane = m_editor.IndexAttivo();
    if (!showsFields(m_editor, pane))
        return;
    const QString asked = inputBox(m_editor.controls().window, tr("Record, field, or record, field"), u"?"_s).trimmed();
    if (asked.isEmpty())
        return;
    m_editor.pane(pane).makeShownTableCurrent();
    Grid &grid = m_editor.Tabella(pane);
    int row = recordOf(asked, pane);
    int column = row > 0 ? std::max(grid.Col(), 1) : columnOf(asked, pane);
    if (const qsizetype comma = asked.indexOf(u','); row == 0 && column == 0 && comma > 0) {
        row = recordOf(asked.left(comma), pane);
        column = row > 0 ? columnOf(asked.mid(comma + 1), pane) : 0;
    } else if (row == 0 && column > 0) {
        row = std::max(grid.Row(), 1);
    }
    if (row == 0 || column == 0) {
        messageBox(m_editor.controls().window,
                   tr("There is no '%1' in this table of %2 records").arg(asked).arg(grid.Rows() - 1), u"!"_s);
        return;
    }
    m_editor.endEdit();
    grid.setSelection(singleCell(row, column));
    grid.bringCellIntoView();
    AllineaTopLeftTabelle(m_editor, pane);
    grid.setFocus(Qt::OtherFocusReason);
}

} // namespace qir
