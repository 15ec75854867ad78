#include "app/OpenCommand.h"

#include "app/Controls.h"
#include "app/Layout.h"
#include "app/Notices.h"
#include "app/UnlockWait.h"
#include "app/shared/ActivePane.h"
#include "app/shared/ChosenPlaces.h"
#include "app/shared/Funzioni.h"
#include "app/shared/PaneTable.h"
#include "app/shared/utility.h"
#include "base/FileNames.h"
#include "base/FreedMemory.h"
#include "base/SecretText.h"
#include "compare/CellDifferences.h"
#include "compare/TableListAlignment.h"
#include "platform/controls/ListBox.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/loop/MessageLoop.h"
#include "view/TableView.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>

#include <optional>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// True while an open runs; goes back by itself however the open ends.
class OpeningScope {
public:
    explicit OpeningScope(EditorState &state)
        : m_state(state) {
        m_state.CaricamentoInCorso = true;
    }
    ~OpeningScope() { m_state.CaricamentoInCorso = false; }
    OpeningScope(const OpeningScope &) = delete;
    OpeningScope &operator=(const OpeningScope &) = delete;

private:
    EditorState &m_state;
};

} // namespace

StartResult OpenCommand::Form_Load(const QString &commandLine) {
    EditorState &state = m_editor.state;
    m_editor.txtEdit(0).hide();
    state.UltimoListIndex = {-1, -1};
    state.IndexAttivo = 0;
    QString name = commandLine;
    if (!name.isEmpty()) {
        SostituisciTesto(name, u"'"_s, QString());
        SostituisciTesto(name, u"\""_s, QString());
    }
    if (EsisteFile(name))
        m_editor.NomeFileDtb(0) = name;
    if (m_editor.NomeFileDtb(0).isEmpty()) {
        state.IndexAttivo = -1;
        SettaColoriIndexAttivo(m_editor);
        AbilitaMenu(m_editor, -1);
        // A name that may mean two files is no name of a missing one: that would be ignored.
        if (const Result<QString> reached = reachIgnoringCase(name); !reached)
            messageBox(m_editor.controls.window, u"'%1': %2"_s.arg(name, reached.error().text), u"!"_s);
        return StartResult::NothingToOpen;
    }
    SettaColoriIndexAttivo(m_editor);
    if (!loadComponent(0)) {
        showLoadFailure(0);
        return StartResult::CannotLoad;
    }
    try {
        const RefillScope refill(m_editor);
        CaricaListaTabelle(m_editor.OggettoDtb(0), m_editor.ListaTabelle(0));
    } catch (const std::exception &) {
        giveUp(0);
        throw;
    }
    m_editor.DtbAperto(0) = true;
    m_tables.CaricaTabellaDaLista(0);
    ListBox &list = m_editor.ListaTabelle(0);
    if (list.ListIndex() < 0 && list.ListCount() > 0)
        list.setListIndex(0);
    AbilitaMenu(m_editor, 0);
    RicalcolaSistemazioneForm(m_editor);
    m_editor.ListaTabelle(0).setFocus();
    return StartResult::Opened;
}

void OpenCommand::OpenDatabase_Click() {
    const OpeningScope opening(m_editor.state);
    if (m_editor.state.IndexAttivo == -1) {
        m_editor.state.IndexAttivo = 0;
        SettaColoriIndexAttivo(m_editor);
    }
    const int pane = m_editor.state.IndexAttivo;
    if (m_editor.NomeFileDtb(pane).isEmpty()) {
        if (!ChiediSalvataggio(m_editor.controls.window, m_editor.OggettoDtb(pane)))
            m_editor.OggettoDtb(pane).setDtbHasChanged(false);
        releaseComponent(m_editor, pane);
        AbilitaMenu(m_editor, pane);
    }
    QString name;
    bool chosen = false;
    CaricaSecco(name, chosen);
    if (!chosen)
        return;
    m_editor.NomeFileDtb(pane) = name;
    m_editor.controls.action(Command::ChangePassword).setEnabled(true);
    showFileName(m_editor, pane, name);
    if (loadComponent(pane)) {
        showOpenedTables();
    } else {
        showLoadFailure(pane);
        m_alignment.MostraTabelleDiverseInLista();
    }
}

