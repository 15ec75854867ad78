#include "compare/conflicts/ConflictTable.h"

#include "base/Collation.h"
#include "base/NumberText.h"
#include "db/StoredText.h"
#include "db/tables/FieldHeader.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QString keyText(const QVariant &value) {
    const bool isText = value.typeId() == QMetaType::QString;
    const QString text = isText ? value.toString() : numberText(value.toDouble() + 0.0); // no -0
    return u"%1%2:"_s.arg(isText ? u't' : u'n').arg(text.size()) + text;
}

} // namespace

bool isEmptyValue(const QVariant &value) {
    return value.typeId() == QMetaType::QString ? value.toString().isEmpty() : value.toDouble() == 0;
}

QString keyText(const QVariantList &values) {
    QString text;
    for (const QVariant &value : values)
        text += keyText(value);
    return text;
}

ConflictTable::ConflictTable(const QirDatabase &database)
    : m_database(database)
    , m_table(database) {
    for (int field = 1; field <= m_table.fields(); ++field) {
        m_keys.append(collationKey(m_table.fieldName(field)));
        if (!m_fields.contains(m_keys.back()))
            m_fields.insert(m_keys.back(), field);
    }
}

int ConflictTable::fieldOf(const QString &name) const {
    return m_fields.value(collationKey(name));
}

QString ConflictTable::headerOf(int field) const {
    const QVariant code = m_database.QIRTableFieldType(field);
    if (DBTypeName(code).isEmpty())
        return {};
    const auto type = static_cast<FieldType>(code.toInt());
    const int size = type == FieldType::Text ? m_database.QIRTableFieldSize(field).toInt() : 0;
    return fieldHeaderText({fieldName(field), type, size});
}

bool ConflictTable::holds(const QVariant &value, int field) const {
    const int type = m_database.QIRTableFieldType(field).toInt();
    const bool isText = type == static_cast<int>(FieldType::Text);
    return isText == (value.typeId() == QMetaType::QString) &&
           storedText(type, sizeOf(field), valueText(value)) == valueText(value);
}

int ConflictTable::sizeOf(int field) const {
    return m_table.fieldType(field) == FieldType::Text ? m_database.QIRTableFieldSize(field).toInt() : 0;
}

RecordDigest ConflictTable::digest(int record, const DecidedFields &decided) {
    RecordDigest digest;
    for (int field = 1; field <= fields(); ++field)
        if (const QString &key = m_keys[field - 1]; !decided.contains(record, key))
            digest.add(key, m_table.fieldType(field), sizeOf(field), value(record, field));
    return digest;
}

bool ConflictTable::hasPlaceFor(const QStringList &names, const DecidedFields &decided) const {
    const auto isThere = [this](const QString &name) { return !name.isEmpty() && fieldOf(name) > 0; };
    return std::ranges::any_of(names, isThere) && std::ranges::all_of(names, [&](const QString &name) {
               return name.isEmpty() || isThere(name) || decided.containsField(collationKey(name));
           });
}

bool ConflictTable::find(const QStringList &names, RecordsOfKeys &keys, const KeyedStep &step) {
    std::vector<int> fields;
    for (const QString &name : names)
        fields.push_back(fieldOf(name));
    if (fields.empty() || std::ranges::count(fields, 0) > 0)
        return false;
    for (int record = 1; record <= records(); ++record) {
        if (step && record % recordsBetweenSteps == 0)
            step();
        QString key;
        for (const int field : fields)
            key += keyText(value(record, field));
        if (const auto found = keys.find(key); found != keys.end())
            found->push_back(record);
    }
    return true;
}

} // namespace qir
