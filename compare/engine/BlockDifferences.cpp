#include "compare/engine/BlockDifferences.h"

#include "compare/engine/ValueEquality.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace qir {

namespace {

constexpr qsizetype spanValues = 256; // looked at as one piece of memory first

/// Calls found(i) for each value that differs, until it returns false.
template<class Found>
class Search {
public:
    Search(const ColumnBlock &left, qsizetype leftFirst, const ColumnBlock &right, qsizetype rightFirst, Found found)
        : m_left(left)
        , m_right(right)
        , m_leftFirst(leftFirst)
        , m_rightFirst(rightFirst)
        , m_found(found) {}

    void run(qsizetype count) {
        if (m_leftFirst == m_rightFirst && m_left.sharesMemoryWith(m_right))
            return;
        if (m_left.isText() != m_right.isText())
            all(count, [](qsizetype) { return true; });
        else if (m_left.isText())
            all(count, [this](qsizetype i) { return textDiffers(i); });
        else if (valueSize(m_left.type()) != valueSize(m_right.type()))
            all(count, [this](qsizetype i) { return numberDiffers(i); });
        else
            alike(count);
    }

private:
    template<class Differs>
    bool all(qsizetype count, Differs differs, qsizetype first = 0) {
        for (qsizetype i = first; i < count; ++i)
            if (differs(i) && !m_found(i))
                return false;
        return true;
    }

    /// Numbers of as many bytes: equal bytes are equal numbers, and that is what most of them are.
    void alike(qsizetype count) {
        const auto size = static_cast<qsizetype>(valueSize(m_left.type()));
        const char *left = m_left.values().constData() + m_leftFirst * size;
        const char *right = m_right.values().constData() + m_rightFirst * size;
        for (qsizetype first = 0; first < count; first += spanValues) {
            const qsizetype end = std::min(first + spanValues, count);
            if (std::memcmp(left + first * size, right + first * size,
                            static_cast<std::size_t>((end - first) * size)) != 0 &&
                !all(
                    end, [this](qsizetype i) { return numberDiffers(i); }, first))
                return;
        }
    }

    bool numberDiffers(qsizetype i) const {
        return !realsEqual(m_left.number(m_leftFirst + i), m_right.number(m_rightFirst + i));
    }

    bool textDiffers(qsizetype i) const {
        const QByteArrayView left = m_left.textBytes(m_leftFirst + i);
        const QByteArrayView right = m_right.textBytes(m_rightFirst + i);
        return left.size() != right.size() ||
               (!left.isEmpty() && std::memcmp(left.data(), right.data(), static_cast<std::size_t>(left.size())) != 0);
    }

    const ColumnBlock &m_left;
    const ColumnBlock &m_right;
    qsizetype m_leftFirst;
    qsizetype m_rightFirst;
    Found m_found;
};

} // namespace

void markDifferences(const ColumnBlock &left, qsizetype leftFirst, const ColumnBlock &right, qsizetype rightFirst,
                     qsizetype count, const RowBits &rows) {
    Search(left, leftFirst, right, rightFirst, [&](qsizetype i) {
        rows.words[static_cast<std::size_t>(i) * rows.stride] |= rows.bit;
        return true;
    }).run(count);
}

bool anyDifference(const ColumnBlock &left, qsizetype leftFirst, const ColumnBlock &right, qsizetype rightFirst,
                   qsizetype count) {
    bool any = false;
    Search(left, leftFirst, right, rightFirst, [&](qsizetype) {
        any = true;
        return false;
    }).run(count);
    return any;
}

} // namespace qir
