#include "qirtbase/model/Column.h"

#include "base/NumberText.h"
#include "base/UndoOnError.h"
#include "base/columns/UnicodeText.h"

#include <QVarLengthArray>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace qir {

namespace {

/// A text in UTF-8, in memory of its own only where it is long.
class Utf8 {
public:
    explicit Utf8(const QString &text) {
        m_bytes.resize(static_cast<qsizetype>(utf8Size(QStringView(text))));
        writeUtf8(m_bytes.data(), QStringView(text));
    }
    QByteArrayView view() const { return {m_bytes.data(), m_bytes.size()}; }

private:
    QVarLengthArray<char, 256> m_bytes;
};

bool areEqual(QByteArrayView left, QByteArrayView right) {
    return left.size() == right.size() &&
           (left.isEmpty() || left.data() == right.data() ||
            std::memcmp(left.data(), right.data(), static_cast<std::size_t>(left.size())) == 0);
}

QString textOf(QByteArrayView utf8) {
    if (isAscii(utf8))
        return QString::fromLatin1(utf8);
    QString text;
    readUtf8(utf8, text);
    return text;
}

/// Whether a chunk's values from `offset` on are those of a block.
bool holdsValues(const ColumnChunk &chunk, std::size_t offset, const ColumnBlock &block) {
    const auto at = static_cast<qsizetype>(offset << valueShift(block.type()));
    const QByteArrayView values = QByteArrayView(chunk.values()).sliced(at, block.values().size());
    if (!block.isText())
        return areEqual(values, block.values());
    if (chunk.bytes().constData() == block.bytes().constData() && areEqual(values, block.values()))
        return true;
    for (qsizetype i = 0; i < block.count(); ++i)
        if (!areEqual(chunk.text(offset + static_cast<std::size_t>(i)), block.textBytes(i)))
            return false;
    return true;
}

/// Bytes of text of a chunk with those of a block in the place of its texts from `offset` on.
std::size_t textBytesWith(const ColumnChunk &chunk, std::size_t offset, const ColumnBlock &block) {
    std::size_t bytes = chunk.textBytes();
    for (qsizetype i = 0; block.isText() && i < block.count(); ++i) {
        bytes -= static_cast<std::size_t>(chunk.text(offset + static_cast<std::size_t>(i)).size());
        bytes += static_cast<std::size_t>(block.textBytes(i).size());
    }
    return bytes;
}

/// A chunk of the block's own memory. A text that stands there twice is there but once: more texts than bytes would
/// cost much where they are written.
ColumnChunk adopted(const ColumnBlock &block) {
    std::size_t used = 0;
    for (qsizetype i = 0; block.isText() && i < block.count(); ++i)
        used += static_cast<std::size_t>(block.textBytes(i).size());
    const auto held = static_cast<std::size_t>(block.bytes().size());
    if (!block.isText() || (used <= held && held - used <= held / 2 && held <= Column::chunkBytes))
        return {block.values(), block.bytes(), used};
    ColumnChunk packed(block.type(), static_cast<std::size_t>(block.count()));
    packed.setValues(0, block);
    return packed;
}

} // namespace

// ------------------------------------------------------------------------------------------------------------ chunks

Column::Column(ColumnType type, std::size_t records)
    : m_type(type)
    , m_only(type, std::min(records, chunkRecords)) {
    append(records - m_only.size(type));
}

Column::Column(ColumnType type, std::vector<ColumnChunk> chunks)
    : m_type(type) {
    if (chunks.size() == 1)
        m_only = std::move(chunks.front());
    if (chunks.size() < 2)
        return;
    m_many = std::make_unique<Many>();
    std::size_t end = 0;
    for (const ColumnChunk &chunk : chunks)
        m_many->ends.push_back(static_cast<std::uint32_t>(end += chunk.size(type)));
    m_many->chunks = std::move(chunks);
}

Column::Column(const Column &other)
    : m_type(other.m_type)
    , m_only(other.m_only)
    , m_many(other.m_many ? std::make_unique<Many>(*other.m_many) : nullptr) {}

std::size_t Column::textBytes() const {
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < chunkCount(); ++i)
        bytes += chunk(i).textBytes();
    return bytes;
}

std::size_t Column::memory() const {
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < chunkCount(); ++i)
        bytes += chunk(i).memory();
    return bytes;
}

Column::Place Column::find(std::size_t record) const {
    if (!m_many)
        return {0, record};
    const std::vector<std::uint32_t> &ends = m_many->ends;
    std::size_t chunk = record / chunkRecords; // right as long as every chunk is full
    if (chunk >= ends.size() || record >= ends[chunk] || record < startOf(chunk))
        chunk = static_cast<std::size_t>(std::ranges::upper_bound(ends, record) - ends.begin());
    return {chunk, record - startOf(chunk)};
}

