#include "qirtbase/model/RecordOrder.h"

#include "base/columns/BlockOrder.h"
#include "base/columns/Parallel.h"

#include <QByteArrayView>

#include <algorithm>
#include <atomic>
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

bool areEqual(QByteArrayView left, QByteArrayView right) {
    return left.size() == right.size() &&
           (left.isEmpty() || std::memcmp(left.data(), right.data(), static_cast<std::size_t>(left.size())) == 0);
}

/// Numbers are compared bit for bit, as numbers without sign.
template<class Number>
bool areReordered(std::span<const ColumnBlock> now, std::span<const ColumnBlock> before,
                  std::span<const std::uint32_t> order) {
    QByteArray all; // in one piece: each value is then found without a search
    for (const ColumnBlock &block : before)
        all.append(block.values());
    const auto at = [](const QByteArray &values, std::size_t index) {
        Number number{};
        std::memcpy(&number, values.constData() + index * sizeof number, sizeof number);
        return number;
    };
    std::size_t record = 0;
    for (const ColumnBlock &block : now)
        for (std::size_t i = 0; i < static_cast<std::size_t>(block.count()); ++i)
            if (at(block.values(), i) != at(all, order[record++]))
                return false;
    return true;
}

bool areTextsReordered(std::span<const ColumnBlock> now, std::span<const ColumnBlock> before,
                       std::span<const std::uint32_t> order) {
    std::vector<QByteArrayView> all;
    all.reserve(order.size());
    for (const ColumnBlock &block : before)
        for (qsizetype i = 0; i < block.count(); ++i)
            all.push_back(block.textBytes(i));
    std::size_t record = 0;
    for (const ColumnBlock &block : now)
        for (qsizetype i = 0; i < block.count(); ++i)
            if (!areEqual(block.textBytes(i), all[order[record++]]))
                return false;
    return true;
}

bool isReordered(const Column &now, const Column &before, std::span<const std::uint32_t> order) {
    const std::vector<ColumnBlock> left = blocksOf(now);
    const std::vector<ColumnBlock> right = blocksOf(before);
    if (now.isText())
        return areTextsReordered(left, right, order);
    switch (valueSize(now.type())) {
    case 1:
        return areReordered<std::uint8_t>(left, right, order);
    case 2:
        return areReordered<std::uint16_t>(left, right, order);
    case 4:
        return areReordered<std::uint32_t>(left, right, order);
    default:
        return areReordered<std::uint64_t>(left, right, order);
    }
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
    std::atomic<bool> reordered = true;
    forEachColumn(now.fieldCount(), order.size(), [&](std::size_t field) {
        if (reordered && !isReordered(now.field(field).column, before.field(field).column, order))
            reordered = false;
    });
    return reordered;
}

} // namespace qir
