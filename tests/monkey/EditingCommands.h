#pragma once

#include "tests/monkey/Gestures.h"

namespace qir {
class CommandTable;
}

namespace qir::test {

/// Takes back and makes again, finds, replaces, fills and empties, mostly several times in a row, as people do who look
/// for where something changed.
void performEditing(const CommandTable &commands, Numbers &numbers, const Gestures::Tell &tell);

} // namespace qir::test
