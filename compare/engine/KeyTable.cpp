#include "compare/engine/KeyTable.h"

#include <QHashSeed>

#include <utility>

namespace qir {

namespace {

constexpr std::size_t firstSlots = 64;

} // namespace

KeyTable::KeyTable(TableSource &left, std::vector<int> leftFields, TableSource &right, std::vector<int> rightFields,
                   const CellTolerance &tolerance)
    : m_left(left)
    , m_right(right)
    , m_leftFields(std::move(leftFields))
    , m_rightFields(std::move(rightFields))
    , m_rules(tolerance)
    , m_seed(QHashSeed::globalSeed()) // so that nobody can make a file whose keys all have one hash
    , m_slots(firstSlots) {}

KeyTable::Entry KeyTable::insert(Side side, int record) {
    if (m_keys.size() * 2 >= m_slots.size())
        grow();
    const std::size_t hash = hashOf(side, record);
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = hash & mask;
    for (; m_slots[slot] != 0; slot = (slot + 1) & mask) {
        const std::size_t number = m_slots[slot] - 1;
        if (m_keys[number].hash == hash && sameKey(m_keys[number], side, record))
            return {number, false};
    }
    m_keys.push_back({hash, side == Side::Left ? record : -record});
    m_slots[slot] = static_cast<std::uint32_t>(m_keys.size());
    return {m_keys.size() - 1, true};
}

std::size_t KeyTable::hashOf(Side side, int record) {
    std::size_t hash = m_seed;
    for (const int field : fields(side)) {
        hash = m_rules.hash(source(side).cell(record, field), hash);
        // The hash of a number is little more than its bits; its low ones must depend on all of them.
        hash ^= hash >> 32U;
        hash *= 0x9E3779B97F4A7C15U;
        hash ^= hash >> 29U;
    }
    return hash;
}

bool KeyTable::sameKey(const Key &key, Side side, int record) {
    const Side keySide = key.record < 0 ? Side::Right : Side::Left;
    for (std::size_t i = 0; i < m_leftFields.size(); ++i) {
        CellView own = source(side).cell(record, fields(side)[i]);
        if (keySide == side && own.isText && own.bytes.isNull()) {
            m_text.resize(0);
            m_text.append(own.text);
            own.text = m_text;
        }
        if (!m_rules.sameKey(source(keySide).cell(std::abs(key.record), fields(keySide)[i]), own))
            return false;
    }
    return true;
}

void KeyTable::grow() {
    std::vector<std::uint32_t> slots(m_slots.size() * 2);
    const std::size_t mask = slots.size() - 1;
    for (std::size_t number = 0; number < m_keys.size(); ++number) {
        std::size_t slot = m_keys[number].hash & mask;
        while (slots[slot] != 0)
            slot = (slot + 1) & mask;
        slots[slot] = static_cast<std::uint32_t>(number + 1);
    }
    m_slots = std::move(slots);
}

} // namespace qir
