// Clones a table of 1,000,000 records of 20 mixed fields into the other pane's database, and makes a table longer by
// 100,000 such records: the copying alone, and the whole command in the real window (offscreen).

#include "app/DtbEditor.h"
#include "bench/MixedTable.h"
#include "pane/ActivePane.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"
#include "structure/TableCopy.h"

#include <benchmark/benchmark.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QMessageBox>

#include <memory>

using namespace qir;
using namespace Qt::StringLiterals;

namespace {

constexpr int manyRecords = 1'000'000;
constexpr int appendedRecords = 100'000;

QirDatabase mixedDatabase(int records) {
    QirDatabase database = QirDatabase::create();
    bench::addMixedTable(database, u"Mixed"_s, records);
    return database;
}

/// Answers every question by one of its buttons, once it shows. A message ends the program: nobody is there to read it.
class Answering : public QObject {
public:
    explicit Answering(QMessageBox::StandardButton button)
        : m_button(button) {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override {
        auto *box = qobject_cast<QMessageBox *>(watched);
        if (box == nullptr || event->type() != QEvent::Show)
            return false;
        if (box->button(m_button) == nullptr)
            qFatal("%s", qUtf8Printable(box->text()));
        QMetaObject::invokeMethod(box->button(m_button), &QAbstractButton::click, Qt::QueuedConnection);
        return false;
    }

private:
    QMessageBox::StandardButton m_button;
};

/// The real window with two databases, the first line of the left list selected as by a click.
class BothPanes {
public:
    BothPanes(QirDatabase left, QirDatabase right) {
        m_window.show();
        editor().controls().action(Command::OneMenu).setChecked(false);
        editor().controls().action(Command::TwoMenu).setChecked(true);
        editor().pane(0).takeComponent(std::move(left));
        editor().pane(1).takeComponent(std::move(right));
        for (const int pane : {0, 1})
            editor().pane(pane).componentLoaded();
        activatePane(editor(), 0);
        QApplication::processEvents();
        editor().controls().action(Command::CompareAgainMenu).trigger();
        runCommand([&] {
            editor().ListaTabelle(0).setListIndex(-1);
            editor().ListaTabelle(0).setListIndex(0);
        });
    }

    EditorContext &editor() { return m_window.context(); }

    /// Runs a command of a pop-up of the left pane.
    void choose(Command command) {
        editor().setOrigin(0);
        editor().controls().action(command).trigger();
    }

private:
    MessageLoop m_loop;
    DtbEditor m_window;
};

/// What CloneSecco writes, without lists and grids; with its group of changes.
void copyTable(benchmark::State &state) {
    const QirDatabase source = mixedDatabase(manyRecords);
    for (auto _ : state) {
        const QirDatabase target = QirDatabase::create();
        ChangeGroup changes(target);
        target.AddTable(u"Mixed"_s);
        target.QIRTableRecordSource(u"Mixed"_s);
        target.RemoveRecord(1);
        target.RemoveField(1);
        copyFields(source, target);
        RecordCopy copy(source, target);
        for (int r = 1; r <= manyRecords; ++r) {
            target.AddRecord();
            source.setQIRTableRecordsPointerOut(r);
            target.setQIRTableRecordsPointerOut(r);
            copy.copyCurrentRecord();
        }
        changes.commit();
        if (target.QirTableRecordsCount() != manyRecords)
            state.SkipWithError("records are missing");
    }
}

void cloneTable(benchmark::State &state) {
    const Answering answer(QMessageBox::Yes);
    BothPanes panes(mixedDatabase(manyRecords), QirDatabase::create());
    const QirDatabase &target = panes.editor().OggettoDtb(1);
    for (auto _ : state) {
        panes.choose(Command::ClonePOP);
        state.PauseTiming();
        if (panes.editor().Tabella(1).Rows() != manyRecords + 1)
            state.SkipWithError("the table is not shown on the other side");
        target.RemoveTable(1);
        panes.editor().controls().action(Command::CompareAgainMenu).trigger();
        state.ResumeTiming();
    }
}

/// The records that are missing in the target, with their content (1) or empty (0).
void makeTableAsLong(benchmark::State &state) {
    const Answering answer(state.range(0) == 1 ? QMessageBox::Yes : QMessageBox::No);
    BothPanes panes(mixedDatabase(appendedRecords + 1), mixedDatabase(1));
    for (auto _ : state) {
        panes.choose(Command::CloneTableSizePOP);
        state.PauseTiming();
        if (panes.editor().Tabella(1).Rows() != appendedRecords + 2)
            state.SkipWithError("records are missing");
        panes.editor().OggettoDtb(1).RemoveTable(1);
        bench::addMixedTable(panes.editor().OggettoDtb(1), u"Mixed"_s, 1);
        panes.editor().pane(1).tableHidden();
        panes.editor().controls().action(Command::CompareAgainMenu).trigger();
        state.ResumeTiming();
    }
}

/// The appending alone, with the content.
void appendRecords(benchmark::State &state) {
    const QirDatabase source = mixedDatabase(appendedRecords + 1);
    for (auto _ : state) {
        state.PauseTiming();
        const QirDatabase target = mixedDatabase(1);
        state.ResumeTiming();
        ChangeGroup changes(target);
        RecordCopy copy(source, target);
        for (int k = 2; k <= appendedRecords + 1; ++k) {
            target.AddRecord();
            const int record = target.QirTableRecordsCount();
            target.setQIRTableRecordsPointerOut(record);
            source.setQIRTableRecordsPointerOut(record);
            copy.copyCurrentRecord();
        }
        changes.commit();
        if (target.QirTableRecordsCount() != appendedRecords + 1)
            state.SkipWithError("records are missing");
    }
}

} // namespace

BENCHMARK(copyTable)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(cloneTable)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(appendRecords)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(makeTableAsLong)->ArgName("content")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char *argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
