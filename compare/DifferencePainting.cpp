#include "compare/DifferencePainting.h"

#include "platform/grid/Grid.h"

#include <algorithm>

namespace qir {

void SetEqualColor(EditorContext &editor, int pane, int row, int column) {
    Grid &grid = editor.Tabella(pane);
    if (row < 0 || column < 0 || row >= grid.Rows() || column >= grid.Cols())
        return;
    const bool different = editor.CelleDiverse().at(static_cast<std::size_t>(row), static_cast<std::size_t>(column));
    const CellColour wanted = different ? CellColour::Red : CellColour::White;
    if (editor.ColoriCelle(pane).at(row, column) != wanted)
        grid.setCellBackColor(row, column, wanted);
}

void paintWindow(EditorContext &editor, int pane, const CellWindow &window) {
    Grid &grid = editor.Tabella(pane);
    grid.paintDifferences(editor.CelleDiverse(),
                          {window.firstRow, window.firstColumn, std::min(window.lastRow, grid.Rows() - 1),
                           std::min(window.lastColumn, grid.Cols() - 1)});
}

} // namespace qir
