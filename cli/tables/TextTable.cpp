#include "cli/tables/TextTable.h"

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
    m_headings.push_back(heading);
    m_widths.push_back(0);
    measure(m_widths.size() - 1, heading);
}

void TextTable::measure(std::span<const QString> values) {
    for (std::size_t column = 0; column < values.size(); ++column)
        measure(column, values[column]);
}

void TextTable::measure(std::size_t column, const QString &value) {
    if (const qsizetype width = widthOf(printableText(value)); width <= widest)
        m_widths[column] = std::max(m_widths[column], width);
}

void TextTable::appendLine(QByteArray &out, std::span<const QString> values) const {
    QString line;
    for (std::size_t column = 0; column < values.size(); ++column) {
        const QString value = printableText(values[column]);
        const QString blanks(std::max(qsizetype{0}, m_widths[column] - widthOf(value)), u' ');
        if (column > 0)
            line += "  "_L1;
        line += m_aligns[column] == Align::Right ? blanks + value : value + blanks;
    }
    while (line.endsWith(u' '))
        line.chop(1);
    out += line.toUtf8() + '\n';
}

} // namespace qir
