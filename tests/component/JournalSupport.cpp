#include "tests/component/JournalSupport.h"

#include <stdexcept>

namespace qir {

ContainerKeys keysOf(const QString &password, unsigned char salt) {
    static const KeyDeriver derive = rememberingDeriver();
    ContainerKeys keys;
    keys.kdf.costs = cheapCosts;
    keys.kdf.salt.fill(salt);
    keys.master = derive(passwordBytes(password), keys.kdf).value();
    return keys;
}

JournalBench::JournalBench(FileOps &ops)
    : m_ops(ops) {
    m_options.stateFolder = m_folder.path();
    m_options.random = &RandomSource::system();
    m_options.notice = [this](const QString &text) { m_notices.append(text); };
    m_base.name = QStringLiteral("PUMP.DDB");
    // Any file will do as the one that the journal belongs to.
    writeContent(m_folder.filePath(QStringLiteral("file")), "x");
    standAt(QStringLiteral("file"));
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
                                               .body = m_saved,
                                               .keepAside = [this](QByteArrayView aside) -> SystemResult<QString> {
                                                   m_aside.push_back(aside.toByteArray());
                                                   return QStringLiteral("aside");
                                               }},
                                              m_database);
    m_recovered = outcome.changed;
    m_notices.append(outcome.notices);
    m_journal = std::make_unique<Journal>(m_ops, m_options);
    m_journal->follow(m_database, m_base, m_keys);
    if (outcome.journal)
        m_journal->adopt(std::move(*outcome.journal));
}

} // namespace qir
