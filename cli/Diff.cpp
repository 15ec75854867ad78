#include "cli/Commands.h"
#include "cli/ComparisonArguments.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/diff/DifferenceOutput.h"
#include "cli/diff/JsonOutput.h"
#include "cli/diff/Patch.h"
#include "cli/diff/TabularOutput.h"
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
    std::vector<std::string> passwordFiles; // none, one for both, or one for each
    ComparisonArguments comparison;
    bool summary = false;
    bool json = false;
    bool tabular = false;
    bool html = false;
    bool patch = false;
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

Exit diff(const Arguments &arguments) {
    const auto passwordFile = [&](std::size_t side) {
        const auto &files = arguments.passwordFiles;
        return files.empty() ? std::string() : files[std::min(side, files.size() - 1)];
    };
    if (arguments.patch && arguments.comparison.leavesOut())
        throw std::runtime_error("a patch takes everything: --patch goes with no --ignore and no --tolerance");
    const ComparisonChoice choice = arguments.comparison.choice();
    const Session left = Session::open(argumentText(arguments.left), passwordFile(0));
    const Session right = Session::open(argumentText(arguments.right), passwordFile(1));
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

} // namespace

void addDiff(CLI::App &program, Exit &exit) {
    CLI::App *command = program.add_subcommand("diff", "Compare two databases: their tables, then the cells");
    auto arguments = std::make_shared<Arguments>();
    command->add_option("LEFT", arguments->left, "A database")->required();
    command->add_option("RIGHT", arguments->right, "The other database")->required();
    auto *summary = command->add_flag("--summary", arguments->summary, "Only the tables, not what differs in them");
    auto *json = command->add_flag("--json", arguments->json, "JSON objects, each on a line of its own");
    auto *tabular = command->add_flag("--tabular", arguments->tabular, "A tabular diff: CSV lines marked +++, ---, ->");
    auto *html = command->add_flag("--html", arguments->html, "A page of HTML that needs no other file");
    auto *patch = command->add_flag("--patch", arguments->patch, "What qirdb patch makes RIGHT from LEFT with");
    json->excludes(tabular)->excludes(html)->excludes(patch);
    patch->excludes(tabular)->excludes(html)->excludes(summary);
    tabular->excludes(html)->excludes(summary);
    arguments->comparison.addKeys(*command);
    arguments->comparison.addTolerance(*command);
    arguments->comparison.addTables(*command);
    command
        ->add_option("--password-file", arguments->passwordFiles,
                     "Read the password from the first line of this file; given twice, LEFT's and RIGHT's")
        ->type_name("FILE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command->callback([arguments, &exit] { exit = diff(*arguments); });
}

} // namespace qir
