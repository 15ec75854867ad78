#include "cli/Progress.h"

#include <QByteArray>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <poll.h>
#include <pty.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// Stands in for the standard error output while it lives.
class ErrorOutput {
public:
    explicit ErrorOutput(bool isTerminal)
        : m_before(::dup(STDERR_FILENO)) {
        int ends[2];
        const int made = isTerminal ? ::openpty(&ends[0], &ends[1], nullptr, nullptr, nullptr) : ::pipe(ends);
        EXPECT_EQ(made, 0);
        m_reading = ends[0];
        ::dup2(ends[1], STDERR_FILENO);
        ::close(ends[1]);
    }
    ~ErrorOutput() {
        ::dup2(m_before, STDERR_FILENO);
        ::close(m_before);
        ::close(m_reading);
    }
    ErrorOutput(const ErrorOutput &) = delete;
    ErrorOutput &operator=(const ErrorOutput &) = delete;

    bool hasAny() const {
        pollfd poll{m_reading, POLLIN, 0};
        return ::poll(&poll, 1, 0) == 1;
    }
    QByteArray read() const {
        char bytes[4096];
        QByteArray all;
        while (hasAny()) {
            const ssize_t count = ::read(m_reading, bytes, sizeof bytes);
            if (count <= 0)
                break;
            all.append(bytes, count);
        }
        return all;
    }

private:
    int m_before;
    int m_reading;
};

/// Works until the progress was shown, or for some seconds; gives how long that took, in milliseconds.
qint64 workUntilShown(Progress &progress, const ErrorOutput &output, qint64 most) {
    QElapsedTimer timer;
    timer.start();
    while (!output.hasAny() && timer.elapsed() < most)
        progress.step();
    return timer.elapsed();
}

TEST(ProgressTest, ATerminalIsToldAfterASecondAndTheLineIsWiped) {
    const ErrorOutput output(true);
    {
        Progress progress(u"long\x1b.csv"_s, 1'000'000'000'000);
        const qint64 time = workUntilShown(progress, output, 60'000);
        EXPECT_GE(time, 1000);
        const QByteArray shown = output.read();
        EXPECT_TRUE(shown.startsWith("\rlong\\u001b.csv: ")) << shown.toStdString();
        EXPECT_TRUE(shown.contains(" of 1000000000000 (")) << shown.toStdString();
    }
    const QByteArray end = output.read();
    EXPECT_TRUE(end.startsWith('\r') && end.endsWith('\r')) << end.toStdString();
    EXPECT_EQ(QByteArray(end).replace('\r', "").trimmed(), "");
}

TEST(ProgressTest, APipeIsToldNothing) {
    const ErrorOutput output(false);
    {
        Progress progress(u"long.csv"_s);
        workUntilShown(progress, output, 1500);
    }
    EXPECT_EQ(output.read(), "");
}

} // namespace

} // namespace qir
