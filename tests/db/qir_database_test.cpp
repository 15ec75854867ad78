#include "db/QirDatabase.h"
#include "platform/automation/AutomationError.h"
#include "platform/automation/Member.h"
#include "tests/tools/fake/FakeControl.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <vector>

using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::HasSubstr;

namespace qir {

bool operator==(const FakeCall &left, const FakeCall &right) {
    return left.member == right.member && left.arguments == right.arguments;
}
void PrintTo(const FakeCall &call, std::ostream *out) {
    *out << call.member.toStdString() << "(";
    for (const QVariant &argument : call.arguments)
        *out << argument.typeName() << " " << argument.toString().toStdString() << ", ";
    *out << ")";
}

namespace {

template<class Call>
std::string errorOf(Call call) {
    try {
        call();
    } catch (const AutomationError &error) {
        return error.what();
    }
    return "no error";
}

// --- with the fake: each call arrives as it was made ---

struct GatewayTest : testing::Test {
    UseFake fake;
    QTemporaryDir folder;
    QString file = folder.filePath(u"TEST.DDB"_s);
    QirDatabase database = opened();

    QirDatabase opened() const {
        QirDatabase made = QirDatabase::create();
        EXPECT_TRUE(made.SetDatabaseFileName(file));
        made.AddTable(u"Pumps"_s);
        made.QIRTableRecordSource(u"Pumps"_s);
        made.setQIRTableRecordsPointerOut(1);
        fake->clearLog();
        return made;
    }
    /// The calls since the last time.
    QList<FakeCall> calls() const {
        const QList<FakeCall> log = fake->log();
        fake->clearLog();
        return log;
    }
};

TEST_F(GatewayTest, EachMemberOfTheFileArrivesWithItsArguments) {
    database.setDtbHasChanged(true);
    EXPECT_TRUE(database.DtbHasChanged());
    database.SaveDtb();
    EXPECT_EQ(database.GetDatabaseFileName(), file);
    EXPECT_TRUE(database.SetDatabaseFileName(file));
    database.NewPassword(u""_s, u"new"_s);
    EXPECT_EQ(database.LastError(), u""_s);
    EXPECT_EQ(calls(), (QList<FakeCall>{{u"DtbHasChanged"_s, {true}},
                                        {u"DtbHasChanged"_s, {}},
                                        {u"SaveDtb"_s, {}},
                                        {u"GetDatabaseFileName"_s, {}},
                                        {u"SetDatabaseFileName"_s, {file}},
                                        {u"NewPassword"_s, {u""_s, u"new"_s}},
                                        {u"LastError"_s, {}}}));
    const QirDatabase second = QirDatabase::create();
    EXPECT_FALSE(second.LoadDtb(file, u"wrong"_s));
    EXPECT_EQ(calls(), (QList<FakeCall>{{u"(create)"_s, {}}, {u"LoadDtb"_s, {file, u"wrong"_s}}}));
    EXPECT_NE(second.LastError(), u""_s);
}

TEST_F(GatewayTest, EachMemberOfTheTablesArrivesWithItsArguments) {
    EXPECT_EQ(database.QIRTablesCount(), 1);
    EXPECT_EQ(database.QIRTableName(1), u"Pumps"_s);
    EXPECT_TRUE(database.ExistTable(u"pumps"_s));
    database.AddTable(u"Valves"_s);
    database.RenameTable(2, u"Tanks"_s);
    database.RemoveTable(2);
    database.QIRTableRecordSource(u"PUMPS"_s);
    EXPECT_EQ(calls(), (QList<FakeCall>{{u"QIRTablesCount"_s, {}},
                                        {u"QIRTableName"_s, {1}},
                                        {u"ExistTable"_s, {u"pumps"_s}},
                                        {u"AddTable"_s, {u"Valves"_s}},
                                        {u"RenameTable"_s, {2, u"Tanks"_s}},
                                        {u"RemoveTable"_s, {2}},
                                        {u"QIRTableRecordSource"_s, {u"PUMPS"_s}}}));
}

TEST_F(GatewayTest, EachMemberOfTheFieldsArrivesWithItsArguments) {
    EXPECT_EQ(database.QirTableFieldsCount(), 1);
    database.AddField(u"Speed"_s, 4);
    database.AddField(u"Name"_s, 10, 20);
    EXPECT_EQ(database.QIRTableFieldName(3), u"Name"_s);
    EXPECT_EQ(database.QIRTableFieldType(3), QVariant(10));
    EXPECT_EQ(database.QIRTableFieldSize(3), QVariant(20));
    database.RenameField(3, u"Label"_s);
    database.ResizeField(3, 30.5);
    database.RemoveField(3);
    EXPECT_EQ(calls(), (QList<FakeCall>{{u"QirTableFieldsCount"_s, {}},
                                        {u"AddField"_s, {u"Speed"_s, 4}},
                                        {u"AddField"_s, {u"Name"_s, 10, 20.0}},
                                        {u"QIRTableFieldName"_s, {3}},
                                        {u"QIRTableFieldType"_s, {3}},
                                        {u"QIRTableFieldSize"_s, {3}},
                                        {u"RenameField"_s, {3, u"Label"_s}},
                                        {u"ResizeField"_s, {3, 30.5}},
                                        {u"RemoveField"_s, {3}}}));
}

TEST_F(GatewayTest, EachMemberOfTheRecordsArrivesWithItsArguments) {
    EXPECT_EQ(database.QirTableRecordsCount(), 1);
    database.AddRecord();
    database.RemoveRecord(2);
    database.setQIRTableRecordsPointerOut(1);
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 1);
    database.setQIRTableRecordSetByIndex(1, u"P-1"_s);
    database.setQIRTableRecordSetByIndex(1, 5.0);
    EXPECT_EQ(database.QIRTableRecordSetByIndex(1), QVariant(u"5"_s));
    QVariant kept;
    database.readQIRTableRecordSetByIndex(1, kept);
    EXPECT_EQ(kept, QVariant(u"5"_s));
    EXPECT_EQ(calls(), (QList<FakeCall>{{u"QirTableRecordsCount"_s, {}},
                                        {u"AddRecord"_s, {}},
                                        {u"RemoveRecord"_s, {2}},
                                        {u"QIRTableRecordsPointerOut"_s, {1}},
                                        {u"QIRTableRecordsPointerOut"_s, {}},
                                        {u"QIRTableRecordSetByIndex"_s, {1, u"P-1"_s}},
                                        {u"QIRTableRecordSetByIndex"_s, {1, 5.0}},
                                        {u"QIRTableRecordSetByIndex"_s, {1}},
                                        {u"QIRTableRecordSetByIndex"_s, {1}}}));
    QStringList values;
    database.GetQirRecord(1, values);
    EXPECT_EQ(values, (QStringList{u""_s, u"5"_s}));
    EXPECT_EQ(calls().first(), (FakeCall{u"GetQirRecord"_s, {1}}));
}

TEST_F(GatewayTest, EachMemberIsLookedUpOnceForTheClassHoweverOftenItIsCalled) {
    const auto round = [](const QirDatabase &one) {
        one.QIRTablesCount();
        one.QIRTableName(1);
        one.QirTableRecordsCount();
        one.setQIRTableRecordsPointerOut(1);
        one.QIRTableRecordSetByIndex(1);
        one.setQIRTableRecordSetByIndex(1, u"x"_s);
        one.BeginChanges();
        one.EndChanges();
    };
    round(database);
    const ClassMembers *members = ClassMembers::of(database.object()->metaObject());
    const std::size_t before = members->lookUps();
    for (int i = 0; i < 100; ++i)
        round(database);
    round(opened());
    EXPECT_EQ(members->lookUps(), before);
}

TEST_F(GatewayTest, WhatTheComponentThrowsPassesThrough) {
    fake->failOn(u"SaveDtb"_s, u"the disk is full \u2620"_s);
    EXPECT_THAT([&] { database.SaveDtb(); }, testing::ThrowsMessage<std::runtime_error>("the disk is full \u2620"));
    fake->stopFailing();
    EXPECT_NO_THROW(database.SaveDtb());
}

TEST_F(GatewayTest, TheRevisionIsAnotherOneAfterWhateverMayHaveChangedTheTables) {
    const std::vector<std::function<void()>> changes{
        [&] { database.AddTable(u"T"_s); },
        [&] { database.QIRTableRecordSource(u"T"_s), database.AddField(u"F"_s, 4); },
        [&] { database.AddField(u"G"_s, 10, 5); },
        [&] { database.ResizeField(3, 3); },
        [&] { database.RenameField(3, u"H"_s); },
        [&] { database.RemoveField(3); },
        [&] { database.AddRecord(); },
        [&] { database.RemoveRecord(1); },
        [&] { database.setQIRTableRecordsPointerOut(1), database.setQIRTableRecordSetByIndex(2, 7.0); },
        [&] { database.BeginChanges(), database.CancelChanges(); },
        [&] { database.RenameTable(database.QIRTablesCount(), u"U"_s); },
        [&] { database.RemoveTable(database.QIRTablesCount()); },
        [&] { database = QirDatabase::create(); },
        [&] { database.release(); }};
    std::set<std::uint64_t> seen{database.revision()};
    for (const std::function<void()> &change : changes) {
        change();
        EXPECT_TRUE(seen.insert(database.revision()).second) << "after change " << seen.size();
    }
}

TEST_F(GatewayTest, TheRevisionStaysWhileTablesAreOnlyRead) {
    const std::uint64_t before = database.revision();
    (void)database.QIRTablesCount();
    (void)database.ExistTable(u"T"_s);
    database.BeginChanges();
    database.EndChanges();
    EXPECT_EQ(database.revision(), before);
}

TEST_F(GatewayTest, AGroupThatCouldNotBeginIsNoneOfThoseThatAreOpen) {
    fake->failOn(u"BeginChanges"_s, u"no group"_s);
    EXPECT_THROW(const ChangeGroup group(database), std::runtime_error);
    fake->stopFailing();
    database.AddRecord();
    const std::uint64_t before = database.revision();
    ChangeGroup(database).commit(); // has changed nothing
    EXPECT_EQ(database.revision(), before);
}

TEST_F(GatewayTest, ReleaseDestroysTheInstanceThereAndThen) {
    EXPECT_EQ(fake->instances(), 1);
    database.release();
    EXPECT_EQ(fake->instances(), 0);
    EXPECT_TRUE(database.isEmpty());
    EXPECT_EQ(database.object(), nullptr);
    database.release();
}

TEST_F(GatewayTest, PuttingAnotherDatabaseInItsPlaceReleasesTheFirst) {
    database = QirDatabase::create();
    EXPECT_EQ(fake->instances(), 1);
    EXPECT_EQ(calls(), (QList<FakeCall>{{u"(create)"_s, {}}, {u"(release)"_s, {}}}));
}

TEST_F(GatewayTest, AnEmptyDatabaseIsAnErrorAtAnyCall) {
    const QirDatabase empty;
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_THAT(errorOf([&] { (void)empty.LoadDtb(file, u""_s); }), HasSubstr("LoadDtb(QString, QString)"));
    EXPECT_THROW((void)empty.QIRTablesCount(), AutomationError);
    EXPECT_THROW(empty.setDtbHasChanged(true), AutomationError);
}

// --- groups of changes ---

TEST_F(GatewayTest, AGroupBeginsAndEndsAroundItsChanges) {
    ChangeGroup group(database);
    database.AddRecord();
    group.commit();
    EXPECT_EQ(calls(), (QList<FakeCall>{{u"BeginChanges"_s, {}}, {u"AddRecord"_s, {}}, {u"EndChanges"_s, {}}}));
}

TEST_F(GatewayTest, AGroupThatDiesWithoutCommitIsCancelled) {
    {
        const ChangeGroup group(database);
        database.AddRecord();
    }
    EXPECT_EQ(calls(), (QList<FakeCall>{{u"BeginChanges"_s, {}}, {u"AddRecord"_s, {}}, {u"CancelChanges"_s, {}}}));
    EXPECT_EQ(database.QirTableRecordsCount(), 1);
}

TEST_F(GatewayTest, AnErrorInTheGroupGetsThroughAlsoWhenCancellingFails) {
    fake->failOn(u"RemoveRecord"_s, u"first"_s);
    fake->failOn(u"CancelChanges"_s, u"second"_s);
    const auto command = [&] {
        ChangeGroup group(database);
        database.RemoveRecord(1);
        group.commit();
    };
    EXPECT_THAT(command, testing::ThrowsMessage<std::runtime_error>("first"));
}

TEST_F(GatewayTest, AGroupWhoseEndFailsIsCancelled) {
    fake->failOn(u"EndChanges"_s, u"no"_s);
    const auto command = [&] {
        ChangeGroup group(database);
        database.AddRecord();
        group.commit();
    };
    EXPECT_THROW(command(), std::runtime_error);
    EXPECT_EQ(database.QirTableRecordsCount(), 1);
}

TEST_F(GatewayTest, AGroupDoesNothingMoreOnceTheComponentWasReleased) {
    {
        const ChangeGroup cancelled(database);
        ChangeGroup ended(database);
        database = opened();
        fake->clearLog();
        ended.commit();
    }
    EXPECT_EQ(calls(), QList<FakeCall>{});
}

TEST(OptionalMembersTest, AComponentWithoutThemIsDoneWithout) {
    const ComponentPath path({QStringLiteral(FIXTURE_PLUGINS "/missingmember")});
    const QirDatabase database = QirDatabase::create();
    EXPECT_EQ(database.LastError(), u""_s);
    EXPECT_FALSE(database.hasFilePlaces());
    EXPECT_NO_THROW(database.SetFilePlace(u"A.DDB"_s, u"a.ddb"_s));
    ChangeGroup group(database);
    EXPECT_NO_THROW(group.commit());
    const ChangeGroup cancelled(database);
}

TEST(OptionalMembersTest, WhereAGroupCannotBeCancelledItIsEnded) {
    const ComponentPath path({QStringLiteral(FIXTURE_PLUGINS "/nocancel")});
    const QirDatabase database = QirDatabase::create();
    { const ChangeGroup group(database); }
    EXPECT_EQ(database.object()->property("Calls").toString(), u"Begin End "_s);
}

// --- components that are broken ---

std::string creationErrorOf(const char *fixture) {
    const ComponentPath path({QString::fromUtf8(fixture)});
    return errorOf([] { QirDatabase::create(); });
}

TEST(BrokenComponentTest, NoClassForTheIdentifierNamesItAndTheFolders) {
    EXPECT_THAT(creationErrorOf("/nowhere/at/all"),
                AllOf(HasSubstr("QIRTBase.clsQirDatabase"), HasSubstr("/nowhere/at/all")));
}

TEST(BrokenComponentTest, ALibraryWithoutMetadataIsNoComponent) {
    EXPECT_THAT(creationErrorOf(FIXTURE_PLUGINS "/plain"),
                HasSubstr("No component serves \"QIRTBase.clsQirDatabase\""));
}

TEST(BrokenComponentTest, ANewerInterfaceIsNamed) {
    EXPECT_THAT(creationErrorOf(FIXTURE_PLUGINS "/newer"), HasSubstr("QIR.Component/2"));
}

TEST(BrokenComponentTest, NoInstanceIsAnError) {
    EXPECT_THAT(creationErrorOf(FIXTURE_PLUGINS "/null"), HasSubstr("gave no instance"));
}

TEST(BrokenComponentTest, AMissingMemberIsAnErrorAtItsCall) {
    const ComponentPath path({QStringLiteral(FIXTURE_PLUGINS "/missingmember")});
    const QirDatabase database = QirDatabase::create();
    EXPECT_TRUE(database.LoadDtb(u"x"_s, u""_s));
    EXPECT_THAT(errorOf([&] { database.AddTable(u"Pumps"_s); }),
                AllOf(HasSubstr("clsQirDatabase"), HasSubstr("no method AddTable(QString)")));
    EXPECT_THAT(errorOf([&] { (void)database.QIRTablesCount(); }),
                AllOf(HasSubstr("clsQirDatabase"), HasSubstr("no readable property QIRTablesCount")));
}

TEST(BrokenComponentTest, AMemberOfAnotherShapeIsAnErrorThatSaysBoth) {
    const ComponentPath path({QStringLiteral(FIXTURE_PLUGINS "/wrongshape")});
    const QirDatabase database = QirDatabase::create();
    EXPECT_EQ(database.QIRTablesCount(), 1) << "what is in shape works";
    EXPECT_THAT(errorOf([&] { (void)database.LoadDtb(u"x"_s, u""_s); }),
                AllOf(HasSubstr("LoadDtb(QString, QString)"), HasSubstr("bool LoadDtb(QString)")));
    EXPECT_THAT(errorOf([&] { (void)database.DtbHasChanged(); }),
                AllOf(HasSubstr("readable property DtbHasChanged"), HasSubstr("DtbHasChanged of type QString")));
    EXPECT_THAT(errorOf([&] { database.setQIRTableRecordsPointerOut(1); }), HasSubstr("read-only property"));
    EXPECT_THAT(errorOf([&] { (void)database.ExistTable(u"x"_s); }), HasSubstr("QStringList ExistTable(QString)"));
    EXPECT_THAT(errorOf([&] { (void)database.QIRTableFieldName(1); }), HasSubstr("void QIRTableFieldName(int)"));
    EXPECT_THAT(errorOf([&] { database.RemoveTable(1); }), HasSubstr("void RemoveTable(QString)"));
    QStringList values;
    EXPECT_THAT(errorOf([&] { database.GetQirRecord(1, values); }), HasSubstr("void GetQirRecord(int,QStringList)"));
}

TEST(BrokenComponentTest, AnEmptyAnswerIsAnErrorAndNoEmptyText) {
    const ComponentPath path({QStringLiteral(FIXTURE_PLUGINS "/wrongshape")});
    const QirDatabase database = QirDatabase::create();
    EXPECT_THAT(errorOf([&] { (void)database.QIRTableName(1); }), HasSubstr("nothing where QString is needed"));
}

TEST(BrokenComponentTest, ARecordOfTooFewElementsIsAnError) {
    const ComponentPath path({QStringLiteral(FIXTURE_PLUGINS "/shortrecord")});
    const QirDatabase database = QirDatabase::create();
    QStringList values;
    EXPECT_THAT(errorOf([&] { database.GetQirRecord(1, values); }),
                AllOf(HasSubstr("GetQirRecord(int, QStringList&)"), HasSubstr("2 elements for a record of 2 fields")));
}

} // namespace

} // namespace qir
