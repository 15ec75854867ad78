#include "platform/dialogs/Clipboard.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/dialogs/FileDialog.h"
#include "platform/dialogs/PromptWrapping.h"
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
using namespace Qt::StringLiterals;

namespace {

/// Hands the next modal dialog of a class to a function once it shows.
template<class Dialog>
class WithNext : public QObject {
public:
    explicit WithNext(std::function<void(Dialog &)> use)
        : m_use(std::move(use)) {
        m_timer.setInterval(1);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
            if (dialog == nullptr || !dialog->isVisible())
                return;
            m_timer.stop();
            ++met;
            const QPointer<Dialog> shown(dialog);
            m_use(*dialog);
            if (shown && QTest::currentTestFailed())
                static_cast<QDialog *>(shown)->done(QDialog::Rejected); // the failed check has left it open
        });
        m_timer.start();
    }
    int met = 0;

private:
    std::function<void(Dialog &)> m_use;
    QTimer m_timer;
};

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

void writeFile(const QString &path) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("x");
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

    void filtersBecomeNameFilters();
    void aFileDialogIsSetUpAsAsked();
    void theFileThatIsOpenedComesBackAsChosen();
    void aCancelledFileDialogGivesNothing();
    void theCurrentFolderStays();
    void theDefaultExtensionIsAdded();
    void savingOverAFileIsAskedAboutAndTold();

    void theClipboardHoldsTextAndOtherFormats();
    void aClearedClipboardHasNoText();
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

// File dialog

void DialogsTest::filtersBecomeNameFilters() {
    QCOMPARE(nameFilters(u"Device Data Files(*.DDB)|*.DDB|Settings Data Files(*.SDB)|*.SDB"_s),
             (QStringList{u"Device Data Files(*.DDB)"_s, u"Settings Data Files(*.SDB)"_s}));
    QCOMPARE(nameFilters(u"Texts|*.txt;*.csv|All|*"_s), (QStringList{u"Texts (*.txt *.csv)"_s, u"All (*)"_s}));
    QCOMPARE(nameFilters(QString()), QStringList());
    QCOMPARE(nameFilters(u"no pattern"_s), QStringList());
}

