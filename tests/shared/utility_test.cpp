#include "app/shared/utility.h"

#include <gtest/gtest.h>

using namespace qir;
using namespace Qt::StringLiterals;

namespace {

QString replaced(QString text, const QString &find, const QString &replacement) {
    SostituisciTesto(text, find, replacement);
    return text;
}

} // namespace

TEST(SostituisciTesto, RemovesEveryApostrophe) {
    EXPECT_EQ(replaced(u"'it''s'"_s, u"'"_s, QString()), u"its"_s);
}

TEST(SostituisciTesto, ChangesNothingWhenTheReplacementHoldsTheTextToFind) {
    EXPECT_EQ(replaced(u"a.b"_s, u"."_s, u".."_s), u"a.b"_s);
    EXPECT_EQ(replaced(u"abc"_s, u"b"_s, u"xBx"_s), u"abc"_s);
    EXPECT_EQ(replaced(u"abc"_s, QString(), u"x"_s), u"abc"_s);
}

TEST(SostituisciTesto, IgnoresCase) {
    EXPECT_EQ(replaced(u"oneONEOne"_s, u"one"_s, u"2"_s), u"222"_s);
}

TEST(SostituisciTesto, RemovesOccurrencesThatARemovalBringsTogether) {
    EXPECT_EQ(replaced(u"a  ??b"_s, u" ?"_s, QString()), u"ab"_s);
}

TEST(TogliMarcatori, GivesTheBareNameOfAMarkedLine) {
    EXPECT_EQ(TogliMarcatori(u"Pumps ? !"_s), u"Pumps"_s);
    EXPECT_EQ(TogliMarcatori(u"Pumps !"_s), u"Pumps"_s);
    EXPECT_EQ(TogliMarcatori(u"Pumps ?"_s), u"Pumps"_s);
    EXPECT_EQ(TogliMarcatori(u"What? Now!"_s), u"What? Now!"_s);
}

TEST(TogliCarattere, LeavesOutEveryCharacterOfTheCode) {
    EXPECT_EQ(TogliCarattere(u"\na\r\nb\n"_s, 10), u"a\rb"_s);
    EXPECT_EQ(TogliCarattere(QVariant(), 10), QString());
}

TEST(ContieneCaratteriNonAmmessi, FindsACharacterOutsideTheSet) {
    EXPECT_TRUE(ContieneCaratteriNonAmmessi(u"ab c"_s, u"abc"_s));
    EXPECT_FALSE(ContieneCaratteriNonAmmessi(u"cab"_s, u"abc"_s));
    EXPECT_FALSE(ContieneCaratteriNonAmmessi(QString(), u"abc"_s));
}

TEST(DividiPercorso, TakesFolderNameAndExtensionApart) {
    const PercorsoDiviso parts = DividiPercorso(uR"(DATA\SUB.DIR\PUMP 1.DDB)"_s);
    EXPECT_FALSE(parts.error);
    EXPECT_EQ(parts.folder, uR"(DATA\SUB.DIR\)"_s);
    EXPECT_EQ(parts.name, u"PUMP 1"_s);
    EXPECT_EQ(parts.extension, u"DDB"_s);
}

TEST(DividiPercorso, ReportsAPointThatIsLastOrFirst) {
    EXPECT_TRUE(DividiPercorso(u"PUMP."_s).error);
    EXPECT_TRUE(DividiPercorso(u".DDB"_s).error);
}

TEST(DividiPercorso, AllowsANameWithoutPoint) {
    const PercorsoDiviso parts = DividiPercorso(u"PUMP"_s);
    EXPECT_FALSE(parts.error);
    EXPECT_EQ(parts.name, u"PUMP"_s);
    EXPECT_EQ(parts.extension, QString());
}

TEST(DividiPercorso, TakesAPointBeforeTheLastFolderForNoExtension) {
    const PercorsoDiviso parts = DividiPercorso(uR"(A.B\PUMP)"_s);
    EXPECT_FALSE(parts.error);
    EXPECT_EQ(parts.folder, uR"(A.B\)"_s);
    EXPECT_EQ(parts.extension, QString());
}

TEST(DividiPercorso, RefusesABlankInTheExtensionThoughNotInTheName) {
    const PercorsoDiviso parts = DividiPercorso(u"PUMP 1.D B"_s);
    EXPECT_TRUE(parts.error);
    EXPECT_EQ(parts.folder + parts.name + parts.extension, QString());
}

TEST(DividiPercorso, RefusesADriveLetterBecauseNoSetHoldsAColon) {
    EXPECT_TRUE(DividiPercorso(uR"(C:\DATA\PUMP.DDB)"_s).error);
}

TEST(DividiPercorso, OfAnEmptyPathIsEmpty) {
    const PercorsoDiviso parts = DividiPercorso(QString());
    EXPECT_FALSE(parts.error);
    EXPECT_EQ(parts.folder + parts.name + parts.extension, QString());
}

TEST(MinimoMassimo, CompareNumbersByValueAndTextsByCodeUnit) {
    EXPECT_EQ(Minimo(10, 9.5).toDouble(), 9.5);
    EXPECT_EQ(Massimo(10, 9.5).toDouble(), 10);
    EXPECT_EQ(Minimo(u"b"_s, u"a"_s).toString(), u"a"_s);
    EXPECT_EQ(Massimo(u"10"_s, u"9"_s).toString(), u"9"_s);
    EXPECT_EQ(Minimo(u"1"_s, 2).toInt(), 2);
    EXPECT_EQ(Massimo(3, 3).toInt(), 3);
}
