#include "tests/tools/fake/FakeControl.h"
#include "tests/window/PopupTools.h"
#include "tests/window/edit/UndoHands.h"
#include "tests/window/find/FindHands.h"
#include "tests/window/panes/TypePicker.h"

#include <QListView>
#include <QMenuBar>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

QMenu &openEditMenu(EditorFixture &fixture) {
    QMenu &menu = fixture.menu(Menu::EditMenu);
    QMenuBar *bar = fixture.window().menuBar();
    hands::click(bar, Qt::LeftButton, Qt::NoModifier, bar->actionGeometry(menu.menuAction()).center());
    return menu;
}

} // namespace

/// Taking steps back in the real window.
class UndoTest : public UndoWindowTest {
    Q_OBJECT

private Q_SLOTS:
    void aResizedFieldGetsTheTextsAgainThatItCut() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 2);
        fixture.dialogs().expectInput(u"Field size"_s, u"?"_s, u"20"_s, u"2"_s);
        fixture.choose(Command::ResizeTextField);
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), u"Ma"_s);
        undo(fixture);
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), u"Main"_s);
        redo(fixture);
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), u"Ma"_s);
        QCOMPARE(fixture.texts(0)[0][1], u"Ma"_s); // shown as it is stored
    }

    void anEditIsOneStepHoweverManyKeystrokes() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        edit(fixture, 0, 1, 2, u"several keys"_s);
        edit(fixture, 0, 1, 2, u"again"_s);
        edit(fixture, 0, 3, 1, u"5"_s);
        QCOMPARE(fixture.database(0).StepsCount(), 3);
        undo(fixture);
        undo(fixture);
        QCOMPARE(fixture.texts(0)[0][1], u"several keys"_s);
        undo(fixture);
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
    }

    void takingBackGoesToThePlace() {
        EditorFixture fixture;
        openPumps(fixture);
        edit(fixture, 0, 2, 2, u"changed"_s);
        fixture.clickLine(0, static_cast<int>(fixture.lines(0).indexOf(u"Zero"_s)));
        QCOMPARE(fixture.shownTable(0), u"Zero"_s);
        undo(fixture);
        QCOMPARE(fixture.shownTable(0), u"Pumps"_s);
        QCOMPARE(fixture.shownTable(1), u"Pumps"_s);
        QCOMPARE(fixture.list(1).ListIndex(), fixture.list(0).ListIndex());
        QCOMPARE(fixture.grid(0).selection(), singleCell(2, 2));
        QCOMPARE(fixture.grid(1).selection(), singleCell(2, 2));
        QCOMPARE(fixture.activePane(), 0);
    }

    void theRedCellsFollow() {
        EditorFixture fixture;
        openBoth(fixture, {pumps()}, {pumps()});
        QCOMPARE(redCells(fixture, 0), Cells());
        edit(fixture, 0, 2, 2, u"changed"_s);
        QCOMPARE(fixture.lines(1), QStringList(u"Pumps !"_s));
        undo(fixture);
        QCOMPARE(redCells(fixture, 0), Cells());
        QCOMPARE(redCells(fixture, 1), Cells());
        QCOMPARE(fixture.lines(0), QStringList(u"Pumps"_s));
        QCOMPARE(fixture.lines(1), QStringList(u"Pumps"_s));
        redo(fixture);
        QCOMPARE(redCells(fixture, 0), (Cells{{2, 2}}));
        QCOMPARE(redCells(fixture, 1), (Cells{{2, 2}}));
        QCOMPARE(fixture.lines(1), QStringList(u"Pumps !"_s));
    }

    void eachPaneHasStepsOfItsOwn() {
        EditorFixture fixture;
        openBoth(fixture, {pumps()}, {pumps()});
        edit(fixture, 0, 1, 2, u"left"_s);
        edit(fixture, 1, 1, 2, u"right"_s);
        fixture.activate(0);
        QVERIFY(fixture.action(Command::UndoMenu).isEnabled());
        undo(fixture);
        QVERIFY(!fixture.action(Command::UndoMenu).isEnabled());
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
        QCOMPARE(fixture.texts(1)[0][1], u"right"_s);
        fixture.activate(1);
        QVERIFY(fixture.action(Command::UndoMenu).isEnabled());
        undo(fixture);
        QCOMPARE(fixture.texts(1)[0][1], u"Main"_s);
        QCOMPARE(redCells(fixture, 0), Cells());
    }

    void theKeysWorkInTheTextWhileACellIsEdited() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        edit(fixture, 0, 2, 2, u"before"_s);
        beginEdit(fixture, 0, 1, 2);
        hands::type(&fixture.cellEditor(0), u"x"_s);
        QCOMPARE(fixture.cellEditor(0).text(), u"Mainx"_s);
        hands::key(&fixture.cellEditor(0), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(fixture.cellEditor(0).text(), u"Main"_s);
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), u"Main"_s);
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"before"_s);
        QVERIFY(editing(fixture, 0));
        hands::key(&fixture.cellEditor(0), Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(fixture.cellEditor(0).text(), u"Mainx"_s);
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), u"Mainx"_s);
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"before"_s);
    }

    void bothShortcutsMakeAStepAgain() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        edit(fixture, 0, 2, 2, u"typed"_s);
        undo(fixture);
        hands::key(&fixture.window(), Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(fixture.texts(0)[1][1], u"typed"_s);
    }

    void stepsHoldAcrossASave() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        edit(fixture, 0, 1, 2, u"one"_s);
        edit(fixture, 0, 2, 2, u"two"_s);
        fixture.choose(Command::SaveMenu);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        undo(fixture);
        QVERIFY(fixture.database(0).DtbHasChanged());
        undo(fixture);
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
        redo(fixture);
        redo(fixture);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void theEditMenuIsTheTextsWhileItHasTheKeyboard() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        edit(fixture, 0, 2, 2, u"before"_s);
        openBar(fixture, u"find"_s);
        auto &text = inBar<QLineEdit>(fixture, u"findText"_s);
        QMenu &menu = openEditMenu(fixture);
        QCOMPARE(captionOf(fixture, Command::UndoMenu), u"&Undo"_s);
        QVERIFY(fixture.action(Command::UndoMenu).isEnabled());
        QVERIFY(!fixture.action(Command::RedoMenu).isEnabled());
        chooseFromPopup(menu, fixture.action(Command::UndoMenu));
        QCOMPARE(text.text(), QString());
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"before"_s);
        QCOMPARE(captionOf(fixture, Command::UndoMenu), u"&Undo Edit of Pumps.Name"_s);
        openEditMenu(fixture);
        QVERIFY(!fixture.action(Command::UndoMenu).isEnabled());
        QVERIFY(fixture.action(Command::RedoMenu).isEnabled());
        hands::key(&menu, Qt::Key_Escape);
        hands::turnLoop();
        QVERIFY(fixture.action(Command::UndoMenu).isEnabled());
        fixture.clickCell(0, 1, 1);
        openEditMenu(fixture);
        QCOMPARE(captionOf(fixture, Command::UndoMenu), u"&Undo Edit of Pumps.Name"_s);
        chooseFromPopup(menu, fixture.action(Command::UndoMenu));
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"Spare"_s);
    }

    void aCaptionShowsAnAmpersandOfAName() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"Mix & Match"_s, {u"1"_s})}));
        edit(fixture, 0, 1, 1, u"2"_s);
        QCOMPARE(captionOf(fixture, Command::UndoMenu), u"&Undo Edit of Mix && Match.Value"_s);
    }

    void aClosedPaneHasNothingToTakeBack() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        edit(fixture, 0, 1, 2, u"one"_s);
        QVERIFY(fixture.action(Command::HistoryMenu).isEnabled());
        fixture.dialogs().expectMessage(saveQuestion(path(u"A.DDB"_s)), u"QIR Database Editor"_s, u"No"_s);
        fixture.choose(Command::CloseDatabaseMenu);
        for (const Command command : {Command::UndoMenu, Command::RedoMenu, Command::HistoryMenu, Command::RevertMenu})
            QVERIFY(!fixture.action(command).isEnabled());
    }

    void aComponentWithoutTheMembersHasNothingToTakeBack() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        edit(fixture, 0, 1, 2, u"one"_s);
        QCOMPARE(fixture.texts(0)[0][1], u"one"_s);
        for (const Command command : {Command::UndoMenu, Command::RedoMenu, Command::HistoryMenu, Command::RevertMenu})
            QVERIFY(!fixture.action(command).isEnabled());
        undo(fixture);
        QCOMPARE(fixture.texts(0)[0][1], u"one"_s);
    }

    void aKeystrokeCostsAConstantNumberOfCallsMore() {
        const auto callsOfAKey = [&](bool steps, int records) {
            const UseFake fake;
            fake->setSteps(steps);
            QStringList texts;
            for (int record = 0; record < records; ++record)
                texts.append(QString::number(record));
            EditorFixture fixture(makeFile(u"K.DDB"_s, {numbers(u"T"_s, texts)}));
            beginEdit(fixture, 0, 1, 1);
            hands::type(&fixture.cellEditor(0), u"1"_s);
            const int before = fake->calls();
            hands::type(&fixture.cellEditor(0), u"2"_s);
            return fake->calls() - before;
        };
        const int plain = callsOfAKey(false, 3);
        const int withSteps = callsOfAKey(true, 3);
        QVERIFY(withSteps > plain);
        QVERIFY2(withSteps <= plain + 6, qPrintable(QString::number(withSteps)));
        QCOMPARE(callsOfAKey(true, 300), withSteps);
    }

    void anUndoReadsEachRecordOnceAndAsksNothingElseByTheLengthOfTheTable() {
        const auto callsOfUndo = [&](int records) {
            const UseFake fake;
            fake->setSteps(true);
            EditorFixture fixture(makeFile(u"K.DDB"_s, {counted(u"T"_s, records, 2)}));
            edit(fixture, 0, 2, 1, u"12"_s);
            const auto perRecord = [&] {
                return fake->calls(u"GetQirRecord"_s) + fake->calls(u"QirTableFieldsCount"_s); // which checks it
            };
            const int reads = fake->calls(u"GetQirRecord"_s);
            const int others = fake->calls() - perRecord();
            undo(fixture);
            return std::pair(fake->calls(u"GetQirRecord"_s) - reads, fake->calls() - perRecord() - others);
        };
        const auto [readsOfFew, othersOfFew] = callsOfUndo(3);
        const auto [readsOfMany, othersOfMany] = callsOfUndo(300);
        QCOMPARE(readsOfFew, 3);
        QCOMPARE(readsOfMany, 300);
        QCOMPARE(othersOfMany, othersOfFew);
    }

    void aFailedTakingBackIsToldAndShowsWhatIsThere() {
        const UseFake fake;
        fake->setSteps(true);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        edit(fixture, 0, 1, 2, u"one"_s);
        fake->failOn(u"Undo"_s, u"no room"_s);
        fixture.dialogs().expectMessage(u"no room"_s, u"QIR Database Editor"_s, u"OK"_s);
        undo(fixture);
        fake->stopFailing();
        QCOMPARE(fixture.texts(0)[0][1], u"one"_s);
        undo(fixture);
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
    }

    void revertingGoesBackToWhatIsSavedAndIsAStep() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps(), numbers(u"T"_s, {u"1"_s})}));
        QVERIFY(!fixture.action(Command::RevertMenu).isEnabled());
        edit(fixture, 0, 1, 2, u"one"_s);
        edit(fixture, 0, 2, 2, u"two"_s);
        const QString question = u"Do you want to go back to what is saved of '%1' ?"_s.arg(path(u"A.DDB"_s));
        fixture.dialogs().expectMessage(question, u"?"_s, u"No"_s);
        fixture.choose(Command::RevertMenu);
        QCOMPARE(fixture.texts(0)[0][1], u"one"_s);
        fixture.dialogs().expectMessage(question, u"?"_s, u"Yes"_s);
        fixture.choose(Command::RevertMenu);
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.shownTable(0), u"Pumps"_s);
        QCOMPARE(captionOf(fixture, Command::UndoMenu), u"&Undo Revert to Saved"_s);
        undo(fixture);
        QCOMPARE(fixture.texts(0)[0][1], u"one"_s);
        QCOMPARE(fixture.texts(0)[1][1], u"two"_s);
    }

    void theHistoryGoesToAState() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        edit(fixture, 0, 1, 2, u"one"_s);
        edit(fixture, 0, 2, 2, u"two"_s);
        edit(fixture, 0, 3, 2, u"three"_s);
        undo(fixture);
        QStringList lines;
        bool greyed = false;
        fixture.dialogs().expect([&](QDialog &dialog) {
            if (dialog.objectName() != u"history"_s)
                return u"not the history: "_s + dialog.objectName();
            auto &list = control<QListView>(dialog, u"historyList"_s);
            for (int line = 0; line < list.model()->rowCount(); ++line)
                lines.append(list.model()->index(line, 0).data().toString());
            greyed = list.model()->index(3, 0).data(Qt::ForegroundRole).isValid() &&
                     !list.model()->index(2, 0).data(Qt::ForegroundRole).isValid();
            if (list.currentIndex().row() != 2)
                return u"the state of now is not selected"_s;
            hands::doubleClick(list.viewport(), Qt::LeftButton, Qt::NoModifier,
                               list.visualRect(list.model()->index(0, 0)).center());
            return QString();
        });
        fixture.choose(Command::HistoryMenu);
        QCOMPARE(lines.size(), 4);
        QCOMPARE(lines[0], u"As opened"_s);
        QVERIFY(lines[3].endsWith(u"Edit of Pumps.Name"_s));
        QVERIFY(greyed);
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
        QCOMPARE(fixture.texts(0)[1][1], u"Spare"_s);
        redo(fixture);
        redo(fixture);
        redo(fixture);
        QCOMPARE(fixture.texts(0)[2][1], u"three"_s);
    }
};

QTEST_MAIN(UndoTest)
#include "undo_test.moc"
