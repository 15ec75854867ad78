#include "platform/controls/Twips.h"
#include "platform/grid/Grid.h"
#include "tests/platform/GridTesting.h"
#include "tests/support/CountedMemory.h"
#include "tests/support/Hands.h"

#include <QAbstractEventDispatcher>
#include <QCursor>
#include <QProxyStyle>
#include <QScrollBar>
#include <QtTest>

#include <utility>

using namespace qir;
using namespace qir::testing;
using namespace Qt::StringLiterals;

class GridPositionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_grid.reset(); }

    void theCellRectangleIsWhereTheCellIsDrawn();
    void theCellRectangleFollowsScrolling();
    void theCellRectangleIsCutToTheCellsArea();
    void aCellOutOfSightHasNoRectangleUntilBroughtIntoView();
    void bringingIntoViewOfAVisibleCellScrollsNothing();
    void aKeyTellsThatItScrolled();
    void aDragThatLosesTheFocusScrollsNoFurther();
    void cellPositionsAreInTwips();

    void topRowIsTheFirstRowShownInFull();
    void topRowIsCutToTheScrollRange();
    void topRowHoldsInAGridThatIsNotShown();
    void placeIsTakenAndRestored();

    void mouseRowIsTheEventsPlaceWhileItIsHandled();
    void mouseRowIsThePointersPlaceOtherwise();
    void mouseRowIsTheHeaderOnlyOverThisGridsHeader();
    void mouseRowIsNoneBesideTheCells();
    void mouseRowIsNoneUnderAnotherWidget();

    void columnWidthsAreKeptToTheTwip();
    void columnWidthsAreDrawnRoundedUp();
    void theFixedColumnIs300TwipsWide();
    void aColumnOfWidthZeroShowsAgain();
    void widthsStayThroughAReload();
    void widthsOfNewColumnsAreThoseDrawn();
    void wrongWidthsAndColumnsChangeNothing();
    void userResizingCanBeSwitchedOff();
    void aDoubleClickOnAResizeHandleFitsTheColumn();
    void rowsFitALargerFont();

    void theLastRowInFirstPlaceBeginsAtTheTop();
    void aGridScrollsAsFarAsItIsToldTo();
    void pastItsLastRowAGridDrawsNoneOfThem();
    void pastItsLastRowAGridTakesNoMemoryForThem();
    void aLastColumnWiderThanTheGridShowsItsEnd();

private:
    std::unique_ptr<Grid> m_grid;
};

void GridPositionTest::init() {
    m_grid = shownGrid();
}

void GridPositionTest::theCellRectangleIsWhereTheCellIsDrawn() {
    m_grid->setSelection(singleCell(3, 2));
    const QRect cell = m_grid->cellRectangle();
    QVERIFY(!cell.isEmpty());
    const QPoint inViewport = m_grid->viewport()->mapFromParent(cell.center());
    QCOMPARE(m_grid->indexAt(inViewport), m_grid->model()->index(2, 1));
    const auto cellAt = [&](const QPoint &inGrid) {
        return m_grid->indexAt(m_grid->viewport()->mapFrom(m_grid.get(), inGrid));
    };
    QCOMPARE(cellAt(cell.topLeft()), m_grid->model()->index(2, 1));
    QCOMPARE(cellAt(cell.bottomRight()), m_grid->model()->index(2, 1));
    QCOMPARE(cellAt(cell.topLeft() - QPoint(1, 0)), m_grid->model()->index(2, 0));
    QCOMPARE(cellAt(cell.topLeft() - QPoint(0, 1)), m_grid->model()->index(1, 1));
}

void GridPositionTest::theCellRectangleFollowsScrolling() {
    m_grid->setSelection(singleCell(40, 2));
    m_grid->setTopRow(40);
    QCOMPARE(m_grid->cellRectangle().top(), m_grid->viewport()->geometry().top());
    m_grid->setTopRow(39);
    QCOMPARE(m_grid->cellRectangle().top(), m_grid->viewport()->geometry().top() + m_grid->rowHeight(0));
}

