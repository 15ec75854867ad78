#pragma once

#include <QStringList>

#include <vector>

namespace qir {

class QirDatabase;

enum class AlignedRowKind { Both, LeftOnly, RightOnly, Neither };

/// One line of two name lists put side by side.
struct AlignedRow {
    int left = -1;  ///< Index into the left list, -1 when the name is missing there.
    int right = -1; ///< Index into the right list, -1 when the name is missing there.
    AlignedRowKind kind = AlignedRowKind::Neither;
    QString name; ///< As the side that has it spells it, the left one first.
};

/// The names of a component's tables 1..`count`.
QStringList tableNames(const QirDatabase &database, int count);

/// Sorts names by collationKey(); names of equal keys keep their order.
void sortNames(QStringList &names);

/// `sorted` without repeated names. A name repeats another when their keys are equal and they are equal, code unit by
/// code unit, without markers: of names that differ only in case both stay.
QStringList withoutRepeatedNames(const QStringList &sorted);

/// Puts two lists side by side: a row for each name of `merged`, names of equal keys in one row, in key order. All
/// three are sorted by collationKey(); `merged` holds every name of both lists; a name that neither has gets a row
/// without sides. Where one list has several names of one key they pair up in their order, and those left over stand
/// alone, so that both sides always have as many rows. Linear.
std::vector<AlignedRow> alignNames(const QStringList &merged, const QStringList &left, const QStringList &right);

} // namespace qir
