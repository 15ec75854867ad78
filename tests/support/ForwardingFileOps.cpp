#include "tests/support/ForwardingFileOps.h"

#include <algorithm>

namespace qir {

const char *fileCallName(FileCall call) {
    switch (call) {
    case FileCall::OpenAt:
        return "openAt";
    case FileCall::Close:
        return "close";
    case FileCall::Status:
        return "status";
    case FileCall::StatusAt:
        return "statusAt";
    case FileCall::Entries:
        return "entries";
    case FileCall::ReadLinkAt:
        return "readLinkAt";
    case FileCall::ReadAt:
        return "readAt";
    case FileCall::Write:
        return "write";
    case FileCall::WriteAt:
        return "writeAt";
    case FileCall::Allocate:
        return "allocate";
    case FileCall::Truncate:
        return "truncate";
    case FileCall::Sync:
        return "sync";
    case FileCall::SyncData:
        return "syncData";
    case FileCall::SetTimeToNow:
        return "setTimeToNow";
    case FileCall::SetMode:
        return "setMode";
    case FileCall::SetOwner:
        return "setOwner";
    case FileCall::AttributeNames:
        return "attributeNames";
    case FileCall::Attribute:
        return "attribute";
    case FileCall::SetAttribute:
        return "setAttribute";
    case FileCall::LinkFile:
        return "linkFile";
    case FileCall::RenameAt:
        return "renameAt";
    case FileCall::UnlinkAt:
        return "unlinkAt";
    case FileCall::MakeFolder:
        return "makeFolder";
    case FileCall::Lock:
        return "lock";
    }
    return "?";
}

template<class Call>
auto ForwardingFileOps::guarded(FileCall kind, const std::string &name, Call call) -> decltype(call()) {
    if (const auto error = before(kind, name))
        return tl::unexpected(*error);
    auto result = call();
    if (result)
        if (const auto error = after(kind))
            return tl::unexpected(*error);
    return result;
}

SystemResult<int> ForwardingFileOps::doOpenAt(int folder, const std::string &name, int flags, mode_t mode) {
    if (const auto error = before(FileCall::OpenAt, name))
        return tl::unexpected(*error);
    // Not through after(): a descriptor that the caller does not learn of would stay open.
    return m_under.openAt(folder, name, flags, mode);
}

SystemResult<void> ForwardingFileOps::doClose(int file) {
    // Closed in any case, as the system does, so that no test leaks descriptors.
    const auto closed = m_under.close(file);
    if (const auto error = before(FileCall::Close, {}))
        return tl::unexpected(*error);
    return closed;
}

SystemResult<struct stat> ForwardingFileOps::doStatus(int file) {
    return guarded(FileCall::Status, {}, [&] { return m_under.status(file); });
}

SystemResult<struct stat> ForwardingFileOps::doStatusAt(int folder, const std::string &name, FollowLinks follow) {
    return guarded(FileCall::StatusAt, name, [&] { return m_under.statusAt(folder, name, follow); });
}

SystemResult<std::vector<std::string>> ForwardingFileOps::doEntries(int folder, const std::string &name) {
    return guarded(FileCall::Entries, name, [&] { return m_under.entries(folder, name); });
}

SystemResult<std::string> ForwardingFileOps::doReadLinkAt(int folder, const std::string &name) {
    return guarded(FileCall::ReadLinkAt, name, [&] { return m_under.readLinkAt(folder, name); });
}

SystemResult<std::size_t> ForwardingFileOps::doReadAt(int file, std::span<char> bytes, std::uint64_t offset) {
    return guarded(FileCall::ReadAt, {}, [&] {
        return m_under.readAt(file, bytes.first(std::min(bytes.size(), allowed(FileCall::ReadAt, bytes.size()))),
                              offset);
    });
}

SystemResult<std::size_t> ForwardingFileOps::doWrite(int file, QByteArrayView bytes) {
    return guarded(FileCall::Write, {}, [&] {
        return m_under.write(file, bytes.first(static_cast<qsizetype>(
                                       allowed(FileCall::Write, static_cast<std::size_t>(bytes.size())))));
    });
}

SystemResult<std::size_t> ForwardingFileOps::doWriteAt(int file, QByteArrayView bytes, std::uint64_t offset) {
    return guarded(FileCall::WriteAt, {}, [&] {
        return m_under.writeAt(
            file,
            bytes.first(static_cast<qsizetype>(allowed(FileCall::WriteAt, static_cast<std::size_t>(bytes.size())))),
            offset);
    });
}

SystemResult<void> ForwardingFileOps::doAllocate(int file, std::uint64_t size) {
    return guarded(FileCall::Allocate, {}, [&] { return m_under.allocate(file, size); });
}

SystemResult<void> ForwardingFileOps::doTruncate(int file, std::uint64_t size) {
    return guarded(FileCall::Truncate, {}, [&] { return m_under.truncate(file, size); });
}

SystemResult<void> ForwardingFileOps::doSync(int file) {
    return guarded(FileCall::Sync, {}, [&] { return m_under.sync(file); });
}

SystemResult<void> ForwardingFileOps::doSyncData(int file) {
    return guarded(FileCall::SyncData, {}, [&] { return m_under.syncData(file); });
}

SystemResult<void> ForwardingFileOps::doSetTimeToNow(int file) {
    return guarded(FileCall::SetTimeToNow, {}, [&] { return m_under.setTimeToNow(file); });
}

SystemResult<void> ForwardingFileOps::doSetMode(int file, mode_t mode) {
    return guarded(FileCall::SetMode, {}, [&] { return m_under.setMode(file, mode); });
}

SystemResult<void> ForwardingFileOps::doSetOwner(int file, uid_t user, gid_t group) {
    return guarded(FileCall::SetOwner, {}, [&] { return m_under.setOwner(file, user, group); });
}

SystemResult<std::vector<std::string>> ForwardingFileOps::doAttributeNames(int file) {
    return guarded(FileCall::AttributeNames, {}, [&] { return m_under.attributeNames(file); });
}

SystemResult<std::string> ForwardingFileOps::doAttribute(int file, const std::string &name) {
    return guarded(FileCall::Attribute, name, [&] { return m_under.attribute(file, name); });
}

SystemResult<void> ForwardingFileOps::doSetAttribute(int file, const std::string &name, const std::string &value) {
    return guarded(FileCall::SetAttribute, name, [&] { return m_under.setAttribute(file, name, value); });
}

SystemResult<void> ForwardingFileOps::doLinkFile(int file, int folder, const std::string &name) {
    return guarded(FileCall::LinkFile, name, [&] { return m_under.linkFile(file, folder, name); });
}

SystemResult<void> ForwardingFileOps::doRenameAt(int folder, const std::string &from, const std::string &to,
                                                 unsigned flags) {
    return guarded(FileCall::RenameAt, to, [&] { return m_under.renameAt(folder, from, to, flags); });
}

SystemResult<void> ForwardingFileOps::doUnlinkAt(int folder, const std::string &name) {
    return guarded(FileCall::UnlinkAt, name, [&] { return m_under.unlinkAt(folder, name); });
}

SystemResult<void> ForwardingFileOps::doMakeFolder(int folder, const std::string &name, mode_t mode) {
    return guarded(FileCall::MakeFolder, name, [&] { return m_under.makeFolder(folder, name, mode); });
}

SystemResult<void> ForwardingFileOps::doLock(int file, LockKind kind) {
    return guarded(FileCall::Lock, {}, [&] { return m_under.lock(file, kind); });
}

} // namespace qir
