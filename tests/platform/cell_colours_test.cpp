#include "platform/grid/CellColours.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <limits>

using qir::BitMatrix;
using qir::CellColour;
using qir::CellColours;
using qir::GridRange;

namespace {

std::size_t at(int value) {
    return static_cast<std::size_t>(value);
}

TEST(CellColours, AreTheRgbValuesRedAndWhite) {
    EXPECT_EQ(static_cast<int>(CellColour::Red), 255);
    EXPECT_EQ(static_cast<int>(CellColour::White), 16777215);
}

TEST(CellColours, StartWhiteAndTellWhetherACellChanged) {
    CellColours colours(3, 3);
    EXPECT_EQ(colours.at(1, 1), CellColour::White);
    EXPECT_TRUE(colours.set(1, 2, CellColour::Red));
    EXPECT_FALSE(colours.set(1, 2, CellColour::Red));
    EXPECT_EQ(colours.at(1, 2), CellColour::Red);
    EXPECT_EQ(colours.redCount(), 1U);
    EXPECT_TRUE(colours.set(1, 2, CellColour::White));
    EXPECT_EQ(colours.redCount(), 0U);
}

TEST(CellColours, FixedAndOutsideCellsStayWhite) {
    CellColours colours(3, 3);
    for (const auto &[row, column] : {std::pair{0, 1}, {1, 0}, {3, 1}, {1, 3}, {-1, 1}, {1, -1}}) {
        EXPECT_FALSE(colours.set(row, column, CellColour::Red));
        EXPECT_EQ(colours.at(row, column), CellColour::White);
    }
    BitMatrix everything(9, 9);
    for (std::size_t row = 0; row < 9; ++row)
        for (std::size_t column = 0; column < 9; ++column)
            everything.set(row, column, true);
    colours.paint({-5, -5, 100, 100}, everything);
    EXPECT_EQ(colours.redCount(), 4U);
    EXPECT_EQ(colours.at(0, 1), CellColour::White);
}

TEST(CellColours, AWindowWhoseLastRowStandsBeforeItsFirstPaintsNothing) {
    CellColours colours(5, 5);
    BitMatrix different(5, 5);
    different.set(2, 2, true);
    EXPECT_TRUE(colours.paint({3, 1, 2, 4}, different).isEmpty());
    EXPECT_TRUE(colours.paint({1, 3, 4, 2}, different).isEmpty());
    EXPECT_EQ(colours.redCount(), 0U);
}

TEST(CellColours, PaintingWhatIsPaintedAlreadyChangesNothing) {
    CellColours colours(5, 5);
    BitMatrix different(5, 5);
    different.set(2, 2, true);
    EXPECT_EQ(colours.paint({1, 1, 4, 4}, different), (GridRange{2, 2, 2, 2}));
    EXPECT_TRUE(colours.paint({1, 1, 4, 4}, different).isEmpty());
}

TEST(CellColours, NoCellAtAllIsNoError) {
    CellColours colours;
    EXPECT_TRUE(colours.paint({1, 1, 10, 10}, BitMatrix(3, 3)).isEmpty());
    EXPECT_FALSE(colours.set(1, 1, CellColour::Red));
    colours.setShape(0, 0);
    colours.permuteRecords({});
}

/// Rows and columns up to two words and a bit wide.
rc::Gen<BitMatrix> genMatrix() {
    return rc::gen::exec([] {
        const auto rows = *rc::gen::inRange<std::size_t>(0, 12);
        const auto columns = *rc::gen::element<std::size_t>(0, 1, 2, 5, 63, 64, 65, 128, 130);
        BitMatrix matrix(rows, columns);
        const auto marks = *rc::gen::container<std::vector<std::pair<int, int>>>(
            rc::gen::pair(rc::gen::inRange(0, 12), rc::gen::inRange(0, 130)));
        for (const auto &[row, column] : marks)
            matrix.set(at(row), at(column), true);
        return matrix;
    });
}

RC_GTEST_PROP(CellColoursProperty, PaintingByWordsIsPaintingCellByCell, ()) {
    const int rows = *rc::gen::inRange(1, 12);
    const int columns = *rc::gen::element(1, 2, 6, 64, 65, 66, 129);
    const auto window = *rc::gen::construct<GridRange>(rc::gen::inRange(-1, 13), rc::gen::inRange(-1, 131),
                                                       rc::gen::inRange(-1, 13), rc::gen::inRange(-1, 131));
    const BitMatrix first = *genMatrix();
    const BitMatrix second = *genMatrix();
    CellColours painted(rows, columns);
    CellColours reference(rows, columns);
    painted.paint({0, 0, rows, columns}, first);
    GridRange changed;
    for (int row = 1; row < rows; ++row) {
        for (int column = 1; column < columns; ++column) {
            reference.set(row, column, first.at(at(row), at(column)) ? CellColour::Red : CellColour::White);
            if (!window.contains(row, column))
                continue;
            const auto wanted = second.at(at(row), at(column)) ? CellColour::Red : CellColour::White;
            if (!reference.set(row, column, wanted))
                continue;
            if (changed.isEmpty())
                changed = {row, column, row, column};
            changed = {std::min(changed.firstRow, row), std::min(changed.firstColumn, column),
                       std::max(changed.lastRow, row), std::max(changed.lastColumn, column)};
        }
    }
    const GridRange reported = painted.paint(window, second);
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
            RC_ASSERT(painted.at(row, column) == reference.at(row, column));
    RC_ASSERT(reported == changed);
}

TEST(CellColours, ReorderingMovesWholeRows) {
    CellColours colours(4, 3);
    colours.set(1, 2, CellColour::Red);
    colours.permuteRecords({2, 0, 1});
    EXPECT_EQ(colours.at(1, 2), CellColour::White);
    EXPECT_EQ(colours.at(2, 2), CellColour::Red);
    EXPECT_EQ(colours.redCount(), 1U);
}

TEST(CellColours, AnotherShapeKeepsWhatStaysInside) {
    CellColours colours(4, 4);
    colours.set(1, 1, CellColour::Red);
    colours.set(3, 3, CellColour::Red);
    colours.setShape(3, 70);
    EXPECT_EQ(colours.at(1, 1), CellColour::Red);
    EXPECT_EQ(colours.redCount(), 1U);
    colours.setShape(5, 5);
    EXPECT_EQ(colours.at(3, 3), CellColour::White);
}

} // namespace
