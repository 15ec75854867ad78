#include "pane/PaneFrame.h"

#include <QPainter>

namespace qir {

namespace {

constexpr int captionIndent = 8; // that of the controls inside

} // namespace

void PaneFrame::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(captionIndent, 0, width() - 2 * captionIndent, painter.fontMetrics().height() + 2),
                     Qt::AlignLeft | Qt::AlignVCenter, title());
}

} // namespace qir
