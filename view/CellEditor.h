#pragma once

#include "pane/EditorContext.h"

#include <QObject>

QT_BEGIN_NAMESPACE
class QKeyEvent;
QT_END_NAMESPACE

namespace qir {

class StoredMarks;
class TableMarks;

inline constexpr int enterCode = 13; ///< What typing Enter gives as a character.

/// Editing in place: a text box over the grid's current cell, whose every change goes to the cell and the component at
/// once. At most one pane is under edit; RigaEdit and ColonnaEdit tell the cell.
///
/// What a keystroke costs does not depend on the size of the table.
class CellEditor : public QObject {
public:
    CellEditor(EditorContext &editor, TableMarks &marks, StoredMarks &stored)
        : m_editor(editor)
        , m_marks(marks)
        , m_stored(stored) {}

    /// Listens to the keys of a pane's text box, each as a command of its own.
    void connectPane(int pane);

    /// Opens the editor over the current cell, which is brought into view. Pointing at the header row ends an edit
    /// instead.
    void IniziaEdit(int pane);
    /// The same for a key that asks for it, wherever the pointer rests.
    void editCurrentCell(int pane) { openEditor(pane); }
    /// Closes the pane's editor; everything typed is written already. The grid gets the focus if the editor had it.
    void Interrompiedit(int pane);
    /// Closes the pane's editor and opens it over the next cell (`step` 1) or the one before (-1), which becomes the
    /// current one: at a row's end in the next row. Columns of no width are passed over. Where no cell is left the
    /// editor is closed and the current cell stays.
    void editBeside(int pane, int step);
    /// Writes a text to a cell and the component's record, as typing it there does. Nothing where the cell shows it.
    void writeCell(int pane, int row, int column, const QString &text);
    /// Writes the editor's text to the cell and the component's record, then marks the cell as differing from the other
    /// pane's or not. Does nothing when no record is under edit or the cell shows that text already.
    void ScriviDaEditADtb(int pane);

    void txtEdit_Change(int pane);
    void txtEdit_KeyPress(int pane, int KeyAscii);

    /// Puts an open editor over its cell again after the grid was moved, resized or given other column widths.
    void placeEditor(int pane);
    /// The grid is about to move or resize its cells: an open editor follows, once that has happened.
    void placeEditorLater(int pane);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// True when the key went from an open editor to the cell beside its own.
    bool tabPressed(const QObject *watched, const QKeyEvent &key);
    void openEditor(int pane);
    void dressEditor(int pane);
    void coverCell(int pane);
    void updateDifference(int pane, int row, int column);

    EditorContext &m_editor;
    TableMarks &m_marks;
    StoredMarks &m_stored;
};

} // namespace qir
