#include "tests/window/model/EditorSession.h"

#include <QApplication>
#include <QProcess>
#include <QTest>

#include <cstdio>
#include <random>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

constexpr int stepsOfSequence = 250;
constexpr int mostShorteningRuns = 250;
constexpr int mostLinesTold = 30;
constexpr int millisecondsOfRun = 900'000;
constexpr int millisecondsOfReplay = 60'000;
const QString announcement = u"sequence "_s;

std::optional<std::uint64_t> numberOf(const char *variable) {
    bool given = false;
    const std::uint64_t number = qEnvironmentVariable(variable).toULongLong(&given);
    return given ? std::optional(number) : std::nullopt;
}

struct Run {
    QString wrong; ///< The first disagreement; "" when there is none.
    int taken = 0; ///< Steps that found something to do.
};

/// Takes a sequence's steps in a new editor.
Run runOf(const Sequence &sequence, const std::function<void(const QString &)> &log) {
    Run run;
    try {
        EditorSession session(sequence.seed, log);
        for (auto step = sequence.steps.begin(); step != sequence.steps.end() && run.wrong.isEmpty(); ++step)
            run.wrong = session.run(*step);
        if (run.wrong.isEmpty())
            run.wrong = session.takeAllBack();
        run.taken = session.taken();
    } catch (const std::exception &error) {
        run.wrong = QString::fromUtf8(error.what());
    }
    return run;
}

void print(const QString &line) {
    std::puts(qUtf8Printable(line));
    std::fflush(stdout);
}

struct Outcome {
    bool failed = false;
    QString output;
};

/// This program once more with an environment variable: what kills or hangs it leaves this process to tell of it.
Outcome inProcess(const QString &variable, const QString &value, int milliseconds) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(variable, value);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QCoreApplication::applicationFilePath(), {u"-silent"_s});
    const bool ended = process.waitForFinished(milliseconds);
    if (!ended) {
        process.kill();
        process.waitForFinished();
    }
    const QString output = QString::fromUtf8(process.readAllStandardOutput());
    const bool well = ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return {!well, ended ? output : output + u"it does not end\n"_s};
}

} // namespace

/// The whole editor against a plain model: after every step of random sequences of all commands window, components and
/// model agree, after every save the files too. A sequence that fails is shortened as far as it goes on failing.
/// QIR_MODEL_SEED repeats a run, QIR_MODEL_STEPS sets its length, QIR_MODEL_REPLAY takes the steps of one sequence.
class EditorModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void windowComponentsAndFilesFollowTheModel() {
        if (qEnvironmentVariableIsSet("QIR_MODEL_REPLAY"))
            return replay(qEnvironmentVariable("QIR_MODEL_REPLAY"));
        if (const auto seed = numberOf("QIR_MODEL_RUN"))
            return run(*seed);
        const std::uint64_t seed = numberOf("QIR_MODEL_SEED").value_or(std::random_device{}());
        qInfo("QIR_MODEL_SEED=%llu", static_cast<unsigned long long>(seed));
        const Outcome outcome = inProcess(u"QIR_MODEL_RUN"_s, QString::number(seed), millisecondsOfRun);
        if (outcome.failed)
            QFAIL(qUtf8Printable(report(outcome.output)));
        qInfo("%s", qUtf8Printable(outcome.output.split(u'\n').filter(u" steps"_s).join(u' ')));
    }

private:
    static void replay(const QString &text) {
        const std::optional<Sequence> sequence = Sequence::fromText(text);
        QVERIFY2(sequence, "QIR_MODEL_REPLAY is no sequence");
        const Run run = runOf(*sequence, print);
        QVERIFY2(run.wrong.isEmpty(), qUtf8Printable(run.wrong));
    }

    static void run(std::uint64_t seed) {
        const int steps = static_cast<int>(numberOf("QIR_MODEL_STEPS").value_or(20'000));
        int taken = 0;
        for (; taken < steps; ++seed) {
            print(announcement + QString::number(seed));
            QStringList last; // what the steps before a failure came down to
            const Run run = runOf(randomSequence(seed, stepsOfSequence), [&last](const QString &line) {
                last.append(line);
                if (last.size() > mostLinesTold)
                    last.removeFirst();
            });
            if (!run.wrong.isEmpty())
                print(last.join(u'\n'));
            QVERIFY2(run.wrong.isEmpty(), qUtf8Printable(run.wrong));
            taken += run.taken;
        }
        print(u"%1 steps taken"_s.arg(taken));
    }

    /// What is to be told of a failed run: the shortest sequence found that fails, and what comes of it.
    static QString report(const QString &output) {
        const QStringList announced = output.split(u'\n').filter(announcement);
        if (announced.isEmpty())
            return output;
        const std::uint64_t seed = announced.last().mid(announcement.size()).toULongLong();
        const auto replayed = [](const Sequence &sequence) {
            return inProcess(u"QIR_MODEL_REPLAY"_s, sequence.text(), millisecondsOfReplay);
        };
        const Sequence shortest = shortened(
            randomSequence(seed, stepsOfSequence), [&](const Sequence &sequence) { return replayed(sequence).failed; },
            mostShorteningRuns);
        const QStringList told = output.split(u'\n').mid(output.split(u'\n').indexOf(announced.last()));
        return u"%1\nShortened from %2 to %3 steps:\nQIR_MODEL_REPLAY='%4'\n%5"_s.arg(told.join(u'\n'))
            .arg(stepsOfSequence)
            .arg(shortest.steps.size())
            .arg(shortest.text(), replayed(shortest).output);
    }
};

int main(int argc, char *argv[]) {
    // The whole run is one test function, which takes longer than a function may by default.
    qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number(2 * millisecondsOfRun));
    QApplication application(argc, argv);
    EditorModelTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "editor_model_test.moc"
