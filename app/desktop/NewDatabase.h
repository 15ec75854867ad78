#pragma once

#include "pane/EditorContext.h"

#include <functional>

namespace qir {

/// Asks for a name, one of the five kinds, and makes an empty database under it, which is opened as any other.
void NewDatabase_Click(EditorContext &editor, const std::function<void(const QString &path)> &open);

} // namespace qir
