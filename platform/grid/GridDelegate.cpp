#include "platform/grid/GridDelegate.h"

#include "platform/controls/DoubleLine.h"
#include "platform/grid/CellTextDrawing.h"
#include "platform/grid/GridModel.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>

namespace qir {

namespace {

/// Laid over a selected cell: strong enough to see, light and thin enough to read black text on red and on white.
QColor selectionTint(const QPalette &palette) {
    const QColor highlight = palette.color(QPalette::Highlight);
    const auto lightened = [](int part) { return (part + 255) / 2; };
    return QColor(lightened(highlight.red()), lightened(highlight.green()), lightened(highlight.blue()), 128);
}

bool isCurrent(const QStyleOptionViewItem &option, const QModelIndex &index) {
    const auto *view = qobject_cast<const QAbstractItemView *>(option.widget);
    return view != nullptr && view->currentIndex() == index;
}

/// A small triangle in the upper right corner, dark enough on white, on red and under the tint.
void drawCornerMark(QPainter &painter, const QRect &cell) {
    const int side = std::clamp(cell.height() / 3, 4, 10);
    const QPoint corner(cell.right() + 1, cell.top());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 160));
    painter.drawPolygon(QPolygon({corner, corner - QPoint(side, 0), corner + QPoint(0, side)}));
}

} // namespace

void GridDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
    painter->save();
    painter->setClipRect(option.rect);
    painter->fillRect(option.rect, index.data(Qt::BackgroundRole).value<QColor>());
    const bool current = isCurrent(option, index);
    if (option.state.testFlag(QStyle::State_Selected) && !current) {
        painter->fillRect(option.rect, selectionTint(option.palette));
    }
    if (current) // below the text, which keeps all its pixels
        drawDoubleLine(*painter, option.rect, option.state.testFlag(QStyle::State_HasFocus) ? 2 : 1);
    painter->setFont(option.font);
    painter->setPen(index.data(Qt::ForegroundRole).value<QColor>());
    const auto alignment = index.data(Qt::TextAlignmentRole).value<Qt::Alignment>();
    drawCellText(*painter, option.rect, index.data(Qt::DisplayRole).toString(), alignment & Qt::AlignHorizontal_Mask);
    if (index.data(GridModel::UnlikeRole).toBool())
        drawCornerMark(*painter, option.rect);
    painter->restore();
}

QSize GridDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const {
    const QString text = index.data(Qt::DisplayRole).toString();
    return {option.fontMetrics.horizontalAdvance(text) + 2 * cellMargin, option.fontMetrics.height()};
}

bool GridDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                             const QModelIndex &index) {
    if (event->type() != QEvent::ToolTip)
        return false;
    QString text = index.data(Qt::ToolTipRole).toString();
    const bool differs = !text.isEmpty(); // both texts whole
    if (!differs)
        text = index.data(Qt::DisplayRole).toString();
    const QString stored = index.data(GridModel::StoredWordsRole).toString();
    const bool cut = differs || isCutOff(option.fontMetrics, text, option.rect.width()) ||
                     !view->viewport()->rect().contains(option.rect);
    if (!stored.isEmpty())
        text = cut && !text.isEmpty() ? text + u'\n' + stored : stored;
    if (!index.isValid() || text.isEmpty() || (!cut && stored.isEmpty())) {
        QToolTip::hideText();
        return true;
    }
    // A text that looks like markup is shown as the text that it is.
    m_tip = Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
    QToolTip::showText(event->globalPos(), m_tip, view->viewport(), option.rect);
    return true;
}

void GridDelegate::cellsChanged() {
    if (m_tip.isEmpty())
        return;
    if (QToolTip::isVisible() && QToolTip::text() == m_tip)
        QToolTip::hideText();
    m_tip.clear();
}

} // namespace qir
