#pragma once

#include "base/Result.h"
#include "base/columns/ColumnValues.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QVariant>

#include <cstddef>

namespace qir {

/// Consecutive values of one column. Copies share their memory with whoever made the block, and never change: who
/// changes what it has handed out copies it first. Values count from 0 and are the caller's to keep in range.
///
/// Between editor and component a block is a QVariantList,
///
///     numbers  { type code, QByteArray of the values }
///     texts    { type code, QByteArray of TextPlaces (u32 start, u32 length), QByteArray of UTF-8 }
///
/// whose arrays are shared as well. Not every byte of UTF-8 need belong to a text, and texts may stand in any order.
class ColumnBlock {
public:
    /// No texts.
    ColumnBlock() = default;
    /// `values` are whole values of the type, which is not text.
    static ColumnBlock ofNumbers(ColumnType type, QByteArray values);
    /// Each of `places`, an array of TextPlace, lies within `bytes`.
    static ColumnBlock ofTexts(QByteArray places, QByteArray bytes);
    /// A block that somebody else made, or what is wrong with it. No text of one that is taken lies outside its bytes;
    /// whether these are UTF-8 is seen when a text is read.
    static Result<ColumnBlock> fromVariant(const QVariant &variant);
    QVariant toVariant() const;

    ColumnType type() const { return m_type; }
    bool isText() const { return m_type == ColumnType::Text; }
    qsizetype count() const { return m_values.size() >> valueShift(m_type); }
    bool isEmpty() const { return m_values.isEmpty(); }

    /// Of a column of numbers.
    double number(qsizetype index) const;
    /// Of a column of texts.
    QByteArrayView textBytes(qsizetype index) const;
    /// The text of any value: numbers as the shortest decimal that reads back. U+FFFD stands where a text is no UTF-8.
    QString text(qsizetype index) const;
    /// The same into a string that keeps its memory: nothing is allocated once it is large enough.
    void readText(qsizetype index, QString &text) const;

    /// `count` values from `first` on. A part of the values is a copy; texts are shared all the same.
    ColumnBlock sliced(qsizetype first, qsizetype count) const;

    /// The values, or places of texts, as they stand in memory.
    const QByteArray &values() const { return m_values; }
    /// The texts' bytes; none for numbers.
    const QByteArray &bytes() const { return m_bytes; }

    /// Both stand in the same memory and so are equal, which needs no look at their values.
    bool sharesMemoryWith(const ColumnBlock &other) const;
    /// Bytes of memory held, shared or not.
    std::size_t memory() const;

private:
    ColumnBlock(ColumnType type, QByteArray values, QByteArray bytes);

    ColumnType m_type = ColumnType::Text;
    QByteArray m_values;
    QByteArray m_bytes;
};

} // namespace qir
