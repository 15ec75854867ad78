#include "tests/model/Content.h"
#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/model/EditorSession.h"

#include <QListView>

#include <stdexcept>
#include <utility>

// Steps that take back what other steps did, and those that bring whole blocks in.

namespace qir::test {

using namespace Qt::StringLiterals;

void EditorSession::takeHistoryStep(const Step &step) {
    const int pane = m_model.active;
    const EditedCell edited = m_fixture->editedCell();
    for (const int index : {0, 1}) {
        if (!editing(*m_fixture, index))
            continue;
        if (!m_fixture->cellEditor(index).hasFocus() || index != pane)
            return skip(); // which would take back what was typed
        leaveEditor(index, edited.row, edited.column);
    }
    if (!activeOpen())
        return skip();
    switch (step.kind) {
    case Step::Undo:
        return undo(pane);
    case Step::Redo:
        return redo(pane);
    case Step::GoToState:
        return goToState(pane, within(step.picks[0], historyOf(pane).count() + 1));
    case Step::Revert:
        return revert(pane, step.picks[0] % 4 != 0);
    default:
        return pasteAll(step);
    }
}

void EditorSession::expectEnabled(Command command, bool enabled) const {
    if (m_fixture->action(command).isEnabled() != enabled)
        throw std::runtime_error(u"%1 should be %2"_s.arg(QLatin1StringView(commandName(command)))
                                     .arg(enabled ? u"enabled"_s : u"disabled"_s)
                                     .toStdString());
}

void EditorSession::undo(int pane) {
    const int done = historyOf(pane).done();
    expectEnabled(Command::UndoMenu, done > 0);
    if (done == 0)
        return skip();
    m_fixture->choose(Command::UndoMenu);
    arrive(pane, done - 1);
}

void EditorSession::redo(int pane) {
    const ModelHistory &history = historyOf(pane);
    expectEnabled(Command::RedoMenu, history.done() < history.count());
    if (history.done() == history.count())
        return skip();
    m_fixture->choose(Command::RedoMenu);
    arrive(pane, history.done() + 1);
}

void EditorSession::goToState(int pane, int done) {
    note(u"  the state after %1 steps of %2"_s.arg(done).arg(historyOf(pane).count()));
    m_fixture->dialogs().expect([done](QDialog &dialog) {
        auto *list = dialog.findChild<QListView *>(u"historyList"_s);
        if (list == nullptr || done >= list->model()->rowCount())
            return u"no such line in '%1'"_s.arg(dialog.objectName());
        const QModelIndex line = list->model()->index(done, 0);
        list->scrollTo(line);
        hands::doubleClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, list->visualRect(line).center());
        return QString();
    });
    const bool there = done == historyOf(pane).done();
    m_fixture->choose(Command::HistoryMenu);
    if (!there)
        arrive(pane, done);
}

/// The pane's database is what it was after so many steps.
void EditorSession::arrive(int pane, int done) {
    ModelHistory &history = historyOf(pane);
    history.goTo(done);
    const QirDatabase &database = m_fixture->database(pane);
    if (database.StepsDone() != done)
        throw std::runtime_error("another number of steps is done");
    const QString changed = database.ChangedTable();
    const int tables = database.ChangedTables();
    const bool isKnown = history.at(done).has_value();
    m_model.goToState(pane, isKnown ? *history.at(done) : readAll(database), !history.isSaved(), changed, tables);
    if (!isKnown)
        m_fixture->editor().pane(pane).currentTableLost(); // by the reading, behind the editor's back
}

void EditorSession::revert(int pane, bool yes) {
    const ModelPane &it = m_model.pane(pane);
    expectEnabled(Command::RevertMenu, it.changed);
    if (!it.changed)
        return skip();
    m_fixture->dialogs().expectMessage(
        u"Do you want to go back to what is saved of '%1' ?"_s.arg(m_fixture->fileName(pane)), u"?"_s,
        yes ? u"Yes"_s : u"No"_s);
    m_fixture->choose(Command::RevertMenu);
    if (!yes)
        return;
    const QirDatabase &database = m_fixture->database(pane);
    m_model.goToState(pane, m_model.files[it.file], false, database.ChangedTable(), database.ChangedTables());
    m_reverted[static_cast<std::size_t>(pane)] = true;
}

void EditorSession::pasteAll(const Step &step) {
    const int pane = visibleGrid(step.picks[0]);
    if (pane < 0 || !m_clipboard)
        return skip();
    const GridSelection block = blockOf(pane, step);
    selectCells(pane, singleCell(block.row, block.column));
    const PlainTable &table = *m_model.pane(pane).selectedTable();
    const int rows = static_cast<int>(m_clipboard->size());
    int missing = std::max(block.row + rows - 1 - table.recordCount(), 0);
    if (missing > 0) {
        const QString answer = oneOf({u"Yes"_s, u"No"_s, u"Yes"_s, u"Cancel"_s}, step.picks[5]);
        m_fixture->dialogs().expectMessage(missing == 1 ? u"The block needs 1 record more. Add it?"_s
                                                        : u"The block needs %1 records more. Add them?"_s.arg(missing),
                                           u"?"_s, answer);
        note(u"  %1 records more: %2"_s.arg(missing).arg(answer));
        if (answer == u"Cancel"_s) {
            m_fixture->choose(Command::PasteAllMenu);
            return;
        }
        missing = answer == u"Yes"_s ? missing : 0;
    }
    m_fixture->choose(Command::PasteAllMenu);
    m_model.pasteAll(pane, block.row, block.column, *m_clipboard, missing);
}

QString EditorSession::takeAllBack() {
    for (const int pane : {0, 1}) {
        if (!m_model.pane(pane).open || historyOf(pane).count() == 0)
            continue;
        for (const Step &step : {Step{Step::ClickFrame, {static_cast<unsigned>(pane)}}, Step{Step::GoToState, {0}}})
            if (const QString wrong = run(step); !wrong.isEmpty())
                return u"with all taken back: "_s + wrong;
    }
    return {};
}

/// The component's steps against the states that the model knows; what a command did must be one of them.
QString EditorSession::historyDisagreement(const Step &step) {
    QString text;
    for (const int index : {0, 1}) {
        const ModelPane &it = m_model.pane(index);
        if (!it.open)
            continue;
        const QirDatabase &database = m_fixture->database(index);
        const int count = database.StepsCount();
        const int done = database.StepsDone();
        ModelHistory &history = historyOf(index);
        const bool isEdit = step.kind == Step::EditCell;
        if (count == 0)
            history.begin(it.content, it.changed);
        else
            text += history.follow(it.content, done, count, isEdit, isEdit ? 2 : 1);
        auto &reverted = m_reverted[static_cast<std::size_t>(index)];
        if (std::exchange(reverted, false))
            history.revert();
        else if ((step.kind == Step::Save || step.kind == Step::SaveAs) && !it.changed)
            history.save();
    }
    return text;
}

} // namespace qir::test
