#pragma once

#include "compare/CellDifferences.h"
#include "compare/EqualTables.h"
#include "compare/TableListAlignment.h"
#include "compare/TableMarks.h"
#include "pane/EditorContext.h"
#include "tests/model/Content.h"

#include <QStringList>
#include <QWidget>

namespace qir::test {

/// Two panes with real lists and grids and nothing else: what the comparing works on. Clicks lead nowhere.
class ComparePanes {
public:
    ComparePanes();
    ~ComparePanes();

    EditorContext &editor() { return m_editor; }
    TableMarks &marks() { return m_marks; }
    TableListAlignment &alignment() { return m_alignment; }
    CellDifferences &differences() { return m_differences; }
    QWidget &window() { return m_window; }

    ListBox &list(int pane) { return m_editor.ListaTabelle(pane); }
    Grid &grid(int pane) { return m_editor.Tabella(pane); }

    void open(int pane, const PlainDatabase &tables);
    void open(int pane, QirDatabase database);
    /// Both databases open, lists aligned and marked.
    void openBoth(const PlainDatabase &left, const PlainDatabase &right);
    /// Selects a line of one list and loads its table, a placeholder hides the grid.
    void select(int pane, int line);
    void selectBoth(int line);

    QStringList lines(int pane);
    Cells redCells(int pane);

private:
    QWidget m_window;
    EditorContext m_editor;
    EqualTables m_equal;
    TableMarks m_marks;
    TableListAlignment m_alignment;
    CellDifferences m_differences;
};

} // namespace qir::test
