#pragma once

#include "base/FileOps.h"
#include "qirtbase/container/Container.h"
#include "qirtbase/journal/Journal.h"
#include "qirtbase/journal/JournalFile.h"
#include "qirtbase/model/Database.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace qir {

/// What was loaded, and how its journals are opened.
struct RecoveryRequest {
    QString stateFolder;
    const JournalBase &base;
    const ContainerKeys &keys; ///< Of the file as it is on disk.
    const QString &password;   ///< As it was given: a journal may be sealed with one that was not saved yet.
    const KeyDeriver &deriveKey;
    RandomSource &random;
    /// Writes a database as a file aside; gives its path.
    std::function<SystemResult<QString>(QByteArrayView body)> keepAside;
    ContainerLimits limits = {}; ///< For versions that are read beside the file.
};

struct RecoveryOutcome {
    std::optional<JournalFile> journal; ///< Its changes are in the database; to be gone on with.
    bool changed = false;               ///< The database has changes that the file has not.
    QStringList notices;
};

/// After a load: makes again what the journal of a session that died tells of the file. A journal belongs to it when
/// file id and the version that it starts from are the same, the file is the one that it was begun for (by path or
/// inode, or because that one stands nowhere else), and nobody living holds it. What starts from another version is
/// never merged but written as a file aside; what is not taken up is named in a notice. Also removes journals that were
/// ended long ago. `database` is what was loaded, without a listener.
RecoveryOutcome recoverJournals(FileOps &ops, const RecoveryRequest &request, Database &database);

} // namespace qir
