#pragma once

#include "base/state/Remembered.h"
#include "pane/EditorContext.h"

#include <functional>

namespace qir {

/// Whether a database can be written under a name that was chosen; tells why not.
bool canTakeName(QWidget *window, const QirDatabase &database, const QString &name);
/// Gives a database that name. False, with a message, where the component refuses it.
bool takeName(QWidget *window, const QirDatabase &database, const QString &name);
/// Writes a database whether it has changed or not. Where that fails it counts as changed.
void writeAll(const QirDatabase &database);

/// Asks for a name, one of the five kinds, and makes an empty database under it, which is opened as any other.
void NewDatabase_Click(EditorContext &editor, Remembered &remembered,
                       const std::function<void(const QString &path)> &open);

} // namespace qir
