#include "cli/tables/CellText.h"

#include "base/NumberText.h"
#include "base/columns/ColumnValues.h"

#include <algorithm>

namespace qir {

TextAppender::TextAppender(QByteArray &out)
    : m_out(out)
    , m_at(out.data() + out.size())
    , m_end(m_at) {}

TextAppender::~TextAppender() {
    m_out.resize(m_at - m_out.constData());
}

void TextAppender::grow(qsizetype count) {
    constexpr qsizetype least = 4096;
    const qsizetype used = m_at - m_out.constData();
    m_out.resize(std::max({least, used + count, 2 * used, m_out.capacity()}));
    m_at = m_out.data() + used;
    m_end = m_out.data() + m_out.size();
}

void TextAppender::number(const ColumnBlock &column, qsizetype index) {
    char *&at = room(numberTextCapacity);
    const double number = numberAt(column.type(), column.values().constData() + (index << valueShift(column.type())));
    const bool isReal = column.type() == ColumnType::Double || column.type() == ColumnType::Date;
    at = isReal ? formatNumber(at, number) : formatNumber(at, static_cast<int>(number));
}

QByteArrayView rightText(const ColumnBlock &column, qsizetype index, QByteArray &storage) {
    const QByteArrayView text = column.textBytes(index);
    if (text.isValidUtf8())
        return text;
    storage = column.text(index).toUtf8();
    return storage;
}

} // namespace qir
