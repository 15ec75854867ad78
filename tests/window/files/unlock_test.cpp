#include "app/Program.h"
#include "dialogs/Progresso.h"
#include "qirtbase/clsQirDatabase.h"
#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QInputDialog>
#include <QProgressBar>
#include <QTimer>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

constexpr KdfCosts aWhile{16, 64 * 1024};  // more than a moment
constexpr KdfCosts longer{64, 128 * 1024}; // nobody waits for it

/// Calls something at each turn of the event loop while the progress window shows.
class WhileProgress {
public:
    explicit WhileProgress(std::function<void(Progresso &)> act)
        : m_act(std::move(act)) {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            for (QWidget *window : QApplication::topLevelWidgets())
                if (auto *progress = qobject_cast<Progresso *>(window); progress != nullptr && progress->isVisible()) {
                    ++m_turns;
                    m_act(*progress);
                    return;
                }
        });
        m_timer.start(1);
    }
    int turns() const { return m_turns; }

private:
    std::function<void(Progresso &)> m_act;
    QTimer m_timer;
    int m_turns = 0;
};

} // namespace

/// Opening protected files whose password takes long to check, through the real window.
class UnlockTest : public WindowTest {
    Q_OBJECT

    QString makeProtected(const QString &name, const QString &password, KdfCosts costs) {
        DatabaseFileOptions options;
        options.costs = costs;
        clsQirDatabase made(FileOps::system(), options);
        if (!made.SetDatabaseFileName(path(name)))
            return {};
        made.AddTable(u"Locked"_s);
        made.NewPassword({}, password);
        made.SaveDtb();
        return path(name);
    }
    /// A file that asks for these costs and that no password opens.
    QString makeForged(const QString &name, KdfCosts costs) {
        const QString file = makeProtected(name, u"p"_s, {1, 8 * 1024});
        QByteArray bytes = fileBytes(file);
        bytes[10 + 80] = static_cast<char>(costs.passes);
        for (int byte = 0; byte < 4; ++byte)
            bytes[10 + 84 + byte] = static_cast<char>(costs.memoryKiB >> 8 * byte);
        sealDigest(bytes);
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size())
            return {};
        return file;
    }
    static void sealDigest(QByteArray &bytes) {
        QByteArray block = bytes.first(10 + 192);
        sealHeader(block, nullptr);
        bytes.replace(0, block.size(), block);
    }
    static QString cannotLoad(const QString &file) { return u"Can't load '"_s + file.toUpper() + u"'"_s; }
    static void expectPassword(DialogScript &dialogs, const QString &password) {
        dialogs.expectInput(u"Password:"_s, u"Input password"_s, QString(), password);
    }

