#include "tests/cli/exchange/ExchangeFixture.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace qir {

namespace {

/// Values, names and modes come through as they are, or the exchange is refused.
class ExactExchangeTest : public ExchangeFixture {
protected:
    static QByteArray texts(const QList<QByteArray> &values, const QByteArray &name = "T") {
        QByteArray lines = "{\"table\": \"" + name +
                           "\", \"fields\": [{\"name\": \"F\", \"type\": \"text\", \"size\": 60000}], \"records\": " +
                           QByteArray::number(values.size()) + "}\n";
        for (const QByteArray &value : values)
            lines += "[\"" + value + "\"]\n";
        return lines;
    }
    void setMode(const QString &name, mode_t mode) const {
        ASSERT_EQ(::chmod(QFile::encodeName(path(name)).constData(), mode), 0);
    }
};

TEST_P(ExactExchangeTest, ColumnsOfSqliteKeepTheirValuesBehindAGeneratedOne) {
    if (!hasSqlite())
        GTEST_SKIP() << "not run: there is no sqlite3";
    sqlite({u"g.sqlite"_s}, "CREATE TABLE T (a integer, g integer AS (a*2), s integer AS (a+5) STORED, b integer);"
                            "INSERT INTO T (a, b) VALUES (1, 7);");
    const QByteArray lines = takenFrom(u"sqlite"_s, u"g.sqlite"_s);
    EXPECT_THAT(lines.toStdString(), testing::EndsWith("\n[1, 2, 6, 7]\n"));
    EXPECT_EQ(lines.count("\"name\""), 4);
    sqlite({u"n.sqlite"_s}, "CREATE TABLE T (\"a\"\"b\" integer, \"c\xFF\" integer); INSERT INTO T VALUES (1, 7);");
    EXPECT_THAT(takenFrom(u"sqlite"_s, u"n.sqlite"_s).toStdString(), testing::EndsWith("\n[1, 7]\n"));
}

TEST_P(ExactExchangeTest, TwoTablesOfAnImportNeverReplaceOneAnother) {
    const auto refused = [&](const QStringList &arguments, const QByteArray &source) {
        make(u"A.DDB"_s, texts({"kept"}, "K"));
        const QByteArray before = bytesOf(u"A.DDB"_s);
        const Outcome result = run(QStringList{u"import"_s, u"A.DDB"_s} + arguments + QStringList{u"--replace"_s});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors, "qirdb: " + source + ": two tables have one name here: \"k\" and \"k !\"\n");
        EXPECT_EQ(bytesOf(u"A.DDB"_s), before);
    };
    write(u"two.jsonl"_s, texts({"a"}, "k") + texts({"b"}, "k !"));
    refused({u"--from"_s, u"json"_s, u"two.jsonl"_s}, "two.jsonl");
    ASSERT_TRUE(QDir(path(u"."_s)).mkdir(u"csv"_s));
    write(u"csv/k.csv"_s, "F[text:5]\na\n");
    write(u"csv/k !.csv"_s, "F[text:5]\nb\n");
    const Outcome folder = run({u"import"_s, u"A.DDB"_s, u"csv"_s, u"--replace"_s});
    EXPECT_EQ(folder.status, 2);
    EXPECT_THAT(folder.errors.toStdString(), HasSubstr("have one name here"));
    EXPECT_THAT(done({u"dump"_s, u"--json"_s, u"A.DDB"_s}).toStdString(), HasSubstr("kept"));
    if (!hasSqlite())
        return;
    sqlite({u"two.sqlite"_s}, "CREATE TABLE k (F); CREATE TABLE \"k !\" (F);");
    refused({u"--from"_s, u"sqlite"_s, u"two.sqlite"_s}, "two.sqlite");
    refused({u"--from"_s, u"sqlite"_s, u"two.sqlite"_s, u"--table"_s, u"k"_s}, "two.sqlite");
    write(u"again.jsonl"_s, texts({"a"}, "k") + texts({"b"}, "k"));
    done({u"import"_s, u"A.DDB"_s, u"--from"_s, u"json"_s, u"again.jsonl"_s, u"--append"_s});
    EXPECT_THAT(done({u"dump"_s, u"--json"_s, u"A.DDB"_s}).toStdString(), HasSubstr("[\"a\"]\n[\"b\"]\n"));
}

TEST_P(ExactExchangeTest, NumbersAmongTextsOfSqliteAreExact) {
    if (!hasSqlite())
        GTEST_SKIP() << "not run: there is no sqlite3";
    sqlite({u"m.sqlite"_s}, "CREATE TABLE T (m); INSERT INTO T VALUES ('x'), (1.0/3), (0.1+0.2), (9007199254740993);");
    EXPECT_THAT(takenFrom(u"sqlite"_s, u"m.sqlite"_s).toStdString(),
                HasSubstr("\n[\"x\"]\n[\"0.3333333333333333\"]\n[\"0.30000000000000004\"]\n[\"9007199254740993\"]\n"));
}

