#pragma once

#include "base/state/Remembered.h"
#include "pane/EditorContext.h"

namespace qir {

/// The name of the file that a pane's database has, which is shown there: a name that the component refused is not it.
QString openFileName(const EditorContext &editor, int pane);

/// The absolute path of this file; "" for a pane without one.
QString openFilePath(const EditorContext &editor, int pane);
/// Whether it is protected.
Protection openFileProtection(const EditorContext &editor, int pane);

/// The files of both panes, and whether either is protected.
FilePair openPair(const EditorContext &editor);
Protection protectionOfPair(const EditorContext &editor);

Protection protectionOf(const QString &fileName);

/// What a pane has just opened or saved is the newest of the recent files, and with the other pane's the newest pair.
void rememberOpenFile(Remembered &remembered, const EditorContext &editor, int pane);

} // namespace qir
