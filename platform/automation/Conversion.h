#pragma once

#include "platform/automation/Member.h"

#include <QMetaType>
#include <QVariant>

namespace qir {

/// The type that a value of a shape has; invalid for Nothing and for the text array, which travels by reference.
QMetaType typeOf(Shape shape);
/// As it stands in a member's signature.
const char *nameOf(Shape shape);
bool isNumber(QMetaType type);

/// A value as another type, when the automation convention has a way from the one to the other: the same type, any
/// value into a QVariant, a QVariant by what it holds, numbers among each other (nearest whole number, true as -1).
/// An invalid variant where there is no way, or where the number is out of the other's range.
QVariant convertedTo(QMetaType type, const QVariant &value);

} // namespace qir
