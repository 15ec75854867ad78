// A sort of 1,000,000 records of 20 mixed fields in the real window, its undo and its redo; and what memory is held
// after the first sort, and after two sorts and 1,000 edits more. The records' number may be given as an argument.

#include "bench/ShownTable.h"
#include "platform/grid/Grid.h"

#include <QApplication>
#include <QElapsedTimer>

#include <cstdio>
#include <functional>

using namespace qir;
using namespace Qt::StringLiterals;

namespace {

constexpr int manyRecords = 1'000'000;
constexpr int manyEdits = 1000;
constexpr int firstDouble = 7;
constexpr int secondDouble = 8;
constexpr int firstText = 15;
constexpr std::size_t mebi = std::size_t{1} << 20;

void timed(const char *what, const std::function<void()> &procedure) {
    QElapsedTimer clock;
    clock.start();
    const long long before = bench::processorTime();
    procedure();
    std::printf("%-24s %6lld ms, processor %6lld ms\n", what, static_cast<long long>(clock.elapsed()),
                bench::processorTime() - before);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const int records = argc > 1 ? std::atoi(argv[1]) : manyRecords;
    bench::ShownTable shown(records);
    const std::size_t loaded = bench::memoryHeld();
    timed("sort by a double", [&] { shown.sortBy(firstDouble); });
    const std::size_t first = bench::memoryHeld();
    timed("undo", [&] { shown.choose(Command::UndoMenu); });
    timed("redo", [&] { shown.choose(Command::RedoMenu); });
    timed("sort by a text", [&] { shown.sortBy(firstText); });
    timed("undo", [&] { shown.choose(Command::UndoMenu); });
    timed("redo", [&] { shown.choose(Command::RedoMenu); });
    timed("sort by a double", [&] { shown.sortBy(secondDouble); });
    timed("1,000 edits", [&] {
        for (int edit = 0; edit < manyEdits; ++edit)
            shown.edit(edit * (records / manyEdits) + 1, edit % 6 + 1, QString::number(edit));
    });
    const std::size_t last = bench::memoryHeld();
    std::printf(
        "memory: loaded %zu MiB, after the first sort %zu MiB, after three sorts and the edits %zu MiB: %.2f times\n",
        loaded / mebi, first / mebi, last / mebi, static_cast<double>(last) / static_cast<double>(first));
    timed("undo of all", [&] {
        while (shown.editor().OggettoDtb(0).StepsDone() > 0)
            shown.editor().OggettoDtb(0).Undo();
    });
    std::printf("steps %d, dropped: %d\n", shown.editor().OggettoDtb(0).StepsCount(),
                static_cast<int>(shown.editor().OggettoDtb(0).StepsDropped()));
    shown.editor().OggettoDtb(0).setDtbHasChanged(false);
    return 0;
}
