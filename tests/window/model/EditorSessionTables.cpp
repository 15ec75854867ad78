#include "tests/model/Content.h"
#include "tests/model/Values.h"
#include "tests/support/Hands.h"
#include "tests/window/PopupTools.h"
#include "tests/window/model/EditorSession.h"

#include <algorithm>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

const QStringList tableNames{u"A"_s,   u"b"_s,   u"C"_s, u"D"_s,   u"E"_s, u" a "_s, u"B"_s,
                             u"C !"_s, u"B ?"_s, u"d"_s, u"F !"_s, u" "_s, QString()};

} // namespace

// Panes, lists and tables

void EditorSession::takeTableStep(const Step &step) {
    const auto &picks = step.picks;
    const int pane = m_model.two ? within(picks[0], 2) : 0;
    switch (step.kind) {
    case Step::SelectLine:
        if (m_model.pane(pane).lineCount() == 0)
            return skip();
        return selectLine(pane, within(picks[1], m_model.pane(pane).lineCount()));
    case Step::SelectByKey:
        return selectByKey(picks[0] % 2 == 0);
    case Step::ClickFrame:
        m_fixture->activate(pane);
        m_model.active = pane;
        return;
    case Step::OtherPane:
        if (!m_model.two)
            return skip();
        m_fixture->choose(Command::OtherPaneMenu);
        m_model.active = m_model.active < 0 ? 0 : 1 - m_model.active;
        return;
    case Step::CompareAgain:
        if (!m_model.bothOpen())
            return skip();
        m_fixture->choose(Command::CompareAgainMenu);
        return m_model.compareAgain();
    default:
        break;
    }
    if (!activeOpen())
        return skip();
    const bool byPopup = picks[2] % 3 == 0 && activeTable() != nullptr;
    if (byPopup && step.kind != Step::AddTable && step.kind != Step::CloneTable)
        pressTableLine(m_model.activePane().selected);
    if (step.kind == Step::AddTable)
        addTable(oneOf(tableNames, picks[1]));
    else if (step.kind == Step::RenameTable)
        renameTable(oneOf(tableNames, picks[1]), byPopup ? Command::RenameTablePOP : Command::RenameTableMenu);
    else if (step.kind == Step::RemoveTable)
        removeTable(picks[1] % 3 != 0, byPopup ? Command::RemoveTablePOP : Command::RemoveTableMenu);
    else if (m_model.activePane().lineCount() > 0)
        cloneTable(within(picks[1], m_model.activePane().lineCount()), picks[2] % 4 != 0);
    else
        skip();
}

void EditorSession::selectLine(int pane, int line) {
    note(u"  line %1 of pane %2"_s.arg(line).arg(pane));
    m_fixture->clickLine(pane, line);
    m_model.select(pane, line);
}

void EditorSession::selectByKey(bool down) {
    if (!activeOpen() || m_model.activePane().selected < 0)
        return skip();
    const int pane = m_model.active;
    const int line = m_model.pane(pane).selected + (down ? 1 : -1);
    m_fixture->list(pane).setFocus();
    hands::key(&m_fixture->list(pane), down ? Qt::Key_Down : Qt::Key_Up);
    if (line >= 0 && line < m_model.pane(pane).lineCount())
        m_model.select(pane, line);
}

