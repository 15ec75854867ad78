#pragma once

#include "pane/EditorContext.h"

#include <QObject>

QT_BEGIN_NAMESPACE
class QKeyEvent;
QT_END_NAMESPACE

namespace qir {

class CellEditor;
class GridEvents;

/// Connects the events of the panes' grids and cell editors to their procedures, each as a command of its own.
class GridConnections : public QObject {
public:
    GridConnections(EditorContext &editor, GridEvents &grid, CellEditor &cellEditor)
        : m_editor(editor)
        , m_grid(grid)
        , m_cellEditor(cellEditor) {}

    void connectPane(int pane);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void connectGrid(int pane);
    void connectEditor(int pane);
    /// True when the key went from an open editor to the cell beside its own.
    bool tabPressed(const QObject *watched, const QKeyEvent &key);
    /// The grid is about to show its cells elsewhere: an open editor goes along, once that has happened.
    void placeEditorLater(int pane);

    EditorContext &m_editor;
    GridEvents &m_grid;
    CellEditor &m_cellEditor;
};

} // namespace qir
