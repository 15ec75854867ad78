#include "qirtbase/container/FileHeader.h"

#include "base/ByteReader.h"
#include "base/ByteWriter.h"
#include "qirtbase/container/SecretKey.h"

#include <sodium.h>

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

using namespace layout;

constexpr QByteArrayView magicText("QIR");
constexpr char protectedMark = '1';
constexpr char openMark = '0';

constexpr std::uint32_t passesMax = 64;
constexpr std::uint32_t memoryMinKiB = 8 * 1024;
constexpr std::uint64_t workMaxMiB = 16384; // passes x MiB

using Check = LoadResult<void>;

tl::unexpected<LoadError> notADatabase() {
    return refused(LoadErrorKind::NotADatabase, u"it is not a database of this program"_s);
}

tl::unexpected<LoadError> contradiction(const QString &what) {
    return refused(LoadErrorKind::Damaged, u"it is damaged: %1"_s.arg(what));
}

tl::unexpected<LoadError> newer(const QString &what) {
    return refused(LoadErrorKind::NewerVersion, u"it was made by a newer version of this program (%1)"_s.arg(what));
}

/// The fields of a header by their offsets.
class Fields {
public:
    explicit Fields(QByteArrayView block)
        : m_header(ByteReader(block).from(lengthDigits)) {}

    std::size_t size() const { return static_cast<std::size_t>(m_header.left()); }
    QByteArrayView bytes(std::size_t offset, std::size_t count) const { return m_header.from(offset).bytes(count); }
    std::uint8_t byte(std::size_t offset) const { return number<std::uint8_t>(offset); }
    template<class T>
    T number(std::size_t offset) const {
        return m_header.from(offset).number<T>();
    }
    template<std::size_t size>
    std::array<unsigned char, size> array(std::size_t offset) const {
        return m_header.from(offset).array<size>();
    }
    bool isZero(std::size_t offset, std::size_t count) const {
        const QByteArrayView field = bytes(offset, count);
        return static_cast<std::size_t>(field.size()) == count && sodium_is_zero(bytesOf(field), count) == 1;
    }
    bool isProtected() const { return byte(protection) == protectedMark; }

private:
    ByteReader m_header;
};

HeaderDigest digestOf(QByteArrayView bytes, const SecretBytes *key) {
    HeaderDigest digest;
    crypto_generichash(digest.data(), digest.size(), bytesOf(bytes), static_cast<std::size_t>(bytes.size()),
                       key ? key->data() : nullptr, key ? key->size() : 0);
    return digest;
}

HeaderDigest macOf(QByteArrayView block, const SecretBytes &headKey) {
    return digestOf(block.chopped(static_cast<qsizetype>(macFromEnd)), &headKey);
}

Check checkMagic(const Fields &fields) {
    if (fields.bytes(magic, static_cast<std::size_t>(magicText.size())) != magicText)
        return notADatabase();
    return {};
}

Check checkDigest(const Fields &fields, QByteArrayView block) {
    const HeaderDigest digest = digestOf(block.chopped(static_cast<qsizetype>(digestFromEnd)), nullptr);
    if (fields.array<digestSize>(fields.size() - digestFromEnd) != digest)
        return contradiction(u"its header does not match its checksum"_s);
    return {};
}

Check checkVersion(const Fields &fields) {
    const auto majorNumber = fields.number<std::uint16_t>(majorVersion);
    const auto minorNumber = fields.number<std::uint16_t>(minorVersion);
    if (majorNumber > currentMajor)
        return newer(u"format %1.%2"_s.arg(majorNumber).arg(minorNumber));
    if (majorNumber == 0)
        return contradiction(u"there is no format 0"_s);
    if (fields.number<std::uint32_t>(requiredBits) != 0)
        return newer(u"it needs a feature that this version does not have"_s);
    return {};
}

Check checkReserved(const Fields &fields) {
    if (!fields.isZero(reserved1, 4) || !fields.isZero(reserved2, 8) || !fields.isZero(reserved3, 4) ||
        !fields.isZero(reserved4, 16))
        return newer(u"it uses header bytes that this version does not know"_s);
    return {};
}

Check checkChunkSize(const Fields &fields) {
    if (fields.byte(chunkSizeLog2) < chunkLog2Min || fields.byte(chunkSizeLog2) > chunkLog2Max)
        return refused(LoadErrorKind::Limits, u"its parts have a size that is not accepted"_s);
    return {};
}

