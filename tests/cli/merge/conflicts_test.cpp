#include "cli/git/ConflictText.h"
#include "cli/git/ContentMerge.h"
#include "compare/conflicts/ConflictReader.h"
#include "compare/conflicts/RecordDigest.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QByteArray linesOf(const std::vector<Conflict> &conflicts) {
    QByteArray lines;
    for (const Conflict &conflict : conflicts)
        appendConflict(lines, conflict);
    return lines;
}

TableContent table(const QString &name, std::vector<FieldInfo> fields, std::vector<RecordValues> records) {
    return {name, std::move(fields), std::move(records)};
}

const FieldInfo id{u"Id"_s, FieldType::Long, 0};
const FieldInfo other{u"Other"_s, FieldType::Text, 20};
const FieldInfo note{u"Note \"x\""_s, FieldType::Text, 20};

/// A merge that leaves a conflict of each kind.
std::vector<Conflict> conflictsOfEachKind() {
    const FieldInfo longer{note.name, FieldType::Text, 30};
    const FieldInfo shorter{note.name, FieldType::Text, 40};
    const DatabaseContent base{{table(u"K"_s, {id, note}, {{1.0, u"a"_s}, {2.0, u"b"_s}, {3.0, u"c"_s}}),
                                table(u"F"_s, {note}, {{u"a"_s}}), table(u"T"_s, {id}, {{1.0}})}};
    const DatabaseContent ours{{table(u"K"_s, {id, note}, {{1.0, u"o\n\u00e9"_s}, {3.0, u"o"_s}}),
                                table(u"F"_s, {longer}, {{u"a"_s}}), table(u"T"_s, {id}, {{2.0}})}};
    const DatabaseContent theirs{
        {table(u"K"_s, {id, note}, {{1.0, u"t"_s}, {2.0, u"t"_s}}), table(u"F"_s, {shorter}, {{u"t"_s}})}};
    return mergeContents(base, ours, theirs, KeyChoice({{u"K"_s, {u"Id"_s}}})).conflicts;
}

void expectFailure(const QByteArray &lines, const QString &reason) {
    const auto read = readConflicts(lines);
    ASSERT_FALSE(read.has_value());
    EXPECT_EQ(read.error().text.toStdString(), reason.toStdString());
}

TEST(ConflictsTest, WhatAMergeWritesIsReadAsItWas) {
    const std::vector<Conflict> written = conflictsOfEachKind();
    for (const auto what : {Conflict::What::Cell, Conflict::What::Record, Conflict::What::Field, Conflict::What::Table})
        EXPECT_TRUE(std::ranges::count(written, what, &Conflict::what) > 0) << static_cast<int>(what);
    const QByteArray lines = linesOf(written);
    const auto read = readConflicts(lines);
    ASSERT_TRUE(read.has_value()) << read.error().text.toStdString();
    ASSERT_EQ(read->size(), written.size());
    EXPECT_EQ(linesOf(*read).toStdString(), lines.toStdString());
    for (std::size_t i = 0; i < written.size(); ++i) {
        EXPECT_EQ((*read)[i].keyFields, written[i].keyFields);
        EXPECT_EQ((*read)[i].theirsFields, written[i].theirsFields);
        EXPECT_EQ((*read)[i].ours, written[i].ours);
    }
}

TEST(ConflictsTest, ARecordTellsTheFieldsOfItsValuesAndOfItsKey) {
    for (const Conflict &conflict : conflictsOfEachKind()) {
        if (conflict.what != Conflict::What::Record)
            continue;
        EXPECT_EQ(conflict.keyFields, QStringList{u"Id"_s});
        const QStringList fields{id.name, note.name};
        EXPECT_EQ(conflict.oursFields, conflict.ours.isEmpty() ? QStringList() : fields);
        EXPECT_EQ(conflict.theirsFields, conflict.theirs.isEmpty() ? QStringList() : fields);
    }
}

TEST(ConflictsTest, AListWithoutNamesOfFieldsIsReadToo) {
    const auto read = readConflicts("{\"what\": \"cell\", \"table\": \"T\", \"key\": [1], \"field\": \"A\", "
                                    "\"base\": null, \"ours\": 2, \"theirs\": 3}\n");
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ((*read)[0].keyFields, QStringList());
    EXPECT_EQ((*read)[0].key, QVariantList{1.0});
    EXPECT_TRUE((*read)[0].base.isEmpty());
}

