#include "compare/CellDifferences.h"
#include "compare/TableMarks.h"
#include "structure/RecordCommands.h"
#include "tests/window/WindowTest.h"
#include "view/TableLoader.h"

#include "tests/tools/fake/FakeControl.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

TableOfTexts countedNumbers(int records) {
    QStringList values;
    for (int r = 1; r <= records; ++r)
        values.append(QString::number(r));
    return numbers(u"A"_s, values);
}

} // namespace

/// Adding and removing records through the real window.
class RecordsTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void addAppendsAnEmptyRecord() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 2, 2);
        fixture.choose(Command::AddRecordMenu);
        QCOMPARE(fixture.texts(0).size(), 4);
        QCOMPARE(fixture.texts(0).last(), QStringList({u"0"_s, QString()}));
        QCOMPARE(recordsOf(fixture, 0), fixture.texts(0));
        QCOMPARE(fixture.grid(0).selection(), singleCell(4, 2));
        QVERIFY(fixture.database(0).DtbHasChanged());
    }

    void theAddedRecordComesIntoViewAndIsTheOneThatRemoveTakes() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {countedNumbers(300)}), makeFile(u"R.DDB"_s, {countedNumbers(400)}));
        const QList<QStringList> before = recordsOf(fixture, 0);
        fixture.clickCell(0, 2, 1);
        fixture.choose(Command::AddRecordMenu);
        Grid &grid = fixture.grid(0);
        QCOMPARE(grid.selection(), singleCell(301, 1));
        QVERIFY(grid.viewport()->rect().contains(grid.visualRect(grid.model()->index(300, 0))));
        QCOMPARE(fixture.grid(1).selection(), grid.selection());
        QCOMPARE(fixture.grid(1).TopRow(), grid.TopRow());
        fixture.choose(Command::RemoveRecordMenu);
        QCOMPARE(recordsOf(fixture, 0), before);
        QCOMPARE(fixture.grid(1).selection(), grid.selection());
    }

    void aSelectionThatAReloadCutsIsTheOtherGridsToo() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {countedNumbers(5)}), makeFile(u"R.DDB"_s, {countedNumbers(7)}));
        fixture.clickCell(0, 5, 1);
        QCOMPARE(fixture.grid(1).selection(), singleCell(5, 1));
        fixture.choose(Command::RemoveRecordMenu);
        QCOMPARE(fixture.grid(0).selection(), singleCell(4, 1));
        QCOMPARE(fixture.grid(1).selection(), singleCell(4, 1));
    }

    void addToATableWithoutRecordsShowsItsGrid() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"A"_s, {})}));
        QVERIFY(!fixture.grid(0).Visible());
        QVERIFY(!fixture.action(Command::RemoveRecordMenu).isEnabled());
        fixture.choose(Command::AddRecordMenu);
        QVERIFY(fixture.grid(0).Visible());
        QCOMPARE(fixture.texts(0), QList<QStringList>({{u"0"_s}}));
        QCOMPARE(fixture.grid(0).Row(), 1);
        QVERIFY(fixture.action(Command::RemoveRecordMenu).isEnabled());
    }

    void addMarksTheNewRecordAndLeavesTheRowsAboveAsTheyAre() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s, u"2"_s})}),
                         makeFile(u"R.DDB"_s, {numbers(u"A"_s, {u"1"_s, u"3"_s})}));
        QCOMPARE(redCells(fixture, 0), (Cells{{2, 1}}));
        fixture.choose(Command::AddRecordMenu);
        QCOMPARE(redCells(fixture, 0), (Cells{{2, 1}, {3, 1}}));
        QCOMPARE(redCells(fixture, 1), (Cells{{2, 1}}));
        QCOMPARE(fixture.lines(0), QStringList(u"A !"_s));
        fixture.activate(1);
        fixture.choose(Command::AddRecordMenu);
        QCOMPARE(redCells(fixture, 0), (Cells{{2, 1}}));
        QCOMPARE(redCells(fixture, 1), (Cells{{2, 1}}));
        QCOMPARE(fixture.activePane(), 1);
    }

    void withoutATableTheCommandsDoNothing() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {pumps(), numbers(u"Z"_s, {u"1"_s})}));
        fixture.clickLine(0, 1);
        for (const Command command : {Command::AddRecordMenu, Command::RemoveRecordMenu}) {
            fixture.action(command).setEnabled(true);
            fixture.choose(command);
        }
        fixture.list(0).setListIndex(-1);
        for (const Command command : {Command::AddRecordMenu, Command::RemoveRecordMenu}) {
            fixture.action(command).setEnabled(true);
            fixture.choose(command);
        }
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QVERIFY(!fixture.database(1).DtbHasChanged());
    }

    void removeDeletesTheCurrentRowWithoutAQuestion() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 2, 1);
        fixture.choose(Command::RemoveRecordMenu);
        QCOMPARE(fixture.texts(0), QList<QStringList>({{u"1200"_s, u"Main"_s}, {u"60"_s, u"Test"_s}}));
        QCOMPARE(recordsOf(fixture, 0), fixture.texts(0));
        QCOMPARE(fixture.grid(0).Row(), 2);
    }

    void removeOfTheLastRecordHidesTheGrid() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"A"_s, {u"1"_s})}));
        fixture.choose(Command::RemoveRecordMenu);
        QVERIFY(!fixture.grid(0).Visible());
        QVERIFY(!fixture.action(Command::RemoveRecordMenu).isEnabled());
    }

    void removeOfTheLastRecordLeavesTheKeyboardInThePane() {
        for (const int pane : {0, 1}) {
            EditorFixture fixture;
            fixture.openBoth(makeFile(u"A.DDB"_s, {numbers(u"A"_s, {u"1"_s})}),
                             makeFile(u"B.DDB"_s, {numbers(u"A"_s, {u"1"_s})}));
            fixture.clickCell(pane, 1, 1);
            QVERIFY(fixture.grid(pane).hasFocus());
            fixture.choose(Command::RemoveRecordMenu);
            QVERIFY(fixture.list(pane).hasFocus());
            QCOMPARE(fixture.activePane(), pane);
        }
    }

    void removeOnATableWithoutRecordsSaysSo() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"A"_s, {})}));
        fixture.dialogs().expectMessage(u"No selected Record"_s, u"!"_s, u"OK"_s);
        // Menu and pop-up do not offer it here: the worker answers for itself.
        fixture.action(Command::RemoveRecordMenu).setEnabled(true);
        fixture.choose(Command::RemoveRecordMenu);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void removeDeletesTheRecordThatTheRowShows() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"A"_s, {u"10"_s, u"20"_s, u"30"_s})}));
        // Rows in another order than the records: row 1 shows record 3.
        fixture.grid(0).reorderRecords({2, 0, 1});
        fixture.clickCell(0, 1, 1);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 1), u"30"_s);
        fixture.choose(Command::RemoveRecordMenu);
        QCOMPARE(recordsOf(fixture, 0), QList<QStringList>({{u"10"_s}, {u"20"_s}}));
    }

    void removeComparesTheWholeTableAgainInEitherPane() {
        for (const int pane : {0, 1}) {
            EditorFixture fixture;
            fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s, u"2"_s, u"3"_s})}),
                             makeFile(u"R.DDB"_s, {numbers(u"A"_s, {u"1"_s, u"2"_s, u"3"_s})}));
            fixture.clickCell(pane, 1, 1);
            fixture.choose(Command::RemoveRecordMenu);
            QCOMPARE(redCells(fixture, pane), (Cells{{1, 1}, {2, 1}}));
            QCOMPARE(redCells(fixture, 1 - pane), (Cells{{1, 1}, {2, 1}, {3, 1}}));
            QCOMPARE(fixture.lines(0), QStringList(u"A !"_s));
            QCOMPARE(fixture.activePane(), pane);
        }
    }

    void theShownTableIsMadeCurrentFirst() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"Z"_s, {u"1"_s})}),
                         makeFile(u"R.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"Z"_s, {u"1"_s})}));
        fixture.editor().pane(0).makeTableCurrent(u"Z"_s);
        fake->clearLog();
        fixture.choose(Command::AddRecordMenu);
        QVERIFY(fake->log().size() > 2);
        QStringList first;
        for (const FakeCall &call : fake->log())
            if (first.size() < 2)
                first.append(call.member);
        QCOMPARE(first, QStringList({u"QIRTableRecordSource"_s, u"AddRecord"_s}));
        QCOMPARE(fixture.texts(0).size(), 2);
    }

    void anErrorOfTheComponentIsShownAndLeavesWindowAndTableInStep() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        for (const Command command : {Command::AddRecordMenu, Command::RemoveRecordMenu}) {
            fake->failOn(command == Command::AddRecordMenu ? u"AddRecord"_s : u"RemoveRecord"_s,
                         u"the table is full"_s);
            fixture.dialogs().expectMessage(u"the table is full"_s, u"QIR Database Editor"_s, u"OK"_s);
            fixture.choose(command);
            fake->stopFailing();
            QCOMPARE(fixture.texts(0), recordsOf(fixture, 0));
            QCOMPARE(fixture.texts(0).size(), 3);
        }
    }

    void whatWasDoneReachesTheFile() {
        const QString path = makeFile(u"A.DDB"_s, {pumps()});
        {
            EditorFixture fixture(path);
            fixture.choose(Command::AddRecordMenu);
            fixture.clickCell(0, 1, 1);
            fixture.choose(Command::RemoveRecordMenu);
            fixture.database(0).SaveDtb();
        }
        EditorFixture again(path);
        QCOMPARE(again.texts(0),
                 QList<QStringList>({{u"900"_s, u"Spare"_s}, {u"60"_s, u"Test"_s}, {u"0"_s, QString()}}));
    }
};

QTEST_MAIN(RecordsTest)
#include "records_test.moc"
