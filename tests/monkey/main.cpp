// A monkey at the editor's window.
//
//   window_monkey [--fake] [--seed N] [--events N] [--per-run N]    random runs, each in a process of its own
//   window_monkey [--fake] --steps "HEX..."                         one run of these steps, in this process

#include "tests/monkey/Monkey.h"
#include "tests/monkey/MonkeyRuns.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QRandomGenerator>

#include <cstdio>

using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

QString contents(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

/// What Qt says on standard error, without what the offscreen platform says at every window.
void tellMessage(QtMsgType, const QMessageLogContext &, const QString &message) {
    if (!message.startsWith(u"This plugin does not support"))
        std::fputs(qPrintable(message + u'\n'), stderr);
}

} // namespace

int main(int argc, char **argv) {
    qInstallMessageHandler(tellMessage);
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{u"fake"_s, u"The fake component, with errors, instead of the real one."_s},
                       {u"seed"_s, u"Of the first run; random without."_s, u"number"_s},
                       {u"events"_s, u"How many in all."_s, u"number"_s, u"10000"_s},
                       {u"per-run"_s, u"How many in one process."_s, u"number"_s, u"2500"_s},
                       {u"steps"_s, u"Perform these steps."_s, u"hexadecimal numbers"_s},
                       {u"replay"_s, u"Perform the steps in a file."_s, u"file"_s},
                       {u"log"_s, u"Where the steps are told."_s, u"file"_s, u"/dev/stdout"_s}});
    parser.process(application);
    const bool fake = parser.isSet(u"fake"_s);
    if (parser.isSet(u"steps"_s) || parser.isSet(u"replay"_s)) {
        const QString steps = parser.isSet(u"steps"_s) ? parser.value(u"steps"_s) : contents(parser.value(u"replay"_s));
        Monkey(asSteps(steps), fake, parser.value(u"log"_s)).run();
        return 0;
    }
    const std::uint64_t seed =
        parser.isSet(u"seed"_s) ? parser.value(u"seed"_s).toULongLong() : QRandomGenerator::system()->generate();
    const bool passed =
        MonkeyRuns(fake).run(seed, parser.value(u"events"_s).toInt(), parser.value(u"per-run"_s).toInt());
    return passed ? 0 : 1;
}
