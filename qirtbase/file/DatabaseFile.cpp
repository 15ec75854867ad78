#include "qirtbase/file/DatabaseFile.h"

#include "base/FileNames.h"
#include "base/StagedFile.h"
#include "qirtbase/file/FileRead.h"
#include "qirtbase/file/FileSave.h"
#include "qirtbase/file/KeptVersion.h"

#include <QDir>

#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// So that the file is found again when the program's folder changes. Not cleaned: ".." after a link counts.
QString absolutePath(const QString &path) {
    const QString folder = path.startsWith(u'/') ? QString() : QDir::currentPath();
    return folder.isEmpty() ? path : folder + u'/' + path; // one that has gone has no name
}

/// Whether a file could be put, or changed, where a path leads. Leaves no trace.
bool takesFile(FileOps &ops, const QString &path) {
    const auto target = ResolvedPath::of(ops, systemPath(path));
    if (!target)
        return false;
    const auto standing = ops.statusAt(target->folder.descriptor(), target->name, FollowLinks::No);
    if (!standing && standing.error().number != ENOENT)
        return false;
    if (standing && (!S_ISREG(standing->st_mode) || isReadOnly(ops, target->folder.descriptor(), target->name)))
        return false;
    if (StagedFile::create(ops, target->folder.descriptor(), S_IRUSR | S_IWUSR))
        return true;
    // A file that is there can be written in place.
    return standing &&
           OpenFile::openAt(ops, target->folder.descriptor(), target->name, O_RDWR | O_NOFOLLOW | O_NONBLOCK);
}

/// What stands where a path leads; nothing where that cannot be said.
std::optional<StandingFile> standingAt(FileOps &ops, const QString &path) {
    const auto target = ResolvedPath::of(ops, systemPath(path));
    if (!target)
        return std::nullopt;
    const auto status = ops.statusAt(target->folder.descriptor(), target->name, FollowLinks::No);
    if (!status)
        return std::nullopt;
    StandingFile standing{.exists = true, .status = *status, .header = {}};
    if (auto header = readFileHeader(ops, path))
        standing.header = std::move(*header);
    return standing;
}

} // namespace

DatabaseFile::DatabaseFile(FileOps &ops, DatabaseFileOptions options)
    : m_ops(ops)
    , m_options(std::move(options))
    , m_deriveOnce([this](const SecretBytes &password, const KdfParameters &parameters) {
        return m_derived.derive(m_options.deriveKey, password, parameters);
    }) {
    if (m_options.stateFolder.isEmpty())
        m_options.stateFolder = defaultStateFolder();
    m_header.generation = 0; // the first save makes it 1
}

RandomSource &DatabaseFile::random() const {
    return m_options.random ? *m_options.random : RandomSource::system();
}

void DatabaseFile::tell(const QString &text) const {
    try {
        if (m_options.notice)
            m_options.notice(text);
    } catch (...) { // NOLINT(bugprone-empty-catch): what a listener throws is its own affair
    }
}

Result<QString> DatabaseFile::reached(const QString &name) const {
    if (!m_told.path.isEmpty() && m_told.name == name)
        return m_told.path;
    return reachIgnoringCase(m_ops, name);
}

LoadResult<ReadOutcome> DatabaseFile::read(const QString &path, const QString &password, QStringList &notices) {
    if (auto ahead = m_ahead.take(path, notices))
        return std::move(*ahead);
    return readDatabaseFile(m_ops,
                            {.path = path,
                             .password = password,
                             .limits = m_options.limits,
                             .deriveKey = m_deriveOnce,
                             .stateFolder = m_options.stateFolder},
                            notices);
}

LoadResult<QByteArray> DatabaseFile::load(const QString &path, const QString &password) {
    Q_ASSERT(m_state == State::Fresh);
    m_state = State::Failed;
    if (path.isEmpty())
        return refused(LoadErrorKind::Missing, u"no file name was given"_s);
    const auto where = reached(path);
    if (!where)
        return refused(LoadErrorKind::AmbiguousName, u"%1: %2"_s.arg(path, where.error().text));
    QStringList notices;
    auto read = this->read(*where, password, notices);
    notices.removeDuplicates(); // the file may have been read twice
    for (const QString &notice : notices)
        tell(u"%1: %2"_s.arg(path, notice));
    if (!read) {
        endLoad();
        return refused(read.error().kind, u"%1: %2"_s.arg(path, read.error().text));
    }
    m_state = State::Ready;
    m_place = {path, absolutePath(*where)};
    m_header = std::move(read->container.header);
    m_ownSaveIds = {m_header.saveId};
    m_torn = read->tornInto.has_value();
    if (read->tornInto)
        m_ownSaveIds.push_back(*read->tornInto); // what its header may say
    m_keys = std::move(read->container.keys);
    m_keysOnDisk = m_keys.clone();
    return std::move(read->container.body);
}

