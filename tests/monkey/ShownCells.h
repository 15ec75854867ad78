#pragma once

#include <QString>

namespace qir {
class EditorContext;
}

namespace qir::test {

/// What is wrong with the grids of a view of differences only; "" nothing, and where they show all.
QString shownCellsProblem(EditorContext &editor);

} // namespace qir::test
