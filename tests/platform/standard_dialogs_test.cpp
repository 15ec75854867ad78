#include "platform/dialogs/Clipboard.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/dialogs/FileDialog.h"
#include "platform/dialogs/PromptWrapping.h"
#include "tests/platform/WithNext.h"
#include "tests/support/Hands.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>

using namespace qir;
using qir::testing::WithNext;
using namespace Qt::StringLiterals;

namespace {

using Box = WithNext<QMessageBox>;

std::function<void(QMessageBox &)> press(QMessageBox::StandardButton button) {
    return [button](QMessageBox &box) { hands::click(box.button(button), Qt::LeftButton); };
}

void pressEscape(QMessageBox &box) {
    hands::key(&box, Qt::Key_Escape);
}

void pressCloseBox(QMessageBox &box) {
    box.close();
}

} // namespace

class DialogsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aMessageHasExactlyItsTextTitleAndOneButton();
    void aMessageShowsMarkupAsText();
    void aYesNoQuestionHasNoAsItsDefault();
    void aYesNoQuestionIsYesOnlyByItsYesButton();
    void aYesNoCancelQuestionIsCancelByEveryOtherEnd();
    void aStayingQuestionIsNotAnsweredByEscapeOrCloseBox();
    void aStayingQuestionTakesItsButtons();
    void aStayingQuestionEndedFromOutsideHasNoAnswer();

    void anInputBoxShowsPromptTitleAndDefault();
    void anInputBoxShowsEveryCharacterOfItsPrompt();
    void anInputBoxGivesWhatIsTyped();
    void aCancelledInputBoxGivesNothing();
    void aLongPromptWrapsAndStaysOnTheScreen_data();
    void aLongPromptWrapsAndStaysOnTheScreen();
    void anInputBoxShowsItsWholeTitle();
    void aMessageWithALongNameWrapsAndIsShownWhole();
    void aMessagesSecondLineIsItsInformativeText();
    void aLongReasonWrapsAndIsShownWhole();
    void bothTextsOfAMessageAreShownWhole_data();
    void bothTextsOfAMessageAreShownWhole();
    void whatIsSeenInAWrappedTextIsWhatTheMouseSelects();
    void aWrappedLabelAsksForTheHeightThatItsTextTakes();
};

// Message boxes

void DialogsTest::aMessageHasExactlyItsTextTitleAndOneButton() {
    const QString text = u"Database 'A.DDB' has changed.\r\nDo you want to save the changes?"_s;
    const Box box([&](QMessageBox &shown) {
        QCOMPARE(shown.text(), text);
        QCOMPARE(shown.windowTitle(), u"!"_s);
        QCOMPARE(shown.icon(), QMessageBox::NoIcon);
        QCOMPARE(shown.buttons().size(), 1);
        QCOMPARE(shown.defaultButton(), shown.button(QMessageBox::Ok));
        hands::key(&shown, Qt::Key_Return);
    });
    messageBox(nullptr, text, u"!"_s);
    QCOMPARE(box.met, 1);
}

void DialogsTest::aMessageShowsMarkupAsText() {
    const Box box([](QMessageBox &shown) {
        QCOMPARE(shown.textFormat(), Qt::PlainText);
        press(QMessageBox::Ok)(shown);
    });
    messageBox(nullptr, u"Can't load '<b>A</b>.DDB'"_s, u"!!"_s);
    QCOMPARE(box.met, 1);
}

void DialogsTest::aYesNoQuestionHasNoAsItsDefault() {
    const Box box([](QMessageBox &shown) {
        QCOMPARE(shown.defaultButton(), shown.button(QMessageBox::No));
        QCOMPARE(shown.buttons().size(), 2);
        QCOMPARE(shown.icon(), QMessageBox::NoIcon);
        hands::key(&shown, Qt::Key_Return);
    });
    QCOMPARE(askYesNo(nullptr, u"Remove?"_s, u"?"_s), Answer::No);
    QCOMPARE(box.met, 1);
}

void DialogsTest::aYesNoQuestionIsYesOnlyByItsYesButton() {
    const std::pair<std::function<void(QMessageBox &)>, Answer> ends[] = {
        {press(QMessageBox::Yes), Answer::Yes},
        {press(QMessageBox::No), Answer::No},
        {pressEscape, Answer::No},
        {pressCloseBox, Answer::No},
        {[](QMessageBox &box) { box.accept(); }, Answer::No},
    };
    for (const auto &[end, answer] : ends) {
        const Box box(end);
        QCOMPARE(askYesNo(nullptr, u"Remove?"_s, u"?"_s), answer);
        QCOMPARE(box.met, 1);
    }
}

