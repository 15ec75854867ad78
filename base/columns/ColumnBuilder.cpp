#include "base/columns/ColumnBuilder.h"

#include "base/ByteWriter.h"
#include "base/columns/FittingNumber.h"
#include "base/columns/UnicodeText.h"

#include <limits>
#include <stdexcept>
#include <utility>

namespace qir {

namespace {

/// Where a text of `length` bytes goes.
TextPlace placeBehind(const QByteArray &bytes, std::size_t length) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max();
    const auto start = static_cast<std::uint64_t>(bytes.size());
    if (start > most || length > most - start)
        throw std::length_error("more text than a block can hold");
    return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(length)};
}

/// Room for one more value at the end.
char *grow(QByteArray &values, ColumnType type) {
    return ByteWriter(values).room(valueSize(type)).data();
}

} // namespace

ColumnBuilder::ColumnBuilder(ColumnType type, qsizetype count)
    : m_type(type) {
    m_values.reserve(count * static_cast<qsizetype>(valueSize(type)));
}

void ColumnBuilder::add(double number) {
    putNumber(m_type, grow(m_values, m_type), fittingNumber(m_type, number));
}

void ColumnBuilder::add(QStringView text) {
    if (hasLoneSurrogate(text))
        return add(QStringView(wellFormed(text.toString())));
    const std::size_t size = utf8Size(text);
    const TextPlace place = placeBehind(m_bytes, size);
    writeUtf8(ByteWriter(m_bytes).room(size).data(), text);
    putPlace(grow(m_values, m_type), place);
}

void ColumnBuilder::addUtf8(QByteArrayView bytes) {
    const TextPlace place = placeBehind(m_bytes, static_cast<std::size_t>(bytes.size()));
    m_bytes.append(bytes);
    putPlace(grow(m_values, m_type), place);
}

ColumnBlock ColumnBuilder::take() {
    QByteArray values = std::exchange(m_values, {});
    if (m_type != ColumnType::Text)
        return ColumnBlock::ofNumbers(m_type, std::move(values));
    return ColumnBlock::ofTexts(std::move(values), std::exchange(m_bytes, {}));
}

} // namespace qir
