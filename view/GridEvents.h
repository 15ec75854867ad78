#pragma once

#include "pane/EditorContext.h"

#include <QObject>

QT_BEGIN_NAMESPACE
class QPoint;
QT_END_NAMESPACE

namespace qir {

class AreaClipboard;
class CellEditor;
class GridCommands;
class GridPopups;

/// What the events of a pane's grid do: activate the pane, start and end edits, copy and paste, keep the other grid
/// beside this one, open pop-ups.
class GridEvents : public QObject {
public:
    GridEvents(EditorContext &editor, CellEditor &cellEditor, AreaClipboard &clipboard, GridPopups &popups,
               GridCommands &commands)
        : m_editor(editor)
        , m_cellEditor(cellEditor)
        , m_clipboard(clipboard)
        , m_popups(popups)
        , m_commands(commands) {}

    /// Listens to the events of a pane's grid, each as a command of its own.
    void connectPane(int pane);

    void Tabella_Click(int pane);
    void Tabella_DblClick(int pane);
    void Tabella_KeyPress(int pane, int KeyAscii);
    void Tabella_KeyDown(int pane, int KeyCode, int Shift);
    void Tabella_LeaveCell(int pane);
    void Tabella_Scroll(int pane);
    /// A key or a drag scrolled the grid.
    void Tabella_Revealed(int pane);
    void Tabella_SelChange(int pane);
    void Tabella_MouseDown(int pane, Qt::MouseButton button, int row, int column, const QPoint &globalPosition);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    EditorContext &m_editor;
    CellEditor &m_cellEditor;
    AreaClipboard &m_clipboard;
    GridPopups &m_popups;
    GridCommands &m_commands;
};

} // namespace qir
