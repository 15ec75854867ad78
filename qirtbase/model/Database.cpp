#include "qirtbase/model/Database.h"

#include "base/Collation.h"
#include "base/LeadingNumber.h"
#include "base/NumberText.h"
#include "base/UndoOnError.h"
#include "base/columns/UnicodeText.h"
#include "qirtbase/model/DatabaseError.h"
#include "qirtbase/model/ModelLimits.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr double newFieldSize = 50;

int fittingSize(double size) {
    if (std::isnan(size))
        return 0;
    return static_cast<int>(std::nearbyint(std::clamp(size, 0.0, static_cast<double>(limits::textSize))));
}

Field newField(const Name &name, ColumnType type, double size, std::size_t records) {
    return {FieldName(name), type == ColumnType::Text ? fittingSize(size) : 0, Column(type, records)};
}

/// The column with every text cut to `size`, nothing when none is longer.
std::optional<Column> cutColumn(const Column &column, std::size_t size) {
    std::optional<Column> result;
    QString text;
    for (std::size_t record = 0; record < column.size(); ++record) {
        column.readText(record, text);
        const QString cut = fittingText(text, size);
        if (cut.size() == text.size())
            continue;
        if (!result)
            result = column;
        result->set(record, cut);
    }
    return result;
}

} // namespace

std::optional<std::size_t> Database::findTable(const QString &name) const {
    return findKey(collationKey(wellFormed(name)));
}

std::optional<std::size_t> Database::findKey(const QString &key) const {
    const auto found = std::ranges::find_if(m_tables, [&](const auto &table) { return table->name().key == key; });
    if (found == m_tables.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - m_tables.begin());
}

void Database::addTable(const QString &name) {
    Name checked = Name::checked(name);
    if (findKey(checked.key))
        throw DatabaseError(u"A table \"%1\" already exists."_s.arg(checked.text));
    if (m_tables.size() >= limits::tables)
        throw DatabaseError(u"A database holds at most %1 tables."_s.arg(limits::tables));
    auto table = std::make_unique<Table>(std::move(checked));
    table->insertField(0, newField(Name::checked(u"Field1"_s), ColumnType::Text, newFieldSize, 0));
    table->appendRecord();
    m_tables.reserve(m_tables.size() + 1);
    m_undo.makeRoom();
    m_undo.coverNewTable(*table);
    m_tables.push_back(std::move(table));
    m_undo.add(undo::TableAppended{});
    tell({.kind = ChangeKind::AddTable, .text = m_tables.back()->name().text});
}

bool Database::renameTable(std::size_t index, const QString &name) {
    Name checked = Name::checked(name);
    Table &table = *m_tables[index];
    if (checked.text == table.name().text)
        return false;
    if (findKey(checked.key).value_or(index) != index)
        throw DatabaseError(u"A table \"%1\" already exists."_s.arg(checked.text));
    m_undo.add(undo::TableRenamed{&table, table.name()});
    table.rename(std::move(checked));
    tell({.kind = ChangeKind::RenameTable, .index = index, .text = table.name().text});
    return true;
}

void Database::removeTable(std::size_t index) {
    m_undo.makeRoom();
    const auto position = m_tables.begin() + static_cast<std::ptrdiff_t>(index);
    std::unique_ptr<Table> table = std::move(*position);
    m_tables.erase(position);
    m_undo.add(undo::TableRemoved{index, std::move(table)});
    tell({.kind = ChangeKind::RemoveTable, .index = index});
}

void Database::addField(Table &table, const QString &name, int typeCode, double size) {
    const std::optional<ColumnType> type = columnType(typeCode);
    if (!type)
        throw DatabaseError(u"There is no field type with the code %1."_s.arg(typeCode));
    const Name checked = Name::checked(name);
    if (table.findField(checked.key))
        throw DatabaseError(u"A field \"%1\" already exists."_s.arg(checked.text));
    if (table.fieldCount() >= limits::fields)
        throw DatabaseError(u"A table holds at most %1 fields."_s.arg(limits::fields));
    const bool kept = m_undo.keeps(table);
    m_undo.makeRoom();
    table.insertField(table.fieldCount(), newField(checked, *type, size, table.recordCount()));
    if (kept)
        m_undo.add(undo::FieldAppended{&table});
    const Field &added = table.field(table.fieldCount() - 1);
    tell(table, {.kind = ChangeKind::AddField,
                 .table = &table,
                 .type = typeCode,
                 .number = double(added.size),
                 .text = checked.text});
}

bool Database::renameField(Table &table, std::size_t index, const QString &name) {
    const Name checked = Name::checked(name);
    FieldName renamed(checked);
    Field &field = table.field(index);
    if (renamed.utf8() == field.name.utf8())
        return false;
    if (table.findField(checked.key).value_or(index) != index)
        throw DatabaseError(u"A field \"%1\" already exists."_s.arg(checked.text));
    if (m_undo.keeps(table))
        m_undo.add(undo::FieldRenamed{&table, index, field.name});
    field.name = std::move(renamed);
    tell(table, {.kind = ChangeKind::RenameField, .table = &table, .index = index, .text = checked.text});
    return true;
}

