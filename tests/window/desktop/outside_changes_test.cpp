#include "app/desktop/OpenFiles.h"
#include "db/LastSave.h"
#include "tests/window/desktop/OutsideHands.h"

#include <QApplication>
#include <QLabel>
#include <QScopeGuard>
#include <QSignalSpy>

#include <unistd.h>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// Acts whenever a component tells something: a save does, while it is not over, of what it has met.
class AtNotice : public QObject {
    Q_OBJECT

public:
    AtNotice(const QirDatabase &database, std::function<void()> act)
        : m_act(std::move(act)) {
        const QMetaObject &mine = staticMetaObject;
        m_listens = database.relayNotices(*this, mine.method(mine.indexOfSlot("told(QString)")));
    }
    bool listens() const { return m_listens; }
    int count() const { return m_count; }

public Q_SLOTS:
    void told(const QString & /*text*/) {
        if (m_count++ == 0)
            m_act();
    }

private:
    std::function<void()> m_act;
    bool m_listens = false;
    int m_count = 0;
};

/// What other programs do to an open file.
class OutsideChangesTest : public OutsideWindowTest {
    Q_OBJECT

    /// Calls `act` while a first file is being opened, once the component has read it.
    void onceLoaded(EditorFixture &fixture, const std::function<void()> &act) {
        connect(&fixture.action(Command::CloseDatabaseMenu), &QAction::enabledChanged, this, [act](bool enabled) {
            if (enabled)
                act();
        });
    }
    /// A later version of a file, as somebody else has saved it elsewhere.
    static void makeVersionOf(const QString &file, const QString &version) {
        QVERIFY(QFile::copy(file, version));
        const QirDatabase database = QirDatabase::create();
        database.setLeaveJournal(true);
        QVERIFY(database.LoadDtb(version, QString()));
        database.AddTable(u"Other"_s);
        database.SaveDtb();
    }
    QString changedText() const { return u"'%1' was changed by another program."_s.arg(path(u"A.DDB"_s)); }
    QString goneText() const { return u"'%1' is not on disk any more."_s.arg(path(u"A.DDB"_s)); }
    QString unreadableText() const { return u"'%1' cannot be read any more."_s.arg(path(u"A.DDB"_s)); }
    QString linkText() const { return u"'%1' was changed by another program."_s.arg(path(u"LINK.DDB"_s)); }

private Q_SLOTS:
    void whatAnotherProgramDoesIsToldWhenItChangesTheContent_data() {
        QTest::addColumn<QString>("opened");
        QTest::addColumn<QString>("commands");
        QTest::addColumn<QString>("told");
        const QString file = u"A.DDB"_s;
        const QString link = u"LINK.DDB"_s;
        const QString changed = u"changed"_s;
        const QString gone = u"gone"_s;
        const QString none;
        QTest::newRow("another moved over it") << file << u"mv B.DDB A.DDB"_s << changed;
        QTest::newRow("written in place") << file << u"cat B.DDB > A.DDB"_s << changed;
        QTest::newRow("emptied") << file << u": > A.DDB"_s << changed;
        QTest::newRow("cut short") << file << u"truncate -s 100 A.DDB"_s << changed;
        QTest::newRow("a byte changed") << file << u"printf X | dd of=A.DDB bs=1 seek=60 conv=notrunc"_s << changed;
        QTest::newRow("appended to") << file << u"printf X >> A.DDB"_s << changed;
        QTest::newRow("through another link") << file << u"ln A.DDB H; cat B.DDB > H"_s << changed;
        QTest::newRow("a link in its place") << file << u"rm A.DDB; ln -s B.DDB A.DDB"_s << changed;
        QTest::newRow("a link led elsewhere") << link << u"ln -sfn B.DDB LINK.DDB"_s << changed;
        QTest::newRow("a link's target replaced") << link << u"mv B.DDB A.DDB"_s << changed;
        QTest::newRow("many changes in a row")
            << file << u"for i in $(seq 200); do cat SAME.DDB > A.DDB; cat B.DDB > A.DDB; done"_s << changed;
        QTest::newRow("removed") << file << u"rm A.DDB"_s << gone;
        QTest::newRow("renamed") << file << u"mv A.DDB X"_s << gone;
        QTest::newRow("its folder renamed") << file << u"mv ../FILES ../GONE"_s << gone;
        QTest::newRow("its folder removed") << file << u"rm -r ../FILES"_s << gone;
        QTest::newRow("a folder in its place") << file << u"rm A.DDB; mkdir A.DDB"_s << gone;
        QTest::newRow("a pipe in its place") << file << u"rm A.DDB; mkfifo A.DDB"_s << gone;
        QTest::newRow("a link to itself in its place") << file << u"rm A.DDB; ln -s A.DDB A.DDB"_s << u"unreadable"_s;
        QTest::newRow("touched only") << file << u"touch A.DDB"_s << none;
        QTest::newRow("its permissions") << file << u"chmod 400 A.DDB"_s << none;
        QTest::newRow("the same written again") << file << u"cp A.DDB K; cat K > A.DDB"_s << none;
        QTest::newRow("the same moved over it") << file << u"cp A.DDB K; mv K A.DDB"_s << none;
        QTest::newRow("removed and restored") << file << u"cp A.DDB K; rm A.DDB; cp K A.DDB"_s << none;
        QTest::newRow("the same tables under a new save") << file << u"mv SAME.DDB A.DDB"_s << none;
        QTest::newRow("many changes and back")
            << file << u"cp A.DDB K; for i in $(seq 200); do cat B.DDB > A.DDB; cat K > A.DDB; done"_s << none;
    }

