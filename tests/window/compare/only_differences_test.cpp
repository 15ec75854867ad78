#include "platform/grid/GridModel.h"
#include "tests/window/compare/OnlyDifferencesHands.h"

#include <QGuiApplication>
#include <QScopeGuard>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// Mode > Only Differences: grids that show what differs and nothing else.
class OnlyDifferencesTest : public OnlyDifferencesWindowTest {
    Q_OBJECT

private Q_SLOTS:
    void onlyDifferingRecordsAndFieldsShowUnderTheirNumbers() {
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(fixture.grid(0).model()->headerData(0, Qt::Vertical), QVariant());
        fixture.choose(Command::OnlyDifferencesMenu);
        QCOMPARE(view(fixture, 0), (QList<QStringList>{{u"2"_s, u"202"_s, u"204"_s}, {u"5"_s, u"502"_s, u"504"_s}}));
        QCOMPARE(view(fixture, 1), (QList<QStringList>{{u"2"_s, u"202"_s, u"7"_s}, {u"5"_s, u"7"_s, u"504"_s}}));
        QCOMPARE(shownFields(fixture, 1), (QStringList{u"Field2"_s, u"Field4"_s}));
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 2}, {2, 1}}));
        QCOMPARE(fixture.grid(0).Row(), 2);
        QCOMPARE(statusLeft(fixture), u"2 of 6 records differ"_s);
        QVERIFY(fixture.action(Command::OnlyDifferencesMenu).isChecked());
    }

    void turningItOffRestoresCellsPlaceAndWidths() {
        EditorFixture fixture;
        open(fixture);
        selectBlock(fixture, 0, {3, 1, 4, 3});
        fixture.grid(0).setColWidth(3, 2000);
        const QList<QStringList> whole = view(fixture, 0);
        std::vector<int> sections;
        for (int section = 0; section < 4; ++section)
            sections.push_back(fixture.grid(0).horizontalHeader()->sectionSize(section));
        const int header = fixture.grid(0).verticalHeader()->width();
        fixture.choose(Command::OnlyDifferencesMenu);
        QVERIFY(fixture.grid(0).verticalHeader()->width() > header);
        QCOMPARE(fixture.grid(0).horizontalHeader()->sectionSize(0), sections[1]);
        fixture.choose(Command::OnlyDifferencesMenu);
        QCOMPARE(view(fixture, 0), whole);
        QCOMPARE(fixture.grid(0).selection(), (GridSelection{3, 1, 4, 3}));
        QCOMPARE(fixture.grid(1).selection(), (GridSelection{3, 1, 4, 3}));
        for (int section = 0; section < 4; ++section)
            QCOMPARE(fixture.grid(0).horizontalHeader()->sectionSize(section),
                     sections[static_cast<std::size_t>(section)]);
        QCOMPARE(fixture.grid(0).verticalHeader()->width(), header);
        QCOMPARE(fixture.grid(0).ColWidth(3), 2000);
    }

    void signsStandBesideTheNumbersInEitherDirection_data() {
        QTest::addColumn<bool>("fromRight");
        QTest::newRow("left to right") << false;
        QTest::newRow("right to left") << true;
    }

    void signsStandBesideTheNumbersInEitherDirection() {
        QFETCH(bool, fromRight);
        const Qt::LayoutDirection before = QGuiApplication::layoutDirection();
        const auto restored = qScopeGuard([before] { QGuiApplication::setLayoutDirection(before); });
        QGuiApplication::setLayoutDirection(fromRight ? Qt::RightToLeft : Qt::LeftToRight);
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 600, 1)}, {changed(counted(u"A"_s, 600, 1), {{555, 1}, {566, 1}})});
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.clickCell(0, 1, 1);
        const QHeaderView &header = *fixture.grid(0).verticalHeader();
        const auto picture = [&](int section) {
            return header.viewport()
                ->grab(QRect(0, header.sectionViewportPosition(section), header.width(), header.sectionSize(section)))
                .toImage();
        };
        const QImage current = picture(0);
        fixture.clickCell(0, 2, 1);
        const QImage other = picture(0);
        // The sign of the current record comes and goes where the number does not stand.
        const int number = header.fontMetrics().horizontalAdvance(u"555"_s);
        int first = current.width();
        int last = -1;
        for (int x = 0; x < current.width(); ++x) {
            for (int y = 0; y < current.height(); ++y) {
                if (current.pixel(x, y) != other.pixel(x, y)) {
                    first = std::min(first, x);
                    last = std::max(last, x);
                }
            }
        }
        QVERIFY(last >= 0);
        if (fromRight)
            QVERIFY2(first > number, qPrintable(QString::number(first)));
        else
            QVERIFY2(last < current.width() - number, qPrintable(QString::number(last)));
    }

    void aRecordThatDiffersByAFieldOfTheOtherSideHasItsSign() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 3, 2)}, {counted(u"A"_s, 2, 3)});
        const auto differs = [&](int pane, int row) {
            return fixture.grid(pane).model()->headerData(row - 1, Qt::Vertical, GridModel::DiffersRole).toBool();
        };
        for (int row = 1; row <= 3; ++row)
            QVERIFY2(differs(0, row), qPrintable(QString::number(row)));
        for (int row = 1; row <= 2; ++row)
            QVERIFY2(differs(1, row), qPrintable(QString::number(row)));
        fixture.activate(1);
        fixture.clickCell(1, 1, 3);
        fixture.dialogs().expectMessage(u"Do you want to remove field: 'Field3' ?"_s, u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveFieldMenu);
        QVERIFY(!differs(0, 1));
        QVERIFY(!differs(1, 1));
        QVERIFY(differs(0, 3));
        fixture.database(1).setDtbHasChanged(false);
    }

    void whereAPersonWentMeanwhileTheyStay() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.clickCell(1, 2, 1);
        QCOMPARE(fixture.grid(1).selection(), singleCell(5, 2));
        QCOMPARE(fixture.grid(0).selection(), singleCell(5, 2));
        fixture.choose(Command::OnlyDifferencesMenu);
        QCOMPARE(fixture.grid(1).selection(), singleCell(5, 2));
    }

    void aGridThatHasNothingToShowComesBackToItsPlaceToo() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 1, 3)}, {counted(u"A"_s, 2, 3)});
        selectBlock(fixture, 1, {2, 3, 2, 2});
        const GridSelection left = fixture.grid(0).selection();
        fixture.choose(Command::OnlyDifferencesMenu);
        QCOMPARE(view(fixture, 0).size(), 0);
        fixture.choose(Command::OnlyDifferencesMenu);
        QCOMPARE(fixture.grid(0).selection(), left);
        QCOMPARE(fixture.grid(1).selection(), (GridSelection{2, 3, 2, 2}));
    }

    void wherePeopleGoFromAShownCellTheyStayToo() {
        EditorFixture fixture;
        open(fixture);
        fixture.clickCell(0, 2, 4);
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.clickCell(0, 2, 1);
        QCOMPARE(fixture.grid(0).selection(), singleCell(5, 2));
        fixture.choose(Command::OnlyDifferencesMenu);
        QCOMPARE(fixture.grid(0).selection(), singleCell(5, 2));
        QCOMPARE(fixture.grid(1).selection(), singleCell(5, 2));
    }

    void keysGoFromShownCellToShownCell() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        Grid &grid = fixture.grid(0);
        fixture.clickCell(0, 1, 1);
        hands::key(&grid, Qt::Key_Down);
        QCOMPARE(grid.selection(), singleCell(5, 2));
        hands::key(&grid, Qt::Key_Right);
        QCOMPARE(grid.selection(), singleCell(5, 4));
        QCOMPARE(fixture.grid(1).selection(), singleCell(5, 4));
        hands::key(&grid, Qt::Key_Right);
        QCOMPARE(grid.selection(), singleCell(5, 4));
        hands::key(&grid, Qt::Key_Home, Qt::ControlModifier);
        QCOMPARE(grid.selection(), singleCell(2, 2));
        hands::key(&grid, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(grid.selection(), (GridSelection{2, 2, 5, 4}));
    }

    void headersSelectTheShownCells() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        QHeaderView *rows = fixture.grid(0).verticalHeader();
        hands::click(rows->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(4, rows->sectionViewportPosition(1) + 4));
        QCOMPARE(fixture.grid(0).selection(), (GridSelection{5, 2, 5, 4}));
        QHeaderView *columns = fixture.grid(0).horizontalHeader();
        hands::click(columns->viewport(), Qt::LeftButton, Qt::NoModifier,
                     QPoint(columns->sectionViewportPosition(1) + 20, 4));
        QCOMPARE(fixture.grid(0).selection(), (GridSelection{2, 4, 5, 4}));
    }

    void theWalkGoesOnAsBefore() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        strike(fixture, Qt::Key_Home, Qt::AltModifier);
        QCOMPARE(fixture.grid(0).selection(), singleCell(2, 4));
        strike(fixture, Qt::Key_F8);
        QCOMPARE(fixture.grid(0).selection(), singleCell(5, 2));
        QCOMPARE(fixture.grid(1).selection(), singleCell(5, 2));
        strike(fixture, Qt::Key_F8);
        QCOMPARE(statusLeft(fixture), u"No further difference"_s);
    }

    void aRecordThatIsGoneToComesIntoSightOnBothSides() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.grid(0).setSelection(singleCell(4, 1));
        const QList<QStringList> left{{u"2"_s, u"201"_s, u"202"_s, u"204"_s},
                                      {u"4"_s, u"401"_s, u"402"_s, u"404"_s},
                                      {u"5"_s, u"501"_s, u"502"_s, u"504"_s}};
        QCOMPARE(view(fixture, 0), left);
        QCOMPARE(view(fixture, 1).size(), 3);
        QCOMPARE(fixture.grid(1).selection(), singleCell(4, 1));
        fixture.choose(Command::CompareAgainMenu);
        QCOMPARE(view(fixture, 0).size(), 2);
    }

    void aPressOnTheStripAwayFromMarksGoesToTheNearestShownRecord() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 2000, 2)}, {changed(counted(u"A"_s, 2000, 2), {{1000, 2}, {1990, 2}})});
        fixture.choose(Command::OnlyDifferencesMenu);
        auto &band = *fixture.window().findChild<QWidget *>(u"differenceStrip_1"_s);
        const auto press = [&](int percent) {
            hands::click(&band, Qt::LeftButton, {}, QPoint(band.width() / 2, band.height() * percent / 100));
            return fixture.grid(1).Row();
        };
        QCOMPARE(press(90), 1990);
        QCOMPARE(press(25), 1000);
        QCOMPARE(press(80), 1990);
        QCOMPARE(press(60), 1000);
        hands::drag(&band, QPoint(band.width() / 2, 5), QPoint(band.width() / 2, band.height() * 2 / 3));
        QCOMPARE(fixture.grid(0).selection(), singleCell(1000, 2));
        for (const int pane : {0, 1})
            QCOMPARE(view(fixture, pane).size(), 2);
    }

    void aPressOnTheStripOfEqualTablesShowsNothing() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 50, 2)}, {counted(u"A"_s, 50, 2)});
        fixture.choose(Command::OnlyDifferencesMenu);
        auto &band = *fixture.window().findChild<QWidget *>(u"differenceStrip_0"_s);
        hands::click(&band, Qt::LeftButton, {}, band.rect().center());
        QCOMPARE(view(fixture, 0), QList<QStringList>());
        QCOMPARE(fixture.grid(0).Row(), 0);
    }

    void anotherTableShowsItsOwnDifferences() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.clickLine(0, 1); // equal: nothing to show
        QCOMPARE(view(fixture, 0), QList<QStringList>());
        QCOMPARE(view(fixture, 1), QList<QStringList>());
        QVERIFY(fixture.grid(0).Visible());
        QCOMPARE(statusLeft(fixture), u"B, no differences to show"_s);
        QCOMPARE(fixture.grid(0).Row(), 0);
        hands::click(fixture.grid(0).viewport(), Qt::LeftButton, {}, QPoint(20, 20));
        hands::key(&fixture.grid(0), Qt::Key_Down);
        hands::key(&fixture.grid(0), Qt::Key_Return);
        QVERIFY(!editing(fixture, 0));
        fixture.clickLine(0, 0);
        QCOMPARE(view(fixture, 0).size(), 2);
        QCOMPARE(statusLeft(fixture), u"A, record 2 of 6, 2 shown, Field2: long, 202, -2147483648 to 2147483647"_s);
        fixture.clickLine(0, 1);
        fixture.choose(Command::OnlyDifferencesMenu);
        QCOMPARE(view(fixture, 0).size(), 3);
        QCOMPARE(fixture.grid(0).Row(), 1);
    }

    void tablesOfOtherShapeShowWhatOnlyOneSideHas() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 3, 2)}, {counted(u"A"_s, 5, 3)});
        fixture.choose(Command::OnlyDifferencesMenu);
        QCOMPARE(shownFields(fixture, 1), (QStringList{u"Field1"_s, u"Field2"_s, u"Field3"_s}));
        QCOMPARE(view(fixture, 1).size(), 5);
        QCOMPARE(view(fixture, 0).size(), 3);
        fixture.clickCell(1, 5, 3);
        QCOMPARE(fixture.grid(1).selection(), singleCell(5, 3));
    }

    void aTableOfOneSideIsShownWhole() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 3, 2), counted(u"C"_s, 2, 2)}, {changed(counted(u"A"_s, 3, 2), {{2, 1}})});
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.clickLine(0, 1);
        QCOMPARE(view(fixture, 0).size(), 2);
        QVERIFY(fixture.action(Command::SortFPOP).isEnabled());
        fixture.clickLine(0, 0);
        QCOMPARE(view(fixture, 0).size(), 1);
    }

    void theWheelOverAShortViewMovesNothingOutOfIt() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        turnWheel(fixture, 0, -120);
        turnWheel(fixture, 1, 120);
        QCOMPARE(view(fixture, 0).size(), 2);
        fixture.clickLine(0, 1);
        turnWheel(fixture, 0, -120);
        QCOMPARE(view(fixture, 0).size(), 0);
    }
};

QTEST_MAIN(OnlyDifferencesTest)
#include "only_differences_test.moc"
