#pragma once

#include "base/columns/ColumnBuilder.h"
#include "platform/cells/CellColumn.h"

#include <QString>

#include <algorithm>
#include <vector>

namespace qir::test {

inline ColumnBlock textBlock(const std::vector<QString> &texts) {
    ColumnBuilder builder(ColumnType::Text);
    for (const QString &text : texts)
        builder.add(QStringView(text));
    return builder.take();
}

inline ColumnBlock numberBlock(ColumnType type, const std::vector<double> &numbers) {
    ColumnBuilder builder(type);
    for (const double number : numbers)
        builder.add(number);
    return builder.take();
}

/// A column of blocks of `length` values each, the last one shorter.
template<class Value, class Make>
CellColumn columnOf(const std::vector<Value> &values, std::size_t length, Make make) {
    CellColumn column;
    for (std::size_t first = 0; first < values.size(); first += length)
        column.append(make(
            std::vector<Value>(values.begin() + static_cast<std::ptrdiff_t>(first),
                               values.begin() + static_cast<std::ptrdiff_t>(std::min(first + length, values.size())))));
    return column;
}

} // namespace qir::test
