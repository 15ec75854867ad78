#pragma once

#include "base/FileOps.h"
#include "base/StagedFile.h"

#include <QString>

#include <string>

namespace qir {

/// Where this program keeps what it needs between sessions, private to the user: $XDG_STATE_HOME/qir, without that
/// variable (or with a relative path in it) ~/.local/state/qir.
QString defaultStateFolder();

/// Opens `subfolder` of a state folder and makes what is missing of the path, private to the user.
SystemResult<OpenFile> openStateFolder(FileOps &ops, const QString &stateFolder, const std::string &subfolder);

/// The path of a file with all links followed, so that one file has one such path however it was reached. "" where the
/// system does not tell.
std::string canonicalPath(FileOps &ops, const ResolvedPath &target);

} // namespace qir
