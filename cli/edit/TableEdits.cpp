#include "cli/edit/TableEdits.h"

#include "cli/edit/CellPlace.h"
#include "db/tables/TableWriter.h"
#include "platform/cells/RecordOrder.h"

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// Reads and writes the values of whole records of current tables.
class RecordValues {
public:
    explicit RecordValues(std::size_t fields)
        : m_values(fields) {}

    void read(const QirDatabase &database, int record) {
        database.setQIRTableRecordsPointerOut(record);
        int field = 0;
        for (QVariant &value : m_values)
            database.readQIRTableRecordSetByIndex(++field, value);
    }
    void write(const QirDatabase &database, int record) const {
        database.setQIRTableRecordsPointerOut(record);
        int field = 0;
        for (const QVariant &value : m_values)
            database.setQIRTableRecordSetByIndex(++field, value);
    }

private:
    std::vector<QVariant> m_values;
};

CellColumn textsOf(const QirDatabase &database, const TableInfo &table, int field) {
    CellColumn texts;
    forEachRecord(database, table, [&](const QStringList &values) { texts.append(values.at(field)); });
    return texts;
}

/// Makes record i what record order[i] was, counting from 0; goes along the cycles, so that one record is held aside.
void reorder(const QirDatabase &database, std::size_t fields, std::vector<std::uint32_t> order) {
    RecordValues first(fields);
    RecordValues moved(fields);
    for (std::size_t start = 0; start < order.size(); ++start) {
        if (order[start] == start)
            continue;
        first.read(database, static_cast<int>(start) + 1);
        std::size_t place = start;
        while (order[place] != start) {
            const std::size_t from = order[place];
            moved.read(database, static_cast<int>(from) + 1);
            moved.write(database, static_cast<int>(place) + 1);
            order[place] = static_cast<std::uint32_t>(place);
            place = from;
        }
        first.write(database, static_cast<int>(place) + 1);
        order[place] = static_cast<std::uint32_t>(place);
    }
}

} // namespace

void sortTable(const QirDatabase &database, const QString &table, const QString &field) {
    const TableInfo info = chooseTable(database, table);
    reorder(database, info.fields.size(), ascendingOrder(textsOf(database, info, namedField(info, field))));
}

void copyTable(const QirDatabase &source, const QString &table, const QirDatabase &target, const QString &name) {
    constexpr int portion = 4096; // records: where both are one database, its current table changes twice for each
    const TableInfo info = chooseTable(source, table);
    addEmptyTable(target, name, info.fields);
    std::vector<RecordValues> records;
    for (int first = 1; first <= info.records; first += portion) {
        const int count = std::min(portion, info.records - first + 1);
        records.resize(static_cast<std::size_t>(count), RecordValues(info.fields.size()));
        source.QIRTableRecordSource(table);
        for (int i = 0; i < count; ++i)
            records[static_cast<std::size_t>(i)].read(source, first + i);
        target.QIRTableRecordSource(name);
        for (int i = 0; i < count; ++i) {
            target.AddRecord();
            records[static_cast<std::size_t>(i)].write(target, first + i);
        }
    }
}

} // namespace qir
