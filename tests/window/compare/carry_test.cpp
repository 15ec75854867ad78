#include "structure/CarryLosses.h"
#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

void select(EditorFixture &fixture, int pane, const GridSelection &cells) {
    fixture.clickCell(pane, cells.row, cells.column);
    hands::click(fixture.grid(pane).viewport(), Qt::LeftButton, Qt::ShiftModifier,
                 fixture.cellCentre(pane, cells.rowEnd, cells.columnEnd));
}

void forgetChanges(EditorFixture &fixture) {
    for (const int pane : {0, 1}) {
        if (!fixture.database(pane).isEmpty())
            fixture.database(pane).setDtbHasChanged(false);
    }
}

/// counted() with every value one more.
TableOfTexts others(const QString &name, int records, int fields) {
    TableOfTexts table = counted(name, records, fields);
    for (FieldOfTexts &field : table.fields)
        for (QString &text : field.texts)
            text = QString::number(text.toInt() + 1);
    return table;
}

/// One text field on one side, a whole number on the other.
TableOfTexts texts(const QStringList &values) {
    return {u"A"_s, {{u"V"_s, FieldType::Text, values, 20}}};
}
TableOfTexts wholes(const QStringList &values) {
    return {u"A"_s, {{u"V"_s, FieldType::Long, values}}};
}

} // namespace

