#include "tests/qirtbase/face/JournalSessions.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

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
    auto session = open();
    type(*session, u"1"_s);
    session->SaveDtb();
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

} // namespace
