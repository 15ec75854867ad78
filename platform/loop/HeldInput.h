#pragma once

#include <QEvent>
#include <QMimeData>
#include <QObject>
#include <QPointer>

#include <memory>

namespace qir {

/// An input event kept for later, with everything that it points at.
class HeldInput {
public:
    /// True for the kinds of event that are held while a command yields.
    static bool isInput(const QEvent &event);

    HeldInput(QObject *receiver, const QEvent &event);

    /// True when the event adds nothing to this one, the last that is held: a pointer that moved on (this one takes its
    /// place), or a key held down that repeats.
    bool absorb(QObject *receiver, const QEvent &event);
    /// False when its receiver is gone or blocked by a modal window that has opened since.
    bool canBeDelivered() const;
    /// Sends it; only when it can be delivered.
    void deliver();

private:
    bool deliverDragEnter();

    QPointer<QObject> m_receiver;
    std::unique_ptr<QEvent> m_event;
    std::unique_ptr<QMimeData> m_dropped; // of a drop: the original goes with the drag
};

/// The widget that an event for `receiver` is meant for: the widget itself or that of a window; null for others.
QWidget *widgetOf(QObject *receiver);

} // namespace qir
