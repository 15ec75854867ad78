#include "app/desktop/FileContent.h"

#include <xxhash.h>

#include <cerrno>
#include <vector>

namespace qir {

namespace {

constexpr std::size_t pieceSize = 1 << 20;

constexpr std::int64_t second = 1'000'000'000; // in nanoseconds
constexpr std::int64_t fineTick = second / 50; // of the system's own clock, and more
constexpr std::int64_t coarseTick = 2 * second;

std::int64_t nanoseconds(const struct timespec &time) {
    return static_cast<std::int64_t>(time.tv_sec) * second + time.tv_nsec;
}

FileContent::State stateOf(SystemError error) {
    return error.number == ENOENT || error.number == ENOTDIR ? FileContent::State::Missing
                                                             : FileContent::State::Unreadable;
}

} // namespace

ContentDigest::ContentDigest()
    : m_state(XXH3_createState()) {
    XXH3_128bits_reset(m_state.get());
}

void ContentDigest::add(QByteArrayView bytes) {
    XXH3_128bits_update(m_state.get(), bytes.data(), static_cast<std::size_t>(bytes.size()));
}

void ContentDigest::add(std::int64_t number) {
    XXH3_128bits_update(m_state.get(), &number, sizeof number);
}

ContentDigest::Halves ContentDigest::halves() const {
    const XXH128_hash_t digest = XXH3_128bits_digest(m_state.get());
    return {.high = digest.high64, .low = digest.low64};
}

void ContentDigest::FreeState::operator()(XXH3_state_s *state) const {
    XXH3_freeState(state);
}

FileContent fileContent(FileOps &ops, const QString &path) {
    FileContent content;
    const auto file = OpenFile::openAt(ops, AT_FDCWD, systemPath(path), O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file) {
        content.state = stateOf(file.error());
        return content;
    }
    const auto status = ops.status(file->descriptor());
    if (!status || !S_ISREG(status->st_mode))
        return content;
    ContentDigest digest;
    std::vector<char> piece(pieceSize);
    for (;;) {
        const auto count = ops.readAt(file->descriptor(), piece, content.size);
        if (!count) {
            content = {};
            content.state = FileContent::State::Unreadable;
            return content;
        }
        if (*count == 0)
            break;
        digest.add(QByteArrayView(piece.data(), static_cast<qsizetype>(*count)));
        content.size += *count;
    }
    const ContentDigest::Halves halves = digest.halves();
    content.state = FileContent::State::There;
    content.high = halves.high;
    content.low = halves.low;
    return content;
}

FileMark fileMark(FileOps &ops, const QString &path) {
    const auto status = ops.statusAt(AT_FDCWD, systemPath(path), FollowLinks::Yes);
    if (!status)
        return {};
    return {.device = status->st_dev,
            .inode = status->st_ino,
            .size = status->st_size,
            .modified = nanoseconds(status->st_mtim),
            .changed = nanoseconds(status->st_ctim)};
}

bool isSettled(const FileMark &mark, std::int64_t now) {
    if (mark.inode == 0)
        return true; // whatever comes has a number
    const bool hasFineClock = mark.changed % second != 0;
    return mark.changed + (hasFineClock ? fineTick : coarseTick) < now;
}

} // namespace qir
