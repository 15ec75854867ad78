#include "qirtbase/journal/JournalSurvey.h"

#include "base/ByteReader.h"
#include "qirtbase/journal/JournalCodec.h"
#include "qirtbase/journal/JournalReplay.h"

namespace qir {

namespace {

bool isAboutTheFile(const ReadOperation &operation) {
    return operation.is(JournalOperation::SavingAs) || operation.is(JournalOperation::Ended);
}

} // namespace

JournalContents surveyJournal(JournalFile &journal, const FileIdentifier &saveId) {
    JournalContents contents;
    contents.belongs = journal.head().base == saveId;
    journal.rewind();
    contents.start = contents.end = journal.offset();
    contents.isDamaged = true;
    int depth = 0;
    bool inKept = false;
    bool hasChanges = false; // in groups that may not be whole
    for (QByteArray payload; journal.readRecord(payload);) {
        QByteArrayView rest = payload;
        while (!rest.isEmpty()) {
            const auto operation = takeOperation(rest);
            if (!operation)
                return contents;
            const bool begins = operation->is(JournalOperation::KeptBegin);
            const bool ends = operation->is(JournalOperation::KeptEnd);
            if (begins || operation->is(JournalOperation::GroupBegin))
                ++depth;
            else if (ends || operation->is(JournalOperation::GroupEnd) || operation->is(JournalOperation::GroupUndo))
                --depth;
            if (depth < 0)
                return contents;
            const bool isChangeHere = !inKept && !begins && !isAboutTheFile(*operation);
            inKept = begins || (inKept && !ends);
            hasChanges = hasChanges || isChangeHere;
            if (operation->is(JournalOperation::SavingAs) && depth == 0 && operation->bytes == viewOf(saveId)) {
                contents.belongs = true;
                contents.start = journal.offset();
                contents.hasChanges = hasChanges = false;
            }
        }
        if (depth == 0) {
            contents.end = journal.offset();
            contents.hasChanges = hasChanges;
        }
    }
    contents.isDamaged = journal.isDamaged();
    return contents;
}

int replayJournal(JournalFile &journal, JournalContents &contents, Database &database) {
    JournalReplay replay(database);
    journal.rewind();
    std::uint64_t done = contents.start;
    for (QByteArray payload; journal.offset() < contents.end && journal.readRecord(payload);) {
        if (journal.offset() <= contents.start)
            continue;
        if (!replay.feed(payload))
            break;
        if (replay.isAtBoundary())
            done = journal.offset();
    }
    contents.end = done;
    return replay.groups();
}

} // namespace qir
