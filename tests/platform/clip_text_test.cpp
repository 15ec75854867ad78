#include "platform/grid/ClipText.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <map>

using namespace Qt::StringLiterals;

using qir::clipText;
using qir::GridRange;
using qir::layClipText;

namespace {

using Cells = std::map<std::pair<int, int>, QString>;

Cells laid(const char *text, const GridRange &block) {
    Cells cells;
    layClipText(QString::fromUtf8(text), block, [&](int row, int column, QStringView value) {
        cells[{row, column}] = value.toString();
    });
    return cells;
}

QString str(const char *text) {
    return QString::fromUtf8(text);
}

TEST(ClipText, JoinsCellsByTabsAndRowsByCarriageReturnsWithoutOneAtTheEnd) {
    const QString text = clipText({1, 2, 2, 4}, [](int row, int column, QString &cell) {
        cell = QString::number(row) + QString::number(column);
    });
    EXPECT_EQ(text, str("12\t13\t14\r22\t23\t24"));
}

TEST(ClipText, OfOneCellIsItsText) {
    EXPECT_EQ(clipText({3, 3, 3, 3}, [](int, int, QString &cell) { cell = u"x"_s; }), str("x"));
}

TEST(ClipText, DropsValuesBeyondTheRightAndBottomEdge) {
    EXPECT_EQ(laid("a\tb\tc\rd\te\tf\rg\th\ti", {1, 1, 2, 2}),
              (Cells{{{1, 1}, str("a")}, {{1, 2}, str("b")}, {{2, 1}, str("d")}, {{2, 2}, str("e")}}));
}

TEST(ClipText, LeavesCellsWithoutAValueAlone) {
    EXPECT_EQ(laid("a\rb\tc", {5, 5, 8, 8}), (Cells{{{5, 5}, str("a")}, {{6, 5}, str("b")}, {{6, 6}, str("c")}}));
}

TEST(ClipText, AnEmptyValueEmptiesItsCell) {
    EXPECT_EQ(laid("a\t\tc", {1, 1, 1, 3}), (Cells{{{1, 1}, str("a")}, {{1, 2}, QString()}, {{1, 3}, str("c")}}));
}

TEST(ClipText, TakesLineFeedsAsText) {
    EXPECT_EQ(laid("a\nb", {1, 1, 3, 3}), (Cells{{{1, 1}, str("a\nb")}}));
}

TEST(ClipText, LaysNothingIntoAnEmptyBlock) {
    EXPECT_EQ(laid("a\tb", GridRange{}), Cells{});
}

RC_GTEST_PROP(ClipTextProperty, WhatIsCopiedLaysBackAsItWas, ()) {
    const int rows = *rc::gen::inRange(1, 6);
    const int columns = *rc::gen::inRange(1, 6);
    const GridRange block{1, 1, rows, columns};
    Cells cells;
    for (int row = 1; row <= rows; ++row)
        for (int column = 1; column <= columns; ++column)
            cells[{row, column}] = QString::fromStdString(*rc::gen::container<std::string>(rc::gen::inRange('0', 'z')));
    const QString text = clipText(block, [&](int row, int column, QString &cell) { cell = cells[{row, column}]; });
    Cells back;
    layClipText(text, block, [&](int row, int column, QStringView value) { back[{row, column}] = value.toString(); });
    RC_ASSERT(back == cells);
}

} // namespace
