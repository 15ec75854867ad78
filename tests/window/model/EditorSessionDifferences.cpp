// Carrying differences across, and the views that show nothing else.

#include "tests/model/Values.h"
#include "tests/support/Hands.h"
#include "tests/window/DialogScript.h"
#include "tests/window/EditSupport.h"
#include "tests/window/model/EditorSession.h"

#include <QCheckBox>
#include <QDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>

#include <algorithm>
#include <set>

namespace qir::test {

using namespace Qt::StringLiterals;

void EditorSession::takeDifferenceStep(const Step &step) {
    const auto &picks = step.picks;
    if (!m_model.bothOpen())
        return skip();
    switch (step.kind) {
    case Step::Walk:
    case Step::WalkCells:
        return walk(picks[0] % 2 == 0, step.kind == Step::WalkCells);
    case Step::WalkToEnd:
        return walkToEnd(picks[0] % 2 == 0);
    case Step::CarryCells:
    case Step::CarryAndGoOn:
        return carryCells(picks, step.kind == Step::CarryAndGoOn);
    case Step::CarryByKey:
        return carryByKey(within(picks[0], 2), picks[1] % 4 != 0);
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

void EditorSession::carryCells(const std::array<unsigned, 6> &picks, bool andGoOn) {
    const int from = within(picks[0], 2);
    if (!m_model.sameTableShown())
        return skip();
    const GridSelection block = blockOf(from, {Step::CarryCells, picks});
    const GridRange cells = block.range();
    const PlainTable &target = *m_model.pane(1 - from).selectedTable();
    if (cells.lastRow > target.recordCount() || !m_model.fieldsAlike(cells.firstColumn, cells.lastColumn))
        return skip(); // what is told then has tests of its own
    selectCells(from, block);
    const auto carry = [&](Qt::KeyboardModifiers modifiers) {
        hands::strike(m_fixture->window(), from == 0 ? Qt::Key_Right : Qt::Key_Left, modifiers, {});
        m_model.carryCells(from, cells);
    };
    if (andGoOn)
        followWalk(true, false, [&] { carry(Qt::ControlModifier | Qt::AltModifier); });
    else
        carry(Qt::AltModifier);
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
    if (source->fieldCount() > fields)
        m_fixture->dialogs().expect([](QDialog &dialog) {
            const QString text = static_cast<QMessageBox &>(dialog).text();
            return (text.contains(u"which the other side lacks"_s) ? QString() : text) + pressButton(dialog, u"Yes"_s);
        });
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

/// Ticks all that the window of differences by key lists, and carries it to the other side.
void EditorSession::carryByKey(int from, bool yes) {
    if (!m_model.sameTableSelected() || !m_model.firstFieldIsKey())
        return skip();
    const CarriedByKey carried = m_model.carriedByKey(from);
    const bool any = carried.values + carried.added + carried.removed > 0;
    m_fixture->choose(Command::DifferencesByKeyMenu);
    auto *dialog = m_fixture->window().findChild<QDialog *>(u"differencesByKey"_s);
    auto *all = dialog->findChild<QCheckBox *>(u"keyedTickAll"_s);
    auto *carry = dialog->findChild<QPushButton *>(from == 0 ? u"keyedCarryRight"_s : u"keyedCarryLeft"_s);
    if (all->isEnabled())
        hands::click(all, Qt::LeftButton, {}, QPoint(8, 8));
    if (carry->isEnabled() != any)
        fail(u"%1 to carry by key"_s.arg(any ? u"nothing"_s : u"something"_s));
    const QString numbers = u"Values changed: %1, records added: %2, removed: %3."_s.arg(carried.values)
                                .arg(carried.added)
                                .arg(carried.removed);
    note(u"  from pane %1, %2 %3"_s.arg(from).arg(numbers).arg(yes));
    if (any) {
        m_fixture->dialogs().expect([numbers, yes](QDialog &question) {
            const QString text = static_cast<QMessageBox &>(question).text();
            return (text.contains(numbers) ? QString() : text) + pressButton(question, yes ? u"Yes"_s : u"No"_s);
        });
        hands::click(carry, Qt::LeftButton);
    }
    if (any && yes)
        m_model.carryByKey(from);
    leaveWindow(*dialog);
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
    leaveWindow(*dialog);
}

/// Closes a window that stands beside the editor's.
void EditorSession::leaveWindow(QDialog &window) {
    window.close();
    m_fixture->window().activateWindow();
    if (!QTest::qWaitForWindowActive(&m_fixture->window()))
        fail(u"the window is not active again"_s);
}

} // namespace qir::test
