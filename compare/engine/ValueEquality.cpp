#include "compare/engine/ValueEquality.h"

#include "base/VariantKind.h"

#include <QString>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <utility>

namespace qir {

namespace {

constexpr qsizetype spanValues = 256; // looked at as one piece of memory first

enum class Kind { Empty, Signed, Unsigned, Real, Text, Other };

/// Truth and characters count as whole numbers.
Kind comparedAs(const QVariant &value) {
    // In the order of VariantKind: a table, since this is asked twice for each pair of cells.
    static constexpr std::array kinds{Kind::Empty,    Kind::Signed, Kind::Signed, Kind::Signed,
                                      Kind::Unsigned, Kind::Real,   Kind::Text,   Kind::Other};
    static_assert(kinds.size() == static_cast<std::size_t>(VariantKind::Other) + 1);
    return kinds[static_cast<std::size_t>(kindOf(value))];
}

qlonglong signedNumber(const QVariant &value) {
    return value.typeId() == QMetaType::Bool ? (value.toBool() ? -1 : 0) : value.toLongLong();
}

double realNumber(const QVariant &value, Kind kind) {
    return kind == Kind::Signed ? static_cast<double>(signedNumber(value)) : value.toDouble();
}

bool isNumber(Kind kind) {
    return kind == Kind::Signed || kind == Kind::Unsigned || kind == Kind::Real;
}

bool numbersEqual(const QVariant &left, Kind leftKind, const QVariant &right, Kind rightKind) {
    if (leftKind == Kind::Real || rightKind == Kind::Real)
        return realsEqual(realNumber(left, leftKind), realNumber(right, rightKind));
    if (leftKind == rightKind)
        return leftKind == Kind::Signed ? signedNumber(left) == signedNumber(right)
                                        : left.toULongLong() == right.toULongLong();
    const bool leftSigned = leftKind == Kind::Signed;
    return std::cmp_equal(signedNumber(leftSigned ? left : right), (leftSigned ? right : left).toULongLong());
}

bool equalsEmpty(const QVariant &value, Kind kind) {
    if (isNumber(kind))
        return realNumber(value, kind) == 0;
    return kind == Kind::Empty || (kind == Kind::Text && value.toString().isEmpty());
}

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

bool valuesEqual(const QVariant &left, const QVariant &right) {
    const int type = left.typeId();
    if (type == right.typeId()) {
        // What nearly all cells are; no copy of a text, no conversion.
        if (type == QMetaType::Double)
            return realsEqual(*static_cast<const double *>(left.constData()),
                              *static_cast<const double *>(right.constData()));
        if (type == QMetaType::QString)
            return *static_cast<const QString *>(left.constData()) == *static_cast<const QString *>(right.constData());
        if (type == QMetaType::Int)
            return *static_cast<const int *>(left.constData()) == *static_cast<const int *>(right.constData());
    }
    const Kind leftKind = comparedAs(left);
    const Kind rightKind = comparedAs(right);
    if (leftKind == Kind::Empty)
        return equalsEmpty(right, rightKind);
    if (rightKind == Kind::Empty)
        return equalsEmpty(left, leftKind);
    if (isNumber(leftKind) && isNumber(rightKind))
        return numbersEqual(left, leftKind, right, rightKind);
    // Types outside the automation convention: equal only as themselves.
    return left.metaType() == right.metaType() && left == right;
}

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
