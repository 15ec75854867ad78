#include "platform/grid/GridPair.h"

#include "platform/grid/Grid.h"

#include <QHeaderView>
#include <QScrollBar>

namespace qir {

namespace {

/// The room for cells when no bar shows.
QSize roomWithoutBars(const Grid &grid) {
    QSize room = grid.maximumViewportSize();
    if (grid.verticalScrollBarPolicy() == Qt::ScrollBarAlwaysOn)
        room.rwidth() += grid.verticalScrollBar()->sizeHint().width();
    if (grid.horizontalScrollBarPolicy() == Qt::ScrollBarAlwaysOn)
        room.rheight() += grid.horizontalScrollBar()->sizeHint().height();
    return room;
}

} // namespace

GridPair::GridPair(Grid &left, Grid &right)
    : m_grids{&left, &right} {
    for (Grid *grid : m_grids)
        connect(grid, &Grid::LaidOut, this, &GridPair::level);
}

void GridPair::level() {
    if (m_levelling)
        return;
    m_levelling = true;
    const bool both = !m_grids[0]->isHidden() && !m_grids[1]->isHidden();
    shareBars(both);
    m_grids[0]->setLeastReach(both ? m_grids[1]->reach() : GridReach{});
    m_grids[1]->setLeastReach(both ? m_grids[0]->reach() : GridReach{});
    m_levelling = false;
}

void GridPair::shareBars(bool both) {
    bool down = false;
    bool across = false;
    // A bar takes room, so that the other one may be needed too: told from what the grids hold, never from the bars
    // that show now, this comes to an end.
    for (int round = 0; both && round < 2; ++round) {
        for (const Grid *grid : m_grids) {
            const QSize room = roomWithoutBars(*grid);
            const int bar = grid->verticalScrollBar()->sizeHint().width();
            const int foot = grid->horizontalScrollBar()->sizeHint().height();
            down = down || grid->verticalHeader()->length() > room.height() - (across ? foot : 0);
            across = across || grid->horizontalHeader()->length() > room.width() - (down ? bar : 0);
        }
    }
    const auto policy = [both](bool needed) {
        return !both ? Qt::ScrollBarAsNeeded : needed ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff;
    };
    for (Grid *grid : m_grids) {
        grid->setVerticalScrollBarPolicy(policy(down));
        grid->setHorizontalScrollBarPolicy(policy(across));
    }
}

} // namespace qir
