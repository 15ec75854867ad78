#include "cli/TextTable.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

qsizetype widthOf(QStringView text) {
    return std::ranges::count_if(text, [](QChar unit) { return !unit.isLowSurrogate() && !unit.isMark(); });
}

} // namespace

QString printableText(QStringView text) {
    QString printable;
    printable.reserve(text.size());
    for (const QChar unit : text) {
        if (unit == u'\n')
            printable += "\\n"_L1;
        else if (unit == u'\r')
            printable += "\\r"_L1;
        else if (unit == u'\t')
            printable += "\\t"_L1;
        else if (unit.category() == QChar::Other_Control)
            printable += u"\\u%1"_s.arg(unit.unicode(), 4, 16, QChar(u'0'));
        else
            printable += unit;
    }
    return printable;
}

void TextTable::addColumn(const QString &heading, Align align) {
    m_aligns.push_back(align);
    m_lines.front() += printableText(heading);
    m_widths.push_back(widthOf(m_lines.front().constLast()));
}

void TextTable::addLine(QStringList values) {
    for (qsizetype column = 0; column < values.size(); ++column) {
        values[column] = printableText(values.at(column));
        auto &width = m_widths[static_cast<std::size_t>(column)];
        width = std::max(width, widthOf(values.at(column)));
    }
    m_lines.push_back(std::move(values));
}

QByteArray TextTable::text() const {
    QByteArray out;
    for (const QStringList &line : m_lines) {
        QString padded;
        for (qsizetype column = 0; column < line.size(); ++column) {
            const auto index = static_cast<std::size_t>(column);
            const QString blanks(m_widths[index] - widthOf(line.at(column)), u' ');
            if (column > 0)
                padded += "  "_L1;
            padded += m_aligns[index] == Align::Right ? blanks + line.at(column) : line.at(column) + blanks;
        }
        while (padded.endsWith(u' '))
            padded.chop(1);
        out += padded.toUtf8() + '\n';
    }
    return out;
}

} // namespace qir
