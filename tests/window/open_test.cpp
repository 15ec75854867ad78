#include "tests/window/EditorFixture.h"

#include "app/Program.h"
#include "app/shared/Funzioni.h"
#include "base/FileNames.h"
#include "tests/tools/fake/FakeControl.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QTimer>

#include <unistd.h>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

const QString openTitle = u"File DDB,WDB,UDB,SDB,IDB"_s;

TableOfTexts pumps() {
    return {u"Pumps"_s,
            {{u"Speed"_s, FieldType::Long, {u"1200"_s, u"900"_s}},
             {u"Name"_s, FieldType::Text, {u"Main"_s, u"Spare"_s}, 20}}};
}

TableOfTexts valves() {
    return {u"Valves"_s, {{u"Open"_s, FieldType::Bool, {u"1"_s}}}};
}

/// A message box that names all of these; OK is pressed.
std::function<QString(QDialog &)> messageNaming(const QStringList &parts) {
    return [parts](QDialog &dialog) {
        const auto *box = qobject_cast<QMessageBox *>(&dialog);
        const QString text = box ? box->text() : u"no message box: "_s + dialog.windowTitle();
        QString problem;
        for (const QString &part : parts)
            if (!text.contains(part))
                problem += u"'%1' is not in '%2'; "_s.arg(part, text);
        return problem + pressButton(dialog, u"OK"_s);
    };
}

/// "Can't load", with the component's reason as the box's second line.
std::function<QString(QDialog &)> failedLoad(const QString &name, const QString &reason) {
    return [name, reason](QDialog &dialog) {
        const auto *box = qobject_cast<QMessageBox *>(&dialog);
        QString problem;
        if (box == nullptr || box->text() != u"Can't load '"_s + name + u"'"_s)
            problem = u"not the message of a failed load; "_s;
        else if (!box->informativeText().contains(reason))
            problem = u"'%1' is not in '%2'; "_s.arg(reason, box->informativeText());
        return problem + pressButton(dialog, u"OK"_s);
    };
}

} // namespace

