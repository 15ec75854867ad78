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
    , m_wasEnabled(widget != nullptr && !widget->testAttribute(Qt::WA_ForceDisabled)) {
    if (widget != nullptr)
        widget->setEnabled(false);
}

DisabledWidget::~DisabledWidget() {
    if (m_widget)
        m_widget->setEnabled(m_wasEnabled);
}

} // namespace qir
