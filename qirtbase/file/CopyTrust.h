#pragma once

#include "qirtbase/file/InPlaceCopy.h"

namespace qir {

/// Whose safe copies of a file are believed: of those only who could change the file without one. For a file that has
/// no other name this is also whoever may put another one in its place.
class CopyTrust {
public:
    /// `file` must outlive the instance.
    CopyTrust(FileOps &ops, const InPlaceCopy::File &file)
        : m_ops(ops)
        , m_file(file) {}

    /// Whether what was found in an open folder is believed; `isBeside`: that is the file's own folder. What leads to
    /// a copy is believed as a copy is.
    SystemResult<bool> believes(int folder, bool isBeside, const struct stat &copy) const;

private:
    bool hasThisNameOnly() const;
    bool isOpenToMore(const struct stat &copy) const;
    SystemResult<bool> mayWrite(uid_t user) const;
    SystemResult<bool> groupMayWrite() const;
    SystemResult<bool> onlyWritersPutFilesInto(int folder, const struct stat &there) const;

    FileOps &m_ops;
    const InPlaceCopy::File &m_file;
};

} // namespace qir
