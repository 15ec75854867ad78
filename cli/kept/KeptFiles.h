#pragma once

#include <QDateTime>
#include <QString>

#include <vector>

namespace qir {

/// A version of a file that was kept: by a save that met another program's one, by a session that could not save, or
/// by a restore.
struct KeptFile {
    QString path;
    QString what; ///< "conflict", "rescued" or "replaced", as its name says.
    QDateTime time;
    int number = 1; ///< Of those of one second.
};

/// "NAME (conflict 2026-01-31 12.00.00)" and its like of a file: beside it, and in the folder where such versions go
/// that have no place there, by the name alone. The oldest first, so that a number stays when others join.
std::vector<KeptFile> keptFiles(const QString &file);

/// The first name for a version of this file that is kept now.
QString keptName(const QString &name, const QString &what, int number);

} // namespace qir
