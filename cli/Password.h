#pragma once

#include "base/SecretText.h"

#include <QString>

#include <optional>
#include <string>

namespace qir {

/// The first line of a file, without its line end. Throws FileError.
SecretText readPasswordFile(const QString &file);

/// Asks on the terminal, which acts on nothing in prompt and note, without showing what is typed. A note stands in a
/// line of its own before the prompt. Throws std::runtime_error where there is no terminal.
SecretText askPassword(const QString &prompt, const QString &note = {});

/// The password that a command was told how to get: the first line of `passwordFile`, or, where that is "", what is
/// typed after prompt and note. Throws as these two do.
SecretText givenPassword(const std::string &passwordFile, const QString &prompt, const QString &note = {});

/// What is wrong with a new password that the editor's boxes could not give back, so that it would open the file here
/// but not there: they keep 255 characters, take no control characters, and drop blanks at the end. Nothing for a good
/// one.
std::optional<QString> newPasswordProblem(QStringView password);

} // namespace qir
