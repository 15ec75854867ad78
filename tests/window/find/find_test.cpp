#include "tests/tools/fake/FakeControl.h"
#include "tests/window/PopupTools.h"
#include "tests/window/WindowTest.h"
#include "tests/window/find/FindHands.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

TableOfTexts words() {
    return {u"Words"_s,
            {{u"A"_s, FieldType::Text, {u"one"_s, u"two"_s, u"One more"_s, u"none"_s}},
             {u"B"_s, FieldType::Text, {u"x"_s, u"ONE"_s, u"y"_s, u"z"_s}}}};
}

/// The records of the hits that are listed.
QStringList rowsOfHits(EditorFixture &fixture) {
    QStringList rows;
    for (const QString &hit : hitsOf(fixture))
        rows.append(hit.section(u'|', 2, 2));
    return rows;
}

} // namespace

/// Finding cells by the bar below the grids.
class FindTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void ctrlFOpensTheBarBelowTheGridsWithTheKeyboardInIt() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words()}));
        hands::key(&fixture.window(), Qt::Key_F, Qt::ControlModifier);
        auto &bar = inBar<QWidget>(fixture, u"findBar"_s);
        QVERIFY(bar.isVisible());
        QVERIFY(inBar<QLineEdit>(fixture, u"findText"_s).hasFocus());
        QVERIFY(bar.geometry().top() >= fixture.frame(0).geometry().bottom());
        QVERIFY(fixture.grid(0).height() > 100);
    }

    void theNumberOfCellsIsTold() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words()}));
        openBar(fixture, u"one"_s);
        QTRY_COMPARE(countOf(fixture), u"4 cells"_s);
        check(fixture, u"findCase"_s);
        QTRY_COMPARE(countOf(fixture), u"2 cells"_s);
        check(fixture, u"findWhole"_s);
        QTRY_COMPARE(countOf(fixture), u"1 cell"_s);
        check(fixture, u"findCase"_s);
        QTRY_COMPARE(countOf(fixture), u"2 cells"_s);
    }

    void f3WalksThroughTheHitsAndRound() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words()}));
        openBar(fixture, u"one"_s);
        QList<GridSelection> walked;
        for (int i = 0; i < 5; ++i) {
            hands::key(&fixture.window(), Qt::Key_F3);
            walked.append(fixture.grid(0).selection());
        }
        QCOMPARE(walked, (QList<GridSelection>{singleCell(1, 1), singleCell(2, 2), singleCell(3, 1), singleCell(4, 1),
                                               singleCell(1, 1)}));
        hands::key(&fixture.window(), Qt::Key_F3, Qt::ShiftModifier);
        QCOMPARE(fixture.grid(0).selection(), singleCell(4, 1));
        hands::key(&fixture.window(), Qt::Key_F3, Qt::ShiftModifier);
        QCOMPARE(fixture.grid(0).selection(), singleCell(3, 1));
    }

    void theMenuGoesToTheHitBefore() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words()}));
        chooseFromBar(fixture, Menu::EditMenu, Command::FindMenu);
        hands::type(&inBar<QLineEdit>(fixture, u"findText"_s), u"one"_s);
        QTRY_COMPARE(countOf(fixture), u"4 cells"_s);
        for (const GridSelection &hit : {singleCell(1, 1), singleCell(4, 1), singleCell(3, 1)}) {
            chooseFromBar(fixture, Menu::EditMenu, Command::FindPreviousMenu);
            QCOMPARE(fixture.grid(0).selection(), hit);
        }
    }

    void enterInTheBarGoesOnAndShiftEnterBack() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words()}));
        openBar(fixture, u"one"_s);
        auto &text = inBar<QLineEdit>(fixture, u"findText"_s);
        hands::key(&text, Qt::Key_Return);
        hands::key(&text, Qt::Key_Return);
        QCOMPARE(fixture.grid(0).selection(), singleCell(2, 2));
        hands::key(&text, Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(fixture.grid(0).selection(), singleCell(1, 1));
        QVERIFY(text.hasFocus());
    }

    void theOtherGridFollowsTheSelection() {
        EditorFixture fixture;
        openBoth(fixture, {words()}, {words()});
        openBar(fixture, u"more"_s);
        hands::key(&fixture.window(), Qt::Key_F3);
        QCOMPARE(fixture.grid(0).selection(), singleCell(3, 1));
        QCOMPARE(fixture.grid(1).selection(), singleCell(3, 1));
        QCOMPARE(fixture.activePane(), 0);
        QCOMPARE(countOf(fixture), u"1 cell"_s);
    }

    void bothPanesAreSearchedWhenAsked() {
        EditorFixture fixture;
        openBoth(fixture, {words()}, {words()});
        openBar(fixture, u"more"_s);
        check(fixture, u"findBothPanes"_s);
        QTRY_COMPARE(countOf(fixture), u"2 cells"_s);
        hands::key(&fixture.window(), Qt::Key_F3);
        QCOMPARE(fixture.activePane(), 0);
        hands::key(&fixture.window(), Qt::Key_F3);
        QCOMPARE(fixture.activePane(), 1);
        QCOMPARE(fixture.grid(1).selection(), singleCell(3, 1));
    }

    void allTablesAreSearchedWhenAsked() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), words(), listOf(u"Zones"_s, {u"one"_s})}));
        QCOMPARE(fixture.shownTable(0), u"Pumps"_s);
        openBar(fixture, u"one"_s);
        QTRY_COMPARE(countOf(fixture), u"0 cells"_s);
        check(fixture, u"findAllTables"_s);
        QTRY_COMPARE(countOf(fixture), u"5 cells"_s);
        QCOMPARE(fixture.shownTable(0), u"Pumps"_s); // searching shows nothing else
        QTRY_COMPARE(hitsOf(fixture).size(), 5);
        QCOMPARE(hitsOf(fixture).constLast(), u"Left|Zones|1|Name [text]|one"_s);
        for (int i = 0; i < 5; ++i)
            hands::key(&fixture.window(), Qt::Key_F3);
        QTRY_COMPARE(fixture.shownTable(0), u"Zones"_s);
        QTRY_COMPARE(countOf(fixture), u"5 cells"_s);
        hands::key(&fixture.window(), Qt::Key_F3);
        QTRY_COMPARE(fixture.shownTable(0), u"Words"_s);
        QCOMPARE(fixture.grid(0).selection(), singleCell(1, 1));
    }

    void otherTablesAreSearchedByColumnsWhereThereAreAny() {
        for (const int recordsTogether : {0, 2, 100}) {
            const UseFake fake(recordsTogether);
            EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), words(), counted(u"Zeros"_s, 5, 2)}));
            const int records = fake->calls(u"GetQirRecord"_s);
            openBar(fixture, u"on"_s);
            check(fixture, u"findAllTables"_s);
            QTRY_COMPARE(hitsOf(fixture),
                         (QStringList{u"Left|Words|1|A [text]|one"_s, u"Left|Words|2|B [text]|ONE"_s,
                                      u"Left|Words|3|A [text]|One more"_s, u"Left|Words|4|A [text]|none"_s}));
            QCOMPARE(fake->calls(u"GetQirRecord"_s) > records, recordsTogether == 0);
            QCOMPARE(fixture.shownTable(0), u"Pumps"_s);
        }
    }

    void aRegularExpressionSearchesOtherTablesToo() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), words(), counted(u"Zeros"_s, 5, 2)}));
        openBar(fixture, u"^o.e$"_s);
        check(fixture, u"findPattern"_s);
        check(fixture, u"findAllTables"_s);
        QTRY_COMPARE(countOf(fixture), u"2 cells"_s);
    }

    void aTableInTwoHalvesHasTheSameHits() {
        // Enough cells for a second thread, the hits at both ends and in the middle.
        TableOfTexts table = counted(u"Many"_s, 4096, 5);
        for (const int record : {0, 2047, 2048, 4095})
            table.fields[4].texts[record] = u"777777"_s;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {table}));
        openBar(fixture, u"777777"_s);
        QTRY_COMPARE(countOf(fixture), u"4 cells"_s);
        QTRY_COMPARE(rowsOfHits(fixture), QStringList({u"1"_s, u"2048"_s, u"2049"_s, u"4096"_s}));
    }

    void aHitOfTheListIsGoneTo() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words()}));
        openBar(fixture, u"one"_s);
        QTRY_COMPARE(hitsOf(fixture),
                     (QStringList{u"Left|Words|1|A [text]|one"_s, u"Left|Words|2|B [text]|ONE"_s,
                                  u"Left|Words|3|A [text]|One more"_s, u"Left|Words|4|A [text]|none"_s}));
        auto &list = inBar<QTableView>(fixture, u"findHits"_s);
        QTRY_VERIFY(list.isVisible());
        hands::doubleClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(list.model()->index(2, 1)).center());
        QCOMPARE(fixture.grid(0).selection(), singleCell(3, 1));
        QVERIFY(fixture.grid(0).hasFocus());
    }

    void anInvalidExpressionIsToldInTheBar() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words()}));
        openBar(fixture, u"(on"_s);
        check(fixture, u"findPattern"_s);
        QTRY_VERIFY(inBar<QLabel>(fixture, u"findNote"_s).text().contains(u"regular expression"_s));
        QCOMPARE(countOf(fixture), u"0 cells"_s);
        hands::key(&fixture.window(), Qt::Key_F3);
        QCOMPARE(fixture.grid(0).selection(), singleCell(1, 1));
    }

    void aRegularExpressionFinds() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words()}));
        openBar(fixture, u"^o.e$"_s);
        check(fixture, u"findPattern"_s);
        QTRY_COMPARE(countOf(fixture), u"2 cells"_s);
    }

    void anEditIsCountedAnew() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words()}));
        openBar(fixture, u"one"_s);
        QTRY_COMPARE(countOf(fixture), u"4 cells"_s);
        edit(fixture, 0, 1, 1, u"other"_s);
        QTRY_COMPARE(countOf(fixture), u"3 cells"_s);
        edit(fixture, 0, 4, 2, u"phone"_s);
        QTRY_COMPARE(countOf(fixture), u"4 cells"_s);
        QTRY_COMPARE(hitsOf(fixture).constLast(), u"Left|Words|4|B [text]|phone"_s);
    }

    void aSortedTableIsSearchedAnew() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words()}));
        openBar(fixture, u"more"_s);
        QTRY_COMPARE(hitsOf(fixture), QStringList{u"Left|Words|3|A [text]|One more"_s});
        fixture.editor().setOrigin(0);
        fixture.clickCell(0, 1, 2);
        fixture.choose(Command::SortFPOP);
        QTRY_COMPARE(hitsOf(fixture).size(), 1);
        int row = 1;
        while (fixture.grid(0).TextMatrix(row, 1) != u"One more"_s)
            ++row;
        QTRY_COMPARE(hitsOf(fixture), QStringList{u"Left|Words|%1|A [text]|One more"_s.arg(row)});
        hands::key(&fixture.window(), Qt::Key_F3);
        QCOMPARE(fixture.grid(0).selection(), singleCell(row, 1));
    }

    void escapeClosesTheBarAndGivesTheKeyboardBack() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words()}));
        fixture.clickCell(0, 2, 1);
        const int height = fixture.grid(0).height();
        openBar(fixture, u"one"_s);
        QTRY_COMPARE(countOf(fixture), u"4 cells"_s);
        hands::key(&inBar<QLineEdit>(fixture, u"findText"_s), Qt::Key_Escape);
        QVERIFY(!inBar<QWidget>(fixture, u"findBar"_s).isVisible());
        QVERIFY(fixture.grid(0).hasFocus());
        QCOMPARE(fixture.grid(0).height(), height);
        hands::key(&fixture.window(), Qt::Key_F3); // goes on without it
        QTRY_COMPARE(fixture.grid(0).selection(), singleCell(2, 2));
    }

    void escapeStopsASearchWhereverTheKeyboardIs_data() {
        QTest::addColumn<bool>("editing");
        QTest::newRow("in the grid") << false;
        QTest::newRow("in a cell") << true;
    }

    void escapeStopsASearchWhereverTheKeyboardIs() {
        QFETCH(bool, editing);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"Many"_s, 60'000, 2)}));
        openBar(fixture, u"0"_s);
        if (editing)
            beginEdit(fixture, 0, 1, 1);
        else
            fixture.clickCell(0, 1, 1);
        // Only trying tells what this expression hits, which takes long.
        inBar<QAbstractButton>(fixture, u"findPattern"_s).setChecked(true);
        inBar<QLineEdit>(fixture, u"findText"_s).setText(u"(.)\\1\\1"_s);
        QVERIFY(inBar<QLabel>(fixture, u"findNote"_s).text().startsWith(u"Searching"_s));
        hands::key(editing ? static_cast<QWidget *>(&fixture.cellEditor(0)) : &fixture.grid(0), Qt::Key_Escape);
        QVERIFY(inBar<QLabel>(fixture, u"findNote"_s).text().startsWith(u"Stopped"_s));
        QVERIFY(inBar<QWidget>(fixture, u"findBar"_s).isVisible());
        hands::key(editing ? static_cast<QWidget *>(&fixture.cellEditor(0)) : &fixture.grid(0), Qt::Key_Escape);
        QVERIFY(inBar<QWidget>(fixture, u"findBar"_s).isVisible());
        QCOMPARE(test::editing(fixture, 0), editing);
    }

    void f3WithNothingToFindOpensTheBar() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words()}));
        hands::key(&fixture.window(), Qt::Key_F3);
        QVERIFY(inBar<QWidget>(fixture, u"findBar"_s).isVisible());
    }

    void aTableThatIsGoneIsNoHitAnyMore() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words(), listOf(u"Zones"_s, {u"one"_s})}));
        openBar(fixture, u"one"_s);
        check(fixture, u"findAllTables"_s);
        QTRY_COMPARE(countOf(fixture), u"5 cells"_s);
        fixture.clickLine(0, 1);
        fixture.dialogs().expectMessage(u"Do you want to remove table: 'Zones' ?"_s, u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveTableMenu);
        QTRY_COMPARE(countOf(fixture), u"4 cells"_s);
    }

    void aClosedDatabaseLeavesNoHits() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {words()}));
        openBar(fixture, u"one"_s);
        QTRY_COMPARE(countOf(fixture), u"4 cells"_s);
        fixture.choose(Command::CloseDatabaseMenu);
        QTRY_COMPARE(countOf(fixture), u"0 cells"_s);
        hands::click(&inBar<QLineEdit>(fixture, u"findText"_s), Qt::LeftButton);
        hands::key(&inBar<QLineEdit>(fixture, u"findText"_s), Qt::Key_Escape);
        QVERIFY(!inBar<QWidget>(fixture, u"findBar"_s).isVisible());
    }

    void manyHitsAreFoundWithTheWindowAlive() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"Many"_s, 20000, 3)}));
        openBar(fixture, u"01"_s);
        QTRY_VERIFY(!inBar<QLabel>(fixture, u"findNote"_s).text().startsWith(u"Searching"_s));
        std::int64_t expected = 0;
        for (const QStringList &row : fixture.texts(0))
            expected +=
                std::count_if(row.begin(), row.end(), [](const QString &text) { return text.contains(u"01"_s); });
        QCOMPARE(countOf(fixture), u"%1 cells"_s.arg(expected));
    }
};

QTEST_MAIN(FindTest)
#include "find_test.moc"
