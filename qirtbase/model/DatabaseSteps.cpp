#include "qirtbase/model/Database.h"

#include <QDateTime>

#include <algorithm>
#include <utility>

// Groups of changes, steps, and what brings a database back as it was.

namespace qir {

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

// ----------------------------------------------------------------------------------------------------------- the steps

void Database::beginStep(const QString &name, const QString &key) {
    if (m_undo.isOpen()) {
        beginGroup();
        return;
    }
    const StepKind kind = history().joins(key) ? StepKind::Joined : StepKind::Step;
    beginMarked({.kind = kind, .name = name, .time = QDateTime::currentMSecsSinceEpoch()}, key);
}

void Database::beginMarked(const StepMark &mark, const QString &key) {
    beginGroup();
    StepMark actual = mark;
    if (mark.kind == StepKind::Joined && history().done() == 0)
        actual.kind = StepKind::Step;
    m_undo.mark(actual, key);
    if (m_listener)
        m_listener->groupMarked(actual);
}

std::optional<StepPlace> Database::undoStep() {
    const Step &step = m_undo.history().undo(m_tables);
    if (m_listener && !m_listener->stepUndone())
        tellChangesOf(step, StepKind::Undone);
    return History::placeOf(step, m_tables);
}

std::optional<StepPlace> Database::redoStep() {
    const Step &step = m_undo.history().redo(m_tables);
    if (m_listener && !m_listener->stepRedone())
        tellChangesOf(step, StepKind::Step);
    return History::placeOf(step, m_tables);
}

/// What is there now, where a step has changed something.
void Database::tellChangesOf(const Step &step, StepKind kind) const {
    m_listener->groupBegan();
    m_listener->groupMarked({.kind = kind, .name = step.name, .time = step.time});
    const auto isOfList = [](const undo::Entry &entry) { return undo::contentOf(entry) == nullptr; };
    if (std::ranges::any_of(step.entries, isOfList)) {
        m_listener->replaced(nullptr);
        m_listener->groupEnded();
        return;
    }
    for (const undo::Entry &entry : step.entries)
        if (!std::holds_alternative<undo::CellChanged>(entry))
            m_listener->replaced(undo::contentOf(entry));
    for (const undo::Entry &entry : step.entries) {
        const auto *cell = std::get_if<undo::CellChanged>(&entry);
        if (!cell || cell->field >= cell->table->fieldCount() || cell->record >= cell->table->recordCount())
            continue; // of a table that was told whole
        const CellValue value = cell->table->field(cell->field).column.value(cell->record);
        Change change{
            .kind = ChangeKind::SetNumber, .table = cell->table, .index = cell->field, .record = cell->record};
        if (const auto *text = std::get_if<QString>(&value)) {
            change.kind = ChangeKind::SetText;
            change.text = *text;
        } else {
            change.number = std::get<double>(value);
        }
        tell(change);
    }
    m_listener->groupEnded();
}

void Database::revertTo(Database &&other, const QString &name, std::uint64_t state) {
    beginStep(name, {});
    try {
        replaceTables(std::move(other));
    } catch (...) {
        undoGroup();
        throw;
    }
    if (m_listener)
        m_listener->replaced(nullptr);
    m_undo.commit();
    m_undo.history().enter(state); // before the listener looks at it
    if (m_listener)
        m_listener->groupEnded();
}

void Database::replaceTable(std::size_t index, std::unique_ptr<Table> table) {
    m_undo.makeRoom();
    std::swap(*m_tables[index], *table);
    m_tables[index]->touch();
    m_undo.add(undo::TableImage{m_tables[index].get(), std::move(table)});
}

void Database::restore(undo::Entry entry) {
    const Table *content = undo::contentOf(entry);
    const bool kept = !content || m_undo.keeps(*content);
    m_undo.makeRoom();
    undo::apply(entry, m_tables);
    if (kept)
        m_undo.add(std::move(entry));
}

Database Database::copy() const {
    Database made;
    for (const auto &table : m_tables)
        made.append(std::make_unique<Table>(table->name(), table->fields(), table->recordCount()));
    made.m_foreignSections = m_foreignSections;
    return made;
}

void Database::replaceTables(Database &&other) {
    m_undo.makeRoom();
    std::swap(m_tables, other.m_tables);
    m_undo.add(undo::AllTables{std::move(other.m_tables)});
    m_foreignSections = std::move(other.m_foreignSections);
}

} // namespace qir
