#pragma once

#include "base/FileOps.h"
#include "qirtbase/Container.h"
#include "qirtbase/LoadError.h"

#include <QString>
#include <QStringList>

namespace qir {

/// What one load works with.
struct ReadRequest {
    QString path; ///< Reached already; error texts do not name it.
    QString password;
    const ContainerLimits &limits;
    const KeyDeriver &deriveKey;
    QString stateFolder; ///< Where safe copies of interrupted writes may lie.
};

struct ReadOutcome {
    LoadedContainer container;
    bool torn = false;   ///< The file itself is half written: this came from the safe copy, and saving makes it whole.
    QStringList notices; ///< What the user should know.
};

/// The header of a database file, looked at alone.
LoadResult<FileHeader> readFileHeader(FileOps &ops, const QString &path);

/// Reads a database file. One whose writing in place was cut short is completed first.
LoadResult<ReadOutcome> readDatabaseFile(FileOps &ops, const ReadRequest &request);

} // namespace qir
