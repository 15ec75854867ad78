#include "platform/loop/Guards.h"

#include <QApplication>

namespace qir {

BusyPointer::BusyPointer() {
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

BusyPointer::~BusyPointer() {
    QApplication::restoreOverrideCursor();
}

DisabledWidget::DisabledWidget(QWidget *widget)
    : m_widget(widget)
    , m_focused(widget != nullptr ? widget->focusWidget() : nullptr)
    , m_wasEnabled(widget != nullptr && !widget->testAttribute(Qt::WA_ForceDisabled)) {
    if (widget != nullptr)
        widget->setEnabled(false);
}

DisabledWidget::~DisabledWidget() {
    if (!m_widget)
        return;
    m_widget->setEnabled(m_wasEnabled);
    if (m_focused && m_widget->focusWidget() == nullptr)
        m_focused->setFocus();
}

} // namespace qir
