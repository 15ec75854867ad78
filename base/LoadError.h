#pragma once

#include <QString>

#include <tl/expected.hpp>

namespace qir {

/// Why a database file could not be loaded. The kinds are what a caller may want to act on; the text is for people.
enum class LoadErrorKind {
    Missing,       ///< Nothing stands there, or a folder on the way is missing.
    AmbiguousName, ///< Two entries differ from the name only in case, none is exact.
    NotAFile,      ///< A folder, device, pipe or socket.
    Unreadable,    ///< The system refused to open or read it.
    Empty,         ///< 0 bytes.
    NotADatabase,  ///< Not one of our files.
    Truncated,     ///< Shorter than it says.
    Damaged,       ///< A check over the bytes failed, or they contradict themselves.
    NewerVersion,  ///< Made by a newer version, or needs something that this one does not know.
    WrongPassword, ///< Protected, and the password does not open it.
    Limits,        ///< Asks for more memory, time or items than is accepted.
};

struct LoadError {
    LoadErrorKind kind;
    QString text; ///< Names the file and the reason; fit to be shown.
};

template<class T>
using LoadResult = tl::expected<T, LoadError>;

/// `return refused(LoadErrorKind::Empty, reason);` in a function that gives a LoadResult.
inline tl::unexpected<LoadError> refused(LoadErrorKind kind, const QString &text) {
    return tl::unexpected(LoadError{kind, text});
}

} // namespace qir
