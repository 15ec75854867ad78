#include "cli/diff/JsonOutput.h"
#include "cli/diff/Patch.h"
#include "cli/tables/JsonText.h"
#include "compare/engine/KeyTable.h"
#include "compare/report/KeyedRecords.h"
#include "db/tables/FieldHeader.h"

#include <QHash>

#include <optional>

namespace qir {

namespace {

void appendFields(QByteArray &out, const char *key, const std::vector<FieldInfo> &fields) {
    out += QByteArray(", \"") + key + "\": [";
    const char *separator = "";
    for (const FieldInfo &field : fields) {
        out += separator;
        out += "{\"name\": ";
        appendJsonString(out, field.name);
        out += ", \"type\": ";
        appendJsonString(out, typeName(field.type));
        out += ", \"size\": " + QByteArray::number(field.size) + '}';
        separator = ", ";
    }
    out += ']';
}

bool sameFields(const std::vector<FieldInfo> &left, const std::vector<FieldInfo> &right) {
    return std::ranges::equal(left, right, [](const FieldInfo &one, const FieldInfo &other) {
        return one.name == other.name && one.type == other.type && one.size == other.size;
    });
}

std::vector<FieldInfo> fieldsOf(const QirDatabase &database, const QString &table, bool there) {
    return there ? chooseTable(database, table).fields : std::vector<FieldInfo>();
}

/// Writes the line of a table. Returns whether anything becomes of it.
bool appendTable(QByteArray &out, const TableDifference &table, const QirDatabase &left, const QirDatabase &right) {
    const bool both = table.kind == AlignedRowKind::Both;
    const auto leftFields = fieldsOf(left, table.name, table.kind != AlignedRowKind::RightOnly);
    const auto rightFields = fieldsOf(right, table.rightName, table.kind != AlignedRowKind::LeftOnly);
    const bool changes =
        !both || table.different || table.name != table.rightName || !sameFields(leftFields, rightFields);
    openJsonTable(out, table);
    if (changes) {
        if (both) {
            out += ", \"names\": ";
            appendJsonNames(out, {table.name, table.rightName});
        }
        appendFields(out, "leftFields", leftFields);
        appendFields(out, "rightFields", rightFields);
    }
    closeJsonLine(out);
    return changes;
}

/// All cells of a table that only one side has.
void appendWholeTable(QByteArray &out, const TableDifference &table, const QirDatabase &left, const QirDatabase &right,
                      const OutputSink &sink) {
    const bool inLeft = table.kind == AlignedRowKind::LeftOnly;
    CurrentTable source(inLeft ? left : right);
    for (int record = 1; record <= source.records(); ++record) {
        for (int field = 1; field <= source.fields(); ++field) {
            const QVariant value = valueOf(source.cell(record, field));
            appendCellJson(out, {table.name,
                                 record,
                                 field,
                                 {},
                                 inLeft,
                                 !inLeft,
                                 inLeft ? value : QVariant(),
                                 inLeft ? QVariant() : value});
            sink(out);
        }
    }
}

/// Which of the records of its key each record of a side is. Empty where no key occurs twice.
class Occurrences {
public:
    Occurrences(const KeyedDifference &difference, TableSource &left, TableSource &right) {
        if (difference.duplicates.empty())
            return;
        std::vector<int> leftFields;
        std::vector<int> rightFields;
        for (const FieldPair &field : difference.fields.key) {
            leftFields.push_back(field.left);
            rightFields.push_back(field.right);
        }
        KeyTable keys(left, leftFields, right, rightFields, {});
        count(keys, KeyTable::Side::Left, left.records(), m_left);
        count(keys, KeyTable::Side::Right, right.records(), m_right);
    }

    int ofLeft(int record) const { return m_left.empty() ? 1 : m_left[static_cast<std::size_t>(record)]; }
    int ofRight(int record) const { return m_right.empty() ? 1 : m_right[static_cast<std::size_t>(record)]; }

private:
    static void count(KeyTable &keys, KeyTable::Side side, int records, std::vector<int> &numbers) {
        std::vector<int> counts;
        numbers.push_back(0);
        for (int record = 1; record <= records; ++record) {
            const std::size_t key = keys.insert(side, record).key;
            counts.resize(std::max(counts.size(), key + 1));
            numbers.push_back(++counts[key]);
        }
    }

