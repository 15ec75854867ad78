#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/PopupTools.h"
#include "tests/window/WindowTest.h"

#include <QGroupBox>
#include <QScrollBar>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

const QList<const char *> places{"list", "grid", "editor"};

/// Takes the keyboard to a control of a pane, as a person does.
void goTo(EditorFixture &fixture, int pane, const QString &place) {
    if (place == u"list")
        fixture.clickLine(pane, fixture.list(pane).ListIndex());
    else
        fixture.clickCell(pane, 1, 1);
    if (place == u"editor")
        hands::key(&fixture.grid(pane), Qt::Key_Return);
}

/// The place below the last line.
QPoint belowLines(const ListBox &list) {
    return list.viewport()->rect().bottomLeft() + QPoint(20, -3);
}

/// Both lists have this line selected, and both grids show its table.
void expectBothShow(EditorFixture &fixture, int line, const QString &table) {
    for (const int pane : {0, 1}) {
        QCOMPARE(fixture.list(pane).ListIndex(), line);
        QCOMPARE(fixture.shownTable(pane), table);
    }
}

TableOfTexts different(const TableOfTexts &table) {
    TableOfTexts other = table;
    other.fields.front().texts.front() = u"7"_s;
    return other;
}

} // namespace

/// Presses that are held as fingers hold them, and what the other pane, its list and its grid say afterwards.
class HoldTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void aClickOnALineSelectsAndComparesItInBothPanes_data() {
        QTest::addColumn<int>("keyboardIn");
        QTest::addColumn<QString>("place");
        QTest::addColumn<int>("clicked");
        for (const int keyboardIn : {0, 1})
            for (const char *place : places)
                for (const int clicked : {0, 1})
                    QTest::addRow("keyboard in %s %d, click in %d", place, keyboardIn, clicked)
                        << keyboardIn << QString::fromLatin1(place) << clicked;
    }

    void aClickOnALineSelectsAndComparesItInBothPanes() {
        QFETCH(int, keyboardIn);
        QFETCH(QString, place);
        QFETCH(int, clicked);
        EditorFixture fixture;
        open(fixture);
        goTo(fixture, keyboardIn, place);
        fixture.clickLine(clicked, 1);
        for (const int pane : {0, 1}) {
            QCOMPARE(fixture.list(pane).ListIndex(), 1);
            QCOMPARE(fixture.shownTable(pane), u"Pumps"_s);
            QCOMPARE(redCells(fixture, pane), (Cells{{1, 1}}));
        }
        QCOMPARE(fixture.activePane(), clicked);
        fixture.clickLine(clicked, 2);
        for (const int pane : {0, 1}) {
            QCOMPARE(fixture.list(pane).ListIndex(), 2);
            QVERIFY(redCells(fixture, pane).empty());
        }
    }

    void nothingIsLoadedBetweenThePressAndItsRelease() {
        EditorFixture fixture;
        open(fixture);
        goTo(fixture, 0, u"list"_s);
        const ListBox &list = fixture.list(1);
        hands::press(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(1, 1));
        QCOMPARE(list.ListIndex(), 1);
        QCOMPARE(fixture.shownTable(1), u"Alarms"_s);
        QCOMPARE(fixture.activePane(), 0);
        hands::release(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(1, 1));
        QCOMPARE(fixture.shownTable(1), u"Pumps"_s);
        QCOMPARE(fixture.shownTable(0), u"Pumps"_s);
    }

    void aCommandThatEndsDuringAPressDoesNotStandInForTheClick() {
        EditorFixture fixture;
        open(fixture);
        goTo(fixture, 0, u"grid"_s);
        const ListBox &list = fixture.list(1);
        hands::press(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(1, 1));
        fixture.choose(Command::ColumnSizeAdjust);
        QCOMPARE(fixture.shownTable(1), u"Alarms"_s);
        hands::release(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(1, 1));
        QCOMPARE(fixture.list(0).ListIndex(), 1);
        QCOMPARE(fixture.shownTable(0), u"Pumps"_s);
        QCOMPARE(fixture.shownTable(1), u"Pumps"_s);
    }

    void aClickIsNotLostWhenTheListsAreRefilledDuringThePress() {
        EditorFixture fixture;
        open(fixture);
        goTo(fixture, 0, u"grid"_s);
        const ListBox &list = fixture.list(1);
        hands::press(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(1, 2));
        fixture.choose(Command::CompareAgainMenu);
        hands::release(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(1, 2));
        expectBothShow(fixture, 2, u"Valves"_s);
        QCOMPARE(fixture.activePane(), 1);
    }

    void aPressOverWhichTheListGoesAwayLeavesNothingBehind() {
        EditorFixture fixture;
        open(fixture);
        fixture.activate(1);
        const ListBox &list = fixture.list(1);
        hands::press(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(1, 1));
        fixture.choose(Command::CloseDatabaseMenu);
        hands::strike(fixture.window(), Qt::Key_Down, Qt::NoModifier, {});
        fixture.open(makeFile(u"C.DDB"_s, {numbers(u"Alarms"_s, {u"1"_s})}));
        QVERIFY(!fixture.list(1).clickPending());
        QCOMPARE(fixture.shownTable(1), u"Alarms"_s);
    }

    void aPressThatIsDraggedAlongTheLinesClicksTheLastOne() {
        EditorFixture fixture;
        open(fixture);
        goTo(fixture, 0, u"grid"_s);
        const ListBox &list = fixture.list(1);
        hands::drag(list.viewport(), fixture.lineCentre(1, 2), fixture.lineCentre(1, 1));
        for (const int pane : {0, 1})
            QCOMPARE(fixture.list(pane).ListIndex(), 1);
        QCOMPARE(fixture.activePane(), 1);
    }

    void aClickBelowTheLinesMakesThePaneActiveAndSelectsNothing() {
        EditorFixture fixture;
        open(fixture);
        goTo(fixture, 1, u"list"_s);
        fixture.activate(0); // the frame takes no focus: the list keeps it
        QVERIFY(fixture.list(1).hasFocus());
        hands::click(fixture.list(1).viewport(), Qt::LeftButton, {}, belowLines(fixture.list(1)));
        QCOMPARE(fixture.activePane(), 1);
        for (const int pane : {0, 1})
            QCOMPARE(fixture.list(pane).ListIndex(), 0);
    }

    void everythingInAPaneThatCanBeClickedMakesItActive_data() {
        QTest::addColumn<QString>("control");
        for (const char *control : {"IDtb", "nomelab", "list", "list bar", "below the lines", "cell", "column header",
                                    "row header", "beside the cells", "grid bar"})
            QTest::addRow("%s", control) << QString::fromLatin1(control);
    }

    void everythingInAPaneThatCanBeClickedMakesItActive() {
        QFETCH(QString, control);
        for (const int pane : {0, 1}) {
            EditorFixture fixture;
            openLong(fixture);
            goTo(fixture, 1 - pane, u"grid"_s);
            QCOMPARE(fixture.activePane(), 1 - pane);
            click(fixture, pane, control);
            QCOMPARE(fixture.activePane(), pane);
            QCOMPARE(fixture.list(0).ListIndex(), fixture.list(1).ListIndex());
        }
    }

    void afterAPressOnItsScrollBarARightPressOnTheOtherListSelectsAndOpens() {
        EditorFixture fixture;
        openLong(fixture);
        goTo(fixture, 0, u"grid"_s);
        click(fixture, 1, u"list bar"_s);
        QCOMPARE(fixture.activePane(), 1);
        const int line = 12;
        pressRight(fixture, 1, line);
        for (const int pane : {0, 1})
            QCOMPARE(fixture.list(pane).ListIndex(), line);
        QMenu &popup = fixture.menu(Menu::popmenuCopyToOther);
        QVERIFY(popup.isVisible());
        popup.close();
    }

    void aRightPressOnTheOtherPanesListMakesThatPaneActiveAndDoesNothingElse() {
        EditorFixture fixture;
        open(fixture);
        goTo(fixture, 0, u"grid"_s);
        pressRight(fixture, 1, 1);
        QCOMPARE(fixture.activePane(), 1);
        QVERIFY(!fixture.menu(Menu::popmenuCopyToOther).isVisible());
        for (const int pane : {0, 1})
            QCOMPARE(fixture.list(pane).ListIndex(), 0);
    }

    void anotherButtonOnALineThatIsHeldDownEndsItsClick_data() {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::newRow("right") << Qt::RightButton;
        QTest::newRow("middle") << Qt::MiddleButton;
    }

    void anotherButtonOnALineThatIsHeldDownEndsItsClick() {
        QFETCH(Qt::MouseButton, button);
        EditorFixture fixture;
        open(fixture);
        goTo(fixture, 0, u"list"_s);
        const ListBox &list = fixture.list(0);
        QMenu &popup = fixture.menu(Menu::popmenuCopyToOther);
        hands::press(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(0, 1));
        hands::click(list.viewport(), button, {}, fixture.lineCentre(0, 1));
        QCOMPARE(popup.isVisible(), button == Qt::RightButton);
        popup.close();
        hands::release(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(0, 1));
        expectBothShow(fixture, 1, u"Pumps"_s);
    }

    void aMenuThatOpensOverALineThatIsHeldDownEndsItsClick() {
        EditorFixture fixture;
        open(fixture);
        goTo(fixture, 0, u"list"_s);
        ListBox &list = fixture.list(0);
        QMenu &popup = fixture.menu(Menu::popmenuCopyToOther);
        hands::press(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(0, 1));
        hands::key(&list, Qt::Key_F10, Qt::ShiftModifier);
        QVERIFY(popup.isVisible());
        popup.close();
        expectBothShow(fixture, 1, u"Pumps"_s);
        QVERIFY(!list.clickPending());
        hands::release(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(0, 1)); // the menu would have had it
    }

    void keysSelectTablesAfterABoxHasTakenTheReleaseOfAPress() {
        EditorFixture fixture;
        open(fixture);
        goTo(fixture, 0, u"list"_s);
        ListBox &list = fixture.list(0);
        hands::press(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(0, 1));
        QWidget box(&fixture.window(), Qt::Dialog);
        box.setWindowModality(Qt::ApplicationModal);
        box.show();
        hands::release(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(0, 1));
        box.hide();
        QVERIFY(!list.clickPending());
        hands::key(&list, Qt::Key_Down);
        expectBothShow(fixture, 2, u"Valves"_s);
    }

    void aPressDuringWhichACommandAsksLoadsItsLineWhereverTheReleaseGoes() {
        EditorFixture fixture;
        open(fixture);
        goTo(fixture, 0, u"list"_s);
        const ListBox &list = fixture.list(0);
        hands::press(list.viewport(), Qt::LeftButton, {}, fixture.lineCentre(0, 1));
        runCommand([&] {
            QWidget box(&fixture.window(), Qt::Dialog);
            box.setWindowModality(Qt::ApplicationModal);
            box.show();
            hands::turnLoop();
            box.hide();
        });
        hands::release(fixture.grid(0).viewport(), Qt::LeftButton, {}, fixture.cellCentre(0, 1, 1));
        expectBothShow(fixture, 1, u"Pumps"_s);
    }

    void theWheelOverTheOtherPaneMakesActiveWhatItGivesTheKeyboard() {
        EditorFixture fixture;
        openLong(fixture);
        goTo(fixture, 0, u"grid"_s);
        QWidget *viewport = fixture.list(1).viewport();
        const QPoint at = viewport->rect().center();
        hands::turnWheel(viewport, at, QPoint(0, -120));
        QCOMPARE(fixture.list(1).hasFocus(), fixture.activePane() == 1);
    }

    void theOtherListShowsTheSameFirstLineWhenALongOneIsMovedInByKeys_data() {
        QTest::addColumn<int>("key");
        QTest::newRow("End") << static_cast<int>(Qt::Key_End);
        QTest::newRow("Page Down") << static_cast<int>(Qt::Key_PageDown);
        QTest::newRow("letter") << static_cast<int>(Qt::Key_Z);
    }

    void theOtherListShowsTheSameFirstLineWhenALongOneIsMovedInByKeys() {
        QFETCH(int, key);
        EditorFixture fixture;
        openLong(fixture);
        goTo(fixture, 0, u"list"_s);
        for (int times = 0; times < 3; ++times) {
            hands::key(&fixture.list(0), static_cast<Qt::Key>(key));
            QCOMPARE(fixture.list(1).ListIndex(), fixture.list(0).ListIndex());
            QCOMPARE(fixture.list(1).TopIndex(), fixture.list(0).TopIndex());
        }
        QVERIFY(fixture.list(0).TopIndex() > 0);
    }

