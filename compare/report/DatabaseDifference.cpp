#include "compare/report/DatabaseDifference.h"

#include "base/Collation.h"

#include <QSet>

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QSet<QString> keysOf(const QStringList &names) {
    QSet<QString> keys;
    for (const QString &name : names)
        keys.insert(collationKey(name));
    return keys;
}

bool hasRules(const ComparisonChoice &choice) {
    const CellTolerance &tolerance = choice.tolerance;
    return !choice.ignore.isEmpty() || tolerance.difference > 0 || tolerance.ignoreCase || tolerance.ignoreBlanks;
}

/// The tables of two databases side by side.
std::vector<AlignedRow> alignTables(QStringList leftNames, QStringList rightNames, QStringList &sortedRight) {
    QStringList merged = leftNames + rightNames;
    for (QStringList *names : {&leftNames, &rightNames, &merged})
        sortNames(*names);
    sortedRight = rightNames;
    return alignNames(withoutRepeatedNames(merged), leftNames, rightNames);
}

/// Compares the tables of two databases, one after the other, as they were chosen.
class DatabaseComparison {
public:
    DatabaseComparison(const QirDatabase &left, const QirDatabase &right, const ComparisonChoice &choice,
                       const KeyedStep &step)
        : m_left(left)
        , m_right(right)
        , m_choice(choice)
        , m_ignored(keysOf(choice.ignore))
        , m_tables(keysOf(choice.tables))
        , m_step(step)
        , m_hasRules(hasRules(choice)) {}

    DatabaseDifference run() {
        QStringList rightNames;
        const auto rows = alignTables(tableNames(m_left, m_left.QIRTablesCount()),
                                      tableNames(m_right, m_right.QIRTablesCount()), rightNames);
        requireChosenTables(rows);
        requireChosenFields(rows);
        DatabaseDifference difference;
        for (const AlignedRow &row : rows) {
            if (!m_tables.isEmpty() && !m_tables.contains(collationKey(row.name)))
                continue;
            difference.tables.push_back(compareTable(row, row.right < 0 ? QString() : rightNames[row.right]));
            const TableDifference &table = difference.tables.back();
            difference.different = difference.different || table.different || table.kind != AlignedRowKind::Both;
        }
        return difference;
    }

private:
    void requireChosenTables(const std::vector<AlignedRow> &rows) const {
        QSet<QString> there;
        for (const AlignedRow &row : rows)
            there.insert(collationKey(row.name));
        QStringList named = m_choice.tables;
        for (const ChosenKey &key : m_choice.keys) {
            if (!key.table.isEmpty())
                named.append(key.table);
        }
        for (const QString &name : named) {
            if (!there.contains(collationKey(name)))
                throw WrongChoice(u"there is no table \"%1\""_s.arg(name));
        }
    }

    /// Each field that is named must be in one table at least, and each key that fits no table would be a slip.
    void requireChosenFields(const std::vector<AlignedRow> &rows) const {
        std::vector<bool> fits(m_choice.keys.size());
        QSet<QString> ignored = m_ignored;
        for (const AlignedRow &row : rows) {
            const QSet<QString> left = fieldsOf(m_left, row, row.kind != AlignedRowKind::RightOnly);
            const QSet<QString> right = fieldsOf(m_right, row, row.kind != AlignedRowKind::LeftOnly);
            ignored -= left;
            ignored -= right;
            for (std::size_t i = 0; i < fits.size(); ++i) {
                const ChosenKey &key = m_choice.keys[i];
                if (!key.table.isEmpty() && collationKey(key.table) != collationKey(row.name))
                    continue;
                const QSet<QString> needed = keysOf(key.fields);
                fits[i] = fits[i] || ((row.kind == AlignedRowKind::RightOnly || left.contains(needed)) &&
                                      (row.kind == AlignedRowKind::LeftOnly || right.contains(needed)));
            }
        }
        for (std::size_t i = 0; i < fits.size(); ++i) {
            const QString fields = m_choice.keys[i].fields.join(u", "_s);
            const QString &table = m_choice.keys[i].table;
            if (!fits[i])
                throw WrongChoice(table.isEmpty()
                                      ? u"no table has the fields of the key on both sides: %1"_s.arg(fields)
                                      : u"the table \"%1\" lacks a field of the key: %2"_s.arg(table, fields));
        }
        for (const QString &name : m_choice.ignore) {
            if (ignored.contains(collationKey(name)))
                throw WrongChoice(u"no table has the field \"%1\" to ignore"_s.arg(name));
        }
    }

