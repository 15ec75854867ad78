#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/exchange/CsvImport.h"

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
    std::string passwordFile;
    bool replace = false;
    bool append = false;
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

Standing standingOf(const Arguments &arguments) {
    if (arguments.replace && arguments.append)
        throw std::runtime_error("--replace excludes --append");
    if (arguments.replace)
        return Standing::Replaced;
    return arguments.append ? Standing::Extended : Standing::Refused;
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
    const Standing standing = standingOf(arguments);
    const std::vector<CsvImport> imports = readAll(arguments);
    Session session = Session::open(argumentText(arguments.file), arguments.passwordFile);
    session.run([&] {
        for (const CsvImport &import : imports)
            import.store(session.database(), standing);
        session.save();
    });
}

} // namespace

void addImport(CLI::App &program, Exit &) {
    auto arguments = std::make_shared<Arguments>();
    Command(program, "import", "Add tables from CSV files")
        .argument("FILE", arguments->file, "The database")
        .argument("TABLE", arguments->table,
                  "The table; or, alone, a folder: each file *.csv in it is a table of its name")
        .optional("CSV", arguments->csv,
                  "The file to read, UTF-8, with a header line of names, each with its type where it is not to be "
                  "guessed: Speed[long], Name[text:20]; - is the standard input")
        .flag("--append", arguments->append, "Add the records to the table that stands there, fields by their names")
        .flag("--replace", arguments->replace, "Replace the fields and records of the table that stands there")
        .option("--delimiter", arguments->delimiter, "C",
                "What separates the values instead of a comma: a character, or tab")
        .passwordFile(arguments->passwordFile)
        .run([arguments] { importTables(*arguments); });
}

} // namespace qir
