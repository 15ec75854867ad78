#pragma once

#include "base/FileOps.h"
#include "base/LoadError.h"
#include "base/Result.h"
#include "base/state/StateFolder.h"
#include "qirtbase/container/Container.h"
#include "qirtbase/container/RandomSource.h"
#include "qirtbase/container/SecretKey.h"
#include "qirtbase/file/KeyPreparation.h"
#include "qirtbase/file/ReadAhead.h"
#include "qirtbase/file/SaveTarget.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace qir {

struct SaveOutcome;

/// What a DatabaseFile is made with; the defaults are what people get.
struct DatabaseFileOptions {
    KdfCosts costs;                         ///< For passwords set from now on; a loaded file keeps its own.
    ContainerLimits limits;                 ///< What a file may ask for while it is read.
    RandomSource *random = nullptr;         ///< Ids, salts, stream headers; null: the system's. Outlives the file.
    KeyDeriver deriveKey = deriveMasterKey; ///< How passwords become keys.
    QString stateFolder;                    ///< For safe copies and rescue files; "": the user's own.
    /// Called with the save id of a version that is about to take the file's place.
    std::function<void(const FileIdentifier &)> publishing;
    std::function<void(const QString &)> notice; ///< Called with what the user should know of a save that did succeed.
};

/// One database file on disk: reads it, remembers what it read, and replaces it whole or not at all.
///
/// Knows nothing of tables: it hands out and takes in the body as bytes. Three states: fresh (made, nothing yet),
/// ready (loaded or new: may save), failed (a load failed: never writes). One thread. A save is refused when another
/// program has replaced the file since it was loaded or last saved by this instance. The password is not kept, only
/// keys, in guarded memory that is wiped when the instance dies.
class DatabaseFile {
public:
    /// `ops` must outlive the instance.
    explicit DatabaseFile(FileOps &ops, DatabaseFileOptions options = {});
    DatabaseFile(const DatabaseFile &) = delete;
    DatabaseFile &operator=(const DatabaseFile &) = delete;

    /// Reads the file that `path` reaches ignoring case and gives its body, every check on the container passed.
    /// For an open file the password does not matter. Only on a fresh instance; on failure the instance is failed and
    /// its name is "". If the body then turns out to be nonsense, call fail().
    LoadResult<QByteArray> load(const QString &path, const QString &password);
    /// The body once more, of the version that was loaded or last saved here; a failure where that stands there no
    /// more.
    LoadResult<QByteArray> readAgain();
    /// What trying a password on the file costs; nothing where it is open, or cannot be loaded whatever the password.
    std::optional<KdfCosts> passwordCosts(const QString &path) const;
    /// What it costs on the files that are written here.
    const KdfCosts &usualCosts() const { return m_options.costs; }
    /// Starts to read a file that is open to everybody, in a thread of its own; load() of the same path takes what was
    /// read, unless something else stands there by then. False, with nothing started, for any other file.
    bool readAhead(const QString &path);
    /// Starts to derive the key of the file from the password, in a thread of its own; load() of the same two then uses
    /// it. False, with nothing started, where a password is not needed or would not help.
    bool prepareKey(const QString &path, const QString &password);
    /// The one that prepareKey() has started.
    KeyPreparation &preparedKey() { return m_derived.prepared(); }
    /// To be called when all that belongs to a load has been read: keyDeriver() keeps the keys that it has derived, so
    /// that none is derived twice, until then.
    void endLoad() { m_derived.clear(); }
    /// The instance is failed from now on: no name, never writes.
    void fail();
    /// A fresh instance becomes a new, open database without a name.
    void createNew();

    /// From now on this very name stands for the file at a path, without a search.
    void setPlace(const QString &name, const QString &path) { m_told = {name, path}; }
    /// The name as it was given to load() or setFileName(), "" when there is none.
    QString fileName() const { return m_place.name; }
    /// Where the next save goes. Replacing what stands there now is then meant; what takes its place before the save is
    /// kept beside it. False, with nothing changed, where the folder is missing or takes no file, where the name is
    /// empty, a folder or device, or ambiguous, and after a failed load. On a fresh instance it makes a new, open
    /// database. When the first save under the name fails the old name comes back.
    bool setFileName(const QString &path);

