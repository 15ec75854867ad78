#include "base/SecretText.h"
#include "dialogs/CaricaTipi.h"
#include "dialogs/CustomInputBox.h"
#include "dialogs/Progresso.h"
#include "dialogs/frmListaStringhePlain.h"
#include "platform/list/ListBox.h"
#include "tests/support/Hands.h"
#include "tests/window/DialogScript.h"
#include "tests/window/LayoutCheck.h"
#include "tests/window/panes/TypePicker.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QToolButton>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// How a box is asked for; the fields that a test does not name have the usual values.
struct Question {
    QString prompt = u"Prompt"_s;
    QString title = u"Title"_s;
    QString defaultText;
    bool multiline = false;
    bool password = false;
};

struct Outcome {
    QString answer;
    bool cancelled = false;
    QString problems;
};

/// Asks, with `act` playing the person.
Outcome ask(const Question &question, const std::function<void(QDialog &)> &act) {
    DialogScript script;
    script.expect([&act](QDialog &dialog) {
        const QString name = dialog.objectName();
        act(dialog);
        return name == u"frmCustomInputBox" ? QString() : u"the dialog is named "_s + name;
    });
    Outcome outcome;
    outcome.cancelled = !outcome.cancelled; // is always written
    outcome.answer = CustomInputBox(nullptr, question.prompt, question.title, question.defaultText, outcome.cancelled,
                                    question.multiline, question.password);
    outcome.problems = script.problems();
    return outcome;
}

QLineEdit &testo(QDialog &dialog) {
    return control<QLineEdit>(dialog, u"Testo"_s);
}
QPlainTextEdit &testoMultiline(QDialog &dialog) {
    return control<QPlainTextEdit>(dialog, u"TestoMultiline"_s);
}

void typeAndPressOk(QDialog &dialog, const QString &text) {
    hands::type(&testo(dialog), text);
    pressButton(dialog, u"OK"_s);
}

} // namespace

