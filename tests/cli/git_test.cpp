#include "tests/cli/Program.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gmock/gmock.h>

#include <unistd.h>

#include <cstdio>
#include <fstream>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace qir {

namespace {

/// A repository with PUMP.DDB in it, made with the real git, which runs the program as a driver.
class GitTest : public ProgramTest {
protected:
    GitTest() {
        m_environment = QProcessEnvironment::systemEnvironment();
        const QString home = path(u"home"_s);
        QDir().mkpath(home);
        m_environment.insert(u"HOME"_s, home);
        m_environment.insert(u"XDG_CONFIG_HOME"_s, home);
        m_environment.insert(u"GIT_CONFIG_NOSYSTEM"_s, u"1"_s);
        m_environment.insert(u"GIT_PAGER"_s, u"cat"_s);
        for (const char *role : {"AUTHOR", "COMMITTER"}) {
            m_environment.insert(u"GIT_%1_NAME"_s.arg(QLatin1StringView(role)), u"Somebody"_s);
            m_environment.insert(u"GIT_%1_EMAIL"_s.arg(QLatin1StringView(role)), u"some@body"_s);
        }
        makePumps();
        git({u"init"_s, u"-q"_s, u"-b"_s, u"main"_s});
        write(u".gitignore"_s, "home\n*.csv\n");
        program({u"install-git"_s});
        commit(u"first"_s);
    }

