#include "cli/diff/Patch.h"

#include "base/Collation.h"
#include "compare/engine/KeyTable.h"
#include "compare/engine/ValueEquality.h"
#include "db/tables/FieldChanges.h"

#include <QHash>

#include <algorithm>
#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

bool sameField(const FieldInfo &one, const FieldInfo &other) {
    return collationKey(one.name) == collationKey(other.name) && one.type == other.type && one.size == other.size;
}

int tableNumber(const QirDatabase &database, const QString &name) {
    const int count = database.QIRTablesCount();
    for (int table = 1; table <= count; ++table) {
        if (collationKey(database.QIRTableName(table)) == collationKey(name))
            return table;
    }
    return 0;
}

/// Element i: which of `from` has the name of target field i + 1, 0 for none.
std::vector<int> sourcesByName(const std::vector<FieldInfo> &from, const std::vector<FieldInfo> &target) {
    std::vector<int> sources;
    for (const FieldInfo &field : target) {
        const auto found = std::ranges::find_if(
            from, [&](const FieldInfo &other) { return collationKey(other.name) == collationKey(field.name); });
        sources.push_back(found == from.end() ? 0 : static_cast<int>(found - from.begin()) + 1);
    }
    return sources;
}

std::vector<int> sourcesByPlace(const std::vector<FieldInfo> &from, const std::vector<FieldInfo> &target) {
    std::vector<int> sources;
    for (std::size_t i = 0; i < target.size(); ++i)
        sources.push_back(i < from.size() ? static_cast<int>(i) + 1 : 0);
    return sources;
}

/// The keys of a patch, as a table: a record for each line.
class PatchKeys final : public TableSource {
public:
    PatchKeys(const std::vector<PatchRecord> &records, std::size_t fields)
        : m_records(records)
        , m_fields(static_cast<int>(fields)) {}

    int records() const override { return static_cast<int>(m_records.size()); }
    int fields() const override { return m_fields; }
    QString fieldName(int) const override { return {}; }
    FieldType fieldType(int) const override { return FieldType::Text; }
    CellView cell(int record, int field) override {
        const QVariant &value = m_records[static_cast<std::size_t>(record - 1)].key[field - 1];
        if (value.typeId() == QMetaType::QString)
            return {true, 0, *static_cast<const QString *>(value.constData()), {}};
        return {false, value.toDouble(), {}, {}};
    }

private:
    const std::vector<PatchRecord> &m_records;
    int m_fields;
};

/// Applies what becomes of one table.
class TableChange {
public:
    TableChange(const QirDatabase &database, const PatchTable &table, PatchOutcome &outcome)
        : m_database(database)
        , m_table(table)
        , m_outcome(outcome)
        , m_name(table.leftName.isEmpty() ? table.rightName : table.leftName) {}

    void apply() {
        if (!m_table.hasFields)
            return;
        const int number = tableNumber(m_database, m_name);
        if (m_table.leftName.isEmpty()) {
            if (number != 0)
                misfit(u"it is there already"_s);
            else
                addTable();
            return;
        }
        if (number == 0) {
            misfit(u"it is not there"_s);
            return;
        }
        m_current = chooseTable(m_database, m_database.QIRTableName(number));
        if (!std::ranges::equal(m_current.fields, m_table.leftFields, sameField)) {
            misfit(u"its fields are others"_s);
            return;
        }
        if (m_table.key.isEmpty())
            changeByPosition(number);
        else
            changeByKey(number);
    }

private:
    void misfit(const QString &reason) { m_outcome.misfits += u"table \"%1\": %2"_s.arg(m_name, reason); }

    void misfitAt(int record, const QString &field, const QString &reason) {
        misfit(u"record %1, field \"%2\": %3"_s.arg(QString::number(record), field, reason));
    }

    bool fits() const { return m_outcome.misfits.size() == m_misfitsBefore; }

    QVariant valueAt(int record, int field) const {
        m_database.setQIRTableRecordsPointerOut(record);
        return m_database.QIRTableRecordSetByIndex(field);
    }

    /// Whether the old value still stands; tells where it does not.
    void requireOld(int record, int field, const QVariant &old) {
        const QVariant stands = valueAt(record, field);
        if (!valuesEqual(stands, old))
            misfitAt(record, m_current.fields[static_cast<std::size_t>(field - 1)].name,
                     u"%1 stands there, not %2"_s.arg(valueWords(stands), valueWords(old)));
    }

