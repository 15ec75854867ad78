#include "tests/window/compare/ConflictsHands.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// What a merge has left, in the window beside the real main window.
class ConflictsTest : public ConflictsWindowTest {
    Q_OBJECT

private Q_SLOTS:
    void eachConflictIsListedWithItsPlaceAndSides() {
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(rows(fixture), (QStringList{u"Pumps|1|Speed|1|10|11|open"_s, u"Pumps|2|Speed|2|20|21|open"_s}));
        QCOMPARE(status(fixture), u"0 of 2 conflicts are resolved."_s);
        QCOMPARE(speeds(fixture), (QStringList{u"10"_s, u"20"_s, u"31"_s}));
        QVERIFY(!control<QPushButton>(fixture, u"conflictRemove"_s).isEnabled());
    }

    void whereNoMergeHasLeftConflictsThatIsTold() {
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        EditorFixture fixture(file);
        fixture.dialogs().expectMessage(
            u"No merge has left conflicts here: there is no '%1.conflicts.json'."_s.arg(file), u"!"_s, u"OK"_s);
        fixture.choose(Command::ConflictsMenu);
        QVERIFY(window(fixture) == nullptr);
    }

    void aDamagedListIsToldWithItsFileAndReason() {
        const QString file = makeFile(u"A.DDB"_s, {pumps()});
        const QString list = writeBytes(u"A.DDB.conflicts.json"_s, "{\"what\": \"cell\"}\n");
        EditorFixture fixture(file);
        fixture.dialogs().expect(messageNaming({list, u"line 1: it has no \"table\""_s}));
        fixture.choose(Command::ConflictsMenu);
        QVERIFY(window(fixture) == nullptr);
    }

    void withoutADatabaseTheCommandIsDisabled() {
        EditorFixture fixture;
        QVERIFY(!fixture.action(Command::ConflictsMenu).isEnabled());
    }

    void aDoubleClickGoesToTheCell() {
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        fixture.clickLine(0, 1);
        QCOMPARE(fixture.shownTable(0), u"Valves"_s);
        hands::doubleClick(view(fixture).viewport(), Qt::LeftButton, {}, placeOf(fixture, 1));
        QCOMPARE(fixture.shownTable(0), u"Pumps"_s);
        QCOMPARE(fixture.grid(0).selection(), singleCell(2, 2));
    }

    void theirsIsTakenForOneAsAStepThatIsTakenBack() {
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        pick(fixture, 1);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(speeds(fixture), (QStringList{u"10"_s, u"21"_s, u"31"_s}));
        QCOMPARE(fixture.texts(0), recordsOf(fixture, 0));
        QCOMPARE(states(fixture), (QStringList{u"open"_s, u"resolved: theirs"_s}));
        fixture.choose(Command::UndoMenu);
        QCOMPARE(speeds(fixture), (QStringList{u"10"_s, u"20"_s, u"31"_s}));
        QCOMPARE(states(fixture), (QStringList{u"open"_s, u"open"_s}));
    }

