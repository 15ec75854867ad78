#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/TestTables.h"
#include "tests/window/WindowTest.h"

#include <QPushButton>
#include <QTreeWidget>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

QTreeWidget &keptList(const QDialog &dialog) {
    return *dialog.findChild<QTreeWidget *>(u"keptList"_s);
}

/// The lines of the window: the file, and what it is.
QStringList keptLines(const QDialog &dialog) {
    QStringList lines;
    for (int line = 0; line < keptList(dialog).topLevelItemCount(); ++line) {
        const QTreeWidgetItem *item = keptList(dialog).topLevelItem(line);
        lines.append(item->text(1) + u'|' + item->text(2));
    }
    return lines;
}

bool isEnabled(const QDialog &dialog, const QString &caption) {
    for (const QPushButton *button : dialog.findChildren<QPushButton *>())
        if (QString(button->text()).remove(u'&') == caption)
            return button->isEnabled();
    return false;
}

} // namespace

/// The window of what was kept of files, and what it does with it.
class KeptVersionsTest : public WindowTest {
    Q_OBJECT

    /// Answers the window: looks at its lines, selects one and presses a button.
    static void expectKept(EditorFixture &fixture, QStringList &lines, int line, const QString &button) {
        fixture.dialogs().expect([&lines, line, button](QDialog &dialog) {
            if (dialog.objectName() != u"keptVersions"_s)
                return u"not the kept versions: "_s + dialog.objectName();
            lines = keptLines(dialog);
            QTreeWidget &list = keptList(dialog);
            if (line >= list.topLevelItemCount())
                return u"there are %1 lines"_s.arg(list.topLevelItemCount());
            if (line >= 0)
                hands::click(list.viewport(), Qt::LeftButton, {},
                             list.visualItemRect(list.topLevelItem(line)).center());
            return pressButton(dialog, button);
        });
    }
    void openProtected(EditorFixture &fixture, const QString &name, const QString &password) const {
        fixture.dialogs().expectFile(u"File DDB,WDB,UDB,SDB,IDB"_s, path(name));
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), password);
        fixture.choose(Command::OpenDatabase);
    }
    /// Changes a pump's name, and gives the change up.
    void giveUpAChange(const QString &name, const QString &text, const QString &password = {}) const {
        EditorFixture fixture;
        if (!password.isEmpty())
            openProtected(fixture, name, password);
        else
            fixture.open(path(name));
        edit(fixture, 0, 1, 2, text);
        fixture.dialogs().expectMessage(saveQuestion(path(name).toUpper()), u"QIR Database Editor"_s, u"No"_s);
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(fixture.isOpen(0), false);
    }
    QString keepBeside(const QString &name, const QString &speed) const {
        TableOfTexts table = pumps();
        table.fields[1].texts[0] = speed;
        makeFile(u"OLDER.DDB"_s, {table});
        QFile::rename(path(u"OLDER.DDB"_s), path(name));
        return path(name);
    }
    static QStringList journals() {
        return QDir(qEnvironmentVariable("XDG_STATE_HOME") + u"/qir/journal"_s).entryList(QDir::Files);
    }

