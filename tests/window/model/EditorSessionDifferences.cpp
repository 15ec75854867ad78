// Walking over differences, carrying them across, and the views that show nothing else.

#include "tests/model/Values.h"
#include "tests/support/Hands.h"
#include "tests/window/DialogScript.h"
#include "tests/window/EditSupport.h"
#include "tests/window/model/EditorSession.h"

#include <QDialog>
#include <QMessageBox>
#include <QTableView>

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void fail(const QString &text) {
    throw std::runtime_error(text.toStdString());
}

} // namespace

void EditorSession::takeDifferenceStep(const Step &step) {
    const auto &picks = step.picks;
    if (!m_model.bothOpen())
        return skip();
    switch (step.kind) {
    case Step::Walk:
        return walk(picks[0] % 2 == 0);
    case Step::CarryCells:
        return carryCells(picks);
    case Step::CarryRecord:
        return carryRecord(within(picks[0], 2), picks[1], picks[2]);
    case Step::CarryTable:
        return carryTable(picks[1] % 3 != 0);
    case Step::LookAtDifferences:
        return lookAtDifferences();
    default:
        return lookAtWindows(picks[0] % 2 == 0);
    }
}

/// Whether the walk stops at a line of the lists, as far as the lines themselves tell.
bool EditorSession::isStop(int line) const {
    const ModelLine &left = m_model.pane(0).line(line);
    const ModelLine &right = m_model.pane(1).line(line);
    return left.number == 0 || right.number == 0 || left.text.endsWith(u" !"_s);
}

/// Both lists have the same tables in the same lines: after adding or renaming one they may not.
bool EditorSession::linedUp() const {
    const ModelPane &left = m_model.pane(0);
    const ModelPane &right = m_model.pane(1);
    bool same = left.lineCount() == right.lineCount();
    for (int line = 0; same && line < left.lineCount(); ++line)
        same = nameKey(left.line(line).text) == nameKey(right.line(line).text);
    return same;
}

void EditorSession::walk(bool forward) {
    const bool known = m_model.sameTableShown();
    // From the active pane's cell, or from one that its grid is too small for.
    const int active = std::max(m_model.active, 0);
    const Grid &grid = m_fixture->grid(active);
    const Grid &other = m_fixture->grid(1 - active);
    const int row = other.Row() >= grid.Rows() ? other.Row() : grid.Row();
    const int column = other.Col() >= grid.Cols() ? other.Col() : grid.Col();
    const int line = m_fixture->list(std::max(m_model.active, 0)).ListIndex();
    hands::strike(m_fixture->window(), forward ? Qt::Key_F8 : Qt::Key_F7, {}, {});
    m_model.active = std::max(m_model.active, 0);
    // The first differing cell of each record is where the walk stops.
    std::map<int, int> stops;
    for (const auto &[r, c] : m_model.marks)
        stops.emplace(r, c);
    std::optional<std::pair<int, int>> wanted;
    for (const std::pair<int, int> stop : stops) {
        if (forward ? stop > std::pair(row, column) && !wanted : stop < std::pair(row, column))
            wanted = stop;
    }
    const int now = m_fixture->list(m_model.active).ListIndex();
    note(u"  from (%1, %2) of line %3 to line %4"_s.arg(row).arg(column).arg(line).arg(now));
    if (known && wanted) {
        if (now != line || std::pair(std::max(m_fixture->grid(0).Row(), m_fixture->grid(1).Row()),
                                     std::max(m_fixture->grid(0).Col(), m_fixture->grid(1).Col())) != *wanted)
            fail(u"the walk from pane %1 is at (%2, %3) of line %4 and (%5, %6), not at (%7, %8)"_s.arg(active)
                     .arg(grid.Row())
                     .arg(grid.Col())
                     .arg(now)
                     .arg(other.Row())
                     .arg(other.Col())
                     .arg(wanted->first)
                     .arg(wanted->second));
        return;
    }
    if (!linedUp()) {
        if (now != line)
            fail(u"the walk went on in lists that are not lined up"_s);
        return;
    }
    const int begin = line < 0 && !forward ? m_model.pane(0).lineCount() : line;
    const int end = now != line ? now : forward ? m_model.pane(0).lineCount() : -1;
    for (int passed = begin + (forward ? 1 : -1); forward ? passed < end : passed > end; passed += forward ? 1 : -1) {
        if (isStop(passed))
            fail(u"the walk passed line %1"_s.arg(passed));
    }
    if (now != line)
        m_model.select(m_model.active, now);
}

void EditorSession::carryCells(const std::array<unsigned, 6> &picks) {
    const int from = within(picks[0], 2);
    if (!m_model.sameTableShown())
        return skip();
    const GridSelection block = blockOf(from, {Step::CarryCells, picks});
    const GridRange cells = block.range();
    const PlainTable &target = *m_model.pane(1 - from).selectedTable();
    if (cells.lastRow > target.recordCount() || !m_model.fieldsAlike(cells.firstColumn, cells.lastColumn))
        return skip(); // what is told then has tests of its own
    selectCells(from, block);
    hands::strike(m_fixture->window(), from == 0 ? Qt::Key_Right : Qt::Key_Left, Qt::AltModifier, {});
    m_model.carryCells(from, cells);
}

