#include "qirtbase/file/ReadAhead.h"

#include "qirtbase/file/SaveTarget.h"

#include <fcntl.h>

#include <thread>
#include <utility>

namespace qir {

namespace {

/// Unlike the time of a write, that of a change to the file can be set by nobody.
bool sameTime(const struct timespec &left, const struct timespec &right) {
    return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

} // namespace

struct ReadAhead::Reading {
    Reading(FileOps &theOps, QString thePath, const ContainerLimits &theLimits, QString theStateFolder)
        : ops(theOps)
        , path(std::move(thePath))
        , limits(theLimits)
        , stateFolder(std::move(theStateFolder)) {}

    FileOps &ops;
    QString path;
    ContainerLimits limits;
    QString stateFolder;
    std::optional<ReadOutcome> outcome;
    QStringList notices;
    std::jthread thread; // last: it uses the others

    void run() noexcept;
    bool stillStands() const;
};

/// Runs in the thread. Whatever goes wrong is met again, and told, by the load that finds nothing here.
void ReadAhead::Reading::run() noexcept {
    const KeyDeriver none = [](const SecretBytes & /*password*/, const KdfParameters & /*kdf*/) {
        return LoadResult<SecretBytes>(refused(LoadErrorKind::WrongPassword, {}));
    };
    try {
        auto read = readDatabaseFile(
            ops, {.path = path, .password = {}, .limits = limits, .deriveKey = none, .stateFolder = stateFolder},
            notices);
        if (read)
            outcome = std::move(*read);
    } catch (...) { // NOLINT(bugprone-empty-catch): memory ran out, as the load will find
    }
}

bool ReadAhead::Reading::stillStands() const {
    if (!outcome || !outcome->status)
        return false;
    const auto now = ops.statusAt(AT_FDCWD, systemPath(path), FollowLinks::Yes);
    if (!now || !sameVersion(*now, *outcome->status) || !sameTime(now->st_ctim, outcome->status->st_ctim))
        return false;
    // What was written within one tick of the system's clock looks the same so far.
    const auto header = readFileHeader(ops, path);
    return header && header->saveId == outcome->container.header.saveId;
}

ReadAhead::ReadAhead() = default;
ReadAhead::~ReadAhead() = default;

void ReadAhead::start(FileOps &ops, const QString &path, const ContainerLimits &limits, const QString &stateFolder) {
    m_reading.reset();
    auto reading = std::make_unique<Reading>(ops, path, limits, stateFolder);
    reading->thread = std::jthread([mine = reading.get()] { mine->run(); });
    m_reading = std::move(reading);
}

std::optional<ReadOutcome> ReadAhead::take(const QString &path, QStringList &notices) {
    if (!m_reading)
        return std::nullopt;
    const std::unique_ptr<Reading> reading = std::exchange(m_reading, nullptr);
    reading->thread.join();
    notices.append(reading->notices);
    if (reading->path != path || !reading->stillStands())
        return std::nullopt;
    return std::move(reading->outcome);
}

} // namespace qir
