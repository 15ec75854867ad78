#include "platform/loop/HeldInput.h"

#include <QApplication>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace qir {

namespace {

std::unique_ptr<QMimeData> copyOf(const QMimeData &source) {
    auto copy = std::make_unique<QMimeData>();
    for (const QString &format : source.formats())
        copy->setData(format, source.data(format));
    return copy;
}

bool isKey(const QEvent &event) {
    return event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease;
}

} // namespace

QWidget *widgetOf(QObject *receiver) {
    if (auto *widget = qobject_cast<QWidget *>(receiver))
        return widget;
    if (const auto *window = qobject_cast<QWindow *>(receiver)) {
        for (QWidget *candidate : QApplication::topLevelWidgets()) {
            if (candidate->windowHandle() == window)
                return candidate;
        }
    }
    return nullptr;
}

bool HeldInput::isInput(const QEvent &event) {
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::InputMethod:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

HeldInput::HeldInput(QObject *receiver, const QEvent &event)
    : m_receiver(receiver)
    , m_event(event.clone()) {
    if (event.type() != QEvent::Drop)
        return;
    const auto &drop = static_cast<const QDropEvent &>(event);
    m_dropped = drop.mimeData() != nullptr ? copyOf(*drop.mimeData()) : std::make_unique<QMimeData>();
    m_event = std::make_unique<QDropEvent>(drop.position(), drop.possibleActions(), m_dropped.get(), drop.buttons(),
                                           drop.modifiers());
}

bool HeldInput::absorb(QObject *receiver, const QEvent &event) {
    if (receiver != m_receiver)
        return false;
    if (event.type() == QEvent::MouseMove && m_event->type() == QEvent::MouseMove) {
        const auto &last = static_cast<const QMouseEvent &>(*m_event);
        const auto &next = static_cast<const QMouseEvent &>(event);
        if (last.buttons() != next.buttons() || last.modifiers() != next.modifiers())
            return false;
        m_event.reset(event.clone());
        return true;
    }
    if (isKey(event) && isKey(*m_event)) {
        // A key held down through a long command would go on long after it was let go.
        const auto &last = static_cast<const QKeyEvent &>(*m_event);
        const auto &next = static_cast<const QKeyEvent &>(event);
        return last.isAutoRepeat() && next.isAutoRepeat() && last.key() == next.key() &&
               last.modifiers() == next.modifiers();
    }
    return false;
}

bool HeldInput::canBeDelivered() const {
    if (!m_receiver)
        return false;
    const QWidget *modal = QApplication::activeModalWidget();
    const QWidget *widget = widgetOf(m_receiver);
    if (modal == nullptr || widget == nullptr)
        return true;
    const QWidget *window = widget->window();
    return window == modal || modal->isAncestorOf(window) || window->windowType() == Qt::Popup;
}

void HeldInput::deliver() {
    if (m_event->type() == QEvent::Drop && !deliverDragEnter())
        return;
    if (m_receiver)
        QCoreApplication::sendEvent(m_receiver, m_event.get());
}

bool HeldInput::deliverDragEnter() {
    // The drag is long over: its target has to be found again.
    const auto &drop = static_cast<const QDropEvent &>(*m_event);
    QDragEnterEvent enter(drop.position().toPoint(), drop.possibleActions(), m_dropped.get(), drop.buttons(),
                          drop.modifiers());
    QCoreApplication::sendEvent(m_receiver, &enter);
    return enter.isAccepted();
}

} // namespace qir
