#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qir::test {

/// Decisions from bytes, the least ones once they are used up: quick to draw by the hundred thousand, and shrinks.
class DrawnBytes {
public:
    explicit DrawnBytes(const std::vector<std::uint8_t> &bytes)
        : m_bytes(bytes) {}

    int below(int bound) { return m_next < m_bytes.size() ? m_bytes[m_next++] % bound : 0; }

private:
    const std::vector<std::uint8_t> &m_bytes;
    std::size_t m_next = 0;
};

} // namespace qir::test
