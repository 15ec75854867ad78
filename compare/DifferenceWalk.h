#pragma once

#include "pane/EditorContext.h"
#include "platform/grid/GridSelection.h"

#include <QCoreApplication>

#include <array>
#include <functional>
#include <optional>
#include <utility>

namespace qir {

class DifferingTables;

/// Going from difference to difference, through all tables in the order of the lists, without wrapping round. A stop is
/// the first differing cell of a record, or each differing cell; a table that one side lacks, or that has records on
/// one side only, is one stop.
class DifferenceWalk {
    Q_DECLARE_TR_FUNCTIONS(DifferenceWalk)

public:
    enum class Direction { Forward, Back };
    enum class Stops { Records, Cells };

    /// `settle` brings lists and grids in step after a table was entered: what a load leaves to the end of the command.
    DifferenceWalk(EditorContext &editor, const DifferingTables &tables, std::function<void()> settle)
        : m_editor(editor)
        , m_tables(tables)
        , m_settle(std::move(settle)) {}

    /// Its rows for the menus.
    void addCommands();

    /// To the nearest stop behind or before the current cell; says so where there is none.
    void go(Direction direction, Stops stops);
    /// To the first (Back) or the last (Forward) stop of the whole databases.
    void goToEnd(Direction direction);
    /// Selects a line in both lists and goes to the first stop there.
    void goToTable(int line);
    /// Goes to a record of the shown tables, to its first differing cell where it has one.
    void goToRecord(int row);

private:
    struct Cell {
        int row = 0;
        int column = 0;
    };

    void begin();
    bool cellsKnown() const;
    Cell current() const;
    void watchGrids();
    bool exists(const Cell &cell) const;
    std::optional<Cell> inRow(int row, int column, Direction direction, Stops stops) const;
    std::optional<Cell> found(const Cell &from, Direction direction, Stops stops) const;
    int nearestShown(int row) const;
    int nextTable(int line, Direction direction) const;
    void selectLine(int line);
    void enterTable(int line, Direction direction, Stops stops);
    enum class Scroll { AsNeeded, ToMiddle };
    void show(const Cell &cell, Scroll scroll = Scroll::AsNeeded);
    void tellEnd(Direction direction);

    EditorContext &m_editor;
    const DifferingTables &m_tables;
    std::function<void()> m_settle;
    /// Where a grid stands that a person or the walk has led there, the other one following as far as it could.
    std::array<GridSelection, 2> m_led{singleCell(0, 0), singleCell(0, 0)};
    bool m_focusToGrid = false; // the grid that had the keyboard was hidden by a stop
};

} // namespace qir
