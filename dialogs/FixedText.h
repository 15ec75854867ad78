#pragma once

#include <QString>

#include <array>

namespace qir {

/// A string field of fixed length: a longer text is cut to the field, a shorter one filled up with blanks. Characters
/// are UTF-16 code units; a pair that would be torn at the end of the field is left out.
class FixedText {
public:
    static constexpr int length = 255;

    FixedText() { wipe(); }

    void store(QStringView text);
    /// All characters, the filling blanks included.
    QString text() const { return left(length); }
    /// The first `count` characters, at most all of them.
    QString left(int count) const;
    /// Overwrites the field with blanks.
    void wipe() { m_characters.fill(u' '); }

private:
    std::array<char16_t, length> m_characters;
};

/// The text without the blanks at its end, without those at both ends. Only blanks count, no other white space.
QString withoutTrailingBlanks(const QString &text);
QString withoutOuterBlanks(const QString &text);

} // namespace qir
