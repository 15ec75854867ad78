#pragma once

#include "tests/model/PlainDatabase.h"

#include <optional>
#include <vector>

namespace qir::test {

/// The states of one database between which a person goes back and forth: what it held after each number of steps.
class ModelHistory {
public:
    /// A database without steps.
    void begin(const PlainDatabase &content, bool changed);
    /// A command has ended: what the database holds now, and how many steps the component says that there are and that
    /// are done. A command makes at most `most` steps, and none only where it has changed nothing or `joins` the last.
    /// Gives what is wrong; "" nothing.
    QString follow(const PlainDatabase &content, int done, int count, bool joins, int most);
    void goTo(int done) { m_done = done; }
    void save() { m_saved = stateNumber(); }
    /// The last step has led back to what is saved.
    void revert() { m_numbers[static_cast<std::size_t>(m_done)] = m_saved; }

    int done() const { return m_done; }
    int count() const { return static_cast<int>(m_states.size()) - 1; }
    bool isSaved() const { return stateNumber() == m_saved; }
    /// What it held after so many steps; nothing for a state in the middle of a command.
    const std::optional<PlainDatabase> &at(int done) const { return m_states[static_cast<std::size_t>(done)]; }

private:
    int stateNumber() const { return m_numbers[static_cast<std::size_t>(m_done)]; }

    std::vector<std::optional<PlainDatabase>> m_states{std::nullopt};
    std::vector<int> m_numbers{0}; // of the states: a revert leads to one that there was
    int m_lastNumber = 0;
    int m_done = 0;
    int m_saved = -1;
};

} // namespace qir::test
