#pragma once

#include "base/PackedTexts.h"
#include "base/columns/ColumnBlock.h"

#include <QString>
#include <QStringView>

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

namespace qir {

/// A stretch of a column: either a block of values as the database has it, whose memory is the database's too as long
/// as it does not change them, and the few texts that were typed over it; or texts of its own.
class CellStretch {
public:
    explicit CellStretch(ColumnBlock block)
        : m_block(std::move(block)) {}
    explicit CellStretch(PackedTexts texts)
        : m_texts(std::move(texts))
        , m_own(true) {}

    std::size_t size() const { return m_own ? m_texts.size() : static_cast<std::size_t>(m_block.count()); }
    /// True for texts of its own, in texts(); else the values are in block(), but where typed() has others.
    bool own() const { return m_own; }
    const ColumnBlock &block() const { return m_block; }
    const std::map<std::size_t, QString> &typed() const { return m_typed; }
    const PackedTexts &texts() const { return m_texts; }

    /// The text into a string that keeps its memory. Indexes count from 0 within the stretch.
    void read(std::size_t index, QString &text) const;
    void set(std::size_t index, QStringView text);
    /// The same texts, all of its own: they can be appended to, cut and put in another order.
    PackedTexts &ownTexts();
    std::size_t memory() const;

private:
    ColumnBlock m_block;
    std::map<std::size_t, QString> m_typed; // by index; of a block
    PackedTexts m_texts;
    bool m_own = false;
};

/// The texts of one column of a grid, as stretches one behind the other. A number has no text before it is asked for.
///
/// Indexes count from 0 and are the caller's to keep in range. Memory errors are passed on; what was there stays.
class CellColumn {
public:
    std::size_t size() const { return m_size; }
    QString at(std::size_t index) const;
    /// at() into a string that keeps its memory, for loops over many cells.
    void read(std::size_t index, QString &text) const;
    void set(std::size_t index, QStringView text);

    void append(QStringView text);
    /// Appends values that stay shared with whoever made them.
    void append(ColumnBlock block);
    /// Makes room for `count` texts of `bytes` bytes in all, which are going to be appended one by one.
    void reserve(std::size_t count, std::size_t bytes);
    /// Cuts, or extends with empty texts.
    void resize(std::size_t count);
    /// Reorders: the text at i is the one that stood at order[i]; `order` is a permutation of the indexes.
    void permute(const std::vector<std::uint32_t> &order);

    /// The stretches, in order, none of them empty.
    std::span<const CellStretch> stretches() const { return m_stretches; }
    /// Bytes of memory held, shared or not.
    std::size_t memory() const;

private:
    struct Place {
        std::size_t stretch;
        std::size_t index;
    };

    Place place(std::size_t index) const;
    PackedTexts &ownEnd();
    void setStretches(std::vector<CellStretch> stretches);

    std::vector<CellStretch> m_stretches;
    std::vector<std::size_t> m_firsts; // the index at which each stretch begins
    std::size_t m_size = 0;
};

} // namespace qir
