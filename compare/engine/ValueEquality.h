#pragma once

#include <QVariant>

#include <cmath>

namespace qir {

/// True when two values of a component are the same value: numbers by value whatever their types (true is -1 and
/// false 0, as everywhere between caller and component; all not-a-numbers are one value), texts by code unit. A
/// number never equals a text: QVariant's own == would find 5 equal to "5".
///
/// An empty value equals another empty one and what a field without a value holds: the number 0 and the empty text.
bool valuesEqual(const QVariant &left, const QVariant &right);

/// The same of two numbers.
inline bool realsEqual(double left, double right) {
    return left == right || (std::isnan(left) && std::isnan(right));
}

} // namespace qir
