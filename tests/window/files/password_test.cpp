#include "dialogs/CustomInputBox.h"
#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QLabel>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

enum class End { Ok, Cancel, CloseBox };

/// The next box asks for a password by this prompt; `answer` is typed and the box ended.
void expectPassword(EditorFixture &fixture, const QString &prompt, const QString &answer, End end = End::Ok) {
    fixture.dialogs().expect([=](QDialog &dialog) {
        auto *label = dialog.findChild<QLabel *>(u"Prompt"_s);
        auto *text = dialog.findChild<QLineEdit *>(u"Testo"_s);
        if (dialog.objectName() != u"frmCustomInputBox" || label == nullptr || text == nullptr)
            return u"another dialog: "_s + dialog.windowTitle();
        QStringList problems;
        if (label->text() != prompt || dialog.windowTitle() != u"?" || !text->text().isEmpty())
            problems.append(u"'%1' is asked"_s.arg(label->text()));
        hands::type(text, answer);
        if (text->displayText() != QString(answer.size(), u'*'))
            problems.append(u"shown as "_s + text->displayText());
        if (end == End::CloseBox)
            dialog.close();
        else
            problems.append(pressButton(dialog, end == End::Ok ? u"OK"_s : u"Cancel"_s));
        problems.removeAll(QString());
        return problems.join(u", "_s);
    });
}

const QString currentPrompt = u"Current password:"_s;
const QString newPrompt = u"New password:"_s;

QStringList passwordCalls() {
    return callsOf({u"NewPassword"_s});
}

} // namespace

/// Changing the password through the real window and its real boxes.
class PasswordTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void handsBothAnswersToTheComponentTheCurrentOneFirst() {
        UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fake->clearLog();
        expectPassword(fixture, currentPrompt, QString());
        expectPassword(fixture, newPrompt, u" new one  "_s);
        fixture.choose(Command::ChangePassword);
        QCOMPARE(passwordCalls(), QStringList({u"NewPassword(, new one)"_s})); // no blanks at the end
        QCOMPARE(callsOf({u"DtbHasChanged"_s, u"SaveDtb"_s}), QStringList());
        fixture.database(0).setDtbHasChanged(false);
    }

    void aNewPasswordShowsAsAChangeAtOnce() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        expectPassword(fixture, currentPrompt, QString());
        expectPassword(fixture, newPrompt, u"new"_s);
        fixture.choose(Command::ChangePassword);
        hands::turnLoop();
        QVERIFY(fixture.window().isWindowModified());
        QCOMPARE(fixture.window().findChild<QLabel *>(u"statusRight"_s)->text(), u"changed"_s);
        QVERIFY(!fixture.action(Command::UndoMenu).isEnabled()); // it is no step
        fixture.choose(Command::SaveMenu);
        QCOMPARE(fixture.window().findChild<QLabel *>(u"statusRight"_s)->text(), QString());
    }

    void twoEmptyAnswersAreHandedOver() {
        UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fake->clearLog();
        expectPassword(fixture, currentPrompt, QString());
        expectPassword(fixture, newPrompt, QString());
        fixture.choose(Command::ChangePassword);
        QCOMPARE(passwordCalls(), QStringList({u"NewPassword(,)"_s}));
    }

    void aCancelAtEitherBoxCallsNothing() {
        UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        fake->clearLog();
        expectPassword(fixture, currentPrompt, u"a"_s, End::Cancel);
        fixture.choose(Command::ChangePassword);
        expectPassword(fixture, currentPrompt, u"a"_s);
        expectPassword(fixture, newPrompt, u"b"_s, End::Cancel);
        fixture.choose(Command::ChangePassword);
        QCOMPARE(passwordCalls(), QStringList());
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void aSecondBoxClosedByItsCloseBoxAnswersWithTheFirst() {
        UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        expectPassword(fixture, currentPrompt, QString());
        expectPassword(fixture, newPrompt, u"old"_s);
        fixture.choose(Command::ChangePassword);
        fake->clearLog();
        expectPassword(fixture, currentPrompt, u"old"_s);
        expectPassword(fixture, newPrompt, u"typed"_s, End::CloseBox);
        fixture.choose(Command::ChangePassword);
        QCOMPARE(passwordCalls(), QStringList({u"NewPassword(old,old)"_s}));
        fixture.database(0).setDtbHasChanged(false);
    }

    void nothingOfThePasswordsIsKept_data() {
        QTest::addColumn<int>("ending");
        QTest::newRow("changed") << 0;
        QTest::newRow("cancelled") << 1;
        QTest::newRow("refused") << 2;
    }

    void nothingOfThePasswordsIsKept() {
        QFETCH(int, ending);
        UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})}));
        if (ending == 2)
            fake->failOn(u"NewPassword"_s, u"The current password is wrong."_s);
        expectPassword(fixture, currentPrompt, QString());
        expectPassword(fixture, newPrompt, u"secret"_s, ending == 1 ? End::Cancel : End::Ok);
        if (ending == 2)
            fixture.dialogs().expectMessage(u"The current password is wrong."_s, u"QIR Database Editor"_s, u"OK"_s);
        fixture.choose(Command::ChangePassword);
        QCOMPARE(datiInputBox().result.text(), QString(255, u' '));
        QCOMPARE(datiInputBox().prompt.text(), QString(255, u' '));
        fixture.database(0).setDtbHasChanged(false);
    }

    void aWrongCurrentPasswordIsTheComponentsErrorAndChangesNothing() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        expectPassword(fixture, currentPrompt, u"wrong"_s);
        expectPassword(fixture, newPrompt, u"new"_s);
        fixture.dialogs().expect([](QDialog &dialog) {
            const QString problem =
                dialog.windowTitle() == u"QIR Database Editor" ? QString() : u"titled "_s + dialog.windowTitle();
            return problem + pressButton(dialog, u"OK"_s);
        });
        fixture.choose(Command::ChangePassword);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(file, u"T"_s), u"1"_s);
    }

    void theNewPasswordReachesTheFileWithTheNextSave() {
        const QString file = makeFile(u"A.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture(file);
        expectPassword(fixture, currentPrompt, QString());
        expectPassword(fixture, newPrompt, u"secret"_s);
        fixture.choose(Command::ChangePassword);
        QCOMPARE(savedValue(file, u"T"_s), u"1"_s);
        fixture.choose(Command::SaveMenu);
        QCOMPARE(savedValue(file, u"T"_s), u"cannot be loaded"_s);
        QCOMPARE(savedValue(file, u"T"_s, u"secret"_s), u"1"_s);

        expectPassword(fixture, currentPrompt, u"secret"_s);
        expectPassword(fixture, newPrompt, QString());
        fixture.choose(Command::ChangePassword);
        fixture.dialogs().expectMessage(saveQuestion(file), u"QIR Database Editor"_s, u"Yes"_s);
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(savedValue(file, u"T"_s), u"1"_s);
    }
};

QTEST_MAIN(PasswordTest)
#include "password_test.moc"
