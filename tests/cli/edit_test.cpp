#include "tests/cli/Program.h"

#include <QDir>
#include <QProcess>

#include <gmock/gmock.h>

#include <memory>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::StartsWith;

namespace qir {

namespace {

/// Changes of PUMP.DDB: "Pumps" with Name[text:20], Speed[long] and Head[double], two records.
class EditTest : public ProgramTest {
protected:
    EditTest() { makePumps(); }

    QByteArray records(const QString &table = u"Pumps"_s, const QString &file = u"PUMP.DDB"_s) const {
        const QByteArray csv = done({u"export"_s, file, table, u"-"_s});
        return csv.mid(csv.indexOf('\n') + 1);
    }
    QByteArray fields(const QString &table = u"Pumps"_s) const {
        const QByteArray csv = done({u"export"_s, u"PUMP.DDB"_s, table, u"-"_s});
        return csv.left(csv.indexOf('\n'));
    }
    void changes(const QStringList &words) const {
        QStringList arguments = words;
        arguments.insert(1, u"PUMP.DDB"_s);
        EXPECT_EQ(done(arguments), "");
    }
    /// Expects that a change is refused and the file is as it was.
    void refuses(const QStringList &words, int status, const QByteArray &reason) const {
        const QByteArray before = bytesOf(u"PUMP.DDB"_s);
        QStringList arguments = words;
        arguments.insert(1, u"PUMP.DDB"_s);
        const Outcome result = run(arguments);
        EXPECT_EQ(result.status, status) << words.join(u' ').toStdString();
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors.toStdString(), "qirdb: PUMP.DDB: " + reason.toStdString() + "\n");
        EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
    }
    Outcome runs(const QByteArray &script, const QStringList &options = {}) const {
        return run(QStringList{u"run"_s, u"PUMP.DDB"_s, u"-"_s} + options, script);
    }
};

TEST_P(EditTest, GetPrintsTheTextOfACell) {
    EXPECT_EQ(done({u"get"_s, u"PUMP.DDB"_s, u"pumps"_s, u"1"_s, u"speed"_s}), "1500\n");
    EXPECT_EQ(done({u"get"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"2"_s, u"1"_s}), "P 2, spare\n");
    EXPECT_EQ(done({u"get"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"Name=P 2, spare"_s, u"Head"_s}), "0.1\n");
    EXPECT_EQ(done({u"get"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"Speed=-3.0"_s, u"Name"_s, u"--json"_s}), "\"P 2, spare\"\n");
    EXPECT_EQ(done({u"get"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"1"_s, u"Name"_s, u"--quiet"_s}), "");
}

TEST_P(EditTest, ARecordThatIsNotThereIsANegativeAnswer) {
    refuses({u"get"_s, u"Pumps"_s, u"3"_s, u"Name"_s}, 1, "the table \"Pumps\" has no record 3, it has 2");
    refuses({u"get"_s, u"Pumps"_s, u"0"_s, u"Name"_s}, 1, "the table \"Pumps\" has no record 0, it has 2");
    refuses({u"set"_s, u"Pumps"_s, u"99999999999"_s, u"Name"_s, u"x"_s}, 1,
            "the table \"Pumps\" has no record 99999999999, it has 2");
    refuses({u"remove"_s, u"record"_s, u"Pumps"_s, u"Name=P-9"_s}, 1, "no record of the table \"Pumps\" has Name=P-9");
    refuses({u"get"_s, u"Pumps"_s, u"Speed=fast"_s, u"Name"_s}, 1, "no record of the table \"Pumps\" has Speed=fast");
    changes({u"set"_s, u"Pumps"_s, u"2"_s, u"Speed"_s, u"1500"_s});
    refuses({u"get"_s, u"Pumps"_s, u"Speed=1500"_s, u"Name"_s}, 1,
            "the records 1 and 2 of the table \"Pumps\" both have Speed=1500");
}

TEST_P(EditTest, ATableOrFieldThatIsNotThereIsTrouble) {
    refuses({u"get"_s, u"Valves"_s, u"1"_s, u"Name"_s}, 2, "there is no table \"Valves\"");
    refuses({u"get"_s, u"Pumps"_s, u"1"_s, u"Colour"_s}, 2, "the table \"Pumps\" has no field \"Colour\"");
    refuses({u"get"_s, u"Pumps"_s, u"1"_s, u"4"_s}, 2, "the table \"Pumps\" has no field \"4\"");
    refuses({u"get"_s, u"Pumps"_s, u"Colour=red"_s, u"1"_s}, 2, "the table \"Pumps\" has no field \"Colour\"");
    refuses({u"get"_s, u"Pumps"_s, u"first"_s, u"1"_s}, 2,
            "\"first\" names no record: it is neither a number nor of the form FIELD=VALUE");
}

TEST_P(EditTest, SetGivesACellAValueThatItsFieldHolds) {
    changes({u"set"_s, u"Pumps"_s, u"Name=P-1"_s, u"Speed"_s, u"-1450"_s});
    changes({u"set"_s, u"Pumps"_s, u"1"_s, u"Name"_s, u"[a, b]"_s});
    changes({u"set"_s, u"Pumps"_s, u"2"_s, u"Name"_s, u""_s});
    EXPECT_EQ(records(), "\"[a, b]\",-1450,2.5\n\"\",-3,0.1\n");
    changes({u"set"_s, u"Pumps"_s, u"2"_s, u"Name"_s, u"dump"_s}); // a command's name is a value like another
    changes({u"set"_s, u"--"_s, u"Pumps"_s, u"1"_s, u"Name"_s, u"--dry"_s});
    EXPECT_EQ(records(), "--dry,-1450,2.5\ndump,-3,0.1\n");
    refuses({u"set"_s, u"Pumps"_s, u"1"_s, u"Speed"_s, u"fast"_s}, 2, "field \"Speed\": \"fast\" is no number");
    refuses({u"set"_s, u"Pumps"_s, u"1"_s, u"Speed"_s, u"1.5"_s}, 2, "field \"Speed\": \"1.5\" is no whole number");
    refuses({u"set"_s, u"Pumps"_s, u"1"_s, u"Name"_s, u"123456789012345678901"_s}, 2,
            "field \"Name\": \"123456789012345678901\" is longer than the 20 characters of the field");
}

TEST_P(EditTest, WhatIsThereAlreadyIsNotWrittenAgain) {
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    changes({u"set"_s, u"Pumps"_s, u"1"_s, u"Speed"_s, u"1500"_s});
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
}

TEST_P(EditTest, AddMakesTablesFieldsAndRecords) {
    changes({u"add"_s, u"field"_s, u"Pumps"_s, u"On[bool]"_s});
    changes({u"add"_s, u"field"_s, u"Pumps"_s, u"Note[text:5]"_s});
    changes({u"add"_s, u"field"_s, u"Pumps"_s, u"Free"_s});
    changes({u"add"_s, u"record"_s, u"Pumps"_s, u"On=true"_s, u"Name=P=3"_s, u"3=1e3"_s});
    changes({u"add"_s, u"record"_s, u"Pumps"_s});
    EXPECT_EQ(fields(), "Name[text:20],Speed[long],Head[double],On[bool],Note[text:5],Free[text:50]");
    EXPECT_EQ(records(), "P-1,1500,2.5,0,\"\",\"\"\n\"P 2, spare\",-3,0.1,0,\"\",\"\"\nP=3,0,1000,1,\"\",\"\"\n"
                         "\"\",0,0,0,\"\",\"\"\n");
    changes({u"add"_s, u"table"_s, u"[New, one]"_s});
    EXPECT_THAT(done({u"tables"_s, u"PUMP.DDB"_s}).toStdString(), HasSubstr("[New, one]"));
    refuses({u"add"_s, u"field"_s, u"Pumps"_s, u"X[lang]"_s}, 2,
            "field \"X[lang]\": \"lang\" is no type; a name that ends in brackets needs its type behind, as in "
            "X[lang][text]");
    refuses({u"add"_s, u"record"_s, u"Pumps"_s, u"Colour=red"_s}, 2, "the table \"Pumps\" has no field \"Colour\"");
    refuses({u"add"_s, u"record"_s, u"Pumps"_s, u"red"_s}, 2, "\"red\" is not of the form FIELD=VALUE");
    refuses({u"add"_s, u"field"_s, u"Pumps"_s}, 2, "the form is: add field TABLE NAME[type:size]");
}

TEST_P(EditTest, RemoveRenameAndResize) {
    changes({u"remove"_s, u"record"_s, u"Pumps"_s, u"1"_s});
    changes({u"remove"_s, u"field"_s, u"Pumps"_s, u"Speed"_s});
    changes({u"rename"_s, u"field"_s, u"Pumps"_s, u"Head"_s, u"H"_s});
    changes({u"rename"_s, u"table"_s, u"Pumps"_s, u"All"_s});
    changes({u"resize"_s, u"All"_s, u"Name"_s, u"3"_s});
    EXPECT_EQ(fields(u"All"_s), "Name[text:3],H[double]");
    EXPECT_EQ(records(u"All"_s), "P 2,0.1\n");
    refuses({u"resize"_s, u"All"_s, u"H"_s, u"3"_s}, 2, "field \"H\": only text has a size");
    refuses({u"resize"_s, u"All"_s, u"Name"_s, u"-1"_s}, 2, "field \"Name\": its size must be 0 to 65535");
    changes({u"remove"_s, u"table"_s, u"All"_s});
    EXPECT_EQ(done({u"dump"_s, u"PUMP.DDB"_s}), "");
}

TEST_P(EditTest, SortPutsTheRecordsIntoAscendingOrder) {
    done({u"import"_s, u"PUMP.DDB"_s, u"S"_s, u"-"_s}, "A[text:9],N[long]\nb,3\nB,20\n10,1\n9,2\n\"\",7\na,-5\na,3\n");
    changes({u"sort"_s, u"S"_s, u"A"_s});
    EXPECT_EQ(records(u"S"_s), "\"\",7\n9,2\n10,1\na,-5\na,3\nB,20\nb,3\n");
    changes({u"sort"_s, u"S"_s, u"2"_s});
    EXPECT_EQ(records(u"S"_s), "a,-5\n10,1\n9,2\na,3\nb,3\n\"\",7\nB,20\n");
}

TEST_P(EditTest, CopyTakesATableIntoAnotherFileOrTheSameOne) {
    done({u"create"_s, u"OTHER.DDB"_s});
    EXPECT_EQ(done({u"copy"_s, u"PUMP.DDB"_s, u"pumps"_s, u"OTHER.DDB"_s}), "");
    EXPECT_EQ(done({u"copy"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"OTHER.DDB"_s, u"Again"_s}), "");
    EXPECT_EQ(done({u"copy"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"PUMP.DDB"_s, u"Twin"_s}), "");
    const QByteArray all = "P-1,1500,2.5\n\"P 2, spare\",-3,0.1\n";
    EXPECT_EQ(records(u"Pumps"_s, u"OTHER.DDB"_s), all);
    EXPECT_EQ(records(u"Again"_s, u"OTHER.DDB"_s), all);
    EXPECT_EQ(records(u"Twin"_s), all);
    EXPECT_THAT(done({u"tables"_s, u"OTHER.DDB"_s}).toStdString(),
                HasSubstr("Name[text:20], Speed[long], Head[double]"));
    const QByteArray before = bytesOf(u"OTHER.DDB"_s);
    EXPECT_EQ(run({u"copy"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"OTHER.DDB"_s}).status, 2); // the name is taken
    EXPECT_EQ(run({u"copy"_s, u"PUMP.DDB"_s, u"Valves"_s, u"OTHER.DDB"_s}).status, 2);
    EXPECT_EQ(bytesOf(u"OTHER.DDB"_s), before);
}

TEST_P(EditTest, AFileOfCommandsIsCarriedOutInOneGo) {
    done({u"create"_s, u"OTHER.DDB"_s});
    done({u"import"_s, u"OTHER.DDB"_s, u"V alves"_s, u"-"_s}, "A[long]\n1\n");
    const Outcome result = runs("# what the new pump needs\n"
                                "set Pumps Name=P-1 Speed 1450   # slower\n"
                                "\n"
                                "add record Pumps 'Name=P 3, \"new\"' Speed=7\n"
                                "  set Pumps 2 Name \"it's #2, \\\"old\\\"\"\n"
                                "rename table Pumps All\\ pumps\n"
                                "copy OTHER.DDB 'V alves'\n"
                                "copy PUMP.DDB 'All pumps' Twin\n"
                                "get 'All pumps' 3 Name\n"
                                "remove field 'All pumps' \\\n  Head\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "P 3, \"new\"\n");
    EXPECT_EQ(records(u"All pumps"_s), "P-1,1450\n\"it's #2, \"\"old\"\"\",-3\n\"P 3, \"\"new\"\"\",7\n");
    EXPECT_EQ(records(u"Twin"_s).count('\n'), 3);
    EXPECT_EQ(records(u"V alves"_s), "1\n");
}

TEST_P(EditTest, AFileOfCommandsThatFailsChangesNothing) {
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    const auto fails = [&](const QByteArray &script, int status, const QByteArray &reason) {
        const Outcome result = runs(script);
        EXPECT_EQ(result.status, status);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors.toStdString(), "qirdb: -: " + reason.toStdString() + "\n");
        EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
    };
    fails("get Pumps 1 Name\nset Pumps 1 Speed 7\n\nset Pumps 9 Speed 1\n", 1,
          "line 4: the table \"Pumps\" has no record 9, it has 2");
    fails("set Pumps 1 Speed 7\nste Pumps 1 Speed 1\n", 2,
          "line 2: there is no command \"ste\"; did you mean \"set\"?");
    fails("set Pumps 1 Speed 7\nadd row Pumps\n", 2, "line 2: add is followed by one of: table, field, record");
    fails("set Pumps 1 Speed\n", 2, "line 1: the form is: set TABLE RECORD FIELD VALUE");
    fails("set Pumps 1 Name \"two\nlines\"\nset Pumps 1 Name 'a\n", 2, "line 3: a quote is not closed");
}

