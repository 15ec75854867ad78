#pragma once

#include <QByteArrayView>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace qir {

/// The same bytes for functions that take them unsigned.
inline const unsigned char *bytesOf(QByteArrayView view) {
    return reinterpret_cast<const unsigned char *>(view.data());
}

template<std::size_t size>
QByteArrayView viewOf(const std::array<unsigned char, size> &bytes) {
    return {reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(size)};
}

/// Takes bytes and little-endian numbers off the front of bytes that nobody vouches for. Never reads past their end:
/// from the first call that asks for more than is left on, every call gives nothing (no bytes, zeros) and isComplete()
/// is false. So a run of calls needs one look at isComplete(), before anything is made of what they gave. Any count may
/// be asked for; none overflows. The bytes must outlive the reader and the views that it gives.
class ByteReader {
public:
    explicit ByteReader(QByteArrayView bytes)
        : m_rest(bytes) {}

    /// False once there was less than a call asked for.
    bool isComplete() const { return m_isComplete; }
    /// How many bytes are left; 0 once something was missing.
    std::uint64_t left() const { return static_cast<std::uint64_t>(m_rest.size()); }
    /// The bytes that are left.
    QByteArrayView rest() const { return m_rest; }
    /// A reader of what stands `offset` bytes further on; one that is not complete where there are fewer.
    ByteReader from(std::uint64_t offset) const {
        ByteReader reader = *this;
        reader.bytes(offset);
        return reader;
    }

    /// The next `count` bytes; none where there are fewer.
    QByteArrayView bytes(std::uint64_t count) {
        if (count > left()) {
            m_rest = {};
            m_isComplete = false;
            return {};
        }
        const auto size = static_cast<qsizetype>(count);
        const QByteArrayView taken = m_rest.first(size);
        m_rest = m_rest.sliced(size);
        return taken;
    }
    /// The bytes behind a length of this type.
    template<class Length>
    QByteArrayView sizedBytes() {
        return bytes(number<Length>());
    }
    template<class Number>
    Number number() {
        const QByteArrayView taken = bytes(sizeof(Number));
        return m_isComplete ? qFromLittleEndian<Number>(taken.data()) : Number{};
    }
    template<std::size_t size>
    std::array<unsigned char, size> array() {
        std::array<unsigned char, size> taken{};
        const QByteArrayView given = bytes(size);
        std::copy_n(bytesOf(given), given.size(), taken.begin());
        return taken;
    }
    /// Fills all of `numbers`: zeros where there are too few.
    template<class Number>
    void numbers(std::span<Number> numbers) {
        const QByteArrayView taken = bytes(std::uint64_t{numbers.size()} * sizeof(Number));
        if (!m_isComplete)
            std::ranges::fill(numbers, Number{});
        else if (!numbers.empty())
            qFromLittleEndian<Number>(taken.data(), static_cast<qsizetype>(numbers.size()), numbers.data());
    }

private:
    QByteArrayView m_rest;
    bool m_isComplete = true;
};

} // namespace qir
