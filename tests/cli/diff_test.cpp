#include "tests/cli/Program.h"

#include <gmock/gmock.h>

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace qir {

namespace {

class DiffTest : public ProgramTest {
protected:
    /// L.DDB and R.DDB: a table on either side only, equal ones, and one with two differing cells.
    void makePair() const {
        make(u"L.DDB"_s, {{u"Pumps"_s, "Name[text:20],Speed[long]\nP-1,1500\nP-2,7\n"},
                          {u"Only here"_s, "A[byte]\n1\n"},
                          {u"Same"_s, "A[double]\n0.5\n"}});
        make(u"R.DDB"_s, {{u"Same"_s, "Other[double]\n0.5\n"},
                          {u"PUMPS"_s, "Name[text:20],Speed[long]\np-1,1500\nP-2,8\n"},
                          {u"Over there"_s, "A[byte]\n1\n"}});
    }
};

TEST_P(DiffTest, TellsTheTablesThenTheCells) {
    makePair();
    const Outcome result = run({u"diff"_s, u"L.DDB"_s, u"R.DDB"_s});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "only left: Only here\n"
                             "only right: Over there\n"
                             "differs: Pumps (2 cells)\n"
                             "same: Same\n"
                             "Pumps: record 1, field 1 (Name): \"P-1\" | \"p-1\"\n"
                             "Pumps: record 2, field 2 (Speed): 7 | 8\n");
}

TEST_P(DiffTest, TellsTheTablesAloneWithSummary) {
    makePair();
    const Outcome result = run({u"diff"_s, u"--summary"_s, u"L.DDB"_s, u"R.DDB"_s});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "only left: Only here\nonly right: Over there\ndiffers: Pumps (2 cells)\nsame: Same\n");
}

TEST_P(DiffTest, PrintsJsonLines) {
    makePair();
    const Outcome result = run({u"diff"_s, u"--json"_s, u"L.DDB"_s, u"R.DDB"_s});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(
        result.output,
        "{\"table\": \"Only here\", \"state\": \"left\", \"cells\": 0, \"records\": [1, 0], \"fields\": [1, 0]}\n"
        "{\"table\": \"Over there\", \"state\": \"right\", \"cells\": 0, \"records\": [0, 1], \"fields\": [0, 1]}\n"
        "{\"table\": \"Pumps\", \"state\": \"different\", \"cells\": 2, \"records\": [2, 2], \"fields\": [2, 2]}\n"
        "{\"table\": \"Same\", \"state\": \"same\", \"cells\": 0, \"records\": [1, 1], \"fields\": [1, 1]}\n"
        "{\"table\": \"Pumps\", \"record\": 1, \"field\": 1, \"left\": \"P-1\", \"right\": \"p-1\"}\n"
        "{\"table\": \"Pumps\", \"record\": 2, \"field\": 2, \"left\": 7, \"right\": 8}\n");
    for (const QByteArray &line : result.output.split('\n')) {
        if (line.isEmpty())
            continue;
        EXPECT_TRUE(QJsonDocument::fromJson(line).isObject()) << line.toStdString();
    }
    const Outcome summary = run({u"diff"_s, u"--json"_s, u"--summary"_s, u"L.DDB"_s, u"R.DDB"_s});
    EXPECT_EQ(summary.output.count('\n'), 4);
}

TEST_P(DiffTest, FindsADatabaseTheSameAsItself) {
    makePair();
    EXPECT_EQ(done({u"diff"_s, u"L.DDB"_s, u"L.DDB"_s}), "same: Only here\nsame: Pumps\nsame: Same\n");
    done({u"create"_s, u"E.DDB"_s});
    EXPECT_EQ(done({u"diff"_s, u"E.DDB"_s, u"E.DDB"_s}), "");
}

TEST_P(DiffTest, CountsRecordsAndFieldsOfOneSideOnly) {
    make(u"L.DDB"_s, {{u"T"_s, "A[long],B[text]\n1,x\n2,y\n"}});
    make(u"R.DDB"_s, {{u"T"_s, "A[long]\n1\n"}});
    const Outcome result = run({u"diff"_s, u"L.DDB"_s, u"R.DDB"_s});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "differs: T (3 cells, 2 | 1 records, 2 | 1 fields)\n"
                             "T: record 1, field 2 (B): \"x\" | nothing\n"
                             "T: record 2, field 1 (A): 2 | nothing\n"
                             "T: record 2, field 2 (B): \"y\" | nothing\n");
    const Outcome json = run({u"diff"_s, u"--json"_s, u"R.DDB"_s, u"L.DDB"_s});
    EXPECT_THAT(json.output.toStdString(),
                HasSubstr("{\"table\": \"T\", \"record\": 2, \"field\": 1, \"left\": null, \"right\": 2}\n"));
}

