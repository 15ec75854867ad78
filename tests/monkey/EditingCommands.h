#pragma once

#include "tests/monkey/Gestures.h"

namespace qir {
class EditorContext;
}

namespace qir::test {

/// Takes back and makes again, mostly several times in a row, as people do who look for where something changed; finds,
/// replaces, fills, empties and goes to cells, by menus, by keys and in the bar.
void performEditing(EditorContext &editor, Numbers &numbers, const Gestures::Tell &tell);

} // namespace qir::test
