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
    explicit SecretText(QString text)
        : m_text(std::move(text)) {}
    ~SecretText() {
        if (m_text.isDetached())
            overwrite(m_text);
    }
    SecretText(const SecretText &) = delete;
    SecretText &operator=(const SecretText &) = delete;

    const QString &text() const { return m_text; }

private:
    QString m_text;
};

} // namespace qir
