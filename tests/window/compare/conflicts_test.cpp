#include "cli/git/ConflictText.h"
#include "cli/git/ContentMerge.h"
#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QDialog>
#include <QPushButton>
#include <QTableView>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

TableOfTexts pumpsOf(const QStringList &tags, const QStringList &speeds, const QStringList &names = {}) {
    TableOfTexts table{u"Pumps"_s, {{u"Tag"_s, FieldType::Text, tags, 20}, {u"Speed"_s, FieldType::Long, speeds}}};
    if (!names.isEmpty())
        table.fields.push_back({u"Name"_s, FieldType::Text, names, 5});
    return table;
}

DatabaseContent contentOf(const QString &path) {
    const QirDatabase database = QirDatabase::create();
    database.setLeaveJournal(true);
    if (!database.LoadDtb(path, QString()))
        qFatal("a side of the merge cannot be read");
    return readContent(database);
}

QDialog *window(EditorFixture &fixture) {
    return fixture.window().findChild<QDialog *>(u"mergeConflicts"_s);
}

template<class T>
T &control(EditorFixture &fixture, const QString &name) {
    return *window(fixture)->findChild<T *>(name);
}

QTableView &view(EditorFixture &fixture) {
    return control<QTableView>(fixture, u"conflictList"_s);
}

/// The rows of the list, their cells joined.
QStringList rows(EditorFixture &fixture) {
    const QAbstractItemModel &model = *view(fixture).model();
    QStringList all;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < model.columnCount(); ++column)
            texts.append(model.index(row, column).data().toString());
        all.append(texts.join(u'|'));
    }
    return all;
}

/// The last cells of the rows.
QStringList states(EditorFixture &fixture) {
    QStringList all;
    for (const QString &row : rows(fixture))
        all.append(row.section(u'|', -1));
    return all;
}

QString status(EditorFixture &fixture) {
    return control<QLabel>(fixture, u"conflictStatus"_s).text();
}

QPoint placeOf(EditorFixture &fixture, int row) {
    return view(fixture).visualRect(view(fixture).model()->index(row, 0)).center();
}

void pick(EditorFixture &fixture, int row, Qt::KeyboardModifiers modifiers = {}) {
    hands::click(view(fixture).viewport(), Qt::LeftButton, modifiers, placeOf(fixture, row));
}

void push(EditorFixture &fixture, const QString &button) {
    hands::click(&control<QPushButton>(fixture, button), Qt::LeftButton);
}

} // namespace

/// What a merge has left, in the window beside the real main window.
class ConflictsTest : public WindowTest {
    Q_OBJECT

    /// Merges as the companion does, into OUT.DDB with its list of conflicts beside it.
    void merge(const std::vector<TableOfTexts> &base, const std::vector<TableOfTexts> &ours,
               const std::vector<TableOfTexts> &theirs, const QStringList &key = {}) const {
        const QString out = makeFile(u"OUT.DDB"_s, ours);
        const KeyChoice keys(key.isEmpty() ? std::vector<ChosenKey>() : std::vector<ChosenKey>{{QString(), key}});
        const MergedContent merged = mergeContents(contentOf(makeFile(u"BASE.DDB"_s, base)), contentOf(out),
                                                   contentOf(makeFile(u"THEIRS.DDB"_s, theirs)), keys);
        const QirDatabase database = QirDatabase::create();
        database.setLeaveJournal(true);
        QVERIFY(database.LoadDtb(out, QString()));
        writeContent(database, merged.content);
        database.SaveDtb();
        QByteArray lines;
        for (const Conflict &conflict : merged.conflicts)
            appendConflict(lines, conflict);
        writeBytes(u"OUT.DDB.conflicts.json"_s, lines);
    }
    /// Two cells that both sides have changed, and one that only THEIRS has.
    void mergeCells() const {
        merge({pumpsOf({u"P-1"_s, u"P-2"_s, u"P-3"_s}, {u"1"_s, u"2"_s, u"3"_s}), valves()},
              {pumpsOf({u"P-1"_s, u"P-2"_s, u"P-3"_s}, {u"10"_s, u"20"_s, u"3"_s}), valves()},
              {pumpsOf({u"P-1"_s, u"P-2"_s, u"P-3"_s}, {u"11"_s, u"21"_s, u"31"_s}), valves()});
    }
    void open(EditorFixture &fixture) const {
        fixture.dialogs().allow(u"mergeConflicts"_s);
        fixture.activate(0);
        fixture.open(path(u"OUT.DDB"_s));
        fixture.choose(Command::ConflictsMenu);
        QVERIFY(window(fixture) != nullptr && window(fixture)->isVisible());
    }
    QString saveAndRemove() const {
        return u"All conflicts are resolved.\r\nSave '%1' and remove '%1.conflicts.json'?"_s.arg(path(u"OUT.DDB"_s));
    }
    static QStringList speeds(EditorFixture &fixture, int pane = 0) {
        QStringList texts;
        for (const QStringList &record : recordsOf(fixture, pane))
            texts.append(record[1]);
        return texts;
    }

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
        change(fixture, 0, u"0"_s);
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

    void aTableInConflictCanBeLeftAsOursHasIt() {
        merge({pumpsOf({u"P-1"_s}, {u"1"_s})}, {pumpsOf({u"P-1"_s}, {u"2"_s})}, {});
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
