#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QContextMenuEvent>
#include <QMenu>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

TableOfTexts pumpsOf(int records, int extraFields = 0) {
    QStringList speeds;
    QStringList names;
    for (int r = 1; r <= records; ++r) {
        speeds.append(QString::number(r * 10));
        names.append(u"Pump %1"_s.arg(r));
    }
    TableOfTexts table{u"Pumps"_s, {{u"Speed"_s, FieldType::Long, speeds}, {u"Name"_s, FieldType::Text, names}}};
    for (int f = 1; f <= extraFields; ++f)
        table.fields.push_back({u"Extra%1"_s.arg(f), FieldType::Byte, speeds});
    return table;
}

TableOfTexts named(TableOfTexts table, const QString &name) {
    table.name = name;
    return table;
}

} // namespace

/// The grids' pop-up menus: which one opens, and what it offers.
class EditPopupTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void theRightButtonOnARecordCellOpensTheRecordPopup() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumpsOf(3)}));
        rightPressCell(fixture, 0, 2, 2);
        QVERIFY(recordPopup(fixture).isVisible());
        QVERIFY(!fieldPopup(fixture).isVisible());
        QCOMPARE(fixture.editor().IndexOrigine(), 0);
        QCOMPARE(fixture.editor().IndexDestinazione(), 1);
    }

    void theRightButtonOnAHeaderOpensTheFieldPopupAndMakesItsColumnCurrent() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumpsOf(3)}));
        fixture.clickCell(0, 3, 1);
        rightPressHeader(fixture, 0, 2);
        QVERIFY(fieldPopup(fixture).isVisible());
        QVERIFY(!recordPopup(fixture).isVisible());
        QCOMPARE(fixture.grid(0).selection(), singleCell(3, 2));
    }

    void theOtherButtonsOpenNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumpsOf(3)}));
        fixture.clickCell(0, 2, 2);
        hands::press(fixture.grid(0).viewport(), Qt::MiddleButton, Qt::NoModifier, fixture.cellCentre(0, 1, 1));
        hands::release(fixture.grid(0).viewport(), Qt::MiddleButton, Qt::NoModifier, fixture.cellCentre(0, 1, 1));
        QVERIFY(!recordPopup(fixture).isVisible());
    }

    void theRightButtonBesideTheCellsOpensNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumpsOf(1)}));
        const QWidget *viewport = fixture.grid(0).viewport();
        hands::press(fixture.grid(0).viewport(), Qt::RightButton, Qt::NoModifier,
                     QPoint(viewport->width() - 2, viewport->height() - 2));
        QVERIFY(!recordPopup(fixture).isVisible());
    }

    void aPressOutsideTheSelectionMakesItsCellCurrent() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumpsOf(5)}));
        selectBlock(fixture, 0, {1, 1, 2, 2});
        rightPressCell(fixture, 0, 4, 1);
        QCOMPARE(fixture.grid(0).selection(), singleCell(4, 1));
    }

    void aPressInsideTheSelectionKeepsIt() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumpsOf(5)}));
        selectBlock(fixture, 0, {1, 1, 3, 2});
        rightPressCell(fixture, 0, 2, 2);
        QCOMPARE(fixture.grid(0).selection(), (GridSelection{1, 1, 3, 2}));
        QVERIFY(recordPopup(fixture).isVisible());
    }

    void theMenuKeyOpensTheRecordPopup() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumpsOf(3)}));
        fixture.clickCell(0, 3, 2);
        QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint());
        QApplication::sendEvent(fixture.grid(0).viewport(), &key);
        QVERIFY(recordPopup(fixture).isVisible());
        QCOMPARE(removeText(fixture), u"Remove Record 3"_s);
    }

    void theMenuKeyWithControlOpensTheFieldPopup() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumpsOf(3)}));
        fixture.clickCell(0, 3, 2);
        QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint(), Qt::ControlModifier);
        QApplication::sendEvent(fixture.grid(0).viewport(), &key);
        QVERIFY(fieldPopup(fixture).isVisible());
        QVERIFY(fixture.action(Command::ResizeTextFieldPOP).isEnabled());
    }

    void theRemoveItemNamesTheRecordThatItWouldRemove() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumpsOf(3)}));
        rightPressCell(fixture, 0, 2, 1);
        QCOMPARE(removeText(fixture), u"Remove Record 2"_s);
        recordPopup(fixture).close();
        fixture.grid(0).setRowData(3, 17);
        rightPressCell(fixture, 0, 3, 1);
        QCOMPARE(removeText(fixture), u"Remove Record 17"_s);
        QVERIFY(fixture.action(Command::RemoveRecordPOP).isEnabled());
    }

    void withoutARecordRowCurrentNoRecordCanBeRemoved() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumpsOf(3)}));
        fixture.clickCell(0, 2, 1);
        fixture.grid(0).setSelection({0, 1, 3, 1}); // holds the pressed cell, so that it stays
        rightPressCell(fixture, 0, 2, 1);
        QVERIFY(recordPopup(fixture).isVisible());
        QVERIFY(!fixture.action(Command::RemoveRecordPOP).isEnabled());
        QCOMPARE(removeText(fixture), u"Remove Record"_s);
    }

    void onlyATextFieldCanBeResized() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumpsOf(3)}));
        rightPressHeader(fixture, 0, 1);
        QVERIFY(!fixture.action(Command::ResizeTextFieldPOP).isEnabled());
        fieldPopup(fixture).close();
        rightPressHeader(fixture, 0, 2);
        QVERIFY(fixture.action(Command::ResizeTextFieldPOP).isEnabled());
    }

    void theLastFieldCannotBeRemoved() {
        const TableOfTexts single{u"Single"_s, {{u"Only"_s, FieldType::Long, {u"1"_s}}}};
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumpsOf(3), single}));
        rightPressHeader(fixture, 0, 1);
        QVERIFY(fixture.action(Command::RemoveFieldPOP).isEnabled());
        fieldPopup(fixture).close();
        fixture.clickLine(0, 1);
        rightPressHeader(fixture, 0, 1);
        QVERIFY(!fixture.action(Command::RemoveFieldPOP).isEnabled());
    }

    void withOneDatabaseNothingCanBeCloned() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumpsOf(3)}));
        rightPressCell(fixture, 0, 2, 1);
        QVERIFY(!shows(fixture, Command::CloneTableSizePOP));
        QVERIFY(!shows(fixture, Command::CloneSelectedAreaPOP));
        recordPopup(fixture).close();
        rightPressHeader(fixture, 0, 1);
        QVERIFY(!shows(fixture, Command::CloneTableSizeFPOP));
        QVERIFY(!shows(fixture, Command::CloneSelectedAreaFPOP));
    }

    void theSizeCanBeClonedFromTheLongerTable() {
        EditorFixture fixture;
        openBoth(fixture, {pumpsOf(5)}, {pumpsOf(3)});
        rightPressCell(fixture, 0, 2, 1);
        QVERIFY(shows(fixture, Command::CloneTableSizePOP));
        recordPopup(fixture).close();
        rightPressHeader(fixture, 0, 1);
        QVERIFY(shows(fixture, Command::CloneTableSizeFPOP));
        fieldPopup(fixture).close();
        rightPressCell(fixture, 1, 2, 1);
        QCOMPARE(fixture.editor().IndexOrigine(), 1);
        QCOMPARE(fixture.editor().IndexDestinazione(), 0);
        QVERIFY(!shows(fixture, Command::CloneTableSizePOP));
        recordPopup(fixture).close();
        rightPressHeader(fixture, 1, 1);
        QVERIFY(!shows(fixture, Command::CloneTableSizeFPOP));
    }

    void theSizeCannotBeClonedBetweenTablesOfAsManyRecordsOrOtherFields() {
        EditorFixture fixture;
        openBoth(fixture, {pumpsOf(3), named(pumpsOf(4), u"Valves"_s)},
                 {pumpsOf(3), named(pumpsOf(3, 1), u"Valves"_s)});
        rightPressCell(fixture, 0, 2, 1);
        QVERIFY(!shows(fixture, Command::CloneTableSizePOP));
        recordPopup(fixture).close();
        fixture.clickLine(0, 1);
        rightPressCell(fixture, 0, 2, 1);
        QVERIFY(!shows(fixture, Command::CloneTableSizePOP));
    }

    void theSizeCanBeClonedIntoATableWithoutRecords() {
        EditorFixture fixture;
        openBoth(fixture, {pumpsOf(3)}, {pumpsOf(0)});
        QVERIFY(!fixture.grid(1).Visible());
        rightPressCell(fixture, 0, 2, 1);
        QVERIFY(shows(fixture, Command::CloneTableSizePOP));
        QVERIFY(!shows(fixture, Command::CloneSelectedAreaPOP));
    }

    void theAreaCanBeClonedWhereBothGridsHaveTheSameCellsSelected() {
        EditorFixture fixture;
        openBoth(fixture, {pumpsOf(5)}, {pumpsOf(3)});
        selectBlock(fixture, 0, {1, 1, 2, 2});
        rightPressCell(fixture, 0, 2, 1);
        QVERIFY(shows(fixture, Command::CloneSelectedAreaPOP));
        recordPopup(fixture).close();
        rightPressHeader(fixture, 0, 1); // the current column: the selection stays
        QCOMPARE(fixture.grid(0).selection(), (GridSelection{1, 1, 2, 2}));
        QVERIFY(shows(fixture, Command::CloneSelectedAreaFPOP));
        fieldPopup(fixture).close();
        rightPressCell(fixture, 0, 5, 1); // beyond the other table
        QVERIFY(!shows(fixture, Command::CloneSelectedAreaPOP));
    }

    void noAreaCanBeClonedFromOrIntoTheEmptyColumnOfATableWithoutFields() {
        EditorFixture fixture;
        openBoth(fixture, {{u"Pumps"_s, {}}}, {pumpsOf(1)});
        fixture.choose(Command::AddRecordMenu);
        for (const int pane : {0, 1}) {
            rightPressCell(fixture, pane, 1, 1);
            QCOMPARE(fixture.grid(0).selection(), fixture.grid(1).selection());
            QVERIFY(!shows(fixture, Command::CloneSelectedAreaPOP));
            recordPopup(fixture).close();
        }
    }

    void nothingCanBeClonedWhileTheOtherDatabaseLacksTheTable() {
        EditorFixture fixture;
        openBoth(fixture, {named(pumpsOf(3), u"A"_s), pumpsOf(5)}, {pumpsOf(3)});
        fixture.clickLine(0, 1);
        fixture.clickLine(0, 0);
        rightPressCell(fixture, 0, 1, 1);
        QVERIFY(!shows(fixture, Command::CloneTableSizePOP));
        QVERIFY(!shows(fixture, Command::CloneSelectedAreaPOP));
        recordPopup(fixture).close();
        rightPressHeader(fixture, 0, 1);
        QVERIFY(!shows(fixture, Command::CloneTableSizeFPOP));
        QVERIFY(!shows(fixture, Command::CloneSelectedAreaFPOP));
    }

    void aRightPressMakesThePaneActive() {
        EditorFixture fixture;
        openBoth(fixture, {pumpsOf(5)}, {pumpsOf(3)});
        QCOMPARE(fixture.activePane(), 0);
        rightPressCell(fixture, 1, 1, 1);
        QCOMPARE(fixture.activePane(), 1);
        recordPopup(fixture).close();
        rightPressHeader(fixture, 0, 1);
        QCOMPARE(fixture.activePane(), 0);
    }

private:
    static QMenu &recordPopup(EditorFixture &fixture) { return fixture.menu(Menu::popmenuGrid); }
    static QMenu &fieldPopup(EditorFixture &fixture) { return fixture.menu(Menu::popmenuGridFields); }
    static bool shows(EditorFixture &fixture, Command command) { return fixture.action(command).isVisible(); }
    static QString removeText(EditorFixture &fixture) {
        return fixture.action(Command::RemoveRecordPOP).text().remove(u'&');
    }
};

QTEST_MAIN(EditPopupTest)
#include "edit_popup_test.moc"
