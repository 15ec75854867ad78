#include "tests/qirtbase/face/JournalSessions.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>

using namespace Qt::StringLiterals;
using namespace qir;

// Steps that changed nothing, and commands that failed.

namespace {

class StepsOfAJournal : public JournalSessions {
protected:
    static void type(clsQirDatabase &session, const QString &text, const QString &key = u"cell"_s) {
        session.BeginStep(u"Edit"_s, key);
        write(session, text);
        session.EndStep();
    }
    static void failedPaste(clsQirDatabase &session, int cells) {
        session.BeginStep(u"Paste"_s, QString());
        session.BeginChanges();
        for (int i = 0; i < cells; ++i)
            write(session, u"pasted %1"_s.arg(i));
        session.CancelChanges();
        session.EndStep();
    }
    void expectAfterACrash(std::unique_ptr<clsQirDatabase> &session) {
        session->QIRTableRecordSource(u"Pumps"_s);
        const int records = session->QirTableRecordsCount();
        const QString text = textIn(*session);
        const int done = session->StepsDone();
        const bool changed = session->DtbHasChanged();
        kill(session);
        session = open();
        EXPECT_EQ(textIn(*session), text);
        EXPECT_EQ(session->QirTableRecordsCount(), records);
        EXPECT_EQ(session->DtbHasChanged(), changed);
        EXPECT_LE(session->StepsDone(), done);
        EXPECT_TRUE(m_notices.filter(u"damaged"_s).isEmpty()) << m_notices.join(u'\n').toStdString();
    }
};

TEST_F(StepsOfAJournal, AStepWithoutEffectThatIsUndoneAndMadeAgainLosesNothingBehindIt) {
    auto session = open();
    const QString before = textIn(*session);
    type(*session, before + u'x');
    type(*session, before);
    session->SaveDtb();
    session->Undo();
    session->Redo();
    session->AddRecord();
    type(*session, u"typed for an hour"_s);
    expectAfterACrash(session);
    EXPECT_EQ(textIn(*session), u"typed for an hour"_s);
}

TEST_F(StepsOfAJournal, ACommandThatFailedIsNoStepForTheJournalEither) {
    auto session = open();
    type(*session, u"saved"_s);
    session->SaveDtb();
    failedPaste(*session, 1);
    session->Undo();
    type(*session, u"typed for an hour"_s, {});
    expectAfterACrash(session);
    EXPECT_EQ(textIn(*session), u"typed for an hour"_s);
}

TEST_F(StepsOfAJournal, ALargeCommandThatFailedIsNoStepForTheJournalEither) {
    auto session = open();
    const QString before = textIn(*session);
    type(*session, u"A"_s);
    failedPaste(*session, 2000);
    EXPECT_EQ(session->StepsDone(), 1);
    session->Undo();
    EXPECT_EQ(textIn(*session), before);
    expectAfterACrash(session);
    session->Redo();
    EXPECT_EQ(textIn(*session), u"A"_s);
}

TEST_F(StepsOfAJournal, AWayBackToWhatIsSavedIsOneStepBeforeACommandThatFails) {
    auto session = open();
    type(*session, u"A"_s);
    session->RevertToSaved(u"Revert"_s);
    failedPaste(*session, 1);
    session->Undo();
    EXPECT_EQ(textIn(*session), u"A"_s);
    expectAfterACrash(session);
    EXPECT_EQ(textIn(*session), u"A"_s);
}

TEST_F(StepsOfAJournal, ANameGivenWithinAGroupOfANewDatabaseBeginsItsSteps) {
    auto session = component();
    session->BeginChanges();
    session->AddTable(u"Pumps"_s);
    ASSERT_TRUE(session->SetDatabaseFileName(path(u"NEW.DDB"_s)));
    session->EndChanges();
    EXPECT_EQ(session->StepsDone(), 1);
    session->Undo();
    EXPECT_EQ(session->QIRTablesCount(), 0);
}

TEST_F(StepsOfAJournal, ASaveThatFailsLeavesRecordsWithoutFieldsAndStepsAsTheyAre) {
    auto session = open();
    session->QIRTableRecordSource(u"Pumps"_s);
    session->RemoveField(1);
    session->AppendRecords(5);
    session->Undo();
    const int records = session->QirTableRecordsCount();
    ASSERT_GT(records, 0);
    m_ops.onCall = [](FileCall call, const std::string &) {
        return call == FileCall::Close ? std::nullopt : std::optional(SystemError{EIO});
    };
    EXPECT_THROW(session->SaveDtb(), std::exception);
    m_ops.onCall = {};
    EXPECT_EQ(session->QirTableRecordsCount(), records);
    EXPECT_EQ(session->StepsDone(), 1);
    EXPECT_EQ(session->StepsCount(), 2);
    session->setDtbHasChanged(true);
    session->SaveDtb();
    EXPECT_EQ(session->QirTableRecordsCount(), 0);
    session->Undo();
    EXPECT_EQ(session->QirTableFieldsCount(), 1);
    EXPECT_EQ(session->QirTableRecordsCount(), 1);
}

TEST_F(StepsOfAJournal, ACancelledGroupBringsBackThatTheFlagWasSetByHand) {
    auto session = open();
    session->BeginChanges();
    session->setDtbHasChanged(true);
    session->CancelChanges();
    EXPECT_FALSE(session->DtbHasChanged());
    type(*session, u"A"_s);
    session->Undo();
    EXPECT_FALSE(session->DtbHasChanged());
}

} // namespace
