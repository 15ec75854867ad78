#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QScrollBar>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

TableOfTexts rows(int records, int fields = 2) {
    return counted(u"Rows"_s, records, fields);
}
TableOfTexts others() {
    return counted(u"Others"_s, 2, 2);
}

/// Where a row stands in its grid's window, from the top of the main window.
int heightOf(EditorFixture &fixture, int pane, int row) {
    const Grid &grid = fixture.grid(pane);
    return grid.viewport()->mapTo(&fixture.window(), QPoint(0, grid.rowViewportPosition(row - 1))).y();
}

/// The rows of both grids that do not stand at the same height; "" when all do.
QString unlevelRows(EditorFixture &fixture) {
    if (fixture.grid(0).TopRow() != fixture.grid(1).TopRow())
        return u"rows %1 and %2 on top"_s.arg(fixture.grid(0).TopRow()).arg(fixture.grid(1).TopRow());
    const int common = std::min(fixture.grid(0).Rows(), fixture.grid(1).Rows());
    for (int row = 1; row < common; ++row)
        if (heightOf(fixture, 0, row) != heightOf(fixture, 1, row) ||
            fixture.grid(0).rowHeight(row - 1) != fixture.grid(1).rowHeight(row - 1))
            return u"row %1 at %2 and %3"_s.arg(row).arg(heightOf(fixture, 0, row)).arg(heightOf(fixture, 1, row));
    return {};
}

/// Drags the lower edge of a row, or the right edge of a column, as far as this.
void dragEdge(QHeaderView *header, int section, int by) {
    const int edge = header->sectionViewportPosition(section) + header->sectionSize(section) - 1;
    const bool across = header->orientation() == Qt::Horizontal;
    const QPoint from = across ? QPoint(edge, header->height() / 2) : QPoint(header->width() / 2, edge);
    hands::drag(header->viewport(), from, from + (across ? QPoint(by, 0) : QPoint(0, by)));
}

} // namespace

