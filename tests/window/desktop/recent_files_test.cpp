#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QMenuBar>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// What is remembered of files and pairs, and forgotten.
class RecentFilesTest : public WindowTest {
    Q_OBJECT

    static QMenu &recentMenu(EditorFixture &fixture, const QString &name) {
        return *fixture.window().findChild<QMenu *>(name);
    }
    /// The paths that a menu of recent files offers.
    static QStringList offered(QMenu &menu) {
        Q_EMIT menu.aboutToShow();
        QStringList all;
        for (const QAction *entry : menu.actions())
            if (!entry->isSeparator() && !entry->isCheckable() && entry->isEnabled())
                all.append(entry->toolTip());
        return all;
    }
    /// Opens the File menu and the sub-menu with the mouse and chooses an entry with it.
    static void chooseRecent(EditorFixture &fixture, const QString &menuName, int entry) {
        hands::click(fixture.window().menuBar(), Qt::LeftButton, Qt::NoModifier,
                     fixture.window().menuBar()->actionGeometry(fixture.menu(Menu::FileMenu).menuAction()).center());
        QMenu &file = fixture.menu(Menu::FileMenu);
        QMenu &recent = recentMenu(fixture, menuName);
        QTRY_VERIFY(file.isVisible());
        hands::click(&file, Qt::LeftButton, Qt::NoModifier, file.actionGeometry(recent.menuAction()).center());
        QTRY_VERIFY(recent.isVisible());
        hands::click(&recent, Qt::LeftButton, Qt::NoModifier,
                     recent.actionGeometry(recent.actions().at(entry)).center());
    }

private Q_SLOTS:
    void recentFilesAreOfferedNewestFirstAndOpenWithTheMouse() {
        const QString first = makeFile(u"A.DDB"_s, {pumps()});
        const QString second = makeFile(u"B.DDB"_s, {valves()});
        {
            EditorFixture fixture;
            fixture.open(first);
            fixture.open(second);
            QCOMPARE(offered(recentMenu(fixture, u"RecentFilesMenu"_s)), (QStringList{second, first}));
        }
        EditorFixture fixture; // another session
        chooseRecent(fixture, u"RecentFilesMenu"_s, 1);
        QCOMPARE(fixture.fileName(0), first.toUpper());
        QCOMPARE(fixture.lines(0), QStringList{u"Pumps"_s});
        QCOMPARE(offered(recentMenu(fixture, u"RecentFilesMenu"_s)), (QStringList{first, second}));
    }

