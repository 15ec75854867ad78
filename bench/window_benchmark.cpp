// Shows a table of 1,000,000 records of 20 mixed fields in the real window (offscreen): filling the grid, fitting its
// columns, and the longest time that the window was deaf meanwhile.

#include "app/DtbEditor.h"
#include "bench/MixedTable.h"
#include "pane/GridCommands.h"
#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"
#include "view/ColumnFit.h"
#include "view/TableLoader.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <optional>

using namespace qir;
using namespace Qt::StringLiterals;

namespace {

QString databasePath;

/// The longest time between two turns of the message loop while it lives.
class DeafTime {
public:
    DeafTime() {
        QObject::connect(&m_timer, &QTimer::timeout,
                         [this] { m_longest = std::max(m_longest, m_sinceLastTurn.restart()); });
        m_timer.start(0);
        m_sinceLastTurn.start();
    }
    double milliseconds() const { return static_cast<double>(m_longest); }

private:
    QTimer m_timer;
    QElapsedTimer m_sinceLastTurn;
    qint64 m_longest = 0;
};

/// `watched`: with a timer that turns whenever it can, to see how long the window is deaf; its turns cost time.
void fillAndFit(benchmark::State &state) {
    const bool watched = state.range(0) != 0;
    MessageLoop loop;
    DtbEditor window;
    window.show();
    runCommand([&] { window.Form_Load(databasePath); });
    EqualTables equal(window.context());
    TableMarks marks(window.context(), equal);
    CellDifferences differences(window.context(), marks, equal);
    GridCommands commands;
    TableLoader tables(window.context(), differences, commands);
    for (auto _ : state) {
        std::optional<DeafTime> deaf;
        if (watched)
            deaf.emplace();
        runCommand([&] { tables.RiempiGrigliaDaTabella(0); });
        if (watched)
            state.counters["deaf_ms"] = deaf->milliseconds();
    }
    state.counters["cells"] =
        static_cast<double>(window.context().TestiCelle(0).fields()) * window.context().TestiCelle(0).records();
    state.counters["text_bytes"] = static_cast<double>(window.context().TestiCelle(0).memory());
}

void fit(benchmark::State &state) {
    MessageLoop loop;
    DtbEditor window;
    window.show();
    runCommand([&] { window.Form_Load(databasePath); });
    for (auto _ : state)
        runCommand([&] { SizeAdjust(window.context(), window.context().Tabella(0)); });
}

} // namespace

BENCHMARK(fillAndFit)
    ->ArgName("watched")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK(fit)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char *argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QTemporaryDir folder;
    databasePath = folder.filePath(u"MIXED.DDB"_s);
    qir::bench::makeMixedFile(databasePath, 1'000'000);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
