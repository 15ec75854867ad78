#include "tests/cli/exchange/PostgresFixture.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace qir {

namespace {

/// Values and rights on a real server, as they are.
class ExactPostgresTest : public PostgresFixture {
protected:
    void makeOther(const QString &sql) const {
        server().ask(u"CREATE SCHEMA other; SET search_path = other; "_s + sql);
    }
    void makeRole(const QString &setting = {}) const {
        server().ask(u"DROP SCHEMA IF EXISTS ours CASCADE; DROP ROLE IF EXISTS keeper; CREATE ROLE keeper LOGIN; "_s +
                     setting);
    }
};

TEST_P(ExactPostgresTest, TwoTablesOfASchemaNeverReplaceOneAnother) {
    makeOther(u"CREATE TABLE \"T\" (a integer); CREATE TABLE t (a integer)"_s);
    done({u"create"_s, u"A.DDB"_s});
    const QByteArray before = bytesOf(u"A.DDB"_s);
    trouble({u"import"_s, u"A.DDB"_s, u"--replace"_s, u"--from"_s, u"postgresql"_s, server().connection(),
             u"--schema"_s, u"other"_s, u"--table"_s, u"T"_s},
            "qirdb: PostgreSQL: t: two tables have one name here: \"T\" and \"t\"");
    EXPECT_EQ(bytesOf(u"A.DDB"_s), before);
}

TEST_P(ExactPostgresTest, NoTextIsRunWhereBackslashesEscape) {
    makeRole(u"ALTER ROLE keeper SET standard_conforming_strings = off; "
             "GRANT CREATE ON DATABASE postgres TO keeper; GRANT CREATE ON SCHEMA public TO keeper"_s);
    const QString file = u"z\\')); CREATE TABLE public.pwned(x int); COMMIT; --.DDB"_s;
    makePumps();
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(file)));
    const Outcome result = run(exporting(file, server().connection(u"keeper"_s)));
    EXPECT_EQ(server().ask(u"SELECT count(*) FROM pg_class WHERE relname = 'pwned'"_s), "0\n");
    EXPECT_EQ(result.status, 0) << result.errors.toStdString();
    server().ask(u"DROP TABLE IF EXISTS public.pwned; DROP OWNED BY keeper"_s);

    make(u"A.DDB"_s,
         "{\"table\": \"T\", \"fields\": [{\"name\": \"F\", \"type\": \"text\", \"size\": 100}], "
         "\"records\": 3}\n[\"\\\\'); DROP TABLE \\\"T\\\"; --\"]\n[\"a\\\\nb\\\\\"]\n[\"<0>\\r\\n\\\\\"]\n");
    done({u"export"_s, u"A.DDB"_s, u"--to"_s, u"sql"_s, u"a.sql"_s});
    for (const QString &setting : {u"on"_s, u"off"_s}) {
        server().ask(
            u"ALTER ROLE qir SET standard_conforming_strings = %1; DROP SCHEMA IF EXISTS other CASCADE"_s.arg(setting));
        server().load(path(u"a.sql"_s), u"other"_s);
        EXPECT_EQ(server().ask(u"SELECT \"F\" FROM other.\"T\""_s), "\\'); DROP TABLE \"T\"; --\na\\nb\\\n<0>\r\n\\\n")
            << setting.toStdString();
    }
    server().ask(u"ALTER ROLE qir RESET standard_conforming_strings"_s);
}

TEST_P(ExactPostgresTest, NumbersAndDatesThatAFieldDoesNotHoldBecomeTexts) {
    makeOther(u"CREATE TABLE t (b bigint, n numeric, small numeric, d date, i date, s timestamp, fit numeric, list "
              "numeric[], told bigint); COMMENT ON COLUMN t.told IS 'double'; "
              "INSERT INTO t VALUES (9007199254740993, 12345678901234567.891, '1e-400', '0044-03-15 BC', 'infinity', "
              "'2024-02-29 23:59:58.25', 0.1, '{1,2}', 9007199254740993), (1, 1.5, 2, '2024-02-29', '2024-02-29', "
              "'2024-02-29 23:59:58', '12345678901234567890', NULL, 1)"_s);
    const QByteArray lines = takenFromSchema(u"other"_s);
    EXPECT_THAT(lines.toStdString(),
                HasSubstr("\n[\"9007199254740993\", \"12345678901234567.891\", \"0." + std::string(399, '0') +
                          "1\", \"0044-03-15 BC\", \"infinity\", \"2024-02-29 23:59:58.25\", \"0.1\", \"{1,2}\", "
                          "\"9007199254740993\"]\n"));
    EXPECT_THAT(lines.toStdString(), testing::EndsWith("\n[\"1\", \"1.5\", \"2\", \"2024-02-29\", \"2024-02-29\", "
                                                       "\"2024-02-29 23:59:58\", \"12345678901234567890\", \"\", "
                                                       "\"1\"]\n"));
}