    /// Writes `body` as the new version of the file, with every step checked and the result read back before it takes
    /// the old one's place. Does nothing without a name. On failure the file on disk is the old one, whole, unless the
    /// text says otherwise; the instance may try again.
    Result<void> save(QByteArrayView body);
    /// Whether the file is the very one that was written by the last save here: nobody has written to it or replaced it
    /// since. False before a save.
    bool lastSaveStands() const;

    /// What became of a database at its release.
    enum class Released { Saved, Rescued, Lost };
    /// The last try: saves, and where that fails writes a whole rescue file into the state folder. What went wrong and
    /// where the rescue file is goes to the notice. Throws nothing, asks nothing.
    Released saveAtRelease(QByteArrayView body) noexcept;
    /// Writes a body as a file of its own into the state folder; gives its path.
    SystemResult<QString> writeAside(QByteArrayView body);

    /// Which version of which file is on disk; zeros before there is one.
    const FileIdentifier &fileId() const { return m_header.fileId; }
    FileIdentifier saveId() const { return m_ownSaveIds.empty() ? FileIdentifier{} : m_ownSaveIds.front(); }
    /// Where the file stands now.
    FilePlace filePlace() const { return qir::filePlace(m_ops, m_place.path); }
    /// The keys of the version on disk, and those of the next save.
    const ContainerKeys &keysOnDisk() const { return m_keysOnDisk; }
    const ContainerKeys &keys() const { return m_keys; }
    const QString &stateFolder() const { return m_options.stateFolder; }
    const KeyDeriver &keyDeriver() const { return m_deriveOnce; }
    const ContainerLimits &limits() const { return m_options.limits; }
    RandomSource &random() const;

    /// True when the next save will be protected by a password.
    bool isProtected() const { return m_keys.isProtected(); }
    /// From the next save on `replacement` opens the file; "" leaves it open. `current` is the password that holds
    /// now, "" for an open one; a wrong one is a failure that changes nothing. Takes the time of one or two key
    /// derivations.
    Result<void> changePassword(const QString &current, const QString &replacement);

private:
    enum class State { Fresh, Ready, Failed };

    /// A name as the user gave it and the path that it reaches.
    struct Place {
        QString name;
        QString path;
    };

    std::optional<KdfParameters> keyParameters(const QString &path) const;
    LoadResult<ReadOutcome> read(const QString &path, const QString &password, QStringList &notices);
    /// The path that a name reaches: the one told, else ignoring case.
    Result<QString> reached(const QString &name) const;
    SaveOutcome trySave(QByteArrayView body);
    Released rescue(const QString &name, const QString &reason, QByteArrayView body);
    SystemResult<QString> writeRescue(const QString &name, QByteArrayView body);
    Result<bool> opensWith(const QString &password) const;
    void tell(const QString &text) const;

    FileOps &m_ops;
    DatabaseFileOptions m_options;
    ReadAhead m_ahead;
    DerivedKeys m_derived; // of the load that runs
    KeyDeriver m_deriveOnce;
    State m_state = State::Fresh;
    Place m_place;
    Place m_told;                             // by setPlace()
    std::optional<Place> m_previousPlace;     // while a name set by setFileName() has not been saved under
    std::optional<StandingFile> m_meant;      // what stood under that name when it was set
    FileHeader m_header;                      // of the version on disk
    std::vector<FileIdentifier> m_ownSaveIds; // what may stand there unless somebody else wrote; the first is known to
    bool m_torn = false;                      // a write in place was cut short
    std::optional<struct stat> m_lastSave;    // of what the last save here has written
    ContainerKeys m_keys;
    ContainerKeys m_keysOnDisk;
};

} // namespace qir