    std::vector<int> m_left;
    std::vector<int> m_right;
};

/// The lines of a table that is compared by key.
class KeyedPatch {
public:
    KeyedPatch(QByteArray &out, const TableDifference &table, const QirDatabase &left, const QirDatabase &right,
               const OutputSink &sink)
        : m_out(out)
        , m_table(table)
        , m_keyed(*table.keyed)
        , m_left(left)
        , m_right(right)
        , m_occurrences(m_keyed, m_left, m_right)
        , m_sink(sink) {}

    void write() {
        appendDuplicatesJson(m_out, m_table, m_left, m_right);
        forEachKeyedRecord(m_keyed, [this](const KeyedRecord &record) { writeRecord(record); });
        for (std::size_t i = 0; i < m_keyed.partners.size(); ++i) {
            if (m_keyed.partners[i] != 0)
                writeOneSidedFields({static_cast<int>(i) + 1, m_keyed.partners[i]});
        }
    }

private:
    void open(const PairedRecords &records, const char *change) {
        const bool left = records.left != 0;
        openJsonChange(m_out, m_table.name,
                       left ? keyValues(m_left, m_keyed, TableSide::Left, records.left)
                            : keyValues(m_right, m_keyed, TableSide::Right, records.right),
                       change);
    }

    void close(int occurrence) {
        if (occurrence > 1)
            m_out += ", \"occurrence\": " + QByteArray::number(occurrence);
        closeJsonLine(m_out);
        m_sink(m_out);
    }

    void writeRecord(const KeyedRecord &record) {
        const PairedRecords &records = record.records;
        if (record.change == RecordChange::Changed) {
            for (const FieldPair &field : changedFields(m_keyed, record.row))
                writeValues(records, "changed", m_left.fieldName(field.left), field);
            return;
        }
        const bool added = record.change == RecordChange::Added;
        open(records, added ? "added" : "removed");
        appendJsonRecord(m_out, added ? m_right : m_left, added ? records.right : records.left);
        close(added ? m_occurrences.ofRight(records.right) : m_occurrences.ofLeft(records.left));
    }

    void writeOneSidedFields(const PairedRecords &records) {
        for (const int field : m_keyed.fields.onlyLeft)
            writeValues(records, "field", m_left.fieldName(field), {field, 0});
        for (const int field : m_keyed.fields.onlyRight)
            writeValues(records, "field", m_right.fieldName(field), {0, field});
    }

    void writeValues(const PairedRecords &records, const char *change, const QString &name, const FieldPair &field) {
        open(records, change);
        const QVariant left = field.left == 0 ? QVariant() : valueOf(m_left.cell(records.left, field.left));
        const QVariant right = field.right == 0 ? QVariant() : valueOf(m_right.cell(records.right, field.right));
        appendJsonValueChange(m_out, name, left, right, records);
        close(m_occurrences.ofLeft(records.left));
    }

    QByteArray &m_out;
    const TableDifference &m_table;
    const KeyedDifference &m_keyed;
    CurrentTable m_left;
    CurrentTable m_right;
    Occurrences m_occurrences;
    const OutputSink &m_sink;
};

} // namespace

bool appendPatch(QByteArray &out, const DatabaseDifference &difference, const QirDatabase &left,
                 const QirDatabase &right, const OutputSink &sink) {
    out +=
        "{\"patch\": 1, \"tables\": " + QByteArray::number(static_cast<qulonglong>(difference.tables.size())) + "}\n";
    bool changes = false;
    for (const TableDifference &table : difference.tables) {
        changes = appendTable(out, table, left, right) || changes;
        sink(out);
    }
    for (const TableDifference &table : difference.tables) {
        chooseOnBothSides(table, left, right);
        if (table.keyed)
            KeyedPatch(out, table, left, right, sink).write();
        else if (table.kind == AlignedRowKind::Both)
            appendDetailsJson(out, table, left, right, sink);
        else
            appendWholeTable(out, table, left, right, sink);
    }
    return changes;
}

} // namespace qir
