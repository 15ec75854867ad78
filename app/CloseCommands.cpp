#include "app/CloseCommands.h"

#include "app/shared/Funzioni.h"
#include "app/shared/PaneTable.h"

namespace qir {

void CloseCommands::askAndRelease(int pane) {
    if (!ChiediSalvataggio(m_editor.controls.window, m_editor.OggettoDtb(pane)))
        m_editor.OggettoDtb(pane).setDtbHasChanged(false);
    releaseComponent(m_editor, pane);
}

void CloseCommands::Form_QueryUnload() {
    for (const int pane : {0, 1})
        askAndRelease(pane);
}

} // namespace qir
