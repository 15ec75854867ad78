#include "base/ErrorWords.h"
#include "base/FileNames.h"
#include "base/FileOps.h"
#include "cli/Commands.h"
#include "cli/ComparisonArguments.h"
#include "cli/Protection.h"
#include "cli/Session.h"
#include "cli/WholeFile.h"
#include "cli/git/ConflictText.h"
#include "cli/git/ContentMerge.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>
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
    bool force = false;
};

/// A merge driver runs at the top of the work tree; what is given counts before what stands there.
KeyChoice keysOf(const Arguments &arguments) {
    std::vector<ChosenKey> usual;
    if (const QString file = u".qir-keys"_s; !arguments.path.empty() && QFileInfo::exists(file))
        usual = readKeyFile(file);
    return KeyChoice(arguments.comparison.choice().keys, std::move(usual));
}

/// What the result is called: git gives a driver files of names that nobody knows.
QString shownName(const Arguments &arguments) {
    return argumentText(arguments.path.empty() ? arguments.out : arguments.path);
}

/// Does what reads one side; the error of a driver names the side instead of its file.
template<class Work>
auto onSide(const Arguments &arguments, std::size_t index, Work work) {
    const QString file = argumentText(*std::array{&arguments.base, &arguments.ours, &arguments.theirs}.at(index));
    try {
        return work(file);
    } catch (const FileError &error) {
        if (arguments.path.empty())
            throw;
        constexpr std::array sides{"BASE", "OURS", "THEIRS"};
        const QString words = errorWords(error);
        const QString prefix = file + u": "_s;
        const QString reason = words.startsWith(prefix) ? words.sliced(prefix.size()) : words;
        throw FileError(shownName(arguments), QLatin1StringView(sides.at(index)) + u": "_s + reason);
    }
}

Session beginSide(const Arguments &arguments, std::size_t index) {
    return onSide(arguments, index, [](const QString &file) { return Session::beginToRead(file); });
}

void readSide(Session &session, const Arguments &arguments, std::size_t index) {
    onSide(arguments, index, [&](const QString &) { session.read(passwordFileOf(arguments.passwordFiles, index)); });
}

DatabaseContent contentOf(const Session &session) {
    DatabaseContent content;
    session.run([&] { content = readContent(session.database()); });
    return content;
}

/// By what the system knows them by: two names that a link leads to may look alike once they are texts.
bool isSameFile(const QString &one, const QString &other) {
    const auto statusOf = [](const QString &file) {
        return FileOps::system().statusAt(AT_FDCWD, systemPath(reachIgnoringCase(file).value_or(file)),
                                          FollowLinks::Yes);
    };
    const auto left = statusOf(one);
    const auto right = statusOf(other);
    return left && right && left->st_dev == right->st_dev && left->st_ino == right->st_ino;
}

/// Throws where a file would be replaced that is marked read-only, or that is no database and none of those that are
/// merged. A read-only OURS that stays as it is may be OUT.
void requireReplaceable(const Arguments &arguments) {
    const QString out = argumentText(arguments.out);
    const QFileInfo info(reachIgnoringCase(out).value_or(out));
    if (isMarkedReadOnly(info.filePath()) && !isSameFile(out, argumentText(arguments.ours)))
        throw FileError(shownName(arguments), u"it is marked read-only"_s);
    if (arguments.force || !info.isFile() || info.size() == 0)
        return;
    for (const std::string &file : {arguments.base, arguments.ours, arguments.theirs})
        if (isSameFile(out, argumentText(file)))
            return;
    QFile file(info.filePath());
    if ((file.open(QIODevice::ReadOnly) && beginsAsDatabase(file.read(databaseHeadSize))) || needsPassword(out))
        return;
    try {
        (void)Session::openAgain(out, {}); // another component may write another kind
    } catch (const LoadRefused &) {
        throw FileError(out, u"it is no database; use --force to replace it"_s);
    }
}

/// Nothing of a merge before this one may seem to be of it.
void removeConflicts(const QString &file) {
    if (QFileInfo(file).isFile() && !QFile::remove(file))
        throw FileError(file, u"it tells of conflicts that are no more, and cannot be removed"_s);
}

