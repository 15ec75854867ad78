#include "qirtbase/model/History.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <set>
#include <utility>

namespace qir {

namespace {

std::size_t costOf(const Step &step) {
    std::size_t bytes = sizeof step + static_cast<std::size_t>(step.name.size()) * sizeof(QChar);
    for (const undo::Entry &entry : step.entries)
        bytes += undo::costOf(entry);
    return bytes;
}

/// The entries in no more memory than they need, where there is some to be had.
std::vector<undo::Entry> packed(std::vector<undo::Entry> &entries) noexcept {
    try {
        if (entries.capacity() > entries.size() + entries.size() / 2) {
            std::vector<undo::Entry> exact(std::make_move_iterator(entries.begin()),
                                           std::make_move_iterator(entries.end()));
            entries.clear();
            return exact;
        }
    } catch (const std::bad_alloc &) { // NOLINT(bugprone-empty-catch): they stay in the memory they have
    }
    return std::exchange(entries, {});
}

/// Whether the only entry of `later` keeps a cell that the last one of `earlier` has an older value of.
bool isSameCell(const std::vector<undo::Entry> &earlier, const std::vector<undo::Entry> &later) {
    if (later.size() != 1 || earlier.empty())
        return false;
    const auto *first = std::get_if<undo::CellChanged>(&earlier.back());
    const auto *second = std::get_if<undo::CellChanged>(&later.front());
    return first && second && first->table == second->table && first->record == second->record &&
           first->field == second->field;
}

/// Tells where in its table an entry has changed something; what is not there any more is left out.
class PlaceFinder {
public:
    explicit PlaceFinder(StepPlace &place)
        : m_place(place) {}

