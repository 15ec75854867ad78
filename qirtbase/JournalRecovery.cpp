#include "qirtbase/JournalRecovery.h"

#include "base/StagedFile.h"
#include "qirtbase/BodyCodec.h"
#include "qirtbase/JournalCodec.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <ctime>

namespace qir {

namespace {

constexpr std::time_t keptFor = 7 * 24 * 3600; // seconds
constexpr std::size_t idDigits = layout::idSize * 2;
constexpr std::size_t nameSize = idDigits + 1 + 8;

bool isJournalName(const std::string &name) {
    return name.size() == nameSize && name[idDigits] == '-' &&
           std::ranges::all_of(name, [](char c) { return c == '-' || std::isxdigit(static_cast<unsigned char>(c)); });
}

bool isOf(const std::string &name, const FileIdentifier &fileId) {
    const QByteArray hex = QByteArray(reinterpret_cast<const char *>(fileId.data()), qsizetype(fileId.size())).toHex();
    return isJournalName(name) && std::memcmp(name.data(), hex.constData(), idDigits) == 0;
}

/// What a journal holds that can be made again.
struct Contents {
    std::uint64_t start = 0; ///< The changes before are in the file already.
    std::uint64_t end = 0;   ///< Behind the last whole group.
    bool belongs = false;    ///< It starts from the version on disk.
    bool isEmpty() const { return start == end; }
};

/// Reads a journal through once.
Contents survey(JournalFile &journal, const FileIdentifier &saveId) {
    Contents contents;
    contents.belongs = journal.head().base == saveId;
    journal.rewind();
    contents.start = contents.end = journal.offset();
    int depth = 0;
    for (QByteArray payload; journal.readRecord(payload);) {
        QByteArrayView rest = payload;
        while (!rest.isEmpty()) {
            const auto operation = takeOperation(rest);
            if (!operation)
                return contents;
            if (operation->is(JournalOperation::GroupBegin))
                ++depth;
            else if (operation->is(JournalOperation::GroupEnd) || operation->is(JournalOperation::GroupUndo))
                --depth;
            else if (operation->is(JournalOperation::SavingAs) && depth == 0 &&
                     std::memcmp(operation->bytes.data(), saveId.data(), saveId.size()) == 0) {
                contents.belongs = true;
                contents.start = journal.offset();
            }
            if (depth < 0)
                return contents;
        }
        if (depth == 0)
            contents.end = journal.offset();
    }
    return contents;
}

/// Makes the changes of a journal again, as far as they can be. Gives how many groups that were, and cuts `contents` to
/// them.
int replay(JournalFile &journal, Contents &contents, Database &database) {
    JournalReplay replay(database);
    journal.rewind();
    std::uint64_t done = contents.start;
    for (QByteArray payload; journal.offset() < contents.end && journal.readRecord(payload);) {
        if (journal.offset() <= contents.start)
            continue;
        if (!replay.feed(payload))
            break;
        if (replay.isAtBoundary())
            done = journal.offset();
    }
    contents.end = done;
    return replay.groups();
}

class Recovery {
public:
    Recovery(FileOps &ops, const RecoveryRequest &request, Database &database)
        : m_ops(ops)
        , m_request(request)
        , m_database(database) {}

    RecoveryOutcome run() {
        const std::string path = systemPath(m_request.stateFolder) + '/' + journalFolder;
        const auto names = m_ops.entries(AT_FDCWD, path);
        if (!names || m_request.base.path.empty())
            return std::move(m_outcome);
        // The latest first: where several would fit, that is the one. Asked once, for living editors go on writing.
        std::vector<std::pair<std::pair<std::time_t, long>, std::string>> found;
        for (const std::string &name : *names) {
            if (isOf(name, m_request.base.fileId))
                found.emplace_back(changedAt(path + '/' + name), name);
            else if (!isJournalName(name))
                purge(path + '/' + name);
        }
        std::ranges::sort(found, std::greater());
        for (const auto &[changed, name] : found)
            visit(path, name);
        return std::move(m_outcome);
    }

private:
    std::pair<std::time_t, long> changedAt(const std::string &path) {
        const auto status = m_ops.statusAt(AT_FDCWD, path, FollowLinks::No);
        return status ? std::pair(status->st_mtim.tv_sec, status->st_mtim.tv_nsec) : std::pair<std::time_t, long>();
    }

    /// Retired journals, and what was left while one was made, a week later.
    void purge(const std::string &path) {
        const auto status = m_ops.statusAt(AT_FDCWD, path, FollowLinks::No);
        if (status && S_ISREG(status->st_mode) && status->st_mtim.tv_sec + keptFor < std::time(nullptr))
            (void)m_ops.unlinkAt(AT_FDCWD, path);
    }

    void visit(const std::string &path, const std::string &name) {
        auto folder = OpenFile::openAt(m_ops, AT_FDCWD, path, O_RDONLY | O_DIRECTORY);
        if (!folder)
            return;
        auto journal = JournalFile::open(m_ops, std::move(*folder), name, m_request.random);
        if (!journal || journal->head().fileId != m_request.base.fileId)
            return; // its editor lives, or it is none
        const bool samePath = journal->head().path == m_request.base.path;
        if (!samePath && m_ops.statusAt(AT_FDCWD, journal->head().path, FollowLinks::No))
            return; // of a file that this one is a copy of
        if (!unlock(*journal))
            return;
        Contents contents = survey(*journal, m_request.base.saveId);
        if (journal->readError())
            cannotRead(*journal);
        else if (samePath && contents.belongs && !m_outcome.journal)
            takeUp(std::move(*journal), contents);
        else if (contents.isEmpty())
            (void)journal->remove();
        else
            setAside(*journal, contents);
    }

