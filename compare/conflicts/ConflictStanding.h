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
/// What it has in a table or a field, where that is told.
const std::optional<ConflictRecords> &recordsOf(const Conflict &conflict, ConflictSide side);

/// What a database has where a conflict is.
struct ConflictStanding {
    enum class Kind {
        Ours,    ///< What OURS has.
        Theirs,  ///< What THEIRS has.
        Other,   ///< Something else: `now`, or another record of the key.
        Missing, ///< The table, the field or the record is not there.
        Several, ///< More records have the key than the list tells of, or another line is about its place too.
        Whole,   ///< It is about more than the list tells.
    };
    /// Whether records that are known by their numbers alone are those that the merge meant.
    enum class Identity {
        Known,  ///< They are as the merge has left them, or are found by their keys.
        Untold, ///< The list tells no more than the numbers.
        Differs ///< They have other values: other records may have the numbers now.
    };

    Kind kind = Kind::Whole;
    Identity identity = Identity::Known;
    int record = 0; ///< Where it is; 0 for no record, or none that is known.
    int field = 0;
    QString now;            ///< The text of another value of a cell, what a field is now.
    bool theirsStay = true; ///< The fields hold the values of THEIRS as they are.
    bool oursStay = true;
    bool isPlaced = true; ///< Of a field: it is known which record has which value.
};

/// What becomes of a conflict where a side is taken.
enum class Taking {
    Nothing, ///< The database has it so already.
    Write,
    Cut,   ///< A field would not hold a value as it is.
    ByHand ///< The list of conflicts does not tell enough.
};
Taking takingOf(const Conflict &conflict, const ConflictStanding &standing, ConflictSide side);

/// Taking the side may reach another record than the merge meant, or would say of one that it is decided.
bool isUnsure(const Conflict &conflict, const ConflictStanding &standing, ConflictSide side);

/// The standings of conflicts, one for each, by one pass over each table that has some by key, or for its fields or its
/// content. Leaves any table current.
std::vector<ConflictStanding> standingsOf(const QirDatabase &database, const std::vector<Conflict> &conflicts,
                                          const KeyedStep &step = {});

/// Rows of conflicts, in order, with those that are decided along with one of them: several records of one key are
/// taken together.
std::vector<int> decidedTogether(const std::vector<Conflict> &conflicts, const std::vector<int> &rows);

} // namespace qir
