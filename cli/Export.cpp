#include "cli/Commands.h"
#include "cli/CsvText.h"
#include "cli/Session.h"
#include "cli/TableReader.h"
#include "cli/WholeFile.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

struct Arguments {
    std::string file;
    std::string table;
    std::string csv;
    std::string passwordFile;
};

void exportTable(const Arguments &arguments) {
    const Session session = Session::open(argumentText(arguments.file), arguments.passwordFile);
    QByteArray out;
    session.run([&] {
        const TableInfo table = chooseTable(session.database(), argumentText(arguments.table));
        appendCsvHeader(out, table);
        forEachRecord(session.database(), table,
                      [&](const QStringList &values) { appendCsvRecord(out, table, values); });
    });
    if (arguments.csv == "-")
        print(out);
    else
        writeWholeFile(argumentText(arguments.csv), out);
}

} // namespace

void addExport(CLI::App &program, Exit &) {
    CLI::App *command = program.add_subcommand("export", "Write a table as a CSV file");
    auto arguments = std::make_shared<Arguments>();
    command->add_option("FILE", arguments->file, "The database")->required();
    command->add_option("TABLE", arguments->table, "The table")->required();
    command->add_option("CSV", arguments->csv, "The file to write, replaced if it exists; - is the standard output")
        ->required();
    addPasswordFile(*command, arguments->passwordFile);
    command->callback([arguments] { exportTable(*arguments); });
}

} // namespace qir
