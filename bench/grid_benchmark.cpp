// A grid of 1,000,000 records of 20 fields: filling, fitting, painting, moving about.

#include "platform/grid/ColumnMeasure.h"
#include "platform/grid/Grid.h"
#include "platform/grid/GridFill.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QHeaderView>
#include <QPixmap>

#include <memory>
#include <numeric>

using namespace Qt::StringLiterals;

using namespace qir;

namespace {

constexpr int records = 1'000'000;
constexpr int fields = 20;

QStringList headers() {
    QStringList texts;
    for (int k = 1; k <= fields; ++k)
        texts.append(u"Field %1 [long]"_s.arg(k));
    return texts;
}

/// Records as a component gives them, mixed: numbers, decimals, short texts, dates. A hundred different ones in turn,
/// so that making them takes no time.
std::vector<QStringList> sampleRecords() {
    std::vector<QStringList> samples;
    for (int r = 0; r < 100; ++r) {
        QStringList values{QString()};
        for (int k = 0; k < fields; ++k) {
            const int number = (r * 7919 + k * 104729) % 1000003;
            switch (k % 4) {
            case 0:
                values.append(QString::number(number));
                break;
            case 1:
                values.append(QString::number(number / 1000.0, 'f', 3));
                break;
            case 2:
                values.append(u"name %1"_s.arg(number % 1000));
                break;
            default:
                values.append(u"2024%1"_s.arg(number % 10000, 4, 10, QChar(u'0')));
                break;
            }
        }
        samples.push_back(values);
    }
    return samples;
}

void fill(Grid &grid) {
    static const std::vector<QStringList> samples = sampleRecords();
    GridFill filling(grid, headers(), records, GridFill::NewTable);
    for (int r = 0; r < records; ++r)
        filling.appendRecord(samples[static_cast<std::size_t>(r) % samples.size()]);
}

/// One big grid for everything that does not change it.
Grid &bigGrid() {
    static const std::unique_ptr<Grid> grid = [] {
        auto made = std::make_unique<Grid>();
        made->resize(1000, 700);
        fill(*made);
        made->show();
        QApplication::processEvents();
        return made;
    }();
    return *grid;
}

/// One cell in a thousand differs.
BitMatrix differences() {
    BitMatrix different(records + 1, fields + 1);
    for (std::size_t cell = 0; cell < std::size_t{records} * fields; cell += 1000)
        different.set(cell / fields + 1, cell % fields + 1, true);
    return different;
}

void fillGrid(benchmark::State &state) {
    Grid grid;
    for ([[maybe_unused]] auto _ : state)
        fill(grid);
    state.counters["bytes per cell"] = static_cast<double>(grid.texts().memory()) / records / fields;
}

void fitGrid(benchmark::State &state) {
    Grid &grid = bigGrid();
    for ([[maybe_unused]] auto _ : state)
        measureColumns(grid, grid.font(), 0);
}

void paintDifferencesOfTwoGrids(benchmark::State &state) {
    Grid &grid = bigGrid();
    const BitMatrix different = differences();
    const BitMatrix none(records + 1, fields + 1);
    for ([[maybe_unused]] auto _ : state) {
        // Two panes: red in one, white in the other, as many cells change.
        grid.paintDifferences(different);
        grid.paintDifferences(none);
    }
}

void paintUnchanged(benchmark::State &state) {
    Grid &grid = bigGrid();
    const BitMatrix different = differences();
    grid.paintDifferences(different);
    for ([[maybe_unused]] auto _ : state)
        grid.paintDifferences(different);
    grid.paintDifferences(BitMatrix());
}

void writeACell(benchmark::State &state) {
    Grid &grid = bigGrid();
    int row = 1;
    for ([[maybe_unused]] auto _ : state) {
        grid.setTextMatrix(row, 3, u"name 77"_s);
        grid.setCellBackColor(row, 3, CellColour::Red);
        grid.setCellBackColor(row, 3, CellColour::White);
        row = row % records + 1;
    }
}

void selectEverythingAndDraw(benchmark::State &state) {
    Grid &grid = bigGrid();
    for ([[maybe_unused]] auto _ : state) {
        grid.selectAll();
        benchmark::DoNotOptimize(grid.grab());
        grid.setSelection(singleCell(1, 1));
    }
}

void moveToTheEndAndBackAndDraw(benchmark::State &state) {
    Grid &grid = bigGrid();
    for ([[maybe_unused]] auto _ : state) {
        for (const int row : {records, 1}) {
            grid.setRow(row);
            grid.bringCellIntoView();
            benchmark::DoNotOptimize(grid.grab());
        }
    }
}

void beginAndEndAnEdit(benchmark::State &state) {
    Grid &grid = bigGrid();
    for ([[maybe_unused]] auto _ : state) {
        grid.setUserResizing(false);
        benchmark::DoNotOptimize(grid.cellRectangle());
        grid.setUserResizing(true);
    }
}

void reorderRecords(benchmark::State &state) {
    Grid &grid = bigGrid();
    std::vector<std::uint32_t> order(records);
    std::iota(order.rbegin(), order.rend(), 0U);
    for ([[maybe_unused]] auto _ : state)
        grid.reorderRecords(order);
}

void copyABlock(benchmark::State &state) {
    Grid &grid = bigGrid();
    grid.setSelection({1, 1, 100'000, fields});
    QString text;
    for ([[maybe_unused]] auto _ : state)
        text = grid.Clip();
    grid.setSelection(singleCell(1, 1));
    state.counters["characters"] = static_cast<double>(text.size());
}

void pasteABlock(benchmark::State &state) {
    Grid &grid = bigGrid();
    grid.setSelection({1, 1, 100'000, fields});
    const QString text = grid.Clip();
    for ([[maybe_unused]] auto _ : state)
        grid.setClip(text);
    grid.setSelection(singleCell(1, 1));
}

BENCHMARK(fillGrid)->Unit(benchmark::kMillisecond);
BENCHMARK(fitGrid)->Unit(benchmark::kMillisecond);
BENCHMARK(paintDifferencesOfTwoGrids)->Unit(benchmark::kMillisecond);
BENCHMARK(paintUnchanged)->Unit(benchmark::kMillisecond);
BENCHMARK(writeACell)->Unit(benchmark::kMicrosecond);
BENCHMARK(selectEverythingAndDraw)->Unit(benchmark::kMillisecond);
BENCHMARK(moveToTheEndAndBackAndDraw)->Unit(benchmark::kMillisecond);
BENCHMARK(beginAndEndAnEdit)->Unit(benchmark::kMillisecond);
BENCHMARK(reorderRecords)->Unit(benchmark::kMillisecond);
BENCHMARK(copyABlock)->Unit(benchmark::kMillisecond);
BENCHMARK(pasteABlock)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
