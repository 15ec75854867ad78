#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QWheelEvent>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// numbers() with an empty text field.
TableOfTexts notedNumbers(const QString &name, const QStringList &texts) {
    TableOfTexts table = numbers(name, texts);
    table.fields.push_back({u"Note"_s, FieldType::Text, QStringList(texts.size())});
    return table;
}

} // namespace

/// Editing with two databases side by side: marks of differing cells, and two grids that go together.
class EditCompareTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void anEditThatMakesACellEqualClearsItsMarkAndTheTablesMarker() {
        EditorFixture fixture;
        openBoth(fixture, {notedNumbers(u"T"_s, {u"1"_s, u"2"_s})}, {notedNumbers(u"T"_s, {u"1"_s, u"3"_s})});
        QCOMPARE(fixture.lines(0), QStringList({u"T !"_s}));
        QCOMPARE(redCells(fixture, 0), (Cells{{2, 1}}));
        edit(fixture, 0, 2, 1, u"3"_s);
        QCOMPARE(redCells(fixture, 0), Cells());
        QCOMPARE(redCells(fixture, 1), Cells());
        QCOMPARE(fixture.lines(0), QStringList({u"T"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"T"_s}));
        QCOMPARE(fixture.editor().CelleDiverse().count(), 0U);
    }

    void anEditThatMakesACellDifferMarksItInBothGridsAndBothLists() {
        EditorFixture fixture;
        openBoth(fixture, {notedNumbers(u"T"_s, {u"1"_s, u"2"_s})}, {notedNumbers(u"T"_s, {u"1"_s, u"2"_s})});
        QCOMPARE(fixture.lines(0), QStringList({u"T"_s}));
        edit(fixture, 1, 1, 1, u"7"_s);
        QCOMPARE(redCells(fixture, 0), (Cells{{1, 1}}));
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 1}}));
        QCOMPARE(fixture.lines(0), QStringList({u"T !"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"T !"_s}));
        QVERIFY(fixture.editor().CelleDiverse().at(1, 1));
    }

    void theTablesMarkerStaysWhileAnotherCellDiffers() {
        EditorFixture fixture;
        openBoth(fixture, {notedNumbers(u"T"_s, {u"1"_s, u"2"_s})}, {notedNumbers(u"T"_s, {u"5"_s, u"6"_s})});
        edit(fixture, 0, 1, 1, u"5"_s);
        QCOMPARE(redCells(fixture, 0), (Cells{{2, 1}}));
        QCOMPARE(fixture.lines(0), QStringList({u"T !"_s}));
    }

    void cellsAreComparedByTheirTextsWhileOneTypes() {
        EditorFixture fixture;
        openBoth(fixture, {notedNumbers(u"T"_s, {u"1"_s})}, {notedNumbers(u"T"_s, {u"1"_s})});
        beginEdit(fixture, 0, 1, 1);
        retype(fixture, 0, u"1x"_s);
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 1}})); // though both hold 1
        hands::key(&fixture.cellEditor(0), Qt::Key_Backspace);
        QCOMPARE(redCells(fixture, 1), Cells());
    }

    void aCellBeyondTheOtherTableAlwaysDiffers() {
        EditorFixture fixture;
        openBoth(fixture, {notedNumbers(u"T"_s, {u"1"_s, u"2"_s, u""_s})}, {notedNumbers(u"T"_s, {u"1"_s, u"2"_s})});
        edit(fixture, 0, 3, 2, u"x"_s);
        edit(fixture, 0, 3, 2, QString());
        QCOMPARE(redCells(fixture, 0), (Cells{{3, 1}, {3, 2}}));
        QCOMPARE(redCells(fixture, 1), Cells());
        QCOMPARE(fixture.lines(0), QStringList({u"T !"_s}));
    }

    void nothingIsMarkedWhileTheOtherDatabaseLacksTheTable() {
        EditorFixture fixture;
        openBoth(fixture, {notedNumbers(u"A"_s, {u"1"_s}), notedNumbers(u"B"_s, {u"1"_s})},
                 {notedNumbers(u"B"_s, {u"9"_s})});
        fixture.clickLine(0, 1);
        fixture.clickLine(0, 0); // the other grid still holds B
        QCOMPARE(fixture.lines(1).first(), u"A ?"_s);
        edit(fixture, 0, 1, 1, u"4"_s);
        QCOMPARE(redCells(fixture, 0), Cells());
        QCOMPARE(fixture.lines(0).first(), u"A"_s);
    }

    void openingAnEditorEndsTheOneInTheOtherPane() {
        EditorFixture fixture;
        openBoth(fixture, {notedNumbers(u"T"_s, {u"1"_s, u"2"_s})}, {notedNumbers(u"T"_s, {u"1"_s, u"2"_s})});
        beginEdit(fixture, 0, 1, 1);
        doubleClickCell(fixture, 1, 1, 1);
        QVERIFY(!editing(fixture, 0));
        QVERIFY(editing(fixture, 1));
        QCOMPARE(fixture.window().focusWidget(), &fixture.cellEditor(1));
        QVERIFY(fixture.grid(0).userResizing());
        hands::type(&fixture.cellEditor(1), u"5"_s);
        QCOMPARE(stored(fixture, 1, 1, 1).toDouble(), 15.0);
        QCOMPARE(stored(fixture, 0, 1, 1).toDouble(), 1.0);
        QCOMPARE(fixture.activePane(), 1);
    }

    void typingMakesThePaneOfTheEditorActive() {
        EditorFixture fixture;
        openBoth(fixture, {notedNumbers(u"T"_s, {u"1"_s})}, {notedNumbers(u"T"_s, {u"1"_s})});
        beginEdit(fixture, 0, 1, 1);
        fixture.activate(1); // the edit goes on
        QVERIFY(editing(fixture, 0));
        fixture.cellEditor(0).setFocus();
        hands::type(&fixture.cellEditor(0), u"5"_s);
        QCOMPARE(fixture.activePane(), 0);
        QCOMPARE(stored(fixture, 0, 1, 1).toDouble(), 15.0);
    }

    void aPressMakesThePaneActiveThoughItsGridHasTheFocusAlready() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"Wide"_s, 20, 6)}, {counted(u"Wide"_s, 20, 6)});
        for (const bool right : {false, true}) {
            fixture.clickCell(1, 1, 1);
            fixture.activate(0);
            QCOMPARE(fixture.activePane(), 0);
            QCOMPARE(fixture.window().focusWidget(), &fixture.grid(1));
            if (right)
                rightPressCell(fixture, 1, 2, 1);
            else
                fixture.clickCell(1, 2, 1);
            QCOMPARE(fixture.activePane(), 1);
        }
        fixture.menu(Menu::popmenuGrid).close();
    }

    void theOtherGridTakesTheSelection() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"Wide"_s, 20, 6)}, {counted(u"Wide"_s, 20, 6)});
        selectBlock(fixture, 0, {3, 2, 5, 4});
        QCOMPARE(fixture.grid(1).selection(), (GridSelection{3, 2, 5, 4}));
        hands::key(&fixture.grid(0), Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(fixture.grid(1).selection(), (GridSelection{3, 2, 6, 4}));
    }

    void theOtherGridTakesOnlyWhatItIsLargeEnoughFor() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"Wide"_s, 20, 6)}, {counted(u"Wide"_s, 4, 3)});
        selectBlock(fixture, 0, {3, 2, 10, 5});
        QCOMPARE(fixture.grid(1).selection(), (GridSelection{3, 2, 3, 2}));
        fixture.clickCell(0, 9, 1);
        QCOMPARE(fixture.grid(1).selection(), (GridSelection{3, 1, 3, 1}));
    }

    void theFollowingGridRaisesNothing() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"Wide"_s, 300, 30)}, {counted(u"Wide"_s, 300, 30)});
        Grid &follower = fixture.grid(1);
        QSignalSpy leave(&follower, &Grid::LeaveCell);
        QSignalSpy change(&follower, &Grid::SelChange);
        QSignalSpy scroll(&follower, &Grid::Scroll);
        fixture.clickCell(0, 5, 5);
        hands::key(&fixture.grid(0), Qt::Key_End, Qt::ControlModifier);
        turnWheel(fixture, 0, 120);
        QCOMPARE(leave.count() + change.count() + scroll.count(), 0);
    }

    void theOtherGridScrollsAlong() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"Wide"_s, 300, 30)}, {counted(u"Wide"_s, 300, 30)});
        turnWheel(fixture, 0, -360);
        QVERIFY(fixture.grid(0).TopRow() > 1);
        QCOMPARE(fixture.grid(1).TopRow(), fixture.grid(0).TopRow());
        QCOMPARE(fixture.grid(1).selection(), fixture.grid(0).selection());
        fixture.grid(1).horizontalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
        QVERIFY(fixture.grid(1).LeftCol() > 1);
        QCOMPARE(fixture.grid(0).LeftCol(), fixture.grid(1).LeftCol());
    }

    void theOtherGridScrollsAlongToACellThatIsCurrentAlready() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"Wide"_s, 300, 30)}, {counted(u"Wide"_s, 300, 30)});
        fixture.clickCell(0, 1, 2);
        fixture.grid(0).horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        QCOMPARE(fixture.grid(0).LeftCol(), 2);
        QCOMPARE(fixture.grid(0).selection(), singleCell(1, 2));
        QCOMPARE(fixture.grid(1).LeftCol(), 2);
    }

    void theOtherGridFollowsAKeyThatScrolls() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"Wide"_s, 300, 30)}, {counted(u"Wide"_s, 300, 30)});
        fixture.clickCell(0, 1, 1);
        for (int key = 0; key < 5; ++key) {
            hands::key(&fixture.grid(0), Qt::Key_PageDown);
            QCOMPARE(fixture.grid(1).TopRow(), fixture.grid(0).TopRow());
        }
        hands::key(&fixture.grid(0), Qt::Key_End);
        QCOMPARE(fixture.grid(1).LeftCol(), fixture.grid(0).LeftCol());
        QVERIFY(fixture.grid(0).TopRow() > 1);
        QVERIFY(fixture.grid(0).LeftCol() > 1);
    }

    void theOtherGridFollowsWhenTheEditorsCellIsBroughtIntoView() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"Wide"_s, 300, 30)}, {counted(u"Wide"_s, 300, 30)});
        fixture.clickCell(0, 1, 1);
        fixture.grid(0).setTopRow(200);
        hands::key(&fixture.grid(0), Qt::Key_Return);
        QCOMPARE(fixture.grid(0).TopRow(), 1);
        QCOMPARE(fixture.grid(1).TopRow(), 1);
    }

    void theOtherGridFollowsWhenAnEditorIsKeptInViewOfASmallerWindow() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"Wide"_s, 300, 3)}, {counted(u"Wide"_s, 300, 3)});
        Grid &grid = fixture.grid(0);
        const int lastShown = grid.viewport()->height() / grid.rowHeight(0);
        beginEdit(fixture, 0, lastShown, 2);
        QCOMPARE(grid.TopRow(), 1);
        fixture.window().resize(fixture.window().width(), fixture.window().height() - 200);
        QTRY_VERIFY(grid.TopRow() > 1);
        QVERIFY(editing(fixture, 0));
        QCOMPARE(fixture.grid(1).TopRow(), grid.TopRow());
    }

    void anEditInTheFollowingGridEnds_data() {
        QTest::addColumn<bool>("byScrolling");
        QTest::newRow("the other grid scrolls") << true;
        QTest::newRow("another cell becomes current in the other grid") << false;
    }

    void anEditInTheFollowingGridEnds() {
        QFETCH(const bool, byScrolling);
        EditorFixture fixture;
        openBoth(fixture, {counted(u"Wide"_s, 300, 30)}, {counted(u"Wide"_s, 300, 30)});
        beginEdit(fixture, 1, 2, 2);
        if (byScrolling)
            turnWheel(fixture, 0, -120);
        else
            fixture.clickCell(0, 4, 4);
        QVERIFY(!editing(fixture, 1));
        QCOMPARE(fixture.editedCell().row, -1);
    }

    void oneOpenDatabaseMirrorsNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"Wide"_s, 20, 6)}));
        const GridSelection before = fixture.grid(1).selection();
        selectBlock(fixture, 0, {3, 2, 5, 4});
        QCOMPARE(fixture.grid(1).selection(), before);
    }

    void switchingModesEndsAnEditInThePaneThatStays_data() {
        QTest::addColumn<int>("command");
        QTest::newRow("by the item for one pane") << static_cast<int>(Command::OneMenu);
        QTest::newRow("by the item for two panes") << static_cast<int>(Command::TwoMenu);
    }

    void switchingModesEndsAnEditInThePaneThatStays() {
        QFETCH(const int, command);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"Wide"_s, 20, 6)}));
        for (const bool two : {true, false}) { // each item toggles
            beginEdit(fixture, 0, 2, 2);
            fixture.choose(static_cast<Command>(command));
            QCOMPARE(fixture.editor().twoPanes(), two);
            QVERIFY(!editing(fixture, 0));
            QCOMPARE(fixture.editedCell().row, -1);
            QVERIFY(fixture.grid(0).userResizing());
        }
    }

    void anEditThatEndsWhileAnotherWindowIsActiveLeavesNoKeysToItsEditor() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"Wide"_s, 20, 6)}, {counted(u"Wide"_s, 20, 6)});
        beginEdit(fixture, 1, 2, 2);
        const QString text = fixture.cellEditor(1).text();
        {
            QWidget other;
            other.show();
            other.activateWindow();
            QTRY_VERIFY(!fixture.cellEditor(1).hasFocus());
            fixture.choose(Command::OneMenu);
        }
        QVERIFY(fixture.window().focusWidget() != &fixture.cellEditor(1));
        fixture.window().activateWindow();
        hands::strike(fixture.window(), Qt::Key_7, Qt::NoModifier, u"7"_s);
        QCOMPARE(fixture.cellEditor(1).text(), text);
        QCOMPARE(fixture.activePane(), 0);
    }

    void switchingToOnePaneEndsAnEdit() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"Wide"_s, 20, 6)}, {counted(u"Wide"_s, 20, 6)});
        beginEdit(fixture, 1, 2, 2);
        fixture.choose(Command::OneMenu);
        QVERIFY(!editing(fixture, 1));
        QCOMPARE(fixture.editedCell().row, -1);
    }
};

QTEST_MAIN(EditCompareTest)
#include "edit_compare_test.moc"
