#pragma once

#include <QRect>
#include <QString>

QT_BEGIN_NAMESPACE
class QFontMetrics;
class QPainter;
QT_END_NAMESPACE

namespace qir {

/// Pixels kept free left and right of a text in a cell or a header. Two of them fit into what column fitting leaves
/// beside the text.
inline constexpr int cellMargin = 2;

/// A text as it is measured and drawn: every line end is a blank. Tabs stay: they reach to their tab stops.
QString oneLine(QString text);

/// A text as it is drawn in a cell of so many pixels: one line, its end replaced by an ellipsis when it does not fit.
/// Its tabs reach to the same tab stops as when a column is fitted to it.
QString fittedText(const QFontMetrics &metrics, const QString &text, int cellWidth);

/// True when fittedText() would not show the whole text.
bool isCutOff(const QFontMetrics &metrics, const QString &text, int cellWidth);

/// Draws fittedText() with the painter's font and pen, vertically centred.
void drawCellText(QPainter &painter, const QRect &cell, const QString &text, Qt::Alignment horizontal);

} // namespace qir
