#include "qirtbase/journal/JournalSurvey.h"

#include "base/ByteReader.h"
#include "qirtbase/journal/JournalCodec.h"

namespace qir {

JournalContents surveyJournal(JournalFile &journal, const FileIdentifier &saveId) {
    JournalContents contents;
    contents.belongs = journal.head().base == saveId;
    journal.rewind();
    contents.start = contents.end = journal.offset();
    contents.isDamaged = true;
    int depth = 0;
    for (QByteArray payload; journal.readRecord(payload);) {
        QByteArrayView rest = payload;
        while (!rest.isEmpty()) {
            const auto operation = takeOperation(rest);
            if (!operation)
                return contents;
            if (operation->is(JournalOperation::GroupBegin) || operation->is(JournalOperation::KeptBegin))
                ++depth;
            else if (operation->is(JournalOperation::GroupEnd) || operation->is(JournalOperation::GroupUndo) ||
                     operation->is(JournalOperation::KeptEnd))
                --depth;
            else if (operation->is(JournalOperation::SavingAs) && depth == 0 && operation->bytes == viewOf(saveId)) {
                contents.belongs = true;
                contents.start = journal.offset();
            }
            if (depth < 0)
                return contents;
        }
        if (depth == 0)
            contents.end = journal.offset();
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
