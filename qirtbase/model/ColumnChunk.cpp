#include "qirtbase/model/ColumnChunk.h"

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

namespace qir {

namespace {

// Less is not worth packing.
constexpr std::size_t smallGarbage = 4096;

QByteArray zeros(std::size_t size) {
    return {static_cast<qsizetype>(size), '\0'};
}

} // namespace

ColumnChunk::ColumnChunk(ColumnType type, std::size_t count)
    : m_values(zeros(count << valueShift(type))) {}

ColumnChunk::ColumnChunk(QByteArray values, QByteArray bytes, std::size_t textBytes)
    : m_values(std::move(values)) {
    if (textBytes != 0)
        m_texts = std::make_unique<Texts>(Texts{std::move(bytes), textBytes});
}

ColumnChunk::ColumnChunk(const ColumnChunk &other)
    : m_values(other.m_values)
    , m_texts(other.m_texts ? std::make_unique<Texts>(*other.m_texts) : nullptr) {}

ColumnChunk &ColumnChunk::operator=(ColumnChunk other) noexcept {
    m_values.swap(other.m_values);
    m_texts.swap(other.m_texts);
    return *this;
}

ColumnBlock ColumnChunk::block(ColumnType type, std::size_t offset, std::size_t count) const {
    const ColumnBlock whole =
        type == ColumnType::Text ? ColumnBlock::ofTexts(m_values, bytes()) : ColumnBlock::ofNumbers(type, m_values);
    return whole.sliced(static_cast<qsizetype>(offset), static_cast<qsizetype>(count));
}

bool ColumnChunk::isInOrder() const {
    std::uint64_t end = 0;
    for (const char *at = m_values.constData(); at != m_values.constData() + m_values.size(); at += sizeof(TextPlace)) {
        const TextPlace place = placeAt(at);
        if (place.length != 0 && place.start != end)
            return false;
        end += place.length;
    }
    return true;
}

std::size_t ColumnChunk::memory() const {
    return static_cast<std::size_t>(m_values.capacity() + (m_texts ? m_texts->bytes.capacity() : 0));
}

void ColumnChunk::setNumber(ColumnType type, std::size_t offset, double number) {
    putNumber(type, m_values.data() + (offset << valueShift(type)), number);
}

void ColumnChunk::setText(std::size_t offset, QByteArrayView text) {
    char *at = m_values.data() + offset * sizeof(TextPlace);
    const std::uint32_t replaced = placeAt(at).length;
    const TextPlace place = store(text);
    putPlace(at, place);
    if (m_texts)
        m_texts->used = m_texts->used - replaced + place.length;
    packWhenWasteful();
}

/// Puts a text behind the others; no value has it yet.
TextPlace ColumnChunk::store(QByteArrayView text) {
    if (text.isEmpty())
        return {0, 0};
    if (!m_texts)
        m_texts = std::make_unique<Texts>();
    constexpr std::size_t most = std::numeric_limits<std::uint32_t>::max();
    const auto start = static_cast<std::size_t>(m_texts->bytes.size());
    if (start > most - static_cast<std::size_t>(text.size()))
        throw std::length_error("more text than a chunk can hold");
    m_texts->bytes.append(text);
    return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(text.size())};
}

void ColumnChunk::setValues(std::size_t offset, const ColumnBlock &block) {
    ColumnChunk changed = *this;
    if (!block.isText()) {
        std::ranges::copy(block.values(), changed.m_values.data() + (offset << valueShift(block.type())));
    } else {
        for (qsizetype i = 0; i < block.count(); ++i)
            changed.setText(offset + static_cast<std::size_t>(i), block.textBytes(i));
    }
    *this = std::move(changed);
}

void ColumnChunk::grow(ColumnType type, std::size_t count, std::size_t most) {
    const auto size = static_cast<std::size_t>(m_values.size());
    const std::size_t wanted = size + (count << valueShift(type));
    if (wanted > static_cast<std::size_t>(m_values.capacity())) {
        // By halves, and never beyond what a chunk has in the end: its memory is to be full then.
        constexpr std::size_t fewest = 8;
        const std::size_t roomy = std::min(std::max(fewest, size + size / 2), most << valueShift(type));
        m_values.reserve(static_cast<qsizetype>(std::max(wanted, roomy)));
    }
    m_values.resize(static_cast<qsizetype>(wanted), '\0');
}

void ColumnChunk::insertZero(ColumnType type, std::size_t offset) {
    m_values.insert(static_cast<qsizetype>(offset << valueShift(type)), static_cast<qsizetype>(valueSize(type)), '\0');
}

void ColumnChunk::remove(ColumnType type, std::size_t offset) {
    if (m_texts)
        m_texts->used -= static_cast<std::size_t>(text(offset).size());
    m_values.remove(static_cast<qsizetype>(offset << valueShift(type)), static_cast<qsizetype>(valueSize(type)));
    packWhenWasteful();
}

void ColumnChunk::truncate(ColumnType type, std::size_t count) {
    for (std::size_t i = count; m_texts && i < size(type); ++i)
        m_texts->used -= static_cast<std::size_t>(text(i).size());
    m_values.truncate(static_cast<qsizetype>(count << valueShift(type)));
    packWhenWasteful();
}

ColumnChunk ColumnChunk::split(ColumnType type, std::size_t offset) {
    const auto at = static_cast<qsizetype>(offset << valueShift(type));
    std::size_t used = 0;
    for (std::size_t i = offset; m_texts && i < size(type); ++i)
        used += static_cast<std::size_t>(text(i).size());
    ColumnChunk back(m_values.sliced(at), bytes(), used);
    back.pack();
    m_values.truncate(at);
    if (m_texts)
        m_texts->used -= used;
    packWhenWasteful();
    return back;
}

void ColumnChunk::squeeze() {
    const auto isRoomy = [](const QByteArray &array) {
        return array.isDetached() && array.capacity() - array.size() > array.size() / 16;
    };
    try {
        if (isRoomy(m_values))
            m_values.squeeze();
        if (m_texts && isRoomy(m_texts->bytes))
            m_texts->bytes.squeeze();
    } catch (const std::bad_alloc &) { // NOLINT(bugprone-empty-catch): it stays as roomy as it is
    }
}

void ColumnChunk::packWhenWasteful() {
    if (!m_texts)
        return;
    const auto held = static_cast<std::size_t>(m_texts->bytes.size());
    if (held >= m_texts->used + smallGarbage && held - m_texts->used > held / 2)
        pack();
}

void ColumnChunk::pack() {
    if (!m_texts)
        return;
    QByteArray bytes;
    QByteArray places;
    try {
        bytes.reserve(static_cast<qsizetype>(m_texts->used));
        places = m_values;
        places.detach();
    } catch (const std::bad_alloc &) {
        return; // wasteful but right
    }
    for (char *at = places.data(); at != places.data() + places.size(); at += sizeof(TextPlace)) {
        const TextPlace place = placeAt(at);
        putPlace(at, {static_cast<std::uint32_t>(bytes.size()), place.length});
        bytes.append(QByteArrayView(m_texts->bytes.constData() + place.start, place.length));
    }
    m_values = std::move(places);
    m_texts->bytes = std::move(bytes);
}

} // namespace qir
