#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// The built program as a process of its own: what it does before there is a window.
class ProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_environment = QProcessEnvironment::systemEnvironment();
        for (const QString &display : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"WAYLAND_SOCKET"_s})
            m_environment.remove(display);
        m_environment.remove(u"QT_QPA_PLATFORM"_s);
        m_environment.remove(u"LANGUAGE"_s);
        m_environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
        m_environment.insert(u"XDG_RUNTIME_DIR"_s, m_runtimeFolder.path()); // Qt complains where there is none
    }

    void helpAndVersionNeedNoDisplay_data() {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QByteArray>("told");
        QTest::newRow("--help") << u"--help"_s << QByteArray("[FILE]");
        QTest::newRow("-h") << u"-h"_s << QByteArray("--picture");
        QTest::newRow("--help-all") << u"--help-all"_s << QByteArray("--picture");
        QTest::newRow("--version") << u"--version"_s << QByteArray("QIR Database Editor ");
        QTest::newRow("-v") << u"-v"_s << QByteArray("QIR Database Editor ");
    }

    void helpAndVersionNeedNoDisplay() {
        QFETCH(QString, option);
        QFETCH(QByteArray, told);
        run({option});
        QCOMPARE(m_errors, QByteArray());
        QVERIFY2(m_output.contains(told), m_output.constData());
        QCOMPARE(m_status, 0);
    }

    void theLanguageIsTheLocalesOrTheOneAskedFor_data() {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("told");
        const QByteArray english("The database to open in the left pane.");
        const QByteArray italian("Il database da aprire nel pannello sinistro.");
        const QByteArray german("Die Datenbank, die links");
        QTest::newRow("no locale") << u"C.UTF-8"_s << QStringList() << english;
        QTest::newRow("Italian") << u"it_IT.UTF-8"_s << QStringList() << italian;
        QTest::newRow("Austrian") << u"de_AT.UTF-8"_s << QStringList() << german;
        QTest::newRow("one that is not spoken") << u"fr_FR.UTF-8"_s << QStringList() << english;
        QTest::newRow("asked for") << u"it_IT.UTF-8"_s << QStringList{u"--language"_s, u"de"_s} << german;
        QTest::newRow("asked for in one word") << u"C.UTF-8"_s << QStringList{u"--language=it"_s} << italian;
        QTest::newRow("English asked for") << u"de_DE.UTF-8"_s << QStringList{u"--language"_s, u"en"_s} << english;
    }

    void theLanguageIsTheLocalesOrTheOneAskedFor() {
        QFETCH(QString, locale);
        QFETCH(QStringList, options);
        QFETCH(QByteArray, told);
        m_environment.insert(u"LC_ALL"_s, locale);
        run(options + QStringList{u"--help"_s});
        QVERIFY2(m_output.simplified().contains(told), m_output.constData());
        QCOMPARE(m_status, 0);
    }

    void withoutADisplayTheProgramSaysSoAndEndsWithStatus2_data() {
        QTest::addColumn<QString>("display");
        QTest::newRow("none") << QString();
        QTest::newRow("one that does not answer") << u"localhost:9876"_s;
    }

    void withoutADisplayTheProgramSaysSoAndEndsWithStatus2() {
        QFETCH(QString, display);
        m_environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        if (!display.isEmpty())
            m_environment.insert(u"DISPLAY"_s, display);
        run({});
        QVERIFY2(m_errors.startsWith("qir-editor: no display"), m_errors.constData());
        QCOMPARE(m_errors.count('\n'), 1);
        QCOMPARE(m_output, QByteArray());
        QCOMPARE(m_status, 2);
    }

    void anOptionThatDoesNotExistIsTold_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("told");
        QTest::newRow("an unknown one") << QStringList{u"--nonsense"_s} << QByteArray("nonsense");
        QTest::newRow("before a file") << QStringList{u"--nonsense"_s, u"A.DDB"_s} << QByteArray("nonsense");
        QTest::newRow("beside help") << QStringList{u"--nonsense"_s, u"--help"_s} << QByteArray("nonsense");
        QTest::newRow("two left files") << QStringList{u"--left"_s, u"A.DDB"_s, u"B.DDB"_s} << QByteArray("--left");
        QTest::newRow("a right one twice")
            << QStringList{u"--right"_s, u"A.DDB"_s, u"--right"_s, u"B.DDB"_s} << QByteArray("--right");
        QTest::newRow("a language that is not spoken")
            << QStringList{u"--language"_s, u"xx"_s} << QByteArray("--language takes one of these: en, de, it");
        QTest::newRow("without its value") << QStringList{u"--picture"_s} << QByteArray("picture");
    }

    void anOptionThatDoesNotExistIsTold() {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, told);
        m_environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        run(arguments);
        QVERIFY2(m_errors.startsWith("qir-editor: ") && m_errors.contains(told), m_errors.constData());
        QVERIFY2(m_errors.contains("--help"), m_errors.constData());
        QCOMPARE(m_status, 2);
    }

    void aPictureOfTwoFilesIsRefused() {
        const QTemporaryDir folder;
        for (const QString &name : {u"A.DDB"_s, u"B.DDB"_s}) {
            QFile file(folder.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        m_environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        const QString picture = folder.filePath(u"out.png"_s);
        run({u"--picture"_s, picture, folder.filePath(u"A.DDB"_s), folder.filePath(u"B.DDB"_s)});
        QVERIFY2(m_errors.contains("A.DDB") && m_errors.contains("B.DDB"), m_errors.constData());
        QCOMPARE(m_status, 2);
        QVERIFY(!QFile::exists(picture));
    }

private:
    void run(const QStringList &arguments) {
        QProcess process;
        process.setProcessEnvironment(m_environment);
        process.start(QStringLiteral(QIR_EDITOR), arguments);
        QVERIFY(process.waitForFinished(60'000));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        m_status = process.exitCode();
        m_output = process.readAllStandardOutput();
        m_errors = process.readAllStandardError();
    }

    QTemporaryDir m_runtimeFolder;
    QProcessEnvironment m_environment;
    int m_status = -1;
    QByteArray m_output;
    QByteArray m_errors;
};

QTEST_GUILESS_MAIN(ProgramTest)
#include "program_test.moc"
