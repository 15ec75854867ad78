#pragma once

#include "base/FileOps.h"
#include "base/StagedFile.h"
#include "qirtbase/container/Container.h"
#include "qirtbase/file/SafeCopy.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace qir {

/// The safe copy of a file that cannot be replaced but only written in place: hard-linked ones, ones with an owner that
/// we cannot give to a new file, ones in folders that take no new file. It holds the file as it was and as it is to be,
/// and lies synced on the disk before the first byte of the file changes. As long as it counts the save has not
/// happened: whoever finds it brings the file back to what it was. Making it void is what makes a save final.
///
/// It lies beside the file, open to those who may use the file, so that everybody who opens it can make it whole; where
/// the folder takes no file it lies in the state folder. Held by a lock while its writer lives.
class InPlaceCopy {
public:
    /// A file that copies are made or looked for.
    struct File {
        const ResolvedPath &place;
        int descriptor; ///< Open for reading at least.
        struct stat status;
    };

    /// What a copy knows a file by.
    enum class Match { Inode, Name, Both };
    /// What a file holds, seen from a copy: a mixture has each byte from one of the versions at that place, or nothing
    /// yet where only one of them reaches.
    enum class Content { Base, Next, Mixture, Foreign };

    /// Makes a copy in a folder, synced and read back. `base` is the save id that stands in the file, zeros for none.
    static SystemResult<InPlaceCopy> storeBeside(FileOps &ops, const QString &stateFolder, const File &file,
                                                 const FileIdentifier &base, ContainerWriter &writer);
    static SystemResult<InPlaceCopy> storeInStateFolder(FileOps &ops, const QString &stateFolder, const File &file,
                                                        const FileIdentifier &base, ContainerWriter &writer);

    struct Found;
    /// Looks for copies of a file; there are none in nearly all cases.
    static SystemResult<Found> find(FileOps &ops, const QString &stateFolder, const File &file);

    Match match() const { return m_match; }
    SystemResult<Content> contentOf(int file) const;
    /// Whether both versions are still what was written.
    SystemResult<bool> isSound() const;

    /// Bring `file`, open for reading and writing, to one of the versions, synced. On failure it may be a mixture,
    /// unless touched() says no.
    SystemResult<void> writeNext(int file);
    SystemResult<void> restoreBase(int file);
    bool touched() const { return m_touched; }

    /// Copy a version into another file; the version before as a file in memory, for whoever has to read it.
    SystemResult<void> copyBase(int to) const;
    SystemResult<void> copyNext(int to) const;
    SystemResult<OpenFile> baseInMemory() const;

    /// What became of a removal.
    struct Removal {
        bool done = false;    ///< The copy counts no more.
        bool lasting = false; ///< Neither after a power failure.
        bool certain = false; ///< Where it is not done: the copy counts as before.
        SystemError error{0}; ///< Where it is not done, or not lasting.
    };
    /// Makes the copy void and removes it.
    Removal remove();
    /// Whether we may change the copy.
    bool isWritable() const { return m_isWritable; }

    const SafeCopyHead &head() const { return m_head; }
    /// Where it lies, for messages.
    QString location() const;

private:
    /// One of the versions, in the copy.
    struct Part {
        std::uint64_t offset;
        std::uint64_t size;
    };

    InPlaceCopy(FileOps &ops, OpenFile folder, std::string name, OpenFile file, const SafeCopyHead &head)
        : m_ops(&ops)
        , m_folder(std::move(folder))
        , m_name(std::move(name))
        , m_file(std::move(file))
        , m_head(head) {}

    static SystemResult<InPlaceCopy> store(FileOps &ops, OpenFile folder, bool isShared, const File &file,
                                           const FileIdentifier &base, ContainerWriter &writer);
    SystemResult<void> point(const QString &stateFolder, std::uint64_t inode);
    Part base() const { return {SafeCopyHead::size, m_head.baseSize}; }
    Part next() const { return {SafeCopyHead::size + m_head.baseSize, m_head.nextSize}; }
    SystemResult<void> write(const Part &part, int file);
    SystemResult<void> readPart(const Part &part, std::uint64_t at, std::vector<char> &bytes, std::size_t count) const;
    template<class Take>
    SystemResult<void> forEachPiece(const Part &part, Take take) const;
    friend class InPlaceSearch;

    FileOps *m_ops;
    OpenFile m_folder;
    std::string m_name;
    OpenFile m_file;
    SafeCopyHead m_head;
    OpenFile m_pointerFolder; // of the pointer for those who come by another name of the file, if there is one
    std::string m_pointerName;
    Match m_match = Match::Both;
    bool m_isWritable = true;
    bool m_touched = false;
};

struct InPlaceCopy::Found {
    std::vector<InPlaceCopy> copies; ///< Of saves that were cut short or have failed; held by us now.
    bool beingWritten = false;       ///< There is one whose writer lives.
    QString unreadable;              ///< One that we may not look into, "" for none.
};

} // namespace qir