void EditorSession::addTable(const QString &answer) {
    const QString name = answer.trimmed();
    note(u"  '%1' in pane %2"_s.arg(answer).arg(m_model.active));
    DialogScript &dialogs = m_fixture->dialogs();
    if (answer.isEmpty())
        dialogs.expectInputCancelled(u"New table name"_s, u"?"_s);
    else
        dialogs.expectInput(u"New table name"_s, u"?"_s, u"Tablex"_s, answer);
    const std::vector<PlainTable> &tables = m_model.activePane().content.tables;
    const bool taken =
        std::any_of(tables.begin(), tables.end(), [&](const PlainTable &table) { return sameName(table.name, name); });
    if (!name.isEmpty() && taken) {
        dialogs.expectMessage(u"Table: '"_s + name + u"' already exists"_s, u"!"_s, u"OK"_s);
        m_fixture->choose(Command::AddTableMenu);
        return;
    }
    if (name.isEmpty() || !m_model.addTable(name)) {
        if (!name.isEmpty())
            expectError();
        m_fixture->choose(Command::AddTableMenu);
        return;
    }
    m_fixture->choose(Command::AddTableMenu);
    // What a new table holds is the component's: one field and one record.
    PlainTable made = readAll(m_fixture->database(m_model.active)).tables.back();
    m_fixture->editor().pane(m_model.active).currentTableLost(); // the reading has left another one current
    PlainTable &table = m_model.activePane().content.tables.back();
    if (made.name != name || made.fieldCount() != 1 || made.recordCount() != 1)
        throw std::runtime_error("a new table has another shape");
    made.id = table.id;
    table = made;
}

void EditorSession::renameTable(const QString &answer, Command command) {
    if (activeTable() == nullptr)
        return trigger(command); // ends silently
    const ModelPane &it = m_model.activePane();
    const QString old = withoutMarkers(it.line(it.selected).text);
    note(u"  '%1' to '%2' in pane %3"_s.arg(old, answer).arg(m_model.active));
    m_fixture->dialogs().expectInput(u"Table's new name ("_s + old + u")"_s, u"?"_s, old, answer);
    if (!answer.isEmpty() && !m_model.renameTable(answer))
        expectError();
    trigger(command);
}

void EditorSession::removeTable(bool yes, Command command) {
    const ModelPane &it = m_model.activePane();
    if (it.lineCount() == 0)
        return skip(); // the command is disabled
    if (activeTable() == nullptr)
        return trigger(command); // ends silently
    const QString line = it.line(it.selected).text;
    note(u"  '%1' of pane %2: %3"_s.arg(line).arg(m_model.active).arg(yes));
    m_fixture->dialogs().expectMessage(u"Do you want to remove table: '"_s + line + u"' ?"_s, u"?"_s,
                                       yes ? u"Yes"_s : u"No"_s);
    trigger(command);
    if (yes)
        m_model.removeTable();
}

/// Exactly one of the two lines at a place stands for a table of that name.
bool EditorSession::canClone(int line) const {
    const ModelPane &it = m_model.pane(m_model.active);
    const ModelPane &other = m_model.pane(1 - m_model.active);
    return other.open && line < other.lineCount() && nameKey(it.line(line).text) == nameKey(other.line(line).text) &&
           (it.line(line).number >= 1) != (other.line(line).number >= 1);
}

/// The right button on a line of the active pane's list; the pop-up stays open.
void EditorSession::pressTableLine(int line) {
    const int pane = m_model.active;
    pressRight(*m_fixture, pane, line);
    m_model.select(pane, line);
    // What can be cloned is shown on the side that has it, also where the lists stood on different lines.
    if (canClone(line) && m_model.pane(pane).line(line).number < 1 && m_model.pane(1 - pane).selected != line)
        m_model.showAlone(1 - pane, line);
    QStringList expected;
    if (canClone(line))
        expected.append(u"ClonePOP"_s);
    if (m_model.pane(pane).line(line).number >= 1)
        expected += {u"RenameTablePOP"_s, u"RemoveTablePOP"_s};
    expectEntries(m_fixture->menu(Menu::popmenuCopyToOther), expected);
}

void EditorSession::cloneTable(int line, bool clone) {
    const int pane = m_model.active;
    const int count = m_model.pane(pane).lineCount();
    for (int further = 0; clone && further < count && !canClone(line); ++further)
        line = (line + 1) % count;
    pressTableLine(line);
    if (!clone || !canClone(line))
        return closePopup();
    const int source = m_model.pane(pane).line(line).number >= 1 ? pane : 1 - pane;
    note(u"  line %1 from pane %2"_s.arg(line).arg(source));
    trigger(Command::ClonePOP);
    m_model.pane(source).selected = line;
    m_model.cloneTable(source);
}

} // namespace qir::test
