#pragma once

#include "base/FileOps.h"
#include "qirtbase/container/Container.h"
#include "qirtbase/container/RandomSource.h"

#include <QString>
#include <QStringList>

namespace qir {

/// A file whose key has changed on disk.
struct ResealRequest {
    QString stateFolder;
    const FileIdentifier &fileId;
    const ContainerKeys &before;
    const ContainerKeys &after;
    RandomSource &random;
};

/// Before a save that changes the key: journals that only the old key finds are given a name by which any version of
/// the file finds them, and tell by which password they are opened, so that none is lost where the program ends in the
/// middle. Gives what the user should know.
QStringList keepJournalsFindable(FileOps &ops, const ResealRequest &request);

/// After a save that set, changed or took away the password: journals that sessions which died have left are sealed
/// anew, so that the next open finds them and nothing that was typed can be read without the password; where there is
/// one, journals that were ended go. Gives what the user should know.
QStringList resealJournals(FileOps &ops, const ResealRequest &request);

} // namespace qir