void Column::lengthen(std::size_t chunk, std::ptrdiff_t records) {
    if (!m_many)
        return;
    for (std::size_t i = chunk; i < m_many->ends.size(); ++i)
        m_many->ends[i] = static_cast<std::uint32_t>(static_cast<std::ptrdiff_t>(m_many->ends[i]) + records);
}

/// Puts a chunk before the one at `index`.
void Column::addChunk(std::size_t index, ColumnChunk chunk) {
    if (!m_many) {
        auto many = std::make_unique<Many>();
        many->chunks.reserve(2);
        many->ends.reserve(2);
        many->ends.push_back(static_cast<std::uint32_t>(m_only.size(m_type)));
        many->chunks.push_back(std::move(m_only));
        m_many = std::move(many);
    }
    m_many->chunks.reserve(m_many->chunks.size() + 1);
    m_many->ends.reserve(m_many->ends.size() + 1);
    const auto place = static_cast<std::ptrdiff_t>(index);
    const std::size_t records = chunk.size(m_type);
    m_many->ends.insert(m_many->ends.begin() + place, static_cast<std::uint32_t>(startOf(index)));
    m_many->chunks.insert(m_many->chunks.begin() + place, std::move(chunk));
    lengthen(index, static_cast<std::ptrdiff_t>(records));
}

/// Cuts a chunk of two or more records in the middle.
void Column::divide(std::size_t chunk) {
    ColumnChunk front = change(chunk);
    const std::size_t records = front.size(m_type);
    ColumnChunk back = front.split(m_type, records / 2);
    const auto moved = static_cast<std::ptrdiff_t>(back.size(m_type));
    addChunk(chunk + 1, std::move(back));
    // addChunk() counted the records that were moved once more.
    m_many->ends[chunk] -= static_cast<std::uint32_t>(moved);
    lengthen(chunk + 1, -moved);
    m_many->chunks[chunk] = std::move(front);
}

// ----------------------------------------------------------------------------------------------------------- reading

double Column::number(std::size_t record) const {
    const Place place = find(record);
    return chunk(place.chunk).number(m_type, place.offset);
}

QByteArrayView Column::text(std::size_t record) const {
    const Place place = find(record);
    return chunk(place.chunk).text(place.offset);
}

CellValue Column::value(std::size_t record) const {
    if (!isText())
        return number(record);
    return textOf(text(record));
}

QVariant Column::variant(std::size_t record) const {
    if (isText())
        return textOf(text(record));
    const bool isReal = m_type == ColumnType::Double || m_type == ColumnType::Date;
    return isReal ? QVariant(number(record)) : QVariant(static_cast<int>(number(record)));
}

void Column::readText(std::size_t record, QString &content) const {
    if (isText()) {
        readUtf8(text(record), content);
        return;
    }
    char digits[numberTextCapacity];
    const bool isReal = m_type == ColumnType::Double || m_type == ColumnType::Date;
    const double value = number(record);
    const char *end = isReal ? formatNumber(digits, value) : formatNumber(digits, static_cast<int>(value));
    content.resize(end - digits);
    std::copy<const char *>(digits, end, reinterpret_cast<char16_t *>(content.data()));
}

ColumnBlock Column::block(std::size_t first, std::size_t count) const {
    const Place place = find(first);
    const ColumnChunk &source = chunk(place.chunk);
    return source.block(m_type, place.offset, std::min(count, source.size(m_type) - place.offset));
}

bool Column::holds(std::size_t record, double wanted) const {
    return std::bit_cast<std::uint64_t>(number(record)) == std::bit_cast<std::uint64_t>(wanted);
}

bool Column::holds(std::size_t record, const QString &content) const {
    return areEqual(text(record), Utf8(content).view());
}

bool Column::holds(std::size_t first, const ColumnBlock &block) const {
    for (qsizetype done = 0; done < block.count();) {
        const Place place = find(first + static_cast<std::size_t>(done));
        const ColumnChunk &held = chunk(place.chunk);
        const qsizetype count =
            std::min(static_cast<qsizetype>(held.size(m_type) - place.offset), block.count() - done);
        if (!holdsValues(held, place.offset, block.sliced(done, count)))
            return false;
        done += count;
    }
    return true;
}

// ---------------------------------------------------------------------------------------------------------- changing

void Column::set(std::size_t record, double value) {
    const Place place = find(record);
    change(place.chunk).setNumber(m_type, place.offset, value);
}

void Column::set(std::size_t record, const QString &content) {
    setUtf8(record, Utf8(content).view());
}

void Column::set(std::size_t record, const CellValue &value) {
    std::visit([&](const auto &content) { set(record, content); }, value);
}

void Column::setUtf8(std::size_t record, QByteArrayView content) {
    const Place place = find(record);
    change(place.chunk).setText(place.offset, content);
    const ColumnChunk &changed = chunk(place.chunk);
    if (changed.textBytes() > chunkBytes && changed.size(m_type) > 1) {
        try {
            divide(place.chunk);
        } catch (const std::bad_alloc &) { // NOLINT(bugprone-empty-catch): it is large, but right
        }
    }
}

