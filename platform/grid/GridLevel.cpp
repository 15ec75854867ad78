// Keeping a grid level with the one beside it: how far it scrolls, how high its rows are.

#include "platform/grid/Grid.h"

#include "platform/grid/GridHeader.h"
#include "platform/grid/GridModel.h"

#include <QPaintEvent>
#include <QScrollBar>

#include <algorithm>

namespace qir {

namespace {

/// Where a section begins that may stand beyond the last one.
int beginOf(const QHeaderView &header, int section) {
    const int beyond = section - header.count();
    return beyond < 0 ? header.sectionPosition(section) : header.length() + beyond * header.defaultSectionSize();
}

/// Lets a bar go at least to `last`, from where it stood before its view cut the range to what it holds.
void extend(QScrollBar &bar, int last, int value) {
    bar.setMaximum(std::max(bar.maximum(), last));
    bar.setValue(value);
}

} // namespace

void Grid::updateGeometries() {
    // A bar that comes or goes resizes the viewport, which asks for this once more.
    if (m_updatingGeometries)
        return;
    m_updatingGeometries = true;
    const int top = verticalScrollBar()->value();
    const int left = horizontalScrollBar()->value();
    const QSize before = viewport()->size();
    stretchLastColumn();
    QTableView::updateGeometries();
    if (viewport()->size() != before) {
        stretchLastColumn();
        QTableView::updateGeometries(); // the ranges were those of the viewport before
    }
    if (!m_filling)
        m_reach = {verticalScrollBar()->maximum() + 1, horizontalScrollBar()->maximum() + 1};
    extend(*verticalScrollBar(), m_leastReach.row - 1, top);
    extend(*horizontalScrollBar(), m_leastReach.column - 1, left);
    alignHeaders();
    m_updatingGeometries = false;
    if (!m_filling)
        Q_EMIT LaidOut();
}

void Grid::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    alignHeaders();
}

/// The first row and column always begin at the edge: the view by itself lets the last ones end at the other edge,
/// which is another place in a grid of another length, and knows of no room beyond them.
void Grid::alignHeaders() {
    const auto align = [this](QHeaderView &header, int offset) {
        if (header.offset() == offset)
            return;
        header.setOffset(offset);
        viewport()->update();
    };
    align(*m_rowHeader, beginOf(*m_rowHeader, verticalScrollBar()->value()));
    const int first = horizontalScrollBar()->value();
    int left = beginOf(*m_columnHeader, first);
    if (first > 0 && first == m_reach.column - 1) // a last column that is wider than the grid shows its end there
        left = std::max(left, m_columnHeader->length() - viewport()->width());
    align(*m_columnHeader, left);
}

void Grid::paintEvent(QPaintEvent *event) {
    // Where every row is scrolled away the view would look at each of them.
    if (m_rowHeader->offset() < std::max(m_rowHeader->length(), 1) &&
        m_columnHeader->offset() < std::max(m_columnHeader->length(), 1))
        QTableView::paintEvent(event);
}

void Grid::setLeastReach(const GridReach &least) {
    if (least == m_leastReach)
        return;
    m_leastReach = least;
    updateGeometries();
}

void Grid::followRowHeight(const Grid &leader, int row) {
    if (const auto section = leader.m_model->shownRows().section(row); section && row < leader.Rows())
        setRowHeight(row, leader.m_rowHeader->sectionSize(*section));
}

void Grid::followRowHeights(const Grid &leader) {
    for (const auto &[row, pixels] : leader.m_rowHeights)
        setRowHeight(row, pixels);
}

void Grid::followColumnWidth(const Grid &leader, int column) {
    if (column >= 1 && column < std::min(Cols(), leader.Cols()))
        setColWidth(column, leader.ColWidth(column));
}

/// Kept also for a row that the grid does not have yet.
void Grid::setRowHeight(int row, int pixels) {
    m_rowHeights[row] = pixels;
    if (const auto section = m_model->shownRows().section(row); section && row < Rows())
        m_rowHeader->resizeSection(*section, pixels);
}

void Grid::restoreRowHeights() {
    for (const auto &[row, pixels] : m_rowHeights) {
        if (const auto section = m_model->shownRows().section(row); section && row < Rows())
            m_rowHeader->resizeSection(*section, pixels);
    }
}

} // namespace qir