void GridPositionTest::theCellRectangleIsCutToTheCellsArea() {
    m_grid->setColWidth(1, toTwips(2000));
    m_grid->setSelection(singleCell(1, 1));
    m_grid->bringCellIntoView();
    const QRect area = m_grid->viewport()->geometry();
    QCOMPARE(m_grid->cellRectangle().right(), area.right());
    QVERIFY(area.contains(m_grid->cellRectangle()));
    // The last row that shows may do so in part.
    const int lastShown = m_grid->rowAt(m_grid->viewport()->height() - 1) + 1;
    m_grid->setSelection(singleCell(lastShown, 1));
    QVERIFY(area.contains(m_grid->cellRectangle()));
}

void GridPositionTest::aCellOutOfSightHasNoRectangleUntilBroughtIntoView() {
    m_grid->setSelection(singleCell(90, 2));
    QVERIFY(m_grid->cellRectangle().isEmpty());
    m_grid->bringCellIntoView();
    QVERIFY(!m_grid->cellRectangle().isEmpty());
    QCOMPARE(m_grid->cellRectangle().height(), m_grid->rowHeight(89) - 1);
    m_grid->setSelection(singleCell(60, 2));
    m_grid->setTopRow(80);
    QVERIFY2(m_grid->cellRectangle().isEmpty(), "a cell above the shown ones lies under the header");
}

void GridPositionTest::bringingIntoViewOfAVisibleCellScrollsNothing() {
    m_grid->setTopRow(20);
    m_grid->setSelection(singleCell(22, 2));
    m_grid->bringCellIntoView();
    QCOMPARE(m_grid->TopRow(), 20);
    QCOMPARE(m_grid->LeftCol(), 1);
}

void GridPositionTest::aKeyTellsThatItScrolled() {
    m_grid->setSelection(singleCell(2, 2));
    GridLog log(*m_grid);
    hands::key(m_grid.get(), Qt::Key_Down, Qt::ShiftModifier);
    QVERIFY(!log.take().contains(u"Revealed"_s));
    hands::key(m_grid.get(), Qt::Key_PageDown, Qt::ControlModifier | Qt::ShiftModifier);
    QStringList events = log.take();
    QCOMPARE(events.mid(events.size() - 2), QStringList({u"Revealed"_s, u"SelChange 2,2"_s}));
    // So does one that moves no further.
    m_grid->setTopRow(1);
    hands::key(m_grid.get(), Qt::Key_Down, Qt::ShiftModifier);
    events = log.take();
    QCOMPARE(events.last(), u"Revealed"_s);
    QVERIFY(m_grid->TopRow() > 1);
    m_grid->setTopRow(1);
    m_grid->bringCellIntoView();
    QCOMPARE(log.take(), QStringList());
}

void GridPositionTest::aDragThatLosesTheFocusScrollsNoFurther() {
    const auto timers = [this] { return QAbstractEventDispatcher::instance()->registeredTimers(m_grid.get()).size(); };
    m_grid->activateWindow();
    m_grid->setFocus();
    QTRY_VERIFY(m_grid->hasFocus());
    const auto timersAtRest = timers();
    const QPoint inside = cellCentre(*m_grid, 2, 1);
    const QPoint below(inside.x(), m_grid->viewport()->height() + 30);
    hands::press(m_grid->viewport(), Qt::LeftButton, {}, inside);
    hands::move(m_grid->viewport(), below, Qt::LeftButton);
    QTRY_VERIFY(m_grid->TopRow() > 3);
    QVERIFY(timers() > timersAtRest);
    m_grid->clearFocus();                 // as when a dialog opens, which takes the button's release too
    QTRY_COMPARE(timers(), timersAtRest); // a single shot of the view may still be due
    const GridSelection selection = m_grid->selection();
    hands::move(m_grid->viewport(), below, Qt::LeftButton);
    QCOMPARE(m_grid->selection(), selection);
}

