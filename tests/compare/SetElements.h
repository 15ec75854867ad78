#pragma once

#include "base/BitMatrix.h"
#include "tests/model/PlainDatabase.h"

namespace qir::test {

/// The elements of a matrix that are set.
inline Cells setElements(const BitMatrix &matrix) {
    Cells elements;
    for (std::size_t row = 0; row < matrix.rows(); ++row)
        for (std::size_t column = 0; column < matrix.columns(); ++column)
            if (matrix.at(row, column))
                elements.emplace(static_cast<int>(row), static_cast<int>(column));
    return elements;
}

} // namespace qir::test
