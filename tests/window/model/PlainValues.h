#pragma once

#include <QString>
#include <QVariant>

#include <optional>

namespace qir::test {

/// The rules for names, numbers and texts once more, written for clearness only and apart from the program's own.

/// What names are told apart and sorted by: markers and surrounding blanks left out, in capitals.
QString nameKey(QString name);
/// A line of a list without its markers.
QString withoutMarkers(QString line);

/// The number that a text begins with, blanks left out; 0 for none.
double numberAtStart(QString text);
/// The number that a text is from end to end; nothing when it is none.
std::optional<double> numberThroughout(QString text);

/// A value of a cell is a double or a QString.
bool isText(const QVariant &value);
QString textOf(const QVariant &value);
/// The same kind and content; numbers bit for bit.
bool identical(const QVariant &left, const QVariant &right);
/// Equal as values of cells: numbers by value, texts by code units.
bool equalValues(const QVariant &left, const QVariant &right);

} // namespace qir::test
