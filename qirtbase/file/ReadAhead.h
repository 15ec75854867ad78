#pragma once

#include "qirtbase/file/FileRead.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace qir {

/// A file without a password that is read in a thread of its own, so that two are read at the same time.
class ReadAhead {
public:
    ReadAhead();
    ~ReadAhead(); ///< Waits for the thread.
    ReadAhead(const ReadAhead &) = delete;
    ReadAhead &operator=(const ReadAhead &) = delete;

    /// Drops the one before. `ops` must outlive this. Throws std::system_error where no thread is to be had.
    void start(FileOps &ops, const QString &path, const ContainerLimits &limits, const QString &stateFolder);
    /// What was read, once; waits for it. Nothing where that was another path, where it could not be read, and where
    /// it may no longer be what stands there. What the user should know is added to `notices` all the same.
    std::optional<ReadOutcome> take(const QString &path, QStringList &notices);

private:
    struct Reading;
    std::unique_ptr<Reading> m_reading;
};

} // namespace qir
