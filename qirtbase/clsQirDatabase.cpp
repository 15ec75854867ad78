#include "qirtbase/clsQirDatabase.h"

#include "base/ByteReader.h"
#include "base/ErrorWords.h"
#include "base/VariantKind.h"
#include "qirtbase/journal/JournalRecovery.h"
#include "qirtbase/journal/JournalReseal.h"
#include "qirtbase/model/DatabaseError.h"

#include <QAbstractEventDispatcher>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr std::chrono::milliseconds syncDelay{1000};

[[noreturn]] void raise(const QString &text) {
    throw DatabaseError(text);
}

/// The number in a variant, nothing when it holds something else.
std::optional<double> numberIn(const QVariant &value) {
    const VariantKind kind = kindOf(value);
    const bool counts = isNumber(kind) || kind == VariantKind::Truth || kind == VariantKind::Character;
    return counts ? std::optional(value.toDouble()) : std::nullopt;
}

/// Bytes of memory that the steps of one database may hold.
std::size_t stepBudget() {
    constexpr int usualMiB = 1024;
    bool isNumber = false;
    const int given = qEnvironmentVariableIntValue("QIR_STEPS_MIB", &isNumber);
    return static_cast<std::size_t>(isNumber && given >= 0 ? given : usualMiB) << 20;
}

/// What trying a password costs, where that is more than usual.
QString noteOn(const KdfCosts &costs, const KdfCosts &usual) {
    const double times =
        static_cast<double>(costs.passes) * costs.memoryKiB / (static_cast<double>(usual.passes) * usual.memoryKiB);
    if (times <= 1 && costs.memoryKiB <= usual.memoryKiB)
        return {};
    const QString longer = times > 1 ? u"about %1 times as long, and "_s.arg(std::ceil(times * 10) / 10) : QString();
    return u"This file asks for more than usual: trying a password takes %1%2 MiB of memory."_s.arg(
        longer, QString::number(costs.memoryKiB / 1024));
}

} // namespace

/// Every member that may fail runs in here: an error ends every open group as undone, and lack of memory gets words.
template<class Body>
auto clsQirDatabase::guarded(Body body) -> decltype(body()) {
    try { // costs nothing as long as nothing goes wrong, and this runs millions of times for a table
        return body();
    } catch (const std::exception &error) {
        for (Group &group : m_groups)
            group.failed = true;
        if (isLackOfMemory(error))
            raise(errorWords(error));
        throw;
    }
}

clsQirDatabase::clsQirDatabase(FileOps &ops, DatabaseFileOptions options)
    : m_ops(ops)
    , m_stepBudget(stepBudget())
    , m_file(ops,
             [&] {
                 if (!options.notice)
                     options.notice = [this](const QString &text) { Q_EMIT Notice(text); };
                 options.publishing = [this](const FileIdentifier &saveId) { m_journal.saving(saveId); };
                 return std::move(options);
             }())
    , m_journal(ops, journalOptions()) {
    m_syncTimer.setSingleShot(true);
    m_syncTimer.setInterval(syncDelay);
    connect(&m_syncTimer, &QTimer::timeout, this, [this] { m_journal.syncPending(); });
}

clsQirDatabase::~clsQirDatabase() {
    release();
}

void clsQirDatabase::release() noexcept {
    try {
        // A group that was cut short is undone, which brings back the flag of its beginning too; a flag that is False
        // now forbids the writing all the same.
        const bool wanted = m_changed;
        while (!m_groups.empty())
            m_groups.back().isStep ? endGroup() : undoGroup();
        if (!wanted || !m_changed) {
            m_journal.retire();
            return;
        }
        expectKeys();
        const DatabaseFile::Released released = m_file.saveAtRelease(encodeBody(m_database));
        if (released == DatabaseFile::Released::Saved) {
            m_journal.discard();
            followKeys();
        } else if (released == DatabaseFile::Released::Rescued) {
            m_journal.retire();
        }
    } catch (const std::exception &error) {
        try {
            Q_EMIT Notice(errorWords(error));
        } catch (...) { // NOLINT(bugprone-empty-catch): a listener that throws here has nobody to throw to
        }
    }
}

