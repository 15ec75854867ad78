#include "cli/tables/CsvTable.h"
#include "cli/tables/CsvText.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

std::string problemOf(const QByteArray &csv) {
    const Result<CsvTable> table = CsvTable::read(csv);
    return table ? "none" : table.error().text.toStdString();
}

QString written(const QString &value) {
    QByteArray out;
    appendCsvValue(out, value);
    return QString::fromUtf8(out);
}

TEST(CsvTableTest, ReadsHeaderAndRecords) {
    const Result<CsvTable> table = CsvTable::read("Name,Speed\nP-1,1500\nP-2,-3\n");
    ASSERT_TRUE(table) << table.error().text.toStdString();
    EXPECT_EQ(table->header(), (QStringList{u"Name"_s, u"Speed"_s}));
    ASSERT_EQ(table->records(), 2U);
    EXPECT_EQ(table->value(0, 0), u"P-1"_s);
    EXPECT_EQ(table->value(0, 1), u"1500"_s);
    EXPECT_EQ(table->value(1, 1), u"-3"_s);
}

TEST(CsvTableTest, AnyLineEndWillDoAndTheLastMayBeMissing) {
    for (const QByteArray &csv : {QByteArray("A\r\nx\r\ny"), QByteArray("A\nx\ny\n"), QByteArray("A\rx\ry\r")}) {
        const Result<CsvTable> table = CsvTable::read(csv);
        ASSERT_TRUE(table);
        EXPECT_EQ(table->records(), 2U);
        EXPECT_EQ(table->value(1, 0), u"y"_s);
    }
}

TEST(CsvTableTest, QuotedValuesMayHoldSeparatorsQuotesAndLineEnds) {
    const Result<CsvTable> table = CsvTable::read("A,B\n\"a \"\"q\"\", b\",\"one\r\ntwo\"\n");
    ASSERT_TRUE(table);
    EXPECT_EQ(table->value(0, 0), u"a \"q\", b"_s);
    EXPECT_EQ(table->value(0, 1), u"one\r\ntwo"_s);
}

TEST(CsvTableTest, BlanksBelongToTheValues) {
    const Result<CsvTable> table = CsvTable::read("A,B\n  a ,\t\n");
    ASSERT_TRUE(table);
    EXPECT_EQ(table->value(0, 0), u"  a "_s);
    EXPECT_EQ(table->value(0, 1), u"\t"_s);
}

TEST(CsvTableTest, AnEmptyLineOfOneColumnIsARecord) {
    for (const QByteArray &csv : {QByteArray("A\n\n\"\"\n\nx\n\n"), QByteArray("A\r\n\r\n\"\"\r\n\r\nx\r\n\r\n"),
                                  QByteArray("A\r\r\"\"\r\rx\r\r"), QByteArray("\n\r\nA\n\r\n\"\"\r\n\nx\r\n\n")}) {
        const Result<CsvTable> table = CsvTable::read(csv);
        ASSERT_TRUE(table) << csv.toStdString();
        ASSERT_EQ(table->records(), 5U) << csv.toStdString();
        for (std::size_t record = 0; record < 5; ++record)
            EXPECT_EQ(table->value(record, 0), record == 3 ? u"x"_s : u""_s) << csv.toStdString();
    }
}

TEST(CsvTableTest, AnEmptyLineOfMoreColumnsIsNoRecord) {
    for (const QByteArray &csv : {QByteArray("\nA,B\n\nx,y\n\n\n,\n"), QByteArray("A,B\r\n\r\nx,y\r\n,\r\n\r\n")}) {
        const Result<CsvTable> table = CsvTable::read(csv);
        ASSERT_TRUE(table);
        ASSERT_EQ(table->records(), 2U);
        EXPECT_EQ(table->value(0, 1), u"y"_s);
        EXPECT_EQ(table->value(1, 0), u""_s);
    }
}

TEST(CsvTableTest, AByteOrderMarkIsNoPartOfTheFirstName) {
    const Result<CsvTable> table = CsvTable::read("\xEF\xBB\xBFName\nx\n");
    ASSERT_TRUE(table);
    EXPECT_EQ(table->header(), QStringList{u"Name"_s});
}

TEST(CsvTableTest, AnyOtherByteOrderMarkIsACharacterLikeAnother) {
    QByteArray csv;
    appendCsvValue(csv, u"\uFEFFA"_s);
    csv += ",\xEF\xBB\xBF\n\xEF\xBB\xBFx,\xEF\xBB\xBF\xEF\xBB\xBF\n";
    const Result<CsvTable> table = CsvTable::read(csv);
    ASSERT_TRUE(table);
    EXPECT_EQ(table->header(), (QStringList{u"\uFEFFA"_s, u"\uFEFF"_s}));
    EXPECT_EQ(table->value(0, 0), u"\uFEFFx"_s);
    EXPECT_EQ(table->value(0, 1), u"\uFEFF\uFEFF"_s);
}

