#pragma once

#include <QByteArrayView>

namespace qir {

/// What becomes of the bytes that are read.
enum class BodyMemory {
    Kept,
    GivenBack, ///< They are the reader's alone: what has been read has no value any more.
};

/// Gives the whole pages among these bytes, which are on the heap and of no more use, back to the system. The block
/// that they are part of is still to be freed.
void giveBack(QByteArrayView bytes) noexcept;

} // namespace qir
