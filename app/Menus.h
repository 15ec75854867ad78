#pragma once

#include "pane/EditorContext.h"

QT_BEGIN_NAMESPACE
class QMainWindow;
QT_END_NAMESPACE

namespace qir {

/// Builds the menu bar and the pop-up menus with every command, and enters them into `controls`. Commands that need
/// a database start disabled. The window owns what is made.
void buildMenus(QMainWindow &window, EditorControls &controls);

} // namespace qir
