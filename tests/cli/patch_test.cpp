#include "tests/cli/Program.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

class PatchTest : public ProgramTest {
protected:
    void makePair() const {
        make(u"L.DDB"_s, {{u"Pumps"_s, "Name[text:20],Speed[long]\nP-1,1500\nP-2,7\n"}, {u"Gone"_s, "A[long]\n1\n"}});
        make(u"R.DDB"_s,
             {{u"Pumps"_s, "Name[text:20],Speed[long]\nP-1,1500\nP-2,8\nP-3,9\n"}, {u"Come"_s, "A[double]\n0.5\n"}});
    }
    void makePatch(const QStringList &options = {}) const {
        const Outcome made = run(QStringList{u"diff"_s, u"--patch"_s} + options + QStringList{u"L.DDB"_s, u"R.DDB"_s});
        EXPECT_EQ(made.status, 1) << made.errors.toStdString();
        write(u"CHANGE.patch"_s, made.output);
    }
};

TEST_P(PatchTest, PrintsTheJsonLinesWithWhatTheyLeaveOpen) {
    makePair();
    makePatch();
    EXPECT_EQ(bytesOf(u"CHANGE.patch"_s),
              "{\"patch\": 1, \"tables\": 3}\n"
              "{\"table\": \"Come\", \"state\": \"right\", \"cells\": 0, \"records\": [0, 1], \"fields\": [0, 1], "
              "\"leftFields\": [], "
              "\"rightFields\": [{\"name\": \"A\", \"type\": \"double\", \"size\": 0}]}\n"
              "{\"table\": \"Gone\", \"state\": \"left\", \"cells\": 0, \"records\": [1, 0], \"fields\": [1, 0], "
              "\"leftFields\": "
              "[{\"name\": \"A\", \"type\": \"long\", \"size\": 0}], \"rightFields\": []}\n"
              "{\"table\": \"Pumps\", \"state\": \"different\", \"cells\": 3, \"records\": [2, 3], \"fields\": [2, 2], "
              "\"names\": [\"Pumps\", \"Pumps\"], \"leftFields\": [{\"name\": \"Name\", \"type\": \"text\", \"size\": "
              "20}, {\"name\": \"Speed\", \"type\": \"long\", \"size\": 0}], \"rightFields\": [{\"name\": \"Name\", "
              "\"type\": \"text\", \"size\": 20}, {\"name\": \"Speed\", \"type\": \"long\", \"size\": 0}]}\n"
              "{\"table\": \"Come\", \"record\": 1, \"field\": 1, \"left\": null, \"right\": 0.5}\n"
              "{\"table\": \"Gone\", \"record\": 1, \"field\": 1, \"left\": 1, \"right\": null}\n"
              "{\"table\": \"Pumps\", \"record\": 2, \"field\": 2, \"left\": 7, \"right\": 8}\n"
              "{\"table\": \"Pumps\", \"record\": 3, \"field\": 1, \"left\": null, \"right\": \"P-3\"}\n"
              "{\"table\": \"Pumps\", \"record\": 3, \"field\": 2, \"left\": null, \"right\": 9}\n");
}

TEST_P(PatchTest, MakesTheRightFileAndGoesBack) {
    makePair();
    makePatch();
    const QByteArray before = done({u"dump"_s, u"--format=json"_s, u"L.DDB"_s, u"Pumps"_s});
    EXPECT_EQ(done({u"patch"_s, u"L.DDB"_s, u"CHANGE.patch"_s}), "");
    EXPECT_EQ(run({u"diff"_s, u"L.DDB"_s, u"R.DDB"_s}).status, 0);
    EXPECT_EQ(done({u"patch"_s, u"--reverse"_s, u"L.DDB"_s, u"-"_s}, bytesOf(u"CHANGE.patch"_s)), "");
    EXPECT_EQ(done({u"dump"_s, u"--format=json"_s, u"L.DDB"_s, u"Pumps"_s}), before);
    EXPECT_EQ(done({u"tables"_s, u"L.DDB"_s}).count("Come"), 0);
}

TEST_P(PatchTest, ByKeyFindsRecordsThatMoved) {
    makePair();
    makePatch({u"--key"_s, u"Pumps:Name"_s});
    make(u"T.DDB"_s,
         {{u"Pumps"_s, "Name[text:20],Speed[long]\nP-2,7\nP-7,70\nP-1,1500\n"}, {u"Gone"_s, "A[long]\n1\n"}});
    EXPECT_EQ(done({u"patch"_s, u"T.DDB"_s, u"CHANGE.patch"_s}), "");
    EXPECT_EQ(done({u"export"_s, u"T.DDB"_s, u"Pumps"_s, u"-"_s}),
              "Name[text:20],Speed[long]\nP-2,8\nP-7,70\nP-1,1500\nP-3,9\n");
}

TEST_P(PatchTest, TellsWhatDoesNotFitAndWritesNothing) {
    makePair();
    makePatch();
    make(u"T.DDB"_s, {{u"Pumps"_s, "Name[text:20],Speed[long]\nP-1,1500\nP-2,6\n"}, {u"Come"_s, "A[long]\n1\n"}});
    const QByteArray before = bytesOf(u"T.DDB"_s);
    const Outcome result = run({u"patch"_s, u"T.DDB"_s, u"CHANGE.patch"_s});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "qirdb: T.DDB: table \"Come\": it is there already\n"
                             "qirdb: T.DDB: table \"Gone\": it is not there\n"
                             "qirdb: T.DDB: table \"Pumps\": record 2, field \"Speed\": 6 stands there, not 7\n");
    EXPECT_EQ(bytesOf(u"T.DDB"_s), before);
}

