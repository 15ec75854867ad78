#include "tests/window/desktop/OutsideHands.h"
#include "tests/window/edit/UndoHands.h"
#include "tests/window/find/FindHands.h"
#include "tests/window/panes/TypePicker.h"

#include <QListView>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

void removeShownTable(EditorFixture &fixture) {
    fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"Yes"_s); });
    fixture.choose(Command::RemoveTableMenu);
}

/// Double-clicks a line of the history; gives its lines, and how many of them are grey.
struct Looked {
    QStringList lines;
    int greyed = 0;
};

Looked goBackTo(EditorFixture &fixture, int line) {
    Looked looked;
    fixture.dialogs().expect([&](QDialog &dialog) {
        auto &list = control<QListView>(dialog, u"historyList"_s);
        for (int row = 0; row < list.model()->rowCount(); ++row) {
            looked.lines.append(list.model()->index(row, 0).data().toString());
            looked.greyed += list.model()->index(row, 0).data(Qt::ForegroundRole).isValid() ? 1 : 0;
        }
        hands::doubleClick(list.viewport(), Qt::LeftButton, Qt::NoModifier,
                           list.visualRect(list.model()->index(line, 0)).center());
        return QString();
    });
    fixture.choose(Command::HistoryMenu);
    return looked;
}

std::vector<TableOfTexts> manyTables(int count) {
    std::vector<TableOfTexts> all;
    for (int i = 1; i <= count; ++i)
        all.push_back(numbers(u"%1%2"_s.arg(i % 2 == 0 ? u"Even"_s : u"Odd"_s).arg(i, 2, 10, QChar(u'0')), {u"1"_s}));
    return all;
}

} // namespace

/// Taking steps back where something else has happened meanwhile.
class UndoSurprisesTest : public OutsideWindowTest {
    Q_OBJECT

    QString revertQuestion() const {
        return u"Do you want to go back to what is saved of '%1' ?"_s.arg(path(u"A.DDB"_s));
    }

private Q_SLOTS:
    void aRemovedTableComesBackBesideTheOther_data() {
        QTest::addColumn<int>("pane");
        QTest::newRow("left") << 0;
        QTest::newRow("right") << 1;
    }

    void aRemovedTableComesBackBesideTheOther() {
        QFETCH(int, pane);
        EditorFixture fixture;
        openBoth(fixture, {pumps(), numbers(u"Zero"_s, {u"0"_s})}, {pumps(), numbers(u"Zero"_s, {u"0"_s})});
        fixture.clickLine(pane, 0);
        removeShownTable(fixture);
        QIR_VERIFY_OK(fixture);
        QCOMPARE(fixture.database(pane).QIRTablesCount(), 1);
        undo(fixture);
        QIR_VERIFY_OK(fixture);
        QCOMPARE(fixture.activePane(), pane);
        for (const int each : {0, 1}) {
            QCOMPARE(fixture.lines(each), (QStringList{u"Pumps"_s, u"Zero"_s}));
            QCOMPARE(fixture.shownTable(each), u"Pumps"_s);
            QVERIFY(fixture.grid(each).Visible());
            QCOMPARE(redCells(fixture, each), Cells());
        }
        redo(fixture);
        QIR_VERIFY_OK(fixture);
        QCOMPARE(fixture.database(pane).QIRTablesCount(), 1);
        QCOMPARE(fixture.database(1 - pane).QIRTablesCount(), 2);
    }

