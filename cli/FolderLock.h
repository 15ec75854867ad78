#pragma once

#include "base/FileOps.h"

#include <QString>

namespace qir {

/// Lets one command after the other change the files of a folder, while it lives: each starts from what the one before
/// has saved. Where the file system knows no such lock there is none.
class FolderLock {
public:
    /// Of the folder that the file is in. Waits for those before.
    explicit FolderLock(const QString &file);

private:
    OpenFile m_folder;
};

} // namespace qir
