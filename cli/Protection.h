#pragma once

#include <QString>

namespace qir {

/// True when the header of a database file says that a password is needed. Reads 14 bytes at most; whatever cannot be
/// read is not protected, and opening it tells why.
bool needsPassword(const QString &file);

} // namespace qir
