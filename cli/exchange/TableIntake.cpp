#include "cli/exchange/TableIntake.h"

#include "base/Collation.h"
#include "base/NumberText.h"
#include "base/columns/BlockOrder.h"
#include "base/columns/FittingNumber.h"
#include "cli/FileError.h"
#include "db/tables/FieldHeader.h"
#include "db/tables/TableWriter.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {

std::vector<int> standingFields(const QString &source, const TableInfo &table, const std::vector<ColumnName> &columns) {
    std::vector<int> places;
    for (const ColumnName &column : columns) {
        const int field = fieldNumber(table.fields, column.name);
        if (field == 0)
            throw FileError(source, u"the table \"%1\" has no field \"%2\""_s.arg(table.name, column.name));
        const FieldType type = table.fields[static_cast<std::size_t>(field) - 1].type;
        if (column.type && *column.type != type)
            throw FileError(source, u"the field \"%1\" of the table \"%2\" is %3, not %4"_s.arg(
                                        column.name, table.name, typeName(type), typeName(*column.type)));
        if (std::ranges::find(places, field) != places.end())
            throw FileError(source, u"the field \"%1\" has two columns"_s.arg(column.name));
        places.push_back(field);
    }
    return places;
}

void ComeNames::take(const QString &source, const QString &table) {
    const QString key = collationKey(table);
    if (const auto before = m_names.constFind(key); before != m_names.constEnd())
        throw FileError(source, u"two tables have one name here: \"%1\" and \"%2\""_s.arg(*before, table));
    m_names.insert(key, table);
}

bool TableIntake::wants(const QString &table) {
    if (m_chosen.isEmpty())
        return true;
    const QString key = collationKey(table);
    m_come += key;
    return std::ranges::any_of(m_chosen, [&](const QString &name) { return collationKey(name) == key; });
}

void TableIntake::requireChosen(const QString &source) const {
    for (const QString &name : m_chosen)
        if (!m_come.contains(collationKey(name)))
            throw FileError(source, u"it has no table \"%1\""_s.arg(name));
}

std::vector<FieldInfo> TableIntake::begin(const QString &source, const QString &table,
                                          const std::vector<FieldInfo> &fields) {
    std::vector<FieldInfo> stored;
    m_session.run([&] { stored = beginTable(source, table, fields); });
    return stored;
}

void TableIntake::append(const Portion &portion) {
    m_session.run([&] { m_appender->append(portion); });
}

std::vector<FieldInfo> TableIntake::beginTable(const QString &source, const QString &table,
                                               const std::vector<FieldInfo> &fields) {
    const QirDatabase &database = m_session.database();
    std::vector<int> places(fields.size());
    std::iota(places.begin(), places.end(), 1);
    const int there = m_standing == KnownTable::Refused ? 0 : tableNumber(database, table);
    if (m_standing == KnownTable::Replaced)
        m_replaced.take(source, table);
    if (m_standing != KnownTable::Extended) {
        if (there == 0) {
            addEmptyTable(database, table, fields);
        } else {
            database.QIRTableRecordSource(database.QIRTableName(there));
            emptyTable(database);
            addFields(database, fields);
        }
        m_appender.emplace(database, 0, places);
        return fields;
    }
    if (there == 0)
        throw std::runtime_error(
            u"there is no table \"%1\" that the records could be added to"_s.arg(table).toStdString());
    const TableInfo info = chooseTable(database, database.QIRTableName(there));
    std::vector<ColumnName> columns;
    columns.reserve(fields.size());
    for (const FieldInfo &field : fields)
        columns.push_back({field.name, field.type});
    places = standingFields(source, info, columns);
    m_appender.emplace(database, info.records, places);
    std::vector<FieldInfo> standing;
    standing.reserve(places.size());
    for (const int place : places)
        standing.push_back(info.fields[static_cast<std::size_t>(place) - 1]);
    return standing;
}

RecordIntake::RecordIntake(TableIntake &intake, QString source, std::vector<FieldInfo> fields)
    : m_intake(intake)
    , m_source(std::move(source))
    , m_fields(std::move(fields)) {
    for (const FieldInfo &field : m_fields)
        m_builders.emplace_back(columnTypeOf(field.type));
}

void RecordIntake::refuse(QByteArrayView value, const QString &reason) const {
    throw FileError(m_source, u"record %1, field \"%2\": \"%3\" %4"_s.arg(QString::number(m_records + 1), field().name,
                                                                          QString::fromUtf8(value), reason));
}

void RecordIntake::number(double number) {
    const ColumnType type = columnTypeOf(field().type);
    if (type == ColumnType::Text) {
        char digits[numberTextCapacity];
        if (!std::isfinite(number))
            refuse(QByteArray::number(number), u"is no number"_s);
        return text(QByteArrayView(digits, formatNumber(digits, number)));
    }
    if (!std::isfinite(number))
        refuse(QByteArray::number(number), u"is larger than a number can be"_s);
    if (fittingNumber(type, number) != number)
        refuse(numberText(number).toLatin1(), u"is no %1"_s.arg(typeName(field().type)));
    m_builders[m_column++].add(number);
}

void RecordIntake::text(QByteArrayView utf8) {
    if (!utf8.isValidUtf8())
        refuse(utf8, u"is no UTF-8 text"_s);
    written(utf8);
}

void RecordIntake::written(QByteArrayView utf8) {
    if (const auto reason = addImported(m_builders[m_column], field(), utf8, m_text))
        refuse(utf8, *reason);
    ++m_column;
}

void RecordIntake::endRecord() {
    m_column = 0;
    ++m_records;
    if (++m_count == usualBlockValues)
        flush();
}

void RecordIntake::flush() {
    if (m_count == 0)
        return;
    Portion portion{0, m_count, {}};
    for (ColumnBuilder &builder : m_builders)
        portion.columns.push_back(builder.take());
    m_intake.append(portion);
    m_count = 0;
}

} // namespace qir
