#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include "db/AssegnaARecordset.h"
#include "db/FieldTypes.h"
#include "platform/controls/Twips.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

TableOfTexts noRecords() {
    return {u"Alarms"_s, {{u"Code"_s, FieldType::Int, {}}, {u"Text"_s, FieldType::Text, {}}}};
}

} // namespace

/// Selecting tables and loading grids through the real window.
class SelectTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void aClickOnALineShowsItsTable() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        fixture.clickLine(0, 1);
        QCOMPARE(fixture.texts(0), QList<QStringList>({{u"1"_s}, {u"0"_s}}));
        QCOMPARE(fixture.loadedLine(0), 1);
    }

    void theArrowKeysShowTheNextTable() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        fixture.list(0).setFocus();
        hands::key(&fixture.list(0), Qt::Key_Down);
        QCOMPARE(fixture.shownTable(0), u"Valves"_s);
    }

    void aClickOnTheLoadedLineDoesNotReloadTheGrid() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        QSignalSpy reset(fixture.grid(0).model(), &QAbstractItemModel::modelReset);
        fixture.clickLine(0, 0);
        QCOMPARE(reset.count(), 0);
        fixture.clickLine(0, 1);
        QVERIFY(reset.count() > 0);
    }

    void aTableShowsARowForEachRecordAndAColumnForEachField() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        const Grid &grid = fixture.grid(0);
        QCOMPARE(grid.Rows(), 4);
        QCOMPARE(grid.Cols(), 3);
        QCOMPARE(grid.TextMatrix(0, 1), u"Speed [long]"_s);
        QCOMPARE(grid.TextMatrix(0, 2), u"Name [text]"_s);
        QCOMPARE(grid.ColWidth(0), 300);
        QCOMPARE(grid.ColData(2), 2);
        QCOMPARE(grid.RowData(3), 3);
        QCOMPARE(grid.TextMatrix(3, 2), u"Test"_s);
        QCOMPARE(grid.Row(), 1);
        QCOMPARE(grid.Col(), 1);
        QCOMPARE(fixture.editor().TestiCelle(0).at(2, 3), u"Test"_s);
        QCOMPARE(fixture.editor().ColoriCelle(0).at(3, 2), CellColour::White);
    }

    void aTableWithoutRecordsHidesTheGridAndDisablesRemovingARecord() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), noRecords()}));
        QCOMPARE(fixture.lines(0), QStringList({u"Alarms"_s, u"Pumps"_s}));
        QVERIFY(!fixture.grid(0).Visible());
        QVERIFY(!fixture.action(Command::RemoveRecordMenu).isEnabled());
        fixture.clickLine(0, 1);
        QVERIFY(fixture.grid(0).Visible());
        fixture.clickLine(0, 0);
        QVERIFY(!fixture.grid(0).Visible());
    }

    void activatingThePaneDoesNotShowAnEmptyTable() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {noRecords()}));
        fixture.activate(0);
        QVERIFY(!fixture.grid(0).Visible());
    }

    void aPlaceholderLineHidesTheGridAndARealLineShowsItAgain() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {pumps(), valves()}), makeFile(u"B.DDB"_s, {pumps()}));
        QCOMPARE(fixture.lines(1), QStringList({u"Pumps"_s, u"Valves ?"_s}));
        fixture.clickLine(1, 1);
        QVERIFY(!fixture.grid(1).Visible());
        QVERIFY(fixture.grid(0).Visible());
        fixture.clickLine(1, 0);
        QVERIFY(fixture.grid(1).Visible());
    }

    void aLineSelectedInOneListIsSelectedInTheOtherAndTheClickedPaneStaysActive() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {pumps(), valves()}), makeFile(u"B.DDB"_s, {pumps(), valves()}));
        fixture.clickLine(1, 1);
        QCOMPARE(fixture.list(0).ListIndex(), 1);
        QCOMPARE(fixture.shownTable(0), u"Valves"_s);
        QCOMPARE(fixture.shownTable(1), u"Valves"_s);
        QCOMPARE(fixture.activePane(), 1);
    }

    void aTableWithOneFieldDisablesRemovingAField() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        QCOMPARE(fixture.grid(0).Cols(), 3);
        fixture.clickLine(0, 1);
        QVERIFY(!fixture.action(Command::RemoveFieldMenu).isEnabled());
    }

    void aComponentErrorWhileLoadingIsSilentAndHidesTheGrid() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        // The table goes behind the editor's back, so that choosing it fails in the component.
        fixture.database(0).RemoveTable(2);
        fixture.clickLine(0, 1);
        QVERIFY(!fixture.grid(0).Visible());
        QCOMPARE(fixture.loadedLine(0), -1);
        fixture.database(0).AddTable(u"Valves"_s);
        fixture.clickLine(0, 1);
        QVERIFY(fixture.grid(0).Visible());
    }

    void everyColumnHoldsItsWidestText() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        const Grid &grid = fixture.grid(0);
        const QFontMetricsF metrics(grid.font(), &grid);
        for (int c = 1; c < grid.Cols(); ++c)
            for (int r = 0; r < grid.Rows(); ++r)
                QVERIFY(
                    grid.ColWidth(c) >=
                    static_cast<int>(metrics.horizontalAdvance(u' ' + grid.TextMatrix(r, c)) * twipsPerPixel + 0.5) +
                        60);
    }
};

QTEST_MAIN(SelectTest)
#include "select_test.moc"
