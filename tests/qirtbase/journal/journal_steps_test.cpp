#include "qirtbase/journal/JournalCodec.h"
#include "qirtbase/journal/JournalReplay.h"
#include "tests/qirtbase/journal/JournalTest.h"

#include <gtest/gtest.h>

#include <QFile>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

/// Steps of a session whose program has died.
class JournalSteps : public JournalTest {
protected:
    JournalSteps() {
        bench.open();
        bench.database().keepSteps(History::noBudget);
    }
    void setInStep(const QString &name, const QString &text, const QString &key = {}) {
        bench.database().beginStep(name, key);
        setName(0, text);
        bench.database().endGroup();
    }
    const History &history() { return bench.database().history(); }
};
QIR_FOR_BOTH_FILES(JournalSteps);

TEST_P(JournalSteps, AreThereAgainWithTheirNamesAndTimes) {
    setInStep(u"One"_s, u"1"_s);
    setInStep(u"Two"_s, u"2"_s);
    const std::int64_t time = history().step(1).time;
    crashAndOpen();
    ASSERT_EQ(history().done(), 2U);
    EXPECT_EQ(history().step(0).name, u"One"_s);
    EXPECT_EQ(history().step(1).name, u"Two"_s);
    EXPECT_EQ(history().step(1).time, time);
    bench.database().undoStep();
    EXPECT_EQ(nameAt(0), u"1"_s);
}

TEST_P(JournalSteps, OfOneKeyAreOneAgain) {
    setInStep(u"Edit"_s, u"a"_s, u"1"_s);
    setInStep(u"Edit"_s, u"ab"_s, u"1"_s);
    const QString before = nameAt(0);
    crashAndOpen();
    EXPECT_EQ(nameAt(0), before);
    EXPECT_EQ(history().count(), 1U);
}

TEST_P(JournalSteps, ThatWereUndoneCanBeMadeAgain) {
    setInStep(u"One"_s, u"1"_s);
    setInStep(u"Two"_s, u"2"_s);
    bench.database().undoStep();
    crashAndOpen();
    EXPECT_EQ(nameAt(0), u"1"_s);
    ASSERT_EQ(history().count(), 2U);
    bench.database().redoStep();
    crashAndOpen();
    EXPECT_EQ(nameAt(0), u"2"_s);
    EXPECT_EQ(history().done(), 2U);
}

TEST_P(JournalSteps, UndoingOneCostsAFewBytesWhateverItsSize) {
    bench.database().beginStep(u"Many"_s, {});
    for (int record = 0; record < 2000; ++record)
        bench.database().addRecord(table());
    bench.database().endGroup();
    const qint64 before = QFile(bench.journalPath()).size();
    bench.database().undoStep();
    EXPECT_LE(QFile(bench.journalPath()).size() - before, 1024);
}

TEST_P(JournalSteps, NetOfNothingLeaveTheFileUnchanged) {
    setInStep(u"One"_s, u"1"_s);
    bench.database().undoStep();
    crashAndOpen();
    EXPECT_FALSE(bench.recovered());
    EXPECT_EQ(history().count(), 1U) << "it can be made again";
}

TEST(JournalStepMarks, StandAtTheFrontOfAGroupOnly) {
    Database database;
    database.addTable(u"T"_s);
    const auto fails = [&](const QByteArray &payload) { return !JournalReplay(database).feed(payload); };
    QByteArray outside;
    encodeStepMark(outside, {.kind = StepKind::Step, .name = u"x"_s, .time = 1});
    EXPECT_TRUE(fails(outside));
    QByteArray late;
    encodeMark(late, JournalOperation::GroupBegin);
    encodeChange(late, {.kind = ChangeKind::AddTable, .text = u"U"}, 0);
    encodeStepMark(late, {.kind = StepKind::Step, .name = u"x"_s, .time = 1});
    encodeMark(late, JournalOperation::GroupEnd);
    EXPECT_TRUE(fails(late));
    QByteArray nothing;
    encodeMark(nothing, JournalOperation::StepUndone);
    EXPECT_TRUE(fails(nothing));
    EXPECT_EQ(database.tableCount(), 1U);
}

} // namespace
} // namespace qir
