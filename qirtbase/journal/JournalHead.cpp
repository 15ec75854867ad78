#include "qirtbase/journal/JournalHead.h"

#include <QtEndian>

#include <sodium.h>

#include <algorithm>
#include <cctype>
#include <cstring>

namespace qir {

namespace {

constexpr char magic[] = {'Q', 'I', 'R', 'J', 'R', 'N', 'L'};
constexpr int newestVersion = 2;
constexpr std::size_t lengthAt = 8;
constexpr std::size_t sealedAt = 12;
constexpr std::size_t startSize = 64;     // of version 2, up to the identity
constexpr std::size_t identityFixed = 50; // up to the path
constexpr std::size_t oldFixedSize = 98;  // of version 1, up to the path
constexpr std::size_t pathMax = 16384;
constexpr std::size_t sealSize = crypto_aead_xchacha20poly1305_ietf_ABYTES;
constexpr std::size_t tagDigits = layout::idSize * 2;
constexpr std::size_t nameSize = tagDigits + 1 + 8;
constexpr QByteArrayView headPurpose("journal head");
constexpr QByteArrayView namePurpose("journal name");
constexpr unsigned char zeroNonce[crypto_aead_xchacha20poly1305_ietf_NPUBBYTES] = {};

static_assert(startSize + sealSize + layout::digestSize + pathMax + identityFixed + journal::step <=
              journal::headSizeMax);

using Bytes = QByteArrayView;

const unsigned char *bytesOf(Bytes view) {
    return reinterpret_cast<const unsigned char *>(view.data());
}

template<std::size_t size>
Bytes viewOf(const std::array<unsigned char, size> &bytes) {
    return {reinterpret_cast<const char *>(bytes.data()), qsizetype(size)};
}

template<class Number>
void put(QByteArray &out, Number value) {
    char bytes[sizeof value];
    qToLittleEndian(value, bytes);
    out.append(bytes, sizeof bytes);
}

template<class Number>
Number numberAt(Bytes bytes, std::size_t at) {
    return qFromLittleEndian<Number>(bytes.data() + at);
}

template<std::size_t size>
void takeAt(Bytes bytes, std::size_t at, std::array<unsigned char, size> &target) {
    std::memcpy(target.data(), bytes.data() + at, size);
}

HeaderDigest digestOf(Bytes bytes) {
    HeaderDigest digest;
    crypto_generichash(digest.data(), digest.size(), bytesOf(bytes), std::size_t(bytes.size()), nullptr, 0);
    return digest;
}

SecretBytes headKey(const SecretBytes &master, Bytes start) {
    const QByteArray over = headPurpose.toByteArray() + start.toByteArray();
    SecretBytes key(crypto_aead_xchacha20poly1305_ietf_KEYBYTES);
    crypto_generichash(key.data(), key.size(), bytesOf(over), std::size_t(over.size()), master.data(), master.size());
    wipeStack();
    return key;
}

QByteArray encodeIdentity(const JournalHead &head) {
    QByteArray out;
    out.append(viewOf(head.fileId)).append(viewOf(head.base));
    put(out, head.place.device);
    put(out, head.place.inode);
    put(out, std::uint16_t(head.place.path.size()));
    return out.append(head.place.path.data(), qsizetype(head.place.path.size()));
}

/// False where the bytes are too few; more may follow.
bool decodeIdentity(Bytes bytes, JournalHead &head) {
    if (bytes.size() < qsizetype(identityFixed))
        return false;
    const auto pathSize = numberAt<std::uint16_t>(bytes, identityFixed - sizeof(std::uint16_t));
    if (qsizetype(identityFixed + pathSize) > bytes.size())
        return false;
    takeAt(bytes, 0, head.fileId);
    takeAt(bytes, 16, head.base);
    head.place.device = numberAt<std::uint64_t>(bytes, 32);
    head.place.inode = numberAt<std::uint64_t>(bytes, 40);
    head.place.path.assign(bytes.data() + identityFixed, pathSize);
    return true;
}

QByteArray seal(QByteArray plain, const SecretBytes &master, Bytes start) {
    const auto step = qsizetype(journal::step);
    plain.resize((plain.size() + step - 1) / step * step, '\0');
    QByteArray sealed(plain.size() + qsizetype(sealSize), Qt::Uninitialized);
    const SecretBytes key = headKey(master, start);
    crypto_aead_xchacha20poly1305_ietf_encrypt(reinterpret_cast<unsigned char *>(sealed.data()), nullptr,
                                               bytesOf(plain), std::size_t(plain.size()), nullptr, 0, nullptr,
                                               zeroNonce, key.data());
    return sealed;
}

void takeKdf(Bytes bytes, std::size_t at, JournalHead &head) {
    head.kdf.costs = {numberAt<std::uint32_t>(bytes, at), numberAt<std::uint32_t>(bytes, at + 4)};
    takeAt(bytes, at + 16, head.kdf.salt);
}

bool decodeOld(Bytes whole, JournalHead &head) {
    if (whole.size() < qsizetype(oldFixedSize + layout::digestSize))
        return false;
    const auto pathSize = numberAt<std::uint16_t>(whole, oldFixedSize - sizeof(std::uint16_t));
    if (whole.size() != qsizetype(oldFixedSize + pathSize + layout::digestSize))
        return false;
    takeAt(whole, 16, head.fileId);
    takeAt(whole, 32, head.base);
    takeAt(whole, 48, head.nonce);
    takeKdf(whole, 64, head);
    head.place.path.assign(whole.data() + oldFixedSize, pathSize);
    return true;
}

bool decodeNew(Bytes whole, JournalHead &head) {
    if (whole.size() < qsizetype(startSize + layout::digestSize))
        return false;
    takeAt(whole, 16, head.nonce);
    takeKdf(whole, 32, head);
    head.keyInFile = head.sealed && head.kdf.costs.passes == 0;
    head.isIdentified = !head.sealed;
    return head.sealed || decodeIdentity(whole.sliced(qsizetype(startSize)).chopped(layout::digestSize), head);
}

} // namespace

bool fitsJournalHead(const JournalHead &head) {
    return head.place.path.size() <= pathMax;
}

QByteArray encodeJournalHead(const JournalHead &head, const SecretBytes &master) {
    const bool tellsKdf = head.sealed && !head.keyInFile;
    QByteArray out(magic, sizeof magic);
    out.append(char('0' + newestVersion));
    put(out, std::uint32_t{0}); // the length, once it is known
    put(out, std::uint32_t(head.sealed ? 1 : 0));
    out.append(viewOf(head.nonce));
    put(out, tellsKdf ? head.kdf.costs.passes : 0);
    put(out, tellsKdf ? head.kdf.costs.memoryKiB : 0);
    put(out, std::uint32_t(tellsKdf ? 1 : 0));
    put(out, std::uint32_t{0});
    out.append(viewOf(tellsKdf ? head.kdf.salt : decltype(head.kdf.salt){}));
    QByteArray identity = encodeIdentity(head);
    const auto step = qsizetype(journal::step);
    const qsizetype size =
        head.sealed ? (identity.size() + step - 1) / step * step + qsizetype(sealSize) : identity.size();
    qToLittleEndian(std::uint32_t(out.size() + size + qsizetype(layout::digestSize)), out.data() + lengthAt);
    out.append(head.sealed ? seal(std::move(identity), master, out) : identity);
    return out.append(viewOf(digestOf(out)));
}

JournalResult<JournalHead> decodeJournalHead(Bytes bytes, Bytes &whole) {
    const auto refused = [](JournalRefusal::Kind kind, const char *reason) {
        return tl::unexpected(JournalRefusal{kind, QString::fromLatin1(reason)});
    };
    if (!bytes.startsWith(Bytes(magic, sizeof magic)))
        return refused(JournalRefusal::Kind::NotAJournal, "it is no journal");
    if (bytes.size() < qsizetype(sealedAt + sizeof(std::uint32_t)))
        return refused(JournalRefusal::Kind::Damaged, "it is damaged");
    JournalHead head;
    head.version = bytes[sizeof magic] - '0';
    if (head.version > newestVersion && head.version <= 9)
        return refused(JournalRefusal::Kind::Newer, "a newer version of this program wrote it");
    const auto size = numberAt<std::uint32_t>(bytes, lengthAt);
    if (head.version < 1 || head.version > newestVersion || size < startSize + layout::digestSize ||
        qsizetype(size) > bytes.size())
        return refused(JournalRefusal::Kind::Damaged, "it is damaged");
    whole = bytes.first(size);
    const auto sealed = numberAt<std::uint32_t>(bytes, sealedAt);
    head.sealed = sealed == 1;
    const Bytes covered = whole.chopped(qsizetype(layout::digestSize));
    const bool isSound = sealed <= 1 && std::memcmp(digestOf(covered).data(), covered.end(), layout::digestSize) == 0 &&
                         (head.version == 1 ? decodeOld(whole, head) : decodeNew(whole, head));
    if (!isSound)
        return refused(JournalRefusal::Kind::Damaged, "it is damaged");
    return head;
}

bool identifyJournal(JournalHead &head, Bytes whole, const SecretBytes &master) {
    if (head.isIdentified)
        return true;
    const Bytes sealed = whole.sliced(qsizetype(startSize)).chopped(qsizetype(layout::digestSize));
    if (sealed.size() < qsizetype(sealSize) || master.isEmpty())
        return false;
    QByteArray plain(sealed.size() - qsizetype(sealSize), Qt::Uninitialized);
    const SecretBytes key = headKey(master, whole.first(qsizetype(startSize)));
    const bool opened = crypto_aead_xchacha20poly1305_ietf_decrypt(
                            reinterpret_cast<unsigned char *>(plain.data()), nullptr, nullptr, bytesOf(sealed),
                            std::size_t(sealed.size()), nullptr, 0, zeroNonce, key.data()) == 0;
    head.isIdentified = opened && decodeIdentity(plain, head);
    return head.isIdentified;
}

std::string journalTag(const FileIdentifier &fileId, const ContainerKeys &keysOfFile) {
    FileIdentifier tag = fileId;
    if (keysOfFile.isProtected()) {
        const QByteArray over = namePurpose.toByteArray() + viewOf(fileId).toByteArray();
        crypto_generichash(tag.data(), tag.size(), bytesOf(over), std::size_t(over.size()), keysOfFile.master.data(),
                           keysOfFile.master.size());
        wipeStack();
    }
    return viewOf(tag).toByteArray().toHex().toStdString();
}

std::string journalTagOf(const std::string &name) {
    const auto isDigit = [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; };
    const bool isTagged = name.size() >= nameSize && name[tagDigits] == '-' &&
                          std::all_of(name.begin(), name.begin() + tagDigits, isDigit) &&
                          std::all_of(name.begin() + tagDigits + 1, name.begin() + nameSize, isDigit) &&
                          (name.size() == nameSize || name[nameSize] == '.');
    return isTagged ? name.substr(0, tagDigits) : std::string();
}

bool isJournalName(const std::string &name) {
    return name.size() == nameSize && !journalTagOf(name).empty();
}

} // namespace qir
