#include "tests/support/Hands.h"
#include "tests/window/PopupTools.h"
#include "tests/window/WindowTest.h"

#include "tests/tools/fake/FakeControl.h"

#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

const QString addPrompt = u"New table name"_s;

QString renamePrompt(const QString &name) {
    return u"Table's new name ("_s + name + u")"_s;
}

QString removeQuestion(const QString &line) {
    return u"Do you want to remove table: '"_s + line + u"' ?"_s;
}

std::vector<TableOfTexts> lettered(const QString &letters) {
    std::vector<TableOfTexts> tables;
    for (const QChar letter : letters)
        tables.push_back(numbers(letter, {QString::number(letter.unicode())}));
    return tables;
}

} // namespace

/// Adding, renaming and removing tables through the real window.
class TablesTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void addAppendsATableOfOneFieldAndOneRecord() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.dialogs().expectInput(addPrompt, u"?"_s, u"Tablex"_s, u"Motors"_s);
        fixture.choose(Command::AddTableMenu);
        QCOMPARE(tableNames(fixture, 0), QStringList({u"Pumps"_s, u"Motors"_s}));
        QCOMPARE(fixture.lines(0), QStringList({u"Motors"_s, u"Pumps"_s}));
        QVERIFY(fixture.database(0).DtbHasChanged());
    }

    void addKeepsTheSelectedPositionAndShowsTheTableThatStandsThereNow() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, lettered(u"BD"_s)));
        fixture.clickLine(0, 1);
        fixture.dialogs().expectInput(addPrompt, u"?"_s, u"Tablex"_s, u"C"_s);
        fixture.choose(Command::AddTableMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"B"_s, u"C"_s, u"D"_s}));
        QCOMPARE(fixture.list(0).ListIndex(), 1);
        QCOMPARE(fixture.shownTable(0), u"C"_s);
        QCOMPARE(fixture.loadedLine(0), 1);
    }

    void addTakesTheNameWithoutSurroundingBlanksInTheCaseTyped() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.dialogs().expectInput(addPrompt, u"?"_s, u"Tablex"_s, u"  big Motors "_s);
        fixture.choose(Command::AddTableMenu);
        QCOMPARE(tableNames(fixture, 0).last(), u"big Motors"_s);
    }

    void addRefusesANameThatDiffersInCaseOrBlanksOnly_data() {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("quoted");
        QTest::newRow("the same") << u"Pumps"_s << u"Pumps"_s;
        QTest::newRow("case") << u"pUMPS"_s << u"pUMPS"_s;
        QTest::newRow("blanks") << u"  Pumps "_s << u"Pumps"_s;
        QTest::newRow("both") << u" PUMPS  "_s << u"PUMPS"_s;
    }
    void addRefusesANameThatDiffersInCaseOrBlanksOnly() {
        QFETCH(QString, answer);
        QFETCH(QString, quoted);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"Axles"_s, {u"1"_s}), pumps()}));
        fixture.dialogs().expectInput(addPrompt, u"?"_s, u"Tablex"_s, answer);
        fixture.dialogs().expectMessage(u"Table: '"_s + quoted + u"' already exists"_s, u"!"_s, u"OK"_s);
        fixture.choose(Command::AddTableMenu);
        QCOMPARE(tableNames(fixture, 0).size(), 2);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void addWithoutANameChangesNothing_data() {
        QTest::addColumn<QString>("answer");
        QTest::newRow("empty") << QString();
        QTest::newRow("blanks") << u"   "_s;
    }
    void addWithoutANameChangesNothing() {
        QFETCH(QString, answer);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        QSignalSpy reload(fixture.grid(0).model(), &QAbstractItemModel::modelReset);
        fixture.dialogs().expectInput(addPrompt, u"?"_s, u"Tablex"_s, answer);
        fixture.choose(Command::AddTableMenu);
        QCOMPARE(tableNames(fixture, 0), QStringList(u"Pumps"_s));
        QCOMPARE(reload.count(), 0);
    }

    void cancellingTheNameOfANewTableChangesNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.dialogs().expectInputCancelled(addPrompt, u"?"_s);
        fixture.choose(Command::AddTableMenu);
        QCOMPARE(tableNames(fixture, 0), QStringList(u"Pumps"_s));
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void addToADatabaseWithoutTablesShowsTheNewTable() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {}));
        QVERIFY(!fixture.grid(0).Visible());
        fixture.dialogs().expectInput(addPrompt, u"?"_s, u"Tablex"_s, u"First"_s);
        fixture.choose(Command::AddTableMenu);
        QCOMPARE(fixture.list(0).ListIndex(), 0);
        QVERIFY(fixture.grid(0).Visible());
        QCOMPARE(fixture.grid(0).Rows(), 2);
        QVERIFY(fixture.action(Command::RemoveTableMenu).isEnabled());
    }

    void anErrorOfTheComponentIsShownAndTheEditorGoesOn() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        // The same to the component, which leaves markers out; another name to the comparison of names.
        fixture.dialogs().expectInput(addPrompt, u"?"_s, u"Tablex"_s, u"Pumps !"_s);
        fixture.dialogs().expect([](QDialog &dialog) {
            const QString wrong = dialog.windowTitle() == u"QIR Database Editor"_s ? QString() : dialog.windowTitle();
            return wrong + pressButton(dialog, u"OK"_s);
        });
        fixture.choose(Command::AddTableMenu);
        QCOMPARE(tableNames(fixture, 0), QStringList(u"Pumps"_s));
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void addLeavesTheListsOutOfLineAndTheMarksAsTheyAre() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, lettered(u"AC"_s)), makeFile(u"R.DDB"_s, lettered(u"CD"_s)));
        QCOMPARE(fixture.lines(0), QStringList({u"A"_s, u"C"_s, u"D ?"_s}));
        fixture.dialogs().expectInput(addPrompt, u"?"_s, u"Tablex"_s, u"B"_s);
        fixture.choose(Command::AddTableMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"A"_s, u"B"_s, u"C"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"A ?"_s, u"C"_s, u"D"_s}));
        QCOMPARE(fixture.activePane(), 0);
    }

    void renameAsksWithTheNameAsDefaultAndKeepsThePosition() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, lettered(u"ABC"_s)));
        fixture.clickLine(0, 1);
        fixture.dialogs().expectInput(renamePrompt(u"B"_s), u"?"_s, u"B"_s, u"Z"_s);
        fixture.choose(Command::RenameTableMenu);
        QCOMPARE(tableNames(fixture, 0), QStringList({u"A"_s, u"Z"_s, u"C"_s}));
        QCOMPARE(fixture.lines(0), QStringList({u"A"_s, u"C"_s, u"Z"_s}));
        QCOMPARE(fixture.list(0).ListIndex(), 1);
        QCOMPARE(fixture.shownTable(0), u"C"_s);
    }

    void renameInPlaceKeepsTheCurrentCell() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickCell(0, 3, 2);
        fixture.dialogs().expectInput(renamePrompt(u"Pumps"_s), u"?"_s, u"Pumps"_s, u"Motors"_s);
        fixture.choose(Command::RenameTableMenu);
        QCOMPARE(fixture.grid(0).Row(), 3);
        QCOMPARE(fixture.grid(0).Col(), 2);
        QCOMPARE(fixture.shownTable(0), u"Motors"_s);
    }

    void renameOfAMarkedTableAsksForItsNameWithoutTheMarker() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s})}),
                         makeFile(u"R.DDB"_s, {numbers(u"A"_s, {u"2"_s})}));
        QCOMPARE(fixture.lines(0), QStringList(u"A !"_s));
        fixture.dialogs().expectInput(renamePrompt(u"A"_s), u"?"_s, u"A"_s, u"B"_s);
        fixture.choose(Command::RenameTableMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"A ?"_s, u"B"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"A"_s, u"B ?"_s}));
    }

    void renameKeepsThePositionWherePlaceholdersComeIn() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, lettered(u"BC"_s)), makeFile(u"R.DDB"_s, lettered(u"ABC"_s)));
        fixture.clickLine(0, 1);
        QCOMPARE(fixture.list(1).ListIndex(), 1);
        fixture.dialogs().expectInput(renamePrompt(u"B"_s), u"?"_s, u"B"_s, u"D"_s);
        fixture.choose(Command::RenameTableMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"A ?"_s, u"B ?"_s, u"C"_s, u"D"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"A"_s, u"B"_s, u"C"_s, u"D ?"_s}));
        QCOMPARE(fixture.list(0).ListIndex(), 1);
        QCOMPARE(fixture.list(1).ListIndex(), 1);
        QVERIFY(!fixture.grid(0).Visible());
        QCOMPARE(fixture.activePane(), 0);
    }

    void renamePassesTrailingBlanksOn() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.dialogs().expectInput(renamePrompt(u"Pumps"_s), u"?"_s, u"Pumps"_s, u"Motors  "_s);
        fake->clearLog();
        fixture.choose(Command::RenameTableMenu);
        QVariantList arguments;
        for (const FakeCall &call : fake->log())
            if (call.member == u"RenameTable"_s)
                arguments = call.arguments;
        QCOMPARE(arguments, QVariantList({1, u"Motors  "_s}));
        QCOMPARE(tableNames(fixture, 0), QStringList(u"Motors  "_s));
    }

    void aRenameThatTakesThePositionAwaySelectsTheFirstLineOfBothLists() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, lettered(u"AZ"_s)), makeFile(u"R.DDB"_s, lettered(u"M"_s)));
        fixture.clickLine(0, 2);
        fixture.dialogs().expectInput(renamePrompt(u"Z"_s), u"?"_s, u"Z"_s, u"M"_s);
        fixture.choose(Command::RenameTableMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"A"_s, u"M !"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"A ?"_s, u"M !"_s}));
        QCOMPARE(fixture.list(0).ListIndex(), 0);
        QCOMPARE(fixture.list(1).ListIndex(), 0);
        QCOMPARE(fixture.shownTable(0), u"A"_s);
        QVERIFY(!fixture.grid(1).Visible());
    }

    void aNameWithTrailingBlanksIsTheSameTableWithAndWithoutItsMark() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, lettered(u"A"_s)), makeFile(u"R.DDB"_s, lettered(u"A"_s)));
        fixture.dialogs().expectInput(renamePrompt(u"A"_s), u"?"_s, u"A"_s, u"A  "_s);
        fixture.choose(Command::RenameTableMenu);
        QCOMPARE(fixture.lines(0), QStringList(u"A  "_s));
        // The first key makes the two copies differ; the mark must not take the table for another one.
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_Return);
        hands::type(&fixture.cellEditor(0), u"1"_s);
        QCOMPARE(fixture.lines(0), QStringList(u"A   !"_s));
        QVERIFY(!fixture.cellEditor(0).isHidden());
        hands::type(&fixture.cellEditor(0), u"2"_s);
        QCOMPARE(recordsOf(fixture, 0), QList<QStringList>({{u"6512"_s}}));
    }

    void renameWithoutANameChangesNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.dialogs().expectInput(renamePrompt(u"Pumps"_s), u"?"_s, u"Pumps"_s, QString());
        fixture.choose(Command::RenameTableMenu);
        fixture.dialogs().expectInputCancelled(renamePrompt(u"Pumps"_s), u"?"_s);
        fixture.choose(Command::RenameTableMenu);
        QCOMPARE(tableNames(fixture, 0), QStringList(u"Pumps"_s));
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void renameToATakenNameShowsTheComponentsReason() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, lettered(u"AB"_s)));
        fixture.dialogs().expectInput(renamePrompt(u"A"_s), u"?"_s, u"A"_s, u"b"_s);
        QString shown;
        fixture.dialogs().expect([&shown](QDialog &dialog) {
            shown = dynamic_cast<QMessageBox &>(dialog).text();
            return pressButton(dialog, u"OK"_s);
        });
        fixture.choose(Command::RenameTableMenu);
        QVERIFY2(!shown.isEmpty(), "the reason is missing");
        QCOMPARE(tableNames(fixture, 0), QStringList({u"A"_s, u"B"_s}));
        QCOMPARE(fixture.lines(0), QStringList({u"A"_s, u"B"_s}));
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void renameReachesTheFile() {
        const QString path = makeFile(u"A.DDB"_s, {pumps()});
        {
            EditorFixture fixture(path);
            fixture.dialogs().expectInput(renamePrompt(u"Pumps"_s), u"?"_s, u"Pumps"_s, u"Motors"_s);
            fixture.choose(Command::RenameTableMenu);
            fixture.database(0).SaveDtb();
        }
        EditorFixture again(path);
        QCOMPARE(again.lines(0), QStringList(u"Motors"_s));
        QCOMPARE(again.texts(0).size(), 3);
    }

    void removeAsksFirstAndNoIsTheDefault() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, lettered(u"AB"_s)));
        fixture.dialogs().expect([](QDialog &dialog) {
            auto &box = dynamic_cast<QMessageBox &>(dialog);
            const bool right = box.text() == removeQuestion(u"A"_s) && box.windowTitle() == u"?"_s &&
                               box.icon() == QMessageBox::NoIcon && box.defaultButton() == box.button(QMessageBox::No);
            hands::key(&box, Qt::Key_Return);
            return right ? QString() : u"not the question: "_s + box.text();
        });
        fixture.choose(Command::RemoveTableMenu);
        QCOMPARE(tableNames(fixture, 0), QStringList({u"A"_s, u"B"_s}));
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void escapeAtTheQuestionRemovesNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, lettered(u"AB"_s)));
        fixture.dialogs().expect([](QDialog &dialog) {
            hands::key(&dialog, Qt::Key_Escape);
            return QString();
        });
        fixture.choose(Command::RemoveTableMenu);
        QCOMPARE(tableNames(fixture, 0).size(), 2);
    }

    void removeSelectsThePositionOfTheRemovedTablesNumber() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, lettered(u"ABCD"_s)));
        fixture.clickLine(0, 1);
        fixture.dialogs().expectMessage(removeQuestion(u"B"_s), u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveTableMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"A"_s, u"C"_s, u"D"_s}));
        QCOMPARE(fixture.list(0).ListIndex(), 2);
        QCOMPARE(fixture.shownTable(0), u"D"_s);
        QCOMPARE(fixture.texts(0), QList<QStringList>({{QString::number(u'D')}}));
        QVERIFY(fixture.database(0).DtbHasChanged());
    }

    void removingTheLastTableOfAListSelectsNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, lettered(u"ABC"_s)));
        fixture.clickLine(0, 2);
        fixture.dialogs().expectMessage(removeQuestion(u"C"_s), u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveTableMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"A"_s, u"B"_s}));
        QCOMPARE(fixture.list(0).ListIndex(), -1);
        QVERIFY(!fixture.grid(0).Visible());
        QCOMPARE(fixture.loadedLine(0), -1);
        QIR_VERIFY_OK(fixture);
        // Nothing is selected: rename and remove end silently.
        fixture.choose(Command::RenameTableMenu);
        fixture.choose(Command::RemoveTableMenu);
        QCOMPARE(tableNames(fixture, 0), QStringList({u"A"_s, u"B"_s}));
    }

    void removingTheOnlyTableLeavesAnEmptyList() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.dialogs().expectMessage(removeQuestion(u"Pumps"_s), u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveTableMenu);
        QCOMPARE(fixture.lines(0), QStringList());
        QVERIFY(!fixture.grid(0).Visible());
    }

    void removingTheOnlyTableOfTwoDatabasesEmptiesBothLists() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, lettered(u"A"_s)), makeFile(u"R.DDB"_s, {}));
        fixture.clickLine(0, 0);
        fixture.dialogs().expectMessage(removeQuestion(u"A"_s), u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveTableMenu);
        QCOMPARE(fixture.lines(0), QStringList());
        QCOMPARE(fixture.lines(1), QStringList());
        QVERIFY(!fixture.grid(0).Visible());
        QVERIFY(!fixture.action(Command::RemoveTableMenu).isEnabled());
    }

    void removeAsksWithTheLineAsItStandsAndLinesBothListsUpAgain() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"B"_s, {u"1"_s})}),
                         makeFile(u"R.DDB"_s, {numbers(u"A"_s, {u"2"_s}), numbers(u"B"_s, {u"1"_s})}));
        QCOMPARE(fixture.lines(0), QStringList({u"A !"_s, u"B"_s}));
        fixture.dialogs().expectMessage(removeQuestion(u"A !"_s), u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveTableMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"A ?"_s, u"B"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"A"_s, u"B"_s}));
        QCOMPARE(fixture.list(0).ListIndex(), 1);
        QCOMPARE(fixture.list(1).ListIndex(), 1);
        QCOMPARE(fixture.shownTable(1), u"B"_s);
        QCOMPARE(redCells(fixture, 0), Cells());
        QCOMPARE(fixture.activePane(), 0);
    }

    void anotherListThatLacksThePositionKeepsItsSelection() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, lettered(u"AB"_s)), makeFile(u"R.DDB"_s, lettered(u"AB"_s)));
        fixture.clickLine(0, 1);
        fixture.dialogs().expectMessage(removeQuestion(u"B"_s), u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveTableMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"A"_s, u"B ?"_s}));
        QCOMPARE(fixture.list(0).ListIndex(), -1);
        QVERIFY(!fixture.grid(0).Visible());
        QCOMPARE(fixture.list(1).ListIndex(), 1);
        QVERIFY(fixture.grid(1).Visible());
        QCOMPARE(fixture.activePane(), 0);
    }

    void theCommandsDoNothingOnAPlaceholder() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, lettered(u"A"_s)), makeFile(u"R.DDB"_s, lettered(u"AB"_s)));
        fixture.clickLine(0, 1);
        QVERIFY(!fixture.editor().pane(0).realTableSelected());
        fixture.choose(Command::RenameTableMenu);
        fixture.choose(Command::RemoveTableMenu);
        QCOMPARE(tableNames(fixture, 0), QStringList(u"A"_s));
    }

    void theCommandsActOnTheActivePane() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, lettered(u"AB"_s)), makeFile(u"R.DDB"_s, lettered(u"AB"_s)));
        fixture.activate(1);
        fixture.dialogs().expectMessage(removeQuestion(u"A"_s), u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveTableMenu);
        QCOMPARE(tableNames(fixture, 0), QStringList({u"A"_s, u"B"_s}));
        QCOMPARE(tableNames(fixture, 1), QStringList(u"B"_s));
        QCOMPARE(fixture.activePane(), 1);
    }

    void removingWhitensTheOtherGridWhenItIsLeftAlone() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {numbers(u"B"_s, {u"1"_s})}),
                         makeFile(u"B.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"B"_s, {u"2"_s})}));
        fixture.clickLine(0, 1);
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 1}}));
        fixture.dialogs().expectMessage(removeQuestion(u"B !"_s), u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveTableMenu);
        // The other list has the line of the removed table's number selected already.
        QCOMPARE(fixture.lines(0), QStringList({u"A ?"_s, u"B ?"_s}));
        QCOMPARE(fixture.list(1).ListIndex(), 1);
        QCOMPARE(fixture.texts(1), QList<QStringList>({{u"2"_s}}));
        QCOMPARE(redCells(fixture, 1), Cells());
    }

    void removingWhitensTheOtherGridWhenTheListHasLostItsLine() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"B"_s, {u"1"_s})}),
                         makeFile(u"B.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"B"_s, {u"2"_s})}));
        fixture.clickLine(0, 1);
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 1}}));
        fixture.dialogs().expectMessage(removeQuestion(u"B !"_s), u"?"_s, u"Yes"_s);
        fixture.choose(Command::RemoveTableMenu);
        QCOMPARE(fixture.list(0).ListIndex(), -1);
        QCOMPARE(fixture.list(1).ListIndex(), 1);
        QVERIFY(fixture.grid(1).Visible());
        QCOMPARE(redCells(fixture, 1), Cells());
    }

    void addingWhitensTheOtherGridWhenTheListHasLostItsLine() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"E"_s, {u"1"_s})}),
                         makeFile(u"B.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"B"_s, {u"1"_s}),
                                               numbers(u"C"_s, {u"1"_s}), numbers(u"E"_s, {u"2"_s})}));
        fixture.clickLine(0, 3);
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 1}}));
        fixture.dialogs().expectInput(u"New table name"_s, u"?"_s, u"Tablex"_s, u"F"_s);
        fixture.choose(Command::AddTableMenu);
        QCOMPARE(fixture.list(0).ListIndex(), 0);
        QCOMPARE(fixture.list(1).ListIndex(), 3);
        QCOMPARE(redCells(fixture, 1), Cells());
        QCOMPARE(redCells(fixture, 0), Cells());
    }

    void anErrorWhileRemovingChangesNothing() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, lettered(u"AB"_s)));
        fake->failOn(u"RemoveTable"_s, u"the table is locked"_s);
        fixture.dialogs().expectMessage(removeQuestion(u"A"_s), u"?"_s, u"Yes"_s);
        fixture.dialogs().expectMessage(u"the table is locked"_s, u"QIR Database Editor"_s, u"OK"_s);
        fixture.choose(Command::RemoveTableMenu);
        fake->stopFailing();
        QCOMPARE(fixture.lines(0), QStringList({u"A"_s, u"B"_s}));
        QCOMPARE(fixture.list(0).ListIndex(), 0);
        QVERIFY(fixture.grid(0).Visible());
    }

    void anErrorOfTheOtherDatabaseAfterARemovalLeavesNoLineWithAnotherTablesNumber() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, lettered(u"AB"_s)), makeFile(u"R.DDB"_s, lettered(u"ABCD"_s)));
        fixture.activate(1);
        fixture.clickLine(1, 1);
        fake->failOn(u"QIRTableName"_s, u"broken"_s);
        fixture.dialogs().expectMessage(removeQuestion(u"B"_s), u"?"_s, u"Yes"_s);
        fixture.dialogs().expectMessage(u"broken"_s, u"QIR Database Editor"_s, u"OK"_s);
        fixture.choose(Command::RemoveTableMenu);
        fake->stopFailing();
        QCOMPARE(tableNames(fixture, 1), QStringList({u"A"_s, u"C"_s, u"D"_s}));
    }
};

QTEST_MAIN(TablesTest)
#include "tables_test.moc"
