#include "base/columns/BlockOrder.h"

#include "base/columns/ColumnBuilder.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

using namespace qir;
using namespace Qt::StringLiterals;

namespace {

RC_GTEST_PROP(BlockOrder, PutsEachValueInItsPlace, ()) {
    const auto type = *rc::gen::element(ColumnType::Bool, ColumnType::Byte, ColumnType::Int, ColumnType::Long,
                                        ColumnType::Double, ColumnType::Date, ColumnType::Text);
    std::vector<ColumnBlock> blocks;
    std::vector<QString> texts;
    const int count = *rc::gen::inRange(1, 5);
    for (int i = 0; i < count; ++i) {
        ColumnBuilder builder(type);
        const int values = *rc::gen::inRange(1, 20);
        for (int k = 0; k < values; ++k) {
            const int value = *rc::gen::inRange(-5, 300);
            if (type == ColumnType::Text)
                builder.add(QStringView(QString::number(value) + u"\u00e9"_s));
            else
                builder.add(value);
        }
        blocks.push_back(builder.take());
        for (qsizetype k = 0; k < blocks.back().count(); ++k)
            texts.push_back(blocks.back().text(k));
    }
    const auto order = *rc::gen::container<std::vector<std::uint32_t>>(
        rc::gen::inRange<std::uint32_t>(0, static_cast<std::uint32_t>(texts.size())));
    std::vector<QString> moved;
    for (const ColumnBlock &block : reordered(blocks, order))
        for (qsizetype k = 0; k < block.count(); ++k)
            moved.push_back(block.text(k));
    RC_ASSERT(moved.size() == order.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        RC_ASSERT(moved[i] == texts[order[i]]);
}

TEST(BlockOrder, AFullColumnComesInBlocksOfTheUsualSize) {
    ColumnBuilder builder(ColumnType::Byte);
    for (int i = 0; i < 70000; ++i)
        builder.add(i % 256);
    std::vector<std::uint32_t> order(70000, 5);
    const std::vector<ColumnBlock> blocks{builder.take()};
    const std::vector<ColumnBlock> moved = reordered(blocks, order);
    ASSERT_EQ(moved.size(), 2U);
    EXPECT_EQ(moved[0].count(), usualBlockValues);
    EXPECT_EQ(moved[1].count(), 70000 - usualBlockValues);
}

TEST(BlockOrder, MuchTextComesInSeveralBlocks) {
    ColumnBuilder builder(ColumnType::Text);
    for (const char16_t letter : {u'a', u'b'})
        builder.add(QStringView(QString(qsizetype{1} << 20, QChar(letter))));
    const std::vector<ColumnBlock> blocks{builder.take()};
    std::vector<std::uint32_t> order(70);
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i % 3 == 0 ? 1 : 0;
    std::size_t next = 0;
    const std::vector<ColumnBlock> moved = reordered(blocks, order);
    for (const ColumnBlock &block : moved) {
        EXPECT_LE(block.bytes().size(), mostBlockBytes);
        for (qsizetype i = 0; i < block.count(); ++i)
            EXPECT_EQ(block.textBytes(i), blocks[0].textBytes(order[next++])) << next;
    }
    EXPECT_EQ(next, order.size());
    EXPECT_EQ(moved.size(), 3U);
}

TEST(BlockOrder, ATextThatIsMoreThanABlockHasIsABlockByItself) {
    ColumnBuilder builder(ColumnType::Text);
    builder.addUtf8(QByteArray(mostBlockBytes + 1, 'x'));
    builder.addUtf8("y");
    const std::vector<ColumnBlock> blocks{builder.take()};
    const std::vector<ColumnBlock> moved = reordered(blocks, std::vector<std::uint32_t>{1, 0, 1});
    ASSERT_EQ(moved.size(), 3U);
    EXPECT_EQ(moved[1].bytes().size(), mostBlockBytes + 1);
    EXPECT_EQ(moved[2].text(0), u"y"_s);
}

} // namespace
