#include "tests/monkey/MonkeyRuns.h"

#include "tests/monkey/Monkey.h"
#include "tests/support/Shortening.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <cstdio>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int attemptsToShorten = 150;
constexpr int longestRunMs = 20 * 60 * 1000;
constexpr int linesShown = 60;

QString howItEnded(const QProcess &process) {
    if (process.exitStatus() == QProcess::CrashExit)
        return u"crashed"_s;
    switch (process.exitCode()) {
    case Monkey::brokenExitCode:
        return u"left something out of step"_s;
    case Watchdog::exitCode:
        return u"was deaf"_s;
    default:
        return u"ended with exit code %1"_s.arg(process.exitCode());
    }
}

void print(const QString &text) {
    std::fputs(qPrintable(text + u'\n'), stdout);
    std::fflush(stdout);
}

} // namespace

std::vector<Step> stepsOf(std::uint64_t seed, int count) {
    Numbers numbers(seed);
    std::vector<Step> steps(static_cast<std::size_t>(count));
    for (Step &step : steps)
        step = numbers.next();
    return steps;
}

QString asText(const std::vector<Step> &steps) {
    QStringList texts;
    for (const Step step : steps)
        texts.append(QString::number(step, 16));
    return texts.join(u' ');
}

std::vector<Step> asSteps(const QString &text) {
    std::vector<Step> steps;
    for (const QString &number : text.split(u' ', Qt::SkipEmptyParts))
        steps.push_back(number.toULongLong(nullptr, 16));
    return steps;
}

bool MonkeyRuns::run(std::uint64_t seed, int events, int perRun) {
    bool passed = true;
    for (int done = 0; done < events; done += perRun, ++seed) {
        const std::vector<Step> steps = stepsOf(seed, std::min(perRun, events - done));
        const Outcome outcome = runOnce(steps);
        print(u"seed %1, %2 component, %3 events: %4"_s.arg(seed)
                  .arg(m_fake ? u"failing"_s : u"real"_s)
                  .arg(steps.size())
                  .arg(outcome.passed ? u"passed, "_s + outcome.lastLines.last() : outcome.how));
        if (!outcome.passed) {
            report(seed, steps, outcome);
            passed = false;
        }
    }
    return passed;
}

MonkeyRuns::Outcome MonkeyRuns::runOnce(const std::vector<Step> &steps) const {
    const QTemporaryDir folder;
    QFile list(folder.filePath(u"steps"_s));
    if (!list.open(QIODevice::WriteOnly))
        return {false, u"has no folder for its steps"_s, {}, {}};
    list.write(asText(steps).toLatin1());
    list.close();
    QProcess process;
    QStringList arguments{u"--replay"_s, list.fileName(), u"--log"_s, folder.filePath(u"log"_s)};
    if (m_fake)
        arguments.append(u"--fake"_s);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"ASAN_OPTIONS"_s, u"handle_abort=1"_s); // the stack of a failed assertion
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), arguments);
    const bool ended = process.waitForFinished(longestRunMs);
    Outcome outcome;
    outcome.passed = ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (!ended)
        process.kill();
    outcome.how = ended ? howItEnded(process) : u"did not end"_s;
    outcome.output = QString::fromUtf8(process.readAllStandardError());
    QFile log(folder.filePath(u"log"_s));
    if (log.open(QIODevice::ReadOnly))
        outcome.lastLines = QString::fromUtf8(log.readAll()).trimmed().split(u'\n');
    return outcome;
}

void MonkeyRuns::report(std::uint64_t seed, const std::vector<Step> &steps, const Outcome &outcome) const {
    print(u"--- seed %1 %2, in these steps:"_s.arg(seed).arg(outcome.how));
    print(outcome.lastLines.mid(std::max<qsizetype>(0, outcome.lastLines.size() - linesShown)).join(u'\n'));
    print(outcome.output.right(12'000));
    Outcome shortest = outcome;
    // What came after the failure had no part in it.
    std::vector<Step> played = steps;
    for (auto line = outcome.lastLines.crbegin(); line != outcome.lastLines.crend(); ++line) {
        if (line->startsWith(u' ') || line->startsWith(u"broken"))
            continue;
        played.resize(std::min<std::size_t>(played.size(), line->section(u' ', 0, 0).toULongLong()));
        break;
    }
    const std::vector<Step> fewest = shortenedSteps<Step>(
        played,
        [&](const std::vector<Step> &fewer) {
            Outcome now = runOnce(fewer);
            const bool same = !now.passed && now.how == outcome.how;
            if (same)
                shortest = std::move(now);
            return same;
        },
        attemptsToShorten);
    print(u"--- shortened to %1 of %2 steps:"_s.arg(fewest.size()).arg(steps.size()));
    print(shortest.lastLines.join(u'\n'));
    print(shortest.output.right(6'000));
    print(u"--- replay with: window_monkey %1--steps \"%2\""_s.arg(m_fake ? u"--fake "_s : u""_s, asText(fewest)));
}

} // namespace qir::test
