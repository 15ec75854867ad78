#include "pane/FileNameLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace qir {

QSize FileNameLabel::minimumSizeHint() const {
    return {0, QLabel::minimumSizeHint().height()};
}

bool FileNameLabel::isCut() const {
    return fontMetrics().horizontalAdvance(text()) > contentsRect().width();
}

bool FileNameLabel::event(QEvent *event) {
    if (event->type() == QEvent::ToolTip) {
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), isCut() ? text() : QString(), this);
        return true;
    }
    return QLabel::event(event);
}

void FileNameLabel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(), shown,
                          foregroundRole());
}

} // namespace qir
