#pragma once

#include <QString>

#include <stdexcept>

namespace qir {

/// The binding itself failed: no library serves an identifier, a class lacks a member or has it in another shape, or
/// a member gave back something that is not what it is there for. The text names the class, the member and the types
/// of its arguments. What a component throws by itself is never turned into one of these.
class AutomationError : public std::runtime_error {
public:
    explicit AutomationError(const QString &text)
        : std::runtime_error(text.toStdString()) {}

    /// what() as it was given.
    QString text() const { return QString::fromUtf8(what()); }
};

} // namespace qir
