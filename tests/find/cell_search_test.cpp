#include "find/search/CellSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

std::vector<int> found(const CellSearch &search, const QStringList &texts) {
    CellTexts cells(1, static_cast<int>(texts.size()));
    for (int record = 1; record <= cells.records(); ++record)
        cells.set(1, record, texts[record - 1]);
    std::vector<int> records;
    search.searchColumn(cells, 1, 1, cells.records(), [&](int record) { records.push_back(record); });
    return records;
}

TEST(CellSearchTest, CaseCountsOnlyWhenAsked) {
    const QStringList texts{u"One"_s, u"one"_s, u"tone"_s, u"on"_s};
    EXPECT_EQ(found(CellSearch({u"one"_s}), texts), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(found(CellSearch({u"one"_s, true}), texts), (std::vector<int>{2, 3}));
}

TEST(CellSearchTest, AWholeCellIsNoPartOfOne) {
    EXPECT_EQ(found(CellSearch({u"one"_s, false, true}), {u"One"_s, u"ones"_s, u" one"_s}), (std::vector<int>{1}));
}

TEST(CellSearchTest, LettersBeyondLatin1HitToo) {
    EXPECT_EQ(found(CellSearch({u"ω"_s}), {u"ΑΩ"_s, u"o"_s, u"ω"_s}), (std::vector<int>{1, 3}));
    // Capitals that only stand outside Latin-1, and units of it whose folding does.
    EXPECT_EQ(found(CellSearch({u"\u0178"_s}), {u"\u00FF"_s, u"y"_s}), (std::vector<int>{1}));
    EXPECT_EQ(found(CellSearch({u"\u00B5"_s}), {u"\u03BC"_s, u"\u00B5"_s}), (std::vector<int>{1, 2}));
}

TEST(CellSearchTest, NothingIsFoundWithoutATextOrAnExpression) {
    EXPECT_TRUE(found(CellSearch({QString()}), {QString(), u"a"_s}).empty());
    const CellSearch broken({u"(a"_s, false, false, true});
    EXPECT_TRUE(broken.isEmpty());
    EXPECT_FALSE(broken.error().isEmpty());
    EXPECT_TRUE(found(broken, {u"a"_s}).empty());
}

TEST(CellSearchTest, AnExpressionFindsItsPlaces) {
    EXPECT_EQ(found(CellSearch({u"^a.c$"_s, false, false, true}), {u"ABC"_s, u"abcd"_s}), (std::vector<int>{1}));
    EXPECT_EQ(found(CellSearch({u"b|bc"_s, false, true, true}), {u"bc"_s, u"abc"_s}), (std::vector<int>{1}));
}

TEST(CellSearchTest, AnExpressionThatLooksAroundOrBackFindsItsPlacesToo) {
    EXPECT_EQ(found(CellSearch({u"\\bone\\b"_s, false, false, true}),
                    {u"one two"_s, u"tones"_s, u"ONE"_s, u"\u00F6 one"_s, u"\u03C9 one"_s, u"two"_s}),
              (std::vector<int>{1, 3, 4, 5}));
    EXPECT_EQ(found(CellSearch({u"(.)\\1"_s, false, false, true}),
                    {u"aa"_s, u"ab"_s, u"\u00F6\u00F6"_s, u"\u03C9\u03C9"_s, QString()}),
              (std::vector<int>{1, 3, 4}));
    EXPECT_EQ(found(CellSearch({u"(a)\\1"_s, true, true, true}), {u"aa"_s, u"AA"_s, u"aaa"_s}), (std::vector<int>{1}));
}

TEST(CellSearchTest, EveryPlaceIsReplaced) {
    EXPECT_EQ(CellSearch({u"a"_s}).replaced(u"Banana"_s, u"o"_s), u"Bonono"_s);
    EXPECT_EQ(CellSearch({u"(.)-(.)"_s, false, false, true}).replaced(u"a-b"_s, u"\\2\\1"_s), u"ba"_s);
    EXPECT_EQ(CellSearch({u"abc"_s, false, true}).replaced(u"ABC"_s, u"x"_s), u"x"_s);
}

TEST(CellSearchTest, ColumnsAndTextsAgreeOnRandomTexts) {
    std::mt19937 random(7);
    const QString letters = u"abAB\u00E4\u00C4\u00B5\u03BC\u00FF\u0178k\u212A"_s;
    const auto text = [&](int most) {
        QString made;
        for (int length = static_cast<int>(random() % static_cast<unsigned>(most + 1)); length > 0; --length)
            made += letters[static_cast<qsizetype>(random() % static_cast<unsigned>(letters.size()))];
        return made;
    };
    for (int round = 0; round < 2000; ++round) {
        const CellSearch search({text(2) + letters[round % letters.size()], random() % 2 == 0, random() % 4 == 0});
        const QStringList texts{text(5), text(5), text(3), QString()};
        std::vector<int> expected;
        for (int i = 0; i < texts.size(); ++i) {
            if (search.hits(texts[i]))
                expected.push_back(i + 1);
        }
        EXPECT_EQ(found(search, texts), expected) << qPrintable(search.terms().text);
    }
}

TEST(CellSearchTest, ValuesOfADatabaseAndTextsTypedOverThemHit) {
    const std::array<std::int32_t, 3> numbers{12, 5, -120};
    const std::array<TextPlace, 3> places{TextPlace{0, 2}, TextPlace{2, 3}, TextPlace{5, 1}};
    CellTexts cells(2, 0);
    cells.appendRecords(
        {ColumnBlock::ofNumbers(ColumnType::Long,
                                QByteArray(reinterpret_cast<const char *>(numbers.data()), sizeof numbers)),
         ColumnBlock::ofTexts(QByteArray(reinterpret_cast<const char *>(places.data()), sizeof places), "aB\xC3\xA4"
                                                                                                        "b?")});
    const auto foundIn = [&](int field, const SearchTerms &terms) {
        std::vector<int> records;
        CellSearch(terms).searchColumn(cells, field, 1, 3, [&](int record) { records.push_back(record); });
        return records;
    };
    EXPECT_EQ(foundIn(1, {u"12"_s}), (std::vector<int>{1, 3}));
    EXPECT_EQ(foundIn(1, {u"12"_s, false, true}), (std::vector<int>{1}));
    EXPECT_EQ(foundIn(2, {u"b"_s}), (std::vector<int>{1, 2}));
    EXPECT_EQ(foundIn(2, {u"\u00C4B"_s}), (std::vector<int>{2}));
    EXPECT_EQ(foundIn(1, {u"\\b12"_s, false, false, true}), (std::vector<int>{1, 3}));
    EXPECT_EQ(foundIn(2, {u"(?<=a)b"_s, false, false, true}), (std::vector<int>{1}));
    cells.set(1, 2, u"x12"_s);
    EXPECT_EQ(foundIn(1, {u"12"_s}), (std::vector<int>{1, 2, 3}));
}

} // namespace

} // namespace qir
