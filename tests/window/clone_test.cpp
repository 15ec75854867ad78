#include "tests/window/EditorFixture.h"
#include "tests/window/PopupTools.h"
#include "tests/window/TestTables.h"

#include "tests/tools/fake/FakeControl.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include <stdexcept>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

const QString sizeQuestion = u"Copy Cell content?"_s;

/// A call as "member(argument, ...)".
QString callText(const FakeCall &call) {
    QStringList arguments;
    for (const QVariant &argument : call.arguments)
        arguments.append(argument.isValid() ? argument.toString() : u"-"_s);
    return call.member + u'(' + arguments.join(u", "_s) + u')';
}

} // namespace

/// Cloning tables, sizes and areas between the panes.
class CloneTest : public QObject {
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
        fixture.openBoth(files.make(u"L.DDB"_s, {all, numbers(u"Z"_s, {u"1"_s})}),
                         files.make(u"R.DDB"_s, {numbers(u"Z"_s, {u"1"_s})}));
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
        QCOMPARE(redCells(fixture, 0), QStringList());
        QVERIFY(fixture.database(1).DtbHasChanged());
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.activePane(), 0);
        QIR_VERIFY_OK(fixture);
    }

    void aTableWithoutRecordsIsClonedWithItsFieldsInOrder() {
        TableOfTexts empty{u"Empty"_s, {{u"b"_s, FieldType::Text, {}, 3}, {u"a"_s, FieldType::Long, {}}}};
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {empty}), files.make(u"R.DDB"_s, {}));
        fixture.clickLine(0, 0);
        clone(fixture, 0, 0);
        QCOMPARE(fieldsOf(fixture, 1), QStringList({u"b text 3"_s, u"a long 0"_s}));
        QCOMPARE(recordsOf(fixture, 1).size(), 0);
        QVERIFY(!fixture.grid(1).Visible());
        QCOMPARE(fixture.lines(1), QStringList(u"Empty"_s));
        QIR_VERIFY_OK(fixture);
    }

    void aTableIsClonedIntoThePaneWhosePlaceholderWasPressed() {
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s})}),
                         files.make(u"R.DDB"_s, {numbers(u"A"_s, {u"1"_s}), pumps(u"B"_s)}));
        clone(fixture, 0, 1);
        QCOMPARE(tableNames(fixture, 0), QStringList({u"A"_s, u"B"_s}));
        QCOMPARE(fixture.texts(0), fixture.texts(1));
        QVERIFY(fixture.grid(0).Visible());
        QCOMPARE(fixture.list(0).ListIndex(), 1);
        QCOMPARE(fixture.list(1).ListIndex(), 1);
        QCOMPARE(fixture.activePane(), 0);
        QIR_VERIFY_OK(fixture);
    }

    void aPlaceholdersOwnTableIsClonedAlsoWhereTheOtherListStandsOnAnotherLine() {
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"B"_s, {u"2"_s})}),
                         files.make(u"R.DDB"_s, {numbers(u"A"_s, {u"1"_s})}));
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
        QIR_VERIFY_OK(fixture);
    }

    void theCallsOfACloneAreInOrder() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), files.make(u"R.DDB"_s, {}));
        fixture.clickLine(0, 0);
        pressRight(fixture, 0, 0);
        fake->clearLog();
        chooseFromPopup(fixture.editor().controls.menu(Menu::popmenuCopyToOther), fixture.action(Command::ClonePOP));

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
        QIR_VERIFY_OK(fixture);
    }

    void anErrorOnTheWayTakesTheTableAwayAgain() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), files.make(u"R.DDB"_s, {numbers(u"Z"_s, {u"1"_s})}));
        fixture.clickLine(0, 0);
        pressRight(fixture, 0, 0);
        fake->failOn(u"AddRecord"_s, u"no room"_s, 3);
        fixture.dialogs().expectMessage(u"no room"_s, u"QIR Database Editor"_s, u"OK"_s);
        chooseFromPopup(fixture.editor().controls.menu(Menu::popmenuCopyToOther), fixture.action(Command::ClonePOP));
        fake->stopFailing();
        QCOMPARE(tableNames(fixture, 1), QStringList(u"Z"_s));
        QCOMPARE(fixture.lines(1), QStringList({u"Pumps ?"_s, u"Z"_s}));
        QVERIFY(!fixture.database(1).DtbHasChanged());
        QCOMPARE(fixture.list(0).ListIndex(), 0);
        QIR_VERIFY_OK(fixture);
    }

    void aTableThatIsNamedLikeAMarkerIsCloned() {
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {numbers(u" ?"_s, {u"5"_s})}), files.make(u"R.DDB"_s, {}));
        clone(fixture, 0, 0);
        QCOMPARE(tableNames(fixture, 1), QStringList(u" ?"_s));
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>({{u"5"_s}}));
        QIR_VERIFY_OK(fixture);
    }

    void whenTheRefillAfterAFailedCloneFailsTooTheFirstErrorIsTold() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), files.make(u"R.DDB"_s, {numbers(u"Z"_s, {u"1"_s})}));
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
        chooseFromPopup(fixture.editor().controls.menu(Menu::popmenuCopyToOther), fixture.action(Command::ClonePOP));
        fake->setHook({});
        QVERIFY(refills > 0);
        QCOMPARE(fixture.dialogs().problems(), QString());
    }

    void aClosedWindowEndsACloneAndLeavesNothingOfIt() {
        const UseFake fake;
        const QString right = files.make(u"R.DDB"_s, {numbers(u"Z"_s, {u"1"_s})});
        QStringList values;
        for (int i = 0; i < 50; ++i)
            values.append(QString::number(i));
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {numbers(u"A"_s, values)}), right);
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
        chooseFromPopup(fixture.editor().controls.menu(Menu::popmenuCopyToOther), fixture.action(Command::ClonePOP));
        fake->setHook({});
        QVERIFY(records >= 10);
        QVERIFY2(records < 50, "the clone went on to its end");
        QCOMPARE(fake->instances(), 0);
        QCOMPARE(fixture.dialogs().problems(), QString());
    }

    void makingATableAsLongCopiesTheMissingRecords() {
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), files.make(u"R.DDB"_s, {shortPumps()}));
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"Yes"_s);
        cloneSize(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1),
                 QList<QStringList>({{u"5"_s, u"Other"_s}, {u"900"_s, u"Spare"_s}, {u"60"_s, u"Test"_s}}));
        QCOMPARE(fixture.texts(1), recordsOf(fixture, 1));
        QCOMPARE(redCells(fixture, 1), QStringList({u"1,1"_s, u"1,2"_s}));
        QCOMPARE(fixture.activePane(), 0);
        QIR_VERIFY_OK(fixture);
    }

    void withNoTheAddedRecordsStayEmpty() {
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), files.make(u"R.DDB"_s, {shortPumps()}));
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"No"_s);
        cloneSize(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1),
                 QList<QStringList>({{u"5"_s, u"Other"_s}, {u"0"_s, QString()}, {u"0"_s, QString()}}));
        QIR_VERIFY_OK(fixture);
    }

    void valuesOfAnotherTypeAreConvertedByTheTarget_data() {
        QTest::addColumn<bool>("textToNumber");
        QTest::newRow("text to number") << true;
        QTest::newRow("number to text") << false;
    }
    void valuesOfAnotherTypeAreConvertedByTheTarget() {
        QFETCH(bool, textToNumber);
        const TableOfTexts texts{u"A"_s, {{u"Value"_s, FieldType::Text, {u"7"_s, u"12abc"_s}, 20}}};
        const TableOfTexts longs = numbers(u"A"_s, {u"7"_s, u"-3"_s});
        TableOfTexts target = textToNumber ? longs : texts;
        target.fields[0].texts = {u"1"_s};
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {textToNumber ? texts : longs}), files.make(u"R.DDB"_s, {target}));
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"Yes"_s);
        cloneSize(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>({{u"1"_s}, {textToNumber ? u"12"_s : u"-3"_s}}));
        QIR_VERIFY_OK(fixture);
    }

    void aTableWithoutRecordsIsMadeAsLongAndShown() {
        TableOfTexts empty = pumps();
        empty.fields[0].texts.clear();
        empty.fields[1].texts.clear();
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), files.make(u"R.DDB"_s, {empty}));
        QVERIFY(!fixture.grid(1).Visible());
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"Yes"_s);
        cloneSize(fixture, 0);
        QVERIFY(fixture.grid(1).Visible());
        QCOMPARE(fixture.texts(1), fixture.texts(0));
        QCOMPARE(redCells(fixture, 0), QStringList());
        QCOMPARE(fixture.lines(0), QStringList(u"Pumps"_s));
        QIR_VERIFY_OK(fixture);
    }

    void cancelAddsNothing() {
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), files.make(u"R.DDB"_s, {shortPumps()}));
        QSignalSpy reload(fixture.grid(1).model(), &QAbstractItemModel::modelReset);
        fixture.dialogs().expect([](QDialog &dialog) {
            auto &box = dynamic_cast<QMessageBox &>(dialog);
            const bool right = box.text() == sizeQuestion && box.windowTitle() == u"?"_s &&
                               box.icon() == QMessageBox::NoIcon &&
                               box.standardButtons() == (QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
            return (right ? QString() : u"not the question: "_s + box.text()) + pressButton(dialog, u"Cancel"_s);
        });
        cloneSize(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1).size(), 1);
        QCOMPARE(reload.count(), 0);
        QVERIFY(!fixture.database(1).DtbHasChanged());
        QIR_VERIFY_OK(fixture);
    }

    void aTargetThatIsLongEnoughIsOnlyLoadedAgain_data() {
        QTest::addColumn<QStringList>("values");
        QTest::newRow("as long") << QStringList({u"7"_s, u"8"_s});
        QTest::newRow("longer") << QStringList({u"7"_s, u"8"_s, u"9"_s});
    }
    void aTargetThatIsLongEnoughIsOnlyLoadedAgain() {
        QFETCH(QStringList, values);
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s, u"2"_s})}),
                         files.make(u"R.DDB"_s, {numbers(u"A"_s, values)}));
        QSignalSpy reload(fixture.grid(1).model(), &QAbstractItemModel::modelReset);
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"Yes"_s);
        cloneSize(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1).size(), values.size());
        QVERIFY(reload.count() > 0);
        QVERIFY(!fixture.database(1).DtbHasChanged());
        QIR_VERIFY_OK(fixture);
    }

    void theCallsOfAnAppendedRecordAreInOrder() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s, u"2"_s})}),
                         files.make(u"R.DDB"_s, {numbers(u"A"_s, {u"1"_s})}));
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"Yes"_s);
        fake->clearLog();
        cloneSize(fixture, 0);
        QStringList calls;
        bool group = false;
        for (const FakeCall &call : fake->log()) {
            group = group || call.member == u"BeginChanges"_s;
            if (group)
                calls.append(callText(call) +
                             (call.arguments.isEmpty() ? QString() : u'@' + sideOf(call, *fake.operator->())));
            if (call.member == u"EndChanges"_s)
                break;
        }
        calls.removeAll(u"QirTableFieldsCount()"_s);
        calls.removeAll(u"QirTableRecordsCount()"_s);
        QCOMPARE(calls, QStringList({u"BeginChanges()"_s, u"AddRecord()"_s, u"QIRTableRecordsPointerOut(2)@target"_s,
                                     u"QIRTableRecordsPointerOut(2)@source"_s, u"QIRTableRecordSetByIndex(1)@source"_s,
                                     u"QIRTableRecordSetByIndex(1, 2)@target"_s, u"EndChanges()"_s}));
        QIR_VERIFY_OK(fixture);
    }

    void anErrorOnTheWayTakesTheAddedRecordsAwayAgain() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), files.make(u"R.DDB"_s, {shortPumps()}));
        fake->failOn(u"AddRecord"_s, u"no room"_s, 2);
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"Yes"_s);
        fixture.dialogs().expectMessage(u"no room"_s, u"QIR Database Editor"_s, u"OK"_s);
        cloneSize(fixture, 0);
        fake->stopFailing();
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>({{u"5"_s, u"Other"_s}}));
        QCOMPARE(fixture.texts(1), recordsOf(fixture, 1));
        QVERIFY(!fixture.database(1).DtbHasChanged());
        QIR_VERIFY_OK(fixture);
    }

    void whenTheReloadAfterFailedAppendingFailsTooTheFirstErrorIsTold() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), files.make(u"R.DDB"_s, {shortPumps()}));
        fake->failOn(u"AddRecord"_s, u"no room"_s, 2);
        int reloads = 0;
        fake->setHook([&reloads](const FakeCall &call) {
            if (call.member == u"GetQirRecord"_s && ++reloads == 1)
                throw std::runtime_error("no record");
        });
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"Yes"_s);
        fixture.dialogs().expectMessage(u"no room"_s, u"QIR Database Editor"_s, u"OK"_s);
        cloneSize(fixture, 0);
        fake->setHook({});
        fake->stopFailing();
        QVERIFY(reloads > 0);
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>({{u"5"_s, u"Other"_s}}));
        QIR_VERIFY_OK(fixture);
    }

    void aBlockOfOneCellIsCopiedAndMarkedAnew() {
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s, u"2"_s})}),
                         files.make(u"R.DDB"_s, {numbers(u"A"_s, {u"7"_s, u"8"_s})}));
        QCOMPARE(redCells(fixture, 0), QStringList({u"1,1"_s, u"2,1"_s}));
        fixture.grid(0).setSelection({2, 1, 2, 1});
        cloneArea(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>({{u"7"_s}, {u"2"_s}}));
        QCOMPARE(fixture.texts(1), recordsOf(fixture, 1));
        QCOMPARE(redCells(fixture, 0), QStringList(u"1,1"_s));
        QCOMPARE(redCells(fixture, 1), QStringList(u"1,1"_s));
        QCOMPARE(fixture.lines(0), QStringList(u"A !"_s));
        QIR_VERIFY_OK(fixture);
    }

    void aLargerBlockIsCopiedAndKeepsItsMarksUntilTheNextComparison_data() {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::addColumn<int>("rowEnd");
        QTest::addColumn<int>("columnEnd");
        QTest::newRow("downwards") << 1 << 1 << 2 << 2;
        QTest::newRow("upwards") << 2 << 2 << 1 << 1;
        QTest::newRow("to the upper right") << 2 << 1 << 1 << 2;
    }
    void aLargerBlockIsCopiedAndKeepsItsMarksUntilTheNextComparison() {
        QFETCH(int, row);
        QFETCH(int, column);
        QFETCH(int, rowEnd);
        QFETCH(int, columnEnd);
        TableOfTexts other = pumps();
        other.fields[0].texts = {u"1"_s, u"2"_s, u"3"_s};
        other.fields[1].texts = {u"a"_s, u"b"_s, u"c"_s};
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), files.make(u"R.DDB"_s, {other}));
        const QStringList marks = redCells(fixture, 1);
        QCOMPARE(marks.size(), 6);
        fixture.grid(0).setSelection({row, column, rowEnd, columnEnd});
        cloneArea(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1),
                 QList<QStringList>({{u"1200"_s, u"Main"_s}, {u"900"_s, u"Spare"_s}, {u"3"_s, u"c"_s}}));
        QCOMPARE(fixture.texts(1), recordsOf(fixture, 1));
        QCOMPARE(redCells(fixture, 1), marks);
        // What differs is known all the same.
        QVERIFY(!fixture.editor().CelleDiverse().at(1, 1));
        QVERIFY(fixture.editor().CelleDiverse().at(3, 2));
        QIR_VERIFY_OK(fixture);
    }

    void aBlockOfOneRowOrOneColumnKeepsItsMarksToo() {
        TableOfTexts other = pumps();
        other.fields[0].texts = {u"1"_s, u"2"_s, u"3"_s};
        other.fields[1].texts = {u"a"_s, u"b"_s, u"c"_s};
        for (const GridSelection &block : {GridSelection{1, 1, 1, 2}, GridSelection{1, 1, 2, 1}}) {
            EditorFixture fixture;
            fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), files.make(u"R.DDB"_s, {other}));
            const QStringList marks = redCells(fixture, 1);
            fixture.grid(0).setSelection(block);
            cloneArea(fixture, 0);
            QCOMPARE(fixture.grid(1).TextMatrix(block.rowEnd, block.columnEnd),
                     fixture.grid(0).TextMatrix(block.rowEnd, block.columnEnd));
            QCOMPARE(fixture.texts(1), recordsOf(fixture, 1));
            QCOMPARE(redCells(fixture, 1), marks);
            QCOMPARE(redCells(fixture, 0), marks);
            QIR_VERIFY_OK(fixture);
        }
    }

    void textsAreConvertedToTheTargetsTypes() {
        TableOfTexts texts{u"A"_s, {{u"Value"_s, FieldType::Text, {u"12abc"_s}, 20}}};
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {texts}), files.make(u"R.DDB"_s, {numbers(u"A"_s, {u"7"_s})}));
        cloneArea(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>({{u"12"_s}}));
        QCOMPARE(fixture.texts(1), QList<QStringList>({{u"12abc"_s}}));
        QIR_VERIFY_OK(fixture);
    }

    void aBlockBeyondTheTargetIsRefusedAndNothingOfItStays() {
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), files.make(u"R.DDB"_s, {shortPumps()}));
        fixture.grid(0).setSelection({1, 1, 3, 2});
        QString error;
        fixture.dialogs().expect([&error](QDialog &dialog) {
            error = dynamic_cast<QMessageBox &>(dialog).text();
            return pressButton(dialog, u"OK"_s);
        });
        cloneArea(fixture, 0);
        QVERIFY2(!error.isEmpty(), "the reason is missing");
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>({{u"5"_s, u"Other"_s}}));
        QCOMPARE(fixture.texts(1), recordsOf(fixture, 1));
        QVERIFY(!fixture.database(1).DtbHasChanged());
        QIR_VERIFY_OK(fixture);
    }

    void aBlockEndsAnOpenEdit() {
        EditorFixture fixture;
        fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), files.make(u"R.DDB"_s, {shortPumps()}));
        fixture.editor().cellEdit().begin(1, 1);
        fixture.editor().txtEdit(1).show();
        cloneArea(fixture, 0);
        QVERIFY(!fixture.editor().txtEdit(1).isVisible());
        QCOMPARE(fixture.editedCell().row, -1);
        QIR_VERIFY_OK(fixture);
    }

    void whatWasClonedReachesTheFile() {
        const QString right = files.make(u"R.DDB"_s, {numbers(u"Z"_s, {u"1"_s})});
        {
            EditorFixture fixture;
            fixture.openBoth(files.make(u"L.DDB"_s, {pumps()}), right);
            fixture.clickLine(0, 0);
            clone(fixture, 0, 0);
            fixture.database(1).SaveDtb();
            QIR_VERIFY_OK(fixture);
        }
        EditorFixture again(right);
        QCOMPARE(again.lines(0), QStringList({u"Pumps"_s, u"Z"_s}));
        QCOMPARE(again.texts(0).size(), 3);
        QIR_VERIFY_OK(again);
    }

