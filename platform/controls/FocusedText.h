#pragma once

#include <QApplication>
#include <QLineEdit>

namespace qir {

/// The text box that has the keyboard, null when none has.
inline QLineEdit *focusedText() {
    return qobject_cast<QLineEdit *>(QApplication::focusWidget());
}

} // namespace qir
