#include "cli/exchange/Postgres.h"

#include "base/UndoOnError.h"

#include <libpq-fe.h>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {

struct Postgres::Result {
    explicit Result(PGresult *given)
        : handle(given) {}
    ~Result() { PQclear(handle); }
    Result(const Result &) = delete;
    Result &operator=(const Result &) = delete;

    PGresult *handle;
};

Postgres::Postgres(const QString &choice, const QByteArray &begin)
    : m_connection(PQconnectdb(choice.toUtf8().constData())) {
    const UndoOnError undo([this] { PQfinish(m_connection); });
    if (PQstatus(m_connection) != CONNECTION_OK)
        fail(nullptr);
    PQsetNoticeProcessor(
        m_connection, [](void *, const char *) {}, nullptr);
    if (PQsetClientEncoding(m_connection, "UTF8") != 0)
        fail(nullptr);
    run("SET standard_conforming_strings = on"); // a role may have set it off
    run(begin);
}

Postgres::~Postgres() {
    PQfinish(m_connection); // the server undoes what was not committed
}

void Postgres::fail(const PGresult *result) const {
    const char *primary = result == nullptr ? nullptr : PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
    const char *detail = result == nullptr ? nullptr : PQresultErrorField(result, PG_DIAG_MESSAGE_DETAIL);
    QString reason = QString::fromUtf8(primary == nullptr ? PQerrorMessage(m_connection) : primary);
    if (detail != nullptr)
        reason += u" (%1)"_s.arg(QString::fromUtf8(detail));
    throw std::runtime_error(reason.simplified().toStdString());
}

Postgres::Result Postgres::take(PGresult *given, int wanted) const {
    Result result(given);
    if (PQresultStatus(given) != wanted)
        fail(given);
    return Result(std::exchange(result.handle, nullptr));
}

void Postgres::run(const QByteArray &sql) {
    const Result result(PQexec(m_connection, sql.constData()));
    const ExecStatusType status = PQresultStatus(result.handle);
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
        fail(result.handle);
}

std::vector<QStringList> Postgres::rows(const QByteArray &sql) {
    const Result result = take(PQexec(m_connection, sql.constData()), PGRES_TUPLES_OK);
    std::vector<QStringList> rows;
    for (int row = 0; row < PQntuples(result.handle); ++row) {
        QStringList &texts = rows.emplace_back();
        for (int column = 0; column < PQnfields(result.handle); ++column)
            texts += PQgetisnull(result.handle, row, column) != 0
                         ? QString()
                         : QString::fromUtf8(PQgetvalue(result.handle, row, column));
    }
    return rows;
}

void Postgres::beginCopyIn(const QByteArray &sql) {
    (void)take(PQexec(m_connection, sql.constData()), PGRES_COPY_IN);
}

void Postgres::copyIn(QByteArrayView bytes) {
    constexpr qsizetype most = 1 << 20; // a call takes an int
    for (; !bytes.isEmpty(); bytes = bytes.sliced(std::min(most, bytes.size())))
        if (PQputCopyData(m_connection, bytes.data(), static_cast<int>(std::min(most, bytes.size()))) != 1)
            fail(nullptr);
}

void Postgres::endCopyIn() {
    if (PQputCopyEnd(m_connection, nullptr) != 1)
        fail(nullptr);
    (void)take(PQgetResult(m_connection), PGRES_COMMAND_OK);
    while (PGresult *rest = PQgetResult(m_connection))
        PQclear(rest);
}

void Postgres::beginCopyOut(const QByteArray &sql) {
    (void)take(PQexec(m_connection, sql.constData()), PGRES_COPY_OUT);
}

bool Postgres::copyOut(QByteArray &line) {
    char *bytes = nullptr;
    const int length = PQgetCopyData(m_connection, &bytes, 0);
    if (length > 0) {
        line = QByteArray(bytes, length);
        PQfreemem(bytes);
        return true;
    }
    if (length == -2)
        fail(nullptr);
    (void)take(PQgetResult(m_connection), PGRES_COMMAND_OK);
    while (PGresult *rest = PQgetResult(m_connection))
        PQclear(rest);
    return false;
}

void Postgres::commit() {
    const Result result = take(PQexec(m_connection, "COMMIT"), PGRES_COMMAND_OK);
    if (QByteArrayView(PQcmdStatus(result.handle)) != "COMMIT") // it says ROLLBACK where the transaction had failed
        throw std::runtime_error("the server has undone the transaction");
}

} // namespace qir
