#include "tests/qirtbase/file/StorageSupport.h"
#include "tests/support/CountedMemory.h"
#include "tests/support/ForwardingFileOps.h"

#include <gtest/gtest.h>

#include <QtEndian>

#include <sodium.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>

using namespace Qt::StringLiterals;

// Files that somebody made to do harm: all sums are right, so that each reaches the check that must refuse it.

namespace qir {
namespace {

const QString password = u"p"_s;
constexpr qsizetype start = layout::lengthDigits;
constexpr std::size_t memoryMax = std::size_t{16} << 20;

// ---- making the files

KdfParameters cheapParameters() {
    KdfParameters parameters{cheapCosts, {}};
    parameters.salt.fill(7);
    return parameters;
}

const SecretBytes &masterKey() {
    static const SecretBytes key = deriveMasterKey(passwordBytes(password), cheapParameters()).value();
    return key;
}

/// A file whose parts a test changes before it is put together.
class Forged {
public:
    explicit Forged(bool isProtected, const QByteArray &body = "hello", std::uint8_t chunkLog2 = layout::chunkLog2Min)
        : m_protected(isProtected)
        , m_body(body) {
        FileHeader header;
        header.isProtected = isProtected;
        header.chunkLog2 = chunkLog2;
        header.bodyLength = static_cast<std::uint64_t>(body.size());
        header.fileId.fill(1);
        header.saveId.fill(2);
        header.kdf = cheapParameters();
        m_block = encodeHeader(header, nullptr).bytes;
    }

    template<class T>
    Forged &set(std::size_t offset, T value) {
        qToLittleEndian<T>(value, m_block.data() + start + static_cast<qsizetype>(offset));
        return *this;
    }
    Forged &setBytes(std::size_t offset, const QByteArray &bytes) {
        m_block.replace(start + static_cast<qsizetype>(offset), bytes.size(), bytes);
        return *this;
    }
    Forged &setDigits(const QByteArray &digits) {
        m_block.replace(0, digits.size(), digits);
        return *this;
    }
    /// Puts these bytes where extensions stand and makes the header that much longer.
    Forged &setExtensions(const QByteArray &bytes) {
        m_block.insert(start + static_cast<qsizetype>(layout::extensions), bytes);
        return setDigits(QByteArray::number(m_block.size() - start).rightJustified(start, '0'));
    }
    /// Leaves the MAC as it was set instead of making the right one.
    Forged &keepMac() {
        m_keepMac = true;
        return *this;
    }
    /// How sealed chunks follow one another: message tags other than the right ones.
    Forged &setTags(std::vector<unsigned char> tags) {
        m_tags = std::move(tags);
        return *this;
    }
    Forged &setChunkIndex(std::uint64_t offset) {
        m_indexOffset = offset;
        return *this;
    }

    QByteArray head() const {
        QByteArray block = m_block;
        if (m_protected && !m_keepMac) {
            const SecretBytes key = deriveHeadKey(masterKey());
            sealHeader(block, &key);
        } else {
            sealHeader(block, nullptr);
        }
        return block;
    }

    QByteArray bytes() const {
        QByteArray out = head();
        HeaderDigest digest;
        std::memcpy(digest.data(), out.constData() + out.size() - static_cast<qsizetype>(layout::digestFromEnd),
                    digest.size());
        const qsizetype size = 1 << layout::chunkLog2Min;
        const qsizetype count = std::max<qsizetype>(1, (m_body.size() + size - 1) / size);
        crypto_secretstream_xchacha20poly1305_state state;
        if (m_protected) {
            const QByteArray streamHeader(static_cast<qsizetype>(layout::streamHeaderSize), 's');
            out.append(streamHeader);
            crypto_secretstream_xchacha20poly1305_init_pull(
                &state, reinterpret_cast<const unsigned char *>(streamHeader.constData()),
                deriveBodyKey(masterKey(), digest).data());
        }
        for (qsizetype i = 0; i < count; ++i) {
            const QByteArray plain = m_body.mid(i * size, size);
            if (!m_protected) {
                const OpenTag tag = openChunkTag(plain, digest, static_cast<std::uint64_t>(i) + m_indexOffset);
                out.append(plain).append(reinterpret_cast<const char *>(tag.data()),
                                         static_cast<qsizetype>(tag.size()));
                continue;
            }
            QByteArray sealed(plain.size() + static_cast<qsizetype>(layout::protectedTagSize), '\0');
            const unsigned char right = i + 1 == count ? crypto_secretstream_xchacha20poly1305_TAG_FINAL : 0;
            crypto_secretstream_xchacha20poly1305_push(
                &state, reinterpret_cast<unsigned char *>(sealed.data()), nullptr,
                reinterpret_cast<const unsigned char *>(plain.constData()), static_cast<std::size_t>(plain.size()),
                nullptr, 0, static_cast<std::size_t>(i) < m_tags.size() ? m_tags[static_cast<std::size_t>(i)] : right);
            out.append(sealed);
        }
        return out;
    }

private:
    bool m_protected;
    QByteArray m_body;
    QByteArray m_block;
    bool m_keepMac = false;
    std::vector<unsigned char> m_tags;
    std::uint64_t m_indexOffset = 0;
};

class HostileFiles : public testing::Test {
protected:
    void TearDown() override {
        std::printf("%d files refused, at most %zu bytes of memory%s, %.2f ms\n", m_files, m_peak,
                    CountedMemory::counts() ? "" : " (not counted in this build)", m_slowest);
    }

