#pragma once

#include "base/ByteReader.h"

#include <QByteArray>

#include <limits>
#include <stdexcept>

namespace qir {

/// Writes bytes and little-endian numbers into an array, which grows as it must: nothing is ever written beside it.
/// Starts at its end; at() goes to another place, where what stands there is written over. Throws std::bad_alloc, or
/// std::length_error for more than an array can hold, before anything is written. The array must outlive the writer;
/// what is handed in must not stand in it.
class ByteWriter {
public:
    explicit ByteWriter(QByteArray &out)
        : m_out(out)
        , m_at(static_cast<std::size_t>(out.size())) {}

    /// Goes on at `offset` bytes from the start. Zeros fill what lies between the end and it.
    ByteWriter &at(std::size_t offset) {
        if (offset > longest)
            throw std::length_error("a place behind the end of any array");
        if (offset > static_cast<std::size_t>(m_out.size()))
            m_out.resize(static_cast<qsizetype>(offset), '\0');
        m_at = offset;
        return *this;
    }

    template<class Number>
    void number(Number value) {
        qToLittleEndian<Number>(value, room(sizeof(Number)).data());
    }
    void bytes(QByteArrayView given) { std::ranges::copy(given, room(static_cast<std::size_t>(given.size())).begin()); }
    template<std::size_t size>
    void array(const std::array<unsigned char, size> &given) {
        bytes(viewOf(given));
    }
    /// Their count as a number of this type, then the bytes. std::length_error also where the type is too small.
    template<class Length>
    void sizedBytes(QByteArrayView given) {
        if (static_cast<std::uint64_t>(given.size()) > std::numeric_limits<Length>::max())
            throw std::length_error("more bytes than their length can tell");
        number(static_cast<Length>(given.size()));
        bytes(given);
    }
    template<class Number>
    void numbers(std::span<const Number> given) {
        const std::span<char> target = room(given.size_bytes());
        if (!given.empty()) // those have no memory to read from
            qToLittleEndian<Number>(given.data(), static_cast<qsizetype>(given.size()), target.data());
    }
    /// `count` numbers: what `numberOf(index)` gives, from 0 on.
    template<class Number, class NumberOf>
    void numbers(std::size_t count, NumberOf numberOf) {
        if (count > longest / sizeof(Number))
            throw std::length_error("more numbers than an array can hold");
        char *target = room(count * sizeof(Number)).data();
        for (std::size_t i = 0; i < count; ++i)
            qToLittleEndian<Number>(numberOf(i), target + i * sizeof(Number));
    }
    /// The next `count` bytes, for the caller to fill before anything else happens to the array.
    std::span<char> room(std::size_t count) {
        if (count > longest - m_at)
            throw std::length_error("more bytes than an array can hold");
        const std::size_t end = m_at + count;
        if (end > static_cast<std::size_t>(m_out.size()))
            m_out.resize(static_cast<qsizetype>(end));
        const std::span<char> given(m_out.data() + m_at, count);
        m_at = end;
        return given;
    }

private:
    static constexpr auto longest = static_cast<std::size_t>(std::numeric_limits<qsizetype>::max());

    QByteArray &m_out;
    std::size_t m_at;
};

} // namespace qir
