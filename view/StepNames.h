#pragma once

#include "platform/grid/Grid.h"

#include <QString>

namespace qir {

/// The name of the field that a column shows, from the column's header.
inline QString fieldNameOf(const Grid &grid, int column) {
    const QString header = grid.TextMatrix(0, column);
    const qsizetype type = header.lastIndexOf(QLatin1StringView(" ["));
    return type < 0 ? header : header.first(type);
}

} // namespace qir
