#pragma once

#include "compare/engine/TableSource.h"

#include <QString>

#include <cstddef>

namespace qir {

/// Which values count as the same one.
struct CellTolerance {
    double difference = 0;     ///< Numbers up to so far apart; neither dates nor truth, and no values of a key.
    bool ignoreCase = false;   ///< Texts that differ in case only, by Unicode whatever the locale.
    bool ignoreBlanks = false; ///< Texts without their white space.
};

/// Compares and hashes values by these rules. Without any they are those of valuesEqual(): numbers by value whatever
/// their types, all not-a-numbers one value, texts by code unit, a number never a text.
class CellRules {
public:
    explicit CellRules(const CellTolerance &tolerance)
        : m_tolerance(tolerance) {}

    /// As values of a key: numbers have no tolerance, so that equal keys have equal hashes.
    bool sameKey(const CellView &left, const CellView &right);
    std::size_t hash(const CellView &cell, std::size_t seed);
    /// As values of fields of these types.
    bool same(const CellView &left, FieldType leftType, const CellView &right, FieldType rightType);

private:
    bool foldsTexts() const { return m_tolerance.ignoreCase || m_tolerance.ignoreBlanks; }
    void fold(QStringView text, QString &folded) const;
    bool sameText(const CellView &left, const CellView &right);
    bool near(double left, double right) const;

    CellTolerance m_tolerance;
    QString m_left; // these keep their memory from text to text
    QString m_right;
    QString m_leftFolded;
    QString m_rightFolded;
};

} // namespace qir
