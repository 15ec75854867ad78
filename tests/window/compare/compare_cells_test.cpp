#include "platform/controls/Twips.h"
#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QFile>
#include <QGroupBox>
#include <QMenu>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTimer>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

TableOfTexts numbered(int records, int fields = 2) {
    return counted(u"Pumps"_s, records, fields);
}

void forgetChanges(EditorFixture &fixture) {
    for (const int pane : {0, 1}) {
        if (!fixture.database(pane).isEmpty())
            fixture.database(pane).setDtbHasChanged(false);
    }
}

/// The colour drawn in a cell of a grabbed picture, away from its text and its edges.
QColor drawnColour(EditorFixture &fixture, int pane, int row, int column) {
    Grid &grid = fixture.grid(pane);
    const QRect cell = grid.visualRect(grid.model()->index(row - 1, column - 1));
    return grid.viewport()->grab().toImage().pixelColor(cell.right() - 2, cell.top() + 2);
}

} // namespace

/// The cells of the table shown on both sides: which of them are red, and what a run leaves as it was.
class CompareCellsTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void recordsOfOneSideAreRedThere() {
        EditorFixture fixture;
        openBoth(fixture, {numbered(5)}, {numbered(3)});
        QCOMPARE(redCells(fixture, 0), (Cells{{4, 1}, {4, 2}, {5, 1}, {5, 2}}));
        QCOMPARE(redCells(fixture, 1), Cells{});
        QCOMPARE(fixture.lines(0) + fixture.lines(1), QStringList({u"Pumps !"_s, u"Pumps !"_s}));
    }

    void aFieldOfOneSideIsRedThere() {
        EditorFixture fixture;
        openBoth(fixture, {numbered(2, 2)}, {numbered(2, 3)});
        QCOMPARE(redCells(fixture, 0), Cells{});
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 3}, {2, 3}}));
    }

    void aTableOfOneSideIsAllWhite() {
        EditorFixture fixture;
        openBoth(fixture, {numbered(2), listOf(u"Valves"_s, {u"x"_s})}, {listOf(u"Valves"_s, {u"y"_s})});
        fixture.clickLine(0, 1);
        QCOMPARE(redCells(fixture, 0), (Cells{{1, 1}}));
        fixture.clickLine(1, 0);
        QVERIFY(fixture.grid(0).Visible());
        QVERIFY(!fixture.grid(1).Visible());
        QCOMPARE(redCells(fixture, 0), Cells{});
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s, u"Valves !"_s}));
    }

    void redAndWhiteAreDrawnExactly() {
        TableOfTexts other = numbered(3);
        other.fields[1].texts[1] = u"99"_s;
        EditorFixture fixture;
        openBoth(fixture, {numbered(3)}, {other});
        for (const int pane : {0, 1}) {
            QCOMPARE(drawnColour(fixture, pane, 2, 2), QColor(255, 0, 0));
            QCOMPARE(drawnColour(fixture, pane, 2, 1), QColor(255, 255, 255));
            QCOMPARE(drawnColour(fixture, pane, 3, 2), QColor(255, 255, 255));
        }
    }

    void closingTheOtherSideWhitensTheGridThatStays() {
        EditorFixture fixture;
        openBoth(fixture, {numbered(5)}, {numbered(3)});
        fixture.activate(1);
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(redCells(fixture, 0), Cells{});
        QCOMPARE(fixture.lines(0), QStringList(u"Pumps"_s));
    }

    void aFailedOpenOverTheOtherSideWhitensTheGridThatStays() {
        EditorFixture fixture;
        openBoth(fixture, {numbered(5)}, {numbered(3)});
        const QTemporaryDir folder;
        QFile damaged(folder.filePath(u"NONE.DDB"_s));
        QVERIFY(damaged.open(QIODevice::WriteOnly) && damaged.write("no database") > 0);
        damaged.close();
        QVERIFY(!redCells(fixture, 0).empty());
        fixture.activate(1);
        fixture.dialogs().expectFile(fileDialogTitle, damaged.fileName());
        fixture.dialogs().expectMessage(u"Can't load '%1'"_s.arg(damaged.fileName().toUpper()), u"!!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.isOpen(1));
        QCOMPARE(redCells(fixture, 0), Cells{});
        QCOMPARE(fixture.lines(0), QStringList(u"Pumps"_s));
    }

    void openingADatabaseWithoutTablesWhitensTheGridThatStays() {
        EditorFixture fixture;
        openBoth(fixture, {numbered(5)}, {numbered(3)});
        fixture.activate(1);
        fixture.open(makeFile(u"EMPTY.DDB"_s, {}));
        QCOMPARE(redCells(fixture, 0), Cells{});
    }

    void onePaneModeWhitensTheGridThatStays() {
        EditorFixture fixture;
        openBoth(fixture, {numbered(5)}, {numbered(3)});
        fixture.choose(Command::OneMenu);
        QCOMPARE(redCells(fixture, 0), Cells{});
        QCOMPARE(fixture.lines(0), QStringList(u"Pumps"_s));
    }

    void aSortIsStoredAndComparedWithTheOtherSide() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"a"_s, {u"c"_s, u"a"_s, u"b"_s})}, {listOf(u"a"_s, {u"a"_s, u"b"_s, u"c"_s})});
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 1}, {2, 1}, {3, 1}}));
        rightPressHeader(fixture, 0, 1);
        QMenu &menu = fixture.menu(Menu::popmenuGridFields);
        QVERIFY(menu.isVisible());
        hands::click(&menu, Qt::LeftButton, Qt::NoModifier,
                     menu.actionGeometry(&fixture.action(Command::SortFPOP)).center());
        QCOMPARE(redCells(fixture, 0), Cells{});
        QCOMPARE(redCells(fixture, 1), Cells{});
        QCOMPARE(fixture.lines(0), QStringList(u"a"_s));
        const QirDatabase &left = fixture.database(0);
        left.setQIRTableRecordsPointerOut(1);
        QCOMPARE(left.QIRTableRecordSetByIndex(1).toString(), u"a"_s);
        forgetChanges(fixture);
    }

    void aPasteIsStoredAndComparedWithTheOtherSide() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"a"_s, {u"a"_s, u"b"_s, u"c"_s})}, {listOf(u"a"_s, {u"x"_s, u"y"_s, u"c"_s})});
        QCOMPARE(redCells(fixture, 0), (Cells{{1, 1}, {2, 1}}));
        selectBlock(fixture, 0, {1, 1, 2, 1});
        hands::key(&fixture.grid(0), Qt::Key_C, Qt::ControlModifier);
        selectBlock(fixture, 1, {1, 1, 2, 1});
        hands::key(&fixture.grid(1), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(stored(fixture, 1, 1, 1).toString(), u"a"_s);
        QCOMPARE(redCells(fixture, 0), Cells{});
        QCOMPARE(redCells(fixture, 1), Cells{});
        QCOMPARE(fixture.lines(0) + fixture.lines(1), QStringList({u"a"_s, u"a"_s}));
        forgetChanges(fixture);
    }

    void anAddedRecordIsRedAndTheOthersStayAsTheyWere() {
        TableOfTexts other = numbered(3);
        other.fields[0].texts[0] = u"7"_s;
        EditorFixture fixture;
        openBoth(fixture, {numbered(3)}, {other});
        fixture.choose(Command::AddRecordMenu);
        QCOMPARE(redCells(fixture, 0), (Cells{{1, 1}, {4, 1}, {4, 2}}));
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 1}}));
        forgetChanges(fixture);
    }

    void focusScrollAndSelectionStayWhereTheyWere() {
        EditorFixture fixture;
        openBoth(fixture, {numbered(200)}, {numbered(190)});
        for (const int pane : {0, 1}) {
            const GridSilence silence(fixture.grid(pane));
            fixture.grid(pane).setSelection({80, 2, 90, 1});
            fixture.grid(pane).setTopRow(70 + pane);
        }
        fixture.grid(0).setFocus();
        fixture.choose(Command::CompareAgainMenu);
        for (const int pane : {0, 1}) {
            QCOMPARE(fixture.grid(pane).selection(), (GridSelection{80, 2, 90, 1}));
            QCOMPARE(fixture.grid(pane).TopRow(), 70 + pane);
        }
        QCOMPARE(fixture.window().focusWidget(), &fixture.grid(0));
        QCOMPARE(fixture.activePane(), 0);
    }

    void selectingALineComparesItOnceAndComesToRest() {
        EditorFixture fixture;
        openBoth(fixture, {numbered(2), listOf(u"Valves"_s, {u"x"_s})}, {numbered(3), listOf(u"Valves"_s, {u"y"_s})});
        int shown = 0;
        connect(&fixture.progressBar(), &QProgressBar::valueChanged, this,
                [&](int value) { shown += value == fixture.progressBar().maximum() ? 1 : 0; });
        fixture.clickLine(1, 1);
        QCOMPARE(shown, 1);
        QCOMPARE(fixture.list(0).ListIndex(), 1);
        QCOMPARE(fixture.list(1).ListIndex(), 1);
        QCOMPARE(fixture.activePane(), 1);
        QCOMPARE(redCells(fixture, 0), (Cells{{1, 1}}));
    }

    void aLineThatTheOtherListHasSelectedAlreadyIsCompared() {
        const auto left = {numbered(1), listOf(u"Tanks"_s, {u"x"_s}), listOf(u"Valves"_s, {u"x"_s})};
        EditorFixture fixture;
        openBoth(fixture, left, {numbered(2)});
        fixture.activate(1);
        fixture.dialogs().expectInput(u"New table name"_s, u"?"_s, u"Tablex"_s, u"Zones"_s);
        fixture.choose(Command::AddTableMenu); // leaves this list with fewer lines than the other one
        fixture.clickLine(0, 2);               // and this is one of those that it lacks
        QCOMPARE(fixture.list(1).ListIndex(), 0);
        fixture.clickLine(0, 0);
        QCOMPARE(redCells(fixture, 0), Cells{});
        QCOMPARE(redCells(fixture, 1), (Cells{{2, 1}, {2, 2}}));
        fixture.clickCell(1, 1, 1);
        edit(fixture, 1, 1, 1, u"99"_s);
        fixture.clickLine(0, 2);
        fixture.clickLine(0, 0);
        QCOMPARE(redCells(fixture, 0), (Cells{{1, 1}}));
        forgetChanges(fixture);
    }

    void linesOfDifferentNamesAreNotCompared() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"b"_s, {u"x"_s})}, {listOf(u"b"_s, {u"y"_s})});
        // As after adding a table on one side, until the lists are aligned again.
        fixture.database(0).AddTable(u"a"_s);
        {
            const RefillScope refill(fixture.editor().listClicks());
            ListBox &list = fixture.list(0);
            list.addItem(u"a"_s);
            list.setItemData(list.NewIndex(), 2);
            list.setListIndex(-1);
        }
        fixture.clickLine(0, 0); // "a" beside "b !"
        QCOMPARE(redCells(fixture, 0), Cells{});
        QCOMPARE(redCells(fixture, 1), Cells{});
        QCOMPARE(fixture.lines(1), QStringList(u"b !"_s));
        fixture.choose(Command::CompareAgainMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"a"_s, u"b !"_s}));
        forgetChanges(fixture);
    }

    void theProgressBarStandsBelowTheListsAcrossBothPanes() {
        EditorFixture fixture;
        openBoth(fixture, {numbered(3)}, {numbered(3)});
        QProgressBar &bar = fixture.progressBar();
        QList<int> values;
        QRect place;
        bool gridsHidden = false;
        connect(&bar, &QProgressBar::valueChanged, this, [&](int value) {
            values.append(value);
            if (value != 3)
                return;
            place = bar.geometry();
            gridsHidden = !fixture.grid(0).Visible() && !fixture.grid(1).Visible() && bar.isVisible();
        });
        fixture.choose(Command::CompareAgainMenu);
        QCOMPARE(values.mid(values.indexOf(1)), QList<int>({1, 2, 3}));
        const QRect left = fixture.frame(0).geometry();
        const QRect right = fixture.frame(1).geometry();
        const QRect list = fixture.list(0).geometry();
        QCOMPARE(place.left(), left.left());
        QCOMPARE(place.top(), left.top() + list.top() + list.height() + toPixels(50));
        QCOMPARE(place.width(), right.left() + right.width() - left.left());
        QVERIFY(gridsHidden);
        QVERIFY(bar.isHidden());
    }

    void inputDuringARunWaitsForItsEnd() {
        EditorFixture fixture;
        openBoth(fixture, {numbered(3), listOf(u"Valves"_s, {u"x"_s})}, {numbered(2), listOf(u"Valves"_s, {u"y"_s})});
        QStringList order;
        connect(&fixture.list(0), &ListBox::Click, this, [&] { order.append(u"click"_s); });
        connect(&fixture.progressBar(), &QProgressBar::valueChanged, this, [&] { order.append(u"compare"_s); });
        fixture.list(0).setFocus();
        QMetaObject::invokeMethod(
            &fixture.window(),
            [&] {
                order.append(u"key"_s);
                QCoreApplication::postEvent(&fixture.list(0),
                                            new QKeyEvent(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier));
            },
            Qt::QueuedConnection);
        fixture.choose(Command::CompareAgainMenu);
        QTRY_COMPARE(fixture.list(0).ListIndex(), 1);
        const qsizetype key = order.indexOf(u"key"_s);
        const qsizetype click = order.indexOf(u"click"_s);
        QVERIFY(key >= 0);
        QVERIFY(order.mid(key, click - key).contains(u"compare"_s));
    }

    void closingTheWindowDuringARunEndsTheProgramAndKeepsTheFiles() {
        EditorFixture fixture;
        openBoth(fixture, {numbered(3)}, {numbered(2)});
        const QByteArray left = fileBytes(path(u"LEFT.DDB"_s));
        const QByteArray right = fileBytes(path(u"RIGHT.DDB"_s));
        connect(&fixture.progressBar(), &QProgressBar::valueChanged, this, [&](int value) {
            if (value > 0)
                QMetaObject::invokeMethod(
                    &fixture.window(), [&] { fixture.window().close(); }, Qt::QueuedConnection);
        });
        fixture.choose(Command::CompareAgainMenu);
        QVERIFY(MessageLoop::instance()->programEnded());
        QVERIFY(fixture.progressBar().isHidden());
        fixture.end();
        QCOMPARE(fileBytes(path(u"LEFT.DDB"_s)), left);
        QCOMPARE(fileBytes(path(u"RIGHT.DDB"_s)), right);
    }

    void aChangedDatabaseIsAskedAboutAndReleasedWhenTheWindowClosesDuringARun() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"a"_s, {u"x"_s, u"y"_s})}, {listOf(u"a"_s, {u"x"_s})});
        edit(fixture, 0, 2, 1, u"kept"_s);
        fixture.dialogs().expectMessage(saveQuestion(fixture.database(0).GetDatabaseFileName()),
                                        u"QIR Database Editor"_s, u"Yes"_s);
        QMetaObject::invokeMethod(
            &fixture.window(), [&] { fixture.window().close(); }, Qt::QueuedConnection);
        fixture.choose(Command::CompareAgainMenu);
        QVERIFY(MessageLoop::instance()->programEnded());
        fixture.end();
        QIR_VERIFY_OK(fixture);
        const QirDatabase written = QirDatabase::create();
        QVERIFY(written.LoadDtb(path(u"LEFT.DDB"_s), QString()));
        written.QIRTableRecordSource(u"a"_s);
        written.setQIRTableRecordsPointerOut(2);
        QCOMPARE(written.QIRTableRecordSetByIndex(1).toString(), u"kept"_s);
    }
};

QTEST_MAIN(CompareCellsTest)
#include "compare_cells_test.moc"
