#pragma once

#include "base/columns/FittingNumber.h"
#include "qirtbase/model/ColumnChunk.h"

#include <QString>
#include <QVariant>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace qir {

/// A value of any field: a number, or a text for text fields. Every number that a field can hold is a double's.
using CellValue = std::variant<double, QString>;

/// The values of one field, one for each record, in chunks of many records each. Records count from 0 here and are the
/// caller's to keep in range; texts are well-formed and fit their field, numbers come from fittingNumber().
///
/// Copies and blocks share the chunks: making one costs nothing a record, and the first change to a chunk afterwards
/// copies that chunk alone.
class Column {
public:
    /// A chunk has so many records, fewer once some were removed, up to twice as many where some were brought back, and
    /// fewer where texts are long.
    static constexpr std::size_t chunkRecords = 65536;
    /// With more than this much text a chunk is cut in two.
    static constexpr std::size_t chunkBytes = std::size_t{32} << 20;

    /// `records` zeros or empty texts.
    explicit Column(ColumnType type, std::size_t records = 0);
    /// Takes chunks of values that obey the rules of the type.
    Column(ColumnType type, std::vector<ColumnChunk> chunks);
    Column(const Column &other);
    Column(Column &&) noexcept = default;
    Column &operator=(const Column &other) { return *this = Column(other); }
    Column &operator=(Column &&) noexcept = default;
    ~Column() = default;

    ColumnType type() const { return m_type; }
    bool isText() const { return m_type == ColumnType::Text; }
    std::size_t size() const { return m_many ? m_many->ends.back() : m_only.size(m_type); }
    /// Bytes of all texts in UTF-8; 0 for numbers.
    std::size_t textBytes() const;
    /// Bytes of memory held, shared or not.
    std::size_t memory() const;
    /// Goes on with the memory of those chunks of another column that hold the same values in the same places.
    void shareWith(const Column &other);
    /// The chunks in their order, one at least.
    std::size_t chunkCount() const { return m_many ? m_many->chunks.size() : 1; }
    const ColumnChunk &chunk(std::size_t index) const { return m_many ? m_many->chunks[index] : m_only; }

    CellValue value(std::size_t record) const;
    /// As the component hands it out: int, double or QString.
    QVariant variant(std::size_t record) const;
    /// The text of the value into a string that keeps its memory: nothing is allocated once it is large enough.
    void readText(std::size_t record, QString &text) const;
    /// Values from `first` on, at least one and at most `count`: as many as stand together in a chunk, whose memory the
    /// block shares.
    ColumnBlock block(std::size_t first, std::size_t count) const;

    /// True when the value is `number` bit for bit: 0 and -0 are two values.
    bool holds(std::size_t record, double number) const;
    bool holds(std::size_t record, const QString &text) const;
    /// True when the values from `first` on are those of the block, bit for bit.
    bool holds(std::size_t first, const ColumnBlock &block) const;

    // The kind of a value is the column's. What throws (std::bad_alloc, std::length_error) has changed nothing.
    void set(std::size_t record, double number);
    void set(std::size_t record, const QString &text);
    void set(std::size_t record, const CellValue &value);
    /// Values that obey the rules of the type. Where they are just those of a chunk it goes on with the block's memory.
    void setBlock(std::size_t first, const ColumnBlock &block);
    /// The column with every text cut to `size` code points, nothing when none is longer.
    std::optional<Column> cut(std::size_t size) const;

    /// Appends zeros or empty texts.
    void append(std::size_t records);
    void insert(std::size_t record, const CellValue &value);
    /// Makes sure that removing this record throws nothing.
    void prepareRemoval(std::size_t record);
    void remove(std::size_t record);
    /// Leaves the first `records`. Throws nothing where the others have just been appended.
    void truncate(std::size_t records);

private:
    /// More chunks than one, of any length but 0.
    struct Many {
        std::vector<ColumnChunk> chunks;
        std::vector<std::uint32_t> ends; // for each chunk the number of records up to its end
    };
    struct Place {
        std::size_t chunk;
        std::size_t offset;
    };

    Place find(std::size_t record) const;
    std::size_t startOf(std::size_t chunk) const { return chunk == 0 || !m_many ? 0 : m_many->ends[chunk - 1]; }
    ColumnChunk &change(std::size_t index) { return m_many ? m_many->chunks[index] : m_only; }
    double number(std::size_t record) const;
    QByteArrayView text(std::size_t record) const;
    void setUtf8(std::size_t record, QByteArrayView text);
    void lengthen(std::size_t chunk, std::ptrdiff_t records);
    void addChunk(std::size_t index, ColumnChunk chunk);
    void divide(std::size_t chunk);
    ColumnChunk changedChunk(std::size_t chunk, std::size_t offset, const ColumnBlock &part) const;

    ColumnType m_type;
    ColumnChunk m_only; // as long as there is but one
    std::unique_ptr<Many> m_many;
};

} // namespace qir
