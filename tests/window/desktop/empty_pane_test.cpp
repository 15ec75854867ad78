#include "tests/support/Hands.h"
#include "tests/window/WindowTest.h"

#include <QMimeData>
#include <QUrl>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// What an empty pane offers, and files dropped on it and on others.
class EmptyPaneTest : public WindowTest {
    Q_OBJECT

    static QPushButton &button(EditorFixture &fixture, const QString &name) {
        return *fixture.window().findChild<QPushButton *>(name);
    }
    /// Drags files over a control and drops them there, as the window system does.
    static void drop(EditorFixture &fixture, QWidget &target, const QStringList &paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString &path : paths)
            urls.append(QUrl::fromLocalFile(path));
        data.setUrls(urls);
        data.setText(paths.join(u'\n')); // as file managers add it
        const QPoint at = target.mapTo(&fixture.window(), target.rect().center());
        QWindow *window = fixture.window().windowHandle();
        const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
        QDragEnterEvent enter(at, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window, &enter);
        if (!enter.isAccepted())
            return;
        QDropEvent dropped(at, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window, &dropped);
        hands::turnLoop();
    }

private Q_SLOTS:
    void anEmptyPaneOffersOpenNewAndTheRecentMenus() {
        EditorFixture fixture;
        QVERIFY(fixture.editor().pane(0).controls().hint->text().contains(u"drop a file here"_s));
        for (const QString &name :
             {u"OpenDatabase_0"_s, u"NewDatabase_0"_s, u"RecentFilesMenu_0"_s, u"RecentPairsMenu_0"_s})
            QVERIFY2(button(fixture, name).isVisible(), qPrintable(name));
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        fixture.dialogs().expectFile(fileDialogTitle, file);
        hands::click(&button(fixture, u"OpenDatabase_0"_s), Qt::LeftButton);
        QCOMPARE(fixture.fileName(0), file.toUpper());
        QVERIFY(!button(fixture, u"OpenDatabase_0"_s).isVisible());
        fixture.choose(Command::CloseDatabaseMenu);
        QTRY_VERIFY(button(fixture, u"OpenDatabase_0"_s).isVisible());
    }

    void theButtonsOfAnEmptyPaneOpenInThatPane() {
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture;
        fixture.choose(Command::TwoMenu);
        QCOMPARE(fixture.activePane(), -1);
        fixture.dialogs().expectFile(fileDialogTitle, file);
        hands::click(&button(fixture, u"OpenDatabase_1"_s), Qt::LeftButton);
        QVERIFY(!fixture.isOpen(0));
        QCOMPARE(fixture.fileName(1), file.toUpper());
        QCOMPARE(fixture.activePane(), 1);
    }

    void theEmptyPanesButtonsLeaveTheHintReadableInASmallWindow() {
        EditorFixture fixture;
        for (const QSize size : {QSize(200, 334), QSize(1000, 340), QSize(260, 700), QSize(1400, 1000)}) {
            fixture.window().resize(size);
            hands::turnLoop();
            const QWidget &offers = *fixture.window().findChild<QWidget *>(u"emptyPane_0"_s);
            const QLabel &hint = *fixture.editor().pane(0).controls().hint;
            if (offers.isVisible())
                QVERIFY(fixture.frame(0).rect().contains(offers.geometry()));
            if (offers.isVisible())
                QVERIFY(offers.y() > hint.geometry().center().y());
            QVERIFY(size.height() < 500 || size.width() < 300 || offers.isVisible());
        }
    }

    void theReasonOfAFailedOpenIsShownWholeInANarrowPane() {
        const QString file = path(QString(150, u'M') + u".DDB"_s);
        QDir().mkpath(QFileInfo(file).path());
        QFile bad(file);
        QVERIFY(bad.open(QIODevice::WriteOnly));
        bad.write("nonsense");
        bad.close();
        EditorFixture fixture;
        fixture.window().resize(500, 700);
        fixture.choose(Command::TwoMenu);
        fixture.dialogs().expectFile(fileDialogTitle, file);
        fixture.dialogs().expect(messageNaming({u"Can't load"_s}));
        hands::click(&button(fixture, u"OpenDatabase_0"_s), Qt::LeftButton);
        hands::turnLoop();
        const QLabel &hint = *fixture.editor().pane(0).controls().hint;
        QVERIFY(hint.text().contains(QFileInfo(file).fileName()));
        QVERIFY(fixture.frame(0).rect().contains(hint.geometry()));
        const QFontMetrics metrics = hint.fontMetrics();
        const int lines = 4 + metrics.horizontalAdvance(QFileInfo(file).fileName()) / hint.width();
        QVERIFY2(hint.height() >= lines * metrics.lineSpacing(), qPrintable(QString::number(hint.height())));
        // No line of it is longer than the room.
        const int flags = Qt::TextWordWrap | Qt::TextWrapAnywhere;
        QVERIFY(metrics.boundingRect(QRect(0, 0, hint.width(), 0), flags, hint.text()).height() <= hint.height());
    }

    void aFileDroppedOnAnOpenCellEditorOpens() {
        const QString file = makeFile(u"DROPPED.DDB"_s, {numbers(u"D"_s, {u"1"_s})});
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        fixture.clickLine(0, 0);
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_F2);
        QWidget &editor = fixture.editor().txtEdit(0);
        QVERIFY(editor.isVisible());
        drop(fixture, editor, {file});
        QCOMPARE(fixture.fileName(0), file.toUpper());
        QVERIFY(fixture.isOpen(0));
    }

    void aFileDroppedOnAPaneOpensThere_data() {
        QTest::addColumn<int>("pane");
        QTest::addColumn<bool>("full");
        QTest::newRow("left, empty") << 0 << false;
        QTest::newRow("right, empty") << 1 << false;
        QTest::newRow("left, over a table") << 0 << true;
        QTest::newRow("right, over a table") << 1 << true;
    }

    void aFileDroppedOnAPaneOpensThere() {
        QFETCH(int, pane);
        QFETCH(bool, full);
        const QString file = makeFile(u"DROPPED.DDB"_s, {numbers(u"D"_s, {u"1"_s})});
        EditorFixture fixture;
        if (full)
            openBoth(fixture, {pumps()}, {pumps()});
        else
            fixture.choose(Command::TwoMenu);
        QWidget &target = full ? static_cast<QWidget &>(*fixture.grid(pane).viewport()) : fixture.frame(pane);
        drop(fixture, target, {file});
        QCOMPARE(fixture.fileName(pane), file.toUpper());
        QCOMPARE(fixture.isOpen(1 - pane), full);
        QCOMPARE(fixture.activePane(), pane);
    }

    void twoFilesDroppedOpenSideBySide() {
        const QString left = makeFile(u"A.DDB"_s, {pumps()});
        const QString right = makeFile(u"B.DDB"_s, {valves()});
        EditorFixture fixture;
        drop(fixture, fixture.frame(0), {left, right});
        QVERIFY(fixture.editor().twoPanes());
        QCOMPARE(fixture.fileName(0), left.toUpper());
        QCOMPARE(fixture.fileName(1), right.toUpper());
        QCOMPARE(fixture.activePane(), 0);
        QVERIFY(fixture.list(0).hasFocus());
    }

    void whatIsNoFileOrTooMuchIsNotTaken() {
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture;
        drop(fixture, fixture.frame(0), {QFileInfo(file).path()});
        drop(fixture, fixture.frame(0), {file, file, file});
        drop(fixture, fixture.frame(0), {path(u"MISSING.DDB"_s)});
        QVERIFY(!fixture.isOpen(0));
        QCOMPARE(fixture.activePane(), -1);
    }
};

QTEST_MAIN(EmptyPaneTest)
#include "empty_pane_test.moc"
