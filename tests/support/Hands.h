#pragma once

#include <QEvent>
#include <QPoint>
#include <QPointer>
#include <QString>

#include <QtCore/qnamespace.h>

QT_BEGIN_NAMESPACE
class QKeySequence;
class QWidget;
class QWindow;
QT_END_NAMESPACE

/// Mouse and keyboard as a person uses them. Events enter where those of the window system do, so that focus, pop-ups,
/// modal boxes and mouse grabs take part; and between a press and its release, and after each of them, the event loop
/// turns several times, as it does in the tenth of a second that a finger needs.
namespace qir::hands {

/// Lets the event loop turn until what a press or a release has set going is over: focus changes, queued calls,
/// posted events, timers that are due.
void turnLoop();

/// One button over one window. Points are in the window's coordinates. What happens to a window that is closed
/// meanwhile is nothing.
class Mouse {
public:
    explicit Mouse(QWidget &window, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {});

    Qt::MouseButton button() const { return m_button; }
    void press(QPoint point);
    void move(QPoint point);
    void release(QPoint point);
    void click(QPoint point);
    void doubleClick(QPoint point);

private:
    void send(QPoint point, QEvent::Type type);

    QPointer<QWindow> m_window;
    Qt::MouseButton m_button;
    Qt::KeyboardModifiers m_modifiers;
    bool m_down = false;
};

/// Goes down on a key and up again over a window, whatever has its focus.
void strike(QWidget &window, Qt::Key key, Qt::KeyboardModifiers modifiers, const QString &text);

// The same on a control: a point is in its coordinates, its middle without one. Throws where a hand could not do it: a
// control that is not shown, a press beside it, or a key for a control that has not the focus.

void press(QWidget *control, Qt::MouseButton button, Qt::KeyboardModifiers modifiers = {}, QPoint point = {});
void release(QWidget *control, Qt::MouseButton button, Qt::KeyboardModifiers modifiers = {}, QPoint point = {});
/// Moves the pointer; with `held` buttons down that is a drag.
void move(QWidget *control, QPoint point = {}, Qt::MouseButtons held = {});
void click(QWidget *control, Qt::MouseButton button, Qt::KeyboardModifiers modifiers = {}, QPoint point = {});
void doubleClick(QWidget *control, Qt::MouseButton button, Qt::KeyboardModifiers modifiers = {}, QPoint point = {});
/// Turns the wheel over a control by so many eighths of a degree; downwards is negative.
void turnWheel(QWidget *control, QPoint point, QPoint angle);
/// Presses at `from`, moves to `to` in a few steps and releases there.
void drag(QWidget *control, QPoint from, QPoint to, Qt::KeyboardModifiers modifiers = {});

void key(QWidget *control, Qt::Key key, Qt::KeyboardModifiers modifiers = {});
void key(QWidget *control, const QKeySequence &sequence);
/// Types a text, key by key.
void type(QWidget *control, const QString &text);

} // namespace qir::hands
