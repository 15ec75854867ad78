#pragma once

#include "qirtbase/journal/JournalFile.h"
#include "qirtbase/model/Database.h"

#include <cstdint>

namespace qir {

/// What a journal holds that can be made again.
struct JournalContents {
    std::uint64_t start = 0; ///< The changes before are in the file already.
    std::uint64_t end = 0;   ///< Behind the last whole group.
    bool belongs = false;    ///< It starts from the version on disk.
    bool isDamaged = false;  ///< What stands behind is not what was written, or nobody understands it.
    bool hasChanges = false; ///< More than the steps of before the save.
    bool isEmpty() const { return start == end; }
};

/// Reads an unlocked journal through once. `saveId` is the version of the file on disk.
JournalContents surveyJournal(JournalFile &journal, const FileIdentifier &saveId);

/// Makes the changes of a journal again, as far as they can be. Gives how many groups that were, and cuts `contents` to
/// them.
int replayJournal(JournalFile &journal, JournalContents &contents, Database &database);

} // namespace qir
