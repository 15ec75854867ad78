#include "tests/support/RecordingFileOps.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#ifndef RENAME_EXCHANGE
#include <linux/fs.h>
#endif

namespace qir {

namespace {

namespace fs = std::filesystem;

std::string pathOf(int file) {
    return fs::read_symlink("/proc/self/fd/" + std::to_string(file)).string();
}

struct stat statusOf(int file) {
    struct stat status {};
    if (::fstat(file, &status) != 0)
        throw std::runtime_error("fstat failed");
    return status;
}

QByteArray contentOf(const fs::path &path) {
    std::ifstream in(path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    return QByteArray::fromStdString(content);
}

} // namespace

void RecordingFileOps::start(const std::string &root) {
    m_root = fs::canonical(root).string();
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(m_root)) {
        const std::string path = below(entry.path().string()).value();
        if (entry.is_symlink()) {
            m_initial.links[path] = fs::read_symlink(entry.path()).string();
        } else if (entry.is_directory()) {
            m_initial.folders.insert(path);
        } else {
            struct stat status {};
            if (::lstat(entry.path().c_str(), &status) != 0)
                throw std::runtime_error("lstat failed");
            const auto [known, isNew] = m_numbers.try_emplace({status.st_dev, status.st_ino}, m_nextNumber);
            m_nextNumber += isNew;
            m_initial.names[path] = known->second;
            m_initial.contents[known->second] = contentOf(entry.path());
            m_initial.inodes[known->second] = status.st_ino;
        }
    }
}

std::optional<std::string> RecordingFileOps::below(const std::string &path) const {
    if (path == m_root)
        return std::string();
    if (m_root.empty() || !path.starts_with(m_root + '/'))
        return std::nullopt;
    return path.substr(m_root.size() + 1);
}

std::optional<RecordingFileOps::Place> RecordingFileOps::placeOf(int folder, const std::string &name) const {
    fs::path path = name;
    if (path.is_relative())
        path = fs::path(folder == AT_FDCWD ? fs::current_path().string() : pathOf(folder)) / path;
    const auto parent = below(fs::canonical(path.parent_path()).string());
    if (!parent)
        return std::nullopt;
    const std::string last = path.filename().string();
    return Place{*parent, parent->empty() ? last : *parent + '/' + last};
}

int RecordingFileOps::numberOf(int file) {
    const struct stat status = statusOf(file);
    const auto known = m_numbers.find({status.st_dev, status.st_ino});
    return known == m_numbers.end() ? -1 : known->second;
}

/// The system uses the numbers of removed files again; here they are different files.
int RecordingFileOps::newNumber(int file) {
    const struct stat status = statusOf(file);
    return m_numbers[{status.st_dev, status.st_ino}] = m_nextNumber++;
}

SystemResult<int> RecordingFileOps::doOpenAt(int folder, const std::string &name, int flags, mode_t mode) {
    auto opened = ForwardingFileOps::doOpenAt(folder, name, flags, mode);
    if (!opened || m_root.empty())
        return opened;
    if (flags & O_TRUNC || (flags & O_CREAT && !(flags & O_EXCL)))
        throw std::logic_error("an open of a kind that is not modelled");
    if ((flags & O_TMPFILE) == O_TMPFILE) {
        newNumber(*opened);
    } else if (flags & O_CREAT) {
        const int number = newNumber(*opened);
        if (const auto place = placeOf(folder, name))
            m_events.push_back(
                {.kind = FileEvent::Kind::Make, .file = number, .folder = place->folder, .name = place->path});
    }
    return opened;
}

SystemResult<std::size_t> RecordingFileOps::doWrite(int file, QByteArrayView bytes) {
    const off_t at = ::lseek(file, 0, SEEK_CUR);
    auto written = ForwardingFileOps::doWrite(file, bytes);
    if (const int number = numberOf(file); written && number >= 0)
        m_events.push_back({.kind = FileEvent::Kind::Write,
                            .file = number,
                            .bytes = bytes.first(static_cast<qsizetype>(*written)).toByteArray(),
                            .offset = static_cast<std::uint64_t>(at)});
    return written;
}

SystemResult<std::size_t> RecordingFileOps::doWriteAt(int file, QByteArrayView bytes, std::uint64_t offset) {
    auto written = ForwardingFileOps::doWriteAt(file, bytes, offset);
    if (const int number = numberOf(file); written && number >= 0)
        m_events.push_back({.kind = FileEvent::Kind::Write,
                            .file = number,
                            .bytes = bytes.first(static_cast<qsizetype>(*written)).toByteArray(),
                            .offset = offset});
    return written;
}

SystemResult<void> RecordingFileOps::doTruncate(int file, std::uint64_t size) {
    auto done = ForwardingFileOps::doTruncate(file, size);
    if (const int number = numberOf(file); done && number >= 0)
        m_events.push_back({.kind = FileEvent::Kind::Truncate, .file = number, .offset = size});
    return done;
}

void RecordingFileOps::synced(int file) {
    if (S_ISDIR(statusOf(file).st_mode)) {
        if (const auto folder = below(pathOf(file)))
            m_events.push_back({.kind = FileEvent::Kind::SyncFolder, .folder = *folder});
    } else if (const int number = numberOf(file); number >= 0) {
        m_events.push_back({.kind = FileEvent::Kind::SyncFile, .file = number});
    }
}

SystemResult<void> RecordingFileOps::doSync(int file) {
    auto done = ForwardingFileOps::doSync(file);
    if (done)
        synced(file);
    return done;
}

SystemResult<void> RecordingFileOps::doSyncData(int file) {
    auto done = ForwardingFileOps::doSyncData(file);
    if (done)
        synced(file);
    return done;
}

SystemResult<void> RecordingFileOps::doLinkFile(int file, int folder, const std::string &name) {
    auto done = ForwardingFileOps::doLinkFile(file, folder, name);
    if (!done)
        return done;
    if (const auto place = placeOf(folder, name))
        m_events.push_back(
            {.kind = FileEvent::Kind::Make, .file = numberOf(file), .folder = place->folder, .name = place->path});
    return done;
}

SystemResult<void> RecordingFileOps::doRenameAt(int folder, const std::string &from, const std::string &to,
                                                unsigned flags) {
    auto done = ForwardingFileOps::doRenameAt(folder, from, to, flags);
    if (!done)
        return done;
    const auto before = placeOf(folder, from);
    const auto after = placeOf(folder, to);
    if (before && after)
        m_events.push_back({.kind = flags & RENAME_EXCHANGE ? FileEvent::Kind::Exchange : FileEvent::Kind::Rename,
                            .folder = before->folder,
                            .name = before->path,
                            .other = after->path});
    return done;
}

SystemResult<void> RecordingFileOps::doUnlinkAt(int folder, const std::string &name) {
    auto done = ForwardingFileOps::doUnlinkAt(folder, name);
    if (!done)
        return done;
    if (const auto place = placeOf(folder, name))
        m_events.push_back({.kind = FileEvent::Kind::Unlink, .folder = place->folder, .name = place->path});
    return done;
}

SystemResult<void> RecordingFileOps::doMakeFolder(int folder, const std::string &name, mode_t mode) {
    auto done = ForwardingFileOps::doMakeFolder(folder, name, mode);
    if (!done)
        return done;
    if (const auto place = placeOf(folder, name))
        m_events.push_back({.kind = FileEvent::Kind::MakeFolder, .folder = place->folder, .name = place->path});
    return done;
}

} // namespace qir
