#pragma once

#include <QGroupBox>

namespace qir {

/// The frame of a pane: a caption over a plain border, on a background that tells whether the pane is the active one.
class PaneFrame : public QGroupBox {
    Q_OBJECT

public:
    using QGroupBox::QGroupBox;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace qir
