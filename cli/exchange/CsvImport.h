#pragma once

#include "cli/tables/CsvTable.h"
#include "cli/tables/TableReader.h"

#include <QString>

#include <optional>
#include <vector>

namespace qir {

/// What becomes of a table that has the name already.
enum class Standing {
    Refused,  ///< It stays, and the import fails.
    Replaced, ///< It gets the fields and records of the import, and keeps its place.
    Extended, ///< It gets its records; one must be there.
};

/// A CSV file that is to become a table, or to be added to one. Everything that is wrong with the file alone is found
/// when it is read, before a database is touched.
class CsvImport {
public:
    /// Throws FileError.
    static CsvImport read(const QString &csv, const QString &table, std::optional<char> delimiter);
    /// The same for each file *.csv of a folder, in the order of their names; each is a table of its name.
    static std::vector<CsvImport> readFolder(const QString &folder, std::optional<char> delimiter);

    const QString &table() const { return m_name; }
    /// Puts it into a database, in memory. Throws FileError for values that do not fit, and what the component throws;
    /// part of it may be there then.
    void store(const QirDatabase &database, Standing standing) const;

private:
    CsvImport(QString csv, QString name, CsvTable table)
        : m_csv(std::move(csv))
        , m_name(std::move(name))
        , m_table(std::move(table)) {}

    std::vector<FieldInfo> fields() const;
    /// The fields of the current table that the columns go to, by their names.
    std::vector<int> standingFields(const TableInfo &table) const;
    void storeRecords(const QirDatabase &database, const TableInfo &table, const std::vector<int> &places) const;

    QString m_csv;
    QString m_name;
    CsvTable m_table;
};

} // namespace qir
