#include "qirtbase/FileRead.h"

#include "qirtbase/InPlaceCopy.h"
#include "qirtbase/KeptVersion.h"
#include "qirtbase/SaveTarget.h"
#include "qirtbase/StateFolder.h"

#include <cerrno>
#include <ctime>

namespace qir {

namespace {

constexpr int readsMax = 4;

tl::unexpected<LoadError> refused(LoadErrorKind kind, const QString &text) {
    return tl::unexpected(LoadError{kind, text});
}

LoadErrorKind kindOf(SystemError error) {
    return error.number == ENOENT || error.number == ENOTDIR ? LoadErrorKind::Missing : LoadErrorKind::Unreadable;
}

/// Opens for reading what is a file. Looked at first: opening a device may already do something.
LoadResult<OpenFile> openRegular(FileOps &ops, const std::string &path) {
    const auto status = ops.statusAt(AT_FDCWD, path, FollowLinks::Yes);
    if (!status)
        return refused(kindOf(status.error()), systemErrorWords(status.error()));
    if (S_ISDIR(status->st_mode))
        return refused(LoadErrorKind::NotAFile, QStringLiteral("it is a folder"));
    if (!S_ISREG(status->st_mode))
        return refused(LoadErrorKind::NotAFile, QStringLiteral("it is a device, not a file"));
    auto file = OpenFile::openAt(ops, AT_FDCWD, path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file)
        return refused(kindOf(file.error()),
                       QStringLiteral("it cannot be opened: %1").arg(systemErrorWords(file.error())));
    return std::move(*file);
}

/// Whether a safe copy still says what the file should be: not when somebody has written the file since.
bool isStillMeant(FileOps &ops, const InPlaceCopy &copy, int file) {
    const auto meant = readHeaderBlock(ops, copy.descriptor());
    if (!meant)
        return false;
    const auto there = readHeaderBlock(ops, file);
    return !there || there->header.saveId == meant->header.saveId || there->header.saveId == copy.base();
}

/// Somebody has written the file since: what was to be saved then is kept elsewhere.
void setAside(FileOps &ops, InPlaceCopy &copy, const ReadRequest &request, QStringList &notices) {
    const auto kept = linkRescueFile(ops, request.stateFolder, request.path, copy.descriptor());
    if (!kept)
        return; // it stays where it is, for the next time
    (void)copy.remove();
    notices.append(QStringLiteral("a save of it had been cut short, and it was written by another program since; "
                                  "what was to be saved is kept in '%1'")
                       .arg(*kept));
}

/// Brings the file to the state of its safe copy.
bool complete(FileOps &ops, InPlaceCopy &copy, const std::string &path) {
    const auto file = OpenFile::openAt(ops, AT_FDCWD, path, O_RDWR | O_NONBLOCK | O_NOCTTY);
    if (!file || !copy.writeInto(file->descriptor()))
        return false;
    (void)copy.remove(); // one that stays is of the version that stands in the file now
    return true;
}

/// Written within the last second, as far as the clock tells. A time to come says nothing: anybody can set one.
bool isYoung(const struct stat &status) {
    const std::time_t age = std::time(nullptr) - status.st_mtim.tv_sec;
    return age >= 0 && age <= 1;
}

/// What is wrong with a file may come from its being written in place just now: then it is different, or at least
/// young, for the system's clock has its steps.
bool mayBeInFlux(FileOps &ops, int file, const struct stat &before, const LoadError &error) {
    if (error.kind != LoadErrorKind::Damaged && error.kind != LoadErrorKind::Truncated)
        return false;
    const auto now = ops.status(file);
    return now && (!sameVersion(*now, before) || isYoung(*now));
}

LoadResult<ReadOutcome> readOnce(FileOps &ops, const ReadRequest &request, QStringList &notices, bool &inFlux) {
    const std::string path = systemPath(request.path);
    auto file = openRegular(ops, path);
    if (!file)
        return tl::unexpected(file.error());

    ReadOutcome outcome;
    InPlaceCopy::Found found;
    const auto place = ResolvedPath::of(ops, path);
    const auto status = ops.status(file->descriptor());
    if (place && status)
        found = InPlaceCopy::find(ops, request.stateFolder, {canonicalPath(ops, *place), status->st_ino},
                                  file->descriptor());
    int source = file->descriptor();
    for (InPlaceCopy &copy : found.copies) {
        if (!isStillMeant(ops, copy, file->descriptor())) {
            setAside(ops, copy, request, notices);
        } else if (complete(ops, copy, path)) {
            notices.append(QStringLiteral("a save of it had been cut short; it has been completed"));
        } else {
            outcome.torn = true;
            notices.append(
                QStringLiteral("a save of it had been cut short; what was to be saved is shown, save it again"));
            source = copy.descriptor();
        }
    }
    auto container = readContainer(ops, source, request.password, request.limits, request.deriveKey);
    if (!container && found.beingWritten)
        return refused(LoadErrorKind::Unreadable, QStringLiteral("another program is saving it just now; try again"));
    if (!container) {
        inFlux = status && mayBeInFlux(ops, file->descriptor(), *status, container.error());
        return tl::unexpected(container.error());
    }
    outcome.container = std::move(*container);
    return outcome;
}

} // namespace

LoadResult<FileHeader> readFileHeader(FileOps &ops, const QString &path) {
    return openRegular(ops, systemPath(path))
        .and_then([&](const OpenFile &file) { return readHeaderBlock(ops, file.descriptor()); })
        .map([](HeaderBlock block) { return std::move(block.header); });
}

LoadResult<ReadOutcome> readDatabaseFile(FileOps &ops, const ReadRequest &request) {
    QStringList notices;
    for (int reads = 1;; ++reads) {
        bool inFlux = false;
        auto outcome = readOnce(ops, request, notices, inFlux);
        if (outcome)
            outcome->notices = notices;
        if (outcome || !inFlux || reads == readsMax)
            return outcome;
    }
}

} // namespace qir
