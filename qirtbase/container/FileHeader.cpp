#include "qirtbase/container/FileHeader.h"

#include "qirtbase/container/SecretKey.h"

#include <QtEndian>

#include <sodium.h>

#include <algorithm>
#include <cstring>

namespace qir {

namespace {

using namespace layout;

constexpr char magicText[] = {'Q', 'I', 'R'};
constexpr char protectedMark = '1';
constexpr char openMark = '0';

constexpr std::uint32_t passesMax = 64;
constexpr std::uint32_t memoryMinKiB = 8 * 1024;
constexpr std::uint64_t workMaxMiB = 16384; // passes x MiB

using Check = LoadResult<void>;

tl::unexpected<LoadError> refused(LoadErrorKind kind, const QString &text) {
    return tl::unexpected(LoadError{kind, text});
}

tl::unexpected<LoadError> notADatabase() {
    return refused(LoadErrorKind::NotADatabase, QStringLiteral("it is not a database of this program"));
}

tl::unexpected<LoadError> contradiction(const QString &what) {
    return refused(LoadErrorKind::Damaged, QStringLiteral("it is damaged: %1").arg(what));
}

tl::unexpected<LoadError> newer(const QString &what) {
    return refused(LoadErrorKind::NewerVersion,
                   QStringLiteral("it was made by a newer version of this program (%1)").arg(what));
}

/// The fields of a header whose bytes are all there.
class Fields {
public:
    explicit Fields(QByteArrayView block)
        : m_header(reinterpret_cast<const unsigned char *>(block.data()) + lengthDigits)
        , m_size(std::size_t(block.size()) - lengthDigits) {}

