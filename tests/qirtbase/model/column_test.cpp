#include "qirtbase/model/Column.h"

#include "base/columns/ColumnBuilder.h"
#include "tests/support/CountedMemory.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

constexpr std::size_t chunk = Column::chunkRecords;

Column longs(std::size_t records) {
    Column column(ColumnType::Long, records);
    for (std::size_t i = 0; i < records; i += 1000)
        column.set(i, static_cast<double>(i));
    return column;
}

Column texts(std::size_t records) {
    Column column(ColumnType::Text, records);
    for (std::size_t i = 0; i < records; i += 100)
        column.set(i, u"t%1"_s.arg(i));
    return column;
}

/// Column against a vector of texts that goes through the same changes.
class Pair {
public:
    explicit Pair(ColumnType type)
        : m_column(type) {}

    void append(std::size_t records) {
        m_column.append(records);
        m_values.resize(m_values.size() + records, m_column.isText() ? QString() : u"0"_s);
    }
    void set(std::size_t record, int value) {
        if (m_column.isText())
            m_column.set(record, textOf(value));
        else
            m_column.set(record, static_cast<double>(value));
        m_values[record] = textOf(value);
    }
    void setBlock(std::size_t first, std::size_t count, int value) {
        ColumnBuilder builder(m_column.type());
        for (std::size_t i = 0; i < count; ++i) {
            m_values[first + i] = textOf(value + static_cast<int>(i));
            if (m_column.isText())
                builder.add(QStringView(m_values[first + i]));
            else
                builder.add(static_cast<double>(value + static_cast<int>(i)));
        }
        m_column.setBlock(first, builder.take());
    }
    void remove(std::size_t record) {
        m_column.remove(record);
        m_values.erase(m_values.begin() + static_cast<std::ptrdiff_t>(record));
    }
    void insert(std::size_t record, int value) {
        m_column.insert(record, m_column.isText() ? CellValue(textOf(value)) : CellValue(static_cast<double>(value)));
        m_values.insert(m_values.begin() + static_cast<std::ptrdiff_t>(record), textOf(value));
    }
    void truncate(std::size_t records) {
        m_column.truncate(records);
        m_values.resize(records);
    }
    std::size_t size() const { return m_values.size(); }
    const Column &column() const { return m_column; }
    std::vector<QString> read() const {
        std::vector<QString> values;
        while (values.size() < m_column.size()) {
            const ColumnBlock block = m_column.block(values.size(), m_column.size());
            for (qsizetype i = 0; i < block.count(); ++i)
                values.push_back(block.text(i));
        }
        return values;
    }
    const std::vector<QString> &values() const { return m_values; }

private:
    QString textOf(int value) const {
        return m_column.isText() ? u"\u20AC"_s.repeated(value % 3) + QString::number(value) : QString::number(value);
    }

    Column m_column;
    std::vector<QString> m_values;
};

TEST(Column, GoesOnWithTheMemoryOfOneThatHoldsTheSame) {
    for (const auto &make : {longs, texts}) {
        const Column kept = make(3 * chunk);
        Column image = make(3 * chunk);
        if (image.isText())
            image.set(chunk + 1, u"another"_s);
        else
            image.set(chunk + 1, 7.0);
        image.shareWith(kept);
        EXPECT_EQ(image.chunk(0).values().constData(), kept.chunk(0).values().constData());
        EXPECT_NE(image.chunk(1).values().constData(), kept.chunk(1).values().constData());
        EXPECT_EQ(image.chunk(2).values().constData(), kept.chunk(2).values().constData());
        EXPECT_NE(image.value(chunk + 1), kept.value(chunk + 1));
        image.shareWith(Column(ColumnType::Date, 3 * chunk)); // of another type: nothing happens
        EXPECT_EQ(image.chunk(0).values().constData(), kept.chunk(0).values().constData());
    }
}

TEST(Column, ABlockOfAWholeChunkIsTheColumnsOwnMemory) {
    for (const Column &column : {longs(3 * chunk), texts(3 * chunk)}) {
        const ColumnBlock block = column.block(chunk, 5 * chunk);
        EXPECT_EQ(block.count(), static_cast<qsizetype>(chunk));
        EXPECT_EQ(block.values().constData(), column.chunk(1).values().constData());
        EXPECT_EQ(block.bytes().constData(), column.chunk(1).bytes().constData());
        EXPECT_TRUE(block.sharesMemoryWith(column.block(chunk, chunk)));
    }
}

