#include "compare/engine/ValueEquality.h"

#include "base/VariantKind.h"

#include <QString>

#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace qir {

namespace {

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

} // namespace qir
