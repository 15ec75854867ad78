#include "qirtbase/file/SafeCopy.h"

#include "base/ByteReader.h"
#include "base/ByteWriter.h"

#include <QRandomGenerator>

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace qir {

namespace {

constexpr QByteArrayView headMagic("QIRSAFE1");
constexpr QByteArrayView pointerMagic("QIRSAFEP");
constexpr QByteArrayView settledMagic("QIRSAFE0");
constexpr std::size_t digestSize = 32;
constexpr std::string_view nameStart = ".qir-";
constexpr std::string_view nameEnd = ".safe";
constexpr std::size_t nameDigits = 16;

void appendDigest(QByteArray &out) {
    std::array<unsigned char, digestSize> digest;
    crypto_generichash(digest.data(), digest.size(), bytesOf(out), static_cast<std::size_t>(out.size()), nullptr, 0);
    out.append(viewOf(digest));
}

/// Whether bytes start with a magic and end with the digest of what stands before it.
bool isWhole(QByteArrayView bytes, QByteArrayView magic) {
    if (static_cast<std::size_t>(bytes.size()) < static_cast<std::size_t>(magic.size()) + digestSize ||
        !bytes.startsWith(magic))
        return false;
    QByteArray again = bytes.chopped(static_cast<qsizetype>(digestSize)).toByteArray();
    appendDigest(again);
    return bytes == again;
}

} // namespace

PlaceHash placeHash(const std::string &text) {
    PlaceHash hash;
    const QByteArrayView bytes(text.data(), static_cast<qsizetype>(text.size()));
    crypto_generichash(hash.data(), hash.size(), bytesOf(bytes), text.size(), nullptr, 0);
    return hash;
}

VersionsDigest::VersionsDigest() {
    crypto_generichash_init(&m_state, nullptr, 0, digestSize);
}

void VersionsDigest::add(QByteArrayView bytes) {
    crypto_generichash_update(&m_state, bytesOf(bytes), static_cast<unsigned long long>(bytes.size()));
}

VersionsDigest::Value VersionsDigest::value() {
    Value value;
    crypto_generichash_final(&m_state, value.data(), value.size());
    return value;
}

QByteArray SafeCopyHead::encode() const {
    QByteArray bytes = headMagic.toByteArray();
    ByteWriter out(bytes);
    out.number(inode);
    out.array(name);
    out.array(path);
    out.array(base);
    out.array(next);
    out.number(baseSize);
    out.number(nextSize);
    out.array(digest);
    appendDigest(bytes);
    Q_ASSERT(static_cast<std::size_t>(bytes.size()) == size);
    return bytes;
}

std::optional<SafeCopyHead> SafeCopyHead::decode(QByteArrayView bytes) {
    if (static_cast<std::size_t>(bytes.size()) != size || !isWhole(bytes, headMagic))
        return std::nullopt;
    SafeCopyHead head;
    ByteReader rest(bytes.sliced(headMagic.size()));
    head.inode = rest.number<std::uint64_t>();
    head.name = rest.array<sizeof head.name>();
    head.path = rest.array<sizeof head.path>();
    head.base = rest.array<sizeof head.base>();
    head.next = rest.array<sizeof head.next>();
    head.baseSize = rest.number<std::uint64_t>();
    head.nextSize = rest.number<std::uint64_t>();
    head.digest = rest.array<sizeof head.digest>();
    return head;
}

QByteArrayView SafeCopyHead::voidMark() {
    return settledMagic;
}

QByteArray SafeCopyPointer::encode() const {
    QByteArray bytes = pointerMagic.toByteArray();
    ByteWriter out(bytes);
    out.number(inode);
    out.bytes(QByteArrayView(path.data(), static_cast<qsizetype>(path.size())));
    appendDigest(bytes);
    return bytes;
}

std::optional<SafeCopyPointer> SafeCopyPointer::decode(QByteArrayView bytes) {
    constexpr std::size_t fixed = static_cast<std::size_t>(pointerMagic.size()) + sizeof(std::uint64_t) + digestSize;
    if (static_cast<std::size_t>(bytes.size()) <= fixed || !isWhole(bytes, pointerMagic))
        return std::nullopt;
    SafeCopyPointer pointer;
    ByteReader rest(bytes.sliced(pointerMagic.size()).chopped(static_cast<qsizetype>(digestSize)));
    pointer.inode = rest.number<std::uint64_t>();
    pointer.path.assign(rest.rest().begin(), rest.rest().end());
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
           std::all_of(name.begin() + static_cast<std::ptrdiff_t>(nameStart.size()),
                       name.end() - static_cast<std::ptrdiff_t>(nameEnd.size()),
                       [](unsigned char c) { return std::isxdigit(c) != 0; });
}

} // namespace qir