    Outcome start(const QString &name, const QStringList &arguments) const {
        QProcess process;
        process.setWorkingDirectory(path(u"."_s));
        process.setProcessEnvironment(m_environment);
        process.setChildProcessModifier([] { ::setsid(); });
        process.start(name, arguments);
        EXPECT_TRUE(process.waitForFinished(-1));
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }
    Outcome tryGit(const QStringList &arguments) const { return start(u"git"_s, arguments); }
    QByteArray git(const QStringList &arguments) const {
        const Outcome result = tryGit(arguments);
        EXPECT_EQ(result.status, 0) << arguments.join(u' ').toStdString() << result.output.toStdString()
                                    << result.errors.toStdString();
        return result.output;
    }
    QByteArray program(const QStringList &arguments) const {
        const Outcome result = start(QStringLiteral(QIRDB), arguments);
        EXPECT_EQ(result.status, 0) << result.errors.toStdString();
        return result.output;
    }
    void commit(const QString &title) const {
        git({u"add"_s, u"-A"_s});
        git({u"commit"_s, u"-q"_s, u"-m"_s, title});
    }
    void set(const QString &record, const QString &field, const QString &value,
             const QString &file = u"PUMP.DDB"_s) const {
        done({u"set"_s, file, u"Pumps"_s, record, field, value});
    }
    QByteArray records(const QString &file = u"PUMP.DDB"_s) const {
        const QByteArray csv = done({u"export"_s, file, u"Pumps"_s, u"-"_s});
        return csv.mid(csv.indexOf('\n') + 1);
    }
    /// A branch "other" and "main", each one commit further than both were, the current one is main.
    template<class Other, class Main>
    void diverge(Other other, Main main) const {
        git({u"checkout"_s, u"-q"_s, u"-b"_s, u"other"_s});
        other();
        commit(u"other"_s);
        git({u"checkout"_s, u"-q"_s, u"main"_s});
        main();
        commit(u"main"_s);
    }

private:
    QProcessEnvironment m_environment;
};

TEST_P(GitTest, InstallWritesTheAttributesOfAllDatabasesOnce) {
    const QByteArray attributes = bytesOf(u".gitattributes"_s);
    EXPECT_EQ(attributes.count('\n'), 5);
    EXPECT_THAT(attributes.toStdString(), HasSubstr("*.[dD][dD][bB] diff=qirdb merge=qirdb\n"));
    EXPECT_THAT(program({u"install-git"_s}).toStdString(), HasSubstr("has the attributes already"));
    EXPECT_EQ(bytesOf(u".gitattributes"_s), attributes);
    EXPECT_EQ(git({u"check-attr"_s, u"merge"_s, u"x/Y.wDb"_s}), "x/Y.wDb: merge: qirdb\n");
    program({u"install-git"_s, u"--global"_s});
    EXPECT_EQ(bytesOf(u"home/git/attributes"_s), attributes);
    EXPECT_THAT(git({u"config"_s, u"--global"_s, u"merge.qirdb.driver"_s}).toStdString(),
                HasSubstr("merge %O %A %B -o %A --path %P"));
}

TEST_P(GitTest, DiffShowsTheCells) {
    set(u"1"_s, u"Speed"_s, u"1450"_s);
    EXPECT_EQ(git({u"diff"_s}), "tables of PUMP.DDB\ndiffers: Pumps (1 cell)\n"
                                "Pumps: record 1, field 2 (Speed): 1500 | 1450\n");
    EXPECT_THAT(git({u"diff"_s, u"--no-ext-diff"_s}).toStdString(), HasSubstr("-P-1                  1500"));
    commit(u"slower"_s);
    EXPECT_THAT(git({u"log"_s, u"-1"_s, u"-p"_s}).toStdString(), HasSubstr("+P-1                  1450"));
    EXPECT_THAT(git({u"difftool"_s, u"-y"_s, u"-t"_s, u"qirdb"_s, u"HEAD~"_s, u"HEAD"_s}).toStdString(),
                HasSubstr("1500 | 1450"));
}

TEST_P(GitTest, AnyDifftoolIsStartedWithBothFiles) {
    set(u"1"_s, u"Speed"_s, u"1450"_s);
    git({u"config"_s, u"difftool.echo.cmd"_s,
         u"echo TOOL \"$MERGED\"; test -s \"$LOCAL\" && test -s \"$REMOTE\" && echo BOTH"_s});
    EXPECT_EQ(git({u"difftool"_s, u"-y"_s, u"-t"_s, u"echo"_s}), "TOOL PUMP.DDB\nBOTH\n");
}

TEST_P(GitTest, NamesThatBeginWithADashOrAreNoUtf8AreShown) {
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(u"-dash.DDB"_s)));
    git({u"add"_s, u"-A"_s});
    EXPECT_THAT(git({u"diff"_s, u"--cached"_s}).toStdString(), HasSubstr("tables of -dash.DDB\nonly right: Pumps\n"));
    EXPECT_THAT(git({u"diff"_s, u"--cached"_s, u"--no-ext-diff"_s}).toStdString(), HasSubstr("+P-1 "));
    commit(u"dash"_s);
    set(u"1"_s, u"Speed"_s, u"1450"_s, u"./-dash.DDB"_s);
    EXPECT_THAT(git({u"diff"_s}).toStdString(), HasSubstr("1500 | 1450"));
    EXPECT_THAT(git({u"diff"_s, u"--no-ext-diff"_s}).toStdString(), HasSubstr("+P-1                  1450"));
    EXPECT_THAT(git({u"difftool"_s, u"-y"_s, u"-t"_s, u"qirdb"_s}).toStdString(), HasSubstr("1500 | 1450"));
    const QByteArray bytes = bytesOf(u"PUMP.DDB"_s);
    std::ofstream(path(u"."_s).toStdString() + "/x\xff.DDB", std::ios::binary).write(bytes.constData(), bytes.size());
    git({u"add"_s, u"-A"_s});
    EXPECT_THAT(git({u"diff"_s, u"--cached"_s}).toStdString(), HasSubstr("is not UTF-8"));
    commit(u"name"_s);
    std::ofstream(path(u"."_s).toStdString() + "/x\xff.DDB") << "no database";
    EXPECT_THAT(git({u"diff"_s}).toStdString(), HasSubstr("is not UTF-8"));
    EXPECT_THAT(git({u"diff"_s, u"--no-ext-diff"_s}).toStdString(), HasSubstr("is not UTF-8"));
}

