#include "tests/support/Hands.h"
#include "tests/tools/fake/FakeControl.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QMenu>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

TableOfTexts stations() {
    return {u"Stations"_s,
            {{u"Number"_s, FieldType::Long, {u"10"_s, u"9"_s, u"100"_s}},
             {u"Name"_s, FieldType::Text, {u"south"_s, u"North"_s, u"east"_s}}}};
}

TableOfTexts oneColumn(FieldType type, const QStringList &texts) {
    QStringList places;
    for (int i = 1; i <= texts.size(); ++i)
        places.append(QString::number(i));
    return {u"T"_s, {{u"Key"_s, type, texts}, {u"Place"_s, FieldType::Long, places}}};
}

/// Sorts by a column as a person does: the right button on its header, the item in the pop-up.
void sortBy(EditorFixture &fixture, int pane, int column) {
    rightPressHeader(fixture, pane, column);
    QMenu &menu = fixture.menu(Menu::popmenuGridFields);
    QVERIFY(menu.isVisible());
    const QRect item = menu.actionGeometry(&fixture.action(Command::SortFPOP));
    hands::click(&menu, Qt::LeftButton, Qt::NoModifier, item.center());
    QVERIFY(!menu.isVisible());
}

QStringList column(EditorFixture &fixture, int pane, int column) {
    QStringList texts;
    for (const QStringList &row : fixture.texts(pane))
        texts.append(row[column - 1]);
    return texts;
}

} // namespace

