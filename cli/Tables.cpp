#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/tables/FieldHeader.h"
#include "cli/tables/TableReader.h"
#include "cli/tables/TextTable.h"

#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

void tables(const QString &file, const std::string &passwordFile) {
    const Session session = Session::open(file, passwordFile);
    TextTable lines;
    lines.addColumn(u"Table"_s, TextTable::Align::Left);
    lines.addColumn(u"Records"_s, TextTable::Align::Right);
    lines.addColumn(u"Fields"_s, TextTable::Align::Left);
    session.run([&] {
        const QStringList names = tableNames(session.database());
        for (const QString &name : names) {
            session.database().QIRTableRecordSource(name);
            lines.measure(std::array{name, QString::number(session.database().QirTableRecordsCount()), QString()});
        }
        QByteArray out;
        lines.appendHeading(out);
        for (const QString &name : names) {
            const TableInfo table = chooseTable(session.database(), name);
            QStringList fields;
            for (const FieldInfo &field : table.fields)
                fields += fieldHeaderText(field);
            lines.appendLine(out, std::array{name, QString::number(table.records), fields.join(u", "_s)});
            printWhenMany(out);
        }
        print(out);
    });
}

} // namespace

void addTables(CLI::App &program, Exit &) {
    struct Arguments {
        std::string file;
        std::string passwordFile;
    };
    CLI::App *command = program.add_subcommand("tables", "List the tables with their fields");
    auto arguments = std::make_shared<Arguments>();
    command->add_option("FILE", arguments->file, "The database")->required();
    addPasswordFile(*command, arguments->passwordFile);
    command->callback([arguments] { tables(argumentText(arguments->file), arguments->passwordFile); });
}

} // namespace qir
