#include "db/AssegnaARecordset.h"

#include "base/LeadingNumber.h"
#include "db/FieldTypes.h"

namespace qir {

void AssegnaARecordset(const QirDatabase &Db, int FieldIndex, const QString &Text) {
    TextWriter writer(Db);
    writer.text() = Text;
    writer.assign(FieldIndex, Db.QIRTableFieldType(FieldIndex).toInt());
}

void TextWriter::assign(int field, int typeCode) {
    if (typeCode == static_cast<int>(FieldType::Text)) {
        m_database.setQIRTableRecordSetByIndex(field, m_text);
        return;
    }
    *static_cast<double *>(m_number.data()) = leadingNumber(text());
    m_database.setQIRTableRecordSetByIndex(field, m_number);
}

} // namespace qir
