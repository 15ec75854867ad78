#include "qirtbase/journal/JournalCodec.h"
#include "tests/component/DatabaseTestSupport.h"
#include "tests/component/JournalSupport.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <utime.h>

#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

const QString secret = u"secret"_s;

QString textIn(const Table &table, std::size_t field, std::size_t record) {
    QString text;
    table.field(field).column.readText(record, text);
    return text;
}

/// A saved database of one table: On (bool), Speed (long), Name (text) and three records.
QByteArray pumps() {
    Database database;
    database.addTable(u"Pump"_s);
    Table &table = database.table(0);
    database.removeField(table, 0);
    database.addField(table, u"On"_s, int(ColumnType::Bool), 0);
    database.addField(table, u"Speed"_s, int(ColumnType::Long), 0);
    database.addField(table, u"Name"_s, int(ColumnType::Text), 200);
    database.addRecord(table);
    database.addRecord(table);
    return encodeBody(database);
}

class JournalTest : public testing::TestWithParam<bool> {
protected:
    JournalTest() {
        if (GetParam())
            bench.keys() = keysOf(secret);
        bench.setSaved(pumps());
        bench.open();
    }
    Table &table() { return bench.database().table(0); }
    void setName(std::size_t record, const QString &name) { bench.database().setText(table(), 2, record, name); }
    QString nameAt(std::size_t record) { return textIn(table(), 2, record); }
    /// Crashes and opens again; gives what was there before.
    QByteArray crashAndOpen() {
        const QByteArray before = bench.body();
        bench.crash();
        bench.open();
        return before;
    }

    void appendRecords(const std::vector<QByteArray> &payloads);

    JournalBench bench;
};

INSTANTIATE_TEST_SUITE_P(Of, JournalTest, testing::Bool(),
                         [](const auto &form) { return form.param ? "AProtectedFile" : "AnOpenFile"; });

// ---- what comes back

TEST_P(JournalTest, EveryKindOfChangeIsThereAgainAfterACrash) {
    Database &database = bench.database();
    setName(0, u"Main \u00b0C \U0001F600"_s);
    database.setNumber(table(), 1, 1, -2147483648.0);
    database.setNumber(table(), 0, 2, 1);
    database.addRecord(table());
    database.removeRecord(table(), 1);
    database.addField(table(), u"When"_s, int(ColumnType::Date), 0);
    database.setNumber(table(), 3, 0, 20240131.235959);
    database.addField(table(), u"Short"_s, int(ColumnType::Text), 3);
    database.setText(table(), 4, 0, u"abcdef"_s);
    database.resizeField(table(), 4, 2);
    database.renameField(table(), 4, u"Shorter"_s);
    database.removeField(table(), 0);
    database.addTable(u"Second"_s);
    database.addTable(u"Third"_s);
    database.renameTable(1, u"Renamed"_s);
    database.removeTable(2);
    const QByteArray before = crashAndOpen();
    EXPECT_EQ(bench.body(), before);
    EXPECT_TRUE(bench.recovered());
    EXPECT_EQ(bench.notices().size(), 1);
    EXPECT_TRUE(bench.notices().value(0).contains(u"there again"_s));
}

TEST_P(JournalTest, EveryCharacterOfATextIsThereAgain) {
    for (const QString &text :
         {u"\ufeffmark"_s, QString(QChar(0)), u"\u00e9\u20ac\U0001F600"_s, u"a\r\n\tb"_s, QString(200, u'\u20ac')}) {
        setName(0, text);
        crashAndOpen();
        EXPECT_EQ(nameAt(0), text);
    }
}

TEST_P(JournalTest, WithoutAChangeThereIsNoJournal) {
    setName(0, QString());
    bench.database().beginGroup();
    bench.database().endGroup();
    EXPECT_EQ(bench.journals(), QStringList());
    crashAndOpen();
    EXPECT_FALSE(bench.recovered());
    EXPECT_EQ(bench.notices(), QStringList());
}

TEST_P(JournalTest, EachChangeIsWithTheSystemBeforeItsCallReturns) {
    qint64 before = 0;
    for (int i = 0; i < 20; ++i) {
        setName(0, QString::number(i));
        const qint64 size = QFile(bench.journalPath()).size();
        EXPECT_GT(size, before);
        before = size;
    }
}

TEST_P(JournalTest, SessionsThatCrashOneAfterTheOtherAddUp) {
    for (int i = 0; i < 5; ++i) {
        setName(0, u"session %1"_s.arg(i));
        bench.database().addRecord(table());
        EXPECT_EQ(bench.body(), crashAndOpen());
    }
    EXPECT_EQ(table().recordCount(), 8U);
    EXPECT_EQ(bench.journals().size(), 1);
}

