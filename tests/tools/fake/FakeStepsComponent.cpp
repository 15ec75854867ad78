#include "tests/tools/fake/FakeStepsComponent.h"

#include <QDateTime>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

void FakeStepsComponent::beforeCall() const {
    if (m_groups.isEmpty() && m_openSteps.isEmpty())
        keepStep(u"Change"_s, {});
    if (!m_content.changed) {
        m_saved = m_content.database.tables;
        if (m_done > 0)
            m_steps[m_done - 1].key.clear();
    }
}

void FakeStepsComponent::keepStep(const QString &name, const QString &key) const {
    const Tables &now = m_content.database.tables;
    if (now == m_known)
        return;
    const bool joins = !key.isEmpty() && m_done > 0 && m_done == m_steps.size() && m_steps.last().key == key;
    m_steps.resize(m_done);
    if (joins)
        m_steps.last().after = now;
    else
        m_steps += {name, key, QDateTime::currentMSecsSinceEpoch(), m_known, now};
    m_done = m_steps.size();
    m_known = now;
}

void FakeStepsComponent::BeginStep(const QString &name, const QString &key) {
    called("BeginStep", {name, key});
    if (m_openSteps.isEmpty()) {
        m_name = name;
        m_key = key;
    }
    m_openSteps += m_groups.size();
}

void FakeStepsComponent::EndStep() {
    called("EndStep");
    if (m_openSteps.isEmpty() || m_openSteps.last() != m_groups.size())
        raise(u"No step is open."_s);
    m_openSteps.removeLast();
    if (m_openSteps.isEmpty() && m_groups.isEmpty())
        keepStep(m_name, m_key);
}

void FakeStepsComponent::requireNoGroup() const {
    if (!m_groups.isEmpty() || !m_openSteps.isEmpty())
        raise(u"A group or step is open."_s);
}

/// Other tables, at a step's end or beginning.
void FakeStepsComponent::goTo(const Tables &tables) {
    const QString current = m_content.table < 0 ? QString() : m_content.database.tables.at(m_content.table).key;
    const Tables before = std::exchange(m_content.database.tables, tables);
    m_known = tables;
    m_content.table = -1;
    m_place = {};
    m_place.tables = static_cast<int>(std::max<qsizetype>(before.size() - tables.size(), 0)); // have gone
    for (qsizetype t = 0; t < tables.size(); ++t) {
        if (!current.isEmpty() && tables.at(t).key == current)
            m_content.table = static_cast<int>(t);
        if (t >= before.size() || !(tables.at(t) == before.at(t))) {
            ++m_place.tables;
            if (m_place.table.isEmpty())
                m_place.table = tables.at(t).name;
        }
    }
    m_content.record = 0;
    m_content.changed = tables != m_saved;
    if (m_done > 0)
        m_steps[m_done - 1].key.clear();
}

void FakeStepsComponent::Undo() {
    called("Undo");
    requireNoGroup();
    if (m_done == 0)
        raise(u"There is nothing to undo."_s);
    --m_done;
    goTo(m_steps.at(m_done).before);
}

void FakeStepsComponent::Redo() {
    called("Redo");
    requireNoGroup();
    if (m_done == m_steps.size())
        raise(u"There is nothing to make again."_s);
    ++m_done;
    goTo(m_steps.at(m_done - 1).after);
}

QString FakeStepsComponent::UndoName() const {
    called("UndoName");
    return m_done > 0 ? m_steps.at(m_done - 1).name : QString();
}

QString FakeStepsComponent::RedoName() const {
    called("RedoName");
    return m_done < m_steps.size() ? m_steps.at(m_done).name : QString();
}

int FakeStepsComponent::StepsCount() const {
    called("StepsCount");
    return static_cast<int>(m_steps.size());
}

int FakeStepsComponent::StepsDone() const {
    called("StepsDone");
    return static_cast<int>(m_done);
}

QString FakeStepsComponent::StepName(int step) const {
    called("StepName", {step});
    return m_steps.at(checkedIndex(step, m_steps.size(), "step")).name;
}

double FakeStepsComponent::StepTime(int step) const {
    called("StepTime", {step});
    return static_cast<double>(m_steps.at(checkedIndex(step, m_steps.size(), "step")).time);
}

bool FakeStepsComponent::StepsDropped() const {
    called("StepsDropped");
    return false;
}

void FakeStepsComponent::GoToStep(int done) {
    called("GoToStep", {done});
    if (done != 0)
        checkedIndex(done, m_steps.size(), "step");
    m_place = {};
    if (done == m_done)
        return;
    requireNoGroup();
    const Tables tables = done > m_done ? m_steps.at(done - 1).after : m_steps.at(done).before;
    m_done = done;
    goTo(tables);
}

QString FakeStepsComponent::ChangedTable() const {
    called("ChangedTable");
    return m_place.table;
}

int FakeStepsComponent::ChangedRecord() const {
    called("ChangedRecord");
    return m_place.record;
}

int FakeStepsComponent::ChangedField() const {
    called("ChangedField");
    return m_place.field;
}

int FakeStepsComponent::ChangedTables() const {
    called("ChangedTables");
    return m_place.tables;
}

void FakeStepsComponent::RevertToSaved(const QString &name) {
    called("RevertToSaved", {name});
    requireNoGroup();
    const Tables saved = m_saved;
    m_steps.resize(m_done);
    m_steps += {name, {}, QDateTime::currentMSecsSinceEpoch(), m_known, saved};
    m_done = m_steps.size();
    goTo(saved);
}

} // namespace qir
