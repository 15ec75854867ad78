#include "base/columns/BlockOrder.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>

namespace qir {

namespace {

using Orders = std::span<const std::uint32_t>;

/// Calls `make` for each stretch of `order` that becomes a block, as long as the usual one or as `fitting` has it.
std::vector<ColumnBlock> inBlocks(Orders order, const std::function<ColumnBlock(Orders)> &make,
                                  const std::function<std::size_t(Orders)> &fitting = {}) {
    std::vector<ColumnBlock> blocks;
    const auto most = static_cast<std::size_t>(usualBlockValues);
    for (std::size_t first = 0; first < order.size();) {
        Orders part = order.subspan(first, std::min(most, order.size() - first));
        if (fitting)
            part = part.first(fitting(part));
        blocks.push_back(make(part));
        first += part.size();
    }
    return blocks;
}

template<class Number>
std::vector<ColumnBlock> reorderedNumbers(std::span<const ColumnBlock> blocks, Orders order) {
    QByteArray all; // in one piece: each value is then found without a search
    for (const ColumnBlock &block : blocks)
        all.append(block.values());
    return inBlocks(order, [&](Orders part) {
        QByteArray values(static_cast<qsizetype>(part.size() * sizeof(Number)), Qt::Uninitialized);
        char *out = values.data();
        for (const std::uint32_t index : part) {
            std::memcpy(out, all.constData() + std::size_t{index} * sizeof(Number), sizeof(Number));
            out += sizeof(Number);
        }
        return ColumnBlock::ofNumbers(blocks.front().type(), std::move(values));
    });
}

std::vector<ColumnBlock> reorderedTexts(std::span<const ColumnBlock> blocks, Orders order) {
    std::vector<QByteArrayView> all;
    std::size_t count = 0;
    for (const ColumnBlock &block : blocks)
        count += static_cast<std::size_t>(block.count());
    all.reserve(count);
    for (const ColumnBlock &block : blocks)
        for (qsizetype i = 0; i < block.count(); ++i)
            all.push_back(block.textBytes(i));
    // Texts of a block begin at numbers of 32 bits, and who changes one of them copies all.
    const auto fitting = [&](Orders part) {
        std::size_t values = 0;
        for (qsizetype bytes = 0; values < part.size(); ++values) {
            bytes += all[part[values]].size();
            if (values > 0 && bytes > mostBlockBytes)
                break;
        }
        return values;
    };
    const auto make = [&](Orders part) {
        qsizetype size = 0;
        for (const std::uint32_t index : part)
            size += all[index].size();
        QByteArray places(static_cast<qsizetype>(part.size() * sizeof(TextPlace)), Qt::Uninitialized);
        QByteArray bytes(size, Qt::Uninitialized);
        char *place = places.data();
        char *out = bytes.data();
        for (const std::uint32_t index : part) {
            const QByteArrayView text = all[index];
            const TextPlace where{static_cast<std::uint32_t>(out - bytes.constData()),
                                  static_cast<std::uint32_t>(text.size())};
            std::memcpy(place, &where, sizeof where);
            if (!text.isEmpty()) // none have no memory to copy from
                std::memcpy(out, text.data(), static_cast<std::size_t>(text.size()));
            place += sizeof where;
            out += text.size();
        }
        return ColumnBlock::ofTexts(std::move(places), std::move(bytes));
    };
    return inBlocks(order, make, fitting);
}

} // namespace

std::vector<ColumnBlock> reordered(std::span<const ColumnBlock> blocks, Orders order) {
    if (blocks.empty())
        return {};
    switch (valueSize(blocks.front().type())) {
    case 1:
        return reorderedNumbers<std::uint8_t>(blocks, order);
    case 2:
        return reorderedNumbers<std::uint16_t>(blocks, order);
    case 4:
        return reorderedNumbers<std::uint32_t>(blocks, order);
    default:
        return blocks.front().isText() ? reorderedTexts(blocks, order) : reorderedNumbers<std::uint64_t>(blocks, order);
    }
}

} // namespace qir
