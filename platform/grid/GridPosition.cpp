// Where things are in a grid: scrolling, the pointer, the current cell's rectangle, widths, visibility.

#include "platform/grid/Grid.h"

#include "platform/controls/PointerPlace.h"
#include "platform/controls/Twips.h"
#include "platform/grid/GridHeader.h"
#include "platform/grid/GridModel.h"

#include <QApplication>
#include <QEvent>
#include <QScrollBar>

#include <algorithm>

namespace qir {

namespace {

constexpr int rowPadding = 8; // pixels beside a line's height

} // namespace

int Grid::TopRow() const {
    return rowOf(verticalScrollBar()->value());
}

int Grid::LeftCol() const {
    return columnOf(horizontalScrollBar()->value());
}

void Grid::layOut() {
    executeDelayedItemsLayout();
    updateGeometries();
}

void Grid::setTopRow(int row) {
    layOut();
    verticalScrollBar()->setValue(m_model->shownRows().sectionFrom(row));
}

void Grid::setLeftCol(int column) {
    layOut();
    horizontalScrollBar()->setValue(m_model->shownColumns().sectionFrom(column));
}

GridPlace Grid::place() const {
    return {m_selection, TopRow(), LeftCol()};
}

void Grid::setPlace(const GridPlace &place) {
    m_selection = cutTo(place.selection, extent());
    showSelection();
    setTopRow(place.topRow);
    setLeftCol(place.leftColumn);
}

void Grid::followSelection(const Grid &leader) {
    const GridSilence silence(*this);
    const GridSelection &wanted = leader.selection();
    GridSelection next = m_selection;
    if (wanted.row < Rows())
        next = singleCell(wanted.row, next.column);
    if (wanted.column < Cols())
        next = singleCell(next.row, wanted.column);
    if (wanted.rowEnd < Rows())
        next.rowEnd = wanted.rowEnd;
    if (wanted.columnEnd < Cols())
        next.columnEnd = wanted.columnEnd;
    select(next);
}

void Grid::followScroll(const Grid &leader) {
    verticalScrollBar()->setValue(leader.verticalScrollBar()->value());
    horizontalScrollBar()->setValue(leader.horizontalScrollBar()->value());
}

Grid::PointedCell Grid::pointedCell() const {
    const QPoint at = m_pointer->position();
    if (!m_pointer->isHandling()) {
        // Nothing of this grid is pointed at through another window or widget.
        const QWidget *under = QApplication::widgetAt(at);
        if (under == nullptr || (under != this && !isAncestorOf(under)))
            return {};
    }
    if (const auto section = m_columnHeader->sectionAt(at))
        return {0, *section < 0 ? -1 : columnOf(*section)};
    if (const auto section = m_rowHeader->sectionAt(at))
        return *section < 0 ? PointedCell{} : PointedCell{rowOf(*section), 0};
    const QPoint inCells = viewport()->mapFromGlobal(at);
    if (viewport()->rect().contains(inCells))
        return cellAt(indexAt(inCells));
    // Above and left of the cells, where the headers leave a corner.
    const QPoint inGrid = mapFromGlobal(at);
    const bool corner = rect().contains(inGrid) && m_columnHeader->isVisible() &&
                        inGrid.y() < viewport()->geometry().top() && m_rowHeader->geometry().left() <= inGrid.x() &&
                        inGrid.x() <= m_rowHeader->geometry().right();
    return corner ? PointedCell{0, 0} : PointedCell{};
}

int Grid::MouseRow() const {
    return pointedCell().row;
}

int Grid::MouseCol() const {
    return pointedCell().column;
}

void Grid::bringIntoView(int row, int column) {
    if (row < 1 || column < 1)
        return;
    layOut();
    scrollTo(cellIndex(row, column), EnsureVisible);
}

void Grid::revealFarCorner() {
    const int top = TopRow();
    const int left = LeftCol();
    bringIntoView(RowSel(), ColSel());
    if ((TopRow() != top || LeftCol() != left) && m_silences == 0)
        Q_EMIT Revealed();
}

void Grid::bringCellIntoView() {
    bringIntoView(Row(), Col());
}

QRect Grid::cellRectangle() const {
    if (Row() < 1 || Col() < 1)
        return {};
    const QRect cell = visualRect(cellIndex(Row(), Col())) & viewport()->rect();
    return cell.isEmpty() ? QRect() : cell.translated(viewport()->pos());
}

int Grid::CellLeft() const {
    return toTwips(cellRectangle().left());
}

int Grid::CellTop() const {
    return toTwips(cellRectangle().top());
}

int Grid::CellWidth() const {
    return toTwips(cellRectangle().width());
}

int Grid::CellHeight() const {
    return toTwips(cellRectangle().height());
}

QPoint Grid::menuPosition(int row) {
    if (row > 0) {
        bringCellIntoView();
        return mapToGlobal(cellRectangle().bottomLeft());
    }
    bringIntoView(std::min(TopRow(), Rows() - 1), Col());
    const int x = std::max(m_columnHeader->sectionViewportPosition(inView(m_selection).column - 1), 0);
    return m_columnHeader->viewport()->mapToGlobal(QPoint(x, m_columnHeader->height()));
}

int Grid::drawnWidth(int twips) const {
    return std::min(toPixelsRoundedUp(twips), m_columnHeader->maximumSectionSize());
}

int Grid::ColWidth(int column) const {
    if (column == 0)
        return m_fixedColumnTwips;
    const auto place = static_cast<std::size_t>(column) - 1;
    return column > 0 && place < m_columnTwips.size() ? m_columnTwips[place] : 0;
}

void Grid::setColWidth(int column, int twips) {
    if (column < 0 || column >= Cols() || twips < 0)
        return;
    if (column == 0) {
        m_fixedColumnTwips = twips;
        fitFixedColumn();
        return;
    }
    if (const auto section = m_model->shownColumns().section(column))
        m_columnHeader->resizeSection(*section, drawnWidth(twips));
    m_columnTwips[static_cast<std::size_t>(column) - 1] = twips;
}

void Grid::setStretchLastColumn(bool stretch) {
    m_stretchLast = stretch;
    layOut();
}

void Grid::draw(int section, int pixels) {
    m_stretching = true;
    m_columnHeader->resizeSection(section, pixels);
    m_stretching = false;
}

void Grid::stretchLastColumn() {
    const int last = m_columnHeader->count() - 1;
    if (m_columnTwips.size() != static_cast<std::size_t>(Cols() - 1))
        return; // another table is coming: its widths are taken up first
    const auto own = [this](int section) {
        return drawnWidth(m_columnTwips[static_cast<std::size_t>(columnOf(section) - 1)]);
    };
    if (m_stretched >= 0 && m_stretched <= last && (m_stretched != last || !m_stretchLast))
        draw(m_stretched, own(m_stretched)); // not the last one any more
    m_stretched = -1;
    if (!m_stretchLast || last < 0)
        return;
    const int before = m_columnHeader->length() - m_columnHeader->sectionSize(last);
    const int width = std::max(own(last), viewport()->width() - before);
    if (width > own(last))
        m_stretched = last;
    draw(last, width);
}

void Grid::setUserResizing(bool allowed) {
    if (allowed == m_userResizing)
        return;
    m_userResizing = allowed;
    m_columnHeader->setUserResizing(allowed);
    m_rowHeader->setUserResizing(allowed);
}

void Grid::fitRowHeight() {
    m_rowHeader->setDefaultSectionSize(fontMetrics().height() + rowPadding);
}

void Grid::changeEvent(QEvent *event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        fitRowHeight();
}

void Grid::setVisibleFlag(bool visible) {
    m_visible = visible;
    endHidden();
    const bool changes = isHidden() == visible;
    setVisible(visible);
    if (changes)
        Q_EMIT LaidOut();
}

void Grid::endHidden() {
    if (std::exchange(m_hidden, false))
        setUpdatesEnabled(true);
}

GridSilence::GridSilence(Grid &grid)
    : m_grid(grid) {
    ++m_grid.m_silences;
}

GridSilence::~GridSilence() {
    --m_grid.m_silences;
}

GridHidden::GridHidden(Grid &grid)
    : m_grid(grid) {
    // A grid that does not show, or that another one of these hides, needs nothing.
    if (!grid.m_visible)
        return;
    grid.m_visible = false;
    grid.m_hidden = true;
    grid.setUpdatesEnabled(false);
    m_ours = true;
}

GridHidden::~GridHidden() {
    if (!m_ours || !m_grid.m_hidden)
        return; // its flag was set meanwhile
    m_grid.m_visible = true;
    m_grid.endHidden();
}

} // namespace qir
