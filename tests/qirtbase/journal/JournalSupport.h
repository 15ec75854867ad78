#pragma once

#include "qirtbase/journal/Journal.h"
#include "qirtbase/journal/JournalRecovery.h"
#include "qirtbase/model/BodyCodec.h"
#include "tests/qirtbase/file/StorageSupport.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace qir {

/// A database under a journal, without a component around it. Letting go of the journal is the crash: what is on disk
/// stays, and nobody holds it any more.
class JournalBench {
public:
    explicit JournalBench(FileOps &ops = FileOps::system());

    /// Starts a session on what the file holds (`saved`), with the journals that are there.
    void open();
    void crash() { m_journal.reset(); }

    Database &database() { return m_database; }
    Journal &journal() { return *m_journal; }
    JournalOptions &options() { return m_options; }
    JournalBase &base() { return m_base; }
    ContainerKeys &keys() { return m_keys; }
    /// Where the file is from now on, below the folder.
    void standAt(const QString &name) { m_base.place = filePlace(FileOps::system(), m_folder.filePath(name)); }
    const QStringList &notices() const { return m_notices; }
    void clearNotices() { m_notices.clear(); }
    bool recovered() const { return m_recovered; }

    /// What the file holds: the body that sessions start from.
    void setSaved(const QByteArray &body) {
        m_saved = body;
        m_base.bodySize = static_cast<std::uint64_t>(body.size());
    }
    QByteArray body() const { return encodeBody(m_database, BodyFor::Journal); }

    QString folder() const { return m_folder.path(); }
    QString journalFolderPath() const { return m_folder.filePath(QStringLiteral("journal")); }
    /// The names of the journals, and the path of the only one.
    QStringList journals() const { return namesIn(journalFolderPath()); }
    QString journalPath() const;
    /// Bodies that were kept aside.
    const std::vector<QByteArray> &aside() const { return m_aside; }
    QString password;
    int derivations = 0;

private:
    FileOps &m_ops;
    QuickFolder m_folder;
    QStringList m_notices;
    JournalOptions m_options;
    JournalBase m_base;
    ContainerKeys m_keys;
    QByteArray m_saved;
    Database m_database;
    std::unique_ptr<Journal> m_journal;
    std::vector<QByteArray> m_aside;
    bool m_recovered = false;
};

/// A journal as version 1 of its format wrote it, with these records.
QByteArray journalOfVersion1(const JournalBase &base, const ContainerKeys &keys,
                             const std::vector<QByteArray> &payloads);

/// Keys of a password, derived cheaply.
ContainerKeys keysOf(const QString &password, unsigned char salt = 7);

} // namespace qir