/// Opening databases, at the start and by the open command, through the real window.
class OpenTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void startsWithoutADatabaseWhenTheCommandLineIsEmpty() {
        EditorFixture fixture;
        QCOMPARE(fixture.startResult(), StartResult::NothingToOpen);
        QCOMPARE(fixture.activePane(), -1);
        QVERIFY(!fixture.action(Command::SaveMenu).isEnabled());
        QVERIFY(!fixture.editor().controls.menu(Menu::TablesMenu).isEnabled());
        QVERIFY(fixture.editor().pane(0).controls().hint->isVisible());
        QIR_VERIFY_OK(fixture);
    }

    void opensTheFileThatTheCommandLineNames() {
        const QString path = makeFile(u"A.DDB"_s, {pumps(), valves()});
        EditorFixture fixture(path);
        QCOMPARE(fixture.startResult(), StartResult::Opened);
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s, u"Valves"_s}));
        QCOMPARE(fixture.list(0).ListIndex(), 0);
        QCOMPARE(fixture.list(0).ItemData(1), 2);
        QCOMPARE(fixture.editor().nomelab(0).text(), path);
        QCOMPARE(fixture.texts(0), QList<QStringList>({{u"1200"_s, u"Main"_s}, {u"900"_s, u"Spare"_s}}));
        QVERIFY(fixture.action(Command::ColumnSizeAdjust).isEnabled());
        QIR_VERIFY_OK(fixture);
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
        QIR_VERIFY_OK(fixture);
    }

    void removesQuotesInsideTheName() {
        const QString path = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(QString(path).replace(u"A.DDB"_s, u"'A\".D'DB"_s));
        QCOMPARE(fixture.startResult(), StartResult::Opened);
        QIR_VERIFY_OK(fixture);
    }

    void ignoresACommandLineThatNamesNoFile() {
        EditorFixture fixture(m_folder->filePath(u"MISSING.DDB"_s));
        QCOMPARE(fixture.startResult(), StartResult::NothingToOpen);
        QCOMPARE(fixture.fileName(0), QString());
        QIR_VERIFY_OK(fixture);
    }

    void tellsBothFilesThatTheCommandLineMayMean() {
        makeTwins(u"Pump.ddb"_s, {}, u"pump.ddb"_s);
        EditorFixture fixture;
        fixture.dialogs().expect(messageNaming({u"'Pump.ddb'"_s, u"'pump.ddb'"_s}));
        runCommand([&] {
            QCOMPARE(fixture.window().Form_Load(m_folder->filePath(u"PUMP.DDB"_s)), StartResult::NothingToOpen);
        });
        QCOMPARE(fixture.fileName(0), QString());
        QCOMPARE(fixture.activePane(), -1);
        QIR_VERIFY_OK(fixture);
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
        dialogs.expectMessage(u"Can't load '"_s + m_folder->path() + u"'"_s, u"!!"_s, u"OK"_s);
        QCOMPARE(runProgram({{m_folder->path()}, QString()}), 1);
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
        const QString picture = m_folder->filePath(u"picture.png"_s);
        QCOMPARE(runProgram({{path}, picture}), 0);
        QVERIFY(QImage(picture).width() > 500);
    }

    void closingTheWindowInTheMiddleOfALongLoadEndsTheProgramAndWritesNothing() {
        QStringList numbers;
        for (int r = 0; r < 400'000; ++r)
            numbers.append(QString::number(r));
        const QString path = makeFile(u"LONG.DDB"_s, {{u"Long"_s, {{u"a"_s, FieldType::Long, numbers}}}});
        const QByteArray before = bytesOf(path);
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
        QCOMPARE(bytesOf(path), before);
    }

    void asksForThePasswordOfAProtectedFile() {
        const QString path = makeFile(u"A.UDB"_s, {pumps()}, u"secret"_s);
        EditorFixture fixture;
        fixture.dialogs().expectFile(openTitle, path);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"secret"_s);
        fixture.choose(Command::OpenDatabase);
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s}));
        QIR_VERIFY_OK(fixture);
    }

    void theFilesNameStandsInThePaneWhileThePasswordIsAskedFor_data() {
        QTest::addColumn<bool>("atStart");
        QTest::newRow("at the start") << true;
        QTest::newRow("by the command") << false;
    }

    void theFilesNameStandsInThePaneWhileThePasswordIsAskedFor() {
        QFETCH(bool, atStart);
        const QString path = makeFile(u"A.UDB"_s, {pumps()}, u"secret"_s);
        EditorFixture fixture;
        QString shown;
        bool whole = false;
        if (!atStart)
            fixture.dialogs().expectFile(openTitle, path);
        fixture.dialogs().expect([&](QDialog &dialog) {
            const QLabel &label = fixture.editor().nomelab(0);
            shown = label.isVisible() ? label.text() : u"nothing"_s;
            whole = dialog.width() > dialog.fontMetrics().horizontalAdvance(dialog.windowTitle()) + 100;
            dynamic_cast<QInputDialog &>(dialog).setTextValue(u"secret"_s);
            return pressButton(dialog, u"OK"_s);
        });
        if (atStart)
            runCommand([&] { fixture.window().Form_Load(path); });
        else
            fixture.choose(Command::OpenDatabase);
        QCOMPARE(shown, atStart ? path : path.toUpper());
        QVERIFY(whole);
        QVERIFY(fixture.editor().DtbAperto(0));
        QIR_VERIFY_OK(fixture);
    }

    void aFailedLoadTellsTheReasonInTheBoxAndInTheEmptyPane_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        QTest::newRow("wrong password") << QByteArray() << u"password"_s;
        QTest::newRow("foreign") << QByteArray("no database at all") << u"not a database"_s;
        QTest::newRow("empty") << QByteArray("") << u"empty"_s;
    }

    void aFailedLoadTellsTheReasonInTheBoxAndInTheEmptyPane() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        const bool isProtected = bytes.isNull();
        const QString path = isProtected ? makeFile(u"A.UDB"_s, {pumps()}, u"secret"_s) : writeBytes(u"A.UDB"_s, bytes);
        EditorFixture fixture;
        const QLabel &hint = *fixture.editor().pane(0).controls().hint;
        const QString usual = hint.text();
        fixture.dialogs().expectFile(openTitle, path);
        if (isProtected)
            fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"wrong"_s);
        fixture.dialogs().expect(failedLoad(path.toUpper(), reason));
        fixture.choose(Command::OpenDatabase);
        QVERIFY(hint.isVisible());
        QVERIFY2(hint.text().contains(reason), qPrintable(hint.text()));
        QVERIFY2(hint.accessibleName().contains(reason), qPrintable(hint.accessibleName()));
        fixture.open(makeFile(u"B.DDB"_s, {valves()}));
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(hint.text(), usual);
        QIR_VERIFY_OK(fixture);
    }

    void aFailedLoadLeavesTheKeyboardInThePane_data() {
        QTest::addColumn<int>("pane");
        QTest::addColumn<bool>("inGrid");
        for (const int pane : {0, 1})
            for (const bool inGrid : {false, true})
                QTest::addRow("pane %d, %s", pane, inGrid ? "grid" : "list") << pane << inGrid;
    }

    void aFailedLoadLeavesTheKeyboardInThePane() {
        QFETCH(int, pane);
        QFETCH(bool, inGrid);
        const QString broken = writeBytes(u"C.DDB"_s, "no database");
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {pumps()}), makeFile(u"B.DDB"_s, {pumps()}));
        if (inGrid)
            fixture.clickCell(pane, 1, 1);
        else
            fixture.clickLine(pane, 0);
        fixture.dialogs().expectFile(openTitle, broken);
        fixture.dialogs().expect(failedLoad(broken.toUpper(), u"not a database"_s));
        fixture.choose(Command::OpenDatabase);
        QCOMPARE(fixture.window().focusWidget(), fixture.editor().pane(pane).controls().hint);
        QCOMPARE(fixture.activePane(), pane);
        QIR_VERIFY_OK(fixture);
    }

    void aReasonThatCannotBeHadIsToldInstead() {
        UseFake fake;
        const QString path = writeBytes(u"A.DDB"_s, "no database");
        EditorFixture fixture;
        fake->failOn(u"LastError"_s, u"the reason is not at hand"_s);
        fixture.dialogs().expectFile(openTitle, path);
        fixture.dialogs().expect(failedLoad(path.toUpper(), u"the reason is not at hand"_s));
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.editor().DtbAperto(0));
        QIR_VERIFY_OK(fixture);
    }

    void reportsACancelledPasswordAsAFailedLoad() {
        const QString path = makeFile(u"A.UDB"_s, {pumps()}, u"secret"_s);
        EditorFixture fixture;
        fixture.dialogs().expectFile(openTitle, path);
        fixture.dialogs().expectInputCancelled(u"Password:"_s, u"Input password"_s);
        fixture.dialogs().expectMessage(u"Can't load '"_s + path.toUpper() + u"'"_s, u"!!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.editor().DtbAperto(0));
        QCOMPARE(fixture.fileName(0), path.toUpper());
        QCOMPARE(fixture.editor().nomelab(0).text(), path.toUpper());
        QVERIFY(!fixture.editor().CaricamentoInCorso());
        QIR_VERIFY_OK(fixture);
    }

    void reportsAWrongPasswordAsAFailedLoadAndGoesOn() {
        const QString path = makeFile(u"A.UDB"_s, {pumps()}, u"secret"_s);
        EditorFixture fixture;
        fixture.dialogs().expectFile(openTitle, path);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"wrong"_s);
        fixture.dialogs().expectMessage(u"Can't load '"_s + path.toUpper() + u"'"_s, u"!!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.action(Command::CloseDatabaseMenu).isEnabled());

        fixture.open(makeFile(u"B.DDB"_s, {valves()}));
        QCOMPARE(fixture.lines(0), QStringList({u"Valves"_s}));
        QIR_VERIFY_OK(fixture);
    }

    void doesNotAskForAPasswordUnlessTheFlagIsTheCharacter1_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("ten bytes") << QByteArray("0000000192");
        QTest::newRow("nine bytes") << QByteArray("000000019");
        QTest::newRow("flag 0") << QByteArray("0000000004QIR0");
        QTest::newRow("flag 2") << QByteArray("0000000004QIR2");
        QTest::newRow("flag letter") << QByteArray("0000000004QIRl");
        QTest::newRow("header too short") << QByteArray("0000000003QIR1");
        QTest::newRow("header longer than the file") << QByteArray("0000000192QIR1");
        QTest::newRow("length is no number") << QByteArray("00000000x4QIR1");
    }

    void doesNotAskForAPasswordUnlessTheFlagIsTheCharacter1() {
        QFETCH(QByteArray, bytes);
        const QString path = writeBytes(u"SHORT.DDB"_s, bytes);
        EditorFixture fixture;
        fixture.dialogs().expectFile(openTitle, path);
        fixture.dialogs().expectMessage(u"Can't load '"_s + path.toUpper() + u"'"_s, u"!!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
        QIR_VERIFY_OK(fixture);
    }

    void showsAndKeepsTheChosenNameInUpperCaseAndReachesTheFileIgnoringCase() {
        const QString path = makeFile(u"mixed Case.ddb"_s, {pumps()});
        EditorFixture fixture;
        fixture.open(path);
        QCOMPARE(fixture.editor().nomelab(0).text(), path.toUpper());
        QCOMPARE(fixture.fileName(0), path.toUpper());
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s}));
        QIR_VERIFY_OK(fixture);
    }

    void theFileChosenInTheDialogIsOpenedBesideATwin_data() {
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<QString>("twin");
        QTest::newRow("neither in upper case") << u"a.ddb"_s << u"A.ddb"_s;
        QTest::newRow("the twin in upper case") << u"a.ddb"_s << u"A.DDB"_s;
        QTest::newRow("in upper case itself") << u"A.DDB"_s << u"a.ddb"_s;
        QTest::newRow("below folders that are twins") << u"Data/a.ddb"_s << u"data/a.ddb"_s;
        QTest::newRow("protected") << u"a.udb"_s << u"A.UDB"_s;
    }

    void theFileChosenInTheDialogIsOpenedBesideATwin() {
        QFETCH(QString, chosen);
        QFETCH(QString, twin);
        const QString password = chosen.endsWith(u"udb"_s) ? u"secret"_s : QString();
        makeTwins(chosen, password, twin);
        EditorFixture fixture;
        fixture.dialogs().expectFile(openTitle, m_folder->filePath(chosen));
        if (!password.isEmpty())
            fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), password);
        fixture.choose(Command::OpenDatabase);
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s}));
        QCOMPARE(fixture.fileName(0), m_folder->filePath(chosen).toUpper());
        QCOMPARE(fixture.editor().nomelab(0).text(), m_folder->filePath(chosen).toUpper());
        // What is saved goes there too.
        const QByteArray twinBefore = bytesOf(m_folder->filePath(twin));
        fixture.database(0).AddTable(u"New"_s);
        fixture.choose(Command::SaveMenu);
        QCOMPARE(bytesOf(m_folder->filePath(twin)), twinBefore);
        QIR_VERIFY_OK(fixture);
        const QirDatabase written = QirDatabase::create();
        QVERIFY(written.LoadDtb(m_folder->filePath(chosen), password));
        QVERIFY(written.ExistTable(u"New"_s));
    }

    void bothTwinsCanBeOpenedSideBySide() {
        makeTwins(u"a.ddb"_s, {}, u"A.ddb"_s);
        EditorFixture fixture;
        fixture.openBoth(m_folder->filePath(u"a.ddb"_s), m_folder->filePath(u"A.ddb"_s));
        QCOMPARE(fixture.database(0).QIRTableName(1), u"Pumps"_s);
        QCOMPARE(fixture.database(1).QIRTableName(1), u"Valves"_s);
        QIR_VERIFY_OK(fixture);
    }

    void aFileBelowAFolderThatMayOnlyBePassedIsOpened() {
        if (::geteuid() == 0)
            QSKIP("the superuser may list every folder");
        const QString path = makeFile(u"hidden/a.ddb"_s, {pumps()});
        const QString folder = m_folder->filePath(u"hidden"_s);
        QVERIFY(QFile::setPermissions(folder, QFile::WriteOwner | QFile::ExeOwner));
        EditorFixture fixture;
        fixture.open(path);
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s}));
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QIR_VERIFY_OK(fixture);
    }

    void aComponentThatCannotBeToldThePlaceIsNotLedToAnotherFile() {
        makeTwins(u"a.ddb"_s, {}, u"A.DDB"_s);
        const UseFake fake;
        EditorFixture fixture;
        fixture.dialogs().expectFile(openTitle, m_folder->filePath(u"a.ddb"_s));
        fixture.dialogs().expect(messageNaming({u"A.DDB"_s, u"instead of the chosen file"_s}));
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.editor().DtbAperto(0));
        QCOMPARE(fixture.fileName(0), QString());
        QCOMPARE(fake->calls(u"LoadDtb"_s), 0);
        QIR_VERIFY_OK(fixture);
    }

    void aTypedNameIsTheExactOneFirstThenIgnoringCaseThenWithTheExtension_data() {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("opened");
        QTest::newRow("without extension") << QStringList{u"PLAIN"_s} << u"PLAIN"_s << u"PLAIN"_s;
        QTest::newRow("exact before the one with extension")
            << QStringList{u"plain"_s, u"plain.DDB"_s} << u"plain"_s << u"PLAIN"_s;
        QTest::newRow("another case") << QStringList{u"Pump.Ddb"_s} << u"PUMP.ddb"_s << u"PUMP.DDB"_s;
        QTest::newRow("another case before the one with extension")
            << QStringList{u"Pump"_s, u"pump.DDB"_s} << u"pump"_s << u"PUMP"_s;
        QTest::newRow("with the extension") << QStringList{u"pump.DDB"_s} << u"pump"_s << u"PUMP.DDB"_s;
        QTest::newRow("with the extension in another case") << QStringList{u"pump.ddb"_s} << u"Pump"_s << u"PUMP.DDB"_s;
    }

    void aTypedNameIsTheExactOneFirstThenIgnoringCaseThenWithTheExtension() {
        QFETCH(QStringList, files);
        QFETCH(QString, typed);
        QFETCH(QString, opened);
        makeFile(files.first(), {pumps()});
        for (const QString &other : files.sliced(1))
            makeFile(other, {valves()});
        EditorFixture fixture;
        fixture.open(m_folder->filePath(typed));
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s}));
        QCOMPARE(fixture.fileName(0), m_folder->filePath(opened).toUpper());
        QIR_VERIFY_OK(fixture);
    }

    void aTypedNameThatReachesNothingOrTwoIsToldAndTheDialogStays() {
        makeTwins(u"Pump.ddb"_s, {}, u"pump.ddb"_s);
        EditorFixture fixture;
        fixture.dialogs().expect([&](QDialog &dialog) {
            auto *edit = dialog.findChild<QLineEdit *>(u"fileNameEdit"_s);
            QString problem;
            const auto choose = [&](const QString &name, const QStringList &told) {
                fixture.dialogs().expect(messageNaming(told));
                edit->setText(m_folder->filePath(name));
                problem += pressButton(dialog, u"Open"_s);
                if (!dialog.isVisible())
                    problem += u"the dialog is gone after "_s + name;
            };
            choose(u"MISSING"_s, {u"MISSING"_s});
            choose(u"PUMP.DDB"_s, {u"Pump.ddb"_s, u"pump.ddb"_s});
            dialog.reject();
            return problem;
        });
        fixture.choose(Command::OpenDatabase);
        QCOMPARE(fixture.dialogs().answered(), 3);
        QVERIFY(!fixture.editor().DtbAperto(0));
        QIR_VERIFY_OK(fixture);
    }

    void aCancelledDialogChangesNothing() {
        const QString path = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(path);
        fixture.dialogs().expectFileCancelled(openTitle);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(fixture.editor().DtbAperto(0));
        QVERIFY(!fixture.editor().CaricamentoInCorso());
        QCOMPARE(fixture.fileName(0), path);
        QCOMPARE(fixture.texts(0).size(), 2);
        QIR_VERIFY_OK(fixture);
    }

    void theFileDialogLeavesTheCurrentFolderAsItWas() {
        const QString before = QDir::currentPath();
        EditorFixture fixture;
        fixture.open(makeFile(u"A.DDB"_s, {pumps()}));
        QCOMPARE(QDir::currentPath(), before);
        QIR_VERIFY_OK(fixture);
    }

    void openingOverANamedPaneReplacesTheComponentWithoutTheSavePrompt() {
        const QString first = makeFile(u"A.DDB"_s, {pumps()});
        const QString second = makeFile(u"B.DDB"_s, {valves()});
        EditorFixture fixture(first);
        fixture.database(0).AddRecord();
        QVERIFY(fixture.database(0).DtbHasChanged());
        fixture.open(second); // an unexpected prompt would be a problem
        QCOMPARE(fixture.lines(0), QStringList({u"Valves"_s}));
        QIR_VERIFY_OK(fixture);

        // The replaced component was released changed, so it wrote its file.
        const QirDatabase written = QirDatabase::create();
        QVERIFY(written.LoadDtb(first, QString()));
        written.QIRTableRecordSource(u"Pumps"_s);
        QCOMPARE(written.QirTableRecordsCount(), 3);
    }

    void aDatabaseWithoutTablesOpensWithAnEmptyListAndNoGrid() {
        EditorFixture fixture;
        fixture.open(makeFile(u"EMPTY.SDB"_s, {}));
        QVERIFY(fixture.editor().DtbAperto(0));
        QCOMPARE(fixture.list(0).ListCount(), 0);
        QVERIFY(fixture.list(0).Visible());
        QVERIFY(!fixture.grid(0).Visible());
        QIR_VERIFY_OK(fixture);
    }

    void aDatabaseWithoutTablesOpensAtTheStart() {
        EditorFixture fixture(makeFile(u"EMPTY.SDB"_s, {}));
        QCOMPARE(fixture.startResult(), StartResult::Opened);
        QVERIFY(!fixture.grid(0).Visible());
        QVERIFY(!fixture.action(Command::RemoveTableMenu).isEnabled());
        QIR_VERIFY_OK(fixture);
    }

