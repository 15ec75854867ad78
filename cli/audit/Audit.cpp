#include "base/FileNames.h"
#include "cli/Commands.h"
#include "cli/ComparisonArguments.h"
#include "cli/Progress.h"
#include "cli/Protection.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/audit/AuditReport.h"
#include "cli/audit/AuditWorkers.h"
#include "cli/tables/TextTable.h"

#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

struct Arguments {
    std::vector<std::string> paths; // the golden one first
    std::vector<std::string> join;
    std::string list;
    std::string html;
    std::vector<std::string> passwordFiles;
    ComparisonArguments comparison;
    bool json = false;
};

bool isDatabaseName(const QString &name) {
    return databaseExtensions().contains(QFileInfo(name).suffix().toLower());
}

/// A name that is not UTF-8 is shown as a text that may be another file's name, so that file must not be reached by it.
AuditFile auditFile(QByteArrayView name) {
    return {argumentText(name), name.isValidUtf8() ? QString() : u"its name is not UTF-8"_s};
}

/// Adds the databases of a folder and of all folders in it. What cannot be reached is added too, so that it is told: a
/// folder that cannot be read, a link to nothing.
void findDatabases(const std::filesystem::path &folder, std::vector<AuditFile> &files) {
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        AuditFile file = auditFile(entry->path().c_str());
        std::error_code unknown;
        const std::filesystem::file_type type = entry->status(unknown).type();
        if (type == std::filesystem::file_type::directory) {
            if (!entry->is_symlink(unknown))
                findDatabases(entry->path(), files);
        } else if (isDatabaseName(file.name) && (type == std::filesystem::file_type::regular || unknown ||
                                                 type == std::filesystem::file_type::not_found)) {
            files.push_back(std::move(file));
        }
    }
    if (error)
        files.push_back(auditFile(folder.c_str()));
}

/// In the order of their paths.
std::vector<AuditFile> databasesIn(const std::string &folder) {
    std::vector<AuditFile> files;
    findDatabases(folder, files);
    std::ranges::stable_sort(files, {}, &AuditFile::name);
    return files;
}

/// Throws for what the search of a folder has found and could not reach.
void requireReached(const QString &file) {
    const QFileInfo info(reachIgnoringCase(file).value_or(file));
    if (info.isDir())
        throw FileError(file, u"the folder cannot be read"_s);
    if (!info.exists())
        throw FileError(file, u"there is no such file"_s);
}

std::vector<AuditFile> listedFiles(const QString &list) {
    std::vector<AuditFile> files;
    for (const QByteArray &line : readWholeFile(list).split('\n'))
        if (const QByteArray name = line.endsWith('\r') ? line.chopped(1) : line; !name.isEmpty())
            files.push_back(auditFile(name));
    return files;
}

std::vector<AuditFile> filesOf(const Arguments &arguments) {
    std::vector<AuditFile> files;
    const auto add = [&files](const std::vector<AuditFile> &more) {
        files.insert(files.end(), more.begin(), more.end());
    };
    for (std::size_t i = 1; i < arguments.paths.size(); ++i) {
        const QString path = argumentText(arguments.paths[i]);
        if (QFileInfo(path).isDir())
            add(databasesIn(arguments.paths[i]));
        else
            add({{path, {}}});
    }
    if (!arguments.list.empty())
        add(listedFiles(argumentText(arguments.list)));
    return files;
}

AuditResult compareWith(const Session &golden, const QString &file, const Arguments &arguments,
                        const ComparisonChoice &choice) {
    requireReached(file);
    const std::string passwordFile = passwordFileOf(arguments.passwordFiles, 1);
    if (passwordFile.empty() && needsPassword(file))
        throw FileError(file, u"it is protected; use --password-file"_s);
    const Session session = Session::open(file, passwordFile);
    AuditResult result;
    result.file = file;
    session.run([&] {
        for (const TableDifference &table : compareDatabases(golden.database(), session.database(), choice).tables) {
            if (table.kind != AlignedRowKind::Both)
                result.tables.push_back({table.name, std::nullopt});
            else if (table.different)
                result.tables.push_back({table.name, static_cast<qint64>(table.cellCount())});
        }
    });
    if (!result.tables.empty())
        result.state = AuditResult::State::Different;
    return result;
}

