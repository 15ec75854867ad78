#include "compare/engine/ValueEquality.h"

#include "tests/support/Columns.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <limits>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

ColumnBlock anyBlock(ColumnType type, std::size_t count) {
    if (type == ColumnType::Text)
        return textBlock(*rc::gen::container<std::vector<QString>>(
            count, rc::gen::element(u""_s, u"0"_s, u"a"_s, u"A"_s, u"\u00e9"_s, u"ab"_s)));
    return numberBlock(type, *rc::gen::container<std::vector<double>>(
                                 count, rc::gen::element(0.0, -0.0, 1.0, 2.0, 255.0, -1.0, 1.5, 20260131.0)));
}

QVariant valueAt(const ColumnBlock &block, qsizetype index) {
    return block.isText() ? QVariant(block.text(index)) : QVariant(block.number(index));
}

RC_GTEST_PROP(BlockDifferences, AreThoseOfTheirValuesOneByOne, ()) {
    const auto type = rc::gen::element(ColumnType::Bool, ColumnType::Byte, ColumnType::Int, ColumnType::Long,
                                       ColumnType::Double, ColumnType::Date, ColumnType::Text);
    const auto size = *rc::gen::inRange<std::size_t>(0, 600);
    const ColumnType leftType = *type;
    const ColumnType rightType = *rc::gen::weightedOneOf<ColumnType>({{3, rc::gen::just(leftType)}, {1, type}});
    const ColumnBlock left = anyBlock(leftType, size);
    const ColumnBlock right = *rc::gen::arbitrary<bool>() ? left : anyBlock(rightType, size);
    const auto leftFirst = *rc::gen::inRange<std::size_t>(0, size + 1);
    const auto rightFirst = *rc::gen::weightedOneOf<std::size_t>(
        {{1, rc::gen::just(leftFirst)}, {1, rc::gen::inRange<std::size_t>(0, size + 1)}});
    const std::size_t count = size - std::max(leftFirst, rightFirst);

    constexpr std::size_t stride = 2;
    std::vector<std::uint64_t> words(count * stride + 1, 0);
    markDifferences(left, static_cast<qsizetype>(leftFirst), right, static_cast<qsizetype>(rightFirst),
                    static_cast<qsizetype>(count), {std::span(words).subspan(1), stride, 8});
    bool any = false;
    for (std::size_t i = 0; i < count; ++i) {
        const bool differs = !valuesEqual(valueAt(left, static_cast<qsizetype>(leftFirst + i)),
                                          valueAt(right, static_cast<qsizetype>(rightFirst + i)));
        any = any || differs;
        RC_ASSERT(words[1 + i * stride] == (differs ? 8U : 0U));
    }
    RC_ASSERT(anyDifference(left, static_cast<qsizetype>(leftFirst), right, static_cast<qsizetype>(rightFirst),
                            static_cast<qsizetype>(count)) == any);
}

TEST(BlockDifferences, AllNotANumbersAreOneValue) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double other = -nan;
    const auto block = [](double value) {
        return ColumnBlock::ofNumbers(ColumnType::Double,
                                      QByteArray(reinterpret_cast<const char *>(&value), sizeof value));
    };
    EXPECT_FALSE(anyDifference(block(nan), 0, block(other), 0, 1));
    EXPECT_TRUE(anyDifference(block(nan), 0, block(1), 0, 1));
}

} // namespace
