#include "qirtbase/model/RecordOrder.h"

#include "base/columns/BlockOrder.h"

#include <QByteArrayView>

#include <algorithm>
#include <cstring>
#include <utility>

namespace qir {

namespace {

/// The chunks of a column that has values.
std::vector<ColumnBlock> blocksOf(const Column &column) {
    std::vector<ColumnBlock> blocks;
    for (std::size_t chunk = 0; chunk < column.chunkCount(); ++chunk)
        blocks.push_back(column.chunk(chunk).block(column.type(), 0, column.chunk(chunk).size(column.type())));
    return blocks;
}

/// Each value's bytes, in the memory of the blocks.
std::vector<QByteArrayView> bytesOfValues(const std::vector<ColumnBlock> &blocks) {
    std::vector<QByteArrayView> all;
    for (const ColumnBlock &block : blocks) {
        const auto size = qsizetype{1} << valueShift(block.type());
        for (qsizetype i = 0; i < block.count(); ++i)
            all.push_back(block.isText() ? block.textBytes(i)
                                         : QByteArrayView(block.values().constData() + i * size, size));
    }
    return all;
}

bool areEqual(QByteArrayView left, QByteArrayView right) {
    return left.size() == right.size() &&
           (left.isEmpty() || std::memcmp(left.data(), right.data(), static_cast<std::size_t>(left.size())) == 0);
}

bool isReordered(const Column &now, const Column &before, std::span<const std::uint32_t> order) {
    const std::vector<ColumnBlock> blocks = blocksOf(before);
    const std::vector<QByteArrayView> values = bytesOfValues(blocks);
    std::size_t at = 0;
    for (const ColumnBlock &block : blocksOf(now))
        for (const QByteArrayView value : bytesOfValues({block}))
            if (!areEqual(value, values[order[at++]]))
                return false;
    return true;
}

bool areSameFields(const Table &left, const Table &right) {
    return std::ranges::equal(left.fields(), right.fields(), [](const Field &a, const Field &b) {
        return a.name.utf8() == b.name.utf8() && a.size == b.size && a.type() == b.type();
    });
}

} // namespace

bool isPermutation(std::span<const std::uint32_t> order, std::size_t count) {
    if (order.size() != count)
        return false;
    std::vector<bool> seen(count);
    for (const std::uint32_t record : order) {
        if (record >= count || seen[record])
            return false;
        seen[record] = true;
    }
    return true;
}

RecordOrder inverse(std::span<const std::uint32_t> order) {
    RecordOrder back(order.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        back[order[i]] = static_cast<std::uint32_t>(i);
    return back;
}

Column reordered(const Column &column, std::span<const std::uint32_t> order) {
    Column result(column.type(), order.size());
    std::size_t first = 0;
    for (const ColumnBlock &block : reordered(blocksOf(column), order)) {
        result.setBlock(first, block);
        first += static_cast<std::size_t>(block.count());
    }
    return result;
}

bool isReordered(const Table &now, const Table &before, std::span<const std::uint32_t> order) {
    if (now.recordCount() != before.recordCount() || order.size() != now.recordCount() || order.empty() ||
        now.name().text != before.name().text || !areSameFields(now, before))
        return false;
    for (std::size_t field = 0; field < now.fieldCount(); ++field)
        if (!isReordered(now.field(field).column, before.field(field).column, order))
            return false;
    return true;
}

} // namespace qir
