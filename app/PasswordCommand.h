#pragma once

#include "pane/EditorContext.h"

namespace qir {

/// Its row for the menus.
void addPasswordCommand(EditorContext &editor);

/// Asks for the current and a new password of the active pane's database and hands both to the component, unchecked.
/// The file changes when the database is next written. Throws what the component throws, at a wrong current password.
void ChangePassword_Click(EditorContext &editor);

} // namespace qir
