#pragma once

#include "base/Result.h"

#include <QString>

namespace qir {

class FileOps;

/// The file that a name chosen in a dialog reaches. Such names are kept in upper case, and disks here tell case apart:
/// part by part along the path the exact entry comes first, else the one entry that differs only in case.
///
/// Gives the path of the existing file or folder so reached; where only the last part is missing, the folder so
/// reached with the last part as given (a new file). Where a folder on the way is missing, the path as given from
/// there on. Two entries that differ only in case, none of them exact, are a failure that names both.
/// "Differs only in case" compares the Unicode upper-cased names. Relative paths start at the current folder.
Result<QString> reachIgnoringCase(const QString &path);
/// The same through other system calls than the running system's.
Result<QString> reachIgnoringCase(FileOps &ops, const QString &path);

} // namespace qir