    static QSet<QString> fieldsOf(const QirDatabase &database, const AlignedRow &row, bool there) {
        QSet<QString> fields;
        if (!there)
            return fields;
        database.QIRTableRecordSource(row.name);
        const int count = database.QirTableFieldsCount();
        for (int field = 1; field <= count; ++field)
            fields.insert(collationKey(database.QIRTableFieldName(field)));
        return fields;
    }

    TableDifference compareTable(const AlignedRow &row, const QString &rightName) const {
        TableDifference table;
        table.name = row.name;
        table.rightName = rightName;
        table.kind = row.kind;
        chooseOnBothSides(table, m_left, m_right);
        if (row.kind != AlignedRowKind::RightOnly) {
            table.sizes.leftRecords = m_left.QirTableRecordsCount();
            table.sizes.leftFields = m_left.QirTableFieldsCount();
        }
        if (row.kind != AlignedRowKind::LeftOnly) {
            table.sizes.rightRecords = m_right.QirTableRecordsCount();
            table.sizes.rightFields = m_right.QirTableFieldsCount();
        }
        if (row.kind == AlignedRowKind::Both && !compareKeyed(table))
            compareByPosition(table);
        return table;
    }

    bool compareKeyed(TableDifference &table) const {
        CurrentTable left(m_left);
        CurrentTable right(m_right);
        const auto tryKeys = [&](bool ofOneTable) {
            for (auto key = m_choice.keys.rbegin(); key != m_choice.keys.rend(); ++key) {
                if (key->table.isEmpty() == ofOneTable)
                    continue;
                if (ofOneTable && collationKey(key->table) != collationKey(table.name))
                    continue;
                const auto fields = matchFields(left, right, {key->fields, m_choice.ignore, m_choice.tolerance});
                if (!fields)
                    continue;
                table.keyed = compareByKey(left, right, *fields, m_choice.tolerance, m_step);
                table.different = table.keyed->different();
                return true;
            }
            return false;
        };
        return tryKeys(true) || tryKeys(false);
    }

    void compareByPosition(TableDifference &table) const {
        if (m_hasRules) {
            compareByRules(table);
            return;
        }
        const auto step = [this](int record) {
            constexpr int recordsPerStep = 1024;
            if (m_step && record % recordsPerStep == 0)
                m_step();
        };
        BitMatrix cells = differingCells(m_left, m_right, step);
        table.different = !table.sizes.sameSize() || cells.count() > 0;
        if (cells.count() > 0)
            table.cells = std::move(cells);
    }

    /// By position too, without ignored fields, and with the values that count as the same.
    void compareByRules(TableDifference &table) const {
        CurrentTable left(m_left);
        CurrentTable right(m_right);
        const TableSizes &sizes = table.sizes;
        CellRules rules(m_choice.tolerance);
        std::vector<int> compared;
        bool fieldsDiffer = false;
        for (int field = 1; field <= sizes.mostFields(); ++field) {
            // A place with an ignored field on one side and another one on the other side is compared.
            const bool ignored =
                (field > sizes.leftFields || m_ignored.contains(collationKey(left.fieldName(field)))) &&
                (field > sizes.rightFields || m_ignored.contains(collationKey(right.fieldName(field))));
            if (ignored)
                continue;
            compared.push_back(field);
            fieldsDiffer = fieldsDiffer || field > sizes.commonFields();
        }
        BitMatrix cells(static_cast<std::size_t>(sizes.mostRecords()) + 1,
                        static_cast<std::size_t>(sizes.mostFields()) + 1);
        for (int record = 1; record <= sizes.mostRecords(); ++record) {
            if (m_step && record % 1024 == 0)
                m_step();
            for (const int field : compared) {
                const bool inLeft = record <= sizes.leftRecords && field <= sizes.leftFields;
                const bool inRight = record <= sizes.rightRecords && field <= sizes.rightFields;
                if (inLeft != inRight || (inLeft && !rules.same(left.cell(record, field), left.fieldType(field),
                                                                right.cell(record, field), right.fieldType(field))))
                    cells.set(static_cast<std::size_t>(record), static_cast<std::size_t>(field), true);
            }
        }
        table.different = fieldsDiffer || sizes.leftRecords != sizes.rightRecords || cells.count() > 0;
        if (cells.count() > 0)
            table.cells = std::move(cells);
    }

