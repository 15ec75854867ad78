#include "tests/qirtbase/contract/ContractTest.h"

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// The texts that a field of a type gives back for what was written into it.
struct Written {
    QVariant given;
    QString kept;
};

class ValueContract {
public:
    ValueContract(const QirDatabase &database, int type)
        : m_database(database) {
        database.AddTable(u"Values"_s);
        database.QIRTableRecordSource(u"Values"_s);
        database.AddField(u"Value"_s, type, 8);
        database.setQIRTableRecordsPointerOut(1);
    }
    void expect(const std::vector<Written> &cases) const {
        for (const Written &one : cases) {
            m_database.setQIRTableRecordSetByIndex(2, one.given);
            QStringList values;
            m_database.GetQirRecord(1, values);
            EXPECT_EQ(values.at(2), one.kept) << "given " << one.given.toString().toStdString();
        }
    }

private:
    const QirDatabase &m_database;
};

TEST_P(ContractTest, ANewRecordHoldsZerosAndEmptyTexts) {
    const QirDatabase database = pumps();
    database.AddRecord();
    QStringList values;
    database.GetQirRecord(3, values);
    EXPECT_EQ(values, (QStringList{u""_s, u""_s, u"0"_s, u"0"_s}));
    EXPECT_TRUE(database.DtbHasChanged());
}

TEST_P(ContractTest, AddingARecordKeepsTheCurrentOne) {
    const QirDatabase database = pumps();
    database.AddRecord();
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 1);
    EXPECT_EQ(database.QirTableRecordsCount(), 3);
}

TEST_P(ContractTest, RemovingARecordClosesTheGap) {
    const QirDatabase database = pumps();
    database.RemoveRecord(1);
    ASSERT_EQ(database.QirTableRecordsCount(), 1);
    EXPECT_EQ(text(database, 1, 1), u"P-2"_s);
    EXPECT_TRUE(database.DtbHasChanged());
}

TEST_P(ContractTest, ARecordNumberOutOfRangeIsRefused) {
    const QirDatabase database = pumps();
    QStringList values;
    for (const int record : {-1, 3, 2147483647}) {
        expectRefused(database, [&] { database.RemoveRecord(record); });
        expectRefused(database, [&] { database.GetQirRecord(record, values); });
        expectRefused(database, [&] { database.setQIRTableRecordsPointerOut(record); });
    }
    expectRefused(database, [&] { database.RemoveRecord(0); });
    expectRefused(database, [&] { database.GetQirRecord(0, values); });
}

TEST_P(ContractTest, ChoosingATableSetsTheCurrentRecordToZeroWhereNothingIsRead) {
    const QirDatabase database = pumps();
    database.QIRTableRecordSource(u"Pumps"_s);
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 0);
    EXPECT_THROW((void)database.QIRTableRecordSetByIndex(1), std::exception);
    EXPECT_THROW(database.setQIRTableRecordSetByIndex(1, u"x"_s), std::exception);
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_P(ContractTest, ReadingAWholeRecordMovesNothing) {
    const QirDatabase database = pumps();
    QStringList values;
    database.GetQirRecord(2, values);
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 1);
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_P(ContractTest, ElementZeroOfARecordIsEmptyAndElementKIsFieldK) {
    const QirDatabase database = pumps();
    QStringList values{u"old"_s, u"old"_s, u"old"_s, u"old"_s, u"old"_s, u"old"_s, u"old"_s};
    database.GetQirRecord(2, values);
    ASSERT_GE(values.size(), 4);
    EXPECT_EQ(values.mid(0, 4), (QStringList{u""_s, u"P-2"_s, u"1002"_s, u"5"_s}));
}

TEST_P(ContractTest, AValueBelongsToTheCurrentRecordAndField) {
    const QirDatabase database = pumps();
    setValue(database, 2, 2, 77);
    EXPECT_EQ(text(database, 1, 2), u"1001"_s);
    EXPECT_EQ(text(database, 2, 2), u"77"_s);
    EXPECT_TRUE(database.DtbHasChanged());
}

TEST_P(ContractTest, NumbersComeBackAsNumbersAndTextsAsTexts) {
    const QirDatabase database = pumps();
    EXPECT_EQ(value(database, 1, 1).typeId(), QMetaType::QString);
    EXPECT_TRUE(value(database, 1, 2).typeId() == QMetaType::Int ||
                value(database, 1, 2).typeId() == QMetaType::Double);
    EXPECT_EQ(value(database, 1, 2).toDouble(), 1001);
    EXPECT_EQ(value(database, 1, 3).toDouble(), 2.5);
    QVariant kept = u"before"_s;
    database.readQIRTableRecordSetByIndex(2, kept);
    EXPECT_EQ(kept.toDouble(), 1001);
}