    std::size_t size() const { return m_size; }
    const unsigned char *at(std::size_t offset) const { return m_header + offset; }
    std::uint8_t byte(std::size_t offset) const { return m_header[offset]; }
    template<class T>
    T number(std::size_t offset) const {
        return qFromLittleEndian<T>(m_header + offset);
    }
    template<std::size_t size>
    std::array<unsigned char, size> array(std::size_t offset) const {
        std::array<unsigned char, size> bytes;
        std::memcpy(bytes.data(), m_header + offset, size);
        return bytes;
    }
    bool isZero(std::size_t offset, std::size_t count) const { return sodium_is_zero(m_header + offset, count) == 1; }
    bool isProtected() const { return m_header[protection] == protectedMark; }

private:
    const unsigned char *m_header;
    std::size_t m_size;
};

HeaderDigest digestOf(QByteArrayView bytes, const SecretBytes *key) {
    HeaderDigest digest;
    crypto_generichash(digest.data(), digest.size(), reinterpret_cast<const unsigned char *>(bytes.data()),
                       std::size_t(bytes.size()), key ? key->data() : nullptr, key ? key->size() : 0);
    return digest;
}

HeaderDigest macOf(QByteArrayView block, const SecretBytes &headKey) {
    return digestOf(block.chopped(qsizetype(macFromEnd)), &headKey);
}

Check checkMagic(const Fields &fields) {
    if (std::memcmp(fields.at(magic), magicText, sizeof magicText) != 0)
        return notADatabase();
    return {};
}

Check checkDigest(const Fields &fields, QByteArrayView block) {
    const HeaderDigest digest = digestOf(block.chopped(qsizetype(digestFromEnd)), nullptr);
    if (std::memcmp(digest.data(), fields.at(fields.size() - digestFromEnd), digest.size()) != 0)
        return contradiction(QStringLiteral("its header does not match its checksum"));
    return {};
}

Check checkVersion(const Fields &fields) {
    const auto majorNumber = fields.number<std::uint16_t>(majorVersion);
    const auto minorNumber = fields.number<std::uint16_t>(minorVersion);
    if (majorNumber > currentMajor)
        return newer(QStringLiteral("format %1.%2").arg(majorNumber).arg(minorNumber));
    if (majorNumber == 0)
        return contradiction(QStringLiteral("there is no format 0"));
    if (fields.number<std::uint32_t>(requiredBits) != 0)
        return newer(QStringLiteral("it needs a feature that this version does not have"));
    return {};
}

Check checkReserved(const Fields &fields) {
    if (!fields.isZero(reserved1, 4) || !fields.isZero(reserved2, 8) || !fields.isZero(reserved3, 4) ||
        !fields.isZero(reserved4, 16))
        return newer(QStringLiteral("it uses header bytes that this version does not know"));
    return {};
}

Check checkChunkSize(const Fields &fields) {
    if (fields.byte(chunkSizeLog2) < chunkLog2Min || fields.byte(chunkSizeLog2) > chunkLog2Max)
        return refused(LoadErrorKind::Limits, QStringLiteral("its parts have a size that is not accepted"));
    return {};
}

Check checkMethods(const Fields &fields) {
    const auto kdf = Kdf(fields.byte(kdfMethod));
    const auto cipher = Cipher(fields.byte(cipherMethod));
    if ((kdf != Kdf::None && kdf != Kdf::Argon2id13) ||
        (cipher != Cipher::None && cipher != Cipher::XChaCha20Poly1305Stream) ||
        Digest(fields.byte(digestMethod)) != Digest::Blake2bXxh3)
        return newer(QStringLiteral("it is sealed in a way that this version does not know"));
    if ((kdf != Kdf::None) != fields.isProtected() || (cipher != Cipher::None) != fields.isProtected())
        return contradiction(QStringLiteral("it says both that it is protected and that it is open"));
    return {};
}

Check checkKeyFields(const Fields &fields) {
    if (fields.isProtected()) {
        if (fields.number<std::uint32_t>(kdfLanes) != 1)
            return newer(QStringLiteral("it is sealed in a way that this version does not know"));
        return {};
    }
    if (!fields.isZero(kdfPasses, reserved4 - kdfPasses) || !fields.isZero(fields.size() - macFromEnd, digestSize))
        return contradiction(QStringLiteral("it is open but has a password's traces"));
    return {};
}

Check checkIds(const Fields &fields) {
    if (fields.isZero(fileId, idSize) || fields.isZero(saveId, idSize))
        return contradiction(QStringLiteral("it has no identity"));
    return {};
}

/// None is known yet: those that must be known are refused, the others kept.
Check checkExtensions(const Fields &fields) {
    std::size_t at = extensions;
    const std::size_t end = fields.size() - macFromEnd;
    while (at < end) {
        if (end - at < extensionHeadSize)
            return contradiction(QStringLiteral("its header's extensions have no end"));
        const auto type = fields.number<std::uint16_t>(at);
        const auto length = fields.number<std::uint16_t>(at + 2);
        at += extensionHeadSize;
        if (length > end - at)
            return contradiction(QStringLiteral("its header's extensions have no end"));
        if (type & extensionRequired)
            return newer(QStringLiteral("it needs a feature that this version does not have"));
        at += length;
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

template<class T>
void putNumber(char *header, std::size_t offset, T value) {
    qToLittleEndian<T>(value, header + offset);
}

} // namespace

HeaderBlock encodeHeader(const FileHeader &header, const SecretBytes *headKey) {
    const std::size_t length = headerLength + std::size_t(header.extensions.size());
    HeaderBlock block{header, QByteArray(qsizetype(lengthDigits + length), '\0'), {}};
    const QByteArray digits = QByteArray::number(qulonglong(length)).rightJustified(qsizetype(lengthDigits), '0');
    char *const start = block.bytes.data();
    std::memcpy(start, digits.constData(), lengthDigits);

    char *const out = start + lengthDigits;
    std::memcpy(out + magic, magicText, sizeof magicText);
    out[protection] = header.isProtected ? protectedMark : openMark;
    putNumber<std::uint16_t>(out, majorVersion, currentMajor);
    putNumber<std::uint16_t>(out, minorVersion, currentMinor);
    putNumber<std::uint32_t>(out, optionalBits, header.optionalBits);
    putNumber<std::uint8_t>(out, chunkSizeLog2, header.chunkLog2);
    putNumber(out, kdfMethod, std::uint8_t(header.isProtected ? Kdf::Argon2id13 : Kdf::None));
    putNumber(out, cipherMethod, std::uint8_t(header.isProtected ? Cipher::XChaCha20Poly1305Stream : Cipher::None));
    putNumber(out, digestMethod, std::uint8_t(Digest::Blake2bXxh3));
    putNumber<std::uint64_t>(out, bodyLength, header.bodyLength);
    std::memcpy(out + fileId, header.fileId.data(), idSize);
    std::memcpy(out + saveId, header.saveId.data(), idSize);
    putNumber<std::uint64_t>(out, generation, header.generation);
    if (header.isProtected) {
        putNumber<std::uint32_t>(out, kdfPasses, header.kdf.costs.passes);
        putNumber<std::uint32_t>(out, kdfMemoryKiB, header.kdf.costs.memoryKiB);
        putNumber<std::uint32_t>(out, kdfLanes, 1);
        std::memcpy(out + salt, header.kdf.salt.data(), saltSize);
    }
    std::copy(header.extensions.cbegin(), header.extensions.cend(), out + extensions);

    block.digest = sealHeader(block.bytes, headKey);
    return block;
}

HeaderDigest sealHeader(QByteArray &block, const SecretBytes *headKey) {
    if (headKey) {
        const HeaderDigest mac = macOf(block, *headKey);
        std::memcpy(block.data() + block.size() - macFromEnd, mac.data(), mac.size());
    }
    const HeaderDigest digest = digestOf(QByteArrayView(block).chopped(qsizetype(digestFromEnd)), nullptr);
    std::memcpy(block.data() + block.size() - digestFromEnd, digest.data(), digest.size());
    return digest;
}

LoadResult<std::size_t> decodeHeaderLength(QByteArrayView firstBytes) {
    const QByteArrayView digits = firstBytes.first(std::min(firstBytes.size(), qsizetype(lengthDigits)));
    if (digits.isEmpty())
        return refused(LoadErrorKind::Empty, QStringLiteral("it is empty"));
    std::size_t length = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9')
            return notADatabase();
        length = length * 10 + std::size_t(digit - '0');
    }
    if (std::size_t(digits.size()) < lengthDigits)
        return refused(LoadErrorKind::Truncated, QStringLiteral("it ends after %1 bytes").arg(digits.size()));
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
        header.extensions = bytes.mid(qsizetype(lengthDigits + extensions), qsizetype(fields.size() - headerLength));
        block.digest = fields.array<digestSize>(fields.size() - digestFromEnd);
        block.bytes = std::move(bytes);
        return block;
    });
}

