#include "platform/grid/GridSelection.h"

#include <gtest/gtest.h>

#include <limits>

using qir::cutTo;
using qir::GridExtent;
using qir::GridRange;
using qir::GridSelection;
using qir::moved;
using qir::singleCell;

namespace qir {

void PrintTo(const GridSelection &selection, std::ostream *out) {
    *out << '(' << selection.row << ',' << selection.column << ")-(" << selection.rowEnd << ',' << selection.columnEnd
         << ')';
}

} // namespace qir

namespace {

const GridExtent tenByFour{11, 5, 3}; // 10 records, 4 fields, 3 rows to a page

TEST(GridSelection, HasItsBoundsInOrderWhicheverCornerIsCurrent) {
    EXPECT_EQ((GridSelection{5, 4, 2, 1}.range()), (GridRange{2, 1, 5, 4}));
    EXPECT_EQ((GridSelection{2, 4, 5, 1}.range()), (GridRange{2, 1, 5, 4}));
}

TEST(GridSelection, IsCutToTheRecordCellsThereAre) {
    EXPECT_EQ(cutTo({99, 99, 50, 3}, tenByFour), (GridSelection{10, 4, 10, 3}));
    EXPECT_EQ(cutTo({0, 0, 0, 0}, tenByFour), singleCell(1, 1));
    EXPECT_EQ(cutTo({5, 5, 5, 5}, {1, 5, 1}), (GridSelection{0, 4, 0, 4})) << "no records: the header row is left";
    EXPECT_EQ(cutTo({5, 5, 5, 5}, {1, 1, 1}), singleCell(0, 0));
}

struct KeyCase {
    const char *name;
    int key;
    Qt::KeyboardModifiers modifiers;
    GridSelection from;
    GridSelection to;
};

TEST(GridSelection, KeysMoveTheCurrentCellOrExtendTheSelection) {
    const auto none = Qt::NoModifier;
    const auto shift = Qt::ShiftModifier;
    const auto ctrl = Qt::ControlModifier;
    const KeyCase cases[] = {
        {"down", Qt::Key_Down, none, singleCell(2, 2), singleCell(3, 2)},
        {"down at the end stays", Qt::Key_Down, none, singleCell(10, 2), singleCell(10, 2)},
        {"up", Qt::Key_Up, none, singleCell(2, 2), singleCell(1, 2)},
        {"up never enters the header", Qt::Key_Up, none, singleCell(1, 2), singleCell(1, 2)},
        {"left never enters the fixed column", Qt::Key_Left, none, singleCell(2, 1), singleCell(2, 1)},
        {"right", Qt::Key_Right, none, singleCell(2, 1), singleCell(2, 2)},
        {"right at the end stays", Qt::Key_Right, none, singleCell(2, 4), singleCell(2, 4)},
        {"a plain key collapses", Qt::Key_Down, none, {2, 2, 5, 4}, singleCell(3, 2)},
        {"shift moves the other corner", Qt::Key_Down, shift, {2, 2, 5, 4}, {2, 2, 6, 4}},
        {"shift may turn the block over", Qt::Key_Up, shift, singleCell(5, 2), {5, 2, 4, 2}},
        {"ctrl down", Qt::Key_Down, ctrl, singleCell(2, 2), singleCell(10, 2)},
        {"ctrl up", Qt::Key_Up, ctrl, singleCell(7, 2), singleCell(1, 2)},
        {"ctrl left", Qt::Key_Left, ctrl, singleCell(7, 3), singleCell(7, 1)},
        {"ctrl shift right", Qt::Key_Right, ctrl | shift, singleCell(7, 2), {7, 2, 7, 4}},
        {"home", Qt::Key_Home, none, singleCell(7, 3), singleCell(7, 1)},
        {"end", Qt::Key_End, none, singleCell(7, 3), singleCell(7, 4)},
        {"ctrl home", Qt::Key_Home, ctrl, singleCell(7, 3), singleCell(1, 1)},
        {"ctrl end", Qt::Key_End, ctrl, singleCell(7, 3), singleCell(10, 4)},
        {"ctrl shift home", Qt::Key_Home, ctrl | shift, singleCell(7, 3), {7, 3, 1, 1}},
        {"page down", Qt::Key_PageDown, none, singleCell(2, 3), singleCell(5, 3)},
        {"page down is cut", Qt::Key_PageDown, none, singleCell(9, 3), singleCell(10, 3)},
        {"page up", Qt::Key_PageUp, none, singleCell(9, 3), singleCell(6, 3)},
        {"page up is cut", Qt::Key_PageUp, none, singleCell(2, 3), singleCell(1, 3)},
        {"ctrl page down", Qt::Key_PageDown, ctrl, singleCell(2, 3), singleCell(10, 3)},
        {"shift page down", Qt::Key_PageDown, shift, singleCell(2, 3), {2, 3, 5, 3}},
        {"keypad keys count", Qt::Key_Down, Qt::KeypadModifier, singleCell(2, 2), singleCell(3, 2)},
    };
    for (const KeyCase &test : cases) {
        const auto to = moved(test.from, test.key, test.modifiers, tenByFour);
        ASSERT_TRUE(to.has_value()) << test.name;
        EXPECT_EQ(*to, test.to) << test.name;
    }
}

TEST(GridSelection, OtherKeysMoveNothing) {
    for (const int key : {static_cast<int>(Qt::Key_A), static_cast<int>(Qt::Key_Return), static_cast<int>(Qt::Key_Tab),
                          static_cast<int>(Qt::Key_Escape), static_cast<int>(Qt::Key_F2)})
        EXPECT_FALSE(moved(singleCell(1, 1), key, Qt::NoModifier, tenByFour).has_value());
}

TEST(GridSelection, KeysInATableWithoutRecordsOrFieldsStayInside) {
    for (const int key :
         {static_cast<int>(Qt::Key_Down), static_cast<int>(Qt::Key_Up), static_cast<int>(Qt::Key_PageDown),
          static_cast<int>(Qt::Key_End), static_cast<int>(Qt::Key_Home)}) {
        EXPECT_EQ(moved(singleCell(0, 1), key, Qt::NoModifier, {1, 2, 1}), singleCell(0, 1));
        EXPECT_EQ(moved(singleCell(0, 0), key, Qt::ControlModifier, {1, 1, 1}), singleCell(0, 0));
    }
}

TEST(GridSelection, PagesDoNotOverflowAtTheLargestTable) {
    constexpr int most = std::numeric_limits<int>::max();
    EXPECT_EQ(moved(singleCell(most - 2, 1), Qt::Key_PageDown, Qt::NoModifier, {most, 2, most}),
              singleCell(most - 1, 1));
    EXPECT_EQ(moved(singleCell(1, 1), Qt::Key_PageUp, Qt::NoModifier, {most, 2, most}), singleCell(1, 1));
}

} // namespace
