#pragma once

#include "qirtbase/model/Change.h"
#include "qirtbase/model/UndoEntry.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace qir {

/// One step of a database's history: what the user did at once.
struct Step {
    QString name;             ///< "" where whoever made the change gave none.
    QString key;              ///< What has the same one joins it; "" for nothing does.
    std::int64_t time = 0;    ///< Milliseconds since 1970; 0 where it is not known.
    std::uint64_t before = 0; ///< The states that it leads from and to.
    std::uint64_t after = 0;
    std::size_t bytes = 0;            ///< Memory that the entries hold.
    std::vector<undo::Entry> entries; ///< Of a step that is done what takes it back, else what makes it again.
};

/// Where a step changed something: a table that is there, and in it perhaps a record and a field.
struct StepPlace {
    std::size_t table = 0;
    std::optional<std::size_t> record;
    std::optional<std::size_t> field;
};

/// The steps of a database, those that are done and behind them those that were undone. A new step drops the undone
/// ones. Every state that a database has been in has a number; going back to a state gives its number again.
///
/// Holds so many bytes at most: beyond that the oldest steps go, down to the one made last. What entries share with the
/// tables counts as if it were theirs alone.
class History {
public:
    static constexpr std::size_t noBudget = SIZE_MAX;

    std::uint64_t state() const { return m_state; }
    std::size_t count() const { return m_steps.size(); }
    std::size_t done() const { return m_done; }
    const Step &step(std::size_t index) const { return *m_steps[index]; }
    std::size_t bytes() const { return m_bytes; }
    /// How many groups have become a step or part of one so far.
    std::uint64_t taken() const { return m_taken; }
    /// True once steps have gone for want of room.
    bool hasDropped() const { return m_dropped; }

    void setBudget(std::size_t bytes);
    /// The last step that was taken, of this kind, has led to a state that has a number already.
    void enter(std::uint64_t state, StepKind kind = StepKind::Step);
    /// What comes does not join the steps that are there.
    void seal();
    /// True when a step of this key joins the one before it.
    bool joins(const QString &key) const;

    /// Makes sure that the next take() does not throw.
    void makeRoom();
    /// From now on a group without entries is a step too: for whoever makes the steps of a journal again, where only
    /// groups stand that were one.
    void takeEmpty(bool empty) { m_takesEmpty = empty; }
    /// The entries of a group have become a step, or part of one, as its mark says; the entries are taken.
    void take(const StepMark &mark, const QString &key, std::vector<undo::Entry> &entries) noexcept;

    /// Undo the last step that is done, make the first undone one again; there must be one. All or nothing where they
    /// throw, but where even the way back fails: the history is empty then.
    const Step &undo(undo::Tables &tables);
    const Step &redo(undo::Tables &tables);
    /// In how many tables the steps from `first` to the one before `end` changed something, or added or removed them;
    /// SIZE_MAX for all.
    std::size_t tablesOf(std::size_t first, std::size_t end) const;
    /// The first place that a step changed and that is there now.
    static std::optional<StepPlace> placeOf(const Step &step, const undo::Tables &tables);

private:
    void dropUndone();
    void keepWithinBudget();
    void addStep(const StepMark &mark, const QString &key, std::vector<undo::Entry> &entries);
    void join(std::vector<undo::Entry> &entries);
    void takeUndone(const StepMark &mark, std::vector<undo::Entry> &entries);
    void setEntries(Step &step, std::vector<undo::Entry> &entries);
    void applyAll(std::vector<undo::Entry> &entries, undo::Tables &tables, bool backwards);
    void forget();

    std::vector<std::unique_ptr<Step>> m_steps;
    std::unique_ptr<Step> m_spare; // for the next one
    std::size_t m_done = 0;
    std::size_t m_bytes = 0;
    std::size_t m_budget = noBudget;
    std::uint64_t m_state = 0;
    std::uint64_t m_lastState = 0;
    std::uint64_t m_taken = 0;
    bool m_dropped = false;
    bool m_takesEmpty = false;
};

} // namespace qir
