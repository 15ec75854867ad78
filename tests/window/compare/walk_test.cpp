#include "app/desktop/StatusState.h"
#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QToolTip>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// Line, row and column that are current in a pane.
QList<int> place(EditorFixture &fixture, int pane) {
    const Grid &grid = fixture.grid(pane);
    return {fixture.list(pane).ListIndex(), grid.Row(), grid.Col()};
}

QWidget &strip(EditorFixture &fixture, int pane) {
    return *fixture.window().findChild<QWidget *>(u"differenceStrip_%1"_s.arg(pane));
}

/// How often what it watches was drawn.
class PaintCount : public QObject {
public:
    int count() const { return m_count; }
    void reset() { m_count = 0; }
    bool eventFilter(QObject *watched, QEvent *event) override {
        m_count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

private:
    int m_count = 0;
};

/// Six tables: equal, different, only left, only right, records on the right only, different.
struct ManyTables {
    std::vector<TableOfTexts> left{counted(u"A"_s, 2, 2), counted(u"B"_s, 4, 2), counted(u"C"_s, 1, 1),
                                   counted(u"E"_s, 0, 2), counted(u"F"_s, 3, 2)};
    std::vector<TableOfTexts> right{counted(u"A"_s, 2, 2), changed(counted(u"B"_s, 4, 2), {{3, 2}}),
                                    counted(u"D"_s, 2, 1), counted(u"E"_s, 2, 2),
                                    changed(counted(u"F"_s, 3, 2), {{1, 2}, {3, 1}, {3, 2}})};
};

} // namespace

