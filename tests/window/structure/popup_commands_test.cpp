#include "tests/window/EditSupport.h"
#include "tests/window/PopupTools.h"
#include "tests/window/WindowTest.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

const QString sizeQuestion = u"Copy Cell content?"_s;

/// The table of pumps() with other values.
TableOfTexts otherPumps() {
    TableOfTexts table = pumps();
    table.fields[0].texts = {u"1"_s, u"2"_s, u"3"_s};
    table.fields[1].texts = {u"a"_s, u"b"_s, u"c"_s};
    return table;
}

} // namespace

/// The whole way of the grids' pop-ups: a right press, an entry, what the command does to which pane.
class PopupCommandsTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void removeRecordTakesThePressedRow() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        rightPressCell(fixture, 0, 2, 1);
        chooseOfRecord(fixture, Command::RemoveRecordPOP);
        QCOMPARE(recordsOf(fixture, 0), QList<QStringList>({{u"1200"_s, u"Main"_s}, {u"60"_s, u"Test"_s}}));
    }

    void afterSortingRemoveRecordTakesWhatThePressedRowShows() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"A"_s, {u"30"_s, u"10"_s, u"20"_s})}));
        rightPressHeader(fixture, 0, 1);
        chooseOfField(fixture, Command::SortFPOP);
        fixture.clickCell(0, 2, 1); // sorting has selected the whole column, which a right press keeps
        rightPressCell(fixture, 0, 2, 1);
        QCOMPARE(fixture.grid(0).TextMatrix(2, 1), u"20"_s);
        chooseOfRecord(fixture, Command::RemoveRecordPOP);
        QCOMPARE(recordsOf(fixture, 0), QList<QStringList>({{u"10"_s}, {u"30"_s}}));
        QCOMPARE(fixture.texts(0), recordsOf(fixture, 0));
    }

    void renameFieldTakesThePressedHeader() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        rightPressHeader(fixture, 0, 2);
        fixture.dialogs().expectInput(u"Field's new name (Name)"_s, u"?"_s, u"Name"_s, u"Label"_s);
        chooseOfField(fixture, Command::RenameFieldPOP);
        QCOMPARE(fieldsOf(fixture, 0), QStringList({u"Speed long 0"_s, u"Label text 20"_s}));
    }

    void removeFieldTakesThePressedHeader() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        rightPressHeader(fixture, 0, 2);
        fixture.dialogs().expectMessage(u"Do you want to remove field: 'Name' ?"_s, u"?"_s, u"Yes"_s);
        chooseOfField(fixture, Command::RemoveFieldPOP);
        QCOMPARE(fieldsOf(fixture, 0), QStringList(u"Speed long 0"_s));
    }

    void resizeTakesThePressedHeader() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        rightPressHeader(fixture, 0, 2);
        fixture.dialogs().expectInput(u"Field size"_s, u"?"_s, u"20"_s, u"4"_s);
        chooseOfField(fixture, Command::ResizeTextFieldPOP);
        QCOMPARE(fieldsOf(fixture, 0).last(), u"Name text 4"_s);
    }

    void theOtherTableIsMadeAsLongAsThePressedOne_data() { bothPanesAndPopups(); }
    void theOtherTableIsMadeAsLongAsThePressedOne() {
        QFETCH(int, source);
        QFETCH(bool, ofField);
        EditorFixture fixture;
        openBoth(fixture, source, shortPumps());
        if (ofField)
            rightPressHeader(fixture, source, 1);
        else
            rightPressCell(fixture, source, 1, 1);
        fixture.dialogs().expectMessage(sizeQuestion, u"?"_s, u"Yes"_s);
        if (ofField)
            chooseOfField(fixture, Command::CloneTableSizeFPOP);
        else
            chooseOfRecord(fixture, Command::CloneTableSizePOP);
        QCOMPARE(recordsOf(fixture, 1 - source),
                 QList<QStringList>({{u"5"_s, u"Other"_s}, {u"900"_s, u"Spare"_s}, {u"60"_s, u"Test"_s}}));
        QCOMPARE(recordsOf(fixture, source).size(), 3);
        QCOMPARE(fixture.activePane(), source);
    }

    void theSelectedBlockIsCopiedToTheOtherTable_data() { bothPanesAndPopups(); }
    void theSelectedBlockIsCopiedToTheOtherTable() {
        QFETCH(int, source);
        QFETCH(bool, ofField);
        EditorFixture fixture;
        openBoth(fixture, source, otherPumps());
        selectBlock(fixture, source, {1, 1, 2, 2});
        if (ofField)
            rightPressHeader(fixture, source, 1);
        else
            rightPressCell(fixture, source, 2, 2);
        if (ofField)
            chooseOfField(fixture, Command::CloneSelectedAreaFPOP);
        else
            chooseOfRecord(fixture, Command::CloneSelectedAreaPOP);
        QCOMPARE(recordsOf(fixture, 1 - source),
                 QList<QStringList>({{u"1200"_s, u"Main"_s}, {u"900"_s, u"Spare"_s}, {u"3"_s, u"c"_s}}));
        QVERIFY(!fixture.database(source).DtbHasChanged());
        QCOMPARE(fixture.activePane(), source);
    }

private:
    static void bothPanesAndPopups() {
        QTest::addColumn<int>("source");
        QTest::addColumn<bool>("ofField");
        QTest::newRow("left, of a record") << 0 << false;
        QTest::newRow("right, of a record") << 1 << false;
        QTest::newRow("left, of a field") << 0 << true;
        QTest::newRow("right, of a field") << 1 << true;
    }

    /// pumps() in one pane, another table of the same name in the other one.
    void openBoth(EditorFixture &fixture, int source, const TableOfTexts &target) const {
        fixture.openBoth(makeFile(u"L.DDB"_s, {source == 0 ? pumps() : target}),
                         makeFile(u"R.DDB"_s, {source == 1 ? pumps() : target}));
    }

    static void chooseOfRecord(EditorFixture &fixture, Command command) {
        QVERIFY(shownEntries(fixture.menu(Menu::popmenuGrid)).contains(fixture.action(command).objectName()));
        chooseFromPopup(fixture.menu(Menu::popmenuGrid), fixture.action(command));
    }
    static void chooseOfField(EditorFixture &fixture, Command command) {
        QVERIFY(shownEntries(fixture.menu(Menu::popmenuGridFields)).contains(fixture.action(command).objectName()));
        chooseFromPopup(fixture.menu(Menu::popmenuGridFields), fixture.action(command));
    }
};

QTEST_MAIN(PopupCommandsTest)
#include "popup_commands_test.moc"
