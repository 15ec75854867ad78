#include "pane/FileNameLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QToolTip>

namespace qir {

namespace {

int signCount(const FileNameLabel::Signs &signs) {
    return static_cast<int>(signs.unsaved) + static_cast<int>(signs.isProtected) + static_cast<int>(signs.readOnly);
}

// Each sign in a square of one by one, made once.

QPainterPath dot() {
    QPainterPath path;
    path.addEllipse(QRectF(0.25, 0.25, 0.5, 0.5));
    return path;
}

QPainterPath padlock() {
    QPainterPath path;
    path.addRect(QRectF(0.2, 0.45, 0.6, 0.4));
    QPainterPath shackle;
    shackle.addEllipse(QRectF(0.3, 0.15, 0.4, 0.6));
    shackle.addEllipse(QRectF(0.4, 0.25, 0.2, 0.4));
    return path.united(shackle);
}

QPainterPath struckPencil() {
    QPainterPath pencil;
    pencil.addPolygon(QPolygonF({{0.15, 0.85}, {0.25, 0.6}, {0.7, 0.15}, {0.85, 0.3}, {0.4, 0.75}}));
    pencil.closeSubpath();
    QPainterPath gap;
    gap.addPolygon(QPolygonF({{0.08, 0.22}, {0.22, 0.08}, {0.92, 0.78}, {0.78, 0.92}}));
    gap.closeSubpath();
    QPainterPath stroke;
    stroke.addPolygon(QPolygonF({{0.12, 0.18}, {0.18, 0.12}, {0.88, 0.82}, {0.82, 0.88}}));
    stroke.closeSubpath();
    return pencil.subtracted(gap).united(stroke);
}

} // namespace

void FileNameLabel::setSigns(const Signs &signs) {
    if (signs == m_signs)
        return;
    m_signs = signs;
    update();
}

QSize FileNameLabel::minimumSizeHint() const {
    return {0, QLabel::minimumSizeHint().height()};
}

QRect FileNameLabel::nameRect() const {
    const QRect all = contentsRect();
    return QStyle::visualRect(layoutDirection(), all, all.adjusted(0, 0, -signCount(m_signs) * all.height(), 0));
}

bool FileNameLabel::isCut() const {
    return fontMetrics().horizontalAdvance(text()) > nameRect().width();
}

bool FileNameLabel::event(QEvent *event) {
    if (event->type() == QEvent::ToolTip) {
        const QString details = m_details ? m_details() : QString();
        const QString shown = details.isEmpty() && isCut() ? text() : details;
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), shown, this);
        return true;
    }
    return QLabel::event(event);
}

void FileNameLabel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QRect place = nameRect();
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, place.width());
    // A path begins with its separator, which is of no direction: it would go to the other end.
    const Qt::TextFlag direction = shown.isRightToLeft() ? Qt::TextForceRightToLeft : Qt::TextForceLeftToRight;
    const Qt::Alignment start = isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
    style()->drawItemText(&painter, place, start | Qt::AlignAbsolute | Qt::AlignVCenter | direction, palette(),
                          isEnabled(), shown, foregroundRole());
    if (signCount(m_signs) == 0)
        return; // measuring a text takes as long as drawing it
    const qreal side = contentsRect().height();
    painter.setRenderHint(QPainter::Antialiasing);
    // Right behind the name, where it leaves room.
    const qreal behind = std::min<qreal>(fontMetrics().horizontalAdvance(shown) + side / 3, place.width());
    const bool mirrored = isRightToLeft();
    painter.translate(mirrored ? place.right() - behind - side * signCount(m_signs) : place.left() + behind,
                      contentsRect().top());
    painter.scale(side, side);
    const auto draw = [&](bool isSet, const QPainterPath &sign) {
        if (!isSet)
            return;
        painter.fillPath(sign, palette().color(foregroundRole()));
        painter.translate(1, 0);
    };
    static const QPainterPath dotSign = dot();
    static const QPainterPath padlockSign = padlock();
    static const QPainterPath struckPencilSign = struckPencil();
    draw(m_signs.unsaved, dotSign);
    draw(m_signs.isProtected, padlockSign);
    draw(m_signs.readOnly, struckPencilSign);
}

} // namespace qir
