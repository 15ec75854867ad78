#include "tests/component/calls/ComponentModel.h"

#include "base/LeadingNumber.h"
#include "base/NumberText.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace qir::test::model {

namespace {

void require(bool condition) {
    if (!condition)
        throw Refused();
}

QString keyOf(QString name) {
    name = name.trimmed();
    while (name.contains(u" ?"_s) || name.contains(u" !"_s))
        name.remove(u" ?"_s).remove(u" !"_s);
    return name.trimmed().toUpper();
}

QString cut(const QString &text, int size) {
    QList<uint> points = text.toUcs4(); // gives U+FFFD for lone surrogates
    points.resize(std::min<qsizetype>(points.size(), size));
    QString result;
    for (const uint point : points)
        result += QStringView(QChar::fromUcs4(point)).toString();
    return result;
}

QVariant converted(const Field &field, const QVariant &value) {
    const bool isText = value.typeId() == QMetaType::QString;
    constexpr double largest = std::numeric_limits<double>::max();
    if (field.type == 10) {
        const double number = std::isnan(value.toDouble()) ? 0 : std::clamp(value.toDouble(), -largest, largest);
        return cut(isText ? value.toString() : numberText(number), field.size);
    }
    double number = isText ? leadingNumber(value.toString()) : value.toDouble();
    if (std::isnan(number))
        number = 0;
    const auto whole = [&](double least, double most) {
        return static_cast<int>(std::rint(std::clamp(number, least, most)));
    };
    switch (field.type) {
    case 1:
        return number != 0 ? 1 : 0;
    case 2:
        return whole(0, 255);
    case 3:
        return whole(-32768, 32767);
    case 4:
        return whole(-2147483648.0, 2147483647.0);
    default:
        return std::clamp(number, -largest, largest);
    }
}

int fittingSize(int type, double size) {
    return type == 10 ? static_cast<int>(std::rint(std::clamp(size, 0.0, 65535.0))) : 0;
}

template<class Named>
int find(const std::vector<Named> &items, const QString &name) {
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const Named &item) { return keyOf(item.name) == keyOf(name); });
    return found == items.end() ? -1 : static_cast<int>(found - items.begin());
}

} // namespace

bool same(const QVariant &left, const QVariant &right) {
    if (left.typeId() != right.typeId())
        return false;
    if (left.typeId() == QMetaType::Double)
        return std::bit_cast<std::uint64_t>(left.toDouble()) == std::bit_cast<std::uint64_t>(right.toDouble());
    return left == right;
}

QString textOf(const QVariant &value) {
    return value.typeId() == QMetaType::Double ? numberText(value.toDouble()) : value.toString();
}

void Database::fail() {
    for (State &group : m_groups)
        group.failed = true;
}

void Database::addTable(const QString &name) {
    requireNewTable(name, -1);
    m_state.tables.push_back({cut(name, 255), 1, {}});
    m_state.tables.back().fields.push_back({u"Field1"_s, 10, 50, {u""_s}});
    m_state.changed = true;
}

void Database::renameTable(int number, const QString &name) {
    const int index = tableAt(number);
    requireNewTable(name, index);
    assign(m_state.tables[index].name, name);
}

void Database::removeTable(int number) {
    const int index = tableAt(number);
    m_state.tables.erase(m_state.tables.begin() + index);
    if (m_state.current == index) {
        m_state.current = -1;
        m_state.record = 0;
    } else if (m_state.current > index) {
        --m_state.current;
    }
    m_state.changed = true;
}

void Database::choose(const QString &name) {
    const int index = find(m_state.tables, name);
    require(index >= 0);
    m_state.current = index;
    m_state.record = 0;
}

void Database::addField(const QString &name, int type, double size) {
    Table &table = current();
    require(QList<int>{1, 2, 3, 4, 7, 8, 10}.contains(type));
    requireNewField(table, name, -1);
    const QVariant empty = type == 10 ? QVariant(u""_s) : type >= 7 ? QVariant(0.0) : QVariant(0);
    table.fields.push_back(
        {name, type, fittingSize(type, size), std::vector<QVariant>(static_cast<std::size_t>(table.records), empty)});
    m_state.changed = true;
}

void Database::renameField(int number, const QString &name) {
    Field &field = fieldAt(number);
    requireNewField(current(), name, number - 1);
    assign(field.name, name);
}

void Database::removeField(int number) {
    fieldAt(number);
    current().fields.erase(current().fields.begin() + number - 1);
    m_state.changed = true;
}

void Database::resizeField(int number, double size) {
    Field &field = fieldAt(number);
    if (fittingSize(field.type, size) == field.size)
        return;
    field.size = fittingSize(field.type, size);
    for (QVariant &value : field.values)
        value = cut(value.toString(), field.size);
    m_state.changed = true;
}

void Database::addRecord() {
    Table &table = current();
    ++table.records;
    for (Field &field : table.fields)
        field.values.push_back(field.type == 10 ? QVariant(u""_s) : field.type >= 7 ? QVariant(0.0) : QVariant(0));
    m_state.changed = true;
}

void Database::removeRecord(int number) {
    Table &table = current();
    require(number >= 1 && number <= table.records);
    --table.records;
    for (Field &field : table.fields)
        field.values.erase(field.values.begin() + number - 1);
    if (m_state.record == number)
        m_state.record = 0;
    else if (m_state.record > number)
        --m_state.record;
    m_state.changed = true;
}

void Database::point(int number) {
    require(number >= 0 && number <= current().records);
    m_state.record = number;
}

void Database::write(int number, const QVariant &value) {
    Field &field = fieldAt(number);
    require(m_state.record > 0);
    QVariant &target = field.values[static_cast<std::size_t>(m_state.record) - 1];
    const QVariant fitting = converted(field, value);
    if (same(target, fitting))
        return;
    target = fitting;
    m_state.changed = true;
}

void Database::begin() {
    m_groups.push_back(m_state);
    m_groups.back().failed = false;
}

void Database::end() {
    require(!m_groups.empty());
    if (m_groups.back().failed)
        cancel();
    else
        m_groups.pop_back();
}

void Database::cancel() {
    require(!m_groups.empty());
    m_state = m_groups.back();
    m_groups.pop_back();
}

void Database::requireNewTable(const QString &name, int except) const {
    const int found = find(m_state.tables, name);
    require(!keyOf(name).isEmpty() && (found < 0 || found == except));
}

void Database::requireNewField(const Table &table, const QString &name, int except) {
    const int found = find(table.fields, name);
    require(!keyOf(name).isEmpty() && (found < 0 || found == except));
}

void Database::assign(QString &target, const QString &name) {
    if (target != name)
        m_state.changed = true;
    target = name;
}

int Database::tableAt(int number) const {
    require(number >= 1 && number <= static_cast<int>(m_state.tables.size()));
    return number - 1;
}

Table &Database::current() {
    require(m_state.current >= 0);
    return m_state.tables[static_cast<std::size_t>(m_state.current)];
}

Field &Database::fieldAt(int number) {
    require(number >= 1 && number <= static_cast<int>(current().fields.size()));
    return current().fields[static_cast<std::size_t>(number) - 1];
}

} // namespace qir::test::model
