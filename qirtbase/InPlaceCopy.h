#pragma once

#include "base/FileOps.h"
#include "base/StagedFile.h"
#include "qirtbase/Container.h"
#include "qirtbase/FileHeader.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace qir {

/// The whole new version of a file that cannot be replaced but only written in place: hard-linked ones, ones with an
/// owner that we cannot give to a new file, ones in folders that take no new file. It lies synced in the state folder
/// before the first byte of the file changes and goes once the file is whole again; found later, the write was cut
/// short, and it is the whole version.
///
/// Held by a lock while its writer lives.
class InPlaceCopy {
public:
    /// The file that a copy belongs to: known by its path, and by its inode to those who reach it by another link.
    struct Owner {
        std::string path; ///< canonicalPath()
        ino_t inode;
    };

    /// Writes, syncs and reads back a copy, which is sealed with `keys`. `base` is the save id that stands in the file,
    /// zeros for none.
    static SystemResult<InPlaceCopy> store(FileOps &ops, const QString &stateFolder, const Owner &owner,
                                           const FileIdentifier &base, const ContainerKeys &keys,
                                           ContainerWriter &writer);

    struct Found;
    /// Looks for copies of a file (`file` is it, open); none in nearly all cases. A state folder that is missing holds
    /// none.
    static Found find(FileOps &ops, const QString &stateFolder, const Owner &owner, int file);

    /// Removes copies of a file that is whole now: what earlier attempts have left.
    static void removeAll(FileOps &ops, const QString &stateFolder, const Owner &owner, int file);

    /// Brings `file` (opened for reading and writing) to the copy's content, synced. On failure it may hold a mixture,
    /// unless touched() says no.
    SystemResult<void> writeInto(int file);
    /// Whether writeInto() came as far as to change a byte.
    bool touched() const { return m_touched; }
    /// The file is whole: the copy goes.
    SystemResult<void> remove();
    int descriptor() const { return m_file.descriptor(); }
    const FileIdentifier &base() const { return m_base; }
    /// For messages.
    const std::string &name() const { return m_name; }

private:
    InPlaceCopy(FileOps &ops, OpenFile folder, std::string name, OpenFile file, const FileIdentifier &base)
        : m_ops(&ops)
        , m_folder(std::move(folder))
        , m_name(std::move(name))
        , m_file(std::move(file))
        , m_base(base) {}

    FileOps *m_ops;
    OpenFile m_folder;
    std::string m_name;
    OpenFile m_file;
    FileIdentifier m_base;
    bool m_touched = false;
};

struct InPlaceCopy::Found {
    std::vector<InPlaceCopy> copies; ///< Of writes that were cut short; held by us now.
    bool beingWritten = false;       ///< There is one whose writer lives.
};

} // namespace qir
