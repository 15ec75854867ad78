#pragma once

#include "pane/EditorContext.h"

namespace qir {

/// Their rows for the menus.
void addHelpCommands(EditorContext &editor);

/// Opens the user guide, which is built into the program, at what it says of the place of the keyboard's focus.
void GuideMenu_Click(EditorContext &editor);
/// At its page on keys.
void HelpKeysMenu_Click(EditorContext &editor);

/// Says what the program is and its version.
void AboutMenu_Click(EditorContext &editor);

} // namespace qir
