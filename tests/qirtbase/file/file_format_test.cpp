#include "base/Collation.h"
#include "qirtbase/model/BodyCodec.h"
#include "tests/qirtbase/file/StorageSupport.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

/// The bytes of the n-th example in the format's description.
QByteArray example(int number) {
    const QByteArray page = contentOf(QStringLiteral(QIR_SOURCE_FOLDER "/docs/file-format.md"));
    const QStringList parts = QString::fromUtf8(page).split(u"```hex\n"_s);
    if (parts.size() <= number)
        return {};
    QByteArray hex;
    static const QRegularExpression line(u"^([0-9a-f]{3})  ((?:[0-9a-f]{2} ?){1,16})"_s);
    for (const QString &text : parts[number].section(u"```"_s, 0, 0).split(u'\n', Qt::SkipEmptyParts)) {
        const auto match = line.match(text);
        EXPECT_TRUE(match.hasMatch()) << text.toStdString();
        EXPECT_EQ(match.captured(1).toInt(nullptr, 16) * 2, hex.size()) << text.toStdString();
        hex += match.captured(2).remove(u' ').toLatin1();
    }
    return QByteArray::fromHex(hex);
}

Database exampleDatabase() {
    Database database;
    database.addTable(u"Pump"_s);
    Table &table = database.table(0);
    database.removeField(table, 0);
    database.addField(table, u"On"_s, static_cast<int>(ColumnType::Bool), 0);
    database.addField(table, u"Speed"_s, static_cast<int>(ColumnType::Long), 0);
    database.addField(table, u"Name"_s, static_cast<int>(ColumnType::Text), 20);
    database.addRecord(table);
    database.setNumber(table, 0, 0, 1);
    database.setNumber(table, 1, 0, 1450);
    database.setText(table, 2, 0, u"Main"_s);
    database.setNumber(table, 1, 1, -2);
    database.setText(table, 2, 1, u"Zulauf \u00b0C"_s);
    return database;
}

TEST(FileFormat, TheOpenExampleOnItsPageIsWhatIsWritten) {
    EXPECT_EQ(containerBytes(encodeBody(exampleDatabase())).toHex(' '), example(1).toHex(' '));
    EXPECT_EQ(example(1).size(), 312);
}

TEST(FileFormat, TheProtectedExampleOnItsPageIsWhatIsWritten) {
    EXPECT_EQ(containerBytes(encodeBody(exampleDatabase()), u"p\u00f3mp-7"_s).toHex(' '), example(2).toHex(' '));
}

TEST(FileFormat, BothExamplesAreRead) {
    const auto open = readBytes(example(1));
    const auto locked = readBytes(example(2), u"p\u00f3mp-7"_s);
    ASSERT_TRUE(open && locked);
    EXPECT_EQ(open->body, locked->body);
    const auto database = decodeBody(open->body);
    ASSERT_TRUE(database);
    EXPECT_EQ(encodeBody(*database), encodeBody(exampleDatabase()));
}

TEST(FileFormat, TheKeysOfNamesOnItsPageAreTheOnesMade) {
    const QString page = QString::fromUtf8(contentOf(QStringLiteral(QIR_SOURCE_FOLDER "/docs/file-format.md")));
    const QString block = page.section(u"```keys\n"_s, 1).section(u"```"_s, 0, 0);
    int keys = 0;
    for (const QString &line : block.split(u'\n', Qt::SkipEmptyParts)) {
        const QJsonArray pair = QJsonDocument::fromJson(line.toUtf8()).array();
        ASSERT_EQ(pair.size(), 2) << line.toStdString();
        EXPECT_EQ(collationKey(pair.at(0).toString()), pair.at(1).toString()) << line.toStdString();
        ++keys;
    }
    EXPECT_GE(keys, 25);
}

TEST(FileFormat, TheVersionOfUnicodeOnItsPageIsTheOneUsed) {
    const QString page = QString::fromUtf8(contentOf(QStringLiteral(QIR_SOURCE_FOLDER "/docs/file-format.md")));
    EXPECT_TRUE(page.contains(u"by Unicode 14.0:"_s));
    EXPECT_EQ(QChar::currentUnicodeVersion(), QChar::Unicode_14_0);
}

} // namespace
} // namespace qir
