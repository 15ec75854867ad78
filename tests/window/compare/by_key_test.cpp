#include "base/state/Remembered.h"
#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QCheckBox>
#include <QClipboard>
#include <QDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QTableView>

#include <algorithm>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// Tags in another order: P-1 is gone on the right, P-4 is new there, P-2 has another speed.
TableOfTexts leftPumps() {
    return {u"Pumps"_s,
            {{u"Tag"_s, FieldType::Text, {u"P-1"_s, u"P-2"_s, u"P-3"_s}, 20},
             {u"Speed"_s, FieldType::Long, {u"1500"_s, u"700"_s, u"900"_s}}}};
}

TableOfTexts rightPumps() {
    return {u"Pumps"_s,
            {{u"Tag"_s, FieldType::Text, {u"P-2"_s, u"P-3"_s, u"P-4"_s}, 20},
             {u"Speed"_s, FieldType::Long, {u"800"_s, u"900"_s, u"400"_s}}}};
}

QDialog *window(EditorFixture &fixture) {
    return fixture.window().findChild<QDialog *>(u"differencesByKey"_s);
}

template<class T>
T &control(EditorFixture &fixture, const QString &name) {
    return *window(fixture)->findChild<T *>(name);
}

QAbstractItemModel &changes(EditorFixture &fixture) {
    return *control<QTableView>(fixture, u"keyedChanges"_s).model();
}

QList<QStringList> rows(EditorFixture &fixture) {
    const QAbstractItemModel &model = changes(fixture);
    QList<QStringList> all;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < model.columnCount(); ++column)
            texts.append(model.index(row, column).data().toString());
        all.append(texts);
    }
    return all;
}

QString status(EditorFixture &fixture) {
    return control<QLabel>(fixture, u"keyedStatus"_s).text();
}

/// Clicks the box before a line of a list, or of the changes.
void tick(EditorFixture &fixture, const QString &view, int row) {
    auto &list = control<QAbstractItemView>(fixture, view);
    const QModelIndex index = list.model()->index(row, 0);
    list.scrollTo(index);
    const QRect place = list.visualRect(index);
    hands::click(list.viewport(), Qt::LeftButton, {}, QPoint(place.left() + 10, place.center().y()));
}

QString mainStatus(EditorFixture &fixture) {
    return fixture.window().findChild<QLabel *>(u"statusLeft"_s)->text();
}

void push(EditorFixture &fixture, const QString &button) {
    hands::click(&control<QPushButton>(fixture, button), Qt::LeftButton);
}

} // namespace

/// The window of differences by key beside the real main window.
class ByKeyTest : public WindowTest {
    Q_OBJECT

    void open(EditorFixture &fixture, const TableOfTexts &left = leftPumps(),
              const TableOfTexts &right = rightPumps()) {
        fixture.dialogs().allow(u"differencesByKey"_s);
        openBoth(fixture, {left}, {right});
        fixture.choose(Command::DifferencesByKeyMenu);
        QVERIFY(window(fixture)->isVisible());
    }

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

    void tickedChangesAreShownAndCarriedToTheRightAsOneStep() {
        EditorFixture fixture;
        open(fixture);
        QVERIFY(!control<QPushButton>(fixture, u"keyedCarryRight"_s).isEnabled());
        hands::click(&control<QCheckBox>(fixture, u"keyedTickAll"_s), Qt::LeftButton, {}, QPoint(8, 8));
        fixture.dialogs().expectMessage(u"Make these changes on the right?\n"
                                        "Values changed: 1, records added: 1, removed: 1.\n"
                                        "P-1: the record is added\n"
                                        "P-2: Speed becomes 700, not 800\n"
                                        "P-4: the record is removed"_s,
                                        u"?"_s, u"Yes"_s);
        push(fixture, u"keyedCarryRight"_s);
        QCOMPARE(recordsOf(fixture, 1),
                 (QList<QStringList>{{u"P-2"_s, u"700"_s}, {u"P-3"_s, u"900"_s}, {u"P-1"_s, u"1500"_s}}));
        QCOMPARE(fixture.texts(1), recordsOf(fixture, 1));
        QTRY_COMPARE(status(fixture), u"0 added, 0 removed, 0 changed, 1 moved."_s); // it has followed
        fixture.activate(1);
        fixture.choose(Command::UndoMenu);
        QCOMPARE(recordsOf(fixture, 1),
                 (QList<QStringList>{{u"P-2"_s, u"800"_s}, {u"P-3"_s, u"900"_s}, {u"P-4"_s, u"400"_s}}));
    }

