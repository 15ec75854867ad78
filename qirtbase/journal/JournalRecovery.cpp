#include "qirtbase/journal/JournalRecovery.h"

#include "base/StagedFile.h"
#include "qirtbase/journal/JournalFolder.h"
#include "qirtbase/journal/JournalSurvey.h"
#include "qirtbase/model/BodyCodec.h"

#include <QFile>

#include <algorithm>
#include <cerrno>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

class Recovery {
public:
    Recovery(FileOps &ops, const RecoveryRequest &request, Database &database)
        : m_ops(ops)
        , m_request(request)
        , m_database(database)
        , m_folder(JournalFolder::find(ops, request.stateFolder)) {}

    RecoveryOutcome run() {
        if (!m_folder.problem.isEmpty())
            tell(u"there may be unsaved changes to it, but %1"_s.arg(m_folder.problem));
        m_folder.removeOld(m_ops);
        const FileIdentifier &fileId = m_request.base.fileId;
        const std::string tags[] = {journalTag(fileId, {}), journalTag(fileId, m_request.keys)};
        // The latest first: where several would fit, that is the one. Asked once, for living editors go on writing.
        std::vector<std::pair<std::pair<std::time_t, long>, std::string>> found;
        std::vector<std::string> strangers;
        for (const std::string &name : m_folder.names) {
            if (!isJournalName(name))
                continue;
            if (std::ranges::find(tags, journalTagOf(name)) != std::end(tags))
                found.emplace_back(changedAt(name), name);
            else
                strangers.push_back(name);
        }
        std::ranges::sort(found, std::greater());
        for (const auto &[changed, name] : found)
            visit(name);
        for (const std::string &name : strangers)
            lookAtStranger(name);
        if (!m_strangerNotRead.isEmpty())
            tell(u"there may be unsaved changes to it, but %1"_s.arg(m_strangerNotRead));
        if (m_strangersUnderOtherPasswords)
            tell(u"there are unsaved changes in '%1' that this password does not open: those of another "
                 "protected file, or of this one under another password; they are kept, and shown when "
                 "that is opened"_s.arg(shownName({})));
        return std::move(m_outcome);
    }

private:
    void tell(const QString &notice) { m_outcome.notices.append(notice); }
    QString shownName(const std::string &journal) const {
        const QString folder = QFile::decodeName(journalFolderPath(m_request.stateFolder).c_str());
        return journal.empty() ? folder : folder + u'/' + QFile::decodeName(journal.c_str());
    }
    QString endedName(const std::string &journal) const { return shownName(journal + journal::retiredSuffix); }
    /// Ends a journal; gives where it is kept for some days.
    QString retired(JournalFile &journal) const {
        return journal.retire() ? endedName(journal.name()) : shownName(journal.name());
    }
    std::pair<std::time_t, long> changedAt(const std::string &name) {
        const auto status = m_ops.statusAt(m_folder.folder.descriptor(), name, FollowLinks::No);
        return status ? std::pair(status->st_mtim.tv_sec, status->st_mtim.tv_nsec) : std::pair<std::time_t, long>();
    }

    std::optional<JournalFile> open(const std::string &name) {
        auto folder = m_folder.open(m_ops);
        auto journal = folder ? JournalFile::open(m_ops, std::move(*folder), name, m_request.random)
                              : JournalResult<JournalFile>(tl::unexpected(JournalRefusal{
                                    JournalRefusal::Kind::Unreadable, systemErrorWords(folder.error())}));
        if (journal)
            return std::move(*journal);
        refused(name, journal.error());
        return std::nullopt;
    }

    void refused(const std::string &name, const JournalRefusal &refusal) {
        if (refusal.kind == JournalRefusal::Kind::Gone || refusal.kind == JournalRefusal::Kind::Held)
            return;
        // There is nothing more to tell of a damaged one.
        const bool isEnded = refusal.kind == JournalRefusal::Kind::Damaged &&
                             JournalFile::retire(m_ops, m_folder.folder.descriptor(), name);
        tell(u"there may be unsaved changes in '%1', but they are not taken up: %2"_s.arg(
            isEnded ? endedName(name) : shownName(name), refusal.reason));
    }

