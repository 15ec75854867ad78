#include "tests/qirtbase/file/StorageSupport.h"
#include "tests/support/ForwardingFileOps.h"

#include <gtest/gtest.h>

#include <sys/mman.h>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

const QString password = u"p\u00f3mp-7"_s;

QByteArray bytesUpTo(qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 31 + (i >> 8));
    return bytes;
}

LoadErrorKind kindOf(const LoadResult<LoadedContainer> &result) {
    if (result)
        throw std::runtime_error("the file was accepted");
    return result.error().kind;
}

/// The header fields that both pinned files share, up to the body length.
QByteArray pinnedHead(const char *protection, const char *methods) {
    return "30303030303030313932" // ten digits: the header has 192 bytes
           "514952"_ba +
           protection +
           "0100"
           "0000" // version 1.0
           "00000000"
           "00000000"
           "00000000" // bits that must be known, bits that may be ignored, reserved
           "10"_ba +
           methods +
           "0500000000000000"                 // body length
           "0102030405060708090a0b0c0d0e0f10" // file id
           "1112131415161718191a1b1c1d1e1f20" // save id
           "0100000000000000"                 // generation
           "0000000000000000";
}

// ---- exact bytes, the sums and ciphers computed with other libraries

TEST(Container, TheBytesOfASmallOpenFileArePinned) {
    const QByteArray expected = pinnedHead("30", "000001") + QByteArray(32, '0') // no costs, reserved
                                + QByteArray(64, '0')                            // no salt, reserved
                                + QByteArray(64, '0')                            // no MAC
                                + "dae9a4d13e27760628b48d0baee385daa98bed3d5bef862bdb35a187572e765b" // digest
                                  "68656c6c6f"                                                       // "hello"
                                  "a44fcf89a22187ed2ac84b82db3995b9";
    EXPECT_EQ(containerBytes("hello").toHex(), expected);
}

TEST(Container, TheBytesOfASmallProtectedFileArePinned) {
    const QByteArray expected = pinnedHead("31", "010101") +
                                "01000000"
                                "00200000"
                                "01000000"
                                "00000000"                         // one pass, 8 MiB, one lane
                                "2122232425262728292a2b2c2d2e2f30" // salt
                                "00000000000000000000000000000000"
                                "ebee32b20418cba72eb7893bec19c2bb157da9290c7a090a8bb76e350fafeeb1" // MAC
                                "777f21448558ba35aca9df3095e9ea1a2d961f87c0f6526b200a3caf261f034a" // digest
                                "3132333435363738393a3b3c3d3e3f404142434445464748"                 // stream header
                                "02b4d16b3204cb51c8c164fa9344f1972c0e1daf1061";
    EXPECT_EQ(containerBytes("hello", password).toHex(), expected);
}

// ---- round trips

class ContainerOfEachForm : public testing::TestWithParam<QString> {};
INSTANTIATE_TEST_SUITE_P(Forms, ContainerOfEachForm, testing::Values(QString(), password),
                         [](const auto &form) { return form.param.isEmpty() ? "Open" : "Protected"; });

TEST_P(ContainerOfEachForm, BodiesAroundEveryChunkBoundaryComeBack) {
    FileHeader header;
    header.chunkLog2 = layout::chunkLog2Min;
    for (const qsizetype size : {0, 1, 4095, 4096, 4097, 8191, 8192, 8193, 40960, 100000}) {
        const QByteArray body = bytesUpTo(size);
        const auto read = readBytes(containerBytes(body, GetParam(), header), GetParam());
        ASSERT_TRUE(read) << size << ": " << read.error().text.toStdString();
        EXPECT_EQ(read->body, body) << size;
        EXPECT_EQ(read->keys.isProtected(), !GetParam().isEmpty());
    }
}

TEST_P(ContainerOfEachForm, BodiesOfManyPiecesComeBack) {
    const QByteArray body = bytesUpTo((qsizetype{5} << 20) + 12345); // chunks of 64 KiB, pieces of 1 MiB
    const auto read = readBytes(containerBytes(body, GetParam()), GetParam());
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->body == body);
}

TEST_P(ContainerOfEachForm, EveryChunkSizeIsRead) {
    const QByteArray body = bytesUpTo(1500000);
    for (std::uint8_t log2 = layout::chunkLog2Min; log2 <= layout::chunkLog2Max; ++log2) {
        FileHeader header;
        header.chunkLog2 = log2;
        const auto read = readBytes(containerBytes(body, GetParam(), header), GetParam());
        ASSERT_TRUE(read) << static_cast<int>(log2);
        EXPECT_TRUE(read->body == body) << static_cast<int>(log2);
    }
}

