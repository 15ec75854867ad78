#include "platform/grid/Grid.h"
#include "tests/platform/GridEventsTesting.h"
#include "tests/support/Hands.h"

#include <QAbstractButton>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QtTest>

using namespace qir;
using namespace qir::testing;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(qir::GridSelection)

class GridSelectionEventsTest : public WithShownGrid {
    Q_OBJECT

private Q_SLOTS:
    void settingRowOrColCollapsesTheSelection();
    void settingTheOtherCornerExtends();
    void leavingACellRaisesLeaveCellBeforeAndSelChangeAfter();
    void extendingRaisesSelChangeAlone();
    void settingWhatIsSetRaisesNothing();
    void aCellThatTheGridDoesNotHaveChangesNothing();
    void theSelectionShowsInTheView();
    void selectingThroughTheSelectionModelCounts();
    void aSilentGridRaisesNothing();

    void aClickMakesTheCellCurrent();
    void aClickBesideTheCellsMovesNothing();
    void aDoubleClickIsToldOnceWithItsCellCurrent();
    void shiftAndClickExtends();
    void draggingExtendsAndEndsWithOneClick();
    void draggingOutsideScrollsOnWithoutAScrollEvent();
    void aColumnHeaderSelectsItsRecordsFromTheFirst();
    void shiftOnAColumnHeaderExtendsToWholeColumns();
    void draggingOverColumnHeadersSelectsColumns();
    void aRowHeaderSelectsItsRow();
    void shiftOnARowHeaderExtendsToWholeRows();
    void theCornerSelectsEverything();
    void draggingAResizeHandleSelectsNothing();
    void aHeaderClickGivesTheGridTheFocus();
    void aDoubleClickOnAHeaderIsTold();
};

// Current cell and selection, by code

void GridSelectionEventsTest::settingRowOrColCollapsesTheSelection() {
    m_grid->setSelection({2, 2, 8, 5});
    m_grid->setRow(4);
    QCOMPARE(m_grid->selection(), singleCell(4, 2));
    m_grid->setSelection({2, 2, 8, 5});
    m_grid->setCol(3);
    QCOMPARE(m_grid->selection(), singleCell(2, 3));
    m_grid->setSelection({2, 2, 8, 5});
    m_log->take();
    m_grid->setRow(2);
    QCOMPARE(m_grid->selection(), singleCell(2, 2));
    QCOMPARE(m_log->take(), QStringList{u"SelChange 2,2"_s});
}

void GridSelectionEventsTest::settingTheOtherCornerExtends() {
    m_grid->setRow(5);
    m_grid->setCol(2);
    m_grid->setRowSel(3);
    m_grid->setColSel(4);
    QCOMPARE(m_grid->Row(), 5);
    QCOMPARE(m_grid->Col(), 2);
    QCOMPARE(m_grid->RowSel(), 3);
    QCOMPARE(m_grid->ColSel(), 4);
}

void GridSelectionEventsTest::leavingACellRaisesLeaveCellBeforeAndSelChangeAfter() {
    m_grid->setRow(7);
    QCOMPARE(m_log->take(), (QStringList{u"LeaveCell 1,1"_s, u"SelChange 7,1"_s}));
    m_grid->setSelection({3, 3, 5, 5});
    QCOMPARE(m_log->take(), (QStringList{u"LeaveCell 7,1"_s, u"SelChange 3,3"_s}));
}

void GridSelectionEventsTest::extendingRaisesSelChangeAlone() {
    m_grid->setRowSel(4);
    QCOMPARE(m_log->take(), QStringList{u"SelChange 1,1"_s});
}

void GridSelectionEventsTest::settingWhatIsSetRaisesNothing() {
    m_grid->setSelection({2, 2, 4, 4});
    m_log->take();
    m_grid->setRowSel(4);
    m_grid->setColSel(4);
    m_grid->setSelection({2, 2, 4, 4});
    QCOMPARE(m_log->take(), QStringList());
}