TEST_P(EditTest, ADryRunShowsTheDifferencesAndWritesNothing) {
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    const Outcome shown = runs("set Pumps 1 Speed 7\nadd table New\n", {u"--dry-run"_s});
    EXPECT_EQ(shown.errors, "");
    EXPECT_EQ(shown.status, 0);
    EXPECT_EQ(shown.output, "only right: New\ndiffers: Pumps (1 cell)\nPumps: record 1, field 2 (Speed): 1500 | 7\n");
    const Outcome json = runs("set Pumps 1 Speed 7\n", {u"--dry-run"_s, u"--json"_s});
    EXPECT_THAT(json.output.toStdString(), HasSubstr("{\"table\": \"Pumps\", \"record\": 1, \"field\": 2, \"left\": "
                                                     "1500, \"right\": 7}\n"));
    const Outcome wrong = runs("set Pumps 1 Speed seven\n", {u"--dry-run"_s});
    EXPECT_EQ(wrong.status, 1);
    EXPECT_EQ(wrong.output, "");
    EXPECT_EQ(wrong.errors, "qirdb: -: line 1: field \"Speed\": \"seven\" is no number\n");
    EXPECT_EQ(runs("set Pumps 1 'Speed 7\n", {u"--dry-run"_s}).status, 1);
    EXPECT_EQ(runs("set Pumps 1 'Speed 7\n", {}).status, 2);
    EXPECT_EQ(run({u"run"_s, u"--dry-run"_s, u"PUMP.DDB"_s, u"none"_s}).status, 2);
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
}

