#include "base/FileNames.h"
#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/tables/TableReader.h"
#include "cli/tables/TextTable.h"

#include <QFileInfo>

#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

Exit verify(const QString &file, const std::string &passwordFile) {
    const Result<QString> reached = reachIgnoringCase(file);
    if (!reached)
        throw FileError(file, reached.error().text);
    if (!QFileInfo::exists(*reached))
        throw FileError(file, u"there is no such file"_s);
    try {
        const Session session = Session::open(file, passwordFile);
        session.run([&] {
            for (const QString &name : tableNames(session.database())) {
                const TableInfo table = chooseTable(session.database(), name);
                forEachRecord(session.database(), table, [](const QStringList &) {});
            }
        });
    } catch (const LoadRefused &refused) {
        printError(QString::fromUtf8(refused.what()));
        return Exit::Negative;
    }
    print(printableText(u"%1: sound"_s.arg(file)).toUtf8() + '\n');
    return Exit::Done;
}

} // namespace

void addVerify(CLI::App &program, Exit &exit) {
    struct Arguments {
        std::string file;
        std::string passwordFile;
    };
    CLI::App *command = program.add_subcommand("verify", "Read a database whole and tell whether it is sound");
    auto arguments = std::make_shared<Arguments>();
    command->add_option("FILE", arguments->file, "The database")->required();
    addPasswordFile(*command, arguments->passwordFile);
    command->callback([arguments, &exit] { exit = verify(argumentText(arguments->file), arguments->passwordFile); });
}

} // namespace qir
