#include "qirtbase/file/KeptVersion.h"

#include "base/StagedFile.h"
#include "base/state/StateFolder.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <vector>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr char rescueFolder[] = "rescue";
constexpr mode_t privateFile = 0600;
constexpr std::size_t pieceSize = std::size_t{1} << 20;

using Fill = std::function<SystemResult<void>(int file)>;

/// Makes a synced file with this content under a free name.
SystemResult<QString> makeVersion(FileOps &ops, int folder, const VersionName &name, const Fill &fill) {
    auto staged = StagedFile::create(ops, folder, privateFile);
    if (!staged)
        return tl::unexpected(staged.error());
    if (const auto filled = fill(staged->descriptor()); !filled)
        return tl::unexpected(filled.error());
    if (const auto synced = ops.sync(staged->descriptor()); !synced)
        return tl::unexpected(synced.error());
    auto published = underFreeName(name, [&](const std::string &candidate) { return staged->publishNew(candidate); });
    if (published)
        if (const auto synced = ops.sync(folder); !synced)
            return tl::unexpected(synced.error());
    return published;
}

SystemResult<void> copyAll(FileOps &ops, int from, int to) {
    std::vector<char> piece(pieceSize);
    for (std::uint64_t at = 0;;) {
        const auto count = readFully(ops, from, piece, at);
        if (!count)
            return tl::unexpected(count.error());
        if (const auto written =
                writeFullyAt(ops, to, QByteArrayView(piece.data(), static_cast<qsizetype>(*count)), at);
            !written)
            return written;
        at += *count;
        if (*count < piece.size())
            return {};
    }
}

QString rescuePath(const QString &stateFolder, const QString &name) {
    return stateFolder + u'/' + QLatin1StringView(rescueFolder) + u'/' + name;
}

VersionName rescueName(const QString &path) {
    const QFileInfo info(path);
    VersionName name{info.completeBaseName(), u"rescued"_s, u".ddb"_s};
    if (name.name.isEmpty())
        name.name = u"unnamed"_s;
    else if (!info.suffix().isEmpty())
        name.extension = u'.' + info.suffix();
    return name;
}

SystemResult<QString> makeInRescueFolder(FileOps &ops, const QString &stateFolder, const VersionName &name,
                                         const Fill &fill) {
    const auto folder = openStateFolder(ops, stateFolder, rescueFolder);
    if (!folder)
        return tl::unexpected(folder.error());
    return makeVersion(ops, folder->descriptor(), name, fill).map([&](const QString &made) {
        return rescuePath(stateFolder, made);
    });
}

} // namespace

SystemResult<QString> underFreeName(const VersionName &name,
                                    const std::function<SystemResult<void>(const std::string &)> &take) {
    SystemError error{EEXIST};
    for (int number = 1; number <= versionNamesMax && error.number == EEXIST; ++number) {
        const QString candidate = versionName(name, number);
        const auto taken = take(systemPath(candidate));
        if (taken)
            return candidate;
        error = taken.error();
    }
    return tl::unexpected(error);
}

VersionName conflictName(const std::string &name) {
    return {QFile::decodeName(name.c_str()), u"conflict"_s, {}};
}

SystemResult<QString> keepVersionOf(FileOps &ops, int file, const SaveTarget &target, const QString &stateFolder) {
    const VersionName name = conflictName(target.name());
    const Fill fill = [&](int copy) { return copyAll(ops, file, copy); };
    const auto kept = makeVersion(ops, target.folder(), name, fill);
    return kept ? kept : makeInRescueFolder(ops, stateFolder, name, fill);
}

SystemResult<QString> writeRescueFile(FileOps &ops, const QString &stateFolder, const QString &path,
                                      ContainerWriter &writer) {
    return makeRescueFile(ops, stateFolder, path, [&](int file) { return writeContainer(ops, file, writer); });
}

SystemResult<QString> makeRescueFile(FileOps &ops, const QString &stateFolder, const QString &path, const Fill &fill) {
    return makeInRescueFolder(ops, stateFolder, rescueName(path), fill);
}

} // namespace qir
