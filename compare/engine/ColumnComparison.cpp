#include "compare/engine/ColumnComparison.h"

#include "compare/engine/BlockDifferences.h"

#include <algorithm>
#include <vector>

namespace qir {

namespace {

constexpr int bitsPerWord = 64;
constexpr int mostStepRecords = 65536; // between two steps; as many as most components keep together
constexpr int stepCells = 1 << 21;     // more of them would keep the caller from what else it has to do

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

} // namespace

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

} // namespace qir