void DialogsTest::aFileDialogIsSetUpAsAsked() {
    const QTemporaryDir folder;
    FileDialogRequest request;
    request.title = u"File DDB,WDB,UDB,SDB,IDB"_s;
    request.defaultExtension = u"DDB"_s;
    request.initialFolder = folder.path();
    request.filter = u"Device Data Files(*.DDB)|*.DDB|User Data Files(*.UDB)|*.UDB"_s;
    const WithNext<QFileDialog> open([&](QFileDialog &shown) {
        QCOMPARE(shown.windowTitle(), request.title);
        QCOMPARE(shown.acceptMode(), QFileDialog::AcceptOpen);
        QCOMPARE(shown.nameFilters().size(), 2);
        QCOMPARE(shown.selectedNameFilter(), u"Device Data Files(*.DDB)"_s);
        QCOMPARE(shown.directory().canonicalPath(), QDir(folder.path()).canonicalPath());
        shown.reject();
    });
    askForFile(nullptr, request);
    QCOMPARE(open.met, 1);
    request.action = FileDialogRequest::Save;
    request.initialName = u"NEW.DDB"_s;
    const WithNext<QFileDialog> save([&](QFileDialog &shown) {
        QCOMPARE(shown.acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(QFileInfo(shown.selectedFiles().constFirst()).fileName(), u"NEW.DDB"_s);
        shown.reject();
    });
    askForFile(nullptr, request);
    QCOMPARE(save.met, 1);
}

namespace {

/// Types a name into the dialog's own line and accepts it.
void chooseName(QFileDialog &dialog, const QString &name) {
    auto *line = dialog.findChild<QLineEdit *>(u"fileNameEdit"_s);
    QVERIFY(line != nullptr);
    line->setText(name);
    hands::key(line, Qt::Key_Return);
}

} // namespace

void DialogsTest::theFileThatIsOpenedComesBackAsChosen() {
    const QTemporaryDir folder;
    writeFile(folder.filePath(u"Mixed Case.ddb"_s));
    FileDialogRequest request;
    request.initialFolder = folder.path();
    request.filter = u"Device Data Files(*.DDB)|*.DDB"_s;
    const WithNext<QFileDialog> dialog([](QFileDialog &shown) { chooseName(shown, u"Mixed Case.ddb"_s); });
    const FileDialogAnswer answer = askForFile(nullptr, request);
    QCOMPARE(answer.path, folder.filePath(u"Mixed Case.ddb"_s));
    QVERIFY(answer.existed);
}

void DialogsTest::aCancelledFileDialogGivesNothing() {
    const WithNext<QFileDialog> dialog([](QFileDialog &shown) { hands::key(&shown, Qt::Key_Escape); });
    const FileDialogAnswer answer = askForFile(nullptr, {});
    QCOMPARE(answer.path, QString());
    QVERIFY(!answer.existed);
    QCOMPARE(dialog.met, 1);
}

void DialogsTest::theCurrentFolderStays() {
    const QTemporaryDir folder;
    const QString before = QDir::currentPath();
    for (const bool cancel : {false, true}) {
        FileDialogRequest request;
        request.action = FileDialogRequest::Save;
        const WithNext<QFileDialog> dialog([&](QFileDialog &shown) {
            QCOMPARE(shown.directory().canonicalPath(), QDir(before).canonicalPath());
            QDir::setCurrent(folder.path());
            if (cancel)
                shown.reject();
            else
                chooseName(shown, folder.filePath(u"X.DDB"_s));
        });
        askForFile(nullptr, request);
        QCOMPARE(dialog.met, 1);
        QCOMPARE(QDir::currentPath(), before);
    }
}

void DialogsTest::theDefaultExtensionIsAdded() {
    const QTemporaryDir folder;
    FileDialogRequest request;
    request.action = FileDialogRequest::Save;
    request.initialFolder = folder.path();
    request.defaultExtension = u"DDB"_s;
    const WithNext<QFileDialog> without([](QFileDialog &shown) { chooseName(shown, u"new"_s); });
    const FileDialogAnswer answer = askForFile(nullptr, request);
    QCOMPARE(answer.path, folder.filePath(u"new.DDB"_s));
    QVERIFY(!answer.existed);
    const WithNext<QFileDialog> with([](QFileDialog &shown) { chooseName(shown, u"new.UDB"_s); });
    QCOMPARE(askForFile(nullptr, request).path, folder.filePath(u"new.UDB"_s));
    request.defaultExtension.clear();
    const WithNext<QFileDialog> none([](QFileDialog &shown) { chooseName(shown, u"new"_s); });
    QCOMPARE(askForFile(nullptr, request).path, folder.filePath(u"new"_s));
}

void DialogsTest::savingOverAFileIsAskedAboutAndTold() {
    const QTemporaryDir folder;
    writeFile(folder.filePath(u"OLD.DDB"_s));
    FileDialogRequest request;
    request.action = FileDialogRequest::Save;
    request.initialFolder = folder.path();
    int asked = 0;
    const WithNext<QFileDialog> dialog([&](QFileDialog &shown) {
        const Box box([&](QMessageBox &question) {
            ++asked;
            press(QMessageBox::Yes)(question);
        });
        chooseName(shown, u"OLD.DDB"_s);
    });
    const FileDialogAnswer answer = askForFile(nullptr, request);
    QCOMPARE(asked, 1);
    QVERIFY(answer.existed);
    QCOMPARE(answer.path, folder.filePath(u"OLD.DDB"_s));
}

// Clipboard

void DialogsTest::theClipboardHoldsTextAndOtherFormats() {
    clipboard::setText(u"a\tb\rc"_s);
    QCOMPARE(clipboard::text(), u"a\tb\rc"_s);
    auto contents = std::make_unique<QMimeData>();
    contents->setText(u"plain"_s);
    contents->setData(u"application/x-cells"_s, QByteArray("\0\1", 2));
    clipboard::setContents(std::move(contents));
    QCOMPARE(clipboard::text(), u"plain"_s);
    QVERIFY(clipboard::has(u"application/x-cells"_s));
    QCOMPARE(clipboard::data(u"application/x-cells"_s), QByteArray("\0\1", 2));
    QVERIFY(!clipboard::has(u"text/html"_s));
    QCOMPARE(clipboard::data(u"text/html"_s), QByteArray());
}

void DialogsTest::aClearedClipboardHasNoText() {
    clipboard::setText(u"a"_s);
    clipboard::clear();
    QCOMPARE(clipboard::text(), QString());
}

QTEST_MAIN(DialogsTest)
#include "standard_dialogs_test.moc"
