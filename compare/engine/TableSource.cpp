#include "compare/engine/TableSource.h"

#include "base/VariantKind.h"
#include "base/columns/UnicodeText.h"

#include <algorithm>

namespace qir {

namespace {

double numberOf(const QVariant &value, VariantKind kind) {
    return kind == VariantKind::Truth ? (value.toBool() ? -1 : 0) : value.toDouble();
}

} // namespace

CurrentTable::CurrentTable(const QirDatabase &database)
    : m_database(database)
    , m_records(database.QirTableRecordsCount())
    , m_hasColumns(database.hasColumns()) {
    const int fields = database.QirTableFieldsCount();
    m_columns.resize(static_cast<std::size_t>(fields));
    for (int field = 1; field <= fields; ++field)
        m_types.push_back(static_cast<FieldType>(database.QIRTableFieldType(field).toInt()));
}

void CurrentTable::readColumn(int field, Column &column) const {
    for (int last = 0; last < m_records;) {
        column.blocks.push_back(m_database.ReadColumn(field, last + 1, m_records - last));
        last += static_cast<int>(column.blocks.back().count());
        column.lasts.push_back(last);
    }
}

CellView CurrentTable::columnCell(int record, int field) {
    Column &column = m_columns[static_cast<std::size_t>(field - 1)];
    if (column.blocks.empty())
        readColumn(field, column);
    const auto firstOf = [&](std::size_t block) { return block == 0 ? 1 : column.lasts[block - 1] + 1; };
    if (record > column.lasts[column.used] || record < firstOf(column.used))
        column.used = static_cast<std::size_t>(std::ranges::lower_bound(column.lasts, record) - column.lasts.begin());
    const ColumnBlock &block = column.blocks[column.used];
    const qsizetype index = record - firstOf(column.used);
    if (block.isText())
        return {true, 0, {}, block.textBytes(index)};
    return {false, block.number(index), {}, {}};
}

CellView CurrentTable::cell(int record, int field) {
    if (m_hasColumns)
        return columnCell(record, field);
    if (record != m_record) {
        m_database.setQIRTableRecordsPointerOut(record);
        m_record = record;
    }
    m_database.readQIRTableRecordSetByIndex(field, m_value);
    // What nearly all cells are; no copy of a text, no conversion.
    if (m_value.typeId() == QMetaType::Double)
        return {false, *static_cast<const double *>(m_value.constData()), {}, {}};
    if (m_value.typeId() == QMetaType::QString)
        return {true, 0, *static_cast<const QString *>(m_value.constData()), {}};
    if (m_value.typeId() == QMetaType::Int)
        return {false, static_cast<double>(*static_cast<const int *>(m_value.constData())), {}, {}};
    const VariantKind kind = kindOf(m_value);
    if (kind == VariantKind::Empty)
        return {fieldType(field) == FieldType::Text, 0, {}, {}};
    if (kind != VariantKind::Other)
        return {false, numberOf(m_value, kind), {}, {}};
    m_value = m_value.toString(); // no value of the contract
    return {true, 0, *static_cast<const QString *>(m_value.constData()), {}};
}

QStringView textOf(const CellView &cell, QString &buffer) {
    if (cell.bytes.isNull())
        return cell.text;
    if (!readUtf8(cell.bytes, buffer))
        buffer = QString::fromUtf8(cell.bytes);
    return buffer;
}

QVariant valueOf(const CellView &cell) {
    QString buffer;
    return cell.isText ? QVariant(textOf(cell, buffer).toString()) : QVariant(cell.number);
}

} // namespace qir
