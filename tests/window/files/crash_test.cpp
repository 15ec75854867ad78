#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QApplication>
#include <QCoreApplication>
#include <QProcess>

#include <csignal>
#include <cstdio>
#include <stdexcept>

// An editor is a process of its own here, and it is killed while somebody types in it.

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

const QString typingArgument = u"--type"_s;
const QString recovered =
    u"%1: changes that were not saved when the program ended are there again; they are still unsaved"_s;

/// What is typed: never the same again, so that a lost key shows.
QString typedText(int keys) {
    QString text;
    for (int key = 0; key < keys; ++key)
        text.append(QChar(u'a' + (key * 7 + key / 26) % 26));
    return text;
}

/// The other process: types into the first cell of a file for ever, and tells of each key once it has been handled.
int typeUntilKilled(const QString &file, bool recovers) {
    EditorFixture fixture;
    fixture.dialogs().expectFile(fileDialogTitle, file);
    if (recovers)
        fixture.dialogs().expectMessage(recovered.arg(file.toUpper()), u"!"_s, u"OK"_s);
    fixture.choose(Command::OpenDatabase);
    fixture.clickLine(0, 0);
    beginEdit(fixture, 0, 1, 1);
    QLineEdit &editor = fixture.cellEditor(0);
    hands::key(&editor, Qt::Key_End);
    if (!fixture.problems().isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(fixture.problems()));
        return 1;
    }
    for (int key = 0;; ++key) {
        hands::key(&editor, typedText(key + 1).back().toLatin1());
        std::putchar('.');
        std::fflush(stdout);
    }
}

/// An editor in which somebody types.
class TypingEditor {
public:
    explicit TypingEditor(const QString &file, bool recovers = false) {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationFilePath(),
                        {typingArgument, file, recovers ? u"recovers"_s : u""_s});
    }
    ~TypingEditor() { (void)kill(); }

    /// Until this many keys have been told of.
    void await(int keys) {
        while (m_keys.size() < keys) {
            if (!m_process.waitForReadyRead())
                throw std::runtime_error("the editor does not type");
            m_keys += m_process.readAllStandardOutput();
        }
    }
    /// In the middle of the next keys; gives how many were told of in the end.
    int kill() {
        m_process.kill();
        m_process.waitForFinished();
        m_keys += m_process.readAllStandardOutput();
        return static_cast<int>(m_keys.size());
    }
    int killAfter(int keys) {
        await(keys);
        return kill();
    }

private:
    QProcess m_process;
    QByteArray m_keys;
};

} // namespace

