#pragma once

#include "pane/EditorContext.h"

QT_BEGIN_NAMESPACE
class QPoint;
QT_END_NAMESPACE

namespace qir {

/// The pop-up menus of the grids: of a record cell and of a field's header.
class GridPopups {
public:
    explicit GridPopups(EditorContext &editor)
        : m_editor(editor) {}

    /// Offers the pop-up that belongs to the cell under the pointer, with the items that apply there, and records the
    /// panes in IndexOrigine and IndexDestinazione. Nothing where no pop-up belongs.
    void popUp(int pane, int row, int column, const QPoint &globalPosition);

private:
    void prepareRecordItems(int pane);
    void prepareFieldItems(int pane, int column);
    bool isTextField(int pane, int column);

    EditorContext &m_editor;
};

} // namespace qir