/// Going from difference to difference, and what is told beside the colours.
class WalkTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void theStatusLineTellsTheTableTheRecordAndTheField() {
        TableOfTexts trend{u"Trend"_s,
                           {{u"Time"_s, FieldType::Date, {u"20250913.0605"_s, u"20250914"_s}},
                            {u"Name"_s, FieldType::Text, {u"first"_s, QString()}, 20}}};
        EditorFixture fixture(makeFile(u"A.DDB"_s, {trend}));
        fixture.clickCell(0, 1, 1);
        QCOMPARE(statusLeft(fixture), u"Trend, record 1 of 2, Time: date, 2025-09-13 06:05"_s);
        QCOMPARE(statusRight(fixture), QString());
        fixture.clickCell(0, 2, 2);
        QCOMPARE(statusLeft(fixture), u"Trend, record 2 of 2, Name: text, 0 of 20 characters"_s);
        hands::key(&fixture.grid(0), Qt::Key_Return);
        hands::type(&fixture.cellEditor(0), u"x"_s);
        QCOMPARE(statusLeft(fixture), u"Trend, record 2 of 2, Name: text, x, 1 of 20 characters"_s);
        QCOMPARE(statusRight(fixture), u"changed"_s);
        fixture.database(0).setDtbHasChanged(false);
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(statusLeft(fixture) + statusRight(fixture), QString());
    }

    void bothGridsGoToAStopWhereOneOfThemStandsAlready() {
        EditorFixture fixture;
        openBoth(fixture, {changed(counted(u"T"_s, 4, 1), {{3, 1}})}, {counted(u"T"_s, 3, 1)});
        fixture.clickLine(0, 0);
        fixture.clickCell(0, 3, 1);
        fixture.clickCell(0, 4, 1); // which the other grid cannot follow
        fixture.activate(1);
        QCOMPARE(fixture.grid(0).Row(), 4);
        QCOMPARE(fixture.grid(1).Row(), 3);
        hands::strike(fixture.window(), Qt::Key_F7, {}, {});
        QCOMPARE(fixture.grid(0).Row(), 3);
        QCOMPARE(fixture.grid(1).Row(), 3);
    }

    void datesAreReadable_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("date");
        QTest::newRow("day") << u"20250913"_s << u"2025-09-13"_s;
        QTest::newRow("minutes") << u"20250913.0605"_s << u"2025-09-13 06:05"_s;
        QTest::newRow("seconds") << u"20250913.060507"_s << u"2025-09-13 06:05:07"_s;
        QTest::newRow("zeros at the end") << u"20250913.1"_s << u"2025-09-13 10:00"_s;
        QTest::newRow("no such day") << u"20250230"_s << u"20250230"_s;
        QTest::newRow("no such hour") << u"20250913.99"_s << u"20250913.99"_s;
        QTest::newRow("not yet a date") << u"2025"_s << u"2025"_s;
        QTest::newRow("empty") << QString() << QString();
    }

    void datesAreReadable() {
        QFETCH(QString, text);
        QTEST(readableDate(text), "date");
    }

    void theStatusLineCountsTablesAndCellsThatDiffer() {
        EditorFixture fixture;
        openBoth(fixture, ManyTables().left, ManyTables().right);
        QCOMPARE(statusRight(fixture), u"3 tables differ"_s);
        fixture.clickLine(0, 5);
        QCOMPARE(statusRight(fixture), u"3 tables differ, 3 cells here"_s);
        fixture.clickLine(0, 1);
        QCOMPARE(statusRight(fixture), u"3 tables differ, 1 cell here"_s);
        fixture.clickLine(0, 4); // the list takes its mark away: one side shows no grid
        QCOMPARE(fixture.lines(0)[4], u"E"_s);
        QCOMPARE(statusRight(fixture), u"3 tables differ, 0 and 2 records"_s);
        QCOMPARE(statusLeft(fixture), u"E"_s);
        fixture.clickLine(0, 3);
        QCOMPARE(statusLeft(fixture), u"D, missing here"_s);
    }

    void theProgressBarTakesTheStatusLinesPlaceWhileItStandsThere() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"A"_s, 2, 2)}));
        QLabel *label = fixture.window().findChild<QLabel *>(u"statusLeft"_s);
        QVERIFY(label->isVisible());
        fixture.progressBar().show();
        QVERIFY(!label->isVisible());
        fixture.progressBar().hide();
        QVERIFY(label->isVisible());
    }

    void eachStepGoesToTheFirstDifferingCellOfADifferingRecordInBothGrids() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 5, 3)}, {changed(counted(u"A"_s, 5, 3), {{2, 2}, {2, 3}, {4, 1}})});
        fixture.clickCell(0, 1, 1);
        for (const QList<int> &stop : {QList{0, 2, 2}, QList{0, 4, 1}}) {
            strike(fixture, Qt::Key_F8);
            QCOMPARE(place(fixture, 0), stop);
            QCOMPARE(place(fixture, 1), stop);
        }
        strike(fixture, Qt::Key_F8);
        QCOMPARE(place(fixture, 0), QList({0, 4, 1}));
        QCOMPARE(statusLeft(fixture), u"No further difference"_s);
        strike(fixture, Qt::Key_F7);
        QCOMPARE(place(fixture, 1), QList({0, 2, 2}));
        QVERIFY(statusLeft(fixture).startsWith(u"A, record 2"_s));
        strike(fixture, Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(place(fixture, 0), QList({0, 2, 2}));
        QCOMPARE(statusLeft(fixture), u"No earlier difference"_s);
        strike(fixture, Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(place(fixture, 0), QList({0, 4, 1}));
        QCOMPARE(fixture.activePane(), 0);
        QVERIFY(fixture.grid(0).hasFocus());
    }

    void aDifferenceAheadInTheCurrentRecordIsTheNextOne() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 2, 3)}, {changed(counted(u"A"_s, 2, 3), {{1, 2}})});
        strike(fixture, Qt::Key_F8);
        QCOMPARE(place(fixture, 0), QList({0, 1, 2}));
        strike(fixture, Qt::Key_F8);
        QCOMPARE(statusLeft(fixture), u"No further difference"_s);
    }

    void withCtrlTheStepsGoFromCellToCell() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 5, 3)}, {changed(counted(u"A"_s, 5, 3), {{2, 2}, {2, 3}, {4, 1}})});
        fixture.clickCell(1, 1, 1);
        for (const QList<int> &stop : {QList{0, 2, 2}, QList{0, 2, 3}, QList{0, 4, 1}}) {
            strike(fixture, Qt::Key_F8, Qt::ControlModifier);
            QCOMPARE(place(fixture, 0), stop);
        }
        for (const QList<int> &stop : {QList{0, 2, 3}, QList{0, 2, 2}, QList{0, 2, 2}}) {
            strike(fixture, Qt::Key_F7, Qt::ControlModifier);
            QCOMPARE(place(fixture, 1), stop);
        }
        QCOMPARE(fixture.activePane(), 1);
    }

    void theWalkGoesOnIntoTheNextTableAndStopsAtTablesOfOneSide() {
        EditorFixture fixture;
        openBoth(fixture, ManyTables().left, ManyTables().right);
        fixture.clickLine(0, 0);
        const QList<QList<int>> lines{{1, 3, 2}, {2, 1, 1}, {3, 1, 1}, {4, 1, 1}, {5, 1, 2}, {5, 3, 1}};
        for (const QList<int> &stop : lines) {
            strike(fixture, Qt::Key_F8);
            QCOMPARE(fixture.list(0).ListIndex(), stop[0]);
            QCOMPARE(fixture.list(1).ListIndex(), stop[0]);
            const int shown = stop[0] == 3 || stop[0] == 4 ? 1 : 0;
            QCOMPARE(place(fixture, shown), stop);
            QIR_VERIFY_OK(fixture);
        }
        strike(fixture, Qt::Key_F8);
        QCOMPARE(statusLeft(fixture), u"No further difference"_s);
        for (const int line : {5, 4, 3, 2, 1}) {
            strike(fixture, Qt::Key_F7);
            QCOMPARE(fixture.list(1).ListIndex(), line);
        }
        QCOMPARE(place(fixture, 0), QList({1, 3, 2}));
        QVERIFY(fixture.list(0).hasFocus());
        QCOMPARE(fixture.activePane(), 0);
    }

    void theKeyboardReturnsToTheGridAfterATableThatShowsNone() {
        EditorFixture fixture;
        openBoth(fixture, ManyTables().left, ManyTables().right);
        fixture.clickLine(0, 2);
        fixture.clickCell(0, 1, 1);
        for (const bool grid : {false, false, true}) { // D, E, F
            strike(fixture, Qt::Key_F8);
            QCOMPARE(fixture.grid(0).hasFocus(), grid);
        }
    }

    void aStopThatOnlyTheOtherPaneHasIsGoneToInTheTableBefore() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"B"_s, 2, 1), counted(u"C"_s, 3, 1)},
                 {counted(u"B"_s, 3, 1), changed(counted(u"C"_s, 3, 1), {{3, 1}})});
        fixture.clickLine(0, 1);
        fixture.clickCell(0, 3, 1);
        strike(fixture, Qt::Key_F7);
        QCOMPARE(place(fixture, 1), QList({0, 3, 1})); // its place in the table before is the same
        QCOMPARE(fixture.activePane(), 0);
    }

    void firstAndLastAreThoseOfTheWholeDatabases() {
        EditorFixture fixture;
        openBoth(fixture, ManyTables().left, ManyTables().right);
        fixture.clickLine(1, 2);
        strike(fixture, Qt::Key_End, Qt::AltModifier);
        QCOMPARE(place(fixture, 0), QList({5, 3, 1}));
        strike(fixture, Qt::Key_Home, Qt::AltModifier);
        QCOMPARE(place(fixture, 0), QList({1, 3, 2}));
    }

    void withoutDifferencesTheWalkSaysSo() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 2, 2)}, {counted(u"A"_s, 2, 2)});
        strike(fixture, Qt::Key_End, Qt::AltModifier);
        QCOMPARE(statusLeft(fixture), u"No further difference"_s);
        strike(fixture, Qt::Key_Home, Qt::AltModifier);
        QCOMPARE(statusLeft(fixture), u"No earlier difference"_s);
    }

    void recordsOfOneSideAreStopsThere() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 5, 2)}, {counted(u"A"_s, 3, 3)});
        fixture.clickCell(1, 1, 1);
        QList<QList<int>> stops;
        for (int i = 0; i < 5; ++i) {
            strike(fixture, Qt::Key_F8);
            stops.append({fixture.grid(0).Row(), fixture.grid(0).Col(), fixture.grid(1).Col()});
        }
        // The field of the right side first, then the records of the left one.
        QCOMPARE(stops, (QList<QList<int>>{{1, 1, 3}, {2, 1, 3}, {3, 1, 3}, {4, 1, 1}, {5, 1, 1}}));
        QCOMPARE(fixture.activePane(), 1);
        strike(fixture, Qt::Key_F8, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).Col(), 2); // beyond both sides there is no cell to go to
        strike(fixture, Qt::Key_F8, Qt::ControlModifier);
        QCOMPARE(statusLeft(fixture), u"No further difference"_s);
    }

    void theEmptyColumnOfATableWithoutFieldsHoldsNoCells() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 1, 1)}, {{u"A"_s, {}}});
        fixture.activate(1);
        fixture.choose(Command::AddRecordMenu);
        fixture.choose(Command::AddRecordMenu);
        QCOMPARE(statusRight(fixture), u"changed, 1 table differs, 1 cell here"_s);
        fixture.clickCell(0, 1, 1);
        strike(fixture, Qt::Key_F8, Qt::ControlModifier);
        QCOMPARE(statusLeft(fixture), u"No further difference"_s); // the right side's second record has no field
        strike(fixture, Qt::Key_F8);
        QCOMPARE(place(fixture, 1), QList({0, 2, 1})); // but a record that only one side has is a stop
        const auto words = [&](int pane, int row) {
            return fixture.grid(pane).model()->index(row - 1, 0).data(Qt::ToolTipRole).toString();
        };
        QCOMPARE(words(0, 1), u"left: 101, missing on the right"_s);
        QCOMPARE(words(1, 1), u"left: 101, missing on the right"_s);
        QCOMPARE(words(1, 2), QString());
    }

    void anEditEndsFirst() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 5, 3)}, {changed(counted(u"A"_s, 5, 3), {{2, 2}})});
        beginEdit(fixture, 0, 1, 1);
        hands::type(&fixture.cellEditor(0), u"9"_s);
        strike(fixture, Qt::Key_F8);
        QVERIFY(!editing(fixture, 0));
        QCOMPARE(place(fixture, 0), QList({0, 2, 2}));
        strike(fixture, Qt::Key_F7);
        QCOMPARE(place(fixture, 0), QList({0, 1, 1})); // what was typed differs too
        for (const int pane : {0, 1})
            fixture.database(pane).setDtbHasChanged(false);
    }

    void listsThatAreNotLinedUpAreToldOf() {
        EditorFixture fixture;
        openBoth(fixture, ManyTables().left, ManyTables().right);
        fixture.dialogs().expectInput(u"New table name"_s, u"?"_s, u"Tablex"_s, u"AA"_s);
        fixture.choose(Command::AddTableMenu);
        QVERIFY(fixture.lines(0)[1] != fixture.lines(1)[1]);
        strike(fixture, Qt::Key_Home, Qt::AltModifier);
        QVERIFY(statusLeft(fixture).contains(u"Compare Again"_s));
        for (const int pane : {0, 1})
            fixture.database(pane).setDtbHasChanged(false);
    }

    void commandsOfTheWalkNeedBothDatabases() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"A"_s, 2, 2)}));
        for (const Command command :
             {Command::NextDifferenceMenu, Command::PreviousDifferenceMenu, Command::FirstDifferenceMenu,
              Command::LastDifferenceMenu, Command::DifferencesSummaryMenu, Command::CarryCellsMenu})
            QVERIFY2(!fixture.action(command).isEnabled(), commandName(command));
        strike(fixture, Qt::Key_F8);
        QVERIFY(statusLeft(fixture).startsWith(u"A, record 1"_s));
    }

    void linesHaveIconsAndWordsForHowTheyDiffer() {
        EditorFixture fixture;
        openBoth(fixture, ManyTables().left, ManyTables().right);
        const auto words = [&](int pane) {
            QStringList all;
            for (int line = 0; line < fixture.list(pane).ListCount(); ++line)
                all.append(fixture.list(pane).model()->index(line, 0).data(Qt::AccessibleDescriptionRole).toString());
            return all;
        };
        QCOMPARE(words(0),
                 QStringList({u""_s, u"differs"_s, u"only here"_s, u"missing here"_s, u"differs"_s, u"differs"_s}));
        QCOMPARE(words(1)[2], u"missing here"_s);
        QCOMPARE(words(1)[3], u"only here"_s);
        const auto icon = [&](int line) {
            return fixture.list(0).model()->index(line, 0).data(Qt::DecorationRole).value<QIcon>().pixmap(16).toImage();
        };
        QVERIFY(icon(1) != icon(2));
        QVERIFY(icon(2) != icon(3));
        QVERIFY(icon(0) != icon(1));
        QCOMPARE(fixture.lines(0)[1], u"B !"_s); // the texts stay
        fixture.activate(1);
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(words(0), QStringList(5, QString()));
        QVERIFY(fixture.list(0).model()->index(1, 0).data(Qt::DecorationRole).value<QIcon>().isNull());
    }

    void aDifferingCellSaysWhatStandsOnBothSides() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 3, 2)}, {changed(counted(u"A"_s, 2, 2), {{1, 2}})});
        const auto words = [&](int pane, int row, int column) {
            return fixture.grid(pane).model()->index(row - 1, column - 1).data(Qt::ToolTipRole).toString();
        };
        QCOMPARE(words(0, 1, 2), u"left: 102, right: 7"_s);
        QCOMPARE(words(1, 1, 2), u"left: 102, right: 7"_s);
        QCOMPARE(words(0, 3, 1), u"left: 301, missing on the right"_s);
        QCOMPARE(words(0, 1, 1), QString());
        QWidget *cells = fixture.grid(1).viewport();
        const QPoint point = fixture.cellCentre(1, 1, 2);
        QHelpEvent help(QEvent::ToolTip, point, cells->mapToGlobal(point));
        QApplication::sendEvent(cells, &help);
        QCOMPARE(QToolTip::text(), u"left: 102, right: 7"_s);
        QToolTip::hideText();
        QAccessibleInterface *table = QAccessible::queryAccessibleInterface(&fixture.grid(0));
        QCOMPARE(table->tableInterface()->cellAt(0, 1)->text(QAccessible::Description), u"left: 102, right: 7"_s);
    }

    void aStepAndACarryTakeAwayTheTipOfTheCellBefore_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifier>("modifier");
        QTest::newRow("step") << static_cast<int>(Qt::Key_F8) << Qt::NoModifier;
        QTest::newRow("carry") << static_cast<int>(Qt::Key_Right) << Qt::AltModifier;
    }

    void aStepAndACarryTakeAwayTheTipOfTheCellBefore() {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifier, modifier);
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 3, 2)}, {changed(counted(u"A"_s, 3, 2), {{1, 2}, {3, 1}})});
        fixture.clickCell(1, 1, 2);
        QWidget *cells = fixture.grid(1).viewport();
        const QPoint point = fixture.cellCentre(1, 1, 2);
        QHelpEvent help(QEvent::ToolTip, point, cells->mapToGlobal(point));
        QApplication::sendEvent(cells, &help);
        QVERIFY(QToolTip::isVisible());
        strike(fixture, static_cast<Qt::Key>(key), modifier);
        QTRY_VERIFY_WITH_TIMEOUT(!QToolTip::isVisible(), 2000); // by itself it goes after ten seconds
    }

    void theRowHeaderHasASignForEachDifferingRecord() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 4, 2)}, {changed(counted(u"A"_s, 4, 2), {{3, 2}})});
        fixture.clickCell(0, 1, 1);
        QHeaderView *header = fixture.grid(0).verticalHeader();
        const auto picture = [&](int row) {
            return header->viewport()
                ->grab(
                    QRect(0, header->sectionViewportPosition(row - 1), header->width(), header->sectionSize(row - 1)))
                .toImage();
        };
        QVERIFY(picture(3) != picture(4));
        QCOMPARE(fixture.grid(0).model()->headerData(2, Qt::Vertical, Qt::AccessibleTextRole).toString(),
                 u"record 3, differs"_s);
        QVERIFY(fixture.grid(0).model()->headerData(2, Qt::Vertical).toString().isEmpty());
        const QImage differing = picture(3);
        fixture.clickCell(0, 3, 1);
        QVERIFY(picture(3) != differing); // the mark of the current record stands beside it
        beginEdit(fixture, 0, 3, 2);
        retype(fixture, 0, u"7"_s);
        hands::key(&fixture.cellEditor(0), Qt::Key_Return);
        fixture.clickCell(0, 1, 1);
        QCOMPARE(picture(3), picture(4));
        fixture.database(0).setDtbHasChanged(false);
    }

    void aPressOnTheStripGoesToTheDifferenceThere() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 2000, 2)}, {changed(counted(u"A"_s, 2000, 2), {{1000, 2}, {1990, 1}})});
        for (const int pane : {0, 1})
            QVERIFY(strip(fixture, pane).isVisible());
        QWidget &band = strip(fixture, 1);
        QCOMPARE(band.accessibleDescription(), u"2 of 2000 records differ"_s);
        hands::click(&band, Qt::LeftButton, {}, QPoint(band.width() / 2, band.height() / 2 + 1));
        QCOMPARE(fixture.activePane(), 1);
        for (const int pane : {0, 1}) {
            QCOMPARE(place(fixture, pane), QList({0, 1000, 2}));
            QVERIFY(fixture.grid(pane).TopRow() < 1000);
            QVERIFY(fixture.grid(pane).TopRow() > 900);
        }
        hands::drag(&band, QPoint(band.width() / 2, 5), QPoint(band.width() / 2, band.height() - 4));
        QCOMPARE(place(fixture, 0), QList({0, 1990, 1}));
        QCOMPARE(place(fixture, 1), QList({0, 1990, 1}));
        hands::click(&band, Qt::LeftButton, {}, QPoint(band.width() / 2, band.height() / 4));
        QVERIFY(std::abs(fixture.grid(0).Row() - 500) < 20); // no difference is near
    }

    void theStripHasMarksWhereRecordsDiffer() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 2000, 2)}, {changed(counted(u"A"_s, 2000, 2), {{1000, 2}})});
        const auto marked = [&] {
            const QImage picture = strip(fixture, 0).grab().toImage();
            QList<int> found;
            for (int y = picture.height() / 4; y < picture.height(); ++y) // below the frame of the view
                if (picture.pixelColor(picture.width() / 2, y) == strip(fixture, 0).palette().color(QPalette::Text))
                    found.append(y * 100 / picture.height());
            return found;
        };
        QVERIFY(!marked().isEmpty());
        for (const int percent : marked())
            QVERIFY(percent >= 49 && percent <= 50);
        fixture.activate(1);
        fixture.choose(Command::CloseDatabaseMenu);
        QVERIFY(!strip(fixture, 0).isVisible());
    }

    void theStripsFrameFollowsTheScrolling() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 500, 2)}, {counted(u"A"_s, 500, 2)});
        const QImage before = strip(fixture, 1).grab().toImage();
        turnWheel(fixture, 0, -1200);
        QVERIFY(strip(fixture, 1).grab().toImage() != before);
    }

    void theStripsFrameFollowsWhatIsLeftInSight() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 80, 2)}, {changed(counted(u"A"_s, 80, 2), {{10, 2}, {70, 1}})});
        PaintCount painted;
        strip(fixture, 1).installEventFilter(&painted);
        fixture.choose(Command::OnlyDifferencesMenu); // nothing scrolls, and the marks stay
        hands::turnLoop();
        QVERIFY(painted.count() > 0);
        painted.reset();
        strike(fixture, Qt::Key_Right);
        hands::turnLoop();
        QCOMPARE(painted.count(), 0); // what stays as it is is not drawn again
    }
};

QTEST_MAIN(WalkTest)
#include "walk_test.moc"
