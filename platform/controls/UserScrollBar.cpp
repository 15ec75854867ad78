#include "platform/controls/UserScrollBar.h"

#include <QContextMenuEvent>

#include <utility>

namespace qir {

void UserScrollBar::watch() {
    // An action has moved the slider but not yet the value; without a move no change of value follows.
    connect(this, &QAbstractSlider::actionTriggered, this, [this] { m_byUser = sliderPosition() != value(); });
    connect(this, &QAbstractSlider::valueChanged, this, [this] {
        if (std::exchange(m_byUser, false) && !m_menuOpen)
            Q_EMIT scrolledByUser();
    });
}

void UserScrollBar::contextMenuEvent(QContextMenuEvent *event) {
    // "Scroll here" sets the value without an action.
    const int before = value();
    m_menuOpen = true;
    QScrollBar::contextMenuEvent(event);
    m_menuOpen = false;
    if (value() != before)
        Q_EMIT scrolledByUser();
}

} // namespace qir
