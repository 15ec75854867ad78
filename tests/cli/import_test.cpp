#include "tests/cli/Program.h"

#include <QDir>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace qir {

namespace {

/// Imports into PUMP.DDB, whose "Pumps" has two records of Name[text:20], Speed[long] and Head[double].
class ImportTest : public ProgramTest {
protected:
    ImportTest() { makePumps(); }

    QByteArray table(const QString &name) const { return done({u"export"_s, u"PUMP.DDB"_s, name, u"-"_s}); }
    Outcome imports(const QString &name, const QByteArray &csv, const QStringList &options = {}) const {
        return run(QStringList{u"import"_s, u"PUMP.DDB"_s, name, u"-"_s} + options, csv);
    }
    void refuses(const QString &name, const QByteArray &csv, const QStringList &options, const QByteArray &line) const {
        const QByteArray before = bytesOf(u"PUMP.DDB"_s);
        const Outcome result = imports(name, csv, options);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors.toStdString(), "qirdb: " + line.toStdString() + "\n");
        EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
    }
};

TEST_P(ImportTest, AppendAddsTheRecordsByTheNamesOfTheFields) {
    EXPECT_EQ(imports(u"pumps"_s, "speed,NAME[text:3]\n7,P-3\n", {u"--append"_s}).errors, "");
    EXPECT_EQ(table(u"Pumps"_s),
              "Name[text:20],Speed[long],Head[double]\nP-1,1500,2.5\n\"P 2, spare\",-3,0.1\nP-3,7,0\n");
}

TEST_P(ImportTest, WhatDoesNotFitTheTableIsNotAppended) {
    const QStringList append{u"--append"_s};
    refuses(u"Pumps"_s, "Name,Colour\nP-3,red\n", append, "-: the table \"Pumps\" has no field \"Colour\"");
    refuses(u"Pumps"_s, "Speed[double]\n1\n", append,
            "-: the field \"Speed\" of the table \"Pumps\" is long, not double");
    refuses(u"Pumps"_s, "Speed,SPEED\n1,2\n", append, "-: the field \"SPEED\" has two columns");
    refuses(u"Pumps"_s, "Speed\n1\nfast\n", append, "-: record 2, field \"Speed\": \"fast\" is no number");
    refuses(u"Valves"_s, "Speed\n1\n", append,
            "PUMP.DDB: there is no table \"Valves\" that the records could be added to");
    refuses(u"Pumps"_s, "Speed\n1\n", {u"--append"_s, u"--replace"_s}, "--replace excludes --append");
}

TEST_P(ImportTest, ReplaceTakesThePlaceOfWhatStandsUnderTheName) {
    done({u"import"_s, u"PUMP.DDB"_s, u"Last"_s, u"-"_s}, "A[long]\n1\n");
    EXPECT_EQ(imports(u"pumps"_s, "New[bool]\ntrue\n", {u"--replace"_s}).errors, "");
    EXPECT_EQ(imports(u"Fresh"_s, "A[long]\n2\n", {u"--replace"_s}).errors, "");
    EXPECT_EQ(done({u"tables"_s, u"PUMP.DDB"_s}),
              "Table  Records  Fields\nPumps        1  New[bool]\nLast         1  A[long]\nFresh        1  A[long]\n");
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    EXPECT_EQ(imports(u"Last"_s, "A[long]\n3\n").status, 2); // nothing is replaced unasked
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
}

TEST_P(ImportTest, AFolderIsTakenInOneSave) {
    ASSERT_TRUE(QDir(path(u"."_s)).mkdir(u"in"_s));
    write(u"in/b.csv"_s, "B[long]\n2\n");
    write(u"in/A table.CSV"_s, "A[long]\n1\n");
    write(u"in/notes.txt"_s, "no table");
    EXPECT_EQ(done({u"import"_s, u"PUMP.DDB"_s, u"in"_s}), "");
    EXPECT_EQ(table(u"A table"_s), "A[long]\n1\n");
    EXPECT_EQ(table(u"b"_s), "B[long]\n2\n");
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    write(u"in/c.csv"_s, "C[long]\nthree\n");
    trouble({u"import"_s, u"PUMP.DDB"_s, u"in"_s, u"--replace"_s},
            "qirdb: in/c.csv: record 1, field \"C\": \"three\" is no number");
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
    write(u"in/c.csv"_s, "C[long]\n3\n");
    done({u"import"_s, u"PUMP.DDB"_s, u"in"_s, u"--replace"_s});
    EXPECT_EQ(table(u"c"_s), "C[long]\n3\n");
    ASSERT_TRUE(QDir(path(u"."_s)).mkdir(u"empty"_s));
    trouble({u"import"_s, u"PUMP.DDB"_s, u"empty"_s}, "qirdb: empty: no CSV file stands in it");
    trouble({u"import"_s, u"PUMP.DDB"_s, u"pumps.csv"_s},
            "qirdb: pumps.csv: it is no folder; a single CSV file needs the name of its table in front");
}

TEST_P(ImportTest, AnotherDelimiterIsTakenWhenItIsSaid) {
    refuses(u"T"_s, "A;B\n1;2\n", {},
            "-: its header has \";\" and no comma: say by --delimiter what separates its values");
    refuses(u"T"_s, "A\tB\n1\t2\n", {},
            "-: its header has tabs and no comma: say by --delimiter what separates its values");
    refuses(u"T"_s, "A|B\n1|2\n", {u"--delimiter"_s, u"||"_s},
            "--delimiter takes one character (ASCII, no quote), or tab");
    EXPECT_EQ(imports(u"T"_s, "A,B\n1,2\n", {u"--delimiter"_s, u""_s}).status, 2);
    EXPECT_EQ(imports(u"T"_s, "A[long];B\n1;\"x;y\"\n", {u"--delimiter"_s, u";"_s}).errors, "");
    EXPECT_EQ(table(u"T"_s), "A[long],B[text:50]\n1,\"x;y\"\n");
    EXPECT_EQ(imports(u"U"_s, "A\tB\n1\t2,5\n", {u"--delimiter"_s, u"tab"_s}).errors, "");
    EXPECT_EQ(table(u"U"_s), "A[long],B[text:50]\n1,\"2,5\"\n");
}

TEST_P(ImportTest, SaysWhereAHeaderOrAQuoteIsWrong) {
    refuses(u"T"_s, "A[lang]\n1\n", {},
            "-: field \"A[lang]\": \"lang\" is no type; a name that ends in brackets needs its type behind, as in "
            "A[lang][text]");
    refuses(u"T"_s, "A,B\n1,\"x\n", {}, "-: line 2, column 3: a quote that is not closed");
    EXPECT_EQ(imports(u"T"_s, "A\n5\" pipe\n").errors, "");
    EXPECT_EQ(table(u"T"_s), "A[text:50]\n\"5\"\" pipe\"\n");
}

TEST_P(ImportTest, ATableOfAnyNameComesBackFromItsExport) {
    EXPECT_EQ(imports(u"T"_s, "\"a;b [m3][double]\"\n1.5\n").errors, "");
    const QByteArray csv = table(u"T"_s);
    EXPECT_EQ(csv, "\"a;b [m3][double]\"\n1.5\n");
    EXPECT_EQ(imports(u"U"_s, csv).errors, "");
    EXPECT_EQ(table(u"U"_s), csv);
}

INSTANTIATE_TEST_SUITE_P(Component, ImportTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
