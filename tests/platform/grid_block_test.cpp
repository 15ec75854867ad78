#include "platform/grid/Grid.h"
#include "platform/grid/GridFill.h"
#include "tests/platform/GridTesting.h"
#include "tests/support/Hands.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

using namespace qir;
using namespace qir::testing;
using namespace Qt::StringLiterals;

/// The selected block as a text, and hiding a grid.
class GridBlockTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void clipReadsTheSelectedBlock();
    void clipReadsTheSameWhicheverCornerIsCurrent();
    void clipWritesInsideTheSelectionOnly();
    void clipOfASingleCellTakesTheFirstValueOnly();
    void clipNotifiesOnceForTheWholeBlock();
    void visibleIsTheGridsOwnFlag();
    void hidingForPaintingKeepsTheFocus();
    void hidingForPaintingYieldsToTheFlagBeingSet();
};

void GridBlockTest::clipReadsTheSelectedBlock() {
    Grid grid;
    fill(grid, 4, 4);
    grid.setSelection({2, 2, 3, 4});
    QCOMPARE(grid.Clip(), u"2.2\t2.3\t2.4\r3.2\t3.3\t3.4"_s);
    grid.setSelection(singleCell(1, 1));
    QCOMPARE(grid.Clip(), u"1.1"_s);
}

void GridBlockTest::clipReadsTheSameWhicheverCornerIsCurrent() {
    Grid grid;
    fill(grid, 4, 4);
    grid.setSelection({3, 4, 2, 2});
    QCOMPARE(grid.Clip(), u"2.2\t2.3\t2.4\r3.2\t3.3\t3.4"_s);
}

void GridBlockTest::clipWritesInsideTheSelectionOnly() {
    Grid grid;
    fill(grid, 4, 4);
    grid.setSelection({3, 3, 2, 2});
    grid.setClip(u"a\tb\tc\rd\te\tf\rg\th\ti"_s);
    QCOMPARE(grid.TextMatrix(2, 2), u"a"_s);
    QCOMPARE(grid.TextMatrix(2, 3), u"b"_s);
    QCOMPARE(grid.TextMatrix(3, 3), u"e"_s);
    QCOMPARE(grid.TextMatrix(2, 4), u"2.4"_s);
    QCOMPARE(grid.TextMatrix(4, 2), u"4.2"_s);
    grid.setClip(u"z"_s);
    QCOMPARE(grid.TextMatrix(2, 2), u"z"_s);
    QCOMPARE(grid.TextMatrix(2, 3), u"b"_s);
    QCOMPARE(grid.texts().at(3, 3), u"e"_s);
}

void GridBlockTest::clipOfASingleCellTakesTheFirstValueOnly() {
    Grid grid;
    fill(grid, 4, 4);
    grid.setSelection(singleCell(2, 2));
    grid.setClip(u"a\tb\rc"_s);
    QCOMPARE(grid.TextMatrix(2, 2), u"a"_s);
    QCOMPARE(grid.TextMatrix(2, 3), u"2.3"_s);
    QCOMPARE(grid.TextMatrix(3, 2), u"3.2"_s);
}

void GridBlockTest::clipNotifiesOnceForTheWholeBlock() {
    Grid grid;
    fill(grid, 50, 4);
    grid.setSelection({1, 1, 50, 4});
    const QString all = grid.Clip();
    GridLog log(grid);
    const QSignalSpy changed(grid.model(), &QAbstractItemModel::dataChanged);
    grid.setClip(all);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(grid.Clip(), all);
}

void GridBlockTest::visibleIsTheGridsOwnFlag() {
    QWidget frame;
    auto *grid = new Grid(&frame);
    QVERIFY(grid->Visible());
    QVERIFY(!grid->isVisible());
    grid->setVisibleFlag(false);
    frame.show();
    QVERIFY(!grid->Visible());
    QVERIFY(!grid->isVisible());
    grid->setVisibleFlag(true);
    QVERIFY(grid->isVisible());
    frame.hide();
    QVERIFY(grid->Visible());
}

void GridBlockTest::hidingForPaintingKeepsTheFocus() {
    const auto grid = shownGrid();
    grid->activateWindow();
    grid->setFocus();
    QTRY_VERIFY(grid->hasFocus());
    {
        const GridHidden hidden(*grid);
        QVERIFY(!grid->Visible());
        {
            const GridHidden again(*grid);
            QVERIFY(!grid->Visible());
        }
        QVERIFY2(!grid->Visible(), "the inner one showed what the outer one hides");
        QVERIFY(!grid->updatesEnabled());
        QVERIFY(grid->hasFocus());
    }
    QVERIFY(grid->Visible());
    QVERIFY(grid->updatesEnabled());
    QVERIFY(grid->hasFocus());
}

void GridBlockTest::hidingForPaintingYieldsToTheFlagBeingSet() {
    const auto grid = shownGrid();
    {
        const GridHidden hidden(*grid);
        grid->setVisibleFlag(false);
    }
    QVERIFY(!grid->Visible());
    QVERIFY(!grid->isVisible());
    { const GridHidden hidden(*grid); }
    QVERIFY2(!grid->Visible(), "a grid that was hidden before is shown");
    grid->setVisibleFlag(true);
    QVERIFY(grid->updatesEnabled());
}

QTEST_MAIN(GridBlockTest)
#include "grid_block_test.moc"
