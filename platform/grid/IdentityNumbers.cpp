#include "platform/grid/IdentityNumbers.h"

namespace qir {

int IdentityNumbers::at(int index) const {
    const auto place = static_cast<std::size_t>(index);
    return place < m_numbers.size() ? m_numbers[place] : index;
}

void IdentityNumbers::set(int index, int number, int count) {
    if (index < 0 || index >= count || at(index) == number)
        return;
    resizeStored(count);
    m_numbers[static_cast<std::size_t>(index)] = number;
}

void IdentityNumbers::resize(int count) {
    if (!m_numbers.empty())
        resizeStored(count);
}

void IdentityNumbers::permute(const std::vector<std::uint32_t> &order) {
    std::vector<int> permuted;
    permuted.reserve(order.size() + 1);
    permuted.push_back(at(0));
    for (const std::uint32_t source : order)
        permuted.push_back(at(static_cast<int>(source) + 1));
    m_numbers = std::move(permuted);
}

void IdentityNumbers::resizeStored(int count) {
    const auto size = static_cast<std::size_t>(count < 0 ? 0 : count);
    const std::size_t before = m_numbers.size();
    m_numbers.resize(size);
    for (std::size_t i = before; i < size; ++i)
        m_numbers[i] = static_cast<int>(i);
}

} // namespace qir