void GridSelectionEventsTest::aCellThatTheGridDoesNotHaveChangesNothing() {
    m_grid->setSelection({2, 2, 4, 4});
    m_log->take();
    m_grid->setRow(101);
    m_grid->setRow(-1);
    m_grid->setCol(7);
    m_grid->setRowSel(500);
    m_grid->setColSel(-2);
    m_grid->setSelection({1, 1, 1, 7});
    QCOMPARE(m_grid->selection(), (GridSelection{2, 2, 4, 4}));
    QCOMPARE(m_log->take(), QStringList());
}

void GridSelectionEventsTest::theSelectionShowsInTheView() {
    m_grid->setSelection({4, 5, 2, 3});
    QCOMPARE(m_grid->currentIndex(), m_grid->model()->index(3, 4));
    const QItemSelection shown = m_grid->selectionModel()->selection();
    QCOMPARE(shown.size(), 1);
    QCOMPARE(shown.first().topLeft(), m_grid->model()->index(1, 2));
    QCOMPARE(shown.first().bottomRight(), m_grid->model()->index(3, 4));
}

void GridSelectionEventsTest::selectingThroughTheSelectionModelCounts() {
    m_grid->setCurrentIndex(m_grid->model()->index(6, 3));
    QCOMPARE(m_grid->selection(), singleCell(7, 4));
    QCOMPARE(m_log->take(), (QStringList{u"LeaveCell 1,1"_s, u"SelChange 7,4"_s}));
    m_grid->selectionModel()->select(QItemSelection(m_grid->model()->index(6, 3), m_grid->model()->index(8, 4)),
                                     QItemSelectionModel::ClearAndSelect);
    QCOMPARE(m_grid->selection(), (GridSelection{7, 4, 9, 5}));
    QCOMPARE(m_log->take(), QStringList{u"SelChange 7,4"_s});
    m_grid->selectionModel()->select(QItemSelection(m_grid->model()->index(0, 0), m_grid->model()->index(1, 1)),
                                     QItemSelectionModel::ClearAndSelect);
    QCOMPARE(m_grid->selection(), (GridSelection{1, 1, 2, 2}));
    QCOMPARE(m_grid->currentIndex(), m_grid->model()->index(0, 0));
}

void GridSelectionEventsTest::aSilentGridRaisesNothing() {
    {
        const GridSilence silence(*m_grid);
        m_grid->setRow(5);
        m_grid->setColSel(4);
    }
    QCOMPARE(m_log->take(), QStringList());
    QCOMPARE(m_grid->selection(), (GridSelection{5, 1, 5, 4}));
    m_grid->setRow(6);
    QCOMPARE(m_log->take(), (QStringList{u"LeaveCell 5,1"_s, u"SelChange 6,1"_s}));
}

// Mouse

void GridSelectionEventsTest::aClickMakesTheCellCurrent() {
    hands::click(m_grid->viewport(), Qt::LeftButton, {}, cellCentre(*m_grid, 3, 2));
    QCOMPARE(m_grid->selection(), singleCell(3, 2));
    QCOMPARE(m_log->take(), (QStringList{u"LeaveCell 1,1"_s, u"SelChange 3,2"_s, u"MouseDown 1 3,2"_s, u"Click"_s}));
    hands::click(m_grid->viewport(), Qt::LeftButton, {}, cellCentre(*m_grid, 3, 2));
    QCOMPARE(m_log->take(), (QStringList{u"MouseDown 1 3,2"_s, u"Click"_s}));
}

void GridSelectionEventsTest::aClickBesideTheCellsMovesNothing() {
    fill(*m_grid, 2, 1);
    hands::click(m_grid->viewport(), Qt::LeftButton, {}, m_grid->viewport()->rect().bottomRight() - QPoint(3, 3));
    QCOMPARE(m_log->take(), (QStringList{u"MouseDown 1 -1,-1"_s, u"Click"_s}));
    QCOMPARE(m_grid->selection(), singleCell(1, 1));
}

