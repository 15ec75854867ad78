#include "tests/window/WindowTest.h"

#include "app/Program.h"
#include "app/shared/Funzioni.h"
#include "base/FileNames.h"
#include "platform/loop/MessageLoop.h"
#include "tests/tools/fake/FakeControl.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QTimer>

#include <unistd.h>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// What the command line names, opened at the start of the program.
class StartTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void startsWithoutADatabaseWhenTheCommandLineIsEmpty() {
        EditorFixture fixture;
        QCOMPARE(fixture.startResult(), StartResult::NothingToOpen);
        QCOMPARE(fixture.activePane(), -1);
        QVERIFY(!fixture.action(Command::SaveMenu).isEnabled());
        QVERIFY(!fixture.menu(Menu::TablesMenu).isEnabled());
        QVERIFY(fixture.editor().pane(0).controls().hint->isVisible());
    }

    void opensTheFileThatTheCommandLineNames() {
        const QString path = makeFile(u"A.DDB"_s, {pumps(), valves()});
        EditorFixture fixture(path);
        QCOMPARE(fixture.startResult(), StartResult::Opened);
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s, u"Valves"_s}));
        QCOMPARE(fixture.list(0).ListIndex(), 0);
        QCOMPARE(fixture.list(0).ItemData(1), 2);
        QCOMPARE(fixture.label(0).text(), path);
        QCOMPARE(fixture.texts(0),
                 QList<QStringList>({{u"1200"_s, u"Main"_s}, {u"900"_s, u"Spare"_s}, {u"60"_s, u"Test"_s}}));
        QVERIFY(fixture.action(Command::ColumnSizeAdjust).isEnabled());
    }

    void removesQuotesEverywhereInTheCommandLine_data() {
        QTest::addColumn<QString>("pattern");
        QTest::newRow("apostrophes around") << u"'%1'"_s;
        QTest::newRow("double quotes around") << u"\"%1\""_s;
        QTest::newRow("both around") << u"\"'%1'\""_s;
    }

    void removesQuotesEverywhereInTheCommandLine() {
        QFETCH(QString, pattern);
        const QString path = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(pattern.arg(path));
        QCOMPARE(fixture.startResult(), StartResult::Opened);
        QCOMPARE(fixture.fileName(0), path);
    }

    void removesQuotesInsideTheName() {
        const QString path = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(QString(path).replace(u"A.DDB"_s, u"'A\".D'DB"_s));
        QCOMPARE(fixture.startResult(), StartResult::Opened);
    }

    void ignoresACommandLineThatNamesNoFile() {
        EditorFixture fixture(path(u"MISSING.DDB"_s));
        QCOMPARE(fixture.startResult(), StartResult::NothingToOpen);
        QCOMPARE(fixture.fileName(0), QString());
    }

    void toCompareItShowsTwoPanesAndAsksForBothFiles() {
        const QString left = makeFile(u"A.DDB"_s, {pumps()});
        const QString right = makeFile(u"B.DDB"_s, {pumps(), valves()});
        EditorFixture fixture;
        fixture.dialogs().expectFile(fileDialogTitle, left);
        fixture.dialogs().expectFile(fileDialogTitle, right);
        runCommand([&] { fixture.window().askForBoth(); });
        QVERIFY(fixture.editor().twoPanes());
        QCOMPARE(fixture.fileName(0), left.toUpper());
        QCOMPARE(fixture.fileName(1), right.toUpper());
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s, u"Valves ?"_s}));
        QCOMPARE(fixture.activePane(), 0);
        QCOMPARE(fixture.window().focusWidget(), &fixture.list(0));
    }

    void toCompareItAsksForTheFileAloneThatIsNotNamed() {
        const QString left = makeFile(u"A.DDB"_s, {pumps()});
        const QString right = makeFile(u"B.DDB"_s, {pumps()});
        EditorFixture fixture(left);
        fixture.dialogs().expectFile(fileDialogTitle, right);
        runCommand([&] { fixture.window().askForBoth(); });
        QCOMPARE(fixture.fileName(0), left);
        QCOMPARE(fixture.fileName(1), right.toUpper());
        runCommand([&] { fixture.window().askForBoth(); }); // nothing is missing, nobody is asked
        QCOMPARE(fixture.dialogs().answered(), 1);
    }

    void toCompareACancelEndsTheQuestions() {
        EditorFixture fixture;
        fixture.dialogs().expectFileCancelled(fileDialogTitle);
        runCommand([&] { fixture.window().askForBoth(); });
        QVERIFY(fixture.editor().twoPanes());
        QVERIFY(!fixture.isOpen(0));
        QVERIFY(!fixture.isOpen(1));
    }

    void tellsBothFilesThatTheCommandLineMayMean() {
        makeTwins(u"Pump.ddb"_s, {}, u"pump.ddb"_s);
        EditorFixture fixture;
        fixture.dialogs().expect(messageNaming({u"'Pump.ddb'"_s, u"'pump.ddb'"_s}));
        runCommand([&] { QCOMPARE(fixture.window().Form_Load(path(u"PUMP.DDB"_s)), StartResult::NothingToOpen); });
        QCOMPARE(fixture.fileName(0), QString());
        QCOMPARE(fixture.activePane(), -1);
    }

    void tellsASecondFileName() {
        const QString first = makeFile(u"A.DDB"_s, {pumps()});
        const QString second = makeFile(u"B.DDB"_s, {valves()});
        DialogScript dialogs;
        dialogs.expect([&](QDialog &dialog) {
            const QString problem = messageNaming({first, second})(dialog);
            QTimer::singleShot(0, qApp, [] { QApplication::closeAllWindows(); });
            return problem;
        });
        QCOMPARE(runProgram({{first, second}, QString()}), 0);
        QCOMPARE(dialogs.problems(), QString());
    }

    void wordsThatTogetherNameAFileAreThatFile() {
        const QString first = makeFile(u"two"_s, {valves()});
        const QString second = makeFile(u"words.ddb"_s, {valves()});
        makeFile(u"two "_s + second, {pumps()});
        DialogScript dialogs;
        QString shown;
        QTimer looking;
        QObject::connect(&looking, &QTimer::timeout, [&] {
            DtbEditor *window = editorWindow();
            if (window == nullptr || MessageLoop::instance()->commandRunning())
                return;
            shown = window->context().pane(0).TabellaMostrata();
            if (shown.isEmpty() && dialogs.problems().isEmpty())
                return;
            looking.stop();
            window->close();
        });
        looking.start(0);
        QCOMPARE(runProgram({{first, second}, QString()}), 0);
        QCOMPARE(shown, u"Pumps"_s);
        QCOMPARE(dialogs.problems(), QString());
    }

    void endsTheProgramWithStatus1WhenTheNamedFileCannotBeLoaded() {
        const QString path = writeBytes(u"BAD.DDB"_s, "this is no database");
        DialogScript dialogs;
        dialogs.expectMessage(u"Can't load '"_s + path + u"'"_s, u"!!"_s, u"OK"_s);
        QCOMPARE(runProgram({{path}, QString()}), 1);
        QCOMPARE(dialogs.problems(), QString());
    }

    void endsTheProgramWithStatus1WhenTheArgumentIsAFolder() {
        DialogScript dialogs;
        dialogs.expectMessage(u"Can't load '"_s + path(u"."_s) + u"'"_s, u"!!"_s, u"OK"_s);
        QCOMPARE(runProgram({{path(u"."_s)}, QString()}), 1);
        QCOMPARE(dialogs.problems(), QString());
    }

    void endsTheProgramWithStatus2WhenAnArgumentIsNoText() {
        DialogScript dialogs;
        dialogs.expectMessage(u"the argument is no text"_s, applicationTitle(), u"OK"_s);
        QCOMPARE(refuseArguments(u"the argument is no text"_s), 2);
        QCOMPARE(dialogs.problems(), QString());
    }

    void writesAPictureOfTheWindow() {
        const QString path = makeFile(u"A.DDB"_s, {pumps()});
        const QString picture = this->path(u"picture.png"_s);
        QCOMPARE(runProgram({{path}, picture}), 0);
        QVERIFY(QImage(picture).width() > 500);
    }

    void twoFilesNamedByOptionsStandSideBySide() {
        const QString left = makeFile(u"A.DDB"_s, {pumps()});
        const QString right = makeFile(u"B.DDB"_s, {valves()});
        DialogScript dialogs;
        QStringList shown;
        QTimer looking;
        QObject::connect(&looking, &QTimer::timeout, [&] {
            DtbEditor *window = editorWindow();
            if (window == nullptr || MessageLoop::instance()->commandRunning() || !window->context().DtbAperto(1))
                return;
            looking.stop();
            shown = {window->context().NomeFileDtb(0), window->context().NomeFileDtb(1)};
            window->close();
        });
        looking.start(0);
        QCOMPARE(runProgram({{}, QString(), left, right}), 0);
        QCOMPARE(shown, (QStringList{left, right}));
        QCOMPARE(dialogs.problems(), QString());
    }

    void aSideThatHasNothingStaysEmptyAndSaysSo_data() {
        QTest::addColumn<bool>("right");
        QTest::addColumn<bool>("device");
        QTest::newRow("no left file") << false << true;
        QTest::newRow("no right file") << true << true;
        QTest::newRow("an empty left file") << false << false;
        QTest::newRow("an empty right file") << true << false;
    }

    void aSideThatHasNothingStaysEmptyAndSaysSo() {
        QFETCH(bool, right);
        QFETCH(bool, device);
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        const QString nothing = device ? u"/dev/null"_s : writeBytes(u"B.DDB"_s, {});
        const int full = right ? 0 : 1;
        DialogScript dialogs;
        QString hint;
        bool commandsAreOfTheOther = false;
        QTimer looking;
        QObject::connect(&looking, &QTimer::timeout, [&] {
            DtbEditor *window = editorWindow();
            if (window == nullptr || MessageLoop::instance()->commandRunning() || !window->context().twoPanes() ||
                !window->context().DtbAperto(full))
                return;
            looking.stop();
            EditorContext &editor = window->context();
            const QLabel &label = *editor.pane(1 - full).controls().hint;
            if (!editor.DtbAperto(1 - full) && label.isVisible())
                hint = label.text();
            commandsAreOfTheOther = editor.IndexAttivo() == full;
            window->close();
        });
        looking.start(0);
        QCOMPARE(runProgram({{}, QString(), right ? file : nothing, right ? nothing : file}), 0);
        QVERIFY2(hint.startsWith(u"This side has nothing: '%1' is empty."_s.arg(nothing)), qPrintable(hint));
        QVERIFY(commandsAreOfTheOther);
        QCOMPARE(dialogs.problems(), QString());
    }

    void whatIsOpenedOnASideThatHadNothingTakesItsPlace() {
        const QString nothing = writeBytes(u"B.DDB"_s, {});
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(file);
        runCommand([&] { QCOMPARE(fixture.window().openRight(nothing), StartResult::NothingToOpen); });
        QVERIFY(fixture.editor().twoPanes());
        fixture.activate(1);
        fixture.open(makeFile(u"C.DDB"_s, {pumps(), valves()}));
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s, u"Valves ?"_s}));
        QVERIFY(!fixture.editor().pane(1).controls().hint->isVisible());
        fixture.choose(Command::CloseDatabaseMenu);
        QVERIFY(!fixture.editor().pane(1).controls().hint->text().contains(nothing));
    }

    void twoSidesThatHaveNothingAreAnEditorWithoutADatabase() {
        EditorFixture fixture;
        runCommand([&] {
            QCOMPARE(fixture.window().openLeft(u"/dev/null"_s), StartResult::NothingToOpen);
            QCOMPARE(fixture.window().openRight(u"/dev/null"_s), StartResult::NothingToOpen);
        });
        for (const int pane : {0, 1})
            QVERIFY(fixture.editor().pane(pane).controls().hint->text().contains(u"/dev/null"_s));
        QVERIFY(!fixture.action(Command::SaveMenu).isEnabled());
    }

    void anEmptyFileThatStandsAloneOnTheCommandLineIsNoDatabase() {
        const QString nothing = writeBytes(u"B.DDB"_s, {});
        DialogScript dialogs;
        dialogs.expectMessage(u"Can't load '"_s + nothing + u"'"_s, u"!!"_s, u"OK"_s);
        QCOMPARE(runProgram({{nothing}, QString()}), 1);
        QCOMPARE(dialogs.problems(), QString());
    }

    void aFileThatAnOptionNamesMustBeThere_data() {
        QTest::addColumn<bool>("right");
        QTest::newRow("left") << false;
        QTest::newRow("right") << true;
    }

    void aFileThatAnOptionNamesMustBeThere() {
        QFETCH(bool, right);
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        const QString missing = path(u"MISSING.DDB"_s);
        DialogScript dialogs;
        dialogs.expectMessage(u"'%1' was not found"_s.arg(missing), u"!"_s, u"OK"_s);
        QCOMPARE(runProgram({{}, QString(), right ? file : missing, right ? missing : file}), 1);
        QCOMPARE(dialogs.problems(), QString());
    }

    void endsTheProgramWithStatus1WhenTheRightFileCannotBeLoaded() {
        const QString bad = writeBytes(u"BAD.DDB"_s, "this is no database");
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        DialogScript dialogs;
        dialogs.expectMessage(u"Can't load '"_s + bad + u"'"_s, u"!!"_s, u"OK"_s);
        QCOMPARE(runProgram({{file}, QString(), QString(), bad}), 1);
        QCOMPARE(dialogs.problems(), QString());
    }

    void closingTheWindowInTheMiddleOfALongLoadEndsTheProgramAndWritesNothing() {
        const UseFake fake; // has no columns, which would be there before anybody can close the window
        QStringList numbers;
        for (int r = 0; r < 400'000; ++r)
            numbers.append(QString::number(r));
        const QString path = makeFile(u"LONG.DDB"_s, {{u"Long"_s, {{u"a"_s, FieldType::Long, numbers}}}});
        const QByteArray before = fileBytes(path);
        bool closedDuringTheLoad = false;
        QTimer closing;
        QObject::connect(&closing, &QTimer::timeout, [&] {
            DtbEditor *window = editorWindow();
            if (window == nullptr || !MessageLoop::instance()->commandRunning() ||
                window->context().pane(0).TabellaMostrata() != u"Long"_s)
                return;
            closedDuringTheLoad = window->context().Tabella(0).Rows() == 1;
            closing.stop();
            window->close();
        });
        closing.start(0);
        QCOMPARE(runProgram({{path}, QString()}), 0);
        QVERIFY(closedDuringTheLoad);
        QCOMPARE(fileBytes(path), before);
    }

    void aDatabaseWithoutTablesOpensAtTheStart() {
        EditorFixture fixture(makeFile(u"EMPTY.SDB"_s, {}));
        QCOMPARE(fixture.startResult(), StartResult::Opened);
        QVERIFY(!fixture.grid(0).Visible());
        QVERIFY(!fixture.action(Command::RemoveTableMenu).isEnabled());
    }

private:
    /// The window of a program that runs; null before it has one.
    static DtbEditor *editorWindow() {
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (auto *editor = qobject_cast<DtbEditor *>(widget))
                return editor;
        return nullptr;
    }
};

QTEST_MAIN(StartTest)
#include "start_test.moc"