// --------------------------------------------------------------------------------------------------------- the journal

JournalOptions clsQirDatabase::journalOptions() {
    return {.stateFolder = m_file.stateFolder(),
            .random = &m_file.random(),
            .notice = [this](const QString &text) { Q_EMIT Notice(text); },
            .syncLater = [this] { return syncLater(); }};
}

/// False where nothing runs that could call the timer.
bool clsQirDatabase::syncLater() {
    if (!QAbstractEventDispatcher::instance())
        return false;
    if (!m_syncTimer.isActive())
        m_syncTimer.start();
    return true;
}

/// The version on disk is what the changes from here on start from.
void clsQirDatabase::followFile(std::uint64_t bodySize) {
    followKeys();
    if (!m_leaveJournal)
        m_journal.follow(m_database, journalBase(bodySize), m_file.keysOnDisk());
}

JournalBase clsQirDatabase::journalBase(std::uint64_t bodySize) const {
    return {.name = m_file.fileName(),
            .place = m_file.filePlace(),
            .fileId = m_file.fileId(),
            .saveId = m_file.saveId(),
            .bodySize = bodySize,
            .state = m_savedState};
}

/// Where the version on disk has another key than the one before, what is kept of it beside gets that too.
void clsQirDatabase::followKeys() {
    const ContainerKeys &keys = m_file.keysOnDisk();
    const bool isSameFile = m_journalsFileId == m_file.fileId();
    if (isSameFile && m_journalsKeys.isProtected() == keys.isProtected() && m_journalsKeys.master.equals(keys.master))
        return;
    const ContainerKeys before = std::exchange(m_journalsKeys, keys.clone());
    m_journalsFileId = m_file.fileId();
    if (!isSameFile)
        return;
    const QStringList notices = resealJournals(m_ops, {.stateFolder = m_file.stateFolder(),
                                                       .fileId = m_journalsFileId,
                                                       .before = before,
                                                       .after = m_journalsKeys,
                                                       .random = m_file.random()});
    tellOfFile(notices);
}

/// Before a save: where that changes the key, nothing may be left that only the key of now finds.
void clsQirDatabase::expectKeys() {
    const ContainerKeys &before = m_file.keysOnDisk();
    const ContainerKeys &after = m_file.keys();
    if (before.isProtected() && !before.master.equals(after.master))
        tellOfFile(keepJournalsFindable(m_ops, {.stateFolder = m_file.stateFolder(),
                                                .fileId = m_file.fileId(),
                                                .before = before,
                                                .after = after,
                                                .random = m_file.random()}));
}

void clsQirDatabase::tellOfFile(const QStringList &notices) {
    for (const QString &notice : notices)
        Q_EMIT Notice(u"%1: %2"_s.arg(m_file.fileName(), notice));
}

/// Brings back what a session that died had changed since it saved.
void clsQirDatabase::recoverChanges(std::uint64_t bodySize, const QString &password) {
    followKeys();
    if (m_leaveJournal)
        return;
    const JournalBase base = journalBase(bodySize);
    RecoveryOutcome outcome =
        recoverJournals(m_ops,
                        {.stateFolder = m_file.stateFolder(),
                         .base = base,
                         .keys = m_file.keysOnDisk(),
                         .password = password,
                         .deriveKey = m_file.keyDeriver(),
                         .random = m_file.random(),
                         .keepAside = [this](QByteArrayView aside) { return m_file.writeAside(aside); },
                         .limits = m_file.limits()},
                        m_database);
    m_journal.follow(m_database, base, m_file.keysOnDisk());
    if (outcome.journal)
        m_journal.adopt(std::move(*outcome.journal), outcome.changed);
    m_changed = m_changed || outcome.changed;
    tellOfFile(outcome.notices);
}

// ------------------------------------------------------------------------------------------------------------ the file