    void theOnlyTableComesBackIntoAnEmptyList() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        removeShownTable(fixture);
        QCOMPARE(fixture.lines(0), QStringList());
        QVERIFY(!fixture.grid(0).Visible());
        undo(fixture);
        QCOMPARE(fixture.shownTable(0), u"Pumps"_s);
        QVERIFY(fixture.grid(0).Visible());
        QCOMPARE(fixture.grid(0).Rows(), 4);
        redo(fixture);
        QCOMPARE(fixture.lines(0), QStringList());
        QVERIFY(!fixture.grid(0).Visible());
    }

    void theOnlyRecordAndTheOnlyFieldComeBack() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"7"_s})}));
        fixture.clickCell(0, 1, 1);
        fixture.choose(Command::RemoveRecordMenu);
        QVERIFY(!fixture.grid(0).Visible());
        undo(fixture);
        QVERIFY(fixture.grid(0).Visible());
        QCOMPARE(fixture.texts(0), (QList<QStringList>{{u"7"_s}}));
        redo(fixture);
        QVERIFY(!fixture.grid(0).Visible());
        undo(fixture);
        QCOMPARE(fixture.texts(0), (QList<QStringList>{{u"7"_s}}));
        edit(fixture, 0, 1, 1, u"8"_s);
        QCOMPARE(stored(fixture, 0, 1, 1).toInt(), 8);
    }

    void aTableThatTheFilterHidesIsShownWhenItsEditIsTakenBack() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, manyTables(16)));
        fixture.clickLine(0, static_cast<int>(fixture.lines(0).indexOf(u"Odd01"_s)));
        edit(fixture, 0, 1, 1, u"5"_s);
        auto &filter = inBar<QLineEdit>(fixture, u"tableFilter_0"_s);
        hands::click(&filter, Qt::LeftButton);
        hands::type(&filter, u"even"_s);
        fixture.clickLine(0, static_cast<int>(fixture.lines(0).indexOf(u"Even04"_s)));
        QCOMPARE(fixture.shownTable(0), u"Even04"_s);
        undo(fixture);
        QCOMPARE(fixture.shownTable(0), u"Odd01"_s);
        QCOMPARE(fixture.texts(0), (QList<QStringList>{{u"1"_s}}));
    }

    void aReloadedPaneHasNothingToTakeBackAndTheOtherOneHas() {
        const QString file = makeFiles();
        const QString other = makeFile(u"OTHER.DDB"_s, {pumps()});
        EditorFixture fixture;
        fixture.openBoth(file, other);
        fixture.clickLine(0, 1);
        edit(fixture, 0, 1, 1, u"77"_s);
        fixture.choose(Command::SaveMenu);
        fixture.clickLine(1, 0);
        edit(fixture, 1, 1, 2, u"typed"_s);
        fixture.activate(0);
        QVERIFY(fixture.action(Command::UndoMenu).isEnabled());
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        press(fixture, 0, u"reload"_s);
        fixture.activate(0);
        QVERIFY(!fixture.action(Command::UndoMenu).isEnabled());
        QVERIFY(!fixture.action(Command::RedoMenu).isEnabled());
        undo(fixture);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        fixture.activate(1);
        QCOMPARE(captionOf(fixture, Command::UndoMenu), u"&Undo Edit of Pumps.Name"_s);
        undo(fixture);
        QVERIFY(!fixture.database(1).DtbHasChanged());
    }

    void stepsAreTakenBackAndMadeAgainBesideANoticeOfAChangeOutside() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        fixture.clickLine(0, 1);
        edit(fixture, 0, 1, 1, u"77"_s);
        undo(fixture);
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        fixture.activate(0);
        redo(fixture);
        QCOMPARE(fixture.texts(0)[0][0], u"77"_s);
        QVERIFY(fixture.database(0).DtbHasChanged());
        QVERIFY(bar(fixture, 0).isVisible());
        undo(fixture);
        QCOMPARE(fixture.texts(0)[0][0], u"1"_s);
    }

    void whatAnotherProgramHasChangedOrRemovedIsNothingToGoBackTo_data() {
        QTest::addColumn<QString>("commands");
        QTest::newRow("changed") << u"mv B.DDB A.DDB"_s;
        QTest::newRow("removed") << u"rm A.DDB"_s;
        QTest::newRow("spoiled") << u"printf nonsense > A.DDB"_s;
    }

    void whatAnotherProgramHasChangedOrRemovedIsNothingToGoBackTo() {
        QFETCH(QString, commands);
        const QString file = makeFiles();
        EditorFixture fixture(file);
        fixture.clickLine(0, 1);
        edit(fixture, 0, 2, 1, u"77"_s);
        elsewhere(commands);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        fixture.activate(0);
        fixture.dialogs().expectMessage(revertQuestion(), u"?"_s, u"Yes"_s);
        fixture.dialogs().expect([](QDialog &dialog) {
            const QString wrong = dialog.windowTitle() == "QIR Database Editor"_L1 ? QString() : dialog.windowTitle();
            return wrong + pressButton(dialog, u"OK"_s);
        });
        fixture.choose(Command::RevertMenu);
        QCOMPARE(fixture.shownTable(0), u"T"_s);
        QCOMPARE(fixture.texts(0)[1][0], u"77"_s);
        QVERIFY(fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.database(0).StepsCount(), 1);
        undo(fixture);
        QCOMPARE(fixture.texts(0)[1][0], u"2"_s);
    }

    void aNewPasswordIsNoStep() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        edit(fixture, 0, 1, 2, u"typed"_s);
        fixture.database(0).NewPassword(QString(), u"word"_s);
        undo(fixture);
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
        QVERIFY(fixture.database(0).DtbHasChanged());
        QVERIFY(!fixture.action(Command::UndoMenu).isEnabled());
        QVERIFY(fixture.action(Command::RevertMenu).isEnabled());
        fixture.dialogs().expectMessage(revertQuestion(), u"?"_s, u"Yes"_s);
        fixture.choose(Command::RevertMenu);
        QVERIFY(fixture.database(0).DtbHasChanged()); // the new password is still to be saved
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(path(u"A.DDB"_s), u"Pumps"_s, u"word"_s), u"1200"_s);
    }

    void theHistoryGoesOverARemovedAndARenamedTable() {
        EditorFixture fixture;
        openBoth(fixture, {pumps(), numbers(u"Zero"_s, {u"0"_s})}, {pumps()});
        fixture.clickLine(0, 0);
        edit(fixture, 0, 1, 2, u"typed"_s);
        fixture.dialogs().expectInput(u"Table's new name (Pumps)"_s, u"?"_s, u"Pumps"_s, u"Machines"_s);
        fixture.choose(Command::RenameTableMenu);
        fixture.clickLine(0, static_cast<int>(fixture.lines(0).indexOf(u"Machines"_s)));
        if (fixture.shownTable(0) != u"Machines"_s) { // marked as one that only this side has
            for (int line = 0; line < fixture.lines(0).size(); ++line)
                if (fixture.lines(0)[line].startsWith(u"Machines"_s))
                    fixture.clickLine(0, line);
        }
        QCOMPARE(fixture.shownTable(0), u"Machines"_s);
        removeShownTable(fixture);
        QIR_VERIFY_OK(fixture);
        fixture.activate(0);
        QCOMPARE(goBackTo(fixture, 0).lines.size(), 4);
        QIR_VERIFY_OK(fixture);
        QCOMPARE(fixture.shownTable(0), u"Pumps"_s);
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
        QCOMPARE(redCells(fixture, 1), Cells());
        const Looked looked = goBackTo(fixture, 3);
        QCOMPARE(looked.greyed, 3);
        QIR_VERIFY_OK(fixture);
        QCOMPARE(fixture.database(0).QIRTablesCount(), 1);
    }

    void aNewChangeDropsWhatWasTakenBackFromTheHistory() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        edit(fixture, 0, 1, 2, u"one"_s);
        edit(fixture, 0, 2, 2, u"two"_s);
        undo(fixture);
        undo(fixture);
        const Looked undone = goBackTo(fixture, 0); // which it is at
        QCOMPARE(undone.lines.size(), 3);
        QCOMPARE(undone.greyed, 2);
        edit(fixture, 0, 3, 2, u"three"_s);
        QVERIFY(!fixture.action(Command::RedoMenu).isEnabled());
        const Looked after = goBackTo(fixture, 1);
        QCOMPARE(after.lines.size(), 2);
        QCOMPARE(after.greyed, 0);
        QCOMPARE(fixture.texts(0)[2][1], u"three"_s);
    }

    void whereOnlyDifferencesAreShownTheyFollow() {
        EditorFixture fixture;
        openBoth(fixture, {pumps()}, {otherPumps()});
        fixture.activate(0);
        fixture.choose(Command::OnlyDifferencesMenu);
        const int row = fixture.grid(0).nextShownRow(1);
        const int column = fixture.grid(0).nextShownColumn(1);
        const QString before = fixture.grid(0).TextMatrix(row, column);
        edit(fixture, 0, row, column, u"12345"_s);
        undo(fixture);
        QIR_VERIFY_OK(fixture);
        QCOMPARE(fixture.grid(0).TextMatrix(row, column), before);
        QCOMPARE(fixture.grid(0).shows(row, column), true);
        QCOMPARE(fixture.grid(0).selection(), singleCell(row, column));
        redo(fixture);
        QIR_VERIFY_OK(fixture);
        QCOMPARE(fixture.grid(0).TextMatrix(row, column), u"12345"_s);
    }

    void theKeysStayWithTheTextThoughTheOtherPaneIsActive() {
        EditorFixture fixture;
        openBoth(fixture, {pumps()}, {pumps()});
        edit(fixture, 0, 1, 2, u"one"_s);
        beginEdit(fixture, 1, 2, 2);
        hands::type(&fixture.cellEditor(1), u"x"_s);
        fixture.activate(0); // which leaves the keyboard with the text
        QVERIFY(fixture.cellEditor(1).hasFocus());
        strike(fixture, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(editing(fixture, 1));
        QCOMPARE(fixture.texts(0)[0][1], u"one"_s);
        QCOMPARE(fixture.texts(1)[1][1], u"Spare"_s);
        QCOMPARE(redCells(fixture, 0), (Cells{{1, 2}}));
        fixture.clickCell(0, 3, 1);
        strike(fixture, Qt::Key_Z, Qt::ControlModifier);
        QIR_VERIFY_OK(fixture);
        QVERIFY(!editing(fixture, 1));
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
        QCOMPARE(redCells(fixture, 0), Cells());
    }

    void undoingATextInItsEditorAndThenTheStepLeavesNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        beginEdit(fixture, 0, 1, 2);
        hands::type(&fixture.cellEditor(0), u"xyz"_s);
        hands::key(&fixture.cellEditor(0), Qt::Key_Z, Qt::ControlModifier);
        hands::key(&fixture.cellEditor(0), Qt::Key_Z, Qt::ControlModifier); // nothing more in the text
        QVERIFY(editing(fixture, 0));
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), u"Main"_s);
        hands::key(&fixture.cellEditor(0), Qt::Key_Return);
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), u"Main"_s);
        undo(fixture);
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void emptyingAndFillingDownAreSteps() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 1, 2);
        const QStringList names{u"Fill Down"_s, u"Delete"_s};
        hands::key(&fixture.grid(0), Qt::Key_Delete);
        fixture.clickCell(0, 3, 2);
        hands::key(&fixture.grid(0), Qt::Key_D, Qt::ControlModifier);
        for (const QString &name : names) {
            QCOMPARE(captionOf(fixture, Command::UndoMenu), u"&Undo "_s + name);
            undo(fixture);
        }
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }
};

QTEST_MAIN(UndoSurprisesTest)
#include "undo_surprises_test.moc"
