// Compares two tables of 1,000,000 records of 20 mixed fields by key, 0.1 % of the cells changed: records in the same
// order, and in the opposite one; and looks for the field to propose.

#include "bench/MixedTable.h"
#include "compare/engine/KeyedComparison.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

using namespace qir;
using namespace Qt::StringLiterals;

namespace {

constexpr int manyRecords = 1'000'000;

/// Field 1 counts the records, up or down.
QirDatabase numberedDatabase(bool changed, bool downwards) {
    QirDatabase database = QirDatabase::create();
    bench::addMixedTable(database, u"Mixed"_s, manyRecords);
    if (changed)
        bench::changeSomeCells(database);
    for (int record = 1; record <= manyRecords; ++record) {
        database.setQIRTableRecordsPointerOut(record);
        database.setQIRTableRecordSetByIndex(1, downwards ? manyRecords - record : record - 1);
    }
    return database;
}

KeyedRules byNumber(const QirDatabase &database) {
    return {{database.QIRTableFieldName(1)}, {}, {}};
}

void compare(benchmark::State &state, bool downwards) {
    const QirDatabase left = numberedDatabase(false, false);
    const QirDatabase right = numberedDatabase(true, downwards);
    for (auto _ : state) {
        CurrentTable leftTable(left);
        CurrentTable rightTable(right);
        const auto fields = matchFields(leftTable, rightTable, byNumber(left));
        const KeyedDifference difference = compareByKey(leftTable, rightTable, *fields, {});
        if (!difference.added.empty() || difference.changed.empty())
            state.SkipWithError("not what was to be found");
        benchmark::DoNotOptimize(difference);
    }
}

void CompareByKeyInTheSameOrder(benchmark::State &state) {
    compare(state, false);
}

void CompareByKeyInTheOppositeOrder(benchmark::State &state) {
    compare(state, true);
}

void ProposeAKey(benchmark::State &state) {
    const QirDatabase left = numberedDatabase(false, false);
    const QirDatabase right = numberedDatabase(true, true);
    for (auto _ : state) {
        CurrentTable leftTable(left);
        CurrentTable rightTable(right);
        if (proposedKey(leftTable, rightTable, {}) != left.QIRTableFieldName(1))
            state.SkipWithError("not what was to be found");
    }
}

BENCHMARK(CompareByKeyInTheSameOrder)->Unit(benchmark::kMillisecond)->MinTime(3);
BENCHMARK(CompareByKeyInTheOppositeOrder)->Unit(benchmark::kMillisecond)->MinTime(3);
BENCHMARK(ProposeAKey)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv); // components are looked for beside the running program
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
