#pragma once

#include "qirtbase/model/Column.h"

#include <cstddef>
#include <span>
#include <vector>

namespace qir {

/// Bytes that a column takes in a body: its numbers, or the length of each text and then the texts.
std::size_t writtenSize(const Column &column);

/// Writes columns of one length, one behind the other, into room of just as many bytes as they take together. Long ones
/// are written side by side, on the cores that there are. Throws std::length_error where the room is not theirs;
/// nothing is ever written beside it.
void writeColumns(std::span<const Column *const> columns, std::span<char> room);

} // namespace qir
