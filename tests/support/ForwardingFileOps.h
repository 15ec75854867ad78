#pragma once

#include "base/FileOps.h"

#include <optional>

namespace qir {

enum class FileCall {
    OpenAt,
    Close,
    Status,
    StatusAt,
    Entries,
    ReadLinkAt,
    ReadAt,
    Write,
    WriteAt,
    Allocate,
    Truncate,
    Sync,
    SyncData,
    SetTimeToNow,
    SetMode,
    SetOwner,
    AttributeNames,
    Attribute,
    SetAttribute,
    LinkFile,
    RenameAt,
    UnlinkAt,
    MakeFolder,
    Lock,
};

const char *fileCallName(FileCall call);

/// Hands every call on to other FileOps and lets a subclass step in: the base of the tests' stand-ins.
class ForwardingFileOps : public FileOps {
public:
    explicit ForwardingFileOps(FileOps &under = FileOps::system())
        : m_under(under) {}

protected:
    /// Asked before a call is handed on; an error makes it fail with nothing done. `name` is the one that the call is
    /// about, "" for calls on descriptors.
    virtual std::optional<SystemError> before(FileCall call, const std::string &name) {
        (void)call;
        (void)name;
        return std::nullopt;
    }
    /// Asked after a call that succeeded; an error is given to the caller although the call was done.
    virtual std::optional<SystemError> after(FileCall call) {
        (void)call;
        return std::nullopt;
    }
    /// How many of `size` bytes a read or write call gets to do.
    virtual std::size_t allowed(FileCall call, std::size_t size) {
        (void)call;
        return size;
    }
    FileOps &under() { return m_under; }

    SystemResult<int> doOpenAt(int folder, const std::string &name, int flags, mode_t mode) override;
    SystemResult<void> doClose(int file) override;
    SystemResult<struct stat> doStatus(int file) override;
    SystemResult<struct stat> doStatusAt(int folder, const std::string &name, FollowLinks follow) override;
    SystemResult<std::vector<std::string>> doEntries(int folder, const std::string &name) override;
    SystemResult<std::string> doReadLinkAt(int folder, const std::string &name) override;
    SystemResult<std::size_t> doReadAt(int file, std::span<char> bytes, std::uint64_t offset) override;
    SystemResult<std::size_t> doWrite(int file, QByteArrayView bytes) override;
    SystemResult<std::size_t> doWriteAt(int file, QByteArrayView bytes, std::uint64_t offset) override;
    SystemResult<void> doAllocate(int file, std::uint64_t size) override;
    SystemResult<void> doTruncate(int file, std::uint64_t size) override;
    SystemResult<void> doSync(int file) override;
    SystemResult<void> doSyncData(int file) override;
    SystemResult<void> doSetTimeToNow(int file) override;
    SystemResult<void> doSetMode(int file, mode_t mode) override;
    SystemResult<void> doSetOwner(int file, uid_t user, gid_t group) override;
    SystemResult<std::vector<std::string>> doAttributeNames(int file) override;
    SystemResult<std::string> doAttribute(int file, const std::string &name) override;
    SystemResult<void> doSetAttribute(int file, const std::string &name, const std::string &value) override;
    SystemResult<void> doLinkFile(int file, int folder, const std::string &name) override;
    SystemResult<void> doRenameAt(int folder, const std::string &from, const std::string &to, unsigned flags) override;
    SystemResult<void> doUnlinkAt(int folder, const std::string &name) override;
    SystemResult<void> doMakeFolder(int folder, const std::string &name, mode_t mode) override;
    SystemResult<void> doLock(int file, LockKind kind) override;

private:
    template<class Call>
    auto guarded(FileCall kind, const std::string &name, Call call) -> decltype(call());

    FileOps &m_under;
};

} // namespace qir
