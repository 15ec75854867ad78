#include "base/state/StateFolder.h"

#include <QDir>

#include <unistd.h>

#include <cerrno>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t privateFolder = 0700;

/// What is put into a new folder is lost by a power failure together with the folder, whatever was synced in it.
SystemResult<void> syncParent(FileOps &ops, const std::string &folder) {
    const auto place = ResolvedPath::of(ops, folder);
    return place ? place->syncFolder(ops) : tl::unexpected(place.error());
}

} // namespace

QString defaultStateFolder() {
    const QString home = qEnvironmentVariable("XDG_STATE_HOME");
    const QString base = home.startsWith(u'/') ? home : QDir::homePath() + u"/.local/state"_s;
    return base + u"/qir"_s;
}

SystemResult<OpenFile> openStateFolder(FileOps &ops, const QString &stateFolder, const std::string &subfolder) {
    const std::string path = systemPath(stateFolder) + '/' + subfolder;
    auto opened = OpenFile::openAt(ops, AT_FDCWD, path, O_RDONLY | O_DIRECTORY);
    if (opened || opened.error().number != ENOENT)
        return opened;
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const auto made = ops.makeFolder(AT_FDCWD, path.substr(0, end), privateFolder);
        if (made)
            if (const auto synced = syncParent(ops, path.substr(0, end)); !synced)
                return tl::unexpected(synced.error());
        // Folders further up may be there already, or not be ours to make: whether it is enough shows in the end.
        if (end == std::string::npos) {
            if (!made && made.error().number != EEXIST)
                return tl::unexpected(made.error());
            break;
        }
    }
    return OpenFile::openAt(ops, AT_FDCWD, path, O_RDONLY | O_DIRECTORY);
}

QString whyNotTrusted(const struct stat &status) {
    if (status.st_uid != ::geteuid())
        return u"it belongs to another user"_s;
    if (status.st_mode & (S_IWGRP | S_IWOTH))
        return u"other users may change it (its permissions must be private to you)"_s;
    return {};
}

std::string canonicalPath(FileOps &ops, const ResolvedPath &target) {
    const auto folder = ops.readLinkAt(AT_FDCWD, "/proc/self/fd/" + std::to_string(target.folder.descriptor()));
    return folder ? (*folder == "/" ? *folder : *folder + '/') + target.name : std::string();
}

FilePlace filePlace(FileOps &ops, const QString &path) {
    FilePlace place;
    const auto resolved = ResolvedPath::of(ops, systemPath(path));
    if (!resolved)
        return place;
    place.path = canonicalPath(ops, *resolved);
    if (const auto status = ops.statusAt(resolved->folder.descriptor(), resolved->name, FollowLinks::No)) {
        place.device = status->st_dev;
        place.inode = status->st_ino;
    }
    return place;
}

} // namespace qir