TEST_P(DiffTest, TellsANumberFromItsText) {
    make(u"L.DDB"_s, {{u"T"_s, "A[long]\n5\n"}});
    make(u"R.DDB"_s, {{u"T"_s, "A[text]\n5\n"}});
    EXPECT_EQ(run({u"diff"_s, u"L.DDB"_s, u"R.DDB"_s}).output,
              "differs: T (1 cell)\nT: record 1, field 1 (A): 5 | \"5\"\n");
}

TEST_P(DiffTest, KeepsEveryTextOnItsLine) {
    make(u"L.DDB"_s, {{u"T %1 %2"_s, "A[text]\n\"two\nlines %3\"\n"}});
    make(u"R.DDB"_s, {{u"T %1 %2"_s, "A[text]\none\n"}});
    EXPECT_EQ(run({u"diff"_s, u"L.DDB"_s, u"R.DDB"_s}).output,
              "differs: T %1 %2 (1 cell)\nT %1 %2: record 1, field 1 (A): \"two\\nlines %3\" | \"one\"\n");
}

TEST_P(DiffTest, ChangesNeitherFile) {
    makePair();
    const QByteArray left = bytesOf(u"L.DDB"_s);
    const QByteArray right = bytesOf(u"R.DDB"_s);
    run({u"diff"_s, u"L.DDB"_s, u"R.DDB"_s});
    EXPECT_EQ(bytesOf(u"L.DDB"_s), left);
    EXPECT_EQ(bytesOf(u"R.DDB"_s), right);
}

TEST_P(DiffTest, AFileThatCannotBeLoadedIsTrouble) {
    makePair();
    write(u"BROKEN.DDB"_s, "no database");
    const Outcome result = run({u"diff"_s, u"L.DDB"_s, u"BROKEN.DDB"_s});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(result.errors.startsWith("qirdb: BROKEN.DDB: ")) << result.errors.toStdString();
    EXPECT_EQ(run({u"diff"_s, u"L.DDB"_s}).status, 2);
}

TEST_P(DiffTest, ReadsAPasswordForEachFileOrOneForBoth) {
    makePair();
    write(u"left.txt"_s, "one\n");
    write(u"right.txt"_s, "two\n");
    done({u"passwd"_s, u"L.DDB"_s, u"--new-password-file"_s, u"left.txt"_s});
    EXPECT_EQ(run({u"diff"_s, u"L.DDB"_s, u"R.DDB"_s, u"--password-file"_s, u"left.txt"_s}).status, 1);
    EXPECT_EQ(run({u"diff"_s, u"R.DDB"_s, u"L.DDB"_s, u"--password-file"_s, u"left.txt"_s}).status, 1);
    done({u"passwd"_s, u"R.DDB"_s, u"--new-password-file"_s, u"right.txt"_s});
    EXPECT_EQ(run({u"diff"_s, u"--password-file"_s, u"left.txt"_s, u"--password-file"_s, u"right.txt"_s, u"L.DDB"_s,
                   u"R.DDB"_s})
                  .status,
              1);
    EXPECT_EQ(run({u"diff"_s, u"--password-file"_s, u"left.txt"_s, u"L.DDB"_s, u"R.DDB"_s}).status, 2);
    EXPECT_EQ(done({u"diff"_s, u"--password-file"_s, u"left.txt"_s, u"L.DDB"_s, u"L.DDB"_s}).count("same: "), 3);
}

TEST_P(DiffTest, AsksForThePasswordOfEachFile) {
    makePair();
    write(u"left.txt"_s, "one\n");
    write(u"right.txt"_s, "two\n");
    done({u"passwd"_s, u"L.DDB"_s, u"--new-password-file"_s, u"left.txt"_s});
    done({u"passwd"_s, u"R.DDB"_s, u"--new-password-file"_s, u"right.txt"_s});
    const Outcome result = runOnTerminal({u"diff"_s, u"--summary"_s, u"L.DDB"_s, u"R.DDB"_s}, {"one", "two"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output.toStdString(), HasSubstr("Password of L.DDB: "));
    EXPECT_THAT(result.output.toStdString(), HasSubstr("Password of R.DDB: "));
    EXPECT_THAT(result.output.toStdString(), HasSubstr("differs: Pumps (2 cells)"));
}

INSTANTIATE_TEST_SUITE_P(Component, DiffTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
