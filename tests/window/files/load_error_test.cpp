#include "tests/support/Hands.h"
#include "tests/tools/fake/FakeControl.h"
#include "tests/window/EditSupport.h"
#include "tests/window/PopupTools.h"
#include "tests/window/WindowTest.h"

#include <QClipboard>
#include <QGuiApplication>

#include <stdexcept>
#include <utility>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// Components that fail in the middle of a load: nobody may work on a table that is not the one selected.
class LoadErrorTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void anErrorBeforeTheFillHidesTheTableBefore() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        fake->failOn(u"QirTableFieldsCount"_s, u"broken"_s);
        fixture.clickLine(0, 1);
        QVERIFY(!fixture.grid(0).Visible());
        QCOMPARE(fixture.shownTable(0), QString());
        QCOMPARE(fixture.loadedLine(0), -1);
        fake->stopFailing();
        fixture.clickLine(0, 1);
        QCOMPARE(fixture.shownTable(0), u"Valves"_s);
    }

    void afterAFailedLoadNoRecordIsAddedToTheTableBefore() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        fake->failOn(u"QIRTableRecordSource"_s, u"broken"_s);
        fixture.clickLine(0, 1);
        fake->clearLog();
        fixture.dialogs().expectMessage(u"The selected table could not be loaded."_s, u"QIR Database Editor"_s,
                                        u"OK"_s);
        fixture.choose(Command::AddRecordMenu);
        for (const FakeCall &call : fake->log())
            QVERIFY(call.member != u"AddRecord"_s);
        fake->stopFailing();
        fixture.clickLine(0, 1);
    }

    void afterAFailedLoadNoFieldIsAddedToTheTableBefore() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        fake->failOn(u"QIRTableRecordSource"_s, u"broken"_s);
        fixture.clickLine(0, 1);
        fake->stopFailing();
        fixture.dialogs().expectMessage(u"The selected table could not be loaded."_s, u"QIR Database Editor"_s,
                                        u"OK"_s);
        fixture.choose(Command::AddFieldMenu);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.shownTable(0), u"Valves"_s); // the end of the command has tried again
    }

    void aTableRenamedAfterItsLoadFailedIsNotTakenForTheOneInTheGrid() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {pumps(), valves()}), makeFile(u"R.DDB"_s, {pumps(), valves()}));
        fake->failOn(u"QIRTableRecordSource"_s, u"broken"_s);
        fixture.clickLine(0, 1);
        fake->stopFailing();
        fake->failOn(u"ExistTable"_s, u"broken"_s);
        fixture.dialogs().expectInput(u"Table's new name (Valves)"_s, u"?"_s, u"Valves"_s, u"Windows"_s);
        fixture.dialogs().expectMessage(u"broken"_s, u"QIR Database Editor"_s, u"OK"_s);
        fixture.choose(Command::RenameTableMenu);
        fake->stopFailing();
        QCOMPARE(fixture.editor().pane(0).selectedTableName(), u"Windows"_s);
        QCOMPARE(fixture.texts(0), QList<QStringList>({{u"1"_s}, {u"0"_s}}));
    }

    void aReloadThatBreaksOffAfterACommandIsMadeUpForByAClickOnItsLine() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        fake->failOn(u"GetQirRecord"_s, u"broken"_s, 2);
        fixture.dialogs().expectMessage(u"broken"_s, u"QIR Database Editor"_s, u"OK"_s);
        fixture.choose(Command::AddRecordMenu);
        fake->stopFailing();
        QCOMPARE(fixture.loadedLine(0), -1);
        fixture.clickLine(0, 0);
        QCOMPARE(fixture.grid(0).Rows(), 5);
    }

    void aReloadThatFailsBeforeTheFillLeavesNoColumnOfARemovedField() {
        const UseFake fake;
        TableOfTexts table = pumps();
        table.fields[1] = {u"Height"_s, FieldType::Long, {u"7"_s, u"8"_s, u"9"_s}};
        EditorFixture fixture(makeFile(u"A.DDB"_s, {table}));
        bool removed = false;
        fake->setHook([&](const FakeCall &call) {
            if (removed && call.member == u"QirTableFieldsCount"_s) {
                removed = false;
                throw std::runtime_error("broken");
            }
            removed = removed || call.member == u"RemoveField"_s;
        });
        fixture.dialogs().expectMessage(u"Do you want to remove field: 'Speed' ?"_s, u"?"_s, u"Yes"_s);
        fixture.dialogs().expectMessage(u"broken"_s, u"QIR Database Editor"_s, u"OK"_s);
        fixture.choose(Command::RemoveFieldMenu);
        fake->setHook({});
        QCOMPARE(fixture.grid(0).TextMatrix(0, 1), u"Height [long]"_s);
        QCOMPARE(fixture.texts(0), QList<QStringList>({{u"7"_s}, {u"8"_s}, {u"9"_s}}));
    }

    void aTableWhoseLoadBrokeOffIsLoadedAgainByAClickOnItsLine() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        fake->failOn(u"GetQirRecord"_s, u"broken"_s, 2);
        fixture.clickLine(0, 1);
        QCOMPARE(fixture.loadedLine(0), -1);
        QCOMPARE(fixture.grid(0).Rows(), 2); // what was filled so far stays
        fake->failOn(u"GetQirRecord"_s, u"broken"_s, 1000);
        fixture.clickLine(0, 1);
        QCOMPARE(fixture.grid(0).Rows(), 3);
    }

    void aTableThatIsNotLoadedWholeIsNotSortedOrPastedInto() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        loadPart(fake, fixture, 0);
        const QString reason = u"Table 'Valves' is not loaded whole: broken"_s;
        fake->clearLog();
        fixture.dialogs().expectMessage(reason, u"QIR Database Editor"_s, u"OK"_s);
        rightPressHeader(fixture, 0, 1);
        chooseFromPopup(fixture.menu(Menu::popmenuGridFields), fixture.action(Command::SortFPOP));
        QGuiApplication::clipboard()->setText(u"0"_s);
        fixture.clickCell(0, 1, 1);
        fixture.dialogs().expectMessage(reason, u"QIR Database Editor"_s, u"OK"_s);
        hands::key(&fixture.grid(0), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.dialogs().problems(), QString());
        QVERIFY(!fixture.database(0).DtbHasChanged());

        fixture.clickLine(0, 1); // loads it whole
        QCOMPARE(fixture.grid(0).Rows(), 3);
        rightPressHeader(fixture, 0, 1);
        chooseFromPopup(fixture.menu(Menu::popmenuGridFields), fixture.action(Command::SortFPOP));
        QCOMPARE(fixture.texts(0), QList<QStringList>({{u"0"_s}, {u"1"_s}}));
    }

    void aTableThatIsNotLoadedWholeIsNotClonedFromOrInto() {
        const UseFake fake;
        for (const int part : {0, 1}) {
            EditorFixture fixture;
            fixture.openBoth(makeFile(u"L.DDB"_s, {pumps(), valves()}), makeFile(u"R.DDB"_s, {pumps(), valves()}));
            loadPart(fake, fixture, part);
            for (const Command command : {Command::CloneSelectedAreaPOP, Command::CloneTableSizePOP}) {
                fixture.editor().setOrigin(0);
                fixture.action(command).setEnabled(true);
                fixture.dialogs().expectMessage(u"Table 'Valves' is not loaded whole: broken"_s,
                                                u"QIR Database Editor"_s, u"OK"_s);
                fixture.choose(command);
            }
            QCOMPARE(fixture.dialogs().problems(), QString());
            QVERIFY(!fixture.database(1).DtbHasChanged());
            fixture.clickLine(part, 1); // loads it whole
        }
    }

    void aTableThatACommandHasLoadedWholeIsSortedAgain() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), valves()}));
        loadPart(fake, fixture, 0);
        fixture.choose(Command::AddRecordMenu); // loads the table again
        QCOMPARE(fixture.grid(0).Rows(), 4);
        rightPressHeader(fixture, 0, 1);
        chooseFromPopup(fixture.menu(Menu::popmenuGridFields), fixture.action(Command::SortFPOP));
        QCOMPARE(fixture.texts(0), QList<QStringList>({{u"0"_s}, {u"0"_s}, {u"1"_s}}));
    }

    void anOpenThatRaisesLeavesThePaneWithoutADatabase() {
        const UseFake fake;
        const QString second = makeFile(u"B.DDB"_s, {valves()});
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fake->failOn(u"LoadDtb"_s, u"broken"_s);
        fixture.dialogs().expectFile(fileDialogTitle, second);
        fixture.dialogs().expectMessage(u"broken"_s, u"QIR Database Editor"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.isOpen(0));
        QVERIFY(!fixture.action(Command::SaveMenu).isEnabled());
        QVERIFY(!fixture.action(Command::CloseDatabaseMenu).isEnabled());
        QVERIFY(!fixture.editor().pane(0).controls().hint->isHidden());
    }

    void aStartThatRaisesWhileTablesAreListedLeavesThePaneWithoutADatabase() {
        const UseFake fake;
        const QString file = makeFile(u"A.DDB"_s, {pumps(), valves()});
        fake->failOn(u"QIRTableName"_s, u"broken"_s, 2);
        EditorFixture fixture;
        fixture.dialogs().expectMessage(u"broken"_s, u"QIR Database Editor"_s, u"OK"_s);
        runCommand([&] { fixture.window().Form_Load(file); });
        QVERIFY(!fixture.isOpen(0));
        QCOMPARE(fixture.lines(0), QStringList());
        QVERIFY(fixture.database(0).isEmpty());
        QVERIFY(!fixture.action(Command::SaveMenu).isEnabled());
    }

    void anErrorAtAPressOnTheOtherPanesListLosesNoClick() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {pumps(), valves()}), makeFile(u"B.DDB"_s, {pumps(), valves()}));
        fixture.clickCell(1, 1, 1);
        QCOMPARE(fixture.activePane(), 1);
        fixture.activate(0);
        fixture.clickCell(1, 1, 1);
        fixture.window().activateWindow();
        QTRY_VERIFY(fixture.grid(1).hasFocus());
        const ListBox &list = fixture.list(0);
        bool failed = false;
        fake->setHook([&failed](const FakeCall &call) {
            if (call.member == u"QIRTableFieldType" && !std::exchange(failed, true))
                throw std::runtime_error("broken");
        });
        hands::click(list.viewport(), Qt::LeftButton, {}, list.visualRect(list.model()->index(1, 0)).center());
        QTRY_COMPARE(fixture.shownTable(0), u"Valves"_s);
        QVERIFY(failed);
        QCOMPARE(fixture.list(0).ListIndex(), 1);
    }

    void removingATableIsOfferedAgainOnceThereIsOne() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {}));
        QVERIFY(!fixture.action(Command::RemoveTableMenu).isEnabled());
        fixture.open(makeFile(u"B.DDB"_s, {valves()}));
        QVERIFY(fixture.action(Command::RemoveTableMenu).isEnabled());
    }

private:
    /// Selects the second table in both lists; in this pane its load breaks off behind the first record.
    static void loadPart(const UseFake &fake, EditorFixture &fixture, int pane) {
        int records = 0;
        const int instance = pane == 0 ? 0 : 1; // of those that read records, in the order in which they do
        QList<int> readers;
        fake->setHook([&](const FakeCall &call) {
            if (call.member != u"GetQirRecord"_s)
                return;
            if (!readers.contains(call.instance))
                readers.append(call.instance);
            if (readers.indexOf(call.instance) == instance && ++records == 2)
                throw std::runtime_error("broken");
        });
        fixture.clickLine(0, 1);
        fake->setHook({});
        QCOMPARE(fixture.grid(pane).Rows(), 2);
        QVERIFY(fixture.grid(pane).Visible());
    }
};

QTEST_MAIN(LoadErrorTest)
#include "load_error_test.moc"
