#pragma once

#include "base/BitMatrix.h"
#include "compare/engine/KeyedFields.h"
#include "compare/engine/TableSource.h"

#include <vector>

namespace qir {

/// A record of the left table and the one of the right table that it belongs to.
struct PairedRecords {
    int left = 0;
    int right = 0;

    friend bool operator==(const PairedRecords &, const PairedRecords &) = default;
};

/// A record that both tables have, with a value that differs.
struct ChangedRecord {
    PairedRecords records;
    std::size_t row = 0; ///< Of KeyedDifference::cells.
};

enum class TableSide { Left, Right };

/// A key that occurs more than once on a side.
struct DuplicateKey {
    TableSide side = TableSide::Left;
    int record = 0; ///< The first one that has it.
    int second = 0; ///< The first double.
    int count = 0;  ///< How many records have it.

    friend bool operator==(const DuplicateKey &, const DuplicateKey &) = default;
};

/// How two tables differ by key. Holds numbers of records and fields, no values: these are read where they are needed,
/// while the tables are as they were compared.
struct KeyedDifference {
    KeyedFields fields;
    QStringList keyNames; ///< As the left table spells them.
    QStringList onlyLeftNames;
    QStringList onlyRightNames;
    int leftRecords = 0;
    int rightRecords = 0;
    std::vector<int> partners;          ///< Element r - 1: the right record of left record r, 0 for none.
    std::vector<int> added;             ///< Right records without a left one, in their order.
    std::vector<int> removed;           ///< Left records without a right one, in their order.
    std::vector<ChangedRecord> changed; ///< In the left order.
    BitMatrix cells;                    ///< (row of a changed record, element of fields.compared): whether it differs.
    std::vector<PairedRecords> moved;   ///< The fewest records whose place changed, in the left order.
    std::vector<DuplicateKey> duplicates; ///< Those of the left side first, each in the order of the first doubles.

    /// Whether anything but the order of records differs.
    bool different() const;
    /// How many values differ; of records that one side has, all but those of ignored fields.
    std::size_t cellCount() const;
};

/// Compares two tables by the values of key fields. Records of equal keys belong together; where a key occurs more
/// than once on a side, in their order. Linear but for the moved records (n log n); besides its result it keeps some
/// 50 bytes for each record. The sources' errors pass.
KeyedDifference compareByKey(TableSource &left, TableSource &right, const KeyedFields &fields,
                             const CellTolerance &tolerance, const KeyedStep &step = {});

/// Of numbers that are all different, the indices of those to leave out so that the rest rises: the fewest, ascending.
std::vector<std::size_t> fewestOutOfOrder(const std::vector<int> &numbers);

} // namespace qir
