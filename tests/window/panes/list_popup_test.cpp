#include "tests/support/Hands.h"
#include "tests/window/PopupTools.h"
#include "tests/window/WindowTest.h"

#include "tests/tools/fake/FakeControl.h"

#include <QMenu>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

const QStringList tableEntries{u"RenameTablePOP"_s, u"RemoveTablePOP"_s};
const QStringList cloneEntry{u"ClonePOP"_s};

} // namespace

/// The pop-up menu of the table lists.
class ListPopupTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void aTableOfASingleDatabaseCanBeRenamedAndRemoved() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        pressRight(fixture, 0, 0);
        QCOMPARE(entries(fixture), tableEntries);
    }

    void aRightPressSelectsAndLoadsTheLineFirst() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"B"_s, {u"2"_s})}));
        pressRight(fixture, 0, 1);
        QCOMPARE(fixture.list(0).ListIndex(), 1);
        QCOMPARE(fixture.texts(0), QList<QStringList>({{u"2"_s}}));
        QCOMPARE(entries(fixture), tableEntries);
    }

    void aTableOfBothDatabasesCannotBeCloned() {
        EditorFixture fixture;
        openTwo(fixture);
        pressRight(fixture, 0, 1);
        QCOMPARE(entries(fixture), tableEntries);
    }

    void aTableThatTheOtherLacksCanBeCloned() {
        EditorFixture fixture;
        openTwo(fixture);
        pressRight(fixture, 0, 0);
        QCOMPARE(entries(fixture), cloneEntry + tableEntries);
        QCOMPARE(fixture.editor().IndexOrigine(), 0);
        QCOMPARE(fixture.editor().IndexDestinazione(), 1);
    }

    void aPlaceholderOffersTheCloneFromTheOtherSideOnly() {
        EditorFixture fixture;
        openTwo(fixture);
        pressRight(fixture, 0, 2);
        QCOMPARE(entries(fixture), cloneEntry);
        QCOMPARE(fixture.editor().IndexOrigine(), 1);
        QCOMPARE(fixture.editor().IndexDestinazione(), 0);
    }

    void linesOfDifferentNamesAtOnePositionOfferNoClone() {
        EditorFixture fixture;
        openTwo(fixture);
        fixture.dialogs().expectInput(u"New table name"_s, u"?"_s, u"Tablex"_s, u"AA"_s);
        fixture.choose(Command::AddTableMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"A"_s, u"AA"_s, u"B"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"A ?"_s, u"B"_s, u"C"_s}));
        pressRight(fixture, 0, 1);
        QCOMPARE(entries(fixture), tableEntries);
        fixture.menu(Menu::popmenuCopyToOther).close();
        pressRight(fixture, 0, 0);
        QCOMPARE(entries(fixture), cloneEntry + tableEntries);
    }

    void aPlaceholderOutOfLineOpensNothing() {
        EditorFixture fixture;
        openTwo(fixture);
        fixture.activate(1);
        for (const QString &name : {u"0"_s, u"1"_s}) {
            fixture.dialogs().expectInput(u"New table name"_s, u"?"_s, u"Tablex"_s, name);
            fixture.choose(Command::AddTableMenu);
        }
        fixture.activate(0);
        QCOMPARE(fixture.lines(0), QStringList({u"A"_s, u"B"_s, u"C ?"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"0"_s, u"1"_s, u"B"_s, u"C"_s}));
        pressRight(fixture, 0, 2);
        QCOMPARE(fixture.list(0).ListIndex(), 2);
        QCOMPARE(entries(fixture), QStringList());
    }

    void aLineBeyondTheOtherListOffersNoClone() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s})}),
                         makeFile(u"R.DDB"_s, {numbers(u"A"_s, {u"1"_s})}));
        fixture.dialogs().expectInput(u"New table name"_s, u"?"_s, u"Tablex"_s, u"B"_s);
        fixture.choose(Command::AddTableMenu);
        pressRight(fixture, 0, 1);
        QCOMPARE(entries(fixture), tableEntries);
    }

    void aRightPressInTheOtherPanesListSelectsAndOpensNothing() {
        EditorFixture fixture;
        openTwo(fixture);
        fixture.list(0).setFocus();
        const int selected = fixture.list(1).ListIndex();
        QVERIFY(selected != 1);
        pressRight(fixture, 1, 1);
        QCOMPARE(entries(fixture), QStringList());
        QCOMPARE(fixture.list(1).ListIndex(), selected);
        QCOMPARE(fixture.list(0).ListIndex(), selected);
        // It makes the pane active, as any press does; the next one is this pane's own.
        QCOMPARE(fixture.activePane(), 1);
        pressRight(fixture, 1, 1);
        QCOMPARE(fixture.list(1).ListIndex(), 1);
        QCOMPARE(entries(fixture), tableEntries);
    }

    void aLeftPressOpensNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickLine(0, 0);
        QCOMPARE(entries(fixture), QStringList());
    }

    void aLeftPressLeavesTheLoadingToItsRelease() {
        EditorFixture fixture;
        openTwo(fixture);
        fixture.clickLine(0, 1);
        QCOMPARE(fixture.list(0).ListIndex(), 1);
        QCOMPARE(fixture.list(1).ListIndex(), 1);
    }

    void withoutASelectedLineNothingOpens() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        runCommand([&] { fixture.list(0).setListIndex(-1); });
        fixture.list(0).setFocus();
        pressMenuKey(fixture);
        QCOMPARE(entries(fixture), QStringList());
        hands::click(fixture.list(0).viewport(), Qt::RightButton, Qt::NoModifier,
                     fixture.list(0).viewport()->rect().bottomRight() - QPoint(3, 3));
        QCOMPARE(entries(fixture), QStringList());
    }

    void theMenuKeyOpensThePopupOfTheSelectedLine() {
        EditorFixture fixture;
        openTwo(fixture);
        fixture.clickLine(0, 0);
        pressMenuKey(fixture);
        QCOMPARE(entries(fixture), cloneEntry + tableEntries);
    }

    void theEntriesRunTheirCommands() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"B"_s, {u"2"_s})}));
        QMenu &menu = fixture.menu(Menu::popmenuCopyToOther);
        pressRight(fixture, 0, 1);
        fixture.dialogs().expectInput(u"Table's new name (B)"_s, u"?"_s, u"B"_s, u"C"_s);
        chooseFromPopup(menu, fixture.action(Command::RenameTablePOP));
        QCOMPARE(fixture.lines(0), QStringList({u"A"_s, u"C"_s}));
        QIR_VERIFY_OK(fixture);

        pressRight(fixture, 0, 0);
        fixture.dialogs().expectMessage(u"Do you want to remove table: 'A' ?"_s, u"?"_s, u"Yes"_s);
        chooseFromPopup(menu, fixture.action(Command::RemoveTablePOP));
        QCOMPARE(fixture.lines(0), QStringList(u"C"_s));
    }

    void aWindowClosedWhileTheTableLoadsOpensNothing() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"B"_s, {u"2"_s})}));
        fake->setHook([&](const FakeCall &call) {
            if (call.member == u"GetQirRecord"_s)
                QMetaObject::invokeMethod(&fixture.window(), &QWidget::close, Qt::QueuedConnection);
        });
        pressRight(fixture, 0, 1);
        fake->setHook({});
        QCOMPARE(entries(fixture), QStringList());
        QCOMPARE(fake->instances(), 0);
        QCOMPARE(fixture.dialogs().problems(), QString());
    }

private:
    static QStringList entries(EditorFixture &fixture) { return shownEntries(fixture.menu(Menu::popmenuCopyToOther)); }

    /// What the keyboard's menu key sends to the control that has the focus.
    static void pressMenuKey(EditorFixture &fixture) {
        ListBox &list = fixture.list(0);
        const QPoint at = list.rect().center();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, at, list.mapToGlobal(at));
        QCoreApplication::sendEvent(&list, &event);
    }

    /// Left "A", "B", "C ?"; right "A ?", "B", "C".
    void openTwo(EditorFixture &fixture) const {
        fixture.openBoth(makeFile(u"L.DDB"_s, {numbers(u"A"_s, {u"1"_s}), numbers(u"B"_s, {u"2"_s})}),
                         makeFile(u"R.DDB"_s, {numbers(u"B"_s, {u"2"_s}), numbers(u"C"_s, {u"3"_s})}));
    }
};

QTEST_MAIN(ListPopupTest)
#include "list_popup_test.moc"