bool clsQirDatabase::LoadDtb(const QString &fileName, const QString &password) {
    return guarded([&] {
        if (!isUnused())
            raise(u"This database is in use: another file cannot be loaded into it."_s);
        try {
            return loadFile(fileName, password);
        } catch (const std::bad_alloc &) {
            failLoad(u"%1: there is not enough memory to load it"_s.arg(fileName));
            return false;
        }
    });
}

bool clsQirDatabase::isUnused() const {
    return m_state == State::Fresh && !m_changed && m_database.tableCount() == 0 && m_groups.empty();
}

QString clsQirDatabase::PasswordNote(const QString &fileName) {
    return guarded([&] {
        const std::optional<KdfCosts> costs = m_file.passwordCosts(fileName);
        return costs ? noteOn(*costs, m_file.usualCosts()) : QString();
    });
}

bool clsQirDatabase::BeginUnlock(const QString &fileName, const QString &password) {
    return guarded([&] { return isUnused() && m_file.prepareKey(fileName, password); });
}

bool clsQirDatabase::UnlockPending() {
    return m_file.preparedKey().isPending();
}

void clsQirDatabase::CancelUnlock() {
    m_file.preparedKey().cancel();
}

bool clsQirDatabase::loadFile(const QString &fileName, const QString &password) {
    m_lastError.clear();
    LoadResult<QByteArray> body = m_file.load(fileName, password);
    if (!body) {
        failLoad(body.error().text);
        return false;
    }
    const auto bodySize = static_cast<std::uint64_t>(body->size());
    LoadResult<Database> database = decodeBody(std::move(*body));
    if (!database) {
        failLoad(u"%1: %2"_s.arg(fileName, database.error().text));
        return false;
    }
    m_database = std::move(*database);
    m_state = State::Open;
    m_changed = m_changedAnyway = false;
    m_savedState = m_database.history().state();
    recoverChanges(bodySize, password);
    keepSteps();
    m_file.endLoad();
    return true;
}

void clsQirDatabase::failLoad(const QString &reason) {
    m_file.fail();
    m_state = State::Failed;
    m_lastError = reason;
}

/// What stays open is what was saved: records without fields, which no file keeps, go.
void clsQirDatabase::becomeAsSaved() {
    try {
        m_database.dropRecordsWithoutFields();
    } catch (const std::bad_alloc &) {
        return; // they go with the next save
    }
    if (m_currentTable && m_currentRecord > m_currentTable->recordCount())
        m_currentRecord = 0;
}

void clsQirDatabase::SaveDtb() {
    guarded([&] {
        requireUsable();
        requireNoGroup("The database cannot be saved");
        if (!m_changed)
            return;
        if (GetDatabaseFileName().isEmpty())
            raise(u"The database has no file name yet."_s);
        const QByteArray body = encodeBody(m_database);
        expectKeys();
        m_hadPassword = m_hadPassword || m_file.keysOnDisk().isProtected();
        if (const Result<void> saved = m_file.save(body); !saved)
            raise(saved.error().text);
        m_changed = m_changedAnyway = false;
        m_journal.discard();
        becomeAsSaved();
        m_savedState = m_database.history().state();
        m_database.endJoining();
        followFile(static_cast<std::uint64_t>(body.size()));
        if (m_file.keysOnDisk().isProtected() || !m_hadPassword) // else they tell what the password had hidden
            m_journal.keepSteps();
    });
}

QString clsQirDatabase::GetDatabaseFileName() const {
    return m_file.fileName();
}

bool clsQirDatabase::SetDatabaseFileName(const QString &fileName) {
    return guarded([&] {
        if (m_state == State::Failed || !m_file.setFileName(fileName))
            return false;
        m_state = State::Open;
        keepSteps();
        return true;
    });
}

void clsQirDatabase::SetFilePlace(const QString &fileName, const QString &place) {
    m_file.setPlace(fileName, place);
}

