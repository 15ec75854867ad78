#include "qirtbase/model/Database.h"

#include "base/LeadingNumber.h"
#include "qirtbase/model/DatabaseError.h"
#include "qirtbase/model/ModelLimits.h"
#include "tests/qirtbase/model/DatabaseTestSupport.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <bit>
#include <limits>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;
using namespace qir;
using qir::test::plain;

namespace {

constexpr int boolCode = 1;
constexpr int byteCode = 2;
constexpr int intCode = 3;
constexpr int longCode = 4;
constexpr int doubleCode = 7;
constexpr int dateCode = 8;
constexpr int textCode = 10;
constexpr double huge = std::numeric_limits<double>::max();
constexpr double infinite = std::numeric_limits<double>::infinity();

/// A database of one table with one record and one field of each type, numbered from 0 in the order of their codes.
class OneRecord : public testing::Test {
protected:
    OneRecord() {
        database.addTable(u"All"_s);
        database.removeField(table(), 0);
        for (const int code : {boolCode, byteCode, intCode, longCode, doubleCode, dateCode, textCode})
            database.addField(table(), u"f%1"_s.arg(code), code, 10);
    }

    Table &table() { return database.table(0); }
    double stored(std::size_t field, double number) {
        database.setNumber(table(), field, 0, number);
        return std::get<double>(table().field(field).column.value(0));
    }
    QString storedText(const QString &text) {
        database.setText(table(), textField, 0, text);
        return std::get<QString>(table().field(textField).column.value(0));
    }
    QString textOf(std::size_t field) {
        QString text;
        table().field(field).column.readText(0, text);
        return text;
    }

    static constexpr std::size_t boolField = 0;
    static constexpr std::size_t byteField = 1;
    static constexpr std::size_t intField = 2;
    static constexpr std::size_t longField = 3;
    static constexpr std::size_t doubleField = 4;
    static constexpr std::size_t dateField = 5;
    static constexpr std::size_t textField = 6;

