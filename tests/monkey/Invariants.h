#pragma once

#include <QString>

namespace qir {
struct EditorContext;
}

namespace qir::test {

/// How closely to look.
enum class Look {
    Quick,    ///< At window and state alone; asks nothing of a component.
    Thorough, ///< At every cell of the shown tables too.
};

/// What is out of step between window, state and components while no command runs and no dialog stands open; "" when
/// nothing is. Throws what a component throws.
QString brokenInvariant(EditorContext &editor, Look look);

/// Each grid has the other's current cell as far as it is large enough for it; "" when they have.
QString selectionProblem(EditorContext &editor);

} // namespace qir::test
