#pragma once

#include <QString>

namespace qir {

/// The key that names of tables and fields are compared, sorted and looked up by, everywhere: without surrounding
/// white space, without any " ?" or " !" (again and again until none is left, also those that the removal brings
/// together), upper-cased by Unicode's rules whatever the locale. Keys are compared code unit by code unit.
///
/// Stable under what happens to a name on its way through a list line: the key of a name with a marker appended,
/// trimmed and stripped of markers is the key of the name itself.
QString collationKey(QStringView name);

} // namespace qir