    /// Gives the journal its keys. Without them it stays for a later open.
    bool unlock(JournalFile &journal) {
        const JournalHead &head = journal.head();
        if (!head.sealed) {
            journal.unlock({});
            return true;
        }
        const auto sameSalt = [&](const ContainerKeys &keys) {
            return keys.isProtected() && keys.kdf.salt == head.kdf.salt;
        };
        if (sameSalt(m_request.keys)) {
            journal.unlock(m_request.keys);
            return true;
        }
        // Sealed with a password that was set but not saved any more.
        FileHeader costs;
        costs.kdf = head.kdf;
        if (!m_request.password.isEmpty() && checkKdfCosts(costs)) {
            auto master = m_request.deriveKey(passwordBytes(m_request.password), head.kdf);
            if (master) {
                journal.unlock({head.kdf, std::move(*master)});
                QByteArray payload;
                if (journal.readRecord(payload))
                    return true;
            }
        }
        m_outcome.notices.append(
            QStringLiteral("there are unsaved changes that were sealed with another password; they are "
                           "kept for when it is opened with that one"));
        return false;
    }

    /// It stays as it is, for a later open.
    void cannotRead(const JournalFile &journal) {
        m_outcome.notices.append(QStringLiteral("there are unsaved changes, but they cannot be read now: %1")
                                     .arg(systemErrorWords(*journal.readError())));
    }

    void takeUp(JournalFile journal, Contents contents) {
        if (contents.isEmpty()) {
            (void)journal.remove();
            return;
        }
        const int groups = replay(journal, contents, m_database);
        if (journal.readError()) {
            if (auto loaded = decodeBody(m_request.body))
                m_database = std::move(*loaded); // not with a part of them
            cannotRead(journal);
            return;
        }
        if (groups == 0) {
            (void)journal.rename(journal.name() + retiredSuffix);
            m_outcome.notices.append(
                QStringLiteral("changes that were not saved when the program ended could not be made again"));
            return;
        }
        (void)journal.cutAt(contents.end); // what stays behind it does not match what will stand before it
        m_outcome.changed = true;
        m_outcome.journal.emplace(std::move(journal));
        m_outcome.notices.append(
            QStringLiteral("changes that were not saved when the program ended are there again; they "
                           "are still unsaved"));
    }

    /// The version that a journal starts from, where a conflict has left it beside the file.
    std::optional<Database> versionBeside(const FileIdentifier &saveId) {
        const std::size_t slash = m_request.base.path.rfind('/');
        const std::string folder = m_request.base.path.substr(0, slash + 1);
        const std::string file = m_request.base.path.substr(slash + 1);
        const auto names = m_ops.entries(AT_FDCWD, folder);
        if (!names)
            return std::nullopt;
        for (const std::string &name : *names) {
            if (!name.starts_with(file) && !StagedFile::tagOf(name))
                continue;
            const auto version = OpenFile::openAt(m_ops, AT_FDCWD, folder + name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
            const auto block = version ? readHeaderBlock(m_ops, version->descriptor()) : LoadResult<HeaderBlock>();
            if (!version || !block || block->header.fileId != m_request.base.fileId || block->header.saveId != saveId)
                continue;
            const auto container =
                readContainer(m_ops, version->descriptor(), m_request.password, m_request.limits, m_request.deriveKey);
            if (container)
                if (auto database = decodeBody(container->body))
                    return std::move(*database);
        }
        return std::nullopt;
    }

    /// The changes of another version, or of another session on the same one: made on that version where it is still to
    /// be had, else tried on a copy of this one.
    void setAside(JournalFile &journal, Contents contents) {
        std::optional<Database> copy;
        if (!contents.belongs)
            copy = versionBeside(journal.head().base);
        if (!copy)
            if (auto loaded = decodeBody(m_request.body))
                copy = std::move(*loaded);
        if (!copy)
            return;
        const std::uint64_t whole = contents.end;
        const int groups = replay(journal, contents, *copy);
        if (journal.readError()) {
            cannotRead(journal);
            return;
        }
        if (groups == 0) {
            (void)journal.rename(journal.name() + retiredSuffix);
            m_outcome.notices.append(
                QStringLiteral("there are unsaved changes to an earlier version of it, which cannot be "
                               "made in this one"));
            return;
        }
        const auto kept = m_request.keepAside(encodeBody(*copy));
        if (!kept)
            return; // for a later open
        (void)journal.rename(journal.name() + retiredSuffix);
        m_outcome.notices.append(
            QStringLiteral("unsaved changes of another session are kept as a file of their own in '%1'").arg(*kept));
        if (contents.end < whole)
            m_outcome.notices.append(
                QStringLiteral("some of these changes could not be made in this version, and are missing there"));
    }

    FileOps &m_ops;
    const RecoveryRequest &m_request;
    Database &m_database;
    RecoveryOutcome m_outcome;
};

} // namespace

RecoveryOutcome recoverJournals(FileOps &ops, const RecoveryRequest &request, Database &database) {
    return Recovery(ops, request, database).run();
}

} // namespace qir