TEST_P(JournalTest, OnlyItsUserMayReadIt) {
    setName(0, u"x"_s);
    struct stat status {};
    ASSERT_EQ(::stat(systemPath(bench.journalPath()).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
}

TEST_P(JournalTest, AProtectedFilesJournalShowsNothing) {
    setName(0, u"a text that would be seen"_s);
    EXPECT_EQ(contentOf(bench.journalPath()).contains("would be seen"), !GetParam());
}

// ---- groups

TEST_P(JournalTest, AGroupThatWasNotEndedIsNotMadeAgain) {
    setName(0, u"before"_s);
    bench.database().beginGroup();
    for (int i = 0; i < 100; ++i)
        setName(1, u"in the group %1"_s.arg(i));
    bench.crash();
    bench.open();
    EXPECT_EQ(nameAt(0), u"before"_s);
    EXPECT_EQ(nameAt(1), QString());
}

TEST_P(JournalTest, AGroupsChangesGoToTheSystemTogether) {
    FailingFileOps ops;
    JournalBench counted(ops);
    counted.setSaved(pumps() + QByteArray());
    counted.base().bodySize = 1 << 20;
    counted.open();
    Database &database = counted.database();
    database.setNumber(database.table(0), 1, 0, 1);
    const int before = ops.calls();
    database.beginGroup();
    for (int i = 0; i < 100; ++i)
        database.setNumber(database.table(0), 1, 0, i + 2);
    EXPECT_EQ(ops.calls(), before);
    database.endGroup();
    EXPECT_EQ(std::count(ops.made().begin() + before, ops.made().end(), FileCall::WriteAt), 1);
}

TEST_P(JournalTest, AnUndoneGroupIsNotMadeAgain) {
    setName(0, u"before"_s);
    bench.database().beginGroup();
    setName(0, u"undone"_s);
    bench.database().addTable(u"Undone"_s);
    bench.database().undoGroup();
    setName(1, u"after"_s);
    EXPECT_EQ(bench.body(), crashAndOpen());
    EXPECT_EQ(nameAt(0), u"before"_s);
    EXPECT_EQ(nameAt(1), u"after"_s);
}

TEST_P(JournalTest, AnInnerGroupMayBeUndoneAlone) {
    bench.base().bodySize = 1 << 20;
    bench.open();
    bench.database().beginGroup();
    setName(0, u"outer"_s);
    bench.database().beginGroup();
    setName(0, u"inner"_s);
    bench.database().addRecord(table());
    bench.database().undoGroup();
    bench.database().beginGroup();
    setName(1, u"kept"_s);
    bench.database().endGroup();
    bench.database().endGroup();
    EXPECT_EQ(bench.body(), crashAndOpen());
    EXPECT_EQ(nameAt(0), u"outer"_s);
    EXPECT_EQ(nameAt(1), u"kept"_s);
}

/// A group of changes of about this many bytes, with a body of `bodySize`.
class LargeGroups : public JournalTest {
protected:
    void change(std::uint64_t bytes) {
        const QString text(180, u'x');
        for (std::uint64_t done = 0; done < bytes; done += 200)
            setName(done / 200 % 3, text + QString::number(done));
    }
    void openWith(std::uint64_t bodySize) {
        bench.base().bodySize = bodySize;
        bench.open();
    }
    qint64 size() const { return QFile(bench.journalPath()).size(); }
};
INSTANTIATE_TEST_SUITE_P(Of, LargeGroups, testing::Bool(),
                         [](const auto &form) { return form.param ? "AProtectedFile" : "AnOpenFile"; });

TEST_P(LargeGroups, AreWrittenInPiecesAndCountAsAWhole) {
    openWith(1 << 22);
    bench.database().beginGroup();
    change(500000);
    EXPECT_GT(size(), 300000);
    const QByteArray saved = pumps();
    bench.crash();
    bench.open();
    EXPECT_EQ(bench.body(), saved); // not ended: nothing of it
    bench.database().beginGroup();
    change(500000);
    bench.database().endGroup();
    EXPECT_EQ(bench.body(), crashAndOpen());
}

TEST_P(LargeGroups, BeyondAQuarterOfTheBodyAreKeptAsAnImageOfTheTable) {
    openWith(100000);
    bench.database().beginGroup();
    change(1000000);
    bench.database().endGroup();
    EXPECT_LT(size(), 5000);
    EXPECT_EQ(bench.body(), crashAndOpen());
}

TEST_P(LargeGroups, WhosePiecesWereWrittenStartOverAsAnImage) {
    openWith(1 << 20);
    bench.database().beginGroup();
    change(1 << 20);
    bench.database().endGroup();
    EXPECT_LT(size(), 400000);
    setName(0, u"after"_s);
    EXPECT_EQ(bench.body(), crashAndOpen());
}

TEST_P(LargeGroups, ThatChangeTheListOfTablesAreKeptAsAnImageOfAll) {
    openWith(1000);
    bench.database().beginGroup();
    change(20000);
    bench.database().addTable(u"Second"_s);
    bench.database().setText(bench.database().table(1), 0, 0, u"in the second"_s);
    bench.database().endGroup();
    bench.database().setText(bench.database().table(1), 0, 0, u"after"_s);
    EXPECT_EQ(bench.body(), crashAndOpen());
}

TEST_P(LargeGroups, OfSeveralTablesAreKeptAsAnImageOfEach) {
    bench.database().addTable(u"Second"_s);
    bench.database().addTable(u"Third"_s);
    bench.setSaved(bench.body());
    bench.journal().discard();
    openWith(1000);
    bench.database().beginGroup();
    change(20000);
    bench.database().setText(bench.database().table(2), 0, 0, u"in the third"_s);
    change(20000);
    bench.database().endGroup();
    bench.database().setText(bench.database().table(1), 0, 0, u"after"_s);
    EXPECT_EQ(bench.body(), crashAndOpen());
}

TEST_P(LargeGroups, ThatAreUndoneLeaveNothing) {
    for (const std::uint64_t bodySize : {1 << 22, 1 << 20, 1000}) {
        openWith(bodySize);
        setName(0, u"before"_s);
        bench.database().beginGroup();
        change(400000);
        bench.database().undoGroup();
        setName(1, u"after"_s);
        EXPECT_EQ(bench.body(), crashAndOpen());
        bench.journal().discard();
    }
}

TEST_P(LargeGroups, WithOthersWithinAreWrittenInPiecesAndCountAsAWhole) {
    for (const std::uint64_t bodySize : {1 << 22, 1 << 20, 1000}) {
        openWith(bodySize);
        bench.database().beginGroup();
        setName(0, u"outer"_s);
        bench.database().beginGroup();
        bench.database().beginGroup();
        change(400000);
        bench.database().endGroup();
        bench.database().endGroup();
        setName(1, u"outer again"_s);
        bench.database().endGroup();
        setName(2, u"after"_s);
        EXPECT_EQ(bench.body(), crashAndOpen()) << bodySize;
        EXPECT_EQ(nameAt(2), u"after"_s) << bodySize;
        bench.journal().discard();
    }
}

TEST_P(LargeGroups, ThatAreUndoneWithOthersWithinLeaveNothing) {
    for (const std::uint64_t bodySize : {1 << 22, 1 << 20, 1000}) {
        openWith(bodySize);
        setName(0, u"before"_s);
        bench.database().beginGroup();
        bench.database().beginGroup();
        change(400000);
        bench.database().endGroup();
        bench.database().undoGroup();
        setName(1, u"after"_s);
        EXPECT_EQ(bench.body(), crashAndOpen()) << bodySize;
        EXPECT_EQ(nameAt(1), u"after"_s) << bodySize;
        bench.journal().discard();
    }
}

TEST_P(LargeGroups, OfManyEmptyOnesComeBack) {
    openWith(1 << 22);
    bench.database().beginGroup();
    for (int i = 0; i < 1200000; ++i) {
        bench.database().beginGroup();
        bench.database().endGroup();
    }
    setName(0, u"in the end"_s);
    bench.database().endGroup();
    EXPECT_EQ(bench.body(), crashAndOpen());
    EXPECT_EQ(nameAt(0), u"in the end"_s);
}

TEST_P(LargeGroups, AnImageOfManyPiecesComesBack) {
    bench.database().resizeField(table(), 2, 60000);
    for (int i = 0; i < 50; ++i)
        bench.database().addRecord(table());
    bench.setSaved(bench.body());
    bench.journal().discard();
    bench.open();
    bench.database().beginGroup();
    for (std::size_t i = 0; i < 50; ++i)
        setName(i, QString(60000, QChar(u'a' + int(i % 26))));
    bench.database().endGroup();
    EXPECT_GT(size(), 3000000);
    EXPECT_TRUE(bench.body() == crashAndOpen());
}

// ---- damage: the longest whole prefix, never anything else

class DamagedJournal : public JournalTest {
protected:
    DamagedJournal() {
        m_states.push_back(bench.body());
        const auto step = [&] { m_states.push_back(bench.body()); };
        setName(0, u"one"_s);
        step();
        bench.database().beginGroup();
        setName(1, u"two"_s);
        setName(2, u"three"_s);
        bench.database().endGroup();
        step();
        bench.crash();
        bench.open(); // a second segment
        bench.clearNotices();
        bench.database().addRecord(table());
        step();
        setName(3, u"four"_s);
        step();
        bench.crash();
        m_path = bench.journalPath();
        m_content = contentOf(m_path);
    }
    /// Opens with this content in the journal's place; gives the number of the state that came back.
    int stateWith(const QByteArray &content) {
        bench.crash();
        for (const QString &name : bench.journals())
            QFile::remove(bench.journalFolderPath() + u'/' + name);
        writeContent(m_path, content);
        bench.open();
        const auto found = std::find(m_states.begin(), m_states.end(), bench.body());
        return found == m_states.end() ? -1 : int(found - m_states.begin());
    }

    std::vector<QByteArray> m_states;
    QString m_path;
    QByteArray m_content;
};
INSTANTIATE_TEST_SUITE_P(Of, DamagedJournal, testing::Bool(),
                         [](const auto &form) { return form.param ? "AProtectedFile" : "AnOpenFile"; });

TEST_P(DamagedJournal, CutAnywhereGivesAPrefix) {
    int last = 0;
    for (qsizetype size = 0; size <= m_content.size(); ++size) {
        const int state = stateWith(m_content.first(size));
        EXPECT_GE(state, last) << size;
        last = state;
    }
    EXPECT_EQ(last, int(m_states.size()) - 1);
}

TEST_P(DamagedJournal, EverySingleBitChangeGivesAPrefix) {
    for (qsizetype i = 0; i < m_content.size(); ++i) {
        QByteArray content = m_content;
        content[i] = char(content[i] ^ (1 << (i % 8)));
        const int state = stateWith(content);
        EXPECT_GE(state, 0) << i;
        EXPECT_LT(state, int(m_states.size()) - 1) << i;
    }
}

TEST_P(DamagedJournal, BytesBehindTheEndAreCutAndWritingGoesOn) {
    EXPECT_EQ(stateWith(m_content + QByteArray(1000, '\x7f')), int(m_states.size()) - 1);
    setName(0, u"after"_s);
    EXPECT_EQ(bench.body(), crashAndOpen());
    EXPECT_EQ(nameAt(0), u"after"_s);
}

TEST_P(DamagedJournal, AfterATornRecordWritingGoesOn) {
    for (qsizetype size = m_content.size() - 60; size < m_content.size(); ++size) {
        stateWith(m_content.first(size));
        setName(0, u"after %1"_s.arg(size));
        EXPECT_EQ(bench.body(), crashAndOpen()) << size;
        EXPECT_EQ(nameAt(0), u"after %1"_s.arg(size));
    }
}

TEST_P(DamagedJournal, ACrashAtAnyCallOfItsRecoveryLosesNothingOfIt) {
    QByteArray content = m_content;
    content[content.size() - 1] = char(content[content.size() - 1] ^ 1);
    ASSERT_EQ(stateWith(content), int(m_states.size()) - 2);
    const JournalBase base = bench.base();
    const QByteArray body = pumps();
    int cases = 0;
    for (Fault fault{.at = 0, .number = EIO, .forever = true};; ++fault.at) {
        bench.crash();
        for (const QString &name : bench.journals())
            QFile::remove(bench.journalFolderPath() + u'/' + name);
        writeContent(m_path, content);
        FailingFileOps ops(fault);
        Database database = std::move(*decodeBody(body));
        (void)recoverJournals(ops,
                              {.stateFolder = bench.folder(),
                               .base = base,
                               .keys = bench.keys(),
                               .password = {},
                               .deriveKey = deriveMasterKey,
                               .random = RandomSource::system(),
                               .body = body,
                               .keepAside = {}},
                              database);
        bench.open();
        EXPECT_EQ(bench.body(), m_states[m_states.size() - 2]) << fault.at;
        const auto isWhole = [&](const QString &name) {
            return contentOf(bench.journalFolderPath() + u'/' + name).startsWith(content);
        };
        EXPECT_TRUE(std::ranges::any_of(bench.journals(), isWhole)) << fault.at;
        ++cases;
        if (!ops.faultMet())
            break;
    }
    EXPECT_GT(cases, 10);
}

TEST_P(DamagedJournal, OtherFilesInTheFolderAreLeftAlone) {
    const QStringList names = {u"x"_s, u"01010101010101010101010101010101-zzzzzzzz"_s,
                               u"01010101010101010101010101010101-00000000"_s};
    for (const QString &name : names)
        writeContent(bench.journalFolderPath() + u'/' + name, "no journal");
    EXPECT_TRUE(bench.journals().size() > 3);
    bench.open();
    for (const QString &name : names)
        EXPECT_EQ(contentOf(bench.journalFolderPath() + u'/' + name), "no journal");
}

TEST_P(DamagedJournal, WhatCannotBeReadIsKeptWhereTheUserIsToldThatItIs) {
    // In the head, in the first record, in the last one.
    for (const qsizetype at :
         {qsizetype(100), qsizetype(m_content.indexOf("\xff\xff\xff\xff") + 60), qsizetype(m_content.size() - 1)}) {
        QByteArray content = m_content;
        content[at] = char(content[at] ^ 1);
        bench.clearNotices();
        stateWith(content);
        const QStringList kept = bench.journals().filter(u".ended"_s);
        ASSERT_EQ(kept.size(), 1) << at;
        const QString path = bench.journalFolderPath() + u'/' + kept[0];
        EXPECT_TRUE(contentOf(path).startsWith(content)) << at; // retiring adds a mark
        EXPECT_TRUE(bench.notices().join(u'\n').contains(path)) << bench.notices().join(u'\n').toStdString();
    }
}

/// Puts records at the end of the journal, sealed as they should be.
void JournalTest::appendRecords(const std::vector<QByteArray> &payloads) {
    auto folder = OpenFile::openAt(FileOps::system(), AT_FDCWD, systemPath(bench.journalFolderPath()), O_RDONLY);
    auto file = JournalFile::open(FileOps::system(), std::move(*folder), systemPath(bench.journals()[0]),
                                  RandomSource::system());
    ASSERT_TRUE(file);
    file->unlock(bench.keys());
    QByteArray record;
    while (file->readRecord(record)) {
    }
    for (const QByteArray &payload : payloads)
        ASSERT_TRUE(file->append(payload));
}

TEST_P(JournalTest, OperationsThatMakeNoSenseEndTheReplayWithoutHarm) {
    // Well-formed records, as somebody could write them into an open file's journal.
    const auto number = [](std::uint32_t value) { return QByteArray(reinterpret_cast<const char *>(&value), 4); };
    const QByteArray table0 = number(0);
    const std::vector<QByteArray> payloads = {
        QByteArray("\x00", 1),
        QByteArray("\xff", 1),
        QByteArray("\x01"),           // a table without a name
        "\x01" + number(5) + "ab",    // a name that is not all there
        "\x03" + number(7),           // no such table
        "\x09" + table0 + number(99), // no such record
        "\x0a" + table0 + number(9) + number(0) + QByteArray(8, '\0'),
        "\x0a" + table0 + number(1) + number(0) + QByteArray::fromHex("000000000000f07f"), // infinite
        QByteArray("\x15"),                                                                // an end without a beginning
        QByteArray("\x16"),
        QByteArray("\x17"),
        "\x19" + table0, // an image of nothing
        QByteArray("\x1a"),
        "\x14\x18" + number(3) + "abc\x19" + table0 + "\x15", // an image that is none
        "\x14\x08" + table0 + "\x1a\x15",                     // changes and an image together
        QByteArray(1000, '\x14'),                             // groups without end
        "\x14" + QByteArray(100, '\x14') + QByteArray(102, '\x15'),
        "\x04" + table0 + "\x05" + QByteArray(8, '\0') + number(1) + "n", // no such type
    };
    for (const QByteArray &payload : payloads) {
        setName(0, u"good"_s);
        bench.crash();
        appendRecords({payload, "\x08" + table0}); // the second one must not count any more
        bench.open();
        EXPECT_EQ(nameAt(0), u"good"_s) << payload.toHex().toStdString();
        EXPECT_EQ(table().recordCount(), 3U) << payload.toHex().toStdString();
        bench.journal().discard();
        bench.open();
    }
}

// ---- whose journal it is

TEST_P(JournalTest, OneThatALivingEditorHoldsIsNotTouched) {
    setName(0, u"left"_s);
    const QByteArray content = contentOf(bench.journalPath());
    Database other = std::move(*decodeBody(pumps()));
    const JournalBase base = bench.base();
    const RecoveryOutcome outcome = recoverJournals(FileOps::system(),
                                                    {.stateFolder = bench.folder(),
                                                     .base = base,
                                                     .keys = bench.keys(),
                                                     .password = {},
                                                     .deriveKey = deriveMasterKey,
                                                     .random = RandomSource::system(),
                                                     .body = {},
                                                     .keepAside = {}},
                                                    other);
    EXPECT_FALSE(outcome.journal);
    EXPECT_FALSE(outcome.changed);
    EXPECT_EQ(encodeBody(other), pumps());
    EXPECT_EQ(contentOf(bench.journalPath()), content);
}

TEST_P(JournalTest, AnotherFilesIsLeftAlone) {
    setName(0, u"x"_s);
    bench.crash();
    bench.base().fileId.fill(9);
    bench.open();
    EXPECT_FALSE(bench.recovered());
    EXPECT_EQ(bench.journals().size(), 1);
    bench.crash();
    bench.base().fileId.fill(1);
    bench.open();
    EXPECT_EQ(nameAt(0), u"x"_s);
}

TEST_P(JournalTest, OfAnotherVersionIsNeverMergedButKeptAside) {
    setName(0, u"x"_s);
    bench.crash();
    bench.base().saveId.fill(9);
    bench.open();
    EXPECT_FALSE(bench.recovered());
    EXPECT_EQ(bench.body(), pumps());
    ASSERT_EQ(bench.aside().size(), 1U);
    EXPECT_NE(bench.aside()[0], pumps());
    EXPECT_EQ(bench.notices().size(), 1);
    EXPECT_TRUE(bench.journals()[0].endsWith(u".ended"_s));
    bench.open();
    EXPECT_EQ(bench.aside().size(), 1U);
}

TEST_P(JournalTest, OfTwoThatFitTheLatestIsTakenAndTheOtherKeptAside) {
    setName(0, u"first"_s);
    bench.crash();
    const QString first = bench.journalPath();
    const QByteArray content = contentOf(first);
    QFile::remove(first);
    bench.open();
    setName(0, u"second"_s);
    bench.crash();
    writeContent(first, content);
    const utimbuf old{1000, 1000};
    ASSERT_EQ(::utime(systemPath(first).c_str(), &old), 0);
    bench.open();
    EXPECT_EQ(nameAt(0), u"second"_s);
    ASSERT_EQ(bench.aside().size(), 1U);
    EXPECT_TRUE(bench.aside()[0].contains("first"));
}

// ---- saves

TEST_P(JournalTest, ASaveThatTookPlaceDropsWhatStandsBefore) {
    FileIdentifier next;
    next.fill(3);
    setName(0, u"saved"_s);
    bench.journal().saving(next);
    const QByteArray saved = bench.body();
    setName(1, u"not saved"_s); // the save had failed, the editor thought, but the file is the new version
    const QByteArray before = bench.body();
    bench.crash();
    bench.base().saveId = next;
    bench.setSaved(saved);
    bench.open();
    EXPECT_EQ(bench.body(), before);
    EXPECT_TRUE(bench.recovered());
}

TEST_P(JournalTest, ACrashRightAfterTheSaveLeavesNothingToDo) {
    FileIdentifier next;
    next.fill(3);
    setName(0, u"saved"_s);
    bench.journal().saving(next);
    const QByteArray saved = bench.body();
    bench.crash();
    bench.base().saveId = next;
    bench.setSaved(saved);
    bench.open();
    EXPECT_FALSE(bench.recovered());
    EXPECT_EQ(bench.body(), saved);
    EXPECT_EQ(bench.notices(), QStringList());
    EXPECT_EQ(bench.journals(), QStringList());
}

TEST_P(JournalTest, WhatNobodyUnderstandsIsKeptWhereTheUserIsToldThatItIs) {
    for (const bool isFirst : {true, false}) {
        bench.open();
        FileIdentifier next;
        next.fill(isFirst ? 3 : 4);
        setName(0, u"saved"_s);
        bench.journal().saving(next);
        bench.crash();
        bench.base().saveId = next;
        QByteArray understood;
        encodeChange(understood, {.kind = ChangeKind::SetText, .index = 2, .record = 1, .text = u"understood"}, 0);
        const QByteArray operation = "\x63 what a later program may write";
        if (isFirst)
            appendRecords({operation});
        else
            appendRecords({understood, operation});
        const QByteArray content = contentOf(bench.journalFolderPath() + u'/' + bench.journals()[0]);
        bench.clearNotices();
        bench.open();
        EXPECT_EQ(nameAt(1), isFirst ? QString() : u"understood"_s);
        const QStringList kept = bench.journals().filter(u".ended"_s);
        ASSERT_EQ(kept.size(), 1);
        const QString path = bench.journalFolderPath() + u'/' + kept[0];
        EXPECT_EQ(contentOf(path), content);
        EXPECT_TRUE(bench.notices().join(u'\n').contains(path)) << bench.notices().join(u'\n').toStdString();
        bench.crash();
        for (const QString &name : bench.journals())
            QFile::remove(bench.journalFolderPath() + u'/' + name);
    }
}

TEST_P(JournalTest, ASaveThatDidNotTakePlaceDropsNothing) {
    FileIdentifier next;
    next.fill(3);
    setName(0, u"one"_s);
    bench.journal().saving(next);
    setName(1, u"two"_s);
    EXPECT_EQ(bench.body(), crashAndOpen());
}

TEST_P(JournalTest, ADiscardedOneIsGone) {
    setName(0, u"x"_s);
    bench.journal().discard();
    EXPECT_EQ(bench.journals(), QStringList());
}

TEST_P(JournalTest, ARetiredOneIsKeptForSevenDays) {
    setName(0, u"x"_s);
    bench.journal().retire();
    bench.open();
    EXPECT_FALSE(bench.recovered());
    ASSERT_EQ(bench.journals().size(), 1);
    EXPECT_TRUE(bench.journals()[0].endsWith(u".ended"_s));
    const auto age = [&](std::time_t days) {
        const utimbuf times{std::time(nullptr) - days * 86400 - 10, std::time(nullptr) - days * 86400 - 10};
        ASSERT_EQ(::utime(systemPath(bench.journalPath()).c_str(), &times), 0);
    };
    age(6);
    bench.open();
    EXPECT_EQ(bench.journals().size(), 1);
    age(7);
    bench.open();
    ASSERT_EQ(bench.journals().size(), 1) << "the clock may have been wrong";
    age(7);
    bench.open();
    EXPECT_EQ(bench.journals(), QStringList());
}

// ---- the version of the format before

class OlderJournal : public JournalTest {
protected:
    OlderJournal() {
        bench.crash();
        QByteArray payload;
        encodeChange(payload, {.kind = ChangeKind::SetText, .table = &table(), .index = 2, .text = u"typed before"}, 0);
        QDir().mkpath(bench.journalFolderPath());
        ::chmod(systemPath(bench.journalFolderPath()).c_str(), 0700);
        const QString path = bench.journalFolderPath() + u"/01010101010101010101010101010101-00000000"_s;
        writeContent(path, journalOfVersion1(bench.base(), bench.keys(), {payload}));
        ::chmod(systemPath(path).c_str(), 0600);
    }
};
INSTANTIATE_TEST_SUITE_P(Of, OlderJournal, testing::Bool(),
                         [](const auto &form) { return form.param ? "AProtectedFile" : "AnOpenFile"; });

TEST_P(OlderJournal, IsMadeAgainAndGoneOnWithInTodaysForm) {
    bench.open();
    EXPECT_EQ(nameAt(0), u"typed before"_s);
    setName(1, u"typed on"_s);
    const QByteArray content = contentOf(bench.journalPath());
    EXPECT_TRUE(content.startsWith("QIRJRNL2"));
    EXPECT_EQ(content.contains(bench.base().place.path.c_str()), !GetParam());
    EXPECT_EQ(bench.journals()[0].startsWith(u"0101"_s), !GetParam());
    EXPECT_EQ(bench.body(), crashAndOpen());
    EXPECT_EQ(nameAt(1), u"typed on"_s);
}

TEST_P(OlderJournal, ThatCannotBeWrittenAnewIsGoneOnWithAsItIs) {
    bool full = true;
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        return full && call == FileCall::WriteAt ? std::optional(SystemError{ENOSPC}) : std::nullopt;
    });
    Database database = std::move(*decodeBody(pumps()));
    const JournalBase base = bench.base();
    const QByteArray body = pumps();
    RecoveryOutcome outcome = recoverJournals(ops,
                                              {.stateFolder = bench.folder(),
                                               .base = base,
                                               .keys = bench.keys(),
                                               .password = {},
                                               .deriveKey = deriveMasterKey,
                                               .random = RandomSource::system(),
                                               .body = body,
                                               .keepAside = {}},
                                              database);
    full = false;
    ASSERT_TRUE(outcome.journal);
    {
        Journal journal(ops, bench.options());
        journal.follow(database, base, bench.keys());
        journal.adopt(std::move(*outcome.journal));
        database.setText(database.table(0), 2, 1, u"typed on"_s);
    }
    EXPECT_TRUE(contentOf(bench.journalPath()).startsWith("QIRJRNL1"));
    bench.open();
    EXPECT_EQ(nameAt(0), u"typed before"_s);
    EXPECT_EQ(nameAt(1), u"typed on"_s);
}

