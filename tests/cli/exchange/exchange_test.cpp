#include "tests/cli/exchange/ExchangeFixture.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace qir {

namespace {

/// Tables go out and come back as they were; what cannot is refused, and leaves nothing behind.
class ExchangeTest : public ExchangeFixture {};

constexpr unsigned seeds = 6;

TEST_P(ExchangeTest, DrawnTablesComeBackFromJsonLines) {
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        const QByteArray lines = DrawnTables(seed, limits()).lines();
        make(u"A.DDB"_s, lines);
        EXPECT_EQ(done({u"dump"_s, u"--json"_s, u"A.DDB"_s}).toStdString(), lines.toStdString()) << seed;
        done({u"export"_s, u"A.DDB"_s, u"--to"_s, u"json"_s, u"a.jsonl"_s});
        EXPECT_EQ(bytesOf(u"a.jsonl"_s).toStdString(), lines.toStdString()) << seed;
        EXPECT_EQ(takenFrom(u"json"_s, u"a.jsonl"_s).toStdString(), lines.toStdString()) << seed;
    }
}

TEST_P(ExchangeTest, DrawnTablesComeBackFromSqlite) {
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        const QByteArray lines = DrawnTables(seed, limits({.hasMinusZero = false, .hasEmptyTables = false})).lines();
        make(u"A.DDB"_s, lines);
        QFile::remove(path(u"a.sqlite"_s));
        done({u"export"_s, u"A.DDB"_s, u"--to"_s, u"sqlite"_s, u"a.sqlite"_s});
        EXPECT_EQ(takenFrom(u"sqlite"_s, u"a.sqlite"_s).toStdString(), lines.toStdString()) << seed;
    }
}

TEST_P(ExchangeTest, DrawnTablesComeBackFromAFolderOfCsvFiles) {
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        const QByteArray lines = DrawnTables(seed, limits({.hasEmptyTables = false})).lines();
        make(u"A.DDB"_s, lines);
        QDir(path(u"csv"_s)).removeRecursively();
        done({u"export"_s, u"A.DDB"_s, u"--to"_s, u"csv"_s, u"csv"_s});
        QFile::remove(path(u"BACK.DDB"_s));
        done({u"create"_s, u"BACK.DDB"_s});
        if (!lines.isEmpty())
            done({u"import"_s, u"BACK.DDB"_s, u"csv"_s});
        expectSameTables(lines);
    }
}

TEST_P(ExchangeTest, SqliteLoadsTheStatementsThatAreWritten) {
    if (!hasSqlite())
        GTEST_SKIP() << "not run: there is no sqlite3";
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        const QByteArray lines =
            DrawnTables(seed, limits({.hasNul = false, .hasMinusZero = false, .hasEmptyTables = false})).lines();
        make(u"A.DDB"_s, lines);
        QFile::remove(path(u"a.sqlite"_s));
        done({u"export"_s, u"A.DDB"_s, u"--to"_s, u"sql"_s, u"a.sql"_s});
        EXPECT_EQ(sqlite({u"a.sqlite"_s}, bytesOf(u"a.sql"_s)), "");
        (void)takenFrom(u"sqlite"_s, u"a.sqlite"_s);
        expectSameTables(lines);
    }
}

TEST_P(ExchangeTest, SqliteHasNoMinusZero) {
    make(u"A.DDB"_s, "{\"table\": \"T\", \"fields\": [{\"name\": \"F\", \"type\": \"double\", \"size\": 0}], "
                     "\"records\": 1}\n[-0]\n");
    done({u"export"_s, u"A.DDB"_s, u"--to"_s, u"sqlite"_s, u"a.sqlite"_s});
    EXPECT_THAT(takenFrom(u"sqlite"_s, u"a.sqlite"_s).toStdString(), HasSubstr("\n[0]\n"));
}