TEST_P(ContainerOfEachForm, OptionalBitsExtensionsAndGenerationAreKept) {
    FileHeader header;
    header.fileId.fill(1);
    header.saveId.fill(2);
    header.optionalBits = 0x80000001;
    header.generation = 0x0123456789abcdef;
    header.extensions = QByteArray::fromHex("0100"
                                            "0300"
                                            "aabbcc"
                                            "ff7f"
                                            "0000");
    const auto read = readBytes(containerBytes("x", GetParam(), header), GetParam());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->header.optionalBits, header.optionalBits);
    EXPECT_EQ(read->header.generation, header.generation);
    EXPECT_EQ(read->header.extensions, header.extensions);
    EXPECT_EQ(containerBytes("x", GetParam(), read->header), containerBytes("x", GetParam(), header));
}

TEST_P(ContainerOfEachForm, AHeaderAsLongAsAllowedIsRead) {
    FileHeader header;
    const qsizetype room = layout::headerLengthMax - layout::headerLength;
    header.extensions = QByteArray(room, '\x07');
    header.extensions.replace(
        0, 4, QByteArray("\x01\x00", 2) + static_cast<char>((room - 4) & 0xff) + static_cast<char>((room - 4) >> 8));
    const QByteArray bytes = containerBytes("x", GetParam(), header);
    EXPECT_TRUE(bytes.startsWith("0000004096"));
    EXPECT_TRUE(readBytes(bytes, GetParam()));
}

TEST_P(ContainerOfEachForm, OneByteReadsGiveTheSameBody) {
    class : public ForwardingFileOps {
        std::size_t allowed(FileCall, std::size_t) override { return 1; }
    } ops;
    const auto read = readBytes(containerBytes("hello", GetParam()), GetParam(), {}, ops);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->body, "hello");
}

// ---- damage

TEST_P(ContainerOfEachForm, EverySingleBitChangeIsRefusedAsNoDatabaseOrDamaged) {
    QByteArray bytes = containerBytes("hello", GetParam());
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        for (int bit = 0; bit < 8; ++bit) {
            bytes[i] = static_cast<char>(bytes[i] ^ (1 << bit));
            const LoadErrorKind kind = kindOf(readBytes(bytes, GetParam()));
            // The ten digits and "QIR" tell whose file it is; longer header lengths ask for more than is there.
            if (i < static_cast<qsizetype>(layout::lengthDigits)) {
                EXPECT_TRUE(kind == LoadErrorKind::NotADatabase || kind == LoadErrorKind::Truncated ||
                            kind == LoadErrorKind::Damaged)
                    << i;
            } else {
                const bool magic = i < static_cast<qsizetype>(layout::lengthDigits) + 3;
                EXPECT_EQ(kind, magic ? LoadErrorKind::NotADatabase : LoadErrorKind::Damaged)
                    << "byte " << i << " bit " << bit;
            }
            bytes[i] = static_cast<char>(bytes[i] ^ (1 << bit));
        }
    }
    EXPECT_TRUE(readBytes(bytes, GetParam()));
}

TEST_P(ContainerOfEachForm, EveryByteValueAtThePlaceOfTheProtectionMarkIsRefused) {
    QByteArray bytes = containerBytes("hello", GetParam());
    const qsizetype place = layout::lengthDigits + layout::protection;
    const char original = bytes[place];
    for (int value = 0; value < 256; ++value) {
        bytes[place] = static_cast<char>(value);
        if (static_cast<char>(value) != original) {
            EXPECT_EQ(kindOf(readBytes(bytes, GetParam())), LoadErrorKind::Damaged) << value;
        }
    }
}

TEST_P(ContainerOfEachForm, EveryTruncationIsRefusedAsTruncated) {
    FileHeader header;
    header.chunkLog2 = layout::chunkLog2Min;
    const QByteArray bytes = containerBytes(bytesUpTo(5000), GetParam(), header);
    EXPECT_EQ(kindOf(readBytes({}, GetParam())), LoadErrorKind::Empty);
    for (qsizetype size = 1; size < bytes.size(); ++size)
        EXPECT_EQ(kindOf(readBytes(bytes.first(size), GetParam())), LoadErrorKind::Truncated) << size;
}

TEST_P(ContainerOfEachForm, BytesAfterTheEndAreRefused) {
    const QByteArray bytes = containerBytes("hello", GetParam());
    for (const qsizetype more : {1, 2, 16, 17, 100, 5000})
        EXPECT_EQ(kindOf(readBytes(bytes + QByteArray(more, '\0'), GetParam())), LoadErrorKind::Damaged) << more;
    EXPECT_EQ(kindOf(readBytes(bytes + bytes, GetParam())), LoadErrorKind::Damaged);
}

TEST_P(ContainerOfEachForm, ChunksThatChangePlacesAreRefused) {
    FileHeader header;
    header.chunkLog2 = layout::chunkLog2Min;
    const bool isOpen = GetParam().isEmpty();
    const QByteArray bytes = containerBytes(QByteArray(4 * 4096, 'a'), GetParam(), header); // equal plain chunks
    const qsizetype chunk = 4096 + static_cast<qsizetype>(isOpen ? layout::openTagSize : layout::protectedTagSize);
    const qsizetype start = bytes.size() - 4 * chunk;
    for (int i = 0; i < 4; ++i) {
        for (int k = 0; k < i; ++k) {
            QByteArray swapped = bytes;
            swapped.replace(start + i * chunk, chunk, bytes.mid(start + k * chunk, chunk));
            swapped.replace(start + k * chunk, chunk, bytes.mid(start + i * chunk, chunk));
            EXPECT_EQ(kindOf(readBytes(swapped, GetParam())), LoadErrorKind::Damaged) << i << k;
        }
    }
}

