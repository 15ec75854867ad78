#pragma once

#include "db/QirDatabase.h"

#include <optional>

namespace qir {

/// Whether a database's file is the very one that its last SaveDtb() wrote, which nobody has written to or replaced
/// since; False before a save. Nothing where the component does not tell.
std::optional<bool> lastSaveStands(const QirDatabase &database);

} // namespace qir