Check checkMethods(const Fields &fields) {
    const auto kdf = static_cast<Kdf>(fields.byte(kdfMethod));
    const auto cipher = static_cast<Cipher>(fields.byte(cipherMethod));
    if ((kdf != Kdf::None && kdf != Kdf::Argon2id13) ||
        (cipher != Cipher::None && cipher != Cipher::XChaCha20Poly1305Stream) ||
        static_cast<Digest>(fields.byte(digestMethod)) != Digest::Blake2bXxh3)
        return newer(u"it is sealed in a way that this version does not know"_s);
    if ((kdf != Kdf::None) != fields.isProtected() || (cipher != Cipher::None) != fields.isProtected())
        return contradiction(u"it says both that it is protected and that it is open"_s);
    return {};
}

Check checkKeyFields(const Fields &fields) {
    if (fields.isProtected()) {
        if (fields.number<std::uint32_t>(kdfLanes) != 1)
            return newer(u"it is sealed in a way that this version does not know"_s);
        return {};
    }
    if (!fields.isZero(kdfPasses, reserved4 - kdfPasses) || !fields.isZero(fields.size() - macFromEnd, digestSize))
        return contradiction(u"it is open but has a password's traces"_s);
    return {};
}

Check checkIds(const Fields &fields) {
    if (fields.isZero(fileId, idSize) || fields.isZero(saveId, idSize))
        return contradiction(u"it has no identity"_s);
    return {};
}

/// None is known yet: those that must be known are refused, the others kept.
Check checkExtensions(const Fields &fields) {
    ByteReader rest(fields.bytes(extensions, fields.size() - macFromEnd - extensions));
    while (rest.left() != 0) {
        const auto type = rest.number<std::uint16_t>();
        rest.sizedBytes<std::uint16_t>();
        if (!rest.isComplete())
            return contradiction(u"its header's extensions have no end"_s);
        if (type & extensionRequired)
            return newer(u"it needs a feature that this version does not have"_s);
    }
    return {};
}

Check checkFields(const Fields &fields, QByteArrayView block) {
    return checkMagic(fields)
        .and_then([&] { return checkDigest(fields, block); })
        .and_then([&] { return checkVersion(fields); })
        .and_then([&] { return checkReserved(fields); })
        .and_then([&] { return checkMethods(fields); })
        .and_then([&] { return checkKeyFields(fields); })
        .and_then([&] { return checkChunkSize(fields); })
        .and_then([&] { return checkIds(fields); })
        .and_then([&] { return checkExtensions(fields); });
}

/// Writes the fields of a header by their offsets.
class FieldWriter {
public:
    explicit FieldWriter(QByteArray &block)
        : m_out(block) {}

    template<class T>
    void number(std::size_t offset, T value) {
        at(offset).number(value);
    }
    void bytes(std::size_t offset, QByteArrayView bytes) { at(offset).bytes(bytes); }

private:
    ByteWriter &at(std::size_t offset) { return m_out.at(lengthDigits + offset); }

    ByteWriter m_out;
};

void encodeFields(QByteArray &block, const FileHeader &header) {
    FieldWriter out(block);
    out.bytes(magic, magicText);
    out.number(protection, header.isProtected ? protectedMark : openMark);
    out.number(majorVersion, currentMajor);
    out.number(minorVersion, currentMinor);
    out.number(optionalBits, header.optionalBits);
    out.number(chunkSizeLog2, header.chunkLog2);
    out.number(kdfMethod, static_cast<std::uint8_t>(header.isProtected ? Kdf::Argon2id13 : Kdf::None));
    out.number(cipherMethod,
               static_cast<std::uint8_t>(header.isProtected ? Cipher::XChaCha20Poly1305Stream : Cipher::None));
    out.number(digestMethod, static_cast<std::uint8_t>(Digest::Blake2bXxh3));
    out.number(bodyLength, header.bodyLength);
    out.bytes(fileId, viewOf(header.fileId));
    out.bytes(saveId, viewOf(header.saveId));
    out.number(generation, header.generation);
    if (header.isProtected) {
        out.number(kdfPasses, header.kdf.costs.passes);
        out.number(kdfMemoryKiB, header.kdf.costs.memoryKiB);
        out.number(kdfLanes, std::uint32_t{1});
        out.bytes(salt, viewOf(header.kdf.salt));
    }
    out.bytes(extensions, header.extensions);
}

} // namespace

HeaderBlock encodeHeader(const FileHeader &header, const SecretBytes *headKey) {
    const std::size_t length = headerLength + static_cast<std::size_t>(header.extensions.size());
    HeaderBlock block{header, QByteArray(static_cast<qsizetype>(lengthDigits + length), '\0'), {}};
    const QByteArray digits =
        QByteArray::number(static_cast<qulonglong>(length)).rightJustified(static_cast<qsizetype>(lengthDigits), '0');
    ByteWriter(block.bytes).at(0).bytes(digits);
    encodeFields(block.bytes, header);
    block.digest = sealHeader(block.bytes, headKey);
    return block;
}

