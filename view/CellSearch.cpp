#include "view/CellSearch.h"

#include <QCoreApplication>

#include <algorithm>

namespace qir {

namespace {

QString wordsFor(const QRegularExpression &expression) {
    return QCoreApplication::translate("CellSearch", "No regular expression: %1 (at character %2)")
        .arg(expression.errorString())
        .arg(expression.patternErrorOffset() + 1);
}

} // namespace

CellSearch::CellSearch(const SearchTerms &terms)
    : m_terms(terms) {
    for (std::size_t unit = 0; unit < m_fold.size(); ++unit) {
        const auto code = static_cast<char16_t>(unit);
        m_fold[unit] = terms.matchCase ? code : QChar::toCaseFolded(code);
    }
    if (terms.pattern) {
        m_expression.setPattern(terms.wholeCell ? QRegularExpression::anchoredPattern(terms.text) : terms.text);
        m_expression.setPatternOptions(terms.matchCase ? QRegularExpression::NoPatternOption
                                                       : QRegularExpression::CaseInsensitiveOption);
        if (const QRegularExpression alone(terms.text); !alone.isValid())
            m_error = wordsFor(alone);
        else
            m_expression.optimize();
        return;
    }
    for (const QChar unit : terms.text)
        m_sought.push_back(terms.matchCase ? unit.unicode() : QChar::toCaseFolded(unit.unicode()));
    m_inNarrow = std::all_of(m_sought.begin(), m_sought.end(), [this](char16_t unit) {
        return std::find(m_fold.begin(), m_fold.end(), unit) != m_fold.end();
    });
}

bool CellSearch::hits(const QString &text) const {
    if (isEmpty())
        return false;
    if (m_terms.pattern)
        return m_expression.match(text).hasMatch();
    const Qt::CaseSensitivity sensitivity = m_terms.matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive;
    return m_terms.wholeCell ? text.compare(m_terms.text, sensitivity) == 0 : text.contains(m_terms.text, sensitivity);
}

bool CellSearch::hitsNarrow(const PackedTexts::View &text) const {
    const std::size_t length = m_sought.size();
    if (text.size < length || (m_terms.wholeCell && text.size != length))
        return false;
    const auto at = [&](std::size_t place) { return m_fold[static_cast<unsigned char>(text.bytes[place])]; };
    const char16_t first = m_sought.front();
    for (std::size_t start = 0; start + length <= text.size; ++start) {
        if (at(start) != first)
            continue;
        std::size_t same = 1;
        while (same < length && at(start + same) == m_sought[same])
            ++same;
        if (same == length)
            return true;
    }
    return false;
}

void CellSearch::searchColumn(const CellTexts &texts, int field, int first, int last,
                              const std::function<void(int record)> &hit) const {
    if (isEmpty())
        return;
    const PackedTexts &column = texts.column(field);
    QString text;
    for (int record = first; record <= last; ++record) {
        const auto index = static_cast<std::size_t>(record - 1);
        const PackedTexts::View view = column.view(index);
        bool found = false;
        if (m_terms.pattern || view.wide) {
            column.read(index, text);
            found = hits(text);
        } else {
            found = m_inNarrow && hitsNarrow(view);
        }
        if (found)
            hit(record);
    }
}

QString CellSearch::replaced(QString text, const QString &replacement) const {
    if (m_terms.pattern)
        return text.replace(m_expression, replacement);
    if (m_terms.wholeCell)
        return replacement;
    return text.replace(m_terms.text, replacement, m_terms.matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive);
}

} // namespace qir
