#include "base/columns/ColumnBuilder.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

ColumnBlock words() {
    ColumnBuilder builder(ColumnType::Text);
    for (const QStringView text : {u"one", u"", u"\ufefftw\u00f6 \U0001F600"})
        builder.add(text);
    return builder.take();
}

TEST(ColumnBlock, KeepsTheValuesOfEachType) {
    for (const ColumnType type : {ColumnType::Bool, ColumnType::Byte, ColumnType::Int, ColumnType::Long,
                                  ColumnType::Double, ColumnType::Date}) {
        ColumnBuilder builder(type);
        builder.add(1.0);
        builder.add(0.0);
        const ColumnBlock block = builder.take();
        ASSERT_EQ(block.count(), 2);
        EXPECT_EQ(block.number(0), 1);
        EXPECT_EQ(block.text(0), u"1"_s);
        EXPECT_EQ(block.text(1), u"0"_s);
        EXPECT_EQ(block.values().size(), static_cast<qsizetype>(2 * valueSize(type)));
    }
}

TEST(ColumnBlock, NumbersAreMadeToFitWhenTheyAreAdded) {
    ColumnBuilder builder(ColumnType::Int);
    for (const double number : {2.5, -1e9, 1e9})
        builder.add(number);
    const ColumnBlock block = builder.take();
    EXPECT_EQ(block.number(0), 2);
    EXPECT_EQ(block.number(1), -32768);
    EXPECT_EQ(block.number(2), 32767);
}

TEST(ColumnBlock, TextsComeBackCharacterByCharacter) {
    const ColumnBlock block = words();
    EXPECT_EQ(block.text(0), u"one"_s);
    EXPECT_EQ(block.text(1), u""_s);
    EXPECT_EQ(block.text(2), u"\ufefftw\u00f6 \U0001F600"_s);
    EXPECT_EQ(block.textBytes(0), QByteArrayView("one"));
}

TEST(ColumnBlock, ALoneSurrogateIsReplaced) {
    ColumnBuilder builder(ColumnType::Text);
    builder.add(QStringView(QString(QChar(0xD800))));
    EXPECT_EQ(builder.take().text(0), u"\uFFFD"_s);
}

TEST(ColumnBlock, GoesThroughAVariantWithItsMemory) {
    const ColumnBlock block = words();
    const auto same = ColumnBlock::fromVariant(block.toVariant());
    ASSERT_TRUE(same);
    EXPECT_TRUE(same->sharesMemoryWith(block));
    EXPECT_EQ(same->text(2), block.text(2));
}

TEST(ColumnBlock, TextsOfAPartShareTheirMemory) {
    const ColumnBlock part = words().sliced(2, 1);
    EXPECT_EQ(part.count(), 1);
    EXPECT_EQ(part.text(0), u"\ufefftw\u00f6 \U0001F600"_s);
}

TEST(ColumnBlock, WhatIsNoUtf8IsReadAsReplacementCharacters) {
    ColumnBuilder builder(ColumnType::Text);
    builder.addUtf8("a\xC3");
    builder.addUtf8("\xED\xA0\x80");
    const ColumnBlock block = builder.take();
    EXPECT_TRUE(block.text(0).startsWith(u'a'));
    EXPECT_TRUE(block.text(0).contains(QChar::ReplacementCharacter));
    EXPECT_TRUE(block.text(1).contains(QChar::ReplacementCharacter));
}

TEST(ColumnBlock, AVariantOfAnotherShapeIsRefusedWithAReason) {
    const QByteArray place = QByteArray::fromHex("0100000003000000");
    for (const QVariant &variant :
         {QVariant(), QVariant(QVariantList{}), QVariant(QVariantList{5, QByteArray()}),
          QVariant(QVariantList{4, QByteArray("abc")}), QVariant(QVariantList{7, QByteArray(8, '\0'), QByteArray()}),
          QVariant(QVariantList{10, place, QByteArray("abc")}), QVariant(QVariantList{10, place}),
          QVariant(QVariantList{10, QByteArray::fromHex("FFFFFFFF02000000"), QByteArray("abc")})}) {
        const auto block = ColumnBlock::fromVariant(variant);
        ASSERT_FALSE(block);
        EXPECT_FALSE(block.error().text.isEmpty());
    }
    EXPECT_TRUE(ColumnBlock::fromVariant(QVariantList{10, place, QByteArray("abcd")}));
}

} // namespace
} // namespace qir
