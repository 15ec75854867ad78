#include "base/FileNames.h"
#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/exchange/ExchangeSource.h"
#include "cli/exchange/ExchangeTarget.h"
#include "cli/tables/CsvText.h"
#include "db/tables/TableReader.h"
#include "db/tables/TableWriter.h"

#include <functional>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

struct Arguments {
    std::string file;
    std::string table;
    std::string csv;
    std::string to;
    std::string schema;
    std::vector<std::string> tables;
    std::string passwordFile;
    bool force = false;
    bool replace = false;
    bool fleet = false;
    bool escapeFormulas = false;

    Formulas formulas() const { return escapeFormulas ? Formulas::Escaped : Formulas::Plain; }
};

ExportRules rulesOf(const Arguments &arguments, const Session &session) {
    return {.replacesDatabases = arguments.force,
            .isPrivate = session.isProtected(),
            .source = reachIgnoringCase(session.file()).value_or(session.file())};
}

/// Hands a table over as CSV.
void writeCsv(const QirDatabase &database, const Arguments &arguments,
              const std::function<void(QByteArrayView text)> &take) {
    const Formulas formulas = arguments.formulas();
    const TableInfo table = chooseTable(database, argumentText(arguments.table));
    QByteArray header;
    appendCsvHeader(header, table, formulas);
    take(header);
    const auto append = [formulas](QByteArray &out, const Portion &portion, int from, int to) {
        appendCsvRecords(out, portion, from, to, formulas);
    };
    forEachText(database, table, append, take);
}

void exportTable(const Arguments &arguments) {
    const Session session = Session::open(argumentText(arguments.file), arguments.passwordFile);
    if (arguments.csv == "-") {
        session.run([&] { writeCsv(session.database(), arguments, print); });
        return;
    }
    std::optional<NewContent> content;
    session.run([&] {
        writeCsv(session.database(), arguments, [&](QByteArrayView text) {
            if (!content) // once there is something to write
                content.emplace(argumentText(arguments.csv), rulesOf(arguments, session));
            content->write(text);
        });
        content->finish();
    });
}

std::unique_ptr<ExchangeTarget> targetOf(const Arguments &arguments, const Session &session) {
    const QString target = argumentText(arguments.table);
    const ExportRules rules = rulesOf(arguments, session);
    if (arguments.to == "csv")
        return csvFolder(target, rules, arguments.formulas());
    if (arguments.to == "json")
        return jsonLines(target, rules);
    if (arguments.to == "sql")
        return sqlText(target, rules);
    if (arguments.to == "sqlite")
        return sqliteTables(target, rules, arguments.replace);
    return postgresTables({.connection = target,
                           .schema = schemaOf(arguments.schema, session.file()),
                           .replace = arguments.replace,
                           .fleetFile = arguments.fleet ? session.file() : QString(),
                           .isWhole = arguments.tables.empty()});
}

void requireFitting(const Arguments &arguments) {
    const bool isServer = arguments.to == "postgresql";
    if (!arguments.csv.empty())
        throw std::runtime_error("--to takes one target; --table chooses the tables");
    if (arguments.escapeFormulas && arguments.to != "csv")
        throw std::runtime_error("--escape-formulas is for CSV");
    if (!isServer && (arguments.fleet || !arguments.schema.empty()))
        throw std::runtime_error("--fleet and --schema are for PostgreSQL");
    if (arguments.fleet && arguments.schema.empty())
        throw std::runtime_error("--fleet needs the --schema that the files share");
    if (arguments.fleet && arguments.replace)
        throw std::runtime_error("--fleet excludes --replace: the records of the file are replaced anyway");
    if (arguments.replace && !isServer && arguments.to != "sqlite")
        throw std::runtime_error("--replace is for tables in SQLite and PostgreSQL; a file is replaced anyway");
}

/// To other databases: the one argument behind the file is where they are.
void exportTo(const Arguments &arguments) {
    requireFitting(arguments);
    const Session session = Session::open(argumentText(arguments.file), arguments.passwordFile);
    const QirDatabase &database = session.database();
    QStringList names;
    for (const std::string &table : arguments.tables)
        names += argumentText(table);
    session.run([&] {
        std::vector<TableInfo> tables;
        for (const QString &name : names.isEmpty() ? tableNames(database) : names) {
            tables.push_back(chooseTable(database, name)); // one that is not there is told before anything is written
            const int number = tableNumber(database, name);
            tables.back().name = number == 0 ? name : database.QIRTableName(number);
        }
        const std::unique_ptr<ExchangeTarget> target = targetOf(arguments, session);
        for (const TableInfo &table : tables)
            target->check(table);
        for (const TableInfo &table : tables) {
            target->begin(table);
            database.QIRTableRecordSource(table.name);
            forEachPortion(database, table, [&](const Portion &portion) { target->append(portion); });
            target->end();
        }
        target->finish();
    });
}

} // namespace

void addExport(CLI::App &program, Exit &) {
    auto arguments = std::make_shared<Arguments>();
    Subcommand(program, "export", "Write tables as CSV files, JSON lines or SQL, into SQLite or PostgreSQL")
        .argument("FILE", arguments->file, "The database")
        .argument("TABLE", arguments->table,
                  "The table; with --to the target: a file, a folder for CSV files, or what libpq takes for a "
                  "connection")
        .optional("CSV", arguments->csv, "The file to write, replaced if it exists; - is the standard output")
        .choice("--to", arguments->to, {"csv", "json", "sqlite", "sql", "postgresql"},
                "Write all tables: a folder of CSV files, JSON lines (as dump --format json prints them), a SQLite "
                "database, SQL that PostgreSQL and SQLite load, or a schema of PostgreSQL")
        .options("--table", arguments->tables, "NAME", "With --to: only this table; may be repeated")
        .option("--schema", arguments->schema, "NAME", "PostgreSQL: the schema, instead of the file's base name")
        .flag("--replace", arguments->replace, "SQLite and PostgreSQL: replace tables that stand there")
        .flag("--fleet", arguments->fleet,
              "PostgreSQL: tables that many files share, each record with its file and number")
        .flag("--force", arguments->force, "Replace the file even if it is a database")
        .escapeFormulas(arguments->escapeFormulas)
        .passwordFile(arguments->passwordFile)
        .run([arguments] {
            if (!arguments->to.empty())
                return exportTo(*arguments);
            if (arguments->csv.empty())
                throw std::runtime_error("export: CSV is required; qirdb export --help tells more");
            if (!arguments->tables.empty() || !arguments->schema.empty() || arguments->replace || arguments->fleet)
                throw std::runtime_error("--table, --schema, --replace and --fleet go with --to");
            exportTable(*arguments);
        });
}

} // namespace qir