void GridPositionTest::cellPositionsAreInTwips() {
    m_grid->setSelection(singleCell(3, 2));
    const QRect cell = m_grid->cellRectangle();
    QCOMPARE(m_grid->CellLeft(), 15 * cell.left());
    QCOMPARE(m_grid->CellTop(), 15 * cell.top());
    QCOMPARE(m_grid->CellWidth(), 15 * cell.width());
    QCOMPARE(m_grid->CellHeight(), 15 * cell.height());
}

void GridPositionTest::topRowIsTheFirstRowShownInFull() {
    for (const int row : {1, 2, 50}) {
        m_grid->setTopRow(row);
        QCOMPARE(m_grid->TopRow(), row);
        QCOMPARE(m_grid->rowAt(0) + 1, row);
    }
    m_grid->setLeftCol(2);
    QCOMPARE(m_grid->columnAt(0) + 1, 2);
}

void GridPositionTest::topRowIsCutToTheScrollRange() {
    m_grid->setTopRow(100);
    QVERIFY(m_grid->TopRow() < 100);
    QVERIFY(m_grid->viewport()->rect().contains(cellCentre(*m_grid, 100, 1)));
    m_grid->setTopRow(-4);
    QCOMPARE(m_grid->TopRow(), 1);
}

void GridPositionTest::topRowHoldsInAGridThatIsNotShown() {
    QWidget frame;
    auto *grid = new Grid(&frame);
    grid->resize(300, 200);
    fill(*grid, 100, 3);
    grid->setTopRow(50);
    QCOMPARE(grid->TopRow(), 50);
    grid->setVisibleFlag(false);
    grid->setTopRow(60);
    grid->setVisibleFlag(true);
    frame.show();
    QCoreApplication::processEvents();
    QCOMPARE(grid->TopRow(), 60);
}

void GridPositionTest::placeIsTakenAndRestored() {
    m_grid->setSelection({40, 3, 50, 2});
    m_grid->setTopRow(35);
    m_grid->setLeftCol(2);
    const GridPlace place = m_grid->place();
    m_grid->setSelection(singleCell(1, 1));
    m_grid->setTopRow(1);
    m_grid->setLeftCol(1);
    GridLog log(*m_grid);
    m_grid->setPlace(place);
    QCOMPARE(m_grid->selection(), (GridSelection{40, 3, 50, 2}));
    QCOMPARE(m_grid->TopRow(), 35);
    QCOMPARE(m_grid->LeftCol(), 2);
    QCoreApplication::processEvents();
    QCOMPARE(log.take(), QStringList());
    m_grid->setPlace({{500, 50, 600, 60}, 300, 40});
    QCOMPARE(m_grid->selection(), singleCell(100, 6));
}

void GridPositionTest::mouseRowIsTheEventsPlaceWhileItIsHandled() {
    QCursor::setPos(m_grid->viewport()->mapToGlobal(cellCentre(*m_grid, 7, 1)));
    hands::turnLoop(); // the pointer has arrived
    QPoint told;
    connect(m_grid.get(), &Grid::DblClick, this, [&] { told = {m_grid->MouseRow(), m_grid->MouseCol()}; });
    hands::doubleClick(m_grid->viewport(), Qt::LeftButton, {}, cellCentre(*m_grid, 3, 2));
    QCOMPARE(told, QPoint(3, 2));
    hands::doubleClick(m_grid->horizontalHeader()->viewport(), Qt::LeftButton, {}, columnHeaderCentre(*m_grid, 2));
    QCOMPARE(told, QPoint(0, 2));
    hands::doubleClick(m_grid->verticalHeader()->viewport(), Qt::LeftButton, {}, rowHeaderCentre(*m_grid, 4));
    QCOMPARE(told, QPoint(4, 0));
    QCOMPARE(m_grid->MouseRow(), 7);
}

