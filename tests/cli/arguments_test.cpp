#include "tests/cli/Program.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::Not;

namespace qir {

namespace {

/// Arguments and file names as bytes, which QProcess cannot pass as they are.
class ArgumentsTest : public ProgramTest {
protected:
    /// Runs the program in the test's folder, or in one in it; gives its status and what it wrote, errors included.
    Outcome runBytes(std::vector<QByteArray> arguments, const QByteArray &where = ".", bool removed = false) const {
        arguments.insert(arguments.begin(), QByteArrayLiteral(QIRDB));
        std::vector<char *> pointers;
        for (QByteArray &argument : arguments)
            pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        const QByteArray folder = QFile::encodeName(path(u"."_s)) + '/' + where;
        int ends[2];
        EXPECT_EQ(::pipe(ends), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            ::setsid();
            ::dup2(ends[1], STDOUT_FILENO);
            ::dup2(ends[1], STDERR_FILENO);
            ::close(ends[0]);
            ::close(ends[1]);
            if (::chdir(folder.constData()) == 0 && (!removed || ::rmdir(folder.constData()) == 0))
                ::execv(pointers[0], pointers.data());
            ::_exit(127);
        }
        ::close(ends[1]);
        Outcome result{-1, {}, {}};
        char bytes[4096];
        for (ssize_t count = 0; (count = ::read(ends[0], bytes, sizeof bytes)) > 0;)
            result.output.append(bytes, count);
        ::close(ends[0]);
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return result;
    }
    QStringList entries() const {
        return QDir(path(u"."_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
};

TEST_P(ArgumentsTest, OneThatIsNotUtf8IsRefusedAndReachesNoFile) {
    makePumps();
    const QStringList before = entries();
    for (const char *name : {"x\xff.csv", "x\xfe.csv", "\xc0\xaf.csv", "\xed\xa0\x80.csv"}) {
        const Outcome result = runBytes({"export", "PUMP.DDB", "Pumps", name});
        EXPECT_EQ(result.status, 2) << name;
        EXPECT_THAT(result.output.toStdString(), HasSubstr("is not UTF-8")) << name;
    }
    EXPECT_EQ(runBytes({"export", "PUMP.DDB", "Pumps", "x\xff.csv"}).output,
              "qirdb: the argument \"x\\xff.csv\" is not UTF-8: such a name cannot be told from another one\n");
    EXPECT_EQ(runBytes({"create", "n\xff.ddb"}).status, 2);
    EXPECT_EQ(runBytes({"info", "PUMP.DDB", "--password-file", "p\xff"}).status, 2);
    EXPECT_EQ(runBytes({"info", "PUMP.DDB", "--password-file=p\xff"}).status, 2);
    EXPECT_EQ(entries(), before);
}

TEST_P(ArgumentsTest, NoFileOfAnotherFolderIsReachedFromOneWhoseNameIsNotUtf8) {
    makePumps();
    const QByteArray top = QFile::encodeName(path(u"."_s)) + '/';
    for (const QByteArray &folder : {QByteArray("dir\xff"), QByteArray("dir\uFFFD")})
        ASSERT_EQ(::mkdir((top + folder).constData(), 0700), 0);
    ASSERT_EQ(::link((top + "PUMP.DDB").constData(), (top + "dir\xff/PUMP.DDB").constData()), 0);
    const QString other = u"dir\uFFFD/PUMP.DDB"_s;
    ASSERT_TRUE(QFile::copy(path(u"PUMP.DDB"_s), path(other)));
    const QByteArray before = bytesOf(other);
    const Outcome result = runBytes({"set", "PUMP.DDB", "Pumps", "1", "Speed", "7"}, "dir\xff");
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.output.toStdString(), testing::StartsWith("qirdb: the current folder \""));
    EXPECT_THAT(result.output.toStdString(),
                testing::EndsWith("/dir\\xff\" is not UTF-8: such a name cannot be told from another one\n"));
    EXPECT_EQ(bytesOf(other), before);
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), before);
    EXPECT_EQ(runBytes({"set", "PUMP.DDB", "Pumps", "1", "Speed", "7"}, "dir\uFFFD").status, 0);
    EXPECT_NE(bytesOf(other), before);
}

TEST_P(ArgumentsTest, AFileIsReachedByItsWholePathFromAFolderThatHasGone) {
    makePumps();
    ASSERT_TRUE(QDir(path(u"."_s)).mkdir(u"gone"_s));
    const Outcome result =
        runBytes({"get", QFile::encodeName(path(u"PUMP.DDB"_s)), "Pumps", "1", "Speed"}, "gone", true);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output.toStdString(), testing::EndsWith("1500\n"));
}

TEST_P(ArgumentsTest, EveryUtf8NameReachesItsOwnFile) {
    makePumps();
    const std::vector<QByteArray> names{"\xef\xbb\xbfx.csv",    "x.csv",  "e\xcc\x81.csv",    "\xc3\xa9.csv",
                                        "\xf0\x9f\x98\x80.csv", " x.csv", "x.csv\xef\xbf\xbd"};
    for (const QByteArray &name : names)
        EXPECT_EQ(runBytes({"export", "PUMP.DDB", "Pumps", name}).status, 0) << name.toStdString();
    for (const QByteArray &name : names) {
        const QByteArray file = QFile::encodeName(path(u"."_s)) + '/' + name;
        EXPECT_EQ(::access(file.constData(), F_OK), 0) << name.toStdString();
    }
}

TEST_P(ArgumentsTest, AFileNameReachesNoTerminalWithWhatItWouldActOn) {
    makePumps();
    const QString name = u"\x1b]0;owned\x07\x9b"
                         u"31m.DDB"_s;
    done({u"create"_s, name});
    const std::string shown = "\\u001b]0;owned\\u0007\\u009b31m.DDB";
    EXPECT_THAT(done({u"info"_s, name}).toStdString(), HasSubstr(shown));
    EXPECT_EQ(done({u"verify"_s, name}).toStdString(), shown + ": sound\n");
    EXPECT_THAT(run({u"dump"_s, name, u"T"_s}).errors.toStdString(), HasSubstr(shown));
    EXPECT_THAT(run({name}).errors.toStdString(), Not(HasSubstr("\x1b")));
    write(u"secret"_s, "hidden\n");
    done({u"passwd"_s, name, u"--new-password-file"_s, u"secret"_s});
    const Outcome asked = runOnTerminal({u"info"_s, name}, {"hidden"});
    EXPECT_THAT(asked.output.toStdString(), HasSubstr("Password of " + shown + ": "));
    EXPECT_THAT(asked.output.toStdString(), Not(HasSubstr("\x1b")));
    const Outcome changed = runOnTerminal({u"passwd"_s, name}, {"hidden", "other", "other"});
    EXPECT_THAT(changed.output.toStdString(), HasSubstr("New password of " + shown + ": "));
    EXPECT_THAT(changed.output.toStdString(), Not(HasSubstr("\x1b")));
}

INSTANTIATE_TEST_SUITE_P(Component, ArgumentsTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
