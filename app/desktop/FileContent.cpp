#include "app/desktop/FileContent.h"

#include <xxhash.h>

#include <cerrno>
#include <memory>
#include <vector>

namespace qir {

namespace {

constexpr std::size_t pieceSize = 1 << 20;

struct FreeState {
    void operator()(XXH3_state_t *state) const { XXH3_freeState(state); }
};

std::int64_t nanoseconds(const struct timespec &time) {
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

FileContent::State stateOf(SystemError error) {
    return error.number == ENOENT || error.number == ENOTDIR ? FileContent::State::Missing
                                                             : FileContent::State::Unreadable;
}

} // namespace

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
    const std::unique_ptr<XXH3_state_t, FreeState> state(XXH3_createState());
    XXH3_128bits_reset(state.get());
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
        XXH3_128bits_update(state.get(), piece.data(), *count);
        content.size += *count;
    }
    const XXH128_hash_t digest = XXH3_128bits_digest(state.get());
    content.state = FileContent::State::There;
    content.high = digest.high64;
    content.low = digest.low64;
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

} // namespace qir
