#include "tests/cli/exchange/PostgresFixture.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::StartsWith;

namespace qir {

namespace {

/// Tables to a real server and back.
class PostgresTest : public PostgresFixture {};

TEST_P(PostgresTest, DrawnTablesComeBack) {
    constexpr unsigned seeds = 12;
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        const QByteArray lines = DrawnTables(seed, limits({.hasNul = false})).lines();
        if (lines.isEmpty())
            continue;
        server().ask(u"DROP SCHEMA IF EXISTS \"A\" CASCADE"_s);
        make(u"A.DDB"_s, lines);
        done(exporting(u"A.DDB"_s));
        EXPECT_EQ(takenFromSchema(u"A"_s), lines) << seed;
    }
}

TEST_P(PostgresTest, LoadsTheStatementsThatAreWritten) {
    constexpr unsigned seeds = 6;
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        const QByteArray lines = DrawnTables(seed, limits({.hasNul = false, .hasEmptyTables = false})).lines();
        if (lines.isEmpty())
            continue;
        server().ask(u"DROP SCHEMA IF EXISTS \"A\" CASCADE; DROP SCHEMA IF EXISTS other CASCADE"_s);
        make(u"A.DDB"_s, lines);
        done(exporting(u"A.DDB"_s));
        done({u"export"_s, u"A.DDB"_s, u"--to"_s, u"sql"_s, u"a.sql"_s});
        server().load(path(u"a.sql"_s), u"other"_s);
        const QString listed = u"SELECT relname FROM pg_class WHERE relnamespace = '%1'::regnamespace ORDER BY oid"_s;
        const QByteArray tables = server().ask(listed.arg(u"other"_s));
        EXPECT_EQ(server().ask(listed.arg(u"\"A\""_s)), tables);
        for (const QByteArray &table : tables.split('\n')) {
            const QString name = u".\"%1\""_s.arg(QString::fromUtf8(table).replace(u'"', u"\"\""_s));
            if (table.isEmpty())
                continue;
            EXPECT_EQ(server().ask(u"SELECT * FROM other"_s + name), server().ask(u"SELECT * FROM \"A\""_s + name))
                << seed;
        }
    }
}

TEST_P(PostgresTest, WhatStandsThereIsKeptUnlessItMayBeReplaced) {
    makePumps();
    done(exporting(u"PUMP.DDB"_s));
    done({u"set"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"1"_s, u"Speed"_s, u"7"_s});
    const QString speeds = u"SELECT \"Speed\" FROM \"PUMP\".\"Pumps\""_s;
    trouble(exporting(u"PUMP.DDB"_s),
            "qirdb: PostgreSQL: the table \"Pumps\" stands there already; use --replace to replace it");
    EXPECT_EQ(server().ask(speeds), "1500\n-3\n");
    done(exporting(u"PUMP.DDB"_s) + QStringList{u"--replace"_s});
    EXPECT_EQ(server().ask(speeds), "7\n-3\n");
    EXPECT_EQ(server().ask(u"SELECT col_description('\"PUMP\".\"Pumps\"'::regclass, 1)"_s), "text:20\n");
}

TEST_P(PostgresTest, AServerThatDiesInTheMiddleOfCopyLeavesNothing) {
    constexpr int records = 20000;
    QByteArray lines =
        "{\"table\": \"T\", \"fields\": [{\"name\": \"F\", \"type\": \"text\", \"size\": 100}], \"records\": " +
        QByteArray::number(records) + "}\n";
    for (int record = 0; record < records; ++record)
        lines += "[\"" + QByteArray(90, 'x') + "\"]\n";
    make(u"A.DDB"_s, lines);
    Outcome result{};
    {
        const DyingServer dying(server(), 500'000); // of 1.8 million
        result = run(exporting(u"A.DDB"_s, dying.connection()));
    }
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors.toStdString(), StartsWith("qirdb: PostgreSQL: "));
    EXPECT_EQ(result.errors.count('\n'), 1);
    server().start();
    ASSERT_EQ(server().missing(), u""_s);
    EXPECT_EQ(server().ask(u"SELECT count(*) FROM pg_namespace WHERE nspname = 'A'"_s), "0\n");
}

