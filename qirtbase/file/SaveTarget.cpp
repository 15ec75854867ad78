#include "qirtbase/file/SaveTarget.h"

#include "qirtbase/container/Container.h"

#include <algorithm>
#include <cerrno>
#include <set>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

std::set<FileIdentifier> &ownSaves() {
    static std::set<FileIdentifier> saves;
    return saves;
}

} // namespace

void rememberOwnSave(const FileIdentifier &saveId) {
    ownSaves().insert(saveId);
}

bool sameVersion(const struct stat &left, const struct stat &right) {
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino && left.st_size == right.st_size &&
           left.st_mtim.tv_sec == right.st_mtim.tv_sec && left.st_mtim.tv_nsec == right.st_mtim.tv_nsec;
}

bool sameVersion(const StandingFile &left, const StandingFile &right) {
    const auto saveId = [](const StandingFile &standing) {
        return standing.header ? standing.header->saveId : FileIdentifier{}; // which no file has
    };
    return left.exists && right.exists && sameVersion(left.status, right.status) && saveId(left) == saveId(right);
}

bool isReadOnly(FileOps &ops, int folder, const std::string &name) {
    constexpr mode_t anybodyWrites = S_IWUSR | S_IWGRP | S_IWOTH;
    const auto status = ops.statusAt(folder, name, FollowLinks::No);
    if (!status || !S_ISREG(status->st_mode))
        return false;
    if ((status->st_mode & anybodyWrites) == 0)
        return true;
    // Asking the file itself counts access lists and the identity that counts for files.
    const auto opened = OpenFile::openAt(ops, folder, name, O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    return !opened && (opened.error().number == EACCES || opened.error().number == EPERM);
}

tl::unexpected<Error> SaveTarget::failed(const QString &reason) const {
    return failure(u"%1: could not be saved: %2"_s.arg(m_expectation.name, reason));
}

tl::unexpected<Error> SaveTarget::conflict(const StandingFile &standing) const {
    const bool own = standing.header && ownSaves().contains(standing.header->saveId);
    return failure(u"%1: was changed %2 since it was opened; use Save As"_s.arg(
        m_expectation.name, own ? u"in the other pane"_s : u"by another program"_s));
}

Result<void> SaveTarget::open() {
    auto place = ResolvedPath::of(m_ops, systemPath(m_expectation.path));
    if (!place) {
        const int number = place.error().number;
        if (number == ENOENT || number == ENOTDIR)
            return failed(u"its folder is gone"_s);
        return failed(place.error());
    }
    m_place.emplace(std::move(*place));
    // Replacing a file asks for no permission on the file itself.
    if (isReadOnly(m_ops, folder(), name()))
        return failed(u"it is marked read-only; use Save As"_s);
    auto standing = look(m_place->name);
    if (!standing)
        return tl::unexpected(standing.error());
    m_standing = std::move(*standing);
    if (m_standing.exists && !m_expectation.replaceMeant && !isOurs(m_standing))
        return conflict(m_standing);
    return {};
}

Result<StandingFile> SaveTarget::look(const std::string &name) const {
    StandingFile standing;
    const auto status = m_ops.statusAt(folder(), name, FollowLinks::No);
    if (!status && status.error().number == ENOENT)
        return standing;
    if (!status)
        return failed(status.error());
    standing.exists = true;
    standing.status = *status;
    if (!S_ISREG(status->st_mode))
        return failed(u"its name now belongs to something that is not a file"_s);
    auto block = OpenFile::openAt(m_ops, folder(), name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK)
                     .map_error([](SystemError error) {
                         return LoadError{LoadErrorKind::Unreadable, systemErrorWords(error)};
                     })
                     .and_then([&](const OpenFile &file) { return readHeaderBlock(m_ops, file.descriptor()); });
    if (block)
        standing.header = std::move(block->header);
    else
        standing.unreadable = block.error().kind == LoadErrorKind::Unreadable;
    if (standing.unreadable && !m_expectation.replaceMeant)
        return failed(u"it cannot be read any more: %1"_s.arg(block.error().text));
    return standing;
}

bool SaveTarget::isStill(const StandingFile &now) const {
    return sameVersion(now, m_standing);
}

bool SaveTarget::isStill(int file, const struct stat &status) const {
    StandingFile now{.exists = true, .status = status, .header = {}};
    if (auto block = readHeaderBlock(m_ops, file))
        now.header = std::move(block->header);
    return isStill(now);
}

bool SaveTarget::isOurs(const StandingFile &standing) const {
    if (!standing.header)
        return m_expectation.torn;
    return std::ranges::find(m_expectation.ownSaveIds, standing.header->saveId) != m_expectation.ownSaveIds.end();
}

bool SaveTarget::cameLater() const {
    return m_expectation.replaceMeant && !(m_expectation.meant && sameVersion(m_standing, *m_expectation.meant));
}

bool SaveTarget::mayBeSomebodysVersion() const {
    if (!m_standing.exists || isOurs(m_standing))
        return false;
    return m_standing.unreadable || cameLater() ||
           (m_standing.header && m_standing.header->fileId == m_expectation.fileId);
}

} // namespace qir
