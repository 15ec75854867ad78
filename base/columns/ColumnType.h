#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace qir {

/// The types that a field can have. The numbers are the type codes, in calls and on disk: never change one. 5, 6 and 9
/// are no types.
enum class ColumnType : std::uint8_t { Bool = 1, Byte = 2, Int = 3, Long = 4, Double = 7, Date = 8, Text = 10 };

/// The type of a code, nothing for any other number.
constexpr std::optional<ColumnType> columnType(int code) {
    switch (code) {
    case 1:
    case 2:
    case 3:
    case 4:
    case 7:
    case 8:
    case 10:
        return static_cast<ColumnType>(code);
    default:
        return std::nullopt;
    }
}

} // namespace qir
