#include "qirtbase/DatabaseFile.h"

#include "base/FileNames.h"
#include "base/StagedFile.h"
#include "qirtbase/FileSave.h"

#include <QDir>

#include <unistd.h>

#include <cerrno>

namespace qir {

namespace {

tl::unexpected<LoadError> refused(LoadErrorKind kind, const QString &text) {
    return tl::unexpected(LoadError{kind, text});
}

/// So that the file is found again when the program's folder changes. Not cleaned: ".." after a link counts.
QString absolutePath(const QString &path) {
    return path.startsWith(u'/') ? path : QDir::currentPath() + u'/' + path;
}

LoadErrorKind kindOf(SystemError error) {
    return error.number == ENOENT || error.number == ENOTDIR ? LoadErrorKind::Missing : LoadErrorKind::Unreadable;
}

/// Whether a file could be put, or changed, where a path leads. Leaves no trace.
bool takesFile(FileOps &ops, const QString &path) {
    const auto target = ResolvedPath::of(ops, systemPath(path));
    if (!target)
        return false;
    const auto standing = ops.statusAt(target->folder.descriptor(), target->name, FollowLinks::No);
    if (!standing && standing.error().number != ENOENT)
        return false;
    if (standing && !S_ISREG(standing->st_mode))
        return false;
    return StagedFile::create(ops, target->folder.descriptor(), S_IRUSR | S_IWUSR).has_value();
}

} // namespace

DatabaseFile::DatabaseFile(FileOps &ops, DatabaseFileOptions options)
    : m_ops(ops)
    , m_options(std::move(options)) {
    m_header.generation = 0; // the first save makes it 1
}

RandomSource &DatabaseFile::random() const {
    return m_options.random ? *m_options.random : RandomSource::system();
}

LoadResult<LoadedContainer> DatabaseFile::read(const QString &path, const QString &password) {
    // Looked at before it is opened: opening a device may already do something.
    const std::string name = systemPath(path);
    const auto status = m_ops.statusAt(AT_FDCWD, name, FollowLinks::Yes);
    if (!status)
        return refused(kindOf(status.error()), systemErrorWords(status.error()));
    if (S_ISDIR(status->st_mode))
        return refused(LoadErrorKind::NotAFile, QStringLiteral("it is a folder"));
    if (!S_ISREG(status->st_mode))
        return refused(LoadErrorKind::NotAFile, QStringLiteral("it is a device, not a file"));
    const auto file = OpenFile::openAt(m_ops, AT_FDCWD, name, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file)
        return refused(kindOf(file.error()),
                       QStringLiteral("it cannot be opened: %1").arg(systemErrorWords(file.error())));
    return readContainer(m_ops, file->descriptor(), password, m_options.limits, m_options.deriveKey);
}

LoadResult<QByteArray> DatabaseFile::load(const QString &path, const QString &password) {
    Q_ASSERT(m_state == State::Fresh);
    m_state = State::Failed;
    if (path.isEmpty())
        return refused(LoadErrorKind::Missing, QStringLiteral("no file name was given"));
    const auto reached = reachIgnoringCase(m_ops, path);
    if (!reached)
        return refused(LoadErrorKind::AmbiguousName, QStringLiteral("%1: %2").arg(path, reached.error().text));
    auto container = read(*reached, password);
    if (!container)
        return refused(container.error().kind, QStringLiteral("%1: %2").arg(path, container.error().text));
    m_state = State::Ready;
    m_place = {path, absolutePath(*reached)};
    m_header = std::move(container->header);
    m_saveId = m_header.saveId;
    m_keys = std::move(container->keys);
    return std::move(container->body);
}

void DatabaseFile::fail() {
    m_state = State::Failed;
    m_place = {};
    m_keys = {};
}

void DatabaseFile::createNew() {
    Q_ASSERT(m_state == State::Fresh);
    m_state = State::Ready;
}

bool DatabaseFile::setFileName(const QString &path) {
    if (m_state == State::Failed || path.isEmpty())
        return false;
    const auto reached = reachIgnoringCase(m_ops, path);
    if (!reached || !takesFile(m_ops, *reached))
        return false;
    if (m_state == State::Fresh)
        createNew();
    if (!m_previousPlace)
        m_previousPlace = m_place;
    m_place = {path, absolutePath(*reached)};
    return true;
}

Result<void> DatabaseFile::save(QByteArrayView body) {
    if (m_state != State::Ready || m_place.name.isEmpty())
        return {};
    const SaveOutcome outcome = FileSave(m_ops, random(),
                                         {.name = m_place.name,
                                          .path = m_place.path,
                                          .header = m_header,
                                          .expected = m_saveId,
                                          .attempted = m_attemptedSaveId,
                                          .replaceMeant = m_previousPlace.has_value(),
                                          .keys = m_keys,
                                          .body = body})
                                    .run();
    if (outcome.published) {
        m_header = outcome.header;
        m_saveId = m_header.saveId;
        m_attemptedSaveId.reset();
        m_previousPlace.reset();
    } else if (m_previousPlace) {
        m_place = *m_previousPlace;
        m_previousPlace.reset();
    } else {
        m_attemptedSaveId = outcome.header.saveId;
    }
    if (m_options.notice)
        for (const QString &notice : outcome.notices)
            m_options.notice(notice);
    if (outcome.error)
        return tl::unexpected(*outcome.error);
    return {};
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
        return failure(QStringLiteral("no database is loaded"));
    const auto opens = opensWith(current);
    if (!opens)
        return tl::unexpected(opens.error());
    if (!*opens)
        return failure(QStringLiteral("the current password is wrong"));
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
