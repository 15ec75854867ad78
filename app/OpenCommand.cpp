#include "app/OpenCommand.h"

#include "app/Controls.h"
#include "app/Layout.h"
#include "app/Notices.h"
#include "app/UnlockWait.h"
#include "app/desktop/OpenFiles.h"
#include "app/desktop/OutsideChanges.h"
#include "app/desktop/ShownPlace.h"
#include "app/shared/Funzioni.h"
#include "app/shared/utility.h"
#include "base/FileNames.h"
#include "base/UndoOnError.h"
#include "base/words/StorageWords.h"
#include "compare/CellDifferences.h"
#include "compare/TableListAlignment.h"
#include "db/ChosenPlaces.h"
#include "pane/ActivePane.h"

#include "platform/dialogs/Dialogs.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"
#include "view/TableLoader.h"

#include <QAction>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>

#include <optional>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// What a tool that compares two versions names for a side where there is none.
bool hasNothing(const QString &name) {
    const QFileInfo file(placeOf(name).value_or(name));
    return file.isFile() ? file.size() == 0 : file == QFileInfo(u"/dev/null"_s);
}

} // namespace

void OpenCommand::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::OpenDatabase, tr("&Open..."), [this] { OpenDatabase_Click(); },
                 {.shortcut = QKeySequence(Qt::CTRL | Qt::Key_O)});
}

StartResult OpenCommand::Form_Load(const QString &commandLine) {
    m_editor.txtEdit(0).hide();
    activatePane(m_editor, 0);
    QString name = commandLine;
    if (!name.isEmpty()) {
        SostituisciTesto(name, u"'"_s, QString());
        SostituisciTesto(name, u"\""_s, QString());
    }
    if (EsisteFile(name))
        m_editor.pane(0).fileChosen(name);
    if (m_editor.NomeFileDtb(0).isEmpty()) {
        activatePane(m_editor, -1);
        // A name that may mean two files is no name of a missing one: that would be ignored.
        if (const Result<QString> reached = reachIgnoringCase(name); !reached)
            messageBox(m_editor.controls().window, u"'%1': %2"_s.arg(name, spokenWords(reached.error().text)), u"!"_s);
        return StartResult::NothingToOpen;
    }
    if (!loadComponent(0)) {
        showLoadFailure(0);
        return StartResult::CannotLoad;
    }
    undoneOnError(
        [this] {
            const RefillScope refill(m_editor.listClicks());
            CaricaListaTabelle(m_editor.OggettoDtb(0), m_editor.ListaTabelle(0));
        },
        [this] { giveUp(0); });
    m_editor.pane(0).componentLoaded();
    m_tables.CaricaTabellaDaLista(0);
    ListBox &list = m_editor.ListaTabelle(0);
    if (list.ListIndex() < 0 && list.ListCount() > 0)
        list.setListIndex(0);
    AbilitaMenu(m_editor, 0);
    RicalcolaSistemazioneForm(m_editor);
    m_editor.ListaTabelle(0).setFocus();
    opened(0);
    return StartResult::Opened;
}

void OpenCommand::OpenDatabase_Click() {
    openChosen([this](QString &name, bool &chosen) { CaricaSecco(name, chosen); });
}

bool OpenCommand::isThere(const QString &path) {
    if (QFileInfo::exists(path))
        return true;
    QWidget *window = m_editor.controls().window;
    // Its disk may come back.
    const bool isKept = m_remembered.files().contains(path);
    if (!isKept)
        messageBox(window, tr("'%1' was not found").arg(path), u"!"_s);
    else if (askYesNo(window, tr("'%1' was not found.\r\nTake it off the recent files?").arg(path), u"!"_s) ==
             Answer::Yes)
        m_remembered.dropFile(path);
    return false;
}

bool OpenCommand::openFile(int pane, const QString &path) {
    if (!isThere(path))
        return false;
    activatePane(m_editor, pane);
    const StartResult result = openChosen([&](QString &name, bool &chosen) {
        name = nomeScelto(path);
        chosen = isReached(name);
    });
    return result == StartResult::Opened;
}

bool OpenCommand::makeWay(int pane, const QString &path) {
    if (!m_editor.DtbAperto(pane))
        return true;
    if (!isThere(path))
        return false;
    const QString name = nomeScelto(path);
    std::optional<InputBoxWipe> wipe;
    const UndoOnError forget([this] { m_tried.reset(); });
    if (!isReached(name) || !isLoadable(name, wipe))
        return false;
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    if (!database.DtbHasChanged())
        return true;
    const QString text =
        tr("Database '%1' has changes that are not saved.\r\nSave them before another file takes its place?")
            .arg(m_editor.nomelab(pane).text());
    switch (askYesNoCancel(m_editor.controls().window, text, applicationTitle())) {
    case Answer::Yes:
        database.SaveDtb();
        database.setDtbHasChanged(false);
        opened(pane); // what stands on disk now is ours
        return true;
    case Answer::No:
        if (!isThere(path)) // while the question stood
            break;
        database.setDtbHasChanged(false);
        return true;
    default:
        break;
    }
    m_tried.reset();
    return false;
}

