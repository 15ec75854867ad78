#pragma once

#include "cli/exchange/TableIntake.h"

#include <QString>

#include <string>

namespace qir {

// Each takes in what the intake wants, and throws FileError for what does not go into a database; part of it may be
// there then.

/// Lines as `dump --format json` prints them; "-" is the standard input.
void takeJsonLines(const QString &file, TableIntake &intake);
/// The tables of a SQLite database. A declared type that is one of ours counts where all values fit; else the values
/// say what the field becomes.
void takeSqlite(const QString &file, TableIntake &intake);
/// The tables of a schema. A type that a column's comment tells counts. Of tables that many files share those of
/// `fleetFile` where it is not "", with the fields and records that it has there.
void takePostgres(const QString &connection, const QString &schema, const QString &fleetFile, TableIntake &intake);

/// The schema that is meant for a database: the one that was given, or the file's base name.
QString schemaOf(const std::string &given, const QString &file);

} // namespace qir
