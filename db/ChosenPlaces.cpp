#include "db/ChosenPlaces.h"

#include "base/FileNames.h"
#include "db/QirDatabase.h"

#include <QFileInfo>
#include <QHash>
#include <QObject>

namespace qir {

namespace {

QHash<QString, QString> &places() {
    static QHash<QString, QString> remembered;
    return remembered;
}

/// Whether two paths are the same file, or the same new name in the same folder.
bool samePlace(const QString &one, const QString &other) {
    const QFileInfo first(one);
    const QFileInfo second(other);
    if (first.exists() || second.exists())
        return first.canonicalFilePath() == second.canonicalFilePath();
    const QString folder = QFileInfo(first.absolutePath()).canonicalFilePath();
    return first.fileName() == second.fileName() && !folder.isEmpty() &&
           folder == QFileInfo(second.absolutePath()).canonicalFilePath();
}

} // namespace

void rememberPlace(const QString &name, const QString &place) {
    places().insert(name, place);
}

bool leadsThere(const QString &name) {
    const auto remembered = places().constFind(name);
    if (remembered == places().constEnd())
        return true;
    const Result<QString> reached = reachIgnoringCase(name);
    return reached && samePlace(*reached, *remembered);
}

Result<QString> placeOf(const QString &name) {
    const auto remembered = places().constFind(name);
    return remembered == places().constEnd() ? reachIgnoringCase(name) : Result<QString>(*remembered);
}

void tellPlace(const QirDatabase &database, const QString &name) {
    if (!leadsThere(name))
        database.SetFilePlace(name, places().value(name));
}

QString misleading(const QirDatabase &database, const QString &name) {
    if (leadsThere(name) || database.hasFilePlaces())
        return {};
    const Result<QString> reached = reachIgnoringCase(name);
    if (!reached)
        return reached.error().text;
    return QObject::tr("'%1' would reach '%2' instead of the chosen file").arg(name, *reached);
}

} // namespace qir