TEST_P(GitTest, DiffAndDifftoolShowFilesThatComeAndGo) {
    done({u"create"_s, u"NEW.DDB"_s});
    done({u"copy"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"NEW.DDB"_s});
    git({u"rm"_s, u"-q"_s, u"PUMP.DDB"_s});
    git({u"add"_s, u"-A"_s});
    EXPECT_EQ(git({u"diff"_s, u"--cached"_s, u"--no-renames"_s}),
              "tables of NEW.DDB\nonly right: Pumps\ntables of PUMP.DDB\nonly left: Pumps\n");
    const std::string shown =
        git({u"difftool"_s, u"-y"_s, u"-t"_s, u"qirdb"_s, u"--cached"_s, u"--no-renames"_s}).toStdString();
    EXPECT_THAT(shown, HasSubstr("only right: Pumps\n"));
    EXPECT_THAT(shown, HasSubstr("only left: Pumps\n"));
    EXPECT_EQ(run({u"diff"_s, u"/dev/null"_s, u"NEW.DDB"_s}).output, "only right: Pumps\n");
}

/// The window in the place of the editor: tells what it was started with, each side by its size.
TEST_P(GitTest, TheWindowIsStartedWithBothSidesAlsoOfFilesThatComeAndGo) {
    write(u"editor"_s, "#!/bin/sh\nfor side; do f=${side#--*=}; test -s \"$f\" && echo \"${side%%=*} full\" "
                       "|| echo \"${side%%=*} $f\"; done\n");
    QFile::setPermissions(path(u"editor"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QByteArray command = git({u"config"_s, u"difftool.qir-editor.cmd"_s}).trimmed();
    const qsizetype options = command.indexOf(" --left=");
    ASSERT_GT(options, 0) << command.toStdString();
    EXPECT_THAT(command.left(options).toStdString(), HasSubstr("qir-editor"));
    git({u"config"_s, u"difftool.qir-editor.cmd"_s, u"./editor"_s + QString::fromUtf8(command.mid(options))});
    const QStringList tool{u"difftool"_s, u"-y"_s, u"-t"_s, u"qir-editor"_s, u"--cached"_s, u"--no-renames"_s};
    set(u"1"_s, u"Speed"_s, u"1450"_s);
    git({u"add"_s, u"PUMP.DDB"_s});
    EXPECT_EQ(git(tool), "--left full\n--right full\n");
    git({u"reset"_s, u"-q"_s, u"--hard"_s});
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(u"-NEW.DDB"_s)));
    git({u"add"_s, u"--"_s, u"-NEW.DDB"_s});
    EXPECT_EQ(git(tool), "--left /dev/null\n--right full\n");
    commit(u"new"_s);
    git({u"rm"_s, u"-q"_s, u"PUMP.DDB"_s});
    EXPECT_EQ(git(tool), "--left full\n--right /dev/null\n");
}

TEST_P(GitTest, WhatCannotBeShownIsToldInOneLine) {
    write(u"word"_s, "hidden\n");
    done({u"passwd"_s, u"PUMP.DDB"_s, u"--new-password-file"_s, u"word"_s});
    write(u"BAD.WDB"_s, "no database");
    git({u"add"_s, u"-A"_s});
    const std::string shown = git({u"diff"_s, u"--cached"_s}).toStdString();
    EXPECT_THAT(shown, HasSubstr("tables of PUMP.DDB\n(cannot be compared: "));
    EXPECT_THAT(shown, HasSubstr("it is protected)\n"));
    EXPECT_THAT(shown, HasSubstr("tables of BAD.WDB\n(cannot be compared: "));
    const std::string texts = git({u"diff"_s, u"--cached"_s, u"--no-ext-diff"_s}).toStdString();
    EXPECT_THAT(texts, HasSubstr("+(a protected database: its tables are not shown)"));
    EXPECT_THAT(texts, HasSubstr("+(no database that can be shown: "));
    EXPECT_EQ(done({u"dump"_s, u"--textconv"_s, u"MISSING.DDB"_s}).count('\n'), 1);
}

