#include "qirtbase/model/BodyCodec.h"

#include "qirtbase/model/BodyMemory.h"
#include "qirtbase/model/DatabaseError.h"
#include "tests/qirtbase/model/DatabaseTestSupport.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <limits>
#include <string>

using namespace Qt::StringLiterals;
using namespace qir;
using qir::test::plain;

namespace {

/// Puts a body together piece by piece, right or wrong.
class BodyBytes {
public:
    BodyBytes &u8(unsigned value) { return little(value, 1); }
    BodyBytes &u16(unsigned value) { return little(value, 2); }
    BodyBytes &u32(std::uint32_t value) { return little(value, 4); }
    BodyBytes &u64(std::uint64_t value) { return little(value, 8); }
    BodyBytes &f64(double value) { return little(std::bit_cast<std::uint64_t>(value), 8); }
    BodyBytes &text(const char *utf8) {
        m_bytes += utf8;
        return *this;
    }
    BodyBytes &name(const QByteArray &utf8) {
        u16(static_cast<unsigned>(utf8.size()));
        m_bytes += utf8;
        return *this;
    }
    BodyBytes &section(unsigned type, unsigned flags, const BodyBytes &payload) {
        u8(type).u8(flags).u16(0).u64(static_cast<std::uint64_t>(payload.m_bytes.size()));
        m_bytes += payload.m_bytes;
        return *this;
    }
    BodyBytes &table(const BodyBytes &payload) { return section(1, 1, payload); }
    BodyBytes &end() { return section(0, 1, {}); }
    operator const QByteArray &() const { return m_bytes; } // NOLINT(google-explicit-constructor)

private:
    BodyBytes &little(std::uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            m_bytes += static_cast<char>(static_cast<unsigned char>(value >> (8 * i)));
        return *this;
    }

