#pragma once

#include <QString>

namespace qir {

class EditorContext;

/// Why a command cannot be chosen that goes by whole tables.
QString onlyDifferencesReason();

/// True, and says why in the status line, while a pane's grid shows a part of its table: what sorts it, or lays a block
/// over neighbouring cells, would reach cells that nobody sees.
bool refusedOnlyDifferences(EditorContext &editor, int pane);

} // namespace qir
