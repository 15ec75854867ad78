#include "base/columns/ColumnBlock.h"

#include "base/NumberText.h"
#include "base/columns/UnicodeText.h"

#include <QVariantList>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr qsizetype numbersLength = 2; // of the list that carries a block
constexpr qsizetype textsLength = 3;

/// How far the texts reach at most.
std::uint64_t endOfTexts(const QByteArray &places) {
    std::uint64_t end = 0;
    for (const char *at = places.constData(); at != places.constData() + places.size(); at += sizeof(TextPlace))
        end = std::max(end, std::uint64_t{placeAt(at).start} + placeAt(at).length);
    return end;
}

Result<ColumnBlock> wrong(const QString &what) {
    return failure(u"This is no block of a column: %1."_s.arg(what));
}

} // namespace

ColumnBlock::ColumnBlock(ColumnType type, QByteArray values, QByteArray bytes)
    : m_type(type)
    , m_values(std::move(values))
    , m_bytes(std::move(bytes)) {}

ColumnBlock ColumnBlock::ofNumbers(ColumnType type, QByteArray values) {
    return {type, std::move(values), {}};
}

ColumnBlock ColumnBlock::ofTexts(QByteArray places, QByteArray bytes) {
    return {ColumnType::Text, std::move(places), std::move(bytes)};
}

Result<ColumnBlock> ColumnBlock::fromVariant(const QVariant &variant) {
    if (variant.typeId() != QMetaType::QVariantList)
        return wrong(u"it is no list"_s);
    const auto list = variant.toList();
    if (list.isEmpty() || list.first().typeId() != QMetaType::Int)
        return wrong(u"it begins with no type"_s);
    const auto type = columnType(list.first().toInt());
    if (!type)
        return wrong(u"there is no type with the code %1"_s.arg(list.first().toInt()));
    const bool isText = *type == ColumnType::Text;
    const auto isBytes = [](const QVariant &part) { return part.typeId() == QMetaType::QByteArray; };
    if (list.size() != (isText ? textsLength : numbersLength) || !std::all_of(list.begin() + 1, list.end(), isBytes))
        return wrong(u"its parts are not those of its type"_s);
    QByteArray values = list.at(1).toByteArray();
    if (static_cast<std::size_t>(values.size()) % valueSize(*type) != 0)
        return wrong(u"its last value is cut off"_s);
    if (!isText)
        return ofNumbers(*type, std::move(values));
    QByteArray bytes = list.at(2).toByteArray();
    if (endOfTexts(values) > static_cast<std::uint64_t>(bytes.size()))
        return wrong(u"a text reaches beyond its bytes"_s);
    return ofTexts(std::move(values), std::move(bytes));
}

QVariant ColumnBlock::toVariant() const {
    QVariantList list{static_cast<int>(m_type), m_values};
    if (isText())
        list += m_bytes;
    return list;
}

double ColumnBlock::number(qsizetype index) const {
    return numberAt(m_type, m_values.constData() + (index << valueShift(m_type)));
}

QByteArrayView ColumnBlock::textBytes(qsizetype index) const {
    const TextPlace place = placeAt(m_values.constData() + (index << valueShift(ColumnType::Text)));
    return {m_bytes.constData() + place.start, static_cast<qsizetype>(place.length)};
}

QString ColumnBlock::text(qsizetype index) const {
    QString text;
    readText(index, text);
    return text;
}

void ColumnBlock::readText(qsizetype index, QString &text) const {
    if (isText()) {
        const QByteArrayView utf8 = textBytes(index);
        if (!readUtf8(utf8, text))
            text = QString::fromUtf8(utf8);
        return;
    }
    char digits[numberTextCapacity];
    const bool isReal = m_type == ColumnType::Double || m_type == ColumnType::Date;
    const char *end =
        isReal ? formatNumber(digits, number(index)) : formatNumber(digits, static_cast<int>(number(index)));
    text.resize(end - digits);
    std::copy<const char *>(digits, end, reinterpret_cast<char16_t *>(text.data()));
}

ColumnBlock ColumnBlock::sliced(qsizetype first, qsizetype count) const {
    if (first == 0 && count == this->count())
        return *this;
    const auto size = static_cast<qsizetype>(valueSize(m_type));
    return {m_type, m_values.sliced(first * size, count * size), m_bytes};
}

bool ColumnBlock::sharesMemoryWith(const ColumnBlock &other) const {
    return m_type == other.m_type && m_values.size() == other.m_values.size() &&
           m_values.constData() == other.m_values.constData() && m_bytes.constData() == other.m_bytes.constData();
}

std::size_t ColumnBlock::memory() const {
    return static_cast<std::size_t>(m_values.capacity() + m_bytes.capacity());
}

} // namespace qir
