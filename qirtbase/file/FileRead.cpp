#include "qirtbase/file/FileRead.h"

#include "qirtbase/file/InPlaceRecovery.h"
#include "qirtbase/file/SaveTarget.h"

#include <cerrno>
#include <ctime>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int readsMax = 4;

LoadErrorKind kindOf(SystemError error) {
    return error.number == ENOENT || error.number == ENOTDIR ? LoadErrorKind::Missing : LoadErrorKind::Unreadable;
}

/// Opens for reading what is a file. Looked at first: opening a device may already do something.
LoadResult<OpenFile> openRegular(FileOps &ops, const std::string &path) {
    const auto status = ops.statusAt(AT_FDCWD, path, FollowLinks::Yes);
    if (!status)
        return refused(kindOf(status.error()), systemErrorWords(status.error()));
    if (S_ISDIR(status->st_mode))
        return refused(LoadErrorKind::NotAFile, u"it is a folder"_s);
    if (!S_ISREG(status->st_mode))
        return refused(LoadErrorKind::NotAFile, u"it is a device, not a file"_s);
    auto file = OpenFile::openAt(ops, AT_FDCWD, path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file)
        return refused(kindOf(file.error()), u"it cannot be opened: %1"_s.arg(systemErrorWords(file.error())));
    return std::move(*file);
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

LoadError systemFailure(SystemError error) {
    return {LoadErrorKind::Unreadable, u"it cannot be read: %1"_s.arg(systemErrorWords(error))};
}

/// Whether a save in place was cut short, and what is left of it. A path that leads nowhere any more has none.
LoadResult<InPlaceRecovery> recover(FileOps &ops, const ReadRequest &request, const OpenFile &file) {
    const auto status = ops.status(file.descriptor());
    const auto place = ResolvedPath::of(ops, systemPath(request.path));
    if (!status || !place)
        return InPlaceRecovery{};
    return recoverInPlace(
               ops,
               {.file = {*place, file.descriptor(), *status}, .path = request.path, .stateFolder = request.stateFolder})
        .map_error(systemFailure);
}

/// The error of a read, with what recovering has to say of it.
LoadError explained(LoadError error, const InPlaceRecovery &recovery) {
    if (recovery.beingWritten)
        return {LoadErrorKind::Unreadable, u"another program is saving it just now; try again"_s};
    if (!recovery.hindrance.isEmpty())
        error.text += u"; "_s + recovery.hindrance;
    return error;
}

LoadResult<ReadOutcome> readOnce(FileOps &ops, const ReadRequest &request, QStringList &notices, bool &inFlux) {
    auto file = openRegular(ops, systemPath(request.path));
    if (!file)
        return tl::unexpected(file.error());
    const auto recovery = recover(ops, request, *file);
    if (!recovery)
        return tl::unexpected(recovery.error());
    notices.append(recovery->notices);

    ReadOutcome outcome;
    OpenFile base;
    if (recovery->shown) {
        auto memory = recovery->shown->baseInMemory();
        if (!memory)
            return tl::unexpected(systemFailure(memory.error()));
        base = std::move(*memory);
        outcome.tornInto = recovery->shown->head().next;
    }
    const auto before = ops.status(file->descriptor());
    auto container = readContainer(ops, base ? base.descriptor() : file->descriptor(), request.password, request.limits,
                                   request.deriveKey);
    if (!container) {
        inFlux = !recovery->beingWritten && before && mayBeInFlux(ops, file->descriptor(), *before, container.error());
        return tl::unexpected(explained(container.error(), *recovery));
    }
    outcome.container = std::move(*container);
    if (before)
        outcome.status = *before;
    return outcome;
}

} // namespace

LoadResult<FileHeader> readFileHeader(FileOps &ops, const QString &path) {
    return openRegular(ops, systemPath(path))
        .and_then([&](const OpenFile &file) { return readHeaderBlock(ops, file.descriptor()); })
        .map([](HeaderBlock block) { return std::move(block.header); });
}

LoadResult<ReadOutcome> readDatabaseFile(FileOps &ops, const ReadRequest &request, QStringList &notices) {
    for (int reads = 1;; ++reads) {
        bool inFlux = false;
        auto outcome = readOnce(ops, request, notices, inFlux);
        if (outcome || !inFlux || reads == readsMax)
            return outcome;
    }
}

} // namespace qir
