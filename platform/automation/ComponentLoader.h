#pragma once

#include "platform/automation/AutomationObject.h"

#include <QString>
#include <QStringList>

namespace qir {

/// The folders in which component libraries are looked for, in this order: those of the environment variable
/// QIR_COMPONENT_PATH (colon-separated), `components` beside the running program, lib/qir/components under the prefix
/// that the program is installed in. Needs a QCoreApplication. A folder need not exist.
QStringList componentFolders();

/// A new instance of the class that a programmatic identifier stands for, from the first library of
/// componentFolders() that names it (a folder's libraries in the order of their names). Only that library is loaded;
/// it stays loaded for the life of the program.
///
/// Throws AutomationError when no library names the identifier (with the identifier and the folders), when the library
/// that does cannot be loaded, has no CreateInstance, or gives no instance. What CreateInstance itself throws passes
/// through.
AutomationObject createObject(const QString &progId);

} // namespace qir
