#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/tables/TableReader.h"
#include "cli/tables/TextTable.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

void info(const QString &file, const std::string &passwordFile) {
    const Session session = Session::open(file, passwordFile);
    QString text;
    session.run([&] {
        const QStringList names = tableNames(session.database());
        qint64 records = 0;
        qint64 cells = 0;
        for (const QString &name : names) {
            const TableInfo table = chooseTable(session.database(), name);
            records += table.records;
            cells += qint64{table.records} * static_cast<qint64>(table.fields.size());
        }
        text = u"File:      %1\nProtected: %2\nTables:    %3\nRecords:   %4\nCells:     %5\n"_s.arg(
            printableText(session.database().GetDatabaseFileName()), session.isProtected() ? u"yes"_s : u"no"_s,
            QString::number(names.size()), QString::number(records), QString::number(cells));
    });
    print(text.toUtf8());
}

} // namespace

void addInfo(CLI::App &program, Exit &) {
    struct Arguments {
        std::string file;
        std::string passwordFile;
    };
    CLI::App *command = program.add_subcommand("info", "Tell what a database holds, in figures");
    auto arguments = std::make_shared<Arguments>();
    command->add_option("FILE", arguments->file, "The database")->required();
    addPasswordFile(*command, arguments->passwordFile);
    command->callback([arguments] { info(argumentText(arguments->file), arguments->passwordFile); });
}

} // namespace qir