LoadResult<QByteArray> DatabaseFile::readAgain() {
    const Place &place = m_previousPlace ? *m_previousPlace : m_place;
    if (m_state != State::Ready || m_ownSaveIds.empty() || place.path.isEmpty())
        return refused(LoadErrorKind::Missing, u"the database has not been saved yet"_s);
    const auto isOurs = [&](const FileHeader &header) {
        return header.fileId == m_header.fileId && std::ranges::find(m_ownSaveIds, header.saveId) != m_ownSaveIds.end();
    };
    const auto header = readFileHeader(m_ops, place.path);
    if (!header)
        return refused(header.error().kind, u"%1: %2"_s.arg(place.name, header.error().text));
    const auto another = [&] {
        return refused(LoadErrorKind::Unreadable, u"%1: another program has changed it since"_s.arg(place.name));
    };
    if (!isOurs(*header))
        return another();
    const KeyDeriver known = [this](const SecretBytes & /*password*/, const KdfParameters & /*kdf*/) {
        return LoadResult<SecretBytes>(m_keysOnDisk.master.clone());
    };
    QStringList notices;
    auto read = readDatabaseFile(m_ops,
                                 {.path = place.path,
                                  .password = u"known"_s, // its key is
                                  .limits = m_options.limits,
                                  .deriveKey = known,
                                  .stateFolder = m_options.stateFolder},
                                 notices);
    if (!read)
        return refused(read.error().kind, u"%1: %2"_s.arg(place.name, read.error().text));
    if (!isOurs(read->container.header))
        return another();
    return std::move(read->container.body);
}

std::optional<KdfParameters> DatabaseFile::keyParameters(const QString &path) const {
    if (path.isEmpty())
        return std::nullopt;
    const auto where = reached(path);
    if (!where)
        return std::nullopt;
    const auto header = readFileHeader(m_ops, *where);
    if (!header || !header->isProtected || !checkKdfCosts(*header))
        return std::nullopt;
    return header->kdf;
}

std::optional<KdfCosts> DatabaseFile::passwordCosts(const QString &path) const {
    const auto parameters = keyParameters(path);
    return parameters ? std::optional(parameters->costs) : std::nullopt;
}

bool DatabaseFile::readAhead(const QString &path) {
    const auto where = reached(path);
    if (m_state != State::Fresh || path.isEmpty() || !where)
        return false;
    const auto header = readFileHeader(m_ops, *where);
    if (!header || header->isProtected)
        return false;
    try {
        m_ahead.start(m_ops, *where, m_options.limits, m_options.stateFolder);
    } catch (const std::system_error &) { // no thread: the load reads it itself
        return false;
    }
    return true;
}

bool DatabaseFile::prepareKey(const QString &path, const QString &password) {
    m_derived.prepared().cancel();
    if (m_state != State::Fresh || password.isEmpty())
        return false;
    const auto parameters = keyParameters(path);
    if (!parameters)
        return false;
    try {
        m_derived.prepared().start(m_options.deriveKey, passwordBytes(password), *parameters);
    } catch (const std::system_error &) { // no thread: the load derives it itself
        return false;
    }
    return true;
}

void DatabaseFile::fail() {
    endLoad();
    m_state = State::Failed;
    m_place = {};
    m_keys = {};
    m_keysOnDisk = {};
}

void DatabaseFile::createNew() {
    Q_ASSERT(m_state == State::Fresh);
    m_state = State::Ready;
}

bool DatabaseFile::setFileName(const QString &path) {
    if (m_state == State::Failed || path.isEmpty())
        return false;
    const auto where = reached(path);
    if (!where || !takesFile(m_ops, *where))
        return false;
    if (m_state == State::Fresh)
        createNew();
    if (!m_previousPlace)
        m_previousPlace = m_place;
    m_place = {path, absolutePath(*where)};
    m_meant = standingAt(m_ops, *where);
    return true;
}