/// Carrying cells, records and tables to the other side.
class CarryTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void selectedCellsGoToTheSamePlaceInTheKeysDirectionWhicheverPaneIsActive() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 4, 3)}, {others(u"A"_s, 4, 3)});
        select(fixture, 1, {2, 2, 3, 3});
        QCOMPARE(fixture.activePane(), 1);
        strike(fixture, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(recordsOf(fixture, 1)[1], QStringList({u"202"_s, u"202"_s, u"203"_s}));
        QCOMPARE(recordsOf(fixture, 1)[2], QStringList({u"302"_s, u"302"_s, u"303"_s}));
        QCOMPARE(fixture.texts(1), recordsOf(fixture, 1));
        QCOMPARE(redCells(fixture, 0), redCells(fixture, 1));
        QCOMPARE(redCells(fixture, 0).size(), 8U);
        QCOMPARE(statusRight(fixture), u"changed, 1 table differs, 8 cells here"_s);
        select(fixture, 1, {1, 1, 1, 1});
        strike(fixture, Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(recordsOf(fixture, 0)[0], QStringList({u"102"_s, u"102"_s, u"103"_s}));
        QCOMPARE(fixture.activePane(), 1);
        forgetChanges(fixture);
    }

    void theMenuCarriesFromTheActivePane() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 1, 1)}, {others(u"A"_s, 1, 1)});
        fixture.clickCell(1, 1, 1);
        fixture.choose(Command::CarryCellsMenu);
        QCOMPARE(recordsOf(fixture, 0), QList<QStringList>{{u"102"_s}});
        QCOMPARE(fixture.lines(0), QStringList(u"A"_s)); // the mark goes with the last difference
        forgetChanges(fixture);
    }

    void withCtrlTheWalkGoesOn() {
        EditorFixture fixture;
        TableOfTexts other = counted(u"A"_s, 3, 2);
        other.fields[0].texts = {u"1"_s, u"201"_s, u"3"_s};
        other.fields[1].texts[0] = u"4"_s;
        openBoth(fixture, {counted(u"A"_s, 3, 2)}, {other});
        fixture.clickCell(0, 1, 1);
        const QList<QPair<int, int>> stops{{1, 2}, {3, 1}, {3, 1}};
        for (const auto &[row, column] : stops) {
            strike(fixture, Qt::Key_Right, Qt::ControlModifier | Qt::AltModifier);
            QCOMPARE(fixture.grid(1).Row(), row);
            QCOMPARE(fixture.grid(1).Col(), column);
        }
        QCOMPARE(statusLeft(fixture), u"No further difference"_s);
        QCOMPARE(recordsOf(fixture, 0), recordsOf(fixture, 1));
        forgetChanges(fixture);
    }

    void withCtrlARecordIsCarriedAndTheWalkGoesOn() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 3, 2)}, {others(u"A"_s, 3, 2)});
        fixture.clickCell(0, 1, 2);
        strike(fixture, Qt::Key_Right, Qt::AltModifier | Qt::ShiftModifier);
        QCOMPARE(recordsOf(fixture, 1)[0], QStringList({u"101"_s, u"102"_s}));
        QCOMPARE(fixture.grid(0).Row(), 1);
        strike(fixture, Qt::Key_F8, {});
        strike(fixture, Qt::Key_Left, Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier);
        QCOMPARE(recordsOf(fixture, 0)[1], QStringList({u"202"_s, u"203"_s}));
        QCOMPARE(fixture.grid(0).selection(), singleCell(3, 1));
        forgetChanges(fixture);
    }

    void aMenusCommandChosenWithCtrlGoesOnToTheNextTable() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 1, 1), counted(u"B"_s, 2, 1)}, {others(u"A"_s, 1, 1), others(u"B"_s, 2, 1)});
        const auto chooseWithCtrl = [&](Command command) {
            QMenu &menu = fixture.menu(Menu::ModeMenu);
            menu.popup(fixture.window().mapToGlobal(QPoint(10, 30)));
            hands::turnLoop();
            hands::click(&menu, Qt::LeftButton, Qt::ControlModifier,
                         menu.actionGeometry(&fixture.action(command)).center());
        };
        fixture.dialogs().expectMessage(u"Make the records of table 'A' on the right equal to those on the left?\n"
                                        "Changed: 1, added: 0, removed: 0."_s,
                                        u"?"_s, u"Yes"_s);
        chooseWithCtrl(Command::CarryTableMenu);
        QCOMPARE(fixture.shownTable(0), u"B"_s);
        QCOMPARE(fixture.grid(0).selection(), singleCell(1, 1));
        chooseWithCtrl(Command::CarryRecordMenu);
        QCOMPARE(recordsOf(fixture, 1)[0], QStringList(u"101"_s));
        QCOMPARE(fixture.grid(0).selection(), singleCell(2, 1));
        forgetChanges(fixture);
    }

    void cellsThatTheOtherSideLacksAreToldOfAndNothingIsWritten() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 4, 2)}, {others(u"A"_s, 2, 2)});
        const QList<QStringList> before = recordsOf(fixture, 1);
        select(fixture, 0, {2, 1, 3, 2});
        fixture.dialogs().expectMessage(u"The other side does not have all of the selected cells."_s, u"!"_s, u"OK"_s);
        strike(fixture, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(recordsOf(fixture, 1), before);
        QVERIFY(!fixture.database(1).DtbHasChanged());
    }

    void equalCellsAreSaidToBeEqual() {
        EditorFixture fixture;
        TableOfTexts wide = counted(u"A"_s, 2, 2);
        wide.fields.push_back({u"Drawing"_s, FieldType::Text, {u"P-1"_s, u"P-2"_s}});
        openBoth(fixture, {counted(u"A"_s, 2, 2)}, {wide});
        strike(fixture, Qt::Key_F8, {}); // a field that the left side lacks
        strike(fixture, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(statusLeft(fixture), u"The cells are equal"_s);
        QVERIFY(!fixture.database(1).DtbHasChanged());
    }

    void aLargeBlockIsComparedToo() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 26'000, 2)}, {others(u"A"_s, 26'000, 2)});
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_A, Qt::ControlModifier);
        strike(fixture, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(fixture.editor().CelleDiverse().count(), 0U);
        QCOMPARE(fixture.lines(0) + fixture.lines(1), QStringList({u"A"_s, u"A"_s}));
        QCOMPARE(stored(fixture, 1, 26'000, 2), QVariant(2'600'002));
        QVERIFY(fixture.grid(1).CellBackColor(26'000, 2) == CellColour::White);
        forgetChanges(fixture);
    }

    void valuesThatWouldNotSurviveAreNamedAndSkippedOnRequest() {
        for (const QString &answer : {u"Yes"_s, u"No"_s, u"Cancel"_s}) {
            EditorFixture fixture;
            openBoth(fixture, {texts({u"7"_s, u"seven"_s, u"9 bar"_s})}, {wholes({u"1"_s, u"2"_s, u"3"_s})});
            select(fixture, 0, {1, 1, 3, 1});
            fixture.dialogs().expectMessage(
                u"Field 'V' is text (20) on the left and long on the right.\n"
                "2 values would not stay what they are, the first is 'seven' in record 2, field 'V'.\n"
                "Carry these values too? With No the cells that would not take them stay as they are."_s,
                u"?"_s, answer);
            strike(fixture, Qt::Key_Right, Qt::AltModifier);
            const QList<QStringList> wanted = answer == u"Yes"_s  ? QList<QStringList>{{u"7"_s}, {u"0"_s}, {u"9"_s}}
                                              : answer == u"No"_s ? QList<QStringList>{{u"7"_s}, {u"2"_s}, {u"3"_s}}
                                                                  : QList<QStringList>{{u"1"_s}, {u"2"_s}, {u"3"_s}};
            QCOMPARE(recordsOf(fixture, 1), wanted);
            QCOMPARE(fixture.texts(1), wanted);
            forgetChanges(fixture);
        }
    }

    void fieldsOfAnotherTypeAreToldOfBeforeAnythingIsWritten() {
        EditorFixture fixture;
        openBoth(fixture, {wholes({u"7"_s})}, {texts({u"x"_s})});
        fixture.clickCell(0, 1, 1);
        const QString question = u"Field 'V' is long on the left and text (20) on the right.\n"
                                 "Carry the values all the same?"_s;
        fixture.dialogs().expectMessage(question, u"?"_s, u"No"_s);
        strike(fixture, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>{{u"x"_s}});
        fixture.dialogs().expectMessage(question, u"?"_s, u"Yes"_s);
        strike(fixture, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>{{u"7"_s}});
        forgetChanges(fixture);
    }

    void aNumberCarriedIntoATextStaysADifference() {
        EditorFixture fixture;
        openBoth(fixture, {wholes({u"7"_s, u"8"_s})}, {texts({u"x"_s, u"y"_s})});
        fixture.clickCell(0, 1, 1);
        fixture.dialogs().expectMessage(u"Field 'V' is long on the left and text (20) on the right.\n"
                                        "Carry the values all the same?"_s,
                                        u"?"_s, u"Yes"_s);
        strike(fixture, Qt::Key_Right, Qt::AltModifier);
        const Cells red = redCells(fixture, 0);
        fixture.choose(Command::CompareAgainMenu); // finds what the carrying has left
        QCOMPARE(red, redCells(fixture, 0));
        QCOMPARE(red, (Cells{{1, 1}, {2, 1}}));
        forgetChanges(fixture);
    }

    void zeroesOfEitherSignAreNoDifferenceInACarriedBlock() {
        EditorFixture fixture;
        const auto doubles = [](const QStringList &values) {
            return TableOfTexts{u"A"_s, {{u"V"_s, FieldType::Double, values}}};
        };
        openBoth(fixture, {doubles({u"1"_s, u"-0"_s, u"3"_s})}, {doubles({u"2"_s, u"0"_s, u"4"_s})});
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.grid(0).setSelection({1, 1, 3, 1}); // the second record, which is equal, is not shown and stays
        fixture.choose(Command::CarryCellsMenu);
        QCOMPARE(recordsOf(fixture, 1), (QList<QStringList>{{u"1"_s}, {u"0"_s}, {u"3"_s}}));
        QCOMPARE(redCells(fixture, 1), Cells{});
        QCOMPARE(fixture.lines(0) + fixture.lines(1), QStringList({u"A"_s, u"A"_s}));
        forgetChanges(fixture);
    }

    void aRecordGoesToTheSameNumberOrToTheEnd() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 5, 2)}, {others(u"A"_s, 2, 2)});
        fixture.clickCell(0, 2, 1);
        fixture.choose(Command::CarryRecordMenu);
        QCOMPARE(recordsOf(fixture, 1), (QList<QStringList>{{u"102"_s, u"103"_s}, {u"201"_s, u"202"_s}}));
        fixture.clickCell(0, 5, 1);
        fixture.choose(Command::CarryRecordMenu);
        QCOMPARE(recordsOf(fixture, 1).size(), 3);
        QCOMPARE(recordsOf(fixture, 1)[2], QStringList({u"501"_s, u"502"_s}));
        QCOMPARE(fixture.grid(1).Rows(), 4);
        QCOMPARE(statusLeft(fixture), u"Added as record 3"_s);
        QVERIFY(redCells(fixture, 1).contains({3, 1}));
        forgetChanges(fixture);
    }

    void aRecordGoesIntoATableWithoutRecords() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 2, 2)}, {counted(u"A"_s, 0, 2)});
        fixture.clickCell(0, 2, 1);
        fixture.choose(Command::CarryRecordMenu);
        QCOMPARE(recordsOf(fixture, 1), (QList<QStringList>{{u"201"_s, u"202"_s}}));
        QVERIFY(fixture.grid(1).Visible());
        forgetChanges(fixture);
    }

    void aWholeTableBecomesEqualAfterAQuestionWithTheNumbers_data() {
        QTest::addColumn<int>("leftRecords");
        QTest::addColumn<int>("rightRecords");
        QTest::addColumn<QString>("numbers");
        QTest::newRow("longer") << 5 << 3 << u"Changed: 3, added: 2, removed: 0."_s;
        QTest::newRow("shorter") << 2 << 4 << u"Changed: 2, added: 0, removed: 2."_s;
        QTest::newRow("into none") << 2 << 0 << u"Changed: 0, added: 2, removed: 0."_s;
        QTest::newRow("from none") << 0 << 2 << u"Changed: 0, added: 0, removed: 2."_s;
    }

    void aWholeTableBecomesEqualAfterAQuestionWithTheNumbers() {
        QFETCH(int, leftRecords);
        QFETCH(int, rightRecords);
        QFETCH(QString, numbers);
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, leftRecords, 2)}, {others(u"A"_s, rightRecords, 2)});
        const QString question =
            u"Make the records of table 'A' on the right equal to those on the left?\n"_s + numbers;
        const QList<QStringList> before = recordsOf(fixture, 1);
        fixture.dialogs().expectMessage(question, u"?"_s, u"No"_s);
        fixture.choose(Command::CarryTableMenu);
        QCOMPARE(recordsOf(fixture, 1), before);
        fixture.dialogs().expectMessage(question, u"?"_s, u"Yes"_s);
        fixture.choose(Command::CarryTableMenu);
        QCOMPARE(recordsOf(fixture, 1), recordsOf(fixture, 0));
        QCOMPARE(fixture.texts(1), fixture.texts(0));
        QCOMPARE(fixture.lines(0) + fixture.lines(1), QStringList({u"A"_s, u"A"_s}));
        fixture.choose(Command::CarryTableMenu);
        QCOMPARE(statusLeft(fixture), u"The records are equal"_s);
        forgetChanges(fixture);
    }

    void marksOfWhatIsStoredFollowACarriedCell() {
        EditorFixture fixture;
        const TableOfTexts bytes{u"T"_s, {{u"B"_s, FieldType::Byte, {u"1"_s, u"2"_s}}}};
        openBoth(fixture, {bytes}, {bytes});
        fixture.clickLine(0, 0);
        fixture.activate(0);
        fixture.grid(0).setSelection(singleCell(1, 1));
        fixture.grid(0).setFocus();
        hands::key(&fixture.grid(0), Qt::Key_Return);
        hands::type(&fixture.editor().txtEdit(0), u"999"_s);
        hands::key(&fixture.editor().txtEdit(0), Qt::Key_Return);
        QVERIFY(fixture.grid(0).isUnlikeStored(1, 1));
        fixture.choose(Command::CarryCellsMenu);
        QVERIFY(fixture.grid(1).isUnlikeStored(1, 1));
        fixture.grid(0).setSelection(singleCell(2, 1));
        fixture.grid(1).setSelection(singleCell(1, 1));
        forgetChanges(fixture);
    }

    void fieldsOfOneSideAloneAreNoChangeOfItsRecords() {
        EditorFixture fixture;
        const TableOfTexts narrow{u"T"_s, {{u"A"_s, FieldType::Long, {u"1"_s, u"2"_s}}}};
        const TableOfTexts wide{
            u"T"_s, {{u"A"_s, FieldType::Long, {u"1"_s, u"2"_s}}, {u"B"_s, FieldType::Long, {u"5"_s, u"6"_s}}}};
        openBoth(fixture, {narrow}, {wide});
        fixture.clickLine(0, 0);
        fixture.activate(0);
        fixture.choose(Command::CarryTableMenu);
        QCOMPARE(statusLeft(fixture), u"The records are equal"_s);
        QVERIFY(!fixture.database(1).DtbHasChanged());
    }

    void fieldsThatTheOtherSideLacksAreNamedBeforeARecordIsCarried() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 3, 4)}, {others(u"A"_s, 2, 2)});
        const QList<QStringList> before = recordsOf(fixture, 1);
        const QString question = u"The record goes without these fields, which the other side lacks: Field3, Field4.\n"
                                 "Carry the values all the same?"_s;
        for (const int row : {1, 3}) {
            fixture.clickCell(0, row, 1);
            fixture.dialogs().expectMessage(question, u"?"_s, u"No"_s);
            fixture.choose(Command::CarryRecordMenu);
            QCOMPARE(recordsOf(fixture, 1), before);
        }
        fixture.dialogs().expectMessage(question, u"?"_s, u"Yes"_s);
        fixture.choose(Command::CarryRecordMenu);
        QCOMPARE(recordsOf(fixture, 1).last(), QStringList({u"301"_s, u"302"_s}));
        // The other way nothing is left behind.
        fixture.clickCell(1, 2, 1);
        fixture.choose(Command::CarryRecordMenu);
        QCOMPARE(recordsOf(fixture, 0)[1], QStringList({u"202"_s, u"203"_s, u"203"_s, u"204"_s}));
        QCOMPARE(statusLeft(fixture), u"Fields that only one side has stay as they are."_s);
        forgetChanges(fixture);
    }

    void recordsOfACarriedTableAreAddedByWholeColumns() {
        const UseFake fake(2);
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 7, 3)}, {counted(u"A"_s, 2, 3)});
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"Yes"_s); });
        fake->clearLog();
        fixture.choose(Command::CarryTableMenu);
        QCOMPARE(callsOf({u"AddRecord"_s, u"AppendRecords"_s}), QStringList(u"AppendRecords(5)"_s));
        QCOMPARE(callsOf({u"QIRTableRecordSetByIndex"_s}), QStringList());
        QCOMPARE(recordsOf(fixture, 1), recordsOf(fixture, 0));
        forgetChanges(fixture);
    }

    void aTableThatTheOtherSideLacksIsCopiedThere() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 1, 1), counted(u"B"_s, 2, 2)}, {counted(u"A"_s, 1, 1)});
        fixture.clickLine(0, 1);
        fixture.dialogs().expectMessage(u"Copy table 'B' to the other side, which has none of this name? Records: 2."_s,
                                        u"?"_s, u"Yes"_s);
        fixture.choose(Command::CarryTableMenu);
        QCOMPARE(tableNames(fixture, 1), QStringList({u"A"_s, u"B"_s}));
        QCOMPARE(recordsOf(fixture, 1), recordsOf(fixture, 0));
        fixture.clickLine(0, 0);
        forgetChanges(fixture);
    }

    void whatAFieldHolds_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<bool>("kept");
        const auto row = [](const char *name, const QString &text, FieldType from, FieldType to, bool kept) {
            QTest::newRow(name) << text << static_cast<int>(from) << static_cast<int>(to) << kept;
        };
        row("text that is a number", u"12"_s, FieldType::Text, FieldType::Int, true);
        row("text that begins with one", u"12 bar"_s, FieldType::Text, FieldType::Int, false);
        row("no text", QString(), FieldType::Text, FieldType::Int, false);
        row("leading zeros", u"007"_s, FieldType::Text, FieldType::Long, false);
        row("a plus sign", u"+5"_s, FieldType::Text, FieldType::Long, false);
        row("blanks around", u" 12"_s, FieldType::Text, FieldType::Long, false);
        row("zeros at the end", u"1.50"_s, FieldType::Text, FieldType::Double, false);
        row("text that fits", u"four"_s, FieldType::Text, FieldType::Text, true);
        row("text too long", u"fives"_s, FieldType::Text, FieldType::Text, false);
        row("four of two units", u"\U0001F600\U0001F600\U0001F600\U0001F600"_s, FieldType::Text, FieldType::Text, true);
        row("number as text", u"1234"_s, FieldType::Long, FieldType::Text, true);
        row("long number as text", u"12345"_s, FieldType::Long, FieldType::Text, false);
        row("fraction", u"1.5"_s, FieldType::Double, FieldType::Long, false);
        row("255", u"255"_s, FieldType::Long, FieldType::Byte, true);
        row("256", u"256"_s, FieldType::Long, FieldType::Byte, false);
        row("-1", u"-1"_s, FieldType::Long, FieldType::Byte, false);
        row("40000", u"40000"_s, FieldType::Long, FieldType::Int, false);
        row("2147483648", u"2147483648"_s, FieldType::Double, FieldType::Long, false);
        row("1 as bool", u"1"_s, FieldType::Long, FieldType::Bool, true);
        row("2 as bool", u"2"_s, FieldType::Long, FieldType::Bool, false);
        row("anything as double", u"1e+300"_s, FieldType::Double, FieldType::Date, true);
    }

    void whatAFieldHolds() {
        QFETCH(QString, text);
        QFETCH(int, from);
        QFETCH(int, to);
        Q_UNUSED(from)
        const FieldShape target{static_cast<FieldType>(to), 4};
        QTEST(survives(text, target), "kept");
    }
};

QTEST_MAIN(CarryTest)
#include "carry_test.moc"