/// Takes results: prints them, or keeps them for the report.
class Audit {
public:
    explicit Audit(const Arguments &arguments)
        : m_arguments(arguments) {}

    void take(const AuditResult &result) {
        m_report.add(result);
        if (m_arguments.json)
            m_out += result.json();
        else if (result.state != AuditResult::State::Same)
            m_out += printableText(auditLine(result)).toUtf8() + '\n';
        printWhenMany(m_out);
    }

    Exit finish(const QString &golden) {
        if (!m_arguments.json)
            m_out += m_report.summary().toUtf8() + '\n';
        print(m_out);
        if (!m_arguments.html.empty())
            writeWholeFile(argumentText(m_arguments.html), m_report.html(golden));
        if (m_report.troubles() > 0)
            return Exit::Trouble;
        return m_report.different() > 0 ? Exit::Negative : Exit::Done;
    }

private:
    const Arguments &m_arguments;
    AuditReport m_report;
    QByteArray m_out;
};

Exit join(const Arguments &arguments) {
    Audit audit(arguments);
    std::vector<std::string> files = arguments.join; // one behind the option, and all that follow
    files.insert(files.end(), arguments.paths.begin(), arguments.paths.end());
    for (const std::string &name : files) {
        const QString file = argumentText(name);
        int number = 0;
        for (const QByteArray &line : readWholeFile(file).split('\n')) {
            ++number;
            if (line.isEmpty())
                continue;
            const Result<AuditResult> result = AuditResult::ofJson(line);
            if (!result)
                throw FileError(file, u"line %1: %2"_s.arg(number).arg(result.error().text));
            audit.take(*result);
        }
    }
    return audit.finish({});
}

Exit audit(const Arguments &arguments) {
    if (arguments.paths.empty())
        throw std::runtime_error("audit: GOLDEN is required; qirdb audit --help tells more");
    if (arguments.paths.size() < 2 && arguments.list.empty())
        throw std::runtime_error("audit: PATH is required; qirdb audit --help tells more");
    const QString golden = argumentText(arguments.paths.front());
    const std::string passwordFile = passwordFileOf(arguments.passwordFiles, 0);
    if (passwordFile.empty() && needsPassword(golden))
        throw FileError(golden, u"it is protected; use --password-file"_s);
    const ComparisonChoice choice = arguments.comparison.choice();
    (void)Session::open(golden, passwordFile); // what is wrong with it is no trouble of the others
    const std::vector<AuditFile> files = filesOf(arguments);
    if (files.empty())
        throw std::runtime_error("audit: there is no file to compare");
    const auto prepare = [&]() -> AuditWork {
        auto session = std::make_shared<Session>(Session::open(golden, passwordFile));
        return [session, &arguments, &choice](const QString &file) {
            return compareWith(*session, file, arguments, choice);
        };
    };
    Audit all(arguments);
    {
        Progress progress(u"audit"_s, std::ssize(files));
        qint64 done = 0;
        auditInParallel(files, std::max(1, static_cast<int>(std::thread::hardware_concurrency())), prepare,
                        [&](const AuditResult &result) {
                            all.take(result);
                            progress.reach(++done);
                        });
    }
    return all.finish(golden);
}

} // namespace

void addAudit(CLI::App &program, Exit &exit) {
    auto arguments = std::make_shared<Arguments>();
    Subcommand command(program, "audit", "Compare many databases with the one that they should be like");
    command
        .arguments("GOLDEN", arguments->paths, 0,
                   "That one; then the others: files, and folders that are searched whole for databases")
        .option("--list", arguments->list, "FILE",
                "Read more names from this file, one a line; - is the standard input")
        .lists("--join", arguments->join, "FILE",
               "Compare nothing, but make one report of what audits have printed with --json; repeated")
        .option("--html", arguments->html, "OUT", "Write a page too: what deviates, the most frequent first")
        .readingOptions(arguments->json);
    arguments->comparison.addKeys(command);
    arguments->comparison.addTolerance(command);
    arguments->comparison.addTables(command);
    command.passwordFiles(arguments->passwordFiles, "first GOLDEN's, then that of all others")
        .note("The exit status is 0 where all are the same, 1 where some differ, 2 where one could not be compared.")
        .run(exit, [arguments] { return arguments->join.empty() ? audit(*arguments) : join(*arguments); });
}

} // namespace qir
