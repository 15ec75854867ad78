#pragma once

#include <QRectF>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace qir {

/// Signs in the painter's pen colour, told apart by their shape, in the middle of a place.

/// An equals sign struck through: what stands here differs from the other side.
void drawDiffersSign(QPainter &painter, const QRectF &place);
/// A full disc with a plus: only this side has it.
void drawOnlyHereSign(QPainter &painter, const QRectF &place);
/// An empty broken circle: this side lacks it.
void drawMissingHereSign(QPainter &painter, const QRectF &place);

} // namespace qir