void clsQirDatabase::NewPassword(const QString &current, const QString &replacement) {
    guarded([&] {
        requireUsable();
        requireNoGroup("The password cannot be changed");
        if (const Result<void> done = m_file.changePassword(current, replacement); !done)
            raise(u"The password was not changed: %1."_s.arg(done.error().text));
        if (current != replacement)
            m_changed = m_changedAnyway = true;
        if (!m_file.keysOnDisk().isProtected())
            m_journal.reseal(m_file.keys());
    });
}

// ---------------------------------------------------------------------------------------------------------- the tables

QString clsQirDatabase::QIRTableName(int table) {
    return guarded([&] { return m_database.table(tableIndex(table)).name().text; });
}

bool clsQirDatabase::ExistTable(const QString &name) {
    return guarded([&] { return m_database.findTable(name).has_value(); });
}

void clsQirDatabase::AddTable(const QString &name) {
    guarded([&] {
        requireUsable();
        m_database.addTable(name);
        m_changed = true;
    });
}

void clsQirDatabase::RenameTable(int table, const QString &name) {
    guarded([&] {
        if (m_database.renameTable(tableIndex(table), name))
            m_changed = true;
    });
}

void clsQirDatabase::RemoveTable(int table) {
    guarded([&] {
        const std::size_t index = tableIndex(table);
        const bool isCurrent = &m_database.table(index) == m_currentTable;
        m_database.removeTable(index);
        if (isCurrent) {
            m_currentTable = nullptr;
            m_currentRecord = 0;
        }
        m_changed = true;
    });
}

void clsQirDatabase::QIRTableRecordSource(const QString &name) {
    guarded([&] {
        const auto index = m_database.findTable(name);
        if (!index)
            raise(u"There is no table \"%1\"."_s.arg(name));
        m_currentTable = &m_database.table(*index);
        m_currentRecord = 0;
    });
}

// ---------------------------------------------------------------------------------------------------------- the fields

int clsQirDatabase::QirTableFieldsCount() const {
    return m_currentTable ? static_cast<int>(m_currentTable->fieldCount()) : 0;
}

QString clsQirDatabase::QIRTableFieldName(int field) {
    return guarded([&] { return currentTable().field(fieldIndex(field)).name.text(); });
}

int clsQirDatabase::QIRTableFieldType(int field) {
    return guarded([&] { return static_cast<int>(currentTable().field(fieldIndex(field)).type()); });
}

int clsQirDatabase::QIRTableFieldSize(int field) {
    return guarded([&] { return currentTable().field(fieldIndex(field)).size; });
}

void clsQirDatabase::AddField(const QString &name, int type, double size) {
    guarded([&] {
        m_database.addField(currentTable(), name, type, size);
        m_changed = true;
    });
}

void clsQirDatabase::RenameField(int field, const QString &name) {
    guarded([&] {
        if (m_database.renameField(currentTable(), fieldIndex(field), name))
            m_changed = true;
    });
}

void clsQirDatabase::RemoveField(int field) {
    guarded([&] {
        m_database.removeField(currentTable(), fieldIndex(field));
        m_changed = true;
    });
}

void clsQirDatabase::ResizeField(int field, double size) {
    guarded([&] {
        if (m_database.resizeField(currentTable(), fieldIndex(field), size))
            m_changed = true;
    });
}

// --------------------------------------------------------------------------------------------------------- the records

int clsQirDatabase::QirTableRecordsCount() const {
    return m_currentTable ? static_cast<int>(m_currentTable->recordCount()) : 0;
}

void clsQirDatabase::AddRecord() {
    guarded([&] {
        m_database.addRecord(currentTable());
        m_changed = true;
    });
}

void clsQirDatabase::RemoveRecord(int record) {
    guarded([&] {
        const std::size_t index = recordIndex(record);
        m_database.removeRecord(currentTable(), index);
        if (m_currentRecord == index + 1)
            m_currentRecord = 0;
        else if (m_currentRecord > index + 1)
            --m_currentRecord;
        m_changed = true;
    });
}

void clsQirDatabase::setQIRTableRecordsPointerOut(int record) {
    guarded([&] { m_currentRecord = record == 0 && m_currentTable ? 0 : recordIndex(record) + 1; });
}