TEST_P(ExchangeTest, TablesOfOthersInSqliteBecomeWhatTheirValuesSay) {
    if (!hasSqlite())
        GTEST_SKIP() << "not run: there is no sqlite3";
    sqlite({u"o.sqlite"_s},
           "CREATE TABLE T (id INTEGER PRIMARY KEY, big INT, real, mixed, words TEXT, none, small int);"
           "INSERT INTO T VALUES (1, 5000000000, 1.5, 'x', 'é', NULL, 70000), (2, NULL, 2, 3, NULL, NULL, 1);");
    EXPECT_EQ(takenFrom(u"sqlite"_s, u"o.sqlite"_s),
              "{\"table\": \"T\", \"fields\": [{\"name\": \"id\", \"type\": \"long\", \"size\": 0}, "
              "{\"name\": \"big\", \"type\": \"double\", \"size\": 0}, {\"name\": \"real\", \"type\": \"double\", "
              "\"size\": 0}, "
              "{\"name\": \"mixed\", \"type\": \"text\", \"size\": 50}, {\"name\": \"words\", \"type\": \"text\", "
              "\"size\": 50}, "
              "{\"name\": \"none\", \"type\": \"text\", \"size\": 50}, {\"name\": \"small\", \"type\": \"long\", "
              "\"size\": 0}], "
              "\"records\": 2}\n[1, 5000000000, 1.5, \"x\", \"é\", \"\", 70000]\n[2, 0, 2, \"3\", \"\", \"\", 1]\n");
    sqlite({u"i.sqlite"_s}, "CREATE TABLE T (a REAL); INSERT INTO T VALUES (9e999);");
    const Outcome infinite = run({u"import"_s, u"BACK.DDB"_s, u"--replace"_s, u"--from"_s, u"sqlite"_s, u"i.sqlite"_s});
    EXPECT_EQ(infinite.status, 2);
    EXPECT_EQ(infinite.errors, "qirdb: i.sqlite: T: record 1, field \"a\": \"inf\" is larger than a number can be\n");
}

TEST_P(ExchangeTest, TablesAreChosenReplacedAndExtended) {
    makePumps();
    done({u"add"_s, u"PUMP.DDB"_s, u"table"_s, u"More"_s});
    done({u"export"_s, u"PUMP.DDB"_s, u"--to"_s, u"sqlite"_s, u"p.sqlite"_s, u"--table"_s, u"pumps"_s});
    trouble({u"export"_s, u"PUMP.DDB"_s, u"--to"_s, u"sqlite"_s, u"p.sqlite"_s},
            "qirdb: p.sqlite: table \"Pumps\" already exists");
    const QByteArray before = takenFrom(u"sqlite"_s, u"p.sqlite"_s);
    EXPECT_EQ(before.count("\"table\""), 1);
    done({u"export"_s, u"PUMP.DDB"_s, u"--to"_s, u"sqlite"_s, u"p.sqlite"_s, u"--replace"_s});
    EXPECT_EQ(takenFrom(u"sqlite"_s, u"p.sqlite"_s).count("\"table\""), 2);
    trouble({u"import"_s, u"PUMP.DDB"_s, u"--from"_s, u"sqlite"_s, u"p.sqlite"_s, u"--table"_s, u"None"_s},
            "qirdb: p.sqlite: it has no table \"None\"");
    done(
        {u"import"_s, u"PUMP.DDB"_s, u"--from"_s, u"sqlite"_s, u"p.sqlite"_s, u"--table"_s, u"Pumps"_s, u"--append"_s});
    EXPECT_THAT(done({u"tables"_s, u"PUMP.DDB"_s}).toStdString(), HasSubstr("Pumps        4 "));
    const QByteArray file = bytesOf(u"PUMP.DDB"_s);
    EXPECT_EQ(run({u"import"_s, u"PUMP.DDB"_s, u"--from"_s, u"sqlite"_s, u"p.sqlite"_s}).status, 2);
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), file) << "nothing is replaced unasked";
    trouble({u"export"_s, u"PUMP.DDB"_s, u"--to"_s, u"json"_s, u"x"_s, u"--replace"_s},
            "qirdb: --replace is for tables in SQLite and PostgreSQL; a file is replaced anyway");
}

