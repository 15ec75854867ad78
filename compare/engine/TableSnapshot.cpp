#include "compare/engine/TableSnapshot.h"

#include "base/columns/ColumnBuilder.h"

#include <algorithm>
#include <utility>

namespace qir {

namespace {

constexpr int recordsPerBlock = 1 << 16;
constexpr int recordsPerStep = 1024;

} // namespace

void TableSnapshot::Field::append(ColumnBlock block) {
    lasts.push_back((lasts.empty() ? 0 : lasts.back()) + static_cast<int>(block.count()));
    blocks.push_back(std::move(block));
}

TableSnapshot::TableSnapshot(const QirDatabase &database, const KeyedStep &step)
    : m_records(database.QirTableRecordsCount()) {
    const int fields = database.QirTableFieldsCount();
    for (int field = 1; field <= fields; ++field)
        m_fields.push_back({database.QIRTableFieldName(field),
                            static_cast<FieldType>(database.QIRTableFieldType(field).toInt()),
                            {},
                            {},
                            0});
    if (database.hasColumns())
        readColumns(database, step);
    else
        readCells(database, step);
}

CellView TableSnapshot::cell(int record, int field) {
    Field &column = m_fields[static_cast<std::size_t>(field - 1)];
    const auto firstOf = [&](std::size_t block) { return block == 0 ? 1 : column.lasts[block - 1] + 1; };
    if (record > column.lasts[column.used] || record < firstOf(column.used))
        column.used = static_cast<std::size_t>(std::ranges::lower_bound(column.lasts, record) - column.lasts.begin());
    const ColumnBlock &block = column.blocks[column.used];
    const qsizetype index = record - firstOf(column.used);
    if (block.isText())
        return {true, 0, {}, block.textBytes(index)};
    return {false, block.number(index), {}, {}};
}

void TableSnapshot::readColumns(const QirDatabase &database, const KeyedStep &step) {
    for (int field = 1; field <= fields(); ++field) {
        Field &column = m_fields[static_cast<std::size_t>(field - 1)];
        for (int last = 0; last < m_records; last = column.lasts.back()) {
            column.append(database.ReadColumn(field, last + 1, m_records - last));
            if (step)
                step();
        }
    }
}

void TableSnapshot::readCells(const QirDatabase &database, const KeyedStep &step) {
    CurrentTable table(database);
    std::vector<ColumnBuilder> builders;
    for (const Field &field : m_fields)
        builders.emplace_back(field.type == FieldType::Text ? ColumnType::Text : ColumnType::Double, recordsPerBlock);
    QString buffer;
    for (int record = 1; record <= m_records; ++record) {
        for (std::size_t i = 0; i < builders.size(); ++i) {
            const CellView cell = table.cell(record, static_cast<int>(i) + 1);
            if (m_fields[i].type == FieldType::Text)
                builders[i].add(cell.isText ? textOf(cell, buffer) : QStringView());
            else
                builders[i].add(cell.number);
        }
        if (record % recordsPerBlock == 0 || record == m_records) {
            for (std::size_t i = 0; i < builders.size(); ++i)
                m_fields[i].append(builders[i].take());
        }
        if (step && record % recordsPerStep == 0)
            step();
    }
}

} // namespace qir
