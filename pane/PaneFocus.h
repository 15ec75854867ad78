#pragma once

#include "pane/EditorContext.h"

#include <QHash>
#include <QObject>

QT_BEGIN_NAMESPACE
class QMouseEvent;
QT_END_NAMESPACE

namespace qir {

/// The one place that decides, from what a person does in the panes, which of them becomes the active one, and when:
///
/// - The keyboard focus moved into a pane by a key: at once.
/// - A press in a pane: at the press, before the control that was pressed does anything. The focus that the press then
///   moves decides nothing.
/// - A left press on a table list: with its release, after the list's Click, which makes the pane active itself.
///   Nothing is done at the press: an error between press and release would lose the release, and the click with it.
/// - A right press on the list of the pane that is not active makes it active and does nothing else.
/// - The wheel, where it moves the keyboard focus into a pane.
///
/// Focus that comes back to the window, or that goes elsewhere because a control was hidden, decides nothing.
class PaneFocus : public QObject {
    Q_OBJECT

public:
    explicit PaneFocus(EditorContext &editor)
        : m_editor(editor) {}

    /// Watches all controls of a pane. To be called once they are built and everybody else has installed event filters:
    /// the filter installed last is asked first.
    void watch(int pane);

    /// A press on the pane's frame or on its file label.
    void IDtb_Click(int pane);
    void nomelab_Click(int pane);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// True when the press is used up by making its pane active.
    bool press(int pane, const QObject &control, const QMouseEvent &event);
    void makeActive(int pane);

    EditorContext &m_editor;
    QHash<const QObject *, int> m_paneOf; // of each watched control
};

} // namespace qir
