#include "cli/exchange/CsvImport.h"

#include "cli/FileError.h"
#include "cli/Progress.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/tables/ColumnValues.h"
#include "cli/tables/FieldHeader.h"
#include "cli/tables/TableWriter.h"

#include <QDir>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

[[noreturn]] void refuse(const QString &reason) {
    throw std::runtime_error(reason.toStdString());
}

} // namespace

CsvImport CsvImport::read(const QString &csv, const QString &table, std::optional<char> delimiter) {
    Result<CsvTable> read = failure({});
    Session::runOn(csv, [&] { read = CsvTable::read(readWholeFile(csv), delimiter); });
    if (!read)
        throw FileError(csv, read.error().text);
    CsvImport import(csv, table, std::move(*read));
    (void)import.fields(); // a header that is wrong is found now
    return import;
}

std::vector<CsvImport> CsvImport::readFolder(const QString &folder, std::optional<char> delimiter) {
    const QFileInfoList files =
        QDir(folder).entryInfoList({u"*.csv"_s}, QDir::Files | QDir::Hidden, QDir::Name | QDir::LocaleAware);
    if (files.isEmpty())
        throw FileError(folder, u"no CSV file stands in it"_s);
    std::vector<CsvImport> imports;
    for (const QFileInfo &file : files)
        imports.push_back(read(folder + u'/' + file.fileName(), file.completeBaseName(), delimiter));
    return imports;
}

std::vector<FieldInfo> CsvImport::fields() const {
    std::vector<FieldInfo> fields;
    for (std::size_t column = 0; column < static_cast<std::size_t>(m_table.header().size()); ++column) {
        Result<FieldInfo> field = columnField(m_table, column);
        if (!field)
            throw FileError(m_csv, field.error().text);
        fields.push_back(std::move(*field));
    }
    return fields;
}

std::vector<int> CsvImport::standingFields(const TableInfo &table) const {
    std::vector<int> places;
    for (const QString &text : m_table.header()) {
        const Result<FieldHeader> header = parseFieldHeader(text);
        const int field = header ? fieldNumber(table.fields, header->name) : 0;
        if (field == 0)
            throw FileError(m_csv, u"the table \"%1\" has no field \"%2\""_s.arg(table.name, header->name));
        const FieldType type = table.fields[static_cast<std::size_t>(field) - 1].type;
        if (header->type && *header->type != type)
            throw FileError(m_csv, u"the field \"%1\" of the table \"%2\" is %3, not %4"_s.arg(
                                       header->name, table.name, typeName(type), typeName(*header->type)));
        if (std::ranges::find(places, field) != places.end())
            throw FileError(m_csv, u"the field \"%1\" has two columns"_s.arg(header->name));
        places.push_back(field);
    }
    return places;
}

void CsvImport::storeRecords(const QirDatabase &database, const TableInfo &table,
                             const std::vector<int> &places) const {
    Progress progress(m_csv, static_cast<qint64>(m_table.records()));
    QString text;
    for (std::size_t record = 0; record < m_table.records(); ++record) {
        database.AddRecord();
        database.setQIRTableRecordsPointerOut(table.records + static_cast<int>(record) + 1);
        for (std::size_t column = 0; column < places.size(); ++column) {
            const FieldInfo &field = table.fields[static_cast<std::size_t>(places[column]) - 1];
            m_table.readValue(record, column, text);
            const Result<QVariant> value = importedValue(field, text);
            if (!value)
                throw FileError(m_csv, u"record %1, field \"%2\": \"%3\" %4"_s.arg(
                                           QString::number(record + 1), field.name, text, value.error().text));
            database.setQIRTableRecordSetByIndex(places[column], *value);
        }
        progress.step();
    }
}

void CsvImport::store(const QirDatabase &database, Standing standing) const {
    const int there = standing == Standing::Refused ? 0 : tableNumber(database, m_name);
    if (standing == Standing::Extended) {
        if (there == 0)
            refuse(u"there is no table \"%1\" that the records could be added to"_s.arg(m_name));
        const TableInfo table = chooseTable(database, database.QIRTableName(there));
        storeRecords(database, table, standingFields(table));
        return;
    }
    const std::vector<FieldInfo> made = fields();
    if (there == 0) {
        addEmptyTable(database, m_name, made);
    } else {
        database.QIRTableRecordSource(database.QIRTableName(there));
        emptyTable(database);
        addFields(database, made);
    }
    std::vector<int> places(made.size());
    std::iota(places.begin(), places.end(), 1);
    storeRecords(database, {m_name, made, 0}, places);
}

} // namespace qir
