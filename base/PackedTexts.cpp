#include "base/PackedTexts.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>

namespace qir {

namespace {

constexpr int offsetBits = 38;
constexpr std::size_t largestBlock = (std::size_t{1} << offsetBits) - 1;
// Blocks below this are not worth packing.
constexpr std::size_t smallGarbage = 4096;

bool isWide(QStringView text) {
    char16_t units = 0;
    for (const QChar unit : text)
        units = static_cast<char16_t>(units | unit.unicode());
    return units > 0xFF;
}

} // namespace

bool operator==(const PackedTexts::View &left, const PackedTexts::View &right) {
    // Equal texts have the same form, so unlike forms are unlike texts; empty ones have no bytes to look at.
    return left.size == right.size && left.wide == right.wide &&
           (left.size == 0 || std::memcmp(left.bytes, right.bytes, std::size_t{left.size} << left.wide) == 0);
}

void PackedTexts::View::copyTo(QChar *target) const {
    if (size == 0)
        return;
    if (wide) {
        std::memcpy(target, bytes, std::size_t{size} * sizeof(char16_t));
    } else {
        const auto *units = reinterpret_cast<const unsigned char *>(bytes);
        std::copy(units, units + size, reinterpret_cast<char16_t *>(target));
    }
}

void PackedTexts::clear() {
    m_cells.clear();
    m_block.clear();
    m_garbage = 0;
}

void PackedTexts::reserve(std::size_t count, std::size_t bytes) {
    m_cells.reserve(count);
    m_block.reserve(bytes);
}

void PackedTexts::resize(std::size_t count) {
    for (std::size_t i = count; i < m_cells.size(); ++i)
        m_garbage += bytesOf(m_cells[i]);
    m_cells.resize(count, 0);
    packWhenWasteful();
}

void PackedTexts::makeRoom() {
    constexpr std::size_t fewest = 16;
    if (m_cells.size() == m_cells.capacity())
        m_cells.reserve(std::max(fewest, m_cells.size() + m_cells.size() / 2));
}

PackedTexts::View PackedTexts::view(std::size_t index) const {
    const std::uint64_t cell = m_cells[index];
    return {m_block.data() + offsetOf(cell), lengthOf(cell), isWideCell(cell)};
}

QString PackedTexts::at(std::size_t index) const {
    const View source = view(index);
    QString text(static_cast<qsizetype>(source.size), Qt::Uninitialized);
    source.copyTo(text.data());
    return text;
}

void PackedTexts::read(std::size_t index, QString &text) const {
    const View source = view(index);
    text.resize(static_cast<qsizetype>(source.size));
    source.copyTo(text.data());
}

bool PackedTexts::holds(std::size_t index, QStringView text) const {
    const View stored = view(index);
    if (stored.size != static_cast<std::size_t>(text.size()))
        return false;
    const char16_t *units = text.utf16();
    if (stored.wide)
        return std::memcmp(stored.bytes, units, std::size_t{stored.size} * sizeof(char16_t)) == 0;
    const auto *bytes = reinterpret_cast<const unsigned char *>(stored.bytes);
    return std::equal(bytes, bytes + stored.size, units);
}

void PackedTexts::append(QStringView text) {
    makeRoom();
    m_cells.push_back(store(text));
}

void PackedTexts::appendLatin1(const char *bytes, std::span<const std::uint32_t> lengths) {
    std::size_t total = 0;
    std::uint32_t longest = 0;
    for (const std::uint32_t length : lengths) {
        total += length;
        longest = std::max(longest, length);
    }
    checkRoom(longest, total);
    m_cells.reserve(m_cells.size() + lengths.size());
    std::size_t offset = m_block.size();
    m_block.insert(m_block.end(), bytes, bytes + total);
    for (const std::uint32_t length : lengths) {
        m_cells.push_back(cellAt(offset, length, false));
        offset += length;
    }
}

void PackedTexts::appendLatin1(const char *text, std::size_t size) {
    makeRoom();
    checkRoom(size, size);
    const std::uint64_t cell = cellAt(m_block.size(), size, false);
    m_block.insert(m_block.end(), text, text + size);
    m_cells.push_back(cell);
}

void PackedTexts::set(std::size_t index, QStringView text) {
    const std::size_t replaced = bytesOf(m_cells[index]);
    m_cells[index] = store(text);
    m_garbage += replaced;
    packWhenWasteful();
}

void PackedTexts::permute(const std::vector<std::uint32_t> &order) {
    std::vector<std::uint64_t> cells(m_cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i)
        cells[i] = m_cells[order[i]];
    m_cells = std::move(cells);
    // Texts in the order of their indexes: who reads many in a row reads memory in a row.
    pack();
}

std::size_t PackedTexts::memory() const {
    return m_cells.capacity() * sizeof(std::uint64_t) + m_block.capacity();
}

void PackedTexts::checkRoom(std::size_t longest, std::size_t bytes) const {
    if (longest >= std::size_t{1} << lengthBits)
        throw std::length_error("PackedTexts: text too long");
    if (bytes > largestBlock - m_block.size())
        throw std::length_error("PackedTexts: too many texts");
}

std::uint64_t PackedTexts::store(QStringView text) {
    const auto size = static_cast<std::size_t>(text.size());
    const bool wide = isWide(text);
    checkRoom(size, size << wide);
    const std::uint64_t cell = cellAt(m_block.size(), size, wide);
    if (wide) {
        const char *bytes = reinterpret_cast<const char *>(text.utf16());
        m_block.insert(m_block.end(), bytes, bytes + size * sizeof(char16_t));
    } else {
        const char16_t *units = text.utf16();
        m_block.insert(m_block.end(), units, units + size); // narrows unit by unit
    }
    return cell;
}

void PackedTexts::packWhenWasteful() {
    if (m_garbage >= smallGarbage && m_garbage > m_block.size() / 2)
        pack();
}

void PackedTexts::pack() {
    std::vector<char> block;
    try {
        block.reserve(m_block.size() - m_garbage);
    } catch (const std::bad_alloc &) {
        return; // no cell has moved: the column stays as it is, wasteful but right
    }
    for (std::uint64_t &cell : m_cells) {
        const char *bytes = m_block.data() + offsetOf(cell);
        const std::size_t offset = block.size();
        block.insert(block.end(), bytes, bytes + bytesOf(cell));
        cell = cellAt(offset, lengthOf(cell), isWideCell(cell));
    }
    m_block = std::move(block);
    m_garbage = 0;
}

} // namespace qir
