#include "cli/Session.h"
#include "db/QirDatabase.h"
#include "qirtbase/container/FileHeader.h"
#include "tests/cli/Program.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/resource.h>

#include <cstring>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace qir {

namespace {

// --- create, info, tables, dump ---

TEST_P(ProgramTest, CreateMakesAnEmptyDatabase) {
    EXPECT_EQ(done({u"create"_s, u"NEW.DDB"_s}), "");
    EXPECT_EQ(done({u"dump"_s, u"--format"_s, u"json"_s, u"NEW.DDB"_s}), "");
    EXPECT_THAT(done({u"info"_s, u"NEW.DDB"_s}).toStdString(), HasSubstr("Tables:    0\n"));
}

TEST_P(ProgramTest, CreateReplacesNothing) {
    write(u"OLD.DDB"_s, "something");
    trouble({u"create"_s, u"OLD.DDB"_s}, "qirdb: OLD.DDB: it exists already");
    trouble({u"create"_s, u"old.ddb"_s}, "qirdb: old.ddb: it exists already");
    EXPECT_EQ(bytesOf(u"OLD.DDB"_s), "something");
}

TEST_P(ProgramTest, CreateSaysWhereNoFileCanBe) {
    const Outcome result = run({u"create"_s, u"MISSING/NEW.DDB"_s});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors.toStdString(), StartsWith("qirdb: MISSING/NEW.DDB: "));
}

TEST_P(ProgramTest, AReadOnlyFileIsReadAndNotReplaced) {
    if (std::strcmp(GetParam().name, "Real") != 0)
        GTEST_SKIP() << "the fake looks at no permissions";
    makePumps();
    write(u"more.csv"_s, "Name\nfirst\n");
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    ASSERT_TRUE(QFile::setPermissions(path(u"PUMP.DDB"_s), QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    done({u"verify"_s, u"PUMP.DDB"_s});
    trouble({u"import"_s, u"PUMP.DDB"_s, u"More"_s, u"more.csv"_s},
            "qirdb: PUMP.DDB: could not be saved: it is marked read-only; use Save As");
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
}

TEST_P(ProgramTest, InfoTellsTheFigures) {
    makePumps();
    EXPECT_EQ(done({u"info"_s, u"PUMP.DDB"_s}),
              "File:      PUMP.DDB\nProtected: no\nTables:    1\nRecords:   2\nCells:     6\n");
}

TEST_P(ProgramTest, TablesListsThemWithTheirFields) {
    makePumps();
    EXPECT_EQ(done({u"tables"_s, u"PUMP.DDB"_s}),
              "Table  Records  Fields\nPumps        2  Name[text:20], Speed[long], Head[double]\n");
}

TEST_P(ProgramTest, DumpPrintsJsonLines) {
    makePumps();
    EXPECT_EQ(done({u"dump"_s, u"--format"_s, u"json"_s, u"PUMP.DDB"_s}),
              "{\"table\": \"Pumps\", \"fields\": [{\"name\": \"Name\", \"type\": \"text\", \"size\": 20}, "
              "{\"name\": \"Speed\", \"type\": \"long\", \"size\": 0}, "
              "{\"name\": \"Head\", \"type\": \"double\", \"size\": 0}], \"records\": 2}\n"
              "[\"P-1\", 1500, 2.5]\n[\"P 2, spare\", -3, 0.1]\n");
}

TEST_P(ProgramTest, DumpPrintsCsvABlockForEachTable) {
    makePumps();
    done({u"import"_s, u"PUMP.DDB"_s, u"More"_s, u"-"_s}, "A[byte]\n7\n");
    EXPECT_EQ(done({u"dump"_s, u"--format=csv"_s, u"PUMP.DDB"_s}),
              "Pumps\nName[text:20],Speed[long],Head[double]\nP-1,1500,2.5\n\"P 2, spare\",-3,0.1\n"
              "\nMore\nA[byte]\n7\n");
    EXPECT_EQ(done({u"dump"_s, u"--format=csv"_s, u"PUMP.DDB"_s, u"more"_s}), "A[byte]\n7\n");
}

TEST_P(ProgramTest, DumpPrintsColumnsForPeople) {
    makePumps();
    EXPECT_EQ(done({u"dump"_s, u"PUMP.DDB"_s}), "Pumps\n"
                                                "Name [text]  Speed [long]  Head [double]\n"
                                                "P-1                  1500            2.5\n"
                                                "P 2, spare             -3            0.1\n");
}

TEST_P(ProgramTest, AnUnknownTableIsTrouble) {
    makePumps();
    const Outcome result = run({u"dump"_s, u"PUMP.DDB"_s, u"Valves"_s});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors.toStdString(), StartsWith("qirdb: PUMP.DDB: "));
    EXPECT_THAT(result.errors.toStdString(), HasSubstr("Valves"));
}

TEST_P(ProgramTest, ReadingWritesNothing) {
    makePumps();
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    for (const QString &command : {u"info"_s, u"tables"_s, u"dump"_s, u"verify"_s})
        done({command, u"PUMP.DDB"_s});
    done({u"export"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"-"_s});
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
}

TEST_P(ProgramTest, AnOutputThatCannotBeTakenIsTrouble) {
    makePumps();
    const Outcome result = run({u"export"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"/dev/full"_s});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors, "qirdb: /dev/full: the disk is full\n");
}

