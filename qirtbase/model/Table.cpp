#include "qirtbase/model/Table.h"

#include "base/Collation.h"
#include "base/UndoOnError.h"
#include "base/columns/UnicodeText.h"
#include "qirtbase/model/DatabaseError.h"
#include "qirtbase/model/ModelLimits.h"

#include <algorithm>
#include <atomic>

using namespace Qt::StringLiterals;

namespace qir {

Name Name::checked(const QString &text) {
    Name name{wellFormed(text), {}};
    if (codePoints(name.text) > limits::nameLength) {
        throw DatabaseError(
            u"The name \"%1...\" is longer than %2 characters."_s.arg(name.text.first(40)).arg(limits::nameLength));
    }
    name.key = collationKey(name.text);
    if (name.key.isEmpty())
        throw DatabaseError(u"\"%1\" cannot be a name: it is empty."_s.arg(name.text));
    return name;
}

FieldName::FieldName(const Name &name) {
    m_utf8.resize(utf8Size(QStringView(name.text)));
    writeUtf8(m_utf8.data(), QStringView(name.text));
    m_utf8.shrink_to_fit();
}

QString FieldName::text() const {
    QString text;
    readUtf8(QByteArrayView(m_utf8), text);
    return text;
}

QString FieldName::key() const {
    return collationKey(text());
}

std::optional<std::size_t> Table::findField(const QString &key) const {
    const auto found = std::ranges::find_if(m_fields, [&](const Field &field) { return field.name.key() == key; });
    if (found == m_fields.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - m_fields.begin());
}

std::size_t Table::memory() const {
    std::size_t bytes = 0;
    for (const Field &field : m_fields)
        bytes += field.column.memory();
    return bytes;
}

std::uint64_t Table::nextRevision() {
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

void Table::insertField(std::size_t index, Field field) {
    m_fields.insert(m_fields.begin() + static_cast<std::ptrdiff_t>(index), std::move(field));
}

Field Table::takeField(std::size_t index) {
    Field field = std::move(m_fields[index]);
    m_fields.erase(m_fields.begin() + static_cast<std::ptrdiff_t>(index));
    return field;
}

void Table::appendRecords(std::size_t count) {
    std::size_t done = 0;
    const UndoOnError undo([&] {
        while (done-- > 0)
            m_fields[done].column.truncate(m_records);
    });
    for (; done < m_fields.size(); ++done)
        m_fields[done].column.append(count);
    m_records += count;
}

void Table::shareWith(const Table &other) {
    for (std::size_t field = 0; field < std::min(fieldCount(), other.fieldCount()); ++field)
        m_fields[field].column.shareWith(other.m_fields[field].column);
}

void Table::dropRecords(std::size_t count) {
    m_records -= count;
    for (Field &field : m_fields)
        field.column.truncate(m_records);
}

void Table::insertRecord(std::size_t record, const std::vector<CellValue> &values) {
    std::size_t done = 0;
    const UndoOnError undo([&] {
        while (done-- > 0)
            m_fields[done].column.remove(record);
    });
    for (; done < m_fields.size(); ++done)
        m_fields[done].column.insert(record, values[done]);
    ++m_records;
}

std::vector<CellValue> Table::record(std::size_t record) const {
    std::vector<CellValue> values;
    values.reserve(m_fields.size());
    for (const Field &field : m_fields)
        values.push_back(field.column.value(record));
    return values;
}

void Table::removeRecord(std::size_t record) {
    for (Field &field : m_fields)
        field.column.prepareRemoval(record);
    for (Field &field : m_fields)
        field.column.remove(record);
    --m_records;
}

} // namespace qir
