#include "qirtbase/file/FileSave.h"

#include "base/state/StateFolder.h"
#include "qirtbase/file/InPlaceRecovery.h"
#include "qirtbase/file/KeptVersion.h"
#include "qirtbase/file/Leftovers.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <limits>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t protectedMode = 0600;
constexpr mode_t openMode = 0666;

/// Errors of making, changing or naming a new file that say nothing against writing the old one in place: a folder that
/// takes no new file, an owner that is not ours to give, a file that is a mount point.
bool speaksForWritingInPlace(SystemError error) {
    return isForbidden(error) || error.number == EBUSY || error.number == EXDEV;
}

QString displayName(const std::string &name) {
    return QFile::decodeName(name.c_str());
}

} // namespace

FileSave::FileSave(FileOps &ops, RandomSource &random, SaveRequest request)
    : m_ops(ops)
    , m_random(random)
    , m_request(std::move(request))
    , m_target(ops, m_request.target) {
    m_outcome.header = m_request.header;
    m_outcome.header.fileId = m_request.target.fileId;
}

SaveOutcome FileSave::run() {
    if (const Step done = m_target.open().and_then([&] { return save(); }); !done)
        m_outcome.error = done.error();
    return std::move(m_outcome);
}

FileSave::Step FileSave::save() {
    chooseIdentity();
    const StandingFile &standing = m_target.standing();
    if (standing.exists && standing.status.st_nlink > 1)
        return writeInPlace();
    Step replaced = replace();
    if (!replaced && standing.exists && !m_replaceable)
        return writeInPlace();
    return replaced;
}

void FileSave::chooseIdentity() {
    FileHeader &header = m_outcome.header;
    const StandingFile &standing = m_target.standing();
    const bool otherFile =
        m_request.target.replaceMeant && !(standing.header && standing.header->fileId == header.fileId);
    if (otherFile || header.fileId == FileIdentifier{})
        header.fileId = freshIdentifier(m_random);
    header.saveId = freshIdentifier(m_random);
    if (header.generation < std::numeric_limits<std::uint64_t>::max())
        ++header.generation;
}

void FileSave::makeWriter() {
    m_writer.emplace(m_outcome.header, m_request.keys, m_request.body, m_random);
    m_outcome.header = m_writer->headerBlock().header;
}

FileSave::Step FileSave::cannotReplace(SystemError error) {
    m_replaceable = !speaksForWritingInPlace(error);
    return m_target.failed(error);
}

// ------------------------------------------------------------------------------------------------ replacing the file

FileSave::Step FileSave::replace() {
    Step done = stage()
                    .and_then([&] { return write(); })
                    .and_then([&] { return readBack(); })
                    .and_then([&] { return m_target.standing().exists ? publishOver() : publishNew(); })
                    .and_then([&] { return settle(); });
    m_staged.reset(); // removes what was not published
    return done;
}

FileSave::Step FileSave::stage() {
    makeWriter();
    const bool isPrivate = m_target.standing().exists || m_request.keys.isProtected();
    auto staged = StagedFile::create(m_ops, m_target.folder(), isPrivate ? protectedMode : openMode,
                                     leftoverTag(m_request.target.knownSaveId()));
    if (!staged)
        return cannotReplace(staged.error());
    m_staged.emplace(std::move(*staged));
    // Tells those who clean up that its owner lives; without locks they go by its age.
    (void)m_ops.lock(m_staged->descriptor(), LockKind::Exclusive);
    // The room is taken before anything is written. Where it cannot be taken ahead, writing will tell.
    const auto allocated = m_ops.allocate(m_staged->descriptor(), m_writer->size());
    if (!allocated && !isUnsupported(allocated.error()))
        return m_target.failed(allocated.error());
    return {};
}

