#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include "platform/controls/Twips.h"
#include "platform/grid/ColumnMeasure.h"

#include <QTimer>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

TableOfTexts notes() {
    return {u"Notes"_s,
            {{u"A number with a long name"_s, FieldType::Long, {u"1"_s, u"22"_s}},
             {u"Note"_s, FieldType::Text, {u"iiiiiiiiiiiiiiii"_s, u"WWWWWWWWWW"_s}, 200},
             {u"N"_s, FieldType::Byte, {u"7"_s, u"8"_s}}}};
}

/// The width that a column gets when every one of its texts is measured.
int widthOfAll(const Grid &grid, int column) {
    ColumnMeasure measure(grid.font(), &grid);
    int widest = 0;
    for (int r = 0; r < grid.Rows(); ++r)
        widest = std::max(widest, measure.textWidth(grid.TextMatrix(r, column)));
    return widest;
}

/// Drags the right edge of a column's header.
void dragEdge(EditorFixture &fixture, int pane, int column, int pixels) {
    const QHeaderView *header = fixture.grid(pane).horizontalHeader();
    const QPoint edge(header->sectionViewportPosition(column - 1) + header->sectionSize(column - 1) - 1,
                      header->height() / 2);
    hands::press(header->viewport(), Qt::LeftButton, Qt::NoModifier, edge);
    hands::move(header->viewport(), edge + QPoint(pixels / 2, 0), Qt::LeftButton);
    hands::move(header->viewport(), edge + QPoint(pixels, 0), Qt::LeftButton);
    hands::release(header->viewport(), Qt::LeftButton, Qt::NoModifier, edge + QPoint(pixels, 0));
}

} // namespace

/// Fitting columns through the real window.
class FitTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void aLoadFitsAllColumns() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {notes()}));
        verifyFitted(fixture);
    }

    void aColumnIsNeverNarrowerThanItsHeader() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {notes()}));
        const Grid &grid = fixture.grid(0);
        ColumnMeasure measure(grid.font(), &grid);
        QCOMPARE(grid.ColWidth(1), measure.textWidth(u"A number with a long name [long]"_s));
    }

    void widthsHoldABlankTheTextAndSixtyTwips() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {notes()}));
        const Grid &grid = fixture.grid(0);
        const QFontMetricsF metrics(grid.font(), &grid);
        const qreal text = metrics.horizontalAdvance(u" WWWWWWWWWW"_s) * twipsPerPixel;
        QVERIFY(grid.ColWidth(2) >= qRound(text) + 60);
        QVERIFY(grid.ColWidth(2) <= qRound(text) + 60 + 2 * twipsPerPixel);
    }

    void theCommandFitsColumnsOfAnyWidth() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {notes()}));
        fixture.grid(0).setColWidth(0, 900);
        fixture.grid(0).setColWidth(1, 20000);
        fixture.grid(0).setColWidth(2, 150);
        fixture.choose(Command::ColumnSizeAdjust);
        verifyFitted(fixture);
    }

    void aColumnDraggedToNothingShowsAgain() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {notes()}));
        Grid &grid = fixture.grid(0);
        dragEdge(fixture, 0, 2, -grid.horizontalHeader()->sectionSize(1));
        QCOMPARE(grid.ColWidth(2), 0);
        fixture.choose(Command::ColumnSizeAdjust);
        verifyFitted(fixture);
    }

    void aColumnGrowsWithWhatWasTyped() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {notes()}));
        const int before = fixture.grid(0).ColWidth(3);
        edit(fixture, 0, 1, 3, u"a text that a byte field cannot hold"_s);
        QCOMPARE(fixture.grid(0).ColWidth(3), before);
        fixture.choose(Command::ColumnSizeAdjust);
        QVERIFY(fixture.grid(0).ColWidth(3) > before);
        verifyFitted(fixture);
    }

    void onlyTheActivePaneIsFitted() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {notes()}), makeFile(u"B.DDB"_s, {notes()}));
        fixture.grid(0).setColWidth(3, 5000);
        fixture.grid(1).setColWidth(3, 5000);
        fixture.activate(1);
        fixture.choose(Command::ColumnSizeAdjust);
        QCOMPARE(fixture.grid(0).ColWidth(3), 5000);
        QCOMPARE(fixture.grid(1).ColWidth(3), widthOfAll(fixture.grid(1), 3));
    }

    void withAPlaceholderSelectedNothingIsFitted() {
        EditorFixture fixture;
        TableOfTexts other = notes();
        other.name = u"Other"_s;
        fixture.openBoth(makeFile(u"A.DDB"_s, {notes(), other}), makeFile(u"B.DDB"_s, {notes()}));
        fixture.grid(1).setColWidth(3, 5000);
        fixture.clickLine(1, 1);
        QVERIFY(!fixture.grid(1).Visible());
        fixture.choose(Command::ColumnSizeAdjust);
        QCOMPARE(fixture.grid(1).ColWidth(3), 5000);
    }

    void theWindowClosedDuringAFitEndsTheProgram() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {notes()}));
        QTimer::singleShot(0, &fixture.window(), &QWidget::close);
        fixture.choose(Command::ColumnSizeAdjust);
        QVERIFY(MessageLoop::instance()->programEnded());
    }

private:
    static void verifyFitted(EditorFixture &fixture) {
        const Grid &grid = fixture.grid(0);
        QCOMPARE(grid.ColWidth(0), 300);
        for (int c = 1; c < grid.Cols(); ++c)
            QCOMPARE(grid.ColWidth(c), widthOfAll(grid, c));
    }
};

QTEST_MAIN(FitTest)
#include "fit_test.moc"
