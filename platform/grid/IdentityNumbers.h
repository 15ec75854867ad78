#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qir {

/// The number that each row or column of a grid carries. Nearly always it is the row's own number, so nothing is
/// kept until one differs.
class IdentityNumbers {
public:
    /// `index` itself, unless another number was set.
    int at(int index) const;
    /// `count` is how many rows or columns there are; `index` is one of them.
    void set(int index, int number, int count);
    /// Every row carries its own number again.
    void reset() { m_numbers.clear(); }
    /// Cuts or extends to `count` entries, new ones carrying their own number.
    void resize(int count);
    /// Afterwards entry i + 1 is the one that was order[i] + 1; entry 0 stays.
    void permute(const std::vector<std::uint32_t> &order);

    bool isIdentity() const { return m_numbers.empty(); }

private:
    void resizeStored(int count);

    std::vector<int> m_numbers; // empty while every number is the index
};

} // namespace qir
