#pragma once

#include "base/columns/ColumnBlock.h"

#include <QByteArray>
#include <QByteArrayView>

#include <cstddef>
#include <memory>

namespace qir {

/// Some values of a column, one behind the other, in arrays that copies and blocks share: the first change to a chunk
/// that somebody else has as well copies it. Offsets count from 0 and are the caller's to keep in range. What throws
/// (std::bad_alloc) has changed nothing.
class ColumnChunk {
public:
    ColumnChunk() = default;
    /// `count` zeros or empty texts.
    ColumnChunk(ColumnType type, std::size_t count);
    /// Values that obey the rules of their type. `textBytes` is what all texts take together, each by itself.
    ColumnChunk(QByteArray values, QByteArray bytes, std::size_t textBytes);
    ColumnChunk(const ColumnChunk &other);
    ColumnChunk(ColumnChunk &&) noexcept = default;
    ColumnChunk &operator=(ColumnChunk other) noexcept;
    ~ColumnChunk() = default;

    /// The numbers, or the places of texts.
    const QByteArray &values() const { return m_values; }
    /// What texts stand in, and others that are no more.
    QByteArray bytes() const { return m_texts ? m_texts->bytes : QByteArray(); }
    /// Bytes of all texts.
    std::size_t textBytes() const { return m_texts ? m_texts->used : 0; }
    std::size_t size(ColumnType type) const { return static_cast<std::size_t>(m_values.size()) >> valueShift(type); }
    double number(ColumnType type, std::size_t offset) const {
        return numberAt(type, m_values.constData() + (offset << valueShift(type)));
    }
    QByteArrayView text(std::size_t offset) const {
        const TextPlace place = placeAt(m_values.constData() + offset * sizeof(TextPlace));
        return m_texts ? QByteArrayView(m_texts->bytes.constData() + place.start, place.length) : QByteArrayView();
    }
    ColumnBlock block(ColumnType type, std::size_t offset, std::size_t count) const;
    /// Whether all texts stand in order with nothing in between.
    bool isInOrder() const;
    std::size_t memory() const;

    void setNumber(ColumnType type, std::size_t offset, double number);
    void setText(std::size_t offset, QByteArrayView text);
    /// Values in place of those from `offset` on.
    void setValues(std::size_t offset, const ColumnBlock &block);
    /// Zeros or empty texts at the end, where the chunk keeps room for `most`.
    void grow(ColumnType type, std::size_t count, std::size_t most);
    void insertZero(ColumnType type, std::size_t offset);
    /// After detach() these throw nothing.
    void remove(ColumnType type, std::size_t offset);
    void truncate(ColumnType type, std::size_t count);
    void detach() { m_values.detach(); }
    /// Values from `offset` on, which are taken away here.
    ColumnChunk split(ColumnType type, std::size_t offset);
    /// Gives back memory that the values do not need, where there is much; changes nothing when memory is short.
    void squeeze();

private:
    /// In memory of its own, none as long as there are no texts: most chunks have numbers.
    struct Texts {
        QByteArray bytes;
        std::size_t used = 0; // by texts; one that stands there twice counts twice
    };

    TextPlace store(QByteArrayView text);
    void packWhenWasteful();
    void pack();

    QByteArray m_values;
    std::unique_ptr<Texts> m_texts;
};

} // namespace qir