/// Two grids side by side show the same rows at the same height.
class LevelTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void theLinesOfBothListsStandAtTheSameHeightThoughOneWasShownAlone() {
        EditorFixture fixture(makeFile(u"LEFT.DDB"_s, {rows(2), others()}));
        QCoreApplication::processEvents(); // it is laid out while there is nothing to compare
        const QString other = makeFile(u"RIGHT.DDB"_s, {rows(2), others()});
        runCommand([&] { QCOMPARE(fixture.window().openRight(other), StartResult::Opened); });
        for (const int line : {0, 1}) {
            const QRect left = fixture.list(0).visualRect(fixture.list(0).model()->index(line, 0));
            const QRect right = fixture.list(1).visualRect(fixture.list(1).model()->index(line, 0));
            QVERIFY(left.isValid());
            QCOMPARE(left.top(), right.top());
            QCOMPARE(left.height(), right.height());
        }
    }

    void theShorterTableScrollsAsFarAsTheLonger() {
        for (const int longer : {0, 1}) {
            EditorFixture fixture;
            openBoth(fixture, {rows(longer == 0 ? 90 : 80)}, {rows(longer == 0 ? 80 : 90)});
            fixture.clickCell(longer, 1, 1);
            hands::key(&fixture.grid(longer), Qt::Key_End, Qt::ControlModifier);
            const Grid &grid = fixture.grid(longer);
            QVERIFY(grid.TopRow() > 1);
            QVERIFY(grid.viewport()->rect().contains(grid.visualRect(grid.model()->index(89, 1))));
            QCOMPARE(unlevelRows(fixture), QString());
            // And one step up, where both could go before.
            hands::turnWheel(fixture.grid(longer).viewport(), QPoint(20, 20), QPoint(0, 120));
            QCOMPARE(unlevelRows(fixture), QString());
        }
    }

    void aTableOfAFewRowsLeavesTheScreenWithTheLonger() {
        EditorFixture fixture;
        openBoth(fixture, {rows(300)}, {rows(3)});
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_End, Qt::ControlModifier);
        QVERIFY(fixture.grid(0).TopRow() > 200);
        QCOMPARE(unlevelRows(fixture), QString());
        QVERIFY(fixture.grid(1).rowViewportPosition(2) + fixture.grid(1).rowHeight(2) <= 0);
    }

    void scrollingTheShorterTablePastItsEndScrollsTheLonger() {
        EditorFixture fixture;
        openBoth(fixture, {rows(300)}, {rows(40)});
        fixture.clickCell(1, 1, 1);
        for (int turn = 0; turn < 20; ++turn)
            hands::turnWheel(fixture.grid(1).viewport(), QPoint(20, 20), QPoint(0, -480));
        QVERIFY(fixture.grid(1).TopRow() > 40);
        QCOMPARE(fixture.grid(1).selection(), singleCell(40, 1)); // as far as it goes
        QCOMPARE(unlevelRows(fixture), QString());
        QCOMPARE(fixture.grid(0).selection(), fixture.grid(1).selection());
    }

    void theRoomGoesWhenTheLongerTableIsClosed() {
        EditorFixture fixture;
        openBoth(fixture, {rows(300)}, {rows(40)});
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_End, Qt::ControlModifier);
        fixture.activate(0);
        fixture.choose(Command::CloseDatabaseMenu);
        Grid &grid = fixture.grid(1);
        QTRY_VERIFY(grid.viewport()->rect().contains(grid.visualRect(grid.model()->index(39, 0))));
    }

    void aBarThatOneGridNeedsTheOtherShowsToo() {
        EditorFixture fixture;
        openBoth(fixture, {rows(3, 20)}, {rows(60, 2)});
        for (const int pane : {0, 1}) {
            QTRY_VERIFY(!fixture.grid(pane).horizontalScrollBar()->isHidden());
            QVERIFY(!fixture.grid(pane).verticalScrollBar()->isHidden());
        }
        QCOMPARE(fixture.grid(0).viewport()->size(), fixture.grid(1).viewport()->size());
    }

    void aRowResizedInOnePaneIsResizedInTheOther() {
        for (const int pane : {0, 1}) {
            EditorFixture fixture;
            openBoth(fixture, {rows(60)}, {rows(70)});
            const int before = fixture.grid(pane).rowHeight(2);
            dragEdge(fixture.grid(pane).verticalHeader(), 2, 25);
            QVERIFY(fixture.grid(pane).rowHeight(2) > before + 10);
            QCOMPARE(unlevelRows(fixture), QString());
        }
    }

    void rowsKeepTheHeightThatTheyWereGivenThroughAReload() {
        EditorFixture fixture;
        openBoth(fixture, {rows(6)}, {rows(6)});
        dragEdge(fixture.grid(0).verticalHeader(), 1, 25);
        const int given = fixture.grid(0).rowHeight(1);
        fixture.clickCell(0, 4, 1);
        fixture.choose(Command::AddRecordMenu);
        QCOMPARE(fixture.grid(0).rowHeight(1), given);
        QCOMPARE(unlevelRows(fixture), QString());
        fixture.activate(1);
        fixture.choose(Command::RemoveRecordMenu);
        QCOMPARE(fixture.grid(1).rowHeight(1), given);
        QCOMPARE(unlevelRows(fixture), QString());
    }

    void aTableLoadedBesideItselfTakesOverTheRowsHeights() {
        EditorFixture fixture;
        const QString right = makeFile(u"RIGHT.DDB"_s, {rows(6)});
        fixture.open(makeFile(u"LEFT.DDB"_s, {rows(6)}));
        dragEdge(fixture.grid(0).verticalHeader(), 1, 25);
        const int given = fixture.grid(0).rowHeight(1);
        fixture.choose(Command::TwoMenu);
        fixture.activate(1);
        fixture.open(right);
        QCOMPARE(fixture.grid(1).rowHeight(1), given);
        QCOMPARE(unlevelRows(fixture), QString());
    }

    void anotherTableHasRowsOfItsOwnHeight() {
        EditorFixture fixture;
        TableOfTexts other = rows(6);
        other.name = u"Second"_s;
        openBoth(fixture, {rows(6), other}, {rows(6), other});
        const int before = fixture.grid(0).rowHeight(1);
        dragEdge(fixture.grid(0).verticalHeader(), 1, 25);
        fixture.clickLine(0, 1);
        for (const int pane : {0, 1})
            QCOMPARE(fixture.grid(pane).rowHeight(1), before);
    }

    void aColumnResizedInOnePaneIsResizedInTheOther() {
        for (const int pane : {0, 1}) {
            EditorFixture fixture;
            openBoth(fixture, {rows(60)}, {rows(60)});
            const int before = fixture.grid(pane).columnWidth(0);
            dragEdge(fixture.grid(pane).horizontalHeader(), 0, 40);
            QVERIFY(fixture.grid(pane).columnWidth(0) > before + 20);
            QCOMPARE(fixture.grid(1 - pane).columnWidth(0), fixture.grid(pane).columnWidth(0));
            QCOMPARE(fixture.grid(1 - pane).ColWidth(1), fixture.grid(pane).ColWidth(1));
            QCOMPARE(unlevelRows(fixture), QString());
        }
    }

    void sizesAreNotTakenOverWhereTheOtherPaneShowsAnotherTable() {
        EditorFixture fixture;
        TableOfTexts left = rows(6);
        left.name = u"A"_s;
        TableOfTexts right = rows(6);
        right.name = u"B"_s;
        openBoth(fixture, {left}, {right});
        fixture.list(0).setFocus();
        fixture.clickLine(0, 0); // beside a placeholder
        QVERIFY(!fixture.grid(1).Visible());
        const int before = fixture.grid(0).rowHeight(1);
        dragEdge(fixture.grid(0).verticalHeader(), 1, 25);
        QVERIFY(fixture.grid(0).rowHeight(1) > before);
        fixture.clickLine(0, 1);
        QVERIFY(fixture.grid(1).Visible());
        QCOMPARE(fixture.grid(1).rowHeight(1), before);
    }
};

QTEST_MAIN(LevelTest)
#include "level_test.moc"
