#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QMenu>
#include <QSessionManager>
#include <QTimer>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

const QString title = u"QIR Database Editor"_s;

/// The calls from the question to the release: flag writes, saves and the release itself.
QStringList closingCalls() {
    QStringList calls = callsOf({u"DtbHasChanged"_s, u"SaveDtb"_s, u"(release)"_s});
    calls.removeIf([](const QString &call) { return call.endsWith(u"DtbHasChanged()"); });
    return calls;
}

} // namespace

/// Close, Exit and the window's closing, through the real window.
class CloseTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void noOnCloseReleasesWithoutTheChanges() {
        UseFake fake;
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        const QByteArray before = fileBytes(file);
        EditorFixture fixture(file);
        change(fixture, 0, u"2"_s);
        fake->clearLog();
        fixture.dialogs().expectMessage(saveQuestion(file), title, u"No"_s);
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(closingCalls(), QStringList({u"DtbHasChanged(false)"_s, u"(release)()"_s}));
        QCOMPARE(fileBytes(file), before);
    }

    void yesOnCloseKeepsTheChangesByTheReleaseAlone() {
        UseFake fake;
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        change(fixture, 0, u"2"_s);
        fake->clearLog();
        fixture.dialogs().expectMessage(saveQuestion(file), title, u"Yes"_s);
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(closingCalls(), QStringList({u"(release)()"_s}));
        QCOMPARE(savedValue(file, u"T"_s), u"2"_s);
    }

    void closingTheWindowEndsTheProgramWhateverElseStandsOpen() {
        EditorFixture fixture;
        QWidget beside; // a window that Qt by itself would wait for
        beside.show();
        QTimer::singleShot(0, &fixture.window(), [&] { fixture.window().close(); });
        QTimer stuck;
        stuck.setSingleShot(true);
        QObject::connect(&stuck, &QTimer::timeout, [] { QCoreApplication::exit(1); });
        stuck.start(std::chrono::seconds(10));
        QCOMPARE(QCoreApplication::exec(), 0);
    }

    void theAnswerDecidesWhatIsOnDisk_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("value");
        QTest::newRow("Yes") << u"Yes"_s << u"2"_s;
        QTest::newRow("No") << u"No"_s << u"1"_s;
    }

    void theAnswerDecidesWhatIsOnDisk() {
        QFETCH(QString, button);
        QFETCH(QString, value);
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        change(fixture, 0, u"2"_s);
        fixture.dialogs().expectMessage(saveQuestion(file), title, button);
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(savedValue(file, u"T"_s), value);
    }

    void theQuestionHasNoIconAndNoAsItsDefaultAndStaysUntilItIsAnswered() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        change(fixture, 0, u"2"_s);
        fixture.dialogs().expect([](QDialog &dialog) {
            auto &box = dynamic_cast<QMessageBox &>(dialog);
            QStringList problems;
            if (box.icon() != QMessageBox::NoIcon)
                problems.append(u"an icon"_s);
            if (box.standardButtons() != (QMessageBox::Yes | QMessageBox::No))
                problems.append(u"other buttons"_s);
            if (box.defaultButton() != box.button(QMessageBox::No))
                problems.append(u"another default button"_s);
            hands::key(&box, Qt::Key_Escape);
            if (!box.isVisible())
                problems.append(u"Escape answered"_s);
            box.close();
            if (!box.isVisible())
                problems.append(u"the close box answered"_s);
            hands::key(&box, Qt::Key_Return);
            return problems.join(u", "_s);
        });
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(savedValue(file, u"T"_s), u"1"_s); // Return was No
    }

    void anUnchangedDatabaseIsClosedWithoutAQuestion() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        fixture.choose(Command::CloseDatabaseMenu);
        QVERIFY(fixture.database(0).isEmpty());
    }

    void anEmptyFileNameSuppressesTheQuestionEvenWhenChanged() {
        UseFake fake;
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        change(fixture, 0, u"2"_s);
        fake->setHideFileName(true);
        fake->clearLog();
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(closingCalls(), QStringList({u"(release)()"_s})); // the flag stays as it is
    }

    void aComponentThatDoesNotAnswerIsNotAskedAbout() {
        UseFake fake;
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        change(fixture, 0, u"2"_s);
        fake->failOn(u"GetDatabaseFileName"_s, u"no answer"_s);
        fixture.choose(Command::CloseDatabaseMenu);
        QVERIFY(fixture.database(0).isEmpty());
    }

    void closeEmptiesThePaneAndKeepsItsName() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s}), numbers(u"U"_s, {u"1"_s})});
        EditorFixture fixture(file);
        fixture.choose(Command::CloseDatabaseMenu);
        QVERIFY(!fixture.isOpen(0));
        QCOMPARE(fixture.fileName(0), file);
        QCOMPARE(fixture.loadedLine(0), -1);
        QCOMPARE(fixture.list(0).ListCount(), 0);
        QVERIFY(!fixture.list(0).Visible());
        QVERIFY(!fixture.grid(0).Visible());
        QVERIFY(fixture.label(0).isHidden());
        QVERIFY(fixture.editor().pane(0).controls().hint->isVisible());
        for (const Command command : {Command::SaveMenu, Command::SaveAsMenu, Command::CloseDatabaseMenu,
                                      Command::ChangePassword, Command::ColumnSizeAdjust})
            QVERIFY2(!fixture.action(command).isEnabled(), commandName(command));
        QVERIFY(!fixture.menu(Menu::TablesMenu).isEnabled());
        QVERIFY(fixture.action(Command::OpenDatabase).isEnabled());
        QIR_VERIFY_OK(fixture);

        fixture.open(file);
        QCOMPARE(fixture.lines(0), QStringList({u"T"_s, u"U"_s}));
    }

    void closingOneOfTwoTakesPlaceholdersMarksAndColoursAway() {
        const QString left = makeFile(u"A.DDB"_s, {numbers(u"Both"_s, {u"1"_s}), numbers(u"Left"_s, {u"1"_s})});
        const QString right = makeFile(u"B.DDB"_s, {numbers(u"Both"_s, {u"2"_s}), numbers(u"Right"_s, {u"1"_s})});
        EditorFixture fixture;
        fixture.openBoth(left, right);
        QCOMPARE(fixture.lines(0), QStringList({u"Both !"_s, u"Left"_s, u"Right ?"_s}));
        QCOMPARE(fixture.grid(0).CellBackColor(1, 1), CellColour::Red);
        fixture.activate(1);
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(fixture.lines(0), QStringList({u"Both"_s, u"Left"_s}));
        QCOMPARE(fixture.grid(0).CellBackColor(1, 1), CellColour::White);
        QVERIFY(fixture.isOpen(0));
        QCOMPARE(fixture.activePane(), 1);
    }

    void exitWithBothPanesChangedAsksLeftFirstAndEachAnswerIsForItsPane() {
        const QString left = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        const QString right = makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        for (const bool keepLeft : {true, false}) {
            EditorFixture fixture;
            fixture.openBoth(left, right);
            const QString before = savedValue(keepLeft ? right : left, u"T"_s);
            change(fixture, 0, keepLeft ? u"10"_s : u"20"_s);
            change(fixture, 1, keepLeft ? u"30"_s : u"40"_s);
            fixture.dialogs().expectMessage(saveQuestion(left.toUpper()), title, keepLeft ? u"Yes"_s : u"No"_s);
            fixture.dialogs().expectMessage(saveQuestion(right.toUpper()), title, keepLeft ? u"No"_s : u"Yes"_s);
            fixture.choose(Command::EndMenu);
            QVERIFY(!fixture.window().isVisible());
            QCOMPARE(savedValue(left, u"T"_s), u"10"_s);
            QCOMPARE(savedValue(right, u"T"_s), keepLeft ? before : u"40"_s);
        }
    }

    void theWindowsCloseBoxAsksAsExitDoes() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        change(fixture, 0, u"2"_s);
        fixture.dialogs().expectMessage(saveQuestion(file), title, u"Yes"_s);
        fixture.window().close();
        QVERIFY(!fixture.window().isVisible());
        QCOMPARE(savedValue(file, u"T"_s), u"2"_s);
    }

    void exitWithNothingOpenAsksNothing() {
        EditorFixture fixture;
        fixture.choose(Command::EndMenu);
        QVERIFY(!fixture.window().isVisible());
    }

    void aNoThatTheComponentCannotTakeKeepsTheWindow_data() {
        QTest::addColumn<bool>("byCommand");
        QTest::addColumn<int>("failing");
        QTest::newRow("Exit, left") << true << 0;
        QTest::newRow("Exit, right") << true << 1;
        QTest::newRow("close box, left") << false << 0;
        QTest::newRow("close box, right") << false << 1;
    }

    void aNoThatTheComponentCannotTakeKeepsTheWindow() {
        QFETCH(bool, byCommand);
        QFETCH(int, failing);
        UseFake fake;
        const QString files[] = {makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}),
                                 makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"1"_s})})};
        EditorFixture fixture;
        fixture.openBoth(files[0], files[1]);
        change(fixture, 0, u"2"_s);
        change(fixture, 1, u"2"_s);
        int clearings = 0;
        fake->setHook([&](const FakeCall &call) {
            if (call.member == u"DtbHasChanged" && !call.arguments.isEmpty() && clearings++ == failing)
                throw std::runtime_error("the flag is stuck");
        });
        for (int pane = 0; pane <= failing; ++pane)
            fixture.dialogs().expectMessage(saveQuestion(files[pane].toUpper()), title, u"No"_s);
        fixture.dialogs().expectMessage(u"the flag is stuck"_s, title, u"OK"_s);
        if (byCommand)
            fixture.choose(Command::EndMenu);
        else
            QVERIFY(!fixture.window().close());
        QVERIFY(fixture.window().isVisible());
        QVERIFY(!MessageLoop::instance()->programEnded());
        QVERIFY(fixture.isOpen(failing));
        QCOMPARE(fixture.isOpen(0), failing == 0);
        QVERIFY(fixture.isOpen(1));
        QVERIFY(fixture.database(failing).DtbHasChanged());
        QCOMPARE(fixture.list(0).Visible(), failing == 0);
        QIR_VERIFY_OK(fixture);
        QCOMPARE(savedValue(files[failing], u"T"_s), u"1"_s);

        // The next try asks again, and nothing of what was refused is written.
        fake->setHook({});
        for (int pane = failing == 0 ? 0 : 1; pane <= 1; ++pane)
            fixture.dialogs().expectMessage(saveQuestion(files[pane].toUpper()), title, u"No"_s);
        fixture.window().close();
        QVERIFY(!fixture.window().isVisible());
        QIR_VERIFY_OK(fixture);
        for (const QString &file : files)
            QCOMPARE(savedValue(file, u"T"_s), u"1"_s);
    }

    void closingTheWindowWhileACommandRunsAsksReleasesAndEndsTheCommand() {
        UseFake fake;
        const QString left = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        const QString right = makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(left);
        change(fixture, 0, u"2"_s);
        fixture.choose(Command::TwoMenu);
        fixture.activate(1);
        // The window is closed in the middle of the load of the right database.
        bool closed = false;
        fake->setHook([&](const FakeCall &call) {
            if (call.member == u"GetQirRecord" && !std::exchange(closed, true))
                QTimer::singleShot(0, &fixture.window(), &QWidget::close);
        });
        fixture.dialogs().expectFile(fileDialogTitle, right);
        fixture.dialogs().expectMessage(saveQuestion(left), title, u"Yes"_s);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(closed);
        QVERIFY(!fixture.window().isVisible());
        QVERIFY(MessageLoop::instance()->programEnded());
        QCOMPARE(fake->instances(), 0);
        fake->setHook({});
        QCOMPARE(savedValue(left, u"T"_s), u"2"_s);
    }

    void noWhileACommandIsCutShortWritesNothingOfIt() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"3"_s, u"1"_s, u"2"_s})});
        const QByteArray before = fileBytes(file);
        EditorFixture fixture(file);
        change(fixture, 0, u"4"_s);
        // As a sort or a paste that is under way.
        fixture.database(0).BeginChanges();
        change(fixture, 0, u"5"_s);
        fixture.dialogs().expectMessage(saveQuestion(file), title, u"No"_s);
        fixture.window().close();
        QCOMPARE(fileBytes(file), before);
    }

    void yesWhileACommandIsCutShortKeepsWhatWasBeforeIt() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        change(fixture, 0, u"4"_s);
        fixture.database(0).BeginChanges();
        change(fixture, 0, u"5"_s);
        fixture.dialogs().expectMessage(saveQuestion(file), title, u"Yes"_s);
        fixture.window().close();
        QCOMPARE(savedValue(file, u"T"_s), u"4"_s);
    }

    void aSessionThatForbidsQuestionsIsAskedNothingAndNothingIsDecided() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        change(fixture, 0, u"2"_s);
        auto *manager = qApp->findChild<QSessionManager *>();
        QVERIFY(manager != nullptr);
        QVERIFY(!manager->allowsInteraction());
        Q_EMIT qApp->commitDataRequest(*manager);
        QVERIFY(fixture.window().isVisible());
        QVERIFY(fixture.database(0).DtbHasChanged());
        fixture.database(0).setDtbHasChanged(false);
    }

    void whatAComponentTellsDuringACommandIsShownWhenTheCommandHasEnded() {
        UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fake->setHook([&](const FakeCall &call) {
            if (call.member == u"SaveDtb")
                fake->notice(u"A rescue copy was written."_s);
        });
        fake->clearLog();
        fixture.dialogs().expect([](QDialog &dialog) {
            auto &box = dynamic_cast<QMessageBox &>(dialog);
            QStringList problems;
            if (box.text() != u"A rescue copy was written.")
                problems.append(u"the text is "_s + box.text());
            if (callsOf({u"DtbHasChanged"_s}).filter(u"(false)"_s).isEmpty())
                problems.append(u"the command has not ended"_s);
            pressButton(dialog, u"OK"_s);
            return problems.join(u", "_s);
        });
        fixture.choose(Command::SaveMenu);
        fake->setHook({});
    }

    void whatAComponentTellsByItselfIsShownAtOnce() {
        UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fixture.dialogs().expectMessage(u"The journal is full."_s, u"!"_s, u"OK"_s);
        fake->notice(u"The journal is full."_s);
        QTRY_COMPARE(fixture.dialogs().answered(), 1);
    }
};

QTEST_MAIN(CloseTest)
#include "close_test.moc"