TEST_P(ProgramTest, AReaderThatClosesThePipeEarlyIsNoTroubleOfOurs) {
    done({u"create"_s, u"BIG.DDB"_s});
    done({u"import"_s, u"BIG.DDB"_s, u"T"_s, u"-"_s}, "I[text:50]\n" + QByteArray(40, 'x').append('\n').repeated(4000));
    for (const QString &ignores : {u""_s, u"trap '' PIPE; "_s}) {
        QProcess bash;
        bash.setWorkingDirectory(path(u"."_s));
        bash.start(u"bash"_s, {u"-c"_s, ignores + u"'%1' dump BIG.DDB | true; echo ${PIPESTATUS[0]}"_s.arg(
                                                      QStringLiteral(QIRDB))});
        ASSERT_TRUE(bash.waitForFinished(-1));
        EXPECT_EQ(bash.readAllStandardError().toStdString(), "");
        EXPECT_EQ(bash.readAllStandardOutput(), "141\n") << ignores.toStdString(); // as the signal ends it
    }
}

TEST_P(ProgramTest, WhatAnotherProgramHasSavedMeanwhileStands) {
    makePumps();
    const QStringList files = QDir(path(u"."_s)).entryList(QDir::Files);
    Session session = Session::open(path(u"PUMP.DDB"_s), {});
    session.database().QIRTableRecordSource(u"Pumps"_s);
    session.database().setQIRTableRecordsPointerOut(1);
    session.database().setQIRTableRecordSetByIndex(2, 7);
    done({u"set"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"1"_s, u"Speed"_s, u"8"_s});
    EXPECT_THROW(session.saveChanges(), FileError);
    EXPECT_THROW(session.save(), FileError);
    EXPECT_EQ(done({u"get"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"1"_s, u"Speed"_s}), "8\n");
    EXPECT_EQ(QDir(path(u"."_s)).entryList(QDir::Files), files);
}

// --- import and export ---

TEST_P(ProgramTest, AFileThatMayNotGrowSoLargeIsTrouble) {
    makePumps();
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    rlimit usual{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &usual), 0);
    const rlimit small{16, usual.rlim_max}; // the program is given it too
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const Outcome exported = run({u"export"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"OUT.CSV"_s});
    const Outcome imported = run({u"import"_s, u"PUMP.DDB"_s, u"New"_s, u"-"_s}, "Name\nx\n");
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &usual), 0);
    EXPECT_EQ(exported.status, 2);
    EXPECT_TRUE(exported.errors.startsWith("qirdb: OUT.CSV: ")) << exported.errors.toStdString();
    if (std::strcmp(GetParam().name, "Real") != 0)
        return; // the fake has no care for its file
    EXPECT_EQ(imported.status, 2);
    EXPECT_TRUE(imported.errors.startsWith("qirdb: PUMP.DDB: ")) << imported.errors.toStdString();
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
}

