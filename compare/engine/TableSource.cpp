#include "compare/engine/TableSource.h"

#include "base/VariantKind.h"

namespace qir {

namespace {

double numberOf(const QVariant &value, VariantKind kind) {
    return kind == VariantKind::Truth ? (value.toBool() ? -1 : 0) : value.toDouble();
}

} // namespace

CurrentTable::CurrentTable(const QirDatabase &database)
    : m_database(database)
    , m_records(database.QirTableRecordsCount()) {
    const int fields = database.QirTableFieldsCount();
    for (int field = 1; field <= fields; ++field)
        m_types.push_back(static_cast<FieldType>(database.QIRTableFieldType(field).toInt()));
}

CellView CurrentTable::cell(int record, int field) {
    if (record != m_record) {
        m_database.setQIRTableRecordsPointerOut(record);
        m_record = record;
    }
    m_database.readQIRTableRecordSetByIndex(field, m_value);
    // What nearly all cells are; no copy of a text, no conversion.
    if (m_value.typeId() == QMetaType::Double)
        return {false, *static_cast<const double *>(m_value.constData()), {}};
    if (m_value.typeId() == QMetaType::QString)
        return {true, 0, *static_cast<const QString *>(m_value.constData())};
    if (m_value.typeId() == QMetaType::Int)
        return {false, static_cast<double>(*static_cast<const int *>(m_value.constData())), {}};
    const VariantKind kind = kindOf(m_value);
    if (kind == VariantKind::Empty)
        return {fieldType(field) == FieldType::Text, 0, {}};
    if (kind != VariantKind::Other)
        return {false, numberOf(m_value, kind), {}};
    m_value = m_value.toString(); // no value of the contract
    return {true, 0, *static_cast<const QString *>(m_value.constData())};
}

QVariant valueOf(const CellView &cell) {
    return cell.isText ? QVariant(cell.text.toString()) : QVariant(cell.number);
}

} // namespace qir
