#include "qirtbase/journal/Journal.h"

#include "base/ByteWriter.h"
#include "base/ErrorWords.h"
#include "qirtbase/journal/JournalFolder.h"
#include "qirtbase/journal/KeptSteps.h"
#include "qirtbase/model/BodyCodec.h"

#include <algorithm>
#include <exception>
#include <stdexcept>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr std::uint64_t unknownState = UINT64_MAX;
constexpr auto syncInterval = std::chrono::seconds(1);

/// The system would not write; ends what was going on.
struct WriteFailed {
    SystemError error;
};

void require(const SystemResult<void> &result) {
    if (!result)
        throw WriteFailed{result.error()};
}

} // namespace

Journal::Journal(FileOps &ops, JournalOptions options)
    : m_ops(ops)
    , m_options(std::move(options)) {}

void Journal::follow(Database &database, JournalBase base, const ContainerKeys &keys) {
    stop();
    m_database = &database;
    m_base = std::move(base);
    m_keys = keys.clone();
    m_keyInFile = keys.isProtected();
    m_broken = m_lossTold = false;
    lookAtHistory();
    database.setListener(this);
}

std::uint64_t Journal::keptStepsLimit(std::uint64_t bodySize) {
    constexpr std::uint64_t always = std::uint64_t{16} << 20;
    return std::max(always, bodySize / 4);
}

void Journal::keepSteps() noexcept {
    if (!isRecording() || m_file)
        return;
    try {
        const KeptStepRecords records = encodeKeptSteps(*m_database, keptStepsLimit(m_base.bodySize));
        if (records.payloads.empty())
            return;
        makeFile();
        for (const QByteArray &payload : records.payloads)
            require(m_file->append(payload));
        require(m_file->sync());
        m_keptEnd = m_file->offset();
        m_stepsDone = records.done;
        m_stepsUndone = records.undone;
    } catch (...) { // nothing that was typed is lost
        if (m_file)
            (void)m_file->remove();
        m_file.reset();
    }
}

void Journal::adopt(JournalFile file, bool changed) {
    m_keys = file.keys().clone(); // may be those of a password that was not saved yet
    m_file.emplace(std::move(file));
    m_keptEnd = changed ? 0 : m_file->offset();
    m_stepsDone = m_database->history().done();
    m_stepsUndone = m_database->history().count() - m_stepsDone;
    lookAtHistory();
}

void Journal::stop() {
    if (m_database)
        m_database->setListener(nullptr);
    m_database = nullptr;
    m_file.reset();
    m_pending.clear();
    m_depth = 0;
    m_changedBefore.clear();
    m_order.clear();
    m_lastTable = nullptr;
    m_stepsDone = m_stepsUndone = 0;
    m_keptEnd = 0;
    m_unsynced = false;
}

/// Nothing may leave the journal as an exception: editing goes on whatever happens here.
template<class Body>
void Journal::guarded(Body body) noexcept {
    try {
        try {
            body();
        } catch (const WriteFailed &failed) {
            giveUp(systemErrorWords(failed.error));
        } catch (const std::exception &error) {
            giveUp(errorWords(error));
        }
    } catch (...) {
        m_broken = true; // not even the words could be made
    }
}

void Journal::giveUp(const QString &reason) {
    m_broken = true;
    m_pending.clear();
    if (m_options.notice)
        m_options.notice(
            u"%1: changes are not kept safe against a crash until it is saved: %2"_s.arg(m_base.name, reason));
}

// ----------------------------------------------------------------------------------------------------- taking changes

void Journal::changed(const Change &change) noexcept {
    if (!isRecording())
        return;
    guarded([&] {
        if (!change.table)
            m_lastTable = nullptr;
        if (m_depth > 0) {
            note(change);
            return;
        }
        encodeChange(m_pending, change, change.table ? indexOf(change.table) : 0);
        writePending();
        lookAtHistory();
        countStep(StepKind::Step);
        syncInTime();
    });
}