private Q_SLOTS:
    void theWindowLivesWhileThePasswordIsChecked() {
        const QString file = makeProtected(u"A.UDB"_s, u"secret"_s, aWhile);
        EditorFixture fixture;
        QStringList shown;
        WhileProgress progress([&](Progresso &box) {
            shown = {box.windowTitle(), box.Label1().text(), QString::number(box.ProgressBar1().maximum())};
        });
        fixture.dialogs().expectFile(fileDialogTitle, file);
        expectPassword(fixture.dialogs(), u"secret"_s);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(progress.turns() > 1);
        QCOMPARE(shown, QStringList({u"QIR Database Editor"_s, u"Checking the password of 'A.UDB'..."_s, u"0"_s}));
        QCOMPARE(fixture.lines(0), QStringList{u"Locked"_s});
    }

    void aWrongPasswordIsAFailedLoad() {
        const QString file = makeProtected(u"A.UDB"_s, u"secret"_s, aWhile);
        EditorFixture fixture;
        fixture.dialogs().expectFile(fileDialogTitle, file);
        expectPassword(fixture.dialogs(), u"wrong"_s);
        fixture.dialogs().expectMessage(cannotLoad(file), u"!!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.isOpen(0));
    }

    void cancelEndsTheOpeningAtOnce_data() {
        QTest::addColumn<QString>("way");
        for (const char *way : {"button", "Escape", "close box"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }

    void cancelEndsTheOpeningAtOnce() {
        QFETCH(QString, way);
        const QString file = makeForged(u"A.UDB"_s, longer);
        EditorFixture fixture;
        QElapsedTimer sinceCancel;
        WhileProgress progress([&](Progresso &box) {
            sinceCancel.start();
            if (way == u"button")
                pressButton(box, u"Cancel"_s);
            else if (way == u"Escape")
                hands::strike(box, Qt::Key_Escape, Qt::NoModifier, u"\x1b"_s);
            else
                box.close();
        });
        fixture.dialogs().expectFile(fileDialogTitle, file);
        expectPassword(fixture.dialogs(), u"p"_s);
        fixture.dialogs().expectMessage(cannotLoad(file), u"!!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
        QCOMPARE(progress.turns(), 1);
        QVERIFY2(sinceCancel.elapsed() < 2000, qPrintable(QString::number(sinceCancel.elapsed())));
        QVERIFY(!fixture.isOpen(0));
    }

    void anotherFileIsOpenedAfterACancel() {
        const QString forged = makeForged(u"A.UDB"_s, {64, 64 * 1024});
        const QString open = makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"1"_s})});
        EditorFixture fixture;
        {
            WhileProgress progress([](Progresso &box) { box.reject(); });
            fixture.dialogs().expectFile(fileDialogTitle, forged);
            expectPassword(fixture.dialogs(), u"p"_s);
            fixture.dialogs().expectMessage(cannotLoad(forged), u"!!"_s, u"OK"_s);
            fixture.choose(Command::OpenDatabase);
        }
        fixture.open(open);
        QCOMPARE(fixture.lines(0), QStringList{u"T"_s});
    }

    void closingTheWindowMeanwhileEndsTheProgramAtOnce() {
        const QString file = makeForged(u"A.UDB"_s, longer);
        const QByteArray before = fileBytes(file);
        DialogScript dialogs;
        expectPassword(dialogs, u"p"_s);
        QElapsedTimer sinceClose;
        WhileProgress progress([&](Progresso &box) {
            sinceClose.start();
            box.parentWidget()->close();
        });
        QCOMPARE(runProgram({{file}, QString()}), 0);
        QCOMPARE(progress.turns(), 1);
        QVERIFY2(sinceClose.elapsed() < 2000, qPrintable(QString::number(sinceClose.elapsed())));
        QCOMPARE(dialogs.problems(), QString());
        QCOMPARE(fileBytes(file), before);
    }

    void whatIsTypedIntoTheWindowMeanwhileComesAfterwards() {
        const QString file = makeProtected(u"A.UDB"_s, u"secret"_s, aWhile);
        EditorFixture fixture;
        bool held = false;
        WhileProgress progress([&](Progresso &) {
            if (!held)
                fixture.activate(0);
            held = MessageLoop::instance()->inputHeld();
        });
        fixture.dialogs().expectFile(fileDialogTitle, file);
        expectPassword(fixture.dialogs(), u"secret"_s);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(held);
        QTRY_VERIFY(!MessageLoop::instance()->inputHeld());
        QCOMPARE(fixture.lines(0), QStringList{u"Locked"_s});
    }

    void theQuestionSaysWhenAFileAsksForMoreThanUsual() {
        const QString costly = makeForged(u"A.UDB"_s, longer);
        const QString usual = makeForged(u"B.UDB"_s, {3, 256 * 1024});
        EditorFixture fixture;
        for (const auto &[file, note] : {std::pair(costly, muchMoreThanUsual), std::pair(usual, QString())})
            askedWithNote(fixture, file, note);
    }

    void theQuestionIsAboutTheChosenFileBesideATwin() {
        // A component would reach the one twin by the other's name.
        const QString costly = path(u"pump.udb"_s);
        const QString usual = path(u"PUMP.UDB"_s);
        QVERIFY(QFile::rename(makeForged(u"A.UDB"_s, longer), costly));
        QVERIFY(QFile::rename(makeForged(u"B.UDB"_s, {3, 256 * 1024}), usual));
        EditorFixture fixture;
        for (const auto &[file, note] : {std::pair(costly, muchMoreThanUsual), std::pair(usual, QString())})
            askedWithNote(fixture, file, note);
    }

private:
    const QString muchMoreThanUsual = u"more than usual: trying a password takes about 10.7 times"_s;

    /// Opens a protected file; the question must have this note below it, and is cancelled.
    static void askedWithNote(EditorFixture &fixture, const QString &file, const QString &note) {
        fixture.dialogs().expectFile(fileDialogTitle, file);
        fixture.dialogs().expect([note](QDialog &dialog) {
            auto *box = qobject_cast<QInputDialog *>(&dialog);
            if (box == nullptr || box->labelText() != u"Password:" || box->windowTitle() != u"Input password")
                return u"another question: "_s + dialog.windowTitle();
            const auto *label = box->findChild<QLabel *>(u"note"_s);
            const QString text = label != nullptr && label->isVisible() ? label->text() : QString();
            const bool right = text.contains(note) && text.isEmpty() == note.isEmpty();
            return (right ? QString() : u"the note is '%1'; "_s.arg(text)) + pressButton(dialog, u"Cancel"_s);
        });
        fixture.dialogs().expectMessage(cannotLoad(file), u"!!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
    }
};

QTEST_MAIN(UnlockTest)
#include "unlock_test.moc"
