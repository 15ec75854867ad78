#include "tests/cli/Program.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::StartsWith;

namespace qir {

namespace {

class HelpTest : public ProgramTest {
protected:
    /// The commands that the program's help lists.
    QStringList commands() const {
        QStringList names;
        const QByteArray help = done({u"--help"_s});
        for (const QByteArray &line : help.mid(help.indexOf("Subcommands:")).split('\n').mid(1))
            if (line.startsWith("  "))
                names += QString::fromUtf8(line.trimmed().split(' ').first());
        return names;
    }
    static QByteArray shared(const QString &name) {
        QFile file(QStringLiteral(SHARE_FOLDER) + u'/' + name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return file.readAll();
    }
    /// What a shell's completion offers.
    static QByteArrayList offered(const QByteArray &words) {
        const QString script =
            u". '%1/bash-completion/completions/qirdb'; COMP_WORDS=(%2); "
            "COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _qirdb; printf '%s\\n' \"${COMPREPLY[@]}\""_s.arg(
                QStringLiteral(SHARE_FOLDER), QString::fromUtf8(words));
        QProcess bash;
        bash.start(u"bash"_s, {u"-c"_s, script});
        EXPECT_TRUE(bash.waitForFinished(-1));
        EXPECT_EQ(bash.readAllStandardError(), "");
        QByteArrayList lines = bash.readAllStandardOutput().split('\n');
        lines.removeAll(QByteArray());
        return lines;
    }
    static void checkSyntax(const QString &shell, const QStringList &arguments) {
        if (QStandardPaths::findExecutable(shell).isEmpty())
            GTEST_SKIP() << shell.toStdString() << " is not installed";
        QProcess process;
        process.start(shell, arguments);
        EXPECT_TRUE(process.waitForFinished(-1));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    }
};

TEST_P(HelpTest, AnUnknownCommandNamesTheNearestOne) {
    trouble({u"dmup"_s, u"X.DDB"_s}, "qirdb: there is no command \"dmup\"; did you mean \"dump\"?");
    trouble({u"Exprot"_s}, "qirdb: there is no command \"Exprot\"; did you mean \"export\"?");
    trouble({u"frobnicate"_s}, "qirdb: there is no command \"frobnicate\"");
}

TEST_P(HelpTest, AWrongCommandLineIsToldInOneForm) {
    trouble({}, "qirdb: a command is missing; qirdb --help lists them");
    trouble({u"dump"_s}, "qirdb: dump: FILE is required; qirdb dump --help tells more");
    trouble({u"dump"_s, u"X"_s, u"--fromat"_s, u"json"_s},
            "qirdb: dump: there is no option \"--fromat\"; did you mean \"--format\"?; qirdb dump --help tells more");
    trouble({u"diff"_s, u"X"_s}, "qirdb: diff: RIGHT is required; qirdb diff --help tells more");
    trouble({u"diff"_s, u"X"_s, u"Y"_s, u"Z"_s}, "qirdb: diff: takes two files; qirdb diff --help tells more");
}

TEST_P(HelpTest, EveryCommandHasHelpAndAManualPage) {
    const QByteArray manual = shared(u"man/man1/qirdb.1"_s);
    EXPECT_THAT(commands(), testing::Contains(u"dump"_s));
    EXPECT_GE(commands().size(), 19);
    for (const QString &name : commands()) {
        EXPECT_THAT(done({name, u"--help"_s}).toStdString(), HasSubstr("Usage: qirdb " + name.toStdString()));
        const QByteArray page = shared(u"man/man1/qirdb-%1.1"_s.arg(name));
        EXPECT_THAT(page.toStdString(), StartsWith(".TH \"QIRDB-" + name.toUpper().toStdString() + "\" 1"));
        EXPECT_THAT(manual.toStdString(), HasSubstr(QString(name).replace(u'-', u"\\-"_s).toStdString()));
    }
    EXPECT_THAT(shared(u"man/man1/qirdb-dump.1"_s).toStdString(), HasSubstr("\\fB\\-\\-format\\fR \\fI"));
}

TEST_P(HelpTest, ManTakesThePagesWithoutAWarning) {
    if (QStandardPaths::findExecutable(u"man"_s).isEmpty())
        GTEST_SKIP() << "man is not installed";
    for (const QString &page : QDir(QStringLiteral(SHARE_FOLDER "/man/man1")).entryList(QDir::Files)) {
        QProcess process;
        process.start(u"man"_s, {u"--warnings"_s, u"-l"_s, QStringLiteral(SHARE_FOLDER "/man/man1/") + page});
        ASSERT_TRUE(process.waitForFinished(-1));
        EXPECT_EQ(process.exitCode(), 0) << page.toStdString();
        EXPECT_EQ(process.readAllStandardError().toStdString(), "") << page.toStdString();
        EXPECT_THAT(process.readAllStandardOutput().toStdString(), HasSubstr("SYNOPSIS"));
    }
}

TEST_P(HelpTest, BashCompletesCommandsOptionsAndWords) {
    QByteArrayList all = offered("qirdb ''");
    for (const QString &name : commands())
        EXPECT_TRUE(all.contains(name.toUtf8())) << name.toStdString();
    EXPECT_EQ(offered("qirdb verif"), QByteArrayList{"verify"});
    EXPECT_EQ(offered("qirdb dump --for"), QByteArrayList{"--format"});
    EXPECT_EQ(offered("qirdb dump --format ''"), (QByteArrayList{"json", "csv", "text"}));
    EXPECT_EQ(offered("qirdb add X.DDB re"), QByteArrayList{"record"});
    EXPECT_EQ(offered("qirdb dump X"), QByteArrayList{}); // files, by the shell itself
}

TEST_P(HelpTest, EveryExampleOfThePageWorks) {
    QFile page(QStringLiteral(COMPANION_PAGE));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QByteArray text = page.readAll();
    const qsizetype begin = text.indexOf("## Examples\n");
    ASSERT_GE(begin, 0);
    const QByteArray section = text.sliced(begin, text.indexOf("\n## ", begin + 1) - begin);
    QByteArrayList examples;
    for (const QByteArray &line : section.split('\n'))
        if (line.startsWith("    "))
            examples += line.trimmed();
    for (const QString &name : commands())
        EXPECT_TRUE(section.contains("qirdb " + name.toUtf8() + ' ') ||
                    section.contains("qirdb " + name.toUtf8() + '\n'))
            << name.toStdString();
    QDir().mkpath(path(u"bin"_s));
    ASSERT_TRUE(QFile::link(QStringLiteral(QIRDB), path(u"bin/qirdb"_s)));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PATH"_s, path(u"bin"_s) + u':' + environment.value(u"PATH"_s));
    environment.insert(u"HOME"_s, path(u"."_s));
    for (const QByteArray &example : examples) {
        QProcess bash;
        bash.setProcessEnvironment(environment);
        bash.setWorkingDirectory(path(u"."_s));
        bash.start(u"bash"_s, {u"-c"_s, QString::fromUtf8(example)});
        ASSERT_TRUE(bash.waitForFinished(-1));
        EXPECT_EQ(bash.exitCode(), 0) << example.toStdString() << '\n' << bash.readAllStandardError().toStdString();
    }
}

TEST_P(HelpTest, ZshTakesItsCompletion) {
    checkSyntax(u"zsh"_s, {u"-n"_s, QStringLiteral(SHARE_FOLDER "/zsh/site-functions/_qirdb")});
}

TEST_P(HelpTest, FishTakesItsCompletion) {
    checkSyntax(u"fish"_s, {u"-n"_s, QStringLiteral(SHARE_FOLDER "/fish/vendor_completions.d/qirdb.fish")});
}

TEST_P(HelpTest, ReadingCommandsPrintJsonOrNothing) {
    makePumps();
    EXPECT_EQ(done({u"info"_s, u"PUMP.DDB"_s, u"--json"_s}),
              "{\"file\": \"PUMP.DDB\", \"protected\": false, \"tables\": 1, \"records\": 2, \"cells\": 6}\n");
    EXPECT_EQ(done({u"verify"_s, u"PUMP.DDB"_s, u"--json"_s}), "{\"file\": \"PUMP.DDB\", \"sound\": true}\n");
    EXPECT_EQ(done({u"tables"_s, u"PUMP.DDB"_s, u"--json"_s}).count('\n'), 1);
    EXPECT_EQ(done({u"dump"_s, u"PUMP.DDB"_s, u"--json"_s}),
              done({u"dump"_s, u"PUMP.DDB"_s, u"--format"_s, u"json"_s}));
    for (const QString &command : {u"info"_s, u"tables"_s, u"dump"_s, u"verify"_s, u"kept"_s})
        EXPECT_EQ(done({command, u"PUMP.DDB"_s, u"--quiet"_s}), "") << command.toStdString();
    const QStringList cell{u"get"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"1"_s, u"Speed"_s};
    EXPECT_EQ(done(cell + QStringList{u"--json"_s}), "1500\n");
    EXPECT_EQ(done(cell + QStringList{u"--quiet"_s}), "");
    EXPECT_EQ(done({u"audit"_s, u"PUMP.DDB"_s, u"PUMP.DDB"_s, u"--json"_s}),
              "{\"file\": \"PUMP.DDB\", \"state\": \"same\", \"tables\": {}, \"error\": null}\n");
    EXPECT_EQ(done({u"kept"_s, u"PUMP.DDB"_s, u"--json"_s}), "");
    EXPECT_EQ(done({u"diff"_s, u"PUMP.DDB"_s, u"PUMP.DDB"_s, u"--json"_s}),
              "{\"table\": \"Pumps\", \"state\": \"same\", \"cells\": 0, \"records\": [2, 2], \"fields\": [3, 3]}\n");
    for (const QString &command : {u"diff"_s, u"audit"_s})
        EXPECT_EQ(done({command, u"PUMP.DDB"_s, u"PUMP.DDB"_s, u"--quiet"_s}), "") << command.toStdString();
    // No command reads beside these: each has both options.
    for (const QString &command : commands()) {
        const QByteArray help = done({command, u"--help"_s});
        const bool reads = help.contains("--quiet");
        EXPECT_EQ(help.contains("--json"), reads) << command.toStdString();
        EXPECT_EQ(QStringList({u"info"_s, u"tables"_s, u"dump"_s, u"verify"_s, u"diff"_s, u"audit"_s, u"get"_s,
                               u"kept"_s, u"run"_s})
                      .contains(command),
                  reads)
            << command.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Component, HelpTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
