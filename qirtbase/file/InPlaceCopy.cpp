#include "qirtbase/file/InPlaceCopy.h"

#include "base/state/StateFolder.h"

#include <QFile>

#include <sys/mman.h>

#include <algorithm>
#include <cerrno>

namespace qir {

namespace {

constexpr char subfolder[] = "inplace";
constexpr mode_t privateFile = 0600;
constexpr std::uint64_t pieceSize = std::uint64_t{1} << 20;

/// Lets those use the copy who may use the file, and nobody else.
SystemResult<void> shareLike(FileOps &ops, StagedFile &staged, const InPlaceCopy::File &file) {
    const auto made = ops.status(staged.descriptor());
    if (!made)
        return tl::unexpected(made.error());
    struct stat wanted = file.status;
    wanted.st_mode |= S_IRUSR | S_IWUSR;
    auto taken = staged.takeAttributes(wanted, file.descriptor);
    if (!taken && isForbidden(taken.error())) { // the owner is not ours to give
        wanted.st_uid = made->st_uid;
        taken = staged.takeAttributes(wanted, file.descriptor);
    }
    if (!taken && isForbidden(taken.error())) { // nor is the group: ours gets what everybody has
        wanted.st_gid = made->st_gid;
        wanted.st_mode = (wanted.st_mode & ~mode_t(S_IRWXG)) | (wanted.st_mode & S_IRWXO) << 3;
        taken = staged.takeAttributes(wanted, file.descriptor);
    }
    // Where nothing of it may be set the copy stays private, which is no reason not to save.
    return !taken && (isForbidden(taken.error()) || isUnsupported(taken.error())) ? SystemResult<void>() : taken;
}

SystemResult<void> syncFolder(FileOps &ops, int folder) {
    const auto synced = ops.sync(folder);
    return !synced && synced.error().number == EINVAL ? SystemResult<void>() : synced;
}

/// Writes the file as it is, then as it is to be, behind the room for the head.
SystemResult<void> writeVersions(FileOps &ops, int copy, int file, ContainerWriter &writer, SafeCopyHead &head) {
    VersionsDigest digest;
    std::uint64_t at = SafeCopyHead::size;
    const auto put = [&](QByteArrayView bytes) {
        digest.add(bytes);
        const auto written = writeFullyAt(ops, copy, bytes, at);
        at += static_cast<std::uint64_t>(bytes.size());
        return written;
    };
    std::vector<char> piece(static_cast<std::size_t>(std::min(pieceSize, head.baseSize)));
    for (std::uint64_t done = 0; done < head.baseSize; done += piece.size()) {
        piece.resize(static_cast<std::size_t>(std::min(pieceSize, head.baseSize - done)));
        const auto count = readFully(ops, file, piece, done);
        if (!count)
            return tl::unexpected(count.error());
        if (*count < piece.size())
            return tl::unexpected(SystemError{EIO});
        if (const auto written = put(QByteArrayView(piece.data(), static_cast<qsizetype>(piece.size()))); !written)
            return written;
    }
    for (QByteArrayView bytes = writer.next(); !bytes.isEmpty(); bytes = writer.next())
        if (const auto written = put(bytes); !written)
            return written;
    head.nextSize = at - SafeCopyHead::size - head.baseSize;
    head.digest = digest.value();
    return writeFullyAt(ops, copy, head.encode(), 0);
}

} // namespace

// ------------------------------------------------------------------------------------------------------------- making

SystemResult<InPlaceCopy> InPlaceCopy::storeBeside(FileOps &ops, const QString &stateFolder, const File &file,
                                                   const FileIdentifier &base, ContainerWriter &writer) {
    if (!file.place.canSync) // nobody would find it there
        return tl::unexpected(SystemError{EACCES});
    auto folder = OpenFile::openAt(ops, file.place.folder.descriptor(), ".", O_RDONLY | O_DIRECTORY);
    if (!folder)
        return tl::unexpected(folder.error());
    auto copy = store(ops, std::move(*folder), true, file, base, writer);
    if (!copy || file.status.st_nlink < 2)
        return copy;
    if (const auto pointed = copy->point(stateFolder, file.status.st_ino); !pointed) {
        (void)copy->remove(); // one that stays says of the file what it is
        return tl::unexpected(pointed.error());
    }
    return copy;
}

SystemResult<InPlaceCopy> InPlaceCopy::storeInStateFolder(FileOps &ops, const QString &stateFolder, const File &file,
                                                          const FileIdentifier &base, ContainerWriter &writer) {
    auto folder = openStateFolder(ops, stateFolder, subfolder);
    if (!folder)
        return tl::unexpected(folder.error());
    return store(ops, std::move(*folder), false, file, base, writer);
}

SystemResult<InPlaceCopy> InPlaceCopy::store(FileOps &ops, OpenFile folder, bool isShared, const File &file,
                                             const FileIdentifier &base, ContainerWriter &writer) {
    auto staged = StagedFile::create(ops, folder.descriptor(), privateFile);
    if (!staged)
        return tl::unexpected(staged.error());
    SafeCopyHead head{.inode = file.status.st_ino,
                      .name = placeHash(file.place.name),
                      .path = placeHash(canonicalPath(ops, file.place)),
                      .base = base,
                      .next = writer.headerBlock().header.saveId,
                      .baseSize = static_cast<std::uint64_t>(file.status.st_size)};
    if (const auto written = writeVersions(ops, staged->descriptor(), file.descriptor, writer, head); !written)
        return tl::unexpected(written.error());
    if (isShared)
        if (const auto shared = shareLike(ops, *staged, file); !shared)
            return tl::unexpected(shared.error());
    if (const auto synced = ops.sync(staged->descriptor()); !synced)
        return tl::unexpected(synced.error());
    if (const auto locked = ops.lock(staged->descriptor(), LockKind::Exclusive); !locked)
        return tl::unexpected(locked.error());
    const std::string name = newSafeCopyName();
    if (const auto published = staged->publishNew(name); !published)
        return tl::unexpected(published.error());
    InPlaceCopy copy(ops, std::move(folder), name, staged->takeFile(), head);
    const auto synced = syncFolder(ops, copy.m_folder.descriptor());
    const auto sound = synced ? copy.isSound() : tl::unexpected(synced.error());
    if (sound && *sound)
        return copy;
    (void)copy.remove(); // one that stays says of the file what it is
    return tl::unexpected(sound ? SystemError{EIO} : sound.error());
}

/// Tells those who come by another name of the file where the copy lies.
SystemResult<void> InPlaceCopy::point(const QString &stateFolder, std::uint64_t inode) {
    auto folder = openStateFolder(*m_ops, stateFolder, subfolder);
    if (!folder)
        return tl::unexpected(folder.error());
    auto staged = StagedFile::create(*m_ops, folder->descriptor(), privateFile);
    if (!staged)
        return tl::unexpected(staged.error());
    const QByteArray bytes = SafeCopyPointer{inode, systemPath(location())}.encode();
    const std::string name = newSafeCopyName();
    return writeFullyAt(*m_ops, staged->descriptor(), bytes, 0)
        .and_then([&] { return m_ops->sync(staged->descriptor()); })
        .and_then([&] { return staged->publishNew(name); })
        .and_then([&] {
            m_pointerFolder = std::move(*folder);
            m_pointerName = name;
            return m_ops->sync(m_pointerFolder.descriptor());
        });
}

QString InPlaceCopy::location() const {
    const auto folder = m_ops->readLinkAt(AT_FDCWD, "/proc/self/fd/" + std::to_string(m_folder.descriptor()));
    return QFile::decodeName((folder ? *folder + '/' + m_name : m_name).c_str());
}

// ------------------------------------------------------------------------------------------------- reading and writing

SystemResult<void> InPlaceCopy::readPart(const Part &part, std::uint64_t at, std::vector<char> &bytes,
                                         std::size_t count) const {
    bytes.resize(at < part.size ? static_cast<std::size_t>(std::min<std::uint64_t>(count, part.size - at)) : 0);
    const auto read = readFully(*m_ops, m_file.descriptor(), bytes, part.offset + at);
    if (!read)
        return tl::unexpected(read.error());
    return *read == bytes.size() ? SystemResult<void>() : tl::unexpected(SystemError{EIO});
}

template<class Take>
SystemResult<void> InPlaceCopy::forEachPiece(const Part &part, Take take) const {
    std::vector<char> piece;
    for (std::uint64_t at = 0; at < part.size; at += piece.size()) {
        if (const auto read = readPart(part, at, piece, pieceSize); !read)
            return read;
        if (const SystemResult<void> taken =
                take(QByteArrayView(piece.data(), static_cast<qsizetype>(piece.size())), at);
            !taken)
            return taken;
    }
    return {};
}

SystemResult<bool> InPlaceCopy::isSound() const {
    const auto status = m_ops->status(m_file.descriptor());
    if (!status)
        return tl::unexpected(status.error());
    const std::uint64_t room = static_cast<std::uint64_t>(status->st_size) - SafeCopyHead::size;
    if (m_head.baseSize > room || m_head.nextSize != room - m_head.baseSize)
        return false;
    VersionsDigest digest;
    const Part both{SafeCopyHead::size, room};
    return forEachPiece(both,
                        [&](QByteArrayView bytes, std::uint64_t) {
                            digest.add(bytes);
                            return SystemResult<void>();
                        })
        .map([&] { return digest.value() == m_head.digest; });
}

SystemResult<InPlaceCopy::Content> InPlaceCopy::contentOf(int file) const {
    const auto status = m_ops->status(file);
    if (!status)
        return tl::unexpected(status.error());
    const auto size = static_cast<std::uint64_t>(status->st_size);
    const auto [least, most] = std::minmax(m_head.baseSize, m_head.nextSize);
    if (size < least || size > most)
        return Content::Foreign;
    bool isBase = size == m_head.baseSize;
    bool isNext = size == m_head.nextSize;
    std::vector<char> there;
    std::vector<char> before;
    std::vector<char> after;
    for (std::uint64_t at = 0; at < size; at += there.size()) {
        there.resize(static_cast<std::size_t>(std::min(pieceSize, size - at)));
        const auto count = readFully(*m_ops, file, there, at);
        if (!count)
            return tl::unexpected(count.error());
        if (*count < there.size())
            return Content::Foreign;
        if (const auto read = readPart(base(), at, before, there.size()); !read)
            return tl::unexpected(read.error());
        if (const auto read = readPart(next(), at, after, there.size()); !read)
            return tl::unexpected(read.error());
        for (std::size_t i = 0; i < there.size(); ++i) {
            const bool asBefore = i < before.size() && there[i] == before[i];
            const bool asAfter = i < after.size() && there[i] == after[i];
            if (!asBefore && !asAfter && (at + i < least || there[i] != 0))
                return Content::Foreign;
            isBase = isBase && asBefore;
            isNext = isNext && asAfter;
        }
    }
    return isBase ? Content::Base : isNext ? Content::Next : Content::Mixture;
}

SystemResult<void> InPlaceCopy::write(const Part &part, int file) {
    // The room is taken before the first byte changes.
    const auto allocated = m_ops->allocate(file, part.size);
    if (!allocated && !isUnsupported(allocated.error()))
        return allocated;
    return forEachPiece(part,
                        [&](QByteArrayView bytes, std::uint64_t at) {
                            m_touched = true;
                            return writeFullyAt(*m_ops, file, bytes, at);
                        })
        .and_then([&] {
            m_touched = true;
            return m_ops->truncate(file, part.size);
        })
        .and_then([&] { return m_ops->sync(file); });
}

SystemResult<void> InPlaceCopy::writeNext(int file) {
    return write(next(), file);
}

SystemResult<void> InPlaceCopy::restoreBase(int file) {
    return write(base(), file);
}

SystemResult<void> InPlaceCopy::copyBase(int to) const {
    return forEachPiece(base(),
                        [&](QByteArrayView bytes, std::uint64_t at) { return writeFullyAt(*m_ops, to, bytes, at); });
}

SystemResult<void> InPlaceCopy::copyNext(int to) const {
    return forEachPiece(next(),
                        [&](QByteArrayView bytes, std::uint64_t at) { return writeFullyAt(*m_ops, to, bytes, at); });
}

SystemResult<OpenFile> InPlaceCopy::baseInMemory() const {
    OpenFile memory(*m_ops, ::memfd_create("qir-base", MFD_CLOEXEC));
    if (!memory)
        return tl::unexpected(SystemError{errno});
    if (const auto copied = copyBase(memory.descriptor()); !copied)
        return tl::unexpected(copied.error());
    return memory;
}

// ----------------------------------------------------------------------------------------------------------- removing

InPlaceCopy::Removal InPlaceCopy::remove() {
    SystemError error{EACCES};
    const auto noted = [&](const SystemResult<void> &done) {
        if (!done)
            error = done.error();
        return done.has_value();
    };
    const int copy = m_file.descriptor();
    const bool marked = m_isWritable && noted(writeFullyAt(*m_ops, copy, SafeCopyHead::voidMark(), 0));
    bool lasting = marked && noted(m_ops->sync(copy));
    const auto unlinked = m_ops->unlinkAt(m_folder.descriptor(), m_name);
    const bool gone = unlinked || unlinked.error().number == ENOENT || noted(unlinked);
    if (gone)
        lasting = noted(syncFolder(*m_ops, m_folder.descriptor())) || lasting;
    if (marked || gone) {
        if (!m_pointerName.empty())
            (void)m_ops->unlinkAt(m_pointerFolder.descriptor(), m_pointerName); // one that stays leads nowhere
        return {.done = true, .lasting = lasting, .certain = true, .error = error};
    }
    // What failed may have been done all the same: the copy shall count as before.
    const auto status = m_ops->status(copy);
    const bool certain = m_isWritable && status && status->st_nlink > 0 &&
                         writeFullyAt(*m_ops, copy, m_head.encode(), 0) && m_ops->sync(copy);
    return {.done = false, .lasting = false, .certain = certain, .error = error};
}

} // namespace qir
