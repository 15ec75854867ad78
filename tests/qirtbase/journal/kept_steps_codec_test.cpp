#include "qirtbase/journal/JournalCodec.h"
#include "qirtbase/journal/JournalReplay.h"
#include "qirtbase/journal/KeptSteps.h"
#include "tests/qirtbase/journal/JournalTest.h"

#include <gtest/gtest.h>

#include <QFile>

#include <random>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

constexpr std::size_t plenty = std::size_t{64} << 20;

std::size_t sizeOf(const KeptStepRecords &records) {
    std::size_t size = 0;
    for (const QByteArray &payload : records.payloads)
        size += static_cast<std::size_t>(payload.size());
    return size;
}

/// A table of numbers that is large enough for several chunks, and steps on it.
class KeptStepsCodec : public testing::Test {
protected:
    explicit KeptStepsCodec(std::size_t count = 140'000)
        : records(count) {
        database.addTable(u"T"_s);
        database.removeField(table(), 0);
        for (const QString &name : {u"A"_s, u"B"_s})
            database.addField(table(), name, static_cast<int>(ColumnType::Long), 0);
        database.addField(table(), u"C"_s, static_cast<int>(ColumnType::Text), 20);
        database.addRecords(table(), records - 1);
        database.keepSteps(History::noBudget);
    }
    Table &table() { return database.table(0); }
    void paste(std::size_t field, std::size_t first, int count, int value) {
        QByteArray values;
        for (int i = 0; i < count; ++i) {
            const qint32 number = value + i;
            values.append(reinterpret_cast<const char *>(&number), sizeof number);
        }
        database.setBlock(table(), field, first, ColumnBlock::ofNumbers(ColumnType::Long, values));
    }
    void reverse() {
        RecordOrder order(records);
        for (std::size_t i = 0; i < records; ++i)
            order[i] = static_cast<std::uint32_t>(records - 1 - i);
        database.beginStep(u"Sort"_s, {});
        for (std::size_t field = 0; field < table().fieldCount(); ++field)
            database.setBlock(table(), field, 0, blockOf(reordered(table().field(field).column, order)));
        database.recordsReordered(table(), order);
        database.endGroup();
    }
    static ColumnBlock blockOf(const Column &column) {
        QByteArray all;
        QByteArray texts;
        for (std::size_t i = 0; i < column.size(); ++i) {
            if (column.isText()) {
                char place[sizeof(TextPlace)];
                const QByteArray text = std::get<QString>(column.value(i)).toUtf8();
                putPlace(place, {static_cast<std::uint32_t>(texts.size()), static_cast<std::uint32_t>(text.size())});
                all.append(place, sizeof place);
                texts.append(text);
            } else {
                const auto number = static_cast<qint32>(std::get<double>(column.value(i)));
                all.append(reinterpret_cast<const char *>(&number), sizeof number);
            }
        }
        return column.isText() ? ColumnBlock::ofTexts(all, texts) : ColumnBlock::ofNumbers(column.type(), all);
    }
    /// Another database of the same tables that has read the records.
    Database read(const KeptStepRecords &kept) {
        Database other = database.copy();
        JournalReplay replay(other);
        for (const QByteArray &payload : kept.payloads)
            EXPECT_TRUE(replay.feed(payload));
        EXPECT_TRUE(replay.isAtBoundary());
        return other;
    }
    /// All states of both, from now back to the first one.
    void expectSameStates(Database &other, std::size_t steps) {
        ASSERT_EQ(other.history().done(), steps);
        EXPECT_EQ(encodeBody(other), encodeBody(database));
        for (std::size_t i = 0; i < steps; ++i) {
            database.undoStep();
            other.undoStep();
            ASSERT_EQ(encodeBody(other), encodeBody(database)) << i;
        }
        for (std::size_t i = 0; i < steps; ++i) {
            database.redoStep();
            other.redoStep();
            ASSERT_EQ(encodeBody(other), encodeBody(database)) << i;
        }
    }

    const std::size_t records;
    Database database;
};

class KeptStepsLimit : public KeptStepsCodec {
protected:
    KeptStepsLimit()
        : KeptStepsCodec(1000) {}
};

TEST_F(KeptStepsCodec, ValuesThatTheTablesShareAreNotWritten) {
    paste(0, 70'000, 200, 1); // keeps the whole table
    paste(0, 70'100, 200, 5);
    paste(1, 10, 200, 9);
    const KeptStepRecords kept = encodeKeptSteps(database, plenty);
    EXPECT_EQ(kept.done, 3U);
    EXPECT_LE(sizeOf(kept), 3 * Column::chunkRecords * sizeof(std::int32_t) + 4096) << "three chunks of nine";
    Database other = read(kept);
    expectSameStates(other, 3);
}

TEST_F(KeptStepsCodec, AnOrderIsWrittenAsOne) {
    paste(0, 0, static_cast<int>(records), 0);
    reverse();
    const KeptStepRecords kept = encodeKeptSteps(database, plenty);
    ASSERT_EQ(kept.done, 2U);
    const std::size_t both = sizeOf(kept);
    reverse();
    const KeptStepRecords three = encodeKeptSteps(database, plenty);
    EXPECT_LE(sizeOf(three) - both, records * sizeof(std::uint32_t) + records * sizeof(std::int32_t) + 4096);
    Database other = read(three);
    expectSameStates(other, 3);
}

TEST_F(KeptStepsLimit, BeyondTheLimitTheOldestStepsAreLeftOut) {
    for (int i = 1; i <= 100; ++i) {
        database.beginStep(u"Edit"_s, {});
        database.setNumber(table(), 0, static_cast<std::size_t>(i), i);
        database.endGroup();
    }
    const KeptStepRecords all = encodeKeptSteps(database, plenty);
    EXPECT_EQ(all.done, 100U);
    const KeptStepRecords half = encodeKeptSteps(database, sizeOf(all) / 2);
    EXPECT_GE(half.done, 40U);
    EXPECT_LE(half.done, 60U);
    EXPECT_LE(sizeOf(half), sizeOf(all) / 2 + 16);
    Database other = read(half);
    expectSameStates(other, half.done);
    EXPECT_TRUE(encodeKeptSteps(database, 0).payloads.empty());
}

TEST_F(KeptStepsLimit, AStepThatIsTooLargeHidesThoseBeforeItOnly) {
    database.setNumber(table(), 0, 1, 1);
    paste(0, 0, static_cast<int>(records), 7);
    database.setNumber(table(), 1, 1, 1);
    const KeptStepRecords kept = encodeKeptSteps(database, 2000);
    EXPECT_EQ(kept.done, 1U);
    EXPECT_LE(sizeOf(kept), 2000U);
    Database other = read(kept);
    expectSameStates(other, 1);
}

TEST_F(KeptStepsLimit, UndoneStepsLeaveThreeQuartersToTheOthers) {
    for (int i = 1; i <= 100; ++i)
        database.setNumber(table(), 0, static_cast<std::size_t>(i), i);
    const std::size_t all = sizeOf(encodeKeptSteps(database, plenty));
    for (int i = 0; i < 50; ++i)
        database.undoStep();
    const KeptStepRecords kept = encodeKeptSteps(database, all / 2);
    EXPECT_LE(kept.undone, 15U);
    EXPECT_GE(kept.undone, 8U);
    EXPECT_GE(kept.done, 33U);
    Database other = read(kept);
    EXPECT_EQ(other.history().count(), kept.done + kept.undone);
    EXPECT_EQ(other.history().done(), kept.done);
    while (other.history().done() < other.history().count()) {
        database.redoStep();
        other.redoStep();
        ASSERT_EQ(encodeBody(other), encodeBody(database));
    }
}

/// Whatever a journal says of steps, nobody vouching for it: the tables stay what was saved, and what stands behind
/// counts.
TEST(KeptStepsOfAnybody, NeverChangeWhatWasSaved) {
    Database database;
    database.addTable(u"T"_s);
    Table &table = database.table(0);
    database.addField(table, u"N"_s, static_cast<int>(ColumnType::Int), 0);
    database.addRecords(table, 5);
    database.keepSteps(History::noBudget);
    database.setText(table, 0, 2, u"before"_s);
    database.removeRecord(table, 1);
    database.addField(table, u"D"_s, static_cast<int>(ColumnType::Date), 0);
    database.removeField(table, 0);
    database.addTable(u"U"_s);
    database.renameTable(0, u"V"_s);
    database.removeTable(0);
    database.addTable(u"W"_s);
    database.undoStep();
    database.undoStep();
    const KeptStepRecords kept = encodeKeptSteps(database, plenty);
    ASSERT_EQ(kept.payloads.size(), 1U);
    QByteArray behind;
    encodeChange(behind, {.kind = ChangeKind::AddTable, .text = u"Typed"}, 0);
    const QByteArray saved = encodeBody(database, BodyFor::Journal);
    std::mt19937 random(1);
    int read = 0;
    for (int round = 0; round < 4000; ++round) {
        QByteArray payload = kept.payloads[0];
        for (unsigned change = 0; change < random() % 3; ++change)
            payload[static_cast<qsizetype>(random() % static_cast<std::uint32_t>(payload.size()))] =
                static_cast<char>(random() % 64);
        Database other = database.copy();
        JournalReplay replay(other);
        if (!replay.feed(payload) || !replay.isAtBoundary())
            continue;
        ++read;
        ASSERT_EQ(encodeBody(other, BodyFor::Journal), saved) << round;
        const std::size_t steps = other.history().done();
        for (std::size_t i = 0; i < steps; ++i)
            other.undoStep();
        while (other.history().done() < other.history().count())
            other.redoStep();
        while (other.history().done() > steps)
            other.undoStep();
        ASSERT_EQ(encodeBody(other, BodyFor::Journal), saved) << round;
        EXPECT_TRUE(replay.feed(behind) || other.findTable(u"Typed"_s));
    }
    EXPECT_GT(read, 1000);
}

TEST(KeptStepsOfAnybody, ThatDropRecordsWithValuesAreNotTaken) {
    Database database;
    database.addTable(u"T"_s);
    database.addRecords(database.table(0), 5);
    for (std::size_t record = 0; record < 6; ++record)
        database.setText(database.table(0), 0, record, u"saved"_s);
    const QByteArray saved = encodeBody(database, BodyFor::Journal);
    QByteArray kept;
    encodeMark(kept, JournalOperation::KeptBegin);
    encodeStepMark(kept, {.kind = StepKind::Undone, .name = u"Add"_s, .time = 1});
    encodePlace(kept, JournalOperation::RecordsDropped, 0, 5);
    encodeMark(kept, JournalOperation::KeptEnd);
    JournalReplay replay(database);
    EXPECT_TRUE(replay.feed(kept)) << "what stands behind them counts";
    EXPECT_EQ(encodeBody(database, BodyFor::Journal), saved);
    EXPECT_EQ(database.history().count(), 0U);
}

TEST(KeptStepsOfAnybody, StandAtTheFrontOfAJournalOnly) {
    Database database;
    database.addTable(u"T"_s);
    QByteArray kept;
    encodeMark(kept, JournalOperation::KeptBegin);
    encodeMark(kept, JournalOperation::KeptEnd);
    QByteArray changed;
    encodeChange(changed, {.kind = ChangeKind::AddTable, .text = u"U"}, 0);
    QByteArray loose;
    encodePlace(loose, JournalOperation::RecordsDropped, 0, 1);
    Database first = database.copy();
    EXPECT_TRUE(JournalReplay(first).feed(kept + changed));
    Database second = database.copy();
    EXPECT_FALSE(JournalReplay(second).feed(changed + kept));
    Database third = database.copy();
    EXPECT_FALSE(JournalReplay(third).feed(loose));
    EXPECT_EQ(third.table(0).recordCount(), 1U);
}

// ---- a sort in the journal

/// A table of many records under a journal, which is sorted.
class JournalOrders : public JournalTest {
protected:
    JournalOrders() {
        bench.crash();
        Database database = std::move(*decodeBody(pumps()));
        database.addRecords(database.table(0), records - 3);
        for (std::size_t i = 0; i < records; ++i)
            database.setText(database.table(0), 2, i, u"name %1"_s.arg(i));
        bench.setSaved(encodeBody(database));
        bench.open();
        bench.database().keepSteps(History::noBudget);
    }
    RecordOrder backwards() const {
        RecordOrder order(records);
        for (std::size_t i = 0; i < records; ++i)
            order[i] = static_cast<std::uint32_t>(records - 1 - i);
        return order;
    }
    void write(const Column &column, std::size_t field) {
        bench.database().setBlock(table(), field, 0, column.block(0, records));
    }
    /// As the editor does it: a group within a step.
    void sort(int otherChanges = 0) {
        const Table before = table();
        bench.database().beginStep(u"Sort"_s, {});
        for (int i = 0; i < otherChanges; ++i)
            bench.database().setNumber(table(), 1, static_cast<std::size_t>(i), 5);
        bench.database().beginGroup();
        for (std::size_t field = 0; field < before.fieldCount(); ++field)
            write(reordered(before.field(field).column, backwards()), field);
        bench.database().recordsReordered(table(), backwards());
        bench.database().endGroup();
        bench.database().endGroup();
    }
    std::size_t journalSize() const { return static_cast<std::size_t>(QFile(bench.journalPath()).size()); }

    static constexpr std::size_t records = 3000;
};
QIR_FOR_BOTH_FILES(JournalOrders);

TEST_P(JournalOrders, OfASortTakeFourBytesARecord) {
    sort();
    EXPECT_LE(journalSize(), records * sizeof(std::uint32_t) + 20'000) << "some was written before it was known";
    EXPECT_LE(bench.database().history().bytes(), records * sizeof(std::uint32_t) + 1000);
    EXPECT_EQ(bench.body(), crashAndOpen());
    ASSERT_EQ(bench.database().history().done(), 1U);
    EXPECT_LE(bench.database().history().bytes(), records * sizeof(std::uint32_t) + 1000) << "an order again";
    EXPECT_EQ(nameAt(0), u"name %1"_s.arg(records - 1));
    bench.database().undoStep();
    EXPECT_EQ(nameAt(0), u"name 0"_s);
}

TEST_P(JournalOrders, AreNotAllThatAStepHasDoneWhichHasDoneMore) {
    sort(5);
    EXPECT_EQ(bench.body(), crashAndOpen());
    bench.database().undoStep();
    EXPECT_EQ(nameAt(0), u"name 0"_s);
}

TEST_P(JournalOrders, DoNotCountWhereSomethingIsDoneBehindThem) {
    for (const bool undone : {false, true}) {
        bench.database().beginStep(u"Sort"_s, {});
        sort();
        if (!undone)
            setName(7, u"behind"_s);
        bench.database().beginGroup();
        sort();
        bench.database().undoGroup();
        bench.database().endGroup();
        EXPECT_EQ(bench.body(), crashAndOpen());
        bench.database().undoStep();
        EXPECT_EQ(nameAt(0), u"name 0"_s);
        bench.database().keepSteps(History::noBudget);
    }
}

TEST_P(JournalOrders, OfAnotherNumberOfRecordsEndTheReplay) {
    Database database = bench.database().copy();
    QByteArray payload;
    encodeMark(payload, JournalOperation::GroupBegin);
    encodeImagePart(payload, QByteArray(8, '\0'));
    encodePlace(payload, JournalOperation::RecordsReordered, 0);
    encodeMark(payload, JournalOperation::GroupEnd);
    EXPECT_FALSE(JournalReplay(database).feed(payload));
    EXPECT_EQ(encodeBody(database), encodeBody(bench.database()));
}

// ---- the format

class JournalVersions : public JournalTest {};
QIR_FOR_BOTH_FILES(JournalVersions);

TEST_P(JournalVersions, OneOfALaterProgramIsLeftAloneAndToldOf) {
    setName(0, u"typed"_s);
    bench.crash();
    QByteArray content = contentOf(bench.journalPath());
    ASSERT_EQ(content[7], '4');
    content[7] = '5';
    writeContent(bench.journalPath(), content);
    bench.open();
    EXPECT_EQ(nameAt(0), u""_s);
    ASSERT_EQ(bench.notices().size(), 1);
    EXPECT_TRUE(bench.notices()[0].contains(u"newer version"_s));
    EXPECT_EQ(contentOf(bench.journalPath()), content);
}

} // namespace
} // namespace qir
