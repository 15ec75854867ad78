#pragma once

#include "base/FileOps.h"

#include <QDateTime>
#include <QString>

#include <vector>

namespace qir {

/// Why something was kept.
enum class KeptKind {
    Conflict, ///< A save met another program's version.
    Rescued,  ///< A session could not save.
    Replaced, ///< Another version was restored in its place.
    Ended,    ///< Changes that were given up.
};

/// A version of a file that was kept: by a save that met another program's one, by a session that could not save, or
/// by a restore.
struct KeptFile {
    QString path;
    KeptKind kind = KeptKind::Conflict;
    QDateTime time;
    int number = 1; ///< Of those of one second.
    QString of;     ///< The file's name; its path where that is known; "" for changes to a protected file.
};

/// The word for a kind, as names of kept versions have it.
QString keptWord(KeptKind kind);

/// "NAME (conflict 2026-01-31 12.00.00)" and its like of a file: beside it, and in the folder where such versions go
/// that have no place there, by the name alone. The oldest first, so that a number stays when others join.
std::vector<KeptFile> keptFiles(const QString &file);

/// All that is kept in the state folder, of whatever file: such versions, and changes that were not saved when their
/// session ended, which a component keeps there for some days (Journal, in the component). The oldest first.
std::vector<KeptFile> keptInStateFolder();

/// Such changes are shown by a component when their file is opened next. Gives the path that they have now; the error
/// where the file system does not do it.
SystemResult<QString> bringBackEnded(FileOps &ops, const QString &path);
/// Undoes that where no component has taken them up: it would hold them, or they would stand there no more.
SystemResult<void> endAgainUnlessTaken(FileOps &ops, const QString &path);

/// The first name for a version of this file that is kept now.
QString keptName(const QString &name, KeptKind kind, int number);

} // namespace qir