// ---- a journal that is taken away

/// A second later with each step, so that each change is synced.
class TakenAway : public JournalTest {
protected:
    TakenAway() {
        bench.options().clock = [this] { return m_now += std::chrono::seconds(2); };
        bench.open();
        setName(0, u"before"_s);
        bench.database().addRecord(table());
        bench.clearNotices();
    }
    void expectAllIsThereAgain() {
        setName(1, u"after"_s);
        setName(1, u"and on"_s);
        EXPECT_EQ(bench.notices().size(), 1) << bench.notices().join(u'\n').toStdString();
        EXPECT_TRUE(bench.notices().value(0).contains(u"written anew"_s)) << bench.notices().value(0).toStdString();
        const QByteArray before = crashAndOpen();
        EXPECT_EQ(bench.body(), before);
        EXPECT_EQ(nameAt(1), u"and on"_s);
        EXPECT_TRUE(bench.recovered());
    }

private:
    std::chrono::steady_clock::time_point m_now;
};
INSTANTIATE_TEST_SUITE_P(Of, TakenAway, testing::Bool(),
                         [](const auto &form) { return form.param ? "AProtectedFile" : "AnOpenFile"; });

TEST_P(TakenAway, OneThatIsRemovedIsWrittenAnew) {
    ASSERT_TRUE(QFile::remove(bench.journalPath()));
    expectAllIsThereAgain();
}

