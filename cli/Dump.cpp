#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/tables/CsvText.h"
#include "cli/tables/FieldHeader.h"
#include "cli/tables/JsonText.h"
#include "cli/tables/TableReader.h"
#include "cli/tables/TextTable.h"

#include <memory>
#include <span>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

void dumpJson(const QirDatabase &database, const TableInfo &table) {
    QByteArray out;
    appendJsonTable(out, table);
    forEachRecord(database, table, [&](const QStringList &values) {
        appendJsonRecord(out, table, values);
        printWhenMany(out);
    });
    print(out);
}

void dumpCsv(const QirDatabase &database, const TableInfo &table, Formulas formulas) {
    QByteArray out;
    appendCsvHeader(out, table, formulas);
    forEachRecord(database, table, [&](const QStringList &values) {
        appendCsvRecord(out, table, values, formulas);
        printWhenMany(out);
    });
    print(out);
}

void dumpText(const QirDatabase &database, const TableInfo &table) {
    TextTable lines;
    for (const FieldInfo &field : table.fields)
        lines.addColumn(u"%1 [%2]"_s.arg(field.name, typeName(field.type)),
                        field.type == FieldType::Text ? TextTable::Align::Left : TextTable::Align::Right);
    const auto valuesOf = [&](const QStringList &values) {
        return std::span(values.constData() + 1, table.fields.size());
    };
    forEachRecord(database, table, [&](const QStringList &values) { lines.measure(valuesOf(values)); });
    QByteArray out;
    lines.appendHeading(out);
    forEachRecord(database, table, [&](const QStringList &values) {
        lines.appendLine(out, valuesOf(values));
        printWhenMany(out);
    });
    print(out);
}

struct Arguments {
    std::string file;
    std::string table;
    std::string format = "text";
    std::string passwordFile;
    bool escapeFormulas = false;
};

void dump(const Arguments &arguments) {
    const Session session = Session::open(argumentText(arguments.file), arguments.passwordFile);
    const QirDatabase &database = session.database();
    const Formulas formulas = arguments.escapeFormulas ? Formulas::Escaped : Formulas::Plain;
    session.run([&] {
        const bool isOne = !arguments.table.empty();
        const QStringList names = isOne ? QStringList(argumentText(arguments.table)) : tableNames(database);
        bool isFirst = true;
        for (const QString &name : names) {
            const TableInfo table = chooseTable(database, name);
            if (arguments.format == "json") {
                dumpJson(database, table);
                continue;
            }
            if (!isOne) {
                QByteArray title(isFirst ? "" : "\n");
                if (arguments.format == "csv")
                    appendCsvText(title, name, formulas);
                else
                    title += printableText(name).toUtf8();
                print(title + '\n');
            }
            isFirst = false;
            if (arguments.format == "csv")
                dumpCsv(database, table, formulas);
            else
                dumpText(database, table);
        }
    });
}

} // namespace

void addDump(CLI::App &program, Exit &) {
    CLI::App *command = program.add_subcommand("dump", "Print the tables, or one of them");
    auto arguments = std::make_shared<Arguments>();
    command->add_option("FILE", arguments->file, "The database")->required();
    command->add_option("TABLE", arguments->table, "Only this table");
    command
        ->add_option("--format", arguments->format,
                     "json: a line for each table and each record; csv: a block for each table, its name first unless "
                     "it is the only one asked for; text: columns for people")
        ->check(CLI::IsMember({"json", "csv", "text"}))
        ->capture_default_str();
    addEscapeFormulas(*command, arguments->escapeFormulas);
    addPasswordFile(*command, arguments->passwordFile);
    command->callback([arguments] { dump(*arguments); });
}

} // namespace qir
