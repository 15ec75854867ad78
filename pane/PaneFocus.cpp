#include "pane/PaneFocus.h"

#include "pane/ActivePane.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <QApplication>
#include <QFocusEvent>
#include <QGroupBox>
#include <QLabel>
#include <QMouseEvent>

namespace qir {

namespace {

bool movedByKey(const QFocusEvent &event) {
    return event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason ||
           event.reason() == Qt::ShortcutFocusReason;
}

} // namespace

void PaneFocus::watch(int pane) {
    QWidget &frame = m_editor.IDtb(pane);
    QList<QWidget *> controls = frame.findChildren<QWidget *>();
    controls.append(&frame);
    for (QWidget *control : std::as_const(controls)) {
        m_paneOf.insert(control, pane);
        control->installEventFilter(this);
    }
    connect(&m_editor.ListaTabelle(pane), &ListBox::MouseUp, this, [this, pane](Qt::MouseButton button) {
        if (button == Qt::LeftButton)
            makeActive(pane); // where there was no line to click
    });
}

bool PaneFocus::eventFilter(QObject *watched, QEvent *event) {
    const int pane = m_paneOf.value(watched, -1);
    if (pane < 0)
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return press(pane, *watched, static_cast<const QMouseEvent &>(*event));
    case QEvent::Wheel:
        if (m_paneOf.value(QApplication::focusWidget(), -1) == pane)
            makeActive(pane);
        return false;
    case QEvent::FocusIn:
        if (const MessageLoop *loop = MessageLoop::instance();
            movedByKey(static_cast<const QFocusEvent &>(*event)) && !(loop && loop->commandRunning()))
            makeActive(pane);
        return false;
    default:
        return false;
    }
}

bool PaneFocus::press(int pane, const QObject &control, const QMouseEvent &event) {
    const bool onLines = &control == m_editor.ListaTabelle(pane).viewport();
    if (&control == &m_editor.IDtb(pane)) {
        runCommand([&] { IDtb_Click(pane); });
    } else if (&control == &m_editor.nomelab(pane)) {
        runCommand([&] { nomelab_Click(pane); });
    } else if (onLines && event.button() == Qt::RightButton) {
        const bool otherPane = pane != m_editor.IndexAttivo();
        makeActive(pane);
        return otherPane;
    } else if (!onLines || event.button() != Qt::LeftButton) {
        makeActive(pane);
    }
    return false;
}

void PaneFocus::IDtb_Click(int pane) {
    activatePane(m_editor, pane);
}

void PaneFocus::nomelab_Click(int pane) {
    activatePane(m_editor, pane);
}

void PaneFocus::makeActive(int pane) {
    if (m_editor.IndexAttivo() >= 0 && pane != m_editor.IndexAttivo())
        runCommand([&] { activatePane(m_editor, pane); });
}

} // namespace qir