    const QirDatabase &m_left;
    const QirDatabase &m_right;
    const ComparisonChoice &m_choice;
    QSet<QString> m_ignored;
    QSet<QString> m_tables;
    const KeyedStep &m_step;
    bool m_hasRules;
};

/// The names of the fields 1..most of the current tables; element 0 is unused.
QStringList fieldNames(const TableSizes &sizes, const QirDatabase &left, const QirDatabase &right) {
    QStringList names{QString()};
    for (int field = 1; field <= sizes.mostFields(); ++field)
        names.append((field <= sizes.leftFields ? left : right).QIRTableFieldName(field));
    return names;
}

QVariant valueAt(const QirDatabase &database, int record, int field) {
    database.setQIRTableRecordsPointerOut(record);
    return database.QIRTableRecordSetByIndex(field);
}

} // namespace

std::vector<FieldDefinition> currentFields(const QirDatabase &database) {
    std::vector<FieldDefinition> fields;
    const int count = database.QirTableFieldsCount();
    for (int field = 1; field <= count; ++field) {
        const auto type = static_cast<FieldType>(database.QIRTableFieldType(field).toInt());
        fields.push_back({database.QIRTableFieldName(field), type,
                          type == FieldType::Text ? database.QIRTableFieldSize(field).toInt() : 0});
    }
    return fields;
}

std::size_t TableDifference::cellCount() const {
    if (keyed)
        return keyed->cellCount();
    return cellsOfEither(cells, sizes);
}

DatabaseDifference compareDatabases(const QirDatabase &left, const QirDatabase &right, const ComparisonChoice &choice,
                                    const KeyedStep &step) {
    return DatabaseComparison(left, right, choice, step).run();
}

void chooseOnBothSides(const TableDifference &table, const QirDatabase &left, const QirDatabase &right) {
    if (table.kind != AlignedRowKind::RightOnly)
        left.QIRTableRecordSource(table.name);
    if (table.kind != AlignedRowKind::LeftOnly)
        right.QIRTableRecordSource(table.rightName);
}

void forEachDifferingCell(const TableDifference &table, const QirDatabase &left, const QirDatabase &right,
                          const std::function<void(const DifferingCell &cell)> &take) {
    if (table.cells.count() == 0)
        return;
    chooseOnBothSides(table, left, right);
    const TableSizes &sizes = table.sizes;
    const QStringList names = fieldNames(sizes, left, right);
    const BitMatrix &cells = table.cells;
    for (std::size_t row = cells.nextRow(1); row < cells.rows(); row = cells.nextRow(row + 1)) {
        const int record = static_cast<int>(row);
        const int fields = std::max(record <= sizes.leftRecords ? sizes.leftFields : 0,
                                    record <= sizes.rightRecords ? sizes.rightFields : 0);
        for (std::size_t column = cells.nextColumn(row, 1); column <= static_cast<std::size_t>(fields);
             column = cells.nextColumn(row, column + 1)) {
            const int field = static_cast<int>(column);
            DifferingCell cell;
            cell.table = table.name;
            cell.record = record;
            cell.field = field;
            cell.fieldName = names[field];
            cell.inLeft = record <= sizes.leftRecords && field <= sizes.leftFields;
            cell.inRight = record <= sizes.rightRecords && field <= sizes.rightFields;
            if (cell.inLeft)
                cell.left = valueAt(left, record, field);
            if (cell.inRight)
                cell.right = valueAt(right, record, field);
            take(cell);
        }
    }
}

} // namespace qir
