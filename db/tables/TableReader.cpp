#include "db/tables/TableReader.h"

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {

TableInfo chooseTable(const QirDatabase &database, const QString &name) {
    database.QIRTableRecordSource(name);
    TableInfo table{name, {}, database.QirTableRecordsCount()};
    const int fields = database.QirTableFieldsCount();
    for (int field = 1; field <= fields; ++field) {
        const QVariant code = database.QIRTableFieldType(field);
        const QString fieldName = database.QIRTableFieldName(field);
        if (DBTypeName(code).isEmpty())
            throw std::runtime_error(
                u"the field \"%1\" of the table \"%2\" has a type without a name"_s.arg(fieldName, name).toStdString());
        const auto type = static_cast<FieldType>(code.toInt());
        table.fields.push_back(
            {fieldName, type, type == FieldType::Text ? database.QIRTableFieldSize(field).toInt() : 0});
    }
    return table;
}

QStringList tableNames(const QirDatabase &database) {
    QStringList names;
    const int tables = database.QIRTablesCount();
    for (int table = 1; table <= tables; ++table)
        names += database.QIRTableName(table);
    return names;
}

void forEachRecord(const QirDatabase &database, const TableInfo &table,
                   const std::function<void(const QStringList &)> &take) {
    QStringList values;
    for (int record = 1; record <= table.records; ++record) {
        database.GetQirRecord(record, values);
        take(values);
    }
}

} // namespace qir
