#include "tests/window/EditSupport.h"
#include "tests/window/PopupTools.h"
#include "tests/window/WindowTest.h"

#include "tests/tools/fake/FakeControl.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include <stdexcept>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// Cloning tables, sizes and areas between the panes.
class CloneTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void aTableIsClonedWithItsFieldsAndRecords() {
        TableOfTexts all{u"All"_s,
                         {{u"b"_s, FieldType::Bool, {u"1"_s, u"0"_s}},
                          {u"y"_s, FieldType::Byte, {u"255"_s, u"0"_s}},
                          {u"i"_s, FieldType::Int, {u"-32768"_s, u"7"_s}},
                          {u"l"_s, FieldType::Long, {u"2147483647"_s, u"-1"_s}},
                          {u"d"_s, FieldType::Double, {u"0.1"_s, u"-1e300"_s}},
                          {u"t"_s, FieldType::Date, {u"20240229.235959"_s, u"0"_s}},
                          {u"x"_s, FieldType::Text, {u"tab\there"_s, u" blanks "_s}, 12}}};
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {all, numbers(u"Z"_s, {u"1"_s})}),
                         makeFile(u"R.DDB"_s, {numbers(u"Z"_s, {u"1"_s})}));
        fixture.clickLine(0, 0);
        clone(fixture, 0, 0);
        QCOMPARE(fixture.lines(0), QStringList({u"All"_s, u"Z"_s}));
        QCOMPARE(fixture.lines(1), fixture.lines(0));
        QCOMPARE(fixture.list(0).ListIndex(), 0);
        QCOMPARE(fixture.list(1).ListIndex(), 0);
        QCOMPARE(fieldsOf(fixture, 1), fieldsOf(fixture, 0));
        QCOMPARE(recordsOf(fixture, 1), recordsOf(fixture, 0));
        QCOMPARE(fixture.texts(1), fixture.texts(0));
        QCOMPARE(fixture.texts(1).size(), 2);
        QCOMPARE(redCells(fixture, 0), Cells());
        QVERIFY(fixture.database(1).DtbHasChanged());
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.activePane(), 0);
    }

    void aTableWithoutRecordsIsClonedWithItsFieldsInOrder() {
        TableOfTexts empty{u"Empty"_s, {{u"b"_s, FieldType::Text, {}, 3}, {u"a"_s, FieldType::Long, {}}}};
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {empty}), makeFile(u"R.DDB"_s, {}));
        fixture.clickLine(0, 0);
        clone(fixture, 0, 0);
        QCOMPARE(fieldsOf(fixture, 1), QStringList({u"b text 3"_s, u"a long 0"_s}));
        QCOMPARE(recordsOf(fixture, 1).size(), 0);
        QVERIFY(!fixture.grid(1).Visible());
        QCOMPARE(fixture.lines(1), QStringList(u"Empty"_s));
    }

    void aTableIsClonedIntoThePaneWhosePlaceholderWasPressed() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s})}),
                         makeFile(u"R.DDB"_s, {numbers(u"A"_s, {u"1"_s}), pumps(u"B"_s)}));
        clone(fixture, 0, 1);
        QCOMPARE(tableNames(fixture, 0), QStringList({u"A"_s, u"B"_s}));
        QCOMPARE(fixture.texts(0), fixture.texts(1));
        QVERIFY(fixture.grid(0).Visible());
        QCOMPARE(fixture.list(0).ListIndex(), 1);
        QCOMPARE(fixture.list(1).ListIndex(), 1);
        QCOMPARE(fixture.activePane(), 0);
    }

    void aPlaceholdersOwnTableIsClonedAlsoWhereTheOtherListStandsOnAnotherLine() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"B"_s, {u"2"_s})}),
                         makeFile(u"R.DDB"_s, {numbers(u"A"_s, {u"1"_s})}));
        fixture.clickLine(0, 1);
        fixture.dialogs().expectInput(u"New table name"_s, u"?"_s, u"Tablex"_s, u"C"_s);
        fixture.choose(Command::AddTableMenu);
        // The right list has no line for the added table and stays where it is.
        fixture.clickLine(0, 2);
        fixture.activate(1);
        QCOMPARE(fixture.list(0).ListIndex(), 2);
        QCOMPARE(fixture.list(1).ListIndex(), 1);
        clone(fixture, 1, 1);
        QCOMPARE(tableNames(fixture, 1), QStringList({u"A"_s, u"B"_s}));
        QCOMPARE(fixture.texts(1), QList<QStringList>({{u"2"_s}}));
        QCOMPARE(fixture.list(0).ListIndex(), 1);
        QCOMPARE(fixture.list(1).ListIndex(), 1);
        QCOMPARE(fixture.activePane(), 1);
    }

    void theCallsOfACloneAreInOrder() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {}));
        fixture.clickLine(0, 0);
        pressRight(fixture, 0, 0);
        fake->clearLog();
        chooseFromPopup(fixture.menu(Menu::popmenuCopyToOther), fixture.action(Command::ClonePOP));

        QStringList calls;
        for (const FakeCall &call : fake->log()) {
            calls.append(callText(call));
            if (call.member == u"EndChanges"_s)
                break;
        }
        // What is only asked for is of no interest here.
        const QStringList asked{u"QirTableFieldsCount()"_s, u"QirTableRecordsCount()"_s};
        calls.removeIf(
            [&](const QString &call) { return asked.contains(call) || call.startsWith(u"QIRTableField"_s); });
        QCOMPARE(calls.mid(0, 8),
                 QStringList({u"QIRTableRecordSource(Pumps)"_s, u"BeginChanges()"_s, u"AddTable(Pumps)"_s,
                              u"QIRTableRecordSource(Pumps)"_s, u"RemoveRecord(1)"_s, u"RemoveField(1)"_s,
                              u"AddField(Speed, 4, 0)"_s, u"AddField(Name, 10, 20)"_s}));
        QCOMPARE(calls.mid(8, 7),
                 QStringList({u"AddRecord()"_s, u"QIRTableRecordsPointerOut(1)"_s, u"QIRTableRecordsPointerOut(1)"_s,
                              u"QIRTableRecordSetByIndex(1)"_s, u"QIRTableRecordSetByIndex(1, 1200)"_s,
                              u"QIRTableRecordSetByIndex(2)"_s, u"QIRTableRecordSetByIndex(2, Main)"_s}));
        QCOMPARE(calls.size(), 8 + 3 * 7 + 1);
    }

    void anErrorOnTheWayTakesTheTableAwayAgain() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {numbers(u"Z"_s, {u"1"_s})}));
        fixture.clickLine(0, 0);
        pressRight(fixture, 0, 0);
        fake->failOn(u"AddRecord"_s, u"no room"_s, 3);
        fixture.dialogs().expectMessage(u"no room"_s, u"QIR Database Editor"_s, u"OK"_s);
        chooseFromPopup(fixture.menu(Menu::popmenuCopyToOther), fixture.action(Command::ClonePOP));
        fake->stopFailing();
        QCOMPARE(tableNames(fixture, 1), QStringList(u"Z"_s));
        QCOMPARE(fixture.lines(1), QStringList({u"Pumps ?"_s, u"Z"_s}));
        QVERIFY(!fixture.database(1).DtbHasChanged());
        QCOMPARE(fixture.list(0).ListIndex(), 0);
    }

    void aTableThatIsNamedLikeAMarkerIsCloned() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u" ?"_s, {u"5"_s})}), makeFile(u"R.DDB"_s, {}));
        clone(fixture, 0, 0);
        QCOMPARE(tableNames(fixture, 1), QStringList(u" ?"_s));
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>({{u"5"_s}}));
    }

    void whenTheRefillAfterAFailedCloneFailsTooTheFirstErrorIsTold() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {numbers(u"Z"_s, {u"1"_s})}));
        fixture.clickLine(0, 0);
        pressRight(fixture, 0, 0);
        int refills = 0;
        fake->setHook([&refills](const FakeCall &call) {
            if (call.member == u"AddTable"_s)
                throw std::runtime_error("the first");
            if (call.member == u"QIRTablesCount"_s && ++refills == 1)
                throw std::runtime_error("the second");
        });
        fixture.dialogs().expectMessage(u"the first"_s, u"QIR Database Editor"_s, u"OK"_s);
        chooseFromPopup(fixture.menu(Menu::popmenuCopyToOther), fixture.action(Command::ClonePOP));
        fake->setHook({});
        QVERIFY(refills > 0);
        QCOMPARE(fixture.dialogs().problems(), QString());
    }

    void aClosedWindowEndsACloneAndLeavesNothingOfIt() {
        const UseFake fake;
        const QString right = makeFile(u"R.DDB"_s, {numbers(u"Z"_s, {u"1"_s})});
        QStringList values;
        for (int i = 0; i < 50; ++i)
            values.append(QString::number(i));
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, values)}), right);
        fixture.clickLine(0, 0);
        pressRight(fixture, 0, 0);
        int records = 0;
        fake->setHook([&](const FakeCall &call) {
            if (call.member != u"AddRecord"_s)
                return;
            if (++records == 10)
                QMetaObject::invokeMethod(&fixture.window(), &QWidget::close, Qt::QueuedConnection);
            // Long enough for the loop to find that a yield is due.
            QElapsedTimer timer;
            for (timer.start(); timer.elapsed() < 4;) {
            }
        });
        fixture.dialogs().expectMessage(u"Database '"_s + fixture.fileName(1) +
                                            u"' has changed.\r\nDo you want to save the changes?"_s,
                                        u"QIR Database Editor"_s, u"No"_s);
        chooseFromPopup(fixture.menu(Menu::popmenuCopyToOther), fixture.action(Command::ClonePOP));
        fake->setHook({});
        QVERIFY(records >= 10);
        QVERIFY2(records < 50, "the clone went on to its end");
        QCOMPARE(fake->instances(), 0);
        QCOMPARE(fixture.dialogs().problems(), QString());
    }

    void whatWasClonedReachesTheFile() {
        const QString right = makeFile(u"R.DDB"_s, {numbers(u"Z"_s, {u"1"_s})});
        {
            EditorFixture fixture;
            fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), right);
            fixture.clickLine(0, 0);
            clone(fixture, 0, 0);
            fixture.database(1).SaveDtb();
        }
        EditorFixture again(right);
        QCOMPARE(again.lines(0), QStringList({u"Pumps"_s, u"Z"_s}));
        QCOMPARE(again.texts(0).size(), 3);
    }

private:
    /// Clones by the pop-up of a line of the active pane.
    static void clone(EditorFixture &fixture, int pane, int line) {
        pressRight(fixture, pane, line);
        chooseFromPopup(fixture.menu(Menu::popmenuCopyToOther), fixture.action(Command::ClonePOP));
    }
};

QTEST_MAIN(CloneTest)
#include "clone_test.moc"