void OpenCommand::CaricaSecco(QString &fileName, bool &chosen) {
    fileName = MostraDialogoFile(m_editor.controls.window, FileDialogAction::Open, u"File DDB,WDB,UDB,SDB,IDB"_s,
                                 u"DDB"_s, QString(), QString(), databaseFileFilter());
    chosen = !fileName.isEmpty();
    if (!chosen)
        return;
    if (leadsThere(fileName))
        return;
    if (const QString reason = misleading(QirDatabase::create(), fileName); !reason.isEmpty()) {
        messageBox(m_editor.controls.window, reason, u"!"_s);
        chosen = false;
    }
}

void OpenCommand::createComponent(int pane) {
    m_editor.OggettoDtb(pane) = QirDatabase::create();
    m_notices.listenTo(m_editor.OggettoDtb(pane));
    tellPlace(m_editor.OggettoDtb(pane), m_editor.NomeFileDtb(pane));
}

bool OpenCommand::loadComponent(int pane) {
    try {
        return loadFreshComponent(pane);
    } catch (const std::exception &) {
        giveUp(pane);
        throw;
    }
}

void OpenCommand::giveUp(int pane) {
    // The old database is gone already: menus and lists must not offer it any more.
    releaseComponent(m_editor, pane);
    AbilitaMenu(m_editor, pane);
    m_alignment.MostraTabelleDiverseInLista();
}

bool OpenCommand::loadFreshComponent(int pane) {
    const QString name = m_editor.NomeFileDtb(pane);
    showFileName(m_editor, pane, name);
    m_editor.nomelab(pane).show(); // a password is asked for below
    showHint(m_editor.controls, pane, QString());
    // The old component goes before the next load: both could hold the same file.
    releaseComponent(m_editor, pane);
    m_editor.state.ComparisonDue = true; // the other grid is left alone, for good if the load fails
    createComponent(pane);
    std::optional<FreedMemoryWipe> wipe;
    SecretText password;
    if (DatabaseProtetto(name)) {
        wipe.emplace();
        password = SecretText(inputBox(m_editor.controls.window, u"Password:"_s, u"Input password"_s, QString(),
                                       m_editor.OggettoDtb(pane).PasswordNote(name)));
    }
    // The component that was made before the question is replaced by a fresh one.
    m_editor.OggettoDtb(pane).release();
    createComponent(pane);
    if (!unlockWithoutStandingStill(m_editor.controls.window, m_editor.OggettoDtb(pane), name, password.text()))
        password.wipe(); // as after a cancel of the question
    return m_editor.OggettoDtb(pane).LoadDtb(name, password.text());
}

QString OpenCommand::loadFailure(int pane) const {
    try {
        return m_editor.OggettoDtb(pane).LastError();
    } catch (const std::exception &error) {
        return QString::fromUtf8(error.what()); // must not take the place of the failed load itself
    }
}

void OpenCommand::showLoadFailure(int pane) {
    m_editor.DtbAperto(pane) = false;
    AbilitaMenu(m_editor, pane);
    RicalcolaSistemazioneForm(m_editor);
    const QString reason = loadFailure(pane);
    showHint(m_editor.controls, pane, reason);
    messageBox(m_editor.controls.window, u"Can't load '"_s + m_editor.NomeFileDtb(pane) + u"'"_s, u"!!"_s, reason);
}

void OpenCommand::showOpenedTables() {
    const int pane = m_editor.state.IndexAttivo;
    const int other = 1 - pane;
    m_editor.DtbAperto(pane) = true;
    AbilitaMenu(m_editor, pane);
    RicalcolaSistemazioneForm(m_editor);
    m_editor.ListaTabelle(pane).setFocus();
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
    } else if (realTableSelected(m_editor, other)) {
        makeTableCurrent(m_editor, other, selectedTableName(m_editor, other));
    }
    m_differences.EvidenziaDifferenzeTabella();
}

} // namespace qir
