#include "compare/conflicts/RecordDigest.h"

#include "base/Collation.h"
#include "db/StoredText.h"

namespace qir {

namespace {

QString digitsOf(const QByteArray &hash) {
    constexpr qsizetype bytes = 16;
    return QString::fromLatin1(hash.first(bytes).toHex());
}

} // namespace

void RecordDigest::add(const QString &key, FieldType type, int size, const QVariant &value) {
    m_values.emplace(key, storedText(static_cast<int>(type), size, valueText(value)));
}

QString RecordDigest::text() const {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const auto &[name, value] : m_values) {
        for (const QString &text : {name, value}) {
            const QByteArray utf8 = text.toUtf8();
            hash.addData(QByteArray::number(utf8.size()) + ':' + utf8);
        }
    }
    return digitsOf(hash.result());
}

void RecordsDigest::add(const RecordDigest &record) {
    m_hash.addData(record.text().toLatin1());
    m_isEmpty = m_isEmpty && record.isEmpty();
}

QString RecordsDigest::text() const {
    return digitsOf(m_hash.result());
}

void DecidedFields::add(const Conflict &conflict) {
    if (conflict.what == Conflict::What::Field)
        m_fields.insert(collationKey(conflict.field));
    else if (conflict.what == Conflict::What::Cell && conflict.key.isEmpty())
        m_cells[conflict.record].insert(collationKey(conflict.field));
}

bool DecidedFields::contains(int record, const QString &key) const {
    const auto cells = m_cells.constFind(record);
    return containsField(key) || (cells != m_cells.cend() && cells->contains(key));
}

} // namespace qir
