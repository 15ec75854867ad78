#pragma once

#include "base/columns/ColumnType.h"

#include <QtEndian>

#include <cstddef>
#include <cstdint>

namespace qir {

/// Where a text stands in the bytes of its block. Two numbers each, rather than one boundary between neighbours: a text
/// that is replaced goes behind the others, and records that change places take these along, not their texts.
struct TextPlace {
    std::uint32_t start;
    std::uint32_t length; ///< Both in bytes.
};

// Values as they stand in a column's memory: little-endian, one behind the other, not necessarily aligned. A value
// takes one byte for bool and byte, 2 for int, 4 for long, 8 for double and date; a text stands there by its place.

/// valueSize() is 1 shifted by this.
constexpr unsigned valueShift(ColumnType type) {
    switch (type) {
    case ColumnType::Bool:
    case ColumnType::Byte:
        return 0;
    case ColumnType::Int:
        return 1;
    case ColumnType::Long:
        return 2;
    case ColumnType::Double:
    case ColumnType::Date:
    case ColumnType::Text:
        break;
    }
    static_assert(sizeof(double) == 8 && sizeof(TextPlace) == 8);
    return 3;
}

constexpr std::size_t valueSize(ColumnType type) {
    return std::size_t{1} << valueShift(type);
}

/// The number that stands there; the type is not text.
inline double numberAt(ColumnType type, const char *at) {
    switch (type) {
    case ColumnType::Bool:
    case ColumnType::Byte:
        return static_cast<unsigned char>(*at);
    case ColumnType::Int:
        return qFromLittleEndian<std::int16_t>(at);
    case ColumnType::Long:
        return qFromLittleEndian<std::int32_t>(at);
    case ColumnType::Double:
    case ColumnType::Date:
    case ColumnType::Text:
        break;
    }
    return qFromLittleEndian<double>(at);
}

/// Puts a number there that the type holds (base/columns/FittingNumber.h).
inline void putNumber(ColumnType type, char *at, double number) {
    switch (type) {
    case ColumnType::Bool:
    case ColumnType::Byte:
        *at = static_cast<char>(static_cast<unsigned char>(number));
        return;
    case ColumnType::Int:
        return qToLittleEndian(static_cast<std::int16_t>(number), at);
    case ColumnType::Long:
        return qToLittleEndian(static_cast<std::int32_t>(number), at);
    case ColumnType::Double:
    case ColumnType::Date:
    case ColumnType::Text:
        break;
    }
    qToLittleEndian(number, at);
}

inline TextPlace placeAt(const char *at) {
    return {qFromLittleEndian<std::uint32_t>(at), qFromLittleEndian<std::uint32_t>(at + sizeof(std::uint32_t))};
}

inline void putPlace(char *at, TextPlace place) {
    qToLittleEndian(place.start, at);
    qToLittleEndian(place.length, at + sizeof(std::uint32_t));
}

} // namespace qir
