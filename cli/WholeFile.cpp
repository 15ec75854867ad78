#include "cli/WholeFile.h"

#include "base/StagedFile.h"
#include "cli/FileError.h"
#include "cli/Protection.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <type_traits>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr mode_t newFileMode = 0666; // less the umask
constexpr mode_t privateMode = 0600;
constexpr mode_t permissionBits = 07777;

bool printsNothing = false;

/// Why what stands there counts as a database, by what it holds and not by its name; "" where it is none.
QString databaseReason(FileOps &ops, const ResolvedPath &path, const struct stat &status, const QString &source) {
    const auto from = ops.statusAt(AT_FDCWD, systemPath(source), FollowLinks::Yes);
    if (from && from->st_dev == status.st_dev && from->st_ino == status.st_ino)
        return u"it is the database that is exported"_s;
    const auto opened =
        OpenFile::openAt(ops, path.folder.descriptor(), path.name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    std::array<char, databaseHeadSize> head{};
    const auto read = opened ? readFully(ops, opened->descriptor(), head, 0)
                             : SystemResult<std::size_t>(tl::unexpected(opened.error()));
    if (!read)
        return u"whether it is a database cannot be seen: %1"_s.arg(systemErrorWords(read.error()));
    if (beginsAsDatabase(QByteArrayView(head.data(), static_cast<qsizetype>(*read))))
        return u"it is a database"_s;
    return {};
}

void requireNoDatabase(FileOps &ops, const ResolvedPath &path, const struct stat &status, const QString &file,
                       const QString &source) {
    if (const QString reason = databaseReason(ops, path, status, source); !reason.isEmpty())
        throw FileError(file, reason + u"; use --force to replace it"_s);
}

} // namespace

/// Where the bytes go: a staged file, or what stands there and is no regular one.
struct NewContent::Target {
    FileOps &ops;
    QString file;
    ResolvedPath path;
    std::optional<StagedFile> staged = {};
    OpenFile standing = {};

    template<class Value>
    Value checked(SystemResult<Value> &&result) const {
        if (!result)
            throw FileError(file, systemErrorWords(result.error()));
        if constexpr (!std::is_void_v<Value>)
            return std::move(*result);
    }
    int descriptor() const { return staged ? staged->descriptor() : standing.descriptor(); }
};

bool requireReplaceable(const QString &file, const ExportRules &rules, FileOps &ops) {
    const auto path = ResolvedPath::of(ops, systemPath(file));
    if (!path)
        throw FileError(file, systemErrorWords(path.error()));
    const auto status = ops.statusAt(path->folder.descriptor(), path->name, FollowLinks::No);
    if (!status || !S_ISREG(status->st_mode))
        return false;
    if (!rules.replacesDatabases)
        requireNoDatabase(ops, *path, *status, file, rules.source);
    return !databaseReason(ops, *path, *status, rules.source).isEmpty();
}

bool isMarkedReadOnly(const QString &file, FileOps &ops) {
    constexpr mode_t anybodyWrites = S_IWUSR | S_IWGRP | S_IWOTH;
    const auto status = ops.statusAt(AT_FDCWD, systemPath(file), FollowLinks::Yes);
    if (!status || !S_ISREG(status->st_mode))
        return false;
    if ((status->st_mode & anybodyWrites) == 0)
        return true;
    // Asking the file itself counts access lists.
    const auto opened = OpenFile::openAt(ops, AT_FDCWD, systemPath(file), O_WRONLY | O_NONBLOCK | O_NOCTTY);
    return !opened && (opened.error().number == EACCES || opened.error().number == EPERM);
}

NewContent::NewContent(const QString &file, const ExportRules &rules, FileOps &ops) {
    auto path = ResolvedPath::of(ops, systemPath(file));
    if (!path)
        throw FileError(file, systemErrorWords(path.error()));
    m_target = std::make_unique<Target>(Target{ops, file, std::move(*path)});
    const int folder = m_target->path.folder.descriptor();
    const auto before = ops.statusAt(folder, m_target->path.name, FollowLinks::No);
    if (!before && before.error().number != ENOENT)
        throw FileError(file, systemErrorWords(before.error()));
    if (before && !S_ISREG(before->st_mode)) {
        m_target->standing = m_target->checked(OpenFile::openAt(ops, folder, m_target->path.name, O_WRONLY));
        return;
    }
    if (before && !rules.replacesDatabases)
        requireNoDatabase(ops, m_target->path, *before, file, rules.source);
    const mode_t mode = before || rules.isPrivate ? privateMode : newFileMode;
    m_target->staged.emplace(m_target->checked(StagedFile::create(ops, folder, mode)));
    if (before)
        m_target->checked(
            ops.setMode(m_target->descriptor(), before->st_mode & (rules.isPrivate ? privateMode : permissionBits)));
}

NewContent::~NewContent() = default;

void NewContent::write(QByteArrayView bytes) {
    m_target->checked(writeFully(m_target->ops, m_target->descriptor(), bytes));
}

void NewContent::finish() {
    if (!m_target->staged)
        return;
    m_target->checked(m_target->ops.sync(m_target->descriptor()));
    m_target->checked(m_target->staged->publishOver(m_target->path.name));
    m_target->checked(m_target->path.syncFolder(m_target->ops));
}

void writeWholeFile(const QString &file, QByteArrayView bytes, const ExportRules &rules, FileOps &ops) {
    NewContent content(file, rules, ops);
    content.write(bytes);
    content.finish();
}

QByteArray readWholeFile(const QString &file) {
    FileOps &ops = FileOps::system();
    OpenFile opened;
    int input = STDIN_FILENO;
    if (file != u"-"_s) {
        auto found = OpenFile::openAt(ops, AT_FDCWD, systemPath(file), O_RDONLY);
        if (!found)
            throw FileError(file, systemErrorWords(found.error()));
        opened = std::move(*found);
        input = opened.descriptor();
    }
    constexpr qsizetype portion = 1 << 20;
    QByteArray bytes;
    qsizetype size = 0;
    while (true) {
        bytes.resize(size + portion);
        const ssize_t count = ::read(input, bytes.data() + size, portion);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throw FileError(file, systemErrorWords({errno}));
        size += count;
        if (count == 0)
            break;
    }
    bytes.resize(size);
    return bytes;
}

void silencePrinting() {
    printsNothing = true;
}

void print(QByteArrayView bytes) {
    if (printsNothing)
        return;
    const auto size = static_cast<std::size_t>(bytes.size());
    // No bytes may mean no address either, which fwrite does not take.
    if ((size != 0 && std::fwrite(bytes.data(), 1, size, stdout) != size) || std::fflush(stdout) != 0)
        throw FileError(u"standard output"_s, systemErrorWords({errno}));
}

void printWhenMany(QByteArray &bytes) {
    constexpr qsizetype many = 1 << 18;
    if (bytes.size() < many)
        return;
    print(bytes);
    bytes.resize(0); // keeps its memory
}

} // namespace qir
