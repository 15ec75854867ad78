#include "compare/DifferenceWalk.h"

#include "compare/CellDifferences.h"
#include "compare/DifferingTables.h"
#include "pane/ActivePane.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"

#include <QAction>
#include <QToolTip>

#include <algorithm>

namespace qir {

namespace {

std::size_t index(int number) {
    return static_cast<std::size_t>(std::max(number, 0));
}

} // namespace

void DifferenceWalk::addCommands() {
    watchGrids();
    CommandTable &commands = m_editor.commands();
    const auto add = [&](Command command, const QString &caption, const QList<QKeySequence> &keys, auto procedure) {
        commands.add(command, caption, procedure, {.needs = Needs::BothDatabases});
        commands.action(command).setShortcuts(keys);
    };
    add(Command::NextDifferenceMenu, tr("&Next Difference"), {Qt::Key_F8, QKeySequence(Qt::ALT | Qt::Key_Down)},
        [this] { go(Direction::Forward, Stops::Records); });
    add(Command::PreviousDifferenceMenu, tr("&Previous Difference"), {Qt::Key_F7, QKeySequence(Qt::ALT | Qt::Key_Up)},
        [this] { go(Direction::Back, Stops::Records); });
    add(Command::FirstDifferenceMenu, tr("&First Difference"), {QKeySequence(Qt::ALT | Qt::Key_Home)},
        [this] { goToEnd(Direction::Back); });
    add(Command::LastDifferenceMenu, tr("&Last Difference"), {QKeySequence(Qt::ALT | Qt::Key_End)},
        [this] { goToEnd(Direction::Forward); });
    add(Command::NextDifferingCellMenu, tr("Ne&xt Differing Cell"), {QKeySequence(Qt::CTRL | Qt::Key_F8)},
        [this] { go(Direction::Forward, Stops::Cells); });
    add(Command::PreviousDifferingCellMenu, tr("Pre&vious Differing Cell"), {QKeySequence(Qt::CTRL | Qt::Key_F7)},
        [this] { go(Direction::Back, Stops::Cells); });
}

void DifferenceWalk::begin() {
    m_editor.endEdit();
    QToolTip::hideText(); // it would go on telling of a cell that is no longer under it
    if (m_editor.IndexAttivo() < 0)
        activatePane(m_editor, 0);
}

bool DifferenceWalk::cellsKnown() const {
    return m_editor.gridsShowSameTable() && m_editor.Tabella(0).Visible() && m_editor.Tabella(1).Visible();
}

void DifferenceWalk::watchGrids() {
    for (const int pane : {0, 1}) {
        const Grid &grid = m_editor.Tabella(pane);
        QObject::connect(&grid, &Grid::SelChange, &grid,
                         [this, pane, &grid] { m_led[static_cast<std::size_t>(pane)] = grid.selection(); });
    }
}

/// The active pane's cell; but a grid that is too small for the other's current cell keeps its own, and the other's is
/// where the person is then. Not where the grids were brought to two records apart.
DifferenceWalk::Cell DifferenceWalk::current() const {
    const int pane = std::max(m_editor.IndexAttivo(), 0);
    const Grid &active = m_editor.Tabella(pane);
    const Grid &other = m_editor.Tabella(1 - pane);
    if (m_led[static_cast<std::size_t>(1 - pane)] != other.selection())
        return {active.Row(), active.Col()};
    return {other.Row() >= active.Rows() ? other.Row() : active.Row(),
            other.Col() >= active.Cols() ? other.Col() : active.Col()};
}

bool DifferenceWalk::exists(const Cell &cell) const {
    const TableSizes sizes = shownSizes(m_editor);
    return (cell.row <= sizes.leftRecords && cell.column <= sizes.leftFields) ||
           (cell.row <= sizes.rightRecords && cell.column <= sizes.rightFields);
}

/// The nearest stop of a row from a column on, that column included.
std::optional<DifferenceWalk::Cell> DifferenceWalk::inRow(int row, int column, Direction direction, Stops stops) const {
    const BitMatrix &different = m_editor.CelleDiverse();
    const int last = static_cast<int>(different.columns()) - 1;
    if (stops == Stops::Records) {
        const int first = static_cast<int>(different.nextColumn(index(row), 1));
        const bool fits = direction == Direction::Forward ? first >= column : first <= column;
        return first <= last && fits ? std::optional(Cell{row, first}) : std::nullopt;
    }
    const int step = direction == Direction::Forward ? 1 : -1;
    while (column >= 1 && column <= last) {
        column =
            static_cast<int>(direction == Direction::Forward ? different.nextColumn(index(row), index(column))
                                                             : different.previousColumn(index(row), index(column)));
        if (column > last)
            break;
        // Where one side has more records and the other one more fields, neither has the corner beyond both.
        if (exists({row, column}))
            return Cell{row, column};
        column += step;
    }
    return std::nullopt;
}

std::optional<DifferenceWalk::Cell> DifferenceWalk::found(const Cell &from, Direction direction, Stops stops) const {
    const BitMatrix &different = m_editor.CelleDiverse();
    const bool forward = direction == Direction::Forward;
    const std::size_t none = different.rows();
    int column = from.column;
    for (std::size_t row = forward ? different.nextRow(index(from.row)) : different.previousRow(index(from.row));
         row < none; row = forward    ? different.nextRow(row + 1)
                           : row == 0 ? none
                                      : different.previousRow(row - 1)) {
        if (static_cast<int>(row) != from.row)
            column = forward ? 1 : static_cast<int>(different.columns()) - 1;
        if (const auto cell = inRow(static_cast<int>(row), column, direction, stops))
            return cell;
    }
    return std::nullopt;
}

void DifferenceWalk::go(Direction direction, Stops stops) {
    begin();
    if (cellsKnown()) {
        Cell from = current();
        from.column += direction == Direction::Forward ? 1 : -1;
        if (const auto cell = found(from, direction, stops)) {
            show(*cell);
            return;
        }
    }
    const ListBox &list = m_editor.ListaTabelle(m_editor.IndexAttivo());
    const int from = list.ListIndex() < 0 && direction == Direction::Back ? list.ListCount() : list.ListIndex();
    const int line = nextTable(from, direction);
    if (line >= 0)
        enterTable(line, direction, stops);
    else
        tellEnd(direction);
}

void DifferenceWalk::goToEnd(Direction direction) {
    begin();
    // From outside the lists inwards.
    const bool first = direction == Direction::Back;
    const Direction inwards = first ? Direction::Forward : Direction::Back;
    const int line = nextTable(first ? -1 : m_editor.ListaTabelle(0).ListCount(), inwards);
    if (line >= 0)
        enterTable(line, inwards, Stops::Records);
    else
        tellEnd(direction);
}

void DifferenceWalk::goToTable(int line) {
    begin();
    enterTable(line, Direction::Forward, Stops::Records);
}

/// The record that is shown and nearest to this one; 0 where none is.
int DifferenceWalk::nearestShown(int row) const {
    const Grid &longer = m_editor.Tabella(m_editor.Tabella(0).Rows() >= m_editor.Tabella(1).Rows() ? 0 : 1);
    const int behind = longer.nextShownRow(row);
    const int before = longer.nextShownRow(row, -1);
    if (behind < 1 || before < 1)
        return std::max(behind, before);
    return behind - row < row - before ? behind : before;
}

void DifferenceWalk::goToRecord(int row) {
    begin();
    if (!cellsKnown())
        return;
    auto cell = inRow(row, 1, Direction::Forward, Stops::Records);
    if (!cell) {
        // Where only differences are shown, an equal record stays out of sight.
        row = nearestShown(row);
        cell = inRow(row, 1, Direction::Forward, Stops::Records);
    }
    if (row >= 1)
        show(cell.value_or(Cell{row, std::max(current().column, 1)}), Scroll::ToMiddle);
}

int DifferenceWalk::nextTable(int line, Direction direction) const {
    if (!m_tables.linedUp())
        return -1;
    const int step = direction == Direction::Forward ? 1 : -1;
    for (line += step; line >= 0 && line < m_editor.ListaTabelle(0).ListCount(); line += step) {
        const Standing standing = m_tables.standing(line);
        if (standing != Standing::Equal && standing != Standing::Unknown)
            return line;
    }
    return -1;
}

void DifferenceWalk::selectLine(int line) {
    const ActivePaneScope active(m_editor); // a list's click makes its pane the active one
    const int pane = m_editor.IndexAttivo();
    Grid &grid = m_editor.Tabella(pane);
    m_focusToGrid = grid.hasFocus() || (m_focusToGrid && m_editor.ListaTabelle(pane).hasFocus());
    m_editor.ListaTabelle(pane).setListIndex(line); // its click loads the table on both sides
    m_editor.ListaTabelle(1 - pane).setListIndex(line);
    m_settle(); // a load's own place for the grids would take that of the stop
    if (m_focusToGrid && grid.Visible()) {
        m_focusToGrid = false;
        grid.setFocus(Qt::OtherFocusReason);
    }
}

void DifferenceWalk::enterTable(int line, Direction direction, Stops stops) {
    selectLine(line);
    if (!cellsKnown())
        return;
    const BitMatrix &different = m_editor.CelleDiverse();
    const Cell outside = direction == Direction::Forward
                             ? Cell{1, 1}
                             : Cell{static_cast<int>(different.rows()) - 1, static_cast<int>(different.columns()) - 1};
    if (const auto cell = found(outside, direction, stops))
        show(*cell);
}

void DifferenceWalk::show(const Cell &cell, Scroll scroll) {
    const auto has = [&](int pane) {
        return cell.row < m_editor.Tabella(pane).Rows() && cell.column < m_editor.Tabella(pane).Cols();
    };
    const int active = m_editor.IndexAttivo();
    const int pane = has(active) ? active : 1 - active;
    Grid &grid = m_editor.Tabella(pane);
    grid.setSelection(singleCell(cell.row, cell.column)); // the other grid follows as far as it is large enough
    m_led[static_cast<std::size_t>(pane)] = grid.selection();
    Grid &other = m_editor.Tabella(1 - pane);
    if (has(1 - pane) && other.selection() != grid.selection()) { // but not where this one stood there already
        const GridSilence silence(other);
        other.setSelection(grid.selection());
    }
    if (scroll == Scroll::ToMiddle)
        grid.scrollTo(grid.cellIndex(cell.row, cell.column), QAbstractItemView::PositionAtCenter);
    grid.bringCellIntoView();
    other.followScroll(grid);
}

void DifferenceWalk::tellEnd(Direction direction) {
    if (!m_tables.linedUp())
        m_editor.status().showMessage(tr("The two lists are not lined up: Mode > Compare Again does that"));
    else
        m_editor.status().showMessage(direction == Direction::Forward ? tr("No further difference")
                                                                      : tr("No earlier difference"));
}

} // namespace qir
