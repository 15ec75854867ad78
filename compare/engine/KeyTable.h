#pragma once

#include "compare/engine/CellRules.h"
#include "compare/engine/TableSource.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace qir {

/// The keys that occur in two tables, each with a number of its own. Keeps a hash and a record of each key, no values:
/// these are read again where two hashes are equal.
class KeyTable {
public:
    /// The fields of the key on either side; as many on both.
    KeyTable(TableSource &left, std::vector<int> leftFields, TableSource &right, std::vector<int> rightFields,
             const CellTolerance &tolerance);

    enum class Side { Left, Right };
    struct Entry {
        std::size_t key; ///< Numbers count from 0 in the order of the keys' first insertion.
        bool isNew;
    };
    Entry insert(Side side, int record);
    std::size_t size() const { return m_keys.size(); }

private:
    struct Key {
        std::size_t hash;
        int record; ///< Negative on the right side.
    };

    std::size_t hashOf(Side side, int record);
    bool sameKey(const Key &key, Side side, int record);
    void grow();

    TableSource &source(Side side) { return side == Side::Left ? m_left : m_right; }
    const std::vector<int> &fields(Side side) const { return side == Side::Left ? m_leftFields : m_rightFields; }

    TableSource &m_left;
    TableSource &m_right;
    std::vector<int> m_leftFields;
    std::vector<int> m_rightFields;
    CellRules m_rules;
    QString m_text; // of a value that is compared with another one of its own source
    std::size_t m_seed;
    std::vector<Key> m_keys;
    std::vector<std::uint32_t> m_slots; // a key's number and one, 0 for none; a power of two
};

} // namespace qir
