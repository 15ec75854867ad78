#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

extern "C" {
struct pg_conn;
struct pg_result;
}

namespace qir {

/// A connection to a PostgreSQL server, and a transaction that is undone unless it is committed. All throw
/// std::runtime_error with the server's reason, or why there is no server.
class Postgres {
public:
    /// `choice` is what libpq takes: "host=.. dbname=.." or a URI.
    Postgres(const QString &choice, const QByteArray &begin);
    ~Postgres();
    Postgres(const Postgres &) = delete;
    Postgres &operator=(const Postgres &) = delete;

    void run(const QByteArray &sql);
    /// The rows that a statement gives, null values as null texts.
    std::vector<QStringList> rows(const QByteArray &sql);

    /// COPY .. FROM STDIN, then its data, then its end.
    void beginCopyIn(const QByteArray &sql);
    void copyIn(QByteArrayView bytes);
    void endCopyIn();

    /// COPY .. TO STDOUT, then its lines.
    void beginCopyOut(const QByteArray &sql);
    /// False behind the last line.
    bool copyOut(QByteArray &line);

    void commit();

private:
    struct Result;
    Result take(pg_result *given, int wanted) const;
    [[noreturn]] void fail(const pg_result *result) const;

    pg_conn *m_connection;
};

} // namespace qir
