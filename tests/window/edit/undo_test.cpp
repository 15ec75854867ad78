#include "tests/support/Hands.h"
#include "tests/tools/fake/FakeControl.h"
#include "tests/window/EditSupport.h"
#include "tests/window/PopupTools.h"
#include "tests/window/WindowTest.h"
#include "tests/window/find/FindHands.h"
#include "tests/window/panes/TypePicker.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QListView>
#include <QMenuBar>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// All that both panes show and hold.
struct Seen {
    std::array<QString, 2> shown;
    std::array<QStringList, 2> lines;
    std::array<QList<QStringList>, 2> texts;
    std::array<Cells, 2> red;
    std::array<QStringList, 2> fields;
    std::array<QList<QStringList>, 2> records;
    bool operator==(const Seen &) const = default;
};

Seen look(EditorFixture &fixture) {
    Seen seen;
    for (const std::size_t pane : {0U, 1U}) {
        const int number = static_cast<int>(pane);
        seen.shown[pane] = fixture.shownTable(number);
        seen.lines[pane] = fixture.lines(number);
        if (!fixture.isOpen(number) || !fixture.editor().pane(number).realTableSelected())
            continue;
        seen.texts[pane] = fixture.texts(number);
        seen.fields[pane] = fieldsOf(fixture, number);
        seen.records[pane] = recordsOf(fixture, number);
        if (fixture.grid(number).Visible())
            seen.red[pane] = redCells(fixture, number);
    }
    return seen;
}

QString captionOf(EditorFixture &fixture, Command command) {
    return fixture.action(command).text();
}

QMenu &openEditMenu(EditorFixture &fixture) {
    QMenu &menu = fixture.menu(Menu::EditMenu);
    QMenuBar *bar = fixture.window().menuBar();
    hands::click(bar, Qt::LeftButton, Qt::NoModifier, bar->actionGeometry(menu.menuAction()).center());
    return menu;
}

void undo(EditorFixture &fixture) {
    hands::key(&fixture.window(), Qt::Key_Z, Qt::ControlModifier);
}

