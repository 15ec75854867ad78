#include "cli/ComparisonArguments.h"
#include "cli/git/ConflictText.h"
#include "cli/git/ContentMerge.h"
#include "tests/support/CountedMemory.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace qir {

namespace {

const FieldInfo id{u"Id"_s, FieldType::Long, 0};
const FieldInfo note{u"Note"_s, FieldType::Text, 5};

RecordValues record(double number, const QString &text) {
    return {number, text};
}

DatabaseContent tables(std::vector<RecordValues> records, const QString &name = u"T"_s) {
    return {{{name, {id, note}, std::move(records)}}};
}

MergedContent merged(const DatabaseContent &base, const DatabaseContent &ours, const DatabaseContent &theirs,
                     const QStringList &keys = {}) {
    std::vector<ChosenKey> chosen;
    for (const QString &key : keys)
        chosen.push_back(*parseKey(key));
    return mergeContents(base, ours, theirs, KeyChoice(chosen));
}

std::string linesOf(const std::vector<Conflict> &conflicts) {
    QByteArray lines;
    for (Conflict conflict : conflicts) {
        conflict.recordDigest.clear(); // looked at by itself
        appendConflict(lines, conflict);
    }
    return lines.toStdString();
}

void expectRecords(const MergedContent &result, const std::vector<RecordValues> &records) {
    ASSERT_EQ(result.content.tables.size(), 1U);
    EXPECT_TRUE(sameContent(result.content.tables[0], {result.content.tables[0].name, {id, note}, records}));
}

TEST(MergeTest, CellsOfOneRecordAreMerged) {
    const MergedContent result =
        merged(tables({record(1, u"a"_s)}), tables({record(2, u"a"_s)}), tables({record(1, u"b"_s)}));
    EXPECT_EQ(linesOf(result.conflicts), "");
    expectRecords(result, {record(2, u"b"_s)});
}

TEST(MergeTest, ACellThatBothChangedIsAConflictAndStaysOurs) {
    const MergedContent result =
        merged(tables({record(1, u"a"_s)}), tables({record(1, u"b"_s)}), tables({record(1, u"c"_s)}));
    EXPECT_EQ(linesOf(result.conflicts), "{\"what\": \"cell\", \"table\": \"T\", \"record\": 1, \"field\": \"Note\", "
                                         "\"base\": \"a\", \"ours\": \"b\", \"theirs\": \"c\"}\n");
    expectRecords(result, {record(1, u"b"_s)});
}

TEST(MergeTest, TheSameEditOnBothSidesIsNoConflict) {
    const DatabaseContent same = tables({record(1, u"b"_s), record(2, u"new"_s)});
    const MergedContent result = merged(tables({record(1, u"a"_s)}), same, same);
    EXPECT_EQ(linesOf(result.conflicts), "");
    expectRecords(result, same.tables[0].records);
}

TEST(MergeTest, RecordsThatBothAddedAtTheEndAreAllThere) {
    const RecordValues first = record(1, u"a"_s);
    const MergedContent result = merged(tables({first}), tables({first, record(2, u"o"_s)}),
                                        tables({first, record(3, u"t"_s), record(4, u"t"_s)}));
    EXPECT_EQ(linesOf(result.conflicts), "");
    expectRecords(result, {first, record(2, u"o"_s), record(3, u"t"_s), record(4, u"t"_s)});
}

TEST(MergeTest, AnInsertionBesideEditsNeedsAKey) {
    const DatabaseContent base = tables({record(1, u"a"_s), record(2, u"b"_s)});
    const DatabaseContent ours = tables({record(1, u"a"_s), record(9, u"n"_s), record(2, u"b"_s)});
    const DatabaseContent theirs = tables({record(1, u"a"_s), record(2, u"c"_s)});
    const MergedContent without = merged(base, ours, theirs);
    EXPECT_THAT(linesOf(without.conflicts),
                HasSubstr("{\"what\": \"table\", \"table\": \"T\", \"base\": [\"Id[long]\""));
    EXPECT_THAT(linesOf(without.conflicts), HasSubstr("a key would help: --key \\\"T:FIELD\\\""));
    expectRecords(without, ours.tables[0].records);
    const MergedContent with = merged(base, ours, theirs, {u"T:Id"_s});
    EXPECT_EQ(linesOf(with.conflicts), "");
    expectRecords(with, {record(1, u"a"_s), record(9, u"n"_s), record(2, u"c"_s)});
}

/// Records with a number, a name and a speed.
DatabaseContent pumps(std::vector<RecordValues> records) {
    return {{{u"T"_s, {{u"No"_s, FieldType::Long, 0}, note, {u"Speed"_s, FieldType::Long, 0}}, std::move(records)}}};
}

TEST(MergeTest, AnInsertionThatNumbersTheRecordsAnewNeedsAKeyToo) {
    const DatabaseContent base =
        pumps({{1.0, u"a"_s, 10.0}, {2.0, u"b"_s, 20.0}, {3.0, u"c"_s, 30.0}, {4.0, u"d"_s, 40.0}});
    const DatabaseContent ours = pumps(
        {{1.0, u"a"_s, 10.0}, {2.0, u"new"_s, 20.0}, {3.0, u"b"_s, 20.0}, {4.0, u"c"_s, 30.0}, {5.0, u"d"_s, 40.0}});
    const DatabaseContent theirs =
        pumps({{1.0, u"a"_s, 10.0}, {2.0, u"b"_s, 25.0}, {3.0, u"c"_s, 30.0}, {4.0, u"d"_s, 40.0}});
    for (const auto &[one, other] : {std::pair(ours, theirs), std::pair(theirs, ours)}) {
        const MergedContent result = merged(base, one, other);
        EXPECT_THAT(linesOf(result.conflicts), HasSubstr("a key would help: --key \\\"T:FIELD\\\""));
        EXPECT_TRUE(sameContent(result.content.tables[0], one.tables[0]));
    }
    const MergedContent single =
        merged(pumps({{1.0, u"10"_s, 100.0}}), pumps({{7.0, u"70"_s, 100.0}, {1.0, u"10"_s, 101.0}}),
               pumps({{1.0, u"10"_s, 200.0}}));
    EXPECT_THAT(linesOf(single.conflicts), HasSubstr("a key would help"));
}

TEST(MergeTest, EditsBesideRecordsAddedAtTheEndNeedNoKey) {
    const DatabaseContent base = pumps({{1.0, u"a"_s, 10.0}, {2.0, u"b"_s, 20.0}, {3.0, u""_s, 0.0}});
    const MergedContent result =
        merged(base, pumps({{1.0, u"a"_s, 10.0}, {2.0, u"b"_s, 25.0}, {3.0, u"c"_s, 0.0}, {4.0, u"d"_s, 20.0}}),
               pumps({{1.0, u"z"_s, 10.0}, {2.0, u"b"_s, 20.0}, {3.0, u""_s, 0.0}}));
    EXPECT_EQ(linesOf(result.conflicts), "");
    EXPECT_TRUE(sameContent(
        result.content.tables[0],
        pumps({{1.0, u"z"_s, 10.0}, {2.0, u"b"_s, 25.0}, {3.0, u"c"_s, 0.0}, {4.0, u"d"_s, 20.0}}).tables[0]));
}

TEST(MergeTest, RecordsThatMovedAndWereNumberedAnewNeedAKey) {
    const MergedContent result = merged(pumps({{1.0, u"a"_s, 10.0}, {2.0, u"b"_s, 20.0}, {3.0, u"c"_s, 30.0}}),
                                        pumps({{1.0, u"c"_s, 30.0}, {2.0, u"b"_s, 20.0}, {3.0, u"a"_s, 10.0}}),
                                        pumps({{4.0, u"a"_s, 10.0}, {2.0, u"b"_s, 20.0}, {3.0, u"c"_s, 30.0}}));
    EXPECT_THAT(linesOf(result.conflicts), HasSubstr("a key would help"));
}

TEST(MergeTest, AllRecordsOfOneKeyAreToldInAConflict) {
    const MergedContent result =
        merged(tables({record(1, u"10"_s), record(1, u"20"_s)}), tables({record(1, u"11"_s), record(1, u"20"_s)}),
               tables({record(1, u"10"_s), record(1, u"99"_s)}), {u"T:Id"_s});
    const std::string reason = "\"reason\": \"several records have this key, and both sides have changed them\", "
                               "\"keyFields\": [\"Id\"], \"oursFields\": [\"Id\", \"Note\"], \"theirsFields\": "
                               "[\"Id\", \"Note\"], \"occurrence\": ";
    EXPECT_EQ(
        linesOf(result.conflicts),
        "{\"what\": \"record\", \"table\": \"T\", \"key\": [1], \"base\": [1, \"10\"], \"ours\": [1, \"11\"], "
        "\"theirs\": [1, \"10\"], " +
            reason + "1}\n" +
            "{\"what\": \"record\", \"table\": \"T\", \"key\": [1], \"base\": [1, \"20\"], \"ours\": [1, \"20\"], "
            "\"theirs\": [1, \"99\"], " +
            reason + "2}\n");
    expectRecords(result, {record(1, u"11"_s), record(1, u"20"_s)});
}

TEST(MergeTest, AFieldInConflictTellsTheValuesOfTheOtherSide) {
    const DatabaseContent base = tables({record(1, u"a"_s), record(2, u"b"_s)});
    DatabaseContent ours = base;
    ours.tables[0].fields[1].size = 2;
    const DatabaseContent theirs = tables({record(1, u"a"_s), record(2, u"bbb"_s), record(3, u"ccc"_s)});
    const std::string lines = linesOf(merged(base, ours, theirs).conflicts);
    EXPECT_THAT(lines, HasSubstr("\"what\": \"field\""));
    EXPECT_THAT(lines, HasSubstr("{\"what\": \"cell\", \"table\": \"T\", \"record\": 2, \"field\": \"Note\", \"base\": "
                                 "\"b\", \"ours\": \"b\", \"theirs\": \"bbb\""));
    EXPECT_THAT(lines, HasSubstr("\"record\": 3, \"field\": \"Note\", \"base\": null, \"ours\": null, \"theirs\": "
                                 "\"ccc\""));
    const DatabaseContent removed{{{u"T"_s, {id}, {{1.0}, {2.0}}}}};
    const std::string keyed = linesOf(merged(base, removed, theirs, {u"Id"_s}).conflicts);
    EXPECT_THAT(keyed, HasSubstr("{\"what\": \"cell\", \"table\": \"T\", \"key\": [2], \"field\": \"Note\", \"base\": "
                                 "\"b\", \"ours\": null, \"theirs\": \"bbb\""));
    EXPECT_THAT(keyed, HasSubstr("\"key\": [3], \"field\": \"Note\""));
}

TEST(MergeTest, AShorterFieldTakesWhatFits) {
    const DatabaseContent base = tables({record(1, u"a"_s)});
    DatabaseContent ours = base;
    ours.tables[0].fields[1].size = 3;
    const MergedContent result = merged(base, ours, tables({record(1, u"bbb"_s), record(2, u"c"_s)}));
    EXPECT_EQ(linesOf(result.conflicts), "");
    EXPECT_TRUE(sameContent(result.content.tables[0],
                            {u"T"_s, ours.tables[0].fields, {record(1, u"bbb"_s), record(2, u"c"_s)}}));
}

TEST(MergeTest, ARecordRemovedHereAndChangedThereIsAConflict) {
    const MergedContent result = merged(tables({record(1, u"a"_s), record(2, u"b"_s)}), tables({record(2, u"b"_s)}),
                                        tables({record(1, u"x"_s), record(2, u"b"_s)}), {u"Id"_s});
    EXPECT_EQ(
        linesOf(result.conflicts),
        "{\"what\": \"record\", \"table\": \"T\", \"key\": [1], \"base\": [1, \"a\"], \"ours\": null, \"theirs\": "
        "[1, \"x\"], \"reason\": \"OURS has removed it, THEIRS has changed it\", \"keyFields\": [\"Id\"], "
        "\"theirsFields\": [\"Id\", \"Note\"]}\n");
    expectRecords(result, {record(2, u"b"_s)});
}

TEST(MergeTest, AFieldThatOneSideAddsAndOneThatTheOtherRemovesAreMerged) {
    const DatabaseContent base = tables({record(1, u"a"_s)});
    DatabaseContent ours = base;
    ours.tables[0].fields.push_back({u"New"_s, FieldType::Double, 0});
    ours.tables[0].records[0].push_back(2.5);
    DatabaseContent theirs{{{u"T"_s, {id}, {{1.0}}}}};
    const MergedContent result = merged(base, ours, theirs);
    EXPECT_EQ(linesOf(result.conflicts), "");
    EXPECT_TRUE(sameContent(result.content.tables[0], {u"T"_s, {id, {u"New"_s, FieldType::Double, 0}}, {{1.0, 2.5}}}));
    theirs.tables[0] = {u"T"_s, {id}, {{7.0}}};
    ours.tables[0].records[0][1] = u"b"_s; // a value of the field that the other side removes
    const MergedContent conflict = merged(base, ours, theirs);
    EXPECT_THAT(linesOf(conflict.conflicts), HasSubstr("{\"what\": \"field\", \"table\": \"T\", \"field\": \"Note\", "
                                                       "\"base\": \"Note[text:5]\", \"ours\": \"Note[text:5]\", "
                                                       "\"theirs\": null"));
    EXPECT_TRUE(sameContent(conflict.content.tables[0], {u"T"_s, ours.tables[0].fields, {{7.0, u"b"_s, 2.5}}}));
}

TEST(MergeTest, AShorterFieldDoesNotCutWhatTheOtherSideWrote) {
    const DatabaseContent base = tables({record(1, u"a"_s)});
    DatabaseContent ours = base;
    ours.tables[0].fields[1].size = 1;
    const MergedContent result = merged(base, ours, tables({record(1, u"long"_s)}));
    EXPECT_THAT(linesOf(result.conflicts), HasSubstr("\"what\": \"field\""));
    EXPECT_TRUE(sameContent(result.content.tables[0], ours.tables[0]));
}

TEST(MergeTest, AFieldInConflictIsAsOursHasItInSeveralRecordsOfOneKeyToo) {
    const DatabaseContent base = tables({record(1, u"a"_s), record(1, u"b"_s)});
    DatabaseContent ours = base;
    ours.tables[0].fields[1].size = 6;
    DatabaseContent theirs = base;
    theirs.tables[0].fields[1].size = 7;
    theirs.tables[0].records = {record(1, u"x"_s), record(1, u"y"_s), record(1, u"z"_s)};
    const MergedContent result = merged(base, ours, theirs, {u"Id"_s});
    EXPECT_THAT(linesOf(result.conflicts), HasSubstr("\"what\": \"field\""));
    EXPECT_TRUE(
        sameContent(result.content.tables[0],
                    {u"T"_s, ours.tables[0].fields, {record(1, u"a"_s), record(1, u"b"_s), record(1, QString())}}));
}

TEST(MergeTest, TablesComeAndGo) {
    const DatabaseContent one = tables({record(1, u"a"_s)}, u"One"_s);
    const DatabaseContent two = tables({record(2, u"b"_s)}, u"Two"_s);
    DatabaseContent both = one;
    both.tables.push_back(two.tables[0]);
    const MergedContent added = merged({}, one, two);
    EXPECT_EQ(linesOf(added.conflicts), "");
    EXPECT_EQ(added.content.tables.size(), 2U);
    const MergedContent removed = merged(both, one, both);
    EXPECT_EQ(linesOf(removed.conflicts), "");
    EXPECT_EQ(removed.content.tables.size(), 1U);
    DatabaseContent changed = both;
    changed.tables[1].records[0][0] = 3.0;
    const MergedContent conflict = merged(both, one, changed);
    EXPECT_THAT(linesOf(conflict.conflicts),
                HasSubstr("\"table\": \"Two\", \"base\": [\"Id[long]\", \"Note[text:5]\"], "
                          "\"ours\": null"));
    EXPECT_EQ(conflict.content.tables.size(), 1U);
}

std::size_t allocationsOfMerge(int tables, int fields) {
    DatabaseContent content;
    for (int number = 0; number < tables; ++number) {
        TableContent table{u"T%1"_s.arg(number), {}, {{}}};
        for (int field = 0; field < fields; ++field) {
            table.fields.push_back({u"F%1"_s.arg(field), FieldType::Long, 0});
            table.records[0].emplace_back(1.0);
        }
        content.tables.push_back(std::move(table));
    }
    const CountedMemory memory;
    EXPECT_EQ(merged(content, content, content).content.tables.size(), content.tables.size());
    return memory.allocations();
}

TEST(MergeTest, EightTimesAsManyTablesOrFieldsCostAtMostNineTimesAsMuch) {
    if (!CountedMemory::counts())
        GTEST_SKIP() << "nothing is counted";
    EXPECT_LT(allocationsOfMerge(1024, 1), 9 * allocationsOfMerge(128, 1));
    EXPECT_LT(allocationsOfMerge(1, 1024), 9 * allocationsOfMerge(1, 128));
}

TEST(KeyChoiceTest, TheKeyOfATableGoesBeforeOneOfAll) {
    const KeyChoice keys({{u"T"_s, {u"A"_s, u"B"_s}}, {{}, {u"A"_s}}});
    EXPECT_EQ(keys.keyOf(u"t"_s, {u"a"_s, u"b"_s}), (QStringList{u"A"_s, u"B"_s}));
    EXPECT_THROW(keys.keyOf(u"T"_s, {u"A"_s}), WrongChoice);
    EXPECT_EQ(keys.keyOf(u"Other"_s, {u"A"_s}), QStringList{u"A"_s});
    EXPECT_EQ(keys.keyOf(u"Other"_s, {u"B"_s}), QStringList());
    EXPECT_THROW(keys.requireFit({{u"Other"_s, {u"A"_s}}}), WrongChoice);
    EXPECT_THROW(keys.requireFit({{u"T"_s, {u"A"_s}}}), WrongChoice);
    EXPECT_NO_THROW(keys.requireFit({{u"Other"_s, {}}, {u"T"_s, {u"a"_s, u"b"_s}}}));
    EXPECT_THROW(KeyChoice(std::vector<ChosenKey>{{{}, {u"C"_s}}}).requireFit({{u"T"_s, {u"A"_s}}}), WrongChoice);
    const KeyChoice usual(std::vector<ChosenKey>{{{}, {u"A"_s}}}, std::vector<ChosenKey>{{u"T"_s, {u"B"_s}}});
    EXPECT_NO_THROW(usual.requireFit({{u"Other"_s, {u"A"_s}}}));
    EXPECT_EQ(usual.keyOf(u"T"_s, {u"A"_s, u"B"_s}), QStringList{u"B"_s});
}

} // namespace

} // namespace qir
