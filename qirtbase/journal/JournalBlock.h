#pragma once

#include "base/columns/ColumnBlock.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace qir {

/// A block as a journal keeps it, without what its arrays have besides the values.
QByteArray encodeBlock(const ColumnBlock &block);
/// The block of such bytes, which nobody vouches for; nothing where they are none. Whether texts are UTF-8, and numbers
/// fit, is not looked at.
std::optional<ColumnBlock> decodeBlock(QByteArrayView bytes);

} // namespace qir
