#pragma once

#include <QObject>

#include <array>

namespace qir {

class Grid;

/// Keeps two grids level that stand side by side in areas of the same size. As long as both show, a scroll bar that one
/// of them needs stands in both, and each scrolls as far as the other does, past its own last row or column if need be:
/// whatever one shows at its top left the other can show there as well.
class GridPair : public QObject {
public:
    GridPair(Grid &left, Grid &right);

private:
    void level();
    void shareBars(bool both);

    std::array<Grid *, 2> m_grids;
    bool m_levelling = false;
};

} // namespace qir