class CrashTest : public WindowTest {
    Q_OBJECT

private:
    QString makeNames() const {
        return makeFile(u"A.DDB"_s, {{u"T"_s, {{u"Name"_s, FieldType::Text, {u"Old "_s}, 60000}}}});
    }
    /// Opens the file as the next editor does, which says what it found.
    static void openRecovered(EditorFixture &fixture, const QString &file) {
        fixture.dialogs().expectFile(fileDialogTitle, file);
        fixture.dialogs().expectMessage(recovered.arg(file.toUpper()), u"!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
        fixture.clickLine(0, 0);
    }
    /// All keys that were told of, and at most the one that was being handled.
    static QString lostKeys(const QString &shown, const QString &before, int told) {
        for (const int more : {0, 1})
            if (shown == before + typedText(told + more))
                return {};
        return u"after %1 keys there is: %2"_s.arg(told).arg(shown);
    }

private Q_SLOTS:
    void everyKeyThatAKilledEditorHandledIsThereAgainAsAnUnsavedChange_data() {
        QTest::addColumn<int>("keys");
        for (const int keys : {1, 2, 17, 100})
            QTest::addRow("%d keys", keys) << keys;
    }
    void everyKeyThatAKilledEditorHandledIsThereAgainAsAnUnsavedChange() {
        QFETCH(int, keys);
        const QString file = makeNames();
        const QByteArray saved = fileBytes(file);
        const int told = TypingEditor(file).killAfter(keys);
        QVERIFY(told >= keys);
        EditorFixture fixture;
        openRecovered(fixture, file);
        QCOMPARE(lostKeys(fixture.grid(0).TextMatrix(1, 1), u"Old "_s, told), QString());
        QCOMPARE(fixture.database(0).DtbHasChanged(), true);
        QCOMPARE(fileBytes(file), saved);
        fixture.database(0).setDtbHasChanged(false);
    }

    void closingWithNoDiscardsThem() {
        const QString file = makeNames();
        const QByteArray saved = fileBytes(file);
        (void)TypingEditor(file).killAfter(5);
        EditorFixture fixture;
        openRecovered(fixture, file);
        fixture.dialogs().expectMessage(saveQuestion(file.toUpper()), u"QIR Database Editor"_s, u"No"_s);
        fixture.choose(Command::CloseDatabaseMenu);
        fixture.open(file); // without a notice
        fixture.clickLine(0, 0);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 1), u"Old "_s);
        QCOMPARE(fixture.database(0).DtbHasChanged(), false);
        QCOMPARE(fileBytes(file), saved);
    }

    void theEditOfAKilledEditorIsOneStepThatCanBeTakenBack() {
        const QString file = makeNames();
        const int told = TypingEditor(file).killAfter(5);
        EditorFixture fixture;
        openRecovered(fixture, file);
        hands::key(&fixture.window(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 1), u"Old "_s);
        QCOMPARE(fixture.database(0).DtbHasChanged(), false);
        QVERIFY(!fixture.action(Command::UndoMenu).isEnabled());
        hands::key(&fixture.window(), Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(lostKeys(fixture.grid(0).TextMatrix(1, 1), u"Old "_s, told), QString());
        QCOMPARE(fixture.database(0).DtbHasChanged(), true);
        fixture.database(0).setDtbHasChanged(false);
    }

    void savingKeepsThem() {
        const QString file = makeNames();
        const int told = TypingEditor(file).killAfter(5);
        EditorFixture fixture;
        openRecovered(fixture, file);
        fixture.choose(Command::SaveMenu);
        fixture.choose(Command::CloseDatabaseMenu);
        fixture.open(file); // without a notice
        fixture.clickLine(0, 0);
        QCOMPARE(lostKeys(fixture.grid(0).TextMatrix(1, 1), u"Old "_s, told), QString());
    }

    void anEditorThatIsKilledAfterItRecoveredLosesNothingEither() {
        const QString file = makeNames();
        const int first = TypingEditor(file).killAfter(3);
        const int second = TypingEditor(file, true).killAfter(4);
        EditorFixture fixture;
        openRecovered(fixture, file);
        const QString shown = fixture.grid(0).TextMatrix(1, 1);
        bool found = false;
        for (const int more : {0, 1})
            found = found || lostKeys(shown, u"Old "_s + typedText(first + more), second).isEmpty();
        QVERIFY2(found, qPrintable(shown));
        fixture.database(0).setDtbHasChanged(false);
    }

    void ofTwoKilledEditorsOneIsTakenUpAndTheOthersChangesAreOfferedAsAFile() {
        const QString file = makeNames();
        TypingEditor left(file);
        TypingEditor right(file);
        left.await(5);
        right.await(30);
        const int leftTold = left.kill();
        const int rightTold = right.kill();
        EditorFixture fixture;
        QString aside;
        fixture.dialogs().expectFile(fileDialogTitle, file);
        for (int box = 0; box < 2; ++box)
            fixture.dialogs().expect([&](QDialog &dialog) {
                const QString text = dynamic_cast<QMessageBox &>(dialog).text();
                const QString other = u"unsaved changes of another session are kept as a file of their own in '"_s;
                if (const qsizetype at = text.indexOf(other); at >= 0)
                    aside = text.sliced(at + other.size()).chopped(1);
                return pressButton(dialog, u"OK"_s);
            });
        fixture.choose(Command::OpenDatabase);
        fixture.clickLine(0, 0);
        const QString shown = fixture.grid(0).TextMatrix(1, 1);
        QVERIFY2(!aside.isEmpty(), "the other editor's changes are not offered");
        const QirDatabase kept = QirDatabase::create();
        QVERIFY(kept.LoadDtb(aside, QString()));
        kept.QIRTableRecordSource(u"T"_s);
        kept.setQIRTableRecordsPointerOut(1);
        const QString other = kept.QIRTableRecordSetByIndex(1).toString();
        const bool leftShown = lostKeys(shown, u"Old "_s, leftTold).isEmpty();
        QCOMPARE(lostKeys(shown, u"Old "_s, leftShown ? leftTold : rightTold), QString());
        QCOMPARE(lostKeys(other, u"Old "_s, leftShown ? rightTold : leftTold), QString());
        fixture.database(0).setDtbHasChanged(false);
    }
};

} // namespace qir::test

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == qir::test::typingArgument)
        return qir::test::typeUntilKilled(arguments.value(2), arguments.value(3) == u"recovers");
    QTEST_SET_MAIN_SOURCE_PATH
    qir::test::CrashTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "crash_test.moc"
