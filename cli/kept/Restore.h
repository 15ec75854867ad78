#pragma once

#include "base/FileOps.h"

#include <QString>

namespace qir {

/// Puts the content of one file in the place of another one, in one step: what stood there is kept beside it under the
/// name that is given back, "" where nothing stood there. A file that is marked read-only, or that has further names,
/// is refused. Throws FileError, and everything is as it was then.
QString restoreOver(const QString &file, const QString &version, FileOps &ops = FileOps::system());

} // namespace qir
