#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/tables/JsonText.h"
#include "cli/tables/TextTable.h"
#include "db/tables/FieldHeader.h"
#include "db/tables/TableReader.h"

#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

void listText(const QirDatabase &database) {
    TextTable lines;
    lines.addColumn(u"Table"_s, TextTable::Align::Left);
    lines.addColumn(u"Records"_s, TextTable::Align::Right);
    lines.addColumn(u"Fields"_s, TextTable::Align::Left);
    const QStringList names = tableNames(database);
    for (const QString &name : names) {
        database.QIRTableRecordSource(name);
        lines.measure(std::array{name, QString::number(database.QirTableRecordsCount()), QString()});
    }
    QByteArray out;
    lines.appendHeading(out);
    for (const QString &name : names) {
        const TableInfo table = chooseTable(database, name);
        QStringList fields;
        for (const FieldInfo &field : table.fields)
            fields += fieldHeaderText(field);
        lines.appendLine(out, std::array{name, QString::number(table.records), fields.join(u", "_s)});
        printWhenMany(out);
    }
    print(out);
}

void listJson(const QirDatabase &database) {
    QByteArray out;
    for (const QString &name : tableNames(database))
        appendJsonTable(out, chooseTable(database, name));
    print(out);
}

} // namespace

void addTables(CLI::App &program, Exit &) {
    struct Arguments {
        std::string file;
        std::string passwordFile;
        bool json = false;
    };
    auto arguments = std::make_shared<Arguments>();
    Subcommand(program, "tables", "List the tables with their fields")
        .argument("FILE", arguments->file, "The database")
        .readingOptions(arguments->json)
        .passwordFile(arguments->passwordFile)
        .run([arguments] {
            const Session session = Session::open(argumentText(arguments->file), arguments->passwordFile);
            session.run([&] { (arguments->json ? listJson : listText)(session.database()); });
        });
}

} // namespace qir