    void write(int record, int field, const QVariant &value) {
        m_database.setQIRTableRecordsPointerOut(record);
        m_database.setQIRTableRecordSetByIndex(field, value);
        if (!valuesEqual(m_database.QIRTableRecordSetByIndex(field), value))
            misfitAt(record, m_database.QIRTableFieldName(field), u"it does not hold %1"_s.arg(valueWords(value)));
    }

    void addTable() {
        m_database.AddTable(m_table.rightName);
        m_database.QIRTableRecordSource(m_table.rightName);
        // A new table comes with a record and a field of its own.
        m_database.RemoveRecord(1);
        m_database.RemoveField(1);
        for (const FieldInfo &field : m_table.rightFields)
            addField(m_database, field);
        for (int record = 1; record <= m_table.rightRecords; ++record)
            m_database.AddRecord();
        m_outcome.changed = true;
        writeCells();
    }

    void changeByPosition(int number) {
        const bool resized = m_table.leftRecords != m_table.rightRecords || m_table.rightName.isEmpty();
        if (resized && m_current.records != m_table.leftRecords) {
            misfit(u"it has %1 records, not %2"_s.arg(m_current.records).arg(m_table.leftRecords));
            return;
        }
        const auto fields = static_cast<int>(m_current.fields.size());
        for (const PatchCell &cell : m_table.cells) {
            const bool there = cell.record <= m_current.records && cell.field <= fields;
            if (cell.left.isValid() && there)
                requireOld(cell.record, cell.field, cell.left);
            else if (cell.left.isValid())
                misfit(u"record %1, field %2: there is none"_s.arg(cell.record).arg(cell.field));
            else if (there)
                misfit(u"record %1, field %2: it is there already"_s.arg(cell.record).arg(cell.field));
        }
        if (!fits())
            return;
        m_outcome.changed = true;
        if (m_table.rightName.isEmpty()) {
            m_database.RemoveTable(number);
            return;
        }
        takeShape(number, sourcesByPlace(m_current.fields, m_table.rightFields));
        for (int record = m_table.leftRecords; record > m_table.rightRecords; --record)
            m_database.RemoveRecord(record);
        for (int record = m_table.leftRecords; record < m_table.rightRecords; ++record)
            m_database.AddRecord();
        writeCells();
    }

    /// Name and fields as the right side has them.
    void takeShape(int number, const std::vector<int> &sources) {
        if (m_database.QIRTableName(number) != m_table.rightName)
            m_database.RenameTable(number, m_table.rightName);
        m_database.QIRTableRecordSource(m_table.rightName);
        changeFields(m_database, m_current.fields, m_table.rightFields, sources);
    }

    void writeCells() {
        const int records = m_database.QirTableRecordsCount();
        const auto fields = static_cast<int>(m_table.rightFields.size());
        for (const PatchCell &cell : m_table.cells) {
            if (!cell.right.isValid())
                continue;
            if (cell.record > records || cell.field > fields)
                misfit(u"record %1, field %2: there is none"_s.arg(cell.record).arg(cell.field));
            else
                write(cell.record, cell.field, cell.right);
        }
    }

    // By key.

    void changeByKey(int number) {
        std::vector<int> keyFields;
        for (const QString &name : m_table.key) {
            const int field = fieldNumber(m_current.fields, name);
            if (field == 0 || fieldNumber(m_table.rightFields, name) == 0) {
                misfit(u"it has no field \"%1\""_s.arg(name));
                return;
            }
            keyFields.push_back(field);
        }
        findRecords(keyFields);
        checkRecords();
        if (!fits())
            return;
        m_outcome.changed = true;
        takeShape(number, sourcesByName(m_current.fields, m_table.rightFields));
        writeRecords();
    }

    static int fieldNumber(const std::vector<FieldInfo> &fields, const QString &name) {
        const auto found = std::ranges::find_if(
            fields, [&](const FieldInfo &field) { return collationKey(field.name) == collationKey(name); });
        return found == fields.end() ? 0 : static_cast<int>(found - fields.begin()) + 1;
    }

