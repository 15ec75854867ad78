#include "base/PackedTexts.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;
using qir::PackedTexts;

namespace {

QString anyText() {
    const auto units = *rc::gen::container<std::vector<char16_t>>(
        rc::gen::oneOf(rc::gen::inRange<char16_t>(0, 0x100), rc::gen::arbitrary<char16_t>()));
    return QString(reinterpret_cast<const QChar *>(units.data()), static_cast<qsizetype>(units.size()));
}

void compare(const PackedTexts &texts, const std::vector<QString> &model) {
    RC_ASSERT(texts.size() == model.size());
    RC_ASSERT(texts.isEmpty() == model.empty());
    QString read = u"what was there before"_s;
    for (std::size_t i = 0; i < model.size(); ++i) {
        RC_ASSERT(texts.at(i) == model[i]);
        texts.read(i, read);
        RC_ASSERT(read == model[i]);
        RC_ASSERT(texts.view(i).size == static_cast<std::uint32_t>(model[i].size()));
    }
}

TEST(PackedTexts, GivesBackEveryUnitLoneSurrogatesIncluded) {
    PackedTexts texts;
    const QString odd = u"a"_s + QChar(0xD800) + QChar(0) + QChar(0xDC00) + u"ÿ\u0100"_s;
    texts.append(odd);
    texts.append(u"\u00FF"_s);
    EXPECT_EQ(texts.at(0), odd);
    EXPECT_EQ(texts.at(1), u"\u00FF"_s);
}

TEST(PackedTexts, TakesOneByteForALatin1UnitAndTwoForAnyOther) {
    PackedTexts texts;
    texts.append(u"abcé"_s);
    texts.append(u"abcĀ"_s);
    EXPECT_FALSE(texts.view(0).wide);
    EXPECT_TRUE(texts.view(1).wide);
    EXPECT_EQ(texts.view(1).bytes - texts.view(0).bytes, 4);
}

TEST(PackedTexts, TellsEqualTextsOfTwoColumns) {
    PackedTexts left;
    PackedTexts right;
    left.append(u"same"_s);
    right.appendLatin1("same", 4);
    left.append(u"sĀme"_s);
    right.append(u"sāme"_s);
    left.append(u""_s);
    right.append(u"x"_s);
    EXPECT_TRUE(left.view(0) == right.view(0));
    EXPECT_FALSE(left.view(1) == right.view(1));
    EXPECT_FALSE(left.view(2) == right.view(2));
    right.set(2, u""_s);
    EXPECT_TRUE(left.view(2) == right.view(2));
}

TEST(PackedTexts, PacksAgainOnceGarbageOutweighsTheRest) {
    PackedTexts texts;
    texts.append(u"kept"_s);
    texts.append(QString(1000, u'x'));
    for (int i = 0; i < 10'000; ++i)
        texts.set(1, QString(1000, QChar(u'a' + i % 26)));
    EXPECT_LT(texts.memory(), 100'000U);
    EXPECT_EQ(texts.at(0), u"kept"_s);
    EXPECT_EQ(texts.at(1), QString(1000, QChar(u'a' + 9'999 % 26)));
}

TEST(PackedTexts, KeepsToItsReservation) {
    PackedTexts texts;
    texts.reserve(1000, 5000);
    const std::size_t reserved = texts.memory();
    for (int i = 0; i < 1000; ++i)
        texts.appendLatin1("12345", 5);
    EXPECT_EQ(texts.memory(), reserved);
}

TEST(PackedTexts, RefusesATextTooLongAndStaysAsItWas) {
    PackedTexts texts;
    texts.append(u"a"_s);
    const QString tooLong(1 << 25, u'x');
    EXPECT_THROW(texts.append(tooLong), std::length_error);
    EXPECT_THROW(texts.set(0, tooLong), std::length_error);
    EXPECT_THROW(texts.appendLatin1("", std::size_t{1} << 25), std::length_error);
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_EQ(texts.at(0), u"a"_s);
    texts.set(0, QStringView(tooLong).chopped(1));
    EXPECT_EQ(texts.at(0).size(), tooLong.size() - 1);
}

TEST(PackedTexts, AppendsManyTextsAtOnce) {
    PackedTexts texts;
    texts.append(u"first"_s);
    const std::vector<std::uint32_t> lengths = {2, 0, 3};
    texts.appendLatin1("ab\xE9zz", lengths);
    ASSERT_EQ(texts.size(), 4U);
    EXPECT_EQ(texts.at(1), u"ab"_s);
    EXPECT_EQ(texts.at(2), u""_s);
    EXPECT_EQ(texts.at(3), u"ézz"_s);
    EXPECT_THROW(texts.appendLatin1("", std::vector<std::uint32_t>{1U << 25}), std::length_error);
    EXPECT_EQ(texts.size(), 4U);
}

TEST(PackedTexts, TellsWhetherATextStandsSomewhere) {
    PackedTexts texts;
    texts.append(u"é"_s);
    texts.append(u"\u0100"_s);
    EXPECT_TRUE(texts.holds(0, u"é"_s));
    EXPECT_FALSE(texts.holds(0, u"\u01E9"_s));
    EXPECT_FALSE(texts.holds(0, u"éé"_s));
    EXPECT_TRUE(texts.holds(1, u"\u0100"_s));
    EXPECT_FALSE(texts.holds(1, u"\u0101"_s));
}

TEST(PackedTexts, CopiesAreDeep) {
    PackedTexts texts;
    texts.append(u"first"_s);
    PackedTexts copy = texts;
    copy.set(0, u"other"_s);
    EXPECT_EQ(texts.at(0), u"first"_s);
    EXPECT_EQ(copy.at(0), u"other"_s);
}

RC_GTEST_PROP(PackedTextsProperty, HoldsWhatAPlainVectorHolds, ()) {
    PackedTexts texts;
    std::vector<QString> model;
    const int steps = *rc::gen::inRange(0, 60);
    for (int step = 0; step < steps; ++step) {
        const auto index = model.empty() ? 0 : *rc::gen::inRange<std::size_t>(0, model.size());
        const auto at = model.begin() + static_cast<std::ptrdiff_t>(index);
        const int operation = *rc::gen::inRange(0, 7);
        if (operation <= 2 || model.empty()) {
            model.push_back(anyText());
            texts.append(model.back());
        } else if (operation == 3) {
            *at = anyText();
            texts.set(index, *at);
        } else if (operation == 4) {
            *at = QString(3000, u'y'); // enough to make garbage count
            texts.set(index, *at);
        } else if (operation == 5) {
            model.resize(*rc::gen::inRange<std::size_t>(0, 12));
            texts.resize(model.size());
        } else {
            std::vector<std::uint32_t> order(model.size());
            std::iota(order.begin(), order.end(), 0U);
            std::rotate(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(index), order.end());
            std::swap(order.front(), order.back());
            std::vector<QString> reordered;
            for (const std::uint32_t from : order)
                reordered.push_back(model[from]);
            model = reordered;
            texts.permute(order);
        }
        compare(texts, model);
    }
    texts.clear();
    compare(texts, {});
}

} // namespace