void GridPositionTest::mouseRowIsThePointersPlaceOtherwise() {
    QCursor::setPos(m_grid->viewport()->mapToGlobal(cellCentre(*m_grid, 5, 2)));
    QCOMPARE(m_grid->MouseRow(), 5);
    QCOMPARE(m_grid->MouseCol(), 2);
    m_grid->setTopRow(11);
    QCOMPARE(m_grid->MouseRow(), 15);
    QCursor::setPos(m_grid->horizontalHeader()->viewport()->mapToGlobal(columnHeaderCentre(*m_grid, 2)));
    QCOMPARE(m_grid->MouseRow(), 0);
    QCOMPARE(m_grid->MouseCol(), 2);
    QCursor::setPos(m_grid->mapToGlobal(QPoint(5, 5)));
    QCOMPARE(m_grid->MouseRow(), 0);
    QCOMPARE(m_grid->MouseCol(), 0);
}

void GridPositionTest::mouseRowIsTheHeaderOnlyOverThisGridsHeader() {
    QWidget window;
    auto *left = new Grid(&window);
    auto *right = new Grid(&window);
    left->setGeometry(0, 0, 200, 200);
    right->setGeometry(200, 0, 200, 200);
    for (Grid *grid : {left, right})
        fill(*grid, 5, 2);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCursor::setPos(right->horizontalHeader()->viewport()->mapToGlobal(columnHeaderCentre(*right, 1)));
    QCOMPARE(right->MouseRow(), 0);
    QCOMPARE(left->MouseRow(), -1);
    QCursor::setPos(window.mapToGlobal(QPoint(100, 195)) + QPoint(0, 3000));
    QCOMPARE(right->MouseRow(), -1);
    right->hide();
    QCursor::setPos(window.mapToGlobal(QPoint(250, 5)));
    QCOMPARE(right->MouseRow(), -1);
}

void GridPositionTest::mouseRowIsNoneBesideTheCells() {
    fill(*m_grid, 2, 1);
    QCursor::setPos(m_grid->viewport()->mapToGlobal(m_grid->viewport()->rect().bottomRight() - QPoint(3, 3)));
    QCOMPARE(m_grid->MouseRow(), -1);
    QCOMPARE(m_grid->MouseCol(), -1);
    // The header goes on beside its last section.
    QCursor::setPos(m_grid->horizontalHeader()->viewport()->mapToGlobal(
        m_grid->horizontalHeader()->viewport()->rect().bottomRight() - QPoint(3, 3)));
    QCOMPARE(m_grid->MouseRow(), 0);
    QCOMPARE(m_grid->MouseCol(), -1);
}

void GridPositionTest::mouseRowIsNoneUnderAnotherWidget() {
    QWidget window;
    auto *grid = new Grid(&window);
    grid->setGeometry(0, 0, 300, 200);
    fill(*grid, 5, 2);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QPoint onHeader = grid->horizontalHeader()->viewport()->mapToGlobal(columnHeaderCentre(*grid, 1));
    QCursor::setPos(onHeader);
    QCOMPARE(grid->MouseRow(), 0);
    QWidget cover(&window);
    cover.setGeometry(0, 0, 300, 200);
    cover.show();
    QCOMPARE(grid->MouseRow(), -1);
}

void GridPositionTest::columnWidthsAreKeptToTheTwip() {
    m_grid->setColWidth(2, 1234);
    QCOMPARE(m_grid->ColWidth(2), 1234);
}

void GridPositionTest::columnWidthsAreDrawnRoundedUp() {
    m_grid->setColWidth(2, 1230);
    QCOMPARE(m_grid->columnWidth(1), 82);
    m_grid->setColWidth(2, 1231);
    QCOMPARE(m_grid->columnWidth(1), 83);
}

void GridPositionTest::theFixedColumnIs300TwipsWide() {
    QCOMPARE(m_grid->ColWidth(0), 300);
    QCOMPARE(m_grid->verticalHeader()->width(), 20);
    QCOMPARE(m_grid->viewport()->geometry().left() - m_grid->frameWidth(), 20);
    fill(*m_grid, 100000, 1);
    QCoreApplication::processEvents();
    QCOMPARE(m_grid->verticalHeader()->width(), 20);
    m_grid->setColWidth(0, 450);
    QCOMPARE(m_grid->verticalHeader()->width(), 30);
    m_grid->setColWidth(0, 300);
    QCOMPARE(m_grid->verticalHeader()->width(), 20);
}

