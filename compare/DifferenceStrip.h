#pragma once

#include "pane/EditorContext.h"

#include <QRectF>
#include <QWidget>

#include <array>
#include <vector>

namespace qir {

class DifferenceWalk;

/// A narrow band beside a grid that stands for the whole table: marks where differing records lie, a frame round what
/// the grid shows. Shown while the cells of both grids are compared.
class DifferenceStrip : public QWidget {
    Q_OBJECT

public:
    DifferenceStrip(EditorContext &editor, int pane);

    /// A command has ended: shows what holds now. Records are counted by the height of a line on the screen.
    void follow();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// A press, or a drag, asks for a record.
    void wanted(int row);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    int records() const; ///< Of the longer table.
    int recordAt(int y) const;
    static qreal recordsInView(const Grid &grid);
    QRectF frame() const;
    void placeBesideGrid();
    void count();
    void ask(const QMouseEvent &event);

    EditorContext &m_editor;
    int m_pane;
    std::vector<bool> m_marks; // for each line of pixels: whether its records differ
    QRectF m_drawnFrame;
};

/// Both of them.
class DifferenceStrips : public QObject {
    Q_OBJECT

public:
    DifferenceStrips(EditorContext &editor, DifferenceWalk &walk)
        : m_editor(editor)
        , m_walk(walk) {}

    /// To be called once, when the grids stand; the panes' frames own the strips.
    void build();
    void follow();

private:
    EditorContext &m_editor;
    DifferenceWalk &m_walk;
    std::array<DifferenceStrip *, 2> m_strips{};
};

} // namespace qir
