#include "db/AssegnaARecordset.h"
#include "db/FieldTypes.h"
#include "db/StoredText.h"
#include "tests/qirtbase/contract/ContractTest.h"

using namespace Qt::StringLiterals;

namespace qir {

namespace {

TEST_P(ContractTest, WhatBecomesOfATextIsKnownBeforeItIsStored) {
    const QirDatabase database = made();
    database.AddTable(u"All"_s);
    database.QIRTableRecordSource(u"All"_s);
    for (const FieldTypeName &type : fieldTypeNames)
        database.AddField(QString::fromLatin1(type.name), static_cast<int>(type.code), 4);
    database.setQIRTableRecordsPointerOut(1);
    const QStringList texts{
        u""_s,           u"0"_s,     u"1"_s,     u"-1"_s,   u"255"_s,           u"256"_s,
        u"999"_s,        u"2.5"_s,   u"3.5"_s,   u"-0.5"_s, u"32768"_s,         u"-32769"_s,
        u"2147483648"_s, u"1e300"_s, u"12abc"_s, u"abc"_s,  u"20250913.0605"_s, u"a\U0001F600bcde"_s,
        u"\xD800x"_s,    u" 7 "_s,   u"0.1"_s,   u"-0"_s};
    QStringList record;
    for (const QString &text : texts) {
        for (int field = 2; field <= database.QirTableFieldsCount(); ++field) {
            AssegnaARecordset(database, field, text);
            const QString expected =
                storedText(database.QIRTableFieldType(field).toInt(), database.QIRTableFieldSize(field).toInt(), text);
            database.GetQirRecord(1, record);
            EXPECT_EQ(record[field], expected) << qPrintable(text) << " in field " << field;
            EXPECT_EQ(valueText(database.QIRTableRecordSetByIndex(field)), expected) << qPrintable(text);
        }
    }
    database.setDtbHasChanged(false);
}

} // namespace

} // namespace qir