TEST_P(GitTest, TwoEditsOfOneTableAreMerged) {
    diverge([&] { set(u"1"_s, u"Speed"_s, u"1450"_s); },
            [&] {
                set(u"2"_s, u"Head"_s, u"7.5"_s);
                done({u"add"_s, u"PUMP.DDB"_s, u"record"_s, u"Pumps"_s, u"Name=P-3"_s});
            });
    git({u"merge"_s, u"-q"_s, u"-m"_s, u"both"_s, u"other"_s});
    EXPECT_EQ(records(), "P-1,1450,2.5\n\"P 2, spare\",-3,7.5\nP-3,0,0\n");
    EXPECT_EQ(git({u"status"_s, u"--porcelain"_s}), "");
}

TEST_P(GitTest, AConflictKeepsOursAndIsListedBesideTheFile) {
    diverge([&] { set(u"1"_s, u"Speed"_s, u"1450"_s); },
            [&] {
                set(u"1"_s, u"Speed"_s, u"1600"_s);
                set(u"2"_s, u"Speed"_s, u"8"_s);
            });
    const Outcome result = tryGit({u"merge"_s, u"-m"_s, u"both"_s, u"other"_s});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT((result.output + result.errors).toStdString(), HasSubstr("CONFLICT"));
    EXPECT_EQ(records(), "P-1,1600,2.5\n\"P 2, spare\",8,0.1\n");
    EXPECT_THAT(bytesOf(u"PUMP.DDB.conflicts.json"_s).toStdString(),
                MatchesRegex("[{]\"what\": \"cell\", \"table\": \"Pumps\", \"record\": 1, \"field\": \"Speed\", "
                             "\"base\": 1500, \"ours\": 1600, \"theirs\": 1450, "
                             "\"recordDigest\": \"[0-9a-f]{32}\"[}]\n"));
}

TEST_P(GitTest, ARebaseCarriesEditsAcrossARename) {
    diverge([&] { git({u"mv"_s, u"PUMP.DDB"_s, u"MOVED.DDB"_s}); }, [&] { set(u"1"_s, u"Speed"_s, u"1450"_s); });
    git({u"rebase"_s, u"-q"_s, u"other"_s});
    EXPECT_FALSE(QFile::exists(path(u"PUMP.DDB"_s)));
    EXPECT_EQ(records(u"MOVED.DDB"_s), "P-1,1450,2.5\n\"P 2, spare\",-3,0.1\n");
}

TEST_P(GitTest, AConflictInAFolderThatIsNotThereYetIsListedThere) {
    diverge(
        [&] {
            QDir().mkpath(path(u"deep"_s));
            git({u"mv"_s, u"PUMP.DDB"_s, u"deep/P.DDB"_s});
            set(u"1"_s, u"Speed"_s, u"1450"_s, u"deep/P.DDB"_s);
            set(u"2"_s, u"Speed"_s, u"9"_s, u"deep/P.DDB"_s);
        },
        [&] { set(u"1"_s, u"Speed"_s, u"1600"_s); });
    // So small a file has little left of it that git would know it by.
    const Outcome result = tryGit({u"merge"_s, u"-Xfind-renames=5%"_s, u"-m"_s, u"both"_s, u"other"_s});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors.toStdString(), HasSubstr("qirdb: deep/P.DDB: conflict: table \"Pumps\", record 1"));
    EXPECT_THAT((result.output + result.errors).toStdString(), Not(HasSubstr(".merge_file")));
    EXPECT_EQ(records(u"deep/P.DDB"_s), "P-1,1600,2.5\n\"P 2, spare\",9,0.1\n");
    EXPECT_EQ(bytesOf(u"deep/P.DDB.conflicts.json"_s).count('\n'), 1);
}