    void allTheirsIsOneStepAndTheListIsRemovedOnceSaved() {
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(speeds(fixture), (QStringList{u"11"_s, u"21"_s, u"31"_s}));
        QVERIFY(QFile::exists(path(u"OUT.DDB.conflicts.json"_s)));
        fixture.choose(Command::UndoMenu);
        QCOMPARE(speeds(fixture), (QStringList{u"10"_s, u"20"_s, u"31"_s}));
        QVERIFY(!control<QPushButton>(fixture, u"conflictRemove"_s).isEnabled());
        fixture.choose(Command::RedoMenu);
        QCOMPARE(status(fixture), u"2 of 2 conflicts are resolved."_s);
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"Yes"_s);
        push(fixture, u"conflictRemove"_s);
        QVERIFY(!QFile::exists(path(u"OUT.DDB.conflicts.json"_s)));
        QVERIFY(!window(fixture)->isVisible());
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(contentOf(path(u"OUT.DDB"_s)).tables[0].records[1][1].toDouble(), 21.0);
    }

    void allOursWritesNothingAndTheListGoes() {
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        fixture.dialogs().expectMessage(
            u"All conflicts are resolved.\r\nRemove '%1.conflicts.json'?"_s.arg(path(u"OUT.DDB"_s)), u"?"_s, u"Yes"_s);
        push(fixture, u"conflictAllOurs"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QVERIFY(!QFile::exists(path(u"OUT.DDB.conflicts.json"_s)));
    }

    void oursIsWrittenBackWhereTheirsWasTaken() {
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        push(fixture, u"conflictTheirs"_s); // the first is selected
        QCOMPARE(speeds(fixture)[0], u"11"_s);
        push(fixture, u"conflictOurs"_s);
        QCOMPARE(speeds(fixture)[0], u"10"_s);
        QCOMPARE(states(fixture), (QStringList{u"resolved: ours"_s, u"open"_s}));
    }

    void aValueThatIsThereNoMoreIsToldAndReplacedOnRequestOnly() {
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        fixture.atShownTable(0).setQIRTableRecordsPointerOut(1);
        fixture.database(0).setQIRTableRecordSetByIndex(2, 99.0);
        fixture.clickLine(0, 1); // a command, at whose end the window follows
        QCOMPARE(states(fixture), (QStringList{u"open; the database has 99 now"_s, u"open"_s}));
        push(fixture, u"conflictAllTheirs"_s);
        QVERIFY2(status(fixture).startsWith(u"Left, since the database no longer has what the list tells: 1."_s),
                 qPrintable(status(fixture)));
        QCOMPARE(states(fixture), (QStringList{u"open; the database has 99 now"_s, u"resolved: theirs"_s}));
        const QString question = u"The database no longer has there what the list of conflicts tells.\r\nReplace it?"_s;
        pick(fixture, 0);
        fixture.dialogs().expectMessage(question, u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(states(fixture)[0], u"open; the database has 99 now"_s);
        fixture.dialogs().expectMessage(question, u"?"_s, u"Yes"_s);
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        fixture.clickLine(0, 0);
        QCOMPARE(speeds(fixture), (QStringList{u"11"_s, u"21"_s, u"31"_s}));
    }

    void whatWasDecidedByHandStays() {
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        fixture.atShownTable(0).setQIRTableRecordsPointerOut(1);
        fixture.database(0).setQIRTableRecordSetByIndex(2, 99.0);
        fixture.clickLine(0, 1);
        push(fixture, u"conflictAsItIs"_s);
        QCOMPARE(states(fixture), (QStringList{u"resolved: as it is"_s, u"open"_s}));
        fixture.clickLine(0, 0);
        QCOMPARE(speeds(fixture)[0], u"99"_s);
    }

    void recordsByKeyAreAddedAndRemoved() {
        merge({pumpsOf({u"P-1"_s, u"P-2"_s, u"P-3"_s}, {u"1"_s, u"2"_s, u"3"_s})},
              {pumpsOf({u"P-2"_s, u"P-3"_s}, {u"20"_s, u"3"_s})}, {pumpsOf({u"P-1"_s, u"P-3"_s}, {u"11"_s, u"3"_s})},
              {u"Tag"_s});
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(states(fixture), (QStringList{u"open"_s, u"open"_s}));
        QCOMPARE(fixture.list(0).ListIndex(), 0);
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"P-3"_s, u"3"_s}, {u"P-1"_s, u"11"_s}}));
        QCOMPARE(fixture.texts(0), recordsOf(fixture, 0));
        fixture.choose(Command::UndoMenu);
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"P-2"_s, u"20"_s}, {u"P-3"_s, u"3"_s}}));
        QCOMPARE(states(fixture), (QStringList{u"open"_s, u"open"_s}));
    }

    void aRecordWhoseNumberIsBeyondTheTableIsMissing() {
        makeFile(u"OUT.DDB"_s, {pumpsOf({u"P-1"_s}, {u"1"_s})});
        writeBytes(u"OUT.DDB.conflicts.json"_s,
                   R"({"what":"record","table":"Pumps","record":99999,"base":null,"ours":null,"theirs":["x"],)"
                   R"("theirsFields":["Tag"]})"
                   "\n");
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(rows(fixture).size(), 1);
        QCOMPARE(states(fixture), QStringList({u"open; the database has no such place now"_s}));
    }

    void aRecordIsFoundByItsKeyWhereverItStands() {
        merge({pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s})}, {pumpsOf({u"P-2"_s, u"P-1"_s}, {u"20"_s, u"1"_s})},
              {pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"21"_s})}, {u"Tag"_s});
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(rows(fixture), QStringList{u"Pumps|P-2|Speed|2|20|21|open"_s});
        hands::doubleClick(view(fixture).viewport(), Qt::LeftButton, {}, placeOf(fixture, 0));
        QCOMPARE(fixture.grid(0).selection(), singleCell(1, 2));
        fixture.choose(Command::RemoveRecordMenu);
        QCOMPARE(states(fixture), QStringList{u"open; the database has no such place now"_s});
        push(fixture, u"conflictTheirs"_s);
        QVERIFY2(status(fixture).startsWith(u"Left, since the list does not tell enough"_s),
                 qPrintable(status(fixture)));
    }

    void aValueThatTheFieldWouldCutIsLeftAndTold() {
        merge({pumpsOf({u"P-1"_s}, {u"1"_s}, {u"a"_s})}, {pumpsOf({u"P-1"_s}, {u"1"_s}, {u"ours"_s})},
              {pumpsOf({u"P-1"_s}, {u"1"_s}, {u"their"_s})});
        EditorFixture fixture;
        open(fixture);
        fixture.atShownTable(0).ResizeField(3, 4);
        push(fixture, u"conflictTheirs"_s);
        QVERIFY2(status(fixture).startsWith(u"Left, since a field would not hold the value as it is: 1."_s),
                 qPrintable(status(fixture)));
        QCOMPARE(states(fixture), QStringList{u"open"_s});
    }

    void aTableThatTheirsHasRemovedGoesAndComesBackAsOursHasIt() {
        merge({pumpsOf({u"P-1"_s}, {u"1"_s}), valves()}, {pumpsOf({u"P-1"_s}, {u"2"_s}), valves()}, {valves()});
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(states(fixture), QStringList{u"open"_s});
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(fixture.lines(0), QStringList{u"Valves"_s});
        QCOMPARE(fixture.shownTable(0), u"Valves"_s);
        QCOMPARE(states(fixture), QStringList{u"resolved: theirs"_s});
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictOurs"_s);
        QCOMPARE(fixture.lines(0), (QStringList{u"Pumps"_s, u"Valves"_s}));
        fixture.clickLine(0, 0);
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"P-1"_s, u"2"_s}}));
        QCOMPARE(states(fixture), QStringList{u"resolved: ours"_s});
        fixture.choose(Command::UndoMenu);
        fixture.choose(Command::UndoMenu);
        QCOMPARE(fixture.lines(0), (QStringList{u"Pumps"_s, u"Valves"_s}));
    }

    void aTableThatOursHasRemovedComesWithAllItsRecords() {
        merge({pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s}), valves()}, {valves()},
              {pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"22"_s}), valves()});
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(states(fixture), QStringList{u"open"_s});
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"Yes"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(fixture.lines(0), (QStringList{u"Pumps"_s, u"Valves"_s}));
        fixture.clickLine(0, 0);
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"P-1"_s, u"1"_s}, {u"P-2"_s, u"22"_s}}));
    }

    void aTableWhoseRecordsHaveMovedIsTakenWholeFromEitherSide() {
        merge({pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s})},
              {pumpsOf({u"P-0"_s, u"P-1"_s, u"P-2"_s}, {u"0"_s, u"1"_s, u"2"_s})},
              {pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"22"_s})});
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(states(fixture), QStringList{u"open"_s});
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(fixture.texts(0), (QList<QStringList>{{u"P-1"_s, u"1"_s}, {u"P-2"_s, u"22"_s}}));
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictOurs"_s);
        QCOMPARE(speeds(fixture), (QStringList{u"0"_s, u"1"_s, u"2"_s}));
        fixture.atShownTable(0).setQIRTableRecordsPointerOut(1);
        fixture.database(0).setQIRTableRecordSetByIndex(2, 5.0); // nobody's
        fixture.clickLine(0, 0);
        QCOMPARE(states(fixture), QStringList{u"open; the table is another one now"_s});
        fixture.dialogs().expectMessage(
            u"The database no longer has there what the list of conflicts tells.\r\nReplace it?"_s, u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(speeds(fixture)[0], u"5"_s);
    }

    void aFieldIsTakenWithTheValuesOfItsRecords() {
        mergeSizes();
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(rows(fixture), (QStringList{u"Pumps||Name|Name[text:5]|Name[text:6]|Name[text:7]|open"_s,
                                             u"Pumps|P-1|Name|a|o|their|open"_s}));
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s); // of the field, whose cells come along
        QCOMPARE(recordsOf(fixture, 0),
                 (QList<QStringList>{
                     {u"P-2"_s, u"2"_s, u"b"_s}, {u"P-1"_s, u"1"_s, u"their"_s}, {u"P-3"_s, u"3"_s, u"c"_s}}));
        QCOMPARE(fixture.texts(0), recordsOf(fixture, 0));
        QCOMPARE(fixture.atShownTable(0).QIRTableFieldSize(3).toInt(), 7);
        QCOMPARE(states(fixture), (QStringList{u"resolved: theirs"_s, u"resolved: theirs"_s}));
        fixture.choose(Command::UndoMenu);
        QCOMPARE(fixture.atShownTable(0).QIRTableFieldSize(3).toInt(), 6);
        QCOMPARE(states(fixture), (QStringList{u"open"_s, u"open"_s}));
    }

    void allTheirsTakesAFieldAndItsCellsAsOneStep() {
        mergeSizes();
        EditorFixture fixture;
        open(fixture);
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(status(fixture), u"2 of 2 conflicts are resolved."_s);
        fixture.choose(Command::UndoMenu);
        QCOMPARE(recordsOf(fixture, 0)[1][2], u"o"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void aFieldThatOneSideHasRemovedGoesAndComesBack() {
        merge({pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s}, {u"a"_s, u"b"_s})},
              {pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s}, {u"o"_s, u"b"_s})},
              {pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s})});
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(states(fixture), QStringList{u"open"_s});
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"P-1"_s, u"1"_s}, {u"P-2"_s, u"2"_s}}));
        QCOMPARE(fixture.texts(0), recordsOf(fixture, 0));
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictOurs"_s);
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"P-1"_s, u"1"_s, u"o"_s}, {u"P-2"_s, u"2"_s, u"b"_s}}));
    }

    void aFieldByPositionIsNotTakenOnceRecordsHaveGone() {
        merge({pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s}, {u"a"_s, u"b"_s})},
              {pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s})},
              {pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s}, {u"t"_s, u"b"_s})});
        EditorFixture fixture;
        open(fixture);
        fixture.clickCell(0, 1, 1);
        fixture.choose(Command::RemoveRecordMenu);
        pick(fixture, 0);
        push(fixture, u"conflictTheirs"_s);
        QVERIFY2(status(fixture).startsWith(u"Left, since the list does not tell enough"_s),
                 qPrintable(status(fixture)));
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"P-2"_s, u"2"_s}}));
    }

    void aFieldThatWouldCutARecordOfOursIsLeftAndTold() {
        TableOfTexts ours = pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s}, {u"o"_s, u"longer"_s});
        ours.fields[2].size = 9;
        TableOfTexts theirs = pumpsOf({u"P-1"_s}, {u"1"_s}, {u"t"_s});
        theirs.fields[2].size = 4;
        merge({pumpsOf({u"P-1"_s}, {u"1"_s}, {u"a"_s})}, {ours}, {theirs}, {u"Tag"_s});
        EditorFixture fixture;
        open(fixture);
        push(fixture, u"conflictTheirs"_s);
        QVERIFY2(status(fixture).startsWith(u"Left, since a field would not hold the value as it is: 1."_s),
                 qPrintable(status(fixture)));
        QCOMPARE(recordsOf(fixture, 0)[1][2], u"longer"_s);
    }

    void severalRecordsOfAKeyAreTakenTogether() {
        merge({pumpsOf({u"P-1"_s, u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s, u"3"_s})},
              {pumpsOf({u"P-1"_s, u"P-1"_s, u"P-2"_s}, {u"10"_s, u"2"_s, u"3"_s})},
              {pumpsOf({u"P-1"_s, u"P-2"_s}, {u"99"_s, u"3"_s})}, {u"Tag"_s});
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(states(fixture), (QStringList{u"open"_s, u"open"_s}));
        pick(fixture, 1); // one of them stands for both
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"P-1"_s, u"99"_s}, {u"P-2"_s, u"3"_s}}));
        QCOMPARE(states(fixture), (QStringList{u"resolved: theirs"_s, u"resolved: theirs"_s}));
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictOurs"_s);
        QCOMPARE(recordsOf(fixture, 0),
                 (QList<QStringList>{{u"P-1"_s, u"10"_s}, {u"P-2"_s, u"3"_s}, {u"P-1"_s, u"2"_s}}));
        QCOMPARE(states(fixture), (QStringList{u"resolved: ours"_s, u"resolved: ours"_s}));
    }

    void fieldsThatBothHaveMovedTakeTheOrderOfEither() {
        const auto ordered = [](const std::vector<int> &order) {
            const TableOfTexts pumps = pumpsOf({u"P-1"_s}, {u"1"_s}, {u"a"_s});
            TableOfTexts table{pumps.name, {}};
            for (const int place : order)
                table.fields.push_back(pumps.fields[static_cast<std::size_t>(place)]);
            return table;
        };
        merge({ordered({0, 1, 2})}, {ordered({1, 0, 2})}, {ordered({0, 2, 1})});
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(states(fixture), QStringList{u"open"_s});
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"P-1"_s, u"a"_s, u"1"_s}}));
        QCOMPARE(fixture.texts(0), recordsOf(fixture, 0));
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictOurs"_s);
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"1"_s, u"P-1"_s, u"a"_s}}));
    }

    void aNameThatBothHaveSpelledAnewTakesEitherSpelling() {
        const auto named = [](const QString &name, const QString &speed) {
            TableOfTexts table = pumpsOf({u"P-1"_s}, {speed});
            table.name = name;
            return table;
        };
        merge({named(u"Pumps"_s, u"1"_s)}, {named(u"PUMPS"_s, u"1"_s)}, {named(u"pumps"_s, u"2"_s)});
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(fixture.lines(0), QStringList{u"PUMPS"_s});
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(fixture.lines(0), QStringList{u"pumps"_s});
        QCOMPARE(fixture.shownTable(0), u"pumps"_s);
        QCOMPARE(states(fixture), QStringList{u"resolved: theirs"_s});
    }

    void aListThatTellsNoRecordsLeavesOurs() {
        merge({}, {pumpsOf({u"P-1"_s}, {u"1"_s})}, {pumpsOf({u"P-2"_s}, {u"2"_s})});
        QByteArray line = fileBytes(path(u"OUT.DDB.conflicts.json"_s));
        line.truncate(line.indexOf(", \"oursRecords\""));
        writeBytes(u"OUT.DDB.conflicts.json"_s, line + "}\n");
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(states(fixture), QStringList{u"open; only ours can be taken here"_s});
        push(fixture, u"conflictTheirs"_s);
        QVERIFY(status(fixture).startsWith(u"Left, since the list does not tell enough"_s));
        fixture.dialogs().expectMessage(
            u"All conflicts are resolved.\r\nRemove '%1.conflicts.json'?"_s.arg(path(u"OUT.DDB"_s)), u"?"_s, u"No"_s);
        push(fixture, u"conflictOurs"_s);
        QCOMPARE(states(fixture), QStringList{u"resolved: ours"_s});
    }

    void aTableThatIsRemovedMeanwhileHasNoPlace() {
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"Yes"_s); });
        fixture.choose(Command::RemoveTableMenu);
        const QString gone = u"open; the database has no such place now"_s;
        QCOMPARE(states(fixture), (QStringList{gone, gone}));
        hands::doubleClick(view(fixture).viewport(), Qt::LeftButton, {}, placeOf(fixture, 0));
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(states(fixture), (QStringList{gone, gone}));
    }

    void marksOfATableThatIsNotShownFollow() {
        mergeCells();
        EditorFixture fixture;
        fixture.openBoth(path(u"OUT.DDB"_s), path(u"THEIRS.DDB"_s));
        fixture.dialogs().allow(u"mergeConflicts"_s);
        fixture.choose(Command::ConflictsMenu);
        QCOMPARE(fixture.lines(0), (QStringList{u"Pumps !"_s, u"Valves"_s}));
        fixture.clickLine(0, 1);
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(fixture.lines(0), (QStringList{u"Pumps"_s, u"Valves"_s}));
        QCOMPARE(fixture.lines(1), (QStringList{u"Pumps"_s, u"Valves"_s}));
        QCOMPARE(fixture.shownTable(0), u"Valves"_s);
    }

    void closingItsPaneEndsTheWindow() {
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::CloseDatabaseMenu);
        QVERIFY(!window(fixture)->isVisible());
    }

    void anErrorOfTheComponentLeavesNothingHalf() {
        const UseFake fake;
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        int writes = 0;
        fake->setHook([&writes](const FakeCall &call) {
            const bool isWrite = call.member == u"QIRTableRecordSetByIndex"_s && call.arguments.size() == 2;
            if (isWrite && ++writes == 2)
                throw std::runtime_error("the disk is gone");
        });
        fixture.dialogs().expect(messageNaming({u"the disk is gone"_s}));
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(writes, 2);
        QCOMPARE(speeds(fixture), (QStringList{u"10"_s, u"20"_s, u"31"_s}));
        QCOMPARE(states(fixture), (QStringList{u"open"_s, u"open"_s}));
    }

    void aListThatAnotherMergeHasWrittenAnewIsNotRemoved() {
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        writeBytes(u"OUT.DDB.conflicts.json"_s, "another\n");
        fixture.dialogs().expectMessage(
            u"All conflicts are resolved.\r\nRemove '%1.conflicts.json'?"_s.arg(path(u"OUT.DDB"_s)), u"?"_s, u"Yes"_s);
        fixture.dialogs().expect(messageNaming({u"it has changed since it was read"_s}));
        push(fixture, u"conflictAllOurs"_s);
        QCOMPARE(fileBytes(path(u"OUT.DDB.conflicts.json"_s)), QByteArray("another\n"));
    }
};

QTEST_MAIN(ConflictsTest)
#include "conflicts_test.moc"
