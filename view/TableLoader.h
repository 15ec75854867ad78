#pragma once

#include "pane/EditorContext.h"
#include "platform/grid/GridSelection.h"

#include <array>
#include <functional>
#include <optional>

namespace qir {

class CellDifferences;
class GridCommands;

/// The header text of a field: its name, then its type in square brackets.
QString headerText(const QirDatabase &database, int field);

/// From a line of a table list to a filled grid: selecting a table in either pane and loading it.
class TableLoader {
public:
    TableLoader(EditorContext &editor, CellDifferences &differences, GridCommands &commands)
        : m_editor(editor)
        , m_differences(differences)
        , m_commands(commands) {}

    /// Listens to the clicks of a pane's list; must outlive it.
    void connectPane(int pane);

    /// A line of the pane's list was selected, by the user or by code.
    void ListaTabelle_Click(int pane);

    /// Loads the table selected in the pane's list; a placeholder line hides the grid. `Caller` names the control that
    /// asks and changes nothing. A component's error ends the loading silently; the pane then has no loaded line.
    void RichiamaTabella(int pane, const QString &Caller);
    /// After the pane's list was refilled: selects its first line, or loads the selected one again.
    void CaricaTabellaDaLista(int pane);
    /// Loads the component's current table into the pane's grid. After an error the grid counts as showing no table.
    void CaricaTabellaAVideo(int pane);
    /// Fills the grid from the component's current table: headers, texts, colours, column widths.
    void RiempiGrigliaDaTabella(int pane);

    /// After a writing of the grid's texts failed and was undone: loads the selected table again as it stands in the
    /// component, and compares. Silent. A table that cannot be loaded now is hidden.
    void reloadAfterFailure(int pane);

    /// Loads the selected table in each open pane whose grid shows another one. Then compares the cells once if a grid
    /// has come to show another table, or none, since the last comparison; a grid left alone becomes white. Gives both
    /// grids the same selection when one was filled. Called when a command ends.
    void settlePanes();

    /// The column by which was sorted last, 1 after each load.
    int ColonnaOrdinamento() const { return m_sortColumn; }
    void sortedBy(int column) { m_sortColumn = column; }

private:
    /// A placeholder line or none is selected: the grid shows nothing.
    void hideTable(int pane);
    void loadCurrentTable(int pane);
    /// Runs `load`. When it breaks off, the grid may show what is no longer so: it counts as showing no table, and the
    /// end of the command loads the selected one again.
    void reloaded(int pane, const std::function<void()> &load);

    void mirrorFilled();
    void compareIfDue();

    EditorContext &m_editor;
    CellDifferences &m_differences;
    GridCommands &m_commands;
    int m_sortColumn = 1;
    /// The selection before a grid was first filled since the panes were settled; no cell where it showed another
    /// table.
    std::array<std::optional<GridSelection>, 2> m_selectionBefore;
    bool m_stoodApart = false; // the grids, before that
};

} // namespace qir