TEST_P(GitTest, ADriverThatFailsNamesTheFileAndLeavesNoListOfAnotherMerge) {
    write(u"PUMP.DDB.conflicts.json"_s, "of another merge\n");
    write(u".merge_file_x"_s, "no database");
    const Outcome result = run({u"merge"_s, u"PUMP.DDB"_s, u".merge_file_x"_s, u"PUMP.DDB"_s, u"-o"_s,
                                u".merge_file_x"_s, u"--path"_s, u"PUMP.DDB"_s});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors.toStdString(), StartsWith("qirdb: PUMP.DDB: OURS: "));
    EXPECT_THAT(result.errors.toStdString(), Not(HasSubstr(".merge_file")));
    EXPECT_FALSE(QFile::exists(path(u"PUMP.DDB.conflicts.json"_s)));
}

TEST_P(GitTest, ADriverThatCannotBeginToReadASideNamesTheSide) {
    if (std::string(GetParam().name) != "Fake")
        GTEST_SKIP() << "the fake alone can be told to fail there";
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(u".merge_file_x"_s)));
    qputenv("QIR_FAKE_BEGINS_NO_LOAD", "1");
    const Outcome result = run({u"merge"_s, u".merge_file_x"_s, u"PUMP.DDB"_s, u"PUMP.DDB"_s, u"-o"_s, u"PUMP.DDB"_s,
                                u"--path"_s, u"deep/PUMP.DDB"_s});
    qunsetenv("QIR_FAKE_BEGINS_NO_LOAD");
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors, "qirdb: deep/PUMP.DDB: BASE: There is no thread to read with.\n");
}

TEST_P(GitTest, MergeReplacesNoFileOfAnotherKindUnasked) {
    write(u"hello.txt"_s, "hello\n");
    const QStringList merge{u"merge"_s, u"PUMP.DDB"_s, u"PUMP.DDB"_s, u"PUMP.DDB"_s, u"-o"_s};
    trouble(merge + QStringList{u"hello.txt"_s}, "qirdb: hello.txt: it is no database; use --force to replace it");
    EXPECT_EQ(bytesOf(u"hello.txt"_s), "hello\n");
    done(merge + QStringList{u"hello.txt"_s, u"--force"_s});
    done(merge + QStringList{u"hello.txt"_s});
    write(u"EMPTY.DDB"_s, "");
    done(merge + QStringList{u"EMPTY.DDB"_s});
    done(merge + QStringList{u"NEW.DDB"_s});
}

TEST_P(GitTest, MergeTellsThatItsOutputIsMarkedReadOnly) {
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(u"OUT.DDB"_s)));
    ASSERT_TRUE(QFile::setPermissions(path(u"OUT.DDB"_s), QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    trouble({u"merge"_s, u"PUMP.DDB"_s, u"PUMP.DDB"_s, u"PUMP.DDB"_s, u"-o"_s, u"OUT.DDB"_s},
            "qirdb: OUT.DDB: it is marked read-only");
}

TEST_P(GitTest, MergeLeavesOursAloneWhereItsNameSeemsToBeThatOfTheOutput) {
    if (std::string(GetParam().name) == "Fake")
        GTEST_SKIP() << "the fake follows a link by its text";
    for (const char *side : {"O", "T", "OUT"}) {
        const QString name = QString::fromLatin1(side) + u".DDB"_s;
        ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(name)));
    }
    done({u"set"_s, u"T.DDB"_s, u"Pumps"_s, u"1"_s, u"Speed"_s, u"9"_s});
    const QByteArray folder = QFile::encodeName(path(u"."_s)) + '/';
    for (const QByteArray &name : {QByteArray("O.DDB"), QByteArray("OUT.DDB")}) { // links to what has no text
        const QByteArray place = name == "O.DDB" ? "x\xff.DDB" : "x\xfe.DDB";
        ASSERT_EQ(std::rename((folder + name).constData(), (folder + place).constData()), 0);
        ASSERT_EQ(::symlink(place.constData(), (folder + name).constData()), 0);
    }
    done({u"merge"_s, u"PUMP.DDB"_s, u"O.DDB"_s, u"T.DDB"_s, u"-o"_s, u"OUT.DDB"_s});
    EXPECT_EQ(done({u"get"_s, u"O.DDB"_s, u"Pumps"_s, u"1"_s, u"Speed"_s}), "1500\n");
    EXPECT_EQ(done({u"get"_s, u"OUT.DDB"_s, u"Pumps"_s, u"1"_s, u"Speed"_s}), "9\n");
}

