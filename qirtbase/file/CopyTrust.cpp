#include "qirtbase/file/CopyTrust.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace qir {

namespace {

/// With an access list the bits of the group are only the most that the list gives to anybody.
SystemResult<bool> hasAccessList(FileOps &ops, int file) {
    const auto list = ops.attribute(file, "system.posix_acl_access");
    if (!list && list.error().number != ENODATA && !isUnsupported(list.error()))
        return tl::unexpected(list.error());
    return list.has_value();
}

/// Whether the machine's list of users says that somebody is in a group. The group of a file that he has made does not:
/// it may come from the folder.
bool isMember(uid_t user, gid_t group) {
    constexpr std::size_t roomMax = std::size_t{1} << 20;
    std::vector<char> room(std::size_t{1} << 12);
    struct passwd entry {};
    struct passwd *found = nullptr;
    while (::getpwuid_r(user, &entry, room.data(), room.size(), &found) == ERANGE && room.size() < roomMax)
        room.resize(room.size() * 2);
    if (!found)
        return false;
    std::vector<gid_t> groups(64);
    int count = static_cast<int>(groups.size());
    while (::getgrouplist(found->pw_name, found->pw_gid, groups.data(), &count) < 0 && groups.size() < roomMax) {
        groups.resize(std::max(groups.size() * 2, static_cast<std::size_t>(count)));
        count = static_cast<int>(groups.size());
    }
    groups.resize(std::min(groups.size(), static_cast<std::size_t>(count)));
    return std::ranges::find(groups, group) != groups.end();
}

} // namespace

SystemResult<bool> CopyTrust::believes(int folder, bool isBeside, const struct stat &copy) const {
    if (!S_ISREG(copy.st_mode))
        return false;
    const auto there = m_ops.status(folder);
    if (!there)
        return tl::unexpected(there.error());
    const bool isReplaceable = isBeside && hasThisNameOnly();
    if (isReplaceable && !(there->st_mode & S_ISVTX))
        return true;
    if (isOpenToMore(copy))
        return false;
    if (isReplaceable && copy.st_uid == there->st_uid)
        return true;
    const auto writes = mayWrite(copy.st_uid);
    if (!writes || *writes)
        return writes;
    // A folder's owner lets in whom he likes.
    const auto lets = isReplaceable ? SystemResult<bool>(true) : mayWrite(there->st_uid);
    return lets && *lets ? onlyWritersPutFilesInto(folder, *there) : lets;
}

/// Asked of the name: the number alone would say so too after this one was taken away.
bool CopyTrust::hasThisNameOnly() const {
    const auto named = m_ops.statusAt(m_file.place.folder.descriptor(), m_file.place.name, FollowLinks::No);
    return named && named->st_dev == m_file.status.st_dev && named->st_ino == m_file.status.st_ino &&
           named->st_nlink < 2;
}

/// Whoever made it, others who may not write the file can have written into it.
bool CopyTrust::isOpenToMore(const struct stat &copy) const {
    const struct stat &file = m_file.status;
    if (file.st_mode & S_IWOTH)
        return false;
    const bool isGroupsToo = (file.st_mode & S_IWGRP) && copy.st_gid == file.st_gid;
    return (copy.st_mode & S_IWOTH) || ((copy.st_mode & S_IWGRP) && !isGroupsToo);
}

SystemResult<bool> CopyTrust::groupMayWrite() const {
    if (!(m_file.status.st_mode & S_IWGRP))
        return false;
    return hasAccessList(m_ops, m_file.descriptor).map([](bool has) { return !has; });
}

SystemResult<bool> CopyTrust::mayWrite(uid_t user) const {
    const struct stat &file = m_file.status;
    if (user == 0 || user == file.st_uid || user == ::geteuid() || (file.st_mode & S_IWOTH))
        return true;
    return groupMayWrite().map([&](bool may) { return may && isMember(user, file.st_gid); });
}

SystemResult<bool> CopyTrust::onlyWritersPutFilesInto(int folder, const struct stat &there) const {
    if (there.st_mode & S_IWOTH)
        return false;
    if (!(there.st_mode & S_IWGRP))
        return true;
    if (there.st_gid != m_file.status.st_gid)
        return false;
    const auto may = groupMayWrite();
    if (!may || !*may)
        return may;
    return hasAccessList(m_ops, folder).map([](bool has) { return !has; });
}

} // namespace qir