    /// Finds out which records of the table have the keys of the patch.
    void findRecords(const std::vector<int> &keyFields) {
        PatchKeys lines(m_table.records, keyFields.size());
        CurrentTable table(m_database);
        std::vector<int> lineFields;
        for (std::size_t i = 0; i < keyFields.size(); ++i)
            lineFields.push_back(static_cast<int>(i) + 1);
        KeyTable keys(lines, lineFields, table, keyFields, {});
        for (int line = 1; line <= lines.records(); ++line)
            m_keys.push_back(keys.insert(KeyTable::Side::Left, line).key);
        m_holders.resize(keys.size());
        for (int record = 1; record <= table.records(); ++record) {
            const std::size_t key = keys.insert(KeyTable::Side::Right, record).key;
            if (key < m_holders.size())
                m_holders[key].push_back(record);
        }
    }

    static QString keyWords(const PatchRecord &line) {
        QStringList words;
        for (const QVariant &value : line.key)
            words += valueWords(value);
        return words.join(u", "_s);
    }

    /// The record that a line is about, 0 where there is none.
    int recordOf(std::size_t line) const {
        const auto &records = m_holders[m_keys[line]];
        const auto place = static_cast<std::size_t>(m_table.records[line].occurrence) - 1;
        return place < records.size() ? records[place] : 0;
    }

    void checkRecords() {
        std::vector<int> added(m_holders.size());
        for (std::size_t i = 0; i < m_table.records.size(); ++i) {
            const PatchRecord &line = m_table.records[i];
            if (line.action == PatchAction::Added) {
                int &more = added[m_keys[i]];
                if (static_cast<int>(m_holders[m_keys[i]].size()) + ++more != line.occurrence)
                    misfit(u"a record %1 is there already"_s.arg(keyWords(line)));
                continue;
            }
            const int record = recordOf(i);
            if (record == 0)
                misfit(u"there is no record %1"_s.arg(keyWords(line)));
            else if (line.action == PatchAction::Removed)
                checkRemoved(record, line);
            else
                checkChanged(record, line);
        }
    }

    void checkRemoved(int record, const PatchRecord &line) {
        for (std::size_t i = 0; i < m_current.fields.size(); ++i)
            requireOld(record, static_cast<int>(i) + 1, line.values[static_cast<qsizetype>(i)]);
    }

    void checkChanged(int record, const PatchRecord &line) {
        const int field = fieldNumber(m_current.fields, line.field);
        if (line.left.isValid() && field != 0)
            requireOld(record, field, line.left);
        else if (line.left.isValid() || field != 0)
            misfitAt(record, line.field, field == 0 ? u"there is none"_s : u"it is there already"_s);
    }

    void writeRecords() {
        std::vector<int> removed;
        int end = m_database.QirTableRecordsCount();
        for (std::size_t i = 0; i < m_table.records.size(); ++i) {
            const PatchRecord &line = m_table.records[i];
            if (line.action == PatchAction::Removed) {
                removed.push_back(recordOf(i));
            } else if (line.action == PatchAction::Added) {
                m_database.AddRecord();
                ++end;
                for (qsizetype field = 1; field <= line.values.size(); ++field)
                    write(end, static_cast<int>(field), line.values[field - 1]);
            } else if (line.right.isValid()) {
                const int field = fieldNumber(m_table.rightFields, line.field);
                if (field == 0)
                    misfit(u"it has no field \"%1\""_s.arg(line.field));
                else
                    write(recordOf(i), field, line.right);
            }
        }
        std::ranges::sort(removed, std::greater{});
        removed.erase(std::unique(removed.begin(), removed.end()), removed.end());
        for (const int record : removed)
            m_database.RemoveRecord(record);
    }

    const QirDatabase &m_database;
    const PatchTable &m_table;
    PatchOutcome &m_outcome;
    QString m_name;
    qsizetype m_misfitsBefore = m_outcome.misfits.size();
    TableInfo m_current;
    std::vector<std::size_t> m_keys;         // line: the number of its key
    std::vector<std::vector<int>> m_holders; // number of a key: the records that have it
};

} // namespace

PatchOutcome applyPatch(const QirDatabase &database, const Patch &patch) {
    PatchOutcome outcome;
    for (const PatchTable &table : patch)
        TableChange(database, table, outcome).apply();
    return outcome;
}

} // namespace qir