TEST_P(TakenAway, OneWhoseFolderIsRemovedIsWrittenAnew) {
    ASSERT_TRUE(QDir(bench.journalFolderPath()).removeRecursively());
    expectAllIsThereAgain();
}

TEST_P(TakenAway, OneWhoseFolderIsMovedAwayIsWrittenAnew) {
    ASSERT_TRUE(QDir().rename(bench.journalFolderPath(), bench.folder() + u"/elsewhere"_s));
    expectAllIsThereAgain();
}

TEST_P(TakenAway, OneThatIsReplacedIsWrittenAnew) {
    const QString path = bench.journalPath();
    const QByteArray content = contentOf(path);
    ASSERT_TRUE(QFile::remove(path));
    writeContent(path, content.first(content.size() / 2));
    ASSERT_EQ(::chmod(systemPath(path).c_str(), 0600), 0);
    expectAllIsThereAgain();
}

TEST_P(TakenAway, OneThatIsCutIsWrittenAnew) {
    ASSERT_TRUE(QFile::resize(bench.journalPath(), 20));
    expectAllIsThereAgain();
}

TEST_P(TakenAway, RecordsOfATableWithoutFieldsAreInTheOneThatIsWrittenAnew) {
    while (table().fieldCount() > 0)
        bench.database().removeField(table(), 0);
    ASSERT_TRUE(QFile::remove(bench.journalPath()));
    bench.database().addRecord(table()); // seen to be gone here
    bench.database().addField(table(), u"Name"_s, int(ColumnType::Text), 200);
    bench.database().setText(table(), 0, 4, u"typed"_s);
    EXPECT_EQ(bench.body(), crashAndOpen());
    ASSERT_GT(table().recordCount(), 4U);
    EXPECT_EQ(textIn(table(), 0, 4), u"typed"_s);
}

