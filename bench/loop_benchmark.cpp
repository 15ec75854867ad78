// What a long loop pays for keeping the window alive.

#include "platform/loop/MessageLoop.h"

#include <benchmark/benchmark.h>

#include <QApplication>

using namespace qir;

namespace {

void yieldIfDue(benchmark::State &state) {
    const MessageLoop loop;
    YieldTimer timer;
    for ([[maybe_unused]] auto _ : state)
        timer.yieldIfDue();
}

void yieldWithNothingPending(benchmark::State &state) {
    MessageLoop loop;
    for ([[maybe_unused]] auto _ : state)
        loop.yield();
}

BENCHMARK(yieldIfDue);
BENCHMARK(yieldWithNothingPending)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
