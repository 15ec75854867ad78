#include "base/ErrorWords.h"
#include "cli/Commands.h"
#include "cli/DifferenceOutput.h"
#include "cli/Protection.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/tables/TextTable.h"

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
    bool summary = false;
    bool json = false;
    bool forGit = false;
    std::vector<std::string> more; ///< What git gives besides.
};

void printDifference(const DatabaseDifference &difference, const QirDatabase &left, const QirDatabase &right,
                     const Arguments &arguments) {
    const auto appendTable = arguments.json ? appendTableJson : appendTableText;
    const auto appendCell = arguments.json ? appendCellJson : appendCellText;
    QByteArray out;
    for (const TableDifference &table : difference.tables)
        appendTable(out, table);
    print(out);
    if (arguments.summary)
        return;
    out.clear();
    for (const TableDifference &table : difference.tables) {
        forEachDifferingCell(table, left, right, [&](const DifferingCell &cell) {
            appendCell(out, cell);
            printWhenMany(out);
        });
    }
    print(out);
}

Exit compare(const Session &left, const Session &right, const Arguments &arguments) {
    DatabaseDifference difference;
    Session::runOn(u"%1, %2"_s.arg(left.file(), right.file()), [&] {
        difference = compareDatabases(left.database(), right.database());
        printDifference(difference, left.database(), right.database(), arguments);
    });
    return difference.different ? Exit::Negative : Exit::Done;
}

Exit diff(const Arguments &arguments) {
    if (!arguments.more.empty())
        throw std::runtime_error("diff takes two files; more of them only with --git");
    const auto open = [&](const std::string &file, std::size_t index) {
        return Session::openOrEmpty(argumentText(file), passwordFileOf(arguments.passwordFiles, index));
    };
    const Session left = open(arguments.left, 0);
    const Session right = open(arguments.right, 1);
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
    Command(program, "diff", "Compare two databases: their tables, then the cells")
        .argument("LEFT", arguments->left, "A database")
        .optional("RIGHT", arguments->right, "The other database; an empty file is an empty database")
        .arguments("GIT", arguments->more, 0, "What git adds to a file's two versions")
        .flag("--git", arguments->forGit,
              "For git: takes its seven arguments; what cannot be compared is told in one line, and is no trouble")
        .flag("--summary", arguments->summary, "Only the tables, not the cells")
        .readingOptions(arguments->json)
        .passwordFiles(arguments->passwordFiles, "first LEFT's, then RIGHT's")
        .run(exit, [arguments] {
            if (arguments->forGit) {
                diffForGit(*arguments);
                return Exit::Done;
            }
            if (arguments->right.empty())
                throw std::runtime_error("diff: RIGHT is required; qirdb diff --help tells more");
            return diff(*arguments);
        });
}

} // namespace qir
