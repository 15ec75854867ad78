#pragma once

#include "base/FileOps.h"
#include "base/StagedFile.h"
#include "qirtbase/container/FileHeader.h"

#include <QString>
#include <QStringList>

#include <string>

namespace qir {

/// The tag of the hidden files of a save that follows the version with this save id.
std::string leftoverTag(const FileIdentifier &saveId);

/// Cleans a folder of what saves that were killed have left there: hidden files that nobody holds any more. The version
/// that was meant to go goes; a whole version of our file that is not that one is kept, under a name that shows; what
/// is not whole goes once it is an hour old. Returns what the user should know. `name` is the file's, for texts and
/// names.
QStringList removeLeftovers(FileOps &ops, const ResolvedPath &place, const FileIdentifier &fileId, const QString &name);

} // namespace qir
