#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// Two databases side by side: which tables stand on one line, and which of them differ.
class CompareListsTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void aTableOfOneSideShowsOnTheOtherAsAPlaceholderWhereItSorts() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"Valves"_s, {}), listOf(u"Alarms"_s, {})},
                 {listOf(u"Motors"_s, {}), listOf(u"Valves"_s, {})});
        QCOMPARE(fixture.lines(0), QStringList({u"Alarms"_s, u"Motors ?"_s, u"Valves"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"Alarms ?"_s, u"Motors"_s, u"Valves"_s}));
        QCOMPARE(fixture.list(0).ItemData(1), 0);
        QCOMPARE(fixture.list(1).ItemData(0), 0);
        QCOMPARE(fixture.list(0).ItemData(0), 2);
        QCOMPARE(fixture.list(0).ItemData(2), 1);
    }

    void tablesWhoseNamesDifferInCaseOnlyShareALine() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"Pumps"_s, {u"a"_s})}, {listOf(u"PUMPS"_s, {u"b"_s})});
        QCOMPARE(fixture.lines(0), QStringList(u"Pumps !"_s));
        QCOMPARE(fixture.lines(1), QStringList(u"PUMPS !"_s));
        QCOMPARE(redCells(fixture, 0), (Cells{{1, 1}}));
    }

    void aNameThatEndsInAMarkerPairsWithTheNameWithoutIt() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"Pumps !"_s, {u"a"_s}), listOf(u"Valves ?"_s, {u"a"_s})},
                 {listOf(u"Pumps"_s, {u"a"_s}), listOf(u"Valves"_s, {u"a"_s})});
        QCOMPARE(fixture.list(0).ListCount(), 2);
        QCOMPARE(fixture.list(1).ListCount(), 2);
        for (const int pane : {0, 1}) {
            for (const int line : {0, 1})
                QVERIFY(fixture.list(pane).ItemData(line) > 0);
        }
    }

    void namesWithPunctuationPair() {
        const QStringList names{u"a_b"_s, u"a-b"_s, u"aZ"_s, u"a b"_s, u"É"_s, u"_"_s, u"[x]"_s};
        std::vector<TableOfTexts> left;
        std::vector<TableOfTexts> right;
        for (qsizetype i = 0; i < names.size(); ++i) {
            if (i % 4 != 0)
                left.push_back(listOf(names[i], {}));
            if (i % 2 == 0)
                right.push_back(listOf(names[i].toLower(), {}));
        }
        EditorFixture fixture;
        openBoth(fixture, left, right);
        QCOMPARE(fixture.list(0).ListCount(), static_cast<int>(names.size()));
        QCOMPARE(fixture.list(1).ListCount(), static_cast<int>(names.size()));
        for (int line = 0; line < fixture.list(0).ListCount(); ++line)
            QCOMPARE(fixture.list(0).List(line).remove(u" ?"_s).toUpper(),
                     fixture.list(1).List(line).remove(u" ?"_s).toUpper());
    }

    void oneDatabaseAloneIsListedPlain() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"b"_s, {u"x"_s}), listOf(u"a"_s, {u"x"_s})}));
        fixture.choose(Command::TwoMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"a"_s, u"b"_s}));
        QCOMPARE(fixture.lines(1), QStringList());
    }

    void twoDatabasesWithoutTablesGiveTwoEmptyLists() {
        EditorFixture fixture;
        openBoth(fixture, {}, {});
        QCOMPARE(fixture.lines(0), QStringList());
        QCOMPARE(fixture.lines(1), QStringList());
        fixture.choose(Command::CompareAgainMenu);
    }

    void tablesThatDifferOnlyInTheCaseOfAValueDiffer() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"a"_s, {u"x"_s}), listOf(u"b"_s, {u"x"_s})},
                 {listOf(u"a"_s, {u"X"_s}), listOf(u"b"_s, {u"x"_s})});
        QCOMPARE(fixture.lines(0), QStringList({u"a !"_s, u"b"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"a !"_s, u"b"_s}));
    }

    void fieldNamesAndTypesMakeNoDifference() {
        EditorFixture fixture;
        openBoth(fixture, {{u"a"_s, {{u"Speed"_s, FieldType::Long, {u"5"_s}}}}},
                 {{u"a"_s, {{u"Rate"_s, FieldType::Double, {u"5"_s}}}}});
        QCOMPARE(fixture.lines(0), QStringList(u"a"_s));
        QCOMPARE(redCells(fixture, 0), Cells{});
    }

    void aNumberDiffersFromATextThatReadsTheSame() {
        EditorFixture fixture;
        openBoth(fixture, {{u"a"_s, {{u"Speed"_s, FieldType::Long, {u"5"_s}}}}},
                 {{u"a"_s, {{u"Speed"_s, FieldType::Text, {u"5"_s}}}}});
        QCOMPARE(fixture.lines(0), QStringList(u"a !"_s));
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 1}}));
    }

    void tablesOfEqualSizeWithoutRecordsAreEqual() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"a"_s, {})}, {listOf(u"a"_s, {})});
        QCOMPARE(fixture.lines(0), QStringList(u"a"_s));
        QVERIFY(!fixture.grid(0).Visible());
    }

    void anEditThatMakesTheTablesEqualTakesTheMarkAwayAndBack() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"a"_s, {u"x"_s})}, {listOf(u"a"_s, {u"y"_s})});
        QCOMPARE(fixture.lines(0), QStringList(u"a !"_s));
        edit(fixture, 0, 1, 1, u"y"_s);
        QCOMPARE(fixture.lines(0) + fixture.lines(1), QStringList({u"a"_s, u"a"_s}));
        QCOMPARE(redCells(fixture, 0), Cells{});
        edit(fixture, 1, 1, 1, u"z"_s);
        QCOMPARE(fixture.lines(0) + fixture.lines(1), QStringList({u"a !"_s, u"a !"_s}));
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 1}}));
        fixture.database(0).setDtbHasChanged(false);
        fixture.database(1).setDtbHasChanged(false);
    }

    void comparingAgainFindsWhatChangedBehindTheWindow() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"a"_s, {u"x"_s}), listOf(u"b"_s, {u"x"_s})},
                 {listOf(u"a"_s, {u"x"_s}), listOf(u"b"_s, {u"x"_s})});
        const QirDatabase &right = fixture.database(1);
        right.AddTable(u"c"_s);
        fixture.editor().pane(1).makeTableCurrent(u"b"_s);
        right.setQIRTableRecordsPointerOut(1);
        right.setQIRTableRecordSetByIndex(1, u"y"_s);
        right.setDtbHasChanged(false);
        fixture.choose(Command::CompareAgainMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"a"_s, u"b !"_s, u"c ?"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"a"_s, u"b !"_s, u"c"_s}));
    }

    void comparingAgainStaysOnTheLineAndWithTheView() {
        std::vector<TableOfTexts> right;
        for (int i = 10; i < 60; ++i)
            right.push_back(listOf(u"T%1"_s.arg(i), {QString::number(i)}));
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"T12"_s, {u"12"_s}), listOf(u"T55"_s, {u"x"_s})}, right);
        fixture.clickLine(0, 45);
        const int top = fixture.list(0).TopIndex();
        QVERIFY(top > 0);
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 1}}));
        fixture.choose(Command::CompareAgainMenu);
        for (const int pane : {0, 1}) {
            QCOMPARE(fixture.list(pane).ListIndex(), 45);
            QCOMPARE(fixture.list(pane).TopIndex(), top);
            QCOMPARE(redCells(fixture, pane), (Cells{{1, 1}}));
        }
        QCOMPARE(fixture.lines(0)[45], u"T55 !"_s);
    }

    void closingTheWindowWhileTheNamesAreSortedEndsTheProgram() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"a"_s, {u"x"_s})}, {listOf(u"b"_s, {u"x"_s})});
        // Delivered in the command's first yield.
        QMetaObject::invokeMethod(
            &fixture.window(), [&] { fixture.window().close(); }, Qt::QueuedConnection);
        fixture.choose(Command::CompareAgainMenu);
        QVERIFY(MessageLoop::instance()->programEnded());
        // Going on would have called components that are gone, and shown that as an error.
        QVERIFY(fixture.database(0).isEmpty());
        QCOMPARE(fixture.dialogs().problems(), QString());
    }
};

QTEST_MAIN(CompareListsTest)
#include "compare_lists_test.moc"
