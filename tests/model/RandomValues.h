#pragma once

#include "tests/model/Choices.h"

#include <QString>

namespace qir::test {

/// A text of plain, accented, wide and paired characters, now and then with a lone surrogate.
QString randomText(Choices &choices);
/// A number: small with halves, any finite or other one by its bits, or one of those that are special to a field type.
double randomNumber(Choices &choices);
/// A name that is new in most cases.
QString randomName(Choices &choices);

} // namespace qir::test
