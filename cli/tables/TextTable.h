#pragma once

#include <QByteArray>
#include <QString>

#include <span>
#include <vector>

namespace qir {

/// A text on one line that no terminal acts on: line ends and tabs as \n, \r, \t, other control characters as \u001b.
QString printableText(QStringView text);

/// Lines of values in columns, for people. Numbers stand at the right. Each column is as wide as its widest value, up
/// to a bound: what is wider moves the rest of its line, and one long value costs no blanks on all other lines. So the
/// values are seen twice, once to measure() and once to appendLine(), and none is kept.
class TextTable {
public:
    enum class Align { Left, Right };
    static constexpr qsizetype widest = 60;

    void addColumn(const QString &heading, Align align);
    /// `values` has one for each column, here and below.
    void measure(std::span<const QString> values);
    void appendHeading(QByteArray &out) const { appendLine(out, m_headings); }
    void appendLine(QByteArray &out, std::span<const QString> values) const;

private:
    void measure(std::size_t column, const QString &value);

    std::vector<Align> m_aligns;
    std::vector<qsizetype> m_widths;
    std::vector<QString> m_headings;
};

} // namespace qir
