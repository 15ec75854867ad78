#include "app/desktop/OpenFiles.h"
#include "pane/FileNameLabel.h"
#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QFileInfo>
#include <QHelpEvent>
#include <QToolTip>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// What stands at a pane's file name, and the window's mark.
class FileSignsTest : public WindowTest {
    Q_OBJECT

    static FileNameLabel &nameOf(EditorFixture &fixture, int pane) {
        return static_cast<FileNameLabel &>(fixture.label(pane));
    }
    /// Double-clicks the first cell and types.
    static void typeIntoCell(EditorFixture &fixture, int pane, const QString &text) {
        hands::doubleClick(fixture.grid(pane).viewport(), Qt::LeftButton, Qt::NoModifier,
                           fixture.cellCentre(pane, 1, 1));
        hands::type(&fixture.cellEditor(pane), text);
        hands::key(&fixture.cellEditor(pane), Qt::Key_Return);
    }
    static QString toolTip(QWidget &control) {
        const QPoint centre = control.rect().center();
        QHelpEvent help(QEvent::ToolTip, centre, control.mapToGlobal(centre));
        QCoreApplication::sendEvent(&control, &help);
        return QToolTip::text();
    }

private Q_SLOTS:
    void typedTextIsMarkedUntilItIsSaved() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        FileNameLabel &name = nameOf(fixture, 0);
        QVERIFY(!name.signs().unsaved);
        QCOMPARE(fixture.window().windowTitle(), u"QIR Database Editor"_s);
        typeIntoCell(fixture, 0, u"7"_s);
        QVERIFY(name.signs().unsaved);
        QVERIFY(fixture.window().isWindowModified());
        QCOMPARE(name.text(), file); // the name itself stays as it is
        QCOMPARE(name.accessibleDescription(), file + u", changes not saved"_s);
        hands::key(&fixture.window(), QKeySequence(u"Ctrl+S"_s));
        QVERIFY(!name.signs().unsaved);
        QVERIFY(!fixture.window().isWindowModified());
        QCOMPARE(fixture.window().windowTitle(), u"QIR Database Editor"_s);
        QCOMPARE(name.accessibleDescription(), file);
    }

    void eachPaneHasItsOwnSignsAndTheWindowTellsOfBoth() {
        EditorFixture fixture;
        openBoth(fixture, {numbers(u"T"_s, {u"1"_s})}, {numbers(u"T"_s, {u"1"_s})});
        typeIntoCell(fixture, 1, u"7"_s);
        QVERIFY(!nameOf(fixture, 0).signs().unsaved);
        QVERIFY(nameOf(fixture, 1).signs().unsaved);
        QVERIFY(fixture.window().isWindowModified());
        fixture.dialogs().expectMessage(saveQuestion(path(u"RIGHT.DDB"_s).toUpper()), u"QIR Database Editor"_s,
                                        u"No"_s);
        fixture.choose(Command::CloseDatabaseMenu);
        QVERIFY(!fixture.window().isWindowModified());
        QVERIFY(!nameOf(fixture, 1).signs().unsaved);
    }

    void aProtectedFileAndAReadOnlyOneAreMarked() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}, u"pw"_s);
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
        EditorFixture fixture;
        fixture.dialogs().expectFile(fileDialogTitle, file);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"pw"_s);
        fixture.choose(Command::OpenDatabase);
        QCOMPARE(nameOf(fixture, 0).signs(),
                 (FileNameLabel::Signs{.unsaved = false, .isProtected = true, .readOnly = true}));
        const QString tip = toolTip(nameOf(fixture, 0));
        for (const QString &part : {file, u"changed"_s, u"Protected by a password"_s, u"Read-only"_s})
            QVERIFY2(tip.contains(part), qPrintable(tip));
        // Another program gives the permission back.
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
        QTRY_VERIFY(!nameOf(fixture, 0).signs().readOnly);
        QVERIFY(nameOf(fixture, 0).signs().isProtected);
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(nameOf(fixture, 0).signs(), FileNameLabel::Signs());
    }

    void theToolTipTellsSizeAndTimes() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        const QFileInfo info(file);
        const QLocale locale;
        const QString tip = toolTip(nameOf(fixture, 0));
        QStringList parts{file, locale.formattedDataSize(info.size()),
                          u"changed "_s + locale.toString(info.lastModified(), QLocale::ShortFormat),
                          u"Read "_s + locale.toString(info.lastRead(), QLocale::ShortFormat)};
        if (info.birthTime().isValid())
            parts.append(u"Made "_s + locale.toString(info.birthTime(), QLocale::ShortFormat));
        for (const QString &part : parts)
            QVERIFY2(tip.contains(part), qPrintable(tip + u" lacks "_s + part));
    }

    void theSignsAreDrawnBehindTheNameInEveryWidth() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        FileNameLabel &name = nameOf(fixture, 0);
        for (const int width : {900, 60, 10, 1}) {
            name.resize(width, 20);
            name.setSigns({});
            const QImage without = name.grab().toImage();
            name.setSigns({.unsaved = true, .isProtected = true, .readOnly = true});
            if (width >= 60)
                QVERIFY(name.grab().toImage() != without);
        }
    }

    void aComponentThatFailsToTellIsNoTrouble() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        FakeControl::get().failOn(u"DtbHasChanged"_s, u"broken"_s);
        typeIntoCell(fixture, 0, u"7"_s);
        QVERIFY(!nameOf(fixture, 0).signs().unsaved); // as it was known last
        FakeControl::get().stopFailing();
        typeIntoCell(fixture, 0, u"8"_s);
        QVERIFY(nameOf(fixture, 0).signs().unsaved);
    }
};

QTEST_MAIN(FileSignsTest)
#include "file_signs_test.moc"
