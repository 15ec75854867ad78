#pragma once

#include <QByteArrayView>
#include <QString>

#include <tl/expected.hpp>

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace qir {

/// A failed system call.
struct SystemError {
    int number; ///< The errno value.
};

template<class T>
using SystemResult = tl::expected<T, SystemError>;

/// What an errno value means to the person who wanted a file read or written: "the disk is full", "no permission".
/// Values without words of their own get the system's text.
QString systemErrorWords(SystemError error);

/// A path as the system takes it.
std::string systemPath(const QString &path);

enum class FollowLinks { No, Yes };
enum class LockKind { Shared, Exclusive, Release };

/// The system calls that loading, saving, the journal and exports are made of, so that tests can stand in for the
/// system: fail a chosen call, record all of them.
///
/// A folder argument is an open folder that relative names count from, or AT_FDCWD. Every call gives its result or the
/// errno value; none throws. A call that a signal interrupted is made again, but not without end: after
/// `interruptedTries` in a row it gives EINTR. Naming calls (linkAt, renameAt, unlinkAt) are not repeated, since on
/// some file systems the interrupted one may have been done: their caller looks what stands there.
class FileOps {
public:
    static constexpr int interruptedTries = 64;

    FileOps() = default;
    virtual ~FileOps() = default;
    FileOps(const FileOps &) = delete;
    FileOps &operator=(const FileOps &) = delete;

    /// The running system.
    static FileOps &system();

    /// Gives a descriptor that the caller closes; O_CLOEXEC is added to `flags`.
    SystemResult<int> openAt(int folder, const std::string &name, int flags, mode_t mode = 0);
    SystemResult<void> close(int file);
    SystemResult<struct stat> status(int file);
    SystemResult<struct stat> statusAt(int folder, const std::string &name, FollowLinks follow);
    /// The names in a folder in no particular order, without "." and "..".
    SystemResult<std::vector<std::string>> entries(int folder, const std::string &name);
    SystemResult<std::string> readLinkAt(int folder, const std::string &name);

    /// May read less than there is room for; 0 only at the end of the file.
    SystemResult<std::size_t> readAt(int file, std::span<char> bytes, std::uint64_t offset);
    /// May write less than it is given.
    SystemResult<std::size_t> write(int file, QByteArrayView bytes);
    SystemResult<std::size_t> writeAt(int file, QByteArrayView bytes, std::uint64_t offset);
    /// Reserves room on the disk for bytes 0 to `size`; the file stays as long as it is.
    SystemResult<void> allocate(int file, std::uint64_t size);
    SystemResult<void> truncate(int file, std::uint64_t size);
    SystemResult<void> sync(int file);
    SystemResult<void> syncData(int file);

    /// Sets the times of the last access and change to now.
    SystemResult<void> setTimeToNow(int file);
    SystemResult<void> setMode(int file, mode_t mode);
    /// An id of -1 stays as it is.
    SystemResult<void> setOwner(int file, uid_t user, gid_t group);
    SystemResult<std::vector<std::string>> attributeNames(int file);
    SystemResult<std::string> attribute(int file, const std::string &name);
    SystemResult<void> setAttribute(int file, const std::string &name, const std::string &value);

    /// Gives an unnamed or named open file one more name; fails with EEXIST when the name is taken.
    SystemResult<void> linkFile(int file, int folder, const std::string &name);
    /// `flags` as for renameat2: 0, RENAME_NOREPLACE or RENAME_EXCHANGE.
    SystemResult<void> renameAt(int folder, const std::string &from, const std::string &to, unsigned flags);
    SystemResult<void> unlinkAt(int folder, const std::string &name);
    SystemResult<void> makeFolder(int folder, const std::string &name, mode_t mode);
    /// Takes or gives back a lock on the whole file for this open description, without waiting: EWOULDBLOCK when
    /// another one, in this process too, holds it. It ends with the last descriptor, so also when the process is
    /// killed.
    SystemResult<void> lock(int file, LockKind kind);

protected:
    virtual SystemResult<int> doOpenAt(int folder, const std::string &name, int flags, mode_t mode) = 0;
    virtual SystemResult<void> doClose(int file) = 0;
    virtual SystemResult<struct stat> doStatus(int file) = 0;
    virtual SystemResult<struct stat> doStatusAt(int folder, const std::string &name, FollowLinks follow) = 0;
    virtual SystemResult<std::vector<std::string>> doEntries(int folder, const std::string &name) = 0;
    virtual SystemResult<std::string> doReadLinkAt(int folder, const std::string &name) = 0;
    virtual SystemResult<std::size_t> doReadAt(int file, std::span<char> bytes, std::uint64_t offset) = 0;
    virtual SystemResult<std::size_t> doWrite(int file, QByteArrayView bytes) = 0;
    virtual SystemResult<std::size_t> doWriteAt(int file, QByteArrayView bytes, std::uint64_t offset) = 0;
    virtual SystemResult<void> doAllocate(int file, std::uint64_t size) = 0;
    virtual SystemResult<void> doTruncate(int file, std::uint64_t size) = 0;
    virtual SystemResult<void> doSync(int file) = 0;
    virtual SystemResult<void> doSyncData(int file) = 0;
    virtual SystemResult<void> doSetTimeToNow(int file) = 0;
    virtual SystemResult<void> doSetMode(int file, mode_t mode) = 0;
    virtual SystemResult<void> doSetOwner(int file, uid_t user, gid_t group) = 0;
    virtual SystemResult<std::vector<std::string>> doAttributeNames(int file) = 0;
    virtual SystemResult<std::string> doAttribute(int file, const std::string &name) = 0;
    virtual SystemResult<void> doSetAttribute(int file, const std::string &name, const std::string &value) = 0;
    virtual SystemResult<void> doLinkFile(int file, int folder, const std::string &name) = 0;
    virtual SystemResult<void> doRenameAt(int folder, const std::string &from, const std::string &to,
                                          unsigned flags) = 0;
    virtual SystemResult<void> doUnlinkAt(int folder, const std::string &name) = 0;
    virtual SystemResult<void> doMakeFolder(int folder, const std::string &name, mode_t mode) = 0;
    virtual SystemResult<void> doLock(int file, LockKind kind) = 0;
};

/// A descriptor that is closed with its owner; what closing reports is dropped, so whoever wrote syncs first.
class OpenFile {
public:
    OpenFile() = default;
    OpenFile(FileOps &ops, int descriptor)
        : m_ops(&ops)
        , m_descriptor(descriptor) {}
    OpenFile(OpenFile &&other) noexcept
        : m_ops(std::exchange(other.m_ops, nullptr))
        , m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    OpenFile &operator=(OpenFile &&other) noexcept;
    ~OpenFile() { reset(); }

    /// openAt() into an owner.
    static SystemResult<OpenFile> openAt(FileOps &ops, int folder, const std::string &name, int flags, mode_t mode = 0);

    int descriptor() const { return m_descriptor; }
    explicit operator bool() const { return m_descriptor >= 0; }
    void reset();

private:
    FileOps *m_ops = nullptr;
    int m_descriptor = -1;
};

/// Reads until `bytes` is full or the file ends; gives the number of bytes read.
SystemResult<std::size_t> readFully(FileOps &ops, int file, std::span<char> bytes, std::uint64_t offset);
/// Writes all of `bytes` where the descriptor stands.
SystemResult<void> writeFully(FileOps &ops, int file, QByteArrayView bytes);
/// The same at a place of the file.
SystemResult<void> writeFullyAt(FileOps &ops, int file, QByteArrayView bytes, std::uint64_t offset);

} // namespace qir
