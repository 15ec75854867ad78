#pragma once

#include "tests/support/RecordingFileOps.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace qir {

/// What a power failure may leave on the disk. At each moment of a recorded run everything that was synced is there;
/// of what was not, each page of a write, each change of a file's size and each change of a folder may be there or be
/// missing, whatever came before or after it. A page that is missing in the middle of a file reads as zeros, and the
/// file may have its new length all the same.
class CrashStates {
public:
    /// What the last mark said and the one before the next event: between them the run was.
    struct Moment {
        int low = 0;
        int high = 0;
        std::size_t event = 0;
    };

    explicit CrashStates(const RecordingFileOps &recorded)
        : m_recorded(recorded) {}

    /// Shows each state once for each mark that it can come after: all of them where that is at most `perMoment` for
    /// each moment, else the extreme ones and random others. Gives how many different ones there were.
    std::size_t visit(std::size_t perMoment,
                      const std::function<void(const DiskState &state, const Moment &moment)> &show);

private:
    /// A change that was not synced; what it holds stays in the recording.
    struct Pending {
        const FileEvent *event;
        std::uint64_t begin = 0; ///< The piece of a write, in the file.
        std::uint64_t end = 0;
    };

    void take(const FileEvent &event, DiskState &durable);
    void settle(DiskState &durable, const std::function<bool(const FileEvent &)> &isSynced);
    DiskState stateOf(const DiskState &durable, const std::vector<bool> &kept, bool fullLength) const;
    static void apply(const Pending &pending, DiskState &state);

    const RecordingFileOps &m_recorded;
    std::vector<Pending> m_pending;
};

/// Inode numbers that files have, and those that they had when recording began.
using FormerInodes = std::map<ino_t, ino_t>;

/// Puts a state below a folder, in place of what is there.
FormerInodes putOnDisk(const DiskState &state, const std::string &root);

/// The system, but files that are put there anew have the inode numbers that they had.
class SameInodes : public ForwardingFileOps {
public:
    explicit SameInodes(FormerInodes inodes)
        : m_inodes(std::move(inodes)) {}

protected:
    SystemResult<struct stat> doStatus(int file) override;
    SystemResult<struct stat> doStatusAt(int folder, const std::string &name, FollowLinks follow) override;

private:
    SystemResult<struct stat> asBefore(SystemResult<struct stat> status) const;

    FormerInodes m_inodes;
};

} // namespace qir
