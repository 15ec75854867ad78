#include "cli/exchange/CsvImport.h"

#include "cli/FileError.h"
#include "cli/Progress.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/tables/ColumnValues.h"
#include "cli/tables/Portions.h"
#include "db/tables/FieldHeader.h"
#include "db/tables/TableWriter.h"

#include <QDir>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace qir {

namespace {} // namespace

CsvImport CsvImport::read(const QString &csv, const QString &table, std::optional<char> delimiter) {
    Result<CsvTable> read = failure({});
    Session::runOn(csv, [&] { read = CsvTable::read(readWholeFile(csv), delimiter); });
    if (!read)
        throw FileError(csv, read.error().text);
    std::vector<FieldInfo> fields = fieldsOf(*read, csv); // a header that is wrong is found now
    return {csv, table, std::move(*read), std::move(fields)};
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

std::vector<FieldInfo> CsvImport::fieldsOf(const CsvTable &table, const QString &csv) {
    std::vector<FieldInfo> fields;
    for (Result<FieldInfo> &field : columnFields(table)) {
        if (!field)
            throw FileError(csv, field.error().text);
        fields.push_back(std::move(*field));
    }
    return fields;
}

std::vector<ColumnName> CsvImport::names() const {
    std::vector<ColumnName> names;
    for (const QString &text : m_table.header()) {
        const Result<FieldHeader> header = parseFieldHeader(text);
        names.push_back(header ? ColumnName{header->name, header->type} : ColumnName{text, std::nullopt});
    }
    return names;
}

void CsvImport::storeRecords(const QirDatabase &database, const TableInfo &table,
                             const std::vector<int> &places) const {
    std::vector<FieldInfo> fields;
    fields.reserve(places.size());
    for (const int place : places)
        fields.push_back(table.fields[static_cast<std::size_t>(place) - 1]);
    Progress progress(m_csv, static_cast<qint64>(m_table.records()));
    RecordAppender appender(database, table.records, places);
    std::size_t done = 0;
    for (const CsvPortion &records : m_table.portions()) {
        auto columns = importedColumns(fields, records);
        if (!columns) {
            const UnfitValue &value = columns.error();
            throw FileError(m_csv, u"record %1, field \"%2\": \"%3\" %4"_s.arg(QString::number(done + value.record + 1),
                                                                               fields[value.column].name, value.text,
                                                                               value.reason));
        }
        appender.append({0, static_cast<int>(records.records()), std::move(*columns)});
        done += records.records();
        progress.reach(static_cast<qint64>(done));
    }
}

void CsvImport::store(const QirDatabase &database, KnownTable standing, ComeNames &replaced) const {
    if (standing == KnownTable::Replaced)
        replaced.take(m_csv, m_name);
    const int there = standing == KnownTable::Refused ? 0 : tableNumber(database, m_name);
    if (standing == KnownTable::Extended) {
        if (there == 0)
            refuse(u"there is no table \"%1\" that the records could be added to"_s.arg(m_name));
        const TableInfo table = chooseTable(database, database.QIRTableName(there));
        storeRecords(database, table, standingFields(m_csv, table, names()));
        return;
    }
    if (there == 0) {
        addEmptyTable(database, m_name, m_fields);
    } else {
        database.QIRTableRecordSource(database.QIRTableName(there));
        emptyTable(database);
        addFields(database, m_fields);
    }
    std::vector<int> places(m_fields.size());
    std::iota(places.begin(), places.end(), 1);
    storeRecords(database, {m_name, m_fields, 0}, places);
}

} // namespace qir
