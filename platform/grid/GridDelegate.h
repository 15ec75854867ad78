#pragma once

#include <QAbstractItemDelegate>
#include <QString>

namespace qir {

/// Draws the cells of a grid: the model's background, one line of black text, a tint over the selected cells that
/// leaves the background readable, a double line round the current cell, whose background stays as it is; it is thicker
/// in a grid that has the focus. Shows a cell's whole text as tool tip when it is cut off.
class GridDelegate : public QAbstractItemDelegate {
    Q_OBJECT

public:
    using QAbstractItemDelegate::QAbstractItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

    /// The cells are no longer what a tool tip that still stands was told of: takes it away.
    void cellsChanged();

private:
    QString m_tip; // that was shown last
};

} // namespace qir