void DialogsTest::aYesNoCancelQuestionIsCancelByEveryOtherEnd() {
    const std::pair<std::function<void(QMessageBox &)>, Answer> ends[] = {
        {press(QMessageBox::Yes), Answer::Yes},
        {press(QMessageBox::No), Answer::No},
        {press(QMessageBox::Cancel), Answer::Cancel},
        {pressEscape, Answer::Cancel},
        {pressCloseBox, Answer::Cancel},
        {[](QMessageBox &box) { box.accept(); }, Answer::Cancel},
    };
    for (const auto &[end, answer] : ends) {
        const Box box(end);
        QCOMPARE(askYesNoCancel(nullptr, u"Copy Cell content?"_s, u"?"_s), answer);
        QCOMPARE(box.met, 1);
    }
}

void DialogsTest::aStayingQuestionIsNotAnsweredByEscapeOrCloseBox() {
    const Box box([](QMessageBox &shown) {
        QCOMPARE(shown.defaultButton(), shown.button(QMessageBox::No));
        pressEscape(shown);
        QVERIFY(shown.isVisible());
        hands::key(shown.button(QMessageBox::No), Qt::Key_Escape);
        QVERIFY(shown.isVisible());
        pressCloseBox(shown);
        QVERIFY(shown.isVisible());
        shown.reject();
        QVERIFY(shown.isVisible());
        press(QMessageBox::Yes)(shown);
    });
    QCOMPARE(askUntilAnswered(nullptr, u"Save?"_s, u"QIR Database Editor"_s), Answer::Yes);
    QCOMPARE(box.met, 1);
}

void DialogsTest::aStayingQuestionTakesItsButtons() {
    const Box no(press(QMessageBox::No));
    QCOMPARE(askUntilAnswered(nullptr, u"Save?"_s, u"t"_s), Answer::No);
    const Box byKey([](QMessageBox &shown) { hands::key(&shown, Qt::Key_Return); });
    QCOMPARE(askUntilAnswered(nullptr, u"Save?"_s, u"t"_s), Answer::No);
}

void DialogsTest::aStayingQuestionEndedFromOutsideHasNoAnswer() {
    const Box box([](QMessageBox &shown) { shown.done(0); });
    QCOMPARE(askUntilAnswered(nullptr, u"Save?"_s, u"t"_s), Answer::None);
}

// Input box

void DialogsTest::anInputBoxShowsPromptTitleAndDefault() {
    const WithNext<QInputDialog> dialog([](QInputDialog &shown) {
        QCOMPARE(shown.labelText(), u"New <i>field</i> name"_s);
        QCOMPARE(shown.windowTitle(), u"?"_s);
        QCOMPARE(shown.textValue(), u"Fieldx"_s);
        QCOMPARE(shown.findChild<QLineEdit *>()->echoMode(), QLineEdit::Normal);
        QCOMPARE(shown.findChild<QLabel *>()->textFormat(), Qt::PlainText);
        shown.accept();
    });
    QCOMPARE(inputBox(nullptr, u"New <i>field</i> name"_s, u"?"_s, u"Fieldx"_s), u"Fieldx"_s);
    QCOMPARE(dialog.met, 1);
}

void DialogsTest::anInputBoxShowsEveryCharacterOfItsPrompt() {
    const QString prompt = u"Table's new name (R&D)"_s;
    const WithNext<QInputDialog> dialog([&](QInputDialog &shown) {
        const auto *label = shown.findChild<QLabel *>();
        QLabel plain(prompt);
        plain.setFont(label->font());
        QCOMPARE(label->sizeHint().width(), plain.sizeHint().width());
        QCOMPARE(shown.labelText(), prompt);
        // A screen reader says what is asked for when it reaches the text box.
        QAccessibleInterface *box = QAccessible::queryAccessibleInterface(shown.findChild<QLineEdit *>());
        QCOMPARE(box->text(QAccessible::Name), prompt);
        shown.reject();
    });
    QCOMPARE(inputBox(nullptr, prompt, u"?"_s, u"R&D"_s), QString());
    QCOMPARE(dialog.met, 1);
}

void DialogsTest::anInputBoxGivesWhatIsTyped() {
    const WithNext<QInputDialog> dialog([](QInputDialog &shown) {
        auto *line = shown.findChild<QLineEdit *>();
        hands::type(line, u" secret "_s);
        hands::key(line, Qt::Key_Return);
    });
    QCOMPARE(inputBox(nullptr, u"Password:"_s, u"Input password"_s), u" secret "_s);
    QCOMPARE(dialog.met, 1);
}

void DialogsTest::aCancelledInputBoxGivesNothing() {
    const WithNext<QInputDialog> dialog([](QInputDialog &shown) { hands::key(&shown, Qt::Key_Escape); });
    QCOMPARE(inputBox(nullptr, u"New field name"_s, u"?"_s, u"Fieldx"_s), QString());
    QCOMPARE(dialog.met, 1);
}

