#include "tests/qirtbase/file/SmallDisk.h"

#include "base/FileOps.h"

#include <QFile>

#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

bool writeText(const char *path, const std::string &text) {
    QFile file(QString::fromLatin1(path));
    return file.open(QIODevice::WriteOnly) && file.write(text.c_str()) == static_cast<qint64>(text.size());
}

/// Puts this process into a mount namespace of its own, with a user namespace around it where it is not privileged.
bool enterOwnNamespace(QString &why) {
    static int state = 0; // 1 done, -1 refused
    static QString reason;
    if (state == 0) {
        const uid_t user = ::getuid();
        const gid_t group = ::getgid();
        bool done = ::unshare(CLONE_NEWNS) == 0;
        if (!done) {
            done = ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && writeText("/proc/self/setgroups", "deny") &&
                   writeText("/proc/self/uid_map", std::to_string(user) + ' ' + std::to_string(user) + " 1") &&
                   writeText("/proc/self/gid_map", std::to_string(group) + ' ' + std::to_string(group) + " 1");
        }
        done = done && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        state = done ? 1 : -1;
        reason = QString::fromLocal8Bit(std::strerror(errno));
    }
    if (state < 0)
        why = u"no mount namespace of our own is to be had: "_s + reason;
    return state > 0;
}

} // namespace

std::optional<SmallDisk> SmallDisk::mount(std::uint64_t bytes, QString &why, unsigned inodes) {
    if (!enterOwnNamespace(why))
        return std::nullopt;
    auto folder = std::make_unique<QTemporaryDir>();
    std::string options = "size=" + std::to_string(bytes);
    if (inodes > 0)
        options += ",nr_inodes=" + std::to_string(inodes);
    if (!folder->isValid() || ::mount("tmpfs", systemPath(folder->path()).c_str(), "tmpfs", 0, options.c_str()) != 0) {
        why = u"mounting is refused: "_s + QString::fromLocal8Bit(std::strerror(errno));
        return std::nullopt;
    }
    return SmallDisk(std::move(folder));
}

SmallDisk::~SmallDisk() {
    if (m_folder)
        ::umount2(systemPath(m_folder->path()).c_str(), MNT_DETACH);
}

std::uint64_t SmallDisk::freeBytes() const {
    struct statvfs status {};
    if (::statvfs(systemPath(m_folder->path()).c_str(), &status) != 0)
        throw std::runtime_error("statvfs failed");
    return static_cast<std::uint64_t>(status.f_bfree) * status.f_bsize;
}

void SmallDisk::leaveFree(std::uint64_t bytes) const {
    releaseRoom();
    const std::uint64_t available = freeBytes();
    if (available < bytes)
        throw std::runtime_error("the disk is too small for this test");
    FileOps &ops = FileOps::system();
    const auto filler = OpenFile::openAt(ops, AT_FDCWD, systemPath(fillerPath()), O_CREAT | O_RDWR, 0600);
    if (!filler || (available > bytes && !ops.allocate(filler->descriptor(), available - bytes)))
        throw std::runtime_error("cannot fill the disk");
}

void SmallDisk::releaseRoom() const {
    QFile::remove(fillerPath());
}

} // namespace qir
