#include "base/FileNames.h"

#include "base/FileOps.h"

#include <QFile>
#include <QStringList>

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// The entry of a folder that a name reaches, nothing when it reaches none. `folder` is "" or ends in a slash.
Result<QString> reachedEntry(FileOps &ops, const QString &folder, const QString &name) {
    if (ops.statusAt(AT_FDCWD, systemPath(folder + name), FollowLinks::No))
        return name;
    const auto names = ops.entries(AT_FDCWD, folder.isEmpty() ? "." : systemPath(folder));
    if (!names)
        return QString(); // missing, no folder, or not to be listed: nothing is reached but what was given
    const QString wanted = name.toUpper();
    QStringList candidates;
    for (const std::string &entry : *names) {
        const QString candidate = QFile::decodeName(entry.c_str());
        if (candidate.toUpper() == wanted)
            candidates.append(candidate);
    }
    if (candidates.size() > 1) {
        candidates.sort();
        return failure(u"'%1' and '%2' in '%3' differ only in case"_s.arg(candidates[0], candidates[1],
                                                                          folder.isEmpty() ? u"."_s : folder));
    }
    return candidates.value(0);
}

} // namespace

Result<QString> reachIgnoringCase(const QString &path) {
    return reachIgnoringCase(FileOps::system(), path);
}

Result<QString> reachIgnoringCase(FileOps &ops, const QString &path) {
    if (path.contains(QChar(0)))
        return failure(u"'%1' holds a character that no file name can hold"_s.arg(path));
    QString reached;
    qsizetype at = 0;
    while (at < path.size()) {
        qsizetype end = path.indexOf(u'/', at);
        if (end < 0)
            end = path.size();
        const QString name = path.sliced(at, end - at);
        if (!name.isEmpty()) {
            const auto entry = reachedEntry(ops, reached, name);
            if (!entry)
                return tl::unexpected(entry.error());
            if (entry->isEmpty())
                return reached + path.sliced(at);
            reached += *entry;
        }
        if (end < path.size())
            reached += u'/';
        at = end + 1;
    }
    return reached;
}

} // namespace qir
