#include "platform/grid/Grid.h"
#include "platform/grid/GridFill.h"
#include "tests/platform/GridTesting.h"
#include "tests/support/Hands.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

using namespace qir;
using namespace Qt::StringLiterals;
using namespace qir::testing;

class GridContentsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsWithOneEmptyColumnAndNoRecords();
    void rowsAndColumnsCountTheFixedOnes();
    void growingKeepsTextsAndShrinkingCutsThem();
    void theHeaderRowIsTheHorizontalHeader();
    void theFixedColumnHoldsNoText();
    void outsideReadsEmptyAndWritesNothing();
    void rowDataIsTheRowUntilSet();
    void clearLeavesNoTableBehind();
    void aFillShowsItsRecordsWhenItEnds();
    void aFillThatEndsEarlyShowsWhatItHas();
    void aFillTakesMoreRecordsThanExpected();
    void aNewTableStartsAtTheFirstCellSilently();
    void aReloadKeepsThePlaceSilently();
    void aReloadCutsThePlaceToTheNewSize();
    void aTableWithoutRecordsOrFieldsIsNoError();
    void theModelIsSound();
    void backgroundIsAlwaysSetAndTextAlwaysBlack();
    void numbersStandOnTheRight();
    void paintingMovesNothingAndRaisesNothing();
    void paintingManyCellsNotifiesTheViewOnce();
    void paintingWhatIsPaintedNotifiesNobody();
    void writingACellNotifiesForThatCellAlone();
    void reorderingMovesTextsColoursAndRowData();
    void aMillionRowsCostNothingToHold();
};

void GridContentsTest::startsWithOneEmptyColumnAndNoRecords() {
    Grid grid;
    QCOMPARE(grid.Rows(), 1);
    QCOMPARE(grid.Cols(), 2);
    QCOMPARE(grid.Row(), 0);
    QCOMPARE(grid.Col(), 1);
    QCOMPARE(grid.ColWidth(0), 300);
}

void GridContentsTest::rowsAndColumnsCountTheFixedOnes() {
    Grid grid;
    fill(grid, 3, 2);
    QCOMPARE(grid.Rows(), 4);
    QCOMPARE(grid.Cols(), 3);
    QCOMPARE(grid.model()->rowCount(), 3);
    QCOMPARE(grid.model()->columnCount(), 2);
    QCOMPARE(grid.TextMatrix(3, 2), u"3.2"_s);
    QCOMPARE(grid.model()->index(2, 1).data().toString(), u"3.2"_s);
}

void GridContentsTest::growingKeepsTextsAndShrinkingCutsThem() {
    Grid grid;
    fill(grid, 3, 2);
    grid.setCols(5);
    grid.setRows(10);
    QCOMPARE(grid.TextMatrix(3, 2), u"3.2"_s);
    QCOMPARE(grid.TextMatrix(0, 2), u"f2"_s);
    QCOMPARE(grid.TextMatrix(9, 4), QString());
    grid.setRows(2);
    grid.setRows(4);
    QCOMPARE(grid.TextMatrix(3, 2), QString());
    grid.setRows(0);
    QCOMPARE(grid.Rows(), 1);
    grid.setCols(0);
    QCOMPARE(grid.Cols(), 1);
}

void GridContentsTest::theHeaderRowIsTheHorizontalHeader() {
    Grid grid;
    fill(grid, 1, 2);
    const QSignalSpy changed(grid.model(), &QAbstractItemModel::headerDataChanged);
    grid.setTextMatrix(0, 2, u"Speed [long]"_s);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(grid.model()->headerData(1, Qt::Horizontal).toString(), u"Speed [long]"_s);
    QCOMPARE(grid.TextMatrix(0, 2), u"Speed [long]"_s);
    QCOMPARE(grid.TextMatrix(0, 0), QString());
}

void GridContentsTest::theFixedColumnHoldsNoText() {
    Grid grid;
    fill(grid, 2, 2);
    grid.setTextMatrix(1, 0, u"x"_s);
    QCOMPARE(grid.TextMatrix(1, 0), QString());
    QVERIFY(!grid.model()->headerData(0, Qt::Vertical).isValid());
}

