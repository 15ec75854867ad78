#pragma once

#include "qirtbase/model/BodyMemory.h"
#include "qirtbase/model/Column.h"

#include <QByteArrayView>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace qir {

/// Bytes that the length of a text takes in a body.
inline constexpr std::size_t textLengthSize = sizeof(std::uint32_t);

/// A column as it stands in a body; its place is known before its values are looked at.
struct ColumnBytes {
    ColumnType type;
    std::size_t size;      ///< Of a text field, in code points.
    QByteArrayView values; ///< Numbers, or the length of each text.
    QByteArrayView texts;  ///< As many bytes as these lengths together.
};

/// What is wrong with a column's values, in words.
struct ColumnRefusal {
    QString text;
};

/// The columns that stand there. Large ones are read side by side, on the cores that there are. Throws ColumnRefusal,
/// for the first that is wrong, and std::bad_alloc.
std::vector<Column> readColumns(std::span<const ColumnBytes> columns, BodyMemory memory);

} // namespace qir
