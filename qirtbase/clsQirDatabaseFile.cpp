// The file, and the journal that follows it.

#include "base/ErrorWords.h"
#include "qirtbase/Guarded.h"
#include "qirtbase/clsQirDatabase.h"
#include "qirtbase/journal/JournalRecovery.h"
#include "qirtbase/journal/JournalReseal.h"

#include <QAbstractEventDispatcher>

#include <cmath>
#include <new>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// What trying a password costs, where that is more than usual.
QString noteOn(const KdfCosts &costs, const KdfCosts &usual) {
    const double times =
        static_cast<double>(costs.passes) * costs.memoryKiB / (static_cast<double>(usual.passes) * usual.memoryKiB);
    if (times <= 1 && costs.memoryKiB <= usual.memoryKiB)
        return {};
    const QString longer = times > 1 ? u"about %1 times as long, and "_s.arg(std::ceil(times * 10) / 10) : QString();
    return u"This file asks for more than usual: trying a password takes %1%2 MiB of memory."_s.arg(
        longer, QString::number(costs.memoryKiB / 1024));
}

} // namespace

// --------------------------------------------------------------------------------------------------------- the journal

JournalOptions clsQirDatabase::journalOptions() {
    return {.stateFolder = m_file.stateFolder(),
            .random = &m_file.random(),
            .notice = [this](const QString &text) { Q_EMIT Notice(text); },
            .syncLater = [this] { return syncLater(); }};
}

/// False where nothing runs that could call the timer.
bool clsQirDatabase::syncLater() {
    if (!QAbstractEventDispatcher::instance())
        return false;
    if (!m_syncTimer.isActive())
        m_syncTimer.start();
    return true;
}

/// The version on disk is what the changes from here on start from.
void clsQirDatabase::followFile(std::uint64_t bodySize) {
    followKeys();
    if (!m_leaveJournal)
        m_journal.follow(m_database, journalBase(bodySize), m_file.keysOnDisk());
}

JournalBase clsQirDatabase::journalBase(std::uint64_t bodySize) const {
    return {.name = m_file.fileName(),
            .place = m_file.filePlace(),
            .fileId = m_file.fileId(),
            .saveId = m_file.saveId(),
            .bodySize = bodySize,
            .state = m_savedState};
}

/// Where the version on disk has another key than the one before, what is kept of it beside gets that too.
void clsQirDatabase::followKeys() {
    const ContainerKeys &keys = m_file.keysOnDisk();
    const bool isSameFile = m_journalsFileId == m_file.fileId();
    if (isSameFile && m_journalsKeys.isProtected() == keys.isProtected() && m_journalsKeys.master.equals(keys.master))
        return;
    const ContainerKeys before = std::exchange(m_journalsKeys, keys.clone());
    m_journalsFileId = m_file.fileId();
    if (!isSameFile)
        return;
    const QStringList notices = resealJournals(m_ops, {.stateFolder = m_file.stateFolder(),
                                                       .fileId = m_journalsFileId,
                                                       .before = before,
                                                       .after = m_journalsKeys,
                                                       .random = m_file.random()});
    tellOfFile(notices);
}

/// Before a save: where that changes the key, nothing may be left that only the key of now finds.
void clsQirDatabase::expectKeys() {
    const ContainerKeys &before = m_file.keysOnDisk();
    const ContainerKeys &after = m_file.keys();
    if (before.isProtected() && !before.master.equals(after.master))
        tellOfFile(keepJournalsFindable(m_ops, {.stateFolder = m_file.stateFolder(),
                                                .fileId = m_file.fileId(),
                                                .before = before,
                                                .after = after,
                                                .random = m_file.random()}));
}

void clsQirDatabase::tellOfFile(const QStringList &notices) {
    for (const QString &notice : notices)
        Q_EMIT Notice(u"%1: %2"_s.arg(m_file.fileName(), notice));
}

/// Brings back what a session that died had changed since it saved.
void clsQirDatabase::recoverChanges(std::uint64_t bodySize, const QString &password) {
    followKeys();
    if (m_leaveJournal)
        return;
    const JournalBase base = journalBase(bodySize);
    RecoveryOutcome outcome =
        recoverJournals(m_ops,
                        {.stateFolder = m_file.stateFolder(),
                         .base = base,
                         .keys = m_file.keysOnDisk(),
                         .password = password,
                         .deriveKey = m_file.keyDeriver(),
                         .random = m_file.random(),
                         .keepAside = [this](QByteArrayView aside) { return m_file.writeAside(aside); },
                         .limits = m_file.limits()},
                        m_database);
    m_journal.follow(m_database, base, m_file.keysOnDisk());
    if (outcome.journal)
        m_journal.adopt(std::move(*outcome.journal), outcome.changed);
    m_changed = m_changed || outcome.changed;
    tellOfFile(outcome.notices);
}

