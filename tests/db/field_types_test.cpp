#include "db/FieldTypes.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

TEST(FieldTypesTest, EachCodeHasItsName) {
    EXPECT_EQ(DBTypeName(1), u"bool"_s);
    EXPECT_EQ(DBTypeName(2), u"byte"_s);
    EXPECT_EQ(DBTypeName(3), u"int"_s);
    EXPECT_EQ(DBTypeName(4), u"long"_s);
    EXPECT_EQ(DBTypeName(7), u"double"_s);
    EXPECT_EQ(DBTypeName(8), u"date"_s);
    EXPECT_EQ(DBTypeName(10), u"text"_s);
}

TEST(FieldTypesTest, EveryOtherCodeHasNone) {
    for (const int code : {-1, 0, 5, 6, 9, 11, 255})
        EXPECT_EQ(DBTypeName(code), QString()) << code;
}

TEST(FieldTypesTest, TheCodeIsTakenFromAnyKindOfNumber) {
    EXPECT_EQ(DBTypeName(4.0), u"long"_s);
    EXPECT_EQ(DBTypeName(QVariant::fromValue(short(10))), u"text"_s);
    EXPECT_EQ(DBTypeName(QVariant::fromValue(static_cast<qlonglong>(8))), u"date"_s);
    EXPECT_EQ(DBTypeName(4.5), QString());
}

TEST(FieldTypesTest, WhatIsNoNumberHasNoName) {
    EXPECT_EQ(DBTypeName(QVariant()), QString());
    EXPECT_EQ(DBTypeName(u"4"_s), QString());
    EXPECT_EQ(DBTypeName(true), QString());
}

} // namespace

} // namespace qir
