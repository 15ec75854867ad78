#include "base/state/StateFolder.h"
#include "qirtbase/file/CopyTrust.h"
#include "qirtbase/file/InPlaceCopy.h"

#include <cerrno>
#include <set>
#include <utility>

namespace qir {

namespace {

constexpr char subfolder[] = "inplace";

/// Errors that say that there is no such thing, or none for us.
bool isAbsence(SystemError error) {
    return error.number == ENOENT || error.number == ENOTDIR || error.number == EACCES || error.number == ELOOP ||
           error.number == EISDIR || error.number == ENXIO;
}

/// Whether it holds nearly nothing but holes, which reading all of it would take long to find out. Ours are written
/// throughout; but a file system may pack what it stores, and may not have counted yet.
bool isHollow(const struct stat &copy) {
    constexpr off_t quicklyRead = off_t{1} << 24;
    constexpr off_t blockSize = 512; // of st_blocks, whatever the file system's
    constexpr off_t counted = 8;
    constexpr off_t packedMost = 4096;
    return copy.st_size > quicklyRead && copy.st_blocks >= counted &&
           copy.st_blocks * blockSize < copy.st_size / packedMost;
}

} // namespace

/// Looks through the places where safe copies of one file may lie.
class InPlaceSearch {
public:
    InPlaceSearch(FileOps &ops, const InPlaceCopy::File &file)
        : m_ops(ops)
        , m_file(file)
        , m_trust(ops, file) {}

    SystemResult<InPlaceCopy::Found> run(const QString &stateFolder) {
        m_path = placeHash(canonicalPath(m_ops, m_file.place));
        return beside().and_then([&] { return inStateFolder(systemPath(stateFolder) + '/' + subfolder); }).map([&] {
            return std::move(m_found);
        });
    }

private:
    using Step = SystemResult<void>;
    using Match = InPlaceCopy::Match;
    /// Beside the file, in the state folder, or where a pointer leads.
    enum class Where { Beside, StateFolder, Led };

    Step beside() {
        if (!m_file.place.canSync)
            return {};
        const int folder = m_file.place.folder.descriptor();
        const auto names = m_ops.entries(folder, ".");
        if (!names)
            return isAbsence(names.error()) ? Step() : tl::unexpected(names.error());
        for (const std::string &name : *names)
            if (isSafeCopyName(name))
                if (const Step looked = lookAt(folder, ".", name, Where::Beside); !looked)
                    return looked;
        return {};
    }

    Step inStateFolder(const std::string &path) {
        const auto names = m_ops.entries(AT_FDCWD, path);
        if (!names)
            return isAbsence(names.error()) ? Step() : tl::unexpected(names.error());
        for (const std::string &name : *names)
            if (isSafeCopyName(name))
                if (const Step looked = lookAt(AT_FDCWD, path, name, Where::StateFolder); !looked)
                    return looked;
        return {};
    }

    /// Where a pointer leads to a copy that is gone, it goes too.
    Step follow(const SafeCopyPointer &pointer, int pointerFolder, const std::string &name) {
        const std::size_t slash = pointer.path.rfind('/');
        if (pointer.inode != m_file.status.st_ino || slash == std::string::npos)
            return {};
        const std::string folderPath = slash == 0 ? "/" : pointer.path.substr(0, slash);
        const std::string copyName = pointer.path.substr(slash + 1);
        const auto there = m_ops.statusAt(AT_FDCWD, pointer.path, FollowLinks::No);
        if (!there && there.error().number == ENOENT && m_ops.statusAt(AT_FDCWD, folderPath, FollowLinks::Yes))
            (void)m_ops.unlinkAt(pointerFolder, name);
        if (!there || !isSafeCopyName(copyName))
            return {};
        const Step looked = lookAt(AT_FDCWD, folderPath, copyName, Where::Led);
        return looked ? attach(*there, pointerFolder, name) : looked;
    }

    /// The pointer goes with its copy.
    Step attach(const struct stat &there, int pointerFolder, const std::string &name) {
        for (InPlaceCopy &copy : m_found.copies) {
            const auto status = m_ops.status(copy.m_file.descriptor());
            if (!status)
                return tl::unexpected(status.error());
            if (status->st_dev != there.st_dev || status->st_ino != there.st_ino)
                continue;
            auto folder = OpenFile::openAt(m_ops, pointerFolder, ".", O_RDONLY | O_DIRECTORY);
            if (!folder)
                return tl::unexpected(folder.error());
            copy.m_pointerFolder = std::move(*folder);
            copy.m_pointerName = name;
        }
        return {};
    }

