#pragma once

#include "base/Result.h"

#include <QString>

namespace qir {

class QirDatabase;

/// Names chosen in the dialogs are kept in upper case, and an upper-cased name alone may reach another file than the
/// chosen one: a twin that differs only in case stands beside it, or a folder on the way cannot be listed. So what was
/// chosen last under a name is remembered as the place that the name stands for, and comes before any search.

void rememberPlace(const QString &name, const QString &place);

/// The path that a name stands for: the place remembered, else what it reaches ignoring case.
Result<QString> placeOf(const QString &name);

/// Whether a name leads to the place remembered for it without being told. True where none is remembered.
bool leadsThere(const QString &name);

/// Tells a component the place remembered for a name that alone would lead it elsewhere. To be called before it gets
/// the name.
void tellPlace(const QirDatabase &database, const QString &name);

/// Why a component would not reach the place remembered for a name: the name alone leads elsewhere, and the component
/// cannot be told. "" when it would.
QString misleading(const QirDatabase &database, const QString &name);

} // namespace qir
