#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace qir {

/// A text on one line that no terminal acts on: line ends and tabs as \n, \r, \t, other control characters as \u001b.
QString printableText(QStringView text);

/// Lines of values in columns as wide as their widest, for people. Numbers stand at the right.
class TextTable {
public:
    enum class Align { Left, Right };

    void addColumn(const QString &heading, Align align);
    /// `values` has one for each column.
    void addLine(QStringList values);
    QByteArray text() const;

private:
    std::vector<Align> m_aligns;
    std::vector<qsizetype> m_widths;
    std::vector<QStringList> m_lines{QStringList()}; // the headings first
};

} // namespace qir