std::vector<Conflict> byPosition(const RecordValues &first) {
    const auto side = [&](const QString &text) {
        RecordValues changed = first;
        changed[1] = text;
        return DatabaseContent{{table(u"T"_s, {id, note, other}, {changed, {2.0, text, u"same"_s}})}};
    };
    return mergeContents(side(u"b"_s), side(u"o"_s), side(u"t"_s), KeyChoice()).conflicts;
}

TEST(ConflictsTest, ALineWithANumberTellsWhatElseTheRecordIsKnownBy) {
    const std::vector<Conflict> written = byPosition({1.0, {}, u"same"_s});
    ASSERT_EQ(written.size(), 2U);
    EXPECT_EQ(written[0].recordDigest.size(), 32);
    EXPECT_NE(written[0].recordDigest, written[1].recordDigest);
    EXPECT_EQ(written[0].recordDigest, byPosition({1.0, {}, u"same"_s})[0].recordDigest);
    EXPECT_NE(written[0].recordDigest, byPosition({1.0, {}, u"other"_s})[0].recordDigest);
    const auto read = readConflicts(linesOf(written));
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ((*read)[0].recordDigest, written[0].recordDigest);
}

TEST(ConflictsTest, AFieldWithoutAKeyTellsWhatAllRecordsAreKnownBy) {
    for (const Conflict &conflict : conflictsOfEachKind()) {
        const bool isNumbered = conflict.record > 0 && conflict.key.isEmpty();
        EXPECT_EQ(conflict.recordDigest.isEmpty(), !isNumbered && conflict.what != Conflict::What::Field);
    }
}

TEST(ConflictsTest, ADigestIsOfWhatTheFieldsHoldInWhateverOrder) {
    RecordDigest one;
    one.add(u"A"_s, FieldType::Long, 0, 5.4);
    one.add(u"B"_s, FieldType::Text, 2, u"abc"_s);
    RecordDigest alike;
    alike.add(u"B"_s, FieldType::Text, 2, u"ab"_s);
    alike.add(u"A"_s, FieldType::Long, 0, u"5"_s);
    EXPECT_EQ(one.text(), alike.text());
    RecordDigest joined;
    joined.add(u"A"_s, FieldType::Text, 9, u"5B"_s);
    EXPECT_NE(joined.text(), one.text());
    EXPECT_TRUE(RecordDigest().isEmpty());
    RecordsDigest inOrder;
    inOrder.add(one);
    inOrder.add(joined);
    RecordsDigest otherwise;
    otherwise.add(joined);
    otherwise.add(one);
    EXPECT_NE(inOrder.text(), otherwise.text());
}

TEST(ConflictsTest, DamageIsToldWithItsLineAndReason) {
    const QByteArray good = "{\"what\": \"cell\", \"table\": \"T\", \"record\": 1, \"field\": \"A\", \"base\": 1, "
                            "\"ours\": 2, \"theirs\": 3}\n";
    ASSERT_TRUE(readConflicts(good).has_value());
    expectFailure({}, u"it is empty"_s);
    expectFailure("\n\n", u"it is empty"_s);
    expectFailure(good + good.left(40), u"line 2: it is no JSON object"_s);
    expectFailure("<<<<<<< ours\n", u"line 1: it is no JSON object"_s);
    const auto damaged = [&](const char *before, const char *after) {
        return good + QByteArray(good).replace(before, after);
    };
    expectFailure(damaged("\"cell\"", "\"word\""), u"line 2: there are no conflicts of a \"word\""_s);
    expectFailure(damaged("\"record\": 1, ", ""), u"line 2: it has neither \"record\" nor \"key\""_s);
    expectFailure(damaged("\"record\": 1", "\"record\": 0"), u"line 2: a whole number is missing"_s);
    expectFailure(damaged("\"record\": 1", "\"key\": []"), u"line 2: its key has no value"_s);
    expectFailure(damaged("\"record\": 1", "\"key\": [1], \"keyFields\": [\"A\", \"B\"]"),
                  u"line 2: \"keyFields\" has not a name for each value"_s);
    expectFailure(damaged(", \"theirs\": 3", ""), u"line 2: it has no \"theirs\""_s);
    expectFailure(damaged("\"record\": 1", "\"record\": 1, \"recordDigest\": 7"), u"line 2: a text is missing"_s);
    expectFailure(good + "\n" + good, u"line 3: it is the same as a line before it"_s);
    expectFailure(damaged("\"theirs\": 3", "\"theirs\": [3]"), u"line 2: a text is missing"_s);
    expectFailure(damaged("\"table\": \"T\"", "\"table\": 7"), u"line 2: a text is missing"_s);
    expectFailure(damaged("\"cell\"", "\"record\""), u"line 2: an array is missing"_s);
}

} // namespace

} // namespace qir
