#include "tests/model/ComponentModel.h"

#include "tests/model/Values.h"

#include <algorithm>

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

void ComponentModel::changed() {
    m_state.changed = true;
    ++m_state.edits;
}

/// A change outside any group is a step of its own.
template<class Change>
void ComponentModel::single(Change change) {
    const bool isAlone = m_groups.empty();
    if (isAlone)
        m_outermost = {m_state, {}, {}, false};
    change();
    if (isAlone)
        keepStep(m_outermost);
}

void ComponentModel::addTable(const QString &name) {
    single([&] {
        requireNewTable(name, -1);
        PlainTable table;
        table.id = m_nextId++;
        table.name = firstCharacters(name, longestName);
        table.addField({u"Field1"_s, 10, 50});
        table.addRecord();
        m_state.content.tables.push_back(table);
        changed();
    });
}

void ComponentModel::renameTable(int number, const QString &name) {
    single([&] {
        const int index = tableAt(number);
        requireNewTable(name, index);
        assign(m_state.content.table(index).name, name);
    });
}

void ComponentModel::removeTable(int number) {
    single([&] {
        const int index = tableAt(number);
        m_state.content.tables.erase(m_state.content.tables.begin() + index);
        if (m_state.current == index) {
            m_state.current = -1;
            m_state.record = 0;
        } else if (m_state.current > index) {
            --m_state.current;
        }
        changed();
    });
}

void ComponentModel::choose(const QString &name) {
    const PlainTable *table = m_state.content.find(name);
    require(table != nullptr);
    m_state.current = static_cast<int>(table - m_state.content.tables.data());
    m_state.record = 0;
}

void ComponentModel::addField(const QString &name, int type, double size) {
    single([&] {
        PlainTable &table = current();
        require(isFieldType(type));
        requireNewField(table, name, -1);
        table.addField({name, type, keptSize(type, size)});
        changed();
    });
}

void ComponentModel::renameField(int number, const QString &name) {
    single([&] {
        const int index = fieldAt(number);
        requireNewField(current(), name, index);
        assign(current().field(index).name, name);
    });
}

void ComponentModel::removeField(int number) {
    single([&] {
        current().removeField(fieldAt(number));
        changed();
    });
}

void ComponentModel::resizeField(int number, double size) {
    single([&] {
        if (current().resizeField(fieldAt(number), size))
            changed();
    });
}

void ComponentModel::addRecord() {
    single([&] {
        current().addRecord();
        changed();
    });
}

void ComponentModel::removeRecord(int number) {
    single([&] {
        PlainTable &table = current();
        require(number >= 1 && number <= table.recordCount());
        table.records.erase(table.records.begin() + number - 1);
        if (m_state.record == number)
            m_state.record = 0;
        else if (m_state.record > number)
            --m_state.record;
        changed();
    });
}

void ComponentModel::point(int number) {
    require(number >= 0 && number <= current().recordCount());
    m_state.record = number;
}

void ComponentModel::writeColumn(int number, int first, const QVariantList &values) {
    single([&] {
        const int index = fieldAt(number);
        PlainTable &table = current();
        require(first >= 1 && first <= table.recordCount() && values.size() <= table.recordCount() - first + 1);
        for (int i = 0; i < values.size(); ++i)
            if (table.store(first - 1 + i, index, table.field(index).from(values.at(i))))
                changed();
    });
}

void ComponentModel::appendRecords(int count) {
    single([&] {
        PlainTable &table = current();
        require(count >= 0);
        for (int i = 0; i < count; ++i)
            table.addRecord();
        if (count > 0)
            changed();
    });
}

void ComponentModel::write(int number, const QVariant &value) {
    single([&] {
        const int index = fieldAt(number);
        require(m_state.record > 0);
        PlainTable &table = current();
        if (table.store(m_state.record - 1, index, table.field(index).from(value)))
            changed();
    });
}

void ComponentModel::openGroup(bool isStep, const QString &name, const QString &key) {
    if (m_groups.empty()) {
        const bool isLast = m_done > 0 && m_done == static_cast<int>(m_steps.size());
        m_outermost = {m_state, name, key, isLast && !key.isEmpty() && m_steps.back().key == key};
    }
    m_groups.push_back(m_state);
    m_groups.back().failed = false;
    m_groups.back().isStep = isStep;
}

void ComponentModel::closeGroup() {
    m_groups.pop_back();
    if (m_groups.empty())
        keepStep(m_outermost);
}

void ComponentModel::begin() {
    openGroup(false, {}, {});
}

void ComponentModel::end() {
    require(!m_groups.empty() && !m_groups.back().isStep);
    if (m_groups.back().failed)
        cancel();
    else
        closeGroup();
}

void ComponentModel::cancel() {
    require(!m_groups.empty() && !m_groups.back().isStep);
    m_state = m_groups.back();
    m_groups.pop_back();
}

// ----------------------------------------------------------------------------------------------------------- the steps

void ComponentModel::beginStep(const QString &name, const QString &key) {
    openGroup(true, name, key);
}

void ComponentModel::endStep() {
    require(!m_groups.empty() && m_groups.back().isStep);
    closeGroup();
}

