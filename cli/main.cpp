#include "base/ArgumentTexts.h"
#include "base/ErrorWords.h"
#include "cli/Commands.h"
#include "cli/FileError.h"

#include <QCoreApplication>

#include <CLI/CLI.hpp>

#include <exception>

namespace {

using namespace qir;

// The program's own words for a wrong command line; CLI11 has an exit status for each.
int commandLineError(const CLI::App &program, const CLI::ParseError &error) {
    if (error.get_exit_code() == 0) // --help and --version
        return program.exit(error);
    printError(QString::fromUtf8(error.what()));
    return static_cast<int>(Exit::Trouble);
}

int run(int argc, char **argv) {
    if (const auto texts = argumentTexts(argc, argv); !texts) {
        printError(texts.error().text);
        return static_cast<int>(Exit::Trouble);
    }
    Exit exit = Exit::Done;
    CLI::App program("Works on database files without a window.", "qirdb");
    program.set_version_flag("--version", QIR_VERSION);
    program.require_subcommand(1);
    program.footer("Exit status: 0 done, yes or same; 1 a negative answer or different; 2 trouble.\n"
                   "A protected file's password is asked for, or read with --password-file.");
    addCreate(program, exit);
    addInfo(program, exit);
    addTables(program, exit);
    addDump(program, exit);
    addDiff(program, exit);
    addImport(program, exit);
    addExport(program, exit);
    addVerify(program, exit);
    addPasswd(program, exit);
    addPatch(program, exit);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return commandLineError(program, error);
    } catch (const std::exception &error) {
        printError(errorWords(error));
        return static_cast<int>(Exit::Trouble);
    }
    return static_cast<int>(exit);
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv); // components are looked for beside the running program
    return run(argc, argv);
}
