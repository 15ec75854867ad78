#pragma once

#include <QString>

#include <stdexcept>

namespace qir {

/// A command that cannot go on because of a file: shown as "qirdb: FILE: reason".
class FileError : public std::runtime_error {
public:
    /// A reason that begins with the file's name already keeps it once.
    FileError(const QString &file, const QString &reason);
};

/// The file was read, or tried to be, and is no database that can be opened: a wrong password, damage, another format.
class LoadRefused : public FileError {
public:
    using FileError::FileError;
};

/// Shows an error or a notice: "qirdb: text" on the standard error output, without what a terminal would act on.
void printError(const QString &text);

} // namespace qir