HeaderDigest sealHeader(QByteArray &block, const SecretBytes *headKey) {
    if (headKey) {
        const HeaderDigest mac = macOf(block, *headKey);
        ByteWriter(block).at(static_cast<std::size_t>(block.size()) - macFromEnd).array(mac);
    }
    const HeaderDigest digest = digestOf(QByteArrayView(block).chopped(static_cast<qsizetype>(digestFromEnd)), nullptr);
    ByteWriter(block).at(static_cast<std::size_t>(block.size()) - digestFromEnd).array(digest);
    return digest;
}

LoadResult<std::size_t> decodeHeaderLength(QByteArrayView firstBytes) {
    const QByteArrayView digits = firstBytes.first(std::min(firstBytes.size(), static_cast<qsizetype>(lengthDigits)));
    if (digits.isEmpty())
        return refused(LoadErrorKind::Empty, u"it is empty"_s);
    std::size_t length = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9')
            return notADatabase();
        length = length * 10 + static_cast<std::size_t>(digit - '0');
    }
    if (static_cast<std::size_t>(digits.size()) < lengthDigits)
        return refused(LoadErrorKind::Truncated, u"it ends after %1 bytes"_s.arg(digits.size()));
    if (length < headerLength || length > headerLengthMax)
        return notADatabase();
    return length;
}

LoadResult<HeaderBlock> decodeHeader(QByteArray bytes) {
    const Fields fields(bytes);
    return checkFields(fields, bytes).map([&] {
        HeaderBlock block;
        FileHeader &header = block.header;
        header.isProtected = fields.isProtected();
        header.optionalBits = fields.number<std::uint32_t>(optionalBits);
        header.chunkLog2 = fields.byte(chunkSizeLog2);
        header.bodyLength = fields.number<std::uint64_t>(bodyLength);
        header.fileId = fields.array<idSize>(fileId);
        header.saveId = fields.array<idSize>(saveId);
        header.generation = fields.number<std::uint64_t>(generation);
        header.kdf.costs = {fields.number<std::uint32_t>(kdfPasses), fields.number<std::uint32_t>(kdfMemoryKiB)};
        header.kdf.salt = fields.array<saltSize>(salt);
        header.extensions = bytes.mid(static_cast<qsizetype>(lengthDigits + extensions),
                                      static_cast<qsizetype>(fields.size() - headerLength));
        block.digest = fields.array<digestSize>(fields.size() - digestFromEnd);
        block.bytes = std::move(bytes);
        return block;
    });
}

bool headerMacMatches(const HeaderBlock &block, const SecretBytes &headKey) {
    const HeaderDigest mac = macOf(block.bytes, headKey);
    const auto written =
        Fields(block.bytes).array<digestSize>(static_cast<std::size_t>(block.bytes.size()) - lengthDigits - macFromEnd);
    return sodium_memcmp(mac.data(), written.data(), mac.size()) == 0;
}

LoadResult<void> checkKdfCosts(const FileHeader &header) {
    const auto [passes, memoryKiB] = header.kdf.costs;
    if (passes < 1 || passes > passesMax || memoryKiB < memoryMinKiB || memoryKiB > memoryMaxKiB ||
        std::uint64_t{passes} * memoryKiB > workMaxMiB * 1024)
        return refused(LoadErrorKind::Limits, u"trying a password on it would take more time or memory than "
                                              "is accepted (%1 passes over %2 KiB)"_s.arg(passes)
                                                  .arg(memoryKiB));
    return {};
}

std::uint64_t chunkCountOf(const FileHeader &header) {
    const std::uint64_t size = std::uint64_t{1} << header.chunkLog2;
    return std::max<std::uint64_t>(1, header.bodyLength / size + (header.bodyLength % size != 0));
}

std::size_t chunkPlainSize(const FileHeader &header, std::uint64_t index) {
    const std::uint64_t size = std::uint64_t{1} << header.chunkLog2;
    return static_cast<std::size_t>(std::min(size, header.bodyLength - index * size));
}

std::uint64_t fileSizeOf(const HeaderBlock &block) {
    const FileHeader &header = block.header;
    return static_cast<std::uint64_t>(block.bytes.size()) + (header.isProtected ? streamHeaderSize : 0) +
           header.bodyLength + chunkCountOf(header) * (header.isProtected ? protectedTagSize : openTagSize);
}

} // namespace qir
