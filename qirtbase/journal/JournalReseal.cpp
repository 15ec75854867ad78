#include "qirtbase/journal/JournalReseal.h"

#include "qirtbase/journal/JournalFile.h"
#include "qirtbase/journal/JournalFolder.h"

namespace qir {

using namespace Qt::StringLiterals;

namespace {

class Reseal {
public:
    Reseal(FileOps &ops, const ResealRequest &request)
        : m_ops(ops)
        , m_request(request)
        , m_folder(JournalFolder::find(ops, request.stateFolder)) {}

    QStringList prepare() {
        const std::string sealed = journalTag(m_request.fileId, m_request.before);
        for (const std::string &name : m_folder.names)
            if (m_request.before.isProtected() && isJournalName(name) && journalTagOf(name) == sealed)
                visit(name, m_request.before, false);
        return std::move(m_notices);
    }

    QStringList run() {
        m_saved = true;
        if (!m_folder.problem.isEmpty())
            remains(m_folder.problem);
        const std::string open = journalTag(m_request.fileId, {});
        const std::string sealed = journalTag(m_request.fileId, m_request.before);
        for (const std::string &name : m_folder.names) {
            const std::string tag = journalTagOf(name);
            if (tag.empty() || (tag != open && tag != sealed))
                continue;
            if (isJournalName(name))
                visit(name, m_request.after, m_request.after.isProtected());
            else if (m_request.after.isProtected())
                (void)m_ops.unlinkAt(m_folder.folder.descriptor(), name);
        }
        return std::move(m_notices);
    }

private:
    void visit(const std::string &name, const ContainerKeys &keys, bool keyInFile) {
        auto folder = m_folder.open(m_ops);
        if (!folder)
            return remains(systemErrorWords(folder.error()));
        auto journal = JournalFile::open(m_ops, std::move(*folder), name, m_request.random);
        if (!journal) {
            if (journal.error().kind == JournalRefusal::Kind::Held)
                isHeld();
            else if (journal.error().kind != JournalRefusal::Kind::Gone)
                remains(journal.error().reason);
            return;
        }
        if (!unlock(*journal) || journal->head().fileId != m_request.fileId)
            return; // sealed with a password that was never saved
        JournalHead head = journal->head();
        head.keyInFile = keyInFile;
        const auto resealed = JournalFile::replace(*journal, std::move(head), keys, m_request.random);
        if (!resealed)
            remains(systemErrorWords(resealed.error()));
    }

    /// Our own, before the save; after it that of another editor.
    void isHeld() {
        if (m_saved)
            remains(u"another editor writes them"_s);
    }

    bool unlock(JournalFile &journal) const {
        const JournalHead &head = journal.head();
        if (!head.sealed)
            return journal.unlock({});
        for (const ContainerKeys *keys : {&m_request.before, &m_request.after})
            if (keys->isProtected() && (head.keyInFile || head.kdf.salt == keys->kdf.salt) && journal.unlock(*keys))
                return true;
        return false;
    }

    void remains(const QString &reason) {
        m_notices.append(u"unsaved changes of another session are still kept as they were sealed before, "
                         "not with the password that holds now: %1"_s.arg(reason));
    }

    FileOps &m_ops;
    const ResealRequest &m_request;
    JournalFolder m_folder;
    QStringList m_notices;
    bool m_saved = false;
};

} // namespace

QStringList keepJournalsFindable(FileOps &ops, const ResealRequest &request) {
    return Reseal(ops, request).prepare();
}

QStringList resealJournals(FileOps &ops, const ResealRequest &request) {
    return Reseal(ops, request).run();
}

} // namespace qir
