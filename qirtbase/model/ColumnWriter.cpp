#include "qirtbase/model/ColumnWriter.h"

#include "base/columns/Parallel.h"
#include "qirtbase/model/ColumnReader.h"

#include <QtEndian>

#include <algorithm>
#include <stdexcept>

namespace qir {

namespace {

class ColumnRoom {
public:
    explicit ColumnRoom(std::span<char> room)
        : m_left(room) {}

    char *take(std::size_t bytes) {
        if (bytes > m_left.size())
            throw std::length_error("a column takes more bytes than it has told");
        char *taken = m_left.data();
        m_left = m_left.subspan(bytes);
        return taken;
    }
    void bytes(QByteArrayView given) { std::ranges::copy(given, take(static_cast<std::size_t>(given.size()))); }
    bool isFull() const { return m_left.empty(); }

private:
    std::span<char> m_left;
};

void writeLengths(const ColumnChunk &chunk, ColumnRoom &room) {
    const std::size_t count = chunk.size(ColumnType::Text);
    const char *places = chunk.values().constData();
    char *out = room.take(count * textLengthSize);
    for (std::size_t i = 0; i < count; ++i)
        qToLittleEndian<std::uint32_t>(placeAt(places + i * sizeof(TextPlace)).length, out + i * textLengthSize);
}

void writeTexts(const ColumnChunk &chunk, ColumnRoom &room) {
    const QByteArray held = chunk.bytes();
    if (chunk.isInOrder()) {
        room.bytes(QByteArrayView(held).first(static_cast<qsizetype>(chunk.textBytes())));
        return;
    }
    for (std::size_t i = 0; i < chunk.size(ColumnType::Text); ++i)
        room.bytes(chunk.text(i));
}

void writeColumn(const Column &column, ColumnRoom room) {
    for (std::size_t i = 0; i < column.chunkCount(); ++i) {
        if (column.isText())
            writeLengths(column.chunk(i), room);
        else
            room.bytes(column.chunk(i).values());
    }
    for (std::size_t i = 0; column.isText() && i < column.chunkCount(); ++i)
        writeTexts(column.chunk(i), room);
    if (!room.isFull())
        throw std::length_error("a column takes fewer bytes than it has told");
}

} // namespace

std::size_t writtenSize(const Column &column) {
    return column.size() * (column.isText() ? textLengthSize : valueSize(column.type())) + column.textBytes();
}

void writeColumns(std::span<const Column *const> columns, std::span<char> room) {
    ColumnRoom left(room);
    std::vector<std::span<char>> rooms;
    rooms.reserve(columns.size());
    for (const Column *column : columns) {
        const std::size_t size = writtenSize(*column);
        rooms.emplace_back(left.take(size), size);
    }
    if (!left.isFull())
        throw std::length_error("there is more room than columns");
    forEachColumn(columns.size(), columns.empty() ? 0 : columns.front()->size(),
                  [&](std::size_t index) { writeColumn(*columns[index], ColumnRoom(rooms[index])); });
}

} // namespace qir
