#include "tests/window/model/ModelHistory.h"

namespace qir::test {

using namespace Qt::StringLiterals;

void ModelHistory::begin(const PlainDatabase &content, bool changed) {
    m_states = {content};
    m_numbers = {++m_lastNumber};
    m_done = 0;
    m_saved = changed ? -1 : m_lastNumber;
}

QString ModelHistory::follow(const PlainDatabase &content, int done, int count, bool joins, int most) {
    const auto &now = at(m_done);
    const bool isNew = now && !(*now == content);
    if (done == m_done && count == this->count()) {
        if (isNew && !joins)
            return u"what has changed is no step; "_s;
        if (isNew) {
            m_states[static_cast<std::size_t>(done)] = content;
            m_numbers[static_cast<std::size_t>(done)] = ++m_lastNumber;
        }
        return {};
    }
    if (done != count || done <= m_done - (joins ? 1 : 0) || done > m_done + most)
        return u"a command led from %1 to %2 steps of %3; "_s.arg(m_done).arg(done).arg(count);
    m_states.resize(static_cast<std::size_t>(m_done) + 1);
    m_states.resize(static_cast<std::size_t>(done) + 1); // what lies between nobody knows
    m_states.back() = content;
    m_numbers.resize(static_cast<std::size_t>(m_done) + 1);
    while (m_numbers.size() < m_states.size())
        m_numbers.push_back(++m_lastNumber);
    m_done = done;
    return {};
}

} // namespace qir::test
