#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

namespace qir {

/// Tells that something may have happened to a file: to itself, to a link on its way, to its folder or to one further
/// up. Many events in a row are told once, when they pause, and at the latest half a second after the first.
class FileWatch : public QObject {
    Q_OBJECT

public:
    FileWatch();

    /// Watches another file; "" for none.
    void setPath(const QString &path);
    const QString &path() const { return m_path; }
    /// Watches what stands on the way to the file now: after each look, since what is removed is not watched any more.
    void renew();
    /// As if something had happened.
    void touch();

Q_SIGNALS:
    void happened();

private:
    QString m_path;
    QFileSystemWatcher m_watcher;
    QTimer m_pause;
    QTimer m_longest;
};

} // namespace qir
