#include "app/desktop/OpenFiles.h"
#include "app/desktop/OutsideChanges.h"
#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QApplication>
#include <QProcess>
#include <QScopeGuard>
#include <QSignalSpy>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// What other programs do to an open file.
class OutsideChangesTest : public WindowTest {
    Q_OBJECT

    static NoticeBar &bar(EditorFixture &fixture, int pane) {
        return *fixture.window().findChild<NoticeBar *>(u"noticeBar_%1"_s.arg(pane));
    }
    static void press(EditorFixture &fixture, int pane, const QString &button) {
        hands::click(bar(fixture, pane).findChild<QPushButton *>(button), Qt::LeftButton);
    }
    static bool offers(EditorFixture &fixture, int pane, const QString &button) {
        return bar(fixture, pane).findChild<QPushButton *>(button)->isVisible();
    }
    /// A program of its own does something in the test's folder.
    void elsewhere(const QString &commands) const {
        QProcess shell;
        shell.setWorkingDirectory(path(QString()));
        shell.start(u"/bin/sh"_s, {u"-c"_s, u"set -e\n"_s + commands});
        QVERIFY(shell.waitForFinished());
        QVERIFY2(shell.exitCode() == 0, shell.readAllStandardError().constData());
    }
    /// A.DDB, one of the same tables and one of others beside it.
    QString makeFiles() const {
        makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"5"_s, u"6"_s, u"7"_s}), pumps()});
        makeFile(u"SAME.DDB"_s, {numbers(u"T"_s, {u"1"_s, u"2"_s, u"3"_s}), pumps()});
        return makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s, u"2"_s, u"3"_s}), pumps()});
    }
    /// Calls `act` while a first file is being opened, once the component has read it.
    void onceLoaded(EditorFixture &fixture, const std::function<void()> &act) {
        connect(&fixture.action(Command::CloseDatabaseMenu), &QAction::enabledChanged, this, [act](bool enabled) {
            if (enabled)
                act();
        });
    }
    QString changedText() const { return u"'%1' was changed by another program."_s.arg(path(u"A.DDB"_s)); }
    QString goneText() const { return u"'%1' is not on disk any more."_s.arg(path(u"A.DDB"_s)); }
    QString linkText() const { return u"'%1' was changed by another program."_s.arg(path(u"LINK.DDB"_s)); }