TEST_P(ProgramTest, ImportTakesEveryType) {
    done({u"create"_s, u"ALL.DDB"_s});
    write(u"all.csv"_s, "On[bool],Small[byte],Mid[int],Big[long],Real[double],When[date],Note[text:9]\n"
                        "true,255,-32768,2147483647,1e300,2024-02-29T23:59:59,\"a \"\"b\"\"\n,c\"\n"
                        "0,0,0,0,0,20240101,\"\"\n"
                        ",,,,,,\n");
    done({u"import"_s, u"ALL.DDB"_s, u"All"_s, u"all.csv"_s});
    const QByteArray json = done({u"dump"_s, u"--format=json"_s, u"ALL.DDB"_s});
    EXPECT_EQ(json.mid(json.indexOf('\n') + 1), "[1, 255, -32768, 2147483647, 1e+300, 20240229.235959, "
                                                "\"a \\\"b\\\"\\n,c\"]\n"
                                                "[0, 0, 0, 0, 0, 20240101, \"\"]\n"
                                                "[0, 0, 0, 0, 0, 0, \"\"]\n");
}

TEST_P(ProgramTest, WhatIsExportedIsImportedTheSame) {
    done({u"create"_s, u"A.DDB"_s});
    done({u"create"_s, u"B.DDB"_s});
    write(u"in.csv"_s, "Name [odd][text:30],x[double],When[date]\n"
                       "\" lead, \"\"q\"\"\r\nand tail \",0.1,2024-02-29 23:59\n"
                       "\"\",-1e-300,20240229\n"
                       "\xF0\x9F\x98\x80,1.7976931348623157e308,12\n");
    done({u"import"_s, u"A.DDB"_s, u"T"_s, u"in.csv"_s});
    done({u"export"_s, u"A.DDB"_s, u"T"_s, u"out.csv"_s});
    done({u"import"_s, u"B.DDB"_s, u"T"_s, u"out.csv"_s});
    const QByteArray dumped = done({u"dump"_s, u"--format=json"_s, u"A.DDB"_s});
    EXPECT_EQ(dumped.count('\n'), 4);
    EXPECT_EQ(done({u"dump"_s, u"--format=json"_s, u"B.DDB"_s}), dumped);
    EXPECT_EQ(done({u"export"_s, u"B.DDB"_s, u"T"_s, u"-"_s}), bytesOf(u"out.csv"_s));
}

TEST_P(ProgramTest, ImportGuessesTypesWithoutAHeaderThatNamesThem) {
    done({u"create"_s, u"G.DDB"_s});
    done({u"import"_s, u"G.DDB"_s, u"G"_s, u"-"_s}, "Name,Speed,Head,On,When,Zip\nP-1,5,2.5,true,2024-02-29,007\n");
    EXPECT_THAT(done({u"tables"_s, u"G.DDB"_s}).toStdString(),
                HasSubstr("Name[text:50], Speed[long], Head[double], On[bool], When[date], Zip[text:50]"));
}

TEST_P(ProgramTest, AnImportThatFailsChangesNothing) {
    makePumps();
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    const std::pair<QByteArray, QByteArray> wrong[] = {
        {"A[long]\n1\nfive\n", "record 2, field \"A\": \"five\" is no number"},
        {"A[byte]\n256\n", "record 1, field \"A\": \"256\" is out of the range of byte"},
        {"A[text:2]\nabc\n", "record 1, field \"A\": \"abc\" is longer than the 2 characters of the field"},
        {"A,B\n1\n", "record 1: it has 1 values, the header has 2"},
        {"A[long:3]\n1\n", "field \"A\": only text has a size"},
        {"", "it has no header line"},
    };
    for (const auto &[csv, reason] : wrong) {
        write(u"wrong.csv"_s, csv);
        trouble({u"import"_s, u"PUMP.DDB"_s, u"New"_s, u"wrong.csv"_s}, "qirdb: wrong.csv: " + reason);
    }
    write(u"twice.csv"_s, "A,a\n1,2\n");
    for (const QStringList &refused : {QStringList{u"PUMP.DDB"_s, u"PUMPS"_s, u"pumps.csv"_s},
                                       QStringList{u"PUMP.DDB"_s, u"New"_s, u"twice.csv"_s}}) {
        const Outcome result = run(QStringList{u"import"_s} + refused);
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.errors.toStdString(), StartsWith("qirdb: PUMP.DDB: "));
    }
    trouble({u"import"_s, u"PUMP.DDB"_s, u"New"_s, u"missing.csv"_s}, "qirdb: missing.csv: no such file or folder");
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
}