private:
    void open(EditorFixture &fixture) {
        const std::vector<TableOfTexts> tables{numbers(u"Alarms"_s, {u"1"_s}), pumps(), numbers(u"Valves"_s, {u"1"_s})};
        std::vector<TableOfTexts> others = tables;
        others[1] = different(others[1]);
        fixture.openBoth(makeFile(u"A.DDB"_s, tables), makeFile(u"B.DDB"_s, others));
    }

    /// Lists and grids that have more than they show.
    void openLong(EditorFixture &fixture) {
        std::vector<TableOfTexts> tables;
        QStringList values;
        for (int k = 0; k < 60; ++k)
            values.append(QString::number(k));
        for (int k = 0; k < 40; ++k)
            tables.push_back(numbers(u"Table %1"_s.arg(k, 2, 10, QChar(u'0')), values));
        tables.push_back(numbers(u"Zones"_s, values));
        fixture.openBoth(makeFile(u"A.DDB"_s, tables), makeFile(u"B.DDB"_s, tables));
    }

    static void click(EditorFixture &fixture, int pane, const QString &control) {
        ListBox &list = fixture.list(pane);
        Grid &grid = fixture.grid(pane);
        const QHeaderView *columns = grid.horizontalHeader();
        const QHeaderView *rows = grid.verticalHeader();
        if (control == u"IDtb")
            fixture.activate(pane);
        else if (control == u"nomelab")
            hands::click(&fixture.label(pane), Qt::LeftButton);
        else if (control == u"list")
            fixture.clickLine(pane, 1);
        else if (control == u"list bar")
            hands::click(list.verticalScrollBar(), Qt::LeftButton);
        else if (control == u"below the lines")
            hands::click(list.viewport(), Qt::LeftButton, {}, list.viewport()->rect().bottomRight() - QPoint(1, 0));
        else if (control == u"cell")
            fixture.clickCell(pane, 2, 1);
        else if (control == u"column header")
            hands::click(columns->viewport(), Qt::LeftButton, {}, headerCentre(fixture, pane, 1));
        else if (control == u"row header")
            hands::click(rows->viewport(), Qt::LeftButton, {},
                         QPoint(rows->width() / 2, rows->sectionViewportPosition(1) + 2));
        else if (control == u"beside the cells")
            hands::click(grid.viewport(), Qt::LeftButton, {}, grid.viewport()->rect().topRight() + QPoint(-4, 20));
        else
            hands::click(grid.verticalScrollBar(), Qt::LeftButton);
    }
};

QTEST_MAIN(HoldTest)
#include "hold_test.moc"
