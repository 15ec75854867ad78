#include "platform/grid/GridSelection.h"

#include <algorithm>

namespace qir {

namespace {

int cut(int index, int count) {
    return std::clamp(index, std::min(1, count - 1), count - 1);
}

} // namespace

GridRange GridSelection::range() const {
    return {std::min(row, rowEnd), std::min(column, columnEnd), std::max(row, rowEnd), std::max(column, columnEnd)};
}

GridSelection singleCell(int row, int column) {
    return {row, column, row, column};
}

GridSelection cutTo(const GridSelection &selection, const GridExtent &extent) {
    return {cut(selection.row, extent.rows), cut(selection.column, extent.columns), cut(selection.rowEnd, extent.rows),
            cut(selection.columnEnd, extent.columns)};
}

std::optional<GridSelection> moved(const GridSelection &from, int key, Qt::KeyboardModifiers modifiers,
                                   const GridExtent &extent) {
    const bool extend = modifiers.testFlag(Qt::ShiftModifier);
    const bool toEdge = modifiers.testFlag(Qt::ControlModifier);
    int row = extend ? from.rowEnd : from.row;
    int column = extend ? from.columnEnd : from.column;
    const int lastRow = extent.rows - 1;
    const int lastColumn = extent.columns - 1;
    switch (key) {
    case Qt::Key_Up:
        row = toEdge ? 1 : row - 1;
        break;
    case Qt::Key_Down:
        row = toEdge ? lastRow : row + 1;
        break;
    case Qt::Key_Left:
        column = toEdge ? 1 : column - 1;
        break;
    case Qt::Key_Right:
        column = toEdge ? lastColumn : column + 1;
        break;
    case Qt::Key_Home:
        column = 1;
        row = toEdge ? 1 : row;
        break;
    case Qt::Key_End:
        column = lastColumn;
        row = toEdge ? lastRow : row;
        break;
    case Qt::Key_PageUp:
        row = toEdge ? 1 : row - std::max(extent.pageRows, 1);
        break;
    case Qt::Key_PageDown:
        // The page is cut to the rows there are before it is added: no overflow.
        row = toEdge ? lastRow : row + std::min(std::max(extent.pageRows, 1), lastRow - std::min(row, lastRow));
        break;
    default:
        return std::nullopt;
    }
    row = cut(row, extent.rows);
    column = cut(column, extent.columns);
    return extend ? GridSelection{from.row, from.column, row, column} : singleCell(row, column);
}

} // namespace qir
