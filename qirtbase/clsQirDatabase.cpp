#include "qirtbase/clsQirDatabase.h"

#include "base/ByteReader.h"
#include "base/ErrorWords.h"
#include "base/VariantKind.h"
#include "qirtbase/Guarded.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr std::chrono::milliseconds syncDelay{1000};

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

} // namespace

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