void GridPositionTest::aColumnOfWidthZeroShowsAgain() {
    m_grid->setColWidth(1, 0);
    QCOMPARE(m_grid->ColWidth(1), 0);
    QCOMPARE(m_grid->columnWidth(0), 0);
    m_grid->setColWidth(1, 1500);
    QCOMPARE(m_grid->columnWidth(0), 100);
    // The user may drag it there too.
    QHeaderView *header = m_grid->horizontalHeader();
    const QPoint handle(header->sectionSize(0), header->height() / 2);
    hands::press(header->viewport(), Qt::LeftButton, {}, handle);
    const QPoint to(0, handle.y());
    hands::move(header->viewport(), to, Qt::LeftButton);
    hands::release(header->viewport(), Qt::LeftButton, {}, to);
    QCOMPARE(m_grid->ColWidth(1), 0);
}

void GridPositionTest::widthsStayThroughAReload() {
    m_grid->setColWidth(2, 1234);
    fill(*m_grid, 50, 6, GridFill::SameTable);
    QCOMPARE(m_grid->ColWidth(2), 1234);
    fill(*m_grid, 50, 3);
    QCOMPARE(m_grid->ColWidth(2), 1234);
    m_grid->setRows(20);
    QCOMPARE(m_grid->ColWidth(2), 1234);
}

void GridPositionTest::widthsOfNewColumnsAreThoseDrawn() {
    m_grid->setColWidth(6, 1234);
    m_grid->setCols(3);
    QCOMPARE(m_grid->ColWidth(6), 0);
    m_grid->setCols(9);
    for (int column = 1; column < 9; ++column)
        QCOMPARE(m_grid->ColWidth(column), toTwips(m_grid->columnWidth(column - 1)));
    fill(*m_grid, 3, 0);
    fill(*m_grid, 3, 4);
    for (int column = 1; column < 5; ++column)
        QCOMPARE(m_grid->ColWidth(column), toTwips(m_grid->columnWidth(column - 1)));
}

void GridPositionTest::wrongWidthsAndColumnsChangeNothing() {
    const int width = m_grid->ColWidth(2);
    m_grid->setColWidth(2, -15);
    m_grid->setColWidth(7, 100);
    m_grid->setColWidth(-1, 100);
    QCOMPARE(m_grid->ColWidth(2), width);
    QCOMPARE(m_grid->ColWidth(7), 0);
    QCOMPARE(m_grid->ColWidth(-1), 0);
    m_grid->setColWidth(2, std::numeric_limits<int>::max());
    QCOMPARE(m_grid->ColWidth(2), std::numeric_limits<int>::max());
    QCOMPARE(m_grid->columnWidth(1), m_grid->horizontalHeader()->maximumSectionSize());
}

void GridPositionTest::userResizingCanBeSwitchedOff() {
    QHeaderView *header = m_grid->horizontalHeader();
    const auto drag = [&] {
        const QPoint handle(header->sectionSize(0) - 1, header->height() / 2);
        hands::press(header->viewport(), Qt::LeftButton, {}, handle);
        const QPoint to = handle + QPoint(20, 0);
        hands::move(header->viewport(), to, Qt::LeftButton);
        hands::release(header->viewport(), Qt::LeftButton, {}, to);
    };
    const int width = m_grid->ColWidth(1);
    m_grid->setUserResizing(false);
    drag();
    QCOMPARE(m_grid->ColWidth(1), width);
    m_grid->setColWidth(1, width + 15);
    QCOMPARE(m_grid->ColWidth(1), width + 15);
    m_grid->setUserResizing(true);
    drag();
    QCOMPARE(m_grid->ColWidth(1), width + 315);
}

