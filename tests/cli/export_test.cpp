#include "tests/cli/Program.h"

#include <QFile>

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace qir {

namespace {

/// What an export may replace, and who may read what it writes.
class ExportTest : public ProgramTest {
protected:
    mode_t modeOf(const QString &name) const {
        struct stat status {};
        EXPECT_EQ(::stat(QFile::encodeName(path(name)).constData(), &status), 0);
        return status.st_mode & 07777;
    }
    void setMode(const QString &name, mode_t mode) const {
        EXPECT_EQ(::chmod(QFile::encodeName(path(name)).constData(), mode), 0);
    }
    /// PUMP.DDB behind the password of the file "secret".
    void makeProtectedPumps() const {
        makePumps();
        write(u"secret"_s, "hidden\n");
        done({u"passwd"_s, u"PUMP.DDB"_s, u"--new-password-file"_s, u"secret"_s});
    }
    void expectRefused(const QString &target) const {
        const Outcome result = run({u"export"_s, u"PUMP.DDB"_s, u"Pumps"_s, target});
        EXPECT_EQ(result.status, 2) << target.toStdString();
        EXPECT_THAT(result.errors.toStdString(), StartsWith("qirdb: " + target.toStdString() + ": "));
        EXPECT_THAT(result.errors.toStdString(), EndsWith("; use --force to replace it\n"));
    }
};

// The fake keeps its tables in a form of its own: what counts is the head of the file.
const QByteArray headOfADatabase = QByteArray("0000000192QIR0").leftJustified(250, '\0');

TEST_P(ExportTest, ADatabaseIsNotReplacedWhateverItsName) {
    makePumps();
    write(u"OTHER.DDB"_s, headOfADatabase);
    write(u"looks like.csv"_s, headOfADatabase);
    for (const QString &name : {u"OTHER.DDB"_s, u"looks like.csv"_s}) {
        expectRefused(name);
        EXPECT_EQ(bytesOf(name), headOfADatabase);
    }
}

TEST_P(ExportTest, ALockedOrDamagedOrNewerDatabaseIsNotReplacedEither) {
    makePumps();
    for (const QByteArray &head : {QByteArray("0000000192QIR1"), QByteArray("0000004096QIR0\xff\xff")}) {
        write(u"OTHER.DDB"_s, head);
        expectRefused(u"OTHER.DDB"_s);
        EXPECT_EQ(bytesOf(u"OTHER.DDB"_s), head);
    }
}

TEST_P(ExportTest, TheSourceIsNotReplacedUnderAnyNameOrLink) {
    makePumps();
    const QByteArray before = bytesOf(u"PUMP.DDB"_s);
    ASSERT_TRUE(QFile::link(u"PUMP.DDB"_s, path(u"soft.csv"_s)));
    ASSERT_EQ(
        ::link(QFile::encodeName(path(u"PUMP.DDB"_s)).constData(), QFile::encodeName(path(u"hard.csv"_s)).constData()),
        0);
    for (const QString &name : {u"PUMP.DDB"_s, u"./PUMP.DDB"_s, u"soft.csv"_s, u"hard.csv"_s})
        expectRefused(name);
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
    EXPECT_EQ(bytesOf(u"hard.csv"_s), before);
}

TEST_P(ExportTest, ForceReplacesADatabase) {
    makePumps();
    write(u"OTHER.DDB"_s, headOfADatabase);
    done({u"export"_s, u"--force"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"OTHER.DDB"_s});
    EXPECT_THAT(bytesOf(u"OTHER.DDB"_s).toStdString(), StartsWith("Name[text:20],"));
}

TEST_P(ExportTest, AnyOtherFileIsReplacedAsBefore) {
    makePumps();
    for (const char *old : {"", "0", "0000000191QIR0 no header is that short", "0000000192QIX0", "a,b\n1,2\n"}) {
        write(u"out.csv"_s, old);
        done({u"export"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"out.csv"_s});
        EXPECT_THAT(bytesOf(u"out.csv"_s).toStdString(), StartsWith("Name[text:20],")) << old;
    }
}

TEST_P(ExportTest, WhatCannotBeLookedIntoIsNotReplaced) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may read everything";
    makePumps();
    write(u"closed.csv"_s, headOfADatabase);
    setMode(u"closed.csv"_s, 0200);
    const Outcome result = run({u"export"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"closed.csv"_s});
    EXPECT_EQ(result.status, 2);
    setMode(u"closed.csv"_s, 0600);
    EXPECT_EQ(bytesOf(u"closed.csv"_s), headOfADatabase);
}

TEST_P(ExportTest, WhatComesFromAProtectedFileIsForItsOwnerAlone) {
    makeProtectedPumps();
    const QStringList command{u"export"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"out.csv"_s, u"--password-file"_s, u"secret"_s};
    done(command);
    EXPECT_EQ(modeOf(u"out.csv"_s), 0600U);
    setMode(u"out.csv"_s, 0664);
    done(command);
    EXPECT_EQ(modeOf(u"out.csv"_s), 0600U) << "a wider file that stood there";
    setMode(u"out.csv"_s, 0400);
    done(command);
    EXPECT_EQ(modeOf(u"out.csv"_s), 0400U) << "a narrower one";
}

TEST_P(ExportTest, WhatComesFromAnOpenFileKeepsTheModeThatStoodThere) {
    makePumps();
    write(u"out.csv"_s, "old");
    setMode(u"out.csv"_s, 0640);
    done({u"export"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"out.csv"_s});
    EXPECT_EQ(modeOf(u"out.csv"_s), 0640U);
}

// --- values that a spreadsheet would compute ---

TEST_P(ExportTest, FormulasAreEscapedWhenAskedFor) {
    done({u"create"_s, u"F.DDB"_s});
    done({u"import"_s, u"F.DDB"_s, u"T"_s, u"-"_s},
         "=Name[text:20],N[long]\n=1+2,-5\n\" @SUM(A1)\",1\n+49 30,2\n-x,3\n\"\t=1\",4\nplain=1,5\n'=x,6\n");
    EXPECT_EQ(done({u"export"_s, u"F.DDB"_s, u"T"_s, u"-"_s}),
              "=Name[text:20],N[long]\n=1+2,-5\n\" @SUM(A1)\",1\n+49 30,2\n-x,3\n\"\t=1\",4\nplain=1,5\n'=x,6\n");
    const QByteArray escaped =
        "'=Name[text:20],N[long]\n'=1+2,-5\n' @SUM(A1),1\n'+49 30,2\n'-x,3\n\"'\t=1\",4\nplain=1,5\n"
        "'=x,6\n";
    EXPECT_EQ(done({u"export"_s, u"--escape-formulas"_s, u"F.DDB"_s, u"T"_s, u"-"_s}), escaped);
    EXPECT_EQ(done({u"dump"_s, u"--format=csv"_s, u"--escape-formulas"_s, u"F.DDB"_s, u"T"_s}), escaped);
}

TEST_P(ExportTest, EscapingFormulasIsRefusedWhereNothingWouldBeEscaped) {
    makePumps();
    for (const QString &target : {u"json"_s, u"sql"_s, u"sqlite"_s, u"postgresql"_s})
        trouble({u"export"_s, u"--escape-formulas"_s, u"PUMP.DDB"_s, u"--to"_s, target, u"out"_s},
                "qirdb: --escape-formulas is for CSV");
    EXPECT_FALSE(QFile::exists(path(u"out"_s)));
    for (const QString &form : {u"--format=json"_s, u"--format=text"_s, u"--json"_s})
        trouble({u"dump"_s, u"--escape-formulas"_s, form, u"PUMP.DDB"_s}, "qirdb: --escape-formulas is for CSV");
    trouble({u"dump"_s, u"--escape-formulas"_s, u"PUMP.DDB"_s}, "qirdb: --escape-formulas is for CSV");
    done({u"export"_s, u"--escape-formulas"_s, u"PUMP.DDB"_s, u"--to"_s, u"csv"_s, u"out"_s});
}

std::string titleOf(const testing::TestParamInfo<CliComponent> &info) {
    return info.param.name;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Component, ExportTest, testing::Values(CLI_COMPONENTS), titleOf);

} // namespace qir
