#include "base/order/RecordOrder.h"

#include "base/LeadingNumber.h"

#include <QString>

#include <algorithm>
#include <string>
#include <string_view>

namespace qir {

namespace {

struct NumberKey {
    double value;
    std::uint32_t index;

    friend bool operator<(const NumberKey &left, const NumberKey &right) {
        return left.value != right.value ? left.value < right.value : left.index < right.index;
    }
};

/// Sorts the texts that are no numbers.
class TextOrder {
public:
    explicit TextOrder(const PackedTexts &texts)
        : m_texts(texts) {}

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
        if (m_texts.view(left.index) == m_texts.view(right.index))
            return left.index < right.index;
        return m_texts.at(left.index) < m_texts.at(right.index);
    }

    const PackedTexts &m_texts;
    std::u16string m_pool;
    std::vector<Key> m_keys;
};

} // namespace

std::vector<std::uint32_t> ascendingOrder(const PackedTexts &texts) {
    std::vector<std::uint32_t> order;
    order.reserve(texts.size());
    std::vector<NumberKey> numbers;
    TextOrder others(texts);
    QString text;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const auto index = static_cast<std::uint32_t>(i);
        texts.read(i, text);
        if (text.isEmpty())
            order.push_back(index);
        else if (const std::optional<double> value = plainNumber(text))
            numbers.push_back({*value, index});
        else
            others.add(index, text);
    }
    std::sort(numbers.begin(), numbers.end());
    for (const NumberKey &number : numbers)
        order.push_back(number.index);
    others.appendTo(order);
    return order;
}

} // namespace qir
