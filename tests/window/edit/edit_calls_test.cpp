#include "tests/support/Hands.h"
#include "tests/tools/fake/FakeControl.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// The calls that a component got, each as "member argument argument"; not the look at the changed flag that ends each
/// command, which the sign at the file name follows.
QStringList calls(const UseFake &fake, int instance = 0) {
    QStringList lines;
    for (const FakeCall &call : fake->log()) {
        if ((instance != 0 && call.instance != instance) || call.member == u"DtbHasChanged"_s)
            continue;
        QString line = call.member;
        for (const QVariant &argument : call.arguments)
            line += u' ' + argument.toString();
        lines.append(line);
    }
    return lines;
}

/// The calls that write, and what groups them.
QStringList writes(const UseFake &fake) {
    QStringList lines;
    for (const FakeCall &call : fake->log()) {
        const bool sets = (call.member == u"QIRTableRecordsPointerOut" && call.arguments.size() == 1) ||
                          (call.member == u"QIRTableRecordSetByIndex" && call.arguments.size() == 2);
        if (sets || call.member.endsWith("Changes"_L1)) {
            lines.append(call.member);
            for (const QVariant &argument : call.arguments)
                lines.last() += u' ' + argument.toString();
        }
    }
    return lines;
}

} // namespace

/// What an edit asks of the component, call by call.
class EditCallsTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void eachKeystrokeChoosesTheRecordAsksForTheTypeWritesTheValueAndReadsItBack() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        beginEdit(fixture, 0, 3, 1);
        for (const auto &[key, value] : {std::pair{'1', u"601"_s}, std::pair{'2', u"6012"_s}}) {
            fake->clearLog();
            hands::key(&fixture.cellEditor(0), key);
            QCOMPARE(calls(fake),
                     QStringList({u"QIRTableRecordsPointerOut 3"_s, u"QIRTableFieldType 1"_s,
                                  u"QIRTableRecordSetByIndex 1 "_s + value, u"QIRTableRecordSetByIndex 1"_s}));
            QCOMPARE(fake->log()[2].arguments[1].typeId(), static_cast<int>(QMetaType::Double));
        }
    }

    void aTextFieldGetsTheTextItself() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        beginEdit(fixture, 0, 2, 2);
        fake->clearLog();
        hands::key(&fixture.cellEditor(0), '1');
        QCOMPARE(calls(fake), QStringList({u"QIRTableRecordsPointerOut 2"_s, u"QIRTableFieldType 2"_s,
                                           u"QIRTableRecordSetByIndex 2 Spare1"_s, u"QIRTableRecordSetByIndex 2"_s}));
        QCOMPARE(fake->log()[2].arguments[1].typeId(), static_cast<int>(QMetaType::QString));
    }

    void theCellIsReachedByItsRowAndColumnData() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.grid(0).setRowData(2, 3);
        fixture.grid(0).setColData(2, 1);
        beginEdit(fixture, 0, 2, 2);
        fake->clearLog();
        hands::key(&fixture.cellEditor(0), '7');
        QCOMPARE(calls(fake), QStringList({u"QIRTableRecordsPointerOut 3"_s, u"QIRTableFieldType 1"_s,
                                           u"QIRTableRecordSetByIndex 1 0"_s, u"QIRTableRecordSetByIndex 1"_s}));
    }

    void openingAndClosingTheEditorAsksNothingOfTheComponent() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 2, 2);
        fake->clearLog();
        hands::key(&fixture.grid(0), Qt::Key_Return);
        hands::key(&fixture.cellEditor(0), Qt::Key_Left);
        hands::key(&fixture.cellEditor(0), Qt::Key_Return);
        QCOMPARE(calls(fake), QStringList());
    }

    void drawingAsksNothingOfTheComponent() {
        const UseFake fake;
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 30, 4), pumps()}, {counted(u"A"_s, 20, 5), valves()});
        edit(fixture, 0, 1, 1, u"999 bar"_s); // not as it is stored
        fake->clearLog();
        QVERIFY(!fixture.window().grab().isNull());
        QCOMPARE(fake->log().size(), 0);

        class Asking : public QWidget { // what would be seen
        public:
            Asking(QWidget &window, const QirDatabase &database)
                : QWidget(&window)
                , m_database(database) {}

        protected:
            void paintEvent(QPaintEvent *) override { (void)m_database.QIRTablesCount(); }

        private:
            const QirDatabase &m_database;
        } asking(fixture.window(), fixture.database(0));
        asking.setGeometry(0, 0, 10, 10);
        asking.show();
        QVERIFY(!fixture.window().grab().isNull());
        QVERIFY(fake->log().size() > 0);
    }

    void theShownTableIsMadeCurrentBeforeAWrite() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        beginEdit(fixture, 0, 1, 1);
        // As marking tables does.
        fixture.editor().pane(0).makeTableCurrent(u"Valves"_s);
        fake->clearLog();
        hands::key(&fixture.cellEditor(0), '5');
        QCOMPARE(calls(fake).value(0), u"QIRTableRecordSource Pumps"_s);
        QCOMPARE(stored(fixture, 0, 1, 1).toDouble(), 12005.0);
    }

    void theShownTableIsMadeCurrentBeforeAnythingElseIsAsked_data() {
        QTest::addColumn<int>("action");
        QTest::newRow("a paste") << 0;
        QTest::newRow("a sort") << 1;
        QTest::newRow("a click") << 2;
        QTest::newRow("the pop-up of a header") << 3;
    }

    void theShownTableIsMadeCurrentBeforeAnythingElseIsAsked() {
        QFETCH(const int, action);
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        fixture.clickCell(0, 1, 1);
        QGuiApplication::clipboard()->setText(u"7"_s);
        fixture.editor().pane(0).makeTableCurrent(u"Valves"_s);
        fake->clearLog();
        if (action == 0)
            hands::key(&fixture.grid(0), Qt::Key_V, Qt::ControlModifier);
        else if (action == 1)
            fixture.choose(Command::SortFPOP);
        else if (action == 2)
            fixture.clickCell(0, 1, 2);
        else
            rightPressHeader(fixture, 0, 2);
        QCOMPARE(calls(fake).value(0), u"QIRTableRecordSource Pumps"_s);
        fixture.menu(Menu::popmenuGridFields).close();
        if (action >= 2)
            QVERIFY(fixture.action(action == 2 ? Command::ResizeTextField : Command::ResizeTextFieldPOP).isEnabled());
    }

    void aKeystrokeAsksNothingOfTheOtherComponent() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {pumps()}), makeFile(u"B.DDB"_s, {pumps()}));
        beginEdit(fixture, 0, 1, 1);
        fake->clearLog();
        hands::key(&fixture.cellEditor(0), '5');
        QCOMPARE(calls(fake), QStringList({u"QIRTableRecordsPointerOut 1"_s, u"QIRTableFieldType 1"_s,
                                           u"QIRTableRecordSetByIndex 1 12005"_s, u"QIRTableRecordSetByIndex 1"_s}));
        QCOMPARE(fixture.grid(1).CellBackColor(1, 1), CellColour::Red);
    }

    void aKeystrokeCostsAsManyCallsInALongTable() {
        const UseFake fake;
        TableOfTexts large{u"Large"_s, {{u"N"_s, FieldType::Long, {}}}};
        for (int r = 1; r <= 2000; ++r)
            large.fields[0].texts.append(QString::number(r));
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {large}), makeFile(u"B.DDB"_s, {large}));
        beginEdit(fixture, 0, 1000, 1);
        fake->clearLog();
        hands::key(&fixture.cellEditor(0), '5');
        QCOMPARE(fake->log().size(), 5);
    }

    void anErrorOfTheComponentIsShownAndTheEditGoesOn() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        beginEdit(fixture, 0, 1, 1);
        fake->failOn(u"QIRTableRecordSetByIndex"_s, u"The disk is on fire."_s);
        fixture.dialogs().expectMessage(u"The disk is on fire."_s, u"QIR Database Editor"_s, u"OK"_s);
        hands::key(&fixture.cellEditor(0), '5');
        fake->stopFailing();
        QCOMPARE(fixture.dialogs().answered(), 1);
        QVERIFY(editing(fixture, 0));
        QCOMPARE(fixture.grid(0).TextMatrix(1, 1), u"12005"_s);
        hands::key(&fixture.cellEditor(0), '6');
        QCOMPARE(stored(fixture, 0, 1, 1).toDouble(), 120056.0);
    }

    void aFieldTypeThatCannotBeReadIsToldOnceAndNotAtEveryKey() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 1);
        fake->failOn(u"QIRTableFieldType"_s, u"The disk is on fire."_s);
        fixture.dialogs().expectMessage(u"The disk is on fire."_s, u"QIR Database Editor"_s, u"OK"_s);
        hands::key(&fixture.grid(0), Qt::Key_Right);
        QCOMPARE(fixture.dialogs().answered(), 1);
        QVERIFY(!fixture.action(Command::ResizeTextField).isEnabled());
        hands::key(&fixture.grid(0), Qt::Key_Down); // the same field
        QIR_VERIFY_OK(fixture);
        fake->stopFailing();
        fixture.clickCell(0, 2, 2);
        QVERIFY(fixture.action(Command::ResizeTextField).isEnabled());
    }

    void aPasteWritesTheSelectedBlockAsOneGroup() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 2, 2);
        QGuiApplication::clipboard()->setText(u"x"_s);
        fake->clearLog();
        hands::key(&fixture.grid(0), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(writes(fake), QStringList({u"BeginChanges"_s, u"QIRTableRecordsPointerOut 2"_s,
                                            u"QIRTableRecordSetByIndex 2 x"_s, u"EndChanges"_s}));
    }

    void aPasteWritesAlsoWhatTheComponentDidNotTakeBefore() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fake->failOn(u"QIRTableRecordSetByIndex"_s, u"The disk is on fire."_s);
        beginEdit(fixture, 0, 1, 1);
        fixture.dialogs().expectMessage(u"The disk is on fire."_s, u"QIR Database Editor"_s, u"OK"_s);
        hands::key(&fixture.cellEditor(0), '5');
        fake->stopFailing();
        QCOMPARE(stored(fixture, 0, 1, 1).toDouble(), 1200.0);
        fixture.clickCell(0, 2, 2);
        QGuiApplication::clipboard()->setText(u"x"_s);
        hands::key(&fixture.grid(0), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(stored(fixture, 0, 1, 1).toDouble(), 12005.0);
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"x"_s);
    }

    void aPasteOfWhatWasCopiedWritesTheSameInAGroupAndChangesNothing() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        selectBlock(fixture, 0, {1, 1, 3, 2});
        hands::key(&fixture.grid(0), Qt::Key_C, Qt::ControlModifier);
        fake->clearLog();
        hands::key(&fixture.grid(0), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(writes(fake),
                 QStringList({u"BeginChanges"_s, u"QIRTableRecordsPointerOut 1"_s, u"QIRTableRecordSetByIndex 1 1200"_s,
                              u"QIRTableRecordSetByIndex 2 Main"_s, u"QIRTableRecordsPointerOut 2"_s,
                              u"QIRTableRecordSetByIndex 1 900"_s, u"QIRTableRecordSetByIndex 2 Spare"_s,
                              u"QIRTableRecordsPointerOut 3"_s, u"QIRTableRecordSetByIndex 1 60"_s,
                              u"QIRTableRecordSetByIndex 2 Test"_s, u"EndChanges"_s}));
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }
};

QTEST_MAIN(EditCallsTest)
#include "edit_calls_test.moc"
