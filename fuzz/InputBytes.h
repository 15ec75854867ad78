#pragma once

#include "tests/model/Choices.h"

#include <cstddef>
#include <cstdint>

namespace qir::fuzz {

/// Decisions from the bytes of an input, few for each, so that a changed byte changes one decision. Past the end all
/// decisions are the least ones.
class InputBytes : public test::Choices {
public:
    InputBytes(const std::uint8_t *data, std::size_t size)
        : m_next(data)
        , m_end(data + size) {}

    bool atEnd() const { return m_next == m_end; }

    int inRange(int from, int to) override {
        const auto span = static_cast<std::uint32_t>(to - from);
        std::uint32_t value = byte();
        for (std::uint32_t reach = 0x100; reach < span; reach <<= 8)
            value = value << 8 | byte();
        return from + static_cast<int>(value % span);
    }
    std::uint64_t bits() override {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < sizeof value; ++i)
            value = value << 8 | byte();
        return value;
    }

private:
    std::uint8_t byte() { return atEnd() ? std::uint8_t{0} : *m_next++; }

    const std::uint8_t *m_next;
    const std::uint8_t *m_end;
};

} // namespace qir::fuzz