void GridPositionTest::aDoubleClickOnAResizeHandleFitsTheColumn() {
    m_grid->setTextMatrix(90, 1, u"by far the longest text of this column"_s);
    m_grid->setColWidth(1, 300);
    GridLog log(*m_grid);
    QHeaderView *header = m_grid->horizontalHeader();
    const QPoint handle(header->sectionSize(0) - 1, header->height() / 2);
    hands::doubleClick(header->viewport(), Qt::LeftButton, {}, handle);
    const qreal text = QFontMetricsF(m_grid->font()).horizontalAdvance(u" by far the longest text of this column"_s);
    QCOMPARE(m_grid->ColWidth(1), qRound(text * 15) + 60);
    QVERIFY(!log.take().contains(u"DblClick"_s));
}

void GridPositionTest::rowsFitALargerFont() {
    QFont large = m_grid->font();
    large.setPointSize(30);
    m_grid->setFont(large);
    QVERIFY(m_grid->rowHeight(0) >= QFontMetrics(large).height());
}

void GridPositionTest::theLastRowInFirstPlaceBeginsAtTheTop() {
    m_grid->setTopRow(100);
    QVERIFY(m_grid->TopRow() < 100);
    QCOMPARE(m_grid->rowViewportPosition(m_grid->TopRow() - 1), 0);
    QVERIFY(m_grid->rowViewportPosition(99) + m_grid->rowHeight(99) <= m_grid->viewport()->height());
}

void GridPositionTest::aGridScrollsAsFarAsItIsToldTo() {
    const GridReach own = m_grid->reach();
    m_grid->setLeastReach({150, own.column + 3});
    QCOMPARE(m_grid->reach(), own);
    m_grid->setTopRow(200);
    QCOMPARE(m_grid->TopRow(), 150);
    QCOMPARE(m_grid->rowViewportPosition(99), -50 * m_grid->rowHeight(99));
    m_grid->resize(420, 310); // a new layout moves nothing
    m_grid->setTextMatrix(1, 1, u"x"_s);
    QCoreApplication::processEvents();
    QCOMPARE(m_grid->TopRow(), 150);
    m_grid->setLeastReach({});
    QCOMPARE(m_grid->TopRow(), m_grid->reach().row);
}

void GridPositionTest::pastItsLastRowAGridDrawsNoneOfThem() {
    class CountingStyle : public QProxyStyle {
    public:
        void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                         const QWidget *widget) const override {
            m_sections += element == CE_HeaderSection ? 1 : 0;
            QProxyStyle::drawControl(element, option, painter, widget);
        }
        int take() const { return std::exchange(m_sections, 0); }

    private:
        mutable int m_sections = 0;
    };
    const CountingStyle style;
    m_grid->setRows(20'001);
    m_grid->setLeastReach({30'000, 1});
    QHeaderView *header = m_grid->verticalHeader();
    header->setStyle(const_cast<CountingStyle *>(&style));
    m_grid->setTopRow(20'000);
    header->viewport()->grab();
    QCOMPARE(style.take(), 1);
    m_grid->setTopRow(25'000);
    header->viewport()->grab();
    QCOMPARE(style.take(), 0);
    QCOMPARE(m_grid->indexAt(QPoint(5, 5)), QModelIndex());
    header->setStyle(nullptr);
}

void GridPositionTest::pastItsLastRowAGridTakesNoMemoryForThem() {
    if (!CountedMemory::counts())
        QSKIP("this build counts no memory");
    constexpr int rows = 4'000'000;
    m_grid->setRows(rows + 1);
    m_grid->setLeastReach({2 * rows, 1});
    const auto painting = [&](int top) {
        m_grid->setTopRow(top);
        const CountedMemory memory;
        m_grid->viewport()->grab();
        return memory.peak();
    };
    const std::size_t onRows = painting(rows);
    const std::size_t beyond = painting(rows + rows / 2);
    QVERIFY2(beyond < onRows + rows / 8, qPrintable(QString::number(beyond))); // a bit for each row would be too much
}

void GridPositionTest::aLastColumnWiderThanTheGridShowsItsEnd() {
    m_grid->setColWidth(6, 15 * 2000);
    m_grid->setLeftCol(6);
    QCOMPARE(m_grid->columnViewportPosition(5) + m_grid->columnWidth(5), m_grid->viewport()->width());
}

QTEST_MAIN(GridPositionTest)
#include "grid_position_test.moc"