bool headerMacMatches(const HeaderBlock &block, const SecretBytes &headKey) {
    const HeaderDigest mac = macOf(block.bytes, headKey);
    return sodium_memcmp(mac.data(), block.bytes.constData() + block.bytes.size() - qsizetype(macFromEnd),
                         mac.size()) == 0;
}

LoadResult<void> checkKdfCosts(const FileHeader &header) {
    const auto [passes, memoryKiB] = header.kdf.costs;
    if (passes < 1 || passes > passesMax || memoryKiB < memoryMinKiB || memoryKiB > memoryMaxKiB ||
        std::uint64_t{passes} * memoryKiB > workMaxMiB * 1024)
        return refused(LoadErrorKind::Limits,
                       QStringLiteral("trying a password on it would take more time or memory than "
                                      "is accepted (%1 passes over %2 KiB)")
                           .arg(passes)
                           .arg(memoryKiB));
    return {};
}

std::uint64_t chunkCountOf(const FileHeader &header) {
    const std::uint64_t size = std::uint64_t{1} << header.chunkLog2;
    return std::max<std::uint64_t>(1, header.bodyLength / size + (header.bodyLength % size != 0));
}

std::size_t chunkPlainSize(const FileHeader &header, std::uint64_t index) {
    const std::uint64_t size = std::uint64_t{1} << header.chunkLog2;
    return std::size_t(std::min(size, header.bodyLength - index * size));
}

std::uint64_t fileSizeOf(const HeaderBlock &block) {
    const FileHeader &header = block.header;
    return std::uint64_t(block.bytes.size()) + (header.isProtected ? streamHeaderSize : 0) + header.bodyLength +
           chunkCountOf(header) * (header.isProtected ? protectedTagSize : openTagSize);
}

} // namespace qir
