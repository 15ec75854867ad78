#pragma once

#include "platform/grid/GridRange.h"

#include <QString>

#include <functional>

namespace qir {

/// The text of a block of cells: cells of a row joined by tabs, rows by carriage returns, no separator at the end.
/// `read` fills its string with the text of a cell.
QString clipText(const GridRange &block, const std::function<void(int row, int column, QString &text)> &read);

/// Takes such a text apart and calls `write` for each value that falls into the block: values go across from its first
/// column, rows down from its first row; those beyond its right or bottom edge are dropped.
void layClipText(QStringView text, const GridRange &block,
                 const std::function<void(int row, int column, QStringView value)> &write);

} // namespace qir