void GridContentsTest::outsideReadsEmptyAndWritesNothing() {
    Grid grid;
    fill(grid, 2, 2);
    for (const auto &[row, column] : {std::pair{3, 1}, {1, 3}, {-1, 1}, {1, -1}, {0, 3}, {0, -1}}) {
        grid.setTextMatrix(row, column, u"x"_s);
        QCOMPARE(grid.TextMatrix(row, column), QString());
        grid.setCellBackColor(row, column, CellColour::Red);
        QCOMPARE(grid.CellBackColor(row, column), CellColour::White);
    }
    QCOMPARE(grid.Rows(), 3);
}

void GridContentsTest::rowDataIsTheRowUntilSet() {
    Grid grid;
    fill(grid, 3, 2);
    QCOMPARE(grid.RowData(2), 2);
    QCOMPARE(grid.ColData(2), 2);
    grid.setRowData(2, 7);
    grid.setColData(1, 9);
    QCOMPARE(grid.RowData(2), 7);
    QCOMPARE(grid.RowData(3), 3);
    QCOMPARE(grid.ColData(1), 9);
    grid.renumberRows();
    QCOMPARE(grid.RowData(2), 2);
    fill(grid, 3, 2);
    QCOMPARE(grid.ColData(1), 1);
}

void GridContentsTest::clearLeavesNoTableBehind() {
    Grid grid;
    fill(grid, 50, 4);
    grid.setCellBackColor(2, 2, CellColour::Red);
    grid.setRowData(3, 1);
    grid.setSelection({2, 2, 5, 3});
    GridLog log(grid);
    grid.clear();
    QCOMPARE(grid.Rows(), 1);
    QCOMPARE(grid.Cols(), 2);
    QCOMPARE(grid.TextMatrix(0, 1), QString());
    QCOMPARE(grid.colours().redCount(), std::size_t{0});
    QCOMPARE(grid.RowData(3), 3);
    QCOMPARE(grid.selection(), singleCell(0, 1));
    QCOMPARE(log.take(), QStringList());
}

void GridContentsTest::aFillShowsItsRecordsWhenItEnds() {
    Grid grid;
    fill(grid, 5, 2);
    grid.setCellBackColor(1, 1, CellColour::Red);
    {
        GridFill filling(grid, headers(3), 2, GridFill::NewTable);
        QCOMPARE(grid.Rows(), 1);
        QCOMPARE(grid.Cols(), 4);
        QCOMPARE(grid.TextMatrix(0, 3), u"f3"_s);
        filling.appendRecord({QString(), u"a"_s, u"b"_s, u"c"_s});
        QCoreApplication::processEvents();
        QCOMPARE(grid.Rows(), 1);
    }
    QCOMPARE(grid.Rows(), 2);
    QCOMPARE(grid.TextMatrix(1, 3), u"c"_s);
    QCOMPARE(grid.colours().redCount(), std::size_t{0});
    QCOMPARE(grid.texts().at(3, 1), u"c"_s);
}

void GridContentsTest::aFillThatEndsEarlyShowsWhatItHas() {
    Grid grid;
    try {
        GridFill filling(grid, headers(1), 100, GridFill::NewTable);
        filling.appendRecord({QString(), u"first"_s});
        throw std::runtime_error("no more records");
    } catch (const std::runtime_error &) {
    }
    QCOMPARE(grid.Rows(), 2);
    QCOMPARE(grid.TextMatrix(1, 1), u"first"_s);
}

void GridContentsTest::aFillTakesMoreRecordsThanExpected() {
    Grid grid;
    {
        GridFill filling(grid, headers(1), -5, GridFill::NewTable);
        for (int r = 1; r <= 3000; ++r)
            filling.appendRecord({QString(), QString::number(r)});
    }
    QCOMPARE(grid.Rows(), 3001);
    QCOMPARE(grid.TextMatrix(3000, 1), u"3000"_s);
}

