#pragma once

#include "base/FileOps.h"
#include "base/LoadError.h"
#include "qirtbase/container/Container.h"

#include <QString>
#include <QStringList>

#include <sys/stat.h>

#include <optional>

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
    /// The file itself is half written: what was read came from its safe copy. This is the save id of what was to be
    /// saved.
    std::optional<FileIdentifier> tornInto;
    /// The file as it was before it was read; nothing where the system did not say.
    std::optional<struct stat> status;
};

/// The header of a database file, looked at alone.
LoadResult<FileHeader> readFileHeader(FileOps &ops, const QString &path);

/// Reads a database file. One whose writing in place was cut short is first brought back to what it was.
/// What the user should know is added to `notices`, for a file that is refused too.
LoadResult<ReadOutcome> readDatabaseFile(FileOps &ops, const ReadRequest &request, QStringList &notices);

} // namespace qir
