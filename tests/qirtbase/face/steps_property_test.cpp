#include "tests/model/ComponentPair.h"
#include "tests/qirtbase/face/JournalSessions.h"
#include "tests/support/Counts.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

using namespace Qt::StringLiterals;
using namespace qir;

// Every call of a component at random, steps taken back and made again among them, held to a plain model of the rules:
// in one session, across saves, and across sessions that die.

namespace {

class SeededChoices : public test::Choices {
public:
    explicit SeededChoices(std::uint32_t seed)
        : m_random(seed) {}

    int inRange(int from, int to) override {
        return from + static_cast<int>(m_random() % static_cast<std::uint32_t>(to - from));
    }
    std::uint64_t bits() override { return static_cast<std::uint64_t>(m_random()) << 32 | m_random(); }

private:
    std::mt19937 m_random;
};

constexpr int seeds = 14; // 20,000 calls and more in all
constexpr int callsOfASeed = 500;

class Steps : public JournalSessions, public testing::WithParamInterface<int> {
protected:
    Steps()
        : choices(static_cast<std::uint32_t>(GetParam()) + 1U)
        , pair(choices) {
        session = component();
        EXPECT_TRUE(session->SetDatabaseFileName(path(u"MODEL.DDB"_s)));
        pair.recovered(*session); // the same, empty one
        do {
            callAtRandom(60);
            pair.compareAll(); // ends groups, which may undo all
        } while (!session->DtbHasChanged());
        pair.setPassword(GetParam() % 2 == 0 ? QString() : u"first"_s);
        pair.save();
        session.reset();
        session = open(pair.password(), u"MODEL.DDB"_s); // without steps
        pair.reopened(*session);
        first = bodyOf(u"MODEL.DDB"_s);
    }

    void callAtRandom(int calls) {
        for (int call = 0; call < calls; ++call) {
            if (passwordsChange && choices.inRange(0, 40) == 0)
                pair.passwordAtRandom();
            else if (choices.inRange(0, 4) == 0)
                pair.stepAtRandom();
            else
                pair.callAtRandom();
            pair.compare();
        }
    }

    /// The program dies, and the file is opened again.
    void restart() {
        kill(session);
        session = open(pair.password(), u"MODEL.DDB"_s);
        pair.recovered(*session);
        pair.compare();
    }

    QByteArray bodyOf(const QString &name) const {
        const QByteArray body = loadedBody(path(name), testOptions(), pair.password());
        EXPECT_FALSE(body.startsWith("ERROR: ")) << body.toStdString();
        return body;
    }

    void saveUnder(const QString &name) {
        ASSERT_TRUE(session->SetDatabaseFileName(path(name)));
        session->setDtbHasChanged(true);
        session->SaveDtb();
    }

    void expectFirstBody() {
        saveUnder(u"UNDONE.DDB"_s);
        EXPECT_EQ(bodyOf(u"UNDONE.DDB"_s), first);
    }

    bool passwordsChange = false;
    SeededChoices choices;
    test::ComponentPair pair;
    std::unique_ptr<clsQirDatabase> session;
    QByteArray first;
};

TEST_P(Steps, TakenBackAllGiveWhatWasLoadedByteForByte) {
    callAtRandom(callsOfASeed);
    pair.undoAll();
    pair.compareAll();
    EXPECT_FALSE(session->DtbHasChanged());
    expectFirstBody();
}

TEST_P(Steps, LeaveANewPasswordAlone) {
    passwordsChange = true;
    const QString before = pair.password();
    callAtRandom(callsOfASeed / 2);
    pair.endGroups();
    pair.setPassword(before + u"!"_s);
    pair.undoAll();
    pair.compareAll();
    EXPECT_TRUE(session->DtbHasChanged()) << "a password is no step";
    expectFirstBody();
}

TEST_P(Steps, HoldAcrossSavesByteForByte) {
    passwordsChange = true;
    for (int save = 0; save < 5; ++save) {
        callAtRandom(callsOfASeed / 5);
        pair.endGroups();
        if (choices.inRange(0, 3) == 0)
            pair.revert();
        if (choices.inRange(0, 3) == 0) {
            ASSERT_TRUE(session->SetDatabaseFileName(path(u"OTHER %1.DDB"_s.arg(save))));
        }
        pair.save();
        pair.compare();
    }
    pair.undoAll();
    pair.compareAll();
    expectFirstBody();
}

TEST_P(Steps, AreThereAgainAfterACrash) {
    for (int death = 0; death < 10; ++death) {
        callAtRandom(callsOfASeed / 10);
        if (choices.inRange(0, 2) == 0) {
            pair.endGroups();
            if (choices.inRange(0, 3) == 0)
                pair.revert();
            pair.save();
            callAtRandom(choices.inRange(0, callsOfASeed / 20));
        }
        restart();
    }
    pair.undoAll();
    pair.compareAll();
    expectFirstBody(); // the steps are those of all sessions
}

class StepMemory : public JournalSessions {
protected:
    StepMemory() { qputenv("QIR_STEPS_MIB", "0"); }
    ~StepMemory() override { qunsetenv("QIR_STEPS_MIB"); }
};

TEST_F(StepMemory, TheUserIsToldOnceThatTheFirstStepsAreNoMore) {
    auto session = open();
    for (const QString &text : {u"one"_s, u"two"_s, u"three"_s}) {
        session->BeginStep(u"Edit"_s, QString());
        write(*session, text);
        session->EndStep();
    }
    EXPECT_EQ(session->StepsCount(), 1);
    EXPECT_TRUE(session->StepsDropped());
    EXPECT_EQ(m_notices.filter(u"can no longer be taken back"_s).size(), 1) << m_notices.join(u'\n').toStdString();
    session->Undo();
    EXPECT_EQ(textIn(*session), u"two"_s);
    EXPECT_TRUE(session->DtbHasChanged());
}

TEST_F(StepMemory, ACallerWithoutAUserKeepsNoSteps) {
    auto session = component();
    session->setLeaveJournal(true);
    ASSERT_TRUE(session->LoadDtb(path(), QString()));
    session->BeginStep(u"Edit"_s, QString());
    write(*session, u"one"_s);
    session->EndStep();
    EXPECT_EQ(session->StepsCount(), 0);
    EXPECT_EQ(textIn(*session), u"one"_s);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Steps, testing::Range(0, countFrom("QIR_STEP_SEEDS", seeds)));

} // namespace