void GridContentsTest::aNewTableStartsAtTheFirstCellSilently() {
    const auto grid = shownGrid();
    grid->setSelection({40, 3, 45, 4});
    grid->setTopRow(38);
    GridLog log(*grid);
    fill(*grid, 80, 6);
    QCOMPARE(grid->selection(), singleCell(1, 1));
    QCOMPARE(grid->TopRow(), 1);
    QCOMPARE(grid->LeftCol(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(log.take(), QStringList());
}

void GridContentsTest::aReloadKeepsThePlaceSilently() {
    const auto grid = shownGrid();
    grid->setSelection({40, 3, 45, 4});
    grid->setTopRow(38);
    grid->setLeftCol(2);
    const int leftColumn = grid->LeftCol();
    GridLog log(*grid);
    fill(*grid, 101, 6, GridFill::SameTable);
    QCOMPARE(grid->selection(), (GridSelection{40, 3, 45, 4}));
    QCOMPARE(grid->TopRow(), 38);
    QCOMPARE(grid->LeftCol(), leftColumn);
    QCoreApplication::processEvents();
    QCOMPARE(grid->TopRow(), 38);
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(grid->currentIndex(), grid->model()->index(39, 2));
}

void GridContentsTest::aReloadCutsThePlaceToTheNewSize() {
    const auto grid = shownGrid();
    grid->setSelection({90, 6, 95, 6});
    grid->setTopRow(80);
    fill(*grid, 40, 2, GridFill::SameTable);
    QCOMPARE(grid->selection(), singleCell(40, 2));
    QVERIFY(grid->TopRow() <= 40);
    QVERIFY(grid->TopRow() > 20);
}

void GridContentsTest::aTableWithoutRecordsOrFieldsIsNoError() {
    const auto grid = shownGrid();
    fill(*grid, 0, 3, GridFill::SameTable);
    QCOMPARE(grid->Rows(), 1);
    QCOMPARE(grid->Row(), 0);
    grid->bringCellIntoView();
    QVERIFY(grid->cellRectangle().isEmpty());
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_PageDown, Qt::Key_Return})
        hands::key(grid.get(), key);
    hands::key(grid.get(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(grid->Row(), 0);
    hands::click(grid->viewport(), Qt::LeftButton, {}, {50, 50});
    hands::click(grid->horizontalHeader()->viewport(), Qt::LeftButton, {}, columnHeaderCentre(*grid, 2));
    QCOMPARE(grid->selection(), (GridSelection{0, 2, 0, 2}));
    QCOMPARE(grid->Clip(), u"f2"_s);
    grid->setClip(u"x"_s);
    QCOMPARE(grid->TextMatrix(0, 2), u"f2"_s);
    grid->paintDifferences(BitMatrix(5, 5));
    fill(*grid, 4, 0);
    QCOMPARE(grid->Cols(), 1);
    QCOMPARE(grid->Col(), 0);
    hands::key(grid.get(), Qt::Key_Right);
    grid->bringCellIntoView();
    fill(*grid, 0, 0);
    hands::key(grid.get(), Qt::Key_Down);
    QCOMPARE(grid->selection(), singleCell(0, 0));
    QVERIFY(!grid->grab().isNull());
}

void GridContentsTest::theModelIsSound() {
    Grid grid;
    const QAbstractItemModelTester tester(grid.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    fill(grid, 20, 3);
    grid.setTextMatrix(3, 3, u"x"_s);
    grid.setTextMatrix(0, 3, u"x"_s);
    grid.setRows(30);
    grid.setCols(1);
    grid.setCols(8);
    grid.setCellBackColor(2, 2, CellColour::Red);
    grid.paintDifferences(BitMatrix(5, 5));
    fill(grid, 10, 4, GridFill::SameTable);
    grid.reorderRecords({9, 8, 7, 6, 5, 4, 3, 2, 1, 0});
    grid.setClip(u"a\tb\rc"_s);
    grid.clear();
}

void GridContentsTest::backgroundIsAlwaysSetAndTextAlwaysBlack() {
    Grid grid;
    QPalette dark = grid.palette();
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    grid.setPalette(dark);
    fill(grid, 2, 2);
    grid.setCellBackColor(1, 2, CellColour::Red);
    const auto colour = [&](int row, int column, int role) {
        return grid.model()->index(row - 1, column - 1).data(role).value<QColor>();
    };
    QCOMPARE(colour(1, 1, Qt::BackgroundRole), QColor(255, 255, 255));
    QCOMPARE(colour(1, 2, Qt::BackgroundRole), QColor(255, 0, 0));
    QCOMPARE(colour(1, 1, Qt::ForegroundRole), QColor(0, 0, 0));
    QCOMPARE(colour(1, 2, Qt::ForegroundRole), QColor(0, 0, 0));
}

void GridContentsTest::numbersStandOnTheRight() {
    Grid grid;
    fill(grid, 1, 5);
    grid.setTextMatrix(1, 1, u"-12.5"_s);
    grid.setTextMatrix(1, 2, u"12 apples"_s);
    grid.setTextMatrix(1, 3, QString());
    grid.setTextMatrix(1, 4, u"1 2"_s);
    grid.setTextMatrix(1, 5, u"2D1"_s);
    const auto horizontal = [&](int column) {
        return grid.model()->index(0, column - 1).data(Qt::TextAlignmentRole).value<Qt::Alignment>() &
               Qt::AlignHorizontal_Mask;
    };
    QCOMPARE(horizontal(1), Qt::AlignRight);
    for (const int column : {2, 3, 4, 5})
        QCOMPARE(horizontal(column), Qt::AlignLeft);
}

void GridContentsTest::paintingMovesNothingAndRaisesNothing() {
    const auto grid = shownGrid();
    grid->setSelection({3, 2, 6, 4});
    grid->setTopRow(10);
    GridLog log(*grid);
    grid->setCellBackColor(50, 5, CellColour::Red);
    BitMatrix different(101, 7);
    different.set(60, 2, true);
    grid->paintDifferences(different);
    QCoreApplication::processEvents();
    QCOMPARE(grid->selection(), (GridSelection{3, 2, 6, 4}));
    QCOMPARE(grid->TopRow(), 10);
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(grid->CellBackColor(60, 2), CellColour::Red);
    QCOMPARE(grid->CellBackColor(50, 5), CellColour::White);
}

void GridContentsTest::paintingManyCellsNotifiesTheViewOnce() {
    Grid grid;
    fill(grid, 100, 6);
    BitMatrix different(101, 7);
    for (std::size_t row = 10; row <= 20; ++row)
        different.set(row, row % 5 + 1, true);
    QSignalSpy changed(grid.model(), &QAbstractItemModel::dataChanged);
    grid.paintDifferences(different, {12, 2, 18, 4});
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed[0][0].toModelIndex(), grid.model()->index(11, 1));
    QCOMPARE(changed[0][1].toModelIndex(), grid.model()->index(17, 3));
}

void GridContentsTest::paintingWhatIsPaintedNotifiesNobody() {
    Grid grid;
    fill(grid, 100, 6);
    BitMatrix different(101, 7);
    different.set(5, 5, true);
    grid.paintDifferences(different);
    const QSignalSpy changed(grid.model(), &QAbstractItemModel::dataChanged);
    grid.paintDifferences(different);
    grid.setCellBackColor(5, 5, CellColour::Red);
    grid.setCellBackColor(4, 5, CellColour::White);
    QCOMPARE(changed.count(), 0);
}

void GridContentsTest::writingACellNotifiesForThatCellAlone() {
    Grid grid;
    fill(grid, 100, 6);
    QSignalSpy changed(grid.model(), &QAbstractItemModel::dataChanged);
    grid.setTextMatrix(7, 3, u"new"_s);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed[0][0].toModelIndex(), grid.model()->index(6, 2));
    QCOMPARE(changed[0][1].toModelIndex(), grid.model()->index(6, 2));
}

void GridContentsTest::reorderingMovesTextsColoursAndRowData() {
    Grid grid;
    fill(grid, 3, 2);
    grid.setCellBackColor(1, 2, CellColour::Red);
    grid.setSelection(singleCell(2, 2));
    QSignalSpy changed(grid.model(), &QAbstractItemModel::dataChanged);
    grid.reorderRecords({2, 0, 1});
    QCOMPARE(changed.count(), 1);
    QCOMPARE(grid.TextMatrix(1, 1), u"3.1"_s);
    QCOMPARE(grid.TextMatrix(2, 2), u"1.2"_s);
    QCOMPARE(grid.CellBackColor(2, 2), CellColour::Red);
    QCOMPARE(grid.RowData(1), 3);
    QCOMPARE(grid.RowData(2), 1);
    QCOMPARE(grid.selection(), singleCell(2, 2));
}

void GridContentsTest::aMillionRowsCostNothingToHold() {
    Grid grid;
    {
        GridFill filling(grid, headers(2), 1000000, GridFill::NewTable);
        const QStringList values{QString(), u"12345"_s, u"abc"_s};
        for (int r = 1; r <= 1000000; ++r)
            filling.appendRecord(values);
    }
    QCOMPARE(grid.Rows(), 1000001);
    // Eight bytes to find a text and its characters, with some room to grow: no object for each cell.
    QVERIFY2(grid.texts().memory() < std::size_t{2} * 1000000 * 16, qPrintable(QString::number(grid.texts().memory())));
    grid.setSelection({1, 1, 1000000, 2});
    QCOMPARE(grid.selectionModel()->selection().size(), 1);
}

QTEST_MAIN(GridContentsTest)
#include "grid_contents_test.moc"
