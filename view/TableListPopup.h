#pragma once

#include "pane/EditorContext.h"

QT_BEGIN_NAMESPACE
class QPoint;
QT_END_NAMESPACE

namespace qir {

/// The pop-up menu of the table lists: rename, remove, and copying the table to the other database.
class TableListPopup {
public:
    explicit TableListPopup(EditorContext &editor)
        : m_editor(editor) {}

    /// Watches the presses on a pane's list; must outlive it.
    void connectPane(int pane);

    /// A button, or the menu key as the right one, went down in the list of a pane; the line under it is selected and
    /// its table loaded. Opens the pop-up for the right button, in the active pane, with a selected line. Errors end
    /// it silently, without the pop-up.
    void ListaTabelle_MouseDown(int pane, Qt::MouseButton Button, const QPoint &globalPosition);

private:
    void offerCommands(int pane);

    EditorContext &m_editor;
};

} // namespace qir
