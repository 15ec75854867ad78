#include "platform/grid/Grid.h"
#include "tests/platform/GridTesting.h"
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

class GridSelectionEventsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_grid.reset(); }

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

    void arrowsMoveAndBringIntoViewWithoutAScrollEvent();
    void shiftArrowsExtendRoundTheSameCurrentCell();
    void homeEndAndPageKeysMove();
    void controlASelectsEverything();
    void keysAreToldBeforeTheyMove();
    void enterIsToldAsCharacter13();
    void typingIsToldAndMovesNothing();
    void tabGoesToTheNextControl();
    void escapeIsLeftToOthers();

    void aRightPressOutsideTheSelectionMakesItsCellCurrent();
    void aRightPressInsideTheSelectionKeepsIt();
    void aRightPressOnAColumnHeaderSelectsNothingItself();
    void aRightPressOnARowHeaderOutsideTheSelectionSelectsTheRow();
    void aRightPressBesideTheCellsIsOverNoCell();
    void theMenuKeyIsARightPressOnTheCurrentCell();
    void theMenuKeyWithControlIsARightPressOnTheColumnsHeader();
    void shiftAndF10IsTheMenuKey();
    void theContextMenuEventOfAMousePressIsNotToldTwice();

    void theWheelRaisesScroll();
    void theScrollBarRaisesScroll();
    void scrollingByCodeRaisesNothing();
    void bringingIntoViewRaisesNothing();
    void resizingRaisesNothing();
    void aWheelAtTheEndRaisesNothing();

    void followingCopiesTheSelectionSilently();
    void followingCopiesOnlyWhatFits();
    void followingTheScrollPositionIsSilent();

private:
    void press(const QPoint &at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {}) {
        hands::press(m_grid->viewport(), button, modifiers, at);
    }
    void dragTo(const QPoint &at) { hands::move(m_grid->viewport(), at, Qt::LeftButton); }
    void wheel(int steps) {
        const QPointF at(50, 50);
        QWheelEvent event(at, m_grid->viewport()->mapToGlobal(at), {}, {0, 120 * steps}, {}, {}, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(m_grid->viewport(), &event);
    }

    std::unique_ptr<Grid> m_grid;
    std::unique_ptr<GridLog> m_log;
};

void GridSelectionEventsTest::init() {
    m_grid = shownGrid();
    m_log = std::make_unique<GridLog>(*m_grid);
}

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
    QCOMPARE(m_log->take(), (QStringList{u"SelChange 3,2"_s, u"MouseDown 1 5,3"_s, u"Click"_s}));
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

// Keys

void GridSelectionEventsTest::arrowsMoveAndBringIntoViewWithoutAScrollEvent() {
    for (int i = 0; i < 40; ++i)
        hands::key(m_grid.get(), Qt::Key_Down);
    QCOMPARE(m_grid->selection(), singleCell(41, 1));
    QVERIFY(m_grid->TopRow() > 1);
    QVERIFY(m_grid->viewport()->rect().contains(cellCentre(*m_grid, 41, 1)));
    const QStringList events = m_log->take();
    QVERIFY(!events.contains(u"Scroll"_s));
    QCOMPARE(events.count(u"LeaveCell 40,1"_s), 1);
    QCOMPARE(events.last(), u"SelChange 41,1"_s);
}