void writeConflicts(const QString &file, const std::vector<Conflict> &conflicts, bool isPrivate) {
    QByteArray lines;
    for (const Conflict &conflict : conflicts)
        appendConflict(lines, conflict);
    ExportRules rules;
    rules.isPrivate = isPrivate;
    // git makes the folder of a file that has moved only when all files are merged.
    QDir().mkpath(QFileInfo(file).absolutePath()); // where that fails the write says why
    writeWholeFile(file, lines, rules);
}

void tellConflicts(const QString &out, const QString &file, const std::vector<Conflict> &conflicts) {
    constexpr std::size_t most = 10;
    for (std::size_t i = 0; i < std::min(most, conflicts.size()); ++i)
        printError(u"%1: conflict: %2"_s.arg(out, conflictText(conflicts[i])));
    printError(
        u"%1: %2 in conflict, as OURS has them; %3 lists them, and the editor's File > Merge Conflicts takes sides"_s
            .arg(out, conflicts.size() == 1 ? u"1 place"_s : u"%1 places"_s.arg(conflicts.size()), file));
}

void store(Session &ours, const QString &out, const QString &shown, const DatabaseContent &merged) {
    Session::runOn(shown, [&] { writeContent(ours.database(), merged); });
    Session::runOn(shown, [&] {
        const bool hasName = !ours.database().GetDatabaseFileName().isEmpty(); // an empty file has given it none
        if (hasName && isSameFile(out, ours.file())) {
            ours.saveChanges();
            return;
        }
        if (!ours.database().SetDatabaseFileName(out))
            throw FileError(shown,
                            u"no database can be made there: the folder is missing, or the name is none of a file"_s);
        ours.save();
    });
}

Exit merge(const Arguments &arguments) {
    const QString out = argumentText(arguments.out);
    const QString shown = shownName(arguments);
    const QString conflictFile = shown + u".conflicts.json"_s;
    // A driver's OUT is OURS of this merge, whatever comes of it. Elsewhere OUT stays with its list where this one
    // fails.
    if (!arguments.path.empty())
        removeConflicts(conflictFile);
    const KeyChoice keys = keysOf(arguments);
    requireReplaceable(arguments);
    const FolderLock lock(out);
    Session base = beginSide(arguments, 0);
    Session ours = beginSide(arguments, 1);
    Session theirs = beginSide(arguments, 2);
    readSide(base, arguments, 0);
    readSide(ours, arguments, 1);
    readSide(theirs, arguments, 2);

    MergedContent merged;
    Session::runOn(shown, [&] { merged = mergeContents(contentOf(base), contentOf(ours), contentOf(theirs), keys); });
    if (!keys.isEmpty())
        for (const QString &table : merged.byPosition)
            printError(u"%1: the table \"%2\" has no key and is merged by position"_s.arg(shown, table));
    // Told before the file is written: what a conflict leaves out stands nowhere else.
    if (!merged.conflicts.empty())
        writeConflicts(conflictFile, merged.conflicts,
                       base.isProtected() || ours.isProtected() || theirs.isProtected());
    store(ours, out, shown, merged.content);
    if (merged.conflicts.empty()) {
        removeConflicts(conflictFile);
        return Exit::Done;
    }
    tellConflicts(shown, conflictFile, merged.conflicts);
    return Exit::Negative;
}

} // namespace

void addMerge(CLI::App &program, Exit &exit) {
    auto arguments = std::make_shared<Arguments>();
    Subcommand command(program, "merge", "Bring together what two sides have made of a database");
    command.argument("BASE", arguments->base, "What both sides come from; an empty file for nothing")
        .argument("OURS", arguments->ours, "One side")
        .argument("THEIRS", arguments->theirs, "The other side")
        .requiredOption("-o,--output", arguments->out, "OUT",
                        "Where the result goes, protected as OURS is; may be OURS")
        .option("--path", arguments->path, "PATH",
                "Of the file in git's work tree, for a merge driver: the file of conflicts stands beside it, and "
                ".qir-keys at the top is the key file")
        .flag("--force", arguments->force, "Replace OUT even where it is no database");
    arguments->comparison.addKeys(command);
    command.passwordFiles(arguments->passwordFiles, "first BASE's, then OURS', then THEIRS'")
        .note("What both sides have changed is a conflict: OUT has it as OURS has, and OUT.conflicts.json tells what "
              "BASE, OURS and THEIRS have. The exit status is 0 for merged, 1 for conflicts.")
        .run(exit, [arguments] { return merge(*arguments); });
}

} // namespace qir
