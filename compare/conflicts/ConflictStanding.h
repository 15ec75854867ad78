#pragma once

#include "compare/conflicts/Conflict.h"
#include "compare/engine/KeyedFields.h"
#include "db/QirDatabase.h"

#include <vector>

namespace qir {

enum class ConflictSide { Ours, Theirs };

/// What a side has where a conflict is; empty for nothing.
const QVariantList &valuesOf(const Conflict &conflict, ConflictSide side);
/// The names of the fields that these are of.
QStringList fieldNamesOf(const Conflict &conflict, ConflictSide side);

/// What a database has where a conflict is.
struct ConflictStanding {
    enum class Kind {
        Ours,    ///< What OURS has.
        Theirs,  ///< What THEIRS has.
        Other,   ///< Something else: `now`, or another record of the key.
        Missing, ///< The table, the field or the record is not there.
        Several, ///< More than one record has the key.
        Whole,   ///< It is about more than values can tell: a field, a table, records of one key.
    };

    Kind kind = Kind::Whole;
    int record = 0; ///< Where it is; 0 for no record, or none that is known.
    int field = 0;
    QString now;            ///< The text of another value of a cell.
    bool theirsStay = true; ///< The fields hold the values of THEIRS as they are.
    bool oursStay = true;
};

/// What becomes of a conflict where a side is taken.
enum class Taking {
    Nothing, ///< The database has it so already.
    Write,
    Cut,   ///< A field would not hold a value as it is.
    ByHand ///< The list of conflicts does not tell enough.
};
Taking takingOf(const Conflict &conflict, const ConflictStanding &standing, ConflictSide side);

/// The standings of conflicts, one for each, by one pass over each table that has some by key. Leaves any table
/// current.
std::vector<ConflictStanding> standingsOf(const QirDatabase &database, const std::vector<Conflict> &conflicts,
                                          const KeyedStep &step = {});

} // namespace qir
