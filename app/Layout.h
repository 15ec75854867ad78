#pragma once

#include "pane/EditorContext.h"

namespace qir {

/// Lays the panes out in the window: pane 0 alone in one-pane mode, both side by side in two-pane mode, and inside
/// each frame, from the top, file label, table list, grid, or, where the user wants it, the grid beside the list; below
/// the frames the progress bar. A window below its least size grows to it first. Does nothing while the window is
/// minimised. Called on every resize and after every open, close and mode change.
void RicalcolaSistemazioneForm(EditorContext &editor);

/// The least size of the window, in pixels.
QSize minimumWindowSize();

} // namespace qir
