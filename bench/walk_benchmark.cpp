// Walks over the 20,000 differences between two tables of 1,000,000 records of 20 mixed fields in the real window
// (offscreen), by the command that the key runs, drawing the window after each step: the time of a step, their median,
// what 99 of 100 stay below, the longest one, and the longest time of the processor's that a step takes, in which
// others that want the machine have no part.

#include "app/DtbEditor.h"
#include "bench/MixedTable.h"
#include "pane/ActivePane.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <ctime>
#include <memory>
#include <vector>

using namespace qir;
using namespace Qt::StringLiterals;

namespace {

constexpr int manyRecords = 1'000'000;
constexpr int manySteps = 20'000;

/// The real window with both tables shown.
class BothPanes {
public:
    BothPanes() {
        m_window.show();
        editor().controls().action(Command::OneMenu).setChecked(false);
        editor().controls().action(Command::TwoMenu).setChecked(true);
        for (const int pane : {0, 1}) {
            editor().pane(pane).takeComponent(QirDatabase::create());
            bench::addMixedTable(editor().OggettoDtb(pane), u"Mixed"_s, manyRecords);
            if (pane == 1)
                bench::changeSomeCells(editor().OggettoDtb(pane));
            editor().pane(pane).componentLoaded();
        }
        EqualTables equal(editor());
        TableMarks marks(editor(), equal);
        TableListAlignment alignment(editor(), marks);
        runCommand([&] {
            alignment.MostraTabelleDiverseInLista();
            editor().ListaTabelle(0).setListIndex(-1);
            editor().ListaTabelle(0).setListIndex(0);
        });
        activatePane(editor(), 0);
        AbilitaMenu(editor(), 1);
        AbilitaMenu(editor(), 0);
        QApplication::processEvents();
    }

    EditorContext &editor() { return m_window.context(); }
    void choose(Command command) {
        editor().controls().action(command).trigger();
        QApplication::processEvents(); // draws
    }

private:
    MessageLoop m_loop;
    DtbEditor m_window;
};

double processorMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// For all measurements; dies before the application object.
std::unique_ptr<BothPanes> shown;

/// The given steps, each timed by itself.
void walk(benchmark::State &state, Command command) {
    if (!shown)
        shown = std::make_unique<BothPanes>();
    shown->choose(Command::FirstDifferenceMenu);
    std::vector<double> times; // milliseconds
    double longest = 0;        // of the processor's
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        const double before = processorMilliseconds();
        shown->choose(command);
        longest = std::max(longest, processorMilliseconds() - before);
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::ranges::sort(times);
    const EditorContext &editor = shown->editor();
    state.counters["median_ms"] = times[times.size() / 2];
    state.counters["of_100_99_ms"] = times[times.size() * 99 / 100];
    state.counters["longest_ms"] = times.back();
    state.counters["longest_cpu_ms"] = longest;
    state.counters["differing_cells"] = static_cast<double>(editor.CelleDiverse().count());
    state.counters["differing_records"] = static_cast<double>(editor.CelleDiverse().rowCount());
    state.counters["row"] = editor.Tabella(0).Row();
}

} // namespace

BENCHMARK_CAPTURE(walk, cells, Command::NextDifferingCellMenu)->Iterations(manySteps)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(walk, records, Command::NextDifferenceMenu)->Iterations(manySteps)->Unit(benchmark::kMillisecond);

int main(int argc, char *argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    shown.reset();
    benchmark::Shutdown();
    return 0;
}
