#include "structure/TableCopy.h"

#include "base/columns/ColumnBuilder.h"
#include "platform/loop/MessageLoop.h"

namespace qir {

namespace {

constexpr int mostValuesAtOnce = 1 << 16;
constexpr qsizetype mostBytesAtOnce = 1 << 26;

/// Gives how many bytes of text it has added.
qsizetype addValue(ColumnBuilder &values, const CellView &cell) {
    if (!cell.isText) {
        values.add(cell.number);
        return 0;
    }
    if (cell.bytes.isNull()) {
        values.add(cell.text);
        return cell.text.size();
    }
    values.addUtf8(cell.bytes);
    return cell.bytes.size();
}

} // namespace

void copyFields(const QirDatabase &source, const QirDatabase &target) {
    const int fields = source.QirTableFieldsCount();
    // The size goes along whatever the type: the component ignores it where it has no meaning.
    for (int f = 1; f <= fields; ++f)
        target.AddField(source.QIRTableFieldName(f), source.QIRTableFieldType(f).toInt(),
                        source.QIRTableFieldSize(f).toDouble());
}

bool canCopyColumns(const QirDatabase &source, const QirDatabase &target) {
    const int fields = source.QirTableFieldsCount();
    if (!source.hasColumns() || !target.hasColumns() || fields > target.QirTableFieldsCount())
        return false;
    for (int f = 1; f <= fields; ++f) {
        if (source.QIRTableFieldType(f).toInt() != target.QIRTableFieldType(f).toInt())
            return false;
    }
    return true;
}

void copyColumns(const QirDatabase &source, const QirDatabase &target, int first, int count) {
    const int fields = source.QirTableFieldsCount();
    YieldTimer timer;
    for (int f = 1; f <= fields; ++f) {
        for (int done = 0; done < count;) {
            const ColumnBlock block = source.ReadColumn(f, first + done, count - done);
            target.WriteColumn(f, first + done, block);
            done += static_cast<int>(block.count());
            timer.yieldIfDue();
        }
    }
}

void copyToColumn(TableSource &source, int sourceField, const std::vector<int> &records, const QirDatabase &target,
                  int targetField, int first) {
    ColumnBuilder values(source.fieldType(sourceField) == FieldType::Text
                             ? ColumnType::Text
                             : static_cast<ColumnType>(target.QIRTableFieldType(targetField).toInt()));
    int count = 0;
    qsizetype bytes = 0;
    const auto write = [&] {
        target.WriteColumn(targetField, first, values.take());
        first += count;
        count = 0;
        bytes = 0;
    };
    YieldTimer timer;
    for (const int record : records) {
        bytes += addValue(values, source.cell(record, sourceField));
        if (++count == mostValuesAtOnce || bytes >= mostBytesAtOnce)
            write();
        timer.yieldIfDue();
    }
    if (count > 0)
        write();
}

RecordCopy::RecordCopy(const QirDatabase &source, const QirDatabase &target)
    : m_source(source)
    , m_target(target)
    , m_fields(source.QirTableFieldsCount()) {}

void RecordCopy::copyCurrentRecord() {
    for (int f = 1; f <= m_fields; ++f) {
        m_source.readQIRTableRecordSetByIndex(f, m_value);
        m_target.setQIRTableRecordSetByIndex(f, m_value);
    }
}

} // namespace qir
