#pragma once

#include "base/FileOps.h"
#include "base/Result.h"

#include <QString>

#include <string>
#include <vector>

namespace qir {

/// The folder of the journals within a state folder.
std::string journalFolderPath(const QString &stateFolder);

/// Opens it for writing journals, made where it is missing. The error is the reason in words, with the folder's name
/// where nobody can rely on what is kept there.
tl::expected<OpenFile, QString> makeJournalFolder(FileOps &ops, const QString &stateFolder);

/// The folder of the journals as it is found by somebody who looks for them.
struct JournalFolder {
    OpenFile folder;
    std::vector<std::string> names; ///< All that is in it; none where there is no such folder.
    QString problem;                ///< Why what is in it is not to be read, "" in nearly all cases.

    static JournalFolder find(FileOps &ops, const QString &stateFolder);

    /// One more descriptor of it.
    SystemResult<OpenFile> open(FileOps &ops) const;
    /// Journals that were ended are kept for seven days from then on and, where a clock was wrong, for seven days from
    /// when they were first found too old; so is what was left while one was made.
    void removeOld(FileOps &ops) const;
};

} // namespace qir
