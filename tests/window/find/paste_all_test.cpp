#include "tests/window/WindowTest.h"
#include "tests/window/find/FindHands.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// Pasting a whole block.
class PasteAllTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void theWholeBlockIsLaidFromTheFirstSelectedCellOn() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 2, 1);
        QGuiApplication::clipboard()->setText(u"7\tseven\r8\teight"_s);
        fixture.choose(Command::PasteAllMenu);
        QCOMPARE(recordsOf(fixture, 0),
                 (QList<QStringList>{{u"1200"_s, u"Main"_s}, {u"7"_s, u"seven"_s}, {u"8"_s, u"eight"_s}}));
        QCOMPARE(fixture.grid(0).selection(), (GridSelection{2, 1, 3, 2}));
    }

    void missingRecordsAreAddedWhenTheUserWantsThem() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 3, 2);
        QGuiApplication::clipboard()->setText(u"a\rb\rc"_s);
        fixture.dialogs().expectMessage(u"The block needs 2 records more. Add them?"_s, u"?"_s, u"Yes"_s);
        fixture.choose(Command::PasteAllMenu);
        QCOMPARE(recordsOf(fixture, 0).mid(2),
                 (QList<QStringList>{{u"60"_s, u"a"_s}, {u"0"_s, u"b"_s}, {u"0"_s, u"c"_s}}));
        QCOMPARE(fixture.texts(0), recordsOf(fixture, 0));
    }

    void withoutThemTheRestIsDropped() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 3, 2);
        QGuiApplication::clipboard()->setText(u"a\rb\rc"_s);
        fixture.dialogs().expectMessage(u"The block needs 2 records more. Add them?"_s, u"?"_s, u"No"_s);
        fixture.choose(Command::PasteAllMenu);
        QCOMPARE(recordsOf(fixture, 0).mid(2), (QList<QStringList>{{u"60"_s, u"a"_s}}));
    }

    void whatHadNoPlaceIsToldOf() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 2, 2);
        QGuiApplication::clipboard()->setText(u"7\tseven\r8\teight"_s);
        fixture.choose(Command::PasteAllMenu);
        QCOMPARE(recordsOf(fixture, 0).mid(1), (QList<QStringList>{{u"900"_s, u"7"_s}, {u"60"_s, u"8"_s}}));
        QCOMPARE(statusLeft(fixture),
                 u"2 pasted values had no place in the table (first: row 1, column 2 of the block)"_s);
        fixture.clickCell(0, 3, 1);
        QGuiApplication::clipboard()->setText(u"5x\ta\tb\r6\tc"_s);
        fixture.dialogs().expectMessage(u"The block needs 1 record more. Add it?"_s, u"?"_s, u"No"_s);
        fixture.choose(Command::PasteAllMenu);
        QCOMPARE(statusLeft(fixture),
                 u"3 pasted values had no place in the table (first: row 1, column 3 of the block); 1 is stored "
                 "otherwise (record 3, Speed [long], \"5x\")"_s);
    }

    void aTableWithoutRecordsGetsThose() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"None"_s, 0, 2)}));
        QGuiApplication::clipboard()->setText(u"7\t8\r9\t10"_s);
        fixture.dialogs().expectMessage(u"The block needs 2 records more. Add them?"_s, u"?"_s, u"Yes"_s);
        fixture.choose(Command::PasteAllMenu);
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"7"_s, u"8"_s}, {u"9"_s, u"10"_s}}));
        QCOMPARE(fixture.texts(0), recordsOf(fixture, 0));
        QVERIFY(fixture.grid(0).Visible());
        QCOMPARE(fixture.grid(0).selection(), (GridSelection{1, 1, 2, 2}));
        fixture.choose(Command::UndoMenu);
        QCOMPARE(fixture.database(0).QirTableRecordsCount(), 0);
        QVERIFY(!fixture.grid(0).Visible());
    }

    void aTableThatStaysWithoutRecordsTakesNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"None"_s, 0, 2)}));
        QGuiApplication::clipboard()->setText(u"7\t8\r9"_s);
        fixture.dialogs().expectMessage(u"The block needs 2 records more. Add them?"_s, u"?"_s, u"No"_s);
        fixture.choose(Command::PasteAllMenu);
        QCOMPARE(statusLeft(fixture),
                 u"3 pasted values had no place in the table (first: row 1, column 1 of the block)"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QVERIFY(!fixture.grid(0).Visible());
    }

    void aTableWithoutFieldsTakesNoBlock() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"None"_s, 0, 0)}));
        QGuiApplication::clipboard()->setText(u"7"_s);
        fixture.choose(Command::PasteAllMenu);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void theBlockThatWasAskedAboutIsLaid() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 3, 2);
        QGuiApplication::clipboard()->setText(u"a\rb"_s);
        fixture.dialogs().expect([](QDialog &dialog) {
            QGuiApplication::clipboard()->setText(u"other"_s); // another program has copied something
            return pressButton(dialog, u"Yes"_s);
        });
        fixture.choose(Command::PasteAllMenu);
        QCOMPARE(recordsOf(fixture, 0).mid(2), (QList<QStringList>{{u"60"_s, u"a"_s}, {u"0"_s, u"b"_s}}));
    }

    void recordsAreAddedAtOnceWhereTheComponentCan() {
        const UseFake fake(100);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 3, 2);
        QGuiApplication::clipboard()->setText(u"a\rb\rc"_s);
        fixture.dialogs().expectMessage(u"The block needs 2 records more. Add them?"_s, u"?"_s, u"Yes"_s);
        FakeControl::get().clearLog();
        fixture.choose(Command::PasteAllMenu);
        QCOMPARE(callsOf({u"AppendRecords"_s, u"AddRecord"_s}), QStringList(u"AppendRecords(2)"_s));
        QCOMPARE(recordsOf(fixture, 0).size(), 5);
    }

    void aCancelPastesNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 3, 2);
        QGuiApplication::clipboard()->setText(u"a\rb"_s);
        fixture.dialogs().expectMessage(u"The block needs 1 record more. Add it?"_s, u"?"_s, u"Cancel"_s);
        fixture.choose(Command::PasteAllMenu);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void aPasteTellsWhatLayOutsideAndWhatWasChanged() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        selectBlock(fixture, 0, {1, 1, 2, 1});
        QGuiApplication::clipboard()->setText(u"12x\ta\r5\tb\r7"_s);
        hands::key(&fixture.grid(0), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.window().pasteOutcome(),
                 u"3 pasted values lay outside the selection (first: row 1, column 2 of the block); 1 is stored "
                 "otherwise (record 1, Speed [long], \"12x\")"_s);
        QGuiApplication::clipboard()->setText(u"6"_s);
        hands::key(&fixture.grid(0), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.window().pasteOutcome(), QString());
    }
};

QTEST_MAIN(PasteAllTest)
#include "paste_all_test.moc"
