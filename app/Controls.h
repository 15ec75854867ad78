#pragma once

#include "app/shared/EditorContext.h"

QT_BEGIN_NAMESPACE
class QMainWindow;
QT_END_NAMESPACE

namespace qir {

/// Builds the controls of both panes and those that they share, as children of the window's central widget, with
/// their object names and accessible names, and enters them into `controls`. The window owns what is made.
void buildControls(QMainWindow &window, EditorControls &controls);

} // namespace qir
