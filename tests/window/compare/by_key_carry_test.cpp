#include "tests/window/compare/ByKeyHands.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// Carrying changes that were ticked in the window of differences by key.
class ByKeyCarryTest : public ByKeyWindowTest {
    Q_OBJECT

    /// Ticks a change and has it carried; the question that is asked is answered.
    void carryOne(EditorFixture &fixture, int change, const QString &button, const QString &question,
                  const QString &answer) const {
        tick(fixture, u"keyedChanges"_s, change);
        fixture.dialogs().expectMessage(question, u"?"_s, answer);
        push(fixture, button);
    }

private Q_SLOTS:
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
        carryOne(fixture, 2, u"keyedCarryLeft"_s,
                 u"Make these changes on the left?\n"
                 "Values changed: 0, records added: 1, removed: 0.\n"
                 "P-4: the record is added"_s,
                 u"Yes"_s);
        QCOMPARE(recordsOf(fixture, 0).last(), (QStringList{u"P-4"_s, u"400"_s}));
        QCOMPARE(recordsOf(fixture, 1).size(), 3);
    }

    void gridsThatStandAtTwoRecordsStayThereAfterACarry() {
        EditorFixture fixture;
        open(fixture);
        auto &view = control<QTableView>(fixture, u"keyedChanges"_s);
        hands::doubleClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(view.model()->index(1, 2)).center());
        QCOMPARE(fixture.grid(0).selection(), singleCell(2, 2));
        QCOMPARE(fixture.grid(1).selection(), singleCell(1, 2));
        tick(fixture, u"keyedChanges"_s, 1);
        fixture.dialogs().expectMessage(u"Make these changes on the right?\n"
                                        "Values changed: 1, records added: 0, removed: 0.\n"
                                        "P-2: Speed becomes 700, not 800"_s,
                                        u"?"_s, u"Yes"_s);
        push(fixture, u"keyedCarryRight"_s);
        QCOMPARE(stored(fixture, 1, 1, 2), QVariant(700));
        QCOMPARE(fixture.grid(0).selection(), singleCell(2, 2));
        QCOMPARE(fixture.grid(1).selection(), singleCell(1, 2));
        fixture.clickCell(1, 3, 1);
        QCOMPARE(fixture.grid(0).selection(), singleCell(3, 1)); // a person has moved
    }

    void withNoNothingIsWritten() {
        EditorFixture fixture;
        open(fixture);
        carryOne(fixture, 1, u"keyedCarryRight"_s,
                 u"Make these changes on the right?\n"
                 "Values changed: 1, records added: 0, removed: 0.\n"
                 "P-2: Speed becomes 700, not 800"_s,
                 u"No"_s);
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
        carryOne(fixture, 0, u"keyedCarryRight"_s,
                 u"Make these changes on the right?\nValues changed: 1, records added: 0, removed: 0.\n"_s +
                     QString(60, u'k') + u"…: Note becomes first↵second→third↵"_s + QString(40, u'a') + u"…, not "_s +
                     QString(60, u'b') + u'…',
                 u"No"_s);
    }

    void fieldsThatTheOtherSideLacksAreNamedWithAddedRecords() {
        TableOfTexts left = leftPumps();
        left.fields.push_back({u"Note"_s, FieldType::Text, {u"a"_s, u"b"_s, u"c"_s}});
        EditorFixture fixture;
        open(fixture, left, rightPumps());
        QCOMPARE(rows(fixture)[1][1], u"removed"_s); // behind the field
        carryOne(fixture, 1, u"keyedCarryRight"_s,
                 u"Make these changes on the right?\n"
                 "Values changed: 0, records added: 1, removed: 0.\n"
                 "P-1: the record is added\n"
                 "The added records go without these fields, which the other side lacks: Note."_s,
                 u"Yes"_s);
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
        QCOMPARE(statusLeft(fixture), u"Values changed: 0, records added: 0, removed: 0"_s);
        QVERIFY(!fixture.database(1).DtbHasChanged());
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

    void addedRecordsAreCarriedByWholeColumns() {
        const UseFake fake(2);
        EditorFixture fixture;
        TableOfTexts left = counted(u"Pumps"_s, 7, 3);
        left.fields[2] = {u"Note"_s, FieldType::Text, {u"a"_s, u"è"_s, QString(), u"d"_s, u"e"_s, u"f"_s, u"g"_s}, 20};
        TableOfTexts right = left;
        for (FieldOfTexts &field : right.fields)
            field.texts = field.texts.mid(1, 2);
        open(fixture, left, right);
        QCOMPARE(status(fixture), u"0 added, 5 removed, 0 changed, 0 moved."_s);
        hands::click(&control<QCheckBox>(fixture, u"keyedTickAll"_s), Qt::LeftButton, {}, QPoint(8, 8));
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"Yes"_s); });
        fake->clearLog();
        push(fixture, u"keyedCarryRight"_s);
        QCOMPARE(callsOf({u"AddRecord"_s, u"AppendRecords"_s}), QStringList(u"AppendRecords(5)"_s));
        QCOMPARE(callsOf({u"QIRTableRecordSetByIndex"_s}), QStringList());
        QList<QStringList> wanted = recordsOf(fixture, 0);
        wanted.move(0, 2); // the two that were there stand before
        QCOMPARE(recordsOf(fixture, 1), wanted);
    }

    void ofAddedRecordsValuesThatWouldNotSurviveAreLeftOutOneByOne() {
        const UseFake fake(2);
        TableOfTexts left = leftPumps();
        left.fields[0].texts[1] = u"P-22"_s; // none of the right ones
        TableOfTexts right = rightPumps();
        right.fields[1] = {u"Speed"_s, FieldType::Byte, {u"8"_s, u"90"_s, u"40"_s}};
        left.fields[1].texts = {u"1500"_s, u"70"_s, u"90"_s};
        EditorFixture fixture;
        open(fixture, left, right);
        tick(fixture, u"keyedChanges"_s, 0); // P-1
        tick(fixture, u"keyedChanges"_s, 1); // P-22
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"No"_s); });
        push(fixture, u"keyedCarryRight"_s);
        QCOMPARE(recordsOf(fixture, 1).mid(3), (QList<QStringList>{{u"P-1"_s, u"0"_s}, {u"P-22"_s, u"70"_s}}));
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
};

QTEST_MAIN(ByKeyCarryTest)
#include "by_key_carry_test.moc"
