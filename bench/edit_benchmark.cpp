// Edits, sorts, fits, copies and pastes with a table of 1,000,000 records of 20 mixed fields open in both panes of the
// real window (offscreen), 0.1 % of the cells differing.

#include "app/DtbEditor.h"
#include "bench/MixedTable.h"
#include "pane/ActivePane.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

#include <memory>

using namespace qir;
using namespace Qt::StringLiterals;

namespace {

constexpr int manyRecords = 1'000'000;
constexpr int blockRecords = 100'000;
constexpr int fieldsCount = bench::mixedFieldCount;
constexpr int firstDouble = 7; // of four
constexpr int firstText = 15;  // of six

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
        QApplication::processEvents();
    }

    EditorContext &editor() { return m_window.context(); }
    Grid &grid() { return editor().Tabella(0); }
    void choose(Command command) {
        QAction &action = editor().controls().action(command);
        action.setEnabled(true);
        action.trigger();
    }

private:
    MessageLoop m_loop;
    DtbEditor m_window;
};

/// For all measurements; dies before the application object.
std::unique_ptr<BothPanes> shown;

BothPanes &panes() {
    if (!shown)
        shown = std::make_unique<BothPanes>();
    return *shown;
}

void press(QWidget &widget, Qt::Key key, const QString &text) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(&widget, &event);
}

/// One key in the editor over a cell in the middle of the table: written, compared, painted red or white in both grids,
/// marked in both lists. With an argument of 1 the window is drawn too.
void keystroke(benchmark::State &state) {
    BothPanes &both = panes();
    both.grid().setSelection(singleCell(manyRecords / 2, 1));
    press(both.grid(), Qt::Key_Return, u"\r"_s);
    QLineEdit &txtEdit = both.editor().txtEdit(0);
    if (txtEdit.isHidden()) {
        state.SkipWithError("no editor opened");
        return;
    }
    QApplication::processEvents();
    bool typed = false;
    for (auto _ : state) {
        if (typed)
            press(txtEdit, Qt::Key_Backspace, u"\b"_s);
        else
            press(txtEdit, Qt::Key_5, u"5"_s);
        typed = !typed;
        if (state.range(0) == 1)
            QApplication::processEvents();
    }
    press(txtEdit, Qt::Key_Return, u"\r"_s);
}

/// Sorts by two columns of a kind in turn, so that every run finds the records in another order.
void sortBy(benchmark::State &state, int firstColumn) {
    BothPanes &both = panes();
    both.editor().setOrigin(0);
    int column = firstColumn;
    for (auto _ : state) {
        both.grid().setSelection(singleCell(1, column));
        both.choose(Command::SortFPOP);
        column = column == firstColumn ? firstColumn + 1 : firstColumn;
    }
}

void sortByDouble(benchmark::State &state) {
    sortBy(state, firstDouble);
}

void sortByText(benchmark::State &state) {
    sortBy(state, firstText);
}

void fitAllColumns(benchmark::State &state) {
    BothPanes &both = panes();
    for (auto _ : state)
        both.choose(Command::ColumnSizeAdjust);
}

void copyBlock(benchmark::State &state) {
    BothPanes &both = panes();
    both.grid().setSelection({1, 1, blockRecords, fieldsCount});
    for (auto _ : state)
        both.choose(Command::CopyMenu);
}

/// Pastes a block of other values, each time another one.
void pasteOtherValues(benchmark::State &state) {
    BothPanes &both = panes();
    int from = 1;
    for (auto _ : state) {
        state.PauseTiming();
        from = from == 1 ? blockRecords + 1 : 1;
        both.grid().setSelection({from, 1, from + blockRecords - 1, fieldsCount});
        both.choose(Command::CopyMenu);
        both.grid().setSelection({2 * blockRecords + 1, 1, 3 * blockRecords, fieldsCount});
        state.ResumeTiming();
        both.choose(Command::PasteMenu);
    }
}

/// Pastes a block over itself, which must leave the changed flag alone.
void pasteSameValues(benchmark::State &state) {
    BothPanes &both = panes();
    both.grid().setSelection({1, 1, blockRecords, fieldsCount});
    both.choose(Command::CopyMenu);
    both.editor().OggettoDtb(0).setDtbHasChanged(false);
    for (auto _ : state)
        both.choose(Command::PasteMenu);
    if (both.editor().OggettoDtb(0).DtbHasChanged())
        state.SkipWithError("the changed flag was set");
}

} // namespace

BENCHMARK(keystroke)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(fitAllColumns)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(copyBlock)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(pasteSameValues)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(pasteOtherValues)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(sortByDouble)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(4);
BENCHMARK(sortByText)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(4);

int main(int argc, char *argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    shown.reset();
    return 0;
}
