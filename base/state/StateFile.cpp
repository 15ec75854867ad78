#include "base/state/StateFile.h"

#include "base/StagedFile.h"
#include "base/state/StateFolder.h"

#include <cerrno>

namespace qir {

namespace {

constexpr mode_t privateFile = 0600;

/// Gives a staged file the name, whatever stands under it.
SystemResult<void> publish(StagedFile &staged, const std::string &name) {
    const auto exchanged = staged.exchangeWith(name);
    if (exchanged && *exchanged == StagedFile::Exchanged::Yes)
        return staged.removeTemporary();
    if (exchanged)
        return staged.publishOver(name);
    if (exchanged.error().number == ENOENT)
        return staged.publishNew(name);
    return tl::unexpected(exchanged.error());
}

} // namespace

QByteArray StateFile::read() const {
    const std::string path = systemPath(m_folder) + '/' + m_name;
    const auto file = OpenFile::openAt(m_ops, AT_FDCWD, path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    if (!file)
        return {};
    const auto status = m_ops.status(file->descriptor());
    if (!status || !S_ISREG(status->st_mode) || status->st_size > mostBytes || !whyNotTrusted(*status).isEmpty())
        return {};
    QByteArray bytes(static_cast<qsizetype>(status->st_size), '\0');
    const auto count = readFully(m_ops, file->descriptor(), {bytes.data(), static_cast<std::size_t>(bytes.size())}, 0);
    return count ? bytes.first(static_cast<qsizetype>(*count)) : QByteArray();
}

SystemResult<void> StateFile::write(QByteArrayView bytes) const {
    const auto folder = openStateFolder(m_ops, m_folder, {});
    if (!folder)
        return tl::unexpected(folder.error());
    // Changing places with a folder would hide that under a name of ours.
    const auto standing = m_ops.statusAt(folder->descriptor(), m_name, FollowLinks::No);
    if (standing && S_ISDIR(standing->st_mode))
        return tl::unexpected(SystemError{EISDIR});
    auto staged = StagedFile::create(m_ops, folder->descriptor(), privateFile);
    if (!staged)
        return tl::unexpected(staged.error());
    if (const auto written = writeFully(m_ops, staged->descriptor(), bytes); !written)
        return written;
    // Without that a power failure could leave an empty file in the place of the old one.
    if (const auto synced = m_ops.syncData(staged->descriptor()); !synced)
        return synced;
    return publish(*staged, m_name);
}

} // namespace qir
