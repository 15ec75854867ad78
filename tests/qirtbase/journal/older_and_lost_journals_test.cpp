#include "qirtbase/journal/JournalCodec.h"
#include "tests/qirtbase/journal/JournalTest.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

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
QIR_FOR_BOTH_FILES(TakenAway);

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
    bench.database().addField(table(), u"Name"_s, static_cast<int>(ColumnType::Text), 200);
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
QIR_FOR_BOTH_FILES(OlderJournal);

TEST_P(OlderJournal, IsMadeAgainAndGoneOnWithInTodaysForm) {
    bench.open();
    EXPECT_EQ(nameAt(0), u"typed before"_s);
    setName(1, u"typed on"_s);
    const QByteArray content = contentOf(bench.journalPath());
    EXPECT_TRUE(content.startsWith("QIRJRNL4"));
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
    RecoveryOutcome outcome = recoverJournals(ops,
                                              {.stateFolder = bench.folder(),
                                               .base = base,
                                               .keys = bench.keys(),
                                               .password = {},
                                               .deriveKey = deriveMasterKey,
                                               .random = RandomSource::system(),
                                               .keepAside = {}},
                                              database);
    full = false;
    ASSERT_TRUE(outcome.journal);
    {
        Journal journal(ops, bench.options());
        journal.follow(database, base, bench.keys());
        journal.adopt(std::move(*outcome.journal), outcome.changed);
        database.setText(database.table(0), 2, 1, u"typed on"_s);
    }
    EXPECT_TRUE(contentOf(bench.journalPath()).startsWith("QIRJRNL1"));
    bench.open();
    EXPECT_EQ(nameAt(0), u"typed before"_s);
    EXPECT_EQ(nameAt(1), u"typed on"_s);
}

} // namespace
} // namespace qir