void Database::removeField(Table &table, std::size_t index) {
    if (m_undo.keeps(table)) {
        m_undo.makeRoom();
        auto removed = std::make_unique<Field>(Field{{}, 0, Column(ColumnType::Bool)});
        *removed = table.takeField(index);
        m_undo.add(undo::FieldRemoved{&table, index, std::move(removed)});
    } else {
        table.takeField(index);
    }
    tell(table, {.kind = ChangeKind::RemoveField, .table = &table, .index = index});
}

bool Database::resizeField(Table &table, std::size_t index, double size) {
    Field &field = table.field(index);
    if (field.type() != ColumnType::Text || fittingSize(size) == field.size)
        return false;
    const int wanted = fittingSize(size);
    std::optional<Column> cut;
    if (wanted < field.size)
        cut = cutColumn(field.column, static_cast<std::size_t>(wanted));
    if (m_undo.keeps(table)) {
        m_undo.makeRoom();
        auto before = cut ? std::make_unique<Column>(std::move(field.column)) : nullptr;
        m_undo.add(undo::FieldResized{&table, index, field.size, std::move(before)});
    }
    if (cut)
        field.column = std::move(*cut);
    field.size = wanted;
    tell(table, {.kind = ChangeKind::ResizeField, .table = &table, .index = index, .number = double(wanted)});
    return true;
}

void Database::addRecord(Table &table) {
    if (table.recordCount() >= limits::records)
        throw DatabaseError(u"A table holds at most %1 records."_s.arg(limits::records));
    const bool kept = m_undo.keeps(table);
    m_undo.makeRoom();
    table.appendRecord();
    if (kept)
        m_undo.add(undo::RecordAppended{&table});
    tell(table, {.kind = ChangeKind::AddRecord, .table = &table});
}

void Database::removeRecord(Table &table, std::size_t record) {
    if (m_undo.keeps(table)) {
        m_undo.makeRoom();
        m_undo.add(undo::RecordRemoved{&table, record, table.record(record)});
    }
    table.removeRecord(record);
    tell(table, {.kind = ChangeKind::RemoveRecord, .table = &table, .record = record});
}

void Database::addRecords(Table &table, std::size_t count) {
    if (count > limits::records - table.recordCount())
        throw DatabaseError(u"A table holds at most %1 records."_s.arg(limits::records));
    beginGroup();
    const UndoOnError undo([this] { undoGroup(); });
    for (; count > 0; --count)
        addRecord(table);
    endGroup();
}

void Database::dropRecordsWithoutFields() {
    if (m_listener)
        m_listener->groupBegan(); // many records are one change
    for (const auto &table : m_tables) {
        if (table->fieldCount() != 0)
            continue;
        for (std::size_t left = table->recordCount(); left > 0; --left)
            removeRecord(*table, left - 1);
    }
    if (m_listener)
        m_listener->groupEnded();
}

bool Database::setNumber(Table &table, std::size_t field, std::size_t record, double number) {
    Column &column = table.field(field).column;
    const double fitting = fittingNumber(column.type(), number);
    if (column.isText())
        return setText(table, field, record, numberText(fitting));
    if (column.holds(record, fitting))
        return false;
    m_undo.keepCell(table, field, record);
    column.set(record, fitting);
    tell(table, {.kind = ChangeKind::SetNumber, .table = &table, .index = field, .record = record, .number = fitting});
    return true;
}

bool Database::setText(Table &table, std::size_t field, std::size_t record, const QString &text) {
    Field &target = table.field(field);
    if (!target.column.isText())
        return setNumber(table, field, record, leadingNumber(text));
    const QString fitting = fittingText(text, static_cast<std::size_t>(target.size));
    if (target.column.holds(record, fitting))
        return false;
    m_undo.keepCell(table, field, record);
    target.column.set(record, fitting);
    tell(table, {.kind = ChangeKind::SetText, .table = &table, .index = field, .record = record, .text = fitting});
    return true;
}

bool Database::setBlock(Table &table, std::size_t field, std::size_t first, const ColumnBlock &block) {
    QString text;
    for (qsizetype i = 0; block.isText() && i < block.count(); ++i)
        if (!readUtf8(block.textBytes(i), text))
            throw DatabaseError(u"A text of a block is not in UTF-8."_s);
    beginGroup();
    const UndoOnError undo([this] { undoGroup(); });
    bool changed = false;
    for (qsizetype i = 0; i < block.count(); ++i)
        changed |= setValue(table, field, first + static_cast<std::size_t>(i), block, i);
    endGroup();
    return changed;
}

bool Database::setValue(Table &table, std::size_t field, std::size_t record, const ColumnBlock &block,
                        qsizetype index) {
    return block.isText() ? setText(table, field, record, block.text(index))
                          : setNumber(table, field, record, block.number(index));
}

void Database::beginGroup() {
    m_undo.begin();
    if (m_listener)
        m_listener->groupBegan();
}

void Database::endGroup() {
    m_undo.commit();
    if (m_listener)
        m_listener->groupEnded();
}

void Database::undoGroup() {
    m_undo.undo(m_tables);
    for (const auto &table : m_tables)
        table->touch();
    if (m_listener)
        m_listener->groupUndone();
}

} // namespace qir