void EditorSession::carryRecord(int from, unsigned rowPick, unsigned columnPick) {
    const PlainTable *source = m_model.pane(from).selectedTable();
    if (!m_model.sameTableSelected() || source->recordCount() == 0)
        return skip();
    const int fields = std::min(source->fieldCount(), m_model.pane(1 - from).selectedTable()->fieldCount());
    const int row = 1 + within(rowPick, source->recordCount());
    const int column = 1 + within(columnPick, source->fieldCount());
    if (!m_model.fieldsAlike(1, fields))
        return skip();
    selectCells(from, singleCell(row, column));
    note(u"  record %1 of pane %2"_s.arg(row).arg(from));
    hands::strike(m_fixture->window(), from == 0 ? Qt::Key_Right : Qt::Key_Left, Qt::AltModifier | Qt::ShiftModifier,
                  {});
    m_model.carryRecord(from, row);
}

void EditorSession::carryTable(bool yes) {
    const int from = m_model.active;
    if (from < 0 || !m_model.sameTableSelected() ||
        m_model.pane(0).selectedTable()->fieldCount() != m_model.pane(1).selectedTable()->fieldCount() ||
        !m_model.fieldsAlike(1, m_model.pane(0).selectedTable()->fieldCount()))
        return skip();
    const CarriedTable carried = m_model.carriedTable(from);
    const bool asked = carried.changed + carried.added + carried.removed > 0;
    if (asked)
        m_fixture->dialogs().expect([carried, yes](QDialog &dialog) {
            const QString numbers =
                u"Changed: %1, added: %2, removed: %3."_s.arg(carried.changed).arg(carried.added).arg(carried.removed);
            const auto &box = static_cast<QMessageBox &>(dialog);
            const QString wrong = box.text().endsWith(numbers) ? QString() : box.text();
            return wrong + pressButton(dialog, yes ? u"Yes"_s : u"No"_s);
        });
    m_fixture->choose(Command::CarryTableMenu);
    note(u"  from pane %1, changed %2, added %3, removed %4: %5"_s.arg(from)
             .arg(carried.changed)
             .arg(carried.added)
             .arg(carried.removed)
             .arg(yes));
    if (yes || !asked)
        m_model.carryTable(from);
    else
        m_model.compareShown();
}

/// Shows nothing but the differences, looks whether it is they, and shows everything again.
void EditorSession::lookAtDifferences() {
    if (!m_model.sameTableShown())
        return skip();
    m_fixture->choose(Command::OnlyDifferencesMenu);
    m_model.compareShown();
    const Cells cells = differences(*m_model.pane(0).selectedTable(), *m_model.pane(1).selectedTable());
    for (const int index : {0, 1}) {
        const PlainTable &table = *m_model.pane(index).selectedTable();
        std::set<int> rows;
        std::set<int> columns;
        for (const auto &[row, column] : cells) {
            if (row <= table.recordCount())
                rows.insert(row);
            if (column <= table.fieldCount())
                columns.insert(column);
        }
        const QAbstractItemModel *view = m_fixture->grid(index).model();
        std::set<int> shown;
        for (int row = 0; row < view->rowCount(); ++row)
            shown.insert(view->headerData(row, Qt::Vertical).toInt());
        if (shown != rows || view->columnCount() != static_cast<int>(columns.size()))
            fail(u"pane %1 shows %2 x %3 cells of %4 x %5 that differ"_s.arg(index)
                     .arg(view->rowCount())
                     .arg(view->columnCount())
                     .arg(rows.size())
                     .arg(columns.size()));
    }
    m_fixture->choose(Command::OnlyDifferencesMenu);
}

/// Opens one of the windows that tell differences, and closes it.
void EditorSession::lookAtWindows(bool summary) {
    m_fixture->choose(summary ? Command::DifferencesSummaryMenu : Command::DifferencesByKeyMenu);
    auto *dialog = m_fixture->window().findChild<QDialog *>(summary ? u"differencesSummary"_s : u"differencesByKey"_s);
    if (dialog == nullptr || !dialog->isVisible())
        fail(u"the window does not show"_s);
    if (summary) {
        std::set<QString> names;
        for (const ModelPane &pane : m_model.panes) {
            for (const PlainTable &table : pane.content.tables)
                names.insert(nameKey(table.name));
        }
        const int rows = dialog->findChild<QTableView *>()->model()->rowCount();
        if (rows != static_cast<int>(names.size()))
            fail(u"the summary has %1 lines for %2 tables"_s.arg(rows).arg(names.size()));
    }
    dialog->close();
    m_fixture->window().activateWindow();
    if (!QTest::qWaitForWindowActive(&m_fixture->window()))
        fail(u"the window is not active again"_s);
}

} // namespace qir::test
