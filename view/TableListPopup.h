#pragma once

#include "app/shared/EditorContext.h"

#include <QObject>

#include <optional>

QT_BEGIN_NAMESPACE
class QPoint;
QT_END_NAMESPACE

namespace qir {

/// The pop-up menu of the table lists: rename, remove, and copying the table to the other database.
class TableListPopup : public QObject {
    Q_OBJECT

public:
    explicit TableListPopup(EditorContext &editor)
        : m_editor(editor) {}

    /// Watches the list of a pane for right presses that are not for the pop-up: in the list of the other pane one
    /// makes that pane active and does nothing else. To be called behind all other filters of the list.
    void watch(int pane);

    /// A button, or the menu key as the right one, went down in the list of a pane; the line under it is selected and
    /// its table loaded. Opens the pop-up for the right button, in the active pane, with a selected line. Errors end
    /// it silently, without the pop-up.
    void ListaTabelle_MouseDown(int Index, Qt::MouseButton Button, const QPoint &globalPosition);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void offerCommands(int Index);
    bool pressedInOtherPane(int pane);

    EditorContext &m_editor;
    std::optional<int> m_activeBeforeFocus; // the pane that was active before a press moved the focus into a list
};

} // namespace qir
