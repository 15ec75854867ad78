#include "db/AssegnaARecordset.h"

#include "base/LeadingNumber.h"
#include "db/FieldTypes.h"

namespace qir {

void assignText(const QirDatabase &database, int field, int typeCode, const QString &text) {
    if (typeCode == static_cast<int>(FieldType::Text))
        database.setQIRTableRecordSetByIndex(field, text);
    else
        database.setQIRTableRecordSetByIndex(field, leadingNumber(text));
}

void AssegnaARecordset(const QirDatabase &Db, int FieldIndex, const QString &Text) {
    assignText(Db, FieldIndex, Db.QIRTableFieldType(FieldIndex).toInt(), Text);
}

} // namespace qir
