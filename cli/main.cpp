#include "base/ArgumentTexts.h"
#include "base/ErrorWords.h"
#include "cli/Commands.h"
#include "cli/FileError.h"
#include "cli/NearestName.h"

#include <QCoreApplication>

#include <CLI/CLI.hpp>

#include <csignal>
#include <exception>

namespace {

using namespace qir;
using namespace Qt::StringLiterals;

int trouble(const QString &text) {
    printError(text);
    return static_cast<int>(Exit::Trouble);
}

void addCommands(CLI::App &program, Exit &exit) {
    using Add = void (*)(CLI::App &, Exit &);
    for (const Add add : {addCreate, addInfo,   addTables, addDump,  addDiff,  addGet,   addSet,       addAdd,
                          addRemove, addRename, addResize, addSort,  addCopy,  addRun,   addImport,    addExport,
                          addVerify, addKept,   addPasswd, addMerge, addPatch, addAudit, addInstallGit})
        add(program, exit);
}

QStringList namesOf(const CLI::App &program) {
    QStringList names;
    for (const CLI::App *command : program.get_subcommands([](const CLI::App *) { return true; }))
        names += QString::fromStdString(command->get_name());
    return names;
}

/// The options of a command that begin with two dashes.
QStringList optionsOf(const CLI::App &command) {
    QStringList names;
    for (const CLI::Option *option : command.get_options())
        for (const std::string &name : option->get_lnames())
            names += u"--"_s + QString::fromStdString(name);
    return names;
}

/// The first of the arguments that looks like an option and is none of the command's, "" for none.
QString unknownOption(const CLI::App &command, const QStringList &arguments) {
    const QStringList known = optionsOf(command);
    for (const QString &argument : arguments) {
        if (argument == u"--")
            break;
        const QString name = argument.section(u'=', 0, 0);
        if (name.startsWith(u"--"_s) && !known.contains(name))
            return u"there is no option \"%1\"%2"_s.arg(name, nearestWords(name, known));
    }
    return {};
}

// The program's own words for a wrong command line; CLI11 has an exit status for each.
int commandLineError(const CLI::App &program, const QStringList &arguments, const CLI::ParseError &error) {
    if (error.get_exit_code() == 0) // --help and --version
        return program.exit(error);
    const std::vector<CLI::App *> parsed = program.get_subcommands();
    if (parsed.empty())
        return trouble(arguments.size() < 2 ? u"a command is missing; qirdb --help lists them"_s
                                            : QString::fromUtf8(error.what()));
    const QString option = unknownOption(*parsed.front(), arguments.sliced(2));
    const QString name = QString::fromStdString(parsed.front()->get_name());
    return trouble(
        u"%1: %2; qirdb %1 --help tells more"_s.arg(name, option.isEmpty() ? QString::fromUtf8(error.what()) : option));
}

int runCommand(CLI::App &program, const QStringList &arguments, int argc, char **argv) {
    const QString name = arguments.value(1);
    if (!name.isEmpty() && !name.startsWith(u'-') && !namesOf(program).contains(name))
        return trouble(u"there is no command \"%1\"%2"_s.arg(name, nearestWords(name, namesOf(program))));
    if (name == u"--write-share" && arguments.size() == 3) { // for the build
        writeShareFolder(program, arguments[2], QStringLiteral(QIR_VERSION));
        return static_cast<int>(Exit::Done);
    }
    try {
        std::vector<std::string> words = markedWords(argc, argv);
        program.parse(words);
    } catch (const CLI::ParseError &error) {
        return commandLineError(program, arguments, error);
    }
    return static_cast<int>(Exit::Done);
}

int run(int argc, char **argv) {
    leaveToDifftool(argc, argv);
    const auto texts = argumentTexts(argc, argv);
    if (!texts && tellGit(argc, argv, texts.error().text))
        return static_cast<int>(Exit::Done);
    if (!texts)
        return trouble(texts.error().text);
    Exit exit = Exit::Done;
    CLI::App program("Works on database files without a window.", "qirdb");
    program.set_version_flag("--version", "qirdb " QIR_VERSION);
    program.require_subcommand(1);
    addCommands(program, exit);
    // Behind them: commands take over what stands there when they are made.
    program.footer("Exit status: 0 done, yes or same; 1 a negative answer or different; 2 trouble.\n"
                   "A protected file's password is asked for, or read with --password-file.");
    try {
        const int status = runCommand(program, *texts, argc, argv);
        return status != 0 ? status : static_cast<int>(exit);
    } catch (const NegativeAnswer &answer) {
        printError(errorWords(answer));
        return static_cast<int>(Exit::Negative);
    } catch (const std::exception &error) {
        return trouble(errorWords(error));
    }
}

} // namespace

int main(int argc, char **argv) {
    // Whoever started this may have it ignored: a reader that has seen enough would be trouble then.
    std::signal(SIGPIPE, SIG_DFL);
    const QCoreApplication application(argc, argv); // components are looked for beside the running program
    return run(argc, argv);
}
