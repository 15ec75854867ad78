#include "platform/controls/CellTextBox.h"

#include "platform/controls/InvisibleSigns.h"

#include <QPainter>

namespace qir {

void CellTextBox::paintEvent(QPaintEvent *event) {
    QLineEdit::paintEvent(event);
    constexpr qsizetype most = 4096; // more of a text than any cell shows
    const QString shown = text().left(most);
    QPainter painter(this);
    const QFontMetricsF metrics(font());
    // The caret tells how far the box has scrolled its text.
    const QString plain = displayText();
    const qreal start = cursorRect().center().x() - metrics.horizontalAdvance(plain.left(cursorPosition()));
    drawInvisibleSigns(painter, shown, rect(),
                       [&](qsizetype index) { return start + metrics.horizontalAdvance(plain.left(index)); });
}

} // namespace qir
