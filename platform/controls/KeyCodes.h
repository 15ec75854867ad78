#pragma once

#include <QtCore/qnamespace.h>

QT_BEGIN_NAMESPACE
class QKeyEvent;
QT_END_NAMESPACE

namespace qir {

/// The virtual-key code of a key (13 Enter, 45 Insert, 65 A, ...), 0 for a key that has none here.
int virtualKeyCode(int key);

/// Modifiers as a sum: 1 Shift, 2 Ctrl, 4 Alt. Whether the key stands on the keypad does not count.
int shiftMask(Qt::KeyboardModifiers modifiers);

/// Shift+F10, with or without Ctrl: the menu key of keyboards that have none. Unlike that key it comes as a key press
/// only, not as a context menu event.
bool isMenuShortcut(const QKeyEvent &event);

} // namespace qir
