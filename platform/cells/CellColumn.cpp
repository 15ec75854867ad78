#include "platform/cells/CellColumn.h"

#include "base/columns/BlockOrder.h"

#include <algorithm>

namespace qir {

namespace {

constexpr std::size_t mostTyped = 1024; // texts over a block, before it is cheaper to keep all of it as texts

} // namespace

void CellStretch::read(std::size_t index, QString &text) const {
    if (m_own) {
        m_texts.read(index, text);
        return;
    }
    if (!m_typed.empty()) {
        if (const auto found = m_typed.find(index); found != m_typed.end()) {
            text.resize(0);
            text.append(found->second);
            return;
        }
    }
    m_block.readText(static_cast<qsizetype>(index), text);
}

void CellStretch::set(std::size_t index, QStringView text) {
    if (!m_own && m_typed.size() >= mostTyped)
        ownTexts();
    if (m_own)
        m_texts.set(index, text);
    else
        m_typed[index] = text.toString();
}

PackedTexts &CellStretch::ownTexts() {
    if (m_own)
        return m_texts;
    PackedTexts texts;
    texts.reserve(size(), static_cast<std::size_t>(m_block.bytes().size()));
    QString text;
    for (std::size_t i = 0; i < size(); ++i) {
        read(i, text);
        texts.append(text);
    }
    m_texts = std::move(texts);
    m_own = true;
    m_block = {};
    m_typed.clear();
    return m_texts;
}

std::size_t CellStretch::memory() const {
    std::size_t bytes = m_own ? m_texts.memory() : m_block.memory();
    for (const auto &[index, text] : m_typed)
        bytes += sizeof(std::pair<std::size_t, QString>) + static_cast<std::size_t>(text.capacity()) * sizeof(QChar);
    return bytes;
}

CellColumn::Place CellColumn::place(std::size_t index) const {
    if (m_firsts.size() <= 1)
        return {0, index};
    const auto behind = std::ranges::upper_bound(m_firsts, index);
    const auto stretch = static_cast<std::size_t>(behind - m_firsts.begin()) - 1;
    return {stretch, index - m_firsts[stretch]};
}

QString CellColumn::at(std::size_t index) const {
    QString text;
    read(index, text);
    return text;
}

void CellColumn::read(std::size_t index, QString &text) const {
    const Place where = place(index);
    m_stretches[where.stretch].read(where.index, text);
}

void CellColumn::set(std::size_t index, QStringView text) {
    const Place where = place(index);
    m_stretches[where.stretch].set(where.index, text);
}

PackedTexts &CellColumn::ownEnd() {
    if (m_stretches.empty() || !m_stretches.back().own()) {
        m_firsts.reserve(m_firsts.size() + 1);
        m_stretches.emplace_back(PackedTexts());
        m_firsts.push_back(m_size);
    }
    return m_stretches.back().ownTexts();
}

void CellColumn::append(QStringView text) {
    ownEnd().append(text);
    ++m_size;
}

void CellColumn::append(ColumnBlock block) {
    if (block.isEmpty())
        return;
    m_firsts.reserve(m_firsts.size() + 1);
    const auto count = static_cast<std::size_t>(block.count());
    m_stretches.emplace_back(std::move(block));
    m_firsts.push_back(m_size);
    m_size += count;
}

void CellColumn::reserve(std::size_t count, std::size_t bytes) {
    ownEnd().reserve(count, bytes);
}

void CellColumn::resize(std::size_t count) {
    while (!m_stretches.empty() && m_firsts.back() >= count) {
        m_size = m_firsts.back();
        m_stretches.pop_back();
        m_firsts.pop_back();
    }
    if (count == m_size)
        return;
    // What is left of a block that is cut is few enough to be texts; what is added are empty ones.
    PackedTexts &texts = count < m_size ? m_stretches.back().ownTexts() : ownEnd();
    texts.resize(count - m_firsts.back());
    m_size = count;
}

void CellColumn::setStretches(std::vector<CellStretch> stretches) {
    std::vector<std::size_t> firsts;
    std::size_t size = 0;
    for (const CellStretch &stretch : stretches) {
        firsts.push_back(size);
        size += stretch.size();
    }
    m_stretches = std::move(stretches);
    m_firsts = std::move(firsts);
    m_size = size;
}

void CellColumn::permute(const std::vector<std::uint32_t> &order) {
    if (m_stretches.size() == 1 && m_stretches.front().own()) {
        m_stretches.front().ownTexts().permute(order);
        return;
    }
    const bool blocks = std::ranges::all_of(m_stretches, [this](const CellStretch &stretch) {
        return !stretch.own() && stretch.typed().empty() &&
               stretch.block().type() == m_stretches.front().block().type();
    });
    std::vector<CellStretch> stretches;
    if (blocks) {
        std::vector<ColumnBlock> all;
        for (const CellStretch &stretch : m_stretches)
            all.push_back(stretch.block());
        for (ColumnBlock &block : reordered(all, order))
            stretches.emplace_back(std::move(block));
    } else {
        PackedTexts texts;
        texts.reserve(m_size, memory());
        QString text;
        for (const std::uint32_t index : order) {
            read(index, text);
            texts.append(text);
        }
        stretches.emplace_back(std::move(texts));
    }
    setStretches(std::move(stretches));
}

std::size_t CellColumn::memory() const {
    std::size_t bytes = 0;
    for (const CellStretch &stretch : m_stretches)
        bytes += stretch.memory();
    return bytes;
}

} // namespace qir
