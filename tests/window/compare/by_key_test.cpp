#include "base/state/Remembered.h"
#include "tests/window/compare/ByKeyHands.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTimer>

#include <algorithm>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// The window of differences by key beside the real main window.
class ByKeyTest : public ByKeyWindowTest {
    Q_OBJECT

private Q_SLOTS:
    void aProposedKeyIsComputedAsTheWindowOpens() {
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(rows(fixture), (QList<QStringList>{{u"P-1"_s, u"removed"_s, QString(), u"record 1"_s, QString()},
                                                    {u"P-2"_s, u"changed"_s, u"Speed"_s, u"700"_s, u"800"_s},
                                                    {u"P-4"_s, u"added"_s, QString(), QString(), u"record 3"_s}}));
        QCOMPARE(status(fixture), u"1 added, 1 removed, 1 changed, 0 moved."_s);
        QCOMPARE(changes(fixture).headerData(0, Qt::Horizontal).toString(), u"Key"_s);
    }

    void whereNoFieldIsUniqueNoneIsProposed() {
        EditorFixture fixture;
        open(fixture, listOf(u"Pumps"_s, {u"a"_s, u"a"_s}), listOf(u"Pumps"_s, {u"a"_s, u"b"_s}));
        QCOMPARE(rows(fixture), QList<QStringList>());
        QCOMPARE(status(fixture), u"No field has values that are unique on both sides. Check the fields of the key."_s);
        tick(fixture, u"keyFields"_s, 0);
        QVERIFY2(status(fixture).contains(u"on the left the records 1 and 2 have the same"_s),
                 qPrintable(status(fixture)));
    }

    void aKeyThatIsUncheckedIsNotSaidToBeNotUnique() {
        EditorFixture fixture;
        open(fixture);
        tick(fixture, u"keyFields"_s, 0);
        QCOMPARE(rows(fixture), QList<QStringList>());
        QCOMPARE(status(fixture), u"No field of the key is checked."_s);
    }

    void aCheckedKeyIsRememberedForTheTwoFiles() {
        {
            EditorFixture fixture;
            open(fixture);
            tick(fixture, u"keyFields"_s, 1);
            QCOMPARE(status(fixture), u"2 added, 2 removed, 0 changed, 0 moved."_s);
        }
        EditorFixture again;
        again.dialogs().allow(u"differencesByKey"_s);
        again.openBoth(path(u"LEFT.DDB"_s), path(u"RIGHT.DDB"_s));
        again.choose(Command::DifferencesByKeyMenu);
        QCOMPARE(status(again), u"2 added, 2 removed, 0 changed, 0 moved."_s);
    }

    void ofProtectedFilesNoKeyIsKept() {
        {
            EditorFixture fixture;
            fixture.dialogs().allow(u"differencesByKey"_s);
            const QString left = makeFile(u"LEFT.DDB"_s, {leftPumps()}, u"secret"_s);
            const QString right = makeFile(u"RIGHT.DDB"_s, {rightPumps()});
            fixture.choose(Command::TwoMenu);
            fixture.activate(1);
            fixture.open(right);
            fixture.activate(0);
            fixture.dialogs().expectFile(fileDialogTitle, left);
            fixture.dialogs().expect([](QDialog &dialog) {
                hands::type(dialog.findChild<QLineEdit *>(), u"secret"_s);
                dialog.accept();
                return QString();
            });
            fixture.choose(Command::OpenDatabase);
            if (!fixture.isOpen(0))
                QSKIP("the password dialog is answered otherwise");
            fixture.choose(Command::DifferencesByKeyMenu);
            tick(fixture, u"keyFields"_s, 1);
        }
        const Remembered remembered;
        QCOMPARE(remembered.keyFields({path(u"LEFT.DDB"_s), path(u"RIGHT.DDB"_s)}, u"Pumps"_s), QStringList());
    }

    void anIgnoredFieldIsNoDifference() {
        EditorFixture fixture;
        open(fixture);
        tick(fixture, u"keyedIgnored"_s, 1);
        QCOMPARE(status(fixture), u"1 added, 1 removed, 0 changed, 0 moved."_s);
        tick(fixture, u"keyedIgnored"_s, 0); // the key is compared all the same
        QCOMPARE(status(fixture), u"1 added, 1 removed, 0 changed, 0 moved."_s);
    }

    void numbersWithinTheToleranceAreEqual() {
        EditorFixture fixture;
        open(fixture);
        auto &tolerance = control<QLineEdit>(fixture, u"keyedTolerance"_s);
        hands::click(&tolerance, Qt::LeftButton);
        hands::type(&tolerance, u"100"_s);
        QTRY_COMPARE(status(fixture), u"1 added, 1 removed, 0 changed, 0 moved."_s);
        hands::key(&tolerance, QKeySequence::SelectAll);
        hands::type(&tolerance, u"99.5"_s);
        QTRY_COMPARE(status(fixture), u"1 added, 1 removed, 1 changed, 0 moved."_s);
    }

