// Which rows and columns of a grid are shown, and where they stand in its view.

#include "platform/grid/Grid.h"

#include "platform/controls/Twips.h"
#include "platform/grid/CellTextDrawing.h"
#include "platform/grid/GridHeader.h"
#include "platform/grid/GridModel.h"

#include <QScrollBar>

#include <algorithm>

namespace qir {

namespace {

/// The line that is shown and nearest to this one, a later one first; 0 when there is none.
int nearestLine(const ShownLines &lines, int line, int whole) {
    const int count = lines.count(whole);
    return count == 0 ? 0 : lines.line(std::min(lines.sectionFrom(std::max(line, 1)), count - 1));
}

int placeOf(const ShownLines &lines, int line, int whole) {
    return line < 1 ? 0 : std::min(lines.sectionFrom(line) + 1, lines.count(whole));
}

int nextLine(const ShownLines &lines, int line, int step, int whole) {
    int section = lines.sectionFrom(line);
    if (step < 0 && !lines.holds(line))
        --section;
    return section >= 0 && section < lines.count(whole) ? lines.line(section) : 0;
}

} // namespace

bool Grid::showsAll() const {
    return m_model->showsAll();
}

bool Grid::shows(int row, int column) const {
    return (row < 1 || m_model->shownRows().holds(row)) && (column < 1 || m_model->shownColumns().holds(column));
}

int Grid::shownRowCount() const {
    return m_model->rowCount();
}

int Grid::nextShownRow(int row, int step) const {
    return nextLine(m_model->shownRows(), row, step, Rows() - 1);
}

int Grid::nextShownColumn(int column, int step) const {
    return nextLine(m_model->shownColumns(), column, step, Cols() - 1);
}

int Grid::rowOf(int section) const {
    return section < 0 ? 0 : m_model->shownRows().line(section);
}

int Grid::columnOf(int section) const {
    return section < 0 ? 0 : m_model->shownColumns().line(section);
}

Grid::PointedCell Grid::cellAt(const QModelIndex &index) const {
    return index.isValid() ? PointedCell{rowOf(index.row()), columnOf(index.column())} : PointedCell{};
}

QModelIndex Grid::cellIndex(int row, int column) const {
    return m_model->cellIndex(row, column);
}

GridExtent Grid::extentInView() const {
    GridExtent shown = extent();
    shown.rows = m_model->rowCount() + 1;
    shown.columns = m_model->columnCount() + 1;
    return shown;
}

GridSelection Grid::inView(const GridSelection &selection) const {
    const ShownLines &rows = m_model->shownRows();
    const ShownLines &columns = m_model->shownColumns();
    return {placeOf(rows, selection.row, Rows() - 1), placeOf(columns, selection.column, Cols() - 1),
            placeOf(rows, selection.rowEnd, Rows() - 1), placeOf(columns, selection.columnEnd, Cols() - 1)};
}

/// Empty where nothing of the range is shown.
GridRange Grid::inView(const GridRange &range) const {
    const auto first = [](const ShownLines &lines, int line) { return line < 1 ? 0 : lines.sectionFrom(line) + 1; };
    const auto last = [](const ShownLines &lines, int line) { return lines.sectionFrom(std::max(line, 0) + 1); };
    const ShownLines &rows = m_model->shownRows();
    const ShownLines &columns = m_model->shownColumns();
    return {first(rows, range.firstRow), first(columns, range.firstColumn), last(rows, range.lastRow),
            last(columns, range.lastColumn)};
}

GridSelection Grid::fromView(const GridSelection &selection) const {
    return {rowOf(selection.row - 1), columnOf(selection.column - 1), rowOf(selection.rowEnd - 1),
            columnOf(selection.columnEnd - 1)};
}

/// From the first shown cell to the last; where there is none, the fixed row and column stand for it.
GridRange Grid::shownCells() const {
    const GridExtent extent = extentInView();
    return {rowOf(std::min(1, extent.rows - 1) - 1), columnOf(std::min(1, extent.columns - 1) - 1),
            rowOf(extent.rows - 2), columnOf(extent.columns - 2)};
}

void Grid::showOnly(ShownLines rows, ShownLines columns) {
    rows.cut(Rows() - 1);
    columns.cut(Cols() - 1);
    if (rows == m_model->shownRows() && columns == m_model->shownColumns())
        return;
    const int top = TopRow();
    const int left = LeftCol();
    const bool stays = rows.holds(Row()) && columns.holds(Col());
    const GridSelection next = singleCell(nearestLine(rows, Row(), Rows() - 1),
                                          std::max(nearestLine(columns, Col(), Cols() - 1), std::min(1, Cols() - 1)));
    m_model->setShown(std::move(rows), std::move(columns));
    if (!stays)
        m_selection = next;
    showSelection();
    setTopRow(top);
    setLeftCol(left);
}

void Grid::showAll() {
    showOnly({}, {});
}

void Grid::showCell(int row, int column) {
    if (shows(row, column) || !hasCell(row, column))
        return;
    const int top = TopRow();
    const int left = LeftCol();
    ShownLines rows = m_model->shownRows();
    ShownLines columns = m_model->shownColumns();
    rows.insert(row);
    columns.insert(column);
    m_model->setShown(std::move(rows), std::move(columns));
    setTopRow(top);
    setLeftCol(left);
    Q_EMIT CellShown(row, column);
}

/// The sections stand for other rows and columns than before: each gets what its own has.
void Grid::adoptShown() {
    m_someShown = !showsAll();
    m_stretched = -1;
    for (int section = 0; section < m_model->columnCount(); ++section) {
        const auto place = static_cast<std::size_t>(columnOf(section) - 1);
        const int twips = m_columnTwips[place];
        m_columnHeader->resizeSection(section, drawnWidth(twips));
        m_columnTwips[place] = twips; // the resizing rounds it to pixels
    }
    fitRowHeight();
    restoreRowHeights();
    fitFixedColumn();
}

/// Where the fixed column tells numbers, it has room for them behind its signs.
void Grid::fitFixedColumn() {
    int width = toPixelsRoundedUp(m_fixedColumnTwips);
    if (m_someShown)
        width += fontMetrics().horizontalAdvance(QString::number(rowOf(std::max(m_model->rowCount(), 1) - 1))) +
                 2 * cellMargin;
    m_rowHeader->setFixedWidth(width);
    updateGeometries();
}

} // namespace qir
