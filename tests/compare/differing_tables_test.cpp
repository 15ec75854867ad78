#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "tests/compare/ComparePanes.h"
#include "tests/compare/SetElements.h"
#include "tests/tools/fake/FakeControl.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace qir;
using test::ComparePanes;
using test::PlainDatabase;
using test::PlainTable;

namespace {

class DifferingTablesTest : public testing::Test {
protected:
    /// Lists of these lines, whatever the databases hold.
    void showLines(const QStringList &left, const QStringList &right) {
        for (const int pane : {0, 1}) {
            panes.list(pane).clear();
            for (const QString &line : pane == 0 ? left : right)
                panes.list(pane).insertItem(panes.list(pane).ListCount(), line);
        }
    }
    QStringList lineZero() { return {panes.list(0).List(0), panes.list(1).List(0)}; }

    UseFake fake;
    ComparePanes panes;
};

TEST_F(DifferingTablesTest, MarkATableThatDiffersInBothLists) {
    panes.openBoth({{"a", {true}, {{"x"}}}, {"b", {true}, {{"y"}}}}, {{"a", {true}, {{"X"}}}, {"b", {true}, {{"y"}}}});
    EXPECT_EQ(panes.lines(0), QStringList({u"a !"_s, u"b"_s}));
    EXPECT_EQ(panes.lines(1), QStringList({u"a !"_s, u"b"_s}));
    EXPECT_EQ(panes.list(0).ItemData(0), 1);
}

TEST_F(DifferingTablesTest, LeaveTheMarkersOfATableOfOneSideOnly) {
    panes.openBoth({{"a", {true}, {{"x"}}}}, {{"b", {true}, {{"x"}}}});
    EXPECT_EQ(panes.lines(0), QStringList({u"a"_s, u"b ?"_s}));
    EXPECT_EQ(panes.lines(1), QStringList({u"a ?"_s, u"b"_s}));
}

TEST_F(DifferingTablesTest, StayUnmarkedWhenOnlyTheirFieldNamesDiffer) {
    panes.open(0, PlainDatabase{{"a", {true}, {{"x"}}}});
    panes.open(1, PlainDatabase{{"a", {true}, {{"x"}}}});
    panes.editor().OggettoDtb(1).RenameField(1, u"other"_s);
    panes.alignment().MostraTabelleDiverseInLista();
    EXPECT_EQ(panes.lines(0), QStringList(u"a"_s));
}

TEST_F(DifferingTablesTest, LeaveTheLastComparedTableCurrentAndRemembered) {
    panes.openBoth({{"a", {true}, {{"x"}}}, {"b", {true}, {}}, {"c", {}, {}}}, {{"a", {true}, {{"x"}}}, {"b", {}, {}}});
    EXPECT_EQ(panes.editor().pane(0).TabellaCorrente(), u"b"_s);
    EXPECT_EQ(panes.editor().pane(1).TabellaCorrente(), u"b"_s);
    EXPECT_EQ(panes.editor().OggettoDtb(0).QirTableFieldsCount(), 1);
}

TEST_F(DifferingTablesTest, FindDifferencesOfOtherSpellingsOfAName) {
    panes.openBoth({{"Pumps", {true}, {{"x"}}}}, {{"PUMPS ", {true}, {{"y"}}}});
    EXPECT_EQ(panes.lines(0), QStringList(u"Pumps !"_s));
    EXPECT_TRUE(panes.lines(1).first().endsWith(u" !"_s));
}

TEST_F(DifferingTablesTest, AreMarkedOnceHoweverOften) {
    showLines({u"a"_s}, {u"a"_s});
    for (int i = 0; i < 3; ++i) {
        panes.marks().SettaTabelleUgualiDiverse(true, 0);
        EXPECT_EQ(lineZero(), QStringList({u"a !"_s, u"a !"_s}));
    }
    panes.marks().SettaTabelleUgualiDiverse(false, 0);
    EXPECT_EQ(lineZero(), QStringList({u"a"_s, u"a"_s}));
}

TEST_F(DifferingTablesTest, AreNeitherMarkedNorClearedWhileTheListsDifferInLength) {
    showLines({u"a !"_s, u"b"_s}, {u"a !"_s});
    panes.marks().SettaTabelleUgualiDiverse(false, 0);
    panes.marks().SettaTabelleUgualiDiverse(true, 1);
    EXPECT_EQ(panes.lines(0), QStringList({u"a !"_s, u"b"_s}));
    EXPECT_EQ(panes.lines(1), QStringList(u"a !"_s));
}

TEST_F(DifferingTablesTest, AreNotMarkedWithoutALine) {
    showLines({u"a"_s}, {u"a"_s});
    panes.marks().SettaTabelleUgualiDiverse(true, -1);
    panes.marks().SettaTabelleUgualiDiverse(true, 1);
    EXPECT_EQ(lineZero(), QStringList({u"a"_s, u"a"_s}));
}

TEST_F(DifferingTablesTest, KeepPlaceholdersUnmarked) {
    showLines({u"a ?"_s}, {u"a"_s});
    panes.marks().SettaTabelleUgualiDiverse(true, 0);
    EXPECT_EQ(lineZero(), QStringList({u"a ?"_s, u"a"_s}));
    panes.marks().SettaTabelleUgualiDiverse(false, 0);
    EXPECT_EQ(lineZero(), QStringList({u"a ?"_s, u"a"_s}));
}

TEST_F(DifferingTablesTest, GoByTheLeftLineForTheRightMarker) {
    showLines({u"a"_s}, {u"a ?"_s});
    panes.marks().SettaTabelleUgualiDiverse(true, 0);
    EXPECT_EQ(lineZero(), QStringList({u"a !"_s, u"a ? !"_s}));
    panes.marks().SettaTabelleUgualiDiverse(false, 0);
    EXPECT_EQ(lineZero(), QStringList({u"a"_s, u"a ?"_s}));
}

TEST_F(DifferingTablesTest, AreMarkedByTheMatrixWithoutReadingADatabase) {
    panes.openBoth({{"a", {true}, {{"x"}}}}, {{"a", {true}, {{"x"}}}});
    panes.selectBoth(0);
    BitMatrix &matrix = panes.editor().foundDifferences();
    matrix = BitMatrix(2, 2);
    matrix.set(1, 1, true);
    fake->reset();
    panes.marks().MostraTabellaDiversaInLista();
    EXPECT_EQ(lineZero(), QStringList({u"a !"_s, u"a !"_s}));
    matrix.set(1, 1, false);
    panes.marks().MostraTabellaDiversaInLista();
    EXPECT_EQ(lineZero(), QStringList({u"a"_s, u"a"_s}));
    EXPECT_EQ(fake->calls(), 0);
}

TEST_F(DifferingTablesTest, CountAsEqualWhileAGridIsHiddenOrADatabaseClosed) {
    panes.openBoth({{"a", {true}, {{"x"}}}}, {{"a", {true}, {{"y"}}}});
    panes.selectBoth(0);
    panes.editor().foundDifferences() = BitMatrix(2, 2);
    panes.editor().foundDifferences().set(1, 1, true);
    panes.grid(1).setVisibleFlag(false);
    panes.marks().MostraTabellaDiversaInLista();
    EXPECT_EQ(lineZero(), QStringList({u"a"_s, u"a"_s}));
    panes.grid(1).setVisibleFlag(true);
    panes.marks().MostraTabellaDiversaInLista();
    EXPECT_EQ(lineZero(), QStringList({u"a !"_s, u"a !"_s}));
    panes.editor().pane(0).takeComponent({});
    panes.marks().MostraTabellaDiversaInLista();
    EXPECT_EQ(lineZero(), QStringList({u"a"_s, u"a"_s}));
}

TEST_F(DifferingTablesTest, LeaveTheMatrixAloneWithoutBothDatabases) {
    panes.open(0, PlainDatabase{{"a", {true}, {{"x"}}}});
    BitMatrix matrix(3, 3);
    panes.differences().TabelleDiverseBool(1, 1, matrix);
    EXPECT_EQ(matrix.count(), 0U); // not even the block beyond the bounds
}

TEST_F(DifferingTablesTest, SetTheBlockBeyondBothBounds) {
    panes.openBoth({{"a", {true}, {{"x"}}}}, {{"a", {true}, {{"x"}}}});
    BitMatrix matrix(4, 3);
    panes.differences().TabelleDiverseBool(1, 1, matrix);
    EXPECT_EQ(test::setElements(matrix), (test::Cells{{2, 2}, {3, 2}}));
}

TEST_F(DifferingTablesTest, AreNotReadAgainWhereTheyWereJustFoundEqual) {
    panes.openBoth({{"a", {true}, {{"x"}}}}, {{"A", {true}, {{"x"}}}});
    const int reads = fake->calls(u"QIRTableRecordSetByIndex"_s);
    BitMatrix matrix(2, 2);
    matrix.set(1, 1, true);
    int steps = 0;
    panes.differences().TabelleDiverseBool(1, 1, matrix, [&](int record) { steps += record; });
    EXPECT_EQ(matrix.count(), 0U);
    EXPECT_EQ(steps, 1);
    EXPECT_EQ(fake->calls(u"QIRTableRecordSetByIndex"_s), reads);
}

TEST_F(DifferingTablesTest, AreReadAgainAfterAnyWrite) {
    panes.openBoth({{"a", {true}, {{"x"}}}}, {{"a", {true}, {{"x"}}}});
    const QirDatabase &right = panes.editor().OggettoDtb(1);
    right.setQIRTableRecordsPointerOut(1);
    right.setQIRTableRecordSetByIndex(1, u"y"_s);
    BitMatrix matrix(2, 2);
    panes.differences().TabelleDiverseBool(1, 1, matrix);
    EXPECT_EQ(matrix.count(), 1U);
}

TEST_F(DifferingTablesTest, ColourOneCellByTheMatrix) {
    const PlainDatabase tables{{"a", {true, true}, {{"x", "y"}, {"x", "y"}}}};
    panes.openBoth(tables, tables);
    panes.selectBoth(0);
    BitMatrix &matrix = panes.editor().foundDifferences();
    matrix = BitMatrix(10, 10);
    for (const auto &[row, column] : {std::pair{1, 2}, {0, 1}, {1, 0}, {3, 1}, {1, 3}})
        matrix.set(static_cast<std::size_t>(row), static_cast<std::size_t>(column), true);
    for (const auto &[row, column] : {std::pair{1, 2}, {2, 2}, {0, 1}, {1, 0}, {3, 1}, {1, 3}, {-1, 1}, {1, -1}})
        SetEqualColor(panes.editor(), 0, row, column);
    EXPECT_EQ(panes.redCells(0), (test::Cells{{1, 2}}));
    EXPECT_EQ(panes.redCells(1), (test::Cells{}));
    matrix.clear();
    SetEqualColor(panes.editor(), 0, 1, 2);
    EXPECT_TRUE(panes.redCells(0).empty());
}

} // namespace
