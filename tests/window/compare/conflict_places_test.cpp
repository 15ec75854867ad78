#include "tests/window/compare/ConflictsHands.h"

#include "app/desktop/NoticeBar.h"

#include <unistd.h>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// The program may do what anybody may, as long as this lives.
class WithoutPrivileges {
public:
    WithoutPrivileges()
        : m_changed(::geteuid() == 0 && ::seteuid(65534) == 0) {}
    ~WithoutPrivileges() {
        if (m_changed && ::seteuid(0) != 0)
            qFatal("the privileges do not come back");
    }
    WithoutPrivileges(const WithoutPrivileges &) = delete;
    WithoutPrivileges &operator=(const WithoutPrivileges &) = delete;

private:
    bool m_changed;
};

const QString noPlace = u"open; the database has no such place now"_s;
const QString unclear = u"open; it is not clear which record is meant"_s;
const QString elsewhere = u"open; the record is not as the merge has left it"_s;
const QString untold = u"open; only its number tells the record"_s;

} // namespace

/// Where the places of a list of conflicts are not what they were, or never were, in the window beside the real one.
class ConflictPlacesTest : public ConflictsWindowTest {
    Q_OBJECT

    void writeList(const QByteArray &lines) const { writeBytes(u"OUT.DDB.conflicts.json"_s, lines); }
    /// Opens OUT.DDB, three pumps, with this list beside it.
    void openWith(EditorFixture &fixture, const QByteArray &lines) const {
        makeFile(u"OUT.DDB"_s, {pumpsOf({u"P-1"_s, u"P-2"_s, u"P-3"_s}, {u"1"_s, u"2"_s, u"3"_s})});
        writeList(lines);
        open(fixture);
    }
    /// P-3 and P-1 have one speed in OURS, which both sides have changed; the order is not that of the tags.
    void mergeUnsorted() const {
        const QStringList tags{u"P-3"_s, u"P-1"_s, u"P-2"_s};
        merge({pumpsOf(tags, {u"1"_s, u"1"_s, u"3"_s})}, {pumpsOf(tags, {u"10"_s, u"10"_s, u"3"_s})},
              {pumpsOf(tags, {u"11"_s, u"21"_s, u"3"_s})});
    }
    /// "Name" has another size on both sides; OURS has the pumps in an order that is not that of the tags.
    void mergeFields(const QStringList &tags, const QStringList &key) const {
        std::vector<TableOfTexts> sides(3, pumpsOf(tags, {u"3"_s, u"1"_s, u"2"_s}, {u"c"_s, u"a"_s, u"b"_s}));
        sides[1].fields[2].size = 6;
        sides[2].fields[2].size = 7;
        sides[2].fields[2].texts = QStringList{u"their c"_s, u"their a"_s, u"their b"_s};
        merge({sides[0]}, {sides[1]}, {sides[2]}, key);
    }
    static QStringList names(EditorFixture &fixture) {
        QStringList texts;
        for (const QStringList &record : recordsOf(fixture, 0))
            texts.append(record[2]);
        return texts;
    }
    QString differs(int record) const {
        return u"Record %1 of 'Pumps' is not as the merge has left it; it may be another one.\r\nTake that side there "
               u"all the same?"_s.arg(record);
    }
    QString justRemove() const {
        return u"All conflicts are resolved.\r\nRemove '%1.conflicts.json'?"_s.arg(path(u"OUT.DDB"_s));
    }
    static void sortByTag(EditorFixture &fixture) {
        fixture.clickCell(0, 1, 1);
        fixture.choose(Command::SortFPOP);
    }

private Q_SLOTS:
    void aPlaceThatIsNotThereIsToldAndLeft_data() {
        QTest::addColumn<QByteArray>("line");
        const QByteArray ours = R"("base": null, "ours": ["P-1", 1], "theirs": null, "oursFields": )";
        const QByteArray theirs = R"("base": null, "ours": null, "theirs": ["x"], "theirsFields": )";
        const QByteArray record = R"({"what": "record", "table": "Pumps", )";
        const QByteArray cell = R"({"what": "cell", "table": "Pumps", )";
        const QByteArray sides = R"("base": 1, "ours": 1, "theirs": 7})";
        QTest::newRow("a record beyond the table") << record + R"("record": 99999, )" + theirs + "[\"Tag\"]}";
        QTest::newRow("a record of OURS beyond") << record + R"("record": 4, )" + ours + "[\"Tag\", \"Speed\"]}";
        QTest::newRow("the greatest record") << record + R"("record": 2147483647, )" + ours + "[\"Tag\", \"Speed\"]}";
        QTest::newRow("a cell beyond") << cell + R"("record": 4, "field": "Speed", )" + sides;
        QTest::newRow("a cell beyond without a field")
            << cell + R"("record": 4, "field": "Nope", "base": 1, "ours": null, "theirs": 7})";
        QTest::newRow("a cell of no field") << cell + R"("record": 1, "field": "Nope", )" + sides;
        QTest::newRow("a cell of no key")
            << cell + R"("key": ["P-9"], "keyFields": ["Tag"], "field": "Speed", )" + sides;
        QTest::newRow("a record of no field")
            << record + R"("key": ["P-9"], "keyFields": ["Tag"], )" + theirs + "[\"Nope\"]}";
        QTest::newRow("a record of unnamed fields")
            << record + R"("key": ["P-9"], "keyFields": ["Tag"], )" + theirs + "[\"\"]}";
        QTest::newRow("a record of fields that are there in part")
            << record + R"("key": ["P-1"], "keyFields": ["Tag"], )" + ours + "[\"Tag\", \"Nope\"]}";
    }
    void aPlaceThatIsNotThereIsToldAndLeft() {
        QFETCH(QByteArray, line);
        EditorFixture fixture;
        openWith(fixture, line + '\n');
        QCOMPARE(states(fixture), QStringList{noPlace});
        hands::doubleClick(view(fixture).viewport(), Qt::LeftButton, {}, placeOf(fixture, 0));
        for (const QString &button : {u"conflictTheirs"_s, u"conflictOurs"_s, u"conflictAllTheirs"_s}) {
            push(fixture, button);
            QVERIFY2(status(fixture).startsWith(u"Left, since the list does not tell enough"_s),
                     qPrintable(status(fixture)));
        }
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void aLineThatNoMergeWritesIsRefusedWithFileAndLine_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("reason");
        const QByteArray good = R"({"what": "cell", "table": "Pumps", "record": 1, "field": "Speed", "base": 1, )"
                                R"("ours": 1, "theirs": 7})";
        const QByteArray record = R"({"what": "record", "table": "Pumps", "record": 1, "base": null, "theirs": null, )";
        const auto numbered = [&](const char *number) { return QByteArray(good).replace(": 1, \"f", number); };
        const QString noNumber = u"a whole number is missing"_s;
        QTest::newRow("record 0") << numbered(": 0, \"f") << noNumber;
        QTest::newRow("a negative record") << numbered(": -1, \"f") << noNumber;
        QTest::newRow("a half record") << numbered(": 1.5, \"f") << noNumber;
        QTest::newRow("a record beyond all numbers") << numbered(": 1e300, \"f") << noNumber;
        QTest::newRow("a record as text") << numbered(": \"1\", \"f") << noNumber;
        QTest::newRow("too few values") << record + R"("ours": ["P-1"], "oursFields": ["Tag", "Speed"]})"
                                        << u"\"oursFields\" has not a name for each value"_s;
        QTest::newRow("too few names") << record + R"("ours": ["P-1", 1], "oursFields": ["Tag"]})"
                                       << u"\"oursFields\" has not a name for each value"_s;
        QTest::newRow("no values") << record + R"("ours": []})" << u"\"ours\" has no value"_s;
        QTest::newRow("a line twice") << good << u"it is the same as a line before it"_s;
    }
    void aLineThatNoMergeWritesIsRefusedWithFileAndLine() {
        QFETCH(QByteArray, line);
        QFETCH(QString, reason);
        const QString file = makeFile(u"OUT.DDB"_s, {pumpsOf({u"P-1"_s}, {u"1"_s})});
        writeList(R"({"what": "cell", "table": "Pumps", "record": 1, "field": "Speed", "base": 1, "ours": 1, )"
                  R"("theirs": 7})"
                  "\n" +
                  line + '\n');
        EditorFixture fixture(file);
        fixture.dialogs().expect(messageNaming({file + u".conflicts.json: line 2: "_s + reason}));
        fixture.choose(Command::ConflictsMenu);
        QVERIFY(window(fixture) == nullptr);
    }