TEST_P(GitTest, AKeyThatFitsNoTableIsTroubleAndTablesWithoutOneAreTold) {
    for (const QString &name : {u"O.DDB"_s, u"T.DDB"_s})
        ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(name)));
    for (const QString &name : {u"PUMP.DDB"_s, u"O.DDB"_s, u"T.DDB"_s})
        done({u"import"_s, name, u"Valves"_s, u"-"_s}, "Tag[long],Size[long]\n1,2\n");
    set(u"1"_s, u"Speed"_s, u"1450"_s, u"T.DDB"_s);
    set(u"2"_s, u"Speed"_s, u"8"_s, u"O.DDB"_s);
    const QStringList merge{u"merge"_s, u"PUMP.DDB"_s, u"O.DDB"_s, u"T.DDB"_s, u"-o"_s, u"OUT.DDB"_s, u"--key"_s};
    trouble(merge + QStringList{u"Z"_s}, "qirdb: OUT.DDB: no table has the fields of the key on all sides: Z");
    trouble(merge + QStringList{u"Pumps:Z"_s},
            "qirdb: OUT.DDB: the table \"Pumps\" has no field \"Z\", which is to be its key");
    done(merge + QStringList{u"Name"_s});
    const Outcome told = run(merge + QStringList{u"Tag"_s});
    EXPECT_EQ(told.status, 0);
    EXPECT_EQ(told.errors, "qirdb: OUT.DDB: the table \"Pumps\" has no key and is merged by position\n");
}

TEST_P(GitTest, TheKeyFileOfTheRepositoryNamesTablesOfOtherFilesToo) {
    write(u".qir-keys"_s, "Valves:Id\nPumps:Name\n");
    commit(u"keys"_s);
    diverge([&] { set(u"1"_s, u"Speed"_s, u"1450"_s); }, [&] { set(u"2"_s, u"Speed"_s, u"8"_s); });
    git({u"merge"_s, u"-q"_s, u"-m"_s, u"both"_s, u"other"_s});
    EXPECT_EQ(records(), "P-1,1450,2.5\n\"P 2, spare\",8,0.1\n");
}

TEST_P(GitTest, ARebaseMergesWhatBothChanged) {
    diverge([&] { set(u"2"_s, u"Name"_s, u"P-2"_s); }, [&] { set(u"1"_s, u"Speed"_s, u"1450"_s); });
    git({u"rebase"_s, u"-q"_s, u"other"_s});
    EXPECT_EQ(records(), "P-1,1450,2.5\nP-2,-3,0.1\n");
}

TEST_P(GitTest, TheKeysOfTheRepositoryTellWhichRecordsBelongTogether) {
    write(u".qir-keys"_s, "# what tells them apart\nPumps:Name\n");
    commit(u"keys"_s);
    diverge(
        [&] {
            done({u"remove"_s, u"PUMP.DDB"_s, u"record"_s, u"Pumps"_s, u"Name=P-1"_s});
        },
        [&] {
            set(u"2"_s, u"Speed"_s, u"8"_s);
            done({u"add"_s, u"PUMP.DDB"_s, u"record"_s, u"Pumps"_s, u"Name=P-3"_s});
        });
    git({u"merge"_s, u"-q"_s, u"-m"_s, u"both"_s, u"other"_s});
    EXPECT_EQ(records(), "\"P 2, spare\",8,0.1\nP-3,0,0\n");
}