void Journal::groupBegan() noexcept {
    if (!isRecording())
        return;
    guarded([&] {
        if (m_depth++ == 0) {
            m_groupChanged = m_asImages = m_tablesChanged = false;
            m_order.clear();
            m_writtenDepth = 0;
            m_groupSize = 0;
            m_touched.clear();
            m_lastTouched = nullptr;
            m_mark.reset();
        }
        m_changedBefore.push_back(m_groupChanged);
        noteMark(JournalOperation::GroupBegin);
    });
}

void Journal::groupEnded() noexcept {
    if (!isRecording() || m_depth == 0)
        return;
    guarded([&] {
        m_changedBefore.pop_back();
        if (--m_depth == 0)
            finishGroup();
        else
            noteMark(JournalOperation::GroupEnd);
    });
}

void Journal::groupUndone() noexcept {
    if (!isRecording() || m_depth == 0)
        return;
    guarded([&] {
        m_lastTable = nullptr;
        m_order.clear();
        m_changedBefore.pop_back();
        if (--m_depth > 0)
            noteMark(JournalOperation::GroupUndo);
        else
            forgetGroup();
    });
}

void Journal::groupMarked(const StepMark &mark) noexcept {
    if (!isRecording() || m_depth != 1)
        return;
    guarded([&] {
        m_mark = mark;
        encodeGroupMark();
    });
}

void Journal::replaced(const Table *table) noexcept {
    if (!isRecording() || m_depth == 0)
        return;
    guarded([&] {
        m_lastTable = nullptr;
        m_groupChanged = m_asImages = true;
        m_order.clear();
        m_pending.clear();
        if (table)
            m_touched.insert(table);
        else
            m_tablesChanged = true;
    });
}

/// A sort writes its columns first; they need not be kept then.
void Journal::reordered(const Table &table, std::span<const std::uint32_t> order) noexcept {
    if (!isRecording() || m_depth == 0 || m_changedBefore.back() || m_tablesChanged || m_touched.size() != 1 ||
        *m_touched.begin() != &table || (!m_asImages && order.size_bytes() > m_groupSize))
        return;
    guarded([&] {
        ByteWriter(m_order).numbers(order);
        m_asImages = true;
        m_pending.clear();
    });
}

bool Journal::stepUndone() noexcept {
    return tellStep(JournalOperation::StepUndone, m_stepsDone, m_stepsUndone);
}

bool Journal::stepRedone() noexcept {
    return tellStep(JournalOperation::StepRedone, m_stepsUndone, m_stepsDone);
}

/// The step is one of those that this journal knows, or it is not and the changes are to be told.
bool Journal::tellStep(JournalOperation mark, std::size_t &from, std::size_t &to) noexcept {
    if (!isRecording())
        return true;
    m_lastTable = nullptr;
    if (from == 0)
        return false;
    bool isKnown = true;
    guarded([&] {
        encodeMark(m_pending, mark);
        isKnown = appendPending();
        if (!isKnown) {
            m_pending.clear();
            dropKeptSteps(); // of which it is one
            return;
        }
        --from;
        ++to;
        lookAtHistory();
        syncInTime();
    });
    return isKnown;
}

// ------------------------------------------------------------------------------------------------------------ writing

void Journal::makeFile() {
    if (m_base.place.path.empty())
        throw std::runtime_error("the system does not tell where it stands");
    auto folder = makeJournalFolder(m_ops, m_options.stateFolder);
    if (!folder)
        throw std::runtime_error(folder.error().toStdString());
    JournalHead head;
    head.place = m_base.place;
    head.fileId = m_base.fileId;
    head.base = m_base.saveId;
    head.keyInFile = m_keyInFile;
    auto file = JournalFile::create(m_ops, std::move(*folder), std::move(head), m_keys, *m_options.random);
    if (!file)
        throw WriteFailed{file.error()};
    m_file.emplace(std::move(*file));
}

void Journal::writePending() {
    if (appendPending())
        return;
    dropKeptSteps();
    (void)appendPending(); // does it or throws
}

