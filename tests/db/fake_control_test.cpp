#include "db/QirDatabase.h"
#include "tests/tools/fake/FakeControl.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

// The fake itself: what other tests order of it happens.
struct FakeControlTest : testing::Test {
    UseFake fake;
    QTemporaryDir folder;
    QString file = folder.filePath(u"TEST.DDB"_s);
    QirDatabase database = QirDatabase::create();

    FakeControlTest() {
        EXPECT_TRUE(database.SetDatabaseFileName(file));
        database.AddTable(u"Pumps"_s);
    }
};

TEST_F(FakeControlTest, LogsTheCallsOfAllInstances) {
    const QirDatabase second = QirDatabase::create();
    fake->clearLog();
    database.QIRTablesCount();
    second.QIRTablesCount();
    ASSERT_EQ(fake->log().size(), 2);
    EXPECT_EQ(fake->log().at(0).member, u"QIRTablesCount"_s);
    EXPECT_NE(fake->log().at(0).instance, fake->log().at(1).instance);
}

TEST_F(FakeControlTest, CountsCallsAlsoWhereNothingIsLogged) {
    fake->clearLog();
    fake->setLogging(false);
    const int before = fake->calls();
    for (int i = 0; i < 3; ++i)
        database.QIRTableName(1);
    EXPECT_TRUE(fake->log().isEmpty());
    EXPECT_EQ(fake->calls(u"QIRTableName"_s), 3);
    EXPECT_EQ(fake->calls() - before, 3);
}

TEST_F(FakeControlTest, RaisesAnErrorAtTheCallOrderedAndChangesNothing) {
    fake->failAtCall(2, u"second call"_s);
    database.AddTable(u"Valves"_s);
    EXPECT_THAT([&] { database.AddTable(u"Tanks"_s); }, testing::ThrowsMessage<std::runtime_error>("second call"));
    EXPECT_EQ(database.QIRTablesCount(), 2);
}

TEST_F(FakeControlTest, RaisesAnErrorAtCallsOfAMember) {
    fake->failOn(u"QIRTableName"_s, u"no name"_s, 2);
    EXPECT_EQ(database.QIRTableName(1), u"Pumps"_s);
    EXPECT_THROW(database.QIRTableName(1), std::runtime_error);
    EXPECT_THROW(database.QIRTableName(1), std::runtime_error);
    fake->stopFailing();
    EXPECT_EQ(database.QIRTableName(1), u"Pumps"_s);
}

TEST_F(FakeControlTest, CallsTheHookBeforeTheCallTakesEffect) {
    QStringList seen;
    fake->setHook([&](const FakeCall &call) { seen += call.member; });
    database.AddTable(u"Valves"_s);
    EXPECT_EQ(seen, QStringList{u"AddTable"_s});
}

TEST_F(FakeControlTest, HidesItsFileNameAndRefusesANewOne) {
    fake->setHideFileName(true);
    EXPECT_EQ(database.GetDatabaseFileName(), u""_s);
    fake->setHideFileName(false);
    fake->setRefuseFileName(true);
    EXPECT_FALSE(database.SetDatabaseFileName(folder.filePath(u"OTHER.DDB"_s)));
    EXPECT_EQ(database.GetDatabaseFileName(), file);
}

TEST_F(FakeControlTest, HoldsTablesOfEqualNamesAndFindsTheFirst) {
    EXPECT_THROW(database.AddTable(u"PUMPS"_s), std::runtime_error);
    fake->setAllowDuplicates(true);
    database.AddTable(u"PUMPS"_s);
    EXPECT_EQ(database.QIRTablesCount(), 2);
    database.QIRTableRecordSource(u"pumps"_s);
    database.AddField(u"Second"_s, 4);
    database.SaveDtb();
    const QirDatabase again = QirDatabase::create();
    ASSERT_TRUE(again.LoadDtb(file, u""_s));
    EXPECT_EQ(again.QIRTablesCount(), 2);
    again.QIRTableRecordSource(u"pumps"_s);
    EXPECT_EQ(again.QirTableFieldsCount(), 2);
}

TEST_F(FakeControlTest, TellsNoticesThroughItsSignal) {
    // The class is unknown here: connected by name, to a signal that any object can pass on.
    QObject listener;
    ASSERT_TRUE(
        QObject::connect(database.object(), SIGNAL(Notice(QString)), &listener, SIGNAL(objectNameChanged(QString))));
    QString told;
    QObject::connect(&listener, &QObject::objectNameChanged, &listener, [&](const QString &text) { told = text; });
    fake->notice(u"edits recovered"_s);
    EXPECT_EQ(told, u"edits recovered"_s);
}

TEST_F(FakeControlTest, ReadsAFileOfPlainJson) {
    const QString plain = folder.filePath(u"PLAIN.DDB"_s);
    QFile written(plain);
    ASSERT_TRUE(written.open(QIODevice::WriteOnly));
    written.write(R"({"tables":[{"name":"T","fields":[{"name":"A","type":4}],"records":[["5"]]}]})");
    written.close();
    const QirDatabase again = QirDatabase::create();
    ASSERT_TRUE(again.LoadDtb(plain, u""_s));
    again.QIRTableRecordSource(u"T"_s);
    QStringList values;
    again.GetQirRecord(1, values);
    EXPECT_EQ(values, (QStringList{u""_s, u"5"_s}));
}

} // namespace

} // namespace qir
