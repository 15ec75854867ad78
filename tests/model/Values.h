#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>
#include <vector>

namespace qir::test {

/// The rules for names, numbers and texts once more, written for clearness only and apart from the program's own.

/// What names are told apart and sorted by: markers and surrounding blanks left out, in capitals.
QString nameKey(QString name);
/// A line of a list without its markers.
QString withoutMarkers(QString line);

/// The number that a text begins with, blanks left out; 0 for none.
double numberAtStart(QString text);
/// The number that a text is from end to end; nothing when it is none.
std::optional<double> numberThroughout(const QString &text);

/// A value of a cell is an int, a double or a QString.
bool isText(const QVariant &value);
QString textOf(const QVariant &value);
/// The same type and content; doubles bit for bit.
bool identical(const QVariant &left, const QVariant &right);
/// Equal as values of cells: numbers by value, texts by code units.
bool equalValues(const QVariant &left, const QVariant &right);
/// The first so many characters of a text; what is no character becomes U+FFFD.
QString firstCharacters(const QString &text, int count);

/// The order of a sorted column: empty texts first, then numbers by value, then other texts.
bool sortsBefore(const QString &left, const QString &right);
/// A text as a grid takes it from the clipboard: rows of cells.
std::vector<QStringList> cellsOf(QString text);

} // namespace qir::test
