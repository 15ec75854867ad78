#include "qirtbase/file/SafeCopy.h"

#include <QRandomGenerator>
#include <QtEndian>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>

namespace qir {

namespace {

constexpr QByteArrayView headMagic("QIRSAFE1");
constexpr QByteArrayView pointerMagic("QIRSAFEP");
constexpr QByteArrayView settledMagic("QIRSAFE0");
constexpr std::size_t digestSize = 32;
constexpr std::string_view nameStart = ".qir-";
constexpr std::string_view nameEnd = ".safe";
constexpr std::size_t nameDigits = 16;

void append(QByteArray &out, std::uint64_t number) {
    const std::uint64_t little = qToLittleEndian(number);
    out.append(reinterpret_cast<const char *>(&little), sizeof little);
}

template<std::size_t n>
void append(QByteArray &out, const std::array<unsigned char, n> &bytes) {
    out.append(reinterpret_cast<const char *>(bytes.data()), qsizetype(n));
}

void appendDigest(QByteArray &out) {
    std::array<unsigned char, digestSize> digest;
    crypto_generichash(digest.data(), digest.size(), reinterpret_cast<const unsigned char *>(out.constData()),
                       std::size_t(out.size()), nullptr, 0);
    append(out, digest);
}

/// Whether bytes start with a magic and end with the digest of what stands before it.
bool isWhole(QByteArrayView bytes, QByteArrayView magic) {
    if (std::size_t(bytes.size()) < std::size_t(magic.size()) + digestSize || !bytes.startsWith(magic))
        return false;
    QByteArray again = bytes.chopped(qsizetype(digestSize)).toByteArray();
    appendDigest(again);
    return bytes == again;
}

std::uint64_t takeNumber(QByteArrayView &rest) {
    const auto number = qFromLittleEndian<std::uint64_t>(rest.data());
    rest = rest.sliced(sizeof number);
    return number;
}

template<std::size_t n>
void take(QByteArrayView &rest, std::array<unsigned char, n> &bytes) {
    std::memcpy(bytes.data(), rest.data(), n);
    rest = rest.sliced(qsizetype(n));
}

} // namespace

PlaceHash placeHash(const std::string &text) {
    PlaceHash hash;
    crypto_generichash(hash.data(), hash.size(), reinterpret_cast<const unsigned char *>(text.data()), text.size(),
                       nullptr, 0);
    return hash;
}

VersionsDigest::VersionsDigest() {
    crypto_generichash_init(&m_state, nullptr, 0, digestSize);
}

void VersionsDigest::add(QByteArrayView bytes) {
    crypto_generichash_update(&m_state, reinterpret_cast<const unsigned char *>(bytes.data()),
                              static_cast<unsigned long long>(bytes.size()));
}

VersionsDigest::Value VersionsDigest::value() {
    Value value;
    crypto_generichash_final(&m_state, value.data(), value.size());
    return value;
}

QByteArray SafeCopyHead::encode() const {
    QByteArray bytes = headMagic.toByteArray();
    append(bytes, inode);
    append(bytes, name);
    append(bytes, path);
    append(bytes, base);
    append(bytes, next);
    append(bytes, baseSize);
    append(bytes, nextSize);
    append(bytes, digest);
    appendDigest(bytes);
    Q_ASSERT(std::size_t(bytes.size()) == size);
    return bytes;
}

std::optional<SafeCopyHead> SafeCopyHead::decode(QByteArrayView bytes) {
    if (std::size_t(bytes.size()) != size || !isWhole(bytes, headMagic))
        return std::nullopt;
    SafeCopyHead head;
    QByteArrayView rest = bytes.sliced(headMagic.size());
    head.inode = takeNumber(rest);
    take(rest, head.name);
    take(rest, head.path);
    take(rest, head.base);
    take(rest, head.next);
    head.baseSize = takeNumber(rest);
    head.nextSize = takeNumber(rest);
    take(rest, head.digest);
    return head;
}

QByteArrayView SafeCopyHead::voidMark() {
    return settledMagic;
}

QByteArray SafeCopyPointer::encode() const {
    QByteArray bytes = pointerMagic.toByteArray();
    append(bytes, inode);
    bytes.append(path.data(), qsizetype(path.size()));
    appendDigest(bytes);
    return bytes;
}

std::optional<SafeCopyPointer> SafeCopyPointer::decode(QByteArrayView bytes) {
    constexpr std::size_t fixed = std::size_t(pointerMagic.size()) + sizeof(std::uint64_t) + digestSize;
    if (std::size_t(bytes.size()) <= fixed || !isWhole(bytes, pointerMagic))
        return std::nullopt;
    SafeCopyPointer pointer;
    QByteArrayView rest = bytes.sliced(pointerMagic.size());
    pointer.inode = takeNumber(rest);
    rest.chop(qsizetype(digestSize));
    pointer.path.assign(rest.data(), std::size_t(rest.size()));
    return pointer;
}

std::string newSafeCopyName() {
    char digits[nameDigits + 1];
    std::snprintf(digits, sizeof digits, "%016llx",
                  static_cast<unsigned long long>(QRandomGenerator::system()->generate64()));
    return std::string(nameStart) + digits + std::string(nameEnd);
}

bool isSafeCopyName(const std::string &name) {
    return name.size() == nameStart.size() + nameDigits + nameEnd.size() && name.starts_with(nameStart) &&
           name.ends_with(nameEnd) &&
           std::all_of(name.begin() + std::ptrdiff_t(nameStart.size()), name.end() - std::ptrdiff_t(nameEnd.size()),
                       [](unsigned char c) { return std::isxdigit(c) != 0; });
}

} // namespace qir
