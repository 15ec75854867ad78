#pragma once

#include <QScrollBar>

namespace qir {

/// A scroll bar that tells the user's scrolling (bar, wheel, its keys and its menu) from a value set by code.
class UserScrollBar : public QScrollBar {
    Q_OBJECT

public:
    using QScrollBar::QScrollBar;

    /// Starts to raise scrolledByUser(), behind everything that is connected to valueChanged() by now: to be called
    /// once the view has its bar.
    void watch();

Q_SIGNALS:
    void scrolledByUser();

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    bool m_byUser = false;
    bool m_menuOpen = false;
};

} // namespace qir
