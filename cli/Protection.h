#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

namespace qir {

/// The extensions that databases have, in lower case.
QStringList databaseExtensions();

/// True when the header of a database file says that a password is needed. Whatever cannot be read is not protected,
/// and opening it tells why.
bool needsPassword(const QString &file);

/// How much of a file beginsAsDatabase() looks at.
inline constexpr int databaseHeadSize = 13;

/// True for the first bytes of a database of ours, of whatever version and in whatever state.
bool beginsAsDatabase(QByteArrayView head);

} // namespace qir
