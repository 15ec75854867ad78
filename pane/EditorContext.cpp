#include "pane/EditorContext.h"

#include "platform/grid/Grid.h"

#include <QAction>

namespace qir {

const CellTexts &EditorContext::TestiCelle(int pane) const {
    return Tabella(pane).texts();
}

const CellColours &EditorContext::ColoriCelle(int pane) const {
    return Tabella(pane).colours();
}

bool EditorContext::twoPanes() const {
    return controls.action(Command::TwoMenu).isChecked();
}

} // namespace qir
