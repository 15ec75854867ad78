#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QAbstractButton>
#include <QApplication>
#include <QHeaderView>
#include <QInputMethodEvent>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

#include <tuple>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

enum class Header { Column, BeyondColumns, Row, BelowRows, Corner };

/// A place on a header of a pane's grid, and the control there.
std::pair<QWidget *, QPoint> headerPlace(EditorFixture &fixture, int pane, Header header) {
    const QHeaderView &columns = *fixture.grid(pane).horizontalHeader();
    const QHeaderView &rows = *fixture.grid(pane).verticalHeader();
    const int beyond = 20;
    switch (header) {
    case Header::Column:
        return {columns.viewport(), headerCentre(fixture, pane, 1)};
    case Header::BeyondColumns:
        return {columns.viewport(), {columns.length() + beyond, columns.height() / 2}};
    case Header::Row:
        return {rows.viewport(), {rows.width() / 2, rows.sectionSize(0) / 2}};
    case Header::BelowRows:
        return {rows.viewport(), {rows.width() / 2, rows.length() + beyond}};
    case Header::Corner:
        break;
    }
    return {fixture.grid(pane).findChild<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly), {}};
}

} // namespace

/// Moving from cell to cell and scrolling while a cell is edited.
class EditMovesTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        WindowTest::init();
        QCursor::setPos(0, 0); // over no header, where Enter opens nothing
    }

    void movingToAnotherCellEndsTheEdit() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        beginEdit(fixture, 0, 1, 1);
        fixture.clickCell(0, 2, 2);
        QVERIFY(!editing(fixture, 0));
        QCOMPARE(fixture.editedCell().row, -1);
        // The cell that became current is not written to by keys meant for the editor.
        hands::type(&fixture.grid(0), u"5"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void loadingATableDropsTheEdit() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps(), valves()}));
        beginEdit(fixture, 0, 3, 2);
        fixture.clickLine(0, 1);
        QVERIFY(!editing(fixture, 0));
        QCOMPARE(fixture.editedCell().row, -1);
    }

    void tabEditsTheNextCellAndShiftTabThePreviousOne() {
        const QString left = makeFile(u"A.DDB"_s, {widePumps()});
        EditorFixture fixture;
        fixture.openBoth(left, makeFile(u"B.DDB"_s, {widePumps()}));
        beginEdit(fixture, 0, 1, 1);
        retype(fixture, 0, u"77"_s);
        hands::key(&fixture.cellEditor(0), Qt::Key_Tab);
        QVERIFY(isEdited(fixture, 1, 2));
        QCOMPARE(fixture.cellEditor(0).text(), u"Main"_s);
        QCOMPARE(fixture.cellEditor(0).cursorPosition(), 4);
        QCOMPARE(stored(fixture, 0, 1, 1).toDouble(), 77.0);
        // The other pane goes along, and the pane with the editor stays the active one.
        QCOMPARE(fixture.grid(1).selection(), singleCell(1, 2));
        QCOMPARE(fixture.activePane(), 0);
        hands::type(&fixture.cellEditor(0), u"!"_s);
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), u"Main!"_s);
        hands::key(&fixture.cellEditor(0), Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(isEdited(fixture, 1, 1));
        QCOMPARE(fixture.cellEditor(0).text(), u"77"_s);
    }

    void tabAtARowsEndEditsTheNextRowAndShiftTabAtItsBeginningThePreviousOne() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        beginEdit(fixture, 0, 1, 3);
        hands::key(&fixture.cellEditor(0), Qt::Key_Tab);
        QVERIFY(isEdited(fixture, 2, 1));
        hands::key(&fixture.cellEditor(0), Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(isEdited(fixture, 1, 3));
    }

    void tabInTheLastCellAndShiftTabInTheFirstOneCloseTheEditorAndStay() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        for (const auto &[cell, key, modifiers] :
             {std::tuple{QPoint(3, 3), Qt::Key_Tab, Qt::KeyboardModifiers()},
              std::tuple{QPoint(1, 1), Qt::Key_Backtab, Qt::KeyboardModifiers(Qt::ShiftModifier)}}) {
            beginEdit(fixture, 0, cell.y(), cell.x());
            hands::key(&fixture.cellEditor(0), key, modifiers);
            QVERIFY(!editing(fixture, 0));
            QCOMPARE(fixture.grid(0).selection(), singleCell(cell.y(), cell.x()));
            QVERIFY(fixture.grid(0).hasFocus());
        }
    }

    void tabPassesOverAColumnThatIsDraggedToNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        fixture.grid(0).setColWidth(2, 0);
        beginEdit(fixture, 0, 1, 1);
        hands::key(&fixture.cellEditor(0), Qt::Key_Tab);
        QVERIFY(isEdited(fixture, 1, 3));
        fixture.grid(0).setColWidth(3, 0);
        hands::key(&fixture.cellEditor(0), Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(isEdited(fixture, 1, 1));
        hands::key(&fixture.cellEditor(0), Qt::Key_Tab);
        QVERIFY(isEdited(fixture, 2, 1));
    }

    void tabEditsTheNextCellWhereverThePointerRests() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {widePumps()}));
        beginEdit(fixture, 0, 1, 1);
        const QWidget *header = fixture.grid(0).horizontalHeader()->viewport();
        QCursor::setPos(header->mapToGlobal(headerCentre(fixture, 0, 2)));
        hands::key(&fixture.cellEditor(0), Qt::Key_Tab);
        QVERIFY(isEdited(fixture, 1, 2));
    }

    void tabBringsTheNextCellIntoView() {
        const QString left = makeFile(u"A.DDB"_s, {counted(u"Large"_s, 200, 30)});
        EditorFixture fixture;
        fixture.openBoth(left, makeFile(u"B.DDB"_s, {counted(u"Large"_s, 200, 30)}));
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_End);
        hands::key(&fixture.grid(0), Qt::Key_Return);
        QVERIFY(isEdited(fixture, 1, 30));
        QVERIFY(fixture.grid(0).LeftCol() > 1);
        hands::key(&fixture.cellEditor(0), Qt::Key_Tab);
        QVERIFY(isEdited(fixture, 2, 1));
        QCOMPARE(fixture.grid(0).LeftCol(), 1);
        QCOMPARE(fixture.grid(1).LeftCol(), 1);
    }

    void aPressOnAnyHeaderEndsTheEdit_data() {
        QTest::addColumn<int>("pane");
        QTest::addColumn<Header>("header");
        QTest::addColumn<Qt::MouseButton>("button");
        for (const int pane : {0, 1}) {
            const auto add = [pane](const char *name, Header header, Qt::MouseButton button) {
                QTest::addRow("%s of pane %d", name, pane) << pane << header << button;
            };
            add("the column", Header::Column, Qt::LeftButton);
            add("the column by the right button", Header::Column, Qt::RightButton);
            add("beyond the last column", Header::BeyondColumns, Qt::LeftButton);
            add("the row", Header::Row, Qt::LeftButton);
            add("below the last row", Header::BelowRows, Qt::LeftButton);
            add("the corner", Header::Corner, Qt::LeftButton);
        }
    }

    void aPressOnAnyHeaderEndsTheEdit() {
        QFETCH(const int, pane);
        QFETCH(const Header, header);
        QFETCH(const Qt::MouseButton, button);
        const QString left = makeFile(u"A.DDB"_s, {widePumps()});
        EditorFixture fixture;
        fixture.openBoth(left, makeFile(u"B.DDB"_s, {widePumps()}));
        beginEdit(fixture, 0, 1, 1); // the cell that stays current, whichever header is pressed
        QVERIFY(isEdited(fixture, 1, 1));
        const auto [control, place] = headerPlace(fixture, pane, header);
        hands::press(control, button, Qt::NoModifier, place);
        QVERIFY(!editing(fixture, 0));
        QCOMPARE(fixture.editedCell().row, -1);
        QCOMPARE(fixture.grid(0).Row(), 1);
        QCOMPARE(fixture.grid(0).Col(), 1);
        QVERIFY(!fixture.cellEditor(0).hasFocus());
        if (QWidget *popup = QApplication::activePopupWidget())
            popup->close();
        hands::release(control, button, Qt::NoModifier, place);
        QVERIFY(!editing(fixture, 0));
    }

    void scrollingByTheWheelEndsTheEditAndMovesTheCurrentCellToTheTopLeft() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"Large"_s, 200, 30)}));
        beginEdit(fixture, 0, 3, 2);
        turnWheel(fixture, 0, -120);
        Grid &grid = fixture.grid(0);
        QVERIFY(!editing(fixture, 0));
        QVERIFY(grid.TopRow() > 1);
        QCOMPARE(grid.selection(), singleCell(grid.TopRow(), grid.LeftCol()));
    }

    void scrollingByTheBarEndsTheEditEvenAtTheTopLeftCell() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"Large"_s, 200, 30)}));
        beginEdit(fixture, 0, 1, 1);
        fixture.grid(0).horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        QVERIFY(!editing(fixture, 0));
        QCOMPARE(fixture.grid(0).selection(), singleCell(1, fixture.grid(0).LeftCol()));
        QVERIFY(fixture.grid(0).LeftCol() > 1);
    }

    void anEditEndsWhenItsCellIsScrolledAwayByExtendingTheSelection_data() {
        QTest::addColumn<bool>("byDragging");
        QTest::newRow("keys") << false;
        QTest::newRow("a drag") << true;
    }

    void anEditEndsWhenItsCellIsScrolledAwayByExtendingTheSelection() {
        QFETCH(const bool, byDragging);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"Large"_s, 200, 30)}));
        Grid &grid = fixture.grid(0);
        beginEdit(fixture, 0, 2, 2);
        if (byDragging) {
            const QPoint inside = fixture.cellCentre(0, 5, 3);
            const QPoint below(inside.x(), grid.viewport()->height() + 30);
            hands::press(grid.viewport(), Qt::LeftButton, Qt::ShiftModifier, inside);
            hands::move(grid.viewport(), QPoint(inside.x(), grid.viewport()->height() - 1), Qt::LeftButton);
            hands::move(grid.viewport(), below, Qt::LeftButton);
            QTRY_VERIFY(grid.TopRow() > 1);
            hands::release(grid.viewport(), Qt::LeftButton, Qt::ShiftModifier, below);
        } else {
            grid.setFocus();
            hands::key(&grid, Qt::Key_Down, Qt::ShiftModifier);
            QVERIFY(editing(fixture, 0)); // its cell is still there
            hands::key(&grid, Qt::Key_End, Qt::ShiftModifier | Qt::ControlModifier);
        }
        QVERIFY(grid.TopRow() > 1);
        QCOMPARE(grid.Row(), 2);
        QCOMPARE(grid.Col(), 2);
        QVERIFY(!editing(fixture, 0));
        QCOMPARE(fixture.editedCell().row, -1);
    }

    void openingTheEditorBringsItsCellIntoView() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"Large"_s, 200, 30)}));
        Grid &grid = fixture.grid(0);
        fixture.clickCell(0, 1, 1);
        grid.setTopRow(150);
        grid.setLeftCol(20);
        hands::key(&grid, Qt::Key_Return);
        QVERIFY(editing(fixture, 0));
        QCOMPARE(grid.selection(), singleCell(1, 1));
        QCOMPARE(grid.TopRow(), 1);
        QCOMPARE(fixture.cellEditor(0).geometry(), currentCell(fixture, 0));
        QVERIFY(!fixture.cellEditor(0).geometry().isEmpty());
    }

    void keysMoveTheCurrentCellAndExtendTheSelection() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"Large"_s, 200, 30)}));
        Grid &grid = fixture.grid(0);
        fixture.clickCell(0, 2, 2);
        hands::key(&grid, Qt::Key_Down);
        hands::key(&grid, Qt::Key_Right);
        QCOMPARE(grid.selection(), singleCell(3, 3));
        hands::key(&grid, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(grid.selection(), singleCell(200, 30));
        QVERIFY(!grid.cellRectangle().isEmpty());
        hands::key(&grid, Qt::Key_Up, Qt::ShiftModifier);
        QCOMPARE(grid.selection(), (GridSelection{200, 30, 199, 30}));
        hands::key(&grid, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(grid.selection(), (GridSelection{1, 1, 200, 30}));
    }
};

QTEST_MAIN(EditMovesTest)
#include "edit_moves_test.moc"