TEST_P(ExchangeTest, ADatabaseOfOursIsNoTargetUnlessForced) {
    makePumps();
    const QByteArray head = QByteArray("0000000192QIR0").leftJustified(250, '\0');
    for (const char *kind : {"json", "sql", "sqlite"}) {
        write(u"OTHER.DDB"_s, head);
        const QStringList command{u"export"_s, u"PUMP.DDB"_s, u"--to"_s, QString::fromLatin1(kind), u"OTHER.DDB"_s};
        trouble(command, "qirdb: OTHER.DDB: it is a database; use --force to replace it");
        EXPECT_EQ(bytesOf(u"OTHER.DDB"_s), head);
        done(command + QStringList{u"--force"_s});
        EXPECT_NE(bytesOf(u"OTHER.DDB"_s), head);
    }
    write(u"text.sqlite"_s, "no database of anybody");
    trouble({u"export"_s, u"PUMP.DDB"_s, u"--to"_s, u"sqlite"_s, u"text.sqlite"_s},
            "qirdb: text.sqlite: file is not a database");
    EXPECT_EQ(bytesOf(u"text.sqlite"_s), "no database of anybody");
}

TEST_P(ExchangeTest, WhatComesFromAProtectedFileIsForItsOwnerAlone) {
    makePumps();
    write(u"secret"_s, "hidden\n");
    done({u"passwd"_s, u"PUMP.DDB"_s, u"--new-password-file"_s, u"secret"_s});
    const auto exports = [&](const char *kind, const QString &target) {
        done({u"export"_s, u"PUMP.DDB"_s, u"--to"_s, QString::fromLatin1(kind), target, u"--password-file"_s,
              u"secret"_s});
    };
    for (const char *kind : {"json", "sql", "sqlite"}) {
        exports(kind, QString::fromLatin1(kind));
        EXPECT_EQ(modeOf(QString::fromLatin1(kind)), 0600U) << kind;
    }
    exports("csv", u"csv"_s);
    EXPECT_EQ(modeOf(u"csv/Pumps.csv"_s), 0600U);
    if (!hasSqlite())
        return;
    sqlite({u"wide.sqlite"_s, u"CREATE TABLE other (a)"_s});
    ASSERT_EQ(::chmod(QFile::encodeName(path(u"wide.sqlite"_s)).constData(), 0664), 0);
    exports("sqlite", u"wide.sqlite"_s);
    EXPECT_EQ(modeOf(u"wide.sqlite"_s), 0600U);
}

TEST_P(ExchangeTest, AFullDiskIsToldAndLeavesNothing) {
    QByteArray lines =
        "{\"table\": \"T\", \"fields\": [{\"name\": \"F\", \"type\": \"text\", \"size\": 100}], \"records\": 3000}\n";
    for (int record = 0; record < 3000; ++record)
        lines += "[\"" + QByteArray(90, 'x') + "\"]\n";
    make(u"A.DDB"_s, lines);
    const QStringList known = filesBesides({});
    for (const QString &kind : {u"json"_s, u"sql"_s, u"sqlite"_s, u"csv"_s}) {
        QProcess shell;
        shell.setWorkingDirectory(path(u"."_s));
        shell.start(u"sh"_s, {u"-c"_s, u"trap '' XFSZ; ulimit -f 64; exec \"$0\" export A.DDB --to %1 out"_s.arg(kind),
                              QStringLiteral(QIRDB)});
        ASSERT_TRUE(shell.waitForFinished(-1));
        EXPECT_EQ(shell.exitCode(), 2) << kind.toStdString();
        EXPECT_THAT(shell.readAllStandardError().toStdString(), HasSubstr("qirdb: out")) << kind.toStdString();
        EXPECT_EQ(filesBesides(known), QStringList()) << kind.toStdString();
    }
    trouble({u"export"_s, u"A.DDB"_s, u"--to"_s, u"json"_s, u"/dev/full"_s}, "qirdb: /dev/full: the disk is full");
}

