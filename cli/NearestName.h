#pragma once

#include <QString>
#include <QStringList>

namespace qir {

/// "; did you mean \"dump\"?" where one of the names is near to a word, "" where none is.
QString nearestWords(const QString &word, const QStringList &names);

} // namespace qir
