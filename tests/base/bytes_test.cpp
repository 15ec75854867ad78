#include "base/ByteReader.h"
#include "base/ByteWriter.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <limits>
#include <new>
#include <stdexcept>
#include <vector>

using qir::ByteReader;
using qir::ByteWriter;

namespace {

constexpr std::uint64_t endless = std::numeric_limits<std::uint64_t>::max();

TEST(ByteReader, TakesNumbersWithTheLowestByteFirst) {
    ByteReader reader(QByteArrayView("\x01\x02\x03\x04\x05\x06\x07\xff\xfe", 9));
    EXPECT_EQ(reader.number<std::uint8_t>(), 0x01);
    EXPECT_EQ(reader.number<std::uint16_t>(), 0x0302);
    EXPECT_EQ(reader.number<std::uint32_t>(), 0x07060504U);
    EXPECT_EQ(reader.number<std::int16_t>(), static_cast<std::int16_t>(0xfeff));
    EXPECT_TRUE(reader.isComplete());
    EXPECT_EQ(reader.left(), 0U);
}

TEST(ByteReader, GivesNothingMoreOnceANumberIsCutOff) {
    ByteReader reader(QByteArrayView("\x01\x02\x03", 3));
    EXPECT_EQ(reader.number<std::uint32_t>(), 0U);
    EXPECT_FALSE(reader.isComplete());
    EXPECT_EQ(reader.left(), 0U);
    EXPECT_EQ(reader.number<std::uint8_t>(), 0) << "one byte would have been there, but not the one that was meant";
    EXPECT_TRUE(reader.bytes(1).isEmpty());
    EXPECT_EQ(reader.number<double>(), 0.0);
    EXPECT_EQ(reader.array<2>(), (std::array<unsigned char, 2>{}));
}

TEST(ByteReader, IsCompleteAfterTheLastByteAndAfterNone) {
    ByteReader reader(QByteArrayView("ab", 2));
    EXPECT_EQ(reader.bytes(2), QByteArrayView("ab"));
    EXPECT_TRUE(reader.bytes(0).isEmpty());
    EXPECT_TRUE(reader.isComplete());
    (void)reader.bytes(1);
    EXPECT_FALSE(reader.isComplete());
    EXPECT_TRUE(ByteReader({}).isComplete());
}

TEST(ByteReader, RefusesCountsThatNoMemoryHolds) {
    for (const std::uint64_t count : {endless, endless - 1, std::uint64_t{1} << 63, std::uint64_t{1} << 32}) {
        ByteReader reader(QByteArrayView("abc"));
        EXPECT_TRUE(reader.bytes(count).isEmpty());
        EXPECT_FALSE(reader.isComplete());
        EXPECT_FALSE(ByteReader(QByteArrayView("abc")).from(count).isComplete());
    }
}

TEST(ByteReader, TakesBytesBehindTheirLengthAndRefusesALengthThatLies) {
    ByteReader reader(QByteArrayView("\x02\x00xyz", 5));
    EXPECT_EQ(reader.sizedBytes<std::uint16_t>(), QByteArrayView("xy"));
    EXPECT_EQ(reader.rest(), QByteArrayView("z"));
    ByteReader lying(QByteArrayView("\xff\xff\xff\xff\xff\xff\xff\xffxyz", 11));
    EXPECT_TRUE(lying.sizedBytes<std::uint64_t>().isEmpty());
    EXPECT_FALSE(lying.isComplete());
    ByteReader cut(QByteArrayView("\x04\x00\x00\x00xyz", 7));
    EXPECT_TRUE(cut.sizedBytes<std::uint32_t>().isEmpty());
    EXPECT_FALSE(cut.isComplete());
}

TEST(ByteReader, LooksAtAPlaceWithoutTakingAnything) {
    const ByteReader reader(QByteArrayView("abcdef"));
    EXPECT_EQ(reader.from(4).number<std::uint16_t>(), 'e' + 'f' * 256);
    EXPECT_TRUE(reader.from(6).isComplete());
    EXPECT_FALSE(reader.from(7).isComplete());
    EXPECT_EQ(reader.from(7).number<std::uint8_t>(), 0);
    EXPECT_EQ(reader.left(), 6U);
    EXPECT_TRUE(reader.isComplete());
}

TEST(ByteReader, FillsManyNumbersOrNone) {
    ByteReader reader(QByteArrayView("\x01\x00\x02\x00\x03", 5));
    std::vector<std::uint16_t> numbers(2);
    reader.numbers<std::uint16_t>(numbers);
    EXPECT_EQ(numbers, (std::vector<std::uint16_t>{1, 2}));
    reader.numbers<std::uint16_t>(numbers);
    EXPECT_EQ(numbers, (std::vector<std::uint16_t>{0, 0}));
    EXPECT_FALSE(reader.isComplete());
    ByteReader empty(QByteArrayView{});
    empty.numbers<double>({});
    EXPECT_TRUE(empty.isComplete());
}

RC_GTEST_PROP(ByteReader, NeverGivesBytesFromOutside, ()) {
    const auto text = *rc::gen::container<std::string>(rc::gen::arbitrary<char>());
    const QByteArrayView whole(text.data(), static_cast<qsizetype>(text.size()));
    ByteReader reader(whole);
    const auto counts = *rc::gen::container<std::vector<std::uint64_t>>(
        rc::gen::oneOf(rc::gen::inRange<std::uint64_t>(0, 9), rc::gen::arbitrary<std::uint64_t>()));
    std::uint64_t taken = 0;
    bool isComplete = true;
    for (const std::uint64_t count : counts) {
        isComplete = isComplete && count <= static_cast<std::uint64_t>(whole.size()) - taken;
        const QByteArrayView given = reader.bytes(count);
        RC_ASSERT(reader.isComplete() == isComplete);
        if (!isComplete) {
            RC_ASSERT(given.isEmpty());
            continue;
        }
        RC_ASSERT(given == whole.sliced(static_cast<qsizetype>(taken), static_cast<qsizetype>(count)));
        taken += count;
        RC_ASSERT(reader.left() == static_cast<std::uint64_t>(whole.size()) - taken);
    }
}

TEST(ByteWriter, AppendsWhatTheReaderTakes) {
    QByteArray out("start");
    ByteWriter writer(out);
    writer.number(std::uint8_t{0x80});
    writer.number(std::int32_t{-2});
    writer.number(1.5);
    writer.array(std::array<unsigned char, 2>{7, 8});
    writer.sizedBytes<std::uint16_t>("text");
    writer.numbers<std::uint16_t>(std::vector<std::uint16_t>{1, 2});
    writer.numbers<std::uint32_t>(2, [](std::size_t i) { return static_cast<std::uint32_t>(i + 5); });
    ByteReader reader(out);
    EXPECT_EQ(reader.bytes(5), QByteArrayView("start"));
    EXPECT_EQ(reader.number<std::uint8_t>(), 0x80);
    EXPECT_EQ(reader.number<std::int32_t>(), -2);
    EXPECT_EQ(reader.number<double>(), 1.5);
    EXPECT_EQ(reader.array<2>(), (std::array<unsigned char, 2>{7, 8}));
    EXPECT_EQ(reader.sizedBytes<std::uint16_t>(), QByteArrayView("text"));
    EXPECT_EQ(reader.number<std::uint32_t>(), 0x00020001U);
    EXPECT_EQ(reader.number<std::uint64_t>(), 0x0000000600000005U);
    EXPECT_EQ(reader.left(), 0U);
    EXPECT_TRUE(reader.isComplete());
}

TEST(ByteWriter, WritesOverWhatStandsAtAPlaceAndGrowsBehindIt) {
    QByteArray out("abcdef");
    ByteWriter writer(out);
    writer.at(1).number(std::uint16_t{0x5a59});
    EXPECT_EQ(out, "aYZdef");
    writer.at(5).number(std::uint16_t{0x3231});
    EXPECT_EQ(out, "aYZde12");
    writer.at(9).bytes("end");
    EXPECT_EQ(out, QByteArray("aYZde12\0\0end", 12));
    writer.at(0).room(1)[0] = 'A';
    EXPECT_EQ(out.at(0), 'A');
}

TEST(ByteWriter, LeavesOtherHoldersOfTheBytesAlone) {
    QByteArray out("abc");
    const QByteArray shared = out;
    ByteWriter(out).at(0).bytes("x");
    EXPECT_EQ(shared, "abc");
    EXPECT_EQ(out, "xbc");
}

TEST(ByteWriter, RefusesWhatNoArrayHolds) {
    constexpr auto most = std::numeric_limits<std::size_t>::max();
    QByteArray out("abc");
    ByteWriter writer(out);
    EXPECT_THROW(writer.at(most), std::length_error);
    EXPECT_THROW((void)writer.room(most), std::length_error);
    EXPECT_THROW((void)writer.room(most / 2 - 1), std::length_error) << "with the three that stand there";
    EXPECT_THROW(writer.numbers<std::uint64_t>(most / 8 + 1, [](std::size_t) { return 0U; }), std::length_error)
        << "eight times as much is nothing";
    EXPECT_THROW(writer.sizedBytes<std::uint8_t>(QByteArray(256, 'x')), std::length_error);
    writer.number(std::uint8_t{'d'});
    EXPECT_EQ(out, "abcd");
}

TEST(ByteWriter, WritesTheLongestThatALengthCanTell) {
    QByteArray out;
    ByteWriter(out).sizedBytes<std::uint8_t>(QByteArray(255, 'x'));
    EXPECT_EQ(out, QByteArray(1, '\xff') + QByteArray(255, 'x'));
}

} // namespace