    void oneTickedChangeIsCarriedToTheLeft() {
        EditorFixture fixture;
        open(fixture);
        tick(fixture, u"keyedChanges"_s, 2);
        fixture.dialogs().expectMessage(u"Make these changes on the left?\n"
                                        "Values changed: 0, records added: 1, removed: 0.\n"
                                        "P-4: the record is added"_s,
                                        u"?"_s, u"Yes"_s);
        push(fixture, u"keyedCarryLeft"_s);
        QCOMPARE(recordsOf(fixture, 0).last(), (QStringList{u"P-4"_s, u"400"_s}));
        QCOMPARE(recordsOf(fixture, 1).size(), 3);
    }

    void withNoNothingIsWritten() {
        EditorFixture fixture;
        open(fixture);
        tick(fixture, u"keyedChanges"_s, 1);
        fixture.dialogs().expectMessage(u"Make these changes on the right?\n"
                                        "Values changed: 1, records added: 0, removed: 0.\n"
                                        "P-2: Speed becomes 700, not 800"_s,
                                        u"?"_s, u"No"_s);
        push(fixture, u"keyedCarryRight"_s);
        QCOMPARE(stored(fixture, 1, 1, 2), QVariant(800));
        QVERIFY(!fixture.database(1).DtbHasChanged());
    }

    void whatDoesNotFitIsToldBeforeAndLeftOutOnRequest() {
        TableOfTexts right = rightPumps();
        right.fields[1] = {u"Speed"_s, FieldType::Byte, {u"8"_s, u"90"_s, u"40"_s}};
        EditorFixture fixture;
        open(fixture, leftPumps(), right);
        tick(fixture, u"keyedChanges"_s, 0); // P-1, 1500
        tick(fixture, u"keyedChanges"_s, 1); // P-2, 700
        fixture.dialogs().expectMessage(u"Make these changes on the right?\n"
                                        "Values changed: 1, records added: 1, removed: 0.\n"
                                        "P-1: the record is added\n"
                                        "P-2: Speed becomes 700, not 8\n"
                                        "Field 'Speed' is long on the left and byte on the right.\n"
                                        "2 values would not stay what they are, the first is '1500' in record 1, "
                                        "field 'Speed'.\n"
                                        "Carry these values too? With No they are left out."_s,
                                        u"?"_s, u"No"_s);
        push(fixture, u"keyedCarryRight"_s);
        QCOMPARE(
            recordsOf(fixture, 1),
            (QList<QStringList>{{u"P-2"_s, u"8"_s}, {u"P-3"_s, u"90"_s}, {u"P-4"_s, u"40"_s}, {u"P-1"_s, u"0"_s}}));
    }

    void longValuesAreShortenedInTheQuestion() {
        const auto table = [](const QString &note) {
            return TableOfTexts{
                u"Pumps"_s,
                {{u"Tag"_s, FieldType::Text, {QString(300, u'k')}, 300}, {u"Note"_s, FieldType::Text, {note}, 4000}}};
        };
        EditorFixture fixture;
        open(fixture, table(u"first\r\nsecond\tthird\n"_s + QString(3900, u'a')), table(QString(4000, u'b')));
        tick(fixture, u"keyedChanges"_s, 0);
        fixture.dialogs().expectMessage(
            u"Make these changes on the right?\nValues changed: 1, records added: 0, removed: 0.\n"_s +
                QString(60, u'k') + u"…: Note becomes first↵second→third↵"_s + QString(40, u'a') + u"…, not "_s +
                QString(60, u'b') + u'…',
            u"?"_s, u"No"_s);
        push(fixture, u"keyedCarryRight"_s);
    }

    void fieldsThatTheOtherSideLacksAreNamedWithAddedRecords() {
        TableOfTexts left = leftPumps();
        left.fields.push_back({u"Note"_s, FieldType::Text, {u"a"_s, u"b"_s, u"c"_s}});
        EditorFixture fixture;
        open(fixture, left, rightPumps());
        QCOMPARE(rows(fixture)[1][1], u"removed"_s); // behind the field
        tick(fixture, u"keyedChanges"_s, 1);
        fixture.dialogs().expectMessage(
            u"Make these changes on the right?\n"
            "Values changed: 0, records added: 1, removed: 0.\n"
            "P-1: the record is added\n"
            "The added records go without these fields, which the other side lacks: Note."_s,
            u"?"_s, u"Yes"_s);
        push(fixture, u"keyedCarryRight"_s);
        QCOMPARE(recordsOf(fixture, 1).last(), (QStringList{u"P-1"_s, u"1500"_s}));
        fixture.database(1).setDtbHasChanged(false);
    }

