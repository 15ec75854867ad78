#pragma once

#include "base/FileOps.h"
#include "base/Result.h"
#include "base/StagedFile.h"
#include "qirtbase/container/Container.h"
#include "qirtbase/container/RandomSource.h"
#include "qirtbase/file/InPlaceCopy.h"
#include "qirtbase/file/SaveTarget.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace qir {

/// What one save starts from.
struct SaveRequest {
    SaveExpectation target;
    FileHeader header; ///< Generation, optional bits and extensions of the version that it follows.
    const ContainerKeys &keys;
    QByteArrayView body;
    QString stateFolder; ///< For the safe copy of what is written in place.
    const std::function<void(const FileIdentifier &)>
        &publishing; ///< Called right before the file changes, if not empty.
};

/// What became of it. Even where there is an error the new version may stand in place: then `published` tells so.
struct SaveOutcome {
    bool published = false;
    bool torn = false; ///< The file may be a mixture now; its safe copy holds what it was.
    std::optional<Error> error;
    QStringList notices;
    FileHeader header;                 ///< Of the version written, or attempted.
    std::optional<struct stat> status; ///< Of what was published, right after that; none where it was not learned.
};

/// Replaces a database file on disk by a new version, or leaves it whole as it was. Where it cannot be replaced it is
/// written in place, with a whole copy of the new version safe elsewhere first.
class FileSave {
public:
    FileSave(FileOps &ops, RandomSource &random, SaveRequest request);
    SaveOutcome run();

private:
    using Step = Result<void>;

    void chooseIdentity();
    void makeWriter();
    Step save();

    Step replace();
    Step stage();
    Step write();
    Step readBack();
    Step publishNew();
    Step publishOver();
    Step notPublished(SystemError error);
    Step settle();
    void settleReplaced();
    void keepAsConflictCopy(const QString &why);

    Step writeInPlace();
    Step makeWhole(const InPlaceCopy::File &file);
    SystemResult<InPlaceCopy> storeSafeCopy(int file);
    Step writeThrough(int file);
    Step undo(InPlaceCopy &copy, int file, const QString &reason);
    /// What was done in the end nobody knows.
    Step uncertain(SystemError error);
    void forgetCopies(int file);
    void announce() const;
    void notePublished(int file);
    Step keepCopyElsewhere(int file);

    /// A step failed in a way that says: this file cannot be replaced at all.
    Step cannotReplace(SystemError error);

    FileOps &m_ops;
    RandomSource &m_random;
    SaveRequest m_request;
    SaveOutcome m_outcome;
    SaveTarget m_target;
    std::optional<ContainerWriter> m_writer;
    std::optional<StagedFile> m_staged;
    bool m_replaceable = true;
};

} // namespace qir
