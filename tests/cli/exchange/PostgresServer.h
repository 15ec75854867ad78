#pragma once

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace qir {

/// A PostgreSQL server of its own in a temporary folder, reached by a socket there alone.
class PostgresServer {
public:
    /// Starts none where the programs are missing.
    PostgresServer();
    ~PostgresServer();
    PostgresServer(const PostgresServer &) = delete;
    PostgresServer &operator=(const PostgresServer &) = delete;

    /// Why there is none, "" where it runs.
    const QString &missing() const { return m_missing; }
    QString folder() const { return m_folder.path(); }
    QString connection(const QString &user = QStringLiteral("qir")) const;
    QString socketFile() const { return m_folder.filePath(QStringLiteral(".s.PGSQL.5432")); }
    /// What psql prints for a statement, values between | and rows between line ends.
    QByteArray ask(const QString &sql) const;
    /// The same for a file.
    QByteArray load(const QString &file, const QString &schema) const;

    void start();
    /// At once, as a crash does.
    void kill();

private:
    bool run(const QString &program, const QStringList &arguments) const;
    QByteArray psql(const QStringList &arguments) const;

    QTemporaryDir m_folder;
    QString m_programs;
    QString m_user; // that the server runs as, "" for the tests' own
    QString m_missing;
};

/// Stands before a server and hands over what both sides say; once the client has said so much, the server is killed.
class DyingServer {
public:
    DyingServer(PostgresServer &server, qint64 bytes);
    ~DyingServer();
    DyingServer(const DyingServer &) = delete;
    DyingServer &operator=(const DyingServer &) = delete;

    QString connection() const;

private:
    struct Relay;
    std::unique_ptr<Relay> m_relay;
};

} // namespace qir
