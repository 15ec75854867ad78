#include "tests/cli/Program.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// A command of a page and what the page says that it prints.
struct Example {
    QString command;
    QByteArray output;
};

/// The lines that begin with "    $ ", each with the indented lines behind it.
QList<Example> examplesOf(const QString &page) {
    QFile file(page);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << page.toStdString();
    QList<Example> examples;
    bool inOutput = false;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        if (line.startsWith("    $ ")) {
            examples.append({QString::fromUtf8(line.sliced(6).trimmed()), {}});
            inOutput = true;
        } else if (inOutput && line.startsWith("    ")) {
            examples.last().output += line.sliced(4);
        } else {
            inOutput = false;
        }
    }
    return examples;
}

class ExamplesTest : public ProgramTest {};

TEST_P(ExamplesTest, OfTheDifferencesPagePrintWhatItSays) {
    const QList<Example> examples = examplesOf(QStringLiteral(DOCS_FOLDER "/diff.md"));
    ASSERT_GE(examples.size(), 8);
    for (const Example &example : examples) {
        QProcess shell;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"PATH"_s, QFileInfo(QStringLiteral(QIRDB)).path() + u':' + environment.value(u"PATH"_s));
        shell.setProcessEnvironment(environment);
        shell.setWorkingDirectory(path(u"."_s));
        shell.start(u"/bin/sh"_s, {u"-c"_s, example.command});
        ASSERT_TRUE(shell.waitForFinished());
        EXPECT_EQ(shell.readAllStandardOutput(), example.output) << example.command.toStdString();
        EXPECT_EQ(shell.readAllStandardError(), "") << example.command.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Component, ExamplesTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &run) { return std::string(run.param.name); });

} // namespace

} // namespace qir
