#include "tests/qirtbase/face/JournalSessions.h"

#include <QCoreApplication>
#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>

#include <unistd.h>

#include <cerrno>
#include <memory>

using namespace Qt::StringLiterals;
using namespace qir;

namespace {

using ComponentJournal = JournalSessions;

TEST_F(ComponentJournal, WhatWasTypedBeforeACrashIsThereAgainAsUnsavedChanges) {
    auto session = open();
    EXPECT_EQ(m_notices, QStringList());
    for (const QString &text : {u"M"_s, u"Ma"_s, u"Mai"_s, u"Main"_s})
        write(*session, text);
    kill(session);
    EXPECT_EQ(textInFile(), u""_s);

    session = open();
    EXPECT_EQ(textIn(*session), u"Main"_s);
    EXPECT_TRUE(session->DtbHasChanged());
    ASSERT_EQ(m_notices.size(), 1);
    EXPECT_TRUE(m_notices[0].startsWith(path()));
}

/// Takes all fields of the table and leaves it `records` records.
void leaveRecordsAlone(clsQirDatabase &session, int records) {
    session.QIRTableRecordSource(u"Pumps"_s);
    while (session.QirTableRecordsCount() < records)
        session.AddRecord();
    while (session.QirTableFieldsCount() > 0)
        session.RemoveField(1);
}

TEST_F(ComponentJournal, RecordsOfATableThatLostItsFieldsTakeNewOnesAlsoAfterACrash) {
    for (const bool inAGroup : {false, true}) {
        auto session = open();
        if (inAGroup)
            session->BeginChanges();
        leaveRecordsAlone(*session, 400);
        if (inAGroup)
            session->EndChanges(); // large enough to be kept as an image
        kill(session);
        session = open();
        session->QIRTableRecordSource(u"Pumps"_s);
        EXPECT_EQ(session->QirTableRecordsCount(), 400) << inAGroup;
        session->AddField(u"Name"_s, 10);
        session->setQIRTableRecordsPointerOut(400);
        session->QIRTableRecordSetByIndex(1, u"last"_s);
        kill(session);
        session = open();
        session->QIRTableRecordSource(u"Pumps"_s);
        session->setQIRTableRecordsPointerOut(400);
        EXPECT_EQ(session->QIRTableRecordSetByIndex(1), QVariant(u"last"_s)) << inAGroup;
        session->setDtbHasChanged(false);
    }
}

TEST_F(ComponentJournal, WhatIsTypedAfterRecordsWithoutFieldsWereSavedSurvivesACrash) {
    auto session = open();
    leaveRecordsAlone(*session, 5);
    session->SaveDtb();
    EXPECT_EQ(session->QirTableRecordsCount(), 0);
    session->AddField(u"Name"_s, 10);
    session->AddRecord();
    write(*session, u"Main"_s);
    kill(session);
    session = open();
    EXPECT_EQ(textIn(*session), u"Main"_s);
    EXPECT_EQ(session->QirTableRecordsCount(), 1);
}

TEST_F(ComponentJournal, WhatIsTypedAfterASaveOfSuchRecordsFailedSurvivesACrash) {
    auto session = open();
    leaveRecordsAlone(*session, 5);
    m_ops.onCall = [](FileCall call, const std::string &) {
        return call == FileCall::Allocate ? std::optional(SystemError{ENOSPC}) : std::nullopt;
    };
    EXPECT_THROW(session->SaveDtb(), std::exception);
    m_ops.onCall = {};
    session->AddField(u"Name"_s, 10);
    session->AddRecord();
    const int records = session->QirTableRecordsCount();
    write(*session, u"Main"_s);
    kill(session);
    session = open();
    EXPECT_EQ(textIn(*session), u"Main"_s);
    EXPECT_EQ(session->QirTableRecordsCount(), records);
}

TEST_F(ComponentJournal, ClosingWithNoGivesTheRecoveredChangesUp) {
    auto session = open();
    write(*session, u"Main"_s);
    kill(session);
    session = open();
    session->setDtbHasChanged(false);
    session.reset();
    session = open();
    EXPECT_EQ(textIn(*session), u""_s);
    EXPECT_FALSE(session->DtbHasChanged());
    EXPECT_EQ(m_notices, QStringList());
    ASSERT_EQ(journals().size(), 1); // "No" was a key press away
    EXPECT_TRUE(journals()[0].endsWith(u".ended"_s));
}

// A file with two names is written in place.

TEST_F(ComponentJournal, WhatWasTypedSurvivesASaveInPlaceThatIsCutShort) {
    QFile::remove(path(u"other.DDB"_s));
    ASSERT_EQ(::link(systemPath(path()).c_str(), systemPath(path(u"other.DDB"_s)).c_str()), 0);
    for (int call = 0;; ++call) {
        auto session = open();
        const QString text = u"word %1"_s.arg(call);
        write(*session, text);
        int made = 0;
        failFrom(call, true, made);
        bool isSaved = false;
        try {
            session->SaveDtb();
            isSaved = true;
        } catch (const std::exception &raised) {
            isSaved = QString::fromUtf8(raised.what()).contains(u"was saved, but"_s);
        }
        const bool wasMet = made > call;
        kill(session);
        session = open();
        EXPECT_EQ(textIn(*session), text) << "dead from call " << call;
        EXPECT_TRUE(isSaved || session->DtbHasChanged()) << "dead from call " << call;
        session->SaveDtb();
        if (!wasMet)
            break;
    }
}

TEST_F(ComponentJournal, NoAfterASaveInPlaceThatFailedLeavesTheFileAsItWas) {
    QFile::remove(path(u"other.DDB"_s));
    ASSERT_EQ(::link(systemPath(path()).c_str(), systemPath(path(u"other.DDB"_s)).c_str()), 0);
    for (const bool forEver : {false, true}) {
        for (int call = 0;; ++call) {
            auto session = open();
            const QString text = u"%1 %2"_s.arg(call).arg(forEver);
            const QString before = textIn(*session);
            write(*session, text);
            int made = 0;
            failFrom(call, forEver, made);
            QString error;
            try {
                session->SaveDtb();
            } catch (const std::exception &raised) {
                error = QString::fromUtf8(raised.what());
            }
            m_ops.onCall = {};
            session->setDtbHasChanged(false); // the answer is No
            session.reset();
            session = open();
            const bool isSaved = error.isEmpty() || error.contains(u"was saved, but"_s);
            EXPECT_TRUE(textIn(*session) == (isSaved ? text : before) || error.contains(u"found out"_s))
                << call << ": " << error.toStdString();
            EXPECT_FALSE(session->DtbHasChanged()) << call << ": " << m_notices.join(u'\n').toStdString();
            if (made <= call)
                break;
        }
    }
}

TEST_F(ComponentJournal, ClosingWithYesWritesThem) {
    auto session = open();
    write(*session, u"Main"_s);
    kill(session);
    session = open();
    session.reset();
    EXPECT_EQ(textInFile(), u"Main"_s);
    EXPECT_EQ(journals(), QStringList());
}

TEST_F(ComponentJournal, ASaveEndsTheJournalAndStartsOneWithItsSteps) {
    auto session = open();
    write(*session, u"one"_s);
    const QStringList first = journals();
    EXPECT_EQ(first.size(), 1);
    session->SaveDtb();
    EXPECT_EQ(journals().size(), 1);
    EXPECT_NE(journals(), first);
    write(*session, u"two"_s);
    EXPECT_EQ(journals().size(), 1);
    kill(session);
    EXPECT_EQ(textInFile(), u"one"_s);
    session = open();
    EXPECT_EQ(textIn(*session), u"two"_s);
}

TEST_F(ComponentJournal, ASecondCrashDuringOrAfterTheRecoveryLosesNothing) {
    auto session = open();
    write(*session, u"one"_s);
    kill(session);
    session = open();
    kill(session);
    session = open();
    EXPECT_EQ(textIn(*session), u"one"_s);
    write(*session, u"two"_s);
    kill(session);
    session = open();
    EXPECT_EQ(textIn(*session), u"two"_s);
}

TEST_F(ComponentJournal, ClearingTheFlagDropsNothing) {
    auto session = open();
    write(*session, u"one"_s);
    session->setDtbHasChanged(false);
    write(*session, u"two"_s);
    session->setDtbHasChanged(false);
    kill(session);
    session = open();
    EXPECT_EQ(textIn(*session), u"two"_s);
}

TEST_F(ComponentJournal, ACommandThatWasCutShortIsUndoneAndOneThatFailedToo) {
    auto session = open();
    write(*session, u"before"_s);
    session->BeginChanges();
    write(*session, u"failed"_s);
    session->CancelChanges();
    session->BeginChanges();
    write(*session, u"cut short"_s);
    kill(session);
    session = open();
    EXPECT_EQ(textIn(*session), u"before"_s);
}

TEST_F(ComponentJournal, BothPanesOnOneFileKeepTheirOwn) {
    auto left = open();
    auto right = open();
    write(*left, u"left"_s);
    write(*right, u"right"_s);
    EXPECT_EQ(journals().size(), 2);
    kill(left);
    EXPECT_EQ(textIn(*right), u"right"_s);
    auto again = open();
    EXPECT_EQ(textIn(*again), u"left"_s);
    kill(again);
    kill(right);
    // Two sessions died: one is taken up, the other kept as a file of its own.
    again = open();
    const QString shown = textIn(*again);
    EXPECT_TRUE(shown == u"left"_s || shown == u"right"_s) << shown.toStdString();
    const QStringList rescued = namesIn(state() + u"/rescue"_s);
    ASSERT_EQ(rescued.size(), 1);
    auto other = component();
    ASSERT_TRUE(other->LoadDtb(state() + u"/rescue/"_s + rescued[0], {}));
    EXPECT_EQ(textIn(*other), shown == u"left"_s ? u"right"_s : u"left"_s);
    EXPECT_EQ(m_notices.size(), 2);
}

TEST_F(ComponentJournal, ChangesToAVersionThatAnotherProgramReplacedAreNeverMerged) {
    auto session = open();
    write(*session, u"mine"_s);
    kill(session);
    {
        auto other = component();
        other->setLeaveJournal(true);
        ASSERT_TRUE(other->LoadDtb(path(), {}));
        write(*other, u"theirs"_s);
        other->SaveDtb();
    }
    session = open();
    EXPECT_EQ(textIn(*session), u"theirs"_s);
    EXPECT_FALSE(session->DtbHasChanged());
    const QStringList rescued = namesIn(state() + u"/rescue"_s);
    ASSERT_EQ(rescued.size(), 1);
    auto aside = component();
    ASSERT_TRUE(aside->LoadDtb(state() + u"/rescue/"_s + rescued[0], {}));
    EXPECT_EQ(textIn(*aside), u"mine"_s);
}

TEST_F(ComponentJournal, ChangesToAVersionThatAConflictMovedAsideAreMadeOnThatVersion) {
    auto session = open();
    session->QIRTableRecordSource(u"Pumps"_s);
    for (int i = 0; i < 5; ++i)
        session->AddRecord();
    session->SaveDtb();
    session->setQIRTableRecordsPointerOut(6);
    session->QIRTableRecordSetByIndex(1, u"mine"_s); // there is no such record in the other program's version
    // Another program that knew of the version before exchanged its own for this one.
    const QByteArray moved = contentOf(path());
    kill(session);
    FileHeader theirs = readBytes(moved)->header;
    theirs.saveId.fill(0xee);
    Database smaller;
    smaller.addTable(u"Pumps"_s);
    writeContent(path(), containerBytes(encodeBody(smaller), {}, theirs));
    writeContent(path(u"PUMPS.DDB (conflict 2024-01-31 23.59.59)"_s), moved);

    session = open();
    EXPECT_EQ(session->QIRTablesCount(), 1);
    EXPECT_FALSE(session->DtbHasChanged());
    EXPECT_EQ(m_notices.size(), 1);
    const QStringList rescued = namesIn(state() + u"/rescue"_s);
    ASSERT_EQ(rescued.size(), 1);
    auto aside = component();
    ASSERT_TRUE(aside->LoadDtb(state() + u"/rescue/"_s + rescued[0], {}));
    QStringList values;
    aside->QIRTableRecordSource(u"Pumps"_s);
    aside->GetQirRecord(6, values);
    EXPECT_EQ(values.value(1), u"mine"_s);
}

TEST_F(ComponentJournal, OfChangesThatFitNoVersionAnyMoreTheUserIsTold) {
    for (const bool isFirstPossible : {true, false}) {
        auto session = open();
        session->QIRTableRecordSource(u"Pumps"_s);
        for (int i = 0; i < 5; ++i)
            session->AddRecord();
        session->SaveDtb();
        if (isFirstPossible)
            write(*session, u"possible"_s);
        session->setQIRTableRecordsPointerOut(6);
        session->QIRTableRecordSetByIndex(1, u"impossible"_s);
        kill(session);
        // Another program's version, without these records, and nothing is left of the one before.
        FileHeader theirs = readBytes(contentOf(path()))->header;
        theirs.saveId.fill(isFirstPossible ? 0xee : 0xdd);
        Database smaller;
        smaller.addTable(u"Pumps"_s);
        writeContent(path(), containerBytes(encodeBody(smaller), {}, theirs));

        session = open();
        EXPECT_FALSE(session->DtbHasChanged());
        const QString notices = m_notices.join(u'\n');
        const QStringList rescued = namesIn(state() + u"/rescue"_s);
        EXPECT_EQ(rescued.size(), 1); // that of the first round
        if (isFirstPossible) {
            EXPECT_TRUE(notices.contains(u"some of these changes could not be made"_s)) << notices.toStdString();
        } else {
            EXPECT_TRUE(notices.contains(u"which cannot be made in this one"_s)) << notices.toStdString();
        }
        EXPECT_EQ(journals().filter(u".ended"_s).size(), isFirstPossible ? 1 : 2); // kept for some days
        const auto isNamed = [&](const QString &name) { return notices.contains(state() + u"/journal/"_s + name); };
        EXPECT_EQ(std::ranges::count_if(journals(), isNamed), 1) << notices.toStdString();
    }
}

TEST_F(ComponentJournal, ACallerThatOnlyReadsLeavesItAlone) {
    auto session = open();
    write(*session, u"typed"_s);
    kill(session);
    const QByteArray content = contentOf(state() + u"/journal/"_s + journals().value(0));
    EXPECT_EQ(textInFile(), u""_s);
    EXPECT_EQ(contentOf(state() + u"/journal/"_s + journals().value(0)), content);
    session = open();
    EXPECT_EQ(textIn(*session), u"typed"_s);
}

TEST_F(ComponentJournal, AFailedSaveKeepsIt) {
    auto session = open();
    write(*session, u"typed"_s);
    m_ops.onOpen = [](unsigned flags) { return flags & O_RDWR ? std::optional(SystemError{ENOSPC}) : std::nullopt; };
    EXPECT_THROW(session->SaveDtb(), std::exception);
    m_ops.onOpen = {};
    write(*session, u"typed on"_s);
    kill(session);
    session = open();
    EXPECT_EQ(textIn(*session), u"typed on"_s);
}

TEST_F(ComponentJournal, ACrashBetweenTheSaveAndItsEndShowsTheSavedVersion) {
    auto session = open();
    write(*session, u"saved"_s);
    int syncs = 0;
    m_ops.onCall = [&](FileCall call, const std::string &) -> std::optional<SystemError> {
        syncs += call == FileCall::Sync; // the new version's, then the folder's after the exchange
        return syncs > 1 && call != FileCall::Close ? std::optional(SystemError{EIO}) : std::nullopt;
    };
    EXPECT_THROW(session->SaveDtb(), std::exception);
    EXPECT_GT(syncs, 1);
    kill(session);
    EXPECT_EQ(journals().size(), 1);
    session = open();
    EXPECT_EQ(textIn(*session), u"saved"_s);
    EXPECT_FALSE(session->DtbHasChanged());
    EXPECT_EQ(journals(), QStringList());
}

TEST_F(ComponentJournal, ANewNameLeavesTheOldFilesJournalNoTrace) {
    auto session = open();
    write(*session, u"typed"_s);
    ASSERT_TRUE(session->SetDatabaseFileName(path(u"OTHER.DDB"_s)));
    session->setDtbHasChanged(true);
    session->SaveDtb();
    EXPECT_EQ(journals().size(), 1) << "that of the new one";
    write(*session, u"typed on"_s);
    kill(session);
    EXPECT_EQ(textIn(*open()), u""_s);
    EXPECT_EQ(textIn(*open({}, u"OTHER.DDB"_s)), u"typed on"_s);
}

TEST_F(ComponentJournal, APasswordChangeIsNotMadeAgain) {
    auto session = open();
    session->NewPassword({}, u"new"_s);
    write(*session, u"typed"_s);
    EXPECT_FALSE(contentOf(state() + u"/journal/"_s + journals().value(0)).contains("typed"));
    kill(session);
    session = open(); // the file is still open; what was typed waits for its password
    EXPECT_EQ(textIn(*session), u""_s);
    EXPECT_EQ(m_notices.size(), 1);
    session.reset();
    session = open(u"new"_s);
    EXPECT_EQ(textIn(*session), u"typed"_s);
}

TEST_F(ComponentJournal, AProtectedFilesJournalIsSealedWithTheKeyOnDiskUntilTheSave) {
    {
        auto session = open();
        session->NewPassword({}, u"first"_s);
        session->SaveDtb();
    }
    auto session = open(u"first"_s);
    session->NewPassword(u"first"_s, u"second"_s);
    write(*session, u"typed"_s);
    kill(session);
    session = open(u"first"_s);
    EXPECT_EQ(textIn(*session), u"typed"_s);
    session->NewPassword(u"first"_s, u"second"_s);
    write(*session, u"typed"_s);
    m_notices.clear();
    session->SaveDtb();
    EXPECT_EQ(m_notices, QStringList());
    write(*session, u"typed on"_s);
    kill(session);
    EXPECT_EQ(textInFile(u"second"_s), u"typed"_s);
    EXPECT_EQ(textIn(*open(u"second"_s)), u"typed on"_s);
}

TEST_F(ComponentJournal, AReleaseThatCouldOnlyRescueRetiresIt) {
    auto session = open();
    write(*session, u"typed"_s);
    writeContent(path(), containerBytes("theirs"));
    session.reset();
    ASSERT_EQ(journals().size(), 1);
    EXPECT_TRUE(journals()[0].endsWith(u".ended"_s));
    EXPECT_EQ(namesIn(state() + u"/rescue"_s).size(), 1);
}

TEST_F(ComponentJournal, ANewDatabaseHasOneFromItsFirstSaveOn) {
    auto session = component();
    session->AddTable(u"Pumps"_s);
    ASSERT_TRUE(session->SetDatabaseFileName(path(u"NEW.DDB"_s)));
    write(*session, u"first"_s);
    EXPECT_EQ(journals(), QStringList());
    session->SaveDtb();
    write(*session, u"second"_s);
    EXPECT_EQ(journals().size(), 1);
    kill(session);
    EXPECT_EQ(textIn(*open({}, u"NEW.DDB"_s)), u"second"_s);
}

TEST_F(ComponentJournal, ItIsSyncedByATimerWhereEventsAreRun) {
    int count = 1;
    char name[] = "test";
    char *arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    auto session = open();
    int syncs = 0;
    m_ops.onCall = [&](FileCall call, const std::string &) -> std::optional<SystemError> {
        syncs += call == FileCall::SyncData;
        return std::nullopt;
    };
    for (int i = 0; i < 10; ++i)
        write(*session, QString::number(i));
    EXPECT_EQ(syncs, 0);
    while (syncs == 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(syncs, 1);
}

} // namespace
