#include "app/look/LineIcon.h"
#include "pane/PaneSplitter.h"
#include "platform/controls/Twips.h"
#include "tests/support/Hands.h"
#include "tests/window/LayoutCheck.h"
#include "tests/window/WindowTest.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QScopeGuard>
#include <QScrollBar>
#include <QToolBar>
#include <QToolButton>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// The room of lists, grids and columns, and the tool bar.
class RoomTest : public WindowTest {
    Q_OBJECT

    static PaneSplitter &border(EditorFixture &fixture, int pane) {
        return *fixture.editor().pane(pane).controls().splitter;
    }

    /// Drags the border of a pane by so many pixels.
    static void drag(EditorFixture &fixture, int pane, QPoint by) {
        const QPoint middle = border(fixture, pane).rect().center();
        hands::drag(&border(fixture, pane), middle, middle + by);
    }

    /// By the figures that are given whatever the list's height.
    static void checkGivenFigures(EditorFixture &fixture, int pane) {
        const QSize frame = fixture.frame(pane).size();
        QCOMPARE(fixture.list(pane).width(), frame.width() - toPixels(250));
        QCOMPARE(fixture.grid(pane).width(), frame.width() - toPixels(250));
        QCOMPARE(fixture.grid(pane).height(), frame.height() - fixture.list(pane).height() - toPixels(900));
    }

private Q_SLOTS:
    void theBorderGivesBothListsTheSameHeight() {
        EditorFixture fixture;
        openBoth(fixture, {pumps()}, {pumps()});
        const int given = fixture.list(0).height();
        drag(fixture, 1, {0, 60});
        for (const int pane : {0, 1}) {
            QVERIFY2(qAbs(fixture.list(pane).height() - given - 60) <= 1,
                     qPrintable(QString::number(fixture.list(pane).height())));
            checkGivenFigures(fixture, pane);
        }
        QCOMPARE(fixture.activePane(), 1);
        QCOMPARE(layoutProblems(fixture.window()), QString());
        hands::doubleClick(&border(fixture, 0), Qt::LeftButton);
        for (const int pane : {0, 1})
            QCOMPARE(fixture.list(pane).height(), given);
    }

    void theGivenFiguresHoldWithAFilterLine() {
        std::vector<TableOfTexts> tables;
        for (int i = 1; i <= 40; ++i)
            tables.push_back(numbers(u"T%1"_s.arg(i), {u"1"_s}));
        EditorFixture fixture;
        openBoth(fixture, tables, tables);
        for (const int pane : {0, 1}) {
            const QWidget &filter = *fixture.editor().pane(pane).controls().filter;
            const ListBox &list = fixture.list(pane);
            QVERIFY(filter.isVisible());
            checkGivenFigures(fixture, pane);
            QVERIFY(list.geometry().contains(filter.geometry()));
            QVERIFY(filter.geometry().bottom() < list.geometry().top() + list.viewport()->y());
            QVERIFY(list.verticalScrollBar()->isVisible());
            QVERIFY(filter.geometry().right() < list.x() + list.verticalScrollBar()->mapTo(&list, QPoint()).x());
        }
        drag(fixture, 0, {0, 60});
        checkGivenFigures(fixture, 1);
        QCOMPARE(layoutProblems(fixture.window()), QString());
        fixture.choose(Command::CloseDatabaseMenu);
        fixture.open(makeFile(u"FEW.DDB"_s, {pumps()}));
        fixture.activate(1);
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(fixture.list(0).viewport()->y(), fixture.list(0).frameWidth()); // the lines have its room again
        checkGivenFigures(fixture, 0);
    }