/// False where it had no room behind the steps of before the save, which can be done without.
bool Journal::appendPending() {
    if (!m_file)
        makeFile();
    if (const auto appended = m_file->append(m_pending); !appended) {
        if (m_keptEnd == 0 || m_file->offset() != m_keptEnd)
            throw WriteFailed{appended.error()};
        return false;
    }
    m_pending.clear();
    m_unsynced = true;
    return true;
}

void Journal::dropKeptSteps() {
    (void)m_file->remove();
    m_file.reset();
    m_keptEnd = 0;
    m_stepsDone = m_stepsUndone = 0;
}

/// After a whole change: half a group is of no use on the disk.
void Journal::syncInTime() {
    const bool isSyncedLater = m_options.syncLater && m_options.syncLater();
    if (!isSyncedLater && m_options.clock() - m_lastSync >= syncInterval)
        syncPending();
}

void Journal::syncPending() noexcept {
    if (!m_unsynced || !m_file)
        return;
    guarded([&] {
        const bool lost = isRecording() && isLost();
        if (lost && m_depth > 0)
            return; // once the group is whole
        m_unsynced = false;
        m_lastSync = m_options.clock();
        if (lost)
            writeAnew();
        require(m_file->sync());
    });
}

/// Whether somebody has removed, moved, replaced or cut what was written.
bool Journal::isLost() const {
    return m_file->isLostFrom(journalFolderPath(m_options.stateFolder) + '/' + m_file->name());
}

/// All that has changed since the file was saved, whatever the journal held.
void Journal::writeAnew() {
    m_file.reset();
    m_keptEnd = 0;
    const QByteArray body = encodeBody(*m_database, BodyFor::Journal);
    encodeMark(m_pending, JournalOperation::GroupBegin);
    writeImage(body);
    encodeMark(m_pending, JournalOperation::BodyImage);
    encodeMark(m_pending, JournalOperation::GroupEnd);
    writePending();
    m_stepsDone = m_stepsUndone = 0; // the image is another step to whoever reads it
    m_unsynced = false;
    if (m_options.notice && !m_lossTold)
        m_options.notice(u"%1: another program took away the journal that keeps its unsaved changes; it "
                         "was written anew"_s.arg(m_base.name));
    m_lossTold = true;
}

// -------------------------------------------------------------------------------------------------- what comes after

void Journal::reseal(const ContainerKeys &keys) {
    m_keys = keys.clone();
    m_keyInFile = false;
    if (!isRecording() || !hasRecords())
        return;
    guarded([&] {
        const bool hadChanges = hasChanges();
        JournalHead head = m_file->head();
        head.keyInFile = false;
        auto resealed = JournalFile::replace(*m_file, std::move(head), m_keys, *m_options.random);
        if (!resealed)
            throw WriteFailed{resealed.error()};
        if (!hadChanges)
            m_keptEnd = resealed->offset();
        m_file.emplace(std::move(*resealed));
    });
}

void Journal::saving(const FileIdentifier &saveId) noexcept {
    if (!isRecording() || !hasRecords())
        return;
    guarded([&] {
        encodeSavingAs(m_pending, saveId);
        writePending();
        // Where the save is cut short nobody knows what is saved, and whether the steps before count.
        m_stepsDone = m_stepsUndone = 0;
        m_base.state = unknownState;
        m_unsynced = false;
        require(m_file->sync());
    });
}

void Journal::discard() noexcept {
    guarded([&] {
        if (m_file)
            (void)m_file->remove(); // one that stays starts from a version that is no more
        stop();
    });
}

void Journal::retire() noexcept {
    guarded([&] {
        if (hasRecords() && !hasChanges()) {
            (void)m_file->remove();
        } else if (hasRecords()) {
            encodeMark(m_pending, JournalOperation::Ended); // above all for the time of the last change
            (void)m_file->append(m_pending);
            (void)m_file->retire();
        }
        stop();
    });
}

} // namespace qir