TEST_P(ExchangeTest, LinesThatAreCutOffOrWrongAreRefusedWithTheirNumber) {
    makePumps();
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    const QByteArray head = "{\"table\": \"T\", \"fields\": [{\"name\": \"F\", \"type\": \"byte\", \"size\": 0}, "
                            "{\"name\": \"G\", \"type\": \"text\", \"size\": 2}], \"records\": 2}\n";
    const QList<std::pair<QByteArray, QByteArray>> wrong{
        {head + "[1, \"a\"]\n", "line 2: the file ends before record 2 of the table \"T\""},
        {head + "[1, \"a\"]\n[1]\n", "line 3: a record of 2 values is missing"},
        {head + "[1, \"a\"]\n[1, 2]\n", "line 3: a number stands where a text is missing"},
        {head + "[\"1\", \"a\"]\n", "line 2: a text stands where a number is missing"},
        {head + "[1, \"a]\n", "line 2: a text is not closed"},
        {head + "[1, \"\\u12g4\"]\n", "line 2: a text has an escape that is none"},
        {head + "[1, null]\n", "line 2: a value is neither number nor text"},
        {head + "[1, \"a\"] x\n", "line 2: something stands behind the array"},
        {head + "[256, \"a\"]\n", "T: record 1, field \"F\": \"256\" is out of the range of byte"},
        {head + "[1, \"abc\"]\n", "T: record 1, field \"G\": \"abc\" is longer than the 2 characters of the field"},
        {head + "[1, \"\xFF\"]\n", "T: record 1, field \"G\": \"\xEF\xBF\xBD\" is no UTF-8 text"},
        {"[1]\n", "line 1: a line {\"table\": .., \"fields\": [..], \"records\": N} is missing"},
        {"{\"table\": \"T\", \"fields\": [{\"name\": \"F\", \"type\": \"real\"}], \"records\": 0}\n",
         "line 1: \"real\" is no type"}};
    for (const auto &[lines, reason] : wrong) {
        const Outcome result = run({u"import"_s, u"PUMP.DDB"_s, u"--from"_s, u"json"_s, u"-"_s}, lines);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors, "qirdb: -: " + reason + '\n');
        EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
    }
}

TEST_P(ExchangeTest, WhatSqlHasNotIsRefusedBeforeAnythingIsWritten) {
    make(u"A.DDB"_s, "{\"table\": \"T\", \"fields\": [{\"name\": \"F\", \"type\": \"text\", \"size\": 5}], "
                     "\"records\": 1}\n[\"a\\u0000\"]\n"
                     "{\"table\": \"U\", \"fields\": [], \"records\": 0}\n");
    trouble({u"export"_s, u"A.DDB"_s, u"--to"_s, u"sql"_s, u"-"_s},
            "qirdb: A.DDB: the table \"U\" has no field, and SQLite no such table; choose others by --table");
    trouble({u"export"_s, u"A.DDB"_s, u"--to"_s, u"sql"_s, u"a.sql"_s, u"--table"_s, u"T"_s},
            "qirdb: A.DDB: table \"T\", record 1, field \"F\": the text has a NUL character, which SQL has not");
    EXPECT_FALSE(QFile::exists(path(u"a.sql"_s)));
    make(u"B.DDB"_s, "{\"table\": \"" + QByteArray(64, 'n') +
                         "\", \"fields\": [{\"name\": \"F\", \"type\": \"long\", \"size\": 0}], \"records\": 0}\n");
    EXPECT_THAT(run({u"export"_s, u"B.DDB"_s, u"--to"_s, u"sql"_s, u"-"_s}).errors.toStdString(),
                HasSubstr("is longer than the 63 bytes that PostgreSQL takes"));
    make(u"C.DDB"_s,
         "{\"table\": \"a/b\", \"fields\": [{\"name\": \"F\", \"type\": \"long\", \"size\": 0}], \"records\": 0}\n");
    trouble({u"export"_s, u"C.DDB"_s, u"--to"_s, u"csv"_s, u"folder"_s},
            "qirdb: folder: no file can have the name of the table \"a/b\"");
    EXPECT_FALSE(QFile::exists(path(u"folder"_s)));
}

INSTANTIATE_TEST_SUITE_P(Component, ExchangeTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
