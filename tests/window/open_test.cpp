#include "tests/window/EditorFixture.h"

#include "app/Program.h"
#include "app/shared/Funzioni.h"
#include "base/FileNames.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QMenu>
#include <QMessageBox>
#include <QTimer>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

const QString openTitle = u"File DDB,WDB,UDB,SDB,IDB"_s;

TableOfTexts pumps() {
    return {u"Pumps"_s,
            {{u"Speed"_s, FieldType::Long, {u"1200"_s, u"900"_s}},
             {u"Name"_s, FieldType::Text, {u"Main"_s, u"Spare"_s}, 20}}};
}

TableOfTexts valves() {
    return {u"Valves"_s, {{u"Open"_s, FieldType::Bool, {u"1"_s}}}};
}

} // namespace

/// Opening databases, at the start and by the open command, through the real window.
class OpenTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void startsWithoutADatabaseWhenTheCommandLineIsEmpty() {
        EditorFixture fixture;
        QCOMPARE(fixture.startResult(), StartResult::NothingToOpen);
        QCOMPARE(fixture.state().IndexAttivo, -1);
        QVERIFY(!fixture.action(Command::SaveMenu).isEnabled());
        QVERIFY(!fixture.editor().controls.TablesMenu->isEnabled());
        QVERIFY(fixture.editor().controls.pane[0].hint->isVisible());
        QIR_VERIFY_OK(fixture);
    }

    void opensTheFileThatTheCommandLineNames() {
        const QString path = makeFile(u"A.DDB"_s, {pumps(), valves()});
        EditorFixture fixture(path);
        QCOMPARE(fixture.startResult(), StartResult::Opened);
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s, u"Valves"_s}));
        QCOMPARE(fixture.list(0).ListIndex(), 0);
        QCOMPARE(fixture.list(0).ItemData(1), 2);
        QCOMPARE(fixture.editor().nomelab(0).text(), path);
        QCOMPARE(fixture.texts(0), QList<QStringList>({{u"1200"_s, u"Main"_s}, {u"900"_s, u"Spare"_s}}));
        QVERIFY(fixture.action(Command::ColumnSizeAdjust).isEnabled());
        QIR_VERIFY_OK(fixture);
    }

    void removesQuotesEverywhereInTheCommandLine_data() {
        QTest::addColumn<QString>("pattern");
        QTest::newRow("apostrophes around") << u"'%1'"_s;
        QTest::newRow("double quotes around") << u"\"%1\""_s;
        QTest::newRow("both around") << u"\"'%1'\""_s;
    }

    void removesQuotesEverywhereInTheCommandLine() {
        QFETCH(QString, pattern);
        const QString path = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(pattern.arg(path));
        QCOMPARE(fixture.startResult(), StartResult::Opened);
        QCOMPARE(fixture.state().NomeFileDtb[0], path);
        QIR_VERIFY_OK(fixture);
    }

    void removesQuotesInsideTheName() {
        const QString path = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(QString(path).replace(u"A.DDB"_s, u"'A\".D'DB"_s));
        QCOMPARE(fixture.startResult(), StartResult::Opened);
        QIR_VERIFY_OK(fixture);
    }

    void ignoresACommandLineThatNamesNoFile() {
        EditorFixture fixture(m_folder->filePath(u"MISSING.DDB"_s));
        QCOMPARE(fixture.startResult(), StartResult::NothingToOpen);
        QCOMPARE(fixture.state().NomeFileDtb[0], QString());
        QIR_VERIFY_OK(fixture);
    }

    void endsTheProgramWithStatus1WhenTheNamedFileCannotBeLoaded() {
        const QString path = writeBytes(u"BAD.DDB"_s, "this is no database");
        DialogScript dialogs;
        dialogs.expectMessage(u"Can't load '"_s + path + u"'"_s, u"!!"_s, u"OK"_s);
        QCOMPARE(runProgram({path, QString()}), 1);
        QCOMPARE(dialogs.problems(), QString());
    }

    void endsTheProgramWithStatus1WhenTheArgumentIsAFolder() {
        DialogScript dialogs;
        dialogs.expectMessage(u"Can't load '"_s + m_folder->path() + u"'"_s, u"!!"_s, u"OK"_s);
        QCOMPARE(runProgram({m_folder->path(), QString()}), 1);
        QCOMPARE(dialogs.problems(), QString());
    }

    void endsTheProgramWithStatus2WhenAnArgumentIsNoText() {
        DialogScript dialogs;
        dialogs.expectMessage(u"the argument is no text"_s, applicationTitle(), u"OK"_s);
        QCOMPARE(refuseArguments(u"the argument is no text"_s), 2);
        QCOMPARE(dialogs.problems(), QString());
    }

    void writesAPictureOfTheWindow() {
        const QString path = makeFile(u"A.DDB"_s, {pumps()});
        const QString picture = m_folder->filePath(u"picture.png"_s);
        QCOMPARE(runProgram({path, picture}), 0);
        QVERIFY(QImage(picture).width() > 500);
    }

    void closingTheWindowInTheMiddleOfALongLoadEndsTheProgramAndWritesNothing() {
        QStringList numbers;
        for (int r = 0; r < 400'000; ++r)
            numbers.append(QString::number(r));
        const QString path = makeFile(u"LONG.DDB"_s, {{u"Long"_s, {{u"a"_s, FieldType::Long, numbers}}}});
        const QByteArray before = bytesOf(path);
        bool closedDuringTheLoad = false;
        QTimer closing;
        QObject::connect(&closing, &QTimer::timeout, [&] {
            DtbEditor *window = nullptr;
            for (QWidget *widget : QApplication::topLevelWidgets())
                if (auto *editor = qobject_cast<DtbEditor *>(widget))
                    window = editor;
            if (window == nullptr || !MessageLoop::instance()->commandRunning() ||
                window->context().TabellaMostrata(0) != u"Long"_s)
                return;
            closedDuringTheLoad = window->context().Tabella(0).Rows() == 1;
            closing.stop();
            window->close();
        });
        closing.start(0);
        QCOMPARE(runProgram({path, QString()}), 0);
        QVERIFY(closedDuringTheLoad);
        QCOMPARE(bytesOf(path), before);
    }

    void asksForThePasswordOfAProtectedFile() {
        const QString path = makeFile(u"A.UDB"_s, {pumps()}, u"secret"_s);
        EditorFixture fixture;
        fixture.dialogs().expectFile(openTitle, path);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"secret"_s);
        fixture.choose(Command::OpenDatabase);
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s}));
        QIR_VERIFY_OK(fixture);
    }

    void reportsACancelledPasswordAsAFailedLoad() {
        const QString path = makeFile(u"A.UDB"_s, {pumps()}, u"secret"_s);
        EditorFixture fixture;
        fixture.dialogs().expectFile(openTitle, path);
        fixture.dialogs().expectInputCancelled(u"Password:"_s, u"Input password"_s);
        fixture.dialogs().expectMessage(u"Can't load '"_s + path.toUpper() + u"'"_s, u"!!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.editor().DtbAperto(0));
        QCOMPARE(fixture.state().NomeFileDtb[0], path.toUpper());
        QCOMPARE(fixture.editor().nomelab(0).text(), path.toUpper());
        QVERIFY(!fixture.state().CaricamentoInCorso);
        QIR_VERIFY_OK(fixture);
    }

    void reportsAWrongPasswordAsAFailedLoadAndGoesOn() {
        const QString path = makeFile(u"A.UDB"_s, {pumps()}, u"secret"_s);
        EditorFixture fixture;
        fixture.dialogs().expectFile(openTitle, path);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"wrong"_s);
        fixture.dialogs().expectMessage(u"Can't load '"_s + path.toUpper() + u"'"_s, u"!!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.action(Command::CloseDatabaseMenu).isEnabled());

        fixture.open(makeFile(u"B.DDB"_s, {valves()}));
        QCOMPARE(fixture.lines(0), QStringList({u"Valves"_s}));
        QIR_VERIFY_OK(fixture);
    }

    void doesNotAskForAPasswordUnlessTheFlagIsTheCharacter1_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("ten bytes") << QByteArray("0000000192");
        QTest::newRow("nine bytes") << QByteArray("000000019");
        QTest::newRow("flag 0") << QByteArray("0000000004QIR0");
        QTest::newRow("flag 2") << QByteArray("0000000004QIR2");
        QTest::newRow("flag letter") << QByteArray("0000000004QIRl");
        QTest::newRow("header too short") << QByteArray("0000000003QIR1");
        QTest::newRow("header longer than the file") << QByteArray("0000000192QIR1");
        QTest::newRow("length is no number") << QByteArray("00000000x4QIR1");
    }

    void doesNotAskForAPasswordUnlessTheFlagIsTheCharacter1() {
        QFETCH(QByteArray, bytes);
        const QString path = writeBytes(u"SHORT.DDB"_s, bytes);
        EditorFixture fixture;
        fixture.dialogs().expectFile(openTitle, path);
        fixture.dialogs().expectMessage(u"Can't load '"_s + path.toUpper() + u"'"_s, u"!!"_s, u"OK"_s);
        fixture.choose(Command::OpenDatabase);
        QIR_VERIFY_OK(fixture);
    }

    void showsAndKeepsTheChosenNameInUpperCaseAndReachesTheFileIgnoringCase() {
        const QString path = makeFile(u"mixed Case.ddb"_s, {pumps()});
        EditorFixture fixture;
        fixture.open(path);
        QCOMPARE(fixture.editor().nomelab(0).text(), path.toUpper());
        QCOMPARE(fixture.state().NomeFileDtb[0], path.toUpper());
        QCOMPARE(fixture.lines(0), QStringList({u"Pumps"_s}));
        QIR_VERIFY_OK(fixture);
    }

    void refusesANameThatReachesTwoFilesDifferingOnlyInCase() {
        const QString path = makeFile(u"a.ddb"_s, {pumps()});
        // Copied, not made: the component would reach the first file by this name.
        QVERIFY(QFile::copy(path, m_folder->filePath(u"A.ddb"_s)));
        EditorFixture fixture;
        fixture.dialogs().expectFile(openTitle, path);
        fixture.dialogs().expect([](QDialog &dialog) {
            auto &box = dynamic_cast<QMessageBox &>(dialog);
            const bool named = box.text().contains(u"a.ddb"_s) && box.text().contains(u"A.ddb"_s);
            return (named ? QString() : u"the message names not both files: "_s + box.text()) +
                   pressButton(dialog, u"OK"_s);
        });
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.editor().DtbAperto(0));
        QCOMPARE(fixture.state().NomeFileDtb[0], QString());
        QIR_VERIFY_OK(fixture);
    }

    void refusesANameThatWouldReachAnotherFileThanTheChosenOne() {
        const QString path = makeFile(u"a.ddb"_s, {pumps()});
        QVERIFY(QFile::copy(path, m_folder->filePath(u"A.DDB"_s)));
        EditorFixture fixture;
        fixture.dialogs().expectFile(openTitle, path);
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"OK"_s); });
        fixture.choose(Command::OpenDatabase);
        QVERIFY(!fixture.editor().DtbAperto(0));
        QIR_VERIFY_OK(fixture);
    }

    void aCancelledDialogChangesNothing() {
        const QString path = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(path);
        fixture.dialogs().expectFileCancelled(openTitle);
        fixture.choose(Command::OpenDatabase);
        QVERIFY(fixture.editor().DtbAperto(0));
        QVERIFY(!fixture.state().CaricamentoInCorso);
        QCOMPARE(fixture.state().NomeFileDtb[0], path);
        QCOMPARE(fixture.texts(0).size(), 2);
        QIR_VERIFY_OK(fixture);
    }

    void theFileDialogLeavesTheCurrentFolderAsItWas() {
        const QString before = QDir::currentPath();
        EditorFixture fixture;
        fixture.open(makeFile(u"A.DDB"_s, {pumps()}));
        QCOMPARE(QDir::currentPath(), before);
        QIR_VERIFY_OK(fixture);
    }

    void openingOverANamedPaneReplacesTheComponentWithoutTheSavePrompt() {
        const QString first = makeFile(u"A.DDB"_s, {pumps()});
        const QString second = makeFile(u"B.DDB"_s, {valves()});
        EditorFixture fixture(first);
        fixture.editor().OggettoDtb(0).AddRecord();
        QVERIFY(fixture.editor().OggettoDtb(0).DtbHasChanged());
        fixture.open(second); // an unexpected prompt would be a problem
        QCOMPARE(fixture.lines(0), QStringList({u"Valves"_s}));
        QIR_VERIFY_OK(fixture);

        // The replaced component was released changed, so it wrote its file.
        const QirDatabase written = QirDatabase::create();
        QVERIFY(written.LoadDtb(first, QString()));
        written.QIRTableRecordSource(u"Pumps"_s);
        QCOMPARE(written.QirTableRecordsCount(), 3);
    }

    void aDatabaseWithoutTablesOpensWithAnEmptyListAndNoGrid() {
        EditorFixture fixture;
        fixture.open(makeFile(u"EMPTY.SDB"_s, {}));
        QVERIFY(fixture.editor().DtbAperto(0));
        QCOMPARE(fixture.list(0).ListCount(), 0);
        QVERIFY(fixture.list(0).Visible());
        QVERIFY(!fixture.grid(0).Visible());
        QIR_VERIFY_OK(fixture);
    }

    void aDatabaseWithoutTablesOpensAtTheStart() {
        EditorFixture fixture(makeFile(u"EMPTY.SDB"_s, {}));
        QCOMPARE(fixture.startResult(), StartResult::Opened);
        QVERIFY(!fixture.grid(0).Visible());
        QVERIFY(!fixture.action(Command::RemoveTableMenu).isEnabled());
        QIR_VERIFY_OK(fixture);
    }

private:
    QString makeFile(const QString &name, const std::vector<TableOfTexts> &tables, const QString &password = {}) {
        const QString path = m_folder->filePath(name);
        makeDatabase(path, tables, password);
        return path;
    }

    static QByteArray bytesOf(const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QString writeBytes(const QString &name, const QByteArray &bytes) {
        const QString path = m_folder->filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("the test file cannot be written");
        return path;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(OpenTest)
#include "open_test.moc"
