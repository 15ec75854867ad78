#include "platform/controls/Twips.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"
#include "tests/compare/CallLog.h"
#include "tests/compare/ComparePanes.h"
#include "tests/compare/SetElements.h"
#include "tests/model/TableGenerators.h"
#include "tests/tools/fake/FakeControl.h"
#include "view/GridSave.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <QGroupBox>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace qir;
using test::Cells;
using test::ComparePanes;
using test::PlainDatabase;
using test::PlainTable;
using test::PlainValue;
using test::with;

namespace {

/// Records of two fields, a number and a text that tell the record.
PlainTable numbered(int records) {
    PlainTable table{"T", {false, true}, {}};
    for (int r = 1; r <= records; ++r)
        table.records.push_back({static_cast<double>(r), u"r%1"_s.arg(r)});
    return table;
}

class CellDifferencesTest : public testing::Test {
protected:
    void show(const PlainTable &left, const PlainTable &right) {
        panes.openBoth({left}, {right});
        panes.selectBoth(0);
    }
    void run(SelectionRule rule = SelectionRule::SameLine, CellWindow window = {}) {
        panes.differences().EvidenziaDifferenzeTabella(rule, window);
    }
    Cells different() { return test::setElements(panes.editor().CelleDiverse()); }
    QProgressBar &bar() { return *panes.editor().controls().ProgressBarCompare; }