TEST_P(GitTest, WithoutAKeyARemovalBesideEditsIsAConflict) {
    diverge(
        [&] {
            done({u"remove"_s, u"PUMP.DDB"_s, u"record"_s, u"Pumps"_s, u"1"_s});
        },
        [&] { set(u"2"_s, u"Speed"_s, u"8"_s); });
    const Outcome result = tryGit({u"merge"_s, u"-m"_s, u"both"_s, u"other"_s});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(records(), "P-1,1500,2.5\n\"P 2, spare\",8,0.1\n");
    EXPECT_THAT(bytesOf(u"PUMP.DDB.conflicts.json"_s).toStdString(), HasSubstr("a key would help"));
}

TEST_P(GitTest, AFileThatBothBranchesAddIsMergedFromNothing) {
    diverge(
        [&] {
            done({u"create"_s, u"NEW.DDB"_s});
            done({u"import"_s, u"NEW.DDB"_s, u"A"_s, u"-"_s}, "X[long]\n1\n");
        },
        [&] {
            done({u"create"_s, u"NEW.DDB"_s});
            done({u"import"_s, u"NEW.DDB"_s, u"B"_s, u"-"_s}, "X[long]\n2\n");
        });
    git({u"merge"_s, u"-q"_s, u"-m"_s, u"both"_s, u"other"_s});
    EXPECT_EQ(done({u"dump"_s, u"NEW.DDB"_s, u"--format"_s, u"csv"_s}), "B\nX[long]\n2\n\nA\nX[long]\n1\n");
}

TEST_P(GitTest, MergeWritesTheResultProtectedAsOurs) {
    write(u"word"_s, "hidden\n");
    for (const QString &name : {u"B.DDB"_s, u"O.DDB"_s, u"T.DDB"_s})
        ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(name)));
    set(u"1"_s, u"Speed"_s, u"1450"_s, u"T.DDB"_s);
    set(u"2"_s, u"Speed"_s, u"8"_s, u"O.DDB"_s);
    done({u"passwd"_s, u"O.DDB"_s, u"--new-password-file"_s, u"word"_s});
    const QByteArray ours = bytesOf(u"O.DDB"_s);
    done({u"merge"_s, u"B.DDB"_s, u"O.DDB"_s, u"T.DDB"_s, u"-o"_s, u"OUT.DDB"_s, u"--password-file"_s, u"word"_s});
    EXPECT_EQ(bytesOf(u"O.DDB"_s), ours);
    EXPECT_EQ(bytesOf(u"OUT.DDB"_s).at(13), '1');
    EXPECT_EQ(done({u"get"_s, u"OUT.DDB"_s, u"Pumps"_s, u"1"_s, u"Speed"_s, u"--password-file"_s, u"word"_s}),
              "1450\n");
    EXPECT_EQ(done({u"get"_s, u"OUT.DDB"_s, u"Pumps"_s, u"2"_s, u"Speed"_s, u"--password-file"_s, u"word"_s}), "8\n");
    set(u"1"_s, u"Speed"_s, u"1600"_s, u"B.DDB"_s);
    const Outcome conflict = run({u"merge"_s, u"PUMP.DDB"_s, u"B.DDB"_s, u"T.DDB"_s, u"-o"_s, u"B.DDB"_s});
    EXPECT_EQ(conflict.status, 1);
    EXPECT_EQ(conflict.errors,
              "qirdb: B.DDB: conflict: table \"Pumps\", record 1, field \"Speed\"\n"
              "qirdb: B.DDB: 1 place in conflict, as OURS has them; B.DDB.conflicts.json lists them, and the editor's "
              "File > Merge Conflicts takes sides\n");
    done({u"merge"_s, u"PUMP.DDB"_s, u"B.DDB"_s, u"PUMP.DDB"_s, u"-o"_s, u"B.DDB"_s});
    EXPECT_FALSE(QFile::exists(path(u"B.DDB.conflicts.json"_s)));
    trouble({u"merge"_s, u"B.DDB"_s, u"B.DDB"_s, u"T.DDB"_s, u"-o"_s, u"OUT.DDB"_s, u"--key"_s, u"Valves:Name"_s},
            "qirdb: OUT.DDB: there is no table \"Valves\", for which a key is given");
}

INSTANTIATE_TEST_SUITE_P(Component, GitTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
