#include "platform/cells/CellTexts.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

using qir::CellTexts;

namespace {

QString str(const char *text) {
    return QString::fromUtf8(text);
}

TEST(CellTexts, CountFieldsAndRecordsFromOneAndReadEmptyOutside) {
    CellTexts texts(2, 3);
    texts.set(1, 1, str("a"));
    texts.set(2, 3, str("b"));
    EXPECT_EQ(texts.at(1, 1), str("a"));
    EXPECT_EQ(texts.at(2, 3), str("b"));
    for (const auto &[field, record] : {std::pair{0, 1}, {1, 0}, {0, 0}, {3, 1}, {1, 4}, {-1, 1}, {1, -1}}) {
        texts.set(field, record, str("x"));
        EXPECT_EQ(texts.at(field, record), QString());
        QString read = str("before");
        texts.read(field, record, read);
        EXPECT_EQ(read, QString());
    }
}

TEST(CellTexts, ARecordsElementZeroIsNotUsedAndMissingOnesAreEmpty) {
    CellTexts texts(3, 0);
    texts.appendRecord({str("unused"), str("one"), str("two")});
    ASSERT_EQ(texts.records(), 1);
    EXPECT_EQ(texts.at(1, 1), str("one"));
    EXPECT_EQ(texts.at(2, 1), str("two"));
    EXPECT_EQ(texts.at(3, 1), QString());
    texts.appendRecord({});
    EXPECT_EQ(texts.records(), 2);
}

TEST(CellTexts, AnotherShapeKeepsWhatStaysInside) {
    CellTexts texts(2, 2);
    texts.set(1, 1, str("kept"));
    texts.set(2, 2, str("cut"));
    texts.setShape(3, 1);
    EXPECT_EQ(texts.at(1, 1), str("kept"));
    texts.setShape(3, 4);
    EXPECT_EQ(texts.at(2, 2), QString());
    EXPECT_EQ(texts.at(3, 4), QString());
    texts.setShape(-1, -1);
    EXPECT_EQ(texts.fields(), 0);
    EXPECT_EQ(texts.records(), 0);
}

RC_GTEST_PROP(CellTextsProperty, ReorderingMovesWholeRecords, (std::vector<int> numbers)) {
    CellTexts texts(2, 0);
    for (const int number : numbers)
        texts.appendRecord({QString(), QString::number(number), u"n"_s + QString::number(number)});
    std::vector<std::uint32_t> order(numbers.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t left, std::uint32_t right) { return numbers[left] < numbers[right]; });
    texts.permuteRecords(order);
    std::stable_sort(numbers.begin(), numbers.end());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const int record = static_cast<int>(i) + 1;
        RC_ASSERT(texts.at(1, record) == QString::number(numbers[i]));
        RC_ASSERT(texts.at(2, record) == u"n"_s + QString::number(numbers[i]));
    }
}

} // namespace
