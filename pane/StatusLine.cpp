#include "pane/StatusLine.h"

#include <QEvent>
#include <QLabel>
#include <QStyle>

#include <algorithm>
#include <chrono>

namespace qir {

using namespace std::chrono_literals;

namespace {

constexpr auto messageTime = 8s;
constexpr int gap = 8; // pixels between the two parts

} // namespace

StatusLine::StatusLine() {
    m_end.setSingleShot(true);
    m_end.setInterval(messageTime);
    connect(&m_end, &QTimer::timeout, this, [this] {
        m_message.clear();
        show();
    });
}

void StatusLine::setControls(QLabel &left, QLabel &right, QWidget &bar) {
    m_leftLabel = &left;
    m_rightLabel = &right;
    m_bar = &bar;
    m_bar->installEventFilter(this);
}

void StatusLine::place(const QRect &room) {
    const int most = std::max(0, room.width() - gap);
    // Where there is no room for both, neither is left without any.
    const int right = std::min(m_rightLabel->fontMetrics().horizontalAdvance(m_rightLabel->text()) + 2, most / 2);
    const QRect leftPlace(room.x(), room.y(), most - right, room.height());
    const QRect rightPlace(room.x() + room.width() - right, room.y(), right, room.height());
    const Qt::LayoutDirection direction = m_leftLabel->layoutDirection();
    m_leftLabel->setGeometry(QStyle::visualRect(direction, room, leftPlace));
    m_rightLabel->setGeometry(QStyle::visualRect(direction, room, rightPlace));
}

void StatusLine::setState(const QString &left, const QString &right) {
    if (!m_new && left != m_left)
        m_message.clear();
    m_new = false;
    m_left = left;
    if (right != m_rightLabel->text()) {
        m_rightLabel->setText(right);
        place(m_leftLabel->geometry() | m_rightLabel->geometry());
    }
    show();
}

void StatusLine::showMessage(const QString &text) {
    m_message = text;
    m_new = true;
    m_end.start();
    show();
}

void StatusLine::show() {
    const QString &text = m_message.isEmpty() ? m_left : m_message;
    if (text != m_leftLabel->text())
        m_leftLabel->setText(text);
}

bool StatusLine::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Show || event->type() == QEvent::Hide || event->type() == QEvent::Move ||
        event->type() == QEvent::Resize)
        giveWay();
    return QObject::eventFilter(watched, event);
}

void StatusLine::giveWay() {
    for (QLabel *label : {m_leftLabel, m_rightLabel})
        label->setVisible(m_bar->isHidden() || !m_bar->geometry().intersects(label->geometry()));
}

} // namespace qir
