// Finding in 1,000,000 records of 20 mixed fields in the real window, from the text in the bar on: how long until the
// first hit is known, until all are, and the longest time for which the window did not turn its loop meanwhile.

#include "bench/ShownTable.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>
#include <array>
#include <cstdio>

using namespace qir;
using namespace Qt::StringLiterals;

namespace {

constexpr int manyRecords = 1'000'000;

struct Sought {
    const char *text;
    bool matchCase = false;
    bool wholeCell = false;
    bool pattern = false;
};

constexpr std::array sought{
    Sought{.text = "e"},
    Sought{.text = "pump"},
    Sought{.text = "zqx"},
    Sought{.text = "Ee", .matchCase = true},
    Sought{.text = "1", .wholeCell = true},
    Sought{.text = "^a.*z$", .pattern = true},
    Sought{.text = "[0-9]{3}7", .pattern = true},
    Sought{.text = "(pump|valve)s?", .pattern = true},
    Sought{.text = "zqx+", .pattern = true},
    Sought{.text = "\\bab\\b", .pattern = true},
    Sought{.text = "(a)(?=b)\\1?", .pattern = true},
    Sought{.text = "(.)\\1\\1", .pattern = true},
};

void find(bench::ShownTable &shown, const Sought &what) {
    DtbEditor &window = shown.window();
    const auto set = [&](const QString &name, bool on) { window.findChild<QAbstractButton *>(name)->setChecked(on); };
    auto &text = *window.findChild<QLineEdit *>(u"findText"_s);
    text.clear();
    set(u"findCase"_s, what.matchCase);
    set(u"findWhole"_s, what.wholeCell);
    set(u"findPattern"_s, what.pattern);
    const auto &count = *window.findChild<QLabel *>(u"findCount"_s);
    const auto &note = *window.findChild<QLabel *>(u"findNote"_s);
    QElapsedTimer clock;
    clock.start();
    const long long before = bench::processorTime();
    qint64 first = -1;
    qint64 turned = 0;
    qint64 longest = 0;
    text.setText(QString::fromLatin1(what.text));
    for (bool done = false; !done;) {
        longest = std::max(longest, clock.elapsed() - turned);
        turned = clock.elapsed();
        if (first < 0 && !count.text().startsWith(u"0 "_s))
            first = turned;
        done = !note.text().startsWith(u"Searching"_s);
        QApplication::processEvents();
    }
    std::printf("%-16s %s%s%s  first %5lld ms, all %5lld ms (processor %5lld), longest turn %3lld ms, %s\n", what.text,
                what.matchCase ? "c" : "-", what.wholeCell ? "w" : "-", what.pattern ? "r" : "-",
                static_cast<long long>(first), static_cast<long long>(turned), bench::processorTime() - before,
                static_cast<long long>(longest), qPrintable(count.text()));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    bench::ShownTable shown(argc > 1 ? std::atoi(argv[1]) : manyRecords);
    shown.choose(Command::FindMenu);
    for (const Sought &each : sought)
        find(shown, each);
    return 0;
}
