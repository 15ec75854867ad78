#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <sys/types.h>

#include <functional>

namespace qir {

/// A test that runs as root tells nothing about what other users get: gives root away for good. Gives the user who runs
/// the test then.
unsigned runAsOrdinaryUser();

/// A process beside the test that may be killed at any moment.
class Process {
public:
    /// Tells the test something: bytes, which come in order.
    using Tell = std::function<void(QByteArrayView)>;

    /// `body` runs in a copy of this process, which ends with it.
    explicit Process(const std::function<void(const Tell &tell)> &body);
    Process(Process &&other) noexcept;
    Process &operator=(Process &&) = delete;
    ~Process();

    /// Waits for more to be told; false when there will be no more.
    bool hear();
    /// All that was told until now.
    const QByteArray &told() const { return m_told; }
    int toldCount(char byte) const { return static_cast<int>(m_told.count(byte)); }

    /// kill -9; what was told in the end counts too.
    void kill();
    /// Waits for its own end; true when that was a good one.
    bool finish();

private:
    bool reap();

    pid_t m_process = -1;
    int m_pipe = -1;
    QByteArray m_told;
};

/// The file systems that the promises are shown on.
enum class Place { Memory, Disk };

/// A new folder on one of them; invalid, with a reason, where the machine has none.
class PlaceFolder {
public:
    explicit PlaceFolder(Place place);
    /// Why there is none, "" when there is one.
    const QString &missing() const { return m_missing; }
    QString path() const { return m_folder.path(); }
    QString filePath(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
    QString m_missing;
};

} // namespace qir
