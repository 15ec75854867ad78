#include "base/columns/ColumnBuilder.h"
#include "cli/FileError.h"
#include "cli/WholeFile.h"
#include "cli/tables/JsonText.h"
#include "cli/tables/TextTable.h"
#include "tests/support/CountedMemory.h"
#include "tests/support/FailingFileOps.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

const TableInfo table{
    u"Öl \"1\""_s,
    {{u"Name"_s, FieldType::Text, 20}, {u"Speed"_s, FieldType::Long, 0}, {u"p"_s, FieldType::Double, 0}},
    1};

TEST(JsonTextTest, ATableIsALineWithItsFieldsAndTheNumberOfRecords) {
    QByteArray out;
    appendJsonTable(out, table);
    EXPECT_EQ(out, "{\"table\": \"Öl \\\"1\\\"\", \"fields\": [{\"name\": \"Name\", \"type\": \"text\", \"size\": 20}, "
                   "{\"name\": \"Speed\", \"type\": \"long\", \"size\": 0}, "
                   "{\"name\": \"p\", \"type\": \"double\", \"size\": 0}], \"records\": 1}\n");
}

/// A record of the table with this name.
Portion recordOf(const QString &name) {
    ColumnBuilder names(ColumnType::Text);
    ColumnBuilder speeds(ColumnType::Long);
    ColumnBuilder heads(ColumnType::Double);
    names.add(QStringView(name));
    speeds.add(12);
    heads.add(1e20);
    return {1, 1, {names.take(), speeds.take(), heads.take()}};
}

TEST(JsonTextTest, NumbersAreNumbersAndTextsAreStrings) {
    QByteArray out;
    appendJsonRecords(out, recordOf(u"12"_s), 0, 1);
    EXPECT_EQ(out, "[\"12\", 12, 1e+20]\n");
}

TEST(JsonTextTest, EveryCharacterOfATextComesBack) {
    QString text;
    for (char16_t unit = 0; unit < 0x180; ++unit)
        text += QChar(unit);
    text += u"\u2028\U0001F600"_s;
    QByteArray out;
    appendJsonRecords(out, recordOf(text), 0, 1);
    EXPECT_EQ(out.count('\n'), 1);
    EXPECT_EQ(QJsonDocument::fromJson(out).array().at(0).toString(), text);
}

TEST(JsonTextTest, NoTerminalActsOnAText) {
    QByteArray out;
    appendJsonString(out, u"\x1b[31m\x7f\u009b\u0080\u00a0é"_s);
    EXPECT_EQ(out, "\"\\u001b[31m\\u007f\\u009b\\u0080\u00a0é\"");
}

QByteArray textOf(TextTable &columns, const QList<QStringList> &lines) {
    for (const QStringList &line : lines)
        columns.measure(line);
    QByteArray out;
    columns.appendHeading(out);
    for (const QStringList &line : lines)
        columns.appendLine(out, line);
    return out;
}

TEST(TextTableTest, ColumnsAreAsWideAsTheirWidestAndNumbersStandAtTheRight) {
    TextTable lines;
    lines.addColumn(u"Name"_s, TextTable::Align::Left);
    lines.addColumn(u"Speed"_s, TextTable::Align::Right);
    lines.addColumn(u"Note"_s, TextTable::Align::Left);
    EXPECT_EQ(textOf(lines, {{u"Booster \U0001F600"_s, u"5"_s, u""_s}, {u"P"_s, u"150000"_s, u"x"_s}}),
              QByteArray("Name        Speed  Note\n"
                         "Booster \xF0\x9F\x98\x80       5\n"
                         "P          150000  x\n"));
}

std::size_t allocationsOfHeadings(int columns) {
    const CountedMemory memory;
    TextTable lines;
    for (int column = 0; column < columns; ++column)
        lines.addColumn(u"Field [long]"_s, TextTable::Align::Right);
    return memory.allocations();
}

TEST(TextTableTest, EightTimesAsManyColumnsCostAtMostNineTimesAsMuch) {
    if (!CountedMemory::counts())
        GTEST_SKIP() << "nothing is counted";
    EXPECT_LT(allocationsOfHeadings(1024), 9 * allocationsOfHeadings(128));
}

