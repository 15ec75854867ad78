#include "base/BitMatrix.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <vector>

using qir::BitMatrix;

namespace {

std::size_t countOf(const std::vector<std::vector<bool>> &model) {
    std::size_t count = 0;
    for (const auto &row : model)
        for (const bool flag : row)
            count += flag ? 1U : 0U;
    return count;
}

TEST(BitMatrix, BeginsClear) {
    const BitMatrix matrix(3, 70);
    EXPECT_EQ(matrix.rows(), 3U);
    EXPECT_EQ(matrix.columns(), 70U);
    EXPECT_EQ(matrix.wordsPerRow(), 2U);
    EXPECT_EQ(matrix.count(), 0U);
    EXPECT_FALSE(matrix.at(2, 69));
}

TEST(BitMatrix, ReadsFalseAndWritesNothingOutside) {
    BitMatrix matrix(2, 2);
    for (const auto &[row, column] : {std::pair{2, 0}, std::pair{0, 2}, std::pair{9, 9}}) {
        matrix.set(static_cast<std::size_t>(row), static_cast<std::size_t>(column), true);
        EXPECT_FALSE(matrix.at(static_cast<std::size_t>(row), static_cast<std::size_t>(column)));
    }
    EXPECT_EQ(matrix.count(), 0U);
    EXPECT_FALSE(BitMatrix().at(0, 0));
}

TEST(BitMatrix, CountsAFlagOnceHoweverOftenItIsSet) {
    BitMatrix matrix(1, 1);
    matrix.set(0, 0, true);
    matrix.set(0, 0, true);
    EXPECT_EQ(matrix.count(), 1U);
    matrix.set(0, 0, false);
    matrix.set(0, 0, false);
    EXPECT_EQ(matrix.count(), 0U);
}

TEST(BitMatrix, RowsThatAreAlikeAtTheEndTakeNoMemory) {
    BitMatrix matrix(std::size_t{1} << 24, 1025);
    matrix.set(3, 7, true);
    matrix.setBlock(5, 1);
    EXPECT_EQ(matrix.count(), 1 + ((std::size_t{1} << 24) - 5) * 1024);
    EXPECT_TRUE(matrix.at((std::size_t{1} << 24) - 1, 1024));
    EXPECT_FALSE(matrix.at((std::size_t{1} << 24) - 1, 0));
    EXPECT_FALSE(matrix.at(4, 1));
    EXPECT_LE(matrix.memory(), 4096U);
}

TEST(BitMatrix, DropsTheBitsBeyondTheLastColumnOfARow) {
    BitMatrix matrix(2, 65);
    const std::vector<std::uint64_t> all(2, ~std::uint64_t{0});
    matrix.setRow(1, all);
    EXPECT_EQ(matrix.count(), 65U);
    EXPECT_EQ(matrix.row(1)[1], 1U);
    BitMatrix byFlags(2, 65);
    for (std::size_t column = 0; column < 65; ++column)
        byFlags.set(1, column, true);
    EXPECT_EQ(matrix, byFlags);
}

TEST(BitMatrix, ClearsAllAtOnce) {
    BitMatrix matrix(2, 130);
    matrix.set(1, 129, true);
    matrix.clear();
    EXPECT_EQ(matrix.count(), 0U);
    EXPECT_EQ(matrix, BitMatrix(2, 130));
}

TEST(BitMatrix, RefusesASizeThatNoMemoryHolds) {
    constexpr std::size_t huge = std::numeric_limits<std::size_t>::max();
    EXPECT_THROW(BitMatrix(huge, huge), std::length_error);
    EXPECT_THROW(BitMatrix(huge / 2, 129), std::length_error);
}

TEST(BitMatrix, FindsTheRowsAndColumnsThatHaveASetFlag) {
    BitMatrix matrix(1000, 130);
    matrix.set(3, 7, true);
    matrix.set(3, 129, true);
    matrix.set(500, 64, true);
    matrix.setBlock(900, 100);
    EXPECT_EQ(matrix.nextRow(0), 3U);
    EXPECT_EQ(matrix.nextRow(4), 500U);
    EXPECT_EQ(matrix.nextRow(501), 900U);
    EXPECT_EQ(matrix.nextRow(999), 999U);
    EXPECT_EQ(matrix.nextRow(1000), 1000U);
    EXPECT_EQ(matrix.previousRow(2000), 999U);
    EXPECT_EQ(matrix.previousRow(899), 500U);
    EXPECT_EQ(matrix.previousRow(499), 3U);
    EXPECT_EQ(matrix.previousRow(2), 1000U);
    EXPECT_EQ(matrix.nextColumn(3, 8), 129U);
    EXPECT_EQ(matrix.previousColumn(3, 128), 7U);
    EXPECT_EQ(matrix.nextColumn(4, 0), 130U);
    matrix.set(500, 64, false);
    EXPECT_EQ(matrix.nextRow(4), 900U);
    matrix.clear();
    EXPECT_EQ(matrix.nextRow(0), 1000U);
    EXPECT_EQ(BitMatrix().previousRow(0), 0U);
}

/// The rows of a model that have a set flag, and one past its last row.
std::vector<std::size_t> rowsSet(const std::vector<std::vector<bool>> &model) {
    std::vector<std::size_t> found;
    for (std::size_t row = 0; row < model.size(); ++row)
        if (std::ranges::count(model[row], true) > 0)
            found.push_back(row);
    found.push_back(model.size());
    return found;
}

/// Walks both ways over all that is set, as a naive model does.
void walkAll(const BitMatrix &matrix, const std::vector<std::vector<bool>> &model) {
    const std::vector<std::size_t> wanted = rowsSet(model);
    std::vector<std::size_t> found;
    for (std::size_t row = matrix.nextRow(0);; row = matrix.nextRow(row + 1)) {
        found.push_back(row);
        if (row >= matrix.rows())
            break;
    }
    RC_ASSERT(found == wanted);
    RC_ASSERT(matrix.rowCount() + 1 == wanted.size());
    for (std::size_t row = 0; row < model.size(); ++row) {
        const auto behind = std::ranges::upper_bound(wanted, row);
        RC_ASSERT(matrix.previousRow(row) == (behind == wanted.begin() ? model.size() : *(behind - 1)));
        for (std::size_t column = 0; column < matrix.columns(); ++column) {
            std::size_t next = column;
            while (next < matrix.columns() && !model[row][next])
                ++next;
            RC_ASSERT(matrix.nextColumn(row, column) == next);
            std::size_t previous = column + 1;
            while (previous > 0 && !model[row][previous - 1])
                --previous;
            RC_ASSERT(matrix.previousColumn(row, column) == (previous == 0 ? matrix.columns() : previous - 1));
        }
    }
}

RC_GTEST_PROP(BitMatrixProperty, CountsWhatANaiveModelCounts, ()) {
    const auto rows = *rc::gen::inRange<std::size_t>(0, 5);
    const auto columns = *rc::gen::inRange<std::size_t>(0, 140);
    BitMatrix matrix(rows, columns);
    std::vector<std::vector<bool>> model(rows, std::vector<bool>(columns));
    const int steps = *rc::gen::inRange(0, 80);
    for (int step = 0; step < steps; ++step) {
        const auto row = *rc::gen::inRange<std::size_t>(0, 5);
        const auto column = *rc::gen::inRange<std::size_t>(0, 140);
        const bool value = *rc::gen::arbitrary<bool>();
        if (step % 10 == 9 && row < rows) {
            const auto words = *rc::gen::container<std::vector<std::uint64_t>>(matrix.wordsPerRow(),
                                                                               rc::gen::arbitrary<std::uint64_t>());
            matrix.setRow(row, words);
            for (std::size_t c = 0; c < columns; ++c)
                model[row][c] = (words[c / 64] >> (c % 64)) & 1U;
        } else if (step % 10 == 4) {
            matrix.setBlock(row, column);
            for (std::size_t r = row; r < rows; ++r)
                std::fill(model[r].begin() + static_cast<std::ptrdiff_t>(std::min(column, columns)), model[r].end(),
                          true);
        } else {
            matrix.set(row, column, value);
            if (row < rows && column < columns)
                model[row][column] = value;
        }
        RC_ASSERT(matrix.count() == countOf(model));
    }
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t column = 0; column < columns; ++column)
            RC_ASSERT(matrix.at(row, column) == model[row][column]);
    walkAll(matrix, model);
    BitMatrix again(rows, columns);
    for (std::size_t row = rows; row-- > 0;)
        again.setRow(row, std::vector(matrix.row(row).begin(), matrix.row(row).end()));
    RC_ASSERT(again == matrix);
    if (rows > 0 && columns > 0) {
        again.set(rows - 1, columns - 1, !again.at(rows - 1, columns - 1));
        RC_ASSERT(!(again == matrix));
    }
}

} // namespace
