#include "base/ErrorWords.h"
#include "base/FileNames.h"
#include "cli/Commands.h"
#include "cli/Progress.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/diff/DifferenceOutput.h"
#include "cli/diff/JsonOutput.h"
#include "cli/edit/Edit.h"
#include "cli/edit/ScriptWords.h"

#include <QFileInfo>

#include <list>
#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

struct Arguments {
    std::string file;
    std::string script;
    std::vector<std::string> passwordFiles;
    bool dryRun = false;
    bool json = false;
};

QString placeOf(const QString &file) {
    const QString reached = reachIgnoringCase(file).value_or(file);
    const QString place = QFileInfo(reached).canonicalFilePath();
    return place.isEmpty() ? reached : place;
}

/// The databases that tables are copied from, each opened once.
class Sources {
public:
    Sources(const Session &session, const std::vector<std::string> &passwordFiles)
        : m_session(session)
        , m_passwordFiles(passwordFiles) {}

    const QirDatabase &open(const QString &file) {
        const QString place = placeOf(file);
        if (place == placeOf(m_session.file()))
            return m_session.database();
        for (const Source &source : m_sources)
            if (source.place == place)
                return source.session.database();
        const std::string password = passwordFileOf(m_passwordFiles, m_sources.size() + 1);
        m_sources.push_back({place, Session::open(file, password)});
        return m_sources.back().session.database();
    }

private:
    struct Source {
        QString place;
        Session session;
    };
    const Session &m_session;
    const std::vector<std::string> &m_passwordFiles;
    std::list<Source> m_sources;
};

std::vector<ScriptLine> readScript(const Arguments &arguments) {
    const QString file = argumentText(arguments.script);
    const QByteArray bytes = readWholeFile(file);
    if (!bytes.isValidUtf8())
        throw FileError(file, u"it is no UTF-8 text"_s);
    Result<std::vector<ScriptLine>> lines = scriptLines(QString::fromUtf8(bytes));
    if (!lines && arguments.dryRun) // one that would not work
        throw NegativeAnswer(file, lines.error().text);
    if (!lines)
        throw FileError(file, lines.error().text);
    return std::move(*lines);
}

/// Carries out all lines in memory; what goes wrong is told with its line.
void applyScript(const Session &session, const std::vector<ScriptLine> &lines, const Arguments &arguments,
                 QByteArray &out) {
    const QString script = argumentText(arguments.script);
    Sources sources(session, arguments.passwordFiles);
    const auto open = [&](const QString &file) -> const QirDatabase & { return sources.open(file); };
    Progress progress(script, static_cast<qint64>(lines.size()));
    for (const ScriptLine &line : lines) {
        const auto placed = [&](const std::exception &error) {
            return u"line %1: %2"_s.arg(line.number).arg(errorWords(error));
        };
        try {
            applyEdit({session.database(), open, out, arguments.json}, line.words);
        } catch (const NoAnswer &answer) {
            throw NegativeAnswer(script, placed(answer));
        } catch (const std::exception &error) {
            throw FileError(script, placed(error));
        }
        progress.step();
    }
}

void printDifferences(const Session &before, const Session &after, bool json) {
    const QirDatabase &left = before.database();
    const QirDatabase &right = after.database();
    const DatabaseDifference difference = compareDatabases(left, right);
    QByteArray out;
    for (const TableDifference &table : difference.tables) {
        if (table.kind == AlignedRowKind::Both && !table.different)
            continue;
        if (json) {
            openJsonTable(out, table);
            closeJsonLine(out);
        } else {
            appendTableText(out, table);
        }
    }
    for (const TableDifference &table : difference.tables)
        (json ? appendDetailsJson : appendDetailsText)(out, table, left, right, printWhenMany);
    print(out);
}

/// A script that would not work is a negative answer here; that the file cannot be read is trouble as ever.
Exit tryScript(const Session &session, const SecretText &password, const std::vector<ScriptLine> &lines,
               const Arguments &arguments) {
    const Session before = Session::openAgain(session.file(), password);
    QByteArray out;
    try {
        applyScript(session, lines, arguments, out);
    } catch (const FileError &error) {
        printError(errorWords(error));
        return Exit::Negative;
    }
    print(out);
    Session::runOn(session.file(), [&] { printDifferences(before, session, arguments.json); });
    return Exit::Done;
}

Exit runScript(const Arguments &arguments) {
    const std::vector<ScriptLine> lines = readScript(arguments);
    SecretText password;
    Session session =
        Session::openToChange(argumentText(arguments.file), passwordFileOf(arguments.passwordFiles, 0), &password);
    if (arguments.dryRun)
        return tryScript(session, password, lines, arguments);
    QByteArray out;
    applyScript(session, lines, arguments, out);
    session.run([&] { session.saveChanges(); });
    print(out);
    return Exit::Done;
}

} // namespace

void addRun(CLI::App &program, Exit &exit) {
    auto arguments = std::make_shared<Arguments>();
    Subcommand(program, "run", "Carry out a file of commands on a database: all of them and one save, or nothing")
        .argument("FILE", arguments->file, "The database")
        .argument("SCRIPT", arguments->script,
                  "A command on each line, without qirdb and FILE: get, set, add, remove, rename, resize, sort, copy; "
                  "words quoted as in a shell, # begins a comment; - is the standard input")
        .flag("--dry-run", arguments->dryRun, "Only show the differences that it would make")
        .readingOptions(arguments->json)
        .passwordFiles(arguments->passwordFiles, "first FILE's, then those of the databases copied from")
        .run(exit, [arguments] { return runScript(*arguments); });
}

} // namespace qir