void GridSelectionEventsTest::aDoubleClickIsToldOnceWithItsCellCurrent() {
    const QPoint at = cellCentre(*m_grid, 3, 2);
    m_grid->setSelection(singleCell(3, 2));
    m_log->take();
    hands::doubleClick(m_grid->viewport(), Qt::LeftButton, {}, at);
    QCOMPARE(m_log->take(), (QStringList{u"MouseDown 1 3,2"_s, u"Click"_s, u"DblClick"_s}));
    QCOMPARE(m_grid->selection(), singleCell(3, 2));
}

void GridSelectionEventsTest::shiftAndClickExtends() {
    m_grid->setSelection(singleCell(3, 2));
    m_log->take();
    hands::click(m_grid->viewport(), Qt::LeftButton, Qt::ShiftModifier, cellCentre(*m_grid, 5, 3));
    QCOMPARE(m_grid->selection(), (GridSelection{3, 2, 5, 3}));
    QStringList told = m_log->take();
    QVERIFY(told.takeFirst().startsWith(u"KeyDown 16,"_s)); // the Shift key itself
    QCOMPARE(told, (QStringList{u"SelChange 3,2"_s, u"MouseDown 1 5,3"_s, u"Click"_s}));
}

void GridSelectionEventsTest::draggingExtendsAndEndsWithOneClick() {
    press(cellCentre(*m_grid, 2, 1));
    dragTo(cellCentre(*m_grid, 4, 3));
    dragTo(cellCentre(*m_grid, 4, 2));
    hands::release(m_grid->viewport(), Qt::LeftButton, {}, cellCentre(*m_grid, 4, 2));
    QCOMPARE(m_grid->selection(), (GridSelection{2, 1, 4, 2}));
    QCOMPARE(m_log->take(), (QStringList{u"LeaveCell 1,1"_s, u"SelChange 2,1"_s, u"MouseDown 1 2,1"_s,
                                         u"SelChange 2,1"_s, u"SelChange 2,1"_s, u"Click"_s}));
    dragTo(cellCentre(*m_grid, 6, 3));
    QCOMPARE(m_grid->selection(), (GridSelection{2, 1, 4, 2}));
}

void GridSelectionEventsTest::draggingOutsideScrollsOnWithoutAScrollEvent() {
    press(cellCentre(*m_grid, 2, 1));
    const QPoint below(cellCentre(*m_grid, 2, 1).x(), m_grid->viewport()->height() + 30);
    dragTo(below);
    QTRY_VERIFY(m_grid->TopRow() > 3);
    hands::release(m_grid->viewport(), Qt::LeftButton, {}, below);
    QCOMPARE(m_grid->Row(), 2);
    QVERIFY(m_grid->RowSel() > 10);
    QVERIFY(!m_log->take().contains(u"Scroll"_s));
}

void GridSelectionEventsTest::aColumnHeaderSelectsItsRecordsFromTheFirst() {
    m_grid->setTopRow(30);
    hands::click(m_grid->horizontalHeader()->viewport(), Qt::LeftButton, {}, columnHeaderCentre(*m_grid, 3));
    QCOMPARE(m_grid->selection(), (GridSelection{1, 3, 100, 3}));
    QCOMPARE(m_grid->TopRow(), 30);
    QCOMPARE(m_log->take(), (QStringList{u"LeaveCell 1,1"_s, u"SelChange 1,3"_s, u"MouseDown 1 0,3"_s, u"Click"_s}));
}

void GridSelectionEventsTest::shiftOnAColumnHeaderExtendsToWholeColumns() {
    m_grid->setSelection(singleCell(5, 2));
    hands::click(m_grid->horizontalHeader()->viewport(), Qt::LeftButton, Qt::ShiftModifier,
                 columnHeaderCentre(*m_grid, 3));
    QCOMPARE(m_grid->selection(), (GridSelection{1, 2, 100, 3}));
}

