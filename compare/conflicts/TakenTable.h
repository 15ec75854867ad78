#pragma once

#include "compare/conflicts/TakenSide.h"

namespace qir {

/// A database has a table as the side has it, or no more: its fields and records, its name, or its fields' order.
void writeWholeTable(const QirDatabase &database, const TakenSide &taken, const KeyedStep &step);

} // namespace qir