/// Sorting a table through the header's pop-up of the real window.
class SortTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void numbersAreSortedByValueAndTheRecordsRewrittenInThatOrder() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {stations()}));
        sortBy(fixture, 0, 1);
        QCOMPARE(column(fixture, 0, 1), QStringList({u"9"_s, u"10"_s, u"100"_s}));
        QCOMPARE(column(fixture, 0, 2), QStringList({u"North"_s, u"south"_s, u"east"_s}));
        QCOMPARE(storedRecords(fixture, 0),
                 QList<QVariantList>({{9.0, u"North"_s}, {10.0, u"south"_s}, {100.0, u"east"_s}}));
        QVERIFY(fixture.database(0).DtbHasChanged());
    }

    void afterASortRowRStandsForRecordR() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {stations()}));
        sortBy(fixture, 0, 2);
        for (int r = 1; r <= 3; ++r)
            QCOMPARE(fixture.grid(0).RowData(r), r);
        QCOMPARE(fixture.window().ColonnaOrdinamento(), 2);
        edit(fixture, 0, 1, 1, u"7"_s);
        QCOMPARE(stored(fixture, 0, 1, 1).toDouble(), 7.0);
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), u"east"_s);
    }

    void theSortedColumnsRecordsAreSelected() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {stations()}));
        sortBy(fixture, 0, 2);
        QCOMPARE(fixture.grid(0).selection(), (GridSelection{1, 2, 3, 2}));
    }

    void columnsAreSortedByTheirTexts_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<QStringList>("sorted");
        QTest::newRow("empty texts, numbers, other texts")
            << static_cast<int>(FieldType::Text) << QStringList{u"b"_s, u"12"_s, u""_s, u"a1"_s, u"-3"_s}
            << QStringList{u""_s, u"-3"_s, u"12"_s, u"a1"_s, u"b"_s};
        QTest::newRow("texts whatever their case")
            << static_cast<int>(FieldType::Text) << QStringList{u"beta"_s, u"Gamma"_s, u"ALPHA"_s, u"alpha"_s}
            << QStringList{u"ALPHA"_s, u"alpha"_s, u"beta"_s, u"Gamma"_s};
        QTest::newRow("dates as their numbers")
            << static_cast<int>(FieldType::Date) << QStringList{u"20240101"_s, u"20231231.235959"_s, u"19991231"_s}
            << QStringList{u"19991231"_s, u"20231231.235959"_s, u"20240101"_s};
        QTest::newRow("bools") << static_cast<int>(FieldType::Bool) << QStringList{u"1"_s, u"0"_s, u"1"_s}
                               << QStringList{u"0"_s, u"1"_s, u"1"_s};
        QTest::newRow("doubles") << static_cast<int>(FieldType::Double)
                                 << QStringList{u"1e+20"_s, u"0.5"_s, u"-1e-07"_s, u"3.0"_s}
                                 << QStringList{u"-1e-07"_s, u"0.5"_s, u"3"_s, u"1e+20"_s};
    }

    void columnsAreSortedByTheirTexts() {
        QFETCH(const int, type);
        QFETCH(const QStringList, texts);
        QFETCH(const QStringList, sorted);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {oneColumn(static_cast<FieldType>(type), texts)}));
        sortBy(fixture, 0, 1);
        QCOMPARE(column(fixture, 0, 1), sorted);
    }

    void aTextIsANumberOnlyWithoutBlanksInsideAndWithoutAnotherLetterThanE() {
        const QStringList texts{u"2D1"_s, u" 15 "_s, u"1 2"_s, u"3"_s, u"1e1"_s};
        EditorFixture fixture(makeFile(u"A.DDB"_s, {oneColumn(FieldType::Text, texts)}));
        sortBy(fixture, 0, 1);
        QCOMPARE(column(fixture, 0, 1), QStringList({u"3"_s, u"1e1"_s, u" 15 "_s, u"1 2"_s, u"2D1"_s}));
    }

    void recordsOfEqualKeysKeepTheirOrder() {
        EditorFixture fixture(
            makeFile(u"A.DDB"_s, {oneColumn(FieldType::Text, {u"x"_s, u"a"_s, u"x"_s, u"a"_s, u"x"_s})}));
        sortBy(fixture, 0, 1);
        QCOMPARE(column(fixture, 0, 2), QStringList({u"2"_s, u"4"_s, u"1"_s, u"3"_s, u"5"_s}));
    }

    void sortingASortedTableRewritesItInAGroupAndChangesNothing() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {oneColumn(FieldType::Long, {u"1"_s, u"2"_s, u"3"_s})}));
        fake->clearLog();
        sortBy(fixture, 0, 1);
        QCOMPARE(fake->calls(u"BeginChanges"_s), 1);
        QCOMPARE(fake->calls(u"EndChanges"_s), 1);
        QCOMPARE(fake->calls(u"CancelChanges"_s), 0);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void aTableWithoutRecordsIsNotSorted() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {oneColumn(FieldType::Long, {})}));
        fake->clearLog();
        fixture.choose(Command::SortFPOP);
        QCOMPARE(fake->calls(u"QIRTableRecordsPointerOut"_s), 0);
        QCOMPARE(fixture.grid(0).Rows(), 1);
    }

    void withoutADatabaseNothingIsSorted() {
        EditorFixture fixture;
        fixture.choose(Command::SortFPOP);
    }

    void sortingEndsAnEdit() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {stations()}));
        beginEdit(fixture, 0, 1, 1);
        sortBy(fixture, 0, 1);
        QVERIFY(!editing(fixture, 0));
        QCOMPARE(fixture.editedCell().row, -1);
    }

    void theRewriteIsOneGroupOfChanges() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {stations()}));
        fake->clearLog();
        sortBy(fixture, 0, 1);
        QStringList writes;
        for (const FakeCall &call : fake->log()) {
            if (call.member == "BeginChanges"_L1 || call.member == "EndChanges"_L1)
                writes.append(call.member);
            else if (call.member == "QIRTableRecordsPointerOut"_L1 && call.arguments.size() == 1)
                writes.append(u"record %1"_s.arg(call.arguments[0].toInt()));
            else if (call.member == "QIRTableRecordSetByIndex"_L1 && call.arguments.size() == 2)
                writes.append(u"field %1 = %2"_s.arg(call.arguments[0].toInt()).arg(call.arguments[1].toString()));
        }
        QCOMPARE(writes, QStringList({u"BeginChanges"_s, u"record 1"_s, u"field 1 = 9"_s, u"field 2 = North"_s,
                                      u"record 2"_s, u"field 1 = 10"_s, u"field 2 = south"_s, u"record 3"_s,
                                      u"field 1 = 100"_s, u"field 2 = east"_s, u"EndChanges"_s}));
    }

    void aSortCutShortByAnErrorIsUndoneAndTold() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {stations()}));
        const QList<QStringList> before = fixture.texts(0);
        fake->failOn(u"QIRTableRecordSetByIndex"_s, u"The disk is on fire."_s, 4);
        fixture.dialogs().expectMessage(u"The disk is on fire."_s, u"QIR Database Editor"_s, u"OK"_s);
        sortBy(fixture, 0, 1);
        fake->stopFailing();
        QCOMPARE(fixture.texts(0), before);
        QCOMPARE(storedRecords(fixture, 0),
                 QList<QVariantList>({{10.0, u"south"_s}, {9.0, u"North"_s}, {100.0, u"east"_s}}));
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(QApplication::overrideCursor(), nullptr);
    }

    void aSortThatIsUndoneNeverLeavesItsOrderInTheGrid_data() {
        QTest::addColumn<int>("failures");
        QTest::newRow("loading again fails once") << 1;
        QTest::newRow("loading again fails always") << 100;
    }

    void aSortThatIsUndoneNeverLeavesItsOrderInTheGrid() {
        QFETCH(int, failures);
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {stations()}));
        const QList<QStringList> before = fixture.texts(0);
        bool undone = false;
        fake->setHook([&](const FakeCall &call) {
            const bool loading = std::exchange(undone, undone || call.member == "CancelChanges"_L1);
            if (call.member == "QIRTableRecordSetByIndex"_L1 || (loading && failures-- > 0))
                throw std::runtime_error("The disk is on fire.");
        });
        fixture.dialogs().expectMessage(u"The disk is on fire."_s, u"QIR Database Editor"_s, u"OK"_s);
        sortBy(fixture, 0, 1);
        fake->setHook({});
        QVERIFY(undone);
        if (fixture.grid(0).Visible())
            QCOMPARE(fixture.texts(0), before);
        fixture.choose(Command::ColumnSizeAdjust); // the end of any command tries again
        QVERIFY(fixture.grid(0).Visible());
        QCOMPARE(fixture.texts(0), before);
    }

    void aSortedPaneIsComparedWithTheOther() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {stations()}), makeFile(u"B.DDB"_s, {stations()}));
        QCOMPARE(fixture.lines(0), QStringList({u"Stations"_s}));
        sortBy(fixture, 1, 1);
        QCOMPARE(column(fixture, 0, 1), QStringList({u"10"_s, u"9"_s, u"100"_s}));
        QCOMPARE(fixture.lines(0), QStringList({u"Stations !"_s}));
        QCOMPARE(fixture.grid(0).CellBackColor(1, 1), CellColour::Red);
        QCOMPARE(fixture.grid(1).CellBackColor(3, 1), CellColour::White);
        sortBy(fixture, 0, 1);
        QCOMPARE(fixture.lines(0), QStringList({u"Stations"_s}));
    }

    void aLoadSetsTheSortColumnBack() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {stations(), oneColumn(FieldType::Long, {u"1"_s})}));
        sortBy(fixture, 0, 2);
        fixture.clickLine(0, 1);
        QCOMPARE(fixture.window().ColonnaOrdinamento(), 1);
    }
};

QTEST_MAIN(SortTest)
#include "sort_test.moc"