private Q_SLOTS:
    void nothingKeptIsSaid() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {pumps()}));
        bool said = false;
        fixture.dialogs().expect([&](QDialog &dialog) {
            for (const QLabel *label : dialog.findChildren<QLabel *>())
                said = said || (label->isVisible() && label->text() == u"No versions are kept."_s);
            for (const QString &button : {u"Open"_s, u"Compare"_s, u"Remove..."_s})
                if (isEnabled(dialog, button))
                    return button + u" is enabled"_s;
            return pressButton(dialog, u"Close"_s);
        });
        fixture.choose(Command::KeptVersionsMenu);
        QVERIFY(said);
    }

    void allThatIsKeptIsListedTheNewestFirst() {
        makeFile(u"A.DDB"_s, {pumps()});
        makeFile(u"B.DDB"_s, {pumps()});
        giveUpAChange(u"B.DDB"_s, u"given up"_s);
        const QString rescue = qEnvironmentVariable("XDG_STATE_HOME") + u"/qir/rescue"_s;
        QVERIFY(QDir().mkpath(rescue));
        QVERIFY(QFile::copy(path(u"A.DDB"_s), rescue + u"/OTHER (rescued 2026-01-02 10.00.00).DDB"_s));
        keepBeside(u"A.DDB (conflict 2026-01-01 10.00.00)"_s, u"older"_s);
        keepBeside(u"B.DDB (conflict 2026-01-03 10.00.00)"_s, u"of a file that is not open"_s);
        EditorFixture fixture(path(u"A.DDB"_s));
        QStringList lines;
        expectKept(fixture, lines, -1, u"Close"_s);
        fixture.choose(Command::KeptVersionsMenu);
        QCOMPARE(lines, QStringList({u"B.DDB|Changes not saved"_s, u"OTHER.DDB|Could not be saved"_s,
                                     u"A.DDB|Another program's version"_s}));
    }

    void oneIsComparedInTheOtherPane() {
        makeFile(u"A.DDB"_s, {pumps()});
        keepBeside(u"A.DDB (conflict 2026-01-01 10.00.00)"_s, u"older"_s);
        EditorFixture fixture(path(u"A.DDB"_s));
        QStringList lines;
        expectKept(fixture, lines, 0, u"Compare"_s);
        fixture.choose(Command::KeptVersionsMenu);
        QVERIFY(fixture.editor().twoPanes());
        QCOMPARE(fixture.fileName(0), path(u"A.DDB"_s));
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
        QCOMPARE(fixture.texts(1)[0][1], u"older"_s);
        QCOMPARE(redCells(fixture, 0), Cells({{1, 2}}));
        QCOMPARE(fixture.activePane(), 0);
    }

    void theOneOfTheRightPaneIsComparedInTheLeftOne() {
        const QString left = makeFile(u"B.DDB"_s, {pumps()});
        const QString right = makeFile(u"A.DDB"_s, {pumps()});
        keepBeside(u"A.DDB (conflict 2026-01-01 10.00.00)"_s, u"older"_s);
        EditorFixture fixture;
        fixture.openBoth(left, right);
        QStringList lines;
        expectKept(fixture, lines, 0, u"Compare"_s);
        fixture.choose(Command::KeptVersionsMenu);
        QCOMPARE(fixture.texts(0)[0][1], u"older"_s);
        QCOMPARE(fixture.texts(1)[0][1], u"Main"_s);
    }

    void oneIsOpenedByADoubleClickWithoutAnyFileOpen() {
        makeFile(u"A.DDB"_s, {pumps()});
        giveUpAChange(u"A.DDB"_s, u"given up"_s);
        EditorFixture fixture;
        fixture.dialogs().expect([&](QDialog &dialog) {
            QTreeWidget &list = keptList(dialog);
            if (isEnabled(dialog, u"Compare"_s))
                return u"there is nothing to compare with"_s;
            hands::doubleClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.topLevelItem(0)).center());
            return QString();
        });
        fixture.dialogs().expect(messageNaming({u"are there again; they are still unsaved"_s}));
        fixture.choose(Command::KeptVersionsMenu);
        QCOMPARE(fixture.texts(0)[0][1], u"given up"_s);
        QVERIFY(fixture.database(0).DtbHasChanged());
        QCOMPARE(journals().size(), 1);
        QVERIFY(!journals()[0].endsWith(u".ended"_s)); // the session goes on with it
        fixture.database(0).setDtbHasChanged(false);
    }

    void changesGivenUpAreComparedWithTheFileAsItIs() {
        makeFile(u"A.DDB"_s, {pumps()});
        giveUpAChange(u"A.DDB"_s, u"given up"_s);
        EditorFixture fixture(path(u"A.DDB"_s));
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
        QStringList lines;
        expectKept(fixture, lines, 0, u"Compare"_s);
        fixture.dialogs().expect(messageNaming({u"are there again; they are still unsaved"_s}));
        fixture.choose(Command::KeptVersionsMenu);
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
        QCOMPARE(fixture.texts(1)[0][1], u"given up"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QVERIFY(fixture.database(1).DtbHasChanged());
        fixture.database(1).setDtbHasChanged(false);
    }

    void changesGivenUpAreOpenedBesideTheirFile() {
        makeFile(u"A.DDB"_s, {pumps()});
        giveUpAChange(u"A.DDB"_s, u"given up"_s);
        EditorFixture fixture(path(u"A.DDB"_s));
        edit(fixture, 0, 2, 2, u"not saved"_s);
        QStringList lines;
        expectKept(fixture, lines, 0, u"Open"_s);
        fixture.dialogs().expect(messageNaming({u"are there again; they are still unsaved"_s}));
        fixture.choose(Command::KeptVersionsMenu);
        QCOMPARE(fixture.texts(0)[1][1], u"not saved"_s);
        QVERIFY(fixture.database(0).DtbHasChanged()); // nothing was written by it
        QCOMPARE(fixture.texts(1)[0][1], u"given up"_s);
        for (const int pane : {0, 1})
            fixture.database(pane).setDtbHasChanged(false);
    }

    void changesToAProtectedFileAreComparedWithTheOneThatIsOpen() {
        makeFile(u"A.DDB"_s, {pumps()}, u"key"_s);
        giveUpAChange(u"A.DDB"_s, u"given up"_s, u"key"_s);
        EditorFixture fixture;
        QStringList lines;
        expectKept(fixture, lines, 0, u"Close"_s);
        fixture.choose(Command::KeptVersionsMenu);
        QCOMPARE(lines, QStringList(u"A protected file|Changes not saved"_s));
        openProtected(fixture, u"A.DDB"_s, u"key"_s);
        expectKept(fixture, lines, 0, u"Compare"_s);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"key"_s);
        fixture.dialogs().expect(messageNaming({u"are there again; they are still unsaved"_s}));
        fixture.choose(Command::KeptVersionsMenu);
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s);
        QCOMPARE(fixture.texts(1)[0][1], u"given up"_s);
        fixture.database(1).setDtbHasChanged(false);
    }

    void changesWhoseFileIsGoneStayAsTheyWere() {
        makeFile(u"A.DDB"_s, {pumps()});
        giveUpAChange(u"A.DDB"_s, u"given up"_s);
        const QStringList before = journals();
        QVERIFY(QFile::remove(path(u"A.DDB"_s)));
        EditorFixture fixture;
        QStringList lines;
        expectKept(fixture, lines, 0, u"Open"_s);
        fixture.dialogs().expectMessage(u"'%1' was not found.\r\nTake it off the recent files?"_s.arg(path(u"A.DDB"_s)),
                                        u"!"_s, u"No"_s);
        fixture.choose(Command::KeptVersionsMenu);
        QVERIFY(!fixture.isOpen(0));
        QCOMPARE(journals(), before);
        QVERIFY(before.size() == 1 && before[0].endsWith(u".ended"_s));
    }

    void changesToAnotherProtectedFileStayAsTheyWere() {
        makeFile(u"A.DDB"_s, {pumps()}, u"key"_s);
        makeFile(u"B.DDB"_s, {pumps()}, u"other"_s);
        giveUpAChange(u"B.DDB"_s, u"given up"_s, u"other"_s);
        const QStringList before = journals();
        EditorFixture fixture;
        openProtected(fixture, u"A.DDB"_s, u"key"_s);
        QStringList lines;
        for (const QString &button : {u"Compare"_s, u"Open"_s}) {
            expectKept(fixture, lines, 0, button);
            fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"key"_s);
            fixture.dialogs().expect(messageNaming({u"that this password does not open"_s}));
            fixture.choose(Command::KeptVersionsMenu);
            QVERIFY(fixture.isOpen(1));
            QCOMPARE(journals(), before);
        }
        expectKept(fixture, lines, 0, u"Close"_s);
        fixture.choose(Command::KeptVersionsMenu);
        QCOMPARE(lines, QStringList(u"A protected file|Changes not saved"_s));
        fixture.activate(0);
        openProtected(fixture, u"B.DDB"_s, u"other"_s);
        QCOMPARE(fixture.texts(0)[0][1], u"Main"_s); // nobody has asked for them
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void changesToADatabaseThatStoodThereBeforeStayAsTheyWere() {
        makeFile(u"A.DDB"_s, {pumps()});
        giveUpAChange(u"A.DDB"_s, u"given up"_s);
        const QStringList before = journals();
        QVERIFY(QFile::remove(path(u"A.DDB"_s)));
        makeFile(u"A.DDB"_s, {valves()});
        EditorFixture fixture;
        QStringList lines;
        expectKept(fixture, lines, 0, u"Open"_s);
        fixture.dialogs().expect(messageNaming({u"another database that stood here before"_s}));
        fixture.choose(Command::KeptVersionsMenu);
        QVERIFY(fixture.isOpen(0));
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(journals(), before);
    }

    void removingAsksAndTheListFollows() {
        makeFile(u"A.DDB"_s, {pumps()});
        const QString kept = keepBeside(u"A.DDB (conflict 2026-01-01 10.00.00)"_s, u"older"_s);
        EditorFixture fixture(path(u"A.DDB"_s));
        QStringList after;
        const QString question = u"Do you want to remove '%1' for good ?"_s.arg(kept);
        fixture.dialogs().expect([&](QDialog &dialog) {
            const QString problem = pressButton(dialog, u"Remove..."_s);
            const bool stayed = QFile::exists(kept);
            fixture.dialogs().expectMessage(question, u"?"_s, u"Yes"_s);
            QString more = pressButton(dialog, u"Remove..."_s);
            after = keptLines(dialog);
            return problem + more + (stayed ? QString() : u"No has removed it"_s) + pressButton(dialog, u"Close"_s);
        });
        fixture.dialogs().expectMessage(question, u"?"_s, u"No"_s);
        fixture.choose(Command::KeptVersionsMenu);
        QVERIFY(!QFile::exists(kept));
        QCOMPARE(after, QStringList());
        QVERIFY(QFile::exists(path(u"A.DDB"_s)));
    }
};

QTEST_MAIN(KeptVersionsTest)
#include "kept_versions_test.moc"
