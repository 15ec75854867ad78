#include "platform/cells/CellColumn.h"

#include "base/NumberText.h"
#include "tests/support/Columns.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <numeric>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

std::vector<QString> textsOf(const CellColumn &column) {
    std::vector<QString> texts;
    for (std::size_t i = 0; i < column.size(); ++i)
        texts.push_back(column.at(i));
    return texts;
}

TEST(CellColumn, ABlockIsSharedUntilManyOfItsTextsAreTyped) {
    const ColumnBlock block = numberBlock(ColumnType::Long, std::vector<double>(5000, 7));
    CellColumn column;
    column.append(block);
    column.set(3, u"999 as typed");
    ASSERT_EQ(column.stretches().size(), 1U);
    EXPECT_TRUE(column.stretches().front().block().sharesMemoryWith(block));
    EXPECT_EQ(column.at(3), u"999 as typed"_s);
    EXPECT_EQ(column.at(4), u"7"_s);
    for (std::size_t i = 0; i < 3000; ++i)
        column.set(i, QString::number(i));
    EXPECT_TRUE(column.stretches().front().own());
    EXPECT_EQ(column.at(2999), u"2999"_s);
    EXPECT_EQ(column.at(3000), u"7"_s);
    EXPECT_EQ(block.number(0), 7); // whose memory it was never sees what is typed
}

TEST(CellColumn, ACopyKeepsItsTexts) {
    CellColumn column;
    column.append(textBlock({u"a"_s, u"b"_s}));
    const CellColumn copy = column;
    column.set(0, u"x");
    EXPECT_EQ(textsOf(copy), (std::vector{u"a"_s, u"b"_s}));
    EXPECT_EQ(textsOf(column), (std::vector{u"x"_s, u"b"_s}));
}

TEST(CellColumn, ReorderedBlocksAreBlocksAgain) {
    CellColumn column = columnOf(std::vector<double>{3, 1, 2}, 2,
                                 [](const auto &numbers) { return numberBlock(ColumnType::Double, numbers); });
    column.permute({1, 2, 0});
    EXPECT_FALSE(column.stretches().front().own());
    EXPECT_EQ(textsOf(column), (std::vector{u"1"_s, u"2"_s, u"3"_s}));
}

RC_GTEST_PROP(CellColumnProperty, HoldsWhatAPlainListHolds, ()) {
    const auto text = rc::gen::element(u""_s, u"a"_s, u"12"_s, u"1.50"_s, u"\u00e9"_s, u"\u4e2d\U0001F600"_s,
                                       u"long enough to move"_s);
    CellColumn column;
    std::vector<QString> model;
    const int steps = *rc::gen::inRange(0, 30);
    for (int step = 0; step < steps; ++step) {
        switch (*rc::gen::inRange(0, 6)) {
        case 0: {
            const auto texts = *rc::gen::container<std::vector<QString>>(text);
            column.append(textBlock(texts));
            model.insert(model.end(), texts.begin(), texts.end());
            break;
        }
        case 1: {
            const auto numbers = *rc::gen::arbitrary<std::vector<int>>();
            column.append(numberBlock(ColumnType::Long, std::vector<double>(numbers.begin(), numbers.end())));
            for (const int number : numbers)
                model.push_back(QString::number(number));
            break;
        }
        case 2:
            model.push_back(*text);
            column.append(QStringView(model.back()));
            break;
        case 3:
            if (!model.empty()) {
                const auto index = *rc::gen::inRange<std::size_t>(0, model.size());
                model[index] = *text;
                column.set(index, model[index]);
            }
            break;
        case 4: {
            const auto count = *rc::gen::inRange<std::size_t>(0, model.size() + 5);
            model.resize(count, QString());
            column.resize(count);
            break;
        }
        default: {
            std::vector<std::uint32_t> order(model.size());
            std::iota(order.begin(), order.end(), 0U);
            std::ranges::stable_sort(order, {}, [&](std::uint32_t index) { return model[index]; });
            std::vector<QString> moved;
            for (const std::uint32_t index : order)
                moved.push_back(model[index]);
            model = moved;
            column.permute(order);
        }
        }
        RC_ASSERT(textsOf(column) == model);
    }
}

} // namespace