TEST(Column, AChangeCopiesTheChunkThatABlockSharesAndNoOther) {
    Column column = longs(3 * chunk);
    const ColumnBlock first = column.block(0, chunk);
    const ColumnBlock second = column.block(chunk, chunk);
    column.set(chunk + 5, 7);
    EXPECT_TRUE(first.sharesMemoryWith(column.block(0, chunk)));
    EXPECT_FALSE(second.sharesMemoryWith(column.block(chunk, chunk)));
    EXPECT_EQ(second.number(5), 0);
    const char *mine = column.chunk(1).values().constData();
    column.set(chunk + 6, 8);
    EXPECT_EQ(column.chunk(1).values().constData(), mine) << "copied once more";
}

TEST(Column, ABlockThatIsAChunkIsTakenWithItsMemory) {
    Column source = texts(2 * chunk);
    Column column(ColumnType::Text, 2 * chunk);
    const ColumnBlock given = source.block(chunk, chunk);
    column.setBlock(chunk, given);
    EXPECT_TRUE(given.sharesMemoryWith(column.block(chunk, chunk)));
    column.set(chunk, u"changed here"_s);
    source.set(chunk + 100, u"changed there"_s);
    EXPECT_TRUE(given.text(0).isEmpty());
    EXPECT_TRUE(given.text(100).isEmpty());
    EXPECT_EQ(given.text(64), u"t65600"_s);
    EXPECT_EQ(column.block(chunk, chunk).text(100), QString());
    EXPECT_EQ(source.block(chunk, chunk).text(0), QString());
    EXPECT_EQ(source.block(chunk, chunk).text(100), u"changed there"_s);
}

TEST(Column, CopiesShareEveryChunkUntilTheyChange) {
    const Column column = texts(2 * chunk);
    Column copy = column;
    EXPECT_TRUE(copy.block(0, chunk).sharesMemoryWith(column.block(0, chunk)));
    copy.set(3, u"other"_s);
    EXPECT_FALSE(copy.block(0, chunk).sharesMemoryWith(column.block(0, chunk)));
    EXPECT_TRUE(copy.block(chunk, chunk).sharesMemoryWith(column.block(chunk, chunk)));
    EXPECT_TRUE(column.holds(3, QString()));
}

TEST(Column, ReadingAWholeColumnAllocatesForItsChunksAlone) {
    if (!CountedMemory::counts())
        GTEST_SKIP() << "allocations are not counted in this build";
    const Column column = longs(1'000'000);
    const CountedMemory counted;
    std::size_t blocks = 0;
    for (std::size_t record = 0; record < column.size(); ++blocks)
        record += static_cast<std::size_t>(column.block(record, column.size()).count());
    EXPECT_EQ(blocks, (1'000'000 + chunk - 1) / chunk);
    EXPECT_LE(counted.allocations(), 4 * blocks);
    EXPECT_LE(counted.peak(), std::size_t{4096});
}

TEST(Column, AChangeAfterABlockWasReadTakesNoMoreThanAChunk) {
    if (!CountedMemory::counts())
        GTEST_SKIP() << "allocations are not counted in this build";
    Column column = longs(1'000'000);
    std::vector<ColumnBlock> blocks;
    for (std::size_t record = 0; record < column.size(); record += static_cast<std::size_t>(blocks.back().count()))
        blocks.push_back(column.block(record, column.size()));
    const CountedMemory counted;
    for (std::size_t record = 0; record < 100; ++record)
        column.set(record, 5);
    EXPECT_LE(counted.peak(), chunk * sizeof(std::int32_t) + 4096);
}

