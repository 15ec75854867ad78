#include "base/FileNames.h"
#include "base/state/KeptFiles.h"
#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/kept/Restore.h"
#include "cli/tables/JsonText.h"
#include "cli/tables/TextTable.h"

#include <QFileInfo>

#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

struct Arguments {
    std::string file;
    std::string restore;
    std::string passwordFile;
    bool json = false;
};

QString timeText(const KeptFile &kept) {
    return kept.time.toString(u"yyyy-MM-dd HH:mm:ss"_s);
}

void listJson(const std::vector<KeptFile> &versions) {
    QByteArray out;
    int number = 0;
    for (const KeptFile &kept : versions) {
        out += "{\"number\": " + QByteArray::number(++number) + ", \"kept\": ";
        appendJsonString(out, keptWord(kept.kind));
        out += ", \"time\": ";
        appendJsonString(out, kept.time.toString(Qt::ISODate));
        out += ", \"file\": ";
        appendJsonString(out, kept.path);
        out += "}\n";
    }
    print(out);
}

void listText(const std::vector<KeptFile> &versions) {
    TextTable lines;
    lines.addColumn(u"No."_s, TextTable::Align::Right);
    for (const QString &heading : {u"Kept"_s, u"Time"_s, u"File"_s})
        lines.addColumn(heading, TextTable::Align::Left);
    const auto valuesOf = [](int number, const KeptFile &kept) {
        return std::array{QString::number(number), keptWord(kept.kind), timeText(kept), kept.path};
    };
    int number = 0;
    for (const KeptFile &kept : versions)
        lines.measure(valuesOf(++number, kept));
    QByteArray out;
    lines.appendHeading(out);
    number = 0;
    for (const KeptFile &kept : versions)
        lines.appendLine(out, valuesOf(++number, kept));
    print(out);
}

void printRestored(const QString &file, const QString &version, const QString &keptAs) {
    QByteArray out("{\"file\": ");
    appendJsonString(out, file);
    out += ", \"restored\": ";
    appendJsonString(out, version);
    out += ", \"kept\": ";
    if (keptAs.isEmpty())
        out += "null";
    else
        appendJsonString(out, keptAs);
    print(out + "}\n");
}

void restore(const QString &file, const std::vector<KeptFile> &versions, const Arguments &arguments) {
    bool isNumber = false;
    const auto number = QString::fromStdString(arguments.restore).toULongLong(&isNumber);
    if (!isNumber)
        throw FileError(file, u"--restore takes the number of a kept version"_s);
    if (number < 1 || number > versions.size())
        throw NegativeAnswer(file, u"it has no kept version %1, it has %2"_s.arg(number).arg(versions.size()));
    const KeptFile &kept = versions[number - 1];
    (void)Session::open(kept.path, arguments.passwordFile); // one that cannot be opened is not put there
    const FolderLock lock(file);
    const QString name = restoreOver(file, kept.path);
    if (arguments.json) {
        printRestored(file, kept.path, name);
        return;
    }
    const QString before = name.isEmpty() ? u"nothing stood there"_s : u"what stood there is kept as %1"_s.arg(name);
    print(printableText(u"%1: restored; %2"_s.arg(file, before)).toUtf8() + '\n');
}

void kept(const Arguments &arguments) {
    const QString file = argumentText(arguments.file);
    const Result<QString> reached = reachIgnoringCase(file);
    if (!reached)
        throw FileError(file, reached.error().text);
    const std::vector<KeptFile> versions = keptFiles(*reached);
    if (versions.empty() && !QFileInfo::exists(*reached))
        throw FileError(file, u"there is no such file"_s);
    if (!arguments.restore.empty())
        restore(*reached, versions, arguments);
    else
        (arguments.json ? listJson : listText)(versions);
}

} // namespace

void addKept(CLI::App &program, Exit &) {
    auto arguments = std::make_shared<Arguments>();
    Subcommand(program, "kept", "List the kept versions of a file, or take one of them")
        .argument("FILE", arguments->file, "The database")
        .option("--restore", arguments->restore, "N",
                "Put the content of the version of this number in the file's place; what stands there is kept too")
        .readingOptions(arguments->json)
        .passwordFile(arguments->passwordFile)
        .run([arguments] { kept(*arguments); });
}

} // namespace qir
