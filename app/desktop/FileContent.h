#pragma once

#include "base/FileOps.h"

#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <memory>

struct XXH3_state_s;

namespace qir {

/// The digest of bytes that are added one after another, to be told from that of others.
class ContentDigest {
public:
    ContentDigest();

    void add(QByteArrayView bytes);
    void add(std::int64_t number);

    struct Halves {
        std::uint64_t high = 0;
        std::uint64_t low = 0;
    };
    Halves halves() const;

private:
    struct FreeState {
        void operator()(XXH3_state_s *state) const;
    };
    std::unique_ptr<XXH3_state_s, FreeState> m_state;
};

/// What stands under a path, told apart by its bytes alone: neither times nor owner nor inode count.
struct FileContent {
    enum class State { Missing, Unreadable, There };

    State state = State::Missing;
    std::uint64_t size = 0;
    std::uint64_t high = 0; ///< The two halves of the bytes' digest.
    std::uint64_t low = 0;

    friend bool operator==(const FileContent &, const FileContent &) = default;
};

/// Reads the file. What is neither there nor a regular file is missing.
FileContent fileContent(FileOps &ops, const QString &path);

/// By what a file is known not to have been touched since, without reading it: any write, replacement or change of
/// permissions gives another one, where the file system's clock is fine enough.
struct FileMark {
    std::uint64_t device = 0;
    std::uint64_t inode = 0; ///< 0 where nothing stands there.
    std::int64_t size = 0;
    std::int64_t modified = 0; ///< In nanoseconds, as `changed`.
    std::int64_t changed = 0;

    friend bool operator==(const FileMark &, const FileMark &) = default;
};

FileMark fileMark(FileOps &ops, const QString &path);

/// Whether whatever is written after `now`, in nanoseconds since 1970, gives another mark. Not so while the clock by
/// which the file system tells times may still show the time of the last write.
bool isSettled(const FileMark &mark, std::int64_t now);

} // namespace qir
