#pragma once

#include <cstddef>

/// What a database file holds at most. Whatever would pass a limit fails there and then, never first at a save; a
/// reader refuses a file beyond them.
namespace qir::limits {

inline constexpr std::size_t tables = 4096;
inline constexpr std::size_t fields = 1024;                  // of a table
inline constexpr std::size_t records = std::size_t{1} << 24; // of a table
inline constexpr std::size_t nameLength = 255;               // of a table's or field's name, in code points
inline constexpr int textSize = 65535;                       // of a text field, in code points

} // namespace qir::limits
