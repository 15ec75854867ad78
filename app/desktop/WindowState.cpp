#include "app/desktop/WindowState.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace qir {

namespace {

constexpr QSize usualFrame(10, 40); // what window managers put round a window, in pixels at most
constexpr int leastVisible = 100;   // pixels of the window's top that a hand can take hold of

/// The screen on which enough of a window's top would be seen; null for none.
const QScreen *screenOf(const QRect &frame) {
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QRect seen = frame & screen->availableGeometry();
        if (seen.width() >= leastVisible && seen.height() >= leastVisible && seen.top() == frame.top())
            return screen;
    }
    return nullptr;
}

} // namespace

void restoreWindowPlace(QWidget &window, const Remembered &remembered) {
    const std::optional<WindowPlace> place = remembered.windowPlace();
    if (!place)
        return;
    if (const QScreen *screen = screenOf(place->frame)) {
        window.resize(place->frame.size().boundedTo(screen->availableSize()));
        window.move(place->frame.topLeft());
    } else {
        window.resize(place->frame.size().boundedTo(QGuiApplication::primaryScreen()->availableSize()));
    }
    if (place->maximized)
        window.setWindowState(window.windowState() | Qt::WindowMaximized);
}

void fitToScreen(QWidget &window) {
    const QSize room = window.screen()->availableSize() - usualFrame;
    if (!window.isMaximized() && room.isValid())
        window.resize(window.size().boundedTo(room));
}

void rememberWindowPlace(const QWidget &window, Remembered &remembered) {
    const QRect usual = window.normalGeometry();
    const QRect now = window.isMaximized() || window.isFullScreen() ? usual : QRect(window.pos(), window.size());
    if (now.isValid())
        remembered.noteWindowPlace({now, window.isMaximized()});
}

} // namespace qir
