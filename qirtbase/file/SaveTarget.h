#pragma once

#include "base/FileOps.h"
#include "base/Result.h"
#include "base/StagedFile.h"
#include "qirtbase/container/FileHeader.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace qir {

/// What stands under a name.
struct StandingFile {
    bool exists = false;
    struct stat status {};
    std::optional<FileHeader> header; ///< None when it is no database, or could not be read.
    bool unreadable = false;          ///< The system did not let us look.
};

/// What a save believes of the file that it goes to.
struct SaveExpectation {
    QString name;            ///< As the user knows the file; for texts.
    QString path;            ///< Where it stands.
    FileIdentifier fileId{}; ///< Of our file; zeros for one that was never saved.
    /// What stands there unless somebody else wrote: the version that was read or last written, then those that failed
    /// saves may have left there without learning it. Empty for a new file.
    std::vector<FileIdentifier> ownSaveIds;
    bool torn = false;         ///< An earlier save of ours may have left it half written.
    bool replaceMeant = false; ///< The user has just chosen the name: what stands there gives way.
    /// With that, what stood there when the name was chosen, nothing for no file: what came later nobody has seen.
    std::optional<StandingFile> meant;

    /// The save id of the version that was read or last written, zeros for none.
    FileIdentifier knownSaveId() const { return ownSaveIds.empty() ? FileIdentifier{} : ownSaveIds.front(); }
};

/// True when both looks met the same bytes, as far as the system tells.
bool sameVersion(const struct stat &left, const struct stat &right);

/// The same, also where the time was set back: databases are told apart by their save ids too.
bool sameVersion(const StandingFile &left, const StandingFile &right);

/// Whether a file is marked as not to be changed: nobody may write it, as its mode says, or we may not. The first
/// holds for the superuser too, whom the system asks nothing. On a file system of layers the look itself may bring the
/// file into the upper one, where it is another one: so it comes before all looks that are compared.
bool isReadOnly(FileOps &ops, int folder, const std::string &name);

/// The file that a save goes to: found once, then looked at before and after. Failures are texts for the user.
class SaveTarget {
public:
    SaveTarget(FileOps &ops, const SaveExpectation &expectation)
        : m_ops(ops)
        , m_expectation(expectation) {}

    /// Finds the folder, looks at what stands there and refuses to go on where that is marked read-only, or where
    /// somebody else wrote it.
    Result<void> open();

    const ResolvedPath &place() const { return *m_place; }
    int folder() const { return m_place->folder.descriptor(); }
    const std::string &name() const { return m_place->name; }
    /// What stood there when open() looked.
    const StandingFile &standing() const { return m_standing; }

    /// What stands under a name in the target's folder now. A failure where it is no file, or where it cannot be read
    /// and that matters.
    Result<StandingFile> look(const std::string &name) const;
    /// Whether what stands there now is still what stood there when open() looked: by the system's word, and by the
    /// save id, since times can be set back.
    bool isStill(const StandingFile &now) const;
    /// The same for an open file and its status.
    bool isStill(int file, const struct stat &status) const;
    /// Whether what stands there is a version that this instance read or wrote.
    bool isOurs(const StandingFile &standing) const;
    /// Whether what stood there may be a version that somebody else made of our file, or came after it was meant to
    /// give way: never to be thrown away.
    bool mayBeSomebodysVersion() const;

    tl::unexpected<Error> failed(const QString &reason) const;
    tl::unexpected<Error> failed(SystemError error) const { return failed(systemErrorWords(error)); }
    tl::unexpected<Error> conflict(const StandingFile &standing) const;

private:
    bool cameLater() const;

    FileOps &m_ops;
    const SaveExpectation &m_expectation;
    std::optional<ResolvedPath> m_place;
    StandingFile m_standing;
};

/// The save ids that this process wrote, so that a conflict between two instances in it can be told from one with
/// another program.
void rememberOwnSave(const FileIdentifier &saveId);

} // namespace qir
