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

/// An answer that is no rather than a trouble: there is no such record.
class NoAnswer : public std::runtime_error {
public:
    explicit NoAnswer(const QString &reason)
        : std::runtime_error(reason.toStdString()) {}
};

/// The same with its file; ends a command with Exit::Negative.
class NegativeAnswer : public FileError {
public:
    using FileError::FileError;
};

/// Ends what is done to a file, for this reason.
[[noreturn]] void refuse(const QString &reason);

/// Shows an error or a notice: "qirdb: text" on the standard error output, without what a terminal would act on.
void printError(const QString &text);

} // namespace qir