void GridSelectionEventsTest::draggingOverColumnHeadersSelectsColumns() {
    QWidget *header = m_grid->horizontalHeader()->viewport();
    hands::press(header, Qt::LeftButton, {}, columnHeaderCentre(*m_grid, 2));
    const QPoint to = columnHeaderCentre(*m_grid, 3);
    hands::move(header, to, Qt::LeftButton);
    hands::release(header, Qt::LeftButton, {}, to);
    QCOMPARE(m_grid->selection(), (GridSelection{1, 2, 100, 3}));
}

void GridSelectionEventsTest::aRowHeaderSelectsItsRow() {
    hands::click(m_grid->verticalHeader()->viewport(), Qt::LeftButton, {}, rowHeaderCentre(*m_grid, 4));
    QCOMPARE(m_grid->selection(), (GridSelection{4, 1, 4, 6}));
    QCOMPARE(m_log->take(), (QStringList{u"LeaveCell 1,1"_s, u"SelChange 4,1"_s, u"MouseDown 1 4,0"_s, u"Click"_s}));
}

void GridSelectionEventsTest::shiftOnARowHeaderExtendsToWholeRows() {
    m_grid->setSelection(singleCell(5, 3));
    hands::click(m_grid->verticalHeader()->viewport(), Qt::LeftButton, Qt::ShiftModifier, rowHeaderCentre(*m_grid, 3));
    QCOMPARE(m_grid->selection(), (GridSelection{5, 1, 3, 6}));
}

void GridSelectionEventsTest::theCornerSelectsEverything() {
    m_grid->setSelection(singleCell(5, 3));
    m_log->take();
    auto *corner = m_grid->findChild<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(corner != nullptr);
    hands::click(corner, Qt::LeftButton);
    QCOMPARE(m_grid->selection(), (GridSelection{1, 1, 100, 6}));
    QCOMPARE(m_log->take(), (QStringList{u"MouseDown 1 0,0"_s, u"LeaveCell 5,3"_s, u"SelChange 1,1"_s, u"Click"_s}));
}

void GridSelectionEventsTest::draggingAResizeHandleSelectsNothing() {
    QHeaderView *header = m_grid->horizontalHeader();
    const int width = m_grid->ColWidth(1);
    const QPoint handle(header->sectionSize(0) - 1, header->height() / 2);
    hands::press(header->viewport(), Qt::LeftButton, {}, handle);
    const QPoint to = handle + QPoint(20, 0);
    hands::move(header->viewport(), to, Qt::LeftButton);
    hands::release(header->viewport(), Qt::LeftButton, {}, to);
    QCOMPARE(m_grid->ColWidth(1), width + 300);
    QCOMPARE(m_grid->selection(), singleCell(1, 1));
    QVERIFY(!m_log->take().contains(u"Click"_s));
}

void GridSelectionEventsTest::aHeaderClickGivesTheGridTheFocus() {
    QWidget window;
    auto *line = new QLineEdit(&window);
    auto *grid = new Grid(&window);
    grid->setGeometry(0, 40, 300, 200);
    fill(*grid, 5, 2);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    line->setFocus();
    hands::click(grid->horizontalHeader()->viewport(), Qt::LeftButton, {}, columnHeaderCentre(*grid, 1));
    QVERIFY(grid->hasFocus());
    line->setFocus();
    hands::click(grid->viewport(), Qt::LeftButton, {}, cellCentre(*grid, 2, 1));
    QVERIFY(grid->hasFocus());
}

void GridSelectionEventsTest::aDoubleClickOnAHeaderIsTold() {
    hands::doubleClick(m_grid->horizontalHeader()->viewport(), Qt::LeftButton, {}, columnHeaderCentre(*m_grid, 2));
    QCOMPARE(m_log->take().count(u"DblClick"_s), 1);
}

QTEST_MAIN(GridSelectionEventsTest)
#include "grid_selection_events_test.moc"