TEST(Column, TextsThatStandTwiceInABlockAreNotTakenAsTheyAre) {
    QByteArray places;
    for (int i = 0; i < 100; ++i)
        places += QByteArray::fromHex("00000000E8030000");
    Column column(ColumnType::Text, 100);
    column.setBlock(0, ColumnBlock::ofTexts(places, QByteArray(1000, 'x')));
    EXPECT_EQ(column.textBytes(), 100'000U);
    EXPECT_GE(column.memory(), 100'000U);
    EXPECT_TRUE(column.holds(99, QString(1000, u'x')));
}

TEST(Column, AChunkOfMuchTextIsCutInTwo) {
    Column column(ColumnType::Text, 1200);
    const QString text(65535, u'x');
    for (std::size_t i = 0; i < 1200; ++i)
        column.set(i, text);
    EXPECT_GT(column.chunkCount(), 1U);
    for (std::size_t i = 0; i < 1200; i += 100)
        EXPECT_TRUE(column.holds(i, text));
    EXPECT_EQ(column.size(), 1200U);
}

TEST(Column, AChunkThatGetsBlocksOfMuchTextIsCutToo) {
    const QByteArray text(65535, 'x');
    for (const qsizetype together : {qsizetype{1200}, qsizetype{170}}) {
        Column column(ColumnType::Text, 1200);
        for (int round = 0; round < 2; ++round) { // the second one finds no room to make
            for (qsizetype first = 0; first < 1200; first += together) {
                ColumnBuilder builder(ColumnType::Text);
                for (qsizetype i = first; i < std::min<qsizetype>(first + together, 1200); ++i)
                    builder.addUtf8(text.first(65000 + round) + QByteArray::number(i));
                column.setBlock(static_cast<std::size_t>(first), builder.take());
            }
        }
        EXPECT_EQ(column.size(), 1200U);
        for (std::size_t i = 0; i < column.chunkCount(); ++i)
            EXPECT_LE(column.chunk(i).textBytes(), Column::chunkBytes) << together;
        for (std::size_t i = 0; i < 1200; i += 7)
            EXPECT_TRUE(column.holds(i, QString(65001, u'x') + QString::number(i))) << together << i;
    }
}

TEST(Column, RecordsThatComeBackBeyondTwoChunksDivideThem) {
    Pair pair(ColumnType::Int);
    pair.append(2 * chunk - 1);
    for (int i = 0; i < 3; ++i)
        pair.insert(10, i + 1);
    pair.truncate(chunk + 20);
    EXPECT_TRUE(pair.read() == pair.values());
}

RC_GTEST_PROP(ColumnProperty, AColumnIsAListOfValuesWhateverItsChunks, ()) {
    const auto type = *rc::gen::element(ColumnType::Bool, ColumnType::Long, ColumnType::Double, ColumnType::Text);
    Pair pair(type);
    pair.append(chunk - 5);
    pair.append(chunk);
    const auto value = [&] { return type == ColumnType::Bool ? *rc::gen::inRange(0, 2) : *rc::gen::inRange(0, 1000); };
    for (int i = *rc::gen::inRange(0, 12); i > 0; --i) {
        // The only record may have been removed before.
        if (pair.size() == 0)
            pair.append(1);
        // Around the ends of chunks.
        const std::size_t near = *rc::gen::element(std::size_t{0}, chunk - 6, chunk, 2 * chunk - 8);
        const std::size_t record = std::min(near + *rc::gen::inRange(std::size_t{0}, std::size_t{8}), pair.size() - 1);
        const Column before = pair.column();
        const std::vector<QString> then = pair.values();
        switch (*rc::gen::inRange(0, 6)) {
        case 0:
            pair.set(record, value());
            break;
        case 1: {
            const auto count = std::min(pair.size() - record, *rc::gen::element(std::size_t{3}, chunk + 3));
            pair.setBlock(record, type == ColumnType::Bool ? std::min<std::size_t>(count, 1) : count, value());
            break;
        }
        case 2:
            pair.remove(record);
            break;
        case 3:
            pair.insert(record, value());
            break;
        case 4:
            pair.append(*rc::gen::element(std::size_t{1}, chunk));
            break;
        default:
            pair.truncate(std::max<std::size_t>(record, 1));
        }
        RC_ASSERT((pair.read() == pair.values()));
        RC_ASSERT(before.size() == then.size());
        QString text;
        before.readText(std::min(record, then.size() - 1), text);
        RC_ASSERT(text == then[std::min(record, then.size() - 1)]);
    }
}

} // namespace
} // namespace qir
