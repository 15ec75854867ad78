#include "cli/Commands.h"
#include "cli/DifferenceOutput.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"

#include <memory>
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

Exit diff(const Arguments &arguments) {
    const auto passwordFile = [&](std::size_t side) {
        const auto &files = arguments.passwordFiles;
        return files.empty() ? std::string() : files[std::min(side, files.size() - 1)];
    };
    const Session left = Session::open(argumentText(arguments.left), passwordFile(0));
    const Session right = Session::open(argumentText(arguments.right), passwordFile(1));
    DatabaseDifference difference;
    Session::runOn(u"%1, %2"_s.arg(left.file(), right.file()), [&] {
        difference = compareDatabases(left.database(), right.database());
        printDifference(difference, left.database(), right.database(), arguments);
    });
    return difference.different ? Exit::Negative : Exit::Done;
}

} // namespace

void addDiff(CLI::App &program, Exit &exit) {
    CLI::App *command = program.add_subcommand("diff", "Compare two databases: their tables, then the cells");
    auto arguments = std::make_shared<Arguments>();
    command->add_option("LEFT", arguments->left, "A database")->required();
    command->add_option("RIGHT", arguments->right, "The other database")->required();
    command->add_flag("--summary", arguments->summary, "Only the tables, not the cells");
    command->add_flag("--json", arguments->json, "A JSON object on a line of its own for each table and each cell");
    command
        ->add_option("--password-file", arguments->passwordFiles,
                     "Read the password from the first line of this file; given twice, LEFT's and RIGHT's")
        ->type_name("FILE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command->callback([arguments, &exit] { exit = diff(*arguments); });
}

} // namespace qir
