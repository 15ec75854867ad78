#pragma once

#include "base/BitMatrix.h"

#include <cstdint>
#include <vector>

namespace qir {

/// The cells of a grid whose text is not what is stored of it, counted as the grid counts. Before the first one they
/// take no memory; after it they keep what they have, so that a cell that goes to and fro costs nothing more.
class UnlikeCells {
public:
    bool at(int row, int column) const {
        return m_cells.at(static_cast<std::size_t>(row), static_cast<std::size_t>(column));
    }
    std::size_t count() const { return m_cells.count(); }
    /// In a grid of so many rows and columns, header and fixed column included. True when that changes something.
    bool set(int row, int column, bool unlike, int rows, int columns) {
        if (at(row, column) == unlike)
            return false;
        if (m_cells.rows() == 0)
            m_cells = BitMatrix(static_cast<std::size_t>(rows), static_cast<std::size_t>(columns));
        m_cells.set(static_cast<std::size_t>(row), static_cast<std::size_t>(column), unlike);
        return true;
    }
    void clear() { m_cells = BitMatrix(); }
    /// Row i + 1 becomes the one that was row order[i] + 1.
    void permuteRecords(const std::vector<std::uint32_t> &order) {
        if (count() == 0)
            return;
        BitMatrix reordered(m_cells.rows(), m_cells.columns());
        for (std::size_t i = 0; i < order.size(); ++i)
            reordered.setRow(i + 1, m_cells.row(order[i] + 1));
        m_cells = std::move(reordered);
    }

private:
    BitMatrix m_cells;
};

} // namespace qir