/// The chunk with `part` in the place of its values from `offset` on.
ColumnChunk Column::changedChunk(std::size_t index, std::size_t offset, const ColumnBlock &part) const {
    if (static_cast<std::size_t>(part.count()) == chunk(index).size(m_type))
        return adopted(part);
    ColumnChunk changed = chunk(index);
    changed.setValues(offset, part);
    return changed;
}

void Column::setBlock(std::size_t first, const ColumnBlock &block) {
    std::vector<std::pair<std::size_t, ColumnChunk>> changed; // all of them before the first is put in its place
    for (qsizetype done = 0; done < block.count();) {
        const Place place = find(first + static_cast<std::size_t>(done));
        const std::size_t size = chunk(place.chunk).size(m_type);
        const ColumnBlock part =
            block.sliced(done, std::min(static_cast<qsizetype>(size - place.offset), block.count() - done));
        if (size > 1 && textBytesWith(chunk(place.chunk), place.offset, part) > chunkBytes) {
            divide(place.chunk); // and on with the part that the front half has
            continue;
        }
        changed.emplace_back(place.chunk, changedChunk(place.chunk, place.offset, part));
        done += part.count();
    }
    for (auto &[index, chunk] : changed)
        change(index) = std::move(chunk);
}

std::optional<Column> Column::cut(std::size_t size) const {
    std::optional<Column> result;
    for (std::size_t i = 0; i < chunkCount(); ++i) {
        const ColumnChunk &source = chunk(i);
        QByteArray places = source.values();
        std::size_t used = 0;
        for (std::size_t offset = 0; offset < source.size(m_type); ++offset) {
            const QByteArrayView text = source.text(offset);
            const std::size_t fitting = fittingUtf8Size(text, size);
            used += fitting;
            if (fitting == static_cast<std::size_t>(text.size()))
                continue;
            char *at = places.data() + offset * sizeof(TextPlace);
            putPlace(at, {placeAt(at).start, static_cast<std::uint32_t>(fitting)});
        }
        if (used == source.textBytes())
            continue;
        if (!result)
            result = *this;
        result->change(i) = ColumnChunk(std::move(places), source.bytes(), used);
    }
    return result;
}

void Column::append(std::size_t records) {
    const std::size_t before = size();
    const UndoOnError undo([&] { truncate(before); });
    while (records > 0) {
        const std::size_t last = chunkCount() - 1;
        const std::size_t held = chunk(last).size(m_type);
        if (held < chunkRecords) {
            const std::size_t count = std::min(records, chunkRecords - held);
            change(last).grow(m_type, count, chunkRecords);
            lengthen(last, static_cast<std::ptrdiff_t>(count));
            records -= count;
        } else {
            change(last).squeeze();
            const std::size_t count = std::min(records, chunkRecords);
            addChunk(last + 1, ColumnChunk(m_type, count));
            records -= count;
        }
    }
}

void Column::insert(std::size_t record, const CellValue &value) {
    Place place = record < size() ? find(record) : Place{chunkCount() - 1, chunk(chunkCount() - 1).size(m_type)};
    if (chunk(place.chunk).size(m_type) >= 2 * chunkRecords) {
        divide(place.chunk);
        return insert(record, value);
    }
    change(place.chunk).insertZero(m_type, place.offset);
    lengthen(place.chunk, 1);
    const UndoOnError undo([&] { remove(record); });
    set(record, value);
}

void Column::prepareRemoval(std::size_t record) {
    change(find(record).chunk).detach();
}

void Column::remove(std::size_t record) {
    const Place place = find(record);
    change(place.chunk).remove(m_type, place.offset);
    lengthen(place.chunk, -1);
    if (m_many && m_many->chunks.size() > 1 && chunk(place.chunk).values().isEmpty()) {
        m_many->chunks.erase(m_many->chunks.begin() + static_cast<std::ptrdiff_t>(place.chunk));
        m_many->ends.erase(m_many->ends.begin() + static_cast<std::ptrdiff_t>(place.chunk));
    }
}

void Column::truncate(std::size_t records) {
    while (m_many && m_many->chunks.size() > 1 && startOf(m_many->chunks.size() - 1) >= records) {
        m_many->chunks.pop_back();
        m_many->ends.pop_back();
    }
    const std::size_t last = chunkCount() - 1;
    const std::size_t surplus = size() - records;
    change(last).truncate(m_type, records - startOf(last));
    lengthen(last, -static_cast<std::ptrdiff_t>(surplus));
}

void Column::shareWith(const Column &other) {
    if (type() != other.type())
        return;
    for (std::size_t i = 0; i < std::min(chunkCount(), other.chunkCount()) && startOf(i) == other.startOf(i); ++i)
        if (chunk(i).values() == other.chunk(i).values() && chunk(i).bytes() == other.chunk(i).bytes())
            change(i) = ColumnChunk(other.chunk(i));
}

} // namespace qir
