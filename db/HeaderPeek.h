#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace qir {

/// What can be told of a database file without opening it: it begins with ten characters that are a whole number, the
/// length of the header behind them. `path` is the file's own, no name that is still to be looked up.
///
/// The header's first four bytes, or all of one that is shorter. Nothing where no regular file stands there (opening a
/// pipe or a device could wait for ever), where it cannot be read, does not begin like that, or is too short for its
/// header.
std::optional<QByteArray> peekHeader(const QString &path);

} // namespace qir
