#include "pane/EditorContext.h"

#include "base/Collation.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"

#include <QAction>

namespace qir {

const CellTexts &EditorContext::TestiCelle(int number) const {
    return Tabella(number).texts();
}

const CellColours &EditorContext::ColoriCelle(int number) const {
    return Tabella(number).colours();
}

bool EditorContext::twoPanes() const {
    return m_controls.action(Command::TwoMenu).isChecked();
}

bool EditorContext::panesShowSameTable() const {
    const int left = ListaTabelle(0).ListIndex();
    if (!DtbAperto(0) || !DtbAperto(1) || left < 0 || left != ListaTabelle(1).ListIndex())
        return false;
    return collationKey(ListaTabelle(0).List(left)) == collationKey(ListaTabelle(1).List(left));
}

bool EditorContext::gridsShowSameTable() const {
    return panesShowSameTable() && collationKey(pane(0).TabellaMostrata()) == collationKey(pane(1).TabellaMostrata());
}

} // namespace qir
