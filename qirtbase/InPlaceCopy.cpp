#include "qirtbase/InPlaceCopy.h"

#include "qirtbase/StateFolder.h"

#include <sodium.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace qir {

namespace {

constexpr char subfolder[] = "inplace";
constexpr mode_t privateFile = 0600;
constexpr std::size_t pathHashSize = 16;
constexpr std::size_t pieceSize = std::size_t{1} << 20;

std::string hex(const unsigned char *bytes, std::size_t size) {
    std::string text(size * 2 + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), bytes, size);
    text.pop_back();
    return text;
}

std::string pathHash(const std::string &path) {
    std::array<unsigned char, pathHashSize> hash;
    crypto_generichash(hash.data(), hash.size(), reinterpret_cast<const unsigned char *>(path.data()), path.size(),
                       nullptr, 0);
    return hex(hash.data(), hash.size());
}

std::string inodeText(ino_t inode) {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(inode));
    return text;
}

/// A copy's name: hash of the path, inode, save id that stood in the file.
struct CopyName {
    std::string path;
    std::string inode;
    FileIdentifier base;

    static std::optional<CopyName> of(const std::string &name) {
        constexpr std::size_t inodeAt = pathHashSize * 2 + 1;
        constexpr std::size_t baseAt = inodeAt + 16 + 1;
        if (name.size() != baseAt + layout::idSize * 2 || name[inodeAt - 1] != '-' || name[baseAt - 1] != '-')
            return std::nullopt;
        CopyName parts{name.substr(0, inodeAt - 1), name.substr(inodeAt, 16), {}};
        std::size_t size = 0;
        if (sodium_hex2bin(parts.base.data(), parts.base.size(), name.c_str() + baseAt, layout::idSize * 2, nullptr,
                           &size, nullptr) != 0 ||
            size != parts.base.size())
            return std::nullopt;
        return parts;
    }
};

/// The file id that stands in a file, right or wrong: what is left of the header of a file that was torn.
std::array<char, layout::idSize> rawFileId(FileOps &ops, int file) {
    std::array<char, layout::idSize> id{};
    (void)readFully(ops, file, id, layout::lengthDigits + layout::fileId);
    return id;
}

} // namespace

SystemResult<InPlaceCopy> InPlaceCopy::store(FileOps &ops, const QString &stateFolder, const Owner &owner,
                                             const FileIdentifier &base, const ContainerKeys &keys,
                                             ContainerWriter &writer) {
    auto folder = openStateFolder(ops, stateFolder, subfolder);
    if (!folder)
        return tl::unexpected(folder.error());
    auto staged = StagedFile::create(ops, folder->descriptor(), privateFile);
    if (!staged)
        return tl::unexpected(staged.error());
    if (const auto written = writeContainer(ops, staged->descriptor(), writer); !written)
        return tl::unexpected(written.error());
    if (const auto synced = ops.sync(staged->descriptor()); !synced)
        return tl::unexpected(synced.error());
    if (const auto verified = verifyContainer(ops, staged->descriptor(), writer.headerBlock(), keys); !verified)
        return tl::unexpected(SystemError{EIO});
    if (const auto locked = ops.lock(staged->descriptor(), LockKind::Exclusive); !locked)
        return tl::unexpected(locked.error());
    const std::string name = pathHash(owner.path) + '-' + inodeText(owner.inode) + '-' + hex(base.data(), base.size());
    auto published = staged->publishNew(name);
    if (!published && published.error().number == EEXIST) // of an earlier attempt at the same save
        published = staged->publishOver(name);
    if (!published)
        return tl::unexpected(published.error());
    if (const auto synced = ops.sync(folder->descriptor()); !synced)
        return tl::unexpected(synced.error());
    return InPlaceCopy(ops, std::move(*folder), name, staged->takeFile(), base);
}

InPlaceCopy::Found InPlaceCopy::find(FileOps &ops, const QString &stateFolder, const Owner &owner, int file) {
    Found found;
    const std::string path = systemPath(stateFolder) + '/' + subfolder;
    const auto names = ops.entries(AT_FDCWD, path);
    if (!names)
        return found;
    for (const std::string &name : *names) {
        const auto parts = CopyName::of(name);
        if (!parts || (parts->path != pathHash(owner.path) && parts->inode != inodeText(owner.inode)))
            continue;
        auto folder = OpenFile::openAt(ops, AT_FDCWD, path, O_RDONLY | O_DIRECTORY);
        auto copy = OpenFile::openAt(ops, AT_FDCWD, path + '/' + name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
        if (!folder || !copy)
            continue;
        // Inode numbers repeat from disk to disk: then the file id must be there too, which no write in place changes.
        if (parts->path != pathHash(owner.path) && rawFileId(ops, file) != rawFileId(ops, copy->descriptor()))
            continue;
        if (!ops.lock(copy->descriptor(), LockKind::Exclusive)) {
            found.beingWritten = true;
            continue;
        }
        found.copies.push_back(InPlaceCopy(ops, std::move(*folder), name, std::move(*copy), parts->base));
    }
    return found;
}

void InPlaceCopy::removeAll(FileOps &ops, const QString &stateFolder, const Owner &owner, int file) {
    for (InPlaceCopy &copy : find(ops, stateFolder, owner, file).copies)
        (void)copy.remove(); // the file has moved on from it: the next open sees that too
}

SystemResult<void> InPlaceCopy::writeInto(int file) {
    const auto status = m_ops->status(m_file.descriptor());
    if (!status)
        return tl::unexpected(status.error());
    const auto size = std::uint64_t(status->st_size);
    // The room is taken before the first byte changes.
    const auto allocated = m_ops->allocate(file, size);
    if (!allocated && allocated.error().number != EOPNOTSUPP && allocated.error().number != ENOSYS)
        return allocated;
    std::vector<char> piece(std::size_t(std::min<std::uint64_t>(size, pieceSize)));
    m_touched = false;
    for (std::uint64_t done = 0; done < size;) {
        const auto count = readFully(*m_ops, m_file.descriptor(), piece, done);
        if (!count)
            return tl::unexpected(count.error());
        if (*count == 0)
            return tl::unexpected(SystemError{EIO});
        m_touched = true;
        if (const auto written = writeFullyAt(*m_ops, file, QByteArrayView(piece.data(), qsizetype(*count)), done);
            !written)
            return written;
        done += *count;
    }
    if (const auto cut = m_ops->truncate(file, size); !cut)
        return cut;
    return m_ops->sync(file);
}

SystemResult<void> InPlaceCopy::remove() {
    const auto removed = m_ops->unlinkAt(m_folder.descriptor(), m_name);
    if (!removed && removed.error().number != ENOENT)
        return removed;
    return m_ops->sync(m_folder.descriptor());
}

} // namespace qir
