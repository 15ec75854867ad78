#include "qirtbase/model/Database.h"

#include "base/Collation.h"
#include "base/LeadingNumber.h"
#include "base/NumberText.h"
#include "base/UndoOnError.h"
#include "base/columns/ColumnBuilder.h"
#include "base/columns/UnicodeText.h"
#include "qirtbase/model/DatabaseError.h"
#include "qirtbase/model/ModelLimits.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

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

/// Whether every number is one that fits as it stands.
bool allFit(const ColumnBlock &block) {
    if (block.type() == ColumnType::Bool)
        return std::ranges::none_of(block.values(), [](char flag) { return static_cast<unsigned char>(flag) > 1; });
    if (block.type() != ColumnType::Double && block.type() != ColumnType::Date)
        return true; // whole numbers
    bool finite = true;
    for (qsizetype i = 0; i < block.count(); ++i)
        finite &= std::isfinite(block.number(i));
    return finite;
}

ColumnBlock fittingNumbers(const ColumnBlock &block) {
    if (allFit(block))
        return block;
    ColumnBuilder builder(block.type(), block.count());
    for (qsizetype i = 0; i < block.count(); ++i)
        builder.add(block.number(i));
    return builder.take();
}

/// Texts cut at `size` code points, in the same bytes.
ColumnBlock fittingTexts(const ColumnBlock &block, std::size_t size) {
    QByteArray places = block.values();
    const bool ascii = isAscii(block.bytes());
    for (qsizetype i = 0; i < block.count(); ++i) {
        const QByteArrayView text = block.textBytes(i);
        if (!ascii && !utf8CodePoints(text))
            throw DatabaseError(u"A text of a block is not in UTF-8."_s);
        const std::size_t fitting = fittingUtf8Size(text, size);
        if (fitting == static_cast<std::size_t>(text.size()))
            continue;
        char *at = places.data() + (i << valueShift(ColumnType::Text));
        putPlace(at, {placeAt(at).start, static_cast<std::uint32_t>(fitting)});
    }
    return ColumnBlock::ofTexts(places, block.bytes());
}

/// The next part of a block, from `first` on, of so little that it may be told as one change.
ColumnBlock partToTell(const ColumnBlock &block, qsizetype first) {
    constexpr qsizetype most = qsizetype{1} << 20; // bytes
    if (!block.isText())
        return block.sliced(first, std::min(block.count() - first, most >> valueShift(block.type())));
    qsizetype bytes = 0;
    qsizetype end = first;
    while (end < block.count() && (end == first || bytes < most)) {
        bytes += block.textBytes(end).size() + static_cast<qsizetype>(sizeof(std::uint32_t));
        ++end;
    }
    return block.sliced(first, end - first);
}

} // namespace

class Database::SingleChange {
public:
    explicit SingleChange(UndoLog &log)
        : m_log(log)
        , m_open(log.keepsSteps() && !log.isOpen()) {
        if (m_open)
            m_log.beginSingle();
    }
    ~SingleChange() {
        if (m_open)
            m_log.abandon();
    }
    SingleChange(const SingleChange &) = delete;
    SingleChange &operator=(const SingleChange &) = delete;

    void made() {
        if (std::exchange(m_open, false))
            m_log.commit();
    }

private:
    UndoLog &m_log;
    bool m_open;
};

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
    table->appendRecords(1);
    m_tables.reserve(m_tables.size() + 1);
    SingleChange single(m_undo);
    m_undo.makeRoom();
    m_undo.coverNewTable(*table);
    m_tables.push_back(std::move(table));
    m_undo.add(undo::TableInserted{m_tables.size() - 1});
    single.made();
    tell({.kind = ChangeKind::AddTable, .text = m_tables.back()->name().text});
}

bool Database::renameTable(std::size_t index, const QString &name) {
    Name checked = Name::checked(name);
    Table &table = *m_tables[index];
    if (checked.text == table.name().text)
        return false;
    if (findKey(checked.key).value_or(index) != index)
        throw DatabaseError(u"A table \"%1\" already exists."_s.arg(checked.text));
    SingleChange single(m_undo);
    m_undo.add(undo::TableRenamed{&table, table.name()});
    table.rename(std::move(checked));
    single.made();
    tell({.kind = ChangeKind::RenameTable, .index = index, .text = table.name().text});
    return true;
}

