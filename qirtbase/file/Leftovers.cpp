#include "qirtbase/file/Leftovers.h"

#include "qirtbase/container/Container.h"
#include "qirtbase/file/KeptVersion.h"

#include <cstdio>
#include <ctime>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t tagBytes = 4;
constexpr std::time_t oldEnough = 3600; // seconds; a living save without locks is done long before

enum class Fate { Stays, Goes, IsKept };

/// Whether it may be what a save had begun to write: the header is the first of it, and room without any the least.
/// Anything else was exchanged for what a save had written, and is somebody's.
bool isHalfWritten(FileOps &ops, int file, const LoadResult<HeaderBlock> &block) {
    char first = 0;
    return block || (readFully(ops, file, {&first, 1}, 0) && first == 0);
}

Fate fateOf(FileOps &ops, int file, const std::string &tag, const FileIdentifier &fileId) {
    const auto status = ops.status(file);
    if (!status || !S_ISREG(status->st_mode) || !ops.lock(file, LockKind::Exclusive))
        return Fate::Stays;
    const auto block = readHeaderBlock(ops, file);
    const bool isWhole = block && fileSizeOf(*block) == static_cast<std::uint64_t>(status->st_size);
    if (isWhole && block->header.fileId != fileId)
        return Fate::Stays; // another file's: its own next save sees to it
    if (isWhole)
        return leftoverTag(block->header.saveId) == tag ? Fate::Goes : Fate::IsKept;
    const bool isOld = status->st_mtim.tv_sec + oldEnough < std::time(nullptr);
    return isOld && (tag.empty() || isHalfWritten(ops, file, block)) ? Fate::Goes : Fate::Stays;
}

} // namespace

std::string leftoverTag(const FileIdentifier &saveId) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string tag;
    for (std::size_t i = 0; i < tagBytes; ++i)
        tag.append({digits[saveId[i] >> 4], digits[saveId[i] & 15]});
    return tag;
}

QStringList removeLeftovers(FileOps &ops, const ResolvedPath &place, const FileIdentifier &fileId,
                            const QString &name) {
    QStringList notices;
    const int folder = place.folder.descriptor();
    const auto entries = ops.entries(folder, ".");
    if (!entries)
        return notices;
    for (const std::string &entry : *entries) {
        const auto tag = StagedFile::tagOf(entry);
        if (!tag)
            continue;
        const auto file = OpenFile::openAt(ops, folder, entry, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
        if (!file)
            continue;
        const Fate fate = fateOf(ops, file->descriptor(), *tag, fileId);
        if (fate == Fate::Goes) {
            (void)ops.unlinkAt(folder, entry);
        } else if (fate == Fate::IsKept) {
            const auto kept = underFreeName(conflictName(place.name), [&](const std::string &candidate) {
                return ops.renameAt(folder, entry, candidate, RENAME_NOREPLACE);
            });
            if (kept)
                notices.append(
                    u"%1: a version that an interrupted save had left behind is kept as '%2'"_s.arg(name, *kept));
        }
    }
    return notices;
}

} // namespace qir
