#include "platform/controls/CellTextBox.h"

#include "platform/controls/InvisibleSigns.h"

#include <QPainter>

#include <algorithm>

namespace qir {

void CellTextBox::paintEvent(QPaintEvent *event) {
    QLineEdit::paintEvent(event);
    const QString cell = text();
    if (std::none_of(cell.begin(), cell.end(), isInvisible))
        return;
    const QString plain = displayText();
    const Qt::LayoutDirection direction = plain.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
    if (!goesBothWays(plain, direction) && !showsInvisible(cell))
        return;
    const LaidOutLine line(plain, font(), direction);
    // The caret tells how far the box has scrolled its text.
    const qreal left = cursorRect().center().x() - line.edge(cursorPosition());
    QPainter painter(this);
    drawInvisibleSigns(painter, cell, line, {left, 0}, height());
}

/// Of a text of one direction: whether there is a sign to draw in the part that shows.
bool CellTextBox::showsInvisible(const QString &cell) {
    const auto [first, last] = std::minmax({cursorPositionAt(rect().topLeft()), cursorPositionAt(rect().topRight())});
    return std::any_of(cell.begin() + first, cell.begin() + std::min<qsizetype>(last + 1, cell.size()), isInvisible);
}

} // namespace qir
