#pragma once

#include "compare/conflicts/TakenSide.h"

namespace qir {

class ConflictTable;

/// What becomes of the records where a field is taken from a side.
enum class FieldFit {
    Fits,
    Cut,       ///< The value of a record that the side does not have would not stay as it is.
    NotPlaced, ///< It is not known which record has which value of that side.
};
FieldFit fieldFit(ConflictTable &table, const Conflict &conflict, ConflictSide side, const KeyedStep &step);

/// The current table has the field as the side has it, with its values, or no more.
void writeField(const QirDatabase &database, const TakenSide &taken, const KeyedStep &step);

/// The name of the field that a header tells of.
QString nameInHeader(const QString &header);

} // namespace qir