private:
    static TableOfTexts shortPumps() {
        TableOfTexts table = pumps();
        table.fields[0].texts = {u"5"_s};
        table.fields[1].texts = {u"Other"_s};
        return table;
    }

    /// Clones by the pop-up of a line of the active pane.
    static void clone(EditorFixture &fixture, int pane, int line) {
        pressRight(fixture, pane, line);
        chooseFromPopup(fixture.editor().controls.menu(Menu::popmenuCopyToOther), fixture.action(Command::ClonePOP));
    }

    /// The grid's pop-ups set the direction before they open.
    static void chooseFrom(EditorFixture &fixture, int source, Command command) {
        fixture.editor().setOrigin(source);
        fixture.action(command).setEnabled(true);
        fixture.choose(command);
    }
    static void cloneSize(EditorFixture &fixture, int source) {
        chooseFrom(fixture, source, Command::CloneTableSizePOP);
    }
    static void cloneArea(EditorFixture &fixture, int source) {
        chooseFrom(fixture, source, Command::CloneSelectedAreaPOP);
    }

    /// Whether a call went to the database that AddRecord went to or to the other one.
    static QString sideOf(const FakeCall &call, const FakeControl &fake) {
        for (const FakeCall &other : fake.log())
            if (other.member == u"AddRecord"_s)
                return other.instance == call.instance ? u"target"_s : u"source"_s;
        return {};
    }

    TestFiles files;
};

QTEST_MAIN(CloneTest)
#include "clone_test.moc"
