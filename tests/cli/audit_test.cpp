#include "tests/cli/Program.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QStandardPaths>

#include <gmock/gmock.h>

#include <unistd.h>

#include <fstream>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace qir {

namespace {

/// Devices like PUMP.DDB: A.DDB the same, B.ddb with two other cells, C.WDB with a table more, D.SDB no database.
class AuditTest : public ProgramTest {
protected:
    AuditTest() {
        makePumps();
        QDir().mkpath(path(u"fleet/deep"_s));
        for (const char *name : {"fleet/A.DDB", "fleet/deep/B.ddb", "fleet/C.WDB"})
            EXPECT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(QString::fromLatin1(name))));
        done({u"set"_s, u"fleet/deep/B.ddb"_s, u"Pumps"_s, u"1"_s, u"Speed"_s, u"7"_s});
        done({u"set"_s, u"fleet/deep/B.ddb"_s, u"Pumps"_s, u"2"_s, u"Speed"_s, u"7"_s});
        done({u"add"_s, u"fleet/C.WDB"_s, u"table"_s, u"More"_s});
        write(u"fleet/D.SDB"_s, "no database");
        write(u"fleet/notes.txt"_s, "no database either");
    }
};

TEST_P(AuditTest, TellsWhichFilesDeviateAndOneBadFileStopsNothing) {
    const Outcome result = run({u"audit"_s, u"PUMP.DDB"_s, u"fleet"_s});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output.toStdString(),
                testing::MatchesRegex("different: fleet/C.WDB: More \\(on one side only\\)\n"
                                      "trouble: fleet/D.SDB: [^\n]*\n"
                                      "different: fleet/deep/B.ddb: Pumps \\(2\\)\n"
                                      "4 files: 1 same, 2 different, 1 with trouble\n"));
    QFile::remove(path(u"fleet/D.SDB"_s));
    EXPECT_EQ(run({u"audit"_s, u"PUMP.DDB"_s, u"fleet"_s}).status, 1);
    EXPECT_EQ(run({u"audit"_s, u"PUMP.DDB"_s, u"fleet/A.DDB"_s}).status, 0);
}

TEST_P(AuditTest, PrintsJsonLinesInTheOrderOfTheFiles) {
    write(u"list.txt"_s, "fleet/A.DDB\nfleet/none.DDB\n");
    const Outcome result = run(
        {u"audit"_s, u"PUMP.DDB"_s, u"fleet/deep/B.ddb"_s, u"fleet/C.WDB"_s, u"--list"_s, u"list.txt"_s, u"--json"_s});
    EXPECT_EQ(result.status, 2);
    const QByteArrayList lines = result.output.split('\n');
    ASSERT_EQ(lines.size(), 5);
    EXPECT_EQ(
        lines[0],
        "{\"file\": \"fleet/deep/B.ddb\", \"state\": \"different\", \"tables\": {\"Pumps\": 2}, \"error\": null}");
    EXPECT_EQ(lines[1],
              "{\"file\": \"fleet/C.WDB\", \"state\": \"different\", \"tables\": {\"More\": null}, \"error\": null}");
    EXPECT_EQ(lines[2], "{\"file\": \"fleet/A.DDB\", \"state\": \"same\", \"tables\": {}, \"error\": null}");
    EXPECT_THAT(lines[3].toStdString(),
                HasSubstr("{\"file\": \"fleet/none.DDB\", \"state\": \"trouble\", \"tables\": {}, \"error\": \""));
}

TEST_P(AuditTest, OutputsAreJoinedToOneReport) {
    const QByteArray first = run({u"audit"_s, u"PUMP.DDB"_s, u"fleet/A.DDB"_s, u"fleet/C.WDB"_s, u"--json"_s}).output;
    const QByteArray second = run({u"audit"_s, u"PUMP.DDB"_s, u"fleet/deep"_s, u"--json"_s}).output;
    write(u"one.jsonl"_s, first);
    write(u"two.jsonl"_s, second);
    const Outcome joined = run({u"audit"_s, u"--join"_s, u"one.jsonl"_s, u"--join"_s, u"two.jsonl"_s, u"--json"_s});
    EXPECT_EQ(joined.status, 1);
    EXPECT_EQ(joined.output, first + second);
    const Outcome page = run({u"audit"_s, u"--join"_s, u"one.jsonl"_s, u"two.jsonl"_s, u"--html"_s, u"page.html"_s});
    EXPECT_EQ(page.status, 1);
    EXPECT_EQ(page.output, "different: fleet/C.WDB: More (on one side only)\ndifferent: fleet/deep/B.ddb: Pumps (2)\n"
                           "3 files: 1 same, 2 different, 0 with trouble\n");
    EXPECT_THAT(bytesOf(u"page.html"_s).toStdString(), HasSubstr("<tr><td>Pumps</td><td>1</td><td>2</td></tr>"));
    write(u"one.jsonl"_s, "nothing\n");
    trouble({u"audit"_s, u"--join"_s, u"one.jsonl"_s}, "qirdb: one.jsonl: line 1: it is no line of an audit");
}