FileSave::Step FileSave::write() {
    if (const auto written = writeContainer(m_ops, m_staged->descriptor(), *m_writer); !written)
        return m_target.failed(written.error());
    if (m_target.standing().exists) {
        const auto old =
            OpenFile::openAt(m_ops, m_target.folder(), m_target.name(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
        const auto taken = m_staged->takeAttributes(m_target.standing().status, old ? old->descriptor() : -1);
        if (!taken)
            return cannotReplace(taken.error());
    }
    if (const auto synced = m_ops.sync(m_staged->descriptor()); !synced)
        return m_target.failed(synced.error());
    return {};
}

FileSave::Step FileSave::readBack() {
    const auto verified = verifyContainer(m_ops, m_staged->descriptor(), m_writer->headerBlock(), m_request.keys);
    if (!verified)
        return m_target.failed(u"what was written does not read back: %1"_s.arg(verified.error().text));
    announce();
    return {};
}

void FileSave::announce() const {
    if (m_request.publishing)
        m_request.publishing(m_outcome.header.saveId);
}

void FileSave::notePublished(int file) {
    m_outcome.published = true;
    rememberOwnSave(m_outcome.header.saveId);
    if (const auto status = m_ops.status(file))
        m_outcome.status = *status;
}

FileSave::Step FileSave::publishNew() {
    const auto published = m_staged->publishNew(m_target.name());
    if (published)
        return {};
    if (published.error().number == EEXIST)
        return m_target.failed(u"another program has just made a file of this name; use Save As"_s);
    return notPublished(published.error());
}

FileSave::Step FileSave::notPublished(SystemError error) {
    return m_staged->isUncertain() ? uncertain(error) : m_target.failed(error);
}

FileSave::Step FileSave::publishOver() {
    const auto exchanged = m_staged->exchangeWith(m_target.name());
    if (!exchanged && exchanged.error().number == ENOENT) // removed a moment ago
        return publishNew();
    if (!exchanged)
        return m_staged->isUncertain() ? uncertain(exchanged.error()) : cannotReplace(exchanged.error());
    if (*exchanged == StagedFile::Exchanged::Yes)
        return {};
    // Without an exchange nobody can look at what gave way: so once more before, and what is not ours to throw away
    // gets its own name first.
    auto standing = m_target.look(m_target.name());
    if (!standing)
        return tl::unexpected(standing.error());
    if (!standing->exists)
        return publishNew();
    if (!m_target.isStill(*standing))
        return m_target.conflict(*standing);
    if (m_target.mayBeSomebodysVersion()) {
        const auto file =
            OpenFile::openAt(m_ops, m_target.folder(), m_target.name(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
        if (!file)
            return m_target.failed(file.error());
        if (Step kept = keepCopyElsewhere(file->descriptor()); !kept)
            return kept;
    }
    if (const auto published = m_staged->publishOver(m_target.name()); !published)
        return notPublished(published.error());
    return {};
}

/// The new version stands under its name. First that must be safe, then the old one may go.
FileSave::Step FileSave::settle() {
    notePublished(m_staged->descriptor());
    if (const auto synced = m_target.place().syncFolder(m_ops); !synced) {
        const QString old = displayName(m_staged->temporaryName());
        m_staged->leaveTemporary();
        return failure(u"%1: was saved, but a power failure now might bring the old version back: %2%3"_s.arg(
            m_request.target.name, systemErrorWords(synced.error()),
            old.isEmpty() ? QString() : u" (it stays as '%1')"_s.arg(old)));
    }
    settleReplaced();
    forgetCopies(m_staged->descriptor());
    const QStringList told = removeLeftovers(m_ops, m_target.place(), m_outcome.header.fileId, m_request.target.name);
    m_outcome.notices.append(told);
    return {};
}

/// Looks at what the exchange brought out, and removes it when it is the version that was meant to go.
void FileSave::settleReplaced() {
    const std::string name = m_staged->temporaryName();
    if (name.empty())
        return;
    const auto replaced = m_target.look(name);
    if (replaced && !replaced->exists) { // somebody has cleaned up already
        m_staged->leaveTemporary();
    } else if (!replaced || (replaced->unreadable && !m_target.standing().unreadable)) {
        keepAsConflictCopy(u"what stood there could not be looked at again; it"_s);
    } else if (!m_target.isStill(*replaced)) {
        keepAsConflictCopy(u"another program had saved it meanwhile, and its version"_s);
    } else if (m_request.target.replaceMeant && m_target.mayBeSomebodysVersion()) {
        keepAsConflictCopy(u"the version that stood there"_s);
    } else if (const auto removed = m_staged->removeTemporary(); !removed) {
        m_outcome.notices.append(
            u"%1: was saved, but its previous version could not be removed and stays as '%2': %3"_s.arg(
                m_request.target.name, displayName(name), systemErrorWords(removed.error())));
    }
}

void FileSave::keepAsConflictCopy(const QString &why) {
    const auto kept = underFreeName(conflictName(m_target.name()),
                                    [&](const std::string &candidate) { return m_staged->renameTemporary(candidate); });
    const QString name = kept ? *kept : displayName(m_staged->temporaryName());
    m_staged->leaveTemporary();
    m_outcome.notices.append(u"%1: %2 is kept as '%3'"_s.arg(m_request.target.name, why, name));
}

// -------------------------------------------------------------------------------------------------- writing in place

FileSave::Step FileSave::writeInPlace() {
    const auto file =
        OpenFile::openAt(m_ops, m_target.folder(), m_target.name(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    if (!file)
        return m_target.failed(file.error());
    if (const auto locked = m_ops.lock(file->descriptor(), LockKind::Exclusive);
        !locked && locked.error().number == EWOULDBLOCK)
        return m_target.failed(u"another program is saving it just now; try again"_s);
    const auto status = m_ops.status(file->descriptor());
    if (!status)
        return m_target.failed(status.error());
    if (!m_target.isStill(file->descriptor(), *status))
        return m_target.conflict({});
    return makeWhole({m_target.place(), file->descriptor(), *status})
        .and_then([&] { return m_target.mayBeSomebodysVersion() ? keepCopyElsewhere(file->descriptor()) : Step(); })
        .and_then([&] { return writeThrough(file->descriptor()); });
}

/// What an earlier save in place has left half written becomes again what it was before: that is what this save starts
/// from, and comes back to.
FileSave::Step FileSave::makeWhole(const InPlaceCopy::File &file) {
    const auto recovery = recoverInPlace(m_ops, {.file = file,
                                                 .path = m_request.target.path,
                                                 .stateFolder = m_request.stateFolder,
                                                 .writable = file.descriptor});
    if (!recovery)
        return m_target.failed(recovery.error());
    if (recovery->beingWritten)
        return m_target.failed(u"another program is saving it just now; try again"_s);
    if (recovery->shown)
        return m_target.failed(u"an earlier save of it had been cut short, and it could not be made "
                               "whole first: %1"_s.arg(recovery->hindrance));
    for (const QString &notice : recovery->notices)
        m_outcome.notices.append(u"%1: %2"_s.arg(m_request.target.name, notice));
    return {};
}

SystemResult<InPlaceCopy> FileSave::storeSafeCopy(int file) {
    const auto status = m_ops.status(file); // as it is now that it is whole
    if (!status)
        return tl::unexpected(status.error());
    const InPlaceCopy::File from{m_target.place(), file, *status};
    makeWriter();
    auto copy = InPlaceCopy::storeBeside(m_ops, m_request.stateFolder, from, m_request.target.knownSaveId(), *m_writer);
    if (copy)
        return copy;
    makeWriter(); // the other one has given of its bytes
    return InPlaceCopy::storeInStateFolder(m_ops, m_request.stateFolder, from, m_request.target.knownSaveId(),
                                           *m_writer);
}

FileSave::Step FileSave::writeThrough(int file) {
    auto copy = storeSafeCopy(file);
    if (!copy)
        return m_target.failed(u"no safe copy of it could be made in '%1' first: %2"_s.arg(
            m_request.stateFolder, systemErrorWords(copy.error())));
    announce();
    const auto written = copy->writeNext(file);
    const auto verified =
        written ? verifyContainer(m_ops, file, m_writer->headerBlock(), m_request.keys) : LoadResult<void>();
    if (!written || !verified)
        return undo(*copy, file, written ? verified.error().text : systemErrorWords(written.error()));
    const InPlaceCopy::Removal removal = copy->remove();
    if (!removal.done && removal.certain)
        return undo(*copy, file, systemErrorWords(removal.error));
    if (!removal.done)
        return uncertain(removal.error);
    notePublished(file);
    if (!removal.lasting)
        return failure(u"%1: was saved, but a power failure now might bring the old version back: %2"_s.arg(
            m_request.target.name, systemErrorWords(removal.error)));
    return {};
}

/// The save has failed: the file becomes what it was, now or when it is next used.
FileSave::Step FileSave::undo(InPlaceCopy &copy, int file, const QString &reason) {
    const auto restored = copy.touched() ? copy.restoreBase(file) : SystemResult<void>();
    if (restored) {
        (void)copy.remove(); // one that stays says of the file what it is
        return m_target.failed(reason);
    }
    m_outcome.torn = true;
    return m_target.failed(u"%1; it is incomplete now, and becomes what it was before when it is next "
                           "saved or opened"_s.arg(reason));
}

FileSave::Step FileSave::uncertain(SystemError error) {
    return m_target.failed(u"%1; whether the old or the new version stands there now could not be found "
                           "out"_s.arg(systemErrorWords(error)));
}

/// The file is whole again: what an attempt in place has left of the version that this save followed is of no use.
void FileSave::forgetCopies(int file) {
    const FileIdentifier followed = m_request.target.knownSaveId();
    const auto status = m_ops.status(file);
    if (!status || followed == FileIdentifier{})
        return; // the next open sees to it
    auto found = InPlaceCopy::find(m_ops, m_request.stateFolder, {m_target.place(), file, *status});
    if (!found)
        return;
    for (InPlaceCopy &copy : found->copies)
        if (copy.head().base == followed)
            (void)copy.remove();
}

/// Before a version that somebody else made of our file is overwritten: a copy of it, beside it or else in the state
/// folder.
FileSave::Step FileSave::keepCopyElsewhere(int file) {
    const auto kept = keepVersionOf(m_ops, file, m_target, m_request.stateFolder);
    if (!kept)
        return m_target.failed(
            u"the version that stands there could not be kept: %1"_s.arg(systemErrorWords(kept.error())));
    m_outcome.notices.append(u"%1: the version that stood there is kept as '%2'"_s.arg(m_request.target.name, *kept));
    return {};
}

} // namespace qir