// ------------------------------------------------------------------------------------------------------------ the file

bool clsQirDatabase::LoadDtb(const QString &fileName, const QString &password) {
    return guarded([&] {
        if (!isUnused())
            raise(u"This database is in use: another file cannot be loaded into it."_s);
        try {
            return loadFile(fileName, password);
        } catch (const std::bad_alloc &) {
            failLoad(u"%1: there is not enough memory to load it"_s.arg(fileName));
            return false;
        }
    });
}

bool clsQirDatabase::isUnused() const {
    return m_state == State::Fresh && !m_changed && m_database.tableCount() == 0 && m_groups.empty();
}

QString clsQirDatabase::PasswordNote(const QString &fileName) {
    return guarded([&] {
        const std::optional<KdfCosts> costs = m_file.passwordCosts(fileName);
        return costs ? noteOn(*costs, m_file.usualCosts()) : QString();
    });
}

bool clsQirDatabase::BeginLoad(const QString &fileName) {
    return guarded([&] { return isUnused() && m_file.readAhead(fileName); });
}

bool clsQirDatabase::BeginUnlock(const QString &fileName, const QString &password) {
    return guarded([&] { return isUnused() && m_file.prepareKey(fileName, password); });
}

bool clsQirDatabase::UnlockPending() {
    return m_file.preparedKey().isPending();
}

void clsQirDatabase::CancelUnlock() {
    m_file.preparedKey().cancel();
}

bool clsQirDatabase::loadFile(const QString &fileName, const QString &password) {
    m_lastError.clear();
    LoadResult<QByteArray> body = m_file.load(fileName, password);
    if (!body) {
        failLoad(body.error().text);
        return false;
    }
    const auto bodySize = static_cast<std::uint64_t>(body->size());
    LoadResult<Database> database = decodeBody(std::move(*body));
    if (!database) {
        failLoad(u"%1: %2"_s.arg(fileName, database.error().text));
        return false;
    }
    m_database = std::move(*database);
    m_state = State::Open;
    m_changed = m_changedAnyway = false;
    m_savedState = m_database.history().state();
    recoverChanges(bodySize, password);
    keepSteps();
    m_file.endLoad();
    return true;
}

void clsQirDatabase::failLoad(const QString &reason) {
    m_file.fail();
    m_state = State::Failed;
    m_lastError = reason;
}

/// What stays open is what was saved: records without fields, which no file keeps, go.
void clsQirDatabase::becomeAsSaved() {
    try {
        m_database.dropRecordsWithoutFields();
    } catch (const std::bad_alloc &) {
        return; // they go with the next save
    }
    if (m_currentTable && m_currentRecord > m_currentTable->recordCount())
        m_currentRecord = 0;
}

void clsQirDatabase::SaveDtb() {
    guarded([&] {
        requireUsable();
        requireNoGroup("The database cannot be saved");
        if (!m_changed)
            return;
        if (GetDatabaseFileName().isEmpty())
            raise(u"The database has no file name yet."_s);
        const QByteArray body = encodeBody(m_database);
        expectKeys();
        m_hadPassword = m_hadPassword || m_file.keysOnDisk().isProtected();
        if (const Result<void> saved = m_file.save(body); !saved)
            raise(saved.error().text);
        m_changed = m_changedAnyway = false;
        m_journal.discard();
        becomeAsSaved();
        m_savedState = m_database.history().state();
        m_database.endJoining();
        followFile(static_cast<std::uint64_t>(body.size()));
        if (m_file.keysOnDisk().isProtected() || !m_hadPassword) // else they tell what the password had hidden
            m_journal.keepSteps();
    });
}

QString clsQirDatabase::GetDatabaseFileName() const {
    return m_file.fileName();
}

bool clsQirDatabase::SetDatabaseFileName(const QString &fileName) {
    return guarded([&] {
        if (m_state == State::Failed || !m_file.setFileName(fileName))
            return false;
        m_state = State::Open;
        keepSteps();
        return true;
    });
}

void clsQirDatabase::SetFilePlace(const QString &fileName, const QString &place) {
    m_file.setPlace(fileName, place);
}

void clsQirDatabase::NewPassword(const QString &current, const QString &replacement) {
    guarded([&] {
        requireUsable();
        requireNoGroup("The password cannot be changed");
        if (const Result<void> done = m_file.changePassword(current, replacement); !done)
            raise(u"The password was not changed: %1."_s.arg(done.error().text));
        if (current != replacement)
            m_changed = m_changedAnyway = true;
        if (!m_file.keysOnDisk().isProtected())
            m_journal.reseal(m_file.keys());
    });
}

} // namespace qir