TEST_P(EditTest, CommandsThatRunAtTheSameTimeAllChangeTheFile) {
    constexpr int many = 8;
    done({u"import"_s, u"PUMP.DDB"_s, u"T"_s, u"-"_s}, "I[long]\n" + QByteArray("0\n").repeated(many));
    const QStringList before = QDir(path(u"."_s)).entryList();
    std::vector<std::unique_ptr<QProcess>> runs;
    for (int i = 1; i <= many; ++i) {
        runs.push_back(std::make_unique<QProcess>());
        runs.back()->setWorkingDirectory(path(u"."_s));
        const QString number = QString::number(i);
        runs.back()->start(QStringLiteral(QIRDB), {u"set"_s, u"PUMP.DDB"_s, u"T"_s, number, u"I"_s, number});
    }
    for (const std::unique_ptr<QProcess> &process : runs) {
        ASSERT_TRUE(process->waitForFinished(-1));
        EXPECT_EQ(process->exitCode(), 0);
        EXPECT_EQ(process->readAllStandardError().toStdString(), "");
    }
    EXPECT_EQ(done({u"export"_s, u"PUMP.DDB"_s, u"T"_s, u"-"_s}), "I[long]\n1\n2\n3\n4\n5\n6\n7\n8\n");
    EXPECT_EQ(QDir(path(u"."_s)).entryList(), before);
}