TEST_P(ContractTest, WritingWhatIsThereChangesNothing) {
    const QirDatabase database = pumps();
    setValue(database, 1, 1, u"P-1"_s);
    setValue(database, 1, 2, 1001);
    setValue(database, 1, 2, 1001.0);
    setValue(database, 1, 2, u"1001"_s);
    setValue(database, 1, 3, u"2.5"_s);
    EXPECT_FALSE(database.DtbHasChanged());
    setValue(database, 1, 3, 2.25);
    EXPECT_TRUE(database.DtbHasChanged());
}

TEST_P(ContractTest, BoolIsZeroOrOne) {
    const QirDatabase database = made();
    ValueContract(database, 1)
        .expect({{0.0, u"0"_s},
                 {1.0, u"1"_s},
                 {-1.0, u"1"_s},
                 {0.25, u"1"_s},
                 {true, u"1"_s},
                 {false, u"0"_s},
                 {u"5 bar"_s, u"1"_s},
                 {u"bar"_s, u"0"_s}});
}

TEST_P(ContractTest, WholeNumbersAreTheNearestThatFits) {
    const QirDatabase database = made();
    ValueContract(database, 2)
        .expect({{0.0, u"0"_s}, {255.0, u"255"_s}, {256.0, u"255"_s}, {-1.0, u"0"_s}, {2.5, u"2"_s}, {3.5, u"4"_s}});
    database.RemoveTable(1);
    ValueContract(database, 3)
        .expect(
            {{32767.0, u"32767"_s}, {32767.5, u"32767"_s}, {-32769.0, u"-32768"_s}, {-2.5, u"-2"_s}, {-0.25, u"0"_s}});
    database.RemoveTable(1);
    ValueContract(database, 4)
        .expect({{2147483647.0, u"2147483647"_s},
                 {2147483648.0, u"2147483647"_s},
                 {-1e300, u"-2147483648"_s},
                 {0.5, u"0"_s},
                 {1.5, u"2"_s}});
}

TEST_P(ContractTest, ADoubleIsTheShortestDecimalThatReadsBack) {
    const QirDatabase database = made();
    ValueContract(database, 7)
        .expect({{0.1, u"0.1"_s},
                 {1.0 / 3, u"0.3333333333333333"_s},
                 {100000.0, u"100000"_s},
                 {-2.5, u"-2.5"_s},
                 {u"1,5"_s, u"1"_s},
                 {u" 1 2.5x"_s, u"12.5"_s},
                 {u"1d3"_s, u"1000"_s}});
}

TEST_P(ContractTest, DoublesComeBackBitForBit) {
    const QirDatabase database = made();
    addBareTable(database, u"Values"_s);
    database.AddField(u"Value"_s, 7);
    database.AddRecord();
    for (const double number : {0.1, 1e300, -1e-300, std::numeric_limits<double>::max(),
                                std::numeric_limits<double>::denorm_min(), 123456789.123456789}) {
        setValue(database, 1, 1, number);
        EXPECT_EQ(value(database, 1, 1).toDouble(), number);
        setValue(database, 1, 1, text(database, 1, 1));
        EXPECT_EQ(value(database, 1, 1).toDouble(), number);
    }
    setValue(database, 1, 1, -0.0);
    EXPECT_TRUE(std::signbit(value(database, 1, 1).toDouble()));
}

TEST_P(ContractTest, ADateIsAnyNumber) {
    const QirDatabase database = made();
    ValueContract(database, 8)
        .expect({{20240229.0, u"20240229"_s},
                 {u"20240229.235959"_s, u"20240229.235959"_s},
                 {u"2024"_s, u"2024"_s}, // typed so far
                 {0.0, u"0"_s}});
}

TEST_P(ContractTest, TextIsCutAtTheFieldsSizeInCodePoints) {
    const QirDatabase database = made();
    ValueContract(database, 10)
        .expect({{u"12345678"_s, u"12345678"_s},
                 {u"123456789"_s, u"12345678"_s},
                 {u"a\tb\nc"_s, u"a\tb\nc"_s},
                 {u"\U0001F600\U0001F600345678\U0001F600"_s, u"\U0001F600\U0001F600345678"_s},
                 {5.0, u"5"_s},
                 {0.25, u"0.25"_s},
                 {u""_s, u""_s}});
}

TEST_P(ContractTest, ALoneSurrogateBecomesTheReplacementCharacter) {
    const QirDatabase database = pumps();
    setValue(database, 1, 1, QString(u'a') + QChar(0xD83D) + u'b' + QChar(0xDE00));
    EXPECT_EQ(text(database, 1, 1), u"a\uFFFDb\uFFFD"_s);
}

} // namespace

} // namespace qir
