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

/// Keys, the right button, scrolling and following in a grid.
class GridKeysTest : public WithShownGrid {
    Q_OBJECT

private Q_SLOTS:
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
};

void GridKeysTest::arrowsMoveAndBringIntoViewWithoutAScrollEvent() {
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

void GridKeysTest::shiftArrowsExtendRoundTheSameCurrentCell() {
    m_grid->setSelection(singleCell(3, 3));
    m_log->take();
    hands::key(m_grid.get(), Qt::Key_Down, Qt::ShiftModifier);
    hands::key(m_grid.get(), Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(m_grid->selection(), (GridSelection{3, 3, 4, 2}));
    QVERIFY(!m_log->take().join(u';').contains(u"LeaveCell"_s));
}

void GridKeysTest::homeEndAndPageKeysMove() {
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

void GridKeysTest::controlASelectsEverything() {
    m_grid->setSelection(singleCell(5, 5));
    hands::key(m_grid.get(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(m_grid->selection(), (GridSelection{1, 1, 100, 6}));
}

void GridKeysTest::keysAreToldBeforeTheyMove() {
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

void GridKeysTest::enterIsToldAsCharacter13() {
    hands::key(m_grid.get(), Qt::Key_Return);
    QCOMPARE(m_log->take(), (QStringList{u"KeyDown 13,0"_s, u"KeyPress 13"_s}));
    hands::key(m_grid.get(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(m_log->take(), (QStringList{u"KeyDown 13,0"_s, u"KeyPress 13"_s}));
    QCOMPARE(m_grid->selection(), singleCell(1, 1));
}

void GridKeysTest::typingIsToldAndMovesNothing() {
    hands::key(m_grid.get(), Qt::Key_X);
    QCOMPARE(m_log->take(), (QStringList{u"KeyDown 88,0"_s, u"KeyPress 120"_s}));
    QCOMPARE(m_grid->selection(), singleCell(1, 1));
    QCOMPARE(m_grid->TextMatrix(1, 1), u"1.1"_s);
}

void GridKeysTest::tabGoesToTheNextControl() {
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

void GridKeysTest::escapeIsLeftToOthers() {
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(m_grid.get(), &escape);
    QVERIFY(!escape.isAccepted());
}

void GridKeysTest::aRightPressOutsideTheSelectionMakesItsCellCurrent() {
    m_grid->setSelection({2, 2, 4, 3});
    m_log->take();
    press(cellCentre(*m_grid, 6, 1), Qt::RightButton);
    QCOMPARE(m_grid->selection(), singleCell(6, 1));
    QCOMPARE(m_log->take(), (QStringList{u"LeaveCell 2,2"_s, u"SelChange 6,1"_s, u"MouseDown 2 6,1"_s}));
}

void GridKeysTest::aRightPressInsideTheSelectionKeepsIt() {
    m_grid->setSelection({2, 2, 4, 3});
    m_log->take();
    press(cellCentre(*m_grid, 3, 3), Qt::RightButton);
    hands::release(m_grid->viewport(), Qt::RightButton, {}, cellCentre(*m_grid, 3, 3));
    QCOMPARE(m_grid->selection(), (GridSelection{2, 2, 4, 3}));
    QCOMPARE(m_log->take(), QStringList{u"MouseDown 2 3,3"_s});
}

void GridKeysTest::aRightPressOnAColumnHeaderSelectsNothingItself() {
    m_grid->setSelection({2, 2, 4, 3});
    m_log->take();
    hands::press(m_grid->horizontalHeader()->viewport(), Qt::RightButton, {}, columnHeaderCentre(*m_grid, 3));
    QCOMPARE(m_grid->selection(), (GridSelection{2, 2, 4, 3}));
    QCOMPARE(m_log->take(), QStringList{u"MouseDown 2 0,3"_s});
}

void GridKeysTest::aRightPressOnARowHeaderOutsideTheSelectionSelectsTheRow() {
    m_grid->setSelection({2, 2, 4, 3});
    m_log->take();
    hands::press(m_grid->verticalHeader()->viewport(), Qt::RightButton, {}, rowHeaderCentre(*m_grid, 3));
    QCOMPARE(m_log->take(), QStringList{u"MouseDown 2 3,0"_s});
    hands::press(m_grid->verticalHeader()->viewport(), Qt::RightButton, {}, rowHeaderCentre(*m_grid, 6));
    QCOMPARE(m_grid->selection(), (GridSelection{6, 1, 6, 6}));
    QCOMPARE(m_log->take().last(), u"MouseDown 2 6,0"_s);
}

void GridKeysTest::aRightPressBesideTheCellsIsOverNoCell() {
    fill(*m_grid, 2, 1);
    m_log->take();
    press(m_grid->viewport()->rect().bottomRight() - QPoint(3, 3), Qt::RightButton);
    QCOMPARE(m_log->take(), QStringList{u"MouseDown 2 -1,-1"_s});
    QCOMPARE(m_grid->selection(), singleCell(1, 1));
}

void GridKeysTest::theMenuKeyIsARightPressOnTheCurrentCell() {
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

void GridKeysTest::theMenuKeyWithControlIsARightPressOnTheColumnsHeader() {
    m_grid->setSelection(singleCell(3, 2));
    m_log->take();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {0, 0}, {0, 0}, Qt::ControlModifier);
    QCoreApplication::sendEvent(m_grid->viewport(), &event);
    QCOMPARE(m_log->take(), QStringList{u"MouseDown 2 0,2"_s});
}

void GridKeysTest::shiftAndF10IsTheMenuKey() {
    m_grid->setSelection(singleCell(3, 2));
    m_log->take();
    hands::key(m_grid.get(), Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(m_log->take().last(), u"MouseDown 2 3,2"_s);
    hands::key(m_grid.get(), Qt::Key_F10, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(m_log->take().last(), u"MouseDown 2 0,2"_s);
}

void GridKeysTest::theContextMenuEventOfAMousePressIsNotToldTwice() {
    const QPoint at = cellCentre(*m_grid, 1, 1);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, m_grid->viewport()->mapToGlobal(at));
    QCoreApplication::sendEvent(m_grid->viewport(), &event);
    const QPoint onHeader = columnHeaderCentre(*m_grid, 1);
    QContextMenuEvent header(QContextMenuEvent::Mouse, onHeader,
                             m_grid->horizontalHeader()->viewport()->mapToGlobal(onHeader));
    QCoreApplication::sendEvent(m_grid->horizontalHeader()->viewport(), &header);
    QCOMPARE(m_log->take(), QStringList());
}

void GridKeysTest::theWheelRaisesScroll() {
    int topWhenTold = 0;
    connect(m_grid.get(), &Grid::Scroll, this, [&] { topWhenTold = m_grid->TopRow(); });
    wheel(-1);
    QCOMPARE(m_log->take(), QStringList{u"Scroll"_s});
    QVERIFY(topWhenTold > 1);
    QCOMPARE(topWhenTold, m_grid->TopRow());
    QCOMPARE(m_grid->indexAt({5, 1}).row() + 1, topWhenTold);
}

void GridKeysTest::theScrollBarRaisesScroll() {
    m_grid->verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(m_log->take(), QStringList{u"Scroll"_s});
    m_grid->horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    QCOMPARE(m_log->take(), QStringList{u"Scroll"_s});
    QCOMPARE(m_grid->LeftCol(), 2);
    QScrollBar *bar = m_grid->verticalScrollBar();
    hands::click(bar, Qt::LeftButton, {}, {bar->width() / 2, bar->height() - 30});
    QVERIFY(m_log->take().contains(u"Scroll"_s));
}

void GridKeysTest::scrollingByCodeRaisesNothing() {
    m_grid->setTopRow(50);
    m_grid->setLeftCol(2);
    QCOMPARE(m_grid->TopRow(), 50);
    QCOMPARE(m_grid->LeftCol(), 2);
    m_grid->verticalScrollBar()->setValue(3);
    QCoreApplication::processEvents();
    QCOMPARE(m_log->take(), QStringList());
}

void GridKeysTest::bringingIntoViewRaisesNothing() {
    m_grid->setSelection(singleCell(90, 6));
    m_log->take();
    QCOMPARE(m_grid->TopRow(), 1);
    m_grid->bringCellIntoView();
    QVERIFY(m_grid->TopRow() > 1);
    QCOMPARE(m_log->take(), QStringList());
}

void GridKeysTest::resizingRaisesNothing() {
    m_grid->setTopRow(95);
    m_grid->resize(600, 700);
    QCoreApplication::processEvents();
    QVERIFY(m_grid->TopRow() < 95);
    m_grid->resize(200, 150);
    QCoreApplication::processEvents();
    QCOMPARE(m_log->take(), QStringList());
}

void GridKeysTest::aWheelAtTheEndRaisesNothing() {
    wheel(1);
    QCOMPARE(m_log->take(), QStringList());
    m_grid->setTopRow(20);
    QCOMPARE(m_log->take(), QStringList());
}

void GridKeysTest::followingCopiesTheSelectionSilently() {
    const auto leader = shownGrid();
    leader->setSelection({20, 2, 30, 4});
    m_grid->followSelection(*leader);
    QCOMPARE(m_grid->selection(), (GridSelection{20, 2, 30, 4}));
    QCOMPARE(m_log->take(), QStringList());
}

void GridKeysTest::followingCopiesOnlyWhatFits() {
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

void GridKeysTest::followingTheScrollPositionIsSilent() {
    const auto leader = shownGrid();
    leader->setTopRow(40);
    leader->setLeftCol(2);
    m_grid->followScroll(*leader);
    QCOMPARE(m_grid->TopRow(), 40);
    QCOMPARE(m_grid->LeftCol(), 2);
    QCoreApplication::processEvents();
    QCOMPARE(m_log->take(), QStringList());
}

QTEST_MAIN(GridKeysTest)
#include "grid_keys_test.moc"
