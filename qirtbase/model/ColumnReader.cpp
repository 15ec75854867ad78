#include "qirtbase/model/ColumnReader.h"

#include "base/columns/Parallel.h"
#include "base/columns/UnicodeText.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <optional>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

// What a thread of its own is worth.
constexpr std::size_t largeBytes = std::size_t{4} << 20;

[[noreturn]] void refuse(const QString &text) {
    throw ColumnRefusal{text};
}

bool allFinite(QByteArrayView numbers) {
    constexpr std::uint64_t exponent = 0x7FF0000000000000U;
    bool finite = true;
    for (qsizetype i = 0; i < numbers.size(); i += sizeof(double))
        finite &= (qFromLittleEndian<std::uint64_t>(numbers.data() + i) & exponent) != exponent;
    return finite;
}

void checkNumbers(ColumnType type, QByteArrayView values) {
    if (type == ColumnType::Bool) {
        unsigned char all = 0;
        for (const char flag : values)
            all = static_cast<unsigned char>(all | static_cast<unsigned char>(flag));
        if (all > 1)
            refuse(u"a bool is neither 0 nor 1"_s);
    }
    if ((type == ColumnType::Double || type == ColumnType::Date) && !allFinite(values))
        refuse(u"a number is not finite"_s);
}

Column readNumbers(const ColumnBytes &column, BodyMemory memory) {
    checkNumbers(column.type, column.values);
    const auto step = static_cast<qsizetype>(Column::chunkRecords << valueShift(column.type));
    std::vector<ColumnChunk> chunks;
    chunks.reserve(static_cast<std::size_t>((column.values.size() + step - 1) / step));
    for (qsizetype at = 0; at < column.values.size(); at += step) {
        const QByteArrayView values = column.values.sliced(at, std::min(step, column.values.size() - at));
        chunks.emplace_back(values.toByteArray(), QByteArray(), 0);
        if (memory == BodyMemory::GivenBack)
            giveBack(values);
    }
    return {column.type, std::move(chunks)};
}

/// Reads the texts of a column chunk by chunk.
class TextsReader {
public:
    TextsReader(const ColumnBytes &column, BodyMemory memory)
        : m_lengths(column.values)
        , m_texts(column.texts)
        , m_size(column.size)
        , m_memory(memory) {}

    bool isAtEnd() const { return m_lengths.isEmpty(); }
    ColumnChunk next() {
        const qsizetype count = countOfNext();
        QByteArray places(count * static_cast<qsizetype>(sizeof(TextPlace)), Qt::Uninitialized);
        std::uint32_t start = 0;
        std::uint32_t longest = 0;
        char *out = places.data();
        for (qsizetype i = 0; i < count; ++i, out += sizeof(TextPlace)) {
            const std::uint32_t length = lengthAt(i);
            putPlace(out, {start, length});
            longest = std::max(longest, length);
            start += length;
        }
        const QByteArrayView bytes = m_texts.first(start);
        check(bytes, count, longest);
        ColumnChunk chunk{std::move(places), bytes.toByteArray(), start};
        const qsizetype lengths = count * static_cast<qsizetype>(textLengthSize);
        if (m_memory == BodyMemory::GivenBack) {
            giveBack(m_lengths.first(lengths));
            giveBack(bytes);
        }
        m_lengths = m_lengths.sliced(lengths);
        m_texts = m_texts.sliced(start);
        return chunk;
    }

private:
    std::uint32_t lengthAt(qsizetype index) const {
        return qFromLittleEndian<std::uint32_t>(m_lengths.data() + index * static_cast<qsizetype>(textLengthSize));
    }
    /// So many records, and no more bytes than a chunk is to have.
    qsizetype countOfNext() const {
        const qsizetype most = std::min(m_lengths.size() / static_cast<qsizetype>(textLengthSize),
                                        static_cast<qsizetype>(Column::chunkRecords));
        std::uint64_t bytes = 0;
        for (qsizetype i = 0; i < most; ++i)
            bytes += lengthAt(i);
        if (bytes <= Column::chunkBytes / 2)
            return most;
        qsizetype count = 0;
        for (bytes = 0; count < most; ++count) {
            bytes += lengthAt(count);
            if (count > 0 && bytes > Column::chunkBytes / 2)
                break;
        }
        return count;
    }
    void check(QByteArrayView bytes, qsizetype count, std::uint32_t longest) const {
        constexpr std::size_t utf8Longest = 4;
        const bool ascii = isAscii(bytes);
        if (longest > m_size * (ascii ? 1 : utf8Longest))
            refuse(u"a text is longer than its field"_s);
        for (qsizetype i = 0, at = 0; !ascii && i < count; at += lengthAt(i), ++i) {
            const auto codePoints = utf8CodePoints(bytes.sliced(at, lengthAt(i)));
            if (!codePoints)
                refuse(u"a text is not in UTF-8"_s);
            if (*codePoints > m_size)
                refuse(u"a text is longer than its field"_s);
        }
    }

    QByteArrayView m_lengths;
    QByteArrayView m_texts;
    std::size_t m_size;
    BodyMemory m_memory;
};

Column readColumn(const ColumnBytes &column, BodyMemory memory) {
    if (column.type != ColumnType::Text)
        return readNumbers(column, memory);
    TextsReader reader(column, memory);
    std::vector<ColumnChunk> chunks;
    while (!reader.isAtEnd())
        chunks.push_back(reader.next());
    return {column.type, std::move(chunks)};
}

/// How many at once pay.
std::size_t threadsFor(std::span<const ColumnBytes> columns) {
    std::size_t bytes = 0;
    for (const ColumnBytes &column : columns)
        bytes += static_cast<std::size_t>(column.values.size() + column.texts.size());
    return std::max(bytes / largeBytes, std::size_t{1});
}

} // namespace

std::vector<Column> readColumns(std::span<const ColumnBytes> columns, BodyMemory memory) {
    std::vector<std::optional<Column>> read(columns.size());
    inParallel(
        columns.size(), [&](std::size_t index) { read[index] = readColumn(columns[index], memory); },
        threadsFor(columns));
    std::vector<Column> result;
    result.reserve(read.size());
    for (std::optional<Column> &column : read)
        result.push_back(std::move(*column));
    return result;
}

} // namespace qir