TEST_P(ExactPostgresTest, ATextHoldsTheLongestWhereNoSizeIsTold) {
    makeOther(u"CREATE TABLE t (a text, v varchar); COMMENT ON COLUMN t.a IS 'text'; COMMENT ON COLUMN t.v IS 'Text'; "
              "INSERT INTO t VALUES (repeat('x', 70), 'short')"_s);
    const QByteArray lines = takenFromSchema(u"other"_s);
    EXPECT_THAT(lines.toStdString(), HasSubstr("\"a\", \"type\": \"text\", \"size\": 70}"));
    EXPECT_THAT(lines.toStdString(), HasSubstr("\"v\", \"type\": \"text\", \"size\": 50}"));
    EXPECT_THAT(lines.toStdString(), testing::EndsWith(", \"short\"]\n"));
}

TEST_P(ExactPostgresTest, AFieldThatAFleetFileHasNoMoreIsNullThere) {
    makePumps();
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(u"OTHER.DDB"_s)));
    const QStringList fleet{u"--schema"_s, u"fleet"_s, u"--fleet"_s};
    done(exporting(u"PUMP.DDB"_s) + fleet);
    done(exporting(u"OTHER.DDB"_s) + fleet);
    server().ask(u"ALTER TABLE fleet.\"Pumps\" ADD COLUMN note text, ADD COLUMN twice text GENERATED ALWAYS AS "
                 "(\"Name\" || \"Name\") STORED; UPDATE fleet.\"Pumps\" SET note = 'seen'"_s);
    done({u"remove"_s, u"OTHER.DDB"_s, u"field"_s, u"Pumps"_s, u"Speed"_s});
    done(exporting(u"OTHER.DDB"_s) + fleet);
    EXPECT_EQ(server().ask(u"SELECT _file, _record, \"Speed\", note FROM fleet.\"Pumps\" ORDER BY 1, 2"_s),
              "OTHER.DDB|1||seen\nOTHER.DDB|2||seen\nPUMP.DDB|1|1500|seen\nPUMP.DDB|2|-3|seen\n");
}

TEST_P(ExactPostgresTest, AnOwnSchemaIsEnoughToWriteInto) {
    makePumps();
    makeRole(u"CREATE SCHEMA ours AUTHORIZATION keeper"_s);
    done(exporting(u"PUMP.DDB"_s, server().connection(u"keeper"_s)) + QStringList{u"--schema"_s, u"ours"_s});
    EXPECT_EQ(server().ask(u"SELECT count(*) FROM ours.\"Pumps\""_s), "2\n");
    server().ask(u"DROP OWNED BY keeper"_s);
}

TEST_P(ExactPostgresTest, ThePartsOfATableComeOnlyInIt) {
    makeOther(u"CREATE TABLE t (a integer) PARTITION BY RANGE (a); CREATE TABLE t1 PARTITION OF t FOR VALUES FROM (0) "
              "TO (10) PARTITION BY RANGE (a); CREATE TABLE t11 PARTITION OF t1 FOR VALUES FROM (0) TO (5); "
              "INSERT INTO t VALUES (1), (2)"_s);
    EXPECT_EQ(takenFromSchema(u"other"_s), "{\"table\": \"t\", \"fields\": [{\"name\": \"a\", \"type\": \"long\", "
                                           "\"size\": 0}], \"records\": 2}\n[1]\n[2]\n");
}

INSTANTIATE_TEST_SUITE_P(Component, ExactPostgresTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
