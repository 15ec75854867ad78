#include "qirtbase/model/UndoLog.h"

#include <QDateTime>

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

namespace qir {

namespace {

constexpr std::size_t alwaysKept = 4096; // small tables are not worth an image at the first change

} // namespace

void UndoLog::begin() {
    if (m_keepsSteps && m_groups.empty())
        prepareStep();
    m_groups.push_back({.start = m_entries.size(), .tables = {}, .latest = 0});
}

/// The outermost group becomes a step.
void UndoLog::prepareStep() {
    m_history.makeRoom();
    m_mark = {.kind = StepKind::Step, .name = {}, .time = QDateTime::currentMSecsSinceEpoch()};
    m_key.clear();
}

void UndoLog::mark(const StepMark &mark, const QString &key) {
    m_mark = mark;
    m_key = key;
}

void UndoLog::beginSingle() {
    begin();
    m_isSingle = true;
}

void UndoLog::commit() {
    if (m_groups.size() == 1) {
        if (m_keepsSteps)
            m_history.take(m_mark, m_key, m_entries);
        finish();
        return;
    }
    const Group inner = std::move(m_groups.back());
    m_groups.pop_back();
    // What the outer group covers whole it no longer logs, so entries of the inner one would not find the table as they
    // left it.
    const std::vector<Coverage> &outer = m_groups.back().tables;
    const auto isCovered = [&](const undo::Entry &entry) {
        const Table *table = undo::contentOf(entry);
        const auto found = std::ranges::find(outer, table, &Coverage::table);
        return table && found != outer.end() && found->whole;
    };
    const auto first = m_entries.begin() + static_cast<std::ptrdiff_t>(inner.start);
    m_entries.erase(std::remove_if(first, m_entries.end(), isCovered), m_entries.end());
    takeOver(inner);
}

/// What a group has kept of tables the one around it need not keep again.
void UndoLog::takeOver(const Group &inner) noexcept {
    try {
        for (const Coverage &kept : inner.tables) {
            Coverage &outer = coverage(*kept.table);
            const bool whole = outer.whole || kept.whole;
            outer = kept;
            outer.whole = whole;
        }
    } catch (const std::bad_alloc &) { // NOLINT(bugprone-empty-catch): it is kept again then
    }
}

/// After the outermost group.
void UndoLog::finish() {
    m_groups.pop_back();
    m_isSingle = false;
    constexpr std::size_t worthKeeping = 64; // for the next one
    if (m_entries.capacity() > worthKeeping)
        m_entries = std::vector<undo::Entry>(); // gives the memory back
    else
        m_entries.clear();
}

void UndoLog::undo(Tables &tables) {
    while (m_entries.size() > m_groups.back().start) {
        undo::apply(m_entries.back(), tables);
        m_entries.pop_back();
    }
    m_groups.back().tables.clear(); // nothing is kept of them any more
    if (m_groups.size() == 1)
        finish();
    else
        commit();
}

void UndoLog::abandon() {
    m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(m_groups.back().start), m_entries.end());
    m_groups.pop_back();
    m_isSingle = false;
}

void UndoLog::keepSteps(std::size_t budget) {
    if (!std::exchange(m_keepsSteps, true) && isOpen())
        prepareStep();
    m_history.setBudget(budget);
}

bool UndoLog::keeps(const Table &table) {
    return isOpen() && (m_isSingle || !coverage(table).whole);
}

void UndoLog::makeRoom() {
    if (isOpen() && m_entries.size() == m_entries.capacity())
        m_entries.reserve(std::max<std::size_t>(16, m_entries.size() * 2));
}

void UndoLog::add(undo::Entry entry) {
    if (isOpen())
        m_entries.push_back(std::move(entry));
}

void UndoLog::keepCell(Table &table, std::size_t field, std::size_t record) {
    if (!logs(table))
        return;
    undo::Entry entry = undo::CellChanged{&table, static_cast<std::uint32_t>(record), static_cast<std::uint16_t>(field),
                                          table.field(field).column.value(record)};
    count(table, entry);
    m_entries.push_back(std::move(entry));
}

bool UndoLog::logs(Table &table) {
    if (!isOpen() || m_isSingle)
        return isOpen();
    Coverage &kept = coverage(table);
    if (!kept.whole && outweighs(kept)) {
        m_entries.emplace_back(undo::TableImage{&table, std::make_unique<Table>(table)});
        kept.whole = true;
    }
    return !kept.whole;
}

/// What its changes take, against the table itself.
void UndoLog::count(const Table &table, const undo::Entry &entry) {
    if (!m_isSingle)
        coverage(table).bytes += undo::costOf(entry);
}

std::optional<undo::Entry> UndoLog::removal(Table &table, std::size_t record) {
    if (!logs(table))
        return std::nullopt;
    makeRoom();
    std::optional<undo::Entry> entry = undo::RecordRemoved{&table, record, table.record(record)};
    count(table, *entry);
    return entry;
}

void UndoLog::keepTable(Table &table) {
    if (!isOpen() || (!m_isSingle && coverage(table).whole))
        return;
    m_entries.emplace_back(undo::TableImage{&table, std::make_unique<Table>(table)});
    if (!m_isSingle)
        coverage(table).whole = true;
}

bool UndoLog::keepAsOrder(Table &table, const RecordOrder &order) {
    if (!isOpen() || m_isSingle)
        return false;
    undo::TableImage *image = nullptr;
    undo::Entry *kept = nullptr;
    for (auto entry = m_entries.begin() + static_cast<std::ptrdiff_t>(m_groups.back().start); entry != m_entries.end();
         ++entry) {
        if (undo::contentOf(*entry) != &table)
            continue;
        if (kept != nullptr)
            return false;
        kept = &*entry;
        image = std::get_if<undo::TableImage>(kept);
    }
    if (image == nullptr || !isReordered(table, *image->before, order))
        return false;
    Coverage &covered = coverage(table);
    *kept = undo::RecordsReordered{&table, inverse(order)};
    covered = {&table, 0, alwaysKept, false, false}; // what comes is kept by itself
    return true;
}

void UndoLog::coverNewTable(const Table &table) {
    if (isOpen() && !m_isSingle)
        coverage(table).whole = true;
}

bool UndoLog::outweighs(Coverage &kept) const {
    if (kept.bytes < kept.limit)
        return false;
    if (!kept.measured) {
        kept.limit += kept.table->memory() / 4;
        kept.measured = true;
    }
    return kept.bytes >= kept.limit;
}

UndoLog::Coverage &UndoLog::coverage(const Table &table) {
    Group &group = m_groups.back();
    if (group.latest < group.tables.size() && group.tables[group.latest].table == &table)
        return group.tables[group.latest];
    const auto found = std::ranges::find(group.tables, &table, &Coverage::table);
    group.latest = static_cast<std::size_t>(found - group.tables.begin());
    if (found != group.tables.end())
        return *found;
    Coverage begun{&table, 0, alwaysKept, false, false};
    if (m_groups.size() > 1) { // many small groups within a large one keep no more than that would
        const std::vector<Coverage> &outer = m_groups[m_groups.size() - 2].tables;
        if (const auto around = std::ranges::find(outer, &table, &Coverage::table); around != outer.end()) {
            begun = *around;
            begun.whole = false;
        }
    }
    group.tables.push_back(begun);
    return group.tables.back();
}

} // namespace qir