    Step lookAt(int base, const std::string &folderPath, const std::string &name, Where where) {
        auto folder = OpenFile::openAt(m_ops, base, folderPath, O_RDONLY | O_DIRECTORY);
        if (!folder)
            return isAbsence(folder.error()) ? Step() : tl::unexpected(folder.error());
        constexpr int flags = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
        auto file = OpenFile::openAt(m_ops, folder->descriptor(), name, O_RDWR | flags);
        const bool isWritable = file.has_value();
        if (!file && isForbidden(file.error()))
            file = OpenFile::openAt(m_ops, folder->descriptor(), name, O_RDONLY | flags);
        if (!file && file.error().number == EACCES)
            m_found.unreadable = QString::fromLocal8Bit(name.c_str());
        if (!file)
            return isAbsence(file.error()) ? Step() : tl::unexpected(file.error());
        const auto known = m_ops.status(file->descriptor());
        if (!known)
            return tl::unexpected(known.error());
        if (!m_seen.emplace(known->st_dev, known->st_ino).second) // a pointer leads to what lies beside too
            return {};
        const auto trusted = m_trust.believes(folder->descriptor(), where == Where::Beside, *known);
        if (!trusted)
            return tl::unexpected(trusted.error());
        return *trusted && !isHollow(*known)
                   ? take(std::move(*folder), name, std::move(*file), isWritable, where != Where::StateFolder)
                   : Step();
    }

    /// Reads what was found, and once more when it is held: only then it stays as it is.
    Step take(OpenFile folder, const std::string &name, OpenFile file, bool isWritable, bool isShared) {
        for (bool isHeld : {false, true}) {
            QByteArray bytes(static_cast<qsizetype>(SafeCopyPointer::sizeMax), Qt::Uninitialized);
            const auto count =
                readFully(m_ops, file.descriptor(), {bytes.data(), static_cast<std::size_t>(bytes.size())}, 0);
            if (!count)
                return tl::unexpected(count.error());
            bytes.truncate(static_cast<qsizetype>(*count));
            const auto head = SafeCopyHead::decode(
                QByteArrayView(bytes).first(std::min(bytes.size(), static_cast<qsizetype>(SafeCopyHead::size))));
            if (!head && !isShared)
                if (const auto pointer = SafeCopyPointer::decode(bytes))
                    return follow(*pointer, folder.descriptor(), name);
            const auto match = head ? matchOf(*head, isShared) : std::nullopt;
            if (!match)
                return isHeld ? Step() : tidy(folder, name, file, bytes);
            if (isHeld) {
                InPlaceCopy copy(m_ops, std::move(folder), name, std::move(file), *head);
                copy.m_isWritable = isWritable;
                copy.m_match = *match;
                return keep(std::move(copy));
            }
            // A file that is open for reading takes no exclusive lock everywhere.
            const auto locked = m_ops.lock(file.descriptor(), isWritable ? LockKind::Exclusive : LockKind::Shared);
            if (!locked && locked.error().number != EWOULDBLOCK)
                return locked;
            if (!locked) {
                m_found.beingWritten = true;
                return {};
            }
        }
        return {};
    }

    Step keep(InPlaceCopy copy) {
        const auto sound = copy.isSound();
        if (!sound)
            return tl::unexpected(sound.error());
        if (*sound)
            m_found.copies.push_back(std::move(copy));
        return {};
    }

    /// One that was made void and could not be removed then.
    Step tidy(const OpenFile &folder, const std::string &name, const OpenFile &file, const QByteArray &bytes) {
        if (bytes.startsWith(SafeCopyHead::voidMark()) && m_ops.lock(file.descriptor(), LockKind::Exclusive))
            (void)m_ops.unlinkAt(folder.descriptor(), name);
        return {};
    }

    std::optional<Match> matchOf(const SafeCopyHead &head, bool isShared) const {
        const bool isInode = head.inode == m_file.status.st_ino;
        const bool isName = isShared ? head.name == placeHash(m_file.place.name) : head.path == m_path;
        if (!isInode && !isName)
            return std::nullopt;
        return isInode && isName ? Match::Both : isInode ? Match::Inode : Match::Name;
    }

    FileOps &m_ops;
    const InPlaceCopy::File &m_file;
    CopyTrust m_trust;
    PlaceHash m_path{};
    std::set<std::pair<dev_t, ino_t>> m_seen;
    InPlaceCopy::Found m_found;
};

SystemResult<InPlaceCopy::Found> InPlaceCopy::find(FileOps &ops, const QString &stateFolder, const File &file) {
    return InPlaceSearch(ops, file).run(stateFolder);
}

} // namespace qir
