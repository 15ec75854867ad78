#include "tests/window/model/EditorSession.h"

#include "db/FieldTypes.h"
#include "dialogs/frmListaStringhePlain.h"
#include "tests/model/Content.h"
#include "tests/window/PopupTools.h"
#include "tests/window/model/Agreement.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>

#include <random>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int fileCount = 4;
const QString fileDialogTitle = u"File DDB,WDB,UDB,SDB,IDB"_s;

/// A small table; the same picks give the same table, so that files hold equal ones too.
PlainTable smallTable(const QString &name, unsigned pick) {
    std::mt19937 random(pick);
    PlainTable table;
    table.name = name;
    const int fields = 1 + static_cast<int>(random() % 3);
    for (int k = 0; k < fields; ++k) {
        const int type = static_cast<int>(fieldTypeNames.at(random() % fieldTypeNames.size()).code);
        const bool text = type == static_cast<int>(FieldType::Text);
        table.addField({u"Field%1"_s.arg(k + 1), type, text ? 3 : 0});
    }
    const int records = static_cast<int>(random() % 4);
    for (int r = 0; r < records; ++r) {
        table.addRecord();
        for (int k = 0; k < fields; ++k)
            table.store(r, k, table.field(k).from(QString::number(random() % 3)));
    }
    return table;
}

} // namespace

EditorSession::EditorSession(std::uint64_t seed, std::function<void(const QString &)> log)
    : m_log(std::move(log)) {
    QDir().mkpath(m_folder.filePath(u"FILES"_s));
    qputenv("XDG_STATE_HOME", m_folder.filePath(u"state"_s).toUtf8());
    sceltaLista() = SceltaLista{};
    QApplication::clipboard()->clear();
    makeFiles(seed);
    startEditor(seed % 8 == 0 ? std::nullopt : std::optional(0));
    expectAgreement();
    if (seed % 4 == 0)
        return;
    toggleMode(Command::TwoMenu, true);
    m_fixture->activate(1);
    m_model.active = 1;
    open(1, false);
    expectAgreement();
}

void EditorSession::expectAgreement() {
    if (const QString wrong = disagreement(*m_fixture, m_model); !wrong.isEmpty())
        throw std::runtime_error(wrong.toStdString());
    m_model.beginStep();
    for (const int index : {0, 1})
        if (m_model.pane(index).open)
            historyOf(index).begin(m_model.pane(index).content, m_model.pane(index).changed);
}

QString EditorSession::path(int file) const {
    return m_folder.filePath(u"FILES/%1.DDB"_s.arg(QChar(u'A' + file)));
}

void EditorSession::makeFiles(std::uint64_t seed) {
    std::mt19937_64 random(seed);
    const QStringList names{u"A"_s, u"B"_s, u"c"_s, u"D !"_s};
    for (int file = 0; file < fileCount; ++file) {
        PlainDatabase content;
        for (int t = 0; t < names.size() && file != fileCount - 1; ++t) {
            // The last file stays empty. Two files in three have a table, half of them the same one.
            if (random() % 3 != 0)
                content.tables.push_back(smallTable(file == 1 ? names[t].toLower() : names[t],
                                                    static_cast<unsigned>(t * 10 + static_cast<int>(random() % 2))));
        }
        writeFile(path(file), content);
        m_model.files[file] = content;
    }
}

void EditorSession::startEditor(std::optional<int> file) {
    m_fixture.reset(); // one window at a time
    const QString commandLine = file ? path(*file) : QString();
    m_fixture = std::make_unique<EditorFixture>(commandLine);
    for (const QString &window : {u"differencesSummary"_s, u"differencesByKey"_s})
        m_fixture->dialogs().allow(window);
    m_model.start(file, commandLine);
}

QString EditorSession::run(const Step &step) {
    m_model.beginStep();
    m_filesTouched = false;
    m_taken = true;
    note(step.text());
    take(step);
    if (!m_taken) {
        m_model.settle(); // a line may have been pressed all the same
        m_model.beginStep();
        openWhatIsMissing(step);
    }
    m_takenCount += m_taken ? 1 : 0;
    if (!m_taken)
        return {}; // nothing was done
    note(listsText());
    QString wrong = disagreement(*m_fixture, m_model);
    if (wrong.isEmpty())
        wrong = historyDisagreement(step);
    if (wrong.isEmpty() && m_filesTouched)
        wrong = filesDisagreement();
    return wrong;
}

