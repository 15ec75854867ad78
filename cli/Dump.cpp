#include "base/ErrorWords.h"
#include "cli/Commands.h"
#include "cli/Protection.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/tables/CsvText.h"
#include "cli/tables/JsonText.h"
#include "cli/tables/TextTable.h"
#include "db/tables/FieldHeader.h"
#include "db/tables/TableReader.h"

#include <QFileInfo>

#include <memory>
#include <span>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

void dumpJson(const QirDatabase &database, const TableInfo &table) {
    QByteArray out;
    appendJsonTable(out, table);
    print(out);
    forEachText(database, table, appendJsonRecords, print);
}

void dumpCsv(const QirDatabase &database, const TableInfo &table, Formulas formulas) {
    QByteArray out;
    appendCsvHeader(out, table, formulas);
    print(out);
    const auto append = [formulas](QByteArray &text, const Portion &portion, int from, int to) {
        appendCsvRecords(text, portion, from, to, formulas);
    };
    forEachText(database, table, append, print);
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
    bool json = false;
    bool textconv = false;
};

void dump(const Session &session, const Arguments &arguments) {
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

/// Shows lines that can be compared, in the order of the file; git shows them when it shows changes, and would stop
/// there for a file that fails. It has nobody to ask for a password.
void dumpForGit(const Arguments &arguments) {
    const QString file = argumentText(arguments.file);
    QString reason;
    try {
        const QFileInfo info(file);
        if (info.exists() && info.size() == 0)
            return; // the empty side of a file that comes or goes
        if (needsPassword(file) && arguments.passwordFile.empty()) {
            print("(a protected database: its tables are not shown)\n");
            return;
        }
        dump(Session::open(file, arguments.passwordFile), arguments);
        return;
    } catch (const std::exception &error) {
        reason = errorWords(error);
    }
    print(printableText(u"(no database that can be shown: %1)"_s.arg(reason)).toUtf8() + '\n');
}

} // namespace

void addDump(CLI::App &program, Exit &) {
    auto arguments = std::make_shared<Arguments>();
    Subcommand(program, "dump", "Print the tables, or one of them")
        .argument("FILE", arguments->file, "The database")
        .optional("TABLE", arguments->table, "Only this table")
        .choice("--format", arguments->format, {"json", "csv", "text"},
                "json: a line for each table and each record; csv: a block for each table, its name first unless it is "
                "the only one asked for; text: columns for people")
        .flag("--textconv", arguments->textconv,
              "For git: what cannot be read is told in one line of the output, and is no trouble")
        .escapeFormulas(arguments->escapeFormulas)
        .readingOptions(arguments->json)
        .passwordFile(arguments->passwordFile)
        .run([arguments] {
            if (arguments->json)
                arguments->format = "json";
            if (arguments->escapeFormulas && arguments->format != "csv")
                throw std::runtime_error("--escape-formulas is for CSV");
            if (arguments->textconv)
                dumpForGit(*arguments);
            else
                dump(Session::open(argumentText(arguments->file), arguments->passwordFile), *arguments);
        });
}

} // namespace qir