TEST_P(AuditTest, TheFirstExampleOfItsPageWorks) {
    QFile page(QStringLiteral(FLEET_PAGE));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QByteArray text = page.readAll();
    const qsizetype begin = text.indexOf("    find ");
    ASSERT_GE(begin, 0);
    QDir().mkpath(path(u"bin"_s));
    ASSERT_TRUE(QFile::link(QStringLiteral(QIRDB), path(u"bin/qirdb"_s)));
    ASSERT_TRUE(QDir(path(u"."_s)).rename(u"fleet"_s, u"site"_s));
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(u"GOLDEN.DDB"_s)));
    QProcess bash;
    bash.setWorkingDirectory(path(u"."_s));
    bash.start(u"bash"_s, {u"-c"_s, u"PATH=$PWD/bin:$PATH\n"_s +
                                        QString::fromUtf8(text.sliced(begin, text.indexOf("\n\n", begin) - begin))});
    ASSERT_TRUE(bash.waitForFinished(-1));
    EXPECT_EQ(bash.exitCode(), 1);
    EXPECT_EQ(bash.readAllStandardError(), "");
    EXPECT_EQ(bash.readAllStandardOutput(), "different: site/deep/B.ddb: Pumps (2)\n"
                                            "2 files: 1 same, 1 different, 0 with trouble\n");
    EXPECT_THAT(bytesOf(u"report.html"_s).toStdString(), HasSubstr("site/deep/B.ddb"));
}

/// Apache Spark itself is run by no test: what it does with each part of the list is done here.
TEST_P(AuditTest, TheCommandThatItsPagePipesThePartsThroughEndsWell) {
    QFile page(QStringLiteral(FLEET_PAGE));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QByteArray text = page.readAll();
    const qsizetype begin = text.indexOf(".pipe([") + 6;
    ASSERT_GT(begin, 6);
    const QJsonArray words = QJsonDocument::fromJson(text.sliced(begin, text.indexOf("])", begin) + 1 - begin)).array();
    ASSERT_EQ(words.size(), 3) << text.sliced(begin).constData();
    QDir().mkpath(path(u"bin"_s));
    ASSERT_TRUE(QFile::link(QStringLiteral(QIRDB), path(u"bin/qirdb"_s)));
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(u"GOLDEN.DDB"_s)));
    QByteArray results;
    for (const char *part : {"fleet/A.DDB\nfleet/C.WDB\n", "fleet/D.SDB\n", ""}) { // a part may be empty
        QProcess pipe;
        pipe.setWorkingDirectory(path(u"."_s));
        pipe.start(u"env"_s, {u"PATH="_s + path(u"bin"_s) + u':' + qEnvironmentVariable("PATH"), words[0].toString(),
                              words[1].toString(), words[2].toString()});
        pipe.write(part);
        pipe.closeWriteChannel();
        ASSERT_TRUE(pipe.waitForFinished(-1));
        EXPECT_EQ(pipe.exitCode(), 0);
        results += pipe.readAllStandardOutput();
    }
    write(u"results"_s, results);
    EXPECT_THAT(run({u"audit"_s, u"--join"_s, u"results"_s}).output.toStdString(),
                HasSubstr("3 files: 1 same, 1 different, 1 with trouble\n"));
}

