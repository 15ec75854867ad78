#pragma once

#include "base/Result.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace qir {

/// A command of a file of commands.
struct ScriptLine {
    int number; ///< Of the line that it begins on, from 1.
    QStringList words;
};

/// The commands of a text, one a line, in words as a shell parts and quotes them: '...' holds everything, "..." takes
/// a backslash before a double quote, a backslash, a dollar sign and a back quote, a backslash outside quotes takes
/// the next character as it is and goes on in the next line at a line's end. A # at the start of a word begins a
/// comment. Nothing is replaced: no variables, no patterns. Fails with the line where a quote is not closed.
Result<std::vector<ScriptLine>> scriptLines(const QString &text);

} // namespace qir