StartResult OpenCommand::openLeft(const QString &name) {
    Form_Load(QString());
    if (hasNothing(name)) {
        tellNothing(0, name);
        return StartResult::NothingToOpen;
    }
    return openChosen([&](QString &fileName, bool &chosen) {
        fileName = name;
        chosen = true;
    });
}

StartResult OpenCommand::openRight(const QString &name) {
    if (hasNothing(name)) {
        tellNothing(1, name);
        return StartResult::NothingToOpen;
    }
    activatePane(m_editor, 1);
    const StartResult result = openChosen([&](QString &fileName, bool &chosen) {
        fileName = name;
        chosen = true;
    });
    if (!m_editor.DtbAperto(0)) // nothing could be done there
        return result;
    activatePane(m_editor, 0);
    m_editor.ListaTabelle(0).setFocus();
    return result;
}

void OpenCommand::tellNothing(int pane, const QString &name) {
    showHint(m_editor, pane, tr("This side has nothing: '%1' is empty.").arg(name));
}

bool OpenCommand::reload(int pane, const QString &name) {
    QWidget *window = m_editor.controls().window;
    if (m_editor.OggettoDtb(pane).DtbHasChanged() &&
        askYesNo(window, tr("Database '%1' has changes that are not saved.\r\nReload it and drop them?").arg(name),
                 applicationTitle()) != Answer::Yes)
        return false;
    rememberPlace(name, openFilePath(m_editor, pane)); // another file may have been chosen by this name since
    std::optional<InputBoxWipe> wipe;
    const UndoOnError forget([this] { m_tried.reset(); });
    if (!isLoadable(name, wipe))
        return false;
    const ShownPlace shown(m_editor, pane);
    m_editor.OggettoDtb(pane).setDtbHasChanged(false);
    activatePane(m_editor, pane);
    const StartResult result = openChosen([&](QString &fileName, bool &chosen) {
        fileName = name;
        chosen = true;
    });
    if (result == StartResult::Opened)
        shown.showAgain();
    return result == StartResult::Opened;
}

SecretText OpenCommand::askPassword(std::optional<InputBoxWipe> &wipe, const QirDatabase &database, const QString &name,
                                    const SecretText &mistyped) {
    if (!wipe)
        wipe.emplace();
    return SecretText(inputBox(m_editor.controls().window, tr("Password:"), tr("Input password"), mistyped.text(),
                               spokenWords(database.PasswordNote(name))));
}

bool OpenCommand::isLoadable(const QString &name, std::optional<InputBoxWipe> &wipe) {
    const bool isProtected = DatabaseProtetto(name);
    SecretText password;
    do {
        const QirDatabase trial = QirDatabase::create();
        trial.setLeaveJournal(true);
        tellPlace(trial, name);
        if (isProtected)
            password = askPassword(wipe, trial, name, password);
        if (!unlockWithoutStandingStill(m_editor.controls().window, trial, name, password.text()))
            password.wipe();
        if (trial.LoadDtb(name, password.text())) {
            m_tried = std::move(password);
            return true;
        }
        messageBox(m_editor.controls().window, tr("Can't load '%1'").arg(name), u"!!"_s,
                   spokenWords(trial.LastError()));
    } while (!password.text().isEmpty()); // one that was mistyped is there to be mended, until a cancel
    return false;
}

void OpenCommand::opened(int pane) {
    rememberOpenFile(m_remembered, m_editor, pane);
    m_changes.follow(pane);
}

StartResult OpenCommand::openChosen(const Choice &choose) {
    const OpeningScope opening(m_editor.listClicks());
    if (m_editor.IndexAttivo() == -1)
        activatePane(m_editor, 0);
    const int pane = m_editor.IndexAttivo();
    if (m_editor.NomeFileDtb(pane).isEmpty()) {
        if (!ChiediSalvataggio(m_editor.controls().window, m_editor.OggettoDtb(pane)))
            m_editor.OggettoDtb(pane).setDtbHasChanged(false);
        m_editor.pane(pane).release();
        AbilitaMenu(m_editor, pane);
    }
    QString name;
    bool chosen = false;
    choose(name, chosen);
    if (!chosen)
        return StartResult::NothingToOpen;
    m_editor.pane(pane).fileChosen(name);
    m_editor.controls().action(Command::ChangePassword).setEnabled(true);
    m_editor.pane(pane).showFileName(name);
    if (!loadComponent(pane)) {
        showLoadFailure(pane);
        m_alignment.MostraTabelleDiverseInLista();
        return StartResult::CannotLoad;
    }
    showOpenedTables();
    return StartResult::Opened;
}

