#include "base/Collation.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"
#include "tests/compare/CallLog.h"
#include "tests/compare/ComparePanes.h"
#include "tests/tools/fake/FakeControl.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <QTimer>

using namespace Qt::StringLiterals;
using namespace qir;
using test::ComparePanes;
using test::PlainDatabase;
using test::PlainTable;

namespace {

PlainTable table(const char *name) {
    return {name, {false}, {{1.0}}};
}

class ListAlignment : public testing::Test {
protected:
    UseFake fake;
    ComparePanes panes;
};

TEST_F(ListAlignment, ShowsATableOfOneSideOnTheOtherAsAPlaceholderWhereItSorts) {
    panes.openBoth({table("Valves"), table("Motors")}, {table("Pumps"), table("Valves")});
    EXPECT_EQ(panes.lines(0), QStringList({u"Motors"_s, u"Pumps ?"_s, u"Valves"_s}));
    EXPECT_EQ(panes.lines(1), QStringList({u"Motors ?"_s, u"Pumps"_s, u"Valves"_s}));
    EXPECT_EQ(panes.list(0).ItemData(0), 2);
    EXPECT_EQ(panes.list(0).ItemData(1), 0);
    EXPECT_EQ(panes.list(0).ItemData(2), 1);
    EXPECT_EQ(panes.list(1).ItemData(0), 0);
    EXPECT_EQ(panes.list(1).ItemData(1), 1);
    EXPECT_EQ(panes.list(1).ItemData(2), 2);
}

TEST_F(ListAlignment, PutsNamesThatDifferInCaseOnlyOnOneLine) {
    panes.openBoth({table("Pumps")}, {table("PUMPS")});
    EXPECT_EQ(panes.lines(0), QStringList(u"Pumps"_s));
    EXPECT_EQ(panes.lines(1), QStringList(u"PUMPS"_s));
}

TEST_F(ListAlignment, ComparesANameThatEndsInAMarkerWithoutIt) {
    panes.openBoth({table("Pumps ?"), table("Valves")}, {table("Pumps"), table("Valves !")});
    EXPECT_EQ(panes.lines(0), QStringList({u"Pumps ?"_s, u"Valves"_s}));
    EXPECT_EQ(panes.list(0).ItemData(0), 1);
    EXPECT_EQ(panes.lines(1).size(), 2);
}

TEST_F(ListAlignment, FillsTheListPlainWithOneDatabaseOpen) {
    panes.open(1, PlainDatabase{table("b"), table("a")});
    panes.alignment().MostraTabelleDiverseInLista();
    EXPECT_EQ(panes.lines(0), QStringList());
    EXPECT_EQ(panes.lines(1), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(fake->calls(u"ExistTable"_s), 0);
}

TEST_F(ListAlignment, GivesTwoEmptyListsForTwoDatabasesWithoutTables) {
    panes.openBoth({}, {});
    EXPECT_EQ(panes.lines(0), QStringList());
    EXPECT_EQ(panes.lines(1), QStringList());
}

TEST_F(ListAlignment, ShowsOnlyPlaceholdersBesideADatabaseWithoutTables) {
    panes.openBoth({}, {table("a"), table("b")});
    EXPECT_EQ(panes.lines(0), QStringList({u"a ?"_s, u"b ?"_s}));
    EXPECT_EQ(panes.list(0).ListIndex(), -1);
}

TEST_F(ListAlignment, IsBuiltAfreshEachTime) {
    panes.openBoth({table("a"), table("b")}, {table("b"), table("c")});
    const QStringList left = panes.lines(0);
    panes.alignment().MostraTabelleDiverseInLista();
    EXPECT_EQ(panes.lines(0), left);
    panes.editor().OggettoDtb(1).AddTable(u"a"_s);
    panes.alignment().MostraTabelleDiverseInLista();
    EXPECT_EQ(panes.lines(0).mid(0, 2), QStringList({u"a !"_s, u"b"_s}));
}

TEST_F(ListAlignment, HandlesNoClickAndHasNoLoadedLineMeanwhile) {
    panes.openBoth({table("a"), table("b")}, {table("a"), table("b")});
    panes.list(0).setListIndex(1);
    for (const int pane : {0, 1})
        panes.editor().pane(pane).lineSettled();
    int open = 0;
    int refilling = 0;
    for (const int pane : {0, 1}) {
        QObject::connect(&panes.list(pane), &ListBox::Click,
                         [&] { ++(panes.editor().listClicks().refilling() ? refilling : open); });
    }
    panes.alignment().MostraTabelleDiverseInLista();
    EXPECT_EQ(open, 0);
    EXPECT_GT(refilling, 0);
    EXPECT_EQ(panes.list(0).ListIndex(), 1);
    for (const int pane : {0, 1})
        EXPECT_EQ(panes.editor().UltimoListIndex(pane), -1);
    EXPECT_FALSE(panes.editor().listClicks().refilling());
}

TEST_F(ListAlignment, PairsTwinsOfAForeignComponentSomehow) {
    fake->setAllowDuplicates(true);
    panes.openBoth({table("a"), table("A"), table("b")}, {table("a"), table("b"), table("B"), table("c")});
    ASSERT_EQ(panes.lines(0).size(), panes.lines(1).size());
    for (qsizetype i = 0; i < panes.lines(0).size(); ++i)
        EXPECT_EQ(collationKey(panes.lines(0)[i]), collationKey(panes.lines(1)[i]));
    for (const QString &line : panes.lines(0) + panes.lines(1))
        EXPECT_LE(line.count(u" ?"_s) + line.count(u" !"_s), 1) << line.toStdString();
}

TEST_F(ListAlignment, EndsTheProgramWhenTheWindowWasClosedWhileTheNamesWereSorted) {
    MessageLoop loop;
    panes.open(0, PlainDatabase{table("a")});
    panes.open(1, PlainDatabase{table("b")});
    bool ended = false;
    fake->setHook([&](const FakeCall &call) {
        if (call.member == u"QIRTableName" && !ended)
            QTimer::singleShot(0, &loop, [&] { loop.endProgram(); });
        ended = ended || call.member == u"QIRTableName";
    });
    EXPECT_THROW(panes.alignment().MostraTabelleDiverseInLista(), ProgramEnded);
    EXPECT_EQ(panes.lines(0), QStringList(u"a"_s)); // not aligned any more
    EXPECT_FALSE(panes.editor().listClicks().refilling());
    EXPECT_EQ(fake->calls(u"ExistTable"_s), 0);
}

TEST_F(ListAlignment, PassesOnAnErrorOfTheComponent) {
    panes.open(0, PlainDatabase{table("a")});
    panes.open(1, PlainDatabase{table("a")});
    fake->failOn(u"QIRTableRecordSource"_s, u"broken"_s);
    EXPECT_THROW(panes.alignment().MostraTabelleDiverseInLista(), std::exception);
    EXPECT_FALSE(panes.editor().listClicks().refilling());
}

TEST_F(ListAlignment, CallsTheComponentsInTheGivenOrder) {
    panes.openBoth({table("a"), table("only left")}, {table("a")});
    fake->clearLog();
    QStringList names;
    panes.alignment().CreaListaUnicaTabella(names);
    EXPECT_EQ(names, QStringList({u"a"_s, u"only left"_s}));
    EXPECT_EQ(test::loggedCallsWithArguments(FakeControl::get()),
              (std::vector<std::string>{"left QIRTablesCount()", "right QIRTablesCount()", "left QIRTableName(1)",
                                        "left QIRTableName(2)", "right QIRTableName(1)"}));
    fake->clearLog();
    panes.alignment().CreaSpaziInListeTabelle(names);
    EXPECT_TRUE(fake->log().isEmpty());
    panes.marks().IndividuaTabelleDiverse(names);
    EXPECT_EQ(test::loggedCallsWithArguments(FakeControl::get()),
              (std::vector<std::string>{
                  "left ExistTable(a)", "right ExistTable(a)", "left QIRTableRecordSource(a)",
                  "right QIRTableRecordSource(a)", "left QirTableRecordsCount()", "right QirTableRecordsCount()",
                  "left QirTableFieldsCount()", "right QirTableFieldsCount()", "left QIRTableRecordsPointerOut(1)",
                  "right QIRTableRecordsPointerOut(1)", "right QIRTableRecordSetByIndex(1)",
                  "left QIRTableRecordSetByIndex(1)", "left ExistTable(only left)", "right ExistTable(only left)"}));
}

TEST(TableNames, AreEqualWithoutMarkersByCodeUnit) {
    EXPECT_TRUE(NomiTabelleUguali(u"a ?"_s, u"a !"_s));
    EXPECT_FALSE(NomiTabelleUguali(u"a"_s, u"A"_s));
    EXPECT_TRUE(NomeTabella1_MaggioreDi_NomeTabella2(u"a"_s, u"Z !"_s));
    EXPECT_FALSE(NomeTabella1_MaggioreDi_NomeTabella2(u"a ?"_s, u"a"_s));
    EXPECT_TRUE(NomeTabella1_MaggioreDi_NomeTabella2(u"\uFF21"_s, u"\U00010000"_s)); // units, not code points
}

PlainDatabase someTables() {
    static const std::vector<std::string> pieces{" ", "?", "!",      " ?",     " !", "a",     "A",
                                                 "b", "_", "\u00E9", "\u00C9", "ss", "\u00DF"};
    PlainDatabase tables;
    QStringList keys;
    const int count = *rc::gen::inRange(0, 7);
    for (int i = 0; i < count; ++i) {
        std::string name;
        for (const int piece : *rc::gen::resize(4, rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 13))))
            name += pieces[static_cast<std::size_t>(piece)];
        const QString key = collationKey(QString::fromStdString(name));
        if (key.isEmpty() || keys.contains(key))
            continue;
        keys.append(key);
        tables.tables.push_back(table(name.c_str()));
    }
    return tables;
}

RC_GTEST_FIXTURE_PROP(ListAlignment, PutsTheSameNameOnEachLineForAnyNames, ()) {
    const PlainDatabase left = someTables();
    const PlainDatabase right = someTables();
    panes.openBoth(left, right);
    RC_ASSERT(panes.lines(0).size() == panes.lines(1).size());
    for (int i = 0; i < panes.list(0).ListCount(); ++i) {
        RC_ASSERT(collationKey(panes.list(0).List(i)) == collationKey(panes.list(1).List(i)));
        RC_ASSERT(panes.list(0).ItemData(i) != 0 || panes.list(1).ItemData(i) != 0);
    }
}

} // namespace