void GridSelectionEventsTest::shiftArrowsExtendRoundTheSameCurrentCell() {
    m_grid->setSelection(singleCell(3, 3));
    m_log->take();
    hands::key(m_grid.get(), Qt::Key_Down, Qt::ShiftModifier);
    hands::key(m_grid.get(), Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(m_grid->selection(), (GridSelection{3, 3, 4, 2}));
    QVERIFY(!m_log->take().join(u';').contains(u"LeaveCell"_s));
}

void GridSelectionEventsTest::homeEndAndPageKeysMove() {
    hands::key(m_grid.get(), Qt::Key_End);
    QCOMPARE(m_grid->selection(), singleCell(1, 6));
    hands::key(m_grid.get(), Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(m_grid->selection(), singleCell(100, 6));
    QVERIFY(m_grid->viewport()->rect().contains(cellCentre(*m_grid, 100, 6)));
    hands::key(m_grid.get(), Qt::Key_Home);
    QCOMPARE(m_grid->selection(), singleCell(100, 1));
    hands::key(m_grid.get(), Qt::Key_PageUp);
    QVERIFY(m_grid->Row() < 100 && m_grid->Row() > 60);
    hands::key(m_grid.get(), Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(m_grid->selection(), singleCell(1, 1));
    hands::key(m_grid.get(), Qt::Key_PageDown, Qt::ShiftModifier);
    QCOMPARE(m_grid->Row(), 1);
    QVERIFY(m_grid->RowSel() > 3);
}

void GridSelectionEventsTest::controlASelectsEverything() {
    m_grid->setSelection(singleCell(5, 5));
    hands::key(m_grid.get(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(m_grid->selection(), (GridSelection{1, 1, 100, 6}));
}

void GridSelectionEventsTest::keysAreToldBeforeTheyMove() {
    int rowWhenTold = 0;
    connect(m_grid.get(), &Grid::KeyDown, this, [&] { rowWhenTold = m_grid->Row(); });
    hands::key(m_grid.get(), Qt::Key_Down);
    QCOMPARE(rowWhenTold, 1);
    QCOMPARE(m_log->take().first(), u"KeyDown 40,0"_s);
    // The modifier keys are keys too, and come first.
    hands::key(m_grid.get(), Qt::Key_C, Qt::ControlModifier);
    QVERIFY(m_log->take().contains(u"KeyDown 67,2"_s));
    hands::key(m_grid.get(), Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(m_log->take().contains(u"KeyDown 86,3"_s));
    hands::key(m_grid.get(), Qt::Key_Insert, Qt::ShiftModifier);
    QVERIFY(m_log->take().contains(u"KeyDown 45,1"_s));
}

void GridSelectionEventsTest::enterIsToldAsCharacter13() {
    hands::key(m_grid.get(), Qt::Key_Return);
    QCOMPARE(m_log->take(), (QStringList{u"KeyDown 13,0"_s, u"KeyPress 13"_s}));
    hands::key(m_grid.get(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(m_log->take(), (QStringList{u"KeyDown 13,0"_s, u"KeyPress 13"_s}));
    QCOMPARE(m_grid->selection(), singleCell(1, 1));
}

void GridSelectionEventsTest::typingIsToldAndMovesNothing() {
    hands::key(m_grid.get(), Qt::Key_X);
    QCOMPARE(m_log->take(), (QStringList{u"KeyDown 88,0"_s, u"KeyPress 120"_s}));
    QCOMPARE(m_grid->selection(), singleCell(1, 1));
    QCOMPARE(m_grid->TextMatrix(1, 1), u"1.1"_s);
}

void GridSelectionEventsTest::tabGoesToTheNextControl() {
    QWidget window;
    auto *grid = new Grid(&window);
    auto *line = new QLineEdit(&window);
    fill(*grid, 5, 2);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    grid->setFocus();
    hands::key(grid, Qt::Key_Tab);
    QVERIFY(line->hasFocus());
    QCOMPARE(grid->selection(), singleCell(1, 1));
}

void GridSelectionEventsTest::escapeIsLeftToOthers() {
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(m_grid.get(), &escape);
    QVERIFY(!escape.isAccepted());
}

// Right press and menu key

void GridSelectionEventsTest::aRightPressOutsideTheSelectionMakesItsCellCurrent() {
    m_grid->setSelection({2, 2, 4, 3});
    m_log->take();
    press(cellCentre(*m_grid, 6, 1), Qt::RightButton);
    QCOMPARE(m_grid->selection(), singleCell(6, 1));
    QCOMPARE(m_log->take(), (QStringList{u"LeaveCell 2,2"_s, u"SelChange 6,1"_s, u"MouseDown 2 6,1"_s}));
}

void GridSelectionEventsTest::aRightPressInsideTheSelectionKeepsIt() {
    m_grid->setSelection({2, 2, 4, 3});
    m_log->take();
    press(cellCentre(*m_grid, 3, 3), Qt::RightButton);
    hands::release(m_grid->viewport(), Qt::RightButton, {}, cellCentre(*m_grid, 3, 3));
    QCOMPARE(m_grid->selection(), (GridSelection{2, 2, 4, 3}));
    QCOMPARE(m_log->take(), QStringList{u"MouseDown 2 3,3"_s});
}

void GridSelectionEventsTest::aRightPressOnAColumnHeaderSelectsNothingItself() {
    m_grid->setSelection({2, 2, 4, 3});
    m_log->take();
    hands::press(m_grid->horizontalHeader()->viewport(), Qt::RightButton, {}, columnHeaderCentre(*m_grid, 3));
    QCOMPARE(m_grid->selection(), (GridSelection{2, 2, 4, 3}));
    QCOMPARE(m_log->take(), QStringList{u"MouseDown 2 0,3"_s});
}

void GridSelectionEventsTest::aRightPressOnARowHeaderOutsideTheSelectionSelectsTheRow() {
    m_grid->setSelection({2, 2, 4, 3});
    m_log->take();
    hands::press(m_grid->verticalHeader()->viewport(), Qt::RightButton, {}, rowHeaderCentre(*m_grid, 3));
    QCOMPARE(m_log->take(), QStringList{u"MouseDown 2 3,0"_s});
    hands::press(m_grid->verticalHeader()->viewport(), Qt::RightButton, {}, rowHeaderCentre(*m_grid, 6));
    QCOMPARE(m_grid->selection(), (GridSelection{6, 1, 6, 6}));
    QCOMPARE(m_log->take().last(), u"MouseDown 2 6,0"_s);
}

void GridSelectionEventsTest::aRightPressBesideTheCellsIsOverNoCell() {
    fill(*m_grid, 2, 1);
    m_log->take();
    press(m_grid->viewport()->rect().bottomRight() - QPoint(3, 3), Qt::RightButton);
    QCOMPARE(m_log->take(), QStringList{u"MouseDown 2 -1,-1"_s});
    QCOMPARE(m_grid->selection(), singleCell(1, 1));
}

void GridSelectionEventsTest::theMenuKeyIsARightPressOnTheCurrentCell() {
    m_grid->setSelection(singleCell(60, 2));
    m_log->take();
    QPoint told;
    connect(m_grid.get(), &Grid::MouseDown, this, [&](Qt::MouseButton, int, int, const QPoint &at) { told = at; });
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {0, 0}, {0, 0});
    QCoreApplication::sendEvent(m_grid->viewport(), &event);
    QCOMPARE(m_log->take(), QStringList{u"MouseDown 2 60,2"_s});
    const QRect cell = m_grid->cellRectangle();
    QVERIFY2(!cell.isEmpty(), "the cell was not brought into view");
    QCOMPARE(told, m_grid->mapToGlobal(cell.bottomLeft()));
}

void GridSelectionEventsTest::theMenuKeyWithControlIsARightPressOnTheColumnsHeader() {
    m_grid->setSelection(singleCell(3, 2));
    m_log->take();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {0, 0}, {0, 0}, Qt::ControlModifier);
    QCoreApplication::sendEvent(m_grid->viewport(), &event);
    QCOMPARE(m_log->take(), QStringList{u"MouseDown 2 0,2"_s});
}

void GridSelectionEventsTest::shiftAndF10IsTheMenuKey() {
    m_grid->setSelection(singleCell(3, 2));
    m_log->take();
    hands::key(m_grid.get(), Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(m_log->take().last(), u"MouseDown 2 3,2"_s);
    hands::key(m_grid.get(), Qt::Key_F10, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(m_log->take().last(), u"MouseDown 2 0,2"_s);
}

void GridSelectionEventsTest::theContextMenuEventOfAMousePressIsNotToldTwice() {
    const QPoint at = cellCentre(*m_grid, 1, 1);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, m_grid->viewport()->mapToGlobal(at));
    QCoreApplication::sendEvent(m_grid->viewport(), &event);
    const QPoint onHeader = columnHeaderCentre(*m_grid, 1);
    QContextMenuEvent header(QContextMenuEvent::Mouse, onHeader,
                             m_grid->horizontalHeader()->viewport()->mapToGlobal(onHeader));
    QCoreApplication::sendEvent(m_grid->horizontalHeader()->viewport(), &header);
    QCOMPARE(m_log->take(), QStringList());
}

// Scrolling

void GridSelectionEventsTest::theWheelRaisesScroll() {
    int topWhenTold = 0;
    connect(m_grid.get(), &Grid::Scroll, this, [&] { topWhenTold = m_grid->TopRow(); });
    wheel(-1);
    QCOMPARE(m_log->take(), QStringList{u"Scroll"_s});
    QVERIFY(topWhenTold > 1);
    QCOMPARE(topWhenTold, m_grid->TopRow());
    QCOMPARE(m_grid->indexAt({5, 1}).row() + 1, topWhenTold);
}

void GridSelectionEventsTest::theScrollBarRaisesScroll() {
    m_grid->verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(m_log->take(), QStringList{u"Scroll"_s});
    m_grid->horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    QCOMPARE(m_log->take(), QStringList{u"Scroll"_s});
    QCOMPARE(m_grid->LeftCol(), 2);
    QScrollBar *bar = m_grid->verticalScrollBar();
    hands::click(bar, Qt::LeftButton, {}, {bar->width() / 2, bar->height() - 30});
    QVERIFY(m_log->take().contains(u"Scroll"_s));
}

void GridSelectionEventsTest::scrollingByCodeRaisesNothing() {
    m_grid->setTopRow(50);
    m_grid->setLeftCol(2);
    QCOMPARE(m_grid->TopRow(), 50);
    QCOMPARE(m_grid->LeftCol(), 2);
    m_grid->verticalScrollBar()->setValue(3);
    QCoreApplication::processEvents();
    QCOMPARE(m_log->take(), QStringList());
}

void GridSelectionEventsTest::bringingIntoViewRaisesNothing() {
    m_grid->setSelection(singleCell(90, 6));
    m_log->take();
    QCOMPARE(m_grid->TopRow(), 1);
    m_grid->bringCellIntoView();
    QVERIFY(m_grid->TopRow() > 1);
    QCOMPARE(m_log->take(), QStringList());
}

void GridSelectionEventsTest::resizingRaisesNothing() {
    m_grid->setTopRow(95);
    m_grid->resize(600, 700);
    QCoreApplication::processEvents();
    QVERIFY(m_grid->TopRow() < 95);
    m_grid->resize(200, 150);
    QCoreApplication::processEvents();
    QCOMPARE(m_log->take(), QStringList());
}

void GridSelectionEventsTest::aWheelAtTheEndRaisesNothing() {
    wheel(1);
    QCOMPARE(m_log->take(), QStringList());
    m_grid->setTopRow(20);
    QCOMPARE(m_log->take(), QStringList());
}

// Following another grid

void GridSelectionEventsTest::followingCopiesTheSelectionSilently() {
    const auto leader = shownGrid();
    leader->setSelection({20, 2, 30, 4});
    m_grid->followSelection(*leader);
    QCOMPARE(m_grid->selection(), (GridSelection{20, 2, 30, 4}));
    QCOMPARE(m_log->take(), QStringList());
}

void GridSelectionEventsTest::followingCopiesOnlyWhatFits() {
    const auto leader = shownGrid();
    fill(*m_grid, 25, 3);
    m_grid->setSelection(singleCell(5, 3));
    m_log->take();
    leader->setSelection({20, 5, 30, 2});
    m_grid->followSelection(*leader);
    QCOMPARE(m_grid->selection(), (GridSelection{20, 3, 20, 2}));
    leader->setSelection({30, 2, 22, 6});
    m_grid->followSelection(*leader);
    QCOMPARE(m_grid->selection(), (GridSelection{20, 2, 22, 2}));
    QCOMPARE(m_log->take(), QStringList());
}

void GridSelectionEventsTest::followingTheScrollPositionIsSilent() {
    const auto leader = shownGrid();
    leader->setTopRow(40);
    leader->setLeftCol(2);
    m_grid->followScroll(*leader);
    QCOMPARE(m_grid->TopRow(), 40);
    QCOMPARE(m_grid->LeftCol(), 2);
    QCoreApplication::processEvents();
    QCOMPARE(m_log->take(), QStringList());
}

QTEST_MAIN(GridSelectionEventsTest)
#include "grid_selection_events_test.moc"