/// Where a step finds nothing to do, a person goes to two panes and opens a file in the one that has none.
void EditorSession::openWhatIsMissing(const Step &step) {
    if (m_model.bothOpen())
        return;
    m_taken = true;
    if (!m_model.two)
        return toggleMode(Command::TwoMenu, true);
    const int pane = m_model.pane(0).open ? 1 : 0;
    m_fixture->activate(pane);
    m_model.active = pane;
    open(within(step.picks[0], fileCount), false);
}

/// The lists as the window shows them, the selected line in brackets.
QString EditorSession::listsText() const {
    QString text = u"  "_s;
    for (const int index : {0, 1}) {
        const ListBox &list = m_fixture->list(index);
        text += index == m_fixture->activePane() ? u"* "_s : u"- "_s;
        for (int line = 0; line < list.ListCount(); ++line)
            text += (line == list.ListIndex() ? u"[%1] "_s : u"%1  "_s).arg(list.List(line));
    }
    return text;
}

QString EditorSession::filesDisagreement() const {
    QString text;
    for (const auto &[file, content] : m_model.files)
        text += fileDisagreement(path(file), content);
    return text;
}

void EditorSession::take(const Step &step) {
    switch (step.kind) {
    case Step::Open:
    case Step::Save:
    case Step::SaveAs:
    case Step::Close:
    case Step::OneMenu:
    case Step::TwoMenu:
    case Step::Restart:
        return takeFileStep(step);
    case Step::SelectLine:
    case Step::SelectByKey:
    case Step::ClickFrame:
    case Step::OtherPane:
    case Step::AddTable:
    case Step::RenameTable:
    case Step::RemoveTable:
    case Step::CloneTable:
    case Step::CompareAgain:
        return takeTableStep(step);
    case Step::AddField:
    case Step::RenameField:
    case Step::RemoveField:
    case Step::ResizeField:
        return takeFieldStep(step);
    case Step::Undo:
    case Step::Redo:
    case Step::GoToState:
    case Step::Revert:
    case Step::PasteAll:
        return takeHistoryStep(step);
    case Step::ReplaceAll:
    case Step::GoToRecord:
        return takeFindStep(step);
    case Step::AddRecord:
    case Step::RemoveRecord:
    case Step::CloneSize:
    case Step::CloneArea:
        return takeRecordStep(step);
    case Step::Walk:
    case Step::WalkCells:
    case Step::WalkToEnd:
    case Step::CarryAndGoOn:
    case Step::CarryByKey:
    case Step::CarryCells:
    case Step::CarryRecord:
    case Step::CarryTable:
    case Step::LookAtDifferences:
    case Step::LookAtWindows:
        return takeDifferenceStep(step);
    default:
        return takeCellStep(step);
    }
}

PlainTable *EditorSession::activeTable() {
    return m_model.active < 0 ? nullptr : m_model.activePane().selectedTable();
}

int EditorSession::visibleGrid(unsigned pick) const {
    for (const int index : {within(pick, 2), 1 - within(pick, 2)}) {
        const PlainTable *table = m_model.pane(index).selectedTable();
        if (table != nullptr && table->recordCount() > 0)
            return index;
    }
    return -1;
}

void EditorSession::expectError() {
    note(u"  an error is shown"_s);
    m_fixture->dialogs().expect([](QDialog &dialog) {
        const QString wrong = dialog.windowTitle() == "QIR Database Editor"_L1 ? QString() : dialog.windowTitle();
        return wrong + pressButton(dialog, u"OK"_s);
    });
}

void EditorSession::trigger(Command command) {
    QAction &action = m_fixture->action(command);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    if (menu == nullptr)
        return m_fixture->choose(command);
    if (!menu->actions().contains(&action))
        throw std::runtime_error(std::string("a pop-up without ") + commandName(command));
    chooseFromPopup(*menu, action);
}

