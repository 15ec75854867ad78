#pragma once

#include "pane/EditorContext.h"

QT_BEGIN_NAMESPACE
class QMainWindow;
QT_END_NAMESPACE

namespace qir {

/// Builds the menu bar and the pop-up menus from the commands of the editor, all of which must have been added,
/// and enters the menus there. The window owns what is made.
void buildMenus(QMainWindow &window, EditorContext &editor);

} // namespace qir
