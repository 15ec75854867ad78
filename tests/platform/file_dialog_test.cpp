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
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>

using namespace qir;
using namespace Qt::StringLiterals;

using qir::testing::WithNext;

namespace {

void writeFile(const QString &path) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("x");
}

/// Types a name into the dialog's own line and accepts it.
void chooseName(QFileDialog &dialog, const QString &name) {
    auto *line = dialog.findChild<QLineEdit *>(u"fileNameEdit"_s);
    QVERIFY(line != nullptr);
    line->setText(name);
    hands::key(line, Qt::Key_Return);
}

} // namespace

/// The file dialog and the clipboard.
class FileDialogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void filtersBecomeNameFilters();
    void aFileDialogIsSetUpAsAsked();
    void theFileThatIsOpenedComesBackAsChosen();
    void aCancelledFileDialogGivesNothing();
    void nothingIsLeftInTheHistoryThatAllProgramsShare();
    void pathsAreReadFromLeftToRightInEveryLanguage();
    void theCurrentFolderStays();
    void theDefaultExtensionIsAdded();
    void savingOverAFileIsAskedAboutAndTold();
    void theClipboardHoldsTextAndOtherFormats();
    void aClearedClipboardHasNoText();
};

void FileDialogTest::filtersBecomeNameFilters() {
    QCOMPARE(nameFilters(u"Device Data Files(*.DDB)|*.DDB|Settings Data Files(*.SDB)|*.SDB"_s),
             (QStringList{u"Device Data Files(*.DDB)"_s, u"Settings Data Files(*.SDB)"_s}));
    QCOMPARE(nameFilters(u"Texts|*.txt;*.csv|All|*"_s), (QStringList{u"Texts (*.txt *.csv)"_s, u"All (*)"_s}));
    QCOMPARE(nameFilters(QString()), QStringList());
    QCOMPARE(nameFilters(u"no pattern"_s), QStringList());
}

void FileDialogTest::aFileDialogIsSetUpAsAsked() {
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

void FileDialogTest::theFileThatIsOpenedComesBackAsChosen() {
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

void FileDialogTest::aCancelledFileDialogGivesNothing() {
    const WithNext<QFileDialog> dialog([](QFileDialog &shown) { hands::key(&shown, Qt::Key_Escape); });
    const FileDialogAnswer answer = askForFile(nullptr, {});
    QCOMPARE(answer.path, QString());
    QVERIFY(!answer.existed);
    QCOMPARE(dialog.met, 1);
}

void FileDialogTest::nothingIsLeftInTheHistoryThatAllProgramsShare() {
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    const auto shared = [] { return QSettings(QSettings::UserScope, u"QtProject"_s); };
    shared().setValue(u"FileDialog/lastVisited"_s, u"file:///before"_s);
    const QTemporaryDir folder;
    writeFile(folder.filePath(u"A.ddb"_s));
    FileDialogRequest request;
    request.initialFolder = folder.path();
    const WithNext<QFileDialog> dialog([](QFileDialog &shown) { chooseName(shown, u"A.ddb"_s); });
    QVERIFY(!askForFile(nullptr, request).path.isEmpty());
    QCOMPARE(shared().value(u"FileDialog/lastVisited"_s).toString(), u"file:///before"_s);
    QVERIFY(!shared().contains(u"FileDialog/history"_s));
    QVERIFY(shared().contains(u"FileDialog/viewMode"_s)); // how the dialog looks is shared as ever
}

void FileDialogTest::pathsAreReadFromLeftToRightInEveryLanguage() {
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    for (const auto action : {FileDialogRequest::Open, FileDialogRequest::Save}) {
        FileDialogRequest request;
        request.action = action;
        const WithNext<QFileDialog> dialog([](QFileDialog &shown) {
            QCOMPARE(shown.layoutDirection(), Qt::RightToLeft);
            for (const QString &name : {u"lookInCombo"_s, u"fileNameEdit"_s})
                QCOMPARE(shown.findChild<QWidget *>(name)->layoutDirection(), Qt::LeftToRight);
            shown.reject();
        });
        askForFile(nullptr, request);
        QCOMPARE(dialog.met, 1);
    }
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

void FileDialogTest::theCurrentFolderStays() {
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

void FileDialogTest::theDefaultExtensionIsAdded() {
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

void FileDialogTest::savingOverAFileIsAskedAboutAndTold() {
    const QTemporaryDir folder;
    writeFile(folder.filePath(u"OLD.DDB"_s));
    FileDialogRequest request;
    request.action = FileDialogRequest::Save;
    request.initialFolder = folder.path();
    int asked = 0;
    const WithNext<QFileDialog> dialog([&](QFileDialog &shown) {
        const WithNext<QMessageBox> box([&](QMessageBox &question) {
            ++asked;
            hands::click(question.button(QMessageBox::Yes), Qt::LeftButton);
        });
        chooseName(shown, u"OLD.DDB"_s);
    });
    const FileDialogAnswer answer = askForFile(nullptr, request);
    QCOMPARE(asked, 1);
    QVERIFY(answer.existed);
    QCOMPARE(answer.path, folder.filePath(u"OLD.DDB"_s));
}

void FileDialogTest::theClipboardHoldsTextAndOtherFormats() {
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

void FileDialogTest::aClearedClipboardHasNoText() {
    clipboard::setText(u"a"_s);
    clipboard::clear();
    QCOMPARE(clipboard::text(), QString());
}

QTEST_MAIN(FileDialogTest)
#include "file_dialog_test.moc"
