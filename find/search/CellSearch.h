#pragma once

#include "find/search/TextAutomaton.h"
#include "platform/cells/CellTexts.h"

#include <QRegularExpression>
#include <QString>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace qir {

/// What is looked for in cells.
struct SearchTerms {
    QString text;
    bool matchCase = false;
    bool wholeCell = false;
    bool pattern = false; ///< `text` is a regular expression.
    friend bool operator==(const SearchTerms &, const SearchTerms &) = default;
};

/// Tells which texts hit, most of them as they stand in their column, without making strings of them.
class CellSearch {
public:
    CellSearch() = default; ///< Looks for nothing: no text hits.
    explicit CellSearch(const SearchTerms &terms);

    const SearchTerms &terms() const { return m_terms; }
    /// True where no text can hit: there is nothing to look for, or the regular expression is none.
    bool isEmpty() const { return m_terms.text.isEmpty() || !m_error.isEmpty(); }
    /// What is wrong with the regular expression, and where; "" nothing.
    const QString &error() const { return m_error; }

    bool hits(const QString &text) const;
    /// Calls `hit` for each of the values of a block that hits, counted from 0; as searchColumn().
    void searchBlock(const ColumnBlock &block, const std::function<void(qsizetype index)> &hit) const;
    /// May be called in any thread as long as the texts stay. Calls `hit` for each of the records `first` to `last`
    /// whose text in a field hits.
    void searchColumn(const CellTexts &texts, int field, int first, int last,
                      const std::function<void(int record)> &hit) const;

    /// A text that hits with every place replaced. In a replacement for a regular expression \1 stands for what its
    /// first parentheses took.
    QString replaced(QString text, const QString &replacement) const;

private:
    void makeAutomaton();
    /// The same for a text whose units all are below 256, a byte each.
    bool hitsNarrow(const char *text, std::size_t size) const;
    /// The same for a text of ASCII, also for a regular expression that looksAtBytes().
    bool hitsAscii(const char *text, std::size_t size) const;
    /// Texts of ASCII are looked at as they stand.
    bool looksAtBytes() const { return !m_terms.pattern || m_automaton != nullptr; }
    /// What can be told of a text of ASCII as it stands; nothing where that takes the expression itself.
    std::optional<bool> told(const char *text, std::size_t size) const;
    bool hitsValue(const ColumnBlock &block, qsizetype index, QString &text) const;
    bool hitsOwn(const PackedTexts &texts, std::size_t index, QString &text) const;

    SearchTerms m_terms;
    QRegularExpression m_expression;
    QString m_error;
    std::shared_ptr<const TextAutomaton> m_automaton; // for the expression, where it can be made; null else
    std::shared_ptr<const TextAutomaton> m_sieve;     // else one that misses none of its matches, where it can be made
    std::vector<char16_t> m_sought;                   // case folded where case does not count
    std::array<char16_t, 256> m_fold{};               // what a unit below 256 counts as
    bool m_inNarrow = false;                          // the sought text can stand in a text of such units
};

} // namespace qir
