#pragma once

#include "base/FileOps.h"
#include "base/Result.h"
#include "base/StagedFile.h"
#include "qirtbase/Container.h"
#include "qirtbase/RandomSource.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <optional>

namespace qir {

/// What one save starts from.
struct SaveRequest {
    QString name;      ///< As the user knows the file; for texts.
    QString path;      ///< Where it goes.
    FileHeader header; ///< File id, generation, optional bits and extensions of the version that it follows.
    std::optional<FileIdentifier>
        expected; ///< The save id that stands there unless somebody else wrote; none: a new file.
    std::optional<FileIdentifier> attempted; ///< One that an earlier save may have left there without learning it.
    bool replaceMeant = false;               ///< The user has just chosen the name: whatever stands there gives way.
    const ContainerKeys &keys;
    QByteArrayView body;
};

/// What became of it. Even where there is an error the new version may stand in place: then `published` tells so.
struct SaveOutcome {
    bool published = false;
    std::optional<Error> error;
    QStringList notices;
    FileHeader header; ///< Of the version written, or attempted.
};

/// Replaces a database file on disk by a new version, or leaves it whole as it was; never anything in between.
class FileSave {
public:
    FileSave(FileOps &ops, RandomSource &random, SaveRequest request);
    SaveOutcome run();

private:
    /// What stands under the target's name.
    struct Standing {
        bool exists = false;
        struct stat status {};
        std::optional<FileHeader> header; ///< None when it is no database, or could not be read.
        bool unreadable = false;          ///< The system did not let us look.
    };

    /// A step that failed, with the words for the user.
    using Step = Result<void>;

    Step resolve();
    Step checkConflict();
    Step stage();
    Step write();
    Step keepAttributes();
    Step readBack();
    Step publish();
    Step publishNew();
    Step publishOver();
    void settleReplaced();
    Step settleFolder();

    Result<Standing> look(const std::string &name);
    bool isOurs(const FileHeader &header) const;
    void chooseIdentity();
    void keepAsConflictCopy(const QString &why);

    tl::unexpected<Error> failed(const QString &reason) const;
    tl::unexpected<Error> failed(SystemError error) const;
    tl::unexpected<Error> conflict(const Standing &standing) const;

    FileOps &m_ops;
    RandomSource &m_random;
    SaveRequest m_request;
    SaveOutcome m_outcome;
    std::optional<ResolvedPath> m_target;
    Standing m_standing;
    std::optional<ContainerWriter> m_writer;
    std::optional<StagedFile> m_staged;
};

/// The save ids that this process wrote, so that a conflict between two instances in it can be told from one with
/// another program.
void rememberOwnSave(const FileIdentifier &saveId);
bool isOwnSave(const FileIdentifier &saveId);

} // namespace qir