TEST_P(TakenAway, WithinAGroupItIsWrittenAnewAtTheGroupsEnd) {
    bench.base().bodySize = 1 << 22;
    bench.open();
    bench.database().beginGroup();
    for (int i = 0; i < 1000; ++i)
        setName(0, QString(180, u'x') + QString::number(i)); // some of it is written
    ASSERT_TRUE(QDir(bench.journalFolderPath()).removeRecursively());
    bench.journal().syncPending();
    EXPECT_EQ(bench.journals(), QStringList());
    bench.database().endGroup();
    bench.journal().syncPending();
    const QByteArray before = crashAndOpen();
    EXPECT_EQ(bench.body(), before);
}

TEST_P(TakenAway, WhereItCannotBeWrittenAnewTheUserIsToldThatNothingIsKeptSafe) {
    ASSERT_TRUE(QDir(bench.journalFolderPath()).removeRecursively());
    writeContent(bench.journalFolderPath(), "a file where the folder should be");
    setName(1, u"after"_s);
    setName(1, u"and on"_s);
    EXPECT_EQ(bench.notices().size(), 1);
    EXPECT_TRUE(bench.notices().value(0).contains(u"not kept safe"_s));
}

// ---- keys

TEST(SealedJournal, ProtectingAnOpenFileResealsItAtOnce) {
    JournalBench bench;
    bench.setSaved(pumps());
    bench.open();
    Database &database = bench.database();
    database.setText(database.table(0), 2, 0, u"typed in the open"_s);
    ASSERT_TRUE(contentOf(bench.journalPath()).contains("typed in the open"));
    bench.journal().reseal(keysOf(secret));
    database.setText(database.table(0), 2, 1, u"typed later"_s);
    EXPECT_FALSE(contentOf(bench.journalPath()).contains("typed in the open"));
    EXPECT_FALSE(contentOf(bench.journalPath()).contains("typed later"));
    const QByteArray before = bench.body();
    bench.crash();

    bench.open(); // the file is still open, nobody asks for a password
    EXPECT_FALSE(bench.recovered());
    EXPECT_EQ(bench.notices().size(), 1);
    bench.crash();
    bench.password = u"wrong"_s;
    bench.open();
    EXPECT_FALSE(bench.recovered());
    bench.crash();
    bench.password = secret;
    bench.open();
    EXPECT_TRUE(bench.recovered());
    EXPECT_EQ(bench.body(), before);
}