void redo(EditorFixture &fixture) {
    hands::key(&fixture.window(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
}

void pasteAt(EditorFixture &fixture, int pane, const GridSelection &block, const QString &text) {
    selectBlock(fixture, pane, block);
    QGuiApplication::clipboard()->setText(text);
    fixture.choose(Command::PasteMenu);
}

using Act = std::function<void(EditorFixture &)>;

struct Kind {
    const char *title;
    QString name;
    Act act;
};

void addTextField(EditorFixture &fixture) {
    fixture.dialogs().expectInput(u"New field name"_s, u"?"_s, u"Fieldx"_s, u"Remark"_s);
    fixture.dialogs().expect([](QDialog &dialog) {
        control<ListBox>(dialog, u"valori_discreti"_s).setListIndex(3);
        return pressButton(dialog, u"OK"_s);
    });
    fixture.choose(Command::AddFieldMenu);
}

void fromOrigin(EditorFixture &fixture, int pane, Command command) {
    fixture.editor().setOrigin(pane);
    fixture.choose(command);
}

Act choosing(Command command) {
    return [command](EditorFixture &fixture) { fixture.choose(command); };
}

Act answering(const QString &prompt, const QString &given, const QString &answer, Command command) {
    return [=](EditorFixture &fixture) {
        fixture.dialogs().expectInput(prompt, u"?"_s, given, answer);
        fixture.choose(command);
    };
}

// What a user may do in the left pane of two that hold pumps; the table "Lone" is there alone.

std::vector<Kind> kindsOfCells() {
    return {
        {"edit", u"Edit of Pumps.Name"_s, [](EditorFixture &fixture) { edit(fixture, 0, 2, 2, u"changed"_s); }},
        {"paste", u"Paste"_s,
         [](EditorFixture &fixture) {
             pasteAt(fixture, 0, {1, 1, 2, 2}, u"1\tone\r2\ttwo"_s);
         }},
        {"sort", u"Sort by Speed"_s,
         [](EditorFixture &fixture) {
             fixture.clickCell(0, 1, 1);
             fromOrigin(fixture, 0, Command::SortFPOP);
         }},
        {"add a record", u"Adding a record to Pumps"_s, choosing(Command::AddRecordMenu)},
        {"remove a record", u"Removing record 2 of Pumps"_s,
         [](EditorFixture &fixture) {
             fixture.clickCell(0, 2, 1);
             fixture.choose(Command::RemoveRecordMenu);
         }},
    };
}

std::vector<Kind> kindsOfStructure() {
    return {
        {"add a table", u"Adding table New"_s,
         answering(u"New table name"_s, u"Tablex"_s, u"New"_s, Command::AddTableMenu)},
        {"rename a table", u"Renaming table Pumps"_s,
         answering(u"Table's new name (Pumps)"_s, u"Pumps"_s, u"Machines"_s, Command::RenameTableMenu)},
        {"remove a table", u"Removing table Pumps"_s,
         [](EditorFixture &fixture) {
             fixture.dialogs().expectMessage(
                 u"Do you want to remove table: '%1' ?"_s.arg(fixture.list(0).List(fixture.list(0).ListIndex())),
                 u"?"_s, u"Yes"_s);
             fixture.choose(Command::RemoveTableMenu);
         }},
        {"add a field", u"Adding field Remark"_s, addTextField},
        {"rename a field", u"Renaming field Name"_s,
         [](EditorFixture &fixture) {
             fixture.clickCell(0, 1, 2);
             fixture.dialogs().expectInput(u"Field's new name (Name)"_s, u"?"_s, u"Name"_s, u"Title"_s);
             fixture.choose(Command::RenameFieldMenu);
         }},
        {"remove a field", u"Removing field Name"_s,
         [](EditorFixture &fixture) {
             fixture.clickCell(0, 1, 2);
             fixture.dialogs().expectMessage(u"Do you want to remove field: 'Name' ?"_s, u"?"_s, u"Yes"_s);
             fixture.choose(Command::RemoveFieldMenu);
         }},
    };
}

std::vector<Kind> kindsOfCopies() {
    return {
        {"copy a table", u"Copy of table Lone"_s,
         [](EditorFixture &fixture) {
             fixture.clickLine(1, 0);
             fixture.activate(0);
             fromOrigin(fixture, 1, Command::ClonePOP);
         }},
        {"make as long", u"Records for Pumps"_s,
         [](EditorFixture &fixture) {
             fixture.dialogs().expectMessage(u"Copy Cell content?"_s, u"?"_s, u"Yes"_s);
             fromOrigin(fixture, 1, Command::CloneTableSizePOP);
         }},
        {"copy cells", u"Copy of cells to Pumps"_s,
         [](EditorFixture &fixture) {
             selectBlock(fixture, 1, {1, 2, 2, 2});
             fixture.activate(0);
             fromOrigin(fixture, 1, Command::CloneSelectedAreaPOP);
         }},
    };
}

std::vector<Kind> kinds() {
    std::vector<Kind> all;
    for (const std::vector<Kind> &some : {kindsOfCells(), kindsOfStructure(), kindsOfCopies()})
        all.insert(all.end(), some.begin(), some.end());
    return all;
}

TableOfTexts otherPumps() {
    TableOfTexts table = pumps();
    table.fields[0].texts = {u"7"_s, u"900"_s, u"60"_s, u"5"_s};
    table.fields[1].texts = {u"First"_s, u"Spare"_s, u"Third"_s, u"Fourth"_s};
    return table;
}

} // namespace

/// Taking steps back in the real window.
class UndoTest : public WindowTest {
    Q_OBJECT

    void openPumps(EditorFixture &fixture) const {
        openBoth(fixture, {pumps(), numbers(u"Zero"_s, {u"0"_s})},
                 {numbers(u"Lone"_s, {u"1"_s, u"2"_s}), otherPumps(), numbers(u"Zero"_s, {u"0"_s})});
        fixture.clickLine(0, static_cast<int>(fixture.lines(0).indexOf(u"Pumps !"_s)));
        fixture.activate(0);
    }

private Q_SLOTS:
    void eachKindOfCommandIsTakenBackAndMadeAgain_data() {
        QTest::addColumn<int>("kind");
        int number = 0;
        for (const Kind &kind : kinds())
            QTest::newRow(kind.title) << number++;
    }

    void eachKindOfCommandIsTakenBackAndMadeAgain() {
        QFETCH(int, kind);
        const Kind tried = kinds()[static_cast<std::size_t>(kind)];
        EditorFixture fixture;
        openPumps(fixture);
        QVERIFY(!fixture.action(Command::UndoMenu).isEnabled());
        const Seen before = look(fixture);
        tried.act(fixture);
        QIR_VERIFY_OK(fixture);
        fixture.activate(0);
        fixture.choose(Command::CompareAgainMenu); // some commands leave the lists unaligned
        const Seen after = look(fixture);
        QVERIFY(after != before);
        QCOMPARE(fixture.database(0).StepsCount(), 1);
        QCOMPARE(captionOf(fixture, Command::UndoMenu), u"&Undo "_s + tried.name);

        undo(fixture);
        QIR_VERIFY_OK(fixture);
        QCOMPARE(captionOf(fixture, Command::RedoMenu), u"&Redo "_s + tried.name);
        QVERIFY(!fixture.action(Command::UndoMenu).isEnabled());
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.lines(0), before.lines[0]);
        QCOMPARE(fixture.lines(1), before.lines[1]);
        fixture.clickLine(0, static_cast<int>(fixture.lines(0).indexOf(u"Pumps !"_s)));
        QVERIFY(look(fixture) == before);

        redo(fixture);
        QIR_VERIFY_OK(fixture);
        QCOMPARE(captionOf(fixture, Command::UndoMenu), u"&Undo "_s + tried.name);
        QCOMPARE(fixture.lines(0), after.lines[0]);
        QCOMPARE(fixture.lines(1), after.lines[1]);
        QVERIFY(fixture.database(0).DtbHasChanged());
        if (look(fixture).shown == after.shown)
            QVERIFY(look(fixture) == after);
    }

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