QVariant clsQirDatabase::QIRTableRecordSetByIndex(int field) {
    return guarded([&] {
        const Table &table = currentTable();
        return table.field(fieldIndex(field)).column.variant(currentRecordIndex());
    });
}

void clsQirDatabase::QIRTableRecordSetByIndex(int field, const QVariant &value) {
    guarded([&] {
        Table &table = currentTable();
        const std::size_t index = fieldIndex(field);
        const std::size_t record = currentRecordIndex();
        bool changed = false;
        if (value.typeId() == QMetaType::QString) {
            changed = m_database.setText(table, index, record, *static_cast<const QString *>(value.constData()));
        } else if (const std::optional<double> number = numberIn(value)) {
            changed = m_database.setNumber(table, index, record, *number);
        } else {
            raise(u"A value of this kind cannot be stored in a field."_s);
        }
        if (changed)
            m_changed = true;
    });
}

void clsQirDatabase::GetQirRecord(int record, QStringList &values) {
    guarded([&] {
        const Table &table = currentTable();
        const std::size_t index = recordIndex(record);
        const std::vector<Field> &fields = table.fields();
        values.resize(static_cast<qsizetype>(fields.size()) + 1);
        QString *texts = values.data();
        texts->clear();
        for (const Field &field : fields)
            field.column.readText(index, *++texts);
    });
}

// ------------------------------------------------------------------------------------------------------ whole columns

QVariant clsQirDatabase::ReadColumn(int field, int first, int count) {
    return guarded([&] {
        const Table &table = currentTable();
        const std::size_t index = fieldIndex(field);
        const std::size_t record = recordIndex(first);
        if (count < 1)
            raise(u"%1 records cannot be read."_s.arg(count));
        const std::size_t most = std::min(static_cast<std::size_t>(count), table.recordCount() - record);
        return table.field(index).column.block(record, most).toVariant();
    });
}

void clsQirDatabase::WriteColumn(int field, int first, const QVariant &block) {
    guarded([&] {
        Table &table = currentTable();
        const std::size_t index = fieldIndex(field);
        const std::size_t record = recordIndex(first);
        const Result<ColumnBlock> values = ColumnBlock::fromVariant(block);
        if (!values)
            raise(values.error().text);
        if (values->type() != table.field(index).type())
            raise(u"The block has values of another type than the field."_s);
        if (static_cast<std::size_t>(values->count()) > table.recordCount() - record)
            raise(u"The block has more values than there are records from number %1 on."_s.arg(first));
        if (m_database.setBlock(table, index, record, *values))
            m_changed = true;
    });
}

void clsQirDatabase::RecordsReordered(const QVariant &order) {
    guarded([&] {
        Table &table = currentTable();
        const QByteArray bytes = order.toByteArray();
        RecordOrder records(static_cast<std::size_t>(bytes.size()) / sizeof(std::uint32_t));
        ByteReader(bytes).numbers(std::span(records));
        if (records.size() * sizeof(std::uint32_t) != static_cast<std::size_t>(bytes.size()) ||
            !isPermutation(records, table.recordCount()))
            raise(u"That is no order of the table's records."_s);
        m_database.recordsReordered(table, records);
    });
}

void clsQirDatabase::AppendRecords(int count) {
    guarded([&] {
        Table &table = currentTable();
        if (count < 0)
            raise(u"%1 records cannot be added."_s.arg(count));
        if (count == 0)
            return;
        m_database.addRecords(table, static_cast<std::size_t>(count));
        m_changed = true;
    });
}

double clsQirDatabase::TableRevision() {
    return guarded([&] { return static_cast<double>(currentTable().revision()); });
}

// --------------------------------------------------------------------------------------------------- groups of changes

void clsQirDatabase::BeginChanges() {
    guarded([&] {
        requireUsable();
        m_groups.reserve(m_groups.size() + 1);
        m_database.beginGroup();
        m_groups.push_back({m_changed, m_changedAnyway, m_currentTable, m_currentRecord, false});
    });
}

