#include "cli/FolderLock.h"

#include "base/FileNames.h"

#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace qir {

FolderLock::FolderLock(const QString &file) {
    const QFileInfo info(reachIgnoringCase(file).value_or(file));
    const QString place = info.canonicalFilePath().isEmpty() ? info.absoluteFilePath() : info.canonicalFilePath();
    auto folder = OpenFile::openAt(FileOps::system(), AT_FDCWD, systemPath(QFileInfo(place).absolutePath()),
                                   O_RDONLY | O_DIRECTORY);
    if (!folder)
        return; // the load tells why
    m_folder = std::move(*folder);
    while (::flock(m_folder.descriptor(), LOCK_EX) != 0 && errno == EINTR) {
    }
}

} // namespace qir