    Database database;
};

TEST_F(OneRecord, ABoolIsZeroForZeroAndOneForEveryOtherNumber) {
    EXPECT_EQ(stored(boolField, 0), 0);
    EXPECT_EQ(stored(boolField, -0.0), 0);
    EXPECT_EQ(stored(boolField, 1), 1);
    EXPECT_EQ(stored(boolField, -1), 1);
    EXPECT_EQ(stored(boolField, 0.25), 1);
    EXPECT_EQ(stored(boolField, infinite), 1);
}

TEST_F(OneRecord, WholeNumbersAreClampedToTheirRange) {
    EXPECT_EQ(stored(byteField, 256), 255);
    EXPECT_EQ(stored(byteField, -1), 0);
    EXPECT_EQ(stored(byteField, 1e300), 255);
    EXPECT_EQ(stored(intField, 32768), 32767);
    EXPECT_EQ(stored(intField, -40000), -32768);
    EXPECT_EQ(stored(longField, 2147483648.0), 2147483647);
    EXPECT_EQ(stored(longField, -infinite), -2147483648.0);
}

TEST_F(OneRecord, WholeNumbersRoundHalvesToEven) {
    for (const auto &[given, kept] :
         {std::pair{0.5, 0.0}, {1.5, 2.0}, {2.5, 2.0}, {254.5, 254.0}, {255.5, 255.0}, {2.4999, 2.0}, {2.5001, 3.0}})
        EXPECT_EQ(stored(byteField, given), kept) << given;
    EXPECT_EQ(stored(longField, -0.5), 0);
    EXPECT_EQ(stored(longField, -1.5), -2);
    EXPECT_EQ(stored(longField, 2147483646.5), 2147483646);
}

TEST_F(OneRecord, DoublesAndDatesKeepEveryBitAndStayFinite) {
    for (const std::size_t field : {doubleField, dateField}) {
        for (const double number : {0.1, -0.0, 5e-324, huge, 20240131.235959})
            EXPECT_EQ(std::bit_cast<std::uint64_t>(stored(field, number)), std::bit_cast<std::uint64_t>(number));
        EXPECT_EQ(stored(field, infinite), huge);
        EXPECT_EQ(stored(field, -infinite), -huge);
        EXPECT_EQ(stored(field, std::numeric_limits<double>::quiet_NaN()), 0);
    }
}

TEST_F(OneRecord, ANumberFieldTakesTheLeadingNumberOfAText) {
    database.setText(table(), longField, 0, u"12abc"_s);
    EXPECT_EQ(textOf(longField), u"12"_s);
    database.setText(table(), doubleField, 0, u"3,5"_s);
    EXPECT_EQ(textOf(doubleField), u"3"_s);
    database.setText(table(), dateField, 0, u""_s);
    EXPECT_EQ(textOf(dateField), u"0"_s);
    database.setText(table(), boolField, 0, u"true"_s);
    EXPECT_EQ(textOf(boolField), u"0"_s);
}

TEST_F(OneRecord, ATextFieldTakesTheTextOfANumber) {
    database.setNumber(table(), textField, 0, 2.5);
    EXPECT_EQ(textOf(textField), u"2.5"_s);
    database.setNumber(table(), textField, 0, 100000);
    EXPECT_EQ(textOf(textField), u"100000"_s);
    database.setNumber(table(), textField, 0, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(textOf(textField), u"0"_s);
}

TEST_F(OneRecord, ADateKeepsWhatIsNoDateYet) {
    database.setText(table(), dateField, 0, u"202413"_s);
    EXPECT_EQ(textOf(dateField), u"202413"_s);
    database.setText(table(), dateField, 0, u"20240131.093015"_s);
    EXPECT_EQ(textOf(dateField), u"20240131.093015"_s);
}

TEST_F(OneRecord, ATextIsCutAtTheFieldsSizeInCodePoints) {
    EXPECT_EQ(storedText(u"0123456789x"_s), u"0123456789"_s);
    EXPECT_EQ(storedText(u"😀"_s.repeated(11)), u"😀"_s.repeated(10));
    EXPECT_EQ(storedText(QString(QChar(0xD800))), u"\uFFFD"_s);
    EXPECT_EQ(storedText(u"  kept "_s), u"  kept "_s);
    EXPECT_EQ(storedText(u"a"_s + QChar(0) + u"\r\n"_s), u"a"_s + QChar(0) + u"\r\n"_s);
}

TEST_F(OneRecord, WritingWhatIsAlreadyThereChangesNothing) {
    EXPECT_FALSE(database.setNumber(table(), longField, 0, 0));
    EXPECT_TRUE(database.setNumber(table(), longField, 0, 7));
    EXPECT_FALSE(database.setNumber(table(), longField, 0, 7.25));
    EXPECT_FALSE(database.setText(table(), longField, 0, u"7 "_s));
    EXPECT_TRUE(database.setText(table(), textField, 0, u"0123456789"_s));
    EXPECT_FALSE(database.setText(table(), textField, 0, u"0123456789cut"_s));
    EXPECT_TRUE(database.setNumber(table(), doubleField, 0, -0.0));
    EXPECT_FALSE(database.setNumber(table(), doubleField, 0, -0.0));
}

TEST_F(OneRecord, ANewRecordHoldsZerosAndEmptyTexts) {
    database.setText(table(), textField, 0, u"x"_s);
    database.addRecord(table());
    ASSERT_EQ(table().recordCount(), 2U);
    for (std::size_t field = 0; field < textField; ++field)
        EXPECT_EQ(table().field(field).column.value(1), CellValue(0.0));
    EXPECT_EQ(table().field(textField).column.value(1), CellValue(u""_s));
    EXPECT_EQ(table().field(textField).column.value(0), CellValue(u"x"_s));
}

TEST_F(OneRecord, ANewFieldHoldsZerosOrEmptyTexts) {
    database.addRecord(table());
    database.addField(table(), u"new"_s, dateCode, 0);
    EXPECT_EQ(table().fields().back().column.size(), 2U);
    EXPECT_EQ(table().fields().back().column.value(1), CellValue(0.0));
}

TEST_F(OneRecord, ResizingToLessCutsTheTexts) {
    storedText(u"abc😀def"_s);
    EXPECT_TRUE(database.resizeField(table(), textField, 4));
    EXPECT_EQ(textOf(textField), u"abc😀"_s);
    EXPECT_TRUE(database.resizeField(table(), textField, 20));
    EXPECT_EQ(textOf(textField), u"abc😀"_s);
    EXPECT_FALSE(database.resizeField(table(), textField, 20));
    EXPECT_TRUE(database.resizeField(table(), textField, 0));
    EXPECT_EQ(textOf(textField), u""_s);
}

TEST_F(OneRecord, SizesAreRoundedAndKeptWithinTheirRange) {
    for (const auto &[given, kept] :
         {std::pair{2.5, 2}, {3.5, 4}, {-7.0, 0}, {65535.4, 65535}, {1e9, 65535}, {-infinite, 0}, {infinite, 65535}}) {
        database.resizeField(table(), textField, given);
        EXPECT_EQ(table().field(textField).size, kept) << given;
        database.addField(table(), u"sized"_s, textCode, given);
        EXPECT_EQ(table().fields().back().size, kept) << given;
        database.removeField(table(), table().fieldCount() - 1);
    }
    database.resizeField(table(), textField, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(table().field(textField).size, 0);
}

TEST_F(OneRecord, ASizeGivenForAnotherTypeIsIgnored) {
    EXPECT_EQ(table().field(longField).size, 0);
    EXPECT_FALSE(database.resizeField(table(), longField, 5));
    EXPECT_EQ(table().field(longField).size, 0);
}

TEST_F(OneRecord, AnUnknownTypeCodeIsRefused) {
    const auto before = plain(database);
    for (const int code : {0, 5, 6, 9, 11, -1, 266})
        EXPECT_THROW(database.addField(table(), u"new"_s, code, 5), DatabaseError) << code;
    EXPECT_EQ(plain(database), before);
}

TEST_F(OneRecord, ATableMayHaveNeitherFieldNorRecord) {
    while (table().fieldCount() != 0)
        database.removeField(table(), 0);
    EXPECT_EQ(table().recordCount(), 1U);
    database.removeRecord(table(), 0);
    EXPECT_EQ(table().recordCount(), 0U);
    database.addRecord(table());
    database.addField(table(), u"first"_s, longCode, 0);
    EXPECT_EQ(table().field(0).column.size(), 1U);
}

TEST_F(OneRecord, FieldNamesAreUniqueByKey) {
    const auto before = plain(database);
    EXPECT_THROW(database.addField(table(), u" F10 !"_s, longCode, 0), DatabaseError);
    EXPECT_THROW(database.renameField(table(), longField, u"F10"_s), DatabaseError);
    EXPECT_THROW(database.addField(table(), u"  "_s, longCode, 0), DatabaseError);
    EXPECT_THROW(database.renameField(table(), longField, u""_s), DatabaseError);
    EXPECT_EQ(plain(database), before);
    EXPECT_TRUE(database.renameField(table(), textField, u"F10 "_s)); // its own key
    EXPECT_FALSE(database.renameField(table(), textField, u"F10 "_s));
    EXPECT_EQ(table().field(textField).name.text(), u"F10 "_s);
}

TEST(DatabaseTables, ANewTableHasOneFieldAndOneRecord) {
    Database database;
    database.addTable(u"T"_s);
    EXPECT_EQ(database.table(0).fieldCount(), 1U);
    EXPECT_EQ(database.table(0).recordCount(), 1U);
}

TEST(DatabaseTables, NamesAreKeptAsGivenAndFoundByKey) {
    Database database;
    database.addTable(u" Pumps ?"_s);
    EXPECT_EQ(database.table(0).name().text, u" Pumps ?"_s);
    for (const QString &name : {u"pumps"_s, u"PUMPS"_s, u"Pumps !"_s, u" Pumps ?"_s})
        EXPECT_EQ(database.findTable(name), 0U) << name.toStdString();
    EXPECT_EQ(database.findTable(u"pump"_s), std::nullopt);
}

TEST(DatabaseTables, ATakenOrEmptyNameIsRefusedAndChangesNothing) {
    Database database;
    database.addTable(u"Pumps"_s);
    database.addTable(u"Users"_s);
    const auto before = plain(database);
    for (const QString &name : {u"PUMPS"_s, u" pumps "_s, u"Pumps !"_s, u""_s, u"  "_s}) {
        EXPECT_THROW(database.addTable(name), DatabaseError) << name.toStdString();
        EXPECT_THROW(database.renameTable(1, name), DatabaseError) << name.toStdString();
    }
    EXPECT_EQ(plain(database), before);
    EXPECT_TRUE(database.renameTable(0, u"PUMPS"_s)); // its own key
    EXPECT_EQ(database.table(0).name().text, u"PUMPS"_s);
}

TEST(DatabaseTables, ALoneSurrogateInANameIsReplacedAndFoundAgain) {
    Database database;
    const QString name = u"a"_s + QChar(0xD800);
    database.addTable(name);
    EXPECT_EQ(database.table(0).name().text, u"a\uFFFD"_s);
    EXPECT_EQ(database.findTable(name), 0U);
    EXPECT_THROW(database.addTable(name), DatabaseError);
}

TEST(DatabaseLimits, ANameHasAtMost255Characters) {
    Database database;
    database.addTable(u"😀"_s.repeated(255));
    const auto before = plain(database);
    EXPECT_THROW(database.addTable(u"x"_s.repeated(256)), DatabaseError);
    EXPECT_THROW(database.renameTable(0, u"x"_s.repeated(256)), DatabaseError);
    EXPECT_THROW(database.addField(database.table(0), u"x"_s.repeated(256), longCode, 0), DatabaseError);
    EXPECT_THROW(database.renameField(database.table(0), 0, u"x"_s.repeated(256)), DatabaseError);
    EXPECT_EQ(plain(database), before);
}

TEST(DatabaseLimits, ADatabaseHasAtMost4096Tables) {
    Database database;
    for (std::size_t i = 0; i < limits::tables; ++i)
        database.append(std::make_unique<Table>(Name::checked(u"t%1"_s.arg(i))));
    EXPECT_THROW(database.addTable(u"one more"_s), DatabaseError);
    EXPECT_EQ(database.tableCount(), limits::tables);
    database.removeTable(0);
    EXPECT_NO_THROW(database.addTable(u"one more"_s));
}

TEST(DatabaseLimits, ATableHasAtMost1024Fields) {
    Database database;
    database.addTable(u"T"_s);
    for (std::size_t i = 1; i < limits::fields; ++i)
        database.addField(database.table(0), u"f%1"_s.arg(i), boolCode, 0);
    EXPECT_THROW(database.addField(database.table(0), u"one more"_s, boolCode, 0), DatabaseError);
    EXPECT_EQ(database.table(0).fieldCount(), limits::fields);
}

TEST(DatabaseLimits, ATableHasAtMost2To24Records) {
    Database database;
    database.append(std::make_unique<Table>(Name::checked(u"T"_s), std::vector<Field>(), limits::records - 1));
    database.addRecord(database.table(0));
    EXPECT_THROW(database.addRecord(database.table(0)), DatabaseError);
    EXPECT_EQ(database.table(0).recordCount(), limits::records);
}

RC_GTEST_PROP(DatabaseProperty, TheTextOfAnyValueReadsBackAsTheSameValue, ()) {
    Database database;
    database.addTable(u"T"_s);
    Table &table = database.table(0);
    const int code = *rc::gen::element(boolCode, byteCode, intCode, longCode, doubleCode, dateCode, textCode);
    database.addField(table, u"f"_s, code, 30);
    if (*rc::gen::arbitrary<bool>())
        database.setNumber(table, 1, 0, test::randomNumber());
    else
        database.setText(table, 1, 0, test::randomText());
    QString text;
    table.field(1).column.readText(0, text);
    // As a sort writes it: the text itself into a text field, its leading number into any other.
    if (code == textCode)
        RC_ASSERT(!database.setText(table, 1, 0, text));
    else
        RC_ASSERT(!database.setNumber(table, 1, 0, leadingNumber(text)));
}

RC_GTEST_PROP(DatabaseProperty, EveryColumnHoldsAFittingValueForEachRecord, ()) {
    const Database database = test::randomDatabase();
    for (std::size_t t = 0; t < database.tableCount(); ++t) {
        for (const Field &field : database.table(t).fields()) {
            RC_ASSERT(field.column.size() == database.table(t).recordCount());
            for (std::size_t record = 0; record < field.column.size(); ++record) {
                const CellValue value = field.column.value(record);
                RC_ASSERT(std::holds_alternative<QString>(value) == field.column.isText());
                if (const auto *number = std::get_if<double>(&value))
                    RC_ASSERT(fittingNumber(field.type(), *number) == *number);
            }
        }
    }
}

} // namespace