void clsQirDatabase::EndChanges() {
    guarded([&] {
        if (m_groups.empty() || m_groups.back().isStep)
            raise(u"No group of changes has begun."_s);
        m_groups.back().failed ? undoGroup() : endGroup();
    });
}

void clsQirDatabase::CancelChanges() {
    guarded([&] {
        if (m_groups.empty() || m_groups.back().isStep)
            raise(u"No group of changes has begun."_s);
        undoGroup();
    });
}

void clsQirDatabase::endGroup() {
    m_database.endGroup();
    m_groups.pop_back();
    tellOfDroppedSteps();
}

void clsQirDatabase::undoGroup() {
    m_database.undoGroup();
    const Group group = m_groups.back();
    m_groups.pop_back();
    m_changed = group.changed;
    m_changedAnyway = group.changedAnyway;
    m_currentTable = group.currentTable;
    m_currentRecord = group.currentRecord;
}

// ------------------------------------------------------------------------------------------- steps and the way back

/// From now on, but for callers without a user.
void clsQirDatabase::keepSteps() {
    if (!m_leaveJournal)
        m_database.keepSteps(m_stepBudget);
}

void clsQirDatabase::BeginStep(const QString &name, const QString &key) {
    guarded([&] {
        requireUsable();
        m_groups.reserve(m_groups.size() + 1);
        if (m_groups.empty())
            keepSteps();
        m_database.beginStep(name, key);
        m_groups.push_back({m_changed, m_changedAnyway, m_currentTable, m_currentRecord, false, true});
    });
}

void clsQirDatabase::EndStep() {
    guarded([&] {
        if (m_groups.empty() || !m_groups.back().isStep)
            raise(u"No step has begun."_s);
        endGroup();
    });
}

void clsQirDatabase::Undo() {
    guarded([&] {
        if (StepsDone() == 0)
            raise(u"There is nothing to take back."_s);
        takeStep(true);
    });
}

void clsQirDatabase::Redo() {
    guarded([&] {
        if (StepsDone() == StepsCount())
            raise(u"There is nothing to make again."_s);
        takeStep(false);
    });
}

void clsQirDatabase::takeStep(bool undoes) {
    requireNoGroup("No step can be taken back or made again");
    const QString current = currentTableName();
    const std::optional<StepPlace> place = undoes ? m_database.undoStep() : m_database.redoStep();
    tablesReplaced(current);
    m_changedTable = place ? m_database.table(place->table).name().text : QString();
    m_changedRecord = place && place->record ? static_cast<int>(*place->record) + 1 : 0;
    m_changedField = place && place->field ? static_cast<int>(*place->field) + 1 : 0;
    const std::size_t done = m_database.history().done();
    countChangedTables(undoes ? done : done - 1, undoes ? done + 1 : done);
}

void clsQirDatabase::countChangedTables(std::size_t firstStep, std::size_t endStep) {
    m_changedTables =
        static_cast<int>(std::min(m_database.history().tablesOf(firstStep, endStep), m_database.tableCount()));
}

/// What is current may have moved or gone, and the state may be the one that is saved.
void clsQirDatabase::tablesReplaced(const QString &currentTable) {
    std::size_t index = 0;
    while (index < m_database.tableCount() && &m_database.table(index) != m_currentTable)
        ++index;
    if (index == m_database.tableCount())
        index = m_database.findTable(currentTable).value_or(index);
    m_currentTable = index < m_database.tableCount() ? &m_database.table(index) : nullptr;
    m_currentRecord = 0;
    m_changed = m_changedAnyway || m_database.history().state() != m_savedState;
}

QString clsQirDatabase::stepName(std::size_t step) const {
    const QString &name = m_database.history().step(step).name;
    return name.isEmpty() ? u"Change"_s : name;
}

QString clsQirDatabase::UndoName() const {
    const History &history = m_database.history();
    return history.done() > 0 ? stepName(history.done() - 1) : QString();
}

QString clsQirDatabase::RedoName() const {
    const History &history = m_database.history();
    return history.done() < history.count() ? stepName(history.done()) : QString();
}

