#include "platform/controls/KeyCodes.h"

#include <QKeyEvent>

#include <array>

namespace qir {

namespace {

struct KeyCode {
    Qt::Key key;
    int code;
};

constexpr std::array namedKeys{
    KeyCode{Qt::Key_Backspace, 8}, KeyCode{Qt::Key_Tab, 9},     KeyCode{Qt::Key_Return, 13},
    KeyCode{Qt::Key_Enter, 13},    KeyCode{Qt::Key_Shift, 16},  KeyCode{Qt::Key_Control, 17},
    KeyCode{Qt::Key_Alt, 18},      KeyCode{Qt::Key_Escape, 27}, KeyCode{Qt::Key_PageUp, 33},
    KeyCode{Qt::Key_PageDown, 34}, KeyCode{Qt::Key_End, 35},    KeyCode{Qt::Key_Home, 36},
    KeyCode{Qt::Key_Left, 37},     KeyCode{Qt::Key_Up, 38},     KeyCode{Qt::Key_Right, 39},
    KeyCode{Qt::Key_Down, 40},     KeyCode{Qt::Key_Insert, 45}, KeyCode{Qt::Key_Delete, 46},
};

constexpr int firstFunctionKeyCode = 112;

} // namespace

int virtualKeyCode(int key) {
    // Letters, digits and the blank are their own codes.
    if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9) || key == Qt::Key_Space)
        return key;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12)
        return firstFunctionKeyCode + (key - Qt::Key_F1);
    for (const KeyCode &named : namedKeys) {
        if (named.key == key)
            return named.code;
    }
    return 0;
}

bool isMenuShortcut(const QKeyEvent &event) {
    return event.key() == Qt::Key_F10 && event.modifiers().testFlag(Qt::ShiftModifier) &&
           !event.modifiers().testFlag(Qt::AltModifier);
}

int shiftMask(Qt::KeyboardModifiers modifiers) {
    return (modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0) + (modifiers.testFlag(Qt::ControlModifier) ? 2 : 0) +
           (modifiers.testFlag(Qt::AltModifier) ? 4 : 0);
}

} // namespace qir
