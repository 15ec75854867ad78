#include "tests/tools/fake/FakeControl.h"
#include "tests/window/PopupTools.h"
#include "tests/window/WindowTest.h"
#include "tests/window/find/FindHands.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// Replacing by the bar below the grids.
class ReplaceTest : public WindowTest {
    Q_OBJECT

    static void fill(EditorFixture &fixture, const QString &text, const QString &replacement) {
        openBar(fixture, text);
        hands::key(&fixture.window(), Qt::Key_H, Qt::ControlModifier);
        hands::type(&inBar<QLineEdit>(fixture, u"replaceText"_s), replacement);
    }
    static void press(EditorFixture &fixture, const QString &button) {
        hands::click(&inBar<QAbstractButton>(fixture, button), Qt::LeftButton);
    }

private Q_SLOTS:
    void oneIsReplacedAndTheNextGoneTo() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"List"_s, {u"red car"_s, u"blue"_s, u"red"_s})}));
        fill(fixture, u"red"_s, u"green"_s);
        press(fixture, u"replaceOne"_s);
        QCOMPARE(fixture.texts(0)[0][0], u"green car"_s);
        QTRY_COMPARE(fixture.grid(0).selection(), singleCell(3, 1));
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"green car"_s}, {u"blue"_s}, {u"red"_s}}));
        QTRY_COMPARE(countOf(fixture), u"1 cell"_s);
    }

    void theMenuOpensTheLineOfTheReplacement() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"List"_s, {u"red"_s})}));
        chooseFromBar(fixture, Menu::EditMenu, Command::ReplaceMenu);
        QVERIFY(inBar<QLineEdit>(fixture, u"replaceText"_s).isVisible());
        hands::type(&inBar<QLineEdit>(fixture, u"findText"_s), u"red"_s);
        hands::click(&inBar<QLineEdit>(fixture, u"replaceText"_s), Qt::LeftButton);
        hands::type(&inBar<QLineEdit>(fixture, u"replaceText"_s), u"green"_s);
        QTRY_COMPARE(countOf(fixture), u"1 cell"_s);
        press(fixture, u"replaceAll"_s);
        QCOMPARE(fixture.texts(0)[0][0], u"green"_s);
    }

    void allAreReplacedInOneGroup() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"List"_s, {u"red red"_s, u"blue"_s, u"Red"_s})}));
        fill(fixture, u"red"_s, u"x"_s);
        QTRY_COMPARE(countOf(fixture), u"2 cells"_s);
        FakeControl::get().clearLog();
        press(fixture, u"replaceAll"_s);
        QCOMPARE(callsOf({u"BeginChanges"_s, u"EndChanges"_s, u"CancelChanges"_s}),
                 (QStringList{u"BeginChanges()"_s, u"EndChanges()"_s}));
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"x x"_s}, {u"blue"_s}, {u"x"_s}}));
        QCOMPARE(fixture.texts(0), recordsOf(fixture, 0));
        QTRY_COMPARE(countOf(fixture), u"0 cells"_s);
    }

    void valuesThatWouldNotBeStoredAsTypedAreNamedBefore() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fill(fixture, u"00"_s, u"x"_s);
        QTRY_COMPARE(countOf(fixture), u"2 cells"_s);
        const QString text = u"2 of 2 values would not be stored as they are written:\n"
                             "Pumps, record 1, Speed: \"12x\" is stored as \"12\"\n"
                             "Pumps, record 2, Speed: \"9x\" is stored as \"9\"\n\nReplace all the same?"_s;
        fixture.dialogs().expectMessage(text, u"?"_s, u"No"_s);
        press(fixture, u"replaceAll"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.texts(0)[0][0], u"1200"_s);
        fixture.dialogs().expectMessage(text, u"?"_s, u"Yes"_s);
        press(fixture, u"replaceAll"_s);
        QCOMPARE(recordsOf(fixture, 0)[0][0], u"12"_s);
        QCOMPARE(fixture.texts(0)[0][0], u"12x"_s);
        QVERIFY(fixture.grid(0).isUnlikeStored(1, 1));
    }

    void ofLongTextsThePlaceIsNamedFromWhichOnTheyAreStoredOtherwise() {
        TableOfTexts table = listOf(u"List"_s, {QString(3995, u'x') + u"ipsum"_s});
        table.fields[0].size = 4000;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {table}));
        fill(fixture, u"ipsum"_s, u"ipsumYZ"_s);
        QTRY_COMPARE(countOf(fixture), u"1 cell"_s);
        const QString text = u"1 of 1 values would not be stored as it is written:\nList, record 1, Name: \"…"_s +
                             QString(53, u'x') + u"ipsumYZ\" is stored as \"…"_s + QString(55, u'x') +
                             u"ipsum\"\n\nReplace all the same?"_s;
        for (const QString &button : {u"replaceAll"_s, u"replaceOne"_s}) {
            fixture.dialogs().expectMessage(text, u"?"_s, u"No"_s);
            hands::key(&fixture.window(), Qt::Key_F3);
            press(fixture, button);
        }
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void capturesStandInTheReplacement() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"List"_s, {u"a-b"_s, u"cd"_s})}));
        fill(fixture, u"(.)-(.)"_s, u"\\2-\\1"_s);
        check(fixture, u"findPattern"_s);
        QTRY_COMPARE(countOf(fixture), u"1 cell"_s);
        press(fixture, u"replaceAll"_s);
        QCOMPARE(recordsOf(fixture, 0)[0][0], u"b-a"_s);
    }

    void allTablesOfBothPanesAreReplacedAndCompared() {
        EditorFixture fixture;
        const auto tables = [this] {
            return std::vector<TableOfTexts>{listOf(u"A"_s, {u"red"_s}), listOf(u"B"_s, {u"red"_s, u"x"_s})};
        };
        openBoth(fixture, tables(), tables());
        fill(fixture, u"red"_s, u"pink"_s);
        check(fixture, u"findAllTables"_s);
        QTRY_COMPARE(countOf(fixture), u"2 cells"_s);
        press(fixture, u"replaceAll"_s);
        QCOMPARE(fixture.shownTable(0), u"A"_s);
        QCOMPARE(fixture.texts(0)[0][0], u"pink"_s);
        QCOMPARE(fixture.lines(0), (QStringList{u"A !"_s, u"B !"_s}));
        QCOMPARE(fixture.lines(1), (QStringList{u"A !"_s, u"B !"_s}));
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 1}}));
        fixture.clickLine(0, 1);
        QCOMPARE(recordsOf(fixture, 0)[0][0], u"pink"_s);
        QCOMPARE(recordsOf(fixture, 1)[0][0], u"red"_s);
    }

    void aReplacementThatFailsIsUndone() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"List"_s, {u"red"_s, u"red"_s, u"red"_s})}));
        fill(fixture, u"red"_s, u"x"_s);
        QTRY_COMPARE(countOf(fixture), u"3 cells"_s);
        FakeControl::get().failOn(u"QIRTableRecordSetByIndex"_s, u"the disk is full"_s, 4);
        fixture.dialogs().expect(messageNaming({u"the disk is full"_s}));
        press(fixture, u"replaceAll"_s);
        FakeControl::get().stopFailing();
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"red"_s}, {u"red"_s}, {u"red"_s}}));
        QCOMPARE(fixture.texts(0), recordsOf(fixture, 0));
        QTRY_COMPARE(countOf(fixture), u"3 cells"_s);
    }
};

QTEST_MAIN(ReplaceTest)
#include "replace_test.moc"