private:
    /// The window of a program that runs; null before it has one.
    static DtbEditor *editorWindow() {
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (auto *editor = qobject_cast<DtbEditor *>(widget))
                return editor;
        return nullptr;
    }

    /// A database of pumps, and one of valves whose name differs only in case. Copied there, not made: the component
    /// would reach the first file by the second name.
    void makeTwins(const QString &pumpsName, const QString &password, const QString &valvesName) {
        makeFile(pumpsName, {pumps()}, password);
        const QString valvesPath = makeFile(u"valves.tmp"_s, {valves()});
        const QString twin = m_folder->filePath(valvesName);
        QVERIFY(QDir().mkpath(QFileInfo(twin).path()));
        QVERIFY(QFile::rename(valvesPath, twin));
    }

    QString makeFile(const QString &name, const std::vector<TableOfTexts> &tables, const QString &password = {}) {
        const QString path = m_folder->filePath(name);
        if (!QDir().mkpath(QFileInfo(path).path()))
            qFatal("the test folder cannot be made");
        makeDatabase(path, tables, password);
        return path;
    }

    static QByteArray bytesOf(const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QString writeBytes(const QString &name, const QByteArray &bytes) {
        const QString path = m_folder->filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("the test file cannot be written");
        return path;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(OpenTest)
#include "open_test.moc"
