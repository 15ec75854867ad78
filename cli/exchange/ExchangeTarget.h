#pragma once

#include "cli/WholeFile.h"
#include "cli/tables/CsvText.h"
#include "cli/tables/Portions.h"
#include "db/tables/TableReader.h"

#include <QString>

#include <memory>

namespace qir {

/// Where tables go out to, one after the other. Nobody sees anything of them before finish(); where that is never
/// called, nothing has happened. All throw FileError, or std::runtime_error with the reason.
class ExchangeTarget {
public:
    virtual ~ExchangeTarget() = default;

    /// Whether a table can go there at all; for every one before the first begins.
    virtual void check(const TableInfo &table) const { (void)table; }
    /// A table, whose records follow.
    virtual void begin(const TableInfo &table) = 0;
    virtual void append(const Portion &portion) = 0;
    /// Behind its last record.
    virtual void end() {}
    /// Behind the last table.
    virtual void finish() = 0;
};

/// A folder, made where it is missing, with a file NAME.csv for each table.
std::unique_ptr<ExchangeTarget> csvFolder(const QString &folder, const ExportRules &rules, Formulas formulas);
/// The lines of `dump --format json`; "-" is the standard output here and for SQL.
std::unique_ptr<ExchangeTarget> jsonLines(const QString &file, const ExportRules &rules);
/// Statements that PostgreSQL and SQLite understand alike.
std::unique_ptr<ExchangeTarget> sqlText(const QString &file, const ExportRules &rules);
/// Tables of a SQLite database, which is made, or gets them; what stands there is kept unless it may be replaced.
std::unique_ptr<ExchangeTarget> sqliteTables(const QString &file, const ExportRules &rules, bool replace);

/// How tables stand in PostgreSQL.
struct PostgresChoice {
    QString connection;
    QString schema;
    bool replace = false; ///< Tables that stand there.
    QString fleetFile;    ///< Tables of many files, where it is not "": these are the records of this one.
    bool isWhole = true;  ///< The file has no other tables than those that come.
};
std::unique_ptr<ExchangeTarget> postgresTables(const PostgresChoice &choice);

} // namespace qir
