#include "base/FileNames.h"
#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/tables/CsvText.h"
#include "cli/tables/TableReader.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

struct Arguments {
    std::string file;
    std::string table;
    std::string csv;
    std::string passwordFile;
    bool force = false;
    bool escapeFormulas = false;
};

void exportTable(const Arguments &arguments) {
    const Session session = Session::open(argumentText(arguments.file), arguments.passwordFile);
    const Formulas formulas = arguments.escapeFormulas ? Formulas::Escaped : Formulas::Plain;
    QByteArray out;
    session.run([&] {
        const TableInfo table = chooseTable(session.database(), argumentText(arguments.table));
        appendCsvHeader(out, table, formulas);
        forEachRecord(session.database(), table,
                      [&](const QStringList &values) { appendCsvRecord(out, table, values, formulas); });
    });
    if (arguments.csv == "-")
        print(out);
    else
        writeWholeFile(argumentText(arguments.csv), out,
                       {.replacesDatabases = arguments.force,
                        .isPrivate = session.isProtected(),
                        .source = reachIgnoringCase(session.file()).value_or(session.file())});
}

} // namespace

void addExport(CLI::App &program, Exit &) {
    auto arguments = std::make_shared<Arguments>();
    Command(program, "export", "Write a table as a CSV file")
        .argument("FILE", arguments->file, "The database")
        .argument("TABLE", arguments->table, "The table")
        .argument("CSV", arguments->csv, "The file to write, replaced if it exists; - is the standard output")
        .flag("--force", arguments->force, "Replace the file even if it is a database")
        .escapeFormulas(arguments->escapeFormulas)
        .passwordFile(arguments->passwordFile)
        .run([arguments] { exportTable(*arguments); });
}

} // namespace qir
