#include "qirtbase/journal/JournalBlock.h"

#include "base/ByteReader.h"
#include "base/ByteWriter.h"

#include <cstdint>
#include <limits>

namespace qir {

namespace {

std::optional<ColumnBlock> decodeTexts(QByteArrayView lengths, QByteArrayView texts) {
    constexpr qsizetype lengthSize = sizeof(std::uint32_t);
    if (texts.size() > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    QByteArray places;
    ByteWriter out(places);
    std::uint64_t start = 0;
    for (ByteReader reader(lengths); reader.left() >= lengthSize;) {
        const auto length = reader.number<std::uint32_t>();
        if (length > static_cast<std::uint64_t>(texts.size()) - start)
            return std::nullopt;
        out.number(static_cast<std::uint32_t>(start));
        out.number(length);
        start += length;
    }
    if (start != static_cast<std::uint64_t>(texts.size()))
        return std::nullopt;
    return ColumnBlock::ofTexts(std::move(places), texts.toByteArray());
}

} // namespace

QByteArray encodeBlock(const ColumnBlock &block) {
    QByteArray bytes;
    ByteWriter out(bytes);
    out.number(static_cast<std::uint8_t>(block.type()));
    out.number(static_cast<std::uint32_t>(block.count()));
    if (!block.isText()) {
        out.bytes(block.values());
        return bytes;
    }
    for (qsizetype i = 0; i < block.count(); ++i)
        out.number(static_cast<std::uint32_t>(block.textBytes(i).size()));
    for (qsizetype i = 0; i < block.count(); ++i)
        out.bytes(block.textBytes(i));
    return bytes;
}

std::optional<ColumnBlock> decodeBlock(QByteArrayView bytes) {
    ByteReader reader(bytes);
    const auto type = columnType(reader.number<std::uint8_t>());
    const auto count = reader.number<std::uint32_t>();
    if (!type || !reader.isComplete())
        return std::nullopt;
    const bool isText = *type == ColumnType::Text;
    const QByteArrayView values =
        reader.bytes(std::uint64_t{count} * (isText ? sizeof(std::uint32_t) : valueSize(*type)));
    if (!reader.isComplete() || (!isText && reader.left() != 0))
        return std::nullopt;
    return isText ? decodeTexts(values, reader.rest()) : ColumnBlock::ofNumbers(*type, values.toByteArray());
}

} // namespace qir