    void visit(const std::string &name) {
        auto journal = open(name);
        if (!journal || !unlock(*journal) || journal->head().fileId != m_request.base.fileId)
            return;
        JournalContents contents = surveyJournal(*journal, m_request.base.saveId);
        if (journal->readError()) {
            cannotRead(*journal);
            return;
        }
        // Steps of before the save that nobody can use, or nothing at all.
        const bool isOfNoUse = contents.isEmpty() || (!contents.hasChanges && !contents.belongs);
        if (isOfNoUse && contents.isDamaged) {
            tell(u"unsaved changes in '%1' cannot be read: it is damaged"_s.arg(retired(*journal)));
        } else if (contents.isEmpty()) {
            (void)journal->remove();
        } else if (!contents.hasChanges && (isOfNoUse || m_outcome.journal)) {
            if (standsElsewhere(journal->head()).isEmpty())
                (void)journal->remove();
        } else if (!m_request.keys.isProtected() || journal->head().sealed) {
            takeOrSetAside(std::move(*journal), contents);
        } else {
            // Anybody can have written it, and nobody could have read it all the time.
            tell(u"there are unsaved changes in '%1' that were not sealed with its password; they are "
                 "kept there, and not taken up"_s.arg(shownName(name)));
        }
    }

    void takeOrSetAside(JournalFile journal, JournalContents contents) {
        const QString elsewhere = standsElsewhere(journal.head());
        if (!elsewhere.isEmpty() && !contents.hasChanges && !contents.isDamaged)
            return; // steps of what is saved there
        if (!elsewhere.isEmpty())
            tell(u"there are unsaved changes to '%1', of which this is a copy; they are shown when that "
                 "one is opened"_s.arg(elsewhere));
        else if (contents.belongs && !m_outcome.journal)
            takeUp(std::move(journal), contents);
        else
            setAside(journal, contents);
    }

