#include "base/NumberText.h"
#include "cli/tables/ColumnValues.h"
#include "db/tables/FieldHeader.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

// The header that a column of these values gets when it is exported again.
std::string guessed(const QStringList &values) {
    QByteArray csv("A\n");
    for (const QString &value : values)
        csv += '"' + value.toUtf8() + "\"\n";
    const Result<CsvTable> table = CsvTable::read(csv);
    const Result<FieldInfo> field = columnField(*table, 0);
    return field ? fieldHeaderText(*field).toStdString() : field.error().text.toStdString();
}

std::string headed(const QByteArray &header) {
    const Result<CsvTable> table = CsvTable::read('"' + header + "\"\n");
    const Result<FieldInfo> field = columnField(*table, 0);
    return field ? fieldHeaderText(*field).toStdString() : field.error().text.toStdString();
}

std::string imported(FieldType type, const QString &text) {
    const Result<QVariant> value = importedValue({u"F"_s, type, type == FieldType::Text ? 5 : 0}, text);
    if (!value)
        return value.error().text.toStdString();
    return value->typeId() == QMetaType::Double ? numberText(value->toDouble()).toStdString()
                                                : '"' + value->toString().toStdString() + '"';
}

TEST(FieldHeaderTest, NamesTheTypeInSquareBrackets) {
    EXPECT_EQ(headed("Speed[long]"), "Speed[long]");
    EXPECT_EQ(headed("Name[text:20]"), "Name[text:20]");
    EXPECT_EQ(headed("Name [ Text : 20 ]"), "Name[text:20]");
    EXPECT_EQ(headed("Name[text]"), "Name[text:50]");
    EXPECT_EQ(headed("Name[text:0]"), "Name[text:0]");
    EXPECT_EQ(headed("a[1][date]"), "a[1][date]");
}

TEST(FieldHeaderTest, BracketsAtTheEndNameATypeAndNothingElse) {
    const std::string rest = " is no type; a name that ends in brackets needs its type behind, as in ";
    EXPECT_EQ(headed("Flow [m3]"), "field \"Flow [m3]\": \"m3\"" + rest + "Flow [m3][text]");
    EXPECT_EQ(headed("Speed[lnog]"), "field \"Speed[lnog]\": \"lnog\"" + rest + "Speed[lnog][text]");
    EXPECT_EQ(headed("Flow[]"), "field \"Flow[]\": \"\"" + rest + "Flow[][text]");
    EXPECT_EQ(headed("Flow [m3][double]"), "Flow [m3][double]");
    EXPECT_EQ(headed("[long] run"), "[long] run[text:50]");
}

TEST(FieldHeaderTest, ASizeThatCannotBeIsAnError) {
    EXPECT_EQ(headed("Name[text:x]"), "field \"Name\": its size must be 0 to 65535");
    EXPECT_EQ(headed("Name[text:65536]"), "field \"Name\": its size must be 0 to 65535");
    EXPECT_EQ(headed("Name[text:-1]"), "field \"Name\": its size must be 0 to 65535");
    EXPECT_EQ(headed("Speed[long:4]"), "field \"Speed\": only text has a size");
}

TEST(ColumnGuessTest, GuessesTheTypeThatBringsEveryValueBack) {
    EXPECT_EQ(guessed({u"1"_s, u"-5"_s, u"2147483647"_s}), "A[long]");
    EXPECT_EQ(guessed({u"1"_s, u"2147483648"_s}), "A[double]");
    EXPECT_EQ(guessed({u"1"_s, u"0.5"_s, u"1e-7"_s}), "A[double]");
    EXPECT_EQ(guessed({u"true"_s, u"FALSE"_s}), "A[bool]");
    EXPECT_EQ(guessed({u"2024-02-29"_s, u"2024-02-29T23:59:59"_s}), "A[date]");
    EXPECT_EQ(guessed({u"P-1"_s, u"2"_s}), "A[text:50]");
    EXPECT_EQ(guessed({}), "A[text:50]");
}

TEST(ColumnGuessTest, WhatANumberWouldLoseStaysText) {
    EXPECT_EQ(guessed({u"007"_s}), "A[text:50]");
    EXPECT_EQ(guessed({u"+5"_s}), "A[text:50]");
    EXPECT_EQ(guessed({u"1 000"_s}), "A[text:50]");
    EXPECT_EQ(guessed({u"1,5"_s}), "A[text:50]");
    EXPECT_EQ(guessed({u"5."_s}), "A[text:50]");
    EXPECT_EQ(guessed({u"-0"_s}), "A[text:50]");
    EXPECT_EQ(guessed({u"9007199254740993"_s}), "A[text:50]");
    EXPECT_EQ(guessed({u"0.1234567890123456789"_s}), "A[text:50]");
    EXPECT_EQ(guessed({u"1e999"_s}), "A[text:50]");
    EXPECT_EQ(guessed({u"1e-999"_s}), "A[text:50]"); // 0 would come back
    EXPECT_EQ(guessed({u"1.2345678e-320"_s}), "A[text:50]");
    EXPECT_EQ(guessed({u"0e5"_s, u"-0.0"_s, u"2.3e-308"_s}), "A[double]");
    EXPECT_EQ(guessed({u"5"_s, u""_s}), "A[text:50]");
    EXPECT_EQ(guessed({u"2023-02-29"_s}), "A[text:50]");
}