TEST_P(PostgresTest, ATransactionThatIsRefusedLeavesNothing) {
    makePumps();
    server().ask(u"DROP ROLE IF EXISTS reader; CREATE ROLE reader LOGIN"_s);
    trouble(exporting(u"PUMP.DDB"_s, server().connection(u"reader"_s)),
            "qirdb: PostgreSQL: permission denied for database postgres");
    const QStringList fleet{u"--schema"_s, u"fleet"_s, u"--fleet"_s};
    done(exporting(u"PUMP.DDB"_s) + fleet);
    server().ask(
        u"CREATE FUNCTION fleet.no() RETURNS trigger AS 'BEGIN RAISE EXCEPTION ''not today''; END' LANGUAGE plpgsql;"
        "CREATE CONSTRAINT TRIGGER no AFTER UPDATE ON fleet.\"Pumps\" DEFERRABLE INITIALLY DEFERRED FOR EACH ROW "
        "EXECUTE FUNCTION fleet.no()"_s);
    done({u"set"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"1"_s, u"Speed"_s, u"7"_s});
    trouble(exporting(u"PUMP.DDB"_s) + fleet, "qirdb: PostgreSQL: not today"); // at the commit
    EXPECT_EQ(server().ask(u"SELECT \"Speed\" FROM fleet.\"Pumps\" ORDER BY _record"_s), "1500\n-3\n");
    trouble(exporting(u"PUMP.DDB"_s, u"host=/nowhere password=hidden"_s),
            "qirdb: PostgreSQL: connection to server on socket \"/nowhere/.s.PGSQL.5432\" failed: No such file or "
            "directory "
            "Is the server running locally and accepting connections on that socket?");
}

TEST_P(PostgresTest, AFleetSharesTablesByFileAndRecord) {
    makePumps();
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(u"OTHER.DDB"_s)));
    const QStringList fleet{u"--schema"_s, u"fleet"_s, u"--fleet"_s};
    done(exporting(u"PUMP.DDB"_s) + fleet);
    done({u"add"_s, u"OTHER.DDB"_s, u"field"_s, u"Pumps"_s, u"New[bool]"_s});
    done({u"add"_s, u"OTHER.DDB"_s, u"table"_s, u"More"_s});
    done(exporting(u"OTHER.DDB"_s) + fleet);
    const QString rows = u"SELECT _file, _record, \"Name\", \"New\" FROM fleet.\"Pumps\" ORDER BY 1, 2"_s;
    EXPECT_EQ(server().ask(rows),
              "OTHER.DDB|1|P-1|f\nOTHER.DDB|2|P 2, spare|f\nPUMP.DDB|1|P-1|\nPUMP.DDB|2|P 2, spare|\n");
    EXPECT_EQ(server().ask(u"SELECT count(*) FROM fleet.\"More\""_s), "1\n");
    done({u"remove"_s, u"OTHER.DDB"_s, u"record"_s, u"Pumps"_s, u"1"_s});
    done({u"remove"_s, u"OTHER.DDB"_s, u"table"_s, u"More"_s});
    done(exporting(u"OTHER.DDB"_s) + fleet);
    EXPECT_EQ(server().ask(rows), "OTHER.DDB|1|P 2, spare|f\nPUMP.DDB|1|P-1|\nPUMP.DDB|2|P 2, spare|\n");
    EXPECT_EQ(server().ask(u"SELECT count(*) FROM fleet.\"More\""_s), "0\n");
    done({u"add"_s, u"OTHER.DDB"_s, u"field"_s, u"Pumps"_s, u"_file"_s});
    trouble(exporting(u"OTHER.DDB"_s) + fleet,
            "qirdb: PostgreSQL: the field \"_file\" has the name of a fleet's own column");
    trouble(exporting(u"OTHER.DDB"_s) + QStringList{u"--fleet"_s},
            "qirdb: --fleet needs the --schema that the files share");
}

