#include "tests/window/EditSupport.h"
#include "tests/window/desktop/OutsideHands.h"

#include <QApplication>
#include <QSignalSpy>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// What a person answers when another program has changed an open file.
class OutsideAnswersTest : public OutsideWindowTest {
    Q_OBJECT

    /// A.DDB with a password in the left pane, and B.DDB with the same one beside it.
    void openProtected(EditorFixture &fixture) const {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}, u"pw"_s);
        makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"5"_s})}, u"pw"_s);
        fixture.dialogs().expectFile(fileDialogTitle, file);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"pw"_s);
        fixture.choose(Command::OpenDatabase);
    }
    /// The same, and then B.DDB takes A.DDB's place.
    void replaceProtected(EditorFixture &fixture) const {
        openProtected(fixture);
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
    }

private Q_SLOTS:
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
        EditorFixture fixture;
        replaceProtected(fixture);
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
        QCOMPARE(statusRight(fixture), u"changed"_s);
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(file, u"T"_s), u"1"_s);
        QVERIFY(!bar(fixture, 0).isVisible());
    }

    void aSaveThatHasNothingToWriteDecidesNothing() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        fixture.clickLine(0, 1); // T
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        fixture.choose(Command::SaveMenu);
        QVERIFY(bar(fixture, 0).isVisible());
        press(fixture, 0, u"reload"_s);
        QCOMPARE(fixture.texts(0).value(0).value(0), u"5"_s);
    }

    void aSaveOfAnUnchangedProtectedFileTellsNothing() {
        EditorFixture fixture;
        openProtected(fixture);
        QSignalSpy touched(fixture.window().findChild<OutsideChanges *>(), &OutsideChanges::fileTouched);
        fixture.choose(Command::SaveMenu);
        elsewhere(u"touch A.DDB"_s);
        QTRY_VERIFY(!touched.isEmpty());
        hands::turnLoop();
        QVERIFY(!bar(fixture, 0).isVisible());
    }

    void theOwnSaveOfAProtectedFileTellsNothing() {
        EditorFixture fixture;
        openProtected(fixture);
        change(fixture, 0, u"7"_s);
        QSignalSpy touched(fixture.window().findChild<OutsideChanges *>(), &OutsideChanges::fileTouched);
        fixture.choose(Command::SaveMenu);
        touched.clear();
        elsewhere(u"touch A.DDB"_s);
        QTRY_VERIFY(!touched.isEmpty());
        hands::turnLoop();
        QVERIFY(!bar(fixture, 0).isVisible());
        QCOMPARE(savedValue(path(u"A.DDB"_s), u"T"_s, u"pw"_s), u"7"_s);
    }

    void whatWasKeptIsSavedOverWhatStandsThere() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        press(fixture, 0, u"keep"_s);
        QCOMPARE(savedValue(file, u"T"_s), u"5"_s); // until it is saved
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(file, u"T"_s), u"1"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QVERIFY(!bar(fixture, 0).isVisible());
    }

    void aLaterVersionOfTheSameFileThatMineIsSavedOverIsKeptBeside() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        {
            const QirDatabase elsewhere = QirDatabase::create();
            elsewhere.setLeaveJournal(true);
            QVERIFY(elsewhere.LoadDtb(file, QString()));
            elsewhere.AddTable(u"Other"_s);
            elsewhere.SaveDtb();
        }
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        press(fixture, 0, u"keep"_s);
        fixture.dialogs().expect(messageNaming({file, u"the version that stood there is kept as"_s}));
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(file, u"T"_s), u"1"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
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
        EditorFixture fixture;
        const QString other = replaceBesideChanges(fixture);
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
        EditorFixture fixture;
        const QString other = replaceBesideChanges(fixture);
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
        EditorFixture fixture;
        openProtected(fixture);
        change(fixture, 0, u"7"_s);
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"Yes"_s); });
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"mistyped"_s);
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"OK"_s); });
        fixture.dialogs().expect([](QDialog &dialog) {
            const QString selected = dialog.findChild<QLineEdit *>()->selectedText();
            dialog.reject();
            return selected == u"mistyped"_s ? QString() : u"not selected: "_s + selected;
        });
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"OK"_s); }); // no password is none
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

    void aPasswordMistypedAtAReloadIsMended() {
        EditorFixture fixture;
        replaceProtected(fixture);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"pq"_s);
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"OK"_s); });
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, u"pq"_s, u"pw"_s);
        press(fixture, 0, u"reload"_s);
        QCOMPARE(fixture.texts(0), (QList<QStringList>{{u"5"_s}}));
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
};

QTEST_MAIN(OutsideAnswersTest)
#include "outside_answers_test.moc"