TEST_P(AuditTest, WhatCannotBeReachedInAFolderIsTrouble) {
    QFile::remove(path(u"fleet/C.WDB"_s));
    QFile::remove(path(u"fleet/D.SDB"_s));
    QFile::remove(path(u"fleet/deep/B.ddb"_s));
    EXPECT_EQ(run({u"audit"_s, u"PUMP.DDB"_s, u"fleet"_s}).status, 0);
    ASSERT_TRUE(QFile::link(path(u"nowhere.DDB"_s), path(u"fleet/dang.DDB"_s)));
    ASSERT_TRUE(QFile::link(path(u"nowhere.txt"_s), path(u"fleet/dang.txt"_s)));
    std::ofstream(path(u"fleet"_s).toStdString() + "/x\xff.DDB") << "no database";
    const Outcome result = run({u"audit"_s, u"PUMP.DDB"_s, u"fleet"_s});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.output.toStdString(), HasSubstr("trouble: fleet/dang.DDB: there is no such file\n"));
    EXPECT_THAT(result.output.toStdString(), HasSubstr("DDB: its name is not UTF-8\n"));
    EXPECT_THAT(result.output.toStdString(), HasSubstr("3 files: 1 same, 0 different, 2 with trouble\n"));
}

TEST_P(AuditTest, ANameThatIsNotUtf8IsTroubleWhateverStandsUnderTheOneThatItIsShownBy) {
    QDir().mkpath(path(u"bytes"_s));
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(u"bytes/x\uFFFD.ddb"_s)));
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(u"bytes/\uFEFFy.ddb"_s)));
    std::ofstream(path(u"bytes"_s).toStdString() + "/x\xff.ddb") << "no database";
    const Outcome folder = run({u"audit"_s, u"PUMP.DDB"_s, u"bytes"_s});
    EXPECT_EQ(folder.status, 2);
    EXPECT_EQ(folder.output, "trouble: bytes/x\uFFFD.ddb: its name is not UTF-8\n"
                             "3 files: 2 same, 0 different, 1 with trouble\n");
    write(u"list"_s, "bytes/x\xff.ddb\r\nbytes/x\uFFFD.ddb\n");
    const Outcome list = run({u"audit"_s, u"PUMP.DDB"_s, u"--list"_s, u"list"_s, u"--json"_s});
    EXPECT_EQ(list.status, 2);
    EXPECT_EQ(list.output, "{\"file\": \"bytes/x\uFFFD.ddb\", \"state\": \"trouble\", \"tables\": {}, "
                           "\"error\": \"its name is not UTF-8\"}\n"
                           "{\"file\": \"bytes/x\uFFFD.ddb\", \"state\": \"same\", \"tables\": {}, "
                           "\"error\": null}\n");
}

TEST_P(AuditTest, AFolderThatCannotBeReadIsTrouble) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "nothing is closed to root";
    ASSERT_TRUE(QFile::setPermissions(path(u"fleet/deep"_s), QFile::Permissions()));
    const Outcome result = run({u"audit"_s, u"PUMP.DDB"_s, u"fleet/deep"_s, u"fleet/A.DDB"_s});
    ASSERT_TRUE(QFile::setPermissions(path(u"fleet/deep"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "trouble: fleet/deep: the folder cannot be read\n"
                             "2 files: 1 same, 0 different, 1 with trouble\n");
}

TEST_P(AuditTest, NothingToCompareIsTrouble) {
    trouble({u"audit"_s, u"PUMP.DDB"_s}, "qirdb: audit: PATH is required; qirdb audit --help tells more");
    QDir().mkpath(path(u"empty"_s));
    trouble({u"audit"_s, u"PUMP.DDB"_s, u"empty"_s}, "qirdb: audit: there is no file to compare");
}

TEST_P(AuditTest, ATroubleNamesItsFileOnceAndALineWithoutAFileIsNone) {
    EXPECT_EQ(run({u"audit"_s, u"PUMP.DDB"_s, u"nowhere"_s}).output.count("nowhere"), 1);
    EXPECT_EQ(run({u"audit"_s, u"PUMP.DDB"_s, u"nowhere"_s, u"--json"_s}).output.count("nowhere"), 1);
    write(u"one.jsonl"_s, "{\"state\": \"same\"}\n");
    trouble({u"audit"_s, u"--join"_s, u"one.jsonl"_s}, "qirdb: one.jsonl: line 1: it is no line of an audit");
}

TEST_P(AuditTest, TheExampleWithParallelSpreadsTheFilesOverTwoHosts) {
    if (QStandardPaths::findExecutable(u"parallel"_s).isEmpty())
        GTEST_SKIP() << "not run: there is no GNU parallel";
    QFile page(QStringLiteral(FLEET_PAGE));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QByteArray text = page.readAll();
    const qsizetype begin = text.indexOf("    parallel ");
    ASSERT_GE(begin, 0);
    QDir().mkpath(path(u"bin"_s));
    ASSERT_TRUE(QFile::link(QStringLiteral(QIRDB), path(u"bin/qirdb"_s)));
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(u"GOLDEN.DDB"_s)));
    for (int number = 0; number < 8; ++number)
        ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(u"fleet/P%1.DDB"_s.arg(number))));
    // In the place of ssh: what would run on a host runs here, from another folder as there, and the host is noted.
    write(u"bin/ssh"_s, "#!/bin/sh\nwhile [ \"${1#-}\" != \"$1\" ]; do shift; done\n"
                        "echo \"$1\" >> \"$PARALLEL_HOME/hosts\"\nshift\n[ \"$1\" = -- ] && shift\n"
                        "exec sh -c \"cd /; $*\"\n");
    QFile(path(u"bin/ssh"_s)).setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    QProcess bash;
    bash.setWorkingDirectory(path(u"."_s));
    // GNU parallel takes its shell and its home from the environment, which may have neither here.
    bash.start(u"bash"_s, {u"-c"_s, u"export PATH=$PWD/bin:$PATH PARALLEL_SSH=$PWD/bin/ssh PARALLEL_HOME=$PWD/home\n"
                                    "export HOME=$PWD/home SHELL=/bin/sh\n"
                                    "mkdir home; touch home/will-cite; find fleet -iname '*.?db' > files\n"_s +
                                        QString::fromUtf8(text.sliced(begin, text.indexOf('\n', begin) - begin))});
    ASSERT_TRUE(bash.waitForFinished(-1));
    EXPECT_EQ(bash.readAllStandardError(), "");
    const QByteArrayList hosts = bytesOf(u"home/hosts"_s).split('\n');
    EXPECT_TRUE(hosts.contains("one"));
    EXPECT_TRUE(hosts.contains("two"));
    EXPECT_THAT(run({u"audit"_s, u"--join"_s, u"all.jsonl"_s}).output.toStdString(),
                HasSubstr("12 files: 9 same, 2 different, 1 with trouble\n"));
}