private Q_SLOTS:
    void whatAnotherProgramDoesIsToldWhenItChangesTheContent_data() {
        QTest::addColumn<QString>("opened");
        QTest::addColumn<QString>("commands");
        QTest::addColumn<QString>("told");
        const QString file = u"A.DDB"_s;
        const QString link = u"LINK.DDB"_s;
        const QString changed = u"changed"_s;
        const QString gone = u"gone"_s;
        const QString none;
        QTest::newRow("another moved over it") << file << u"mv B.DDB A.DDB"_s << changed;
        QTest::newRow("written in place") << file << u"cat B.DDB > A.DDB"_s << changed;
        QTest::newRow("emptied") << file << u": > A.DDB"_s << changed;
        QTest::newRow("cut short") << file << u"truncate -s 100 A.DDB"_s << changed;
        QTest::newRow("a byte changed") << file << u"printf X | dd of=A.DDB bs=1 seek=60 conv=notrunc"_s << changed;
        QTest::newRow("appended to") << file << u"printf X >> A.DDB"_s << changed;
        QTest::newRow("through another link") << file << u"ln A.DDB H; cat B.DDB > H"_s << changed;
        QTest::newRow("a link in its place") << file << u"rm A.DDB; ln -s B.DDB A.DDB"_s << changed;
        QTest::newRow("a link led elsewhere") << link << u"ln -sfn B.DDB LINK.DDB"_s << changed;
        QTest::newRow("a link's target replaced") << link << u"mv B.DDB A.DDB"_s << changed;
        QTest::newRow("many changes in a row")
            << file << u"for i in $(seq 200); do cat SAME.DDB > A.DDB; cat B.DDB > A.DDB; done"_s << changed;
        QTest::newRow("removed") << file << u"rm A.DDB"_s << gone;
        QTest::newRow("renamed") << file << u"mv A.DDB X"_s << gone;
        QTest::newRow("its folder renamed") << file << u"mv ../FILES ../GONE"_s << gone;
        QTest::newRow("its folder removed") << file << u"rm -r ../FILES"_s << gone;
        QTest::newRow("a folder in its place") << file << u"rm A.DDB; mkdir A.DDB"_s << gone;
        QTest::newRow("a pipe in its place") << file << u"rm A.DDB; mkfifo A.DDB"_s << gone;
        QTest::newRow("touched only") << file << u"touch A.DDB"_s << none;
        QTest::newRow("its permissions") << file << u"chmod 400 A.DDB"_s << none;
        QTest::newRow("the same written again") << file << u"cp A.DDB K; cat K > A.DDB"_s << none;
        QTest::newRow("the same moved over it") << file << u"cp A.DDB K; mv K A.DDB"_s << none;
        QTest::newRow("removed and restored") << file << u"cp A.DDB K; rm A.DDB; cp K A.DDB"_s << none;
        QTest::newRow("the same tables under a new save") << file << u"mv SAME.DDB A.DDB"_s << none;
        QTest::newRow("many changes and back")
            << file << u"cp A.DDB K; for i in $(seq 200); do cat B.DDB > A.DDB; cat K > A.DDB; done"_s << none;
    }

    void whatAnotherProgramDoesIsToldWhenItChangesTheContent() {
        QFETCH(QString, opened);
        QFETCH(QString, commands);
        QFETCH(QString, told);
        makeFiles();
        QVERIFY(QFile::link(u"A.DDB"_s, path(u"LINK.DDB"_s)));
        EditorFixture fixture(path(opened));
        QVERIFY(fixture.isOpen(0));
        QSignalSpy touched(fixture.window().findChild<OutsideChanges *>(), &OutsideChanges::fileTouched);
        elsewhere(commands);
        QTRY_VERIFY(!touched.isEmpty());
        QTRY_COMPARE(bar(fixture, 0).isVisible(), !told.isEmpty());
        if (told == u"changed"_s)
            QCOMPARE(bar(fixture, 0).text(), opened == u"A.DDB"_s ? changedText() : linkText());
        else if (!told.isEmpty())
            QCOMPARE(bar(fixture, 0).text(), goneText());
        for (const QString &button : {u"reload"_s, u"compare"_s})
            QCOMPARE(offers(fixture, 0, button), told == u"changed"_s);
        QCOMPARE(offers(fixture, 0, u"keep"_s), !told.isEmpty());
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.texts(0).value(0).value(0), u"1200"_s); // the first table, Pumps, as it was
    }

    void aChangeWhileTheFileIsBeingOpenedIsTold() {
        const QString file = makeFiles();
        EditorFixture fixture;
        bool changed = false;
        onceLoaded(fixture, [&] {
            elsewhere(u"cat B.DDB > A.DDB"_s);
            changed = true;
        });
        fixture.open(file);
        QVERIFY(changed);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        QCOMPARE(bar(fixture, 0).text(), changedText());
        QVERIFY(offers(fixture, 0, u"reload"_s));
    }

    void theSameWrittenWhileTheFileIsBeingOpenedIsNotTold() {
        const QString file = makeFiles();
        EditorFixture fixture;
        QSignalSpy touched(fixture.window().findChild<OutsideChanges *>(), &OutsideChanges::fileTouched);
        onceLoaded(fixture, [&] { elsewhere(u"cp A.DDB K; cat K > A.DDB"_s); });
        fixture.open(file);
        QTRY_COMPARE(touched.size(), 2); // opened, and looked at again
        QVERIFY(!bar(fixture, 0).isVisible());
    }

    void twinsWhoseNamesDifferInCaseAreToldApart() {
        makeTwins(u"a.ddb"_s, {}, u"A.ddb"_s);
        makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"5"_s})});
        EditorFixture fixture;
        fixture.openBoth(path(u"a.ddb"_s), path(u"A.ddb"_s));
        QCOMPARE(openFilePath(fixture.editor(), 0), path(u"a.ddb"_s));
        QCOMPARE(openFilePath(fixture.editor(), 1), path(u"A.ddb"_s));
        elsewhere(u"cat A.ddb > K; touch -r a.ddb K; mv K a.ddb"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' was changed by another program."_s.arg(path(u"a.ddb"_s)));
        elsewhere(u"cat B.DDB > a.ddb"_s);
        QTRY_VERIFY(fileBytes(path(u"a.ddb"_s)) == fileBytes(path(u"B.DDB"_s)));
        press(fixture, 0, u"reload"_s);
        QCOMPARE(fixture.database(0).QIRTableName(1), u"T"_s);
        QCOMPARE(fixture.database(1).QIRTableName(1), u"Valves"_s);
        QVERIFY(!bar(fixture, 1).isVisible());
    }

    void aFileThatComesBackIsTold() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"mv A.DDB K"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), goneText());
        elsewhere(u"mv K A.DDB"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' is back on disk as it was."_s.arg(file));
        QVERIFY(!offers(fixture, 0, u"keep"_s));
        elsewhere(u"rm A.DDB"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), goneText());
        elsewhere(u"cp B.DDB A.DDB"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' is back on disk with other contents."_s.arg(file));
        QVERIFY(offers(fixture, 0, u"reload"_s));
    }

    void aFileOfAFolderThatWasRemovedIsFoundAgain() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"mv ../FILES ../GONE"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), goneText());
        const QString folder = QFileInfo(file).path();
        QVERIFY(QDir().rename(QFileInfo(folder).path() + u"/GONE"_s, folder));
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' is back on disk as it was."_s.arg(file));
    }

    void whatChangesBackIsToldNoMore() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"cp A.DDB K; cat B.DDB > A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        elsewhere(u"cat K > A.DDB"_s);
        QTRY_VERIFY(!bar(fixture, 0).isVisible());
    }

    void reloadShowsWhatIsOnDiskAtTheSameTableAndCell() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        fixture.clickLine(0, 1); // T
        fixture.clickCell(0, 2, 1);
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        press(fixture, 0, u"reload"_s);
        QVERIFY(!bar(fixture, 0).isVisible());
        QCOMPARE(fixture.shownTable(0), u"T"_s);
        QCOMPARE(fixture.texts(0), (QList<QStringList>{{u"5"_s}, {u"6"_s}, {u"7"_s}}));
        QCOMPARE(fixture.grid(0).Row(), 2);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void reloadComesAsNearAsWhatIsLeftAllows() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s, u"2"_s, u"3"_s}), pumps()});
        makeFile(u"FEWER.DDB"_s, {numbers(u"T"_s, {u"9"_s})});
        EditorFixture fixture(file);
        fixture.clickLine(0, 1);
        fixture.clickCell(0, 3, 1);
        elsewhere(u"mv FEWER.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        press(fixture, 0, u"reload"_s);
        QCOMPARE(fixture.shownTable(0), u"T"_s);
        QCOMPARE(fixture.grid(0).Row(), 1);
    }

    void reloadAsksWhereChangesAreNotSaved() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        change(fixture, 0, u"77"_s);
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        const QString question =
            u"Database '%1' has changes that are not saved.\r\nReload it and drop them?"_s.arg(file);
        fixture.dialogs().expectMessage(question, u"QIR Database Editor"_s, u"No"_s);
        press(fixture, 0, u"reload"_s);
        QVERIFY(fixture.database(0).DtbHasChanged());
        QVERIFY(bar(fixture, 0).isVisible());
        fixture.dialogs().expectMessage(question, u"QIR Database Editor"_s, u"Yes"_s);
        press(fixture, 0, u"reload"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(savedValue(file, u"T"_s), u"5"_s);
    }

    void aFileThatCannotBeLoadedNowLeavesThePaneAsItIs() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"printf nonsense > A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        fixture.dialogs().expect(messageNaming({u"Can't load '%1'"_s.arg(file)}));
        press(fixture, 0, u"reload"_s);
        QVERIFY(fixture.isOpen(0));
        QCOMPARE(fixture.texts(0).value(0).value(0), u"1200"_s);
        QVERIFY(bar(fixture, 0).isVisible());
    }

    void reloadOfAProtectedFileAsksForThePassword() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}, u"pw"_s);
        makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"5"_s})}, u"pw"_s);
        EditorFixture fixture;
        fixture.dialogs().expectFile(fileDialogTitle, file);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"pw"_s);
        fixture.choose(Command::OpenDatabase);
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"pw"_s);
        press(fixture, 0, u"reload"_s);
        QCOMPARE(fixture.texts(0), (QList<QStringList>{{u"5"_s}}));
    }

    void keepMineMakesTheDatabaseCountAsChanged() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"rm A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        press(fixture, 0, u"keep"_s);
        QVERIFY(!bar(fixture, 0).isVisible());
        QVERIFY(fixture.database(0).DtbHasChanged());
        QVERIFY(fixture.window().isWindowModified());
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(file, u"T"_s), u"1"_s);
        QVERIFY(!bar(fixture, 0).isVisible());
    }

    void compareOpensTheVersionOnDiskBeside() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        fixture.clickLine(0, 1);
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        press(fixture, 0, u"compare"_s);
        QVERIFY(fixture.editor().twoPanes());
        QVERIFY(fixture.isOpen(1));
        QCOMPARE(fixture.activePane(), 0);
        fixture.clickLine(0, 1);
        QCOMPARE(fixture.texts(0).value(0).value(0), u"1"_s);
        QCOMPARE(fixture.texts(1).value(0).value(0), u"5"_s);
        QVERIFY(bar(fixture, 0).isVisible()); // still to be decided
        QVERIFY(!bar(fixture, 1).isVisible());
    }

    void compareAsksWhatBecomesOfTheOtherPanesChanges_data() {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("saved");
        QTest::addColumn<bool>("replaced");
        QTest::newRow("saved") << u"Yes"_s << u"9"_s << true;
        QTest::newRow("given up") << u"No"_s << u"1"_s << true;
        QTest::newRow("left alone") << u"Cancel"_s << u"1"_s << false;
    }
    void compareAsksWhatBecomesOfTheOtherPanesChanges() {
        QFETCH(const QString, answer);
        QFETCH(const QString, saved);
        QFETCH(const bool, replaced);
        const QString file = makeFiles();
        const QString other = makeFile(u"OTHER.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture;
        fixture.openBoth(file, other);
        change(fixture, 1, u"9"_s);
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        const QString question =
            u"Database '%1' has changes that are not saved.\r\nSave them before another file takes its place?"_s;
        fixture.dialogs().expectMessage(question.arg(fixture.fileName(1)), u"QIR Database Editor"_s, answer);
        press(fixture, 0, u"compare"_s);
        QCOMPARE(savedValue(other, u"T"_s), saved);
        QCOMPARE(fixture.fileName(1) == other.toUpper(), !replaced);
        QCOMPARE(fixture.database(1).DtbHasChanged(), !replaced);
        fixture.database(1).setDtbHasChanged(false);
    }

    void compareLosesNothingWhereTheFileGoesWhileItAsks() {
        const QString file = makeFiles();
        const QString other = makeFile(u"OTHER.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture;
        fixture.openBoth(file, other);
        change(fixture, 1, u"9"_s);
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        fixture.dialogs().expect([&](QDialog &dialog) {
            elsewhere(u"rm A.DDB"_s);
            return pressButton(dialog, u"No"_s);
        });
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"No"_s); }); // keep it in the list
        press(fixture, 0, u"compare"_s);
        QVERIFY(fixture.isOpen(1));
        QCOMPARE(fixture.fileName(1), other.toUpper());
        QVERIFY(fixture.database(1).DtbHasChanged());
        fixture.database(1).setDtbHasChanged(false);
    }

    void compareWithWhatCannotBeLoadedLeavesTheOtherPane() {
        const QString file = makeFiles();
        const QString other = makeFile(u"OTHER.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture;
        fixture.openBoth(file, other);
        elsewhere(u"echo no database > A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        fixture.dialogs().expectMessage(u"Can't load '%1'"_s.arg(file.toUpper()), u"!!"_s, u"OK"_s);
        press(fixture, 0, u"compare"_s);
        QVERIFY(fixture.isOpen(1));
        QCOMPARE(fixture.fileName(1), other.toUpper());
    }

    void aBarStandsAboveItsPaneInEveryModeAndWay_data() {
        QTest::addColumn<Qt::LayoutDirection>("way");
        QTest::newRow("left to right") << Qt::LeftToRight;
        QTest::newRow("right to left") << Qt::RightToLeft;
    }
    void aBarStandsAboveItsPaneInEveryModeAndWay() {
        QFETCH(const Qt::LayoutDirection, way);
        QGuiApplication::setLayoutDirection(way);
        const QScopeGuard back([] { QGuiApplication::setLayoutDirection(Qt::LeftToRight); });
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        fixture.choose(Command::TwoMenu);
        hands::turnLoop();
        const auto middle = [&](const QWidget &widget) {
            return widget.mapTo(&fixture.window(), widget.rect().center()).x();
        };
        const int half = fixture.window().width() / 2;
        QVERIFY(middle(bar(fixture, 0)) < half - 50);
        QVERIFY(middle(fixture.frame(0)) < half);
    }

    void aPressInABarLeavesTheKeyboardWhereItIs() {
        const QString file = makeFiles();
        const QString other = makeFile(u"OTHER.DDB"_s, {numbers(u"T"_s, {u"1"_s}), pumps()});
        makeFile(u"C.DDB"_s, {numbers(u"T"_s, {u"4"_s})});
        EditorFixture fixture;
        fixture.openBoth(file, other);
        fixture.clickLine(1, 1);
        const QWidget *keyboard = QApplication::focusWidget();
        QCOMPARE(fixture.activePane(), 1);
        elsewhere(u"mv C.DDB OTHER.DDB"_s);
        for (const QString &button : {u"dismiss"_s, u"keep"_s}) {
            QTRY_VERIFY(bar(fixture, 1).isVisible());
            press(fixture, 1, button);
            QVERIFY(!bar(fixture, 1).isVisible());
            QCOMPARE(QApplication::focusWidget(), keyboard);
            if (button == u"dismiss"_s)
                elsewhere(u"mv B.DDB OTHER.DDB"_s);
        }
        fixture.database(1).setDtbHasChanged(false);
    }

    void aBarLeftByTheKeyboardGivesItToTheActivePane() {
        const QString file = makeFiles();
        const QString other = makeFile(u"OTHER.DDB"_s, {numbers(u"T"_s, {u"1"_s}), pumps()});
        EditorFixture fixture;
        fixture.openBoth(file, other);
        fixture.clickLine(1, 1);
        elsewhere(u"mv B.DDB OTHER.DDB"_s);
        QTRY_VERIFY(bar(fixture, 1).isVisible());
        auto *dismiss = bar(fixture, 1).findChild<QPushButton *>(u"dismiss"_s);
        dismiss->setFocus(Qt::TabFocusReason);
        hands::key(dismiss, Qt::Key_Space);
        QVERIFY(!bar(fixture, 1).isVisible());
        QCOMPARE(fixture.activePane(), 1);
        QCOMPARE(QApplication::focusWidget(), &fixture.list(1));
    }

    void aPasswordThatIsWrongAtAReloadLosesNothing() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}, u"pw"_s);
        makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"5"_s})}, u"pw"_s);
        EditorFixture fixture;
        fixture.dialogs().expectFile(fileDialogTitle, file);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"pw"_s);
        fixture.choose(Command::OpenDatabase);
        change(fixture, 0, u"7"_s);
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"Yes"_s); });
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"mistyped"_s);
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"OK"_s); });
        press(fixture, 0, u"reload"_s);
        QVERIFY(fixture.isOpen(0));
        fixture.editor().pane(0).makeShownTableCurrent();
        QStringList values;
        fixture.database(0).GetQirRecord(1, values);
        QCOMPARE(values.value(1), u"7"_s);
        QVERIFY(fixture.database(0).DtbHasChanged());
        QVERIFY(bar(fixture, 0).isVisible());
        fixture.database(0).setDtbHasChanged(false);
    }

    void dismissDecidesNothing() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"cat B.DDB > A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        press(fixture, 0, u"dismiss"_s);
        QVERIFY(!bar(fixture, 0).isVisible());
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(savedValue(file, u"T"_s), u"5"_s);
        elsewhere(u"printf X >> A.DDB"_s); // another change is told again
        QTRY_VERIFY(bar(fixture, 0).isVisible());
    }

    void closingThePaneClosesItsBarAndDecidesNothing() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"cat B.DDB > A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        fixture.choose(Command::CloseDatabaseMenu);
        QVERIFY(!bar(fixture, 0).isVisible());
        QCOMPARE(savedValue(file, u"T"_s), u"5"_s);
        elsewhere(u"rm A.DDB"_s);
        hands::turnLoop();
        QVERIFY(!bar(fixture, 0).isVisible());
    }

    void theEditorsOwnSaveIsNoOutsideChangeButIsOneForTheOtherPane() {
        const QString file = makeFiles();
        EditorFixture fixture;
        fixture.openBoth(file, file);
        fixture.clickLine(0, 1);
        change(fixture, 0, u"77"_s);
        QSignalSpy touched(fixture.window().findChild<OutsideChanges *>(), &OutsideChanges::fileTouched);
        fixture.choose(Command::SaveMenu);
        QTRY_VERIFY(bar(fixture, 1).isVisible());
        QCOMPARE(bar(fixture, 1).text(), changedText());
        QTRY_VERIFY(touched.size() >= 2);
        QVERIFY(!bar(fixture, 0).isVisible());
        press(fixture, 1, u"reload"_s);
        QCOMPARE(fixture.texts(1).value(0).value(0), u"77"_s);
    }

    void saveAsFollowsTheNewFile() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        fixture.dialogs().expectFile(fileDialogTitle, path(u"NEW.DDB"_s));
        fixture.choose(Command::SaveAsMenu);
        elsewhere(u"rm A.DDB"_s);
        elsewhere(u"cat B.DDB > NEW.DDB"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' was changed by another program."_s.arg(path(u"NEW.DDB"_s)));
    }

    void theBarStandsAboveItsPaneAndNothingIsCovered() {
        const QString file = makeFiles();
        EditorFixture fixture;
        fixture.openBoth(path(u"B.DDB"_s), file);
        const int before = fixture.frame(1).mapTo(&fixture.window(), QPoint()).y();
        elsewhere(u"rm A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 1).isVisible());
        const QRect place(bar(fixture, 1).mapTo(&fixture.window(), QPoint()), bar(fixture, 1).size());
        const QRect frame(fixture.frame(1).mapTo(&fixture.window(), QPoint()), fixture.frame(1).size());
        QVERIFY(place.bottom() <= frame.top());
        QVERIFY(place.left() >= fixture.window().width() / 2 - 20);
        QVERIFY(frame.bottom() <= fixture.window().height());
        QVERIFY(frame.top() > before);
        press(fixture, 1, u"dismiss"_s);
        QTRY_COMPARE(fixture.frame(1).mapTo(&fixture.window(), QPoint()).y(), before);
    }

    void theBarsOwnTextIsShownPlainAndCanBeSelected() {
        const QString file = makeFile(u"A<B>&C.DDB"_s, {pumps()});
        EditorFixture fixture(file);
        QVERIFY(QFile::remove(file));
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' is not on disk any more."_s.arg(file));
        QCOMPARE(bar(fixture, 0).accessibleName(), bar(fixture, 0).text());
        const auto *text = bar(fixture, 0).findChild<QLabel *>(u"noticeText"_s);
        QCOMPARE(text->textFormat(), Qt::PlainText);
        QVERIFY(text->textInteractionFlags() & Qt::TextSelectableByMouse);
    }

    void aComponentWithoutTheOptionalMembersIsWatchedToo() {
        const UseFake fake;
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(file);
        QFile changed(file);
        QVERIFY(changed.open(QIODevice::Append));
        changed.write("x");
        changed.close();
        QTRY_VERIFY(bar(fixture, 0).isVisible());
    }
};

QTEST_MAIN(OutsideChangesTest)
#include "outside_changes_test.moc"
