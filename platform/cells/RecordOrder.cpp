#include "platform/cells/RecordOrder.h"

#include "base/LeadingNumber.h"

#include <QString>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

namespace qir {

namespace {

struct NumberKey {
    double value;
    std::uint32_t index;

    /// What is no number stands behind all numbers: components may hold such values.
    friend bool operator<(const NumberKey &left, const NumberKey &right) {
        if (std::isnan(left.value) || std::isnan(right.value))
            return std::isnan(left.value) == std::isnan(right.value) ? left.index < right.index
                                                                     : std::isnan(right.value);
        return left.value != right.value ? left.value < right.value : left.index < right.index;
    }
};

/// Sorts the texts that are no numbers.
class TextOrder {
public:
    explicit TextOrder(const CellColumn &column)
        : m_column(column) {}

    void add(std::uint32_t index, const QString &text) {
        const QString upper = text.toUpper();
        m_keys.push_back({prefixOf(upper), m_pool.size(), static_cast<std::uint32_t>(upper.size()), index});
        m_pool.append(reinterpret_cast<const char16_t *>(upper.utf16()), static_cast<std::size_t>(upper.size()));
    }

    void appendTo(std::vector<std::uint32_t> &order) {
        std::sort(m_keys.begin(), m_keys.end(),
                  [this](const Key &left, const Key &right) { return before(left, right); });
        for (const Key &key : m_keys)
            order.push_back(key.index);
    }

private:
    struct Key {
        std::uint64_t prefix; // the first upper-cased code units: most comparisons need no more
        std::size_t begin;    // of the upper-cased text in the pool
        std::uint32_t length;
        std::uint32_t index;
    };
    static constexpr qsizetype prefixUnits = 4;

    /// Compares as the code units do; a text that ends early stands before those that go on.
    static std::uint64_t prefixOf(const QString &text) {
        std::uint64_t prefix = 0;
        for (qsizetype i = 0; i < prefixUnits; ++i)
            prefix = prefix << 16 | (i < text.size() ? text[i].unicode() : 0U);
        return prefix;
    }

    std::u16string_view upper(const Key &key) const {
        return std::u16string_view(m_pool).substr(key.begin, key.length);
    }

    bool before(const Key &left, const Key &right) const {
        if (left.prefix != right.prefix)
            return left.prefix < right.prefix;
        if (const int order = upper(left).compare(upper(right)); order != 0)
            return order < 0;
        const QString leftText = m_column.at(left.index);
        const QString rightText = m_column.at(right.index);
        return leftText != rightText ? leftText < rightText : left.index < right.index;
    }

    const CellColumn &m_column;
    std::u16string m_pool;
    std::vector<Key> m_keys;
};

/// Puts the values of a column in their place one by one.
class ColumnOrder {
public:
    explicit ColumnOrder(const CellColumn &column)
        : m_others(column) {
        m_order.reserve(column.size());
    }

    void add(const CellStretch &stretch) {
        const bool numbers = !stretch.own() && !stretch.block().isText();
        for (std::size_t i = 0; i < stretch.size(); ++i, ++m_next) {
            if (numbers && (stretch.typed().empty() || !stretch.typed().contains(i))) {
                m_numbers.push_back({stretch.block().number(static_cast<qsizetype>(i)), m_next});
            } else {
                stretch.read(i, m_text);
                addText();
            }
        }
    }

    std::vector<std::uint32_t> take() {
        std::sort(m_numbers.begin(), m_numbers.end());
        for (const NumberKey &number : m_numbers)
            m_order.push_back(number.index);
        m_others.appendTo(m_order);
        return std::move(m_order);
    }

private:
    void addText() {
        if (m_text.isEmpty())
            m_order.push_back(m_next);
        else if (const std::optional<double> value = plainNumber(m_text))
            m_numbers.push_back({*value, m_next});
        else
            m_others.add(m_next, m_text);
    }

    std::vector<std::uint32_t> m_order; // the empty ones, until all are taken
    std::vector<NumberKey> m_numbers;
    TextOrder m_others;
    QString m_text;
    std::uint32_t m_next = 0;
};

} // namespace

std::vector<std::uint32_t> ascendingOrder(const CellColumn &column) {
    ColumnOrder order(column);
    for (const CellStretch &stretch : column.stretches())
        order.add(stretch);
    return order.take();
}

} // namespace qir
