#include "structure/TableCopy.h"

namespace qir {

void copyFields(const QirDatabase &source, const QirDatabase &target) {
    const int fields = source.QirTableFieldsCount();
    // The size goes along whatever the type: the component ignores it where it has no meaning.
    for (int f = 1; f <= fields; ++f)
        target.AddField(source.QIRTableFieldName(f), source.QIRTableFieldType(f).toInt(),
                        source.QIRTableFieldSize(f).toDouble());
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
