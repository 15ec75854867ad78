#include "tests/model/ComponentModel.h"

#include "tests/model/Values.h"

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int longestName = 255;

void require(bool condition) {
    if (!condition)
        throw Refused();
}

} // namespace

void ComponentModel::fail() {
    for (State &group : m_groups)
        group.failed = true;
}

void ComponentModel::addTable(const QString &name) {
    requireNewTable(name, -1);
    PlainTable table;
    table.name = firstCharacters(name, longestName);
    table.addField({u"Field1"_s, 10, 50});
    table.addRecord();
    m_state.content.tables.push_back(table);
    m_state.changed = true;
}

void ComponentModel::renameTable(int number, const QString &name) {
    const int index = tableAt(number);
    requireNewTable(name, index);
    assign(m_state.content.table(index).name, name);
}

void ComponentModel::removeTable(int number) {
    const int index = tableAt(number);
    m_state.content.tables.erase(m_state.content.tables.begin() + index);
    if (m_state.current == index) {
        m_state.current = -1;
        m_state.record = 0;
    } else if (m_state.current > index) {
        --m_state.current;
    }
    m_state.changed = true;
}

void ComponentModel::choose(const QString &name) {
    const PlainTable *table = m_state.content.find(name);
    require(table != nullptr);
    m_state.current = static_cast<int>(table - m_state.content.tables.data());
    m_state.record = 0;
}

void ComponentModel::addField(const QString &name, int type, double size) {
    PlainTable &table = current();
    require(isFieldType(type));
    requireNewField(table, name, -1);
    table.addField({name, type, keptSize(type, size)});
    m_state.changed = true;
}

void ComponentModel::renameField(int number, const QString &name) {
    const int index = fieldAt(number);
    requireNewField(current(), name, index);
    assign(current().field(index).name, name);
}

void ComponentModel::removeField(int number) {
    current().removeField(fieldAt(number));
    m_state.changed = true;
}

void ComponentModel::resizeField(int number, double size) {
    if (current().resizeField(fieldAt(number), size))
        m_state.changed = true;
}

void ComponentModel::addRecord() {
    current().addRecord();
    m_state.changed = true;
}

void ComponentModel::removeRecord(int number) {
    PlainTable &table = current();
    require(number >= 1 && number <= table.recordCount());
    table.records.erase(table.records.begin() + number - 1);
    if (m_state.record == number)
        m_state.record = 0;
    else if (m_state.record > number)
        --m_state.record;
    m_state.changed = true;
}

void ComponentModel::point(int number) {
    require(number >= 0 && number <= current().recordCount());
    m_state.record = number;
}

void ComponentModel::writeColumn(int number, int first, const QVariantList &values) {
    const int index = fieldAt(number);
    PlainTable &table = current();
    require(first >= 1 && first <= table.recordCount() && values.size() <= table.recordCount() - first + 1);
    for (int i = 0; i < values.size(); ++i)
        if (table.store(first - 1 + i, index, table.field(index).from(values.at(i))))
            m_state.changed = true;
}

void ComponentModel::appendRecords(int count) {
    PlainTable &table = current();
    require(count >= 0);
    for (int i = 0; i < count; ++i)
        table.addRecord();
    if (count > 0)
        m_state.changed = true;
}

void ComponentModel::write(int number, const QVariant &value) {
    const int index = fieldAt(number);
    require(m_state.record > 0);
    PlainTable &table = current();
    if (table.store(m_state.record - 1, index, table.field(index).from(value)))
        m_state.changed = true;
}

void ComponentModel::begin() {
    m_groups.push_back(m_state);
    m_groups.back().failed = false;
}

void ComponentModel::end() {
    require(!m_groups.empty());
    if (m_groups.back().failed)
        cancel();
    else
        m_groups.pop_back();
}

void ComponentModel::cancel() {
    require(!m_groups.empty());
    m_state = m_groups.back();
    m_groups.pop_back();
}

void ComponentModel::requireNewTable(const QString &name, int except) const {
    const PlainTable *found = m_state.content.find(name);
    require(!nameKey(name).isEmpty() && (found == nullptr || found - m_state.content.tables.data() == except));
}

void ComponentModel::requireNewField(const PlainTable &table, const QString &name, int except) {
    require(!nameKey(name).isEmpty() && !table.hasField(name, except));
}

void ComponentModel::assign(QString &target, const QString &name) {
    if (target != name)
        m_state.changed = true;
    target = name;
}

int ComponentModel::tableAt(int number) const {
    require(number >= 1 && number <= m_state.content.tableCount());
    return number - 1;
}

PlainTable &ComponentModel::current() {
    require(m_state.current >= 0);
    return m_state.content.table(m_state.current);
}

int ComponentModel::fieldAt(int number) {
    require(number >= 1 && number <= current().fieldCount());
    return number - 1;
}

} // namespace qir::test
