#pragma once

#include "base/Result.h"
#include "cli/diff/ValueOutput.h"
#include "compare/report/DatabaseDifference.h"
#include "db/tables/TableReader.h"

#include <QByteArray>
#include <QStringList>
#include <QVariant>

#include <vector>

namespace qir {

/// A cell by position. A value is invalid on a side without the cell.
struct PatchCell {
    int record = 0;
    int field = 0;
    QVariant left;
    QVariant right;
};

enum class PatchAction {
    Added,
    Removed,
    Changed,
    Field, ///< The value of a record of both sides in a field of one.
};

/// What becomes of a record by key.
struct PatchRecord {
    PatchAction action = PatchAction::Changed;
    QVariantList key;
    int occurrence = 1;  ///< Which of the records of this key it is.
    QVariantList values; ///< Of one that is added or removed: all its fields.
    QString field;       ///< Of the others.
    QVariant left;
    QVariant right;
};

/// What becomes of a table.
struct PatchTable {
    QString leftName; ///< "" on a side without the table.
    QString rightName;
    int leftRecords = 0;
    int rightRecords = 0;
    bool hasFields = false; ///< Whether what the fields are is told: not of a table where nothing changes.
    std::vector<FieldInfo> leftFields;
    std::vector<FieldInfo> rightFields;
    QStringList key; ///< Empty by position.
    std::vector<PatchCell> cells;
    std::vector<PatchRecord> records;
};

using Patch = std::vector<PatchTable>;

/// Writes what makes the right database from the left one: the lines of --json, with what they leave open. Returns
/// whether there is anything to change. Moves current tables and records.
bool appendPatch(QByteArray &out, const DatabaseDifference &difference, const QirDatabase &left,
                 const QirDatabase &right, const OutputSink &sink);

/// Reads such lines. Fails with the number of the first line that is none of them.
Result<Patch> readPatch(const QByteArray &lines);
/// The one that makes the left database from the right one.
Patch reversed(Patch patch);

/// What came of applying a patch.
struct PatchOutcome {
    QStringList misfits; ///< What stood against it, in words; nothing must be saved where there are any.
    bool changed = false;
};

/// Makes the changes of a patch, each where the old values still stand; goes on to the next table where a table has a
/// misfit, so that all of them are told. Throws what the component throws.
PatchOutcome applyPatch(const QirDatabase &database, const Patch &patch);

} // namespace qir
