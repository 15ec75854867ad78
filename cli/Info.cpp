#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/tables/JsonText.h"
#include "cli/tables/TextTable.h"
#include "db/tables/TableReader.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

void info(const QString &file, const std::string &passwordFile, bool json) {
    const Session session = Session::open(file, passwordFile);
    QByteArray out;
    session.run([&] {
        const QStringList names = tableNames(session.database());
        qint64 records = 0;
        qint64 cells = 0;
        for (const QString &name : names) {
            const TableInfo table = chooseTable(session.database(), name);
            records += table.records;
            cells += qint64{table.records} * static_cast<qint64>(table.fields.size());
        }
        const QString name = session.database().GetDatabaseFileName();
        if (json) {
            out += "{\"file\": ";
            appendJsonString(out, name);
            out += u", \"protected\": %1, \"tables\": %2, \"records\": %3, \"cells\": %4}\n"_s
                       .arg(session.isProtected() ? u"true"_s : u"false"_s)
                       .arg(names.size())
                       .arg(records)
                       .arg(cells)
                       .toUtf8();
            return;
        }
        out = u"File:      %1\nProtected: %2\nTables:    %3\nRecords:   %4\nCells:     %5\n"_s
                  .arg(printableText(name), session.isProtected() ? u"yes"_s : u"no"_s, QString::number(names.size()),
                       QString::number(records), QString::number(cells))
                  .toUtf8();
    });
    print(out);
}

} // namespace

void addInfo(CLI::App &program, Exit &) {
    struct Arguments {
        std::string file;
        std::string passwordFile;
        bool json = false;
    };
    auto arguments = std::make_shared<Arguments>();
    Subcommand(program, "info", "Tell what a database holds, in figures")
        .argument("FILE", arguments->file, "The database")
        .readingOptions(arguments->json)
        .passwordFile(arguments->passwordFile)
        .run([arguments] { info(argumentText(arguments->file), arguments->passwordFile, arguments->json); });
}

} // namespace qir
