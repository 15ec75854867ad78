#include "dialogs/KeyPreviewDialog.h"

#include <QKeyEvent>

namespace qir {

KeyPreviewDialog::KeyPreviewDialog(QWidget *parent)
    : QDialog(parent) {}

void KeyPreviewDialog::previewKeysOfControls() {
    for (auto *control : findChildren<QWidget *>())
        control->installEventFilter(this);
}

bool KeyPreviewDialog::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::KeyPress && Form_KeyDown(*static_cast<QKeyEvent *>(event), watched))
        return true;
    return QDialog::eventFilter(watched, event);
}

void KeyPreviewDialog::keyPressEvent(QKeyEvent *event) {
    if (!Form_KeyDown(*event, this))
        QDialog::keyPressEvent(event);
}

} // namespace qir
