#pragma once

#include "pane/EditorContext.h"

#include <QCoreApplication>

namespace qir {

class GridSave;
class TableLoader;

/// Copying a block of cells to the system clipboard and pasting one. The plain text has tabs between cells and carriage
/// returns between rows; further formats beside it keep tabs and line ends inside cells and serve other programs.
class AreaClipboard {
    Q_DECLARE_TR_FUNCTIONS(AreaClipboard)

public:
    AreaClipboard(EditorContext &editor, GridSave &save, TableLoader &tables)
        : m_editor(editor)
        , m_save(save)
        , m_tables(tables) {}

    /// Its rows for the menus.
    void addCommands();

    /// Copies the selected block of the pane's grid. Errors are silent.
    void COPIA_AreaTabella(int pane);
    /// Pastes into the selected block of the pane's grid and writes the grid to the database. Errors are silent; one on
    /// the way undoes the whole paste. A table that is not loaded whole is refused with an error. Yields.
    void INCOLLA_AreaTabella(int pane);

private:
    void layClipboard(int pane, QString text);

    EditorContext &m_editor;
    GridSave &m_save;
    TableLoader &m_tables;
};

/// A clipboard text as the grid takes it: rows end in carriage returns. Line feeds beside carriage returns go; without
/// any carriage return they are the row ends. One last row end is dropped.
QString gridClip(const QString &clipboardText);

} // namespace qir
