#pragma once

#include "base/FileOps.h"
#include "qirtbase/file/InPlaceCopy.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace qir {

/// What is wanted of a recovery.
struct InPlaceRecoveryRequest {
    InPlaceCopy::File file;
    QString path;        ///< As it was reached; rescue files are named after it.
    QString stateFolder; ///< Where safe copies may lie, and where rescue files go.
    int writable = -1;   ///< The file, open for writing and held, where the caller has it so.
};

/// What a file was found to be.
struct InPlaceRecovery {
    bool beingWritten = false; ///< Its writer lives.
    /// The file is not what it should be and could not be made so: this holds what it should be.
    std::optional<InPlaceCopy> shown;
    QString hindrance;   ///< Why it could not be made whole; of a copy that we may not read too. "" for nothing.
    QStringList notices; ///< What the user should know.
};

/// Before a file is used: where a save in place was cut short or has failed and could not be undone then, it becomes
/// again what it was before. Nothing but the file that was being written, holding a mixture of both versions, is ever
/// written over; where something else stands there now it stays, both versions are kept elsewhere, and that is told.
SystemResult<InPlaceRecovery> recoverInPlace(FileOps &ops, const InPlaceRecoveryRequest &request);

} // namespace qir
