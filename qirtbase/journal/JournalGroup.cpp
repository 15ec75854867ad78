#include "qirtbase/journal/Journal.h"

#include "qirtbase/model/BodyCodec.h"

#include <algorithm>
#include <utility>

// What a group of changes comes to in the journal.

namespace qir {

namespace {

constexpr qsizetype groupPiece = qsizetype{64} << 10;
constexpr qsizetype imagePartSize = qsizetype{1} << 20;
constexpr std::uint64_t smallestLimit = 4096; // below it images would only cost

} // namespace

std::size_t Journal::indexOf(const Table *table) {
    if (table != m_lastTable) {
        std::size_t index = 0;
        while (&m_database->table(index) != table)
            ++index;
        m_lastTable = table;
        m_lastIndex = index;
    }
    return m_lastIndex;
}

/// A change within a group.
void Journal::note(const Change &change) {
    m_groupChanged = true;
    m_order.clear();
    if (!change.table)
        m_tablesChanged = true;
    else if (change.table != m_lastTouched)
        m_touched.insert(m_lastTouched = change.table);
    if (m_asImages)
        return;
    const qsizetype before = m_pending.size();
    encodeChange(m_pending, change, change.table ? indexOf(change.table) : 0);
    gathered(before);
}

/// A mark within a group, or of its beginning.
void Journal::noteMark(JournalOperation mark) {
    if (m_asImages)
        return;
    const qsizetype before = m_pending.size();
    encodeMark(m_pending, mark);
    gathered(before);
}

/// After something of a group was put behind `before` bytes.
void Journal::gathered(qsizetype before) {
    m_groupSize += static_cast<std::uint64_t>(m_pending.size() - before);
    if (m_groupSize > std::max(smallestLimit, m_base.bodySize / 4)) {
        m_asImages = true;
        m_pending.clear();
    } else if (m_pending.size() >= groupPiece) {
        writePending();
        m_writtenDepth = m_depth;
    }
}

/// What is written of the outermost group does not count, nor do those within it that are open there.
void Journal::forgetGroup() {
    m_pending.clear();
    if (m_writtenDepth == 0)
        return;
    for (int depth = m_writtenDepth; depth > 0; --depth)
        encodeMark(m_pending, JournalOperation::GroupUndo);
    writePending();
}

/// Only what has become a step of the database is written: each step of a replay is one of its own then.
void Journal::finishGroup() {
    const std::uint64_t before = m_state;
    const std::uint64_t taken = m_taken;
    lookAtHistory();
    const bool isStep = m_state != before || m_taken != taken || !m_database->keepsSteps();
    if (!m_groupChanged || !isStep) {
        forgetGroup();
        return;
    }
    if (m_asImages)
        writeImages();
    encodeMark(m_pending, JournalOperation::GroupEnd);
    if (m_state == m_base.state && m_database->keepsSteps())
        encodeMark(m_pending, JournalOperation::AsSaved);
    writePending();
    countStep(m_mark ? m_mark->kind : StepKind::Step);
    syncInTime();
}

void Journal::lookAtHistory() {
    m_state = m_database->history().state();
    m_taken = m_database->history().taken();
}

/// After a step was written, or what undoes one.
void Journal::countStep(StepKind kind) {
    if (kind == StepKind::Undone) {
        ++m_stepsUndone;
        return;
    }
    m_stepsUndone = 0;
    if (kind == StepKind::Step) // else it is more of one that this journal may know only in part
        ++m_stepsDone;
    m_stepsDone = std::min(m_stepsDone, m_database->history().done()); // some may have gone
}

void Journal::encodeGroupMark() {
    if (m_mark)
        encodeStepMark(m_pending, *m_mark);
}

/// In place of the group's changes: what the tables are now.
void Journal::writeImages() {
    m_pending.clear();
    for (int depth = m_writtenDepth; depth > 1; --depth)
        encodeMark(m_pending, JournalOperation::GroupEnd); // of those within that are open in what is written
    encodeMark(m_pending, m_writtenDepth > 0 ? JournalOperation::GroupRestart : JournalOperation::GroupBegin);
    encodeGroupMark();
    if (m_tablesChanged) {
        const QByteArray body = encodeBody(*m_database, BodyFor::Journal);
        m_base.bodySize = static_cast<std::uint64_t>(body.size());
        writeImage(body);
        encodeMark(m_pending, JournalOperation::BodyImage);
        return;
    }
    if (!m_order.isEmpty()) {
        writeImage(std::exchange(m_order, {}));
        encodePlace(m_pending, JournalOperation::RecordsReordered, indexOf(*m_touched.begin()));
        return;
    }
    for (const Table *table : m_touched) {
        writeImage(encodeTable(*table, BodyFor::Journal));
        encodeTableImage(m_pending, indexOf(table));
    }
}

void Journal::writeImage(const QByteArray &image) {
    for (qsizetype at = 0; at < image.size(); at += imagePartSize) {
        encodeImagePart(m_pending, QByteArrayView(image).sliced(at, std::min(imagePartSize, image.size() - at)));
        writePending();
    }
}

} // namespace qir
