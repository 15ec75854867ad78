#include "find/search/CellSearch.h"

#include "base/NumberText.h"
#include "base/columns/UnicodeText.h"

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
        if (!isEmpty())
            makeAutomaton();
        return;
    }
    for (const QChar unit : terms.text)
        m_sought.push_back(terms.matchCase ? unit.unicode() : QChar::toCaseFolded(unit.unicode()));
    m_inNarrow = std::all_of(m_sought.begin(), m_sought.end(), [this](char16_t unit) {
        return std::find(m_fold.begin(), m_fold.end(), unit) != m_fold.end();
    });
}

void CellSearch::makeAutomaton() {
    for (const bool wider : {false, true}) {
        auto automaton = TextAutomaton::of(
            m_terms.text, {.matchCase = m_terms.matchCase, .whole = m_terms.wholeCell, .wider = wider});
        if (!automaton)
            continue;
        (wider ? m_sieve : m_automaton) = std::make_shared<const TextAutomaton>(std::move(*automaton));
        return;
    }
}

bool CellSearch::hits(const QString &text) const {
    if (isEmpty())
        return false;
    if (m_terms.pattern)
        return m_expression.match(text).hasMatch();
    const Qt::CaseSensitivity sensitivity = m_terms.matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive;
    return m_terms.wholeCell ? text.compare(m_terms.text, sensitivity) == 0 : text.contains(m_terms.text, sensitivity);
}

bool CellSearch::hitsNarrow(const char *text, std::size_t size) const {
    const std::size_t length = m_sought.size();
    if (!m_inNarrow || size < length || (m_terms.wholeCell && size != length))
        return false;
    const auto at = [&](std::size_t place) { return m_fold[static_cast<unsigned char>(text[place])]; };
    const char16_t first = m_sought.front();
    for (std::size_t start = 0; start + length <= size; ++start) {
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

bool CellSearch::hitsAscii(const char *text, std::size_t size) const {
    return m_automaton ? m_automaton->hits(text, size) : hitsNarrow(text, size);
}

std::optional<bool> CellSearch::told(const char *text, std::size_t size) const {
    if (looksAtBytes())
        return hitsAscii(text, size);
    if (m_sieve && !m_sieve->hits(text, size))
        return false;
    return std::nullopt;
}

bool CellSearch::hitsOwn(const PackedTexts &texts, std::size_t index, QString &text) const {
    const PackedTexts::View view = texts.view(index);
    if (!m_terms.pattern && !view.wide)
        return hitsNarrow(view.bytes, view.size);
    if (!view.wide && isAscii(QByteArrayView(view.bytes, static_cast<qsizetype>(view.size))))
        if (const auto known = told(view.bytes, view.size))
            return *known;
    texts.read(index, text);
    return hits(text);
}

bool CellSearch::hitsValue(const ColumnBlock &block, qsizetype index, QString &text) const {
    if (looksAtBytes() || m_sieve) {
        std::optional<bool> known;
        if (!block.isText()) {
            std::array<char, numberTextCapacity> digits{};
            const bool fraction = block.type() == ColumnType::Double || block.type() == ColumnType::Date;
            const char *end = fraction ? formatNumber(digits.data(), block.number(index))
                                       : formatNumber(digits.data(), static_cast<int>(block.number(index)));
            known = told(digits.data(), static_cast<std::size_t>(end - digits.data()));
        } else if (const QByteArrayView bytes = block.textBytes(index); isAscii(bytes)) {
            known = told(bytes.data(), static_cast<std::size_t>(bytes.size()));
        }
        if (known)
            return *known;
    }
    block.readText(index, text);
    return hits(text);
}

void CellSearch::searchBlock(const ColumnBlock &block, const std::function<void(qsizetype index)> &hit) const {
    if (isEmpty())
        return;
    QString text;
    for (qsizetype index = 0; index < block.count(); ++index)
        if (hitsValue(block, index, text))
            hit(index);
}

void CellSearch::searchColumn(const CellTexts &texts, int field, int first, int last,
                              const std::function<void(int record)> &hit) const {
    if (isEmpty())
        return;
    QString text;
    std::size_t before = 0; // texts of the stretches passed
    const auto from = static_cast<std::size_t>(first - 1);
    const auto end = static_cast<std::size_t>(last);
    for (const CellStretch &stretch : texts.column(field).stretches()) {
        const std::size_t stop = std::min(end, before + stretch.size());
        for (std::size_t index = std::max(from, before); index < stop; ++index) {
            const std::size_t inside = index - before;
            bool found = false;
            if (stretch.own())
                found = hitsOwn(stretch.texts(), inside, text);
            else if (const auto typed = stretch.typed().find(inside); typed != stretch.typed().end())
                found = hits(typed->second);
            else
                found = hitsValue(stretch.block(), static_cast<qsizetype>(inside), text);
            if (found)
                hit(static_cast<int>(index) + 1);
        }
        before += stretch.size();
        if (before >= end)
            return;
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
