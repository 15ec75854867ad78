#pragma once

#include "pane/EditorContext.h"

namespace qir {

/// The absolute path of the file that a pane's name stands for; "" for a pane without a name.
QString openFilePath(const EditorContext &editor, int pane);

Protection protectionOf(const QString &fileName);

/// What a pane has just opened or saved is the newest of the recent files, and with the other pane's the newest pair.
void rememberOpenFile(EditorContext &editor, int pane);

} // namespace qir
