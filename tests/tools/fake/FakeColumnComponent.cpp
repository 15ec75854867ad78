#include "tests/tools/fake/FakeColumnComponent.h"

#include "base/columns/ColumnBuilder.h"
#include "tests/tools/fake/FakeRecorder.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr qsizetype mostSeen = 64;

bool isUtf8(QByteArrayView bytes) {
    return QString::fromUtf8(bytes).toUtf8() == bytes;
}

QVariant valueOf(const ColumnBlock &block, qsizetype index) {
    return block.isText() ? QVariant(block.text(index)) : QVariant(block.number(index));
}

} // namespace

QVariant FakeColumnComponent::ReadColumn(int field, int first, int count) const {
    called("ReadColumn", {field, first, count});
    const fake::Table &table = current();
    const int index = fieldIndex(field);
    const int begin = recordIndex(first);
    if (count < 1)
        raise(u"Nothing can be read."_s);
    const qsizetype together = FakeRecorder::self().columns();
    const qsizetype boundary = (begin / together + 1) * together;
    const qsizetype end = std::min({begin + qsizetype{count}, boundary, table.records.size()});
    ColumnBuilder builder(static_cast<ColumnType>(table.fields.at(index).type));
    for (qsizetype record = begin; record < end; ++record) {
        const QVariant &value = table.records.at(record).at(index);
        if (table.fields.at(index).type == static_cast<int>(ColumnType::Text))
            builder.add(QStringView(*static_cast<const QString *>(value.constData())));
        else
            builder.add(value.toDouble());
    }
    return builder.take().toVariant();
}

void FakeColumnComponent::WriteColumn(int field, int first, const QVariant &block) {
    called("WriteColumn", {field, first, block});
    const fake::Table &table = std::as_const(*this).current();
    const int index = fieldIndex(field);
    const int begin = recordIndex(first);
    const Result<ColumnBlock> values = ColumnBlock::fromVariant(block);
    if (!values)
        raise(values.error().text);
    const fake::Field written = table.fields.at(index);
    if (static_cast<int>(values->type()) != written.type)
        raise(u"The block is of another type."_s);
    if (values->count() > table.records.size() - begin)
        raise(u"The block is too long."_s);
    for (qsizetype i = 0; values->isText() && i < values->count(); ++i)
        if (!isUtf8(values->textBytes(i)))
            raise(u"A text is no UTF-8."_s);
    for (qsizetype i = 0; i < values->count(); ++i) {
        const QVariant kept = fake::fitted(written, valueOf(*values, i));
        if (fake::same(std::as_const(*this).current().records.at(begin + i).at(index), kept))
            continue;
        current().records[begin + i][index] = kept;
        setChanged();
    }
}

void FakeColumnComponent::AppendRecords(int count) {
    called("AppendRecords", {count});
    const qsizetype there = current().records.size();
    if (count < 0 || count > mostRecords - there)
        raise(u"So many records cannot be added."_s);
    for (int i = 0; i < count; ++i)
        appendRecord();
}

double FakeColumnComponent::TableRevision() {
    called("TableRevision");
    const fake::Table &table = std::as_const(*this).current();
    const auto isSame = [&](const Seen &seen) {
        return seen.table.key == table.key && seen.table.fields.isSharedWith(table.fields) &&
               seen.table.records.isSharedWith(table.records);
    };
    if (const auto found = std::ranges::find_if(m_seen, isSame); found != m_seen.end())
        return found->revision;
    static double last = 0;
    m_seen.append({table, ++last});
    if (m_seen.size() > mostSeen)
        m_seen.removeFirst();
    return last;
}

} // namespace qir
