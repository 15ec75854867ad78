#pragma once

#include <QString>
#include <QStringView>

#include <cstdint>
#include <span>
#include <vector>

namespace qir {

/// A column of texts in one block of memory instead of one string object each.
///
/// A text whose code units all are below 256 takes a byte for each, any other two; equal texts always have the same
/// form. Any QString comes back unit by unit, lone surrogates included. Indexes count from 0 and are the caller's to
/// keep in range. Replacing a text costs its own length, whatever the column holds: the old bytes are left behind
/// and the block is packed again once they outweigh the live ones. Copies are deep.
///
/// Throws std::length_error for a text of 2^25 code units or more and when the block passes 2^38 bytes, and
/// std::bad_alloc; the column is unchanged then.
class PackedTexts {
public:
    /// A text as it stands in the block; valid until the next change of the column.
    struct View {
        const char *bytes;  ///< Latin-1 characters, or native-endian UTF-16 when `wide` (not necessarily aligned).
        std::uint32_t size; ///< In code units.
        bool wide;

        /// Writes its `size` code units.
        void copyTo(QChar *target) const;
        friend bool operator==(const View &left, const View &right);
    };

    std::size_t size() const { return m_cells.size(); }
    bool isEmpty() const { return m_cells.empty(); }
    void clear();
    /// Makes room for `count` texts of `bytes` bytes together; changes nothing that can be read.
    void reserve(std::size_t count, std::size_t bytes);
    /// Cuts to `count` texts, or appends empty ones.
    void resize(std::size_t count);
    /// Makes sure that resize() to one text more does not throw.
    void makeRoom();

    View view(std::size_t index) const;
    QString at(std::size_t index) const;
    /// at() into a string that keeps its memory, for loops over many cells.
    void read(std::size_t index, QString &text) const;
    /// True when the text at `index` is `text`, unit by unit.
    bool holds(std::size_t index, QStringView text) const;

    void append(QStringView text);
    /// `text` does not point into this column.
    void appendLatin1(const char *text, std::size_t size);
    /// Appends a text for each length; they stand one after another in `bytes`.
    void appendLatin1(const char *bytes, std::span<const std::uint32_t> lengths);
    void set(std::size_t index, QStringView text);
    /// Reorders so that the text at i is the one that stood at order[i]; `order` is a permutation of the indexes.
    void permute(const std::vector<std::uint32_t> &order);

    /// Bytes of memory held, capacity included.
    std::size_t memory() const;

private:
    // A cell: byte offset into the block (38 bits), length in code units (25 bits), whether it is wide (1 bit).
    static constexpr int lengthBits = 25;
    static std::uint64_t cellAt(std::size_t offset, std::size_t length, bool wide) {
        return (std::uint64_t{offset} << (lengthBits + 1)) | (std::uint64_t{length} << 1) | (wide ? 1U : 0U);
    }
    static std::uint32_t lengthOf(std::uint64_t cell) { return (cell >> 1) & ((1U << lengthBits) - 1); }
    static std::size_t offsetOf(std::uint64_t cell) { return cell >> (lengthBits + 1); }
    static bool isWideCell(std::uint64_t cell) { return (cell & 1U) != 0; }
    static std::size_t bytesOf(std::uint64_t cell) { return std::size_t{lengthOf(cell)} << (cell & 1U); }

    void checkRoom(std::size_t longest, std::size_t bytes) const;
    std::uint64_t store(QStringView text);
    void packWhenWasteful();
    void pack(); // changes nothing when memory is short

    std::vector<std::uint64_t> m_cells;
    std::vector<char> m_block;
    std::size_t m_garbage = 0; // bytes of the block that no cell points at
};

} // namespace qir