SaveOutcome DatabaseFile::trySave(QByteArrayView body) {
    SaveOutcome outcome = FileSave(m_ops, random(),
                                   {.target = {.name = m_place.name,
                                               .path = m_place.path,
                                               .fileId = m_header.fileId,
                                               .ownSaveIds = m_ownSaveIds,
                                               .torn = m_torn,
                                               .replaceMeant = m_previousPlace.has_value(),
                                               .meant = m_meant},
                                    .header = m_header,
                                    .keys = m_keys,
                                    .body = body,
                                    .stateFolder = m_options.stateFolder,
                                    .publishing = m_options.publishing})
                              .run();
    if (outcome.published) {
        m_header = outcome.header;
        m_ownSaveIds = {m_header.saveId};
        m_torn = false;
        m_lastSave = outcome.status;
        m_previousPlace.reset();
        m_keysOnDisk = m_keys.clone();
    } else if (m_previousPlace) {
        m_place = *m_previousPlace;
        m_previousPlace.reset();
    } else {
        m_ownSaveIds.push_back(outcome.header.saveId); // it may stand there all the same
        m_torn = m_torn || outcome.torn;
    }
    for (const QString &notice : outcome.notices)
        tell(notice);
    return outcome;
}

Result<void> DatabaseFile::save(QByteArrayView body) {
    if (m_state != State::Ready || m_place.name.isEmpty())
        return {};
    const SaveOutcome outcome = trySave(body);
    if (outcome.error)
        return tl::unexpected(*outcome.error);
    return {};
}

bool DatabaseFile::lastSaveStands() const {
    const Place &place = m_previousPlace ? *m_previousPlace : m_place;
    if (!m_lastSave || place.path.isEmpty())
        return false;
    const auto status = m_ops.statusAt(AT_FDCWD, systemPath(place.path), FollowLinks::Yes);
    if (!status || !sameVersion(*status, *m_lastSave))
        return false;
    const auto header = readFileHeader(m_ops, place.path);
    return header && header->saveId == saveId();
}

DatabaseFile::Released DatabaseFile::saveAtRelease(QByteArrayView body) noexcept {
    try {
        if (m_state != State::Ready || m_place.name.isEmpty())
            return Released::Lost;
        const Place wanted = m_place;
        const SaveOutcome outcome = trySave(body);
        if (!outcome.error)
            return Released::Saved;
        if (!outcome.published)
            return rescue(wanted.name, outcome.error->text, body);
        tell(outcome.error->text);
        return Released::Saved;
    } catch (...) {
        // Without memory nothing more can be done.
        return Released::Lost;
    }
}

DatabaseFile::Released DatabaseFile::rescue(const QString &name, const QString &reason, QByteArrayView body) {
    const auto rescued = writeRescue(name, body);
    if (!rescued) {
        tell(u"%1\n\nThe changes could not be kept in '%2' either: %3"_s.arg(reason, m_options.stateFolder,
                                                                             systemErrorWords(rescued.error())));
        return Released::Lost;
    }
    tell(u"%1\n\nThe changes are kept in '%2'."_s.arg(reason, *rescued));
    return Released::Rescued;
}

SystemResult<QString> DatabaseFile::writeAside(QByteArrayView body) {
    return writeRescue(m_place.name, body);
}

SystemResult<QString> DatabaseFile::writeRescue(const QString &name, QByteArrayView body) {
    FileHeader header = m_header;
    header.fileId = freshIdentifier(random());
    header.saveId = freshIdentifier(random());
    ContainerWriter writer(header, m_keys, body, random());
    return writeRescueFile(m_ops, m_options.stateFolder, name, writer);
}

Result<bool> DatabaseFile::opensWith(const QString &password) const {
    if (!m_keys.isProtected())
        return password.isEmpty();
    if (password.isEmpty())
        return false;
    const auto key = m_options.deriveKey(passwordBytes(password), m_keys.kdf);
    if (!key)
        return failure(key.error().text);
    return key->equals(m_keys.master);
}

Result<void> DatabaseFile::changePassword(const QString &current, const QString &replacement) {
    if (m_state == State::Failed)
        return failure(u"no database is loaded"_s);
    const auto opens = opensWith(current);
    if (!opens)
        return tl::unexpected(opens.error());
    if (!*opens)
        return failure(u"the current password is wrong"_s);
    ContainerKeys keys;
    if (!replacement.isEmpty()) {
        keys.kdf.costs = m_options.costs;
        random().fill(keys.kdf.salt);
        auto master = m_options.deriveKey(passwordBytes(replacement), keys.kdf);
        if (!master)
            return failure(master.error().text);
        keys.master = std::move(*master);
    }
    m_keys = std::move(keys);
    return {};
}

} // namespace qir
