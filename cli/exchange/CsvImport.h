#pragma once

#include "cli/exchange/TableIntake.h"
#include "cli/tables/CsvTable.h"
#include "db/tables/TableReader.h"

#include <QString>

#include <optional>
#include <vector>

namespace qir {

/// A CSV file that is to become a table, or to be added to one. Everything that is wrong with the file alone is found
/// when it is read, before a database is touched.
class CsvImport {
public:
    /// Throws FileError.
    static CsvImport read(const QString &csv, const QString &table, std::optional<char> delimiter);
    /// The same for each file *.csv of a folder, in the order of their names; each is a table of its name.
    static std::vector<CsvImport> readFolder(const QString &folder, std::optional<char> delimiter);

    const QString &table() const { return m_name; }
    /// Puts it into a database, in memory; `replaced` are the tables that came before and replace standing ones. Throws
    /// FileError for values that do not fit, and what the component throws; part of it may be there then.
    void store(const QirDatabase &database, KnownTable standing, ComeNames &replaced) const;

private:
    CsvImport(QString csv, QString name, CsvTable table, std::vector<FieldInfo> fields)
        : m_csv(std::move(csv))
        , m_name(std::move(name))
        , m_table(std::move(table))
        , m_fields(std::move(fields)) {}

    static std::vector<FieldInfo> fieldsOf(const CsvTable &table, const QString &csv);
    std::vector<ColumnName> names() const;
    void storeRecords(const QirDatabase &database, const TableInfo &table, const std::vector<int> &places) const;

    QString m_csv;
    QString m_name;
    CsvTable m_table;
    std::vector<FieldInfo> m_fields; // of a table that is made of it
};

} // namespace qir