    QByteArray m_bytes;
};

/// A table "T" of one field "F" and `records` records; its column is still to be added.
BodyBytes oneField(unsigned type, unsigned size, std::uint32_t records) {
    return BodyBytes().u32(records).u16(1).name("T").u8(type).u16(size).name("F");
}

BodyBytes bodyOf(const BodyBytes &table) {
    return BodyBytes().table(table).end();
}

/// A table without fields and records.
BodyBytes emptyTable(const QByteArray &name) {
    return BodyBytes().u32(0).u16(0).name(name);
}

Database smallDatabase() {
    Database database;
    database.addTable(u"Pümps"_s);
    Table &table = database.table(0);
    database.removeField(table, 0);
    const auto add = [&](const char16_t *name, int code) {
        database.addField(table, QStringView(name).toString(), code, 3);
    };
    add(u"On", 1);
    add(u"Code", 2);
    add(u"Step", 3);
    add(u"Count", 4);
    add(u"Flow", 7);
    add(u"Day", 8);
    add(u"Name", 10);
    database.addRecord(table);
    const double numbers[] = {1, 200, -2, 100000, 0.5, 20240131};
    for (std::size_t field = 0; field < 6; ++field)
        database.setNumber(table, field, 0, numbers[field]);
    database.setText(table, 6, 0, u"a€"_s);
    database.setText(table, 6, 1, u"b"_s);
    database.addTable(u"E"_s);
    database.removeField(database.table(1), 0);
    return database;
}

/// The same as smallDatabase(), byte by byte.
BodyBytes smallBody() {
    BodyBytes pumps;
    pumps.u32(2).u16(7).name("P\xC3\xBCmps");
    pumps.u8(1).u16(0).name("On").u8(2).u16(0).name("Code").u8(3).u16(0).name("Step").u8(4).u16(0).name("Count");
    pumps.u8(7).u16(0).name("Flow").u8(8).u16(0).name("Day").u8(10).u16(3).name("Name");
    pumps.u8(1).u8(0);
    pumps.u8(200).u8(0);
    pumps.u16(0xFFFE).u16(0);
    pumps.u32(100000).u32(0);
    pumps.f64(0.5).f64(0);
    pumps.f64(20240131).f64(0);
    pumps.u32(4).u32(1).text("a\xE2\x82\xAC").text("b");
    return BodyBytes().table(pumps).table(BodyBytes().u32(0).u16(0).name("E")).end();
}

void expectRefused(const QByteArray &body, LoadErrorKind kind = LoadErrorKind::Damaged, const BodyLimits &limits = {}) {
    const auto decoded = decodeBody(body, limits);
    ASSERT_FALSE(decoded.has_value());
    EXPECT_EQ(decoded.error().kind, kind) << decoded.error().text.toStdString();
    EXPECT_FALSE(decoded.error().text.isEmpty());
}

void expectAccepted(const QByteArray &body) {
    const auto decoded = decodeBody(body);
    ASSERT_TRUE(decoded.has_value()) << decoded.error().text.toStdString();
    EXPECT_EQ(encodeBody(*decoded), body);
}

TEST(BodyCodec, WritesTheseExactBytes) {
    const QByteArray bytes = encodeBody(smallDatabase());
    EXPECT_EQ(bytes, static_cast<const QByteArray &>(smallBody()));
    EXPECT_EQ(bytes.toHex().toStdString(), "010100008800000000000000"
                                           "020000000700060050c3bc6d7073"
                                           "01000002004f6e"
                                           "0200000400436f6465"
                                           "030000040053746570"
                                           "0400000500436f756e74"
                                           "0700000400466c6f77"
                                           "0800000300446179"
                                           "0a030004004e616d65"
                                           "0100"
                                           "c800"
                                           "feff0000"
                                           "a086010000000000"
                                           "000000000000e03f0000000000000000"
                                           "00000030704d73410000000000000000"
                                           "040000000100000061e282ac62"
                                           "010100000900000000000000"
                                           "000000000000010045"
                                           "000100000000000000000000");
}

/// A body of some megabytes with numbers and texts, of which each column takes many pages.
QByteArray largeBody() {
    Database database;
    database.addTable(u"Long"_s);
    Table &table = database.table(0);
    database.addField(table, u"Number"_s, 7, 0);
    constexpr int records = 200'000;
    database.addRecords(table, records - 1);
    for (std::size_t i = 0; i < records; i += 7) {
        database.setText(table, 0, i, QString::number(i).repeated(3));
        database.setNumber(table, 1, i, static_cast<double>(i) / 4);
    }
    return encodeBody(database);
}

TEST(BodyCodec, LongColumnsAreWrittenAsTheyStandWhereverTheirTextsAreKept) {
    constexpr unsigned records = 70'000; // more than a chunk has
    BodyBytes table = BodyBytes().u32(records).u16(3).name("T");
    table.u8(4).u16(0).name("Long").u8(10).u16(9).name("Text").u8(3).u16(0).name("Int");
    for (unsigned i = 0; i < records; ++i)
        table.u32(i);
    for (unsigned i = 0; i < records; ++i)
        table.u32(static_cast<std::uint32_t>(std::to_string(i).size()));
    for (unsigned i = 0; i < records; ++i)
        table.text(std::to_string(i).c_str());
    for (unsigned i = 0; i < records; ++i)
        table.u16(i & 0x7FFFU);
    const QByteArray body = bodyOf(table);
    expectAccepted(body);
    auto database = decodeBody(body);
    ASSERT_TRUE(database);
    for (const std::size_t record : {std::size_t{3}, std::size_t{records - 1}}) {
        database->setText(database->table(0), 1, record, u"elsewhere"_s);
        EXPECT_NE(encodeBody(*database), body);
        database->setText(database->table(0), 1, record, QString::number(record));
        EXPECT_EQ(encodeBody(*database), body);
    }
}

TEST(BodyCodec, ABodyThatIsGivenAwayIsReadAsOneThatIsLent) {
    const QByteArray body = largeBody();
    QByteArray given(body.constData(), body.size());
    const auto decoded = decodeBody(std::move(given));
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(encodeBody(*decoded), body);
}

TEST(BodyCodec, ABodyThatIsSharedStaysForTheOthers) {
    const QByteArray body = largeBody();
    const QByteArray kept(body.constData(), body.size());
    QByteArray given = body;
    EXPECT_TRUE(decodeBody(std::move(given)).has_value());
    EXPECT_EQ(body, kept);
}

TEST(BodyCodec, PagesAreGivenBackAndTheirNeighboursAreNot) {
    constexpr qsizetype size = 1 << 20;
    constexpr qsizetype begin = 1000;
    constexpr qsizetype left = 3000;
    const QByteArray bytes(size, 'x');
    giveBack(QByteArrayView(bytes).sliced(begin, size - begin - left));
    EXPECT_EQ(bytes.first(begin), QByteArray(begin, 'x'));
    EXPECT_EQ(bytes.last(left), QByteArray(left, 'x'));
    const qsizetype held = bytes.count('x');
    EXPECT_GE(held, begin + left);
    EXPECT_LT(held, size / 8) << "pages are still there";
    giveBack(QByteArrayView(bytes).first(10)); // not a page
    EXPECT_EQ(bytes.count('x'), held);
}

TEST(Database, ACopyHasTheSameTablesAndNoneOfTheSteps) {
    Database database = smallDatabase();
    database.keepSteps(1 << 20);
    database.setText(database.table(0), 6, 0, u"b"_s);
    database.foreignSections().push_back({7, 0, "later"_ba});
    const Database copy = database.copy();
    const QByteArray body = encodeBody(database);
    EXPECT_EQ(encodeBody(copy), body);
    EXPECT_EQ(copy.history().count(), 0U);
    EXPECT_NE(copy.table(0).revision(), database.table(0).revision());
    database.setText(database.table(0), 6, 0, u"c"_s);
    EXPECT_EQ(encodeBody(copy), body);
}

TEST(BodyCodec, ReadsWhatItWrote) {
    const QByteArray body = smallBody();
    const auto decoded = decodeBody(body);
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(plain(*decoded).tables.front(), plain(smallDatabase()).tables.front());
    EXPECT_EQ(plain(*decoded).tables.back(), test::PlainTable("E", {}, {}));
}

TEST(BodyCodec, ATableWithoutFieldsHasNoRecords) {
    for (const std::uint32_t records : {1U, 2U, 1U << 24})
        expectRefused(bodyOf(BodyBytes().u32(records).u16(0).name("T")));
    Database database;
    database.addTable(u"T"_s);
    for (int record = 0; record < 5; ++record)
        database.addRecord(database.table(0));
    database.removeField(database.table(0), 0);
    EXPECT_EQ(encodeBody(database), static_cast<const QByteArray &>(bodyOf(emptyTable("T"))));
}

TEST(BodyCodec, ABodyOfNoTablesIsItsEndAlone) {
    EXPECT_EQ(encodeBody(Database()).toHex(), "000100000000000000000000");
    expectAccepted(BodyBytes().end());
}

TEST(BodyCodec, EveryTruncationIsRefused) {
    const QByteArray body = smallBody();
    for (qsizetype size = 0; size < body.size(); ++size)
        expectRefused(body.first(size));
}

TEST(BodyCodec, EveryByteAddedIsRefused) {
    for (const char byte : {'\0', '\1', '\xFF'})
        expectRefused(static_cast<const QByteArray &>(smallBody()) + byte);
}

TEST(BodyCodec, EveryChangedByteIsRefusedOrKeptAsItIs) {
    const QByteArray body = smallBody();
    int accepted = 0;
    for (qsizetype i = 0; i < body.size(); ++i) {
        for (int value = 0; value < 256; ++value) {
            QByteArray changed = body;
            changed[i] = static_cast<char>(value);
            const auto decoded = decodeBody(changed);
            if (!decoded)
                continue;
            ++accepted;
            ASSERT_EQ(encodeBody(*decoded), changed) << "byte " << i << " as " << value;
        }
    }
    EXPECT_GT(accepted, 256); // a value is as good as any other
}

TEST(BodyCodec, AnUnknownSectionThatNeedNotBeKnownIsKept) {
    BodyBytes body;
    body.table(emptyTable("T")).section(7, 0, BodyBytes().text("kept")).section(255, 0xFE, {}).end();
    const QByteArray &bytes = body;
    expectAccepted(bytes);
    auto decoded = decodeBody(bytes);
    decoded->addTable(u"New"_s);
    const auto again = decodeBody(encodeBody(*decoded));
    ASSERT_TRUE(again.has_value());
    ASSERT_EQ(again->foreignSections().size(), 2U);
    EXPECT_EQ(again->foreignSections()[0].payload, "kept");
    EXPECT_EQ(again->tableCount(), 2U);
}

TEST(BodyCodec, AnUnknownSectionThatMustBeKnownIsANewerVersion) {
    expectRefused(BodyBytes().section(7, 1, {}).end(), LoadErrorKind::NewerVersion);
    expectRefused(BodyBytes().section(7, 0xFF, {}).end(), LoadErrorKind::NewerVersion);
}

TEST(BodyCodec, SectionsOutOfOrderOrOfWrongFlagsAreRefused) {
    expectRefused(BodyBytes().section(7, 0, {}).table(emptyTable("T")).end());
    expectRefused(BodyBytes().section(1, 0, emptyTable("T")).end());
    expectRefused(BodyBytes().section(1, 3, emptyTable("T")).end());
    expectRefused(BodyBytes().section(0, 0, {}));
    expectRefused(BodyBytes().section(0, 1, BodyBytes().u8(0)));
    expectRefused(BodyBytes().u8(0).u8(1).u16(1).u64(0));
    expectRefused(BodyBytes().table(emptyTable("T")));
    expectRefused(BodyBytes().end().end());
}

TEST(BodyCodec, LengthsBeyondTheEndAreRefused) {
    const std::uint64_t all = std::numeric_limits<std::uint64_t>::max();
    expectRefused(BodyBytes().u8(1).u8(1).u16(0).u64(all).end());
    expectRefused(BodyBytes().u8(1).u8(1).u16(0).u64(std::uint64_t{1} << 63).end());
    expectRefused(BodyBytes().u8(9).u8(0).u16(0).u64(13).end());
    for (const unsigned type : {1U, 2U, 3U, 4U, 7U, 8U, 10U})
        expectRefused(bodyOf(oneField(type, 0, 1U << 24)));
    expectRefused(bodyOf(oneField(10, 9, 2).u32(0xFFFFFFFF).u32(0xFFFFFFFF)));
    expectRefused(bodyOf(oneField(10, 9, 2).u32(1).u32(1).text("x")));
    expectRefused(bodyOf(BodyBytes().u32(0).u16(0).u16(5).text("T")));
    expectRefused(bodyOf(BodyBytes().u32(0).u16(1024).name("T")));
}

TEST(BodyCodec, BytesLeftOverInATableAreRefused) {
    expectRefused(bodyOf(emptyTable("T").u8(0)));
    expectRefused(bodyOf(oneField(4, 0, 1).u32(1).u8(0)));
    expectRefused(bodyOf(oneField(10, 5, 1).u32(1).text("xy")));
}

TEST(BodyCodec, UnknownTypesAreRefused) {
    for (const unsigned type : {0U, 5U, 6U, 9U, 11U, 255U})
        expectRefused(bodyOf(oneField(type, 0, 0)));
}

TEST(BodyCodec, ASizeOfAFieldThatIsNoTextIsRefused) {
    for (const unsigned type : {1U, 2U, 3U, 4U, 7U, 8U})
        expectRefused(bodyOf(oneField(type, 1, 0)));
    expectAccepted(bodyOf(oneField(10, 65535, 0)));
}

TEST(BodyCodec, ABoolIsZeroOrOne) {
    expectAccepted(bodyOf(oneField(1, 0, 2).u8(0).u8(1)));
    expectRefused(bodyOf(oneField(1, 0, 2).u8(0).u8(2)));
    expectAccepted(bodyOf(oneField(2, 0, 2).u8(0).u8(255)));
}

TEST(BodyCodec, ANumberIsFinite) {
    const double largest = std::numeric_limits<double>::max();
    for (const unsigned type : {7U, 8U}) {
        expectAccepted(bodyOf(oneField(type, 0, 3).f64(largest).f64(-0.0).f64(5e-324)));
        expectRefused(bodyOf(oneField(type, 0, 1).f64(std::numeric_limits<double>::infinity())));
        expectRefused(bodyOf(oneField(type, 0, 2).f64(0).f64(-std::numeric_limits<double>::infinity())));
        expectRefused(bodyOf(oneField(type, 0, 2).f64(std::numeric_limits<double>::quiet_NaN()).f64(0)));
    }
}

TEST(BodyCodec, ATextFitsItsField) {
    expectAccepted(bodyOf(oneField(10, 2, 1).u32(2).text("ab")));
    expectRefused(bodyOf(oneField(10, 2, 1).u32(3).text("abc")));
    expectAccepted(bodyOf(oneField(10, 2, 1).u32(8).text("\xF0\x9F\x98\x80\xF0\x9F\x98\x80")));
    expectRefused(bodyOf(oneField(10, 1, 1).u32(4).text("\xC3\xA9\xC3\xA9")));
    expectRefused(bodyOf(oneField(10, 0, 1).u32(1).text("a")));
    expectAccepted(bodyOf(oneField(10, 0, 1).u32(0)));
}

TEST(BodyCodec, ATextIsUtf8) {
    expectRefused(bodyOf(oneField(10, 5, 1).u32(1).text("\xFF")));
    expectRefused(bodyOf(oneField(10, 5, 2).u32(1).u32(1).text("\xC3\xA9"))); // split between two texts
    expectRefused(bodyOf(oneField(10, 5, 1).u32(2).text("\xC0\x80")));
    expectRefused(bodyOf(oneField(10, 5, 1).u32(3).text("\xED\xA0\x80")));
    expectAccepted(bodyOf(oneField(10, 5, 1).u32(3).text("\xEF\xBB\xBF")));
}

TEST(BodyCodec, NamesAreUtf8NotEmptyAndUnique) {
    expectRefused(bodyOf(emptyTable("\xFF")));
    expectRefused(bodyOf(emptyTable("")));
    expectRefused(bodyOf(emptyTable("  ")));
    expectRefused(BodyBytes().table(emptyTable("pumps")).table(emptyTable("PUMPS !")).end());
    expectRefused(bodyOf(BodyBytes().u32(0).u16(2).name("T").u8(4).u16(0).name("f").u8(4).u16(0).name(" F")));
    expectRefused(bodyOf(BodyBytes().u32(0).u16(1).name("T").u8(4).u16(0).name(" ")));
    expectAccepted(bodyOf(BodyBytes().u32(0).u16(1).name("T").u8(4).u16(0).name("T")));
}

TEST(BodyCodec, LimitsAreHeld) {
    expectRefused(bodyOf(emptyTable(QByteArray(256, 'x'))), LoadErrorKind::Limits);
    expectAccepted(bodyOf(emptyTable(QByteArray(255, 'x'))));
    expectRefused(bodyOf(BodyBytes().u32((1U << 24) + 1).u16(0).name("T")), LoadErrorKind::Limits);
    BodyLimits ofJournals;
    ofJournals.recordsWithoutFields = limits::records;
    const QByteArray counted = bodyOf(BodyBytes().u32(1U << 24).u16(0).name("T"));
    EXPECT_TRUE(decodeBody(counted, ofJournals).has_value());
    expectRefused(bodyOf(BodyBytes().u32(0).u16(1025).name("T")), LoadErrorKind::Limits);
    BodyBytes tables;
    for (int i = 0; i < 4097; ++i)
        tables.table(emptyTable(QByteArray::number(i)));
    expectRefused(tables.end(), LoadErrorKind::Limits);

    BodyLimits one;
    one.tables = 1;
    expectRefused(BodyBytes().table(emptyTable("a")).table(emptyTable("b")).end(), LoadErrorKind::Limits, one);
    one = {};
    one.records = 1;
    expectRefused(bodyOf(oneField(1, 0, 2).u8(0).u8(0)), LoadErrorKind::Limits, one);
    one = {};
    one.fields = 0;
    expectRefused(bodyOf(oneField(1, 0, 0)), LoadErrorKind::Limits, one);
    one = {};
    one.nameLength = 3;
    expectRefused(bodyOf(emptyTable("four")), LoadErrorKind::Limits, one);
}

TEST(BodyCodec, MemoryStaysWithinItsBudget) {
    BodyLimits small;
    small.memory = 4096;
    for (const unsigned type : {2U, 3U, 4U, 7U}) {
        const unsigned width = type == 2 ? 1 : type == 3 ? 2 : type == 4 ? 4 : 8;
        BodyBytes table = oneField(type, 0, 5000);
        for (unsigned i = 0; i < 5000 * width; ++i)
            table.u8(0);
        expectRefused(bodyOf(table), LoadErrorKind::Limits, small);
        expectAccepted(bodyOf(table));
    }
    expectRefused(bodyOf(oneField(10, 60000, 1).u32(5000).text(std::string(5000, 'x').c_str())), LoadErrorKind::Limits,
                  small);
    expectRefused(BodyBytes().section(7, 0, BodyBytes().text(std::string(5000, 'x').c_str())).end(),
                  LoadErrorKind::Limits, small);
    BodyBytes manyTables;
    for (int i = 0; i < 100; ++i)
        manyTables.table(emptyTable(QByteArray::number(i)));
    expectRefused(manyTables.end(), LoadErrorKind::Limits, small);
}

RC_GTEST_PROP(BodyCodecProperty, AnyDatabaseReadsBackEqual, ()) {
    Database database = test::randomDatabase();
    const QByteArray body = encodeBody(database);
    database.dropRecordsWithoutFields();
    const auto decoded = decodeBody(body);
    RC_ASSERT(decoded.has_value());
    RC_ASSERT(plain(*decoded) == plain(database));
    RC_ASSERT(encodeBody(*decoded) == body);
}

RC_GTEST_PROP(BodyCodecProperty, ABodyWithBytesChangedIsRefusedOrKeptAsItIs, ()) {
    QByteArray body = encodeBody(test::randomDatabase());
    const int changes = *rc::gen::inRange(1, 4);
    for (int i = 0; i < changes; ++i)
        body[*rc::gen::inRange<qsizetype>(0, body.size())] = *rc::gen::arbitrary<char>();
    if (const auto decoded = decodeBody(body))
        RC_ASSERT(encodeBody(*decoded) == body);
}

} // namespace
