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

namespace {

const QString sizeQuestion = u"Copy Cell content?"_s;

} // namespace

/// Making a table as long as the other one, and copying a block of cells.
class CloneCellsTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void makingATableAsLongCopiesTheMissingRecords() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {shortPumps()}));
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"Yes"_s);
        cloneSize(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1),
                 QList<QStringList>({{u"5"_s, u"Other"_s}, {u"900"_s, u"Spare"_s}, {u"60"_s, u"Test"_s}}));
        QCOMPARE(fixture.texts(1), recordsOf(fixture, 1));
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 1}, {1, 2}}));
        QCOMPARE(fixture.activePane(), 0);
    }

    void withNoTheAddedRecordsStayEmpty() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {shortPumps()}));
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"No"_s);
        cloneSize(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1),
                 QList<QStringList>({{u"5"_s, u"Other"_s}, {u"0"_s, QString()}, {u"0"_s, QString()}}));
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
        fixture.openBoth(makeFile(u"L.DDB"_s, {textToNumber ? texts : longs}), makeFile(u"R.DDB"_s, {target}));
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"Yes"_s);
        cloneSize(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>({{u"1"_s}, {textToNumber ? u"12"_s : u"-3"_s}}));
    }

    void aTableWithoutRecordsIsMadeAsLongAndShown() {
        TableOfTexts empty = pumps();
        empty.fields[0].texts.clear();
        empty.fields[1].texts.clear();
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {empty}));
        QVERIFY(!fixture.grid(1).Visible());
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"Yes"_s);
        cloneSize(fixture, 0);
        QVERIFY(fixture.grid(1).Visible());
        QCOMPARE(fixture.texts(1), fixture.texts(0));
        QCOMPARE(redCells(fixture, 0), Cells());
        QCOMPARE(fixture.lines(0), QStringList(u"Pumps"_s));
    }

    void cancelAddsNothing() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {shortPumps()}));
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
    }

    void aTargetThatIsLongEnoughIsOnlyLoadedAgain_data() {
        QTest::addColumn<QStringList>("values");
        QTest::newRow("as long") << QStringList({u"7"_s, u"8"_s});
        QTest::newRow("longer") << QStringList({u"7"_s, u"8"_s, u"9"_s});
    }
    void aTargetThatIsLongEnoughIsOnlyLoadedAgain() {
        QFETCH(QStringList, values);
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s, u"2"_s})}),
                         makeFile(u"R.DDB"_s, {numbers(u"A"_s, values)}));
        QSignalSpy reload(fixture.grid(1).model(), &QAbstractItemModel::modelReset);
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"Yes"_s);
        cloneSize(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1).size(), values.size());
        QVERIFY(reload.count() > 0);
        QVERIFY(!fixture.database(1).DtbHasChanged());
    }

    void theCallsOfAnAppendedRecordAreInOrder() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s, u"2"_s})}),
                         makeFile(u"R.DDB"_s, {numbers(u"A"_s, {u"1"_s})}));
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
    }

    void anErrorOnTheWayTakesTheAddedRecordsAwayAgain() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {shortPumps()}));
        fake->failOn(u"AddRecord"_s, u"no room"_s, 2);
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"Yes"_s);
        fixture.dialogs().expectMessage(u"no room"_s, u"QIR Database Editor"_s, u"OK"_s);
        cloneSize(fixture, 0);
        fake->stopFailing();
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>({{u"5"_s, u"Other"_s}}));
        QCOMPARE(fixture.texts(1), recordsOf(fixture, 1));
        QVERIFY(!fixture.database(1).DtbHasChanged());
    }

    void whenTheReloadAfterFailedAppendingFailsTooTheFirstErrorIsTold() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {shortPumps()}));
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
    }

    void aBlockOfOneCellIsCopiedAndMarkedAnew() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s, u"2"_s})}),
                         makeFile(u"R.DDB"_s, {numbers(u"A"_s, {u"7"_s, u"8"_s})}));
        QCOMPARE(redCells(fixture, 0), (Cells{{1, 1}, {2, 1}}));
        fixture.grid(0).setSelection({2, 1, 2, 1});
        cloneArea(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>({{u"7"_s}, {u"2"_s}}));
        QCOMPARE(fixture.texts(1), recordsOf(fixture, 1));
        QCOMPARE(redCells(fixture, 0), (Cells{{1, 1}}));
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 1}}));
        QCOMPARE(fixture.lines(0), QStringList(u"A !"_s));
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
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {other}));
        const Cells marks = redCells(fixture, 1);
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
    }

    void aBlockOfOneRowOrOneColumnKeepsItsMarksToo() {
        TableOfTexts other = pumps();
        other.fields[0].texts = {u"1"_s, u"2"_s, u"3"_s};
        other.fields[1].texts = {u"a"_s, u"b"_s, u"c"_s};
        for (const GridSelection &block : {GridSelection{1, 1, 1, 2}, GridSelection{1, 1, 2, 1}}) {
            EditorFixture fixture;
            fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {other}));
            const Cells marks = redCells(fixture, 1);
            fixture.grid(0).setSelection(block);
            cloneArea(fixture, 0);
            QCOMPARE(fixture.grid(1).TextMatrix(block.rowEnd, block.columnEnd),
                     fixture.grid(0).TextMatrix(block.rowEnd, block.columnEnd));
            QCOMPARE(fixture.texts(1), recordsOf(fixture, 1));
            QCOMPARE(redCells(fixture, 1), marks);
            QCOMPARE(redCells(fixture, 0), marks);
        }
    }

    void textsAreConvertedToTheTargetsTypes() {
        TableOfTexts texts{u"A"_s, {{u"Value"_s, FieldType::Text, {u"12abc"_s}, 20}}};
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {texts}), makeFile(u"R.DDB"_s, {numbers(u"A"_s, {u"7"_s})}));
        cloneArea(fixture, 0);
        QCOMPARE(recordsOf(fixture, 1), QList<QStringList>({{u"12"_s}}));
        QCOMPARE(fixture.texts(1), QList<QStringList>({{u"12abc"_s}}));
    }

    void aBlockBeyondTheTargetIsRefusedAndNothingOfItStays() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {shortPumps()}));
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
    }

    void aBlockEndsAnOpenEdit() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps()}), makeFile(u"R.DDB"_s, {shortPumps()}));
        beginEdit(fixture, 1, 1, 1);
        QVERIFY(fixture.cellEditor(1).isVisible());
        cloneArea(fixture, 0);
        QVERIFY(!fixture.cellEditor(1).isVisible());
        QCOMPARE(fixture.editedCell().row, -1);
    }

private:
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
};

QTEST_MAIN(CloneCellsTest)
#include "clone_cells_test.moc"
