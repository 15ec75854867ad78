#include "compare/engine/CellRules.h"

#include "compare/engine/ValueEquality.h"

#include <QHashFunctions>

#include <algorithm>
#include <cmath>
#include <limits>

namespace qir {

namespace {

/// Calendar numbers and truth have no distances.
bool hasDistance(FieldType type) {
    return type != FieldType::Date && type != FieldType::Bool && type != FieldType::Text;
}

} // namespace

bool CellRules::sameKey(const CellView &left, const CellView &right) {
    if (left.isText != right.isText)
        return false;
    return left.isText ? sameText(left, right) : realsEqual(left.number, right.number);
}

std::size_t CellRules::hash(const CellView &cell, std::size_t seed) {
    if (cell.isText) {
        const QStringView text = textOf(cell, m_left);
        if (!foldsTexts())
            return qHash(text, seed);
        fold(text, m_leftFolded);
        return qHash(QStringView(m_leftFolded), seed);
    }
    if (std::isnan(cell.number))
        return qHash(0, ~seed);
    return qHash(cell.number == 0 ? 0.0 : cell.number, seed); // there are two zeros
}

bool CellRules::same(const CellView &left, FieldType leftType, const CellView &right, FieldType rightType) {
    if (sameKey(left, right))
        return true;
    return !left.isText && !right.isText && m_tolerance.difference > 0 && hasDistance(leftType) &&
           hasDistance(rightType) && near(left.number, right.number);
}

bool CellRules::near(double left, double right) const {
    // The bounds themselves count: 1.1 is as far as 0.1 from 1, give or take the rounding of the three.
    const double rounding = std::max(std::abs(left), std::abs(right)) * std::numeric_limits<double>::epsilon();
    return std::abs(left - right) <= m_tolerance.difference + rounding;
}

void CellRules::fold(QStringView text, QString &folded) const {
    folded.resize(0);
    for (const QChar character : text) {
        if (!m_tolerance.ignoreBlanks || !character.isSpace())
            folded.append(character);
    }
    if (m_tolerance.ignoreCase)
        folded = std::move(folded).toCaseFolded();
}

bool CellRules::sameText(const CellView &left, const CellView &right) {
    if (!left.bytes.isNull() && !right.bytes.isNull() && left.bytes == right.bytes)
        return true;
    const QStringView leftText = textOf(left, m_left);
    const QStringView rightText = textOf(right, m_right);
    if (leftText == rightText)
        return true;
    if (!foldsTexts())
        return false;
    fold(leftText, m_leftFolded);
    fold(rightText, m_rightFolded);
    return m_leftFolded == m_rightFolded;
}

} // namespace qir
