#include "app/CloseCommands.h"

#include "app/Layout.h"
#include "app/shared/ActivePane.h"
#include "app/shared/Funzioni.h"
#include "app/shared/PaneTable.h"
#include "base/ErrorWords.h"
#include "compare/CellDifferences.h"
#include "compare/TableListAlignment.h"
#include "platform/dialogs/Dialogs.h"

#include <QLabel>

#include <exception>

namespace qir {

void CloseCommands::askAndRelease(int pane) {
    if (!ChiediSalvataggio(m_editor.controls.window, m_editor.OggettoDtb(pane)))
        m_editor.OggettoDtb(pane).setDtbHasChanged(false);
    releaseComponent(m_editor, pane);
}

void CloseCommands::CloseDatabaseMenu_Click() {
    const int pane = m_editor.state.IndexAttivo;
    askAndRelease(pane);
    AbilitaMenu(m_editor, pane);
    RicalcolaSistemazioneForm(m_editor);
    m_editor.controls.pane[static_cast<std::size_t>(pane)].hint->setFocus(); // the keyboard stays in this pane
    m_alignment.MostraTabelleDiverseInLista();
    m_differences.EvidenziaDifferenzeTabella(SelectionRule::Ignore);
}

void CloseCommands::Form_QueryUnload() {
    for (const int pane : {0, 1}) {
        // The window closes whatever happens: an error of one component must not keep the other one from being asked
        // about, and there is no command's end left to show it.
        try {
            askAndRelease(pane);
        } catch (const std::exception &error) {
            messageBox(m_editor.controls.window, errorWords(error), applicationTitle());
        }
    }
}

} // namespace qir
