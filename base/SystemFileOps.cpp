#include "base/FileOps.h"

#include <dirent.h>
#include <sys/file.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <limits>
#include <memory>

namespace qir {

namespace {

tl::unexpected<SystemError> lastError() {
    return tl::unexpected(SystemError{errno});
}

SystemResult<void> checked(int result) {
    if (result < 0)
        return lastError();
    return {};
}

SystemResult<std::size_t> counted(ssize_t result) {
    if (result < 0)
        return lastError();
    return static_cast<std::size_t>(result);
}

SystemResult<off_t> asOffset(std::uint64_t value) {
    if (value > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()))
        return tl::unexpected(SystemError{EFBIG});
    return static_cast<off_t>(value);
}

/// Reads what the system gives in one piece whose size only a first call tells.
template<class Call>
SystemResult<std::string> sized(Call call) {
    for (;;) {
        const ssize_t size = call(nullptr, 0);
        if (size < 0)
            return lastError();
        std::string text(static_cast<std::size_t>(size), '\0');
        if (size == 0)
            return text;
        const ssize_t read = call(text.data(), text.size());
        if (read >= 0) {
            text.resize(static_cast<std::size_t>(read));
            return text;
        }
        if (errno != ERANGE) // grown meanwhile: once more
            return lastError();
    }
}

class SystemFileOps final : public FileOps {
protected:
    SystemResult<int> doOpenAt(int folder, const std::string &name, int flags, mode_t mode) override {
        const int file = ::openat(folder, name.c_str(), flags, mode);
        if (file < 0)
            return lastError();
        return file;
    }

    SystemResult<void> doClose(int file) override { return checked(::close(file)); }

    SystemResult<struct stat> doStatus(int file) override {
        struct stat status {};
        if (::fstat(file, &status) < 0)
            return lastError();
        return status;
    }

    SystemResult<struct stat> doStatusAt(int folder, const std::string &name, FollowLinks follow) override {
        struct stat status {};
        if (::fstatat(folder, name.c_str(), &status, follow == FollowLinks::No ? AT_SYMLINK_NOFOLLOW : 0) < 0)
            return lastError();
        return status;
    }

    SystemResult<std::vector<std::string>> doEntries(int folder, const std::string &name) override {
        const int descriptor = ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor < 0)
            return lastError();
        const std::unique_ptr<DIR, int (*)(DIR *)> stream(::fdopendir(descriptor), ::closedir);
        if (!stream) {
            const int number = errno;
            ::close(descriptor);
            return tl::unexpected(SystemError{number});
        }
        std::vector<std::string> names;
        for (;;) {
            errno = 0;
            const dirent *entry = ::readdir(stream.get());
            if (!entry)
                break;
            const std::string entryName = entry->d_name;
            if (entryName != "." && entryName != "..")
                names.push_back(entryName);
        }
        if (errno != 0)
            return lastError();
        return names;
    }

    SystemResult<std::string> doReadLinkAt(int folder, const std::string &name) override {
        std::string target(PATH_MAX, '\0');
        const ssize_t size = ::readlinkat(folder, name.c_str(), target.data(), target.size());
        if (size < 0)
            return lastError();
        if (static_cast<std::size_t>(size) == target.size())
            return tl::unexpected(SystemError{ENAMETOOLONG});
        target.resize(static_cast<std::size_t>(size));
        return target;
    }

    SystemResult<std::size_t> doReadAt(int file, std::span<char> bytes, std::uint64_t offset) override {
        const auto place = asOffset(offset);
        if (!place)
            return tl::unexpected(place.error());
        return counted(::pread(file, bytes.data(), bytes.size(), *place));
    }

    SystemResult<std::size_t> doWrite(int file, QByteArrayView bytes) override {
        return counted(::write(file, bytes.data(), static_cast<std::size_t>(bytes.size())));
    }

    SystemResult<std::size_t> doWriteAt(int file, QByteArrayView bytes, std::uint64_t offset) override {
        const auto place = asOffset(offset);
        if (!place)
            return tl::unexpected(place.error());
        return counted(::pwrite(file, bytes.data(), static_cast<std::size_t>(bytes.size()), *place));
    }

    SystemResult<void> doAllocate(int file, std::uint64_t size) override {
        const auto length = asOffset(size);
        if (!length)
            return tl::unexpected(length.error());
        return checked(::fallocate(file, FALLOC_FL_KEEP_SIZE, 0, *length));
    }

    SystemResult<void> doTruncate(int file, std::uint64_t size) override {
        const auto length = asOffset(size);
        if (!length)
            return tl::unexpected(length.error());
        return checked(::ftruncate(file, *length));
    }

    SystemResult<void> doSync(int file) override { return checked(::fsync(file)); }
    SystemResult<void> doSyncData(int file) override { return checked(::fdatasync(file)); }
    SystemResult<void> doSetTimeToNow(int file) override { return checked(::futimens(file, nullptr)); }
    SystemResult<void> doSetMode(int file, mode_t mode) override { return checked(::fchmod(file, mode)); }

    SystemResult<void> doSetOwner(int file, uid_t user, gid_t group) override {
        return checked(::fchown(file, user, group));
    }

    SystemResult<std::vector<std::string>> doAttributeNames(int file) override {
        const auto list = sized([&](char *room, std::size_t size) { return ::flistxattr(file, room, size); });
        if (!list)
            return tl::unexpected(list.error());
        std::vector<std::string> names;
        for (std::size_t at = 0; at < list->size(); at += names.back().size() + 1)
            names.emplace_back(list->c_str() + at);
        return names;
    }

    SystemResult<std::string> doAttribute(int file, const std::string &name) override {
        return sized([&](char *room, std::size_t size) { return ::fgetxattr(file, name.c_str(), room, size); });
    }

    SystemResult<void> doSetAttribute(int file, const std::string &name, const std::string &value) override {
        return checked(::fsetxattr(file, name.c_str(), value.data(), value.size(), 0));
    }

    SystemResult<void> doLinkFile(int file, int folder, const std::string &name) override {
        // By way of /proc: linking a descriptor directly takes a privilege.
        const std::string self = "/proc/self/fd/" + std::to_string(file);
        return checked(::linkat(AT_FDCWD, self.c_str(), folder, name.c_str(), AT_SYMLINK_FOLLOW));
    }

    SystemResult<void> doRenameAt(int folder, const std::string &from, const std::string &to, unsigned flags) override {
        return checked(::renameat2(folder, from.c_str(), folder, to.c_str(), flags));
    }

    SystemResult<void> doUnlinkAt(int folder, const std::string &name) override {
        return checked(::unlinkat(folder, name.c_str(), 0));
    }

    SystemResult<void> doMakeFolder(int folder, const std::string &name, mode_t mode) override {
        return checked(::mkdirat(folder, name.c_str(), mode));
    }

    SystemResult<void> doLock(int file, LockKind kind) override {
        const int operation = kind == LockKind::Shared ? LOCK_SH : kind == LockKind::Exclusive ? LOCK_EX : LOCK_UN;
        return checked(::flock(file, operation | LOCK_NB));
    }
};

/// Where a file may not grow any more, as `ulimit -f` says, a call shall fail: by itself that ends the program.
bool askForErrorsOfSize() {
    struct sigaction now {};
    return ::sigaction(SIGXFSZ, nullptr, &now) == 0 && now.sa_handler == SIG_DFL &&
           std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR;
}

} // namespace

FileOps &FileOps::system() {
    static SystemFileOps ops;
    [[maybe_unused]] static const bool asked = askForErrorsOfSize();
    return ops;
}

} // namespace qir