/// The input box and the progress window, each by its own controls.
class DialogsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        datiInputBox() = DatiInputBox();
        sceltaLista() = SceltaLista();
    }

    void okGivesTheTextWithoutTrailingBlanksAndKeepsLeadingOnes() {
        const Outcome outcome = ask({}, [](QDialog &dialog) { typeAndPressOk(dialog, u"  two words  "_s); });
        QCOMPARE(outcome.answer, u"  two words"_s);
        QVERIFY(!outcome.cancelled);
        QCOMPARE(outcome.problems, QString());
    }

    void enterInTheTextBoxConfirms_data() {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("main key") << Qt::Key_Return;
        QTest::newRow("number pad") << Qt::Key_Enter;
    }

    void enterInTheTextBoxConfirms() {
        QFETCH(Qt::Key, key);
        const Outcome outcome = ask({}, [key](QDialog &dialog) {
            hands::type(&testo(dialog), u"typed"_s);
            hands::key(&testo(dialog), key);
        });
        QCOMPARE(outcome.answer, u"typed"_s);
        QVERIFY(!outcome.cancelled);
        QCOMPARE(outcome.problems, QString());
    }

    void theEyeShowsWhatIsTypedAndHidesItAgain() {
        Question question;
        question.password = true;
        const Outcome outcome = ask(question, [](QDialog &dialog) {
            QLineEdit &box = testo(dialog);
            hands::type(&box, u"secret"_s);
            const QList<QToolButton *> eyes = box.findChildren<QToolButton *>();
            QCOMPARE(eyes.size(), 1);
            QCOMPARE(box.echoMode(), QLineEdit::Password);
            hands::click(eyes[0], Qt::LeftButton);
            QCOMPARE(box.echoMode(), QLineEdit::Normal);
            QCOMPARE(box.displayText(), u"secret"_s);
            hands::click(eyes[0], Qt::LeftButton);
            QCOMPARE(box.displayText(), u"******"_s);
            QVERIFY(box.hasFocus());
            pressButton(dialog, u"OK"_s);
        });
        QCOMPARE(outcome.answer, u"secret"_s);
        QCOMPARE(outcome.problems, QString());
    }

    void aBoxThatIsNoPasswordHasNoEye() {
        ask({}, [](QDialog &dialog) {
            QVERIFY(testo(dialog).findChildren<QToolButton *>().isEmpty());
            pressButton(dialog, u"OK"_s);
        });
    }

    void capsLockIsToldByTheLettersThatItMakes() {
        Question question;
        question.password = true;
        ask(question, [](QDialog &dialog) {
            QLineEdit &box = testo(dialog);
            const auto &told = control<QLabel>(dialog, u"capsLock"_s);
            const QSize size = dialog.size();
            hands::strike(dialog, Qt::Key_A, Qt::NoModifier, u"a"_s);
            QVERIFY(!told.isVisible());
            hands::strike(dialog, Qt::Key_A, Qt::NoModifier, u"A"_s);
            QVERIFY(told.isVisible());
            QCOMPARE(dialog.size(), size);
            hands::strike(dialog, Qt::Key_5, Qt::NoModifier, u"5"_s); // tells nothing
            QVERIFY(told.isVisible());
            hands::strike(dialog, Qt::Key_A, Qt::ShiftModifier, u"A"_s);
            QVERIFY(!told.isVisible());
            hands::strike(dialog, Qt::Key_A, Qt::ShiftModifier, u"a"_s);
            QVERIFY(told.isVisible());
            QCOMPARE(box.text(), u"aA5Aa"_s);
            pressButton(dialog, u"OK"_s);
        });
    }

    void anEmptyConfirmationIsNoCancel() {
        const Outcome outcome = ask({}, [](QDialog &dialog) { pressButton(dialog, u"OK"_s); });
        QCOMPARE(outcome.answer, QString(u""_s));
        QVERIFY(!outcome.cancelled);
    }

    void aCancelGivesTheDefaultWithoutTrailingBlanks_data() {
        QTest::addColumn<bool>("byKey");
        QTest::addColumn<bool>("multiline");
        QTest::newRow("button") << false << false;
        QTest::newRow("Escape") << true << false;
        QTest::newRow("button, several lines") << false << true;
        QTest::newRow("Escape, several lines") << true << true;
    }

    void aCancelGivesTheDefaultWithoutTrailingBlanks() {
        QFETCH(bool, byKey);
        QFETCH(bool, multiline);
        Question question;
        question.defaultText = u" default  "_s;
        question.multiline = multiline;
        const Outcome outcome = ask(question, [&](QDialog &dialog) {
            QWidget &box = multiline ? static_cast<QWidget &>(testoMultiline(dialog)) : testo(dialog);
            hands::type(&box, u"typed"_s);
            if (byKey)
                hands::key(&box, Qt::Key_Escape);
            else
                pressButton(dialog, u"Cancel"_s);
        });
        QCOMPARE(outcome.answer, u" default"_s);
        QVERIFY(outcome.cancelled);
        QCOMPARE(outcome.problems, QString());
    }

    void escapeOnAButtonCancels() {
        const Outcome outcome = ask({}, [](QDialog &dialog) {
            auto &ok = control<QPushButton>(dialog, u"comandi_0"_s);
            ok.setFocus();
            hands::key(&ok, Qt::Key_Escape);
        });
        QVERIFY(outcome.cancelled);
        QCOMPARE(outcome.problems, QString());
    }

    void theCloseBoxGivesTheResultOfTheUseBefore() {
        ask({}, [](QDialog &dialog) { typeAndPressOk(dialog, u"before"_s); });
        Question question;
        question.defaultText = u"default"_s;
        const Outcome outcome = ask(question, [](QDialog &dialog) {
            hands::type(&testo(dialog), u"typed"_s);
            dialog.close();
        });
        QCOMPARE(outcome.answer, u"before"_s);
        QVERIFY(!outcome.cancelled);
        QCOMPARE(outcome.problems, QString());
    }

    void aDefaultLongerThanTheFieldIsCutAndSelectedWhole() {
        Question question;
        question.defaultText = QString(300, u'x');
        QString shown;
        QString selected;
        const Outcome outcome = ask(question, [&](QDialog &dialog) {
            shown = testo(dialog).text();
            selected = testo(dialog).selectedText();
            pressButton(dialog, u"OK"_s);
        });
        QCOMPARE(shown, QString(255, u'x'));
        QCOMPARE(selected, shown);
        QCOMPARE(outcome.answer, shown);
        QCOMPARE(datiInputBox().defaultLength, 300);
    }

    void aDefaultIsShownWithItsTrailingBlanksAndSelected() {
        Question question;
        question.defaultText = u"ab  "_s;
        QString selected;
        ask(question, [&](QDialog &dialog) {
            selected = testo(dialog).selectedText();
            pressButton(dialog, u"OK"_s);
        });
        QCOMPARE(selected, u"ab  "_s);
    }

    void aTypedTextIsCutTo255Characters() {
        const Outcome outcome = ask({}, [](QDialog &dialog) {
            testo(dialog).setText(QString(254, u'a') + u"bc"_s);
            pressButton(dialog, u"OK"_s);
        });
        QCOMPARE(outcome.answer, QString(254, u'a') + u'b');
    }

    void aSurrogatePairIsNotTornAtTheEndOfTheField() {
        const QString clef = QString::fromUcs4(U"\U0001D11E", 1);
        const Outcome outcome = ask({}, [&](QDialog &dialog) {
            testo(dialog).setText(QString(254, u'a') + clef);
            pressButton(dialog, u"OK"_s);
        });
        QCOMPARE(outcome.answer, QString(254, u'a'));
    }

    void promptAndTitleAreShownWithoutOuterBlanksAndCutTo255Characters() {
        Question question;
        question.prompt = u"  What & <b>which</b>?  "_s;
        question.title = u" "_s + QString(300, u't');
        QString prompt;
        QString title;
        ask(question, [&](QDialog &dialog) {
            prompt = control<QLabel>(dialog, u"Prompt"_s).text();
            title = dialog.windowTitle();
            pressButton(dialog, u"OK"_s);
        });
        QCOMPARE(prompt, u"What & <b>which</b>?"_s);
        QCOMPARE(title, QString(254, u't'));
    }

    void aPasswordIsMaskedWithAsterisks() {
        Question question;
        question.password = true;
        QString shown;
        const Outcome outcome = ask(question, [&](QDialog &dialog) {
            hands::type(&testo(dialog), u"secret"_s);
            shown = testo(dialog).displayText();
            pressButton(dialog, u"OK"_s);
        });
        QCOMPARE(shown, u"******"_s);
        QCOMPARE(outcome.answer, u"secret"_s);
    }

    void severalLinesAreNeverMasked() {
        Question question;
        question.password = true;
        question.multiline = true;
        bool lineHidden = false;
        QString shown;
        const Outcome outcome = ask(question, [&](QDialog &dialog) {
            lineHidden = testo(dialog).isHidden();
            hands::type(&testoMultiline(dialog), u"plain"_s);
            shown = testoMultiline(dialog).toPlainText();
            pressButton(dialog, u"OK"_s);
        });
        QVERIFY(lineHidden);
        QCOMPARE(shown, u"plain"_s);
        QCOMPARE(outcome.answer, u"plain"_s);
    }

    void enterMakesANewLineInSeveralLinesAndOkConfirms() {
        Question question;
        question.defaultText = u"old"_s;
        question.multiline = true;
        QString selected;
        const Outcome outcome = ask(question, [&](QDialog &dialog) {
            QPlainTextEdit &box = testoMultiline(dialog);
            selected = box.textCursor().selectedText();
            hands::type(&box, u"a"_s);
            hands::key(&box, Qt::Key_Return);
            hands::type(&box, u"b"_s);
            pressButton(dialog, u"OK"_s);
        });
        QCOMPARE(selected, u"old"_s);
        QCOMPARE(outcome.answer, u"a\nb"_s);
        QVERIFY(!outcome.cancelled);
        QCOMPARE(outcome.problems, QString());
    }

    void severalLinesMakeTheWindow1000TwipsTallerAndMoveNothing() {
        constexpr int enlargement = 67; // 1000 twips in pixels
        QList<QRect> places[3];
        for (const int use : {0, 1, 2}) {
            Question question;
            question.multiline = use > 0;
            ask(question, [&](QDialog &dialog) {
                QWidget &box = use > 0 ? static_cast<QWidget &>(testoMultiline(dialog)) : testo(dialog);
                places[use] = {QRect(QPoint(), dialog.size()), box.geometry()};
                for (const QString &name : {u"Prompt"_s, u"comandi_0"_s, u"comandi_1"_s})
                    places[use].append(control<QWidget>(dialog, name).geometry());
                pressButton(dialog, u"OK"_s);
            });
        }
        QList<QRect> expected = places[0];
        expected[0].setHeight(expected[0].height() + enlargement);
        expected[1].setHeight(expected[1].height() + enlargement);
        QCOMPARE(places[1], expected);
        QCOMPARE(places[2], expected); // the enlargement does not add up
    }

    void theRecordIsWipedWhenTheCommandThatAskedEndsAndNotBetweenItsBoxes() {
        {
            const InputBoxWipe wipe;
            ask({}, [](QDialog &dialog) { typeAndPressOk(dialog, u"first"_s); });
            QCOMPARE(withoutTrailingBlanks(datiInputBox().result.text()), u"first"_s);
            const Outcome outcome = ask({}, [](QDialog &dialog) { dialog.close(); });
            QCOMPARE(outcome.answer, u"first"_s);
        }
        const QString blanks(255, u' ');
        for (const FixedText &field :
             {datiInputBox().prompt, datiInputBox().title, datiInputBox().defaultText, datiInputBox().result})
            QCOMPARE(field.text(), blanks);
    }

    void overwritingATextReachesEveryCopyThatSharesIt() {
        QString secret(6, u's');
        const QString copy = secret;
        overwrite(secret);
        QCOMPARE(copy, QString(6, u' '));
        QVERIFY(secret.isEmpty());

        QString literal = u"literal"_s;
        overwrite(literal);
        QVERIFY(literal.isEmpty());
        QCOMPARE(u"literal"_s.size(), 7);
    }

    void aSecretThatSomebodyKeptStaysWhole() {
        QString kept;
        {
            const SecretText secret(QString(6, u's'));
            kept = secret.text();
        }
        QCOMPARE(kept, QString(6, u's'));
    }

    void aPasswordDoesNotStayInTheTextBoxesMemory() {
        Question question;
        question.password = true;
        QString shared;
        const Outcome outcome = ask(question, [&](QDialog &dialog) {
            hands::type(&testo(dialog), u"secret"_s);
            shared = testo(dialog).text();
            pressButton(dialog, u"OK"_s);
        });
        QCOMPARE(outcome.answer, u"secret"_s);
        QCOMPARE(shared, QString(6, u' '));
    }

    void anAnswerOfFullLengthSurvivesTheOverwriting() {
        const Outcome outcome = ask({}, [](QDialog &dialog) {
            testo(dialog).setText(QString(255, u'a'));
            pressButton(dialog, u"OK"_s);
        });
        QCOMPARE(outcome.answer, QString(255, u'a'));
    }

    void theTextBoxSaysWhatIsAskedFor() {
        Question question;
        question.prompt = u"Current password:"_s;
        ask(question, [](QDialog &dialog) {
            QCOMPARE(testo(dialog).accessibleName(), u"Current password:"_s);
            QCOMPARE(dialog.focusWidget(), &testo(dialog));
            pressButton(dialog, u"OK"_s);
        });
    }

    void nothingIsCutOffInLargerFonts_data() {
        QTest::addColumn<int>("points");
        for (const int points : {8, 11, 16, 24})
            QTest::addRow("%d points", points) << points;
    }

    void nothingIsCutOffInLargerFonts() {
        QFETCH(int, points);
        const QFont before = QApplication::font();
        QFont larger = before;
        larger.setPointSize(points);
        QApplication::setFont(larger);
        QStringList problems;
        for (const bool multiline : {false, true}) {
            Question question;
            question.prompt =
                u"Which of the many names that a thing may have is meant here, and how is it written? "_s.repeated(2);
            question.multiline = multiline;
            ask(question, [&](QDialog &dialog) {
                problems.append(layoutProblems(dialog));
                pressButton(dialog, u"OK"_s);
            });
        }
        problems.append(pick(0, [&](QDialog &dialog, ListBox &) {
            problems.append(layoutProblems(dialog));
            pressButton(dialog, u"OK"_s);
        }));
        QApplication::setFont(before);
        QCOMPARE(problems.join(QString()), QString());
    }

    void aPromptWithoutBlanksWrapsInsteadOfWideningTheBox_data() {
        QTest::addColumn<QString>("prompt");
        QTest::newRow("wide letters") << QString(255, u'W');
        QTest::newRow("a short word before them") << u"Name "_s + QString(250, u'W');
        QTest::newRow("words") << u"WWW "_s.repeated(63);
    }

    void aPromptWithoutBlanksWrapsInsteadOfWideningTheBox() {
        QFETCH(QString, prompt);
        Question question;
        question.prompt = prompt;
        QSize box;
        QSize label;
        QString text;
        ask(question, [&](QDialog &dialog) {
            const auto &shown = control<QLabel>(dialog, u"Prompt"_s);
            box = dialog.size();
            label = shown.size();
            text = shown.text();
            pressButton(dialog, u"OK"_s);
        });
        QCOMPARE(text, prompt.trimmed());
        const QFontMetrics metrics(QApplication::font());
        QVERIFY2(box.width() < 600, qPrintable(QString::number(box.width())));
        QVERIFY(label.width() * (label.height() / metrics.lineSpacing()) >=
                metrics.horizontalAdvance(prompt.trimmed()));
    }

    void theProgressWindowStandsInTheHorizontalMiddleAndIsPaintedAtOnce() {
        Progresso progress(nullptr);
        progress.Label1().setText(u"Working"_s);
        progress.ProgressBar1().setRange(0, 10);
        progress.Form_Load();
        QVERIFY(progress.isVisible());
        QCOMPARE(progress.objectName(), u"Progresso"_s);
        const QRect area = progress.screen()->geometry();
        QCOMPARE(progress.x(), area.left() + area.width() / 2 - progress.width() / 2);
        QCOMPARE(control<QLabel>(progress, u"Label1"_s).text(), u"Working"_s);
        QCOMPARE(control<QProgressBar>(progress, u"ProgressBar1"_s).maximum(), 10);
        QCOMPARE(layoutProblems(progress), QString());
    }
};

QTEST_MAIN(DialogsTest)
#include "dialogs_test.moc"
