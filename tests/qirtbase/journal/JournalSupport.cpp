#include "tests/qirtbase/journal/JournalSupport.h"

#include <QtEndian>

#include <sodium.h>

#include <cstring>
#include <stdexcept>

namespace qir {

using namespace Qt::StringLiterals;

ContainerKeys keysOf(const QString &password, unsigned char salt) {
    static const KeyDeriver derive = rememberingDeriver();
    ContainerKeys keys;
    keys.kdf.costs = cheapCosts;
    keys.kdf.salt.fill(salt);
    keys.master = derive(passwordBytes(password), keys.kdf).value();
    return keys;
}

namespace {

template<class Number>
QByteArray bytesOf(Number value) {
    QByteArray bytes(sizeof value, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

template<std::size_t size>
QByteArray bytesOf(const std::array<unsigned char, size> &array) {
    return {reinterpret_cast<const char *>(array.data()), static_cast<qsizetype>(size)};
}

QByteArray blake(const QByteArray &over, const SecretBytes &key = {}) {
    QByteArray digest(static_cast<qsizetype>(layout::digestSize), '\0');
    crypto_generichash(reinterpret_cast<unsigned char *>(digest.data()), layout::digestSize,
                       reinterpret_cast<const unsigned char *>(over.constData()), static_cast<std::size_t>(over.size()),
                       key.data(), key.size());
    return digest;
}

QByteArray headOfVersion1(const JournalBase &base, const ContainerKeys &keys) {
    const bool sealed = keys.isProtected();
    const std::string &path = base.place.path;
    const auto number = [](std::uint32_t value) { return bytesOf(value); };
    const QByteArray head =
        "QIRJRNL1" + number(static_cast<std::uint32_t>(98 + path.size() + layout::digestSize)) +
        number(sealed ? 1 : 0) + bytesOf(base.fileId) + bytesOf(base.saveId) + QByteArray(16, 'n') +
        number(sealed ? keys.kdf.costs.passes : 0) + number(sealed ? keys.kdf.costs.memoryKiB : 0) +
        number(sealed ? 1 : 0) + number(0) +
        (sealed ? bytesOf(keys.kdf.salt) : QByteArray(static_cast<qsizetype>(layout::saltSize), '\0')) +
        bytesOf(static_cast<std::uint16_t>(path.size())) + QByteArray::fromStdString(path);
    return head + blake(head);
}

} // namespace

QByteArray journalOfVersion1(const JournalBase &base, const ContainerKeys &keys,
                             const std::vector<QByteArray> &payloads) {
    QByteArray out = headOfVersion1(base, keys);
    const QByteArray place = blake(out) + bytesOf(static_cast<std::uint64_t>(out.size()));
    ChunkStream::Header header;
    header.fill('h');
    out += QByteArray(4, '\xff') + bytesOf(header);
    const QByteArray digest = blake(place, keys.master);
    SecretBytes key(layout::digestSize);
    std::memcpy(key.data(), digest.constData(), key.size());
    ChunkStream stream(key, header);
    QByteArray link = blake(place + bytesOf(header));
    for (const QByteArray &payload : payloads) {
        QByteArray record;
        if (keys.isProtected()) {
            stream.seal(payload, false, record);
        } else {
            link = blake(link + payload);
            record = payload + link.first(16);
        }
        out += bytesOf(static_cast<std::uint32_t>(record.size())) + record;
    }
    return out;
}

JournalBench::JournalBench(FileOps &ops)
    : m_ops(ops) {
    m_options.stateFolder = m_folder.path();
    m_options.random = &RandomSource::system();
    m_options.notice = [this](const QString &text) { m_notices.append(text); };
    m_base.name = u"PUMP.DDB"_s;
    // Any file will do as the one that the journal belongs to.
    writeContent(m_folder.filePath(u"file"_s), "x");
    standAt(u"file"_s);
    m_base.fileId.fill(1);
    m_base.saveId.fill(2);
    setSaved(encodeBody({}));
}

QString JournalBench::journalPath() const {
    const QStringList names = journals();
    if (names.size() != 1)
        throw std::runtime_error("there is not exactly one journal");
    return journalFolderPath() + u'/' + names[0];
}

void JournalBench::open() {
    m_journal.reset();
    m_database = std::move(*decodeBody(m_saved));
    const KeyDeriver derive = [this](const SecretBytes &word, const KdfParameters &parameters) {
        ++derivations;
        return deriveMasterKey(word, parameters);
    };
    RecoveryOutcome outcome = recoverJournals(m_ops,
                                              {.stateFolder = m_folder.path(),
                                               .base = m_base,
                                               .keys = m_keys,
                                               .password = password,
                                               .deriveKey = derive,
                                               .random = RandomSource::system(),
                                               .keepAside = [this](QByteArrayView aside) -> SystemResult<QString> {
                                                   m_aside.push_back(aside.toByteArray());
                                                   return u"aside"_s;
                                               }},
                                              m_database);
    m_recovered = outcome.changed;
    m_notices.append(outcome.notices);
    m_journal = std::make_unique<Journal>(m_ops, m_options);
    m_journal->follow(m_database, m_base, m_keys);
    if (outcome.journal)
        m_journal->adopt(std::move(*outcome.journal), outcome.changed);
}

} // namespace qir
