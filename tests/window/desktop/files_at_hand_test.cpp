#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include "app/Program.h"

#include <QFileDialog>
#include <QMenuBar>
#include <QMimeData>
#include <QUrl>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// New, recent and dropped files through the real window.
class FilesAtHandTest : public WindowTest {
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
    static QPushButton &button(EditorFixture &fixture, const QString &name) {
        return *fixture.window().findChild<QPushButton *>(name);
    }
    /// Drags files over a control and drops them there, as the window system does.
    static void drop(EditorFixture &fixture, QWidget &target, const QStringList &paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString &path : paths)
            urls.append(QUrl::fromLocalFile(path));
        data.setUrls(urls);
        data.setText(paths.join(u'\n')); // as file managers add it
        const QPoint at = target.mapTo(&fixture.window(), target.rect().center());
        QWindow *window = fixture.window().windowHandle();
        const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
        QDragEnterEvent enter(at, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window, &enter);
        if (!enter.isAccepted())
            return;
        QDropEvent dropped(at, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window, &dropped);
        hands::turnLoop();
    }

private Q_SLOTS:
    void newDatabaseMakesAnEmptyFileOfEachKindAndOpensIt_data() {
        QTest::addColumn<QString>("extension");
        for (const char *extension : {"DDB", "WDB", "UDB", "IDB", "SDB"})
            QTest::newRow(extension) << QString::fromLatin1(extension);
    }

    void newDatabaseMakesAnEmptyFileOfEachKindAndOpensIt() {
        QFETCH(QString, extension);
        EditorFixture fixture;
        fixture.dialogs().expectFile(u"New Database"_s, path(u"FRESH."_s + extension));
        hands::key(&fixture.window(), QKeySequence(u"Ctrl+N"_s));
        QCOMPARE(fixture.fileName(0), path(u"FRESH."_s + extension).toUpper());
        QVERIFY(fixture.isOpen(0));
        QCOMPARE(fixture.database(0).QIRTablesCount(), 0);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.activePane(), 0);
        QVERIFY(QFile::exists(path(u"FRESH."_s + extension)));
    }

    void theNewFilesExtensionFollowsTheKindChosen() {
        EditorFixture fixture;
        fixture.dialogs().expect([this](QDialog &dialog) {
            auto &box = dynamic_cast<QFileDialog &>(dialog);
            if (box.nameFilters().size() != 5)
                return u"not the five kinds"_s;
            box.selectNameFilter(box.nameFilters().at(3));
            Q_EMIT box.filterSelected(box.nameFilters().at(3));
            auto *edit = box.findChild<QLineEdit *>(u"fileNameEdit"_s);
            edit->setCompleter(nullptr);
            edit->setText(path(u"PERSONS"_s));
            return pressButton(dialog, u"Save"_s);
        });
        fixture.choose(Command::NewDatabase);
        QVERIFY(QFile::exists(path(u"PERSONS.IDB"_s)));
        // The kind is remembered.
        fixture.dialogs().expect([](QDialog &dialog) {
            auto &box = dynamic_cast<QFileDialog &>(dialog);
            const QString filter = box.selectedNameFilter();
            dialog.reject();
            return filter.contains(u"IDB"_s) ? QString() : filter;
        });
        fixture.choose(Command::OpenDatabase);
    }

    void aNewFileIsNotMadeOverOneThatIsOpen() {
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(file);
        const QByteArray before = fileBytes(file);
        fixture.dialogs().expect([&](QDialog &dialog) {
            auto &box = dynamic_cast<QFileDialog &>(dialog);
            box.setOption(QFileDialog::DontConfirmOverwrite);
            auto *edit = box.findChild<QLineEdit *>(u"fileNameEdit"_s);
            edit->setCompleter(nullptr);
            edit->setText(file);
            return pressButton(dialog, u"Save"_s);
        });
        fixture.dialogs().expectMessage(
            u"'%1' is open. Close it before making a new database of that name."_s.arg(file), u"!"_s, u"OK"_s);
        fixture.choose(Command::NewDatabase);
        QCOMPARE(fileBytes(file), before);
        QVERIFY(fixture.isOpen(0));
    }

    void aNewDatabaseThatCannotBeWrittenIsToldAndOpensNothing() {
        EditorFixture fixture;
        fixture.dialogs().expectFile(u"New Database"_s, path(u"NOWHERE/X.DDB"_s));
        fixture.dialogs().expectMessage(u"Can't assign new file name"_s, u"!"_s, u"OK"_s);
        fixture.choose(Command::NewDatabase);
        QVERIFY(!fixture.isOpen(0));
    }

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

    void aNewDatabaseIsMadeBesideOneWhoseFileHasGone() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        QVERIFY(QFile::remove(path(u"A.DDB"_s)));
        hands::turnLoop();
        fixture.dialogs().expectFile(u"New Database"_s, path(u"FRESH.DDB"_s));
        fixture.choose(Command::NewDatabase);
        QCOMPARE(fixture.fileName(0), path(u"FRESH.DDB"_s).toUpper());
        QVERIFY(QFile::exists(path(u"FRESH.DDB"_s)));
    }

    void theExtensionOfNoKindIsNotTheNextNewFiles() {
        makeFile(u"A.DDB"_s, {pumps()});
        QVERIFY(QFile::rename(path(u"A.DDB"_s), path(u"A.BAK"_s)));
        EditorFixture fixture;
        fixture.open(path(u"A.BAK"_s));
        fixture.dialogs().expectFile(u"New Database"_s, path(u"FRESH"_s));
        fixture.choose(Command::NewDatabase);
        QVERIFY(QFile::exists(path(u"FRESH.DDB"_s)));
        QVERIFY(!QFile::exists(path(u"FRESH.BAK"_s)));
    }

    void aFileDroppedOnAnOpenCellEditorOpens() {
        const QString file = makeFile(u"DROPPED.DDB"_s, {numbers(u"D"_s, {u"1"_s})});
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickLine(0, 0);
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_F2);
        QWidget &editor = fixture.editor().txtEdit(0);
        QVERIFY(editor.isVisible());
        drop(fixture, editor, {file});
        QCOMPARE(fixture.fileName(0), file.toUpper());
        QVERIFY(fixture.isOpen(0));
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

    void anEmptyPaneOffersOpenNewAndTheRecentMenus() {
        EditorFixture fixture;
        QVERIFY(fixture.editor().pane(0).controls().hint->text().contains(u"drop a file here"_s));
        for (const QString &name :
             {u"OpenDatabase_0"_s, u"NewDatabase_0"_s, u"RecentFilesMenu_0"_s, u"RecentPairsMenu_0"_s})
            QVERIFY2(button(fixture, name).isVisible(), qPrintable(name));
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        fixture.dialogs().expectFile(fileDialogTitle, file);
        hands::click(&button(fixture, u"OpenDatabase_0"_s), Qt::LeftButton);
        QCOMPARE(fixture.fileName(0), file.toUpper());
        QVERIFY(!button(fixture, u"OpenDatabase_0"_s).isVisible());
        fixture.choose(Command::CloseDatabaseMenu);
        QTRY_VERIFY(button(fixture, u"OpenDatabase_0"_s).isVisible());
    }

    void theButtonsOfAnEmptyPaneOpenInThatPane() {
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture;
        fixture.choose(Command::TwoMenu);
        QCOMPARE(fixture.activePane(), -1);
        fixture.dialogs().expectFile(fileDialogTitle, file);
        hands::click(&button(fixture, u"OpenDatabase_1"_s), Qt::LeftButton);
        QVERIFY(!fixture.isOpen(0));
        QCOMPARE(fixture.fileName(1), file.toUpper());
        QCOMPARE(fixture.activePane(), 1);
    }

    void theEmptyPanesButtonsLeaveTheHintReadableInASmallWindow() {
        EditorFixture fixture;
        for (const QSize size : {QSize(200, 334), QSize(1000, 340), QSize(260, 700), QSize(1400, 1000)}) {
            fixture.window().resize(size);
            hands::turnLoop();
            const QWidget &offers = *fixture.window().findChild<QWidget *>(u"emptyPane_0"_s);
            const QLabel &hint = *fixture.editor().pane(0).controls().hint;
            if (offers.isVisible())
                QVERIFY(fixture.frame(0).rect().contains(offers.geometry()));
            if (offers.isVisible())
                QVERIFY(offers.y() > hint.geometry().center().y());
            QVERIFY(size.height() < 500 || size.width() < 300 || offers.isVisible());
        }
    }

    void aFileDroppedOnAPaneOpensThere_data() {
        QTest::addColumn<int>("pane");
        QTest::addColumn<bool>("full");
        QTest::newRow("left, empty") << 0 << false;
        QTest::newRow("right, empty") << 1 << false;
        QTest::newRow("left, over a table") << 0 << true;
        QTest::newRow("right, over a table") << 1 << true;
    }

    void aFileDroppedOnAPaneOpensThere() {
        QFETCH(int, pane);
        QFETCH(bool, full);
        const QString file = makeFile(u"DROPPED.DDB"_s, {numbers(u"D"_s, {u"1"_s})});
        EditorFixture fixture;
        if (full)
            openBoth(fixture, {pumps()}, {pumps()});
        else
            fixture.choose(Command::TwoMenu);
        QWidget &target = full ? static_cast<QWidget &>(*fixture.grid(pane).viewport()) : fixture.frame(pane);
        drop(fixture, target, {file});
        QCOMPARE(fixture.fileName(pane), file.toUpper());
        QCOMPARE(fixture.isOpen(1 - pane), full);
        QCOMPARE(fixture.activePane(), pane);
    }

    void twoFilesDroppedOpenSideBySide() {
        const QString left = makeFile(u"A.DDB"_s, {pumps()});
        const QString right = makeFile(u"B.DDB"_s, {valves()});
        EditorFixture fixture;
        drop(fixture, fixture.frame(0), {left, right});
        QVERIFY(fixture.editor().twoPanes());
        QCOMPARE(fixture.fileName(0), left.toUpper());
        QCOMPARE(fixture.fileName(1), right.toUpper());
    }

    void whatIsNoFileOrTooMuchIsNotTaken() {
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture;
        drop(fixture, fixture.frame(0), {QFileInfo(file).path()});
        drop(fixture, fixture.frame(0), {file, file, file});
        drop(fixture, fixture.frame(0), {path(u"MISSING.DDB"_s)});
        QVERIFY(!fixture.isOpen(0));
        QCOMPARE(fixture.activePane(), -1);
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

    void aFileThatGetsAPasswordLeavesNoPairBehind() {
        const QString left = makeFile(u"LEFT.DDB"_s, {pumps()});
        {
            EditorFixture fixture;
            openBoth(fixture, {pumps()}, {valves()});
            QCOMPARE(fixture.editor().remembered().pairs().size(), 1);
        }
        QVERIFY(QFile::remove(left));
        makeFile(u"LEFT.DDB"_s, {pumps()}, u"pw"_s);
        EditorFixture fixture;
        fixture.dialogs().expectFile(fileDialogTitle, left);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"pw"_s);
        fixture.choose(Command::OpenDatabase);
        QCOMPARE(fixture.editor().remembered().pairs().size(), 0);
    }

    void aFileBesideItselfIsNoPair() {
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture;
        fixture.openBoth(file, file);
        QCOMPARE(fixture.editor().remembered().pairs().size(), 0);
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

QTEST_MAIN(FilesAtHandTest)
#include "files_at_hand_test.moc"
