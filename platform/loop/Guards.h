#pragma once

#include <QPointer>
#include <QWidget>

namespace qir {

/// Shows the hourglass pointer while it lives; nests.
class BusyPointer {
public:
    BusyPointer();
    ~BusyPointer();
    BusyPointer(const BusyPointer &) = delete;
    BusyPointer &operator=(const BusyPointer &) = delete;
};

/// Disables a widget while it lives and then gives it back the state that it had, and the keyboard focus to the control
/// of it that lost it by this. The widget may go first.
class DisabledWidget {
public:
    explicit DisabledWidget(QWidget *widget);
    ~DisabledWidget();
    DisabledWidget(const DisabledWidget &) = delete;
    DisabledWidget &operator=(const DisabledWidget &) = delete;

private:
    QPointer<QWidget> m_widget;
    QPointer<QWidget> m_focused;
    bool m_wasEnabled;
};

} // namespace qir