TEST(SealedJournal, ResealingThatFailsStopsWritingInTheOpen) {
    FailingFileOps counting;
    bool fails = false;
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        return fails && call == FileCall::WriteAt ? std::optional(SystemError{ENOSPC}) : std::nullopt;
    });
    JournalBench bench(ops);
    bench.setSaved(pumps());
    bench.open();
    Database &database = bench.database();
    database.setText(database.table(0), 2, 0, u"typed in the open"_s);
    fails = true;
    bench.journal().reseal(keysOf(secret));
    fails = false;
    database.setText(database.table(0), 2, 1, u"typed later"_s);
    EXPECT_EQ(bench.notices().size(), 1);
    EXPECT_EQ(bench.journals().size(), 1);
    EXPECT_FALSE(contentOf(bench.journalPath()).contains("typed later"));
    bench.crash();
    bench.open();
    EXPECT_EQ(textIn(database.table(0), 2, 0), u"typed in the open"_s);
}

TEST(SealedJournal, ResealingThatFailsLeavesWhatIsKeptAfterANo) {
    bool fails = false;
    int writes = 0;
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        return fails && call == FileCall::WriteAt && ++writes > 1 ? std::optional(SystemError{ENOSPC}) : std::nullopt;
    });
    JournalBench bench(ops);
    bench.setSaved(pumps());
    bench.open();
    Database &database = bench.database();
    for (std::size_t i = 0; i < 3; ++i)
        database.setText(database.table(0), 2, i, u"typed %1"_s.arg(i));
    const QByteArray before = contentOf(bench.journalPath());
    fails = true;
    bench.journal().reseal(keysOf(secret));
    fails = false;
    bench.journal().retire();
    EXPECT_TRUE(contentOf(bench.journalPath()).startsWith(before));
}

