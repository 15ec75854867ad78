#pragma once

#include "qirtbase/model/Database.h"

#include <QByteArray>
#include <QByteArrayView>

#include <cstddef>
#include <vector>

/// The steps of a database as a journal keeps them from one save to the next, so that a crash does not lose them:
///
///     kept steps begin
///     for each step that was undone, the next one first:    step mark (32), operations that make it again
///     for each step that is done, the last one first:       step mark (35), operations that undo it
///     kept steps end
///
/// The operations lead on from the state that they find, that of the save at first and, from the first mark 35 on,
/// once more. So whoever reads them makes the undone steps, takes these back, undoes the others, and makes those again:
/// whatever they say, the database is in the end as it was before.
namespace qir {

/// What a journal says of the steps of a database that was just saved.
struct KeptStepRecords {
    std::vector<QByteArray> payloads; ///< Of its first records; none where there are no steps.
    std::size_t done = 0;             ///< How many of the last ones that are done are in them,
    std::size_t undone = 0;           ///< and how many of the first ones that were undone.
};

/// Takes so many bytes at most: beyond that the steps that are farthest away are left out, which costs no more than
/// these bytes either. Values that the tables share with the saved state, and with each other, are written but once or
/// not at all. Throws std::bad_alloc.
KeptStepRecords encodeKeptSteps(const Database &database, std::size_t limit);

/// Makes steps of what stands between kept steps begin and end, in a database without any that is what was saved, as
/// `saved` is. Where that makes no sense it gives False, and the database is of no use any more. Throws.
bool readKeptSteps(QByteArrayView operations, const Database &saved, Database &database);

} // namespace qir
