#include "cli/exchange/Sqlite.h"

#include <sqlite3.h>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

void check(sqlite3 *database, int code) {
    if (code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE)
        throw std::runtime_error(database == nullptr ? sqlite3_errstr(code) : sqlite3_errmsg(database));
}

} // namespace

Sqlite::Sqlite(const QString &file, Mode mode) {
    constexpr int patience = 5000; // milliseconds, while somebody else writes
    const int flags = mode == Mode::Read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    const QByteArray name = (file.startsWith(u'/') ? file : u"./"_s + file).toUtf8(); // else file: or :memory: is none
    const int code = sqlite3_open_v2(name.constData(), &m_handle, flags, nullptr);
    if (code != SQLITE_OK) {
        const std::string reason = sqlite3_errstr(code);
        close();
        throw std::runtime_error(reason);
    }
    sqlite3_busy_timeout(m_handle, patience);
}

Sqlite::~Sqlite() {
    close();
}

void Sqlite::run(const QByteArray &sql) {
    check(m_handle, sqlite3_exec(m_handle, sql.constData(), nullptr, nullptr, nullptr));
}

void Sqlite::close() {
    sqlite3_close_v2(m_handle);
    m_handle = nullptr;
}

SqliteStatement::SqliteStatement(const Sqlite &database, const QByteArray &sql)
    : m_database(database) {
    check(sqlite3_prepare_v2(database.handle(), sql.constData(), static_cast<int>(sql.size()), &m_statement, nullptr));
}

SqliteStatement::~SqliteStatement() {
    sqlite3_finalize(m_statement);
}

void SqliteStatement::check(int code) const {
    qir::check(m_database.handle(), code);
}

void SqliteStatement::bindWhole(int parameter, int number) {
    check(sqlite3_bind_int(m_statement, parameter + 1, number));
}

void SqliteStatement::bindReal(int parameter, double number) {
    check(sqlite3_bind_double(m_statement, parameter + 1, number));
}

void SqliteStatement::bindText(int parameter, QByteArrayView utf8) {
    const char *bytes = utf8.isEmpty() ? "" : utf8.data(); // no address is no text
    check(sqlite3_bind_text64(m_statement, parameter + 1, bytes, static_cast<sqlite3_uint64>(utf8.size()),
                              SQLITE_STATIC, SQLITE_UTF8));
}

bool SqliteStatement::step() {
    const int code = sqlite3_step(m_statement);
    check(code);
    return code == SQLITE_ROW;
}

void SqliteStatement::reset() {
    check(sqlite3_reset(m_statement));
}

SqliteStatement::Kind SqliteStatement::kind(int column) const {
    switch (sqlite3_column_type(m_statement, column)) {
    case SQLITE_INTEGER:
        return Kind::Whole;
    case SQLITE_FLOAT:
        return Kind::Real;
    case SQLITE_TEXT:
        return Kind::Text;
    case SQLITE_BLOB:
        return Kind::Bytes;
    default:
        return Kind::Null;
    }
}

qint64 SqliteStatement::whole(int column) const {
    return sqlite3_column_int64(m_statement, column);
}

double SqliteStatement::real(int column) const {
    return sqlite3_column_double(m_statement, column);
}

QByteArrayView SqliteStatement::text(int column) const {
    const auto *bytes = reinterpret_cast<const char *>(sqlite3_column_text(m_statement, column));
    if (bytes == nullptr)
        return {};
    return {bytes, static_cast<qsizetype>(sqlite3_column_bytes(m_statement, column))};
}

} // namespace qir
