#pragma once

#include "pane/EditorContext.h"

QT_BEGIN_NAMESPACE
class QMainWindow;
QT_END_NAMESPACE

namespace qir {

/// Builds the controls of both panes and those that they share, as children of the window's central widget, with their
/// object names and accessible names, and enters them into `editor`. The window owns what is made.
void buildControls(QMainWindow &window, EditorContext &editor);

/// Sets what an empty pane says: how to open a database and, before that, why one could not be opened; `failure` is ""
/// when there is nothing to say.
void showHint(const EditorContext &editor, int pane, const QString &failure);

} // namespace qir