void Database::removeTable(std::size_t index) {
    SingleChange single(m_undo);
    m_undo.makeRoom();
    const auto position = m_tables.begin() + static_cast<std::ptrdiff_t>(index);
    std::unique_ptr<Table> table = std::move(*position);
    m_tables.erase(position);
    m_undo.add(undo::TableRemoved{index, std::move(table)});
    single.made();
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
    SingleChange single(m_undo);
    const bool kept = m_undo.keeps(table);
    m_undo.makeRoom();
    table.insertField(table.fieldCount(), newField(checked, *type, size, table.recordCount()));
    if (kept)
        m_undo.add(undo::FieldInserted{&table, table.fieldCount() - 1});
    single.made();
    const Field &added = table.field(table.fieldCount() - 1);
    tell(table, {.kind = ChangeKind::AddField,
                 .table = &table,
                 .type = typeCode,
                 .number = static_cast<double>(added.size),
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
    SingleChange single(m_undo);
    if (m_undo.keeps(table))
        m_undo.add(undo::FieldRenamed{&table, index, field.name});
    field.name = std::move(renamed);
    single.made();
    tell(table, {.kind = ChangeKind::RenameField, .table = &table, .index = index, .text = checked.text});
    return true;
}

void Database::removeField(Table &table, std::size_t index) {
    SingleChange single(m_undo);
    if (m_undo.keeps(table)) {
        m_undo.makeRoom();
        auto removed = std::make_unique<Field>(Field{{}, 0, Column(ColumnType::Bool)});
        *removed = table.takeField(index);
        m_undo.add(undo::FieldRemoved{&table, index, std::move(removed)});
    } else {
        table.takeField(index);
    }
    single.made();
    tell(table, {.kind = ChangeKind::RemoveField, .table = &table, .index = index});
}

bool Database::resizeField(Table &table, std::size_t index, double size) {
    Field &field = table.field(index);
    if (field.type() != ColumnType::Text || fittingSize(size) == field.size)
        return false;
    const int wanted = fittingSize(size);
    std::optional<Column> cut;
    if (wanted < field.size)
        cut = field.column.cut(static_cast<std::size_t>(wanted));
    SingleChange single(m_undo);
    if (m_undo.keeps(table)) {
        m_undo.makeRoom();
        auto before = cut ? std::make_unique<Column>(std::move(field.column)) : nullptr;
        m_undo.add(undo::FieldResized{&table, index, field.size, std::move(before)});
    }
    if (cut)
        field.column = std::move(*cut);
    field.size = wanted;
    single.made();
    tell(table,
         {.kind = ChangeKind::ResizeField, .table = &table, .index = index, .number = static_cast<double>(wanted)});
    return true;
}

void Database::addRecord(Table &table) {
    addRecords(table, 1);
}

void Database::addRecords(Table &table, std::size_t count) {
    if (count > limits::records - std::min(table.recordCount(), limits::records))
        throw DatabaseError(u"A table holds at most %1 records."_s.arg(limits::records));
    SingleChange single(m_undo);
    const bool kept = m_undo.keeps(table);
    m_undo.makeRoom();
    table.appendRecords(count);
    if (kept)
        m_undo.add(undo::RecordsAppended{&table, count});
    single.made();
    if (count == 1)
        tell(table, {.kind = ChangeKind::AddRecord, .table = &table});
    else
        tell(table, {.kind = ChangeKind::AddRecords, .table = &table, .record = count});
}

void Database::removeRecord(Table &table, std::size_t record) {
    SingleChange single(m_undo);
    std::optional<undo::Entry> removal = m_undo.removal(table, record);
    table.removeRecord(record);
    if (removal)
        m_undo.add(std::move(*removal));
    single.made();
    tell(table, {.kind = ChangeKind::RemoveRecord, .table = &table, .record = record});
}

void Database::dropRecordsWithoutFields() {
    const auto isDropped = [](const auto &table) { return table->fieldCount() == 0 && table->recordCount() != 0; };
    if (std::ranges::none_of(m_tables, isDropped))
        return;
    beginMarked({.kind = StepKind::Joined, .name = {}, .time = 0}); // many records are one change
    try {
        for (const auto &table : m_tables)
            if (isDropped(table))
                m_undo.keepTable(*table);
    } catch (const std::bad_alloc &) {
        undoGroup();
        throw;
    }
    for (const auto &table : m_tables) {
        if (!isDropped(table))
            continue;
        table->dropRecords(table->recordCount());
        table->touch();
        if (m_listener)
            m_listener->replaced(table.get());
    }
    endGroup();
}

bool Database::setNumber(Table &table, std::size_t field, std::size_t record, double number) {
    Column &column = table.field(field).column;
    const double fitting = fittingNumber(column.type(), number);
    if (column.isText())
        return setText(table, field, record, numberText(fitting));
    if (column.holds(record, fitting))
        return false;
    SingleChange single(m_undo);
    m_undo.keepCell(table, field, record);
    column.set(record, fitting);
    single.made();
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
    SingleChange single(m_undo);
    m_undo.keepCell(table, field, record);
    target.column.set(record, fitting);
    single.made();
    tell(table, {.kind = ChangeKind::SetText, .table = &table, .index = field, .record = record, .text = fitting});
    return true;
}

bool Database::setBlock(Table &table, std::size_t field, std::size_t first, const ColumnBlock &block) {
    Field &target = table.field(field);
    const ColumnBlock fitting =
        block.isText() ? fittingTexts(block, static_cast<std::size_t>(target.size)) : fittingNumbers(block);
    if (target.column.holds(first, fitting))
        return false;
    SingleChange single(m_undo);
    constexpr qsizetype few = 64;
    if (fitting.count() > few)
        m_undo.keepTable(table);
    else
        for (std::size_t i = 0; i < static_cast<std::size_t>(fitting.count()); ++i)
            m_undo.keepCell(table, field, first + i);
    target.column.setBlock(first, fitting);
    single.made();
    tellBlock(table, field, first, fitting);
    return true;
}

/// A block that is too large for one change is told as several, which belong together.
void Database::tellBlock(Table &table, std::size_t field, std::size_t first, const ColumnBlock &block) const {
    table.touch();
    if (!m_listener)
        return;
    m_listener->groupBegan();
    for (qsizetype done = 0; done < block.count();) {
        const ColumnBlock part = partToTell(block, done);
        m_listener->changed({.kind = ChangeKind::SetBlock,
                             .table = &table,
                             .index = field,
                             .record = first + static_cast<std::size_t>(done),
                             .block = &part});
        done += part.count();
    }
    m_listener->groupEnded();
}

} // namespace qir