TEST(TextTableTest, AValueThatIsVeryWideMovesItsOwnLineAlone) {
    TextTable lines;
    lines.addColumn(u"Name"_s, TextTable::Align::Left);
    lines.addColumn(u"N"_s, TextTable::Align::Right);
    const QString widest(TextTable::widest, u'w');
    const QString wider(65535, u'w');
    EXPECT_EQ(textOf(lines, {{wider, u"1"_s}, {u"short"_s, u"2"_s}}),
              "Name   N\n" + wider.toLatin1() + "  1\nshort  2\n");
    EXPECT_EQ(textOf(lines, {{widest, u"1"_s}, {u"short"_s, u"2"_s}}), "Name" + QByteArray(56, ' ') + "  N\n" +
                                                                           widest.toLatin1() + "  1\nshort" +
                                                                           QByteArray(55, ' ') + "  2\n");
}

TEST(TextTableTest, NothingThatATerminalActsOnIsPrinted) {
    EXPECT_EQ(printableText(u"a\nb\tc\r\u001b[31m\u009b\u0007é"_s), u"a\\nb\\tc\\r\\u001b[31m\\u009b\\u0007é"_s);
}

// --- whole files ---

struct WholeFileTest : testing::Test {
    QTemporaryDir folder;
    QString file = folder.filePath(u"OUT.CSV"_s);

    static QByteArray bytesOf(const QString &name) {
        QFile read(name);
        EXPECT_TRUE(read.open(QIODevice::ReadOnly));
        return read.readAll();
    }
    QStringList entries() const {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
};

TEST_F(WholeFileTest, MakesANewFileOfTheBytes) {
    writeWholeFile(file, "one");
    EXPECT_EQ(bytesOf(file), "one");
    EXPECT_EQ(entries(), QStringList{u"OUT.CSV"_s});
}

TEST_F(WholeFileTest, ReplacesAFileAndKeepsItsMode) {
    writeWholeFile(file, "a longer one");
    QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    writeWholeFile(file, "two");
    EXPECT_EQ(bytesOf(file), "two");
    EXPECT_EQ(QFile::permissions(file) & (QFileDevice::ReadGroup | QFileDevice::ReadOther), QFileDevice::Permissions());
}

TEST_F(WholeFileTest, FollowsALinkToTheFileThatIsMeant) {
    writeWholeFile(file, "one");
    const QString link = folder.filePath(u"LINK.CSV"_s);
    ASSERT_TRUE(QFile::link(u"OUT.CSV"_s, link));
    writeWholeFile(link, "two");
    EXPECT_EQ(bytesOf(file), "two");
    EXPECT_TRUE(QFileInfo(link).isSymLink());
}

TEST_F(WholeFileTest, WritesToADeviceAsItStands) {
    EXPECT_NO_THROW(writeWholeFile(u"/dev/null"_s, "gone"));
}

TEST_F(WholeFileTest, SaysWhyItCannot) {
    EXPECT_THAT([] { writeWholeFile(u"/dev/full"_s, "x"); },
                testing::ThrowsMessage<FileError>("/dev/full: the disk is full"));
    EXPECT_THAT([&] { writeWholeFile(folder.filePath(u"MISSING/OUT.CSV"_s), "x"); },
                testing::ThrowsMessage<FileError>(testing::EndsWith("no such file or folder")));
    EXPECT_THAT([&] { writeWholeFile(folder.path(), "x"); },
                testing::ThrowsMessage<FileError>(testing::EndsWith("it is a folder")));
}

TEST_F(WholeFileTest, AFaultAtAnyCallLeavesTheOldFileOrTheNewOneAndNothingBeside) {
    int runs = 0;
    for (int at = 0;; ++at, ++runs) {
        QFile::remove(file);
        writeWholeFile(file, "old");
        FailingFileOps ops(Fault{at, Fault::Kind::Undone, ENOSPC, false});
        bool failed = false;
        try {
            writeWholeFile(file, "brand new", {}, ops);
        } catch (const FileError &error) {
            failed = true;
        }
        const QByteArray there = bytesOf(file);
        EXPECT_TRUE(there == "brand new" || (failed && there == "old")) << "fault at call " << at;
        EXPECT_EQ(entries(), QStringList{u"OUT.CSV"_s}) << "fault at call " << at;
        if (!ops.faultMet())
            break;
    }
    EXPECT_GE(runs, 8);
}

} // namespace

} // namespace qir