    void whatAnotherProgramDoesIsToldWhenItChangesTheContent() {
        QFETCH(QString, opened);
        QFETCH(QString, commands);
        QFETCH(QString, told);
        makeFiles();
        QVERIFY(QFile::link(u"A.DDB"_s, path(u"LINK.DDB"_s)));
        EditorFixture fixture(path(opened));
        QVERIFY(fixture.isOpen(0));
        QSignalSpy touched(fixture.window().findChild<OutsideChanges *>(), &OutsideChanges::fileTouched);
        elsewhere(commands);
        QTRY_VERIFY(!touched.isEmpty());
        QTRY_COMPARE(bar(fixture, 0).isVisible(), !told.isEmpty());
        if (told == u"changed"_s)
            QCOMPARE(bar(fixture, 0).text(), opened == u"A.DDB"_s ? changedText() : linkText());
        else if (!told.isEmpty())
            QCOMPARE(bar(fixture, 0).text(), told == u"gone"_s ? goneText() : unreadableText());
        for (const QString &button : {u"reload"_s, u"compare"_s})
            QCOMPARE(offers(fixture, 0, button), told == u"changed"_s);
        QCOMPARE(offers(fixture, 0, u"keep"_s), !told.isEmpty());
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.texts(0).value(0).value(0), u"1200"_s); // the first table, Pumps, as it was
    }

    void aFileThatMayNotBeReadAnyMoreIsTold() {
        if (geteuid() == 0)
            QSKIP("root may read everything");
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"chmod 000 A.DDB; touch A.DDB"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), unreadableText());
        QVERIFY(!offers(fixture, 0, u"reload"_s));
        elsewhere(u"chmod 600 A.DDB"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' is back on disk as it was."_s.arg(file));
    }

    /// Needs a user who may mount, and a folder for temporary files in which nobody else does anything, since folders
    /// above the file are watched too: `outside_changes_disks` of ctest has both. A disk that is let go while its files
    /// are still in use, as this one in KEPT, tells the watches on them nothing: only the list of mounts does.
    void aDiskThatIsUnmountedAndMountedAgainIsTold() {
        makeFile(u"DISK/UNDER"_s, {pumps()}); // the folder
        QProcess mount;
        mount.start(u"mount"_s, {u"-t"_s, u"tmpfs"_s, u"tmpfs"_s, path(u"DISK"_s)});
        QVERIFY(mount.waitForFinished());
        if (mount.exitCode() != 0)
            QSKIP("nothing may be mounted here");
        const QTemporaryDir kept;
        const auto command = [&](const QString &line) {
            elsewhere(QString(line).replace(u"KEPT"_s, u'\'' + kept.path() + u'\''));
        };
        const auto unmount =
            qScopeGuard([&] { command(u"for disk in DISK KEPT; do umount -l $disk || true; done"_s); });
        makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"5"_s})});
        const QString file = makeFile(u"DISK/A.DDB"_s, {numbers(u"T"_s, {u"1"_s}), pumps()});
        command(u"cp DISK/A.DDB SAME.DDB; mount --bind DISK KEPT"_s);
        EditorFixture fixture(file);
        // Once this has been told and taken back nothing else is under way.
        elsewhere(u"cat B.DDB > DISK/A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        elsewhere(u"cat SAME.DDB > DISK/A.DDB"_s);
        QTRY_VERIFY(!bar(fixture, 0).isVisible());
        command(u"umount DISK"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' is not on disk any more."_s.arg(file));
        QVERIFY(!offers(fixture, 0, u"reload"_s));
        command(u"mount --bind KEPT DISK"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' is back on disk as it was."_s.arg(file));
        command(u"umount DISK"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' is not on disk any more."_s.arg(file));
        command(u"cat B.DDB > KEPT/A.DDB; mount --bind KEPT DISK"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' is back on disk with other contents."_s.arg(file));
        QVERIFY(offers(fixture, 0, u"reload"_s));
    }

    void theSameTablesUnderANewSaveBesideUnsavedChangesAreNotTold() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        if (!fixture.database(0).hasColumns())
            QSKIP("what was saved is known by its columns alone; without them every new content is told");
        fixture.clickLine(0, 1);
        change(fixture, 0, u"77"_s);
        QSignalSpy touched(fixture.window().findChild<OutsideChanges *>(), &OutsideChanges::fileTouched);
        elsewhere(u"mv SAME.DDB A.DDB"_s);
        QTRY_VERIFY(!touched.isEmpty());
        hands::turnLoop();
        QVERIFY(!bar(fixture, 0).isVisible());
        QVERIFY(fixture.database(0).DtbHasChanged());
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), changedText());
        fixture.database(0).setDtbHasChanged(false);
    }

    void aBarShowsAllOfItselfInEveryWidth_data() {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("folders");
        for (const int width : {1200, 560, 420})
            for (const int folders : {0, 6})
                QTest::addRow("%d pixels, %d folders", width, folders) << width << folders;
    }
    void aBarShowsAllOfItselfInEveryWidth() {
        QFETCH(const int, width);
        QFETCH(const int, folders);
        const QString deep = QString(40, u'D') + u'/';
        const QString file = makeFile(deep.repeated(folders) + u"A.DDB"_s, {pumps()});
        EditorFixture fixture;
        fixture.openBoth(file, file);
        fixture.window().resize(width, 700);
        hands::turnLoop();
        elsewhere(u"printf X >> '%1'"_s.arg(file));
        for (const int pane : {0, 1}) {
            QTRY_VERIFY(bar(fixture, pane).isVisible());
            hands::turnLoop();
            QVERIFY(bar(fixture, pane).text().contains(file));
            QCOMPARE(fixture.window().width(), width);
            const QRect inside = bar(fixture, pane).rect();
            const QRect place(bar(fixture, pane).mapTo(&fixture.window(), QPoint()), inside.size());
            QVERIFY(fixture.window().rect().contains(place));
            const auto *text = bar(fixture, pane).findChild<QLabel *>(u"noticeText"_s);
            QVERIFY(inside.contains(text->geometry()));
            const QFontMetrics metrics = text->fontMetrics();
            const int lines = 1 + (metrics.horizontalAdvance(text->text()) - 1) / text->width();
            QVERIFY2(text->height() >= lines * metrics.lineSpacing(), qPrintable(QString::number(text->height())));
            for (const QPushButton *button : bar(fixture, pane).findChildren<QPushButton *>()) {
                QVERIFY2(!button->isVisible() || inside.contains(button->geometry()), qPrintable(button->text()));
                QVERIFY(!button->isVisible() || button->width() >= button->sizeHint().width());
            }
            QVERIFY(place.bottom() <= fixture.frame(pane).mapTo(&fixture.window(), QPoint()).y());
        }
        QVERIFY(bar(fixture, 0).mapTo(&fixture.window(), bar(fixture, 0).rect().topRight()).x() <=
                bar(fixture, 1).mapTo(&fixture.window(), QPoint()).x());
    }

    void aChangeWhileTheFileIsBeingOpenedIsTold() {
        const QString file = makeFiles();
        EditorFixture fixture;
        bool changed = false;
        onceLoaded(fixture, [&] {
            elsewhere(u"cat B.DDB > A.DDB"_s);
            changed = true;
        });
        fixture.open(file);
        QVERIFY(changed);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        QCOMPARE(bar(fixture, 0).text(), changedText());
        QVERIFY(offers(fixture, 0, u"reload"_s));
    }

    void theSameWrittenWhileTheFileIsBeingOpenedIsNotTold() {
        const QString file = makeFiles();
        EditorFixture fixture;
        QSignalSpy touched(fixture.window().findChild<OutsideChanges *>(), &OutsideChanges::fileTouched);
        onceLoaded(fixture, [&] { elsewhere(u"cp A.DDB K; cat K > A.DDB"_s); });
        fixture.open(file);
        QTRY_COMPARE(touched.size(), 2); // opened, and looked at again
        QVERIFY(!bar(fixture, 0).isVisible());
    }

    void twinsWhoseNamesDifferInCaseAreToldApart() {
        makeTwins(u"a.ddb"_s, {}, u"A.ddb"_s);
        makeFile(u"B.DDB"_s, {numbers(u"T"_s, {u"5"_s})});
        EditorFixture fixture;
        fixture.openBoth(path(u"a.ddb"_s), path(u"A.ddb"_s));
        QCOMPARE(openFilePath(fixture.editor(), 0), path(u"a.ddb"_s));
        QCOMPARE(openFilePath(fixture.editor(), 1), path(u"A.ddb"_s));
        elsewhere(u"cat A.ddb > K; touch -r a.ddb K; mv K a.ddb"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' was changed by another program."_s.arg(path(u"a.ddb"_s)));
        elsewhere(u"cat B.DDB > a.ddb"_s);
        QTRY_VERIFY(fileBytes(path(u"a.ddb"_s)) == fileBytes(path(u"B.DDB"_s)));
        press(fixture, 0, u"reload"_s);
        QCOMPARE(fixture.database(0).QIRTableName(1), u"T"_s);
        QCOMPARE(fixture.database(1).QIRTableName(1), u"Valves"_s);
        QVERIFY(!bar(fixture, 1).isVisible());
    }

    void aFileThatComesBackIsTold() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"mv A.DDB K"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), goneText());
        elsewhere(u"mv K A.DDB"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' is back on disk as it was."_s.arg(file));
        QVERIFY(!offers(fixture, 0, u"keep"_s));
        elsewhere(u"rm A.DDB"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), goneText());
        elsewhere(u"cp B.DDB A.DDB"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' is back on disk with other contents."_s.arg(file));
        QVERIFY(offers(fixture, 0, u"reload"_s));
    }

    void aFileOfAFolderThatWasRemovedIsFoundAgain() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"mv ../FILES ../GONE"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), goneText());
        const QString folder = QFileInfo(file).path();
        QVERIFY(QDir().rename(QFileInfo(folder).path() + u"/GONE"_s, folder));
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' is back on disk as it was."_s.arg(file));
    }

    void whatChangesBackIsToldNoMore() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"cp A.DDB K; cat B.DDB > A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        elsewhere(u"cat K > A.DDB"_s);
        QTRY_VERIFY(!bar(fixture, 0).isVisible());
    }

    void aBarStandsAboveItsPaneInEveryModeAndWay_data() {
        QTest::addColumn<Qt::LayoutDirection>("way");
        QTest::newRow("left to right") << Qt::LeftToRight;
        QTest::newRow("right to left") << Qt::RightToLeft;
    }
    void aBarStandsAboveItsPaneInEveryModeAndWay() {
        QFETCH(const Qt::LayoutDirection, way);
        QGuiApplication::setLayoutDirection(way);
        const QScopeGuard back([] { QGuiApplication::setLayoutDirection(Qt::LeftToRight); });
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"mv B.DDB A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        fixture.choose(Command::TwoMenu);
        hands::turnLoop();
        const auto middle = [&](const QWidget &widget) {
            return widget.mapTo(&fixture.window(), widget.rect().center()).x();
        };
        const int half = fixture.window().width() / 2;
        QVERIFY(middle(bar(fixture, 0)) < half - 50);
        QVERIFY(middle(fixture.frame(0)) < half);
    }

    void closingThePaneClosesItsBarAndDecidesNothing() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        elsewhere(u"cat B.DDB > A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 0).isVisible());
        fixture.choose(Command::CloseDatabaseMenu);
        QVERIFY(!bar(fixture, 0).isVisible());
        QCOMPARE(savedValue(file, u"T"_s), u"5"_s);
        elsewhere(u"rm A.DDB"_s);
        hands::turnLoop();
        QVERIFY(!bar(fixture, 0).isVisible());
    }

    void theEditorsOwnSaveIsNoOutsideChangeButIsOneForTheOtherPane() {
        const QString file = makeFiles();
        EditorFixture fixture;
        fixture.openBoth(file, file);
        fixture.clickLine(0, 1);
        change(fixture, 0, u"77"_s);
        QSignalSpy touched(fixture.window().findChild<OutsideChanges *>(), &OutsideChanges::fileTouched);
        fixture.choose(Command::SaveMenu);
        QTRY_VERIFY(bar(fixture, 1).isVisible());
        QCOMPARE(bar(fixture, 1).text(), changedText());
        QTRY_VERIFY(touched.size() >= 2);
        QVERIFY(!bar(fixture, 0).isVisible());
        press(fixture, 1, u"reload"_s);
        QCOMPARE(fixture.texts(1).value(0).value(0), u"77"_s);
    }

    void saveAsFollowsTheNewFile() {
        const QString file = makeFiles();
        EditorFixture fixture(file);
        fixture.dialogs().expectFile(fileDialogTitle, path(u"NEW.DDB"_s));
        fixture.choose(Command::SaveAsMenu);
        elsewhere(u"rm A.DDB"_s);
        elsewhere(u"cat B.DDB > NEW.DDB"_s);
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' was changed by another program."_s.arg(path(u"NEW.DDB"_s)));
    }

    void aChangeInTheMomentOfASaveIsTold_data() {
        QTest::addColumn<QString>("commands");
        QTest::addColumn<bool>("told");
        QTest::newRow("another moved over it") << u"cp B.DDB K; mv K VERSION.DDB"_s << true;
        QTest::newRow("written in place") << u"cat B.DDB > VERSION.DDB"_s << true;
        QTest::newRow("appended to") << u"printf X >> VERSION.DDB"_s << true;
        QTest::newRow("the same moved over it") << u"cp VERSION.DDB K; mv K VERSION.DDB"_s << false;
        QTest::newRow("nothing") << u":"_s << false;
    }
    void aChangeInTheMomentOfASaveIsTold() {
        QFETCH(const QString, commands);
        QFETCH(const bool, told);
        const QString file = makeFiles();
        const QString version = path(u"VERSION.DDB"_s);
        makeVersionOf(file, version);
        EditorFixture fixture(file);
        if (told && !lastSaveStands(fixture.database(0)))
            QSKIP("a component that cannot tell its own save from another's");
        // The version that stands there is kept, and that told when the new one has taken its place.
        const AtNotice another(fixture.database(0), [&] { elsewhere(commands); });
        QVERIFY(another.listens());
        QSignalSpy touched(fixture.window().findChild<OutsideChanges *>(), &OutsideChanges::fileTouched);
        fixture.dialogs().expect([&](QDialog &dialog) {
            dialog.findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(version);
            fixture.dialogs().expect([](QDialog &question) { return pressButton(question, u"Yes"_s); });
            fixture.dialogs().expect(messageNaming({u"the version that stood there is kept as"_s}));
            return pressButton(dialog, u"Save"_s);
        });
        fixture.choose(Command::SaveAsMenu);
        QCOMPARE(another.count(), 1);
        QTRY_VERIFY(touched.size() >= 2 || commands == u":"_s);
        QTRY_COMPARE(bar(fixture, 0).isVisible(), told);
        if (told)
            QCOMPARE(bar(fixture, 0).text(), u"'%1' was changed by another program."_s.arg(version));
    }

    void aMarkOfThisMomentIsNotTrusted() {
        constexpr std::int64_t second = 1'000'000'000;
        const FileMark mark{.device = 1, .inode = 2, .size = 3, .modified = 0, .changed = 100 * second + 5};
        QVERIFY(!isSettled(mark, mark.changed));
        QVERIFY(!isSettled(mark, mark.changed + second / 100));
        QVERIFY(!isSettled(mark, mark.changed - second)); // by another machine's clock
        QVERIFY(isSettled(mark, mark.changed + second / 10));
        FileMark coarse = mark;
        coarse.changed = 100 * second; // a disk that counts whole seconds
        QVERIFY(!isSettled(coarse, coarse.changed + second));
        QVERIFY(isSettled(coarse, coarse.changed + 3 * second));
        QVERIFY(isSettled({}, 0)); // nothing is there
    }

    void theBarStandsAboveItsPaneAndNothingIsCovered() {
        const QString file = makeFiles();
        EditorFixture fixture;
        fixture.openBoth(path(u"B.DDB"_s), file);
        const int before = fixture.frame(1).mapTo(&fixture.window(), QPoint()).y();
        elsewhere(u"rm A.DDB"_s);
        QTRY_VERIFY(bar(fixture, 1).isVisible());
        const auto placeOf = [&](const QWidget &widget) {
            return QRect(widget.mapTo(&fixture.window(), QPoint()), widget.size());
        };
        QTRY_VERIFY(placeOf(bar(fixture, 1)).bottom() <= placeOf(fixture.frame(1)).top()); // the panes make room
        const QRect place = placeOf(bar(fixture, 1));
        const QRect frame = placeOf(fixture.frame(1));
        QVERIFY(place.left() >= fixture.window().width() / 2 - 20);
        QVERIFY(frame.bottom() <= fixture.window().height());
        QVERIFY(frame.top() > before);
        press(fixture, 1, u"dismiss"_s);
        QTRY_COMPARE(fixture.frame(1).mapTo(&fixture.window(), QPoint()).y(), before);
    }

    void theBarsOwnTextIsShownPlainAndCanBeSelected() {
        const QString file = makeFile(u"A<B>&C.DDB"_s, {pumps()});
        EditorFixture fixture(file);
        QVERIFY(QFile::remove(file));
        QTRY_COMPARE(bar(fixture, 0).text(), u"'%1' is not on disk any more."_s.arg(file));
        QCOMPARE(bar(fixture, 0).accessibleName(), bar(fixture, 0).text());
        const auto *text = bar(fixture, 0).findChild<QLabel *>(u"noticeText"_s);
        QCOMPARE(text->textFormat(), Qt::PlainText);
        QVERIFY(text->textInteractionFlags() & Qt::TextSelectableByMouse);
    }

    void aComponentWithoutTheOptionalMembersIsWatchedToo() {
        const UseFake fake;
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(file);
        QFile changed(file);
        QVERIFY(changed.open(QIODevice::Append));
        changed.write("x");
        changed.close();
        QTRY_VERIFY(bar(fixture, 0).isVisible());
    }
};

QTEST_MAIN(OutsideChangesTest)
#include "outside_changes_test.moc"
