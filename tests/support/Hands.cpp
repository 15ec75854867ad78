#include "tests/support/Hands.h"

#include <QApplication>
#include <QKeySequence>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>

#include <stdexcept>

namespace qir::hands {

using namespace Qt::StringLiterals;

namespace {

constexpr int turns = 4;
constexpr int betweenGestures = 1000; // milliseconds, more than any desktop's double click
constexpr int withinGesture = 50;
constexpr int dragSteps = 3;

int theTime = 0; // of the last event, in milliseconds

std::string nameOf(const QWidget &control) {
    const QString name = control.objectName();
    return name.isEmpty() ? control.metaObject()->className() : name.toStdString();
}

QWidget &shown(QWidget *control) {
    if (control == nullptr)
        throw std::runtime_error("no control to lay a hand on");
    if (!control->isVisible() || control->window()->windowHandle() == nullptr)
        throw std::runtime_error(nameOf(*control) + " is not shown");
    return *control;
}

QPoint inWindow(const QWidget &control, QPoint point) {
    const QPoint place = point.isNull() ? control.rect().center() : point;
    return control.mapTo(control.window(), place);
}

QPoint onControl(const QWidget &control, QPoint point) {
    if (!control.rect().contains(point))
        throw std::runtime_error("the press would be beside " + nameOf(control));
    return inWindow(control, point);
}

/// A hand over a control, and where it goes down.
struct Reach {
    Reach(QWidget *control, Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint point)
        : mouse(*shown(control).window(), button, modifiers)
        , place(onControl(*control, point)) {}
    Mouse mouse;
    QPoint place;
};

QWidget &focused(QWidget *control) {
    const QWidget &window = *shown(control).window();
    const QWidget *focus = window.focusWidget();
    const bool takesKeys = control == &window || focus == control || (focus && control->focusProxy() == focus);
    if (!takesKeys)
        throw std::runtime_error(nameOf(*control) + " would not get the key: the focus is at " +
                                 (focus ? nameOf(*focus) : std::string("nothing")));
    return *control->window();
}

/// A hand that goes to a window makes it the active one, as every desktop has it; only then do its controls learn of
/// the focus.
void activate(QWindow *window) {
    const QWindow *modal = QGuiApplication::modalWindow();
    if (window == nullptr || window->type() == Qt::Popup || window == QGuiApplication::focusWindow() ||
        (modal != nullptr && modal != window))
        return;
    window->requestActivate();
    turnLoop();
}

/// What a key without a letter types.
QString textOf(Qt::Key key) {
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return u"\r"_s;
    case Qt::Key_Backspace:
        return u"\b"_s;
    case Qt::Key_Delete:
        return u"\x7f"_s;
    case Qt::Key_Escape:
        return u"\x1b"_s;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return u"\t"_s;
    default:
        return key < Qt::Key_Escape ? QString(QChar(static_cast<char16_t>(key))) : QString();
    }
}

/// The fingers on the modifiers, which come down before what they go with and leave after it.
void hold(const QPointer<QWindow> &window, Qt::KeyboardModifiers modifiers, QEvent::Type type) {
    constexpr std::pair<Qt::KeyboardModifier, Qt::Key> keys[] = {
        {Qt::ControlModifier, Qt::Key_Control}, {Qt::AltModifier, Qt::Key_Alt}, {Qt::ShiftModifier, Qt::Key_Shift}};
    Qt::KeyboardModifiers others;
    for (const auto &[modifier, key] : keys) {
        if (!modifiers.testFlag(modifier))
            continue;
        if (window)
            qt_handleKeyEvent(window, type, key, type == QEvent::KeyPress ? others : modifiers & ~modifier & ~others,
                              {}, false, 1);
        others |= modifier;
        turnLoop();
    }
}

QString typed(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    if (modifiers.testAnyFlags(Qt::ControlModifier | Qt::AltModifier))
        return {};
    const QString text = textOf(key);
    return modifiers.testFlag(Qt::ShiftModifier) ? text : text.toLower();
}

} // namespace

void turnLoop() {
    for (int turn = 0; turn < turns; ++turn)
        QCoreApplication::processEvents();
}