    void caseAndBlanksDoNotCountOnRequest() {
        EditorFixture fixture;
        TableOfTexts other = leftPumps();
        other.fields[0].texts = {u"p-1"_s, u"P -2"_s, u"P-3"_s};
        open(fixture, leftPumps(), other);
        QCOMPARE(status(fixture), u"2 added, 2 removed, 0 changed, 0 moved."_s);
        hands::click(&control<QCheckBox>(fixture, u"keyedCase"_s), Qt::LeftButton, {}, QPoint(8, 8));
        QCOMPARE(status(fixture), u"1 added, 1 removed, 0 changed, 0 moved."_s);
        hands::click(&control<QCheckBox>(fixture, u"keyedBlanks"_s), Qt::LeftButton, {}, QPoint(8, 8));
        QCOMPARE(status(fixture), u"0 added, 0 removed, 0 changed, 0 moved."_s);
    }

    void aDoubleClickBringsBothGridsToTheRecords() {
        EditorFixture fixture;
        open(fixture);
        auto &view = control<QTableView>(fixture, u"keyedChanges"_s);
        hands::doubleClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(view.model()->index(1, 2)).center());
        QCOMPARE(fixture.grid(0).selection(), singleCell(2, 2));
        QCOMPARE(fixture.grid(1).selection(), singleCell(1, 2));
    }

    void whereTheGridsStandApartTheWalkGoesOnInTheActiveOne() {
        const TableOfTexts left{u"T"_s,
                                {{u"Tag"_s, FieldType::Text, {u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s, u"F"_s}},
                                 {u"V"_s, FieldType::Long, {u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s}}}};
        const TableOfTexts right{u"T"_s,
                                 {{u"Tag"_s, FieldType::Text, {u"A"_s, u"F"_s, u"C"_s, u"D"_s}},
                                  {u"V"_s, FieldType::Long, {u"1"_s, u"7"_s, u"8"_s, u"9"_s}}}};
        EditorFixture fixture;
        open(fixture, left, right);
        fixture.activate(1);
        QList<QStringList> all = rows(fixture);
        const auto row = static_cast<int>(
            std::ranges::find(all, (QStringList{u"F"_s, u"changed"_s, u"V"_s, u"6"_s, u"7"_s})) - all.begin());
        auto &view = control<QTableView>(fixture, u"keyedChanges"_s);
        hands::doubleClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(view.model()->index(row, 2)).center());
        QCOMPARE(fixture.grid(0).Row(), 6);
        QCOMPARE(fixture.grid(1).Row(), 2);
        fixture.choose(Command::NextDifferenceMenu);
        QCOMPARE(fixture.grid(1).Row(), 3);
        QCOMPARE(fixture.grid(0).Row(), 3);
    }

    void copiedValuesStayInTheirColumns() {
        TableOfTexts left = leftPumps();
        left.fields[0].texts[1] = u"P\t2"_s;
        left.fields.push_back({u"Note"_s, FieldType::Text, {u"a"_s, u"one\ntwo \"x\""_s, u"c"_s}});
        TableOfTexts right = left;
        right.fields[2].texts[1] = u"plain \"y\""_s;
        EditorFixture fixture;
        open(fixture, left, right);
        auto &view = control<QTableView>(fixture, u"keyedChanges"_s);
        view.setFocus();
        view.selectRow(0);
        hands::key(&view, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 u"\"P\t2\"\tchanged\tNote\t\"one\ntwo \"\"x\"\"\"\tplain \"y\"\n"_s);
    }

    void anEditIsFollowed() {
        EditorFixture fixture;
        open(fixture);
        edit(fixture, 1, 1, 2, u"700"_s);
        QVERIFY(!status(fixture).startsWith(u"1 added, 1 removed, 1 changed"_s));
        QTRY_COMPARE(status(fixture), u"1 added, 1 removed, 0 changed, 0 moved."_s);
    }

    void closingAPaneEndsIt() {
        EditorFixture fixture;
        open(fixture);
        fixture.activate(1);
        fixture.choose(Command::CloseDatabaseMenu);
        QVERIFY(!window(fixture)->isVisible());
        QCOMPARE(rows(fixture), QList<QStringList>());
    }

    void aReportOfTheWindowGoesByItsKey() {
        EditorFixture fixture;
        open(fixture);
        fixture.dialogs().expectFile(u"Report"_s, path(u"keyed.html"_s));
        push(fixture, u"keyedReport"_s);
        const QByteArray page = fileBytes(path(u"keyed.html"_s));
        QVERIFY(page.contains("P-4"));
        QVERIFY(page.contains("1500"));
        QVERIFY2(!page.contains("900"), "the record that both have is no difference by key");
    }

    void theSameFileOnBothSidesHasNoChanges() {
        EditorFixture fixture;
        fixture.dialogs().allow(u"differencesByKey"_s);
        const QString file = makeFile(u"LEFT.DDB"_s, {leftPumps()});
        fixture.openBoth(file, file);
        fixture.choose(Command::DifferencesByKeyMenu);
        QCOMPARE(status(fixture), u"0 added, 0 removed, 0 changed, 0 moved."_s);
        QVERIFY(!control<QCheckBox>(fixture, u"keyedTickAll"_s).isEnabled());
    }

    void theReadingOfTheTablesCanBeStopped() {
        const UseFake fake;
        fake->setLogging(false);
        EditorFixture fixture;
        fixture.dialogs().allow(u"differencesByKey"_s);
        openBoth(fixture, {counted(u"Pumps"_s, 20'000, 2)}, {counted(u"Pumps"_s, 20'000, 2)});
        bool pressed = false;
        fake->setHook([&](const FakeCall &call) {
            QDialog *dialog = window(fixture);
            if (pressed || dialog == nullptr || !dialog->isVisible() || call.member != u"QIRTableRecordSetByIndex"_s)
                return;
            pressed = true;
            QTimer::singleShot(0, dialog, [this, &fixture] { push(fixture, u"keyedCancel"_s); });
        });
        fixture.choose(Command::DifferencesByKeyMenu);
        fake->setHook({});
        QVERIFY(pressed);
        QCOMPARE(status(fixture), u"Stopped. The tables were not read."_s);
        QCOMPARE(rows(fixture), QList<QStringList>());
        QVERIFY(!control<QPushButton>(fixture, u"keyedCancel"_s).isVisible());
        push(fixture, u"keyedAgain"_s);
        QCOMPARE(status(fixture), u"0 added, 0 removed, 0 changed, 0 moved."_s);
    }

    void tablesThatCannotBeReadAreToldOf() {
        const UseFake fake;
        EditorFixture fixture;
        fixture.dialogs().allow(u"differencesByKey"_s);
        openBoth(fixture, {leftPumps()}, {rightPumps()});
        fake->failOn(u"QIRTableRecordSetByIndex"_s, u"the disk is gone"_s);
        fixture.dialogs().expect(messageNaming({u"the disk is gone"_s}));
        fixture.choose(Command::DifferencesByKeyMenu);
        fake->stopFailing();
        QCOMPARE(status(fixture), u"The tables could not be read."_s);
        push(fixture, u"keyedAgain"_s);
        QCOMPARE(status(fixture), u"1 added, 1 removed, 1 changed, 0 moved."_s);
    }

    void aTableThatIsRemovedIsComparedNoMore() {
        EditorFixture fixture;
        fixture.dialogs().allow(u"differencesByKey"_s);
        openBoth(fixture, {leftPumps(), valves()}, {rightPumps(), valves()});
        fixture.choose(Command::DifferencesByKeyMenu);
        QCOMPARE(rows(fixture).size(), 3);
        fixture.activate(1);
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"Yes"_s); });
        fixture.choose(Command::RemoveTableMenu);
        QVERIFY(!fixture.lines(1).contains(u"Pumps"_s));
        hands::doubleClick(control<QTableView>(fixture, u"keyedChanges"_s).viewport(), Qt::LeftButton, {}, {20, 10});
        QTRY_VERIFY2(!status(fixture).startsWith(u"1 added, 1 removed, 1 changed"_s) &&
                         status(fixture) != u"The tables have changed since they were compared."_s,
                     qPrintable(status(fixture)));
        for (const QStringList &row : rows(fixture))
            QVERIFY2(!row.contains(u"P-1"_s), "a change of the table that is gone");
    }

    void tablesWithoutFieldsHaveNoneInCommon() {
        EditorFixture fixture;
        open(fixture, {u"Pumps"_s, {}}, {u"Pumps"_s, {}});
        QCOMPARE(status(fixture), u"The tables have no field in common."_s);
        QCOMPARE(rows(fixture), QList<QStringList>());
        QVERIFY(!control<QPushButton>(fixture, u"keyedCarryRight"_s).isEnabled());
    }

    void tablesWithoutFieldsOnOneSideHaveNoneInCommon() {
        EditorFixture fixture;
        open(fixture, {u"Pumps"_s, {}}, rightPumps());
        QCOMPARE(status(fixture), u"The tables have no field in common."_s);
    }

    void tablesWithoutRecordsHaveNoChanges() {
        TableOfTexts empty = leftPumps();
        for (FieldOfTexts &field : empty.fields)
            field.texts.clear();
        EditorFixture fixture;
        open(fixture, empty, empty);
        QCOMPARE(rows(fixture), QList<QStringList>());
        QVERIFY(!control<QCheckBox>(fixture, u"keyedTickAll"_s).isEnabled());
        fixture.activate(0);
        fixture.choose(Command::AddRecordMenu);
        QTRY_COMPARE(rows(fixture).size(), 1);
    }
};

QTEST_MAIN(ByKeyTest)
#include "by_key_test.moc"
