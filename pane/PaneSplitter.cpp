#include "pane/PaneSplitter.h"

#include "platform/controls/DoubleLine.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace qir {

namespace {

constexpr int dots = 5;
constexpr int dotDistance = 6; // pixels

} // namespace

PaneSplitter::PaneSplitter(QWidget *parent)
    : QWidget(parent) {
    setFocusPolicy(Qt::TabFocus); // a press moves the border and leaves the keyboard where it is
    setOrientation(Qt::Vertical);
}

void PaneSplitter::setOrientation(Qt::Orientation orientation) {
    m_orientation = orientation;
    setCursor(orientation == Qt::Vertical ? Qt::SplitVCursor : Qt::SplitHCursor);
    update();
}

void PaneSplitter::mousePressEvent(QMouseEvent *event) {
    m_grip = along(event->position().toPoint());
}

void PaneSplitter::mouseMoveEvent(QMouseEvent *event) {
    if (event->buttons().testFlag(Qt::LeftButton))
        Q_EMIT moved(along(mapToParent(event->position().toPoint())) - m_grip);
}

void PaneSplitter::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton)
        Q_EMIT settled();
}

void PaneSplitter::mouseDoubleClickEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton)
        Q_EMIT putBack();
}

void PaneSplitter::keyPressEvent(QKeyEvent *event) {
    const int step = fontMetrics().lineSpacing();
    const bool vertical = m_orientation == Qt::Vertical;
    if (event->key() == (vertical ? Qt::Key_Up : Qt::Key_Left))
        moveBy(-step);
    else if (event->key() == (vertical ? Qt::Key_Down : Qt::Key_Right))
        moveBy(step);
    else if (event->key() == Qt::Key_Home)
        Q_EMIT putBack();
    else
        QWidget::keyPressEvent(event);
}

void PaneSplitter::moveBy(int pixels) {
    Q_EMIT moved(along(pos()) + pixels);
    Q_EMIT settled();
}

void PaneSplitter::focusInEvent(QFocusEvent *event) {
    QWidget::focusInEvent(event);
    update();
}

void PaneSplitter::focusOutEvent(QFocusEvent *event) {
    QWidget::focusOutEvent(event);
    update();
}

void PaneSplitter::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    if (hasFocus())
        drawDoubleLine(painter, rect(), 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(window()->palette().color(QPalette::WindowText)); // not the frame's: the ground is the window's
    for (int dot = -dots / 2; dot <= dots / 2; ++dot) {
        const QPoint aside =
            m_orientation == Qt::Vertical ? QPoint(dot * dotDistance, 0) : QPoint(0, dot * dotDistance);
        painter.drawRect(QRect(rect().center() + aside, QSize(2, 2)));
    }
}

} // namespace qir
