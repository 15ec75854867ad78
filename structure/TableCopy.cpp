#include "structure/TableCopy.h"

#include "platform/loop/MessageLoop.h"

namespace qir {

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