    /// The path of the file that a journal was written for, where this one is only a copy of it; "" where it is this
    /// one.
    QString standsElsewhere(const JournalHead &head) {
        const FilePlace &place = m_request.base.place;
        if (place.isSamePathAs(head.place) || place.isSameFileAs(head.place))
            return {};
        const QString path = QFile::decodeName(head.place.path.c_str());
        const auto status = m_ops.statusAt(AT_FDCWD, head.place.path, FollowLinks::Yes);
        if (!status) // where we may not look it may stand
            return status.error().number == ENOENT || status.error().number == ENOTDIR ? QString() : path;
        if (!S_ISREG(status->st_mode) ||
            place.isSameFileAs({.path = {}, .device = status->st_dev, .inode = status->st_ino}))
            return {};
        const auto file = OpenFile::openAt(m_ops, AT_FDCWD, head.place.path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
        if (!file)
            return path;
        const auto block = readHeaderBlock(m_ops, file->descriptor());
        const bool isAnother =
            block ? block->header.fileId != head.fileId : block.error().kind != LoadErrorKind::Unreadable;
        return isAnother ? QString() : path;
    }

    /// A journal that does not bear the file's name: of another database that stood here before, perhaps.
    void lookAtStranger(const std::string &name) {
        const int folder = m_folder.folder.descriptor();
        const auto head = JournalFile::peek(m_ops, folder, name);
        if (!head) {
            if (m_strangerNotRead.isEmpty() && (head.error().kind == JournalRefusal::Kind::NotTrusted ||
                                                head.error().kind == JournalRefusal::Kind::Unreadable))
                m_strangerNotRead = u"'%1' cannot be read: %2"_s.arg(shownName(name), head.error().reason);
            return;
        }
        const FilePlace &place = m_request.base.place;
        const bool isFromHere = head->isIdentified && head->fileId != m_request.base.fileId &&
                                (place.isSamePathAs(head->place) || place.isSameFileAs(head->place));
        const bool mayBeOurs = !head->isIdentified && head->keyInFile && m_request.keys.isProtected();
        if ((!isFromHere && !mayBeOurs) || !JournalFile::isLeft(m_ops, folder, name))
            return;
        if (mayBeOurs)
            m_strangersUnderOtherPasswords = true;
        else if (!holdsNothingTyped(name))
            tell(u"there are unsaved changes to another database that stood here before; they are kept in "
                 "'%1', and shown when that one is opened"_s.arg(shownName(name)));
    }

    /// A stranger's that has no more than steps of before its save, as far as that can be seen without its password.
    bool holdsNothingTyped(const std::string &name) {
        auto folder = m_folder.open(m_ops);
        if (!folder)
            return false;
        auto journal = JournalFile::open(m_ops, std::move(*folder), name, m_request.random);
        if (!journal || journal->head().sealed || !journal->unlock({}))
            return false;
        const JournalContents contents = surveyJournal(*journal, journal->head().base);
        return !contents.hasChanges && !contents.isDamaged && !journal->readError();
    }

    /// Gives the journal its keys. Without them it stays for a later open.
    bool unlock(JournalFile &journal) {
        const JournalHead &head = journal.head();
        if (!head.sealed)
            return journal.unlock({});
        if (head.keyInFile || (m_request.keys.isProtected() && m_request.keys.kdf.salt == head.kdf.salt)) {
            if (journal.unlock(m_request.keys))
                return true;
        } else if (unlockWithPassword(journal)) {
            return true;
        }
        tell(u"there are unsaved changes that were sealed with another password; they are kept for when "
             "it is opened with that one"_s);
        return false;
    }

    /// Sealed with a password that was set but not saved any more.
    bool unlockWithPassword(JournalFile &journal) {
        const KdfParameters kdf = journal.head().kdf;
        FileHeader costs;
        costs.kdf = kdf;
        if (m_request.password.isEmpty() || !checkKdfCosts(costs))
            return false;
        auto master = m_request.deriveKey(passwordBytes(m_request.password), kdf);
        if (!master || !journal.unlock({kdf, std::move(*master)}))
            return false;
        QByteArray payload;
        return journal.readRecord(payload);
    }

    /// It stays as it is, for a later open.
    void cannotRead(const JournalFile &journal) {
        tell(u"there are unsaved changes, but they cannot be read now: %1"_s.arg(
            systemErrorWords(*journal.readError())));
    }

    /// `kept` is where all of the journal is kept for some days; "" where it could not be.
    void tellDamage(const QString &kept) {
        QString text = u"the journal of these changes is damaged: those that were made last are missing"_s;
        if (!kept.isEmpty())
            text += u"; all that is left of it is kept in '%1' for seven days"_s.arg(kept);
        tell(text);
    }

    void takeUp(JournalFile journal, JournalContents contents) {
        const std::uint64_t whole = contents.end;
        const std::uint64_t saved = m_database.history().state();
        m_loaded = m_database.copy();
        const int groups = replayJournal(journal, contents, m_database);
        if (journal.readError()) {
            m_database = m_loaded->copy(); // not with a part of them
            cannotRead(journal);
            return;
        }
        if (groups == 0 && contents.hasChanges) {
            tell(u"changes that were not saved when the program ended could not be made again; they are "
                 "kept in '%1' for seven days"_s.arg(retired(journal)));
            return;
        }
        QString kept;
        if (contents.isDamaged || contents.end < whole)
            if (const auto copy = journal.keepCopy())
                kept = shownName(*copy);
        (void)journal.cutAt(contents.end); // what stays behind it does not match what will stand before it
        m_outcome.changed = m_database.history().state() != saved; // else all of them were taken back
        m_outcome.journal.emplace(upToDate(std::move(journal)));
        if (m_outcome.changed)
            tell(u"changes that were not saved when the program ended are there again; they are still "
                 "unsaved"_s);
        if (contents.isDamaged || contents.end < whole)
            tellDamage(kept);
    }

    /// The same journal in today's form, with the place where the file stands now. Where that cannot be written the
    /// session goes on with the one that is there.
    JournalFile upToDate(JournalFile journal) {
        const std::uint64_t end = journal.offset();
        JournalHead head = journal.head();
        if (head.version == JournalHead().version && head.place == m_request.base.place &&
            head.keyInFile == m_request.keys.isProtected())
            return journal;
        if (!head.sealed || m_request.keys.isProtected()) {
            head.place = m_request.base.place;
            head.keyInFile = m_request.keys.isProtected();
            auto renewed = JournalFile::replace(journal, std::move(head), m_request.keys, m_request.random);
            if (renewed)
                return std::move(*renewed);
            (void)journal.cutAt(end); // goes on where it ends, however far it was read
        }
        return journal;
    }

    /// Whether it is sealed as the file is: what is not may be forged, for everybody can read the ids, and another key
    /// would cost what its maker liked.
    bool isSealedAlike(const FileHeader &header) const {
        const ContainerKeys &keys = m_request.keys;
        return header.isProtected == keys.isProtected() && (!keys.isProtected() || header.kdf == keys.kdf);
    }

    /// The version that a journal starts from, where a conflict has left it beside the file.
    std::optional<Database> versionBeside(const FileIdentifier &saveId) {
        const std::size_t slash = m_request.base.place.path.rfind('/');
        const std::string folder = m_request.base.place.path.substr(0, slash + 1);
        const std::string file = m_request.base.place.path.substr(slash + 1);
        const auto names = m_ops.entries(AT_FDCWD, folder);
        if (!names)
            return std::nullopt;
        for (const std::string &name : *names) {
            if (!name.starts_with(file) && !StagedFile::tagOf(name))
                continue;
            const auto version = OpenFile::openAt(m_ops, AT_FDCWD, folder + name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
            const auto block = version ? readHeaderBlock(m_ops, version->descriptor()) : LoadResult<HeaderBlock>();
            if (!version || !block || block->header.fileId != m_request.base.fileId || block->header.saveId != saveId ||
                !isSealedAlike(block->header))
                continue;
            // The key is there already.
            const KeyDeriver derive = [this](const SecretBytes &, const KdfParameters &) {
                return LoadResult<SecretBytes>(m_request.keys.master.clone());
            };
            const auto container =
                readContainer(m_ops, version->descriptor(), m_request.password, m_request.limits, derive);
            if (container)
                if (auto database = decodeBody(container->body))
                    return std::move(*database);
        }
        return std::nullopt;
    }

    /// The changes of another version, or of another session on the same one: made on that version where it is still to
    /// be had, else tried on a copy of this one.
    void setAside(JournalFile &journal, JournalContents contents) {
        std::optional<Database> copy;
        if (!contents.belongs)
            copy = versionBeside(journal.head().base);
        if (!copy)
            copy = (m_loaded ? *m_loaded : m_database).copy();
        const std::uint64_t whole = contents.end;
        const int groups = replayJournal(journal, contents, *copy);
        if (journal.readError()) {
            cannotRead(journal);
            return;
        }
        if (groups == 0) {
            tell(u"there are unsaved changes to an earlier version of it, which cannot be made in this "
                 "one; they are kept in '%1' for seven days"_s.arg(retired(journal)));
            return;
        }
        const auto kept = m_request.keepAside(encodeBody(*copy));
        if (!kept) { // for a later open
            tell(u"there are unsaved changes of another session in '%1', which cannot be kept as a file "
                 "of their own now: %2"_s.arg(shownName(journal.name()), systemErrorWords(kept.error())));
            return;
        }
        const QString ended = retired(journal);
        tell(u"unsaved changes of another session are kept as a file of their own in '%1'"_s.arg(*kept));
        if (contents.end < whole)
            tell(u"some of these changes could not be made in this version, and are missing there; all "
                 "of them are kept in '%1' for seven days"_s.arg(ended));
        if (contents.isDamaged)
            tellDamage(ended);
    }

    FileOps &m_ops;
    const RecoveryRequest &m_request;
    Database &m_database;
    std::optional<Database> m_loaded; // as it was loaded, where changes have been made since
    JournalFolder m_folder;
    RecoveryOutcome m_outcome;
    bool m_strangersUnderOtherPasswords = false;
    QString m_strangerNotRead; // nobody can tell whose it is
};

} // namespace

RecoveryOutcome recoverJournals(FileOps &ops, const RecoveryRequest &request, Database &database) {
    return Recovery(ops, request, database).run();
}

} // namespace qir