TEST_P(PostgresTest, AFileComesBackFromItsFleet) {
    makePumps();
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(u"OTHER.DDB"_s)));
    done({u"add"_s, u"OTHER.DDB"_s, u"field"_s, u"Pumps"_s, u"Long[text:300]"_s});
    done({u"set"_s, u"OTHER.DDB"_s, u"Pumps"_s, u"2"_s, u"Long"_s, QString(290, u'x')});
    done({u"sort"_s, u"OTHER.DDB"_s, u"Pumps"_s, u"Speed"_s});
    const QStringList fleet{u"--schema"_s, u"fleet"_s, u"--fleet"_s};
    const auto back = [&](const QString &file) {
        return QStringList{u"import"_s, file, u"--from"_s, u"postgresql"_s, server().connection()} + fleet;
    };
    std::vector<QByteArray> dumps;
    for (const QString &file : {u"PUMP.DDB"_s, u"OTHER.DDB"_s}) {
        done(exporting(file) + fleet);
        dumps.push_back(done({u"dump"_s, u"--json"_s, file}));
    }
    for (const QString &file : {u"OTHER.DDB"_s, u"PUMP.DDB"_s}) {
        ASSERT_TRUE(QFile::remove(path(file)));
        done({u"create"_s, file});
        done(back(file));
        EXPECT_EQ(done({u"dump"_s, u"--json"_s, file}), dumps[file == u"OTHER.DDB"_s ? 1 : 0]);
    }
    done({u"create"_s, u"NEW.DDB"_s});
    trouble(back(u"NEW.DDB"_s), "qirdb: PostgreSQL: the schema \"fleet\" has no record of \"NEW.DDB\"");
    trouble({u"import"_s, u"NEW.DDB"_s, u"--from"_s, u"postgresql"_s, server().connection(), u"--fleet"_s},
            "qirdb: --fleet needs the --schema that the files share");
}

TEST_P(PostgresTest, TablesOfOthersBecomeWhatTheirColumnsSay) {
    server().ask(
        u"CREATE SCHEMA other; CREATE TABLE other.t (i integer, s smallint, b bigint, r real, n numeric, f boolean, "
        "d date, t timestamp, v varchar(10), x text, u uuid);"
        "INSERT INTO other.t VALUES (1, 2, 5000000000, 1.5, 0.25, true, '2024-02-29', '2024-02-29 23:59:58', 'é', "
        "E'a\\tb\\\\', '00000000-0000-0000-0000-000000000001'), (NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL)"_s);
    EXPECT_THAT(
        takenFromSchema(u"other"_s).toStdString(),
        testing::EndsWith("\n[1, 2, 5000000000, 1.5, 0.25, 1, 20240229, 20240229.235958, \"é\", \"a\\tb\\\\\", "
                          "\"00000000-0000-0000-0000-000000000001\"]\n[0, 0, 0, 0, 0, 0, 0, 0, \"\", \"\", \"\"]\n"));
    server().ask(u"UPDATE other.t SET r = 'NaN'"_s);
    const Outcome result = run({u"import"_s, u"BACK.DDB"_s, u"--replace"_s, u"--from"_s, u"postgresql"_s,
                                server().connection(), u"--schema"_s, u"other"_s});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors, "qirdb: PostgreSQL: t: record 1, field \"r\": \"NaN\" is no number\n");
    EXPECT_THAT(
        run({u"import"_s, u"BACK.DDB"_s, u"--from"_s, u"postgresql"_s, server().connection(), u"--schema"_s, u"none"_s})
            .errors.toStdString(),
        HasSubstr("the schema \"none\" has no table"));
}

INSTANTIATE_TEST_SUITE_P(Component, PostgresTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
