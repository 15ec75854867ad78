#include "base/FileNames.h"
#include "cli/Commands.h"
#include "cli/ComparisonArguments.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/git/ContentMerge.h"

#include <QFile>
#include <QFileInfo>

#include <memory>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

struct Arguments {
    std::string base;
    std::string ours;
    std::string theirs;
    std::string out;
    std::string path;
    ComparisonArguments comparison;
    std::vector<std::string> passwordFiles;
};

/// A merge driver runs at the top of the work tree; what is given counts before what stands there.
KeyChoice keysOf(const Arguments &arguments) {
    std::vector<ChosenKey> keys;
    if (const QString usual = u".qir-keys"_s; !arguments.path.empty() && QFileInfo::exists(usual))
        keys = readKeyFile(usual);
    const std::vector<ChosenKey> given = arguments.comparison.choice().keys;
    keys.insert(keys.end(), given.begin(), given.end());
    return KeyChoice(std::move(keys));
}

DatabaseContent contentOf(const Session &session) {
    DatabaseContent content;
    session.run([&] { content = readContent(session.database()); });
    return content;
}

bool isSameFile(const QString &one, const QString &other) {
    const QString place = QFileInfo(reachIgnoringCase(one).value_or(one)).canonicalFilePath();
    return !place.isEmpty() && place == QFileInfo(reachIgnoringCase(other).value_or(other)).canonicalFilePath();
}

/// Nothing of a merge before this one may seem to be of it.
void removeConflicts(const QString &file) {
    if (QFileInfo(file).isFile() && !QFile::remove(file))
        throw FileError(file, u"it tells of conflicts that are no more, and cannot be removed"_s);
}

void writeConflicts(const QString &file, const std::vector<Conflict> &conflicts, bool isPrivate) {
    QByteArray lines;
    for (const Conflict &conflict : conflicts)
        conflict.appendJson(lines);
    ExportRules rules;
    rules.isPrivate = isPrivate;
    writeWholeFile(file, lines, rules);
}

void tellConflicts(const QString &out, const QString &file, const std::vector<Conflict> &conflicts) {
    constexpr std::size_t most = 10;
    for (std::size_t i = 0; i < std::min(most, conflicts.size()); ++i)
        printError(u"%1: conflict: %2"_s.arg(out, conflicts[i].text()));
    printError(u"%1: %2 in conflict, as OURS has them; %3 lists them"_s.arg(
        out, conflicts.size() == 1 ? u"1 place"_s : u"%1 places"_s.arg(conflicts.size()), file));
}

void store(Session &ours, const QString &out, const DatabaseContent &merged) {
    ours.run([&] { writeContent(ours.database(), merged); });
    Session::runOn(out, [&] {
        const bool hasName = !ours.database().GetDatabaseFileName().isEmpty(); // an empty file has given it none
        if (hasName && isSameFile(out, ours.file())) {
            ours.saveChanges();
            return;
        }
        if (!ours.database().SetDatabaseFileName(out))
            throw FileError(out,
                            u"no database can be made there: the folder is missing, or the name is none of a file"_s);
        ours.save();
    });
}

Exit merge(const Arguments &arguments) {
    const KeyChoice keys = keysOf(arguments);
    const auto open = [&](const std::string &file, std::size_t index) {
        return Session::openOrEmpty(argumentText(file), passwordFileOf(arguments.passwordFiles, index));
    };
    const Session base = open(arguments.base, 0);
    Session ours = open(arguments.ours, 1);
    const Session theirs = open(arguments.theirs, 2);
    const QString out = argumentText(arguments.out);
    const QString conflictFile = (arguments.path.empty() ? out : argumentText(arguments.path)) + u".conflicts.json"_s;

    MergedContent merged;
    Session::runOn(out, [&] { merged = mergeContents(contentOf(base), contentOf(ours), contentOf(theirs), keys); });
    // Told before the file is written: what a conflict leaves out stands nowhere else.
    if (!merged.conflicts.empty())
        writeConflicts(conflictFile, merged.conflicts,
                       base.isProtected() || ours.isProtected() || theirs.isProtected());
    store(ours, out, merged.content);
    if (merged.conflicts.empty()) {
        removeConflicts(conflictFile);
        return Exit::Done;
    }
    tellConflicts(out, conflictFile, merged.conflicts);
    return Exit::Negative;
}

} // namespace

void addMerge(CLI::App &program, Exit &exit) {
    auto arguments = std::make_shared<Arguments>();
    Command command(program, "merge", "Bring together what two sides have made of a database");
    command.argument("BASE", arguments->base, "What both sides come from; an empty file for nothing")
        .argument("OURS", arguments->ours, "One side")
        .argument("THEIRS", arguments->theirs, "The other side")
        .requiredOption("-o,--output", arguments->out, "OUT",
                        "Where the result goes, protected as OURS is; may be OURS")
        .option("--path", arguments->path, "PATH",
                "Of the file in git's work tree, for a merge driver: the file of conflicts stands beside it, and "
                ".qir-keys at the top is the key file");
    arguments->comparison.addKeys(command);
    command.passwordFiles(arguments->passwordFiles, "first BASE's, then OURS', then THEIRS'")
        .note("What both sides have changed is a conflict: OUT has it as OURS has, and OUT.conflicts.json tells what "
              "BASE, OURS and THEIRS have. The exit status is 0 for merged, 1 for conflicts.")
        .run(exit, [arguments] { return merge(*arguments); });
}

} // namespace qir