    /// Refused for this reason, with little read, little memory, and no key derived unless the header is in order.
    void refused(const QByteArray &bytes, LoadErrorKind kind, const std::string &what, off_t sparseSize = 0) {
        const OpenFile file(FileOps::system(), ::memfd_create("hostile", MFD_CLOEXEC));
        ASSERT_TRUE(writeFully(FileOps::system(), file.descriptor(), bytes));
        if (sparseSize > 0) {
            ASSERT_EQ(::ftruncate(file.descriptor(), sparseSize), 0) << what;
        }
        class : public ForwardingFileOps {
            std::size_t allowed(FileCall, std::size_t size) override {
                total += size;
                return size;
            }

        public:
            std::size_t total = 0;
        } ops;
        int derivations = 0;
        const KeyDeriver derive = [&](const SecretBytes &, const KdfParameters &) -> LoadResult<SecretBytes> {
            ++derivations;
            return masterKey().clone();
        };
        const CountedMemory counted;
        const auto begin = std::chrono::steady_clock::now();
        const auto read = readContainer(ops, file.descriptor(), password, {}, derive);
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
        ASSERT_FALSE(read) << what;
        EXPECT_EQ(read.error().kind, kind) << what << ": " << read.error().text.toStdString();
        EXPECT_FALSE(read.error().text.isEmpty()) << what;
        EXPECT_LE(counted.peak(), memoryMax) << what;
        EXPECT_LE(ops.total, std::size_t{2} << 20) << what << ": bytes asked for";
        EXPECT_LE(derivations, 1) << what;
        ++m_files;
        m_peak = std::max(m_peak, counted.peak());
        m_slowest = std::max(m_slowest, time.count());
    }

    static std::string with(const char *what, std::uint64_t value, bool isProtected) {
        return std::string(what) + ' ' + std::to_string(value) + (isProtected ? ", protected" : ", open");
    }

