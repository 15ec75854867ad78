#pragma once

#include <QString>

#include <utility>

namespace qir {

/// Overwrites the characters of a text in memory, those of every copy that shares them, and empties it. For
/// passwords: the memory that a text leaves behind is not cleared by itself.
void overwrite(QString &text);

/// A text that is overwritten when it is done with, unless somebody it was handed to has kept it.
class SecretText {
public:
    SecretText() = default;
    explicit SecretText(QString text)
        : m_text(std::move(text)) {}
    SecretText(SecretText &&other) noexcept
        : m_text(std::exchange(other.m_text, QString())) {}
    SecretText &operator=(SecretText &&other) noexcept {
        wipe();
        m_text = std::exchange(other.m_text, QString());
        return *this;
    }
    ~SecretText() { wipe(); }

    const QString &text() const { return m_text; }
    void wipe() {
        if (m_text.isDetached())
            overwrite(m_text);
        m_text.clear();
    }

private:
    QString m_text;
};

} // namespace qir