TEST_P(ProgramTest, AControlCharacterInAnErrorDoesNotReachTheTerminal) {
    makePumps();
    write(u"wrong.csv"_s, "A[long]\n\"\x1b[31m\"\n");
    trouble({u"import"_s, u"PUMP.DDB"_s, u"New"_s, u"wrong.csv"_s},
            "qirdb: wrong.csv: record 1, field \"A\": \"\\u001b[31m\" is no number");
}

// --- verify ---

TEST_P(ProgramTest, VerifyAnswersWhetherAFileIsSound) {
    makePumps();
    EXPECT_EQ(done({u"verify"_s, u"PUMP.DDB"_s}), "PUMP.DDB: sound\n");
    const QByteArray whole = bytesOf(u"PUMP.DDB"_s);
    write(u"PUMP.DDB"_s, whole.chopped(1));
    const Outcome cut = run({u"verify"_s, u"PUMP.DDB"_s});
    EXPECT_EQ(cut.status, 1);
    EXPECT_EQ(cut.output, "");
    EXPECT_THAT(cut.errors.toStdString(), StartsWith("qirdb: PUMP.DDB: "));
    EXPECT_EQ(cut.errors.count("PUMP.DDB"), 1);
    trouble({u"verify"_s, u"NONE.DDB"_s}, "qirdb: NONE.DDB: there is no such file");
}

TEST_P(ProgramTest, AProtectedFileCutInsideItsHeaderIsRefusedWithoutAskingForAPassword) {
    write(u"CUT.DDB"_s, "0000000192QIR1");
    const Outcome cut = run({u"verify"_s, u"CUT.DDB"_s});
    EXPECT_EQ(cut.status, 1);
    EXPECT_THAT(cut.errors.toStdString(), StartsWith("qirdb: CUT.DDB: "));
}

TEST_P(ProgramTest, AFileThatIsNoDatabaseIsTroubleForEveryOtherCommand) {
    write(u"TEXT.DDB"_s, "Nothing of a database stands in here.");
    for (const QString &command : {u"info"_s, u"tables"_s, u"dump"_s, u"passwd"_s}) {
        const Outcome result = run({command, u"TEXT.DDB"_s});
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.errors.toStdString(), StartsWith("qirdb: TEXT.DDB: "));
    }
}

// --- passwords ---

TEST_P(ProgramTest, APasswordIsSetChangedAndRemoved) {
    makePumps();
    write(u"one"_s, "erste Öffnung\nnot this line\n");
    write(u"two"_s, "two"); // without a line end
    const QStringList file{u"PUMP.DDB"_s};
    done(QStringList{u"passwd"_s} + file + QStringList{u"--new-password-file"_s, u"one"_s});
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s).at(13), '1');
    EXPECT_THAT(done({u"info"_s, u"PUMP.DDB"_s, u"--password-file"_s, u"one"_s}).toStdString(),
                HasSubstr("Protected: yes\n"));
    const Outcome wrong = run({u"verify"_s, u"PUMP.DDB"_s, u"--password-file"_s, u"two"_s});
    EXPECT_EQ(wrong.status, 1);
    EXPECT_THAT(wrong.errors.toStdString(), HasSubstr("password"));
    done({u"passwd"_s, u"PUMP.DDB"_s, u"--password-file"_s, u"one"_s, u"--new-password-file"_s, u"two"_s});
    done({u"import"_s, u"PUMP.DDB"_s, u"Again"_s, u"pumps.csv"_s, u"--password-file"_s, u"two"_s});
    done({u"passwd"_s, u"PUMP.DDB"_s, u"--password-file"_s, u"two"_s, u"--remove"_s});
    EXPECT_NE(bytesOf(u"PUMP.DDB"_s).at(13), '1');
    EXPECT_THAT(done({u"info"_s, u"PUMP.DDB"_s}).toStdString(), HasSubstr("Tables:    2\n"));
}

TEST_P(ProgramTest, AFileThatAsksForMoreThanUsualSaysSoWhenItAsksForThePassword) {
    if (std::strcmp(GetParam().name, "Real") != 0)
        GTEST_SKIP() << "the fake's files ask for nothing";
    makePumps();
    write(u"one"_s, "a word");
    done({u"passwd"_s, u"PUMP.DDB"_s, u"--new-password-file"_s, u"one"_s});
    EXPECT_THAT(runOnTerminal({u"info"_s, u"PUMP.DDB"_s}, {"a word"}).output.toStdString(),
                Not(HasSubstr("more than usual")));
    QByteArray bytes = bytesOf(u"PUMP.DDB"_s);
    bytes[10 + 80] = 6; // passes: twice as many
    QByteArray header = bytes.first(10 + 192);
    sealHeader(header, nullptr);
    write(u"PUMP.DDB"_s, bytes.replace(0, header.size(), header));
    EXPECT_THAT(
        runOnTerminal({u"info"_s, u"PUMP.DDB"_s}, {"a word"}).output.toStdString(),
        HasSubstr("This file asks for more than usual: trying a password takes about 2 times as long, and 256 MiB "
                  "of memory.\r\nPassword of PUMP.DDB: "));
}

