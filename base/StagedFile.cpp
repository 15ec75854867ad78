#include "base/StagedFile.h"

#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>

#ifndef RENAME_NOREPLACE
#include <linux/fs.h>
#endif

namespace qir {

namespace {

constexpr int linksMax = 40;
constexpr int namesMax = 16;
constexpr mode_t modeBits = 07777;

tl::unexpected<SystemError> failed(int number) {
    return tl::unexpected(SystemError{number});
}

constexpr std::string_view hiddenStart = ".qir-";
constexpr std::string_view hiddenEnd = ".tmp";
constexpr std::size_t hiddenDigits = 16;

/// ".qir-TAG-RANDOM.tmp": short, so that it fits wherever a name fits.
std::string hiddenName(const std::string &tag) {
    char digits[hiddenDigits + 1];
    std::snprintf(digits, sizeof digits, "%016llx",
                  static_cast<unsigned long long>(QRandomGenerator::system()->generate64()));
    return std::string(hiddenStart) + tag + '-' + digits + std::string(hiddenEnd);
}

/// Errors that say for certain that nothing was done; others may come after the deed, on network file systems above
/// all.
bool isCertain(SystemError error) {
    return isUnsupported(error) || isForbidden(error) || error.number == ENOSPC || error.number == EDQUOT;
}

/// Those that belong to the user's file; the system's own are the system's to set.
bool isUsersAttribute(const std::string &name) {
    return name.starts_with("user.") || name == "system.posix_acl_access";
}

SystemResult<void> copyExtendedAttributes(FileOps &ops, int from, int to) {
    const auto names = ops.attributeNames(from);
    if (!names)
        return isUnsupported(names.error()) ? SystemResult<void>() : tl::unexpected(names.error());
    for (const std::string &name : *names) {
        if (!isUsersAttribute(name))
            continue;
        const auto value = ops.attribute(from, name);
        if (!value)
            return tl::unexpected(value.error());
        if (const auto set = ops.setAttribute(to, name, *value); !set)
            return set;
    }
    return {};
}

} // namespace

SystemResult<ResolvedPath> ResolvedPath::of(FileOps &ops, const std::string &path) {
    std::string rest = path;
    OpenFile folder;
    const auto folderNumber = [&] { return folder ? folder.descriptor() : AT_FDCWD; };
    for (int links = 0; links <= linksMax; ++links) {
        const std::size_t slash = rest.rfind('/');
        const std::string name = slash == std::string::npos ? rest : rest.substr(slash + 1);
        if (rest.empty())
            return failed(ENOENT);
        if (name.empty() || name == "." || name == "..")
            return failed(EISDIR);
        const std::string folderPath = slash == std::string::npos ? "." : slash == 0 ? "/" : rest.substr(0, slash);
        auto opened = OpenFile::openAt(ops, folderNumber(), folderPath, O_RDONLY | O_DIRECTORY);
        const bool canSync = opened || opened.error().number != EACCES;
        if (!canSync)
            opened = OpenFile::openAt(ops, folderNumber(), folderPath, O_PATH | O_DIRECTORY);
        if (!opened)
            return tl::unexpected(opened.error());
        folder = std::move(*opened);
        auto target = ops.readLinkAt(folder.descriptor(), name);
        if (!target && (target.error().number == EINVAL || target.error().number == ENOENT)) // no link, or nothing
            return ResolvedPath{std::move(folder), name, canSync};
        if (!target)
            return tl::unexpected(target.error());
        rest = std::move(*target);
    }
    return failed(ELOOP);
}

SystemResult<void> ResolvedPath::syncFolder(FileOps &ops) const {
    if (!canSync)
        return {};
    const auto synced = ops.sync(folder.descriptor());
    if (!synced && synced.error().number == EINVAL) // a file system that has no such call for folders
        return {};
    return synced;
}

StagedFile::StagedFile(FileOps &ops, int folder, OpenFile file, std::string tag, std::string temporaryName)
    : m_ops(ops)
    , m_folder(folder)
    , m_file(std::move(file))
    , m_tag(std::move(tag))
    , m_temporaryName(std::move(temporaryName)) {}

StagedFile::StagedFile(StagedFile &&other) noexcept
    : m_ops(other.m_ops)
    , m_folder(other.m_folder)
    , m_file(std::move(other.m_file))
    , m_tag(std::move(other.m_tag))
    , m_temporaryName(std::exchange(other.m_temporaryName, {}))
    , m_uncertain(other.m_uncertain) {}

StagedFile::~StagedFile() {
    (void)removeTemporary();
}

SystemResult<StagedFile> StagedFile::create(FileOps &ops, int folder, mode_t mode, const std::string &tag) {
    auto file = OpenFile::openAt(ops, folder, ".", O_TMPFILE | O_RDWR, mode);
    if (file)
        return StagedFile(ops, folder, std::move(*file), tag, {});
    // EISDIR and ENOENT: kernels and file systems that take it for a plain open of the folder.
    const SystemError error = file.error();
    if (!isUnsupported(error) && error.number != EISDIR && error.number != ENOENT)
        return tl::unexpected(error);
    for (int tries = 0; tries < namesMax; ++tries) {
        const std::string name = hiddenName(tag);
        file = OpenFile::openAt(ops, folder, name, O_CREAT | O_EXCL | O_NOFOLLOW | O_RDWR, mode);
        if (file)
            return StagedFile(ops, folder, std::move(*file), tag, name);
        if (file.error().number != EEXIST)
            break;
    }
    return tl::unexpected(file.error());
}

std::optional<std::string> StagedFile::tagOf(const std::string &name) {
    const std::size_t fixed = hiddenStart.size() + 1 + hiddenDigits + hiddenEnd.size();
    if (!name.starts_with(hiddenStart) || !name.ends_with(hiddenEnd) || name.size() < fixed)
        return std::nullopt;
    return name.substr(hiddenStart.size(), name.size() - fixed);
}

SystemResult<void> StagedFile::takeAttributes(const struct stat &old, int oldFile) {
    const auto made = m_ops.status(descriptor());
    if (!made)
        return tl::unexpected(made.error());
    // Owner first: changing it takes bits away from the mode.
    if (made->st_uid != old.st_uid || made->st_gid != old.st_gid)
        if (const auto set = m_ops.setOwner(descriptor(), old.st_uid, old.st_gid); !set)
            return set;
    if (oldFile >= 0)
        if (const auto copied = copyExtendedAttributes(m_ops, oldFile, descriptor()); !copied)
            return copied;
    return m_ops.setMode(descriptor(), old.st_mode & modeBits);
}

StagedFile::Standing StagedFile::standingUnder(const std::string &name) {
    const auto there = m_ops.statusAt(m_folder, name, FollowLinks::No);
    if (!there && there.error().number == ENOENT)
        return Standing::No;
    const auto ours = m_ops.status(m_file.descriptor());
    if (!there || !ours)
        return Standing::Unknown;
    return there->st_dev == ours->st_dev && there->st_ino == ours->st_ino ? Standing::Yes : Standing::No;
}

template<class Call>
StagedFile::Naming StagedFile::named(const std::string &name, Call call) {
    for (int tries = 1;; ++tries) {
        const SystemResult<void> done = call();
        if (done)
            return {Standing::Yes, {}};
        const Standing standing = isCertain(done.error()) ? Standing::No : standingUnder(name);
        if (standing != Standing::No || done.error().number != EINTR || tries == FileOps::interruptedTries)
            return {standing, done.error()};
    }
}

SystemResult<void> StagedFile::nameTemporarily() {
    if (!m_temporaryName.empty())
        return {};
    SystemError error{EEXIST};
    for (int tries = 0; tries < namesMax && error.number == EEXIST; ++tries) {
        const std::string name = hiddenName(m_tag);
        const Naming naming = named(name, [&] { return m_ops.linkFile(m_file.descriptor(), m_folder, name); });
        if (naming.standing == Standing::Yes) {
            m_temporaryName = name;
            return {};
        }
        if (naming.standing == Standing::Unknown && naming.error.number != EEXIST)
            (void)m_ops.unlinkAt(m_folder, name); // if it is there, it is ours
        error = naming.error;
    }
    return tl::unexpected(error);
}

SystemResult<void> StagedFile::publishNew(const std::string &name) {
    if (!m_temporaryName.empty())
        return renameTemporary(name);
    const Naming linked = named(name, [&] { return m_ops.linkFile(m_file.descriptor(), m_folder, name); });
    if (linked.standing == Standing::Yes)
        return {};
    m_uncertain = linked.standing == Standing::Unknown;
    return tl::unexpected(linked.error);
}

SystemResult<void> StagedFile::renameTemporary(const std::string &name) {
    auto renamed = moveTemporary(name, RENAME_NOREPLACE);
    if (!renamed && isUnsupported(renamed.error())) {
        // Without the flag the check and the renaming are two steps; nothing better is to be had there.
        const auto there = m_ops.statusAt(m_folder, name, FollowLinks::No);
        if (there)
            return failed(EEXIST);
        if (there.error().number != ENOENT)
            return tl::unexpected(there.error());
        renamed = moveTemporary(name, 0);
    }
    if (renamed)
        m_temporaryName.clear();
    return renamed;
}

/// Renames what stands under the hidden name. It may be another file than this one, so what a failed call did shows in
/// whether the hidden name is still there.
SystemResult<void> StagedFile::moveTemporary(const std::string &name, unsigned flags) {
    for (int tries = 1;; ++tries) {
        const auto renamed = m_ops.renameAt(m_folder, m_temporaryName, name, flags);
        if (renamed)
            return renamed;
        const auto there = m_ops.statusAt(m_folder, m_temporaryName, FollowLinks::No);
        if (!there && there.error().number == ENOENT)
            return {};
        m_uncertain = !there && !isCertain(renamed.error());
        if (!there || renamed.error().number != EINTR || tries == FileOps::interruptedTries)
            return renamed;
    }
}

SystemResult<StagedFile::Exchanged> StagedFile::exchangeWith(const std::string &name) {
    if (const auto hidden = nameTemporarily(); !hidden)
        return tl::unexpected(hidden.error());
    const Naming exchanged =
        named(name, [&] { return m_ops.renameAt(m_folder, m_temporaryName, name, RENAME_EXCHANGE); });
    if (exchanged.standing == Standing::Yes)
        return Exchanged::Yes;
    m_uncertain = exchanged.standing == Standing::Unknown;
    if (m_uncertain) // what the hidden name holds may be the only copy of something
        leaveTemporary();
    else if (isUnsupported(exchanged.error))
        return Exchanged::NotSupported;
    return tl::unexpected(exchanged.error);
}

SystemResult<void> StagedFile::publishOver(const std::string &name) {
    if (const auto hidden = nameTemporarily(); !hidden)
        return hidden;
    const Naming renamed = named(name, [&] { return m_ops.renameAt(m_folder, m_temporaryName, name, 0); });
    m_uncertain = renamed.standing == Standing::Unknown;
    if (renamed.standing != Standing::Yes)
        return tl::unexpected(renamed.error);
    m_temporaryName.clear();
    return {};
}

SystemResult<void> StagedFile::removeTemporary() {
    if (m_temporaryName.empty())
        return {};
    const std::string name = std::exchange(m_temporaryName, {});
    for (int tries = 1;; ++tries) {
        const auto removed = m_ops.unlinkAt(m_folder, name);
        if (removed || removed.error().number == ENOENT)
            return {};
        if (removed.error().number != EINTR || tries == FileOps::interruptedTries)
            return removed;
    }
}

} // namespace qir