TEST(SealedJournal, WithAnotherKeyNothingIsRead) {
    JournalBench bench;
    bench.keys() = keysOf(secret);
    bench.setSaved(pumps());
    bench.open();
    bench.database().addTable(u"x"_s);
    bench.crash();
    bench.keys() = keysOf(u"other"_s, 8);
    bench.open();
    EXPECT_FALSE(bench.recovered());
    EXPECT_EQ(bench.notices().size(), 1);
    EXPECT_EQ(bench.journals().size(), 1);
}

TEST(SealedJournal, WhatOthersPutBesideTheFileIsNotTakenForItsVersion) {
    // With the ids that the file's header tells everybody: open, or sealed at a cost of their choice.
    for (const QString &password : {QString(), secret}) {
        JournalBench bench;
        bench.keys() = keysOf(secret);
        bench.password = secret;
        bench.setSaved(pumps());
        bench.open();
        bench.database().setText(bench.database().table(0), 2, 0, u"typed"_s);
        bench.crash();
        FileHeader header;
        header.fileId = bench.base().fileId;
        header.saveId = bench.base().saveId;
        Database forged = std::move(*decodeBody(pumps()));
        forged.addTable(u"Forged"_s);
        writeContent(bench.folder() + u"/file (conflict 1)"_s, containerBytes(encodeBody(forged), password, header));
        bench.base().saveId.fill(9);
        bench.open();
        EXPECT_EQ(bench.derivations, 0);
        ASSERT_EQ(bench.aside().size(), 1U);
        EXPECT_TRUE(bench.aside()[0].contains("typed"));
        EXPECT_FALSE(bench.aside()[0].contains("Forged"));
    }
}

