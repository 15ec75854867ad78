#pragma once

#include "base/FileOps.h"
#include "base/StagedFile.h"

#include <QString>

#include <cstdint>
#include <string>

namespace qir {

/// Where this program keeps what it needs between sessions, private to the user: $XDG_STATE_HOME/qir, without that
/// variable (or with a relative path in it) ~/.local/state/qir.
QString defaultStateFolder();

/// Opens `subfolder` of a state folder and makes what is missing of the path, private to the user.
SystemResult<OpenFile> openStateFolder(FileOps &ops, const QString &stateFolder, const std::string &subfolder);

/// Why what has this status must not be trusted to be our own work, "" where nobody else can have put it there or
/// changed it.
QString whyNotTrusted(const struct stat &status);

/// The path of a file with all links followed, so that one file has one such path however it was reached. "" where the
/// system does not tell.
std::string canonicalPath(FileOps &ops, const ResolvedPath &target);

/// Where a file stands, and by what it is known when it has moved or is reached by another link or mount.
struct FilePlace {
    std::string path; ///< canonicalPath()
    std::uint64_t device = 0;
    std::uint64_t inode = 0; ///< 0 where the system does not tell.

    bool isSameFileAs(const FilePlace &other) const {
        return inode != 0 && inode == other.inode && device == other.device;
    }
    bool isSamePathAs(const FilePlace &other) const { return !path.empty() && path == other.path; }
    bool operator==(const FilePlace &) const = default;
};

FilePlace filePlace(FileOps &ops, const QString &path);

} // namespace qir