TEST_P(ContainerOfEachForm, ChunksOfAnotherVersionOfTheFileAreRefused) {
    FileHeader header;
    header.fileId.fill(1);
    header.saveId.fill(2);
    const QByteArray before = containerBytes("hello", GetParam(), header);
    header.saveId.fill(3);
    const QByteArray after = containerBytes("hello", GetParam(), header);
    const qsizetype head = layout::lengthDigits + layout::headerLength;
    EXPECT_EQ(kindOf(readBytes(after.first(head) + before.sliced(head), GetParam())), LoadErrorKind::Damaged);
}

// ---- passwords

TEST(ContainerPassword, AWrongOneIsToldFromDamage) {
    const QByteArray bytes = containerBytes("hello", password);
    EXPECT_EQ(kindOf(readBytes(bytes, u"pómp-8"_s)), LoadErrorKind::WrongPassword);
    EXPECT_EQ(kindOf(readBytes(bytes, u"pómp-7 "_s)), LoadErrorKind::WrongPassword);
    EXPECT_EQ(kindOf(readBytes(bytes, u"PÓMP-7"_s)), LoadErrorKind::WrongPassword);
}

TEST(ContainerPassword, AnEmptyOneIsRefusedWithoutADerivation) {
    const QByteArray bytes = containerBytes("hello", password);
    const OpenFile file(FileOps::system(), ::memfd_create("container", MFD_CLOEXEC));
    ASSERT_TRUE(writeFully(FileOps::system(), file.descriptor(), bytes));
    const auto read =
        readContainer(FileOps::system(), file.descriptor(), {}, {},
                      [](const auto &, const auto &) -> LoadResult<SecretBytes> { throw std::logic_error("derived"); });
    EXPECT_EQ(kindOf(read), LoadErrorKind::WrongPassword);
}

TEST(ContainerPassword, IsTheSameHoweverItsAccentsAreComposed) {
    const QByteArray bytes = containerBytes("hello", u"p\u00f3mp"_s);
    EXPECT_TRUE(readBytes(bytes, u"po\u0301mp"_s));
}

TEST(ContainerPassword, ForAnOpenFileItDoesNotMatter) {
    EXPECT_TRUE(readBytes(containerBytes("hello"), u"anything"_s));
}

TEST(ContainerPassword, AProtectedFileShowsNothingOfItsBody) {
    const QByteArray body = "a text that would be seen at once, a text that would be seen at once";
    EXPECT_FALSE(containerBytes(body, password).contains("text"));
    EXPECT_TRUE(containerBytes(body).contains(body));
}

TEST(ContainerPassword, NormalisingLeavesTheCallersStringAlone) {
    const QString decomposed = u"po\u0301mp"_s;
    const QString copy = decomposed;
    EXPECT_EQ(passwordBytes(decomposed).size(), 5U);
    EXPECT_EQ(decomposed, u"po\u0301mp"_s);
    const QString composed = u"p\u00f3mp"_s;
    EXPECT_EQ(passwordBytes(composed).size(), 5U);
    EXPECT_EQ(composed, u"p\u00f3mp"_s);
    EXPECT_TRUE(passwordBytes({}).isEmpty());
}

// ---- reading back what was written

class VerifiedContainer : public testing::Test {
protected:
    LoadResult<void> verify(const QByteArray &bytes) {
        const OpenFile file(FileOps::system(), ::memfd_create("container", MFD_CLOEXEC));
        EXPECT_TRUE(writeFully(FileOps::system(), file.descriptor(), bytes));
        return verifyContainer(FileOps::system(), file.descriptor(), block(), {});
    }
    HeaderBlock block() const {
        return decodeHeader(good.first(static_cast<qsizetype>(layout::lengthDigits + layout::headerLength))).value();
    }
    const QByteArray good = containerBytes(bytesUpTo(200000));
};

TEST_F(VerifiedContainer, WhatWasWrittenPasses) {
    EXPECT_TRUE(verify(good));
}

TEST_F(VerifiedContainer, AChangedByteIsFound) {
    for (const qsizetype at : {0, 20, 201, 202, 65000, 131000, 200000}) {
        QByteArray bytes = good;
        bytes[at] = static_cast<char>(bytes[at] ^ 1);
        EXPECT_FALSE(verify(bytes)) << at;
    }
}

TEST_F(VerifiedContainer, AnotherValidFileIsFound) {
    FileHeader header;
    header.saveId.fill(9);
    EXPECT_FALSE(verify(containerBytes(bytesUpTo(200000), {}, header)));
}

TEST_F(VerifiedContainer, AMissingEndIsFound) {
    EXPECT_FALSE(verify(good.chopped(1)));
}

} // namespace
} // namespace qir