    void aRecentFileReplacesTheActivePanesDatabaseAsOpenDoes() {
        const QString first = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        const QString second = makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"5"_s})});
        EditorFixture fixture;
        fixture.open(second);
        fixture.open(first);
        change(fixture, 0, u"7"_s);
        chooseRecent(fixture, u"RecentFilesMenu"_s, 1);
        QCOMPARE(fixture.fileName(0), second.toUpper());
        QCOMPARE(savedValue(first, u"T"_s), u"7"_s); // no question: the release keeps the changes
    }

    void aRecentFileThatIsGoneIsForgottenOnlyOnRequest() {
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture;
        fixture.open(file);
        fixture.choose(Command::CloseDatabaseMenu);
        QVERIFY(QFile::remove(file));
        const QString question = u"'%1' was not found.\r\nTake it off the recent files?"_s.arg(file);
        fixture.dialogs().expectMessage(question, u"!"_s, u"No"_s);
        chooseRecent(fixture, u"RecentFilesMenu"_s, 0);
        QCOMPARE(offered(recentMenu(fixture, u"RecentFilesMenu"_s)), QStringList{file}); // its disk may come back
        fixture.dialogs().expectMessage(question, u"!"_s, u"Yes"_s);
        chooseRecent(fixture, u"RecentFilesMenu"_s, 0);
        QCOMPARE(offered(recentMenu(fixture, u"RecentFilesMenu"_s)), QStringList());
    }

    void aRecentPairOpensSideBySide() {
        {
            EditorFixture fixture;
            openBoth(fixture, {pumps()}, {valves()});
        }
        EditorFixture fixture;
        chooseRecent(fixture, u"RecentPairsMenu"_s, 0);
        QVERIFY(fixture.editor().twoPanes());
        QCOMPARE(fixture.fileName(0), path(u"LEFT.DDB"_s).toUpper());
        QCOMPARE(fixture.fileName(1), path(u"RIGHT.DDB"_s).toUpper());
        QCOMPARE(fixture.activePane(), 0);
        QVERIFY(fixture.list(0).hasFocus());
    }

    void protectedFilesAreKeptOnlyWhenTheUserAllowsIt() {
        const QString file = makeFile(u"SECRET.DDB"_s, {pumps()}, u"pw"_s);
        EditorFixture fixture;
        QMenu &recent = recentMenu(fixture, u"RecentFilesMenu"_s);
        const auto open = [&] {
            fixture.dialogs().expectFile(fileDialogTitle, file);
            fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"pw"_s);
            fixture.choose(Command::OpenDatabase);
        };
        open();
        QCOMPARE(offered(recent), QStringList());
        chooseRecent(fixture, u"RecentFilesMenu"_s, 2); // the choice, behind "None Yet" and the line
        open();
        QCOMPARE(offered(recent), QStringList{file});
        chooseRecent(fixture, u"RecentFilesMenu"_s, 2);
        QCOMPARE(offered(recent), QStringList());
    }

    void forgettingAsksAndEmptiesTheLists() {
        EditorFixture fixture;
        openBoth(fixture, {pumps()}, {valves()});
        const QString question =
            u"Forget recent files and pairs, key fields, the folder used last and the window's place?"_s;
        fixture.dialogs().expectMessage(question, u"?"_s, u"No"_s);
        fixture.choose(Command::ForgetMenu);
        QCOMPARE(offered(recentMenu(fixture, u"RecentFilesMenu"_s)).size(), 2);
        fixture.dialogs().expectMessage(question, u"?"_s, u"Yes"_s);
        fixture.choose(Command::ForgetMenu);
        QCOMPARE(offered(recentMenu(fixture, u"RecentFilesMenu"_s)), QStringList());
        QCOMPARE(offered(recentMenu(fixture, u"RecentPairsMenu"_s)), QStringList());
    }

    void forgettingThatCannotBeKeptIsTold() {
        const QString state = qEnvironmentVariable("XDG_STATE_HOME") + u"/qir/editor.json"_s;
        QFile::remove(state);
        QVERIFY(QDir().mkpath(state)); // in the way
        EditorFixture fixture;
        openBoth(fixture, {pumps()}, {valves()});
        fixture.dialogs().expectMessage(
            u"Forget recent files and pairs, key fields, the folder used last and the window's place?"_s, u"?"_s,
            u"Yes"_s);
        fixture.dialogs().expectMessage(
            u"This cannot be kept: what is remembered cannot be written. It holds until the end of the program."_s,
            u"!"_s, u"OK"_s);
        fixture.choose(Command::ForgetMenu);
        QCOMPARE(offered(recentMenu(fixture, u"RecentFilesMenu"_s)), QStringList());
        QVERIFY(QDir().rmdir(state));
    }

    void aFileThatGetsAPasswordLeavesNoPairBehind() {
        const QString left = makeFile(u"LEFT.DDB"_s, {pumps()});
        {
            EditorFixture fixture;
            openBoth(fixture, {pumps()}, {valves()});
            QCOMPARE(fixture.window().remembered().pairs().size(), 1);
        }
        QVERIFY(QFile::remove(left));
        makeFile(u"LEFT.DDB"_s, {pumps()}, u"pw"_s);
        EditorFixture fixture;
        fixture.dialogs().expectFile(fileDialogTitle, left);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"pw"_s);
        fixture.choose(Command::OpenDatabase);
        QCOMPARE(fixture.window().remembered().pairs().size(), 0);
    }

    void aFileBesideItselfIsNoPair() {
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture;
        fixture.openBoth(file, file);
        QCOMPARE(fixture.window().remembered().pairs().size(), 0);
    }
};

QTEST_MAIN(RecentFilesTest)
#include "recent_files_test.moc"
