#pragma once

#include <QString>

#include <utility>

namespace qir {

/// A password: overwritten in memory when it is no longer needed.
class Secret {
public:
    Secret() = default;
    explicit Secret(QString &&text)
        : m_text(std::move(text)) {}
    Secret(Secret &&other) noexcept
        : m_text(std::exchange(other.m_text, QString())) {}
    Secret &operator=(Secret &&other) noexcept;
    ~Secret() { wipe(); }

    const QString &text() const { return m_text; }

private:
    void wipe();

    QString m_text;
};

/// The first line of a file, without its line end. Throws FileError.
Secret readPasswordFile(const QString &file);

/// Asks on the terminal, without showing what is typed. Throws std::runtime_error where there is no terminal.
Secret askPassword(const QString &prompt);

} // namespace qir