namespace {

/// Whether a label is large enough for its text, letters broken anywhere.
bool holdsItsText(const QLabel &label) {
    const int lines = label.height() / label.fontMetrics().lineSpacing();
    return label.width() * lines >= label.fontMetrics().horizontalAdvance(label.text());
}

/// Whether a label is as high as the lines that its text takes at its width.
bool holdsItsLines(const QLabel &label) {
    const int flags = Qt::TextWordWrap | Qt::TextWrapAnywhere;
    const QRect place = label.contentsRect();
    const QRect needed = label.fontMetrics().boundingRect(QRect(0, 0, place.width(), 0), flags, label.text());
    return place.height() >= needed.height();
}

/// Whether there is ink in as many lines as a label's text takes at least.
bool drawsItsLines(QLabel &label) {
    const QImage image = label.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QRgb ground = image.pixel(0, image.height() - 1);
    const int spacing = qRound(label.fontMetrics().lineSpacing() * image.devicePixelRatio());
    const int lines = 1 + (label.fontMetrics().horizontalAdvance(label.text()) - 1) / label.width();
    for (int line = 0; line < lines; ++line) {
        bool ink = false;
        for (int y = line * spacing; y < std::min((line + 1) * spacing, image.height()); ++y)
            for (int x = 0; x < image.width(); ++x)
                ink = ink || image.pixel(x, y) != ground;
        if (!ink)
            return false;
    }
    return true;
}

} // namespace

void DialogsTest::aLongPromptWrapsAndStaysOnTheScreen_data() {
    QTest::addColumn<QString>("prompt");
    QTest::newRow("wide letters") << QString(255, u'W');
    QTest::newRow("in parentheses") << u"Table's new name ("_s + QString(255, u'W') + u')';
    QTest::newRow("words") << u"WWW WWWW "_s.repeated(30);
}

void DialogsTest::aLongPromptWrapsAndStaysOnTheScreen() {
    QFETCH(QString, prompt);
    const WithNext<QInputDialog> dialog([&](QInputDialog &shown) {
        QCOMPARE(shown.labelText(), prompt);
        auto *label = shown.findChild<QLabel *>();
        QVERIFY2(shown.width() < shown.screen()->availableGeometry().width(),
                 qPrintable(QString::number(shown.width())));
        QVERIFY(shown.rect().contains(label->geometry()));
        QCOMPARE(label->width(), widestPrompt(*label));
        QVERIFY(label->height() >= 3 * label->fontMetrics().lineSpacing());
        QVERIFY(holdsItsText(*label));
        QVERIFY(drawsItsLines(*label));
        shown.reject();
    });
    inputBox(nullptr, prompt, u"?"_s);
    QCOMPARE(dialog.met, 1);
}

void DialogsTest::anInputBoxShowsItsWholeTitle() {
    const QString title = u"Input a password that opens this file"_s;
    const WithNext<QInputDialog> dialog([&](QInputDialog &shown) {
        // Beside it stand the window manager's buttons.
        QVERIFY(shown.width() >= shown.fontMetrics().horizontalAdvance(title) + 80);
        shown.reject();
    });
    inputBox(nullptr, u"P:"_s, title);
    QCOMPARE(dialog.met, 1);
}

void DialogsTest::aMessageWithALongNameWrapsAndIsShownWhole() {
    const QString text = u"Remove table '"_s + QString(255, u'W') + u"'?"_s;
    const Box box([&](QMessageBox &shown) {
        QCOMPARE(shown.text(), text);
        auto *label = shown.findChild<QLabel *>(u"qt_msgbox_label"_s);
        QVERIFY(shown.width() < shown.screen()->availableGeometry().width());
        QVERIFY(shown.rect().contains(label->geometry()));
        QVERIFY(holdsItsText(*label));
        QVERIFY(drawsItsLines(*label));
        press(QMessageBox::Yes)(shown);
    });
    QCOMPARE(askYesNo(nullptr, text, u"?"_s), Answer::Yes);
    QCOMPARE(box.met, 1);
}

void DialogsTest::aMessagesSecondLineIsItsInformativeText() {
    const Box box([](QMessageBox &shown) {
        QCOMPARE(shown.text(), u"Can't load 'A.DDB'"_s);
        QCOMPARE(shown.informativeText(), u"<b>it is empty</b>"_s);
        const auto *label = shown.findChild<QLabel *>(u"qt_msgbox_informativelabel"_s);
        QVERIFY(label != nullptr && label->textFormat() == Qt::PlainText);
        press(QMessageBox::Ok)(shown);
    });
    messageBox(nullptr, u"Can't load 'A.DDB'"_s, u"!!"_s, u"<b>it is empty</b>"_s);
    QCOMPARE(box.met, 1);
}