void OpenCommand::CaricaSecco(QString &fileName, bool &chosen) {
    fileName = MostraDialogoFile(m_editor.controls().window, FileDialogAction::Open, tr("File DDB,WDB,UDB,SDB,IDB"),
                                 u"DDB"_s, m_remembered.folder(), QString(), databaseFileFilter(), m_remembered.kind());
    chosen = !fileName.isEmpty() && isReached(fileName);
    if (chosen)
        m_remembered.noteChosen(placeOf(fileName).value_or(fileName), protectionOf(fileName));
}

bool OpenCommand::isReached(const QString &name) {
    if (leadsThere(name))
        return true;
    const QString reason = misleading(QirDatabase::create(), name);
    if (!reason.isEmpty())
        messageBox(m_editor.controls().window, spokenWords(reason), u"!"_s);
    return reason.isEmpty();
}

void OpenCommand::createComponent(int pane) {
    m_editor.pane(pane).takeComponent(QirDatabase::create());
    m_notices.listenTo(m_editor.OggettoDtb(pane));
    tellPlace(m_editor.OggettoDtb(pane), m_editor.NomeFileDtb(pane));
}

bool OpenCommand::loadComponent(int pane) {
    return undoneOnError([&] { return loadFreshComponent(pane); }, [&] { giveUp(pane); });
}

void OpenCommand::giveUp(int pane) {
    // The old database is gone already: menus and lists must not offer it any more.
    m_editor.pane(pane).release();
    AbilitaMenu(m_editor, pane);
    m_alignment.MostraTabelleDiverseInLista();
}

bool OpenCommand::loadFreshComponent(int pane) {
    const QString name = m_editor.NomeFileDtb(pane);
    m_editor.pane(pane).showFileName(name);
    m_editor.nomelab(pane).show(); // a password is asked for below
    showHint(m_editor, pane, QString());
    // The old component goes before the next load: both could hold the same file.
    m_editor.pane(pane).release();
    m_differences.becomeDue(); // the other grid is left alone, for good if the load fails
    createComponent(pane);
    std::optional<InputBoxWipe> wipe;
    SecretText password;
    if (m_tried) {
        wipe.emplace();
        password = std::move(*m_tried);
        m_tried.reset();
    } else if (DatabaseProtetto(name)) {
        password = askPassword(wipe, m_editor.OggettoDtb(pane), name, {});
    }
    // The component that was made before the question is replaced by a fresh one.
    m_editor.pane(pane).releaseDatabase();
    createComponent(pane);
    m_changes.expectLoad(pane);
    if (!unlockWithoutStandingStill(m_editor.controls().window, m_editor.OggettoDtb(pane), name, password.text()))
        password.wipe(); // as after a cancel of the question
    return m_editor.OggettoDtb(pane).LoadDtb(name, password.text());
}

QString OpenCommand::loadFailure(int pane) const {
    try {
        return spokenWords(m_editor.OggettoDtb(pane).LastError());
    } catch (const std::exception &error) {
        return spokenWords(error); // must not take the place of the failed load itself
    }
}

void OpenCommand::showLoadFailure(int pane) {
    AbilitaMenu(m_editor, pane);
    RicalcolaSistemazioneForm(m_editor);
    const QString reason = loadFailure(pane);
    showHint(m_editor, pane, reason);
    messageBox(m_editor.controls().window, tr("Can't load '%1'").arg(m_editor.NomeFileDtb(pane)), u"!!"_s, reason);
}

void OpenCommand::showOpenedTables() {
    const int pane = m_editor.IndexAttivo();
    const int other = 1 - pane;
    m_editor.pane(pane).componentLoaded();
    AbilitaMenu(m_editor, pane);
    RicalcolaSistemazioneForm(m_editor);
    m_editor.ListaTabelle(pane).setFocus();
    opened(pane);
    m_alignment.MostraTabelleDiverseInLista();
    yieldToMessages();
    ListBox &list = m_editor.ListaTabelle(pane);
    if (list.ListCount() == 0)
        return;
    list.setListIndex(0);
    m_tables.RichiamaTabella(pane, u"ListaTabelle"_s);
    if (!m_editor.DtbAperto(other))
        return;
    ListBox &otherList = m_editor.ListaTabelle(other);
    if (otherList.ListIndex() != list.ListIndex()) {
        otherList.setListIndex(list.ListIndex());
        otherList.setTopIndex(list.TopIndex());
        m_tables.RichiamaTabella(other, u"ListaTabelle"_s);
        activatePane(m_editor, pane);
    } else if (m_editor.pane(other).realTableSelected()) {
        m_editor.pane(other).makeTableCurrent(m_editor.pane(other).selectedTableName());
    }
    m_differences.EvidenziaDifferenzeTabella();
}

} // namespace qir
