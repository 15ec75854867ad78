#include "qirtbase/journal/JournalFolder.h"

#include "base/state/StateFolder.h"
#include "qirtbase/journal/JournalFile.h"

#include <algorithm>
#include <cerrno>
#include <ctime>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr char journalFolder[] = "journal";
constexpr std::time_t keptFor = 7 * 24 * 3600; // seconds
constexpr std::time_t tolerance = 24 * 3600;   // of clocks

QString folderName(const QString &stateFolder) {
    return stateFolder + u'/' + QLatin1StringView(journalFolder);
}

QString problemOf(const QString &path, const QString &why) {
    return u"'%1' is not used: %2"_s.arg(path, why);
}

/// Why what is kept there cannot be relied on: somebody else could put journals there, or take them away.
SystemResult<QString> whyFolderNotTrusted(FileOps &ops, const QString &stateFolder, int folder) {
    const auto outer = ops.statusAt(AT_FDCWD, systemPath(stateFolder), FollowLinks::Yes);
    if (!outer)
        return tl::unexpected(outer.error());
    const auto inner = ops.status(folder);
    if (!inner)
        return tl::unexpected(inner.error());
    if (const QString why = whyNotTrusted(*outer); !why.isEmpty())
        return problemOf(stateFolder, why);
    if (const QString why = whyNotTrusted(*inner); !why.isEmpty())
        return problemOf(folderName(stateFolder), why);
    return QString();
}

bool hasEnding(const std::string &name, const char *suffix) {
    return !journalTagOf(name).empty() && name.ends_with(suffix);
}

} // namespace

std::string journalFolderPath(const QString &stateFolder) {
    return systemPath(stateFolder) + '/' + journalFolder;
}

tl::expected<OpenFile, QString> makeJournalFolder(FileOps &ops, const QString &stateFolder) {
    auto folder = openStateFolder(ops, stateFolder, journalFolder);
    if (!folder)
        return tl::unexpected(systemErrorWords(folder.error()));
    const auto why = whyFolderNotTrusted(ops, stateFolder, folder->descriptor());
    if (!why)
        return tl::unexpected(systemErrorWords(why.error()));
    if (!why->isEmpty())
        return tl::unexpected(*why);
    return std::move(*folder);
}

JournalFolder JournalFolder::find(FileOps &ops, const QString &stateFolder) {
    JournalFolder found;
    const std::string path = journalFolderPath(stateFolder);
    const auto isMissing = [](SystemError error) { return error.number == ENOENT || error.number == ENOTDIR; };
    const auto unreadable = [&](SystemError error) {
        if (!isMissing(error))
            found.problem = u"'%1' cannot be read now: %2"_s.arg(folderName(stateFolder), systemErrorWords(error));
    };
    auto folder = OpenFile::openAt(ops, AT_FDCWD, path, O_RDONLY | O_DIRECTORY);
    if (!folder) {
        unreadable(folder.error());
        return found;
    }
    auto names = ops.entries(folder->descriptor(), ".");
    const auto why = whyFolderNotTrusted(ops, stateFolder, folder->descriptor());
    if (!names || !why) {
        unreadable(names ? why.error() : names.error());
        return found;
    }
    found.folder = std::move(*folder);
    if (why->isEmpty())
        found.names = std::move(*names);
    else if (std::ranges::any_of(*names, isJournalName))
        found.problem = *why;
    return found;
}

SystemResult<OpenFile> JournalFolder::open(FileOps &ops) const {
    return OpenFile::openAt(ops, folder.descriptor(), ".", O_RDONLY | O_DIRECTORY);
}

void JournalFolder::removeOld(FileOps &ops) const {
    const std::time_t now = std::time(nullptr);
    for (const std::string &name : names) {
        const bool isRetired = hasEnding(name, journal::retiredSuffix);
        if (!isRetired && !hasEnding(name, journal::expiredSuffix) && !hasEnding(name, journal::partSuffix))
            continue;
        const auto file =
            OpenFile::openAt(ops, folder.descriptor(), name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
        const auto status = file ? ops.status(file->descriptor()) : SystemResult<struct stat>();
        if (!file || !status || !S_ISREG(status->st_mode))
            continue;
        if (status->st_mtim.tv_sec > now + tolerance)
            (void)ops.setTimeToNow(file->descriptor());
        if (status->st_mtim.tv_sec + keptFor >= now)
            continue;
        if (!isRetired)
            (void)ops.unlinkAt(folder.descriptor(), name);
        else if (ops.setTimeToNow(file->descriptor()))
            (void)ops.renameAt(folder.descriptor(), name, name + journal::expiredSuffix, 0);
    }
}

} // namespace qir
