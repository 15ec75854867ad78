#include "compare/engine/KeyedComparison.h"

#include "compare/engine/KeyTable.h"

#include <QHash>

#include <algorithm>
#include <array>

namespace qir {

namespace {

constexpr int recordsPerStep = 1024;
constexpr std::size_t bitsPerWord = 64;

void stepAt(int record, const KeyedStep &step) {
    if (step && record % recordsPerStep == 0)
        step();
}

std::vector<int> sideOf(const std::vector<FieldPair> &pairs, int FieldPair::*side) {
    std::vector<int> fields;
    fields.reserve(pairs.size());
    for (const FieldPair &pair : pairs)
        fields.push_back(pair.*side);
    return fields;
}

/// Finds out which records belong together.
class RecordMatcher {
public:
    RecordMatcher(TableSource &left, TableSource &right, const KeyedFields &fields, const CellTolerance &tolerance)
        : m_left(left)
        , m_right(right)
        , m_keys(left, sideOf(fields.key, &FieldPair::left), right, sideOf(fields.key, &FieldPair::right), tolerance)
        , m_next(static_cast<std::size_t>(left.records()) + 1) {}

    void match(KeyedDifference &difference, const KeyedStep &step) {
        difference.partners.assign(static_cast<std::size_t>(m_left.records()), 0);
        for (int record = 1; record <= m_left.records(); ++record) {
            stepAt(record, step);
            takeLeft(record);
        }
        for (int record = 1; record <= m_right.records(); ++record) {
            stepAt(record, step);
            takeRight(record, difference);
        }
        for (int record = 1; record <= m_left.records(); ++record) {
            if (difference.partners[static_cast<std::size_t>(record - 1)] == 0)
                difference.removed.push_back(record);
        }
        for (const auto &doubles : {m_leftDoubles, m_rightDoubles})
            difference.duplicates.insert(difference.duplicates.end(), doubles.begin(), doubles.end());
    }

private:
    /// What is known of a key: the records that have it.
    struct Holders {
        int nextLeft = 0; ///< The first left record that has no partner yet.
        int lastLeft = 0;
        int firstRight = 0;
    };
    using Doubles = std::vector<DuplicateKey>;

    Holders &holders(const KeyTable::Entry &entry) {
        if (entry.key >= m_holders.size())
            m_holders.resize(entry.key + 1);
        return m_holders[entry.key];
    }

    void takeLeft(int record) {
        const KeyTable::Entry entry = m_keys.insert(KeyTable::Side::Left, record);
        Holders &found = holders(entry);
        if (entry.isNew) {
            found.nextLeft = record;
        } else {
            m_next[static_cast<std::size_t>(found.lastLeft)] = record;
            countDouble(m_leftDoubles, m_leftNumbers, entry.key, TableSide::Left, found.nextLeft, record);
        }
        found.lastLeft = record;
    }

    void takeRight(int record, KeyedDifference &difference) {
        const KeyTable::Entry entry = m_keys.insert(KeyTable::Side::Right, record);
        Holders &found = holders(entry);
        if (found.firstRight == 0)
            found.firstRight = record;
        else
            countDouble(m_rightDoubles, m_rightNumbers, entry.key, TableSide::Right, found.firstRight, record);
        if (found.nextLeft == 0) {
            difference.added.push_back(record);
            return;
        }
        difference.partners[static_cast<std::size_t>(found.nextLeft - 1)] = record;
        found.nextLeft = m_next[static_cast<std::size_t>(found.nextLeft)];
    }

    static void countDouble(Doubles &doubles, QHash<std::size_t, std::size_t> &numbers, std::size_t key, TableSide side,
                            int first, int record) {
        const auto known = numbers.constFind(key);
        if (known != numbers.constEnd()) {
            ++doubles[*known].count;
            return;
        }
        numbers.insert(key, doubles.size());
        doubles.push_back({side, first, record, 2});
    }

    TableSource &m_left;
    TableSource &m_right;
    KeyTable m_keys;
    std::vector<Holders> m_holders;
    std::vector<int> m_next; // left record: the next one of its key, 0 for none
    Doubles m_leftDoubles;
    Doubles m_rightDoubles;
    QHash<std::size_t, std::size_t> m_leftNumbers; // key: its element above
    QHash<std::size_t, std::size_t> m_rightNumbers;
};

/// Compares the records that belong together, value by value.
class ValueComparison {
public:
    ValueComparison(TableSource &left, TableSource &right, const KeyedFields &fields, const CellTolerance &tolerance)
        : m_left(left)
        , m_right(right)
        , m_rules(tolerance)
        , m_columns(fields.compared.size())
        , m_words((m_columns + bitsPerWord - 1) / bitsPerWord) {
        for (const FieldPair &pair : fields.compared)
            m_fields.push_back({pair, left.fieldType(pair.left), right.fieldType(pair.right)});
    }