    UseFake fake;
    ComparePanes panes;
};

TEST_F(CellDifferencesTest, PaintsADifferingCellRedInBothGridsAndMarksTheLine) {
    show(numbered(3), with(numbered(3), 2, 1, 9.0));
    run();
    EXPECT_EQ(panes.redCells(0), (Cells{{2, 1}}));
    EXPECT_EQ(panes.redCells(1), (Cells{{2, 1}}));
    EXPECT_EQ(panes.lines(0) + panes.lines(1), QStringList({u"T !"_s, u"T !"_s}));
}

TEST_F(CellDifferencesTest, PaintsRecordsOfOneGridRed) {
    show(numbered(5), numbered(3));
    run();
    EXPECT_EQ(panes.redCells(0), (Cells{{4, 1}, {4, 2}, {5, 1}, {5, 2}}));
    EXPECT_TRUE(panes.redCells(1).empty());
    EXPECT_EQ(panes.lines(1), QStringList(u"T !"_s));
    EXPECT_EQ(different(), (Cells{{4, 1}, {4, 2}, {5, 1}, {5, 2}}));
}

TEST_F(CellDifferencesTest, PaintsAFieldOfOneGridRed) {
    PlainTable wider = numbered(2);
    wider.addField(true);
    show(numbered(2), wider);
    run();
    EXPECT_TRUE(panes.redCells(0).empty());
    EXPECT_EQ(panes.redCells(1), (Cells{{1, 3}, {2, 3}}));
}

TEST_F(CellDifferencesTest, PaintsTheFirstFieldRedBesideATableWithoutFields) {
    show({"T", {}, {{}, {}}}, {"T", {true}, {{"x"}, {"y"}}});
    run();
    EXPECT_EQ(panes.redCells(1), (Cells{{1, 1}, {2, 1}}));
    EXPECT_EQ(panes.lines(0), QStringList(u"T !"_s));
}

TEST_F(CellDifferencesTest, PaintsTheGridBesideAPlaceholderWhite) {
    panes.openBoth({numbered(2)}, {});
    panes.selectBoth(0);
    panes.grid(0).setCellBackColor(1, 1, CellColour::Red);
    fake->reset();
    run();
    EXPECT_TRUE(panes.redCells(0).empty());
    EXPECT_EQ(panes.lines(0) + panes.lines(1), QStringList({u"T"_s, u"T ?"_s}));
    EXPECT_EQ(fake->calls(u"QIRTableRecordSetByIndex"_s), 0);
    EXPECT_FALSE(panes.grid(1).Visible());
    EXPECT_EQ(panes.editor().CelleDiverse().count(), 0U);
}

TEST_F(CellDifferencesTest, DoesNothingWhileTheSelectedLinesDiffer) {
    panes.openBoth({numbered(2), {"U", {}, {}}}, {with(numbered(2), 1, 1, 7.0), {"U", {}, {}}});
    panes.select(0, 0);
    panes.select(1, 1);
    panes.grid(0).setCellBackColor(1, 1, CellColour::Red);
    fake->reset();
    run();
    EXPECT_EQ(panes.redCells(0), (Cells{{1, 1}}));
    EXPECT_EQ(fake->calls(), 0);
}

TEST_F(CellDifferencesTest, ClearsEachShownGridWhenToldToIgnoreTheLines) {
    panes.openBoth({numbered(2), {"U", {true}, {{"x"}}}}, {with(numbered(2), 1, 1, 7.0), {"U", {true}, {{"x"}}}});
    panes.select(0, 0);
    panes.select(1, 1);
    for (const int pane : {0, 1})
        panes.grid(pane).setCellBackColor(1, 1, CellColour::Red);
    run(SelectionRule::Ignore);
    EXPECT_TRUE(panes.redCells(0).empty());
    EXPECT_TRUE(panes.redCells(1).empty());
    EXPECT_EQ(panes.lines(0), QStringList({u"T !"_s, u"U"_s})); // the tables still differ
}

TEST_F(CellDifferencesTest, DoesNotCompareLinesOfDifferentNames) {
    panes.openBoth({{"A", {true}, {{"x"}}}}, {{"A", {true}, {{"y"}}}});
    // What adding a table to each side leaves until the lists are aligned again.
    panes.editor().OggettoDtb(0).AddTable(u"0"_s);
    panes.editor().OggettoDtb(1).AddTable(u"B"_s);
    panes.list(0).addItem(u"0"_s);
    panes.list(0).setItemData(panes.list(0).NewIndex(), 2);
    panes.list(1).addItem(u"B"_s);
    panes.list(1).setItemData(panes.list(1).NewIndex(), 2);
    panes.selectBoth(1); // A on the left, B on the right
    panes.grid(0).setCellBackColor(1, 1, CellColour::Red);
    fake->reset();
    run();
    EXPECT_EQ(fake->calls(u"QIRTableRecordSetByIndex"_s), 0);
    EXPECT_TRUE(panes.redCells(0).empty());
    EXPECT_EQ(panes.editor().CelleDiverse().count(), 0U);
}

TEST_F(CellDifferencesTest, PaintsOnlyInsideTheWindowAndKnowsAllDifferences) {
    PlainTable other = numbered(4);
    for (auto &values : other.records)
        values = {-1.0, u"-"_s};
    show(numbered(4), other);
    run(SelectionRule::SameLine, {2, 3, 2, 2});
    EXPECT_EQ(panes.redCells(0), (Cells{{2, 2}, {3, 2}}));
    EXPECT_EQ(panes.redCells(1), (Cells{{2, 2}, {3, 2}}));
    EXPECT_EQ(panes.editor().CelleDiverse().count(), 8U);
}

TEST_F(CellDifferencesTest, TakesZeroBoundsForTheFirstAndTheLastOfEither) {
    PlainTable other = numbered(4);
    for (auto &values : other.records)
        values = {-1.0, u"-"_s};
    show(numbered(2), other);
    run(SelectionRule::SameLine, {2, 0, 0, 1});
    EXPECT_EQ(panes.redCells(0), (Cells{{2, 1}}));
    EXPECT_EQ(panes.redCells(1), (Cells{{2, 1}, {3, 1}, {4, 1}}));
}

TEST_F(CellDifferencesTest, KeepsTheColoursOutsideTheWindow) {
    show(numbered(3), numbered(3));
    panes.grid(0).setCellBackColor(1, 1, CellColour::Red);
    panes.grid(0).setCellBackColor(3, 1, CellColour::Red);
    run(SelectionRule::SameLine, {2, 0, 0, 0});
    EXPECT_EQ(panes.redCells(0), (Cells{{1, 1}}));
}

TEST_F(CellDifferencesTest, ClearsInsideTheWindowOnly) {
    panes.openBoth({numbered(3)}, {});
    panes.selectBoth(0);
    for (const int row : {1, 2, 3})
        panes.grid(0).setCellBackColor(row, 1, CellColour::Red);
    run(SelectionRule::SameLine, {2, 2, 0, 0});
    EXPECT_EQ(panes.redCells(0), (Cells{{1, 1}, {3, 1}}));
}

TEST_F(CellDifferencesTest, LooksAtStoredValuesNotAtTheTextsInTheGrids) {
    show(numbered(2), numbered(2));
    panes.grid(0).setTextMatrix(1, 2, u"typed"_s);
    run();
    EXPECT_TRUE(panes.redCells(0).empty());
}

TEST_F(CellDifferencesTest, MakesTheShownTablesCurrentFirst) {
    const PlainTable other{"U", {true}, {{"x"}}};
    panes.openBoth({numbered(2), other}, {with(numbered(2), 2, 2, "z"), other});
    panes.selectBoth(0);
    panes.alignment().MostraTabelleDiverseInLista(); // leaves U current
    run();
    EXPECT_EQ(panes.redCells(0), (Cells{{2, 2}}));
    EXPECT_EQ(panes.editor().pane(1).TabellaCorrente(), u"T"_s);
}

TEST_F(CellDifferencesTest, DoesNotCompareAGridThatStillShowsAnotherTable) {
    show(numbered(2), with(numbered(2), 1, 1, 7.0));
    panes.editor().OggettoDtb(1).AddTable(u"U"_s);
    panes.editor().pane(1).makeTableCurrent(u"U"_s);
    panes.editor().pane(1).tableLoaded();
    run();
    EXPECT_TRUE(panes.redCells(0).empty());
}

TEST_F(CellDifferencesTest, RaisesNothingAndMovesNothing) {
    show(numbered(100), with(numbered(100), 1, 1, 7.0));
    panes.grid(0).setSelection({40, 1, 45, 2});
    panes.grid(0).setTopRow(38);
    panes.grid(1).setSelection({3, 2, 3, 2});
    panes.grid(0).setFocus();
    const int topRow = panes.grid(0).TopRow();
    int events = 0;
    for (const int pane : {0, 1}) {
        for (const auto signal : {&Grid::LeaveCell, &Grid::SelChange, &Grid::Scroll})
            QObject::connect(&panes.grid(pane), signal, [&] { ++events; });
        QObject::connect(&panes.list(pane), &ListBox::Click, [&] { ++events; });
    }
    run();
    EXPECT_EQ(events, 0);
    EXPECT_EQ(panes.grid(0).selection(), (GridSelection{40, 1, 45, 2}));
    EXPECT_EQ(panes.grid(1).selection(), (GridSelection{3, 2, 3, 2}));
    EXPECT_EQ(panes.grid(0).TopRow(), topRow);
    EXPECT_TRUE(panes.grid(0).hasFocus());
    EXPECT_TRUE(panes.grid(0).Visible());
    EXPECT_TRUE(panes.grid(1).Visible());
}

TEST_F(CellDifferencesTest, TouchesNoCellWhenNothingChanged) {
    show(numbered(10), with(numbered(10), 5, 1, 7.0));
    run();
    QSignalSpy left(panes.grid(0).model(), &QAbstractItemModel::dataChanged);
    QSignalSpy right(panes.grid(1).model(), &QAbstractItemModel::dataChanged);
    QSignalSpy list(panes.list(0).model(), &QAbstractItemModel::dataChanged);
    run();
    EXPECT_EQ(left.count() + right.count() + list.count(), 0);
}

TEST_F(CellDifferencesTest, HidesBothGridsWhileItComparesAndShowsTheBarBelowTheLists) {
    show(numbered(3), with(numbered(3), 3, 1, 9.0));
    QList<int> values;
    QObject::connect(&bar(), &QProgressBar::valueChanged, [&](int value) { values.append(value); });
    bool looked = false;
    fake->setHook([&](const FakeCall &call) {
        if (looked || call.member != u"QIRTableRecordSetByIndex")
            return;
        looked = true;
        EXPECT_FALSE(panes.grid(0).Visible());
        EXPECT_FALSE(panes.grid(1).Visible());
        EXPECT_TRUE(bar().isVisible());
        EXPECT_EQ(bar().maximum(), 3);
        EXPECT_EQ(bar().value(), 0);
        const QRect left = panes.editor().IDtb(0).geometry();
        const QRect right = panes.editor().IDtb(1).geometry();
        const QRect list = panes.list(0).geometry();
        EXPECT_EQ(bar().x(), left.x());
        EXPECT_EQ(bar().y(), left.y() + list.y() + list.height() + toPixels(50));
        EXPECT_EQ(bar().width(), right.x() + right.width() - left.x());
    });
    run();
    EXPECT_TRUE(looked);
    EXPECT_EQ(values.mid(values.indexOf(1)), QList<int>({1, 2, 3}));
    EXPECT_FALSE(bar().isVisible());
}

TEST_F(CellDifferencesTest, MovesTheBarInFewStepsForManyRecords) {
    PlainTable many{"T", {false}, std::vector<std::vector<PlainValue>>(5000, {0.0})};
    fake->setLogging(false);
    show(many, many);
    QList<int> values;
    QObject::connect(&bar(), &QProgressBar::valueChanged, [&](int value) { values.append(value); });
    run();
    EXPECT_LE(values.size(), 202);
    EXPECT_EQ(values.last(), 5000);
    EXPECT_TRUE(std::ranges::is_sorted(values.mid(values.indexOf(0) + 1)));
}

TEST_F(CellDifferencesTest, ShowsAnEmptyBarForNoRecords) {
    show(numbered(1), numbered(1));
    // A grid without records hides itself; shown against that rule it still brings no endless activity.
    panes.editor().OggettoDtb(0).RemoveRecord(1);
    panes.grid(0).setRows(1);
    bool looked = false;
    fake->setHook([&](const FakeCall &) {
        if (!bar().isVisible())
            return;
        looked = true;
        EXPECT_GT(bar().maximum(), bar().minimum());
        EXPECT_EQ(bar().value(), 0);
    });
    run();
    EXPECT_TRUE(looked);
    EXPECT_EQ(panes.redCells(1), (Cells{{1, 1}, {1, 2}}));
}

TEST_F(CellDifferencesTest, ShowsGridsAndHidesTheBarAgainAfterAnError) {
    show(numbered(3), with(numbered(3), 3, 1, 9.0));
    panes.grid(1).setSelection({2, 1, 3, 2});
    fake->failOn(u"QIRTableRecordSetByIndex"_s, u"broken"_s, 4);
    EXPECT_THROW(run(), std::exception);
    EXPECT_TRUE(panes.grid(0).Visible());
    EXPECT_TRUE(panes.grid(1).Visible());
    EXPECT_FALSE(bar().isVisible());
    EXPECT_EQ(panes.grid(1).selection(), (GridSelection{2, 1, 3, 2}));
}

TEST_F(CellDifferencesTest, EndsAtTheNextYieldWhenTheWindowWasClosed) {
    show(numbered(3), numbered(3));
    MessageLoop loop;
    QTimer::singleShot(0, &loop, [&] { loop.endProgram(); });
    fake->reset();
    EXPECT_THROW(run(), ProgramEnded);
    EXPECT_EQ(fake->calls(), 0);
    EXPECT_TRUE(panes.grid(0).Visible());
    EXPECT_FALSE(bar().isVisible());
}

TEST_F(CellDifferencesTest, CallsTheComponentsInTheGivenOrder) {
    show(numbered(1), numbered(2));
    fake->clearLog();
    run();
    std::vector<std::string> expected;
    for (int i = 0; i < 2; ++i) {
        for (const char *member : {"QirTableRecordsCount", "QirTableFieldsCount"}) {
            expected.push_back(std::string("left ") + member);
            expected.push_back(std::string("right ") + member);
        }
    }
    for (const char *call :
         {"left QIRTableRecordsPointerOut", "right QIRTableRecordsPointerOut", "right QIRTableRecordSetByIndex",
          "left QIRTableRecordSetByIndex", "right QIRTableRecordSetByIndex", "left QIRTableRecordSetByIndex"})
        expected.emplace_back(call);
    EXPECT_EQ(test::loggedCalls(FakeControl::get()), expected);
}

TEST_F(CellDifferencesTest, StoresTheGridByRowAndColumnDataInOneGroup) {
    show(numbered(3), numbered(3));
    Grid &grid = panes.grid(0);
    grid.reorderRecords({2, 0, 1}); // texts and RowData move together
    for (int row = 1; row <= 3; ++row)
        grid.setRowData(row, row);
    grid.setTextMatrix(2, 2, u"new"_s);
    fake->clearLog();
    GridSave(panes.editor(), panes.differences()).SalvaGridInDatabase(0);
    const QirDatabase &database = panes.editor().OggettoDtb(0);
    QStringList texts;
    for (int record = 1; record <= 3; ++record) {
        database.setQIRTableRecordsPointerOut(record);
        texts.append(database.QIRTableRecordSetByIndex(1).toString() + database.QIRTableRecordSetByIndex(2).toString());
    }
    EXPECT_EQ(texts, QStringList({u"3r3"_s, u"1new"_s, u"2r2"_s}));
    QStringList members;
    int begin = 0;
    int end = 0;
    int types = 0;
    for (const FakeCall &call : fake->log()) {
        begin += call.member == u"BeginChanges";
        end += call.member == u"EndChanges";
        types += call.member == u"QIRTableFieldType";
    }
    EXPECT_EQ(begin, 1);
    EXPECT_EQ(end, 1);
    EXPECT_EQ(types, 2);
    // The comparison that follows sees the stored values.
    EXPECT_EQ(panes.redCells(1), (Cells{{1, 1}, {1, 2}, {2, 1}, {2, 2}, {3, 1}, {3, 2}}));
}

TEST_F(CellDifferencesTest, StoresEachRowInTheRecordThatItShows) {
    show(numbered(3), numbered(3));
    panes.grid(0).reorderRecords({2, 0, 1});
    GridSave(panes.editor(), panes.differences()).SalvaGridInDatabase(0); // every text goes back where it came from
    EXPECT_TRUE(panes.redCells(0).empty());
}

TEST_F(CellDifferencesTest, StoresNothingOfAColumnThatStandsForNoField) {
    show(numbered(2), numbered(2));
    panes.grid(0).setColData(2, 0);
    panes.grid(0).setTextMatrix(1, 2, u"nowhere"_s);
    GridSave(panes.editor(), panes.differences()).SalvaGridInDatabase(0);
    panes.editor().OggettoDtb(0).setQIRTableRecordsPointerOut(1);
    EXPECT_EQ(panes.editor().OggettoDtb(0).QIRTableRecordSetByIndex(2).toString(), u"r1"_s);
}

TEST_F(CellDifferencesTest, StoresTheLeadingNumberOfATextInANumberField) {
    show(numbered(1), numbered(1));
    panes.grid(0).setTextMatrix(1, 1, u"12abc"_s);
    GridSave(panes.editor(), panes.differences()).SalvaGridInDatabase(0);
    panes.editor().OggettoDtb(0).setQIRTableRecordsPointerOut(1);
    EXPECT_EQ(panes.editor().OggettoDtb(0).QIRTableRecordSetByIndex(1).toDouble(), 12.0);
}

TEST_F(CellDifferencesTest, UndoesWhatWasStoredOfAGridBeforeAnError) {
    show(numbered(3), numbered(3));
    for (int row = 1; row <= 3; ++row)
        panes.grid(0).setTextMatrix(row, 2, u"new"_s);
    fake->failOn(u"QIRTableRecordSetByIndex"_s, u"broken"_s, 5);
    EXPECT_THROW(GridSave(panes.editor(), panes.differences()).SalvaGridInDatabase(0), std::exception);
    fake->stopFailing();
    panes.editor().OggettoDtb(0).setQIRTableRecordsPointerOut(1);
    EXPECT_EQ(panes.editor().OggettoDtb(0).QIRTableRecordSetByIndex(2).toString(), u"r1"_s);
}

RC_GTEST_FIXTURE_PROP(CellDifferencesTest, AgreesWithTheReferenceForAnyTwoDatabases, ()) {
    PlainDatabase left;
    PlainDatabase right;
    for (const char *name : {"A", "B", "C"}) {
        const PlainTable table = *test::plainTables(name);
        const int where = *rc::gen::inRange(0, 5);
        if (where != 0)
            left.tables.push_back(table);
        if (where != 1)
            right.tables.push_back(*rc::gen::oneOf(test::changedTables(table), test::plainTables(name)));
    }
    panes.openBoth(left, right);
    int line = 0;
    for (const QString &text : {u"A"_s, u"B"_s, u"C"_s}) {
        const PlainTable *inLeft = left.find(text);
        const PlainTable *inRight = right.find(text);
        if (!inLeft && !inRight)
            continue;
        const bool differ = inLeft && inRight && test::differ(*inLeft, *inRight);
        const QStringList marked{!inLeft ? text + u" ?"_s : text + (differ ? u" !"_s : u""_s),
                                 !inRight ? text + u" ?"_s : text + (differ ? u" !"_s : u""_s)};
        RC_ASSERT(QStringList({panes.lines(0)[line], panes.lines(1)[line]}) == marked);

        panes.selectBoth(line);
        const bool bothShown = panes.grid(0).Visible() && panes.grid(1).Visible();
        run();
        const Cells cells = bothShown ? test::differences(*inLeft, *inRight) : Cells{};
        for (const int pane : {0, 1}) {
            if (!panes.grid(pane).Visible())
                continue; // it still holds what it showed before
            Cells expected;
            for (const auto &[row, column] : cells) {
                if (row < panes.grid(pane).Rows() && column < panes.grid(pane).Cols())
                    expected.emplace(row, column);
            }
            RC_ASSERT(panes.redCells(pane) == expected);
        }
        if (bothShown)
            RC_ASSERT(different() == cells);
        // A table without records shows no grid, and what the grids cannot show is not marked.
        const bool stillMarked = bothShown && !cells.empty();
        RC_ASSERT(panes.lines(0)[line].endsWith(u" !"_s) == stillMarked);
        RC_ASSERT(panes.lines(1)[line].endsWith(u" !"_s) == stillMarked);
        ++line;
    }
}

} // namespace
