#include "tests/window/edit/UndoHands.h"
#include "tests/window/panes/TypePicker.h"

#include <QClipboard>
#include <QGuiApplication>

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

} // namespace

/// Taking back what each kind of command does, and making it again.
class UndoKindsTest : public UndoWindowTest {
    Q_OBJECT

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
};

QTEST_MAIN(UndoKindsTest)
#include "undo_kinds_test.moc"
