#include "base/ErrorWords.h"
#include "base/FileNames.h"
#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/tables/JsonText.h"
#include "cli/tables/Portions.h"
#include "cli/tables/TextTable.h"
#include "db/tables/TableReader.h"

#include <QFileInfo>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

void printJson(const QString &file, bool isSound, const QString &reason) {
    QByteArray out("{\"file\": ");
    appendJsonString(out, file);
    out += isSound ? ", \"sound\": true" : ", \"sound\": false, \"error\": ";
    if (!isSound)
        appendJsonString(out, reason);
    print(out + "}\n");
}

Exit verify(const QString &file, const std::string &passwordFile, bool json) {
    const Result<QString> reached = reachIgnoringCase(file);
    if (!reached)
        throw FileError(file, reached.error().text);
    if (!QFileInfo::exists(*reached))
        throw FileError(file, u"there is no such file"_s);
    const auto unsound = [&](const QString &reason) {
        if (json)
            printJson(file, false, reason);
        else
            printError(reason);
        return Exit::Negative;
    };
    std::optional<Session> session;
    try {
        session.emplace(Session::open(file, passwordFile));
    } catch (const LoadRefused &refused) {
        return unsound(errorWords(refused));
    }
    try {
        session->run([&] {
            for (const QString &name : tableNames(session->database())) {
                const TableInfo table = chooseTable(session->database(), name);
                forEachPortion(session->database(), table, [](const Portion &) {});
            }
        });
    } catch (const FileError &error) { // a table that was loaded and cannot be read
        return unsound(errorWords(error));
    }
    if (json)
        printJson(file, true, {});
    else
        print(printableText(u"%1: sound"_s.arg(file)).toUtf8() + '\n');
    return Exit::Done;
}

} // namespace

void addVerify(CLI::App &program, Exit &exit) {
    struct Arguments {
        std::string file;
        std::string passwordFile;
        bool json = false;
    };
    auto arguments = std::make_shared<Arguments>();
    Subcommand(program, "verify", "Read a database whole and tell whether it is sound")
        .argument("FILE", arguments->file, "The database")
        .readingOptions(arguments->json)
        .passwordFile(arguments->passwordFile)
        .run(exit,
             [arguments] { return verify(argumentText(arguments->file), arguments->passwordFile, arguments->json); });
}

} // namespace qir