TEST(ColumnGuessTest, ATextIsAsWideAsItsLongestValue) {
    EXPECT_EQ(guessed({QString(80, u'x'), u"y"_s}), "A[text:80]");
    EXPECT_EQ(guessed({QString::fromUcs4(U"\U0001F600").repeated(60)}), "A[text:60]");
}

TEST(ImportedValueTest, TakesValuesOfTheFieldsType) {
    EXPECT_EQ(imported(FieldType::Long, u"-5"_s), "-5");
    EXPECT_EQ(imported(FieldType::Long, u"1e3"_s), "1000");
    EXPECT_EQ(imported(FieldType::Byte, u"255"_s), "255");
    EXPECT_EQ(imported(FieldType::Int, u"-32768"_s), "-32768");
    EXPECT_EQ(imported(FieldType::Double, u"0.25"_s), "0.25");
    EXPECT_EQ(imported(FieldType::Bool, u"True"_s), "1");
    EXPECT_EQ(imported(FieldType::Bool, u"0"_s), "0");
    EXPECT_EQ(imported(FieldType::Bool, u"-1"_s), "1");
    EXPECT_EQ(imported(FieldType::Text, u"P-1"_s), "\"P-1\"");
    EXPECT_EQ(imported(FieldType::Text, u""_s), "\"\"");
    EXPECT_EQ(imported(FieldType::Double, u""_s), "0");
}

TEST(ImportedValueTest, TakesDatesAsNumbersAndAsIsoTexts) {
    EXPECT_EQ(imported(FieldType::Date, u"20240229"_s), "20240229");
    EXPECT_EQ(imported(FieldType::Date, u"20240229.235959"_s), "20240229.235959");
    EXPECT_EQ(imported(FieldType::Date, u"2024-02-29"_s), "20240229");
    EXPECT_EQ(imported(FieldType::Date, u"2024-02-29T23:59:59"_s), "20240229.235959");
    EXPECT_EQ(imported(FieldType::Date, u"2024-02-29 23:59"_s), "20240229.2359");
    EXPECT_EQ(imported(FieldType::Date, u"2024-02-30"_s), "is no date");
    EXPECT_EQ(imported(FieldType::Date, u"2024-02-29X23:59"_s), "is no date");
    EXPECT_EQ(imported(FieldType::Date, u"2024-02-29T24:01"_s), "is no date");
    EXPECT_EQ(imported(FieldType::Date, u"2024-02-29T"_s), "is no date");
    EXPECT_EQ(imported(FieldType::Date, u"soon"_s), "is no date");
}

TEST(ImportedValueTest, RefusesNumbersThatNoDoubleReaches) {
    for (const FieldType type : {FieldType::Double, FieldType::Date}) {
        for (const char16_t *text : {u"1e999", u"-1e999", u"1.7976931348623159e308", u"1 e 4 0 0"})
            EXPECT_EQ(imported(type, QString::fromUtf16(text)), "is larger than a number can be");
        EXPECT_EQ(imported(type, u"1.7976931348623157e308"_s), "1.7976931348623157e+308");
        EXPECT_EQ(imported(type, u"-1.7976931348623158e308"_s), "-1.7976931348623157e+308");
        EXPECT_EQ(imported(type, u"1e-999"_s), "0");
    }
    EXPECT_EQ(imported(FieldType::Long, u"1e999"_s), "is out of the range of long");
}

TEST(ImportedValueTest, RefusesWhatItWouldHaveToChange) {
    EXPECT_EQ(imported(FieldType::Long, u"five"_s), "is no number");
    EXPECT_EQ(imported(FieldType::Long, u"5 bar"_s), "is no number");
    EXPECT_EQ(imported(FieldType::Long, u"0.5"_s), "is no whole number");
    EXPECT_EQ(imported(FieldType::Long, u"2147483648"_s), "is out of the range of long");
    EXPECT_EQ(imported(FieldType::Int, u"32768"_s), "is out of the range of int");
    EXPECT_EQ(imported(FieldType::Byte, u"-1"_s), "is out of the range of byte");
    EXPECT_EQ(imported(FieldType::Bool, u"2"_s), "is neither true nor false");
    EXPECT_EQ(imported(FieldType::Bool, u"yes"_s), "is neither true nor false");
    EXPECT_EQ(imported(FieldType::Text, u"123456"_s), "is longer than the 5 characters of the field");
}

} // namespace

} // namespace qir
