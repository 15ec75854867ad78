#include "tests/window/WindowTest.h"
#include "tests/window/find/FindHands.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// Going to a record, a field or a cell.
class GoToTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void aRecordAFieldOrBothAreGoneTo_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::newRow("record") << u"3"_s << 3 << 1;
        QTest::newRow("field") << u"Name"_s << 2 << 2;
        QTest::newRow("field in other case") << u" name "_s << 2 << 2;
        QTest::newRow("record and field") << u"3, Name"_s << 3 << 2;
        QTest::newRow("without a blank") << u"1,Speed"_s << 1 << 1;
    }

    void aRecordAFieldOrBothAreGoneTo() {
        QFETCH(QString, typed);
        QFETCH(int, row);
        QFETCH(int, column);
        EditorFixture fixture;
        openBoth(fixture, {pumps()}, {pumps()});
        fixture.clickCell(0, 2, 1);
        fixture.dialogs().expectInput(u"Record, field, or record, field"_s, u"?"_s, QString(), typed);
        hands::key(&fixture.grid(0), Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).selection(), singleCell(row, column));
        QCOMPARE(fixture.grid(1).selection(), singleCell(row, column));
    }

    void whatIsNotThereIsTold_data() {
        QTest::addColumn<QString>("typed");
        for (const char *typed : {"0", "4", "Other", "2, Other", "9, Name", "Name, 2"})
            QTest::newRow(typed) << QString::fromLatin1(typed);
    }

    void whatIsNotThereIsTold() {
        QFETCH(QString, typed);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 2, 1);
        fixture.dialogs().expectInput(u"Record, field, or record, field"_s, u"?"_s, QString(), typed);
        fixture.dialogs().expectMessage(u"There is no '%1' in this table of 3 records"_s.arg(typed), u"!"_s, u"OK"_s);
        fixture.choose(Command::GoToMenu);
        QCOMPARE(fixture.grid(0).selection(), singleCell(2, 1));
    }

    void aCancelChangesNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 2, 1);
        fixture.dialogs().expectInputCancelled(u"Record, field, or record, field"_s, u"?"_s);
        fixture.choose(Command::GoToMenu);
        QCOMPARE(fixture.grid(0).selection(), singleCell(2, 1));
    }

    void aRecordIsGoneToWhereNoneIsShown() {
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 40, 2)}, {counted(u"A"_s, 40, 2)});
        fixture.activate(0);
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.grid(0).setFocus();
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Home}) {
            const GridSelection before = fixture.grid(0).selection();
            hands::key(&fixture.grid(0), key);
            QCOMPARE(fixture.grid(0).selection(), before);
        }
        fixture.dialogs().expectInput(u"Record, field, or record, field"_s, u"?"_s, QString(), u"5"_s);
        fixture.choose(Command::GoToMenu);
        QCOMPARE(fixture.grid(0).selection(), singleCell(5, 1));
    }

    void aFarRecordComesIntoView() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"Many"_s, 500, 2)}));
        fixture.dialogs().expectInput(u"Record, field, or record, field"_s, u"?"_s, QString(), u"400"_s);
        fixture.choose(Command::GoToMenu);
        QVERIFY(!fixture.grid(0).cellRectangle().isEmpty());
    }
};

QTEST_MAIN(GoToTest)
#include "go_to_test.moc"
