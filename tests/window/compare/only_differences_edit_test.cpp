#include "app/desktop/OutsideChanges.h"
#include "tests/window/compare/OnlyDifferencesHands.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPushButton>
#include <QSignalSpy>

#include <cstdio>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// What is changed, copied or closed while only differences are shown.
class OnlyDifferencesEditTest : public OnlyDifferencesWindowTest {
    Q_OBJECT

private Q_SLOTS:
    void anEditGoesToItsRecordAndStaysInSightWhenItMakesItEqual() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        edit(fixture, 1, 2, 1, u"502"_s); // the second row of the view
        QCOMPARE(stored(fixture, 1, 5, 2), QVariant(502));
        QCOMPARE(stored(fixture, 1, 2, 2), QVariant(202));
        QCOMPARE(view(fixture, 1), (QList<QStringList>{{u"2"_s, u"202"_s, u"7"_s}, {u"5"_s, u"502"_s, u"504"_s}}));
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 2}}));
        fixture.choose(Command::CompareAgainMenu);
        QCOMPARE(view(fixture, 1), (QList<QStringList>{{u"2"_s, u"7"_s}}));
        QCOMPARE(view(fixture, 0), (QList<QStringList>{{u"2"_s, u"204"_s}}));
    }

    void tabGoesOnToTheNextShownCell() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        beginEdit(fixture, 0, 1, 1);
        hands::key(&fixture.cellEditor(0), Qt::Key_Tab);
        QCOMPARE(fixture.editedCell().column, 4);
        hands::key(&fixture.cellEditor(0), Qt::Key_Tab);
        QCOMPARE(fixture.editedCell().row, 5);
        QCOMPARE(fixture.editedCell().column, 2);
        hands::key(&fixture.cellEditor(0), Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(fixture.editedCell().row, 2);
    }

    void aCopyTakesTheShownCellsOnly() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_A, Qt::ControlModifier);
        hands::key(&fixture.grid(0), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"202\t204\r502\t504"_s);
        fixture.choose(Command::CopyWithHeadersMenu);
        QVERIFY(QGuiApplication::clipboard()->text().endsWith(u"202\t204\r502\t504"_s));
        QCOMPARE(QGuiApplication::clipboard()->text().count(u'\t'), 3);
    }

    void whatIsNotShownIsNeitherDeletedNorFilledNorCarried() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_A, Qt::ControlModifier);
        strike(fixture, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(stored(fixture, 1, 2, 4), QVariant(204));
        QCOMPARE(stored(fixture, 1, 5, 2), QVariant(502));
        hands::key(&fixture.grid(0), Qt::Key_Delete);
        QCOMPARE(stored(fixture, 0, 5, 4), QVariant(0));
        QCOMPARE(stored(fixture, 0, 3, 2), QVariant(302));
        QCOMPARE(stored(fixture, 0, 5, 3), QVariant(503));
        QCOMPARE(view(fixture, 0).size(), 2);
    }

    void fillDownGoesByShownRecords() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.clickCell(0, 2, 1);
        hands::key(&fixture.grid(0), Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(stored(fixture, 0, 5, 2), QVariant(202));
        QCOMPARE(stored(fixture, 0, 4, 2), QVariant(402));
    }

    void whatGoesByWholeTablesIsDisabledAndSaysWhy() {
        EditorFixture fixture;
        open(fixture);
        QVERIFY(fixture.action(Command::PasteMenu).isEnabled());
        fixture.choose(Command::OnlyDifferencesMenu);
        for (const Command command : {Command::SortFPOP, Command::PasteMenu, Command::PasteAllMenu,
                                      Command::CloneSelectedAreaPOP, Command::CloneSelectedAreaFPOP}) {
            QVERIFY(!fixture.action(command).isEnabled());
            QVERIFY(fixture.action(command).toolTip().startsWith(u"Not while only differences are shown"_s));
        }
        QGuiApplication::clipboard()->setText(u"9"_s);
        fixture.clickCell(0, 1, 1);
        hands::key(&fixture.grid(0), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).TextMatrix(2, 2), u"202"_s);
        QVERIFY2(statusLeft(fixture).startsWith(u"Not while only differences are shown"_s),
                 qPrintable(statusLeft(fixture)));
        fixture.choose(Command::OnlyDifferencesMenu);
        for (const Command command : {Command::SortFPOP, Command::PasteMenu, Command::PasteAllMenu,
                                      Command::CloneSelectedAreaPOP, Command::CloneSelectedAreaFPOP})
            QVERIFY(fixture.action(command).isEnabled());
        hands::key(&fixture.grid(0), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).TextMatrix(fixture.grid(0).Row(), fixture.grid(0).Col()), u"9"_s);
    }

    void closingAPaneEndsIt() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.activate(1);
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(view(fixture, 0).size(), 6);
        QVERIFY(!fixture.action(Command::OnlyDifferencesMenu).isChecked());
        QVERIFY(!fixture.action(Command::OnlyDifferencesMenu).isEnabled());
        fixture.activate(0);
        QVERIFY(fixture.action(Command::SortFPOP).isEnabled());
        QVERIFY(fixture.action(Command::PasteMenu).isEnabled());
    }

    void addedAndRemovedRecordsAreFollowed() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        fixture.activate(0);
        fixture.choose(Command::AddRecordMenu);
        QCOMPARE(view(fixture, 0).last().first(), u"7"_s);
        QCOMPARE(fixture.grid(0).Row(), 7);
        fixture.choose(Command::RemoveRecordMenu);
        QCOMPARE(view(fixture, 0).size(), 2);
        QCOMPARE(fixture.database(0).QirTableRecordsCount(), 6);
    }

    void revertToSavedIsFollowedOnBothSides() {
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        edit(fixture, 0, 5, 2, u"7"_s); // equal now, and stays in sight
        fixture.activate(0);
        fixture.choose(Command::AddRecordMenu);
        fixture.dialogs().expectMessage(u"Do you want to go back to what is saved of '%1' ?"_s.arg(fixture.fileName(0)),
                                        u"?"_s, u"Yes"_s);
        fixture.choose(Command::RevertMenu);
        QCOMPARE(recordsOf(fixture, 0).size(), 6);
        QCOMPARE(view(fixture, 0), (QList<QStringList>{{u"2"_s, u"202"_s, u"204"_s}, {u"5"_s, u"502"_s, u"504"_s}}));
        QCOMPARE(view(fixture, 1), (QList<QStringList>{{u"2"_s, u"202"_s, u"7"_s}, {u"5"_s, u"7"_s, u"504"_s}}));
        QCOMPARE(redCells(fixture, 1), (Cells{{1, 2}, {2, 1}}));
        QVERIFY(fixture.action(Command::OnlyDifferencesMenu).isChecked());
        fixture.choose(Command::OnlyDifferencesMenu);
        QCOMPARE(view(fixture, 0).size(), 6);
        QCOMPARE(redCells(fixture, 1), (Cells{{2, 4}, {5, 2}}));
    }

    void aReloadFromOutsideIsFollowedOnBothSides_data() {
        QTest::addColumn<int>("records");
        QTest::addColumn<int>("shown");
        // The current record stays in sight.
        QTest::newRow("other differences") << 6 << 2;
        QTest::newRow("fewer records") << 3 << 5; // the third differs, those behind it are the left side's alone
        QTest::newRow("none") << 0 << 6;          // shown whole
    }

    void aReloadFromOutsideIsFollowedOnBothSides() {
        QFETCH(int, records);
        QFETCH(int, shown);
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::OnlyDifferencesMenu);
        TableOfTexts table = counted(u"A"_s, records, 4);
        if (records > 0)
            table = changed(table, {{3, 1}});
        const QString other = makeFile(u"OTHER.DDB"_s, {table, counted(u"B"_s, 3, 2)});
        QSignalSpy touched(fixture.window().findChild<OutsideChanges *>(), &OutsideChanges::fileTouched);
        QVERIFY(::rename(qPrintable(other), qPrintable(path(u"RIGHT.DDB"_s))) == 0);
        QTRY_VERIFY(!touched.isEmpty());
        auto &bar = *fixture.window().findChild<NoticeBar *>(u"noticeBar_1"_s);
        QTRY_VERIFY(bar.isVisible());
        hands::click(bar.findChild<QPushButton *>(u"reload"_s), Qt::LeftButton);
        QCOMPARE(recordsOf(fixture, 1).size(), records);
        QCOMPARE(view(fixture, 0).size(), shown);
        QVERIFY(fixture.action(Command::OnlyDifferencesMenu).isChecked());
        if (records == 6) {
            QCOMPARE(view(fixture, 1), QList<QStringList>({{u"2"_s, u"201"_s, u"202"_s}, {u"3"_s, u"7"_s, u"302"_s}}));
            QCOMPARE(view(fixture, 0),
                     QList<QStringList>({{u"2"_s, u"201"_s, u"202"_s}, {u"3"_s, u"301"_s, u"302"_s}}));
        }
        fixture.choose(Command::OnlyDifferencesMenu);
        QCOMPARE(view(fixture, 0).size(), 6);
        QCOMPARE(view(fixture, 1).size(), records);
    }
};

QTEST_MAIN(OnlyDifferencesEditTest)
#include "only_differences_edit_test.moc"
