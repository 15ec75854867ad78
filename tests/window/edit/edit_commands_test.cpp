#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"
#include "tests/window/find/FindHands.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// The Edit menu's commands on selected cells, and the keys of the grid.
class EditCommandsTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void theEditMenuHasCopyAndPasteBesideTheNewCommands() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        QStringList names;
        for (const QAction *action : fixture.menu(Menu::EditMenu).actions())
            names.append(action->objectName());
        for (const char *name :
             {"CopyMenu", "CopyWithHeadersMenu", "PasteMenu", "DeleteCellsMenu", "FillDownMenu", "SelectAllMenu"})
            QVERIFY2(names.contains(QLatin1StringView(name)), name);
        QCOMPARE(fixture.menu(Menu::popmenuCP).actions().size(), 2);
    }

    void f2OpensTheEditorWithTheCaretAtTheEnd() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 2, 2);
        hands::key(&fixture.grid(0), Qt::Key_F2);
        QVERIFY(isEdited(fixture, 2, 2));
        QCOMPARE(fixture.cellEditor(0).cursorPosition(), 5);
        hands::type(&fixture.cellEditor(0), u"x"_s);
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"Sparex"_s);
    }

    void f2WithAModifierOpensNoEditor() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 2, 2);
        hands::key(&fixture.grid(0), Qt::Key_F2, Qt::ControlModifier);
        QVERIFY(!editing(fixture, 0));
    }

    void deleteEmptiesTheSelectedCells() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        selectBlock(fixture, 0, {2, 1, 3, 2});
        hands::key(&fixture.grid(0), Qt::Key_Delete);
        QCOMPARE(fixture.texts(0), (QList<QStringList>{{u"1200"_s, u"Main"_s}, {u""_s, u""_s}, {u""_s, u""_s}}));
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"1200"_s, u"Main"_s}, {u"0"_s, u""_s}, {u"0"_s, u""_s}}));
        QCOMPARE(fixture.grid(0).selection(), (GridSelection{2, 1, 3, 2}));
        QVERIFY(fixture.database(0).DtbHasChanged());
    }

    void deleteWritesOneGroup() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        selectBlock(fixture, 0, {1, 1, 3, 2});
        FakeControl::get().clearLog();
        hands::key(&fixture.grid(0), Qt::Key_Delete);
        QCOMPARE(callsOf({u"BeginChanges"_s, u"EndChanges"_s, u"CancelChanges"_s}),
                 (QStringList{u"BeginChanges()"_s, u"EndChanges()"_s}));
    }

    void deleteComparesWithTheOtherPane() {
        EditorFixture fixture;
        openBoth(fixture, {pumps()}, {pumps()});
        fixture.clickCell(1, 2, 2);
        hands::key(&fixture.grid(1), Qt::Key_Delete);
        QCOMPARE(fixture.lines(0), QStringList{u"Pumps !"_s});
        QCOMPARE(redCells(fixture, 0), (Cells{{2, 2}}));
        QCOMPARE(redCells(fixture, 1), (Cells{{2, 2}}));
        QCOMPARE(recordsOf(fixture, 0)[1][1], u"Spare"_s);
    }

    void deleteInTheTableListEmptiesNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickLine(0, 0);
        hands::key(&fixture.list(0), Qt::Key_Delete);
        QCOMPARE(recordsOf(fixture, 0)[0][0], u"1200"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void inTheCellEditorTheKeysAreTheTexts() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        beginEdit(fixture, 0, 2, 2);
        hands::key(&fixture.cellEditor(0), Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(fixture.cellEditor(0).selectedText(), u"Spare"_s);
        QCOMPARE(fixture.grid(0).selection(), singleCell(2, 2));
        hands::key(&fixture.cellEditor(0), Qt::Key_Home);
        hands::key(&fixture.cellEditor(0), Qt::Key_Delete);
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"pare"_s);
        hands::key(&fixture.cellEditor(0), Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).selection(), singleCell(2, 2));
        hands::key(&fixture.cellEditor(0), Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(recordsOf(fixture, 0),
                 (QList<QStringList>{{u"1200"_s, u"Main"_s}, {u"900"_s, u"pare"_s}, {u"60"_s, u"Test"_s}}));
        QVERIFY(isEdited(fixture, 2, 2));
    }

    void theMenuWorksInTheTextThatHasTheKeyboard() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 2);
        openBar(fixture, u"sought"_s);
        auto &text = inBar<QLineEdit>(fixture, u"findText"_s);
        QVERIFY(text.hasFocus());
        QGuiApplication::clipboard()->setText(u"other"_s);
        fixture.choose(Command::SelectAllMenu);
        QCOMPARE(text.selectedText(), u"sought"_s);
        fixture.choose(Command::CopyMenu);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"sought"_s);
        fixture.choose(Command::DeleteCellsMenu);
        QCOMPARE(text.text(), QString());
        fixture.choose(Command::PasteMenu);
        QCOMPARE(text.text(), u"sought"_s);
        QCOMPARE(fixture.grid(0).selection(), singleCell(1, 2));
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void theMenuWorksInTheTextOfTheCellThatIsEdited() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        beginEdit(fixture, 0, 2, 2);
        hands::key(&fixture.cellEditor(0), Qt::Key_Home);
        QGuiApplication::clipboard()->setText(u"x\ty"_s);
        fixture.choose(Command::PasteMenu);
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"x\tySpare"_s);
        fixture.choose(Command::DeleteCellsMenu); // the character behind the caret
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"x\typare"_s);
        QVERIFY(isEdited(fixture, 2, 2));
        QCOMPARE(fixture.texts(0)[1], (QStringList{u"900"_s, u"x\typare"_s}));
    }

    void fillDownTakesTheFirstSelectedRecord() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        selectBlock(fixture, 0, {1, 1, 3, 1});
        hands::key(&fixture.grid(0), Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(recordsOf(fixture, 0),
                 (QList<QStringList>{{u"1200"_s, u"Main"_s}, {u"1200"_s, u"Spare"_s}, {u"1200"_s, u"Test"_s}}));
        QCOMPARE(fixture.texts(0), recordsOf(fixture, 0));
    }

    void fillDownOfOneRecordTakesTheOneAbove() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        selectBlock(fixture, 0, {3, 1, 3, 2});
        hands::key(&fixture.grid(0), Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(recordsOf(fixture, 0)[2], (QStringList{u"900"_s, u"Spare"_s}));
    }

    void fillDownOfTheFirstRecordDoesNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_D, Qt::ControlModifier);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void ctrlHomeAndCtrlEndGoToTheCorners() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 2, 1);
        hands::key(&fixture.grid(0), Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).selection(), singleCell(3, 2));
        hands::key(&fixture.grid(0), Qt::Key_Home, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).selection(), singleCell(1, 1));
    }

    void selectAllSelectsInBothPanes() {
        EditorFixture fixture;
        openBoth(fixture, {pumps()}, {pumps()});
        fixture.clickCell(0, 2, 1);
        hands::key(&fixture.grid(0), Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).selection(), (GridSelection{1, 1, 3, 2}));
        QCOMPARE(fixture.grid(1).selection(), (GridSelection{1, 1, 3, 2}));
    }

    void aCopyWithHeadersBeginsWithThem() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        selectBlock(fixture, 0, {2, 1, 3, 2});
        fixture.choose(Command::CopyWithHeadersMenu);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"Speed [long]\tName [text]\r900\tSpare\r60\tTest"_s);
    }

    void theCommandsAreDisabledWithoutADatabase() {
        EditorFixture fixture;
        for (const Command command :
             {Command::DeleteCellsMenu, Command::FillDownMenu, Command::SelectAllMenu, Command::CopyWithHeadersMenu})
            QVERIFY(!fixture.action(command).isEnabled());
    }

    void theCommandsDoNothingWithoutRecordsOrFields() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"Empty"_s, {}), {u"None"_s, {}}}));
        for (const int line : {0, 1}) {
            fixture.clickLine(0, line);
            for (const Command command : {Command::DeleteCellsMenu, Command::FillDownMenu, Command::SelectAllMenu,
                                          Command::CopyWithHeadersMenu})
                fixture.choose(command);
        }
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void aDeleteThatFailsIsUndone() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        selectBlock(fixture, 0, {1, 1, 3, 2});
        FakeControl::get().failOn(u"QIRTableRecordSetByIndex"_s, u"the disk is full"_s, 3);
        fixture.dialogs().expect(messageNaming({u"the disk is full"_s}));
        hands::key(&fixture.grid(0), Qt::Key_Delete);
        FakeControl::get().stopFailing();
        QCOMPARE(fixture.texts(0)[0], (QStringList{u"1200"_s, u"Main"_s}));
        QCOMPARE(recordsOf(fixture, 0)[0], (QStringList{u"1200"_s, u"Main"_s}));
    }
};

QTEST_MAIN(EditCommandsTest)
#include "edit_commands_test.moc"
