#pragma once

#include "base/Result.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>

namespace qir {

/// The text of an argument that is UTF-8: back in UTF-8 it is the same bytes, so that a file name reaches its own file.
QString argumentText(QByteArrayView argument);

/// The texts of a program's arguments, as main() has them. Fails with words for the user, which no terminal acts on,
/// where one, or the path of the current folder, is not UTF-8: what cannot be a text would reach the file of another
/// name.
Result<QStringList> argumentTexts(int count, const char *const *arguments);

} // namespace qir
