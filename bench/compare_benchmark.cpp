// Compares two tables of 1,000,000 records of 20 mixed fields, 0.1 % of the cells changed, and two databases of 500
// tables of 100 x 10: through the component's members alone, and in the real window (offscreen).

#include "app/DtbEditor.h"
#include "bench/MixedTable.h"
#include "compare/engine/TableComparison.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <benchmark/benchmark.h>

#include <QApplication>

#include <memory>

using namespace qir;
using namespace Qt::StringLiterals;

namespace {

constexpr int manyRecords = 1'000'000;
constexpr int tableCount = 500;

QirDatabase mixedDatabase(bool changed) {
    QirDatabase database = QirDatabase::create();
    bench::addMixedTable(database, u"Mixed"_s, manyRecords);
    if (changed)
        bench::changeSomeCells(database);
    return database;
}

/// `changed`: one cell of every tenth table.
QirDatabase databaseOfTables(bool changed) {
    constexpr int records = 100;
    constexpr int fields = 10;
    QirDatabase database = QirDatabase::create();
    for (int table = 0; table < tableCount; ++table) {
        const QString name = u"Table %1"_s.arg(table);
        database.AddTable(name);
        database.QIRTableRecordSource(name);
        database.RemoveRecord(1);
        database.RemoveField(1);
        for (int field = 1; field <= fields; ++field)
            database.AddField(u"f%1"_s.arg(field), field % 2 == 0 ? 10 : 4, 20);
        for (int record = 1; record <= records; ++record) {
            database.AddRecord();
            database.setQIRTableRecordsPointerOut(record);
            for (int field = 1; field <= fields; ++field) {
                const int value = table * records * fields + record * fields + field;
                if (field % 2 == 0)
                    database.setQIRTableRecordSetByIndex(field, u"text %1"_s.arg(value));
                else
                    database.setQIRTableRecordSetByIndex(field, value);
            }
        }
        if (changed && table % 10 == 0)
            database.setQIRTableRecordSetByIndex(fields, u"changed"_s);
    }
    return database;
}

/// The real window with two databases, nothing aligned or shown yet.
class BothPanes {
public:
    BothPanes(QirDatabase left, QirDatabase right)
        : equal(editor())
        , marks(editor(), equal)
        , alignment(editor(), marks)
        , differences(editor(), marks, equal) {
        m_window.show();
        editor().controls().action(Command::OneMenu).setChecked(false);
        editor().controls().action(Command::TwoMenu).setChecked(true);
        editor().pane(0).takeComponent(std::move(left));
        editor().pane(1).takeComponent(std::move(right));
        for (const int pane : {0, 1})
            editor().pane(pane).componentLoaded();
        QApplication::processEvents();
    }

    EditorContext &editor() { return m_window.context(); }
    /// Aligns and marks, then selects the first line as a click does, which loads and compares.
    void alignAndShow() {
        runCommand([&] {
            alignment.MostraTabelleDiverseInLista();
            editor().ListaTabelle(0).setListIndex(-1);
            editor().ListaTabelle(0).setListIndex(0);
        });
    }

private:
    MessageLoop m_loop;
    DtbEditor m_window;

public:
    EqualTables equal;
    TableMarks marks;
    TableListAlignment alignment;
    CellDifferences differences;
};

void decideEqual(benchmark::State &state) {
    const QirDatabase left = mixedDatabase(false);
    const QirDatabase right = mixedDatabase(false);
    bool differ = false;
    for (auto _ : state)
        differ = currentTablesDiffer(left, right);
    if (differ)
        state.SkipWithError("equal tables were found to differ");
}

void decideWhere(benchmark::State &state) {
    const QirDatabase left = mixedDatabase(false);
    const QirDatabase right = mixedDatabase(true);
    std::size_t cells = 0;
    for (auto _ : state)
        cells = differingCells(left, right).count();
    state.counters["cells"] = static_cast<double>(cells);
}

/// The members' calls alone, without comparing: what deciding cannot be quicker than.
void readEveryValue(benchmark::State &state) {
    const QirDatabase left = mixedDatabase(false);
    const QirDatabase right = mixedDatabase(false);
    QVariant value;
    for (auto _ : state) {
        for (int record = 1; record <= manyRecords; ++record) {
            for (const QirDatabase *database : {&left, &right}) {
                database->setQIRTableRecordsPointerOut(record);
                for (int field = 1; field <= bench::mixedFieldCount; ++field)
                    database->readQIRTableRecordSetByIndex(field, value);
            }
        }
    }
}

/// The window with both tables shown, for all measurements on it; dies before the application object.
std::unique_ptr<BothPanes> shown;

BothPanes &shownMixedTables() {
    if (!shown) {
        shown = std::make_unique<BothPanes>(mixedDatabase(false), mixedDatabase(true));
        shown->alignAndShow();
    }
    return *shown;
}

void compareShownTables(benchmark::State &state) {
    BothPanes &panes = shownMixedTables();
    const BitMatrix nothing;
    for (auto _ : state) {
        state.PauseTiming();
        if (state.range(0) == 0) { // as if just loaded: everything white
            for (const int pane : {0, 1})
                panes.editor().Tabella(pane).paintDifferences(nothing);
        }
        state.ResumeTiming();
        runCommand([&] { panes.differences.EvidenziaDifferenzeTabella(); });
    }
    state.counters["red"] = static_cast<double>(panes.editor().ColoriCelle(0).redCount());
}

void paintBothGrids(benchmark::State &state) {
    BothPanes &panes = shownMixedTables();
    const BitMatrix nothing;
    for (auto _ : state) {
        state.PauseTiming();
        for (const int pane : {0, 1})
            panes.editor().Tabella(pane).paintDifferences(nothing);
        state.ResumeTiming();
        for (const int pane : {0, 1})
            panes.editor().Tabella(pane).paintDifferences(panes.editor().CelleDiverse());
    }
}

void updateOneEditedCell(benchmark::State &state) {
    BothPanes &panes = shownMixedTables();
    BitMatrix &different = panes.editor().foundDifferences();
    bool differs = false;
    for (auto _ : state) {
        differs = !differs;
        different.set(manyRecords / 2, 3, differs);
        SetEqualColor(panes.editor(), 0, manyRecords / 2, 3);
        SetEqualColor(panes.editor(), 1, manyRecords / 2, 3);
        panes.marks.MostraTabellaDiversaInLista();
    }
}

void alignMarkAndShowManyTables(benchmark::State &state) {
    BothPanes panes(databaseOfTables(false), databaseOfTables(true));
    for (auto _ : state)
        panes.alignAndShow();
    int marked = 0;
    for (int line = 0; line < tableCount; ++line)
        marked += panes.editor().ListaTabelle(0).List(line).endsWith(u" !"_s) ? 1 : 0;
    state.counters["marked"] = marked;
}

} // namespace

BENCHMARK(readEveryValue)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(decideEqual)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(decideWhere)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(alignMarkAndShowManyTables)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(compareShownTables)->ArgName("unchanged")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(paintBothGrids)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(updateOneEditedCell)->Unit(benchmark::kMicrosecond)->UseRealTime();

int main(int argc, char *argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    shown.reset();
    benchmark::Shutdown();
    return 0;
}
