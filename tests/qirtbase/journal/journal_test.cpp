#include "base/columns/ColumnBuilder.h"
#include "qirtbase/journal/JournalCodec.h"
#include "qirtbase/journal/JournalReplay.h"
#include "qirtbase/model/BodyCodec.h"
#include "tests/qirtbase/journal/JournalTest.h"
#include "tests/qirtbase/model/DatabaseTestSupport.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <QFile>

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

QIR_FOR_BOTH_FILES(JournalTest);

// ---- what comes back

TEST_P(JournalTest, EveryKindOfChangeIsThereAgainAfterACrash) {
    Database &database = bench.database();
    setName(0, u"Main \u00b0C \U0001F600"_s);
    database.setNumber(table(), 1, 1, -2147483648.0);
    database.setNumber(table(), 0, 2, 1);
    database.addRecord(table());
    database.removeRecord(table(), 1);
    database.addField(table(), u"When"_s, static_cast<int>(ColumnType::Date), 0);
    database.setNumber(table(), 3, 0, 20240131.235959);
    database.addField(table(), u"Short"_s, static_cast<int>(ColumnType::Text), 3);
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

ColumnBlock manyTexts(int count, const QString &stem) {
    ColumnBuilder builder(ColumnType::Text);
    for (int i = 0; i < count; ++i)
        builder.add(QStringView(stem + QString::number(i)));
    return builder.take();
}

TEST_P(JournalTest, BlocksAndAppendedRecordsAreThereAgainAfterACrash) {
    Database &database = bench.database();
    database.addRecords(table(), 4);
    database.setBlock(table(), 2, 1, manyTexts(5, u"\u20ac\U0001F600"_s));
    ColumnBuilder numbers(ColumnType::Long);
    for (const double number : {-5.0, 2147483647.0})
        numbers.add(number);
    database.setBlock(table(), 1, 5, numbers.take());
    const QByteArray before = crashAndOpen();
    EXPECT_EQ(bench.body(), before);
    EXPECT_EQ(nameAt(1), u"\u20ac\U0001F6000"_s);
    EXPECT_TRUE(bench.recovered());
}

TEST_P(JournalTest, ABlockTooLargeForOneRecordIsThereAgainAsAWhole) {
    Database &database = bench.database();
    database.addRecords(table(), 200'000);
    database.setBlock(table(), 2, 0, manyTexts(200'000, u"a text of some length "_s));
    const QByteArray before = crashAndOpen();
    EXPECT_EQ(bench.body(), before);
    EXPECT_EQ(table().recordCount(), 200'003U);
}

TEST_P(JournalTest, BlocksOfAnUndoneGroupStayAway) {
    Database &database = bench.database();
    const QByteArray saved = bench.body();
    database.beginGroup();
    database.addRecords(table(), 300);
    database.setBlock(table(), 2, 0, manyTexts(300, u"x"_s));
    database.undoGroup();
    EXPECT_EQ(bench.body(), saved);
    crashAndOpen();
    EXPECT_EQ(bench.body(), saved);
}

TEST_P(JournalTest, ABlockThatDoesNotFitEndsTheReplay) {
    QByteArray payload;
    const ColumnBlock block = manyTexts(4, u"x"_s);
    encodeChange(payload, {.kind = ChangeKind::SetBlock, .index = 2, .record = 0, .block = &block}, 0);
    Database database = decodeBody(bench.body()).value();
    EXPECT_FALSE(JournalReplay(database).feed(payload)) << "more values than records";
    payload.clear();
    encodeChange(payload, {.kind = ChangeKind::SetBlock, .index = 1, .record = 0, .block = &block}, 0);
    EXPECT_FALSE(JournalReplay(database).feed(payload)) << "another type";
    EXPECT_EQ(encodeBody(database), bench.body());
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