TEST_P(ProgramTest, AProtectedFileAsksOnTheTerminalWithoutShowingWhatIsTyped) {
    makePumps();
    const Outcome set = runOnTerminal({u"passwd"_s, u"PUMP.DDB"_s}, {"hidden wörd", "hidden wörd"});
    EXPECT_EQ(set.status, 0) << set.output.toStdString();
    EXPECT_THAT(set.output.toStdString(), HasSubstr("New password of PUMP.DDB: "));
    EXPECT_THAT(set.output.toStdString(), Not(HasSubstr("hidden")));
    const Outcome asked = runOnTerminal({u"info"_s, u"PUMP.DDB"_s}, {"hidden wörd"});
    EXPECT_EQ(asked.status, 0);
    EXPECT_THAT(asked.output.toStdString(), HasSubstr("Password of PUMP.DDB: "));
    EXPECT_THAT(asked.output.toStdString(), Not(HasSubstr("hidden")));
    EXPECT_THAT(asked.output.toStdString(), HasSubstr("Protected: yes"));
}

TEST_P(ProgramTest, TwoNewPasswordsThatDifferChangeNothing) {
    makePumps();
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    const Outcome result = runOnTerminal({u"passwd"_s, u"PUMP.DDB"_s}, {"one", "two"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.output.toStdString(), HasSubstr("differ"));
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
}

TEST_P(ProgramTest, AnEmptyNewPasswordNeedsToBeMeant) {
    makePumps();
    write(u"empty"_s, "\n");
    trouble({u"passwd"_s, u"PUMP.DDB"_s, u"--new-password-file"_s, u"empty"_s},
            "qirdb: PUMP.DDB: the new password is empty; use --remove to leave the file open to everybody");
}

TEST_P(ProgramTest, ANewPasswordThatTheEditorsBoxesCouldNotGiveBackIsRefused) {
    makePumps();
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    const auto refused = [&](const QByteArray &password, const QByteArray &why) {
        write(u"new"_s, password + "\n");
        trouble({u"passwd"_s, u"PUMP.DDB"_s, u"--new-password-file"_s, u"new"_s},
                "qirdb: PUMP.DDB: the new password " + why);
        EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
    };
    refused("blank at the end ", "ends with a blank; the editor could not change it again");
    refused(" ", "ends with a blank; the editor could not change it again");
    const QByteArray tooLong = "is longer than 255 characters; the editor could not open the file with it";
    refused(QByteArray(256, 'x'), tooLong);
    refused(QByteArray("\xF0\x9F\x98\x80").repeated(128), tooLong); // two units each
    const QByteArray noText = "holds something that is no text, or that nobody can type";
    refused("tab\there", noText);
    refused(QByteArray("nul\0here", 8), noText);
    refused("return\rhere", noText);
    refused("escape\x1bhere", noText);
    refused("latin 1: \xE9", noText);
}

TEST_P(ProgramTest, ANewPasswordMayBeginWithABlankAndFillTheEditorsBox) {
    makePumps();
    const auto set = [&](const QString &file, const QByteArray &password) {
        write(file, password + "\n");
        done({u"passwd"_s, u"PUMP.DDB"_s, u"--new-password-file"_s, file});
        done({u"info"_s, u"PUMP.DDB"_s, u"--password-file"_s, file});
        done({u"passwd"_s, u"PUMP.DDB"_s, u"--password-file"_s, file, u"--remove"_s});
    };
    set(u"blank"_s, "  two blanks in front");
    set(u"long"_s, QByteArray(255, 'x'));
}

// Other programs may set them through the component.
TEST_P(ProgramTest, AFileStillOpensWithAPasswordThatWouldBeRefusedToday) {
    makePumps();
    write(u"old"_s, "x \n");
    {
        const QirDatabase database = QirDatabase::create();
        ASSERT_TRUE(database.LoadDtb(path(u"PUMP.DDB"_s), QString()));
        database.NewPassword(QString(), u"x "_s);
        database.setDtbHasChanged(true);
        database.SaveDtb();
        database.setDtbHasChanged(false);
    }
    done({u"info"_s, u"PUMP.DDB"_s, u"--password-file"_s, u"old"_s});
    write(u"new"_s, "y\n");
    done({u"passwd"_s, u"PUMP.DDB"_s, u"--password-file"_s, u"old"_s, u"--new-password-file"_s, u"new"_s});
}

TEST_P(ProgramTest, WithoutATerminalAPasswordMustComeFromAFile) {
    makePumps();
    write(u"one"_s, "one\n");
    done({u"passwd"_s, u"PUMP.DDB"_s, u"--new-password-file"_s, u"one"_s});
    trouble({u"info"_s, u"PUMP.DDB"_s},
            "qirdb: PUMP.DDB: there is no terminal to ask for the password; use --password-file");
    trouble({u"info"_s, u"PUMP.DDB"_s, u"--password-file"_s, u"none"_s}, "qirdb: none: no such file or folder");
    write(u"long"_s, QByteArray(5000, 'x'));
    trouble({u"info"_s, u"PUMP.DDB"_s, u"--password-file"_s, u"long"_s},
            "qirdb: long: its first line is too long for a password");
}

// --- memory ---

TEST_P(ProgramTest, ALackOfMemoryIsToldInWordsWithTheFile) {
    EXPECT_THAT([] { Session::runOn(u"big.csv"_s, [] { throw std::bad_alloc(); }); },
                testing::ThrowsMessage<FileError>("big.csv: There is not enough memory."));
}

// --- the command line ---

TEST_P(ProgramTest, AWrongCommandLineIsTrouble) {
    for (const QStringList &arguments :
         {QStringList{}, QStringList{u"burn"_s}, QStringList{u"dump"_s}, QStringList{u"dump"_s, u"A"_s, u"B"_s, u"C"_s},
          QStringList{u"dump"_s, u"A"_s, u"--format"_s, u"xml"_s},
          QStringList{u"info"_s, u"A"_s, u"--password"_s, u"x"_s}}) {
        const Outcome result = run(arguments);
        EXPECT_EQ(result.status, 2) << arguments.join(u' ').toStdString();
        EXPECT_THAT(result.errors.toStdString(), StartsWith("qirdb: "));
        EXPECT_EQ(result.output, "");
    }
}

TEST_P(ProgramTest, HelpAndVersionAreNoErrors) {
    EXPECT_THAT(done({u"--help"_s}).toStdString(), HasSubstr("Exit status: 0"));
    EXPECT_THAT(done({u"import"_s, u"--help"_s}).toStdString(), HasSubstr("--password-file"));
    EXPECT_THAT(done({u"--version"_s}).toStdString(), testing::MatchesRegex("qirdb [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_P(ProgramTest, AMissingFileIsNamedWithTheReason) {
    const Outcome result = run({u"info"_s, u"NONE.DDB"_s});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors.toStdString(), StartsWith("qirdb: NONE.DDB: "));
    EXPECT_EQ(result.errors.count("NONE.DDB"), 1);
}

std::string titleOf(const testing::TestParamInfo<CliComponent> &info) {
    return info.param.name;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Component, ProgramTest, testing::Values(CLI_COMPONENTS), titleOf);

TEST(ProgramWithoutComponentTest, NoComponentIsTroubleWithTheFoldersSearched) {
    const QTemporaryDir prefix;
    const QString program = prefix.filePath(u"qirdb"_s);
    ASSERT_TRUE(QFile::copy(QStringLiteral(QIRDB), program));
    const ComponentPath path({u"/nowhere/at/all"_s});
    QProcess process;
    process.start(program, {u"info"_s, u"X.DDB"_s});
    ASSERT_TRUE(process.waitForFinished(-1));
    EXPECT_EQ(process.exitCode(), 2);
    const std::string errors = process.readAllStandardError().toStdString();
    EXPECT_THAT(errors, StartsWith("qirdb: No component serves \"QIRTBase.clsQirDatabase\""));
    EXPECT_THAT(errors, HasSubstr("/nowhere/at/all"));
}

} // namespace qir
