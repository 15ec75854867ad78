#pragma once

#include <QWidget>

namespace qir {

/// The border between the list and the grid of a pane, to be moved by mouse or by the arrow keys; a double click or the
/// Home key puts it back to where it is given.
class PaneSplitter : public QWidget {
    Q_OBJECT

public:
    explicit PaneSplitter(QWidget *parent);

    /// Vertical while the list stands above the grid: the direction in which it moves.
    void setOrientation(Qt::Orientation orientation);
    Qt::Orientation orientation() const { return m_orientation; }

Q_SIGNALS:
    /// The border is to stand so many pixels from the frame's top, or left, edge.
    void moved(int position);
    void putBack();
    void settled(); ///< The moving is over.

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void moveBy(int pixels);
    int along(const QPoint &point) const { return m_orientation == Qt::Vertical ? point.y() : point.x(); }

    Qt::Orientation m_orientation = Qt::Vertical;
    int m_grip = 0; // where in the border the button went down
};

} // namespace qir
