#pragma once

#include "base/FileOps.h"
#include "qirtbase/container/Container.h"
#include "qirtbase/file/SaveTarget.h"
#include "qirtbase/file/VersionNames.h"

#include <QString>

#include <functional>
#include <string>

namespace qir {

/// "NAME (conflict TIME)" for the entry of a folder.
VersionName conflictName(const std::string &name);

/// Tries one such name after the other until `take` succeeds, which fails with EEXIST where a name is taken. Gives the
/// name.
SystemResult<QString> underFreeName(const VersionName &name,
                                    const std::function<SystemResult<void>(const std::string &)> &take);

/// Copies what an open file holds to a new file "NAME (conflict TIME)" beside the target, or into the state folder
/// where the target's folder takes none. Synced. Gives the copy's name, or its path when it is elsewhere.
SystemResult<QString> keepVersionOf(FileOps &ops, int file, const SaveTarget &target, const QString &stateFolder);

/// Writes a whole file "NAME (rescued TIME).EXTENSION" into the state folder's rescue folder, synced. `path` is that of
/// the file that could not be saved, or "". Gives the path of the new file.
SystemResult<QString> writeRescueFile(FileOps &ops, const QString &stateFolder, const QString &path,
                                      ContainerWriter &writer);
/// The same with what `fill` writes into the new file.
SystemResult<QString> makeRescueFile(FileOps &ops, const QString &stateFolder, const QString &path,
                                     const std::function<SystemResult<void>(int file)> &fill);

} // namespace qir