TEST_P(ExactExchangeTest, SqliteLoadsTextsOfManyLinesAndBackslashes) {
    if (!hasSqlite())
        GTEST_SKIP() << "not run: there is no sqlite3";
    const QByteArray lines = texts({QByteArray("a'\\r\\n").repeated(3000), QByteArray("\\\\").repeated(3000) + '\'',
                                    "<0>\\\\<1>\\r\\n<2>", "\\r\\r\\n\\n\\r", "<<0>\\\\0>0>"});
    make(u"A.DDB"_s, lines);
    done({u"export"_s, u"A.DDB"_s, u"--to"_s, u"sql"_s, u"a.sql"_s});
    EXPECT_EQ(sqlite({u"a.sqlite"_s}, bytesOf(u"a.sql"_s)), "");
    (void)takenFrom(u"sqlite"_s, u"a.sqlite"_s);
    expectSameTables(lines);
}

TEST_P(ExactExchangeTest, AFileThatIsReplacedKeepsItsMode) {
    makePumps();
    for (const mode_t mode : {0600U, 0640U, 0444U}) {
        write(u"empty.sqlite"_s, "");
        setMode(u"empty.sqlite"_s, mode);
        done({u"export"_s, u"PUMP.DDB"_s, u"--to"_s, u"sqlite"_s, u"empty.sqlite"_s});
        EXPECT_EQ(modeOf(u"empty.sqlite"_s), mode);
        setMode(u"empty.sqlite"_s, 0600);
        QFile::remove(path(u"own.DDB"_s));
        write(u"own.DDB"_s, QByteArray("0000000192QIR0").leftJustified(250, '\0'));
        setMode(u"own.DDB"_s, mode);
        done({u"export"_s, u"PUMP.DDB"_s, u"--to"_s, u"sqlite"_s, u"own.DDB"_s, u"--force"_s});
        EXPECT_EQ(modeOf(u"own.DDB"_s), mode);
    }
}

TEST_P(ExactExchangeTest, ARefusedExportOfAProtectedFileLeavesTheModeOfItsTarget) {
    if (!hasSqlite())
        GTEST_SKIP() << "not run: there is no sqlite3";
    makePumps();
    write(u"secret"_s, "hidden\n");
    done({u"passwd"_s, u"PUMP.DDB"_s, u"--new-password-file"_s, u"secret"_s});
    sqlite({u"wide.sqlite"_s, u"CREATE TABLE Pumps (a)"_s});
    setMode(u"wide.sqlite"_s, 0644);
    const QStringList command{u"export"_s,      u"PUMP.DDB"_s,        u"--to"_s,  u"sqlite"_s,
                              u"wide.sqlite"_s, u"--password-file"_s, u"secret"_s};
    EXPECT_EQ(run(command).status, 2);
    EXPECT_EQ(modeOf(u"wide.sqlite"_s), 0644U);
    done(command + QStringList{u"--replace"_s});
    EXPECT_EQ(modeOf(u"wide.sqlite"_s), 0600U);
}

TEST_P(ExactExchangeTest, NamesOfFilesMeanNothingElseToSqlite) {
    makePumps();
    for (const QString &name : {u"file:u.db"_s, u":memory:"_s, u"file:x?mode=memory"_s}) {
        const QStringList known = filesBesides({});
        const QStringList command{u"export"_s, u"PUMP.DDB"_s, u"--to"_s, u"sqlite"_s, name};
        done(command);
        done(command + QStringList{u"--replace"_s});
        EXPECT_EQ(filesBesides(known), QStringList{name});
        EXPECT_THAT(takenFrom(u"sqlite"_s, name).toStdString(), HasSubstr("Pumps"));
        QFile::remove(path(u"BACK.DDB"_s));
    }
}

TEST_P(ExactExchangeTest, NamesThatSqliteDoesNotReadAreRefusedInSql) {
    const auto refused = [&](const QByteArray &name, const QByteArray &reason) {
        make(u"A.DDB"_s, texts({"a"}, name));
        trouble({u"export"_s, u"A.DDB"_s, u"--to"_s, u"sql"_s, u"-"_s}, "qirdb: A.DDB: " + reason);
    };
    refused("SQLite_x", "the name \"SQLite_x\" begins as those that SQLite keeps for itself");
    make(u"B.DDB"_s, "{\"table\": \"T\", \"fields\": [{\"name\": \"a\\r\\nb\", \"type\": \"long\", \"size\": 0}], "
                     "\"records\": 0}\n");
    const Outcome ends = run({u"export"_s, u"B.DDB"_s, u"--to"_s, u"sql"_s, u"-"_s});
    EXPECT_EQ(ends.status, 2);
    EXPECT_EQ(ends.errors, "qirdb: B.DDB: the name \"a\\r\\nb\" has a line end of two characters, which readers of SQL "
                           "change\n");
}

TEST_P(ExactExchangeTest, EscapesOfJsonAreFourDigits) {
    makePumps();
    for (const char *escape : {"\\u0x41", "\\u+041", "\\u 041", "\\u-041", "\\u041"}) {
        const Outcome result =
            run({u"import"_s, u"PUMP.DDB"_s, u"--from"_s, u"json"_s, u"-"_s}, texts({QByteArray(escape)}));
        EXPECT_EQ(result.status, 2) << escape;
        EXPECT_EQ(result.errors, "qirdb: -: line 2: a text has an escape that is none\n") << escape;
    }
    EXPECT_EQ(run({u"import"_s, u"PUMP.DDB"_s, u"--from"_s, u"json"_s, u"-"_s}, texts({"\\u00eA"})).status, 0);
}

INSTANTIATE_TEST_SUITE_P(Component, ExactExchangeTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
