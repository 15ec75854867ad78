#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include "app/Program.h"
#include "app/desktop/WindowState.h"

#include <QFileDialog>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// Where windows and file dialogs begin, and what the command line opens.
class NextSessionTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void theFileDialogsStartInTheFolderUsedLast() {
        const QString file = makeFile(u"DEEP/A.WDB"_s, {pumps()});
        {
            EditorFixture fixture;
            fixture.open(file);
        }
        EditorFixture fixture;
        fixture.dialogs().expect([&](QDialog &dialog) {
            const auto &box = dynamic_cast<QFileDialog &>(dialog);
            const QString shown = box.directory().path() + u' ' + box.selectedNameFilter();
            dialog.reject();
            return shown == QFileInfo(file).path() + u" Display Data Files(*.WDB)"_s ? QString() : shown;
        });
        fixture.choose(Command::OpenDatabase);
    }

    void theWindowComesBackWhereItWas() {
        {
            EditorFixture fixture;
            fixture.window().setGeometry(60, 70, 640, 480);
            hands::turnLoop();
            QVERIFY(fixture.window().close());
        }
        EditorFixture fixture;
        QCOMPARE(fixture.window().size(), QSize(640, 480));
        QCOMPARE(fixture.window().geometry().topLeft(), QPoint(60, 70));
    }

    void aWindowIsNoLargerThanItsScreenHasRoomForWithAFrame() {
        EditorFixture fixture;
        const QSize room = fixture.window().screen()->availableSize();
        fixture.window().resize(room * 2);
        fitToScreen(fixture.window());
        QVERIFY(fixture.window().width() < room.width());
        QVERIFY(fixture.window().height() <= room.height() - 20); // its title
        const QSize small(400, 340);
        fixture.window().resize(small);
        fitToScreen(fixture.window());
        QCOMPARE(fixture.window().size(), small);
    }

    void aPlaceThatNoScreenHasAnyMoreIsNotTaken() {
        Remembered().noteWindowPlace({QRect(90'000, 90'000, 640, 480), false});
        EditorFixture fixture;
        QCOMPARE(fixture.window().size(), QSize(640, 480));
        QVERIFY(fixture.window().screen()->availableGeometry().intersects(fixture.window().frameGeometry()));
    }

    void theCommandLineOpensASecondFileBeside() {
        const QString left = makeFile(u"A.DDB"_s, {pumps()});
        const QString right = makeFile(u"B.DDB"_s, {valves()});
        EditorFixture fixture(left);
        StartResult result = StartResult::NothingToOpen;
        runCommand([&] { result = fixture.window().openRight(right); });
        QCOMPARE(result, StartResult::Opened);
        QVERIFY(fixture.editor().twoPanes());
        QCOMPARE(fixture.fileName(1), right);
        QCOMPARE(fixture.activePane(), 0);
        QVERIFY(fixture.list(0).hasFocus());
    }

    void aNameThatTheCommandLineGivesForTheLeftIsTakenAsItIs() {
        makeFile(u"ITS.DDB"_s, {valves()});
        const QString left = makeFile(u"IT'S.DDB"_s, {pumps()});
        EditorFixture fixture;
        StartResult result = StartResult::NothingToOpen;
        runCommand([&] { result = fixture.window().openLeft(left); });
        QCOMPARE(result, StartResult::Opened);
        QCOMPARE(fixture.fileName(0), left);
        QCOMPARE(fixture.list(0).List(0), u"Pumps"_s);
        QCOMPARE(fixture.activePane(), 0);
    }

    void theFileDialogStartsInTheFolderUsedLast() {
        const QString file = makeFile(u"SUB/A.DDB"_s, {pumps()});
        const auto folderOfNextDialog = [](EditorFixture &fixture) {
            QString folder;
            fixture.dialogs().expect([&](QDialog &dialog) {
                folder = dynamic_cast<QFileDialog &>(dialog).directory().canonicalPath();
                dialog.reject();
                return QString();
            });
            fixture.choose(Command::OpenDatabase);
            return folder;
        };
        {
            EditorFixture fixture;
            fixture.open(file);
            QCOMPARE(folderOfNextDialog(fixture), QFileInfo(file).canonicalPath());
        }
        EditorFixture fixture; // the next session
        QCOMPARE(folderOfNextDialog(fixture), QFileInfo(file).canonicalPath());
    }

    void theDesktopsDialogsAreUsedUntilTheUserWantsOurs() {
        const auto back = qScopeGuard([] { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false); });
        {
            EditorFixture fixture;
            QVERIFY(fixture.action(Command::DesktopDialogsMenu).isChecked());
            QVERIFY(!QApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
            fixture.choose(Command::DesktopDialogsMenu);
            QVERIFY(QApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
        }
        EditorFixture fixture;
        QVERIFY(!fixture.action(Command::DesktopDialogsMenu).isChecked());
        QVERIFY(QApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
        fixture.choose(Command::DesktopDialogsMenu);
        QVERIFY(!QApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
    }
};

QTEST_MAIN(NextSessionTest)
#include "next_session_test.moc"
