#include "app/SaveCommands.h"

#include "app/desktop/NewDatabase.h"
#include "app/desktop/OpenFiles.h"
#include "app/desktop/OutsideChanges.h"
#include "app/shared/Funzioni.h"
#include "app/shared/utility.h"
#include "base/words/StorageWords.h"
#include "db/ChosenPlaces.h"
#include "pane/ActivePane.h"
#include "platform/dialogs/Dialogs.h"

#include <exception>
#include <new>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

bool hasSomethingToWrite(const QirDatabase &database) {
    try {
        return database.DtbHasChanged();
    } catch (const std::exception &) { // the save tells of it
        return true;
    }
}

} // namespace

void SaveCommands::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::SaveMenu, tr("&Save"), [this] { SaveMenu_Click(); },
                 {.shortcut = QKeySequence(Qt::CTRL | Qt::Key_S), .needs = Needs::Database});
    commands.add(Command::SaveAsMenu, tr("Save &As..."), [this] { SaveAsMenu_Click(); },
                 {.shortcut = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), .needs = Needs::Database});
}

void SaveCommands::SaveMenu_Click() {
    const QirDatabase &database = m_editor.OggettoDtb(m_editor.IndexAttivo());
    const bool writes = hasSomethingToWrite(database);
    try {
        database.SaveDtb();
    } catch (const std::bad_alloc &) {
        throw;
    } catch (const std::exception &error) {
        // Whatever keeps it from its file, another name may do.
        if (messageBoxOffering(m_editor.controls().window, spokenWords(error), applicationTitle(), tr("Save &As...")))
            SaveAsMenu_Click();
        return;
    }
    database.setDtbHasChanged(false);
    if (!writes) { // what stands there may be another program's
        tellOfOtherPane();
        return;
    }
    saved(m_editor.IndexAttivo());
    m_editor.status().showMessage({}); // that nothing was saved a moment ago
}

/// What was carried across is changed in the other pane than the one with the keyboard.
void SaveCommands::tellOfOtherPane() {
    const int other = 1 - m_editor.IndexAttivo();
    if (m_editor.DtbAperto(other) && hasSomethingToWrite(m_editor.OggettoDtb(other)))
        m_editor.status().showMessage(tr("Nothing was saved: it is the other pane that has changed. F6, then Ctrl+S."));
}

void SaveCommands::SaveAsMenu_Click() {
    const int pane = m_editor.IndexAttivo();
    QString name;
    bool chosen = false;
    SalvaSecco(name, chosen);
    if (!chosen)
        return;
    QWidget *window = m_editor.controls().window;
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    if (!canTakeName(window, database, name))
        return;
    m_editor.pane(pane).fileChosen(name); // before the component has accepted it
    if (!takeName(window, database, name))
        return;
    writeAll(database);
    m_editor.pane(pane).showFileName(name);
    m_remembered.noteChosen(placeOf(name).value_or(name), protectionOf(name));
    saved(pane);
}

void SaveCommands::saved(int pane) {
    m_changes.follow(pane); // at once: what another program writes before counts as ours
    rememberOpenFile(m_remembered, m_editor, pane);
}

void SaveCommands::SalvaSecco(QString &fileName, bool &chosen) {
    const PercorsoDiviso parts = DividiPercorso(fileName);
    fileName =
        MostraDialogoFile(m_editor.controls().window, FileDialogAction::Save, tr("File DDB,WDB,UDB,SDB,IDB"),
                          parts.extension, m_remembered.folder(), QString(), databaseFileFilter(), m_remembered.kind());
    chosen = !fileName.isEmpty();
}

} // namespace qir