    void twoLinesOfOnePlaceAreDecidedByHand() {
        const QByteArray line = R"({"what": "cell", "table": "Pumps", "record": 1, "field": "Speed", "base": 0, )"
                                R"("ours": 1, "theirs": )";
        EditorFixture fixture;
        openWith(fixture, line + "7}\n" + line + "8}\n");
        QCOMPARE(states(fixture), (QStringList{unclear, unclear}));
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(speeds(fixture)[0], u"1"_s);
    }

    void aRecordThatOursLacksHasNoNumber() {
        EditorFixture fixture;
        openWith(fixture, R"({"what": "record", "table": "Pumps", "record": 2, "base": ["P-9", 9], "ours": null, )"
                          R"("theirs": ["P-9", 8], "theirsFields": ["Tag", "Speed"]})"
                          "\n");
        QCOMPARE(states(fixture), QStringList{unclear});
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(speeds(fixture), (QStringList{u"1"_s, u"2"_s, u"3"_s}));
    }

    void aKeyThatSeveralRecordsHaveByNowIsUnclear() {
        merge({pumpsOf({u"P-1"_s, u"P-2"_s}, {u"1"_s, u"2"_s})}, {pumpsOf({u"P-1"_s, u"P-2"_s}, {u"10"_s, u"2"_s})},
              {pumpsOf({u"P-1"_s, u"P-2"_s}, {u"11"_s, u"2"_s})}, {u"Tag"_s});
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(states(fixture), QStringList{u"open"_s});
        edit(fixture, 0, 2, 1, u"P-1"_s);
        QCOMPARE(states(fixture), QStringList{unclear});
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(speeds(fixture), (QStringList{u"10"_s, u"2"_s}));
    }

