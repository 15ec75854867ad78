#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

struct sqlite3;
struct sqlite3_stmt;

namespace qir {

/// An open SQLite database. All throw std::runtime_error with the engine's reason.
class Sqlite {
public:
    enum class Mode { Read, Write };
    Sqlite(const QString &file, Mode mode);
    ~Sqlite();
    Sqlite(const Sqlite &) = delete;
    Sqlite &operator=(const Sqlite &) = delete;

    void run(const QByteArray &sql);
    /// Ends what is under way and lets go of the file.
    void close();

    sqlite3 *handle() const { return m_handle; }

private:
    sqlite3 *m_handle = nullptr;
};

/// A prepared statement; parameters and columns count from 0.
class SqliteStatement {
public:
    SqliteStatement(const Sqlite &database, const QByteArray &sql);
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement &) = delete;
    SqliteStatement &operator=(const SqliteStatement &) = delete;

    void bindWhole(int parameter, int number);
    void bindReal(int parameter, double number);
    /// The bytes must stay until the statement is reset.
    void bindText(int parameter, QByteArrayView utf8);
    /// False behind the last row.
    bool step();
    void reset();

    enum class Kind { Null, Whole, Real, Text, Bytes };
    Kind kind(int column) const;
    qint64 whole(int column) const;
    double real(int column) const;
    /// Until the next step.
    QByteArrayView text(int column) const;

private:
    void check(int code) const;

    const Sqlite &m_database;
    sqlite3_stmt *m_statement = nullptr;
};

} // namespace qir
