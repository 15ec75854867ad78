#pragma once

#include <QHeaderView>

#include <optional>

namespace qir {

class PointerPlace;

/// A header of a grid: the fixed row (horizontal) or the fixed column (vertical). It draws its texts with the cells'
/// margins, shows which sections the selection reaches, and marks the current row. It asks nothing of the selection
/// model, whose answers about whole columns cost a look at every row.
class GridHeader : public QHeaderView {
    Q_OBJECT

public:
    /// `pointer` must outlive the header.
    GridHeader(Qt::Orientation orientation, PointerPlace &pointer, QWidget *parent);

    /// The sections that the selection reaches and the current one, -1 for none.
    void setMarks(int first, int last, int current);
    /// Draws these sections again, as far as they are seen.
    void drawAgain(int first, int last);
    /// Whether the user may resize sections.
    void setUserResizing(bool allowed);

    /// The section at a global position, or nothing when the header is not there. A position over the header beyond its
    /// last section is section -1.
    std::optional<int> sectionAt(const QPoint &globalPosition) const;

Q_SIGNALS:
    /// A section (never its resize handle) was pressed with the left button, or entered with it held.
    void pressed(int section, Qt::KeyboardModifiers modifiers);
    void draggedTo(int section);
    /// The user drags the edge of a section, which has this size now.
    void resizedByUser(int section, int pixels);
    /// Any button went down, after what it does to the header itself; `section` is -1 beyond the last one.
    void buttonDown(Qt::MouseButton button, int section, const QPoint &globalPosition);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void paintSection(QPainter *painter, const QRect &rect, int logicalIndex) const override;

private:
    QRect drawRowNumber(QPainter &painter, const QRect &rect, int section) const;
    void drawRowSigns(QPainter &painter, const QRect &rect, int section) const;
    void drawCurrentMark(QPainter &painter, const QRect &rect) const;

    PointerPlace &m_pointer;
    int m_firstMarked = -1;
    int m_lastMarked = -1;
    int m_current = -1;
};

} // namespace qir
