#pragma once

#include <QString>
#include <QVariant>

namespace qir {

/// The text that a field gives back for a text that was stored into it: for a number the nearest value that its type
/// holds, of the number that the text begins with; for a text what its size leaves of it. What every component stores
/// (QirDatabase::setQIRTableRecordSetByIndex()), known before it is asked to.
QString storedText(int typeCode, int size, const QString &text);

/// The text of a value as a component gives it out.
QString valueText(const QVariant &value);

} // namespace qir