    void whatWasLeftOutIsNotCounted() {
        TableOfTexts right = rightPumps();
        right.fields[1] = {u"Speed"_s, FieldType::Byte, {u"8"_s, u"90"_s, u"40"_s}};
        EditorFixture fixture;
        open(fixture, leftPumps(), right);
        tick(fixture, u"keyedChanges"_s, 1); // P-2, 700
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"No"_s); });
        push(fixture, u"keyedCarryRight"_s);
        QCOMPARE(mainStatus(fixture), u"Values changed: 0, records added: 0, removed: 0"_s);
        QVERIFY(!fixture.database(1).DtbHasChanged());
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

    void aTableWithoutRecordsOnOneSideIsAllAdded() {
        EditorFixture fixture;
        TableOfTexts empty = leftPumps();
        for (FieldOfTexts &field : empty.fields)
            field.texts.clear();
        open(fixture, empty, rightPumps());
        QCOMPARE(status(fixture), u"3 added, 0 removed, 0 changed, 0 moved."_s);
        hands::click(&control<QCheckBox>(fixture, u"keyedTickAll"_s), Qt::LeftButton, {}, QPoint(8, 8));
        fixture.dialogs().expect([](QDialog &dialog) {
            dialog.findChild<QPushButton *>()->setFocus();
            auto &box = static_cast<QMessageBox &>(dialog);
            hands::click(box.button(QMessageBox::Yes), Qt::LeftButton);
            return QString();
        });
        push(fixture, u"keyedCarryLeft"_s);
        QCOMPARE(recordsOf(fixture, 0), recordsOf(fixture, 1));
    }

    void anErrorInTheMiddleOfACarryLeavesNothingHalfAndIsTold_data() {
        QTest::addColumn<QString>("member");
        QTest::newRow("a value") << u"QIRTableRecordSetByIndex"_s;
        QTest::newRow("a record removed") << u"RemoveRecord"_s;
        QTest::newRow("a record added") << u"AddRecord"_s;
        QTest::newRow("the end") << u"EndChanges"_s;
    }

    void anErrorInTheMiddleOfACarryLeavesNothingHalfAndIsTold() {
        QFETCH(QString, member);
        const UseFake fake;
        fake->setSteps(true);
        EditorFixture fixture;
        open(fixture);
        const QList<QStringList> before = recordsOf(fixture, 1);
        const QStringList wasTold = rows(fixture).value(0);
        hands::click(&control<QCheckBox>(fixture, u"keyedTickAll"_s), Qt::LeftButton, {}, QPoint(8, 8));
        int failed = 0;
        fake->setHook([&](const FakeCall &call) {
            const bool writes = call.arguments.size() == 2 || member != u"QIRTableRecordSetByIndex"_s;
            if (call.member == member && writes && failed++ == 0)
                throw std::runtime_error("the disk is gone");
        });
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"Yes"_s); });
        fixture.dialogs().expect(messageNaming({u"the disk is gone"_s}));
        push(fixture, u"keyedCarryRight"_s);
        QVERIFY(failed > 0);
        fake->setHook({});
        QCOMPARE(recordsOf(fixture, 1), before);
        QCOMPARE(fixture.texts(1), before);
        QTRY_COMPARE(status(fixture), u"1 added, 1 removed, 1 changed, 0 moved."_s);
        QCOMPARE(rows(fixture).value(0), wasTold);
        // It can be tried again, and is one step then.
        if (control<QCheckBox>(fixture, u"keyedTickAll"_s).isChecked())
            hands::click(&control<QCheckBox>(fixture, u"keyedTickAll"_s), Qt::LeftButton, {}, QPoint(8, 8));
        hands::click(&control<QCheckBox>(fixture, u"keyedTickAll"_s), Qt::LeftButton, {}, QPoint(8, 8));
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"Yes"_s); });
        push(fixture, u"keyedCarryRight"_s);
        QCOMPARE(recordsOf(fixture, 1),
                 (QList<QStringList>{{u"P-2"_s, u"700"_s}, {u"P-3"_s, u"900"_s}, {u"P-1"_s, u"1500"_s}}));
        fixture.activate(1);
        fixture.choose(Command::UndoMenu);
        QCOMPARE(recordsOf(fixture, 1), before);
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