TEST_P(AuditTest, AKeyPutsRecordsThatMovedTogether) {
    done({u"sort"_s, u"fleet/A.DDB"_s, u"Pumps"_s, u"Speed"_s});
    EXPECT_EQ(run({u"audit"_s, u"PUMP.DDB"_s, u"fleet/A.DDB"_s}).status, 1);
    EXPECT_EQ(run({u"audit"_s, u"PUMP.DDB"_s, u"fleet/A.DDB"_s, u"--key"_s, u"Pumps:Name"_s}).status, 0);
}

TEST_P(AuditTest, OptionsThatMayBeRepeatedStandBeforeTheFilesToo) {
    done({u"sort"_s, u"fleet/A.DDB"_s, u"Pumps"_s, u"Speed"_s});
    write(u"keys"_s, "Pumps:Name\n");
    write(u"word"_s, "hidden\n");
    const QStringList files{u"PUMP.DDB"_s, u"fleet/A.DDB"_s};
    const QList<QStringList> choices{{u"--key"_s, u"Pumps:Name"_s},
                                     {u"--key"_s, u"Pumps:Speed"_s, u"--key"_s, u"Pumps:Name"_s},
                                     {u"--key-file"_s, u"keys"_s},
                                     {u"--table"_s, u"Pumps"_s, u"--key=Pumps:Name"_s},
                                     {u"--password-file"_s, u"word"_s, u"--key"_s, u"Pumps:Name"_s}};
    for (const QStringList &options : choices) {
        const Outcome result = run(QStringList{u"audit"_s} + options + files);
        EXPECT_EQ(result.status, 0) << options.join(u' ').toStdString() << result.errors.toStdString();
        EXPECT_EQ(result.output, "1 files: 1 same, 0 different, 0 with trouble\n") << options.join(u' ').toStdString();
    }
}

TEST_P(AuditTest, AProtectedFileNeedsAPasswordFile) {
    write(u"word"_s, "hidden\n");
    done({u"passwd"_s, u"fleet/A.DDB"_s, u"--new-password-file"_s, u"word"_s});
    EXPECT_THAT(run({u"audit"_s, u"PUMP.DDB"_s, u"fleet/A.DDB"_s}).output.toStdString(),
                HasSubstr("it is protected; use --password-file"));
    EXPECT_EQ(run({u"audit"_s, u"PUMP.DDB"_s, u"fleet/A.DDB"_s, u"--password-file"_s, u"word"_s}).status, 0);
}

INSTANTIATE_TEST_SUITE_P(Component, AuditTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
