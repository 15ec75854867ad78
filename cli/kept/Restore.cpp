#include "cli/kept/Restore.h"

#include "base/StagedFile.h"
#include "base/state/KeptFiles.h"
#include "cli/FileError.h"
#include "cli/WholeFile.h"

#include <QFile>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr mode_t privateMode = 0600;

[[noreturn]] void fail(const QString &file, SystemError error) {
    throw FileError(file, systemErrorWords(error));
}

/// A new file with these bytes and the attributes of the one that stands there, or of another one, which nobody sees
/// yet.
StagedFile stagedFile(FileOps &ops, const QString &file, const ResolvedPath &path, SystemResult<OpenFile> standing,
                      QByteArrayView bytes) {
    const auto status =
        standing ? ops.status(standing->descriptor()) : SystemResult<struct stat>(tl::unexpected(standing.error()));
    if (!status)
        fail(file, status.error());
    auto staged = StagedFile::create(ops, path.folder.descriptor(), privateMode);
    if (!staged)
        fail(file, staged.error());
    SystemResult<void> done = writeFully(ops, staged->descriptor(), bytes);
    if (done)
        done = staged->takeAttributes(*status, standing->descriptor());
    if (done)
        done = ops.sync(staged->descriptor());
    if (!done)
        fail(file, done.error());
    return std::move(*staged);
}

/// Throws where a file would be exchanged that must stay as it is: exchanging asks for no permission on the file
/// itself, and leaves its further names with what they have.
void requireExchangeable(FileOps &ops, const QString &file, const OpenFile &standing, const QString &version) {
    if (isMarkedReadOnly(file, ops))
        throw FileError(file, u"it is marked read-only"_s);
    const auto status = ops.status(standing.descriptor());
    if (!status)
        fail(file, status.error());
    if (status->st_nlink > 1)
        throw FileError(file, u"it has further names (hard links), which would keep what stands there now; copy %1 "
                              "over it by hand"_s.arg(version));
}

/// Gives what was exchanged its name as a kept version.
QString keepExchanged(StagedFile &staged, const QString &file, const ResolvedPath &path) {
    constexpr int tries = 100;
    for (int number = 1; number <= tries; ++number) {
        QString name = keptName(QFile::decodeName(path.name.c_str()), KeptKind::Replaced, number);
        const auto named = staged.renameTemporary(systemPath(name));
        if (named)
            return name;
        if (named.error().number != EEXIST)
            break;
    }
    // It stays under the hidden name rather than not at all.
    const QString hidden = QFile::decodeName(staged.temporaryName().c_str());
    staged.leaveTemporary();
    throw FileError(file,
                    u"it was restored; what stood there could not be given a name and stands under %1"_s.arg(hidden));
}

} // namespace

QString restoreOver(const QString &file, const QString &version, FileOps &ops) {
    const QByteArray bytes = readWholeFile(version);
    const auto path = ResolvedPath::of(ops, systemPath(file));
    if (!path)
        fail(file, path.error());
    auto standing = OpenFile::openAt(ops, path->folder.descriptor(), path->name, O_RDONLY | O_NOFOLLOW);
    if (!standing && standing.error().number == ENOENT) {
        StagedFile made =
            stagedFile(ops, file, *path, OpenFile::openAt(ops, AT_FDCWD, systemPath(version), O_RDONLY), bytes);
        auto published = made.publishNew(path->name);
        if (published)
            published = path->syncFolder(ops);
        if (!published)
            fail(file, published.error());
        return {};
    }
    if (standing)
        requireExchangeable(ops, file, *standing, version);
    StagedFile staged = stagedFile(ops, file, *path, std::move(standing), bytes);
    const auto exchanged = staged.exchangeWith(path->name);
    if (!exchanged)
        fail(file, exchanged.error());
    if (*exchanged == StagedFile::Exchanged::NotSupported)
        throw FileError(
            file, u"its file system cannot exchange two files in one step; copy %1 over it by hand"_s.arg(version));
    QString kept = keepExchanged(staged, file, *path);
    if (const auto synced = path->syncFolder(ops); !synced)
        fail(file, synced.error());
    return kept;
}

} // namespace qir
