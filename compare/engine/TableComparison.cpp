#include "compare/engine/TableComparison.h"

#include "compare/engine/ColumnComparison.h"
#include "compare/engine/ValueEquality.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace qir {

namespace {

constexpr int bitsPerWord = 64;

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
