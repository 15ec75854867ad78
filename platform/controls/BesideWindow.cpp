#include "platform/controls/BesideWindow.h"

#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <array>

namespace qir {

namespace {

bool takes(const QRect &room, const QSize &size) {
    return room.width() >= size.width() && room.height() >= size.height();
}

qint64 area(const QRect &room) {
    return qint64{std::max(room.width(), 0)} * std::max(room.height(), 0);
}

} // namespace

QRect placeBeside(const QRect &window, const QSize &wanted, const QSize &least, const QRect &screen) {
    const int right = window.x() + window.width();
    const int bottom = window.y() + window.height();
    const int screenRight = screen.x() + screen.width();
    const int screenBottom = screen.y() + screen.height();
    const std::array rooms{QRect(right, screen.y(), screenRight - right, screen.height()),
                           QRect(screen.x(), screen.y(), window.x() - screen.x(), screen.height()),
                           QRect(screen.x(), bottom, screen.width(), screenBottom - bottom),
                           QRect(screen.x(), screen.y(), screen.width(), window.y() - screen.y())};
    const QRect *chosen = std::ranges::find_if(rooms, [&](const QRect &room) { return takes(room, wanted); });
    if (chosen == rooms.end()) {
        chosen = std::ranges::max_element(
            rooms, {}, [&](const QRect &room) { return takes(room, least) ? area(room) : qint64{-1}; });
        if (!takes(*chosen, least)) {
            const QSize size = wanted.boundedTo(screen.size());
            return {QPoint(screenRight - size.width(), screenBottom - size.height()), size};
        }
    }
    const QSize size = wanted.boundedTo(chosen->size());
    // Close to the window, and level with it as far as the screen goes.
    const bool onLeft = chosen == &rooms[1];
    const bool above = chosen == &rooms[3];
    const int x = onLeft ? window.x() - size.width() : std::max(chosen->x(), window.x());
    const int y = above ? window.y() - size.height() : std::max(chosen->y(), window.y());
    return {QPoint(std::min(x, chosen->x() + chosen->width() - size.width()),
                   std::min(y, chosen->y() + chosen->height() - size.height())),
            size};
}

void moveBeside(QWidget &window, const QWidget &other) {
    const QScreen *screen = other.screen();
    if (screen == nullptr)
        return;
    // The window manager gives this one a frame like the other's.
    const QMargins frame(other.geometry().left() - other.frameGeometry().left(),
                         other.geometry().top() - other.frameGeometry().top(),
                         other.frameGeometry().right() - other.geometry().right(),
                         other.frameGeometry().bottom() - other.geometry().bottom());
    const QSize least = window.minimumSizeHint().expandedTo(window.minimumSize());
    const QRect place = placeBeside(other.frameGeometry(), window.size().grownBy(frame), least.grownBy(frame),
                                    screen->availableGeometry());
    window.setGeometry(place.marginsRemoved(frame));
}

} // namespace qir
