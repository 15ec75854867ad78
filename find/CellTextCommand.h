#pragma once

#include "pane/EditorContext.h"

#include <QObject>

namespace qir {

class CellEditor;

/// Editing a cell's text in a box of its own, with its line ends: Shift+F2 in a grid or in its cell editor.
class CellTextCommand : public QObject {
    Q_OBJECT

public:
    CellTextCommand(EditorContext &editor, CellEditor &cellEditor)
        : m_editor(editor)
        , m_cellEditor(cellEditor) {}

    void connectPane(int pane);
    void editText(int pane);

private:
    EditorContext &m_editor;
    CellEditor &m_cellEditor;
};

} // namespace qir
