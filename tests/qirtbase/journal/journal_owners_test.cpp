#include "qirtbase/journal/JournalCodec.h"
#include "tests/qirtbase/journal/JournalTest.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QFile>

#include <utime.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

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

} // namespace
} // namespace qir
