#include "compare/engine/TableComparison.h"

#include "compare/engine/ValueEquality.h"

#include <algorithm>
#include <cstdlib>
#include <span>
#include <vector>

namespace qir {

namespace {

constexpr int bitsPerWord = 64;
constexpr int mostStepRecords = 65536; // between two steps; as many as most components keep together
constexpr int stepCells = 1 << 21;     // more of them would keep the caller from what else it has to do

/// Two components side by side, read record by record.
class RecordPair {
public:
    RecordPair(const QirDatabase &left, const QirDatabase &right)
        : m_left(left)
        , m_right(right) {}

    void moveTo(int record) {
        m_left.setQIRTableRecordsPointerOut(record);
        m_right.setQIRTableRecordsPointerOut(record);
    }

    bool differs(int field) {
        m_right.readQIRTableRecordSetByIndex(field, m_rightValue);
        m_left.readQIRTableRecordSetByIndex(field, m_leftValue);
        return !valuesEqual(m_leftValue, m_rightValue);
    }

private:
    const QirDatabase &m_left;
    const QirDatabase &m_right;
    QVariant m_leftValue; // these two keep their memory from cell to cell
    QVariant m_rightValue;
};

std::size_t atLeastZero(int number) {
    return static_cast<std::size_t>(std::max(number, 0));
}

/// Sets the elements of these records and fields, which both tables and the matrix have.
void compareRecords(const QirDatabase &left, const QirDatabase &right, int lastRecord, int lastField, BitMatrix &matrix,
                    const ComparisonStep &step) {
    RecordPair pair(left, right);
    std::vector<std::uint64_t> words(matrix.wordsPerRow());
    for (int record = 1; record <= lastRecord; ++record) {
        pair.moveTo(record);
        std::ranges::copy(matrix.row(static_cast<std::size_t>(record)), words.begin());
        for (int field = 1; field <= lastField; ++field) {
            std::uint64_t &word = words[static_cast<std::size_t>(field / bitsPerWord)];
            const std::uint64_t bit = std::uint64_t{1} << (field % bitsPerWord);
            if (pair.differs(field))
                word |= bit;
            else
                word &= ~bit;
        }
        matrix.setRow(static_cast<std::size_t>(record), words);
        if (step)
            step(record);
    }
}

// Of two components that both hand out columns: a few calls for each field and each some ten thousand records. Values
// whose memory both share are not looked at. The current records stay.

int stepRecordsOf(int fields) {
    int records = mostStepRecords;
    while (records > 1 && records > stepCells / std::max(fields, 1))
        records /= 2;
    return records;
}

/// What both components have of one field, from one record on, as far as neither has to be asked again.
class FieldPair {
public:
    FieldPair(const QirDatabase &left, const QirDatabase &right, int field)
        : m_left(left)
        , m_right(right)
        , m_field(field) {}

    /// Calls pair(left block, index in it, right block, index in it, count) for stretches of `count` records from
    /// `first` on, until it returns false.
    template<class Pair>
    bool walk(int first, int count, Pair pair) {
        Side left{m_left.ReadColumn(m_field, first, count)};
        Side right{m_right.ReadColumn(m_field, first, count)};
        for (int done = 0; done < count;) {
            if (left.used == left.block.count())
                left = {m_left.ReadColumn(m_field, first + done, count - done)};
            if (right.used == right.block.count())
                right = {m_right.ReadColumn(m_field, first + done, count - done)};
            const qsizetype common =
                std::min({left.block.count() - left.used, right.block.count() - right.used, qsizetype{count} - done});
            if (!pair(left.block, left.used, right.block, right.used, common, done))
                return false;
            left.used += common;
            right.used += common;
            done += static_cast<int>(common);
        }
        return true;
    }

private:
    struct Side {
        ColumnBlock block;
        qsizetype used = 0;
    };