QString clsQirDatabase::StepName(int step) {
    return guarded([&] { return stepName(stepIndex(step)); });
}

double clsQirDatabase::StepTime(int step) {
    return guarded([&] { return static_cast<double>(m_database.history().step(stepIndex(step)).time); });
}

void clsQirDatabase::GoToStep(int done) {
    guarded([&] {
        if (done != 0)
            stepIndex(done);
        const auto [first, end] = std::minmax({StepsDone(), done});
        m_changedTable.clear();
        m_changedRecord = m_changedField = m_changedTables = 0;
        while (StepsDone() > done)
            takeStep(true);
        while (StepsDone() < done)
            takeStep(false);
        countChangedTables(static_cast<std::size_t>(first), static_cast<std::size_t>(end));
    });
}

void clsQirDatabase::RevertToSaved(const QString &name) {
    guarded([&] {
        requireUsable();
        requireNoGroup("The database cannot go back to what is saved");
        LoadResult<QByteArray> body = m_file.readAgain();
        if (!body)
            raise(body.error().text);
        LoadResult<Database> saved = decodeBody(std::move(*body));
        if (!saved)
            raise(u"%1: %2"_s.arg(GetDatabaseFileName(), saved.error().text));
        const QString current = currentTableName();
        m_database.revertTo(std::move(*saved), name, m_savedState);
        tablesReplaced(current);
        m_changedTable = currentTableName();
        m_changedRecord = m_changedField = 0;
        m_changedTables = QIRTablesCount();
    });
}

/// Once, for the user would look for them.
void clsQirDatabase::tellOfDroppedSteps() {
    if (m_droppedTold || !m_groups.empty() || !StepsDropped())
        return;
    m_droppedTold = true;
    Q_EMIT Notice(u"%1: the first steps can no longer be taken back: the memory for steps, %2 MiB, is used up"_s.arg(
        GetDatabaseFileName(), QString::number(m_stepBudget >> 20)));
}

// -------------------------------------------------------------------------------------------------------------- checks

void clsQirDatabase::requireNoGroup(const char *what) const {
    if (!m_groups.empty())
        raise(u"%1 before the running group of changes has ended."_s.arg(QLatin1StringView(what)));
}

std::size_t clsQirDatabase::stepIndex(int step) const {
    if (step < 1 || step > StepsCount())
        raise(u"There is no step number %1: there are %2."_s.arg(step).arg(StepsCount()));
    return static_cast<std::size_t>(step) - 1;
}

void clsQirDatabase::requireUsable() const {
    if (m_state == State::Failed)
        raise(u"No database is open: its file could not be loaded."_s);
}

std::size_t clsQirDatabase::tableIndex(int table) const {
    if (table < 1 || static_cast<std::size_t>(table) > m_database.tableCount())
        raise(u"There is no table number %1: the database has %2."_s.arg(table).arg(m_database.tableCount()));
    return static_cast<std::size_t>(table) - 1;
}

Table &clsQirDatabase::currentTable() const {
    if (!m_currentTable)
        raise(u"No table is selected."_s);
    return *m_currentTable;
}

std::size_t clsQirDatabase::fieldIndex(int field) const {
    const std::size_t count = currentTable().fieldCount();
    if (field < 1 || static_cast<std::size_t>(field) > count)
        raise(u"There is no field number %1: the table has %2."_s.arg(field).arg(count));
    return static_cast<std::size_t>(field) - 1;
}

std::size_t clsQirDatabase::recordIndex(int record) const {
    const std::size_t count = currentTable().recordCount();
    if (record < 1 || static_cast<std::size_t>(record) > count)
        raise(u"There is no record number %1: the table has %2."_s.arg(record).arg(count));
    return static_cast<std::size_t>(record) - 1;
}

std::size_t clsQirDatabase::currentRecordIndex() const {
    if (m_currentRecord == 0)
        raise(u"No record is selected."_s);
    return m_currentRecord - 1;
}

} // namespace qir
