#pragma once

namespace qir {

class ListBox;

/// Fills a list with the names of all field types, in the order in which they are offered, each with its code as item
/// data.
void CaricaTipi(ListBox &lista);

} // namespace qir