TEST(CsvTableTest, SaysWhatIsWrongAndWhere) {
    EXPECT_EQ(problemOf(""), "it has no header line");
    EXPECT_EQ(problemOf("A,B\n1,2\n1\n"), "record 2: it has 1 values, the header has 2");
    EXPECT_EQ(problemOf("A\n1,2\n"), "record 1: it has 2 values, the header has 1");
    EXPECT_EQ(problemOf("A\n\xFF\xFE\n"), "record 1: this is no UTF-8 text");
    EXPECT_EQ(problemOf("\xC3\n"), "the header line: this is no UTF-8 text");
}

TEST(CsvTableTest, SaysTheLineAndColumnOfAQuoteThatIsOutOfPlace) {
    const std::string behind = "behind a closing quote comes neither a separator nor a line end";
    EXPECT_EQ(problemOf("A\n\"x\"y\n"), "line 2, column 4: " + behind);
    EXPECT_EQ(problemOf("A,B\r\n1,\"\xC3\xA9\" \r\n"), "line 2, column 6: " + behind);
    EXPECT_EQ(problemOf("A,B\n1,\"two\nlines\"x\n"), "line 3, column 7: " + behind);
    EXPECT_EQ(problemOf("A,B\n1,\"x\n2,3\n"), "line 2, column 3: a quote that is not closed");
    EXPECT_EQ(problemOf("\"A,B\n1,2\n"), "line 1, column 1: a quote that is not closed");
}

TEST(CsvTableTest, AQuoteInsideAnUnquotedValueIsTakenAsItStands) {
    const Result<CsvTable> table = CsvTable::read("A,B\n5\" pipe,x\"\"\n a,\" b\"\n");
    ASSERT_TRUE(table) << table.error().text.toStdString();
    EXPECT_EQ(table->value(0, 0), u"5\" pipe"_s);
    EXPECT_EQ(table->value(0, 1), u"x\"\""_s);
    EXPECT_EQ(table->value(1, 1), u" b"_s);
}

TEST(CsvTableTest, AnotherDelimiterMustBeSaid) {
    const auto refusal = [](const std::string &what) {
        return "its header has " + what + " and no comma: say by --delimiter what separates its values";
    };
    EXPECT_EQ(problemOf("A;B\n1;2\n"), refusal("\";\""));
    EXPECT_EQ(problemOf("\n\"A\"\tB\n1\t2\n"), refusal("tabs"));
    EXPECT_EQ(problemOf("A\tB;C\n"), refusal("tabs"));
    EXPECT_EQ(problemOf("\"A;B\"\n1;2\n"), "none");
    EXPECT_EQ(problemOf("A;B,C\n1;2,3\n"), "none");
    EXPECT_EQ(problemOf("A\n1;2\n"), "none");
    const Result<CsvTable> table = CsvTable::read("A;B\n1,5;\"a;b\"\n", ';');
    ASSERT_TRUE(table) << table.error().text.toStdString();
    EXPECT_EQ(table->header(), (QStringList{u"A"_s, u"B"_s}));
    EXPECT_EQ(table->value(0, 0), u"1,5"_s);
    EXPECT_EQ(table->value(0, 1), u"a;b"_s);
    const Result<CsvTable> alone = CsvTable::read("A;B\n1\n", ',');
    ASSERT_TRUE(alone) << alone.error().text.toStdString();
    EXPECT_EQ(alone->header(), QStringList{u"A;B"_s});
}

TEST(CsvTextTest, QuotesOnlyWhatWouldBeReadAsSomethingElse) {
    EXPECT_EQ(written(u"P-1"_s), u"P-1"_s);
    EXPECT_EQ(written(u"a b"_s), u"a b"_s);
    EXPECT_EQ(written(u""_s), u"\"\""_s);
    EXPECT_EQ(written(u" a"_s), u"\" a\""_s);
    EXPECT_EQ(written(u"a,b"_s), u"\"a,b\""_s);
    EXPECT_EQ(written(u"a;b"_s), u"\"a;b\""_s); // or it would look like two in a header
    EXPECT_EQ(written(u"5\" pipe"_s), u"\"5\"\" pipe\""_s);
    EXPECT_EQ(written(u"a\nb"_s), u"\"a\nb\""_s);
}

RC_GTEST_PROP(CsvProperty, AnyTextIsReadBackAsItWasWritten, (const std::vector<std::vector<std::string>> &letters)) {
    // Values of the characters that matter and some others.
    constexpr QStringView alphabet = u",\"\n\r \ta\u00e9\u20ac";
    QByteArray csv("A,B\n");
    std::vector<QString> values;
    for (const auto &record : letters) {
        for (std::size_t column = 0; column < 2; ++column) {
            QString value;
            if (column < record.size())
                for (const char letter : record[column])
                    value += alphabet[static_cast<unsigned char>(letter) % alphabet.size()];
            values.push_back(value);
            if (column > 0)
                csv += ',';
            appendCsvValue(csv, value);
        }
        csv += '\n';
    }
    const Result<CsvTable> table = CsvTable::read(csv);
    RC_ASSERT(table.has_value());
    RC_ASSERT(table->records() == letters.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        RC_ASSERT(table->value(i / 2, i % 2) == values[i]);
}

} // namespace

} // namespace qir
