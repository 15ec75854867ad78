#include "app/CloseCommands.h"

#include "app/Layout.h"
#include "app/shared/Funzioni.h"
#include "base/words/StorageWords.h"
#include "compare/CellDifferences.h"
#include "compare/TableListAlignment.h"
#include "pane/ActivePane.h"

#include "platform/dialogs/Dialogs.h"

#include <QLabel>

#include <exception>

namespace qir {

void CloseCommands::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::CloseDatabaseMenu, tr("&Close"), [this] { CloseDatabaseMenu_Click(); },
                 {.shortcut = QKeySequence(Qt::CTRL | Qt::Key_W), .needs = Needs::Database});
}

void CloseCommands::askAndRelease(int pane) {
    if (!ChiediSalvataggio(m_editor.controls().window, m_editor.OggettoDtb(pane)))
        m_editor.OggettoDtb(pane).setDtbHasChanged(false);
    m_editor.pane(pane).release();
}

void CloseCommands::showReleased(int pane) {
    AbilitaMenu(m_editor, pane);
    RicalcolaSistemazioneForm(m_editor);
    if (pane == m_editor.IndexAttivo()) // the keyboard stays in this pane
        m_editor.pane(pane).controls().hint->setFocus();
    m_alignment.MostraTabelleDiverseInLista();
    m_differences.EvidenziaDifferenzeTabella(SelectionRule::Ignore);
}

void CloseCommands::CloseDatabaseMenu_Click() {
    const int pane = m_editor.IndexAttivo();
    askAndRelease(pane);
    showReleased(pane);
}

bool CloseCommands::Form_QueryUnload() {
    for (const int pane : {0, 1}) {
        try {
            askAndRelease(pane);
        } catch (const std::exception &error) {
            messageBox(m_editor.controls().window, spokenWords(error), applicationTitle());
            if (pane == 1)
                showReleased(0);
            AbilitaMenu(m_editor, m_editor.IndexAttivo());
            return false;
        }
    }
    return true;
}

} // namespace qir
