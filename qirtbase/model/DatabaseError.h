#pragma once

#include <QString>

#include <stdexcept>

namespace qir {

/// A member of the component that could not do what it was called for. what() is UTF-8, fit to be shown as it is.
class DatabaseError : public std::runtime_error {
public:
    explicit DatabaseError(const QString &text)
        : std::runtime_error(text.toStdString()) {}
};

} // namespace qir
