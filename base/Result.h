#pragma once

#include <QString>

#include <tl/expected.hpp>

namespace qir {

/// Why an operation that is expected to fail now and then did fail.
struct Error {
    QString text; ///< The reason in words, fit to be shown to a person; names the file where there is one.
};

/// A value, or the reason why there is none. Failures that a command cannot go on from are exceptions instead.
template<class T>
using Result = tl::expected<T, Error>;

/// `return failure(tr("..."));` in a function that gives a Result.
inline tl::unexpected<Error> failure(const QString &text) {
    return tl::unexpected<Error>(Error{text});
}

} // namespace qir
