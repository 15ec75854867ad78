#pragma once

#include "base/FileOps.h"

#include <cerrno>
#include <optional>
#include <string>

namespace qir {

/// Whether a file system does not know what was asked of it.
inline bool isUnsupported(SystemError error) {
    return error.number == EINVAL || error.number == ENOSYS || error.number == EOPNOTSUPP;
}

/// Whether it knows, and does not let us.
inline bool isForbidden(SystemError error) {
    return error.number == EACCES || error.number == EPERM || error.number == EROFS;
}

/// Where a path leads: an open folder and the name in it, symbolic links followed to their end. Resolved once, so that
/// whatever is renamed meanwhile, all steps of a save meet the same folder.
struct ResolvedPath {
    OpenFile folder;
    std::string name;
    bool canSync = true; ///< False for a folder that we may use but not read: its entries cannot be forced to disk.

    /// Fails where a folder on the way is missing or not open to us, or where the path names a folder by its form. The
    /// last part itself may be missing.
    static SystemResult<ResolvedPath> of(FileOps &ops, const std::string &path);

    /// Forces the folder's entries to disk, where the file system knows how.
    SystemResult<void> syncFolder(FileOps &ops) const;
};

/// A new version of a file that nobody sees until it is published whole: written to an unnamed file in the folder of
/// its target, or, where the file system has none, under a short hidden name. Not published, it vanishes with its
/// owner.
class StagedFile {
public:
    enum class Exchanged { Yes, NotSupported };

    /// `mode` is subject to the umask. `folder` must stay open as long as the instance lives. `tag` becomes part of the
    /// hidden name, for whoever finds it after a crash.
    static SystemResult<StagedFile> create(FileOps &ops, int folder, mode_t mode, const std::string &tag = {});
    /// The tag of a hidden name, nothing for any other name.
    static std::optional<std::string> tagOf(const std::string &name);
    StagedFile(StagedFile &&other) noexcept;
    StagedFile &operator=(StagedFile &&) = delete;
    ~StagedFile();

    int descriptor() const { return m_file.descriptor(); }

    /// Owner, group, access list, the user's attributes and mode of the file that it is to replace: `old` tells them,
    /// `oldFile` is that file opened for reading, or -1 where it cannot be. Fails where one of them cannot be kept.
    SystemResult<void> takeAttributes(const struct stat &old, int oldFile);

    /// Gives the file its name; fails with EEXIST where the name is taken by now.
    SystemResult<void> publishNew(const std::string &name);
    /// Changes places with what stands under `name`, in one step: that stands under temporaryName() then, and it is the
    /// caller's to look at and to remove or keep. Fails with ENOENT where nothing stands there any more.
    SystemResult<Exchanged> exchangeWith(const std::string &name);
    /// Takes the place of what stands under `name`, where exchanging is not supported.
    SystemResult<void> publishOver(const std::string &name);

    /// True after a publishing call that has failed where nobody can tell what it did: the system does not let us look.
    bool isUncertain() const { return m_uncertain; }

    /// The descriptor, for whoever needs the published file further; only once it is published.
    OpenFile takeFile() { return std::move(m_file); }

    /// The hidden name in the folder, "" for none.
    const std::string &temporaryName() const { return m_temporaryName; }
    /// Removes what stands under the hidden name.
    SystemResult<void> removeTemporary();
    /// Renames what stands under the hidden name; fails with EEXIST where the name is taken, and it stays hidden then.
    SystemResult<void> renameTemporary(const std::string &name);
    /// Leaves what stands under the hidden name where it is.
    void leaveTemporary() { m_temporaryName.clear(); }

private:
    StagedFile(FileOps &ops, int folder, OpenFile file, std::string tag, std::string temporaryName);
    SystemResult<void> nameTemporarily();
    SystemResult<void> moveTemporary(const std::string &name, unsigned flags);
    enum class Standing { No, Yes, Unknown };
    /// Whether `name` in the folder is this very file.
    Standing standingUnder(const std::string &name);
    /// What a call did that was to put this file under `name`: one that failed may have done so all the same.
    struct Naming {
        Standing standing;
        SystemError error; ///< Where it does not stand there.
    };
    template<class Call>
    Naming named(const std::string &name, Call call);

    FileOps &m_ops;
    int m_folder;
    OpenFile m_file;
    std::string m_tag;
    std::string m_temporaryName;
    bool m_uncertain = false;
};

} // namespace qir
