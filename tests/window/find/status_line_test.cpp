#include "tests/tools/fake/FakeControl.h"
#include "tests/window/WindowTest.h"
#include "tests/window/find/FindHands.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

TableOfTexts allTypes() {
    return {u"All"_s,
            {{u"O"_s, FieldType::Bool, {u"1"_s, u"0"_s}},
             {u"B"_s, FieldType::Byte, {u"3"_s, u"1"_s}},
             {u"I"_s, FieldType::Int, {u"-5"_s, u"0"_s}},
             {u"L"_s, FieldType::Long, {u"7"_s, u"0"_s}},
             {u"D"_s, FieldType::Double, {u"0.5"_s, u"0"_s}},
             {u"W"_s, FieldType::Date, {u"20250913.0605"_s, u"2025"_s}},
             {u"T"_s, FieldType::Text, {u"a pump"_s, QString::fromUcs4(U"\U0001F600!")}, 20}}};
}

/// What the line says of a cell, behind its table and record.
QString ofCell(EditorFixture &fixture, int row, int column) {
    fixture.clickCell(0, row, column);
    return statusLeft(fixture).section(u", "_s, 2);
}

} // namespace

/// What the line below the panes says of the current cell.
class StatusLineTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void eachTypeTellsItsRoom() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {allTypes()}));
        QCOMPARE(ofCell(fixture, 1, 1), u"O: bool, 1, 0 or 1"_s);
        QCOMPARE(ofCell(fixture, 1, 2), u"B: byte, 3, 0 to 255"_s);
        QCOMPARE(ofCell(fixture, 1, 3), u"I: int, -5, -32768 to 32767"_s);
        QCOMPARE(ofCell(fixture, 1, 4), u"L: long, 7, -2147483648 to 2147483647"_s);
        QCOMPARE(ofCell(fixture, 1, 5), u"D: double, 0.5"_s);
        QCOMPARE(ofCell(fixture, 1, 6), u"W: date, 2025-09-13 06:05"_s);
        QCOMPARE(ofCell(fixture, 2, 6), u"W: date, 2025"_s);
        QCOMPARE(ofCell(fixture, 1, 7), u"T: text, a pump, 6 of 20 characters"_s);
        QCOMPARE(ofCell(fixture, 2, 7), u"T: text, "_s + QString::fromUcs4(U"\U0001F600!") + u", 2 of 20 characters"_s);
    }

    void whatIsStoredOtherwiseIsTold() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {allTypes()}));
        beginEdit(fixture, 0, 1, 2);
        retype(fixture, 0, u"999"_s);
        QCOMPARE(statusLeft(fixture), u"All, record 1 of 2, B: byte, 999, stored: 255, 0 to 255"_s);
        retype(fixture, 0, u"99"_s);
        QCOMPARE(statusLeft(fixture), u"All, record 1 of 2, B: byte, 99, 0 to 255"_s);
        fixture.database(0).setDtbHasChanged(false);
    }

    void aTextThatRunsFromTheRightLeavesTheRestInItsOrder() {
        const QString word = u"\u05E9\u05DC\u05D5\u05DD"_s;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"T"_s, {word, u"abc"_s})}));
        QCOMPARE(ofCell(fixture, 1, 1), u"Name: text, \u2068"_s + word + u"\u2069, 4 of 20 characters"_s);
        QCOMPARE(ofCell(fixture, 2, 1), u"Name: text, abc, 3 of 20 characters"_s);
    }

    void aTextThatIsTypedIsCounted() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {allTypes()}));
        beginEdit(fixture, 0, 1, 7);
        retype(fixture, 0, u"twenty-one characters"_s);
        QVERIFY(statusLeft(fixture).endsWith(
            u"twenty-one characters, stored: twenty-one character, 21 of 20 characters"_s));
        fixture.database(0).setDtbHasChanged(false);
    }

    void aSmallerSizeIsTold() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {allTypes()}));
        fixture.clickCell(0, 1, 7);
        fixture.dialogs().expectInput(u"Field size"_s, u"?"_s, u"20"_s, u"2"_s);
        fixture.choose(Command::ResizeTextField);
        QCOMPARE(ofCell(fixture, 1, 7), u"T: text, a pump, stored: a, 6 of 2 characters"_s);
        fixture.database(0).setDtbHasChanged(false);
    }

    void theOtherPaneHasSizesOfItsOwn() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"T"_s, {u"abc"_s})}, {allTypes()});
        fixture.clickLine(1, 0);
        fixture.activate(1);
        fixture.clickCell(1, 1, 7);
        QVERIFY(statusLeft(fixture).endsWith(u"6 of 20 characters"_s));
        fixture.clickLine(0, 1);
        fixture.clickCell(0, 1, 1);
        QCOMPARE(statusLeft(fixture), u"T, record 1 of 1, Name: text, abc, 3 of 20 characters"_s);
    }

    void aPasteTellsWhatBecameOfIt() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {allTypes()}));
        fixture.clickCell(0, 1, 2);
        QGuiApplication::clipboard()->setText(u"300\t7"_s);
        hands::key(&fixture.grid(0), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(statusLeft(fixture), u"1 pasted value lay outside the selection (row 1, column 2 of the block); "
                                      "1 is stored otherwise (record 1, B [byte], \"300\")"_s);
        fixture.clickCell(0, 2, 2);
        QCOMPARE(statusLeft(fixture), u"All, record 2 of 2, B: byte, 1, 0 to 255"_s);
        fixture.choose(Command::PasteAllMenu);
        QCOMPARE(statusLeft(fixture), u"Of the pasted values 1 is stored otherwise (record 2, B [byte], \"300\")"_s);
        fixture.database(0).setDtbHasChanged(false);
    }

    void aComponentThatFailsSilencesTheSizeAlone() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()})); // at its first field, which is no text
        fake->failOn(u"QIRTableFieldSize"_s, u"no size"_s);
        fixture.grid(0).setSelection(singleCell(2, 2));
        runCommand([] {});
        QCOMPARE(statusLeft(fixture), u"Pumps, record 2 of 3, Name: text, Spare"_s);
        fake->stopFailing();
    }

    void whatIsTypedAsksTheComponentForNoSize() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"T"_s, {u"abc"_s, u"d"_s})}));
        beginEdit(fixture, 0, 1, 1);
        hands::type(&fixture.cellEditor(0), u"x"_s);
        const int before = fake->calls(u"QIRTableFieldSize"_s);
        hands::type(&fixture.cellEditor(0), u"yz"_s);
        QCOMPARE(fake->calls(u"QIRTableFieldSize"_s), before);
        fixture.database(0).setDtbHasChanged(false);
    }
};

QTEST_MAIN(StatusLineTest)
#include "status_line_test.moc"