TEST_P(PatchTest, ADryRunWritesNothing) {
    makePair();
    makePatch();
    const QByteArray before = bytesOf(u"L.DDB"_s);
    EXPECT_EQ(done({u"patch"_s, u"--dry-run"_s, u"L.DDB"_s, u"CHANGE.patch"_s}), "");
    EXPECT_EQ(bytesOf(u"L.DDB"_s), before);
    EXPECT_EQ(run({u"patch"_s, u"--dry-run"_s, u"R.DDB"_s, u"CHANGE.patch"_s}).status, 1);
}

TEST_P(PatchTest, FieldsChangeTheirNamesTypesSizesAndPlaces) {
    make(u"L.DDB"_s, {{u"T"_s, "A[text:9],B[long],C[text:3]\nlonger,1,x\nq,2,y\n"}});
    make(u"R.DDB"_s, {{u"t"_s, "B[text:4],A[double],D[byte],C[text:7]\nlong,1,3,xx\nq,2,4,y\n"}});
    for (const QStringList &options : {QStringList{}, QStringList{u"--key"_s, u"C"_s}}) {
        makePatch(options);
        done({u"create"_s, u"T.DDB"_s});
        write(u"T.DDB"_s, bytesOf(u"L.DDB"_s));
        EXPECT_EQ(done({u"patch"_s, u"T.DDB"_s, u"CHANGE.patch"_s}), "");
        const QByteArray table = done({u"export"_s, u"T.DDB"_s, u"T"_s, u"-"_s});
        EXPECT_TRUE(table.startsWith("B[text:4],A[double],D[byte],C[text:7]\n")) << table.toStdString();
        EXPECT_EQ(run(QStringList{u"diff"_s, u"T.DDB"_s, u"R.DDB"_s} + options).status, 0);
        EXPECT_EQ(done({u"patch"_s, u"--reverse"_s, u"T.DDB"_s, u"CHANGE.patch"_s}), "");
        EXPECT_EQ(run(QStringList{u"diff"_s, u"T.DDB"_s, u"L.DDB"_s} + options).status, 0);
        QFile::remove(path(u"T.DDB"_s));
    }
}

TEST_P(PatchTest, WhatIsNoPatchIsTroubleWithItsLine) {
    makePair();
    write(u"BAD.patch"_s, "");
    trouble({u"patch"_s, u"L.DDB"_s, u"BAD.patch"_s}, "qirdb: BAD.patch: it is no patch: it is empty");
    write(u"BAD.patch"_s, "{\"table\": \"T\", \"state\": \"same\"}\n");
    trouble({u"patch"_s, u"L.DDB"_s, u"BAD.patch"_s},
            "qirdb: BAD.patch: line 1: it is no patch: its first line is not {\"patch\": 1}");
    write(u"BAD.patch"_s,
          "{\"patch\": 1}\n{\"table\": \"T\", \"record\": 1, \"field\": 1, \"left\": 1, \"right\": 2}\n");
    trouble({u"patch"_s, u"L.DDB"_s, u"BAD.patch"_s},
            "qirdb: BAD.patch: line 2: the table \"T\" has no line before it");
    write(u"BAD.patch"_s, "{\"patch\": 1}\nnothing\n");
    trouble({u"patch"_s, u"L.DDB"_s, u"BAD.patch"_s}, "qirdb: BAD.patch: line 2: it is no JSON object");
}

TEST_P(PatchTest, APatchThatWasCutIsTroubleAndWritesNothing) {
    make(u"L.DDB"_s, {{u"Gone"_s, "A[long]\n1\n"}, {u"Pumps"_s, "Name[text:20],Old[long]\nP-1,1500\nP-2,7\n"}});
    make(u"R.DDB"_s, {{u"Come"_s, "A[double]\n0.5\n"}, {u"Pumps"_s, "Name[text:20],New[long]\nP-2,8\nP-3,9\n"}});
    const QByteArray before = bytesOf(u"L.DDB"_s);
    for (const QStringList &options : {QStringList{}, QStringList{u"--key"_s, u"Pumps:Name"_s}}) {
        makePatch(options);
        const QByteArray whole = bytesOf(u"CHANGE.patch"_s);
        for (qsizetype end = whole.indexOf('\n') + 1; end < whole.size(); end = whole.indexOf('\n', end) + 1) {
            write(u"CUT.patch"_s, whole.first(end));
            EXPECT_EQ(run({u"patch"_s, u"L.DDB"_s, u"CUT.patch"_s}).status, 2) << whole.first(end).toStdString();
            EXPECT_EQ(bytesOf(u"L.DDB"_s), before);
        }
        EXPECT_EQ(done({u"patch"_s, u"--dry-run"_s, u"L.DDB"_s, u"CHANGE.patch"_s}), "");
    }
    write(u"CUT.patch"_s, bytesOf(u"CHANGE.patch"_s).first(bytesOf(u"CHANGE.patch"_s).lastIndexOf('{')));
    trouble({u"patch"_s, u"L.DDB"_s, u"CUT.patch"_s},
            "qirdb: CUT.patch: it is cut short: not all changes of the table \"Pumps\" are there");
}

TEST_P(PatchTest, APatchOfEqualFilesChangesNothing) {
    makePair();
    const QByteArray patch = done({u"diff"_s, u"--patch"_s, u"L.DDB"_s, u"L.DDB"_s});
    const QByteArray before = bytesOf(u"L.DDB"_s);
    EXPECT_EQ(done({u"patch"_s, u"L.DDB"_s, u"-"_s}, patch), "");
    EXPECT_EQ(bytesOf(u"L.DDB"_s), before);
}

INSTANTIATE_TEST_SUITE_P(Component, PatchTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