void ComponentModel::keepStep(const Outermost &group) {
    if (m_state.edits == group.before.edits)
        return;
    dropUndone();
    const int before = m_number;
    m_number = ++m_lastNumber;
    if (group.joins) {
        m_steps.back().after = m_state.content;
        m_steps.back().numberAfter = m_number;
        return;
    }
    m_steps.push_back({group.name, group.key, group.before.content, m_state.content, before, m_number});
    ++m_done;
    ++m_knownDone;
}

void ComponentModel::dropUndone() {
    m_steps.resize(static_cast<std::size_t>(m_done));
    m_knownUndone = 0;
}

void ComponentModel::seal() {
    if (m_done > 0)
        m_steps[static_cast<std::size_t>(m_done) - 1].key.clear();
}

/// Which table is current stays, by itself or else by its name.
void ComponentModel::goTo(const PlainDatabase &content, int number) {
    const bool hasCurrent = m_state.current >= 0;
    const int id = hasCurrent ? m_state.content.table(m_state.current).id : 0;
    const QString name = hasCurrent ? m_state.content.table(m_state.current).name : QString();
    m_state.content = content;
    m_number = number;
    const PlainTable *table = hasCurrent ? m_state.content.byId(id) : nullptr;
    if (hasCurrent && !table)
        table = m_state.content.find(name);
    m_state.current = table ? static_cast<int>(table - m_state.content.tables.data()) : -1;
    m_state.record = 0;
    m_state.changed = m_hasNewPassword || m_number != m_savedNumber;
    seal();
}

void ComponentModel::undo() {
    require(m_groups.empty() && m_done > 0);
    seal();
    const Step &step = m_steps[static_cast<std::size_t>(--m_done)];
    m_knownDone = std::max(m_knownDone - 1, 0); // else the journal holds what undid it, and no step before
    ++m_knownUndone;
    goTo(step.before, step.numberBefore);
}

void ComponentModel::redo() {
    require(m_groups.empty() && m_done < static_cast<int>(m_steps.size()));
    const Step &step = m_steps[static_cast<std::size_t>(m_done++)];
    ++m_knownDone;
    m_knownUndone = std::max(m_knownUndone - 1, 0);
    goTo(step.after, step.numberAfter);
}

void ComponentModel::goTo(int done) {
    require(done >= 0 && done <= static_cast<int>(m_steps.size()));
    require(m_groups.empty() || done == m_done);
    while (m_done > done)
        undo();
    while (m_done < done)
        redo();
}

QString ComponentModel::undoName() const {
    if (m_done == 0)
        return {};
    const QString &name = m_steps[static_cast<std::size_t>(m_done) - 1].name;
    return name.isEmpty() ? u"Change"_s : name;
}

QString ComponentModel::redoName() const {
    if (m_done == static_cast<int>(m_steps.size()))
        return {};
    const QString &name = m_steps[static_cast<std::size_t>(m_done)].name;
    return name.isEmpty() ? u"Change"_s : name;
}

void ComponentModel::save() {
    require(m_groups.empty());
    if (!m_state.changed)
        return;
    const Outermost group{m_state, {}, {}, m_done > 0};
    for (PlainTable &table : m_state.content.tables) {
        if (table.fields.empty() && !table.records.empty()) {
            table.records.clear();
            changed();
        }
    }
    if (m_state.edits != group.before.edits)
        m_steps.resize(static_cast<std::size_t>(m_done)); // what was undone goes first: the last step is joined
    keepStep(group);
    if (m_state.current >= 0 && m_state.record > current().recordCount())
        m_state.record = 0;
    m_state.changed = false;
    m_hasNewPassword = false;
    m_saved = m_state.content;
    m_savedNumber = m_number;
    m_knownDone = m_done;
    m_knownUndone = static_cast<int>(m_steps.size()) - m_done;
    seal();
}

void ComponentModel::recover() {
    while (!m_groups.empty()) {
        m_state = m_groups.back();
        m_groups.pop_back();
    }
    m_steps.resize(static_cast<std::size_t>(m_done + m_knownUndone));
    m_steps.erase(m_steps.begin(), m_steps.begin() + m_done - m_knownDone);
    m_done = m_knownDone;
    for (Step &step : m_steps)
        step.key.clear();
    m_state.current = -1;
    m_state.record = 0;
    m_state.changed = m_number != m_savedNumber;
}

void ComponentModel::revert(const QString &name) {
    require(m_groups.empty());
    const Outermost group{m_state, name, {}, false};
    PlainDatabase saved = m_saved;
    for (PlainTable &table : saved.tables)
        table.id = m_nextId++; // they are others
    ++m_state.edits;
    const PlainTable *table = m_state.current >= 0 ? saved.find(current().name) : nullptr;
    m_state.current = table ? static_cast<int>(table - saved.tables.data()) : -1;
    m_state.record = 0;
    m_state.content = std::move(saved);
    keepStep(group);
    m_steps.back().numberAfter = m_number = m_savedNumber;
    m_state.changed = m_hasNewPassword;
}

void ComponentModel::newPassword(const QString &current, const QString &replacement) {
    require(m_groups.empty() && current == m_password);
    if (current == replacement)
        return;
    m_password = replacement;
    m_hasNewPassword = true;
    m_state.changed = true;
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
        changed();
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
