#include "tests/qirtbase/face/JournalSessions.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;
using namespace qir;

// Steps from before the last save, after a crash.

namespace {

class KeptSteps : public JournalSessions {
protected:
    static void type(clsQirDatabase &session, const QString &text) {
        session.BeginStep(u"Edit "_s + text, QString());
        write(session, text);
        session.EndStep();
    }
    static void inStep(clsQirDatabase &session, const std::function<void()> &body) {
        session.QIRTableRecordSource(u"Pumps"_s);
        session.BeginStep(u"Step"_s, QString());
        body();
        session.EndStep();
    }
    /// A session that has made one step and saved it; `before` is given the file of before the save.
    std::unique_ptr<clsQirDatabase> savedAfterAStep(QByteArray *before = nullptr) {
        auto session = open();
        type(*session, u"1"_s);
        if (before)
            *before = contentOf(path());
        session->SaveDtb();
        return session;
    }
    void crash(std::unique_ptr<clsQirDatabase> &session, const QString &password = {}) {
        kill(session);
        session = open(password);
        EXPECT_EQ(m_notices.filter(u"damaged"_s), QStringList());
        EXPECT_EQ(m_notices.filter(u"kept"_s), QStringList());
    }
    /// All tables with their names, fields and values.
    static QString allOf(clsQirDatabase &session) {
        QStringList lines;
        for (int table = 1; table <= session.QIRTablesCount(); ++table) {
            session.QIRTableRecordSource(session.QIRTableName(table));
            lines << u"table "_s + session.QIRTableName(table);
            for (int field = 1; field <= session.QirTableFieldsCount(); ++field)
                lines << u"%1 %2 %3"_s.arg(session.QIRTableFieldName(field))
                             .arg(session.QIRTableFieldType(field))
                             .arg(session.QIRTableFieldSize(field));
            QStringList values;
            for (int record = 1; record <= session.QirTableRecordsCount(); ++record) {
                session.GetQirRecord(record, values);
                lines << values.join(u'|');
            }
        }
        return lines.join(u'\n');
    }
    /// Does each in a step of its own, saves, crashes, and expects all states of before to be there again.
    void expectAllBack(const std::vector<std::function<void(clsQirDatabase &)>> &commands) {
        auto session = open();
        QStringList states = {allOf(*session)};
        for (const auto &command : commands) {
            inStep(*session, [&] { command(*session); });
            states << allOf(*session);
        }
        const int steps = static_cast<int>(states.size()) - 1;
        ASSERT_EQ(session->StepsDone(), steps);
        session->SaveDtb();
        crash(session);
        expectStates(*session, states, steps);
        session->GoToStep(steps / 2);
        crash(session);
        EXPECT_EQ(session->StepsDone(), steps / 2);
        expectStates(*session, states, steps);
    }
    static void expectStates(clsQirDatabase &session, const QStringList &states, int saved) {
        ASSERT_EQ(session.StepsCount(), states.size() - 1);
        const auto expectAt = [&](int step) {
            session.GoToStep(step);
            EXPECT_EQ(allOf(session), states[step]) << "step " << step;
            EXPECT_EQ(session.DtbHasChanged(), step != saved) << "step " << step;
        };
        const auto last = static_cast<int>(states.size()) - 1;
        for (int step = last; step >= 0; --step)
            expectAt(step);
        for (int step = 1; step <= last; ++step)
            expectAt(step);
    }
};

TEST_F(KeptSteps, OfBeforeTheLastSaveAreThereAfterACrash) {
    auto session = open();
    type(*session, u"1"_s);
    const double time = session->StepTime(1);
    type(*session, u"2"_s);
    session->SaveDtb();
    type(*session, u"3"_s);
    crash(session);
    ASSERT_EQ(session->StepsDone(), 3);
    EXPECT_EQ(session->StepName(1), u"Edit 1"_s);
    EXPECT_EQ(session->StepTime(1), time);
    EXPECT_TRUE(session->DtbHasChanged());
    session->Undo();
    EXPECT_EQ(textIn(*session), u"2"_s);
    EXPECT_FALSE(session->DtbHasChanged());
    session->Undo();
    EXPECT_EQ(textIn(*session), u"1"_s);
    EXPECT_TRUE(session->DtbHasChanged());
    session->Undo();
    EXPECT_EQ(textIn(*session), u""_s);
    session->GoToStep(3);
    EXPECT_EQ(textIn(*session), u"3"_s);
}

TEST_F(KeptSteps, AreThereAfterACrashRightBehindTheSave) {
    auto session = savedAfterAStep();
    crash(session);
    EXPECT_EQ(m_notices, QStringList()) << "nothing is unsaved";
    EXPECT_FALSE(session->DtbHasChanged());
    EXPECT_EQ(session->StepsDone(), 1);
    session->Undo();
    EXPECT_EQ(textIn(*session), u""_s);
    EXPECT_TRUE(session->DtbHasChanged());
}

TEST_F(KeptSteps, LiveThroughManySavesAndCrashes) {
    auto session = open();
    for (int i = 1; i <= 6; ++i) {
        type(*session, QString::number(i));
        session->SaveDtb();
        crash(session);
        ASSERT_EQ(session->StepsDone(), i);
    }
    for (int i = 5; i >= 0; --i) {
        session->Undo();
        EXPECT_EQ(textIn(*session), i == 0 ? QString() : QString::number(i));
    }
}

TEST_F(KeptSteps, ThatWereUndoneBeforeTheSaveCanBeMadeAgain) {
    auto session = open();
    for (int i = 1; i <= 4; ++i)
        type(*session, QString::number(i));
    session->GoToStep(2);
    session->SaveDtb();
    crash(session);
    EXPECT_EQ(session->StepsDone(), 2);
    ASSERT_EQ(session->StepsCount(), 4);
    EXPECT_FALSE(session->DtbHasChanged());
    session->GoToStep(4);
    EXPECT_EQ(textIn(*session), u"4"_s);
    session->GoToStep(0);
    EXPECT_EQ(textIn(*session), u""_s);
}

TEST_F(KeptSteps, UndoneBehindTheSaveStayUndoneInACrash) {
    auto session = open();
    type(*session, u"1"_s);
    type(*session, u"2"_s);
    session->SaveDtb();
    session->Undo();
    session->Undo();
    crash(session);
    EXPECT_EQ(textIn(*session), u""_s);
    EXPECT_EQ(session->StepsDone(), 0);
    ASSERT_EQ(session->StepsCount(), 2);
    session->Redo();
    session->Redo();
    EXPECT_EQ(textIn(*session), u"2"_s);
    EXPECT_FALSE(session->DtbHasChanged());
}

TEST_F(KeptSteps, OfEveryKindAreThereAgain) {
    const auto text = [](const QString &value) {
        return [value](clsQirDatabase &session) {
            for (int record = 1; record <= session.QirTableRecordsCount(); ++record) {
                session.setQIRTableRecordsPointerOut(record);
                session.QIRTableRecordSetByIndex(1, QString(value + QString::number(record)));
            }
        };
    };
    expectAllBack({
        [](clsQirDatabase &session) { session.AppendRecords(6); },
        text(u"long text of record "_s),
        [](clsQirDatabase &session) { session.RemoveRecord(3); },
        [](clsQirDatabase &session) { session.AddField(u"Speed"_s, 7); },
        [](clsQirDatabase &session) {
            session.setQIRTableRecordsPointerOut(2);
            session.QIRTableRecordSetByIndex(2, 1.5);
        },
        [](clsQirDatabase &session) { session.RenameField(1, u"Name"_s); },
        [](clsQirDatabase &session) { session.ResizeField(1, 5); },
        [](clsQirDatabase &session) { session.ResizeField(1, 20); },
        [](clsQirDatabase &session) { session.RemoveField(1); },
        [](clsQirDatabase &session) { session.AddTable(u"Valves"_s); },
        [](clsQirDatabase &session) { session.RenameTable(2, u"Gates"_s); },
        [](clsQirDatabase &session) { session.RemoveTable(2); },
        [](clsQirDatabase &session) { session.AddTable(u"Third"_s); },
        [](clsQirDatabase &session) {
            session.RemoveField(1);
            session.AddField(u"A"_s, 10);
            session.AppendRecords(300);
        },
        text(u"x"_s),
        [](clsQirDatabase &session) { session.RenameTable(1, u"Motors"_s); },
    });
}

TEST_F(KeptSteps, AWayBackToWhatIsSavedIsThatAfterACrashToo) {
    auto session = savedAfterAStep();
    type(*session, u"2"_s);
    session->RevertToSaved(u"Revert"_s);
    EXPECT_FALSE(session->DtbHasChanged());
    crash(session);
    EXPECT_FALSE(session->DtbHasChanged());
    ASSERT_EQ(session->StepsDone(), 3);
    session->Undo();
    EXPECT_EQ(textIn(*session), u"2"_s);
    EXPECT_TRUE(session->DtbHasChanged());
    session->Redo();
    session->NewPassword({}, u"word"_s);
    session->SaveDtb(); // of the same state
    crash(session, u"word"_s);
    session->GoToStep(1);
    EXPECT_FALSE(session->DtbHasChanged());
    session->GoToStep(2);
    EXPECT_TRUE(session->DtbHasChanged());
}

TEST_F(KeptSteps, AWayBackFromNothingIsAStepThatIsUndoneAlone) {
    auto session = savedAfterAStep();
    session->RevertToSaved(u"Revert"_s);
    session->Undo();
    EXPECT_EQ(textIn(*session), u"1"_s);
    crash(session);
    EXPECT_EQ(textIn(*session), u"1"_s);
    EXPECT_EQ(session->StepsDone(), 1);
    EXPECT_EQ(session->StepsCount(), 2);
    EXPECT_FALSE(session->DtbHasChanged());
}

TEST_F(KeptSteps, LeaveNoJournalWhereNothingIsUnsavedAtTheEnd) {
    auto session = savedAfterAStep();
    EXPECT_EQ(journals().size(), 1);
    session.reset();
    EXPECT_EQ(journals(), QStringList());
    session = open();
    type(*session, u"2"_s);
    session->SaveDtb();
    crash(session);
    session.reset();
    EXPECT_EQ(journals(), QStringList()) << "also where they were taken up";
}

TEST_F(KeptSteps, OfAVersionThatIsNoMoreAreDroppedWithoutAWord) {
    QByteArray old;
    auto session = savedAfterAStep(&old);
    kill(session);
    writeContent(path(), old);
    session = open();
    EXPECT_EQ(m_notices, QStringList());
    EXPECT_EQ(textIn(*session), u""_s);
    EXPECT_EQ(session->StepsCount(), 0);
    EXPECT_EQ(journals(), QStringList());
    EXPECT_EQ(namesIn(state() + u"/rescue"_s), QStringList());
}

TEST_F(KeptSteps, AStepThatNoRecordOfAJournalCanHoldLosesNothingThatIsTypedBehindIt) {
    auto session = open();
    inStep(*session, [&] {
        for (int i = 1; i <= 40; ++i)
            session->AddField(u"Note%1"_s.arg(i), static_cast<int>(ColumnType::Text), 65'535);
        session->AddRecord();
        session->setQIRTableRecordsPointerOut(2);
        for (int field = 1; field <= session->QirTableFieldsCount(); ++field)
            session->QIRTableRecordSetByIndex(field, QString(60'000, u'x'));
    });
    session->SaveDtb();
    inStep(*session, [&] { session->RemoveRecord(2); });
    type(*session, u"1"_s);
    session->SaveDtb();
    type(*session, u"2"_s);
    crash(session);
    EXPECT_EQ(textIn(*session), u"2"_s);
    EXPECT_EQ(session->StepsDone(), 2) << "those behind the large one";
    session->NewPassword({}, u"word"_s); // reads the journal once more
    type(*session, u"3"_s);
    kill(session);
    session = open();
    EXPECT_EQ(textIn(*session), u"1"_s);
    EXPECT_EQ(m_notices.filter(u"sealed with another password"_s).size(), 1) << m_notices.join(u'\n').toStdString();
}

TEST_F(KeptSteps, GiveWayWhereTheDiskHasNoRoomForWhatIsTypedBehindThem) {
    for (const bool undoes : {false, true}) {
        auto session = open();
        type(*session, u"1"_s);
        type(*session, u"2"_s);
        session->SaveDtb();
        m_notices.clear();
        bool isFull = true;
        m_ops.onCall = [&](FileCall call, const std::string &) {
            const bool writes = call == FileCall::Write || call == FileCall::WriteAt;
            return writes && std::exchange(isFull, isFull && !writes) ? std::optional(SystemError{ENOSPC})
                                                                      : std::nullopt;
        };
        if (undoes)
            session->Undo();
        else
            type(*session, u"3"_s);
        m_ops.onCall = {};
        EXPECT_FALSE(isFull);
        EXPECT_EQ(m_notices, QStringList());
        crash(session);
        EXPECT_EQ(textIn(*session), undoes ? u"1"_s : u"3"_s);
        EXPECT_EQ(session->StepsDone(), undoes ? 0 : 1) << undoes;
        session->setDtbHasChanged(false);
        session.reset();
    }
}

TEST_F(KeptSteps, OfAVersionThatIsNoMoreWithADamageBehindThemAreKeptForSomeDays) {
    QByteArray old;
    auto session = savedAfterAStep(&old);
    type(*session, u"2"_s);
    kill(session);
    ASSERT_EQ(journals().size(), 1);
    const QString journal = state() + u"/journal/"_s + journals()[0];
    QByteArray content = contentOf(journal);
    content.back() = static_cast<char>(content.back() ^ 1);
    writeContent(journal, content);
    writeContent(path(), old);
    session = open();
    EXPECT_EQ(m_notices.filter(u"damaged"_s).size(), 1) << m_notices.join(u'\n').toStdString();
    ASSERT_EQ(journals().size(), 1);
    EXPECT_TRUE(journals()[0].endsWith(u".ended"_s)) << journals()[0].toStdString();
}

TEST_F(KeptSteps, OfAnOriginalAreNeitherToldOfNorTakenByItsCopy) {
    QByteArray older;
    auto session = savedAfterAStep(&older);
    kill(session);
    for (const QByteArray &content : {contentOf(path()), older}) {
        writeContent(path(u"COPY.DDB"_s), content);
        auto copy = open({}, u"COPY.DDB"_s);
        EXPECT_EQ(m_notices, QStringList());
        EXPECT_EQ(copy->StepsCount(), 0);
        EXPECT_EQ(journals().size(), 1);
    }
    session = open();
    EXPECT_EQ(session->StepsDone(), 1);
}

TEST_F(KeptSteps, OfADatabaseThatStoodHereBeforeAreNotToldOf) {
    {
        auto other = component();
        ASSERT_TRUE(other->SetDatabaseFileName(path(u"OTHER.DDB"_s)));
        other->AddTable(u"Pumps"_s);
        other->SaveDtb();
    }
    auto session = savedAfterAStep();
    kill(session);
    writeContent(path(), contentOf(path(u"OTHER.DDB"_s)));
    session = open();
    EXPECT_EQ(m_notices, QStringList());
}

TEST_F(KeptSteps, OfAProtectedFileAreNotToBeRead) {
    auto session = open();
    session->NewPassword({}, u"word"_s);
    type(*session, u"hidden behind a word"_s);
    session->SaveDtb();
    type(*session, u"another"_s);
    session->SaveDtb();
    ASSERT_EQ(journals().size(), 1);
    const QByteArray journal = contentOf(state() + u"/journal/"_s + journals()[0]);
    EXPECT_FALSE(journal.contains("hidden"));
    EXPECT_FALSE(journal.contains("Edit"));
    crash(session, u"word"_s);
    session->Undo();
    EXPECT_EQ(textIn(*session), u"hidden behind a word"_s);
}

TEST_F(KeptSteps, OfTheTimeOfAPasswordAreNotKeptWithoutIt) {
    auto session = open();
    session->NewPassword({}, u"word"_s);
    type(*session, u"hidden behind a word"_s);
    type(*session, u"plain"_s);
    session->SaveDtb();
    session->NewPassword(u"word"_s, {});
    session->SaveDtb();
    EXPECT_EQ(journals(), QStringList());
    type(*session, u"plain 2"_s);
    session->SaveDtb();
    type(*session, u"plain 3"_s);
    for (const QString &name : journals())
        EXPECT_FALSE(contentOf(state() + u"/journal/"_s + name).contains("hidden"));
    crash(session);
    EXPECT_EQ(textIn(*session), u"plain 3"_s);
    EXPECT_EQ(session->StepsCount(), 1);
}

TEST_F(KeptSteps, ASaveThatFailsAnywhereLosesNothingThatIsUndoneAndTypedBehindIt) {
    for (int call = 0;; ++call) {
        auto session = open();
        type(*session, u"a %1"_s.arg(call));
        type(*session, u"b %1"_s.arg(call));
        int made = 0;
        failFrom(call, false, made);
        try {
            session->SaveDtb();
        } catch (const std::exception &) { // NOLINT(bugprone-empty-catch): whether it was saved is not the question
        }
        m_ops.onCall = {};
        session->Undo();
        EXPECT_EQ(textIn(*session), u"a %1"_s.arg(call));
        const bool isKept = m_notices.filter(u"not kept safe"_s).isEmpty(); // else the user was told
        kill(session);
        session = open();
        EXPECT_TRUE(!isKept || textIn(*session) == u"a %1"_s.arg(call)) << "failed at call " << call;
        session->BeginStep(u"Edit"_s, {});
        session->QIRTableRecordSource(u"Pumps"_s);
        session->AddRecord();
        write(*session, u"c"_s);
        session->EndStep();
        kill(session);
        session = open();
        EXPECT_EQ(textIn(*session), u"c"_s) << "failed at call " << call;
        session->SaveDtb();
        if (made <= call)
            break;
    }
}

TEST_F(KeptSteps, AProgramThatDiesAnywhereInASaveLeavesTheOldOrTheNewState) {
    for (int call = 0;; ++call) {
        auto session = open();
        const QString before = textIn(*session);
        const int steps = session->StepsDone();
        type(*session, u"typed %1"_s.arg(call));
        int made = 0;
        failFrom(call, true, made);
        try {
            session->SaveDtb();
        } catch (const std::exception &) { // NOLINT(bugprone-empty-catch): it is dead
        }
        const bool wasMet = made > call;
        kill(session);
        session = open();
        EXPECT_EQ(textIn(*session), u"typed %1"_s.arg(call)) << "dead from call " << call;
        EXPECT_EQ(m_notices.filter(u"damaged"_s), QStringList());
        if (session->StepsDone() > 0) { // all of them, or none: never a part
            EXPECT_EQ(session->StepsDone(), steps + 1) << "dead from call " << call;
            session->Undo();
            EXPECT_EQ(textIn(*session), before) << "dead from call " << call;
            session->Redo();
        } else {
            EXPECT_FALSE(session->DtbHasChanged()) << "dead from call " << call;
        }
        session->setDtbHasChanged(true);
        session->SaveDtb();
        if (!wasMet)
            break;
        crash(session);
    }
}

} // namespace