    void compare(KeyedDifference &difference, const KeyedStep &step) {
        for (int record = 1; record <= m_left.records(); ++record) {
            stepAt(record, step);
            const int partner = difference.partners[static_cast<std::size_t>(record - 1)];
            if (partner != 0 && differs(record, partner))
                difference.changed.push_back({{record, partner}, difference.changed.size()});
        }
        difference.cells = BitMatrix(difference.changed.size(), m_columns);
        const std::size_t words = difference.cells.wordsPerRow();
        for (std::size_t row = 0; row < difference.changed.size(); ++row)
            difference.cells.setRow(row, std::span(m_bits).subspan(row * words, words));
    }

private:
    struct TypedPair {
        FieldPair pair;
        FieldType leftType;
        FieldType rightType;
    };

    /// Keeps the flags of a record that differs.
    bool differs(int left, int right) {
        bool found = false;
        std::ranges::fill(m_words, 0);
        for (std::size_t i = 0; i < m_columns; ++i) {
            const TypedPair &field = m_fields[i];
            if (m_rules.same(m_left.cell(left, field.pair.left), field.leftType, m_right.cell(right, field.pair.right),
                             field.rightType))
                continue;
            m_words[i / bitsPerWord] |= std::uint64_t{1} << (i % bitsPerWord);
            found = true;
        }
        if (found)
            m_bits.insert(m_bits.end(), m_words.begin(), m_words.end());
        return found;
    }

    TableSource &m_left;
    TableSource &m_right;
    CellRules m_rules;
    std::size_t m_columns;
    std::vector<TypedPair> m_fields;
    std::vector<std::uint64_t> m_words; // of one record
    std::vector<std::uint64_t> m_bits;  // of all changed ones
};

void findMoved(KeyedDifference &difference) {
    std::vector<int> lefts;
    std::vector<int> rights;
    for (std::size_t i = 0; i < difference.partners.size(); ++i) {
        if (difference.partners[i] == 0)
            continue;
        lefts.push_back(static_cast<int>(i) + 1);
        rights.push_back(difference.partners[i]);
    }
    for (const std::size_t index : fewestOutOfOrder(rights))
        difference.moved.push_back({lefts[index], rights[index]});
}

} // namespace

bool KeyedDifference::different() const {
    return !added.empty() || !removed.empty() || !changed.empty() || !fields.onlyLeft.empty() ||
           !fields.onlyRight.empty();
}

std::size_t KeyedDifference::cellCount() const {
    const std::size_t common = fields.key.size() + fields.compared.size();
    return cells.count() + removed.size() * (common + fields.onlyLeft.size()) +
           added.size() * (common + fields.onlyRight.size());
}

KeyedDifference compareByKey(TableSource &left, TableSource &right, const KeyedFields &fields,
                             const CellTolerance &tolerance, const KeyedStep &step) {
    KeyedDifference difference;
    difference.fields = fields;
    for (const FieldPair &field : fields.key)
        difference.keyNames += left.fieldName(field.left);
    for (const int field : fields.onlyLeft)
        difference.onlyLeftNames += left.fieldName(field);
    for (const int field : fields.onlyRight)
        difference.onlyRightNames += right.fieldName(field);
    difference.leftRecords = left.records();
    difference.rightRecords = right.records();
    RecordMatcher(left, right, fields, tolerance).match(difference, step);
    ValueComparison(left, right, fields, tolerance).compare(difference, step);
    findMoved(difference);
    return difference;
}

std::vector<std::size_t> fewestOutOfOrder(const std::vector<int> &numbers) {
    // The longest rising part by the smallest last number of each length; a number of the part knows the one before it.
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::vector<std::size_t> lasts;
    std::vector<std::size_t> before(numbers.size(), none);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto place = std::ranges::lower_bound(lasts, numbers[i], {}, [&](std::size_t k) { return numbers[k]; });
        if (place != lasts.begin())
            before[i] = *(place - 1);
        if (place == lasts.end())
            lasts.push_back(i);
        else
            *place = i;
    }
    std::vector<std::size_t> outside;
    std::size_t stays = lasts.empty() ? none : lasts.back();
    for (std::size_t i = numbers.size(); i-- > 0;) {
        if (i == stays)
            stays = before[i];
        else
            outside.push_back(i);
    }
    std::ranges::reverse(outside);
    return outside;
}

} // namespace qir