    const QirDatabase &m_left;
    const QirDatabase &m_right;
    int m_field;
};

/// Lays the bits of a record's compared fields over those that are there.
void setRecord(BitMatrix &matrix, int record, int lastField, std::span<const std::uint64_t> found,
               std::vector<std::uint64_t> &words) {
    const auto row = static_cast<std::size_t>(record);
    const std::span<const std::uint64_t> before = matrix.row(row);
    for (std::size_t word = 0; word < words.size(); ++word) {
        std::uint64_t compared = 0;
        const int firstColumn = static_cast<int>(word) * bitsPerWord;
        const int lastBit = std::min(lastField - firstColumn, bitsPerWord - 1);
        if (lastBit >= 0)
            compared = ~std::uint64_t{0} >> (bitsPerWord - 1 - lastBit);
        if (word == 0)
            compared &= ~std::uint64_t{1}; // column 0 is no field
        words[word] = (before[word] & ~compared) | found[word];
    }
    if (!std::ranges::equal(words, before))
        matrix.setRow(row, words);
}

/// True when a value of these records and fields, which both tables have, differs.
bool currentColumnsDiffer(const QirDatabase &left, const QirDatabase &right, int records, int fields,
                          const ComparisonStep &step) {
    const int stepRecords = stepRecordsOf(fields);
    for (int first = 1; first <= records; first += stepRecords) {
        const int count = std::min(stepRecords, records - first + 1);
        for (int field = 1; field <= fields; ++field) {
            const bool equal =
                FieldPair(left, right, field)
                    .walk(first, count,
                          [](const ColumnBlock &l, qsizetype lFirst, const ColumnBlock &r, qsizetype rFirst,
                             qsizetype common, int) { return !anyDifference(l, lFirst, r, rFirst, common); });
            if (!equal)
                return true;
        }
        if (step)
            step(first + count - 1);
    }
    return false;
}

/// As compareRecords().
void compareCurrentColumns(const QirDatabase &left, const QirDatabase &right, int lastRecord, int lastField,
                           BitMatrix &matrix, const ComparisonStep &step) {
    const std::size_t stride = matrix.wordsPerRow();
    std::vector<std::uint64_t> found;
    std::vector<std::uint64_t> words(stride);
    const int stepRecords = stepRecordsOf(lastField);
    for (int first = 1; first <= lastRecord; first += stepRecords) {
        const int count = std::min(stepRecords, lastRecord - first + 1);
        found.assign(static_cast<std::size_t>(count) * stride, 0);
        for (int field = 1; field <= lastField; ++field) {
            const auto word = static_cast<std::size_t>(field / bitsPerWord);
            const std::uint64_t bit = std::uint64_t{1} << (field % bitsPerWord);
            FieldPair(left, right, field)
                .walk(first, count,
                      [&](const ColumnBlock &l, qsizetype lFirst, const ColumnBlock &r, qsizetype rFirst,
                          qsizetype common, int done) {
                          const auto rest = std::span(found).subspan(static_cast<std::size_t>(done) * stride + word);
                          markDifferences(l, lFirst, r, rFirst, common, {rest, stride, bit});
                          return true;
                      });
        }
        for (int record = first; record < first + count; ++record)
            setRecord(matrix, record, lastField,
                      std::span(found).subspan(static_cast<std::size_t>(record - first) * stride, stride), words);
        if (step)
            step(first + count - 1);
    }
}

} // namespace

TableSizes currentTableSizes(const QirDatabase &left, const QirDatabase &right) {
    TableSizes sizes;
    sizes.leftRecords = left.QirTableRecordsCount();
    sizes.rightRecords = right.QirTableRecordsCount();
    sizes.leftFields = left.QirTableFieldsCount();
    sizes.rightFields = right.QirTableFieldsCount();
    return sizes;
}

bool currentTablesDiffer(const QirDatabase &left, const QirDatabase &right, const ComparisonStep &step) {
    const TableSizes sizes = currentTableSizes(left, right);
    if (!sizes.sameSize())
        return true;
    if (left.hasColumns() && right.hasColumns())
        return currentColumnsDiffer(left, right, sizes.leftRecords, sizes.leftFields, step);
    RecordPair pair(left, right);
    for (int record = 1; record <= sizes.leftRecords; ++record) {
        pair.moveTo(record);
        for (int field = 1; field <= sizes.leftFields; ++field) {
            if (pair.differs(field))
                return true;
        }
        if (step)
            step(record);
    }
    return false;
}

void compareCurrentTables(const QirDatabase &left, const QirDatabase &right, int records, int fields, BitMatrix &matrix,
                          const ComparisonStep &step) {
    const TableSizes sizes = currentTableSizes(left, right);
    const int lastRecord = std::min({records, sizes.commonRecords(), static_cast<int>(matrix.rows()) - 1});
    const int lastField = std::min({fields, sizes.commonFields(), static_cast<int>(matrix.columns()) - 1});
    if (left.hasColumns() && right.hasColumns())
        compareCurrentColumns(left, right, lastRecord, lastField, matrix, step);
    else
        compareRecords(left, right, lastRecord, lastField, matrix, step);
    matrix.setBlock(atLeastZero(records) + 1, atLeastZero(fields) + 1);
}

void compareCurrentCells(const QirDatabase &left, const QirDatabase &right, const CellBounds &cells,
                         BitMatrix &matrix) {
    const TableSizes sizes = currentTableSizes(left, right);
    RecordPair pair(left, right);
    for (int record = cells.firstRecord; record <= std::min(cells.lastRecord, sizes.commonRecords()); ++record) {
        pair.moveTo(record);
        for (int field = cells.firstField; field <= std::min(cells.lastField, sizes.commonFields()); ++field)
            matrix.set(atLeastZero(record), atLeastZero(field), pair.differs(field));
    }
}

void markEqualTables(int records, int fields, BitMatrix &matrix, const ComparisonStep &step) {
    const int lastRecord = std::min(records, static_cast<int>(matrix.rows()) - 1);
    const int lastField = std::min(fields, static_cast<int>(matrix.columns()) - 1);
    const bool marked = matrix.count() > 0;
    for (int record = 1; record <= lastRecord; ++record) {
        for (int field = 1; marked && field <= lastField; ++field)
            matrix.set(static_cast<std::size_t>(record), static_cast<std::size_t>(field), false);
        if (step)
            step(record);
    }
    matrix.setBlock(atLeastZero(records) + 1, atLeastZero(fields) + 1);
}

void markOneSided(BitMatrix &matrix, int commonRecords, int commonFields) {
    matrix.setBlock(atLeastZero(commonRecords) + 1, 1);
    matrix.setBlock(1, atLeastZero(commonFields) + 1);
}

BitMatrix differingCells(const QirDatabase &left, const QirDatabase &right, const ComparisonStep &step) {
    const TableSizes sizes = currentTableSizes(left, right);
    BitMatrix matrix(atLeastZero(sizes.mostRecords()) + 1, atLeastZero(sizes.mostFields()) + 1);
    compareCurrentTables(left, right, sizes.commonRecords(), sizes.commonFields(), matrix, step);
    markOneSided(matrix, sizes.commonRecords(), sizes.commonFields());
    return matrix;
}

std::size_t cellsOfEither(const BitMatrix &different, const TableSizes &sizes) {
    const auto record = static_cast<std::size_t>(sizes.mostRecords());
    const auto field = static_cast<std::size_t>(sizes.mostFields());
    const int records = sizes.leftRecords - sizes.rightRecords;
    const int fields = sizes.leftFields - sizes.rightFields;
    const bool isCorner = (records > 0 && fields < 0) || (records < 0 && fields > 0);
    if (!isCorner || record >= different.rows() || field >= different.columns() || !different.at(record, field))
        return different.count();
    return different.count() - static_cast<std::size_t>(std::abs(records)) * static_cast<std::size_t>(std::abs(fields));
}

} // namespace qir
