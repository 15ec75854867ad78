// Groups of changes, the steps that they make, and the way back.

#include "qirtbase/Guarded.h"
#include "qirtbase/clsQirDatabase.h"

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {

// --------------------------------------------------------------------------------------------------- groups of changes

void clsQirDatabase::BeginChanges() {
    guarded([&] {
        requireUsable();
        m_groups.reserve(m_groups.size() + 1);
        m_database.beginGroup();
        m_groups.push_back({m_changed, m_changedAnyway, m_currentTable, m_currentRecord, false});
    });
}

void clsQirDatabase::EndChanges() {
    guarded([&] {
        if (m_groups.empty() || m_groups.back().isStep)
            raise(u"No group of changes has begun."_s);
        m_groups.back().failed ? undoGroup() : endGroup();
    });
}

void clsQirDatabase::CancelChanges() {
    guarded([&] {
        if (m_groups.empty() || m_groups.back().isStep)
            raise(u"No group of changes has begun."_s);
        undoGroup();
    });
}

void clsQirDatabase::endGroup() {
    m_database.endGroup();
    m_groups.pop_back();
    tellOfDroppedSteps();
}

void clsQirDatabase::undoGroup() {
    m_database.undoGroup();
    const Group group = m_groups.back();
    m_groups.pop_back();
    m_changed = group.changed;
    m_changedAnyway = group.changedAnyway;
    m_currentTable = group.currentTable;
    m_currentRecord = group.currentRecord;
}

// ------------------------------------------------------------------------------------------- steps and the way back

/// From now on, but for callers without a user.
void clsQirDatabase::keepSteps() {
    if (!m_leaveJournal)
        m_database.keepSteps(m_stepBudget);
}

void clsQirDatabase::BeginStep(const QString &name, const QString &key) {
    guarded([&] {
        requireUsable();
        m_groups.reserve(m_groups.size() + 1);
        if (m_groups.empty())
            keepSteps();
        m_database.beginStep(name, key);
        m_groups.push_back({m_changed, m_changedAnyway, m_currentTable, m_currentRecord, false, true});
    });
}

void clsQirDatabase::EndStep() {
    guarded([&] {
        if (m_groups.empty() || !m_groups.back().isStep)
            raise(u"No step has begun."_s);
        endGroup();
    });
}

void clsQirDatabase::Undo() {
    guarded([&] {
        if (StepsDone() == 0)
            raise(u"There is nothing to take back."_s);
        takeStep(true);
    });
}

void clsQirDatabase::Redo() {
    guarded([&] {
        if (StepsDone() == StepsCount())
            raise(u"There is nothing to make again."_s);
        takeStep(false);
    });
}

void clsQirDatabase::takeStep(bool undoes) {
    requireNoGroup("No step can be taken back or made again");
    const QString current = currentTableName();
    const std::optional<StepPlace> place = undoes ? m_database.undoStep() : m_database.redoStep();
    tablesReplaced(current);
    m_changedTable = place ? m_database.table(place->table).name().text : QString();
    m_changedRecord = place && place->record ? static_cast<int>(*place->record) + 1 : 0;
    m_changedField = place && place->field ? static_cast<int>(*place->field) + 1 : 0;
    const std::size_t done = m_database.history().done();
    countChangedTables(undoes ? done : done - 1, undoes ? done + 1 : done);
}

void clsQirDatabase::countChangedTables(std::size_t firstStep, std::size_t endStep) {
    m_changedTables =
        static_cast<int>(std::min(m_database.history().tablesOf(firstStep, endStep), m_database.tableCount()));
}

/// What is current may have moved or gone, and the state may be the one that is saved.
void clsQirDatabase::tablesReplaced(const QString &currentTable) {
    std::size_t index = 0;
    while (index < m_database.tableCount() && &m_database.table(index) != m_currentTable)
        ++index;
    if (index == m_database.tableCount())
        index = m_database.findTable(currentTable).value_or(index);
    m_currentTable = index < m_database.tableCount() ? &m_database.table(index) : nullptr;
    m_currentRecord = 0;
    m_changed = m_changedAnyway || m_database.history().state() != m_savedState;
}

QString clsQirDatabase::stepName(std::size_t step) const {
    const QString &name = m_database.history().step(step).name;
    return name.isEmpty() ? u"Change"_s : name;
}

QString clsQirDatabase::UndoName() const {
    const History &history = m_database.history();
    return history.done() > 0 ? stepName(history.done() - 1) : QString();
}

QString clsQirDatabase::RedoName() const {
    const History &history = m_database.history();
    return history.done() < history.count() ? stepName(history.done()) : QString();
}

QString clsQirDatabase::StepName(int step) {
    return guarded([&] { return stepName(stepIndex(step)); });
}

double clsQirDatabase::StepTime(int step) {
    return guarded([&] { return static_cast<double>(m_database.history().step(stepIndex(step)).time); });
}

void clsQirDatabase::GoToStep(int done) {
    guarded([&] {
        if (done != 0)
            stepIndex(done);
        const auto [first, end] = std::minmax({StepsDone(), done});
        m_changedTable.clear();
        m_changedRecord = m_changedField = m_changedTables = 0;
        while (StepsDone() > done)
            takeStep(true);
        while (StepsDone() < done)
            takeStep(false);
        countChangedTables(static_cast<std::size_t>(first), static_cast<std::size_t>(end));
    });
}

void clsQirDatabase::RevertToSaved(const QString &name) {
    guarded([&] {
        requireUsable();
        requireNoGroup("The database cannot go back to what is saved");
        LoadResult<QByteArray> body = m_file.readAgain();
        if (!body)
            raise(body.error().text);
        LoadResult<Database> saved = decodeBody(std::move(*body));
        if (!saved)
            raise(u"%1: %2"_s.arg(GetDatabaseFileName(), saved.error().text));
        const QString current = currentTableName();
        m_database.revertTo(std::move(*saved), name, m_savedState);
        tablesReplaced(current);
        m_changedTable = currentTableName();
        m_changedRecord = m_changedField = 0;
        m_changedTables = QIRTablesCount();
    });
}

/// Once, for the user would look for them.
void clsQirDatabase::tellOfDroppedSteps() {
    if (m_droppedTold || !m_groups.empty() || !StepsDropped())
        return;
    m_droppedTold = true;
    Q_EMIT Notice(u"%1: the first steps can no longer be taken back: the memory for steps, %2 MiB, is used up"_s.arg(
        GetDatabaseFileName(), QString::number(m_stepBudget >> 20)));
}

} // namespace qir
