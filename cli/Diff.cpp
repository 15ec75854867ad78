#include "base/ErrorWords.h"
#include "cli/Commands.h"
#include "cli/ComparisonArguments.h"
#include "cli/Protection.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/diff/DifferenceOutput.h"
#include "cli/diff/JsonOutput.h"
#include "cli/diff/Patch.h"
#include "cli/diff/TabularOutput.h"
#include "cli/tables/TextTable.h"
#include "compare/report/HtmlReport.h"

#include <memory>
#include <stdexcept>
#include <vector>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

struct Arguments {
    std::string left;
    std::string right;
    std::vector<std::string> passwordFiles;
    ComparisonArguments comparison;
    bool summary = false;
    bool json = false;
    bool tabular = false;
    bool html = false;
    bool patch = false;
    bool forGit = false;
    std::vector<std::string> more; ///< What git gives besides.
};

/// Two databases, how they differ, and what the user wants to see of it.
struct Report {
    const DatabaseDifference &difference;
    const QirDatabase &left;
    const QirDatabase &right;
    const Arguments &arguments;
    ReportNames names;
};

void appendTableJson(QByteArray &out, const TableDifference &table) {
    openJsonTable(out, table);
    closeJsonLine(out);
}

/// The tables first, then what differs in each.
void printLines(const Report &report) {
    const bool json = report.arguments.json;
    QByteArray out;
    for (const TableDifference &table : report.difference.tables) {
        (json ? appendTableJson : appendTableText)(out, table);
        printWhenMany(out);
    }
    print(out);
    if (report.arguments.summary)
        return;
    out.clear();
    for (const TableDifference &table : report.difference.tables)
        (json ? appendDetailsJson : appendDetailsText)(out, table, report.left, report.right, printWhenMany);
    print(out);
}

void printTabular(const Report &report) {
    QByteArray out;
    for (const TableDifference &table : report.difference.tables)
        appendTabular(out, table, report.left, report.right, printWhenMany);
    print(out);
}

void printHtml(const Report &report) {
    QByteArray out;
    appendHtmlReport(out, report.names, report.difference, report.left, report.right, report.arguments.summary,
                     printWhenMany);
    print(out);
}

/// Whether there is anything to change.
bool printPatch(const Report &report) {
    QByteArray out;
    const bool changes = appendPatch(out, report.difference, report.left, report.right, printWhenMany);
    print(out);
    return changes;
}

void printReport(const Report &report) {
    if (report.arguments.html)
        printHtml(report);
    else if (report.arguments.tabular)
        printTabular(report);
    else
        printLines(report);
}

/// With keys given, which tables have none.
void tellUnkeyed(const DatabaseDifference &difference) {
    for (const TableDifference &table : difference.tables) {
        if (table.kind == AlignedRowKind::Both && !table.keyed)
            printError(u"the table \"%1\" has no key and is compared by position"_s.arg(table.name));
    }
}

Exit compare(const Session &left, const Session &right, const Arguments &arguments) {
    const ComparisonChoice choice = arguments.comparison.choice();
    DatabaseDifference difference;
    bool different = false;
    Session::runOn(u"%1, %2"_s.arg(left.file(), right.file()), [&] {
        difference = compareDatabases(left.database(), right.database(), choice);
        different = difference.different;
        if (arguments.comparison.byKey())
            tellUnkeyed(difference);
        const Report report{difference, left.database(), right.database(), arguments, {left.file(), right.file()}};
        if (arguments.patch)
            different = printPatch(report) || difference.different;
        else
            printReport(report);
    });
    return different ? Exit::Negative : Exit::Done;
}

Exit diff(const Arguments &arguments) {
    if (arguments.right.empty() || !arguments.more.empty())
        throw std::runtime_error(arguments.right.empty() ? "diff: RIGHT is required; qirdb diff --help tells more"
                                                         : "diff: takes two files; qirdb diff --help tells more");
    if (arguments.patch && arguments.comparison.leavesOut())
        throw std::runtime_error("a patch takes everything: --patch goes with no --ignore and no --tolerance");
    (void)arguments.comparison.choice(); // a wrong one is told before a password is asked for
    Session left = Session::beginToRead(argumentText(arguments.left));
    Session right = Session::beginToRead(argumentText(arguments.right));
    left.read(passwordFileOf(arguments.passwordFiles, 0));
    right.read(passwordFileOf(arguments.passwordFiles, 1));
    return compare(left, right, arguments);
}

/// git has nobody to ask for a password, and stops at a driver that fails: what cannot be shown is told in a line.
void diffForGit(const Arguments &arguments) {
    // Path, old file, its name and mode, new file, its name and mode; a file in conflict has its path alone.
    constexpr std::size_t newFile = 2;
    const auto line = [](const QString &text) { print(printableText(text).toUtf8() + '\n'); };
    const QString path = argumentText(arguments.left);
    if (arguments.more.size() <= newFile) {
        line(u"%1: in conflict"_s.arg(path));
        return;
    }
    line(u"tables of %1"_s.arg(path));
    const auto open = [&](const std::string &name, std::size_t index) {
        const QString file = argumentText(name);
        const std::string passwordFile = passwordFileOf(arguments.passwordFiles, index);
        if (passwordFile.empty() && needsPassword(file))
            throw FileError(file, u"it is protected"_s);
        return Session::openOrEmpty(file, passwordFile);
    };
    try {
        const Session left = open(arguments.right, 0);
        const Session right = open(arguments.more[newFile], 1);
        (void)compare(left, right, arguments);
    } catch (const std::exception &error) {
        line(u"(cannot be compared: %1)"_s.arg(errorWords(error)));
    }
}

} // namespace

void addDiff(CLI::App &program, Exit &exit) {
    auto arguments = std::make_shared<Arguments>();
    Subcommand command(program, "diff", "Compare two databases: their tables, then what differs in them");
    command.argument("LEFT", arguments->left, "A database; an empty file is an empty database")
        .optional("RIGHT", arguments->right, "The other database")
        .arguments("GIT", arguments->more, 0, "What git adds to the two files, with --git")
        .flag("--summary", arguments->summary, "Only the tables, not what differs in them")
        .readingOptions(arguments->json)
        .flag("--tabular", arguments->tabular, "A tabular diff: CSV lines marked +++, ---, ->")
        .flag("--html", arguments->html, "A page of HTML that needs no other file")
        .flag("--patch", arguments->patch, "What qirdb patch makes RIGHT from LEFT with")
        .flag("--git", arguments->forGit,
              "For git: takes its seven arguments; what cannot be compared is told in one line, and is no trouble")
        .exclusive({"--json", "--tabular", "--html", "--patch"})
        .exclusive({"--summary", "--tabular"})
        .exclusive({"--summary", "--patch"});
    arguments->comparison.addKeys(command);
    arguments->comparison.addTolerance(command);
    arguments->comparison.addTables(command);
    command.passwordFiles(arguments->passwordFiles, "first LEFT's, then RIGHT's").run(exit, [arguments] {
        if (!arguments->forGit)
            return diff(*arguments);
        diffForGit(*arguments);
        return Exit::Done;
    });
}

} // namespace qir
