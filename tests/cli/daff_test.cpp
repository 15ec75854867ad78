#include "tests/cli/Program.h"

#include <QProcess>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// Where the tabular forms are read by another program, `daff` (an npm package, for node): the one that stands under
/// that name, or at $QIR_DAFF.
class DaffTest : public ProgramTest {
protected:
    static QString daff() {
        const QString chosen = qEnvironmentVariable("QIR_DAFF");
        return chosen.isEmpty() ? QStandardPaths::findExecutable(u"daff"_s) : chosen;
    }
    /// daff must make the right table of the left one by the tabular diff of both.
    void readBack(const QStringList &options) const {
        const QByteArray types = "Tag[text:20],Speed[long],Note[text:30]\n";
        const QByteArray names = "Tag,Speed,Note\n";
        const QByteArray left = "P-1,1500,a\nP-2,700,\"x, \"\"y\"\"\"\nP-3,900,->\nP-5,1,NULL\n";
        const QByteArray right = "P-2,800,\"x, \"\"z\"\"\"\nP-3,900,-->\nP-5,1,\nP-4,400,new\n";
        make(u"L.DDB"_s, {{u"T"_s, types + left}});
        make(u"R.DDB"_s, {{u"T"_s, types + right}});
        const Outcome diff =
            run(QStringList{u"diff"_s, u"--tabular"_s} + options + QStringList{u"L.DDB"_s, u"R.DDB"_s});
        EXPECT_EQ(diff.status, 1) << diff.errors.toStdString();
        write(u"LEFT.csv"_s, names + left);
        write(u"DIFF.csv"_s, diff.output.mid(diff.output.indexOf('\n') + 1)); // without the table's line
        QProcess program;
        program.start(daff(),
                      {u"patch"_s, u"--output"_s, path(u"MADE.csv"_s), path(u"LEFT.csv"_s), path(u"DIFF.csv"_s)});
        EXPECT_TRUE(program.waitForFinished() && program.exitCode() == 0)
            << program.readAllStandardError().toStdString();
        EXPECT_EQ(bytesOf(u"MADE.csv"_s).replace("\r\n", "\n"), names + right);
    }
    void SetUp() override {
        if (daff().isEmpty())
            GTEST_SKIP() << "daff is not installed, and $QIR_DAFF names none";
    }
};

TEST_P(DaffTest, ReadsDifferencesByPositionBack) {
    readBack({});
}

TEST_P(DaffTest, ReadsDifferencesByKeyBack) {
    readBack({u"--key"_s, u"Tag"_s});
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Component, DaffTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace qir
