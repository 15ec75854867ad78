#include "qirtbase/file/InPlaceRecovery.h"

#include "qirtbase/file/KeptVersion.h"

#include <QFile>

#include <cerrno>
#include <functional>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

using Content = InPlaceCopy::Content;
using Match = InPlaceCopy::Match;

class Recovery {
public:
    Recovery(FileOps &ops, const InPlaceRecoveryRequest &request)
        : m_ops(ops)
        , m_request(request) {}

    SystemResult<InPlaceRecovery> run() {
        auto found = InPlaceCopy::find(m_ops, m_request.stateFolder, m_request.file);
        if (!found)
            return tl::unexpected(found.error());
        m_recovery.beingWritten = found->beingWritten;
        if (!found->unreadable.isEmpty())
            m_recovery.hindrance =
                u"the safe copy '%1' of a save that was cut short may not be read"_s.arg(found->unreadable);
        for (InPlaceCopy &copy : found->copies) {
            const auto content = copy.contentOf(m_request.file.descriptor);
            if (!content)
                return tl::unexpected(content.error());
            if (const auto settled = settle(copy, *content); !settled)
                return tl::unexpected(settled.error());
        }
        return std::move(m_recovery);
    }

private:
    using Step = SystemResult<void>;

    Step settle(InPlaceCopy &copy, Content content) {
        const bool isInode = copy.match() != Match::Name;
        if (isInode && (content == Content::Next || content == Content::Mixture))
            return restore(copy);
        if (content == Content::Mixture) { // a copy of the file: nobody said that it may be written
            show(copy, u"it is not the file that was being saved, but a copy of it"_s);
            return {};
        }
        if (content == Content::Foreign && copy.match() == Match::Inode)
            return {}; // inode numbers are the same on many disks
        if (!isInode) {
            const auto name = nameOf(copy.head().inode);
            if (!name)
                return tl::unexpected(name.error());
            if (!name->empty()) { // that one needs it
                m_recovery.notices.append(u"a save of the file that stood here before had been cut "
                                          "short; it is '%1' now and becomes whole when it is opened"_s.arg(
                                              QFile::decodeName(name->c_str())));
                return {};
            }
        }
        if (content == Content::Base)
            (void)copy.remove(); // one that stays says of the file what it is
        else
            setAside(copy);
        return {};
    }

    /// The name that a file has in the folder now, "" for none.
    SystemResult<std::string> nameOf(std::uint64_t inode) {
        const ResolvedPath &place = m_request.file.place;
        const int folder = place.folder.descriptor();
        const auto names = place.canSync ? m_ops.entries(folder, ".") : SystemResult<std::vector<std::string>>();
        if (!names)
            return tl::unexpected(names.error());
        for (const std::string &name : *names) {
            const auto status = m_ops.statusAt(folder, name, FollowLinks::No);
            if (status && S_ISREG(status->st_mode) && status->st_ino == inode)
                return name;
        }
        return std::string();
    }

    Step restore(InPlaceCopy &copy) {
        OpenFile opened;
        int file = m_request.writable;
        if (file < 0) {
            auto writable = openHeld();
            if (!writable) {
                show(copy, systemErrorWords(writable.error()));
                return {};
            }
            opened = std::move(*writable);
            file = opened.descriptor();
        }
        // Once more, now that it is held: what was seen may have been written over since.
        const auto content = copy.contentOf(file);
        if (!content)
            return tl::unexpected(content.error());
        if (*content == Content::Foreign) {
            setAside(copy);
            return {};
        }
        if (*content == Content::Base) {
            (void)copy.remove(); // one that stays says of the file what it is
            return {};
        }
        if (const auto restored = copy.restoreBase(file); !restored) {
            show(copy, systemErrorWords(restored.error()));
            return {};
        }
        (void)copy.remove(); // one that stays says of the file what it is
        m_recovery.notices.append(u"a save of it had been cut short; it is again what it was before that save"_s);
        return {};
    }

    /// The file for writing, held against those who write it in place.
    SystemResult<OpenFile> openHeld() {
        const ResolvedPath &place = m_request.file.place;
        auto file =
            OpenFile::openAt(m_ops, place.folder.descriptor(), place.name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
        if (!file)
            return file;
        const auto status = m_ops.status(file->descriptor());
        if (!status)
            return tl::unexpected(status.error());
        if (status->st_ino != m_request.file.status.st_ino || status->st_dev != m_request.file.status.st_dev)
            return tl::unexpected(SystemError{EBUSY});
        if (const auto locked = m_ops.lock(file->descriptor(), LockKind::Exclusive);
            !locked && locked.error().number == EWOULDBLOCK)
            return tl::unexpected(SystemError{EBUSY});
        return file;
    }

    void show(InPlaceCopy &copy, const QString &why) {
        m_recovery.hindrance = why;
        m_recovery.notices.append(
            u"a save of it had been cut short, and it could not be made whole: %1; what it was before "
            "that save is shown"_s.arg(why));
        m_recovery.shown.emplace(std::move(copy));
    }

    /// Something else stands there now: it stays, and both versions are kept.
    void setAside(InPlaceCopy &copy) {
        const QString what = u"a save of it had been cut short, and something else was put in its place since"_s;
        if (!copy.isWritable()) { // kept again and again otherwise
            m_recovery.notices.append(u"%1; what it was before that save and what was to be saved are "
                                      "still in '%2'"_s.arg(what, copy.location()));
            return;
        }
        const auto base = keep([&](int file) { return copy.copyBase(file); });
        const auto next = base ? keep([&](int file) { return copy.copyNext(file); }) : base;
        if (!next) {
            m_recovery.notices.append(
                u"%1; what it was before that save and what was to be saved are still in '%2', but "
                "could not be kept in '%3': %4"_s.arg(what, copy.location(), m_request.stateFolder,
                                                      systemErrorWords(next.error())));
            return;
        }
        (void)copy.remove(); // one that stays is kept once more
        m_recovery.notices.append(
            u"%1; what it was before that save is kept in '%2', what was to be saved in '%3'"_s.arg(what, *base,
                                                                                                    *next));
    }

    SystemResult<QString> keep(const std::function<SystemResult<void>(int)> &fill) {
        return makeRescueFile(m_ops, m_request.stateFolder, m_request.path, fill);
    }

    FileOps &m_ops;
    const InPlaceRecoveryRequest &m_request;
    InPlaceRecovery m_recovery;
};

} // namespace

SystemResult<InPlaceRecovery> recoverInPlace(FileOps &ops, const InPlaceRecoveryRequest &request) {
    return Recovery(ops, request).run();
}

} // namespace qir
