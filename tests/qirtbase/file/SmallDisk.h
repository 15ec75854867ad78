#pragma once

#include <QString>
#include <QTemporaryDir>

#include <cstdint>
#include <memory>
#include <optional>

namespace qir {

/// A file system of its own in memory, of a given size, mounted in a namespace of the test's own: it is gone with the
/// process, whatever happens.
class SmallDisk {
public:
    /// Nothing where this process may not mount; `why` tells.
    static std::optional<SmallDisk> mount(std::uint64_t bytes, QString &why, unsigned inodes = 0);
    SmallDisk(SmallDisk &&other) noexcept = default;
    ~SmallDisk();

    QString path() const { return m_folder->path(); }
    std::uint64_t freeBytes() const;
    /// Takes room with a file of its own until only so much is free.
    void leaveFree(std::uint64_t bytes) const;
    void releaseRoom() const;

private:
    explicit SmallDisk(std::unique_ptr<QTemporaryDir> folder)
        : m_folder(std::move(folder)) {}
    QString fillerPath() const { return m_folder->filePath(QStringLiteral("filler")); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

} // namespace qir
