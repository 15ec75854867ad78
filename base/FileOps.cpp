#include "base/FileOps.h"

#include <QFile>

#include <cerrno>
#include <cstring>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// Makes a call again while a signal interrupts it.
template<class Call>
auto persevering(Call call) -> decltype(call()) {
    auto result = call();
    for (int tries = 1; !result && result.error().number == EINTR && tries < FileOps::interruptedTries; ++tries)
        result = call();
    return result;
}

} // namespace

QString systemErrorWords(SystemError error) {
    switch (error.number) {
    case ENOSPC:
        return u"the disk is full"_s;
    case EDQUOT:
        return u"the disk quota is used up"_s;
    case EROFS:
        return u"the disk is read-only"_s;
    case EACCES:
    case EPERM:
        return u"no permission"_s;
    case ENOENT:
        return u"no such file or folder"_s;
    case ENOTDIR:
        return u"a part of the path is not a folder"_s;
    case EISDIR:
        return u"it is a folder"_s;
    case EEXIST:
        return u"the name is already taken"_s;
    case EIO:
        return u"the disk reported an error"_s;
    case EFBIG:
        return u"the file would be larger than the disk or a limit of the system allows"_s;
    case ENAMETOOLONG:
        return u"the name is too long"_s;
    case ELOOP:
        return u"too many links lead to one another"_s;
    case EMFILE:
    case ENFILE:
        return u"too many files are open"_s;
    case ENOMEM:
        return u"there is not enough memory"_s;
    case EINTR:
        return u"the call was interrupted again and again"_s;
    case EBUSY:
    case ETXTBSY:
        return u"it is in use"_s;
    case ESTALE:
        return u"it is gone from the server"_s;
    default:
        return QString::fromLocal8Bit(std::strerror(error.number));
    }
}

std::string systemPath(const QString &path) {
    return QFile::encodeName(path).toStdString();
}

SystemResult<int> FileOps::openAt(int folder, const std::string &name, int flags, mode_t mode) {
    return persevering([&] { return doOpenAt(folder, name, flags | O_CLOEXEC, mode); });
}

// Never again: Linux has closed the descriptor even where it was interrupted.
SystemResult<void> FileOps::close(int file) {
    return doClose(file);
}

SystemResult<struct stat> FileOps::status(int file) {
    return persevering([&] { return doStatus(file); });
}

SystemResult<struct stat> FileOps::statusAt(int folder, const std::string &name, FollowLinks follow) {
    return persevering([&] { return doStatusAt(folder, name, follow); });
}

SystemResult<std::vector<std::string>> FileOps::entries(int folder, const std::string &name) {
    return persevering([&] { return doEntries(folder, name); });
}

SystemResult<std::string> FileOps::readLinkAt(int folder, const std::string &name) {
    return persevering([&] { return doReadLinkAt(folder, name); });
}

SystemResult<std::size_t> FileOps::readAt(int file, std::span<char> bytes, std::uint64_t offset) {
    return persevering([&] { return doReadAt(file, bytes, offset); });
}

SystemResult<std::size_t> FileOps::write(int file, QByteArrayView bytes) {
    return persevering([&] { return doWrite(file, bytes); });
}

SystemResult<std::size_t> FileOps::writeAt(int file, QByteArrayView bytes, std::uint64_t offset) {
    return persevering([&] { return doWriteAt(file, bytes, offset); });
}

SystemResult<void> FileOps::allocate(int file, std::uint64_t size) {
    return persevering([&] { return doAllocate(file, size); });
}

SystemResult<void> FileOps::truncate(int file, std::uint64_t size) {
    return persevering([&] { return doTruncate(file, size); });
}

SystemResult<void> FileOps::sync(int file) {
    return persevering([&] { return doSync(file); });
}

SystemResult<void> FileOps::syncData(int file) {
    return persevering([&] { return doSyncData(file); });
}

SystemResult<void> FileOps::setTimeToNow(int file) {
    return persevering([&] { return doSetTimeToNow(file); });
}

SystemResult<void> FileOps::setMode(int file, mode_t mode) {
    return persevering([&] { return doSetMode(file, mode); });
}

SystemResult<void> FileOps::setOwner(int file, uid_t user, gid_t group) {
    return persevering([&] { return doSetOwner(file, user, group); });
}

SystemResult<std::vector<std::string>> FileOps::attributeNames(int file) {
    return persevering([&] { return doAttributeNames(file); });
}

SystemResult<std::string> FileOps::attribute(int file, const std::string &name) {
    return persevering([&] { return doAttribute(file, name); });
}

SystemResult<void> FileOps::setAttribute(int file, const std::string &name, const std::string &value) {
    return persevering([&] { return doSetAttribute(file, name, value); });
}

SystemResult<void> FileOps::linkFile(int file, int folder, const std::string &name) {
    return doLinkFile(file, folder, name);
}

SystemResult<void> FileOps::renameAt(int folder, const std::string &from, const std::string &to, unsigned flags) {
    return doRenameAt(folder, from, to, flags);
}

SystemResult<void> FileOps::unlinkAt(int folder, const std::string &name) {
    return doUnlinkAt(folder, name);
}

SystemResult<void> FileOps::makeFolder(int folder, const std::string &name, mode_t mode) {
    return persevering([&] { return doMakeFolder(folder, name, mode); });
}

SystemResult<void> FileOps::lock(int file, LockKind kind) {
    return persevering([&] { return doLock(file, kind); });
}

OpenFile &OpenFile::operator=(OpenFile &&other) noexcept {
    if (this != &other) {
        reset();
        m_ops = std::exchange(other.m_ops, nullptr);
        m_descriptor = std::exchange(other.m_descriptor, -1);
    }
    return *this;
}

SystemResult<OpenFile> OpenFile::openAt(FileOps &ops, int folder, const std::string &name, int flags, mode_t mode) {
    const auto descriptor = ops.openAt(folder, name, flags, mode);
    if (!descriptor)
        return tl::unexpected(descriptor.error());
    return OpenFile(ops, *descriptor);
}

void OpenFile::reset() {
    if (m_descriptor >= 0)
        (void)m_ops->close(m_descriptor);
    m_descriptor = -1;
}

SystemResult<std::size_t> readFully(FileOps &ops, int file, std::span<char> bytes, std::uint64_t offset) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const auto read = ops.readAt(file, bytes.subspan(done), offset + done);
        if (!read)
            return tl::unexpected(read.error());
        if (*read == 0)
            break;
        done += *read;
    }
    return done;
}

namespace {

/// Calls `write` with what is left of `bytes` until nothing is.
template<class Write>
SystemResult<void> writeAll(QByteArrayView bytes, Write write) {
    while (!bytes.isEmpty()) {
        const SystemResult<std::size_t> written = write(bytes);
        if (!written)
            return tl::unexpected(written.error());
        if (*written == 0) // no file system should; going on would never end
            return tl::unexpected(SystemError{EIO});
        bytes = bytes.sliced(static_cast<qsizetype>(*written));
    }
    return {};
}

} // namespace

SystemResult<void> writeFully(FileOps &ops, int file, QByteArrayView bytes) {
    return writeAll(bytes, [&](QByteArrayView rest) { return ops.write(file, rest); });
}

SystemResult<void> writeFullyAt(FileOps &ops, int file, QByteArrayView bytes, std::uint64_t offset) {
    const qsizetype size = bytes.size();
    return writeAll(bytes, [&](QByteArrayView rest) {
        return ops.writeAt(file, rest, offset + static_cast<std::uint64_t>(size - rest.size()));
    });
}

} // namespace qir
