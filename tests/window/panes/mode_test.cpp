#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QGroupBox>
#include <QMenu>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

const QString title = u"QIR Database Editor"_s;

bool onePane(EditorFixture &fixture) {
    const bool one = fixture.action(Command::OneMenu).isChecked();
    const bool two = fixture.action(Command::TwoMenu).isChecked();
    if (one == two)
        qFatal("not exactly one mode is checked");
    return one;
}

QColor frameColour(EditorFixture &fixture, int pane) {
    return fixture.frame(pane).palette().color(QPalette::Window);
}

QColor labelColour(EditorFixture &fixture, int pane) {
    return fixture.label(pane).palette().color(QPalette::Window);
}

const QColor yellow(255, 255, 0);

QColor buttonFace() {
    return QApplication::palette().color(QPalette::Button);
}

} // namespace

/// One pane and two, the active pane and the enabling of the commands, through the real window.
class ModeTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void theEditorStartsWithOnePane() {
        EditorFixture fixture;
        QVERIFY(onePane(fixture));
        QVERIFY(fixture.frame(0).isVisible());
        QVERIFY(!fixture.frame(1).isVisible());
    }

    void eachModeCommandTogglesBetweenTheModes() {
        EditorFixture fixture;
        for (const Command command : {Command::OneMenu, Command::TwoMenu}) {
            fixture.choose(command);
            QVERIFY(!onePane(fixture));
            QVERIFY(fixture.frame(1).isVisible());
            QCOMPARE(fixture.frame(0).title(), u"Left"_s);
            QCOMPARE(fixture.frame(1).title(), u"Right"_s);
            fixture.choose(command);
            QVERIFY(onePane(fixture));
            QVERIFY(!fixture.frame(1).isVisible());
        }
        fixture.choose(Command::TwoMenu);
        fixture.choose(Command::OneMenu);
        QVERIFY(onePane(fixture));
    }

    void theOneCommandKeepsChangesOfTheRightDatabaseUnaskedWhenOnlyThatChanged() {
        EditorFixture fixture;
        openBothOfOneTable(fixture);
        change(fixture, 1, u"3"_s);
        fixture.choose(Command::OneMenu); // a question would be a problem
        QVERIFY(onePane(fixture));
        QVERIFY(fixture.database(1).isEmpty());
        QCOMPARE(savedValue(m_right, u"T"_s), u"3"_s);
    }

    void theOneCommandAsksAboutTheLeftDatabaseAndAppliesTheAnswerToTheRightOne_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("right");
        QTest::newRow("Yes") << u"Yes"_s << u"3"_s;
        QTest::newRow("No") << u"No"_s << u"1"_s;
    }

    void theOneCommandAsksAboutTheLeftDatabaseAndAppliesTheAnswerToTheRightOne() {
        QFETCH(QString, button);
        QFETCH(QString, right);
        EditorFixture fixture;
        openBothOfOneTable(fixture);
        change(fixture, 0, u"2"_s);
        change(fixture, 1, u"3"_s);
        fixture.dialogs().expectMessage(saveQuestion(m_left.toUpper()), title, button);
        fixture.choose(Command::OneMenu);
        QCOMPARE(savedValue(m_right, u"T"_s), right);
        QCOMPARE(savedValue(m_left, u"T"_s), u"1"_s);
        QVERIFY(fixture.database(0).DtbHasChanged());
        fixture.database(0).setDtbHasChanged(false);
    }

    void theOneCommandAsksNothingWhileTheRightPaneIsEmpty() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fixture.choose(Command::TwoMenu);
        change(fixture, 0, u"2"_s);
        fixture.choose(Command::OneMenu);
        QVERIFY(onePane(fixture));
        QVERIFY(fixture.isOpen(0));
        fixture.database(0).setDtbHasChanged(false);
    }

    void theTwoCommandAsksAboutTheRightDatabase_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("right");
        QTest::newRow("Yes") << u"Yes"_s << u"3"_s;
        QTest::newRow("No") << u"No"_s << u"1"_s;
    }

    void theTwoCommandAsksAboutTheRightDatabase() {
        QFETCH(QString, button);
        QFETCH(QString, right);
        EditorFixture fixture;
        openBothOfOneTable(fixture);
        change(fixture, 0, u"2"_s);
        change(fixture, 1, u"3"_s);
        fixture.dialogs().expectMessage(saveQuestion(m_right.toUpper()), title, button);
        fixture.choose(Command::TwoMenu);
        QVERIFY(onePane(fixture));
        QCOMPARE(savedValue(m_right, u"T"_s), right);
        fixture.database(0).setDtbHasChanged(false);
    }

    void onlyTheOneCommandComparesAfterwards_data() {
        QTest::addColumn<bool>("byOne");
        QTest::newRow("one") << true;
        QTest::newRow("two") << false;
    }

    void onlyTheOneCommandComparesAfterwards() {
        QFETCH(bool, byOne);
        const QString left = makeFile(u"A.DDB"_s, {numbers(u"Both"_s, {u"1"_s})});
        const QString right = makeFile(u"B.DDB"_s, {numbers(u"Both"_s, {u"2"_s}), numbers(u"Right"_s, {u"1"_s})});
        EditorFixture fixture;
        fixture.openBoth(left, right);
        const QStringList aligned{u"Both !"_s, u"Right ?"_s};
        QCOMPARE(fixture.lines(0), aligned);
        fixture.choose(byOne ? Command::OneMenu : Command::TwoMenu);
        QCOMPARE(fixture.lines(0), byOne ? QStringList{u"Both"_s} : aligned);
    }

    void theRightPaneIsForgottenWhenItIsClosedByTheModeSwitch() {
        EditorFixture fixture;
        openBothOfOneTable(fixture);
        fixture.choose(Command::TwoMenu);
        QVERIFY(!fixture.isOpen(1));
        QCOMPARE(fixture.loadedLine(1), -1);
        QCOMPARE(fixture.list(1).ListCount(), 0);
        fixture.choose(Command::TwoMenu);
        QVERIFY(fixture.editor().pane(1).controls().hint->isVisible());
    }

    void goingToOnePaneMakesTheLeftPaneActiveAndItsCommandsUsable() {
        for (const Command command : {Command::OneMenu, Command::TwoMenu}) {
            EditorFixture fixture;
            openBothOfOneTable(fixture);
            fixture.activate(1);
            fixture.choose(command);
            QCOMPARE(fixture.activePane(), 0);
            QCOMPARE(frameColour(fixture, 0), yellow);
            QVERIFY(fixture.action(Command::SaveMenu).isEnabled());
            QVERIFY(fixture.menu(Menu::TablesMenu).isEnabled());
        }
    }

    void theActivePaneIsYellowAndTheOtherInTheButtonFaceColour() {
        EditorFixture fixture;
        openBothOfOneTable(fixture);
        for (const int active : {1, 0}) {
            fixture.activate(active);
            for (const int pane : {0, 1}) {
                QCOMPARE(frameColour(fixture, pane), pane == active ? yellow : buttonFace());
                QCOMPARE(labelColour(fixture, pane), pane == active ? yellow : buttonFace());
            }
        }
    }

    void withNoActivePaneBothFramesShowTheButtonFaceColourAndCommandsThatNeedADatabaseAreDisabled() {
        EditorFixture fixture;
        fixture.choose(Command::TwoMenu);
        QCOMPARE(fixture.activePane(), -1);
        for (const int pane : {0, 1}) {
            QCOMPARE(frameColour(fixture, pane), buttonFace());
            QCOMPARE(labelColour(fixture, pane), buttonFace());
        }
        for (const Command command : {Command::SaveMenu, Command::SaveAsMenu, Command::CloseDatabaseMenu,
                                      Command::ChangePassword, Command::ColumnSizeAdjust, Command::CompareAgainMenu})
            QVERIFY2(!fixture.action(command).isEnabled(), commandName(command));
        const EditorControls &controls = fixture.editor().controls();
        for (QMenu *menu :
             {&controls.menu(Menu::TablesMenu), &controls.menu(Menu::FieldsMenu), &controls.menu(Menu::RecordMenu)})
            QVERIFY2(!menu->isEnabled(), qPrintable(menu->title()));
        for (const Command command : {Command::OpenDatabase, Command::EndMenu, Command::OneMenu, Command::TwoMenu})
            QVERIFY2(fixture.action(command).isEnabled(), commandName(command));
    }

    void commandsFollowTheActivePane() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        const EditorControls &controls = fixture.editor().controls();
        fixture.choose(Command::TwoMenu);
        for (const int pane : {1, 0}) {
            fixture.activate(pane);
            for (const Command command : {Command::SaveMenu, Command::SaveAsMenu, Command::CloseDatabaseMenu,
                                          Command::ChangePassword, Command::ColumnSizeAdjust})
                QCOMPARE(fixture.action(command).isEnabled(), pane == 0);
            for (QMenu *menu :
                 {&controls.menu(Menu::TablesMenu), &controls.menu(Menu::FieldsMenu), &controls.menu(Menu::RecordMenu)})
                QCOMPARE(menu->isEnabled(), pane == 0);
        }
    }

    void aPaneWhoseListIsEmptyShowsListAndLabelButNoGrid() {
        EditorFixture fixture(makeFile(u"EMPTY.DDB"_s, {}));
        QVERIFY(fixture.list(0).Visible());
        QVERIFY(!fixture.label(0).isHidden());
        QVERIFY(!fixture.grid(0).Visible());
    }

    void theColoursFollowTheDesktopsScheme() {
        const QPalette before = QApplication::palette();
        const auto restore = qScopeGuard([&] { QApplication::setPalette(before); });
        EditorFixture fixture;
        openBothOfOneTable(fixture);
        QPalette dark = before;
        dark.setColor(QPalette::Button, QColor(40, 40, 40));
        dark.setColor(QPalette::ButtonText, Qt::white);
        QApplication::setPalette(dark);
        QTRY_COMPARE(frameColour(fixture, 1), QColor(40, 40, 40));
        QCOMPARE(frameColour(fixture, 0), yellow);
    }

    void theOtherPaneCommandTakesTheFocusToTheListOrTheGridOfTheOtherPane() {
        EditorFixture fixture;
        openBothOfOneTable(fixture);
        fixture.window().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&fixture.window()));
        fixture.list(0).setFocus();
        hands::key(&fixture.window(), Qt::Key_F6);
        QVERIFY(fixture.list(1).hasFocus());
        QCOMPARE(fixture.activePane(), 1);
        fixture.grid(1).setFocus();
        hands::key(&fixture.window(), Qt::Key_F6);
        QVERIFY(fixture.grid(0).hasFocus());
        QCOMPARE(fixture.activePane(), 0);
        QCOMPARE(frameColour(fixture, 0), yellow);
    }

    void theOtherPaneCommandReachesAPaneWithoutADatabase() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        QVERIFY(!fixture.action(Command::OtherPaneMenu).isEnabled());
        fixture.choose(Command::TwoMenu);
        fixture.window().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&fixture.window()));
        fixture.list(0).setFocus();
        hands::key(&fixture.window(), Qt::Key_F6);
        QCOMPARE(fixture.activePane(), 1);
        QVERIFY(fixture.editor().pane(1).controls().hint->hasFocus());
        QVERIFY(!fixture.action(Command::SaveMenu).isEnabled());
        fixture.open(makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        QCOMPARE(fixture.lines(1), QStringList{u"T"_s});
        QCOMPARE(fixture.window().focusWidget(), &fixture.list(1));
    }

    void compareAgainMarksWhatChangedMeanwhile() {
        EditorFixture fixture;
        openBothOfOneTable(fixture);
        QCOMPARE(fixture.lines(0), QStringList{u"T"_s});
        change(fixture, 1, u"3"_s);
        fixture.database(0).AddTable(u"New"_s);
        fixture.choose(Command::CompareAgainMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"New"_s, u"T !"_s}));
        QCOMPARE(fixture.lines(1), QStringList({u"New ?"_s, u"T !"_s}));
        for (const int pane : {0, 1})
            fixture.database(pane).setDtbHasChanged(false);
    }

    void theKeyboardLeavesTheRightPaneWithItAlsoWhileAnotherWindowIsActive() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}),
                         makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fixture.clickLine(1, 0);
        QCOMPARE(fixture.window().focusWidget(), &fixture.list(1));
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_VERIFY(!fixture.list(1).hasFocus());
        fixture.choose(Command::OneMenu);
        QVERIFY(!fixture.frame(1).isAncestorOf(fixture.window().focusWidget()));
        QVERIFY(fixture.frame(0).isAncestorOf(fixture.window().focusWidget()));
    }

    void aSwitchToOnePaneThatCannotDiscardChangesLeavesBothPanes_data() {
        QTest::addColumn<int>("command");
        QTest::addColumn<int>("asked");
        QTest::newRow("by the item for one pane") << static_cast<int>(Command::OneMenu) << 0;
        QTest::newRow("by the item for two panes") << static_cast<int>(Command::TwoMenu) << 1;
    }

    void aSwitchToOnePaneThatCannotDiscardChangesLeavesBothPanes() {
        QFETCH(const int, command);
        QFETCH(const int, asked);
        const UseFake fake;
        const QStringList files{makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}),
                                makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"1"_s})})};
        EditorFixture fixture;
        fixture.openBoth(files[0], files[1]);
        change(fixture, asked, u"2"_s);
        fixture.activate(1);
        fixture.dialogs().expectMessage(saveQuestion(files[asked].toUpper()), title, u"No"_s);
        fixture.dialogs().expectMessage(u"broken"_s, title, u"OK"_s);
        fake->failOn(u"DtbHasChanged"_s, u"broken"_s, 2); // it is read, then set
        fixture.choose(static_cast<Command>(command));
        fake->stopFailing();
        QVERIFY(!onePane(fixture));
        QVERIFY(fixture.isOpen(1));
        QVERIFY(fixture.frame(1).isVisible());
        QCOMPARE(fixture.activePane(), 1);
        QIR_VERIFY_OK(fixture);
        fixture.database(asked).setDtbHasChanged(false);
    }

    void aSwitchToOnePaneThatFailsAfterTheRightDatabaseWasClosedShowsOnePane() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}),
                         makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fixture.activate(1);
        fake->failOn(u"QIRTablesCount"_s, u"broken"_s);
        fixture.dialogs().expectMessage(u"broken"_s, title, u"OK"_s);
        fixture.choose(Command::OneMenu);
        fake->stopFailing();
        QVERIFY(onePane(fixture));
        QVERIFY(!fixture.isOpen(1));
        QVERIFY(!fixture.frame(1).isVisible());
        QCOMPARE(fixture.activePane(), 0);
    }

private:
    /// Two databases that hold the same one table, value 1.
    void openBothOfOneTable(EditorFixture &fixture) {
        m_left = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        m_right = makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        fixture.openBoth(m_left, m_right);
    }

    QString m_left;
    QString m_right;
};

QTEST_MAIN(ModeTest)
#include "mode_test.moc"