    void operator()(const undo::CellChanged &entry) const {
        m_place.record = entry.record;
        m_place.field = entry.field;
    }
    void operator()(const undo::RecordsAppended &entry) const {
        m_place.record = entry.table->recordCount() - std::min(entry.count, entry.table->recordCount());
    }
    void operator()(const undo::RecordInserted &entry) const { m_place.record = entry.record; }
    void operator()(const undo::FieldInserted &entry) const { m_place.field = entry.index; }
    void operator()(const undo::FieldRenamed &entry) const { m_place.field = entry.index; }
    void operator()(const undo::FieldResized &entry) const { m_place.field = entry.index; }
    template<class Entry>
    void operator()(const Entry & /*entry*/) const {}

private:
    StepPlace &m_place;
};

} // namespace

void History::setBudget(std::size_t bytes) {
    m_budget = bytes;
    keepWithinBudget();
}

void History::enter(std::uint64_t state, StepKind kind) {
    if (kind == StepKind::Undone && m_done < m_steps.size())
        m_steps[m_done]->before = m_state = state;
    else if (kind != StepKind::Undone && m_done > 0)
        m_steps[m_done - 1]->after = m_state = state;
}

void History::seal() {
    if (m_done > 0)
        m_steps[m_done - 1]->key.clear();
}

bool History::joins(const QString &key) const {
    return !key.isEmpty() && m_done > 0 && m_done == m_steps.size() && m_steps.back()->key == key;
}

void History::makeRoom() {
    if (!m_spare)
        m_spare = std::make_unique<Step>();
    if (m_steps.size() == m_steps.capacity())
        m_steps.reserve(std::max<std::size_t>(16, m_steps.size() * 2));
}

void History::take(const StepMark &mark, const QString &key, std::vector<undo::Entry> &entries) noexcept {
    if (entries.empty() && !m_takesEmpty)
        return;
    ++m_taken;
    switch (mark.kind) {
    case StepKind::Step:
        addStep(mark, key, entries);
        break;
    case StepKind::Joined:
        dropUndone();
        if (m_done > 0)
            join(entries);
        else
            addStep(mark, key, entries);
        break;
    case StepKind::Undone:
        takeUndone(mark, entries);
        break;
    }
    keepWithinBudget();
}

void History::addStep(const StepMark &mark, const QString &key, std::vector<undo::Entry> &entries) {
    dropUndone();
    m_spare->name = mark.name;
    m_spare->key = key;
    m_spare->time = mark.time;
    m_spare->before = m_state;
    m_spare->after = m_state = ++m_lastState;
    m_steps.push_back(std::move(m_spare));
    setEntries(*m_steps.back(), entries);
    ++m_done;
}

void History::join(std::vector<undo::Entry> &entries) {
    Step &step = *m_steps.back();
    step.after = m_state = ++m_lastState;
    if (isSameCell(step.entries, entries)) {
        entries.clear(); // the value before the first one is there
        return;
    }
    m_bytes -= step.bytes;
    try {
        step.entries.reserve(step.entries.size() + entries.size());
        step.entries.insert(step.entries.end(), std::make_move_iterator(entries.begin()),
                            std::make_move_iterator(entries.end()));
        entries.clear();
        step.bytes = costOf(step);
        m_bytes += step.bytes;
    } catch (const std::bad_alloc &) {
        forget(); // what cannot be taken back whole is not taken back in part
        entries.clear();
    }
}

/// A step that is not among these was undone by changes: what takes them back makes it again. Those that are done lead
/// to where it was, and are of no use any more.
void History::takeUndone(const StepMark &mark, std::vector<undo::Entry> &entries) {
    for (std::size_t step = 0; step < m_done; ++step)
        m_bytes -= m_steps[step]->bytes;
    m_steps.erase(m_steps.begin(), m_steps.begin() + static_cast<std::ptrdiff_t>(m_done));
    m_dropped = m_dropped || m_done > 0;
    m_done = 0;
    m_spare->name = mark.name;
    m_spare->key.clear();
    m_spare->time = mark.time;
    m_spare->after = m_state;
    m_spare->before = m_state = ++m_lastState;
    m_steps.insert(m_steps.begin(), std::move(m_spare));
    std::ranges::reverse(entries);
    setEntries(*m_steps.front(), entries);
}

void History::setEntries(Step &step, std::vector<undo::Entry> &entries) {
    m_bytes -= step.bytes;
    step.entries = packed(entries);
    step.bytes = costOf(step);
    m_bytes += step.bytes;
}

void History::dropUndone() {
    while (m_steps.size() > m_done) {
        m_bytes -= m_steps.back()->bytes;
        m_steps.pop_back(); // the last first: what it tells of may live in those before
    }
}

/// Drops more than it must, so that it is not asked at every change.
void History::keepWithinBudget() {
    if (m_bytes <= m_budget)
        return;
    std::size_t dropped = 0;
    while (dropped + 1 < m_done && m_bytes > m_budget - m_budget / 8)
        m_bytes -= m_steps[dropped++]->bytes;
    m_steps.erase(m_steps.begin(), m_steps.begin() + static_cast<std::ptrdiff_t>(dropped));
    m_done -= dropped;
    m_dropped = m_dropped || dropped > 0;
}

void History::applyAll(std::vector<undo::Entry> &entries, undo::Tables &tables, bool backwards) {
    const std::size_t count = entries.size();
    const auto at = [&](std::size_t n) -> undo::Entry & { return entries[backwards ? count - 1 - n : n]; };
    std::size_t applied = 0;
    try {
        for (; applied < count; ++applied)
            undo::apply(at(applied), tables);
        for (const undo::Entry &entry : entries)
            if (Table *table = undo::contentOf(entry))
                table->touch();
    } catch (...) {
        try {
            while (applied > 0)
                undo::apply(at(--applied), tables);
        } catch (...) {
            forget();
        }
        throw;
    }
}

const Step &History::undo(undo::Tables &tables) {
    seal();
    Step &step = *m_steps[m_done - 1];
    applyAll(step.entries, tables, true);
    --m_done;
    m_state = step.before;
    seal();
    return step;
}

const Step &History::redo(undo::Tables &tables) {
    Step &step = *m_steps[m_done];
    applyAll(step.entries, tables, false);
    ++m_done;
    m_state = step.after;
    seal();
    return step;
}

void History::forget() {
    m_steps.clear();
    m_done = 0;
    m_bytes = 0;
    m_state = ++m_lastState;
    m_dropped = true;
}

std::size_t History::tablesOf(std::size_t first, std::size_t end) const {
    std::set<const Table *> tables;
    std::size_t listed = 0;
    for (std::size_t step = first; step < end; ++step) {
        for (const undo::Entry &entry : m_steps[step]->entries) {
            if (std::holds_alternative<undo::AllTables>(entry))
                return SIZE_MAX;
            if (const Table *table = undo::contentOf(entry))
                tables.insert(table);
            else
                ++listed;
        }
    }
    return tables.size() + listed;
}

std::optional<StepPlace> History::placeOf(const Step &step, const undo::Tables &tables) {
    const auto indexOf = [&](const Table *table) -> std::optional<std::size_t> {
        const auto found = std::ranges::find_if(tables, [&](const auto &held) { return held.get() == table; });
        if (!table || found == tables.end())
            return std::nullopt;
        return static_cast<std::size_t>(found - tables.begin());
    };
    for (const undo::Entry &entry : step.entries) {
        const auto *renamed = std::get_if<undo::TableRenamed>(&entry);
        const auto *inserted = std::get_if<undo::TableInserted>(&entry);
        const auto table =
            inserted ? std::optional(inserted->index) : indexOf(renamed ? renamed->table : undo::contentOf(entry));
        if (!table || *table >= tables.size())
            continue;
        StepPlace place{.table = *table, .record = {}, .field = {}};
        std::visit(PlaceFinder(place), entry);
        const Table &content = *tables[*table];
        if (place.record && *place.record >= content.recordCount())
            place.record.reset();
        if (place.field && *place.field >= content.fieldCount())
            place.field.reset();
        return place;
    }
    return std::nullopt;
}

} // namespace qir