    void theBorderLeavesRoomOnBothSides() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        for (const int far : {-2000, 2000}) {
            drag(fixture, 0, {0, far});
            QVERIFY(fixture.list(0).height() >= 3 * fixture.frame(0).fontMetrics().height());
            QVERIFY(fixture.grid(0).height() >= 3 * fixture.frame(0).fontMetrics().height());
            checkGivenFigures(fixture, 0);
            QCOMPARE(layoutProblems(fixture.window()), QString());
            fixture.window().resize(500, 420);
            QCOMPARE(layoutProblems(fixture.window()), QString());
            fixture.window().resize(1000, 700);
        }
    }

    void theBorderMovesByKeys() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        const int given = fixture.list(0).height();
        border(fixture, 0).setFocus(Qt::TabFocusReason);
        hands::key(&border(fixture, 0), Qt::Key_Down);
        QVERIFY(fixture.list(0).height() > given);
        hands::key(&border(fixture, 0), Qt::Key_Up);
        hands::key(&border(fixture, 0), Qt::Key_Up);
        QVERIFY(fixture.list(0).height() < given);
        hands::key(&border(fixture, 0), Qt::Key_Home);
        QCOMPARE(fixture.list(0).height(), given);
    }

    void theBorderIsWhereItWasInTheNextSession() {
        int height = 0;
        int given = 0;
        {
            EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
            given = fixture.list(0).height();
            drag(fixture, 0, {0, 50});
            height = fixture.list(0).height();
            QVERIFY(height > given);
        }
        EditorFixture fixture(path(u"A.DDB"_s));
        QVERIFY(qAbs(fixture.list(0).height() - height) <= 1);
    }

    void anEditEndsWhenTheBorderMoves() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_Return);
        QCOMPARE(fixture.editedCell().row, 1);
        drag(fixture, 0, {0, 40});
        QCOMPARE(fixture.editedCell().row, -1);
    }

    void aPaneWithoutADatabaseHasNoBorder() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.choose(Command::TwoMenu);
        QVERIFY(border(fixture, 0).isVisible());
        QVERIFY(!border(fixture, 1).isVisible());
        fixture.choose(Command::CloseDatabaseMenu);
        QVERIFY(!border(fixture, 0).isVisible());
    }

    void theListStandsBesideTheGridWhereThatIsWantedAndTheWindowIsWide() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.window().resize(1600, 800);
        checkGivenFigures(fixture, 0); // nobody has asked for anything else
        fixture.choose(Command::ListBesideMenu);
        QCOMPARE(fixture.list(0).y(), fixture.grid(0).y());
        QVERIFY(fixture.list(0).geometry().right() < fixture.grid(0).x());
        QCOMPARE(layoutProblems(fixture.window()), QString());
        const int width = fixture.list(0).width();
        drag(fixture, 0, {40, 0});
        QVERIFY(qAbs(fixture.list(0).width() - width - 40) <= 1);
        hands::doubleClick(&border(fixture, 0), Qt::LeftButton);
        QCOMPARE(fixture.list(0).width(), width);
        fixture.window().resize(1400, 800); // not wide any more
        checkGivenFigures(fixture, 0);
        fixture.window().resize(1600, 800);
        fixture.choose(Command::ListBesideMenu);
        checkGivenFigures(fixture, 0);
    }

    void fromRightToLeftTheListBesideTheGridStandsAtItsRight() {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        const auto back = qScopeGuard([] { QGuiApplication::setLayoutDirection(Qt::LeftToRight); });
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.window().resize(1600, 800);
        fixture.choose(Command::ListBesideMenu);
        QCOMPARE(fixture.list(0).y(), fixture.grid(0).y());
        QVERIFY(fixture.grid(0).geometry().right() < fixture.list(0).x());
        QVERIFY(fixture.frame(0).rect().contains(fixture.list(0).geometry()));
        QCOMPARE(layoutProblems(fixture.window()), QString());
        const int width = fixture.list(0).width();
        drag(fixture, 0, {-40, 0});
        QVERIFY2(qAbs(fixture.list(0).width() - width - 40) <= 1, qPrintable(QString::number(fixture.list(0).width())));
        const int dragged = fixture.list(0).width();
        border(fixture, 0).setFocus(Qt::TabFocusReason);
        hands::key(&border(fixture, 0), Qt::Key_Right); // as seen
        QVERIFY(fixture.list(0).width() < dragged);
        hands::doubleClick(&border(fixture, 0), Qt::LeftButton);
        QCOMPARE(fixture.list(0).width(), width);
    }

    void fromRightToLeftTheStripsOfDifferencesCoverNoList_data() {
        QTest::addColumn<bool>("beside");
        QTest::newRow("list above") << false;
        QTest::newRow("list beside") << true;
    }
    void fromRightToLeftTheStripsOfDifferencesCoverNoList() {
        QFETCH(const bool, beside);
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        const auto back = qScopeGuard([] { QGuiApplication::setLayoutDirection(Qt::LeftToRight); });
        EditorFixture fixture;
        openBoth(fixture, {numbers(u"T"_s, {u"1"_s, u"2"_s})}, {numbers(u"T"_s, {u"1"_s, u"3"_s})});
        fixture.window().resize(1600, 800);
        if (beside)
            fixture.choose(Command::ListBesideMenu);
        hands::turnLoop();
        for (const int pane : {0, 1}) {
            const auto *strip = fixture.window().findChild<QWidget *>(u"differenceStrip_%1"_s.arg(pane));
            QVERIFY(strip->isVisible());
            QVERIFY(strip->width() >= 3);
            QVERIFY(!strip->geometry().intersects(fixture.list(pane).geometry()));
            QVERIFY(!strip->geometry().intersects(fixture.grid(pane).geometry()));
            QVERIFY(fixture.frame(pane).rect().contains(strip->geometry()));
        }
        QCOMPARE(layoutProblems(fixture.window()), QString());
    }

    void rowsHaveRoomBesideTheirLine() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        QCOMPARE(fixture.grid(0).verticalHeader()->defaultSectionSize(), fixture.grid(0).fontMetrics().height() + 8);
    }

    void theLastColumnIsStretchedAndKeepsItsOwnWidth() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        Grid &grid = fixture.grid(0);
        const int last = grid.Cols() - 1;
        const int width = grid.ColWidth(last);
        const QHeaderView &header = *grid.horizontalHeader();
        const int drawn = header.sectionSize(last - 1);
        QVERIFY(header.length() < grid.viewport()->width());
        fixture.choose(Command::StretchColumnMenu);
        QCOMPARE(header.length(), grid.viewport()->width());
        QCOMPARE(grid.ColWidth(last), width);
        fixture.window().resize(1300, 700);
        QTRY_COMPARE(header.length(), grid.viewport()->width());
        fixture.choose(Command::StretchColumnMenu);
        QCOMPARE(header.sectionSize(last - 1), drawn);
        QCOMPARE(grid.ColWidth(last), width);
    }

    void aStretchedColumnIsNeverNarrowerThanItsTexts() {
        const auto wide = [](const QString &name) { return FieldOfTexts{name, FieldType::Text, {QString(40, u'x')}}; };
        EditorFixture fixture(makeFile(u"A.DDB"_s, {{u"T"_s, {wide(u"a"_s), wide(u"b"_s)}}}));
        Grid &grid = fixture.grid(0);
        fixture.window().resize(400, 500);
        const int last = grid.Cols() - 1;
        const int drawn = grid.horizontalHeader()->sectionSize(last - 1);
        QVERIFY(grid.horizontalHeader()->length() > grid.viewport()->width());
        fixture.choose(Command::StretchColumnMenu);
        QCOMPARE(grid.horizontalHeader()->sectionSize(last - 1), drawn);
    }

    void stretchingIsRemembered() {
        {
            EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
            fixture.choose(Command::StretchColumnMenu);
        }
        EditorFixture fixture(path(u"A.DDB"_s));
        QVERIFY(fixture.action(Command::StretchColumnMenu).isChecked());
        QTRY_COMPARE(fixture.grid(0).horizontalHeader()->length(), fixture.grid(0).viewport()->width());
    }

    void everyButtonOfTheToolBarHasAnIcon() {
        EditorFixture fixture;
        fixture.choose(Command::ToolBarMenu);
        const auto *bar = fixture.window().findChild<QToolBar *>(u"toolBar"_s);
        QVERIFY(bar->isVisible());
        int buttons = 0;
        for (const QToolButton *button : bar->findChildren<QToolButton *>()) {
            if (button->objectName().startsWith(u"qt_"_s))
                continue;
            ++buttons;
            QVERIFY2(!button->icon().isNull(), qPrintable(button->text()));
        }
        QVERIFY(buttons >= 10);
    }

    void anOwnIconHasTheColourOfTheTexts_data() {
        QTest::addColumn<Command>("scheme");
        QTest::newRow("light") << Command::ColoursLightMenu;
        QTest::newRow("dark") << Command::ColoursDarkMenu;
    }

    void anOwnIconHasTheColourOfTheTexts() {
        QFETCH(Command, scheme);
        EditorFixture fixture;
        fixture.choose(scheme);
        for (const QString &name : {u"document-open"_s, u"edit-undo"_s, u"help-contents"_s}) {
            const QImage drawn = lineIcon(name).pixmap(QSize(32, 32)).toImage();
            QCOMPARE(drawn.size(), QSize(32, 32));
            const QColor text = QApplication::palette().color(QPalette::ButtonText);
            int lines = 0;
            for (int y = 0; y < drawn.height(); ++y)
                for (int x = 0; x < drawn.width(); ++x)
                    lines += drawn.pixelColor(x, y) == text ? 1 : 0;
            QVERIFY2(lines > 20, qPrintable(name));
        }
        QVERIFY(lineIcon(u"no such icon"_s).isNull());
    }
};

QTEST_MAIN(RoomTest)
#include "room_test.moc"
