#include "qirtbase/journal/JournalHead.h"

#include "base/ByteReader.h"
#include "base/ByteWriter.h"

#include <sodium.h>

#include <algorithm>
#include <cctype>

namespace qir {

namespace {

constexpr std::size_t sealSize = crypto_aead_xchacha20poly1305_ietf_ABYTES;
constexpr std::size_t tagDigits = layout::idSize * 2;
constexpr std::size_t nameSize = tagDigits + 1 + 8;
constexpr QByteArrayView headPurpose("journal head");
constexpr QByteArrayView namePurpose("journal name");
constexpr unsigned char zeroNonce[crypto_aead_xchacha20poly1305_ietf_NPUBBYTES] = {};

static_assert(journal::head::identity + journal::identity::path + journal::pathMax + journal::step + sealSize +
                  layout::digestSize <=
              journal::headSizeMax);

using Bytes = QByteArrayView;

HeaderDigest digestOf(Bytes bytes) {
    HeaderDigest digest;
    crypto_generichash(digest.data(), digest.size(), bytesOf(bytes), static_cast<std::size_t>(bytes.size()), nullptr,
                       0);
    return digest;
}

SecretBytes headKey(const SecretBytes &master, Bytes start) {
    const QByteArray over = headPurpose.toByteArray() + start.toByteArray();
    SecretBytes key(crypto_aead_xchacha20poly1305_ietf_KEYBYTES);
    crypto_generichash(key.data(), key.size(), bytesOf(over), static_cast<std::size_t>(over.size()), master.data(),
                       master.size());
    wipeStack();
    return key;
}

QByteArray encodeIdentity(const JournalHead &head) {
    QByteArray bytes;
    ByteWriter out(bytes);
    out.at(journal::identity::fileId).array(head.fileId);
    out.at(journal::identity::saveId).array(head.base);
    out.at(journal::identity::device).number(head.place.device);
    out.at(journal::identity::inode).number(head.place.inode);
    const std::string &path = head.place.path;
    out.at(journal::identity::pathLength)
        .sizedBytes<std::uint16_t>(Bytes(path.data(), static_cast<qsizetype>(path.size())));
    return bytes;
}

/// False, with the head as it was, where the bytes are too few; more may follow.
bool decodeIdentity(Bytes bytes, JournalHead &head) {
    const ByteReader fields(bytes);
    ByteReader last = fields.from(journal::identity::pathLength);
    const Bytes path = last.sizedBytes<std::uint16_t>();
    if (!last.isComplete())
        return false;
    head.fileId = fields.from(journal::identity::fileId).array<layout::idSize>();
    head.base = fields.from(journal::identity::saveId).array<layout::idSize>();
    head.place.device = fields.from(journal::identity::device).number<std::uint64_t>();
    head.place.inode = fields.from(journal::identity::inode).number<std::uint64_t>();
    head.place.path.assign(path.begin(), path.end());
    return true;
}

QByteArray seal(QByteArray plain, const SecretBytes &master, Bytes start) {
    const auto step = static_cast<qsizetype>(journal::step);
    plain.resize((plain.size() + step - 1) / step * step, '\0');
    QByteArray sealed(plain.size() + static_cast<qsizetype>(sealSize), Qt::Uninitialized);
    const SecretBytes key = headKey(master, start);
    crypto_aead_xchacha20poly1305_ietf_encrypt(reinterpret_cast<unsigned char *>(sealed.data()), nullptr,
                                               bytesOf(plain), static_cast<std::size_t>(plain.size()), nullptr, 0,
                                               nullptr, zeroNonce, key.data());
    return sealed;
}

bool decodeOld(Bytes covered, JournalHead &head) {
    const ByteReader fields(covered);
    ByteReader last = fields.from(journal::head1::pathLength);
    const Bytes path = last.sizedBytes<std::uint16_t>();
    if (!last.isComplete() || last.left() != 0)
        return false;
    head.fileId = fields.from(journal::head1::fileId).array<layout::idSize>();
    head.base = fields.from(journal::head1::saveId).array<layout::idSize>();
    head.nonce = fields.from(journal::head1::nonce).array<sizeof head.nonce>();
    head.kdf.costs = {fields.from(journal::head1::kdfPasses).number<std::uint32_t>(),
                      fields.from(journal::head1::kdfMemoryKiB).number<std::uint32_t>()};
    head.kdf.salt = fields.from(journal::head1::salt).array<layout::saltSize>();
    head.place.path.assign(path.begin(), path.end());
    return true;
}

bool decodeNew(Bytes covered, JournalHead &head) {
    const ByteReader fields(covered);
    const ByteReader identity = fields.from(journal::head::identity);
    if (!identity.isComplete())
        return false;
    head.nonce = fields.from(journal::head::nonce).array<sizeof head.nonce>();
    head.kdf.costs = {fields.from(journal::head::kdfPasses).number<std::uint32_t>(),
                      fields.from(journal::head::kdfMemoryKiB).number<std::uint32_t>()};
    head.kdf.salt = fields.from(journal::head::salt).array<layout::saltSize>();
    head.keyInFile = head.sealed && head.kdf.costs.passes == 0;
    head.isIdentified = !head.sealed;
    return head.sealed || decodeIdentity(identity.rest(), head);
}

/// What the digest at the end is made of.
Bytes coveredBy(Bytes whole) {
    return whole.chopped(static_cast<qsizetype>(journal::head::digestFromEnd));
}

} // namespace

bool fitsJournalHead(const JournalHead &head) {
    return head.place.path.size() <= journal::pathMax;
}

QByteArray encodeJournalHead(const JournalHead &head, const SecretBytes &master) {
    const bool tellsKdf = head.sealed && !head.keyInFile;
    QByteArray bytes;
    ByteWriter out(bytes);
    out.bytes(Bytes(journal::magic, sizeof journal::magic));
    out.at(journal::head::version).number(static_cast<char>('0' + journal::newestVersion));
    out.at(journal::head::sealed).number(static_cast<std::uint32_t>(head.sealed ? 1 : 0));
    out.at(journal::head::nonce).array(head.nonce);
    if (tellsKdf) {
        out.at(journal::head::kdfPasses).number(head.kdf.costs.passes);
        out.at(journal::head::kdfMemoryKiB).number(head.kdf.costs.memoryKiB);
        out.at(journal::head::kdfLanes).number(std::uint32_t{1});
        out.at(journal::head::salt).array(head.kdf.salt);
    }
    QByteArray identity = encodeIdentity(head);
    const auto step = static_cast<qsizetype>(journal::step);
    const qsizetype size =
        head.sealed ? (identity.size() + step - 1) / step * step + static_cast<qsizetype>(sealSize) : identity.size();
    const auto length = static_cast<std::uint32_t>(journal::head::identity + static_cast<std::size_t>(size) +
                                                   journal::head::digestFromEnd);
    out.at(journal::head::length).number(length);
    out.at(journal::head::identity);
    out.bytes(head.sealed ? seal(std::move(identity), master, bytes) : identity);
    out.array(digestOf(bytes));
    return bytes;
}

JournalResult<JournalHead> decodeJournalHead(Bytes bytes, Bytes &whole) {
    const auto refused = [](JournalRefusal::Kind kind, const char *reason) {
        return tl::unexpected(JournalRefusal{kind, QString::fromLatin1(reason)});
    };
    if (!bytes.startsWith(Bytes(journal::magic, sizeof journal::magic)))
        return refused(JournalRefusal::Kind::NotAJournal, "it is no journal");
    const ByteReader fields(bytes);
    if (!fields.from(journal::head::nonce).isComplete())
        return refused(JournalRefusal::Kind::Damaged, "it is damaged");
    JournalHead head;
    head.version = fields.from(journal::head::version).number<char>() - '0';
    if (head.version > journal::newestVersion && head.version <= 9)
        return refused(JournalRefusal::Kind::Newer, "a newer version of this program wrote it");
    const auto size = fields.from(journal::head::length).number<std::uint32_t>();
    if (head.version < 1 || head.version > journal::newestVersion ||
        size < journal::head::identity + journal::head::digestFromEnd || static_cast<qsizetype>(size) > bytes.size())
        return refused(JournalRefusal::Kind::Damaged, "it is damaged");
    whole = bytes.first(size);
    const auto sealed = fields.from(journal::head::sealed).number<std::uint32_t>();
    head.sealed = sealed == 1;
    const Bytes covered = coveredBy(whole);
    const bool isSound = sealed <= 1 && viewOf(digestOf(covered)) == whole.sliced(covered.size()) &&
                         (head.version == 1 ? decodeOld(covered, head) : decodeNew(covered, head));
    if (!isSound)
        return refused(JournalRefusal::Kind::Damaged, "it is damaged");
    return head;
}

bool identifyJournal(JournalHead &head, Bytes whole, const SecretBytes &master) {
    if (head.isIdentified)
        return true;
    const Bytes sealed = ByteReader(coveredBy(whole)).from(journal::head::identity).rest();
    if (sealed.size() < static_cast<qsizetype>(sealSize) || master.isEmpty())
        return false;
    QByteArray plain(sealed.size() - static_cast<qsizetype>(sealSize), Qt::Uninitialized);
    const SecretBytes key = headKey(master, whole.first(static_cast<qsizetype>(journal::head::identity)));
    const bool opened = crypto_aead_xchacha20poly1305_ietf_decrypt(
                            reinterpret_cast<unsigned char *>(plain.data()), nullptr, nullptr, bytesOf(sealed),
                            static_cast<std::size_t>(sealed.size()), nullptr, 0, zeroNonce, key.data()) == 0;
    head.isIdentified = opened && decodeIdentity(plain, head);
    return head.isIdentified;
}

std::string journalTag(const FileIdentifier &fileId, const ContainerKeys &keysOfFile) {
    FileIdentifier tag = fileId;
    if (keysOfFile.isProtected()) {
        const QByteArray over = namePurpose.toByteArray() + viewOf(fileId).toByteArray();
        crypto_generichash(tag.data(), tag.size(), bytesOf(over), static_cast<std::size_t>(over.size()),
                           keysOfFile.master.data(), keysOfFile.master.size());
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