    void afterASortNoNumberIsTakenWithoutAQuestion() {
        mergeUnsorted();
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(states(fixture), (QStringList{u"open"_s, u"open"_s}));
        sortByTag(fixture);
        const QStringList sorted{u"10"_s, u"3"_s, u"10"_s};
        QCOMPARE(speeds(fixture), sorted);
        QCOMPARE(states(fixture), (QStringList{elsewhere, elsewhere}));
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(speeds(fixture), sorted);
        QVERIFY2(status(fixture).startsWith(u"Left, since the record may be another one now: 2."_s),
                 qPrintable(status(fixture)));
        pick(fixture, 0);
        fixture.dialogs().expectMessage(differs(1), u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(speeds(fixture), sorted);
        fixture.dialogs().expectMessage(differs(1), u"?"_s, u"Yes"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(speeds(fixture), (QStringList{u"11"_s, u"3"_s, u"10"_s}));
        QCOMPARE(states(fixture), (QStringList{u"resolved: theirs"_s, elsewhere}));
    }

    void eachNumberIsAskedForUntilTheQuestionIsCancelled() {
        mergeUnsorted();
        EditorFixture fixture;
        open(fixture);
        sortByTag(fixture);
        pick(fixture, 0);
        pick(fixture, 1, Qt::ShiftModifier);
        fixture.dialogs().expectMessage(differs(1), u"?"_s, u"No"_s);
        fixture.dialogs().expectMessage(differs(2), u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        fixture.dialogs().expectMessage(differs(1), u"?"_s, u"Cancel"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(speeds(fixture), (QStringList{u"10"_s, u"3"_s, u"10"_s}));
    }

    void afterARemovalNoNumberIsTakenWithoutAQuestion() {
        mergeUnsorted();
        EditorFixture fixture;
        open(fixture);
        fixture.clickCell(0, 1, 1);
        fixture.choose(Command::RemoveRecordMenu);
        QCOMPARE(states(fixture), (QStringList{elsewhere, elsewhere}));
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(speeds(fixture), (QStringList{u"10"_s, u"3"_s}));
        fixture.choose(Command::UndoMenu);
        QCOMPARE(states(fixture), (QStringList{u"open"_s, u"open"_s}));
    }

    void aRecordBehindTheOthersMovesNone() {
        mergeUnsorted();
        EditorFixture fixture;
        open(fixture);
        fixture.choose(Command::AddRecordMenu);
        QCOMPARE(states(fixture), (QStringList{u"open"_s, u"open"_s}));
    }

    void aFieldIsNotPlacedByPositionInMovedRecordsWithoutAQuestion() {
        mergeFields({u"P-3"_s, u"P-1"_s, u"P-2"_s}, {});
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(states(fixture), (QStringList{u"open"_s, u"open"_s, u"open"_s, u"open"_s}));
        sortByTag(fixture);
        const QStringList sorted{u"a"_s, u"b"_s, u"c"_s};
        QCOMPARE(names(fixture), sorted);
        QCOMPARE(states(fixture)[0], u"open; the records are not as the merge has left them"_s);
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(names(fixture), sorted);
        QVERIFY2(status(fixture).startsWith(u"Left, since the record may be another one now: 1."_s),
                 qPrintable(status(fixture)));
        pick(fixture, 0);
        const QString question = u"The records of 'Pumps' are not as the merge has left them; they may be other "
                                 u"ones.\r\nTake that side there all the same?"_s;
        fixture.dialogs().expectMessage(question, u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(names(fixture), sorted);
        fixture.choose(Command::UndoMenu);
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(names(fixture), (QStringList{u"their c"_s, u"their a"_s, u"their b"_s}));
    }

    void aFieldIsPlacedByKeyInMovedRecords() {
        mergeFields({u"P-3"_s, u"P-1"_s, u"P-2"_s}, {u"Tag"_s});
        EditorFixture fixture;
        open(fixture);
        sortByTag(fixture);
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(names(fixture), (QStringList{u"their a"_s, u"their b"_s, u"their c"_s}));
    }

    void aFieldOfSeveralRecordsOfOneKeyAsks() {
        mergeFields({u"P-3"_s, u"P-1"_s, u"P-1"_s}, {u"Tag"_s});
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(states(fixture)[0], u"open; only their order tells the records"_s);
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(names(fixture), (QStringList{u"c"_s, u"a"_s, u"b"_s}));
        pick(fixture, 0);
        fixture.dialogs().expectMessage(u"The list does not tell whether the records of 'Pumps' are still those that "
                                        u"the merge meant.\r\nTake that side there all the same?"_s,
                                        u"?"_s, u"Yes"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(names(fixture), (QStringList{u"their c"_s, u"their a"_s, u"their b"_s}));
    }

    void ofTwoCellsOfOneRecordEachCanBeTakenInTurn() {
        merge({pumpsOf({u"P-1"_s}, {u"1"_s}, {u"a"_s})}, {pumpsOf({u"P-1"_s}, {u"10"_s}, {u"b"_s})},
              {pumpsOf({u"P-1"_s}, {u"11"_s}, {u"c"_s})});
        EditorFixture fixture;
        open(fixture);
        pick(fixture, 0);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(states(fixture), (QStringList{u"resolved: theirs"_s, u"open"_s}));
        pick(fixture, 1);
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"P-1"_s, u"11"_s, u"c"_s}}));
    }

    void aListThatTellsTheNumberAloneAsksForEach() {
        EditorFixture fixture;
        openWith(fixture, R"({"what": "cell", "table": "Pumps", "record": 2, "field": "Speed", "base": 0, "ours": 2, )"
                          R"("theirs": 7})"
                          "\n");
        QCOMPARE(states(fixture), QStringList{untold});
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(speeds(fixture), (QStringList{u"1"_s, u"2"_s, u"3"_s}));
        const QString question = u"The list does not tell whether record 2 of 'Pumps' is still the one that the merge "
                                 u"meant.\r\nTake that side there all the same?"_s;
        fixture.dialogs().expectMessage(question, u"?"_s, u"Yes"_s);
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"No"_s);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(speeds(fixture), (QStringList{u"1"_s, u"7"_s, u"3"_s}));
    }

    void theValueOfTheirsInAnotherRecordResolvesNothing() {
        EditorFixture fixture;
        openWith(fixture, R"({"what": "cell", "table": "Pumps", "record": 2, "field": "Speed", "base": 0, "ours": 7, )"
                          R"("theirs": 2, "recordDigest": "0"})"
                          "\n");
        QCOMPARE(states(fixture), QStringList{elsewhere});
        QCOMPARE(status(fixture), u"0 of 1 conflicts are resolved."_s);
    }

    void aTableWithoutRecordsHasNoPlace() {
        makeFile(u"OUT.DDB"_s, {pumpsOf({}, {})});
        writeList(R"({"what": "cell", "table": "Pumps", "record": 1, "field": "Speed", "base": 1, "ours": 1, )"
                  R"("theirs": 7})"
                  "\n"
                  R"({"what": "record", "table": "Pumps", "key": ["P-1"], "keyFields": ["Tag"], "base": ["P-1", 1], )"
                  R"("ours": null, "theirs": ["P-1", 2], "theirsFields": ["Tag", "Speed"]})"
                  "\n");
        EditorFixture fixture;
        open(fixture);
        QCOMPARE(states(fixture), (QStringList{noPlace, u"open"_s}));
        hands::doubleClick(view(fixture).viewport(), Qt::LeftButton, {}, placeOf(fixture, 0));
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(recordsOf(fixture, 0), (QList<QStringList>{{u"P-1"_s, u"2"_s}}));
        QCOMPARE(states(fixture), (QStringList{untold, u"resolved: theirs"_s})); // by now there is a first record
    }

    void aProtectedDatabaseStaysProtected() {
        const QString file = makeFile(u"OUT.UDB"_s, {pumpsOf({u"P-1"_s}, {u"1"_s})}, u"secret"_s);
        const QString list = writeBytes(u"OUT.UDB.conflicts.json"_s,
                                        R"({"what": "cell", "table": "Pumps", "key": ["P-1"], "keyFields": ["Tag"], )"
                                        R"("field": "Speed", "base": 0, "ours": 1, "theirs": 7})"
                                        "\n");
        EditorFixture fixture;
        fixture.dialogs().allow(u"mergeConflicts"_s);
        fixture.dialogs().expectFile(fileDialogTitle, file);
        fixture.dialogs().expectInput(u"Password:"_s, u"Input password"_s, QString(), u"secret"_s);
        fixture.choose(Command::OpenDatabase);
        fixture.choose(Command::ConflictsMenu);
        fixture.dialogs().expectMessage(u"All conflicts are resolved.\r\nSave '%1' and remove '%2'?"_s.arg(file, list),
                                        u"?"_s, u"Yes"_s);
        push(fixture, u"conflictTheirs"_s);
        QVERIFY(!QFile::exists(list));
        QVERIFY(QirDatabase::create().LoadDtb(file, u"secret"_s));
        QVERIFY(!QirDatabase::create().LoadDtb(file, u"wrong"_s));
    }

    void whereTheFileCannotBeSavedTheListStays() {
        mergeCells();
        QVERIFY(QFile::setPermissions(path(u"OUT.DDB"_s), QFile::ReadOwner));
        const QByteArray before = fileBytes(path(u"OUT.DDB"_s));
        EditorFixture fixture;
        open(fixture);
        fixture.dialogs().expectMessage(saveAndRemove(), u"?"_s, u"Yes"_s);
        fixture.dialogs().expect(messageNaming({u"OUT.DDB: could not be saved: it is marked read-only"_s}));
        push(fixture, u"conflictAllTheirs"_s);
        QVERIFY(QFile::exists(path(u"OUT.DDB.conflicts.json"_s)));
        QVERIFY(window(fixture)->isVisible());
        QVERIFY(fixture.database(0).DtbHasChanged());
        QCOMPARE(fileBytes(path(u"OUT.DDB"_s)), before);
    }

    void whereTheFolderCannotBeWrittenTheListStaysAndIsNamed() {
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        const QString folder = path(QString());
        const QString list = path(u"OUT.DDB.conflicts.json"_s);
        QVERIFY(QFile::setPermissions(folder + u"/.."_s, QFile::Permissions(0x5555 | 0x2200)));
        QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x5555)));
        fixture.dialogs().expectMessage(justRemove(), u"?"_s, u"Yes"_s);
        fixture.dialogs().expect(messageNaming({list, u"ermission"_s}));
        {
            const WithoutPrivileges none;
            push(fixture, u"conflictAllOurs"_s);
        }
        QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x7700)));
        QVERIFY(QFile::exists(list));
        QVERIFY(window(fixture)->isVisible());
    }

    void withOneFileInBothPanesOnlyItsOwnIsWritten() {
        mergeCells();
        EditorFixture fixture;
        fixture.openBoth(path(u"OUT.DDB"_s), path(u"OUT.DDB"_s));
        fixture.dialogs().allow(u"mergeConflicts"_s);
        fixture.choose(Command::ConflictsMenu);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(speeds(fixture, 0), (QStringList{u"11"_s, u"20"_s, u"31"_s}));
        QCOMPARE(speeds(fixture, 1), (QStringList{u"10"_s, u"20"_s, u"31"_s}));
        QCOMPARE(states(fixture), (QStringList{u"resolved: theirs"_s, u"open"_s}));
        fixture.activate(1);
        fixture.choose(Command::ConflictsMenu);
        QCOMPARE(states(fixture), (QStringList{u"open"_s, u"open"_s}));
        pick(fixture, 1);
        push(fixture, u"conflictTheirs"_s);
        QCOMPARE(speeds(fixture, 0), (QStringList{u"11"_s, u"20"_s, u"31"_s}));
        QCOMPARE(speeds(fixture, 1), (QStringList{u"10"_s, u"21"_s, u"31"_s}));
    }

    void savingUnderAnotherNameEndsTheWindow() {
        mergeCells();
        EditorFixture fixture;
        open(fixture);
        fixture.dialogs().expectFile(fileDialogTitle, path(u"OTHER.DDB"_s));
        fixture.choose(Command::SaveAsMenu);
        QVERIFY(!window(fixture)->isVisible());
        QVERIFY(QFile::exists(path(u"OUT.DDB.conflicts.json"_s)));
    }

    void afterAReloadTheListFollowsWhatIsThere() {
        mergeCells();
        makeFile(u"LATER.DDB"_s, {pumpsOf({u"P-0"_s, u"P-1"_s}, {u"10"_s, u"20"_s})});
        EditorFixture fixture;
        open(fixture);
        QVERIFY(QFile::remove(path(u"OUT.DDB"_s)));
        QVERIFY(QFile::rename(path(u"LATER.DDB"_s), path(u"OUT.DDB"_s)));
        auto &bar = *fixture.window().findChild<NoticeBar *>(u"noticeBar_0"_s);
        QTRY_VERIFY(bar.isVisible());
        hands::click(bar.findChild<QPushButton *>(u"reload"_s), Qt::LeftButton);
        QTRY_COMPARE(speeds(fixture), (QStringList{u"10"_s, u"20"_s}));
        QCOMPARE(states(fixture), (QStringList{elsewhere, elsewhere}));
        push(fixture, u"conflictAllTheirs"_s);
        QCOMPARE(speeds(fixture), (QStringList{u"10"_s, u"20"_s}));
    }
};

QTEST_MAIN(ConflictPlacesTest)
#include "conflict_places_test.moc"