    int m_files = 0;
    std::size_t m_peak = 0;
    double m_slowest = 0;
};

TEST_F(HostileFiles, TheForgerMakesGoodFilesWhenNothingIsForged) {
    for (const bool isProtected : {false, true}) {
        for (const qsizetype size : {0, 5, 4096, 10000}) {
            const auto read = readBytes(Forged(isProtected, QByteArray(size, 'b')).bytes(), password);
            EXPECT_TRUE(read) << size << isProtected;
        }
        // A later minor version and bits that may be ignored change nothing.
        EXPECT_TRUE(readBytes(Forged(isProtected).set<std::uint16_t>(layout::minorVersion, 0xffff).bytes(), password));
        EXPECT_TRUE(
            readBytes(Forged(isProtected).set<std::uint32_t>(layout::optionalBits, 0xffffffff).bytes(), password));
        EXPECT_TRUE(readBytes(Forged(isProtected)
                                  .setExtensions(QByteArray::fromHex("0100020041420200"
                                                                     "0000"))
                                  .bytes(),
                              password));
    }
}

TEST_F(HostileFiles, HeaderLengths) {
    for (const char *digits : {"0000000000", "0000000001", "0000000191", "0000004097", "9999999999", "4294967488",
                               "-000000192", "+000000192", " 000000192", "000000192 ", "0x000000c0", "0.00000192",
                               "00000001e2", "QIRQIRQIRQ", "\0\0\0\0\0\0\0\0\0\0", "000000019\xb2"})
        refused(Forged(false).setDigits(QByteArray(digits, 10)).bytes(), LoadErrorKind::NotADatabase, digits);
    for (const char *digits : {"0000000193", "0000000256", "0000004096"})
        refused(Forged(false, QByteArray(5000, 'b')).setDigits(digits).bytes(), LoadErrorKind::Damaged, digits);
    refused(Forged(false).setDigits("0000004096").bytes(), LoadErrorKind::Truncated, "longer than the file");
}

TEST_F(HostileFiles, OtherMagic) {
    for (const char *magic : {"qir", "QIX", "XIR", "QXR", "ZIP"})
        refused(Forged(false).setBytes(layout::magic, magic).bytes(), LoadErrorKind::NotADatabase, magic);
}

TEST_F(HostileFiles, VersionsAndBitsThatMustBeKnown) {
    for (const bool isProtected : {false, true}) {
        for (const std::uint16_t number : {2, 3, 256, 0x7fff, 0xffff})
            refused(Forged(isProtected).set(layout::majorVersion, number).bytes(), LoadErrorKind::NewerVersion,
                    with("major", number, isProtected));
        refused(Forged(isProtected).set<std::uint16_t>(layout::majorVersion, 0).bytes(), LoadErrorKind::Damaged,
                "major 0");
        for (int bit = 0; bit < 32; bit += 5)
            refused(Forged(isProtected).set(layout::requiredBits, std::uint32_t{1} << bit).bytes(),
                    LoadErrorKind::NewerVersion, with("required bit", static_cast<std::uint64_t>(bit), isProtected));
    }
}

TEST_F(HostileFiles, ReservedBytes) {
    for (const bool isProtected : {false, true})
        for (const std::size_t at :
             {layout::reserved1, layout::reserved1 + 3, layout::reserved2, layout::reserved2 + 7, layout::reserved3,
              layout::reserved3 + 3, layout::reserved4, layout::reserved4 + 15})
            refused(Forged(isProtected).set<std::uint8_t>(at, 1).bytes(), LoadErrorKind::NewerVersion,
                    with("reserved byte", at, isProtected));
}

TEST_F(HostileFiles, ChunkSizes) {
    for (const bool isProtected : {false, true})
        for (const std::uint8_t log2 : {0, 1, 8, 11, 21, 31, 32, 63, 64, 127, 128, 255})
            refused(Forged(isProtected).set(layout::chunkSizeLog2, log2).bytes(), LoadErrorKind::Limits,
                    with("chunk size", log2, isProtected));
}

TEST_F(HostileFiles, Methods) {
    for (const bool isProtected : {false, true}) {
        for (const std::size_t field : {layout::kdfMethod, layout::cipherMethod})
            for (const std::uint8_t method : {2, 127, 255})
                refused(Forged(isProtected).set(field, method).bytes(), LoadErrorKind::NewerVersion,
                        with("method", method, isProtected));
        for (const std::uint8_t method : {0, 2, 255})
            refused(Forged(isProtected).set(layout::digestMethod, method).bytes(), LoadErrorKind::NewerVersion,
                    with("digest", method, isProtected));
        for (const std::size_t field : {layout::kdfMethod, layout::cipherMethod})
            refused(Forged(isProtected).set<std::uint8_t>(field, isProtected ? 0 : 1).bytes(), LoadErrorKind::Damaged,
                    with("contradicting method", field, isProtected));
    }
    refused(Forged(false).set<char>(layout::protection, '1').bytes(), LoadErrorKind::Damaged,
            "open, marked as protected");
    refused(Forged(true).set<char>(layout::protection, '0').bytes(), LoadErrorKind::Damaged,
            "protected, marked as open");
    refused(Forged(true).set<char>(layout::protection, 'x').bytes(), LoadErrorKind::Damaged, "protected, marked oddly");
}

TEST_F(HostileFiles, BodyLengths) {
    const std::uint64_t top = std::uint64_t{1} << 63;
    for (const bool isProtected : {false, true}) {
        for (const std::uint64_t length :
             {std::uint64_t{6}, std::uint64_t{100}, std::uint64_t{4096}, std::uint64_t{4097}, std::uint64_t{1} << 31,
              std::uint64_t{1} << 32, std::uint64_t{1} << 40, std::uint64_t{1} << 62, top - 1, top, top + 1,
              ~std::uint64_t{0}, ~std::uint64_t{0} - 16, ~std::uint64_t{0} - 4096, ~std::uint64_t{0} - 230})
            refused(Forged(isProtected).set(layout::bodyLength, length).bytes(), LoadErrorKind::Truncated,
                    with("body length", length, isProtected));
        for (const std::uint64_t length : {0, 1, 4})
            refused(Forged(isProtected).set(layout::bodyLength, length).bytes(), LoadErrorKind::Damaged,
                    with("body length", length, isProtected));
    }
}

TEST_F(HostileFiles, LengthsThatAHugeSparseFileMakesTrue) {
    for (const bool isProtected : {false, true}) {
        for (const int log2 : {25, 30, 35}) {
            const std::uint64_t length = std::uint64_t{1} << log2;
            for (const bool withFirstChunk : {false, true}) {
                Forged forged(isProtected, QByteArray(4096, 'b'), layout::chunkLog2Min);
                forged.set(layout::bodyLength, length).setTags({0});
                const QByteArray bytes = withFirstChunk ? forged.bytes() : forged.head();
                const std::uint64_t tags =
                    length / 4096 * (isProtected ? layout::protectedTagSize : layout::openTagSize);
                const auto size = static_cast<off_t>(forged.head().size() + (isProtected ? 24 : 0) +
                                                     static_cast<off_t>(length + tags));
                refused(bytes, LoadErrorKind::Damaged, with("sparse 2^", static_cast<std::uint64_t>(log2), isProtected),
                        size);
            }
        }
    }
    Forged forged(false);
    const std::uint64_t length = std::uint64_t{1} << 37;
    forged.set(layout::bodyLength, length);
    refused(
        forged.head(), LoadErrorKind::Limits, "more than is accepted",
        static_cast<off_t>(forged.head().size() + static_cast<off_t>(length + length / 4096 * layout::openTagSize)));
}

TEST_F(HostileFiles, NoIdentity) {
    for (const bool isProtected : {false, true}) {
        refused(Forged(isProtected).setBytes(layout::fileId, QByteArray(16, '\0')).bytes(), LoadErrorKind::Damaged,
                "file id");
        refused(Forged(isProtected).setBytes(layout::saveId, QByteArray(16, '\0')).bytes(), LoadErrorKind::Damaged,
                "save id");
    }
}

TEST_F(HostileFiles, KeyDerivationCosts) {
    for (const std::uint32_t passes : {0U, 65U, 1000U, 0x7fffffffU, 0x80000000U, 0xffffffffU})
        refused(Forged(true).set(layout::kdfPasses, passes).bytes(), LoadErrorKind::Limits,
                with("passes", passes, true));
    for (const std::uint32_t memory : {0U, 1U, 1024U, 8191U, 1048577U, 4194304U, 0x80000000U, 0xffffffffU})
        refused(Forged(true).set(layout::kdfMemoryKiB, memory).bytes(), LoadErrorKind::Limits,
                with("memory", memory, true));
    refused(
        Forged(true).set<std::uint32_t>(layout::kdfPasses, 64).set<std::uint32_t>(layout::kdfMemoryKiB, 262145).bytes(),
        LoadErrorKind::Limits, "passes x memory");
    refused(Forged(true)
                .set<std::uint32_t>(layout::kdfPasses, 17)
                .set<std::uint32_t>(layout::kdfMemoryKiB, 1048576)
                .bytes(),
            LoadErrorKind::Limits, "passes x memory");
    for (const std::uint32_t lanes : {0U, 2U, 255U, 0xffffffffU})
        refused(Forged(true).set(layout::kdfLanes, lanes).bytes(), LoadErrorKind::NewerVersion,
                with("lanes", lanes, true));
}

TEST_F(HostileFiles, OpenFilesWithAPasswordsTraces) {
    for (const std::size_t at :
         {layout::kdfPasses, layout::kdfMemoryKiB, layout::kdfLanes, layout::salt, layout::salt + 15})
        refused(Forged(false).set<std::uint8_t>(at, 1).bytes(), LoadErrorKind::Damaged, with("trace", at, false));
    for (const std::size_t at : {std::size_t{128}, std::size_t{159}})
        refused(Forged(false).set<std::uint8_t>(at, 1).bytes(), LoadErrorKind::Damaged, with("MAC byte", at, false));
}

TEST_F(HostileFiles, Extensions) {
    for (const bool isProtected : {false, true}) {
        for (const char *bytes : {"01", "0100", "010000", "01000100", "0100ffff", "010001004101",
                                  "0100020041420200ffff", "00000100", "ff7f0500ffffffff"})
            refused(Forged(isProtected).setExtensions(QByteArray::fromHex(bytes)).bytes(), LoadErrorKind::Damaged,
                    bytes);
        for (const char *bytes : {"01800000", "ffff0000", "00800100aa", "0100000001800000"})
            refused(Forged(isProtected).setExtensions(QByteArray::fromHex(bytes)).bytes(), LoadErrorKind::NewerVersion,
                    bytes);
    }
}

TEST_F(HostileFiles, HeaderMacs) {
    refused(Forged(true).keepMac().bytes(), LoadErrorKind::WrongPassword, "no MAC");
    refused(Forged(true).setBytes(128, QByteArray(32, 'm')).keepMac().bytes(), LoadErrorKind::WrongPassword,
            "another MAC");
}

TEST_F(HostileFiles, MessageTags) {
    const unsigned char final = crypto_secretstream_xchacha20poly1305_TAG_FINAL;
    const unsigned char push = crypto_secretstream_xchacha20poly1305_TAG_PUSH;
    const unsigned char rekey = crypto_secretstream_xchacha20poly1305_TAG_REKEY;
    refused(Forged(true).setTags({0}).bytes(), LoadErrorKind::Damaged, "no final tag");
    refused(Forged(true).setTags({push}).bytes(), LoadErrorKind::Damaged, "push at the end");
    refused(Forged(true).setTags({rekey}).bytes(), LoadErrorKind::Damaged, "rekey at the end");
    refused(Forged(true).setTags({77}).bytes(), LoadErrorKind::Damaged, "unknown at the end");
    const QByteArray two(5000, 'b');
    refused(Forged(true, two).setTags({final, final}).bytes(), LoadErrorKind::Damaged, "two finals");
    refused(Forged(true, two).setTags({final, 0}).bytes(), LoadErrorKind::Damaged, "final first");
    refused(Forged(true, two).setTags({push, final}).bytes(), LoadErrorKind::Damaged, "push first");
    refused(Forged(true, two).setTags({rekey, final}).bytes(), LoadErrorKind::Damaged, "rekey first");
}

TEST_F(HostileFiles, OpenTagsForOtherPlaces) {
    for (const std::uint64_t offset : {std::uint64_t{1}, std::uint64_t{2}, ~std::uint64_t{0}})
        refused(Forged(false).setChunkIndex(offset).bytes(), LoadErrorKind::Damaged, with("index", offset, false));
    QByteArray bytes = Forged(false).bytes();
    bytes.replace(bytes.size() - 16, 16, QByteArray(16, '\0'));
    refused(bytes, LoadErrorKind::Damaged, "zero tag");
}

TEST_F(HostileFiles, PartsOfTwoFiles) {
    const QByteArray one = Forged(true).bytes();
    const QByteArray two = Forged(true).setBytes(layout::saveId, QByteArray(16, '9')).bytes();
    const QByteArray open = Forged(false).bytes();
    const qsizetype head = start + static_cast<qsizetype>(layout::headerLength);
    refused(one.first(head) + two.sliced(head), LoadErrorKind::Damaged, "chunks of another save");
    refused(one.first(head) + open.sliced(head), LoadErrorKind::Truncated, "open chunks below a protected head");
    refused(open.first(head) + one.sliced(head), LoadErrorKind::Damaged, "protected chunks below an open head");
    refused(one.first(head) + QByteArray(24, '\0') + one.sliced(head + 24), LoadErrorKind::Damaged, "stream header");
    refused(one + QByteArray(1, '\0'), LoadErrorKind::Damaged, "a byte more");
    refused(one + one, LoadErrorKind::Damaged, "twice");
    refused(open + open, LoadErrorKind::Damaged, "twice, open");
}

TEST_F(HostileFiles, OtherKindsOfFile) {
    refused("PK\x03\x04" + QByteArray(500, '\0'), LoadErrorKind::NotADatabase, "archive");
    refused("SQLite format 3" + QByteArray(500, '\0'), LoadErrorKind::NotADatabase, "other database");
    refused(QByteArray(500, '\0'), LoadErrorKind::NotADatabase, "zeros");
    refused(QByteArray(500, '0'), LoadErrorKind::NotADatabase, "digits");
    refused(QByteArray(500, '9'), LoadErrorKind::NotADatabase, "nines");
    refused(QByteArray(500, '\xff'), LoadErrorKind::NotADatabase, "ones");
    refused("\xef\xbb\xbf"
            "0000000192",
            LoadErrorKind::NotADatabase, "byte order mark");
    refused("0000000192", LoadErrorKind::Truncated, "digits alone");
    refused("0000000192" + QByteArray(192, '\0'), LoadErrorKind::NotADatabase, "zero header");
    refused("0000000192QIR" + QByteArray(189, '\0'), LoadErrorKind::Damaged, "magic alone");
    refused({}, LoadErrorKind::Empty, "nothing");
}

} // namespace
} // namespace qir
