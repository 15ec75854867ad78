#pragma once

#include "tests/support/ForwardingFileOps.h"

#include <QByteArray>

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace qir {

/// Folders and files as a disk holds them. Paths count from a root, which is "" itself; files have numbers, so that one
/// may have several names or none.
struct DiskState {
    std::set<std::string> folders;            ///< Without the root.
    std::map<std::string, int> names;         ///< Path and file.
    std::map<std::string, std::string> links; ///< Symbolic ones: path and where they lead.
    std::map<int, QByteArray> contents;
    std::map<int, ino_t> inodes; ///< Of the files that were there when recording began.
};

/// What one call changed on the disk, or forced to it.
struct FileEvent {
    enum class Kind { Make, Write, Truncate, SyncFile, Rename, Exchange, Unlink, MakeFolder, SyncFolder, Mark };

    Kind kind;
    int file = -1;            ///< Of Make (a name for it, new or not), Write, Truncate, SyncFile.
    std::string folder = {};  ///< The one whose entries change, or that is synced.
    std::string name = {};    ///< Path.
    std::string other = {};   ///< Path: what Rename and Exchange lead to.
    QByteArray bytes = {};    ///< Of Write.
    std::uint64_t offset = 0; ///< Of Write; the size of Truncate.
    int low = 0;              ///< Of Mark.
    int high = 0;
};

/// Hands every call on and writes down what those that change anything below a folder did.
class RecordingFileOps : public ForwardingFileOps {
public:
    explicit RecordingFileOps(FileOps &under = FileOps::system())
        : ForwardingFileOps(under) {}

    /// From here on, starting from what stands below `root` now.
    void start(const std::string &root);
    /// What comes from here on is not recorded.
    void stop() {
        m_root.clear();
        m_numbers.clear();
    }
    /// Puts a mark between the events.
    void mark(int low, int high) { m_events.push_back({.kind = FileEvent::Kind::Mark, .low = low, .high = high}); }

    const DiskState &initial() const { return m_initial; }
    const std::vector<FileEvent> &events() const { return m_events; }

protected:
    SystemResult<int> doOpenAt(int folder, const std::string &name, int flags, mode_t mode) override;
    SystemResult<std::size_t> doWrite(int file, QByteArrayView bytes) override;
    SystemResult<std::size_t> doWriteAt(int file, QByteArrayView bytes, std::uint64_t offset) override;
    SystemResult<void> doTruncate(int file, std::uint64_t size) override;
    SystemResult<void> doSync(int file) override;
    SystemResult<void> doSyncData(int file) override;
    SystemResult<void> doLinkFile(int file, int folder, const std::string &name) override;
    SystemResult<void> doRenameAt(int folder, const std::string &from, const std::string &to, unsigned flags) override;
    SystemResult<void> doUnlinkAt(int folder, const std::string &name) override;
    SystemResult<void> doMakeFolder(int folder, const std::string &name, mode_t mode) override;

private:
    using Identity = std::pair<dev_t, ino_t>;
    struct Place {
        std::string folder;
        std::string path;
    };

    /// Where a name leads, "outside" where it is not below the root.
    std::optional<Place> placeOf(int folder, const std::string &name) const;
    std::optional<std::string> below(const std::string &path) const;
    int numberOf(int file);
    int newNumber(int file);
    void synced(int file);

    std::string m_root; // "" before start()
    DiskState m_initial;
    std::vector<FileEvent> m_events;
    std::map<Identity, int> m_numbers;
    int m_nextNumber = 0;
};

} // namespace qir
