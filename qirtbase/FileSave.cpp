#include "qirtbase/FileSave.h"

#include <QDateTime>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <set>

namespace qir {

namespace {

constexpr mode_t protectedMode = 0600;
constexpr mode_t openMode = 0666;
constexpr mode_t modeBits = 07777;
constexpr std::size_t nameBytesMax = 255;
constexpr int conflictNamesMax = 100;

FileIdentifier freshIdentifier(RandomSource &random) {
    FileIdentifier id{};
    while (id == FileIdentifier{}) // all zeros means "none"
        random.fill(id);
    return id;
}

/// "NAME (conflict TIME)", NAME cut where the whole would be too long for a file name.
QString conflictName(const std::string &name, const QString &time, int number) {
    QString tail = QStringLiteral(" (conflict %1)").arg(time);
    if (number > 1)
        tail.append(QStringLiteral(" %1").arg(number));
    QString stem = QFile::decodeName(name.c_str());
    while (std::size_t((stem + tail).toUtf8().size()) > nameBytesMax)
        stem.chop(stem.size() > 1 && stem.back().isLowSurrogate() ? 2 : 1);
    return stem + tail;
}

bool sameVersion(const struct stat &left, const struct stat &right) {
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino && left.st_size == right.st_size &&
           left.st_mtim.tv_sec == right.st_mtim.tv_sec && left.st_mtim.tv_nsec == right.st_mtim.tv_nsec;
}

std::set<FileIdentifier> &ownSaves() {
    static std::set<FileIdentifier> saves;
    return saves;
}

} // namespace

void rememberOwnSave(const FileIdentifier &saveId) {
    ownSaves().insert(saveId);
}
bool isOwnSave(const FileIdentifier &saveId) {
    return ownSaves().contains(saveId);
}

FileSave::FileSave(FileOps &ops, RandomSource &random, SaveRequest request)
    : m_ops(ops)
    , m_random(random)
    , m_request(std::move(request)) {
    m_outcome.header = m_request.header;
}

SaveOutcome FileSave::run() {
    const Step done = resolve()
                          .and_then([&] { return checkConflict(); })
                          .and_then([&] { return stage(); })
                          .and_then([&] { return write(); })
                          .and_then([&] { return readBack(); })
                          .and_then([&] { return publish(); });
    if (!done)
        m_outcome.error = done.error();
    return std::move(m_outcome);
}

tl::unexpected<Error> FileSave::failed(const QString &reason) const {
    return failure(QStringLiteral("%1: could not be saved: %2").arg(m_request.name, reason));
}

tl::unexpected<Error> FileSave::failed(SystemError error) const {
    return failed(systemErrorWords(error));
}

tl::unexpected<Error> FileSave::conflict(const Standing &standing) const {
    const bool own = standing.header && isOwnSave(standing.header->saveId);
    return failure(
        QStringLiteral("%1: was changed %2 since it was opened; use Save As")
            .arg(m_request.name, own ? QStringLiteral("in the other pane") : QStringLiteral("by another program")));
}

FileSave::Step FileSave::resolve() {
    auto target = ResolvedPath::of(m_ops, systemPath(m_request.path));
    if (!target) {
        const int number = target.error().number;
        if (number == ENOENT || number == ENOTDIR)
            return failed(QStringLiteral("its folder is gone"));
        return failed(target.error());
    }
    m_target.emplace(std::move(*target));
    return {};
}

Result<FileSave::Standing> FileSave::look(const std::string &name) {
    Standing standing;
    const int folder = m_target->folder.descriptor();
    const auto status = m_ops.statusAt(folder, name, FollowLinks::No);
    if (!status && status.error().number == ENOENT)
        return standing;
    if (!status)
        return failed(status.error());
    standing.exists = true;
    standing.status = *status;
    if (!S_ISREG(status->st_mode))
        return failed(QStringLiteral("its name now belongs to something that is not a file"));
    auto block = OpenFile::openAt(m_ops, folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK)
                     .map_error([](SystemError error) {
                         return LoadError{LoadErrorKind::Unreadable, systemErrorWords(error)};
                     })
                     .and_then([&](const OpenFile &file) { return readHeaderBlock(m_ops, file.descriptor()); });
    if (block)
        standing.header = std::move(block->header);
    else
        standing.unreadable = block.error().kind == LoadErrorKind::Unreadable;
    if (standing.unreadable && !m_request.replaceMeant)
        return failed(QStringLiteral("it cannot be read any more: %1").arg(block.error().text));
    return standing;
}

bool FileSave::isOurs(const FileHeader &header) const {
    return header.saveId == m_request.expected || header.saveId == m_request.attempted;
}

FileSave::Step FileSave::checkConflict() {
    auto standing = look(m_target->name);
    if (!standing)
        return tl::unexpected(standing.error());
    m_standing = std::move(*standing);
    if (m_standing.exists && !m_request.replaceMeant && !(m_standing.header && isOurs(*m_standing.header)))
        return conflict(m_standing);
    chooseIdentity();
    return {};
}

void FileSave::chooseIdentity() {
    FileHeader &header = m_outcome.header;
    const bool otherFile = m_request.replaceMeant && !(m_standing.header && m_standing.header->fileId == header.fileId);
    if (otherFile || header.fileId == FileIdentifier{})
        header.fileId = freshIdentifier(m_random);
    header.saveId = freshIdentifier(m_random);
    if (header.generation < std::numeric_limits<std::uint64_t>::max())
        ++header.generation;
}

FileSave::Step FileSave::stage() {
    m_writer.emplace(m_outcome.header, m_request.keys, m_request.body, m_random);
    m_outcome.header = m_writer->headerBlock().header;
    const mode_t mode = m_standing.exists || m_request.keys.isProtected() ? protectedMode : openMode;
    auto staged = StagedFile::create(m_ops, m_target->folder.descriptor(), mode);
    if (!staged)
        return failed(staged.error());
    m_staged.emplace(std::move(*staged));
    // The room is taken before anything is written. Where it cannot be taken ahead, writing will tell.
    const auto allocated = m_ops.allocate(m_staged->descriptor(), m_writer->size());
    if (!allocated && allocated.error().number != EOPNOTSUPP && allocated.error().number != ENOSYS)
        return failed(allocated.error());
    return {};
}

FileSave::Step FileSave::write() {
    for (QByteArrayView piece = m_writer->next(); !piece.isEmpty(); piece = m_writer->next())
        if (const auto written = writeFully(m_ops, m_staged->descriptor(), piece); !written)
            return failed(written.error());
    return keepAttributes().and_then([&]() -> Step {
        if (const auto synced = m_ops.sync(m_staged->descriptor()); !synced)
            return failed(synced.error());
        return {};
    });
}

FileSave::Step FileSave::keepAttributes() {
    if (!m_standing.exists)
        return {};
    const auto made = m_ops.status(m_staged->descriptor());
    if (!made)
        return failed(made.error());
    // Owner first: changing it takes bits away from the mode.
    const struct stat &old = m_standing.status;
    if (made->st_uid != old.st_uid || made->st_gid != old.st_gid)
        if (const auto set = m_ops.setOwner(m_staged->descriptor(), old.st_uid, old.st_gid); !set)
            return failed(QStringLiteral("its owner and group cannot be kept: %1").arg(systemErrorWords(set.error())));
    if (const auto set = m_ops.setMode(m_staged->descriptor(), old.st_mode & modeBits); !set)
        return failed(set.error());
    return {};
}

FileSave::Step FileSave::readBack() {
    const auto verified = verifyContainer(m_ops, m_staged->descriptor(), m_writer->headerBlock(), m_request.keys);
    if (!verified)
        return failed(QStringLiteral("what was written does not read back: %1").arg(verified.error().text));
    return {};
}

FileSave::Step FileSave::publish() {
    return (m_standing.exists ? publishOver() : publishNew()).and_then([&] {
        m_outcome.published = true;
        rememberOwnSave(m_outcome.header.saveId);
        return settleFolder();
    });
}

FileSave::Step FileSave::publishNew() {
    const auto published = m_staged->publishNew(m_target->name);
    if (published)
        return {};
    if (published.error().number == EEXIST)
        return failed(QStringLiteral("another program has just made a file of this name; use Save As"));
    return failed(published.error());
}

FileSave::Step FileSave::publishOver() {
    const auto exchanged = m_staged->exchangeWith(m_target->name);
    if (!exchanged && exchanged.error().number == ENOENT) // removed a moment ago
        return publishNew();
    if (!exchanged)
        return failed(exchanged.error());
    if (*exchanged == StagedFile::Exchanged::Yes)
        return {};
    auto standing = look(m_target->name);
    if (!standing)
        return tl::unexpected(standing.error());
    if (!standing->exists)
        return publishNew();
    if (!sameVersion(standing->status, m_standing.status))
        return conflict(*standing);
    if (const auto published = m_staged->publishOver(m_target->name); !published)
        return failed(published.error());
    return {};
}

/// Looks at what the exchange brought out, and removes it when it is the version that was meant to go.
void FileSave::settleReplaced() {
    const std::string name = m_staged->temporaryName();
    if (name.empty())
        return;
    const auto replaced = look(name);
    if (!replaced || !replaced->exists || !sameVersion(replaced->status, m_standing.status)) {
        keepAsConflictCopy(QStringLiteral("another program had saved it meanwhile, and its version"));
        return;
    }
    // The user meant to replace what stood there, but what somebody else made of our file is not ours to throw away.
    const bool mayBeOurs =
        m_standing.unreadable ||
        (m_standing.header && m_standing.header->fileId == m_request.header.fileId && !isOurs(*m_standing.header));
    if (m_request.replaceMeant && mayBeOurs) {
        keepAsConflictCopy(QStringLiteral("the version that stood there"));
        return;
    }
    if (const auto removed = m_staged->removeTemporary(); !removed && removed.error().number != ENOENT)
        m_outcome.notices.append(
            QStringLiteral("%1: was saved, but its previous version could not be removed and stays as "
                           "'%2': %3")
                .arg(m_request.name, QFile::decodeName(name.c_str()), systemErrorWords(removed.error())));
}

void FileSave::keepAsConflictCopy(const QString &why) {
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH.mm.ss"));
    QString kept = QFile::decodeName(m_staged->temporaryName().c_str());
    for (int number = 1; number <= conflictNamesMax; ++number) {
        const QString name = conflictName(m_target->name, time, number);
        const auto renamed = m_staged->renameTemporary(systemPath(name));
        if (renamed) {
            kept = name;
            break;
        }
        if (renamed.error().number != EEXIST)
            break;
    }
    m_staged->leaveTemporary();
    m_outcome.notices.append(QStringLiteral("%1: %2 is kept as '%3'").arg(m_request.name, why, kept));
}

FileSave::Step FileSave::settleFolder() {
    // First the new version must be safe under its name, then the old one may go.
    const auto synced = m_target->syncFolder(m_ops);
    settleReplaced();
    if (!synced)
        return failure(QStringLiteral("%1: was saved, but a power failure now might bring the old version back: %2")
                           .arg(m_request.name, systemErrorWords(synced.error())));
    return {};
}

} // namespace qir
