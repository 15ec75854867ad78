#pragma once

#include "tests/monkey/Gestures.h"

namespace qir {
class CommandTable;
}

namespace qir::test {

/// Walks over differences and carries them across, shows nothing else, opens the windows that tell them, and presses
/// what writes much at once there and in the find bar.
void performComparing(QWidget &window, const CommandTable &commands, Numbers &numbers, const Gestures::Tell &tell);

/// The window of differences by key stands open.
bool byKeyIsOpen(const QWidget &window);

} // namespace qir::test