TEST_P(EditTest, EachFileHasAPasswordOfItsOwn) {
    done({u"create"_s, u"OTHER.DDB"_s});
    write(u"one"_s, "first\n");
    write(u"two"_s, "second\n");
    done({u"passwd"_s, u"PUMP.DDB"_s, u"--new-password-file"_s, u"one"_s});
    done({u"passwd"_s, u"OTHER.DDB"_s, u"--new-password-file"_s, u"two"_s});
    done({u"copy"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"OTHER.DDB"_s, u"--password-file"_s, u"one"_s, u"--password-file"_s,
          u"two"_s});
    done({u"copy"_s, u"--password-file"_s, u"one"_s, u"--password-file"_s, u"two"_s, u"PUMP.DDB"_s, u"Pumps"_s,
          u"OTHER.DDB"_s, u"Again"_s});
    EXPECT_EQ(done({u"get"_s, u"--password-file=two"_s, u"OTHER.DDB"_s, u"Again"_s, u"1"_s, u"Speed"_s}), "1500\n");
    done({u"run"_s, u"OTHER.DDB"_s, u"-"_s, u"--password-file"_s, u"two"_s, u"--password-file"_s, u"one"_s},
         "copy PUMP.DDB Pumps More\nset More 1 Speed 8\n");
    EXPECT_EQ(done({u"get"_s, u"OTHER.DDB"_s, u"More"_s, u"1"_s, u"Speed"_s, u"--password-file"_s, u"two"_s}), "8\n");
    EXPECT_EQ(done({u"run"_s, u"OTHER.DDB"_s, u"-"_s, u"--dry-run"_s, u"--password-file"_s, u"two"_s},
                   "set More 1 Speed 9\n"),
              "differs: More (1 cell)\nMore: record 1, field 2 (Speed): 8 | 9\n");
}

INSTANTIATE_TEST_SUITE_P(Component, EditTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