void DialogsTest::aLongReasonWrapsAndIsShownWhole() {
    const Box box([](QMessageBox &shown) {
        auto *label = shown.findChild<QLabel *>(u"qt_msgbox_informativelabel"_s);
        QVERIFY(label != nullptr);
        QVERIFY2(shown.width() < shown.screen()->availableGeometry().width(),
                 qPrintable(QString::number(shown.width())));
        QVERIFY(shown.rect().contains(label->geometry()));
        QVERIFY(holdsItsText(*label));
        QVERIFY(drawsItsLines(*label));
        press(QMessageBox::Ok)(shown);
    });
    messageBox(nullptr, u"Can't load 'A.DDB'"_s, u"!!"_s, u'/' + QString(255, u'W') + u": it is empty"_s);
    QCOMPARE(box.met, 1);
}

void DialogsTest::bothTextsOfAMessageAreShownWhole_data() {
    QTest::addColumn<QString>("name");
    for (int letters = 10; letters <= 200; letters += 10) {
        QTest::addRow("%d letters", letters) << QString(letters, u'm');
        QTest::addRow("%d letters, in words", letters) << u"mmmm "_s.repeated(letters / 5);
    }
}

void DialogsTest::bothTextsOfAMessageAreShownWhole() {
    QFETCH(const QString, name);
    const QString path = u'/' + name + u"/A.DDB"_s;
    const Box box([&](QMessageBox &shown) {
        QVERIFY(shown.width() < shown.screen()->availableGeometry().width());
        for (const QString &part : {u"qt_msgbox_label"_s, u"qt_msgbox_informativelabel"_s}) {
            auto *label = shown.findChild<QLabel *>(part);
            QVERIFY(shown.rect().contains(label->geometry()));
            QVERIFY2(holdsItsLines(*label), qPrintable(u"%1: %2 high"_s.arg(part).arg(label->height())));
            QVERIFY2(drawsItsLines(*label), qPrintable(part));
        }
        press(QMessageBox::Ok)(shown);
    });
    messageBox(nullptr, u"Can't load '%1'"_s.arg(path), u"!!"_s,
               u"%1: it is not a database of this program"_s.arg(path));
    QCOMPARE(box.met, 1);
}

void DialogsTest::whatIsSeenInAWrappedTextIsWhatTheMouseSelects() {
    const QString text = QString(60, u'a') + QString(60, u'b') + QString(60, u'c') + u" end"_s;
    const Box box([&](QMessageBox &shown) {
        auto *label = shown.findChild<QLabel *>(u"qt_msgbox_label"_s);
        const QImage plain = label->grab().toImage();
        const int line = label->fontMetrics().lineSpacing();
        // From the second line's beginning to its end.
        const int perLine =
            label->contentsRect().width() * 60 / label->fontMetrics().horizontalAdvance(QString(60, u'a'));
        QVERIFY(label->height() >= 3 * line);
        const int middle = label->contentsRect().top() + line + line / 2;
        hands::drag(label, {0, middle}, {label->width() - 1, middle});
        QVERIFY(label->hasSelectedText());
        QVERIFY2(qAbs(label->selectionStart() - perLine) <= 2, qPrintable(QString::number(label->selectionStart())));
        QCOMPARE(label->selectedText(), text.sliced(label->selectionStart(), label->selectedText().size()));
        QVERIFY(label->selectedText().size() >= perLine - 2);
        const QImage marked = label->grab().toImage();
        QVERIFY(marked != plain);
        const QPoint corner = label->contentsRect().topLeft();
        const QColor highlight = label->palette().color(QPalette::Highlight);
        // Below the letters, which hang over no line's end.
        const auto highlit = [&](int lines) {
            return marked.pixelColor(corner + QPoint(1, lines * line - 2)) == highlight;
        };
        QVERIFY(!highlit(1));
        QVERIFY(highlit(2));
        QVERIFY(!highlit(3));
        // A double click selects a word.
        hands::doubleClick(label, Qt::LeftButton, Qt::NoModifier, {2, 2});
        QCOMPARE(label->selectedText(), text.left(180));
        press(QMessageBox::Ok)(shown);
    });
    messageBox(nullptr, text, u"!"_s);
    QCOMPARE(box.met, 1);
}

void DialogsTest::aWrappedLabelAsksForTheHeightThatItsTextTakes() {
    WrappedLabel label;
    label.setText(u"/"_s + QString(300, u'w'));
    for (const int width : {900, 300, 60}) {
        label.resize(width, label.heightForWidth(width));
        label.show();
        QVERIFY(holdsItsText(label));
        QVERIFY(drawsItsLines(label));
    }
    QVERIFY(label.minimumSizeHint().width() < 60);
}

QTEST_MAIN(DialogsTest)
#include "standard_dialogs_test.moc"
