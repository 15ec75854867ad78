#include "tests/window/WindowTest.h"

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
class OpenTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void asksForThePasswordOfAProtectedFile() {
        const QString path = makeFile(u"A.UDB"_s, {pumps()}, u"secret"_s);
        EditorFixture fixture;
        fixture.dialogs().expectFile(fileDialogTitle, path);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"secret"_s);
        fixture.choose(Command::OpenDatabase);
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s}));
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
            fixture.dialogs().expectFile(fileDialogTitle, path);
        fixture.dialogs().expect([&](QDialog &dialog) {
            const QLabel &label = fixture.label(0);
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
        QVERIFY(fixture.isOpen(0));
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
        fixture.dialogs().expectFile(fileDialogTitle, path);
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
        fixture.dialogs().expectFile(fileDialogTitle, broken);
        fixture.dialogs().expect(failedLoad(broken.toUpper(), u"not a database"_s));
        fixture.choose(Command::OpenDatabase);
        QCOMPARE(fixture.window().focusWidget(), fixture.editor().pane(pane).controls().hint);
        QCOMPARE(fixture.activePane(), pane);
    }

    void aReasonThatCannotBeHadIsToldInstead() {
        UseFake fake;
        const QString path = writeBytes(u"A.DDB"_s, "no database");
        EditorFixture fixture;
        fake->failOn(u"LastError"_s, u"the reason is not at hand"_s);
        fixture.dialogs().expectFile(fileDialogTitle, path);
        fixture.dialogs().expect(failedLoad(path.toUpper(), u"the reason is not at hand"_s));
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.isOpen(0));
    }

    void reportsACancelledPasswordAsAFailedLoad() {
        const QString path = makeFile(u"A.UDB"_s, {pumps()}, u"secret"_s);
        EditorFixture fixture;
        fixture.dialogs().expectFile(fileDialogTitle, path);
        fixture.dialogs().expectInputCancelled(u"Password:"_s, u"Input password"_s);
        fixture.dialogs().expectMessage(u"Can't load '"_s + path.toUpper() + u"'"_s, u"!!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.isOpen(0));
        QCOMPARE(fixture.fileName(0), path.toUpper());
        QCOMPARE(fixture.label(0).text(), path.toUpper());
        QVERIFY(!fixture.editor().CaricamentoInCorso());
    }

    void reportsAWrongPasswordAsAFailedLoadAndGoesOn() {
        const QString path = makeFile(u"A.UDB"_s, {pumps()}, u"secret"_s);
        EditorFixture fixture;
        fixture.dialogs().expectFile(fileDialogTitle, path);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"wrong"_s);
        fixture.dialogs().expectMessage(u"Can't load '"_s + path.toUpper() + u"'"_s, u"!!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.action(Command::CloseDatabaseMenu).isEnabled());

        fixture.open(makeFile(u"B.DDB"_s, {valves()}));
        QCOMPARE(fixture.lines(0), QStringList({u"Valves"_s}));
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
        fixture.dialogs().expectFile(fileDialogTitle, path);
        fixture.dialogs().expectMessage(u"Can't load '"_s + path.toUpper() + u"'"_s, u"!!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
    }

    void showsAndKeepsTheChosenNameInUpperCaseAndReachesTheFileIgnoringCase() {
        const QString path = makeFile(u"mixed Case.ddb"_s, {pumps()});
        EditorFixture fixture;
        fixture.open(path);
        QCOMPARE(fixture.label(0).text(), path.toUpper());
        QCOMPARE(fixture.fileName(0), path.toUpper());
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s}));
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
        fixture.dialogs().expectFile(fileDialogTitle, path(chosen));
        if (!password.isEmpty())
            fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), password);
        fixture.choose(Command::OpenDatabase);
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s}));
        QCOMPARE(fixture.fileName(0), path(chosen).toUpper());
        QCOMPARE(fixture.label(0).text(), path(chosen).toUpper());
        // What is saved goes there too.
        const QByteArray twinBefore = fileBytes(path(twin));
        fixture.database(0).AddTable(u"New"_s);
        fixture.choose(Command::SaveMenu);
        QCOMPARE(fileBytes(path(twin)), twinBefore);
        QIR_VERIFY_OK(fixture);
        const QirDatabase written = QirDatabase::create();
        QVERIFY(written.LoadDtb(path(chosen), password));
        QVERIFY(written.ExistTable(u"New"_s));
    }

    void bothTwinsCanBeOpenedSideBySide() {
        makeTwins(u"a.ddb"_s, {}, u"A.ddb"_s);
        EditorFixture fixture;
        fixture.openBoth(path(u"a.ddb"_s), path(u"A.ddb"_s));
        QCOMPARE(fixture.database(0).QIRTableName(1), u"Pumps"_s);
        QCOMPARE(fixture.database(1).QIRTableName(1), u"Valves"_s);
    }

    void aFileBelowAFolderThatMayOnlyBePassedIsOpened() {
        if (::geteuid() == 0)
            QSKIP("the superuser may list every folder");
        const QString path = makeFile(u"hidden/a.ddb"_s, {pumps()});
        const QString folder = this->path(u"hidden"_s);
        QVERIFY(QFile::setPermissions(folder, QFile::WriteOwner | QFile::ExeOwner));
        EditorFixture fixture;
        fixture.open(path);
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s}));
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    void aComponentThatCannotBeToldThePlaceIsNotLedToAnotherFile() {
        makeTwins(u"a.ddb"_s, {}, u"A.DDB"_s);
        const UseFake fake;
        EditorFixture fixture;
        fixture.dialogs().expectFile(fileDialogTitle, path(u"a.ddb"_s));
        fixture.dialogs().expect(messageNaming({u"A.DDB"_s, u"instead of the chosen file"_s}));
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.isOpen(0));
        QCOMPARE(fixture.fileName(0), QString());
        QCOMPARE(fake->calls(u"LoadDtb"_s), 0);
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
        fixture.open(path(typed));
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s}));
        QCOMPARE(fixture.fileName(0), path(opened).toUpper());
    }

    void aTypedNameThatReachesNothingOrTwoIsToldAndTheDialogStays() {
        makeTwins(u"Pump.ddb"_s, {}, u"pump.ddb"_s);
        EditorFixture fixture;
        fixture.dialogs().expect([&](QDialog &dialog) {
            auto *edit = dialog.findChild<QLineEdit *>(u"fileNameEdit"_s);
            QString problem;
            const auto choose = [&](const QString &name, const QStringList &told) {
                fixture.dialogs().expect(messageNaming(told));
                edit->setText(path(name));
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
        QVERIFY(!fixture.isOpen(0));
    }

    void aCancelledDialogChangesNothing() {
        const QString path = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(path);
        fixture.dialogs().expectFileCancelled(fileDialogTitle);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(fixture.isOpen(0));
        QVERIFY(!fixture.editor().CaricamentoInCorso());
        QCOMPARE(fixture.fileName(0), path);
        QCOMPARE(fixture.texts(0).size(), 3);
    }

    void theFileDialogLeavesTheCurrentFolderAsItWas() {
        const QString before = QDir::currentPath();
        EditorFixture fixture;
        fixture.open(makeFile(u"A.DDB"_s, {pumps()}));
        QCOMPARE(QDir::currentPath(), before);
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
        QCOMPARE(written.QirTableRecordsCount(), 4);
    }

    void aDatabaseWithoutTablesOpensWithAnEmptyListAndNoGrid() {
        EditorFixture fixture;
        fixture.open(makeFile(u"EMPTY.SDB"_s, {}));
        QVERIFY(fixture.isOpen(0));
        QCOMPARE(fixture.list(0).ListCount(), 0);
        QVERIFY(fixture.list(0).Visible());
        QVERIFY(!fixture.grid(0).Visible());
    }
};

QTEST_MAIN(OpenTest)
#include "open_test.moc"