Mouse::Mouse(QWidget &window, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
    : m_window(window.windowHandle())
    , m_button(button)
    , m_modifiers(modifiers) {
    theTime += betweenGestures;
}

void Mouse::send(QPoint point, QEvent::Type type) {
    theTime += withinGesture;
    if (m_window) {
        const Qt::MouseButton changed = type == QEvent::MouseMove ? Qt::NoButton : m_button;
        qt_handleMouseEvent(m_window, point, m_window->mapToGlobal(point),
                            m_down ? Qt::MouseButtons(m_button) : Qt::NoButton, changed, type, m_modifiers, theTime);
    }
    turnLoop();
}

void Mouse::press(QPoint point) {
    activate(m_window);
    hold(m_window, m_modifiers, QEvent::KeyPress);
    m_down = true;
    send(point, QEvent::MouseButtonPress);
}

void Mouse::move(QPoint point) {
    send(point, QEvent::MouseMove);
}

void Mouse::release(QPoint point) {
    m_down = false;
    send(point, QEvent::MouseButtonRelease);
    hold(m_window, m_modifiers, QEvent::KeyRelease);
}

void Mouse::click(QPoint point) {
    press(point);
    release(point);
}

void Mouse::doubleClick(QPoint point) {
    click(point);
    click(point); // soon enough after the first one
}

void strike(QWidget &window, Qt::Key key, Qt::KeyboardModifiers modifiers, const QString &text) {
    const QPointer<QWindow> handle(window.windowHandle());
    activate(handle);
    hold(handle, modifiers, QEvent::KeyPress);
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (handle)
            qt_handleKeyEvent(handle, type, key, modifiers, text, false, 1);
        turnLoop();
    }
    hold(handle, modifiers, QEvent::KeyRelease);
}

void press(QWidget *control, Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint point) {
    Reach reach(control, button, modifiers, point);
    reach.mouse.press(reach.place);
}

void release(QWidget *control, Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint point) {
    QWidget &there = shown(control);
    Mouse(*there.window(), button, modifiers).release(inWindow(there, point));
}

void move(QWidget *control, QPoint point, Qt::MouseButtons held) {
    QWidget &there = shown(control);
    QWindow *window = there.window()->windowHandle();
    const QPoint place = inWindow(there, point);
    theTime += withinGesture;
    qt_handleMouseEvent(window, place, window->mapToGlobal(place), held, Qt::NoButton, QEvent::MouseMove, {}, theTime);
    turnLoop();
}

void click(QWidget *control, Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint point) {
    Reach reach(control, button, modifiers, point);
    reach.mouse.click(reach.place);
}

void doubleClick(QWidget *control, Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint point) {
    Reach reach(control, button, modifiers, point);
    reach.mouse.doubleClick(reach.place);
}

void turnWheel(QWidget *control, QPoint point, QPoint angle) {
    QWidget &there = shown(control);
    QWindow *window = there.window()->windowHandle();
    const QPoint place = onControl(there, point);
    QWheelEvent event(place, window->mapToGlobal(place), QPoint(), angle, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event); // as those of the window system are
    qApp->notify(window, &event);
    turnLoop();
}

void drag(QWidget *control, QPoint from, QPoint to, Qt::KeyboardModifiers modifiers) {
    Reach reach(control, Qt::LeftButton, modifiers, from);
    const QPoint end = inWindow(*control, to);
    reach.mouse.press(reach.place);
    for (int step = 1; step <= dragSteps; ++step)
        reach.mouse.move(reach.place + (end - reach.place) * step / dragSteps);
    reach.mouse.release(end);
}

void key(QWidget *control, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    strike(focused(control), key, modifiers, typed(key, modifiers));
}

void key(QWidget *control, const QKeySequence &sequence) {
    for (int i = 0; i < sequence.count(); ++i)
        key(control, sequence[static_cast<uint>(i)].key(), sequence[static_cast<uint>(i)].keyboardModifiers());
}

void type(QWidget *control, const QString &text) {
    for (const QChar character : text) {
        const bool capital = character.isUpper();
        strike(focused(control), static_cast<Qt::Key>(character.toUpper().unicode()),
               capital ? Qt::ShiftModifier : Qt::NoModifier, character);
    }
}

} // namespace qir::hands