// ---- failures

TEST_P(JournalTest, AFullDiskIsToldOnceAndEditingGoesOn) {
    bool full = false;
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        return full && call == FileCall::WriteAt ? std::optional(SystemError{ENOSPC}) : std::nullopt;
    });
    JournalBench limited(ops);
    if (GetParam())
        limited.keys() = keysOf(secret);
    limited.setSaved(pumps());
    limited.open();
    Database &database = limited.database();
    database.setText(database.table(0), 2, 0, u"one"_s);
    full = true;
    for (int i = 0; i < 10; ++i)
        database.setText(database.table(0), 2, 1, QString::number(i));
    EXPECT_EQ(limited.notices().size(), 1);
    EXPECT_TRUE(limited.notices().value(0).contains(u"the disk is full"_s));
    EXPECT_EQ(textIn(database.table(0), 2, 1), u"9"_s);
    full = false;
    database.setText(database.table(0), 2, 1, u"after a gap"_s);
    limited.crash();
    limited.open();
    EXPECT_EQ(textIn(limited.database().table(0), 2, 0), u"one"_s);
    EXPECT_EQ(textIn(limited.database().table(0), 2, 1), QString());
}

TEST_P(JournalTest, AStateFolderThatCannotBeMadeIsToldOnce) {
    bench.crash();
    QFile(bench.journalFolderPath()).remove();
    writeContent(bench.journalFolderPath(), "a file where the folder should be");
    bench.open();
    for (int i = 0; i < 10; ++i)
        setName(0, QString::number(i));
    EXPECT_EQ(bench.notices().size(), 1);
}

TEST_P(JournalTest, ACrashAtAnyCallOfARecoveryLosesNothing) {
    setName(0, u"one"_s);
    bench.database().beginGroup();
    setName(1, u"two"_s);
    bench.database().endGroup();
    const QByteArray before = crashAndOpen();
    bench.crash();
    int cases = 0;
    for (Fault fault{.at = 0, .number = EIO, .forever = true};; ++fault.at) {
        FailingFileOps ops(fault);
        Database database = std::move(*decodeBody(pumps()));
        const JournalBase base = bench.base();
        (void)recoverJournals(ops,
                              {.stateFolder = bench.folder(),
                               .base = base,
                               .keys = bench.keys(),
                               .password = {},
                               .deriveKey = deriveMasterKey,
                               .random = RandomSource::system(),
                               .body = {},
                               .keepAside = {}},
                              database);
        bench.open();
        EXPECT_EQ(bench.body(), before) << fault.at;
        bench.crash();
        ++cases;
        if (!ops.faultMet())
            break;
    }
    std::printf("%d crashes of a recovery\n", cases);
    EXPECT_GT(cases, 8);
}

TEST_P(JournalTest, ItIsSyncedAtMostOnceASecond) {
    FailingFileOps ops;
    JournalBench counted(ops);
    auto now = std::chrono::steady_clock::time_point() + std::chrono::hours(1);
    counted.options().clock = [&] { return now; };
    counted.setSaved(pumps());
    counted.open();
    Database &database = counted.database();
    const auto syncs = [&] { return std::count(ops.made().begin(), ops.made().end(), FileCall::SyncData); };
    for (int i = 0; i < 50; ++i)
        database.setNumber(database.table(0), 1, 0, i + 1);
    EXPECT_EQ(syncs(), 1);
    now += std::chrono::milliseconds(999);
    database.setNumber(database.table(0), 1, 0, 100);
    EXPECT_EQ(syncs(), 1);
    now += std::chrono::milliseconds(1);
    database.setNumber(database.table(0), 1, 0, 101);
    EXPECT_EQ(syncs(), 2);
    database.setNumber(database.table(0), 1, 0, 102);
    counted.journal().syncPending();
    EXPECT_EQ(syncs(), 3);
    counted.journal().syncPending(); // nothing new
    EXPECT_EQ(syncs(), 3);
}

TEST_P(JournalTest, WithATimerItIsSyncedByThatAlone) {
    FailingFileOps ops;
    JournalBench counted(ops);
    int asked = 0;
    counted.options().syncLater = [&] { return ++asked > 0; };
    counted.setSaved(pumps());
    counted.open();
    counted.database().addTable(u"x"_s);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(std::count(ops.made().begin(), ops.made().end(), FileCall::SyncData), 0);
    counted.journal().syncPending();
    EXPECT_EQ(std::count(ops.made().begin(), ops.made().end(), FileCall::SyncData), 1);
}

// ---- anything at all

RC_GTEST_PROP(JournalProperties, WhateverWasDoneIsThereAgainAfterACrash, ()) {
    JournalBench bench;
    const bool sealed = *rc::gen::arbitrary<bool>();
    if (sealed)
        bench.keys() = keysOf(secret);
    bench.setSaved(encodeBody(test::randomDatabase()));
    bench.base().bodySize = *rc::gen::element(0U, 2000U, 20000U, 1000000U);
    bench.open();
    for (int session = *rc::gen::inRange(1, 4); session > 0; --session) {
        int depth = 0;
        for (int steps = *rc::gen::inRange(0, 40); steps > 0; --steps) {
            const int what = *rc::gen::inRange(0, 12);
            if (what == 0) {
                bench.database().beginGroup();
                ++depth;
            } else if (what == 1 && depth > 0) {
                bench.database().endGroup();
                --depth;
            } else if (what == 2 && depth > 0) {
                bench.database().undoGroup();
                --depth;
            } else {
                test::changeAtRandom(bench.database());
            }
        }
        for (; depth > 0; --depth)
            bench.database().endGroup();
        const QByteArray before = bench.body();
        bench.crash();
        bench.open();
        RC_ASSERT(bench.body() == before);
    }
}

} // namespace
} // namespace qir