void EditorSession::closePopup() {
    if (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
    else
        skip();
}

void EditorSession::expectEntries(const QMenu &menu, const QStringList &names) {
    const QStringList shown = shownEntries(menu);
    if (shown != names)
        throw std::runtime_error(
            u"the pop-up shows '%1' instead of '%2'"_s.arg(shown.join(u' '), names.join(u' ')).toStdString());
}

bool EditorSession::expectSaveQuestion(int pane, bool yes) {
    if (!m_model.pane(pane).open || !m_model.pane(pane).changed)
        return true;
    const QString name = m_fixture->database(pane).GetDatabaseFileName();
    m_fixture->dialogs().expectMessage(u"Database '%1' has changed.\r\nDo you want to save the changes?"_s.arg(name),
                                       u"QIR Database Editor"_s, yes ? u"Yes"_s : u"No"_s);
    note(u"  the question about the changes of pane %1: %2"_s.arg(pane).arg(yes));
    return yes;
}

// Files and modes

void EditorSession::takeFileStep(const Step &step) {
    const auto &picks = step.picks;
    const bool yes = picks[0] % 3 != 0;
    m_filesTouched = true;
    switch (step.kind) {
    case Step::Open:
        return open(within(picks[1], fileCount), picks[2] % 5 == 0);
    case Step::Save:
        if (!activeOpen())
            return skip();
        m_fixture->choose(Command::SaveMenu);
        return m_model.save();
    case Step::SaveAs:
        return saveAs(within(picks[1], fileCount + 2));
    case Step::Close:
        return activeOpen() ? closePane(yes) : skip();
    case Step::OneMenu:
        return toggleMode(Command::OneMenu, yes);
    case Step::TwoMenu:
        return toggleMode(Command::TwoMenu, yes);
    default:
        return restart({yes, picks[1] % 2 == 0},
                       picks[2] % 4 == 0 ? std::nullopt : std::optional(within(picks[3], fileCount)));
    }
}

void EditorSession::open(int file, bool cancel) {
    const int pane = std::max(m_model.active, 0);
    const ModelPane &other = m_model.pane(1 - pane);
    if (other.open && other.file == file)
        return skip(); // two panes on one file are another matter
    if (cancel) {
        m_fixture->dialogs().expectFileCancelled(fileDialogTitle);
        m_model.active = pane;
    } else {
        m_fixture->dialogs().expectFile(fileDialogTitle, path(file));
        m_model.open(file, path(file).toUpper());
    }
    note(u"  file %1 in pane %2, cancelled: %3"_s.arg(file).arg(pane).arg(cancel));
    m_fixture->choose(Command::OpenDatabase);
}

void EditorSession::saveAs(int file) {
    const bool taken = m_model.pane(0).file == file || m_model.pane(1).file == file;
    if (!activeOpen() || taken)
        return skip();
    note(u"  as file %1"_s.arg(file));
    m_fixture->dialogs().expectFile(fileDialogTitle, path(file));
    if (QFile::exists(path(file)))
        m_fixture->dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"Yes"_s); });
    m_fixture->choose(Command::SaveAsMenu);
    m_model.saveAs(file, path(file).toUpper());
}

void EditorSession::closePane(bool yes) {
    const bool keep = expectSaveQuestion(m_model.active, yes);
    m_fixture->choose(Command::CloseDatabaseMenu);
    m_model.close(keep);
}

void EditorSession::toggleMode(Command command, bool yes) {
    bool keep = true;
    // One command asks about the left database, the other about the right one; the answer is always for the right.
    if (m_model.two && m_model.pane(1).open)
        keep = expectSaveQuestion(command == Command::OneMenu ? 0 : 1, yes);
    m_fixture->choose(command);
    if (command == Command::OneMenu)
        m_model.toggleOneMenu(keep);
    else
        m_model.toggleTwoMenu(keep);
}

void EditorSession::restart(const std::array<bool, 2> &yes, std::optional<int> file) {
    std::array<bool, 2> keep{};
    for (const int index : {0, 1}) {
        const auto at = static_cast<std::size_t>(index);
        keep[at] = expectSaveQuestion(index, yes[at]);
    }
    m_fixture->choose(Command::EndMenu);
    m_model.exit(keep);
    if (const QString wrong = m_fixture->dialogs().problems(); !wrong.isEmpty())
        throw std::runtime_error(wrong.toStdString());
    note(u"  again with file %1"_s.arg(file.value_or(-1)));
    startEditor(file);
}

} // namespace qir::test
