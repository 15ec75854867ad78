#pragma once

#include <QProxyStyle>

namespace qir {

/// The desktop's style, with boxes to tick that are seen in dark colours too: some styles draw their frames darker than
/// the window, whatever the window is.
class TickBoxes : public QProxyStyle {
    Q_OBJECT

public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget = nullptr) const override;
};

} // namespace qir
