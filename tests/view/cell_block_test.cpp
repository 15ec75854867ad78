#include "view/CellBlock.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

using namespace qir;
using namespace Qt::StringLiterals;

namespace {

CellTexts texts(int fields, const std::vector<QStringList> &records) {
    CellTexts result(fields, 0);
    for (const QStringList &record : records)
        result.appendRecord(QStringList{QString()} + record);
    return result;
}

std::vector<QStringList> records(const CellTexts &block) {
    std::vector<QStringList> result;
    for (int r = 1; r <= block.records(); ++r) {
        QStringList record;
        for (int f = 1; f <= block.fields(); ++f)
            record.append(block.at(f, r));
        result.push_back(record);
    }
    return result;
}

} // namespace

TEST(CellBlock, TabsAndLineEndsInsideACellComeBack) {
    const std::vector<QStringList> cells{{u"a\tb"_s, u"line\r\nline"_s}, {u""_s, u"\r"_s}};
    const auto block = decodeCellBlock(encodeCellBlock(texts(2, cells), {1, 1, 2, 2}));
    ASSERT_TRUE(block);
    EXPECT_EQ(records(*block), cells);
}

TEST(CellBlock, OnlyTheBlockIsEncoded) {
    const CellTexts all =
        texts(3, {{u"11"_s, u"12"_s, u"13"_s}, {u"21"_s, u"22"_s, u"23"_s}, {u"31"_s, u"32"_s, u"33"_s}});
    const auto block = decodeCellBlock(encodeCellBlock(all, {2, 2, 3, 3}));
    ASSERT_TRUE(block);
    EXPECT_EQ(records(*block), (std::vector<QStringList>{{u"22"_s, u"23"_s}, {u"32"_s, u"33"_s}}));
}

TEST(CellBlock, HeadersAndCellsBeyondTheTableAreLeftOut) {
    const auto block = decodeCellBlock(encodeCellBlock(texts(1, {{u"x"_s}}), {0, 0, 5, 5}));
    ASSERT_TRUE(block);
    EXPECT_EQ(records(*block), (std::vector<QStringList>{{u"x"_s}}));
}

TEST(CellBlock, TheBytesStandAsDescribed) {
    EXPECT_EQ(encodeCellBlock(texts(1, {{u"A\u0416"_s}}), {1, 1, 1, 1}),
              QByteArray("QIRCELL1\x01\0\0\0\x01\0\0\0\x02\0\0\0A\0\x16\x04", 24));
}

TEST(CellBlock, EveryCutBlockIsRefused) {
    const QByteArray whole = encodeCellBlock(texts(2, {{u"one"_s, u"two"_s}}), {1, 1, 1, 2});
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(decodeCellBlock(whole.first(length))) << length;
    EXPECT_FALSE(decodeCellBlock(whole + '\0'));
}

TEST(CellBlock, HugeCountsMakeNoRoom) {
    const QByteArray magic("QIRCELL1");
    EXPECT_FALSE(decodeCellBlock(magic + QByteArray(8, '\xff')));
    EXPECT_FALSE(decodeCellBlock(magic + QByteArray("\xff\xff\xff\x7f\0\0\0\0", 8)));
    EXPECT_FALSE(decodeCellBlock(magic + QByteArray("\0\0\0\0\xff\xff\xff\xff", 8)));
    EXPECT_FALSE(decodeCellBlock(magic + QByteArray("\1\0\0\0\1\0\0\0\xff\xff\xff\xff", 12)));
}

TEST(CellBlock, HtmlShowsTextsAndNotMarkup) {
    EXPECT_EQ(cellBlockHtml(texts(2, {{u"<b>&"_s, u"a\r\nb\nc\rd"_s}})),
              u"<table><tr><td>&lt;b&gt;&amp;</td><td>a<br>b<br>c<br>d</td></tr>\n</table>"_s);
}

RC_GTEST_PROP(CellBlock, AnyBlockComesBack, ()) {
    const int fields = *rc::gen::inRange(1, 4);
    const int count = *rc::gen::inRange(1, 5);
    std::vector<QStringList> cells;
    for (int r = 0; r < count; ++r) {
        QStringList record;
        for (int f = 0; f < fields; ++f) {
            const auto units = *rc::gen::container<std::vector<std::uint16_t>>(rc::gen::arbitrary<std::uint16_t>());
            record.append(QString::fromUtf16(reinterpret_cast<const char16_t *>(units.data()),
                                             static_cast<qsizetype>(units.size())));
        }
        cells.push_back(record);
    }
    const auto block = decodeCellBlock(encodeCellBlock(texts(fields, cells), {1, 1, count, fields}));
    RC_ASSERT(block.has_value());
    RC_ASSERT(records(*block) == cells);
}

RC_GTEST_PROP(CellBlock, AnyBytesAreRefusedOrTaken, (const std::vector<char> &tail)) {
    const QByteArray bytes = QByteArray("QIRCELL1") + QByteArray(tail.data(), static_cast<qsizetype>(tail.size()));
    const auto block = decodeCellBlock(bytes);
    if (block && block->records() > 0)
        RC_ASSERT(encodeCellBlock(*block, {1, 1, block->records(), block->fields()}) == bytes);
}
