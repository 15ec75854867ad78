#pragma once

#include "tests/cli/exchange/ExchangeFixture.h"
#include "tests/cli/exchange/PostgresServer.h"

namespace qir {

/// Runs the program against a server of its own.
class PostgresFixture : public ExchangeFixture {
protected:
    static void SetUpTestSuite() { s_server = new PostgresServer; }
    static void TearDownTestSuite() {
        delete s_server;
        s_server = nullptr;
    }
    void SetUp() override {
        if (!s_server->missing().isEmpty())
            GTEST_SKIP() << "not run: " << s_server->missing().toStdString();
        for (const char *schema : {"PUMP", "A", "fleet", "other"})
            s_server->ask(QStringLiteral("DROP SCHEMA IF EXISTS \"%1\" CASCADE").arg(QLatin1StringView(schema)));
    }

    static PostgresServer &server() { return *s_server; }
    QStringList exporting(const QString &file, const QString &connection = s_server->connection()) const {
        return {QStringLiteral("export"), file, QStringLiteral("--to"), QStringLiteral("postgresql"), connection};
    }
    QByteArray takenFromSchema(const QString &schema) const {
        QFile::remove(path(QStringLiteral("BACK.DDB")));
        done({QStringLiteral("create"), QStringLiteral("BACK.DDB")});
        done({QStringLiteral("import"), QStringLiteral("BACK.DDB"), QStringLiteral("--from"),
              QStringLiteral("postgresql"), server().connection(), QStringLiteral("--schema"), schema});
        return done({QStringLiteral("dump"), QStringLiteral("--json"), QStringLiteral("BACK.DDB")});
    }

private:
    static inline PostgresServer *s_server = nullptr;
};

} // namespace qir
