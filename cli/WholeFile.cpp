#include "cli/WholeFile.h"

#include "base/StagedFile.h"
#include "cli/FileError.h"
#include "cli/Protection.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr mode_t newFileMode = 0666; // less the umask
constexpr mode_t privateMode = 0600;
constexpr mode_t permissionBits = 07777;

bool printsNothing = false;

SystemResult<void> writeStanding(FileOps &ops, const ResolvedPath &path, QByteArrayView bytes) {
    const auto file = OpenFile::openAt(ops, path.folder.descriptor(), path.name, O_WRONLY);
    if (!file)
        return tl::unexpected(file.error());
    return writeFully(ops, file->descriptor(), bytes);
}

SystemResult<void> writeStaged(FileOps &ops, const ResolvedPath &path, const SystemResult<struct stat> &before,
                               QByteArrayView bytes, bool isPrivate) {
    auto staged = StagedFile::create(ops, path.folder.descriptor(), before || isPrivate ? privateMode : newFileMode);
    if (!staged)
        return tl::unexpected(staged.error());
    SystemResult<void> done = writeFully(ops, staged->descriptor(), bytes);
    if (done && before)
        done = ops.setMode(staged->descriptor(), before->st_mode & (isPrivate ? privateMode : permissionBits));
    if (done)
        done = ops.sync(staged->descriptor());
    if (done)
        done = staged->publishOver(path.name);
    if (done)
        done = path.syncFolder(ops);
    return done;
}

/// Throws where what stands there is a database, by what it holds and not by its name.
void requireNoDatabase(FileOps &ops, const ResolvedPath &path, const struct stat &status, const QString &file,
                       const QString &source) {
    const auto refuse = [&](const QString &what) { throw FileError(file, what + u"; use --force to replace it"_s); };
    const auto from = ops.statusAt(AT_FDCWD, systemPath(source), FollowLinks::Yes);
    if (from && from->st_dev == status.st_dev && from->st_ino == status.st_ino)
        refuse(u"it is the database that is exported"_s);
    const auto opened =
        OpenFile::openAt(ops, path.folder.descriptor(), path.name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    std::array<char, databaseHeadSize> head{};
    const auto read = opened ? readFully(ops, opened->descriptor(), head, 0)
                             : SystemResult<std::size_t>(tl::unexpected(opened.error()));
    if (!read)
        refuse(u"whether it is a database cannot be seen: %1"_s.arg(systemErrorWords(read.error())));
    else if (beginsAsDatabase(QByteArrayView(head.data(), static_cast<qsizetype>(*read))))
        refuse(u"it is a database"_s);
}

} // namespace

void writeWholeFile(const QString &file, QByteArrayView bytes, const ExportRules &rules, FileOps &ops) {
    const auto fail = [&](SystemError error) { throw FileError(file, systemErrorWords(error)); };
    const auto path = ResolvedPath::of(ops, systemPath(file));
    if (!path) {
        fail(path.error());
        return;
    }
    const auto before = ops.statusAt(path->folder.descriptor(), path->name, FollowLinks::No);
    if (!before && before.error().number != ENOENT)
        fail(before.error());
    const bool isSpecial = before && !S_ISREG(before->st_mode);
    if (before && !isSpecial && !rules.replacesDatabases)
        requireNoDatabase(ops, *path, *before, file, rules.source);
    const auto written =
        isSpecial ? writeStanding(ops, *path, bytes) : writeStaged(ops, *path, before, bytes, rules.isPrivate);
    if (!written)
        fail(written.error());
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
