#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/exchange/CsvImport.h"
#include "cli/exchange/ExchangeSource.h"

#include <QFileInfo>

#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

struct Arguments {
    std::string file;
    std::string table;
    std::string csv;
    std::string delimiter;
    std::string from;
    std::string schema;
    std::vector<std::string> tables;
    std::string passwordFile;
    bool replace = false;
    bool append = false;
    bool fleet = false;
};

std::optional<char> delimiterOf(const std::string &text) {
    if (text.empty())
        return std::nullopt;
    if (text == "tab" || text == "\\t")
        return '\t';
    if (text.size() != 1 || std::string("\"\r\n").find(text[0]) != std::string::npos ||
        static_cast<unsigned char>(text[0]) > 0x7E)
        throw std::runtime_error("--delimiter takes one character (ASCII, no quote), or tab");
    return text[0];
}

KnownTable standingOf(const Arguments &arguments) {
    if (arguments.replace && arguments.append)
        throw std::runtime_error("--replace excludes --append");
    if (arguments.replace)
        return KnownTable::Replaced;
    return arguments.append ? KnownTable::Extended : KnownTable::Refused;
}

std::vector<CsvImport> readAll(const Arguments &arguments) {
    const std::optional<char> delimiter = delimiterOf(arguments.delimiter);
    const QString table = argumentText(arguments.table);
    std::vector<CsvImport> imports;
    if (!arguments.csv.empty())
        imports.push_back(CsvImport::read(argumentText(arguments.csv), table, delimiter));
    else if (QFileInfo(table).isDir())
        imports = CsvImport::readFolder(table, delimiter);
    else
        throw FileError(table, u"it is no folder; a single CSV file needs the name of its table in front"_s);
    return imports;
}

void importTables(const Arguments &arguments) {
    const KnownTable standing = standingOf(arguments);
    if (!arguments.tables.empty() || !arguments.schema.empty() || arguments.fleet)
        throw std::runtime_error("--table, --schema and --fleet go with --from");
    const std::vector<CsvImport> imports = readAll(arguments);
    Session session = Session::openToChange(argumentText(arguments.file), arguments.passwordFile);
    ComeNames replaced;
    session.run([&] {
        for (const CsvImport &import : imports)
            import.store(session.database(), standing, replaced);
        session.save();
    });
}

/// From other databases: the one argument behind the file is where they are.
void importFrom(const Arguments &arguments) {
    const KnownTable standing = standingOf(arguments);
    if (!arguments.csv.empty())
        throw std::runtime_error("--from takes one source; --table chooses tables of it");
    if (!arguments.delimiter.empty())
        throw std::runtime_error("--delimiter is for CSV files");
    if (arguments.fleet && arguments.from != "postgresql")
        throw std::runtime_error("--fleet is for PostgreSQL");
    if (arguments.fleet && arguments.schema.empty())
        throw std::runtime_error("--fleet needs the --schema that the files share");
    const QString source = argumentText(arguments.table);
    QStringList tables;
    for (const std::string &table : arguments.tables)
        tables += argumentText(table);
    Session session = Session::openToChange(argumentText(arguments.file), arguments.passwordFile);
    TableIntake intake(session, standing, tables);
    if (arguments.from == "json")
        takeJsonLines(source, intake);
    else if (arguments.from == "sqlite")
        takeSqlite(source, intake);
    else
        takePostgres(source, schemaOf(arguments.schema, session.file()), arguments.fleet ? session.file() : QString(),
                     intake);
    session.run([&] { session.save(); });
}

} // namespace

QString schemaOf(const std::string &given, const QString &file) {
    return given.empty() ? QFileInfo(file).completeBaseName() : argumentText(given);
}

void addImport(CLI::App &program, Exit &) {
    auto arguments = std::make_shared<Arguments>();
    Subcommand(program, "import", "Add tables from CSV files, JSON lines, SQLite and PostgreSQL")
        .argument("FILE", arguments->file, "The database")
        .argument(
            "TABLE", arguments->table,
            "The table; or, alone, a folder: each file *.csv in it is a table of its name; with --from the source: a "
            "file, or what libpq takes for a connection")
        .optional("CSV", arguments->csv,
                  "The file to read, UTF-8, with a header line of names, each with its type where it is not to be "
                  "guessed: Speed[long], Name[text:20]; - is the standard input")
        .flag("--append", arguments->append, "Add the records to the table that stands there, fields by their names")
        .flag("--replace", arguments->replace, "Replace the fields and records of the table that stands there")
        .option("--delimiter", arguments->delimiter, "C",
                "What separates the values instead of a comma: a character, or tab")
        .choice("--from", arguments->from, {"sqlite", "json", "postgresql"},
                "Take the tables of a SQLite database, of JSON lines (as dump --format json prints them), or of a "
                "schema of PostgreSQL")
        .options("--table", arguments->tables, "NAME", "With --from: only this table; may be repeated")
        .option("--schema", arguments->schema, "NAME", "PostgreSQL: the schema, instead of the file's base name")
        .flag("--fleet", arguments->fleet,
              "PostgreSQL: take what a schema that many files share has of this one, by its name as it was given")
        .passwordFile(arguments->passwordFile)
        .run([arguments] { arguments->from.empty() ? importTables(*arguments) : importFrom(*arguments); });
}

} // namespace qir
