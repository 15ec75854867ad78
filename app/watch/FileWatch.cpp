#include "app/watch/FileWatch.h"

#include <QDir>
#include <QFileInfo>

#include <chrono>

namespace qir {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pause = 100ms;
constexpr auto longest = 500ms;

/// The path and all folders above it.
void addWithFolders(QStringList &paths, const QString &path) {
    QString at = path;
    while (!at.isEmpty() && at != u"/"_s) {
        paths.append(at);
        at.truncate(std::max<qsizetype>(at.lastIndexOf(u'/'), 0));
    }
}

/// All whose change may bring another file under a path, those that exist.
QStringList wayTo(const QString &path) {
    QStringList paths;
    if (path.isEmpty())
        return paths;
    addWithFolders(paths, path);
    // Where links lead: the file there, and what is above it.
    addWithFolders(paths, QFileInfo(path).canonicalFilePath());
    if (const QFileInfo link(path); link.isSymLink())
        addWithFolders(paths, QDir::cleanPath(link.symLinkTarget()));
    paths.removeDuplicates();
    paths.removeIf([](const QString &one) { return !QFileInfo::exists(one); });
    return paths;
}

} // namespace

FileWatch::FileWatch() {
    for (QTimer *timer : {&m_pause, &m_longest}) {
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, [this] {
            m_pause.stop();
            m_longest.stop();
            Q_EMIT happened();
        });
    }
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &FileWatch::touch);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileWatch::touch);
}

void FileWatch::setPath(const QString &path) {
    m_path = path;
    m_pause.stop();
    m_longest.stop();
    renew();
}

void FileWatch::renew() {
    const QStringList wanted = wayTo(m_path);
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    QStringList gone;
    for (const QString &one : watched)
        if (!wanted.contains(one))
            gone.append(one);
    if (!gone.isEmpty())
        m_watcher.removePaths(gone);
    // The file itself always anew: another one may stand under its name, which the old watch knows nothing of.
    if (!m_path.isEmpty() && m_watcher.files().contains(m_path))
        m_watcher.removePath(m_path);
    QStringList added;
    for (const QString &one : wanted)
        if (one == m_path || !watched.contains(one))
            added.append(one);
    if (!added.isEmpty())
        m_watcher.addPaths(added);
}

void FileWatch::touch() {
    if (m_path.isEmpty())
        return;
    m_pause.start(pause);
    if (!m_longest.isActive())
        m_longest.start(longest);
}

} // namespace qir
