#include "tests/cli/Program.h"

#include <QFile>
#include <QProcess>

#include <cerrno>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace qir {

ProgramTest::ProgramTest()
    : m_componentPath({QString::fromUtf8(GetParam().folder)}) {}

Outcome ProgramTest::run(const QStringList &arguments, const QByteArray &input) const {
    QProcess process;
    process.setWorkingDirectory(m_folder.path());
    // A session of its own, without a terminal: the program must not find that of whoever runs the tests.
    process.setChildProcessModifier([] { ::setsid(); });
    process.start(QStringLiteral(QIRDB), arguments);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(-1));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QByteArray ProgramTest::done(const QStringList &arguments, const QByteArray &input) const {
    const Outcome result = run(arguments, input);
    EXPECT_EQ(result.status, 0) << arguments.join(u' ').toStdString();
    EXPECT_EQ(result.errors, "") << arguments.join(u' ').toStdString();
    return result.output;
}

void ProgramTest::trouble(const QStringList &arguments, const QByteArray &errorLine) const {
    const Outcome result = run(arguments);
    EXPECT_EQ(result.status, 2) << arguments.join(u' ').toStdString();
    EXPECT_EQ(result.errors, errorLine + '\n');
    EXPECT_EQ(result.output, "");
}

Outcome ProgramTest::runOnTerminal(const QStringList &arguments, const QList<QByteArray> &lines) const {
    std::vector<QByteArray> words{QByteArrayLiteral(QIRDB)};
    for (const QString &argument : arguments)
        words.push_back(argument.toLocal8Bit());
    std::vector<char *> pointers;
    for (QByteArray &word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const QByteArray folder = QFile::encodeName(m_folder.path());

    int terminal = -1;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        if (::chdir(folder.constData()) == 0)
            ::execv(pointers[0], pointers.data());
        ::_exit(127);
    }
    Outcome result{-1, {}, {}};
    qsizetype answered = 0;
    char bytes[256];
    while (true) {
        const ssize_t count = ::read(terminal, bytes, sizeof bytes);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) // EIO: the child has ended
            break;
        result.output.append(bytes, count);
        // Each question ends with a colon and a blank; from then on the echo is off.
        if (answered < lines.size() && result.output.count(": ") > answered) {
            const QByteArray line = lines.at(answered++) + '\n';
            EXPECT_EQ(::write(terminal, line.constData(), static_cast<std::size_t>(line.size())), line.size());
        }
    }
    ::close(terminal);
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    result.status = WEXITSTATUS(status);
    EXPECT_EQ(answered, lines.size()) << result.output.toStdString();
    return result;
}

void ProgramTest::write(const QString &name, const QByteArray &bytes) const {
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

QByteArray ProgramTest::bytesOf(const QString &name) const {
    QFile file(path(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

void ProgramTest::make(const QString &file, const QList<std::pair<QString, QByteArray>> &tables) const {
    done({u"create"_s, file});
    for (const auto &[name, csv] : tables)
        done({u"import"_s, file, name, u"-"_s}, csv);
}

void ProgramTest::makePumps() const {
    write(u"pumps.csv"_s, "Name[text:20],Speed[long],Head[double]\nP-1,1500,2.5\n\"P 2, spare\",-3,0.1\n");
    done({u"create"_s, u"PUMP.DDB"_s});
    done({u"import"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"pumps.csv"_s});
}

} // namespace qir
