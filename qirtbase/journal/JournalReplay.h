#pragma once

#include "qirtbase/journal/JournalCodec.h"
#include "qirtbase/model/Database.h"

#include <QByteArray>
#include <QByteArrayView>

#include <cstdint>

namespace qir {

/// Makes a change again. False, with nothing changed, where the database does not take it. Throws std::bad_alloc.
bool applyChange(const ReadOperation &operation, Database &database);

/// Makes again what a journal tells, whole group by whole group, and with it the steps of the history: the database
/// keeps them from then on, `stepsBudget` bytes at most. Tells nobody of it: the database must have no listener.
class JournalReplay {
public:
    /// Far more than a session keeps: a step that the journal undoes must be there.
    static constexpr std::size_t stepsBudget = std::size_t{4} << 30;

    explicit JournalReplay(Database &database)
        : m_database(database)
        , m_savedState(database.history().state()) {
        database.keepSteps(stepsBudget);
        database.takeEmptySteps(true); // each that stands in the journal was one
    }
    ~JournalReplay() { m_database.takeEmptySteps(false); }
    JournalReplay(const JournalReplay &) = delete;
    JournalReplay &operator=(const JournalReplay &) = delete;

    /// The next record. False where it makes no sense or cannot be made again: nothing of its group has been done then,
    /// and the replay ends here. Throws std::bad_alloc: nothing more can be done with the database then.
    bool feed(QByteArrayView payload);
    /// True outside groups: all that was fed counts.
    bool isAtBoundary() const { return m_depth == 0 && !m_inKept; }
    /// How many outermost groups were made again.
    int groups() const { return m_groups; }

private:
    bool take(const ReadOperation &operation, QByteArrayView bytes);
    void begin(Database database);
    bool takeKept(const ReadOperation &operation, QByteArrayView bytes);
    bool takeStep(bool undoes);
    bool finishGroup();
    bool applyGroup();
    bool makeChanges(QByteArrayView changes);
    bool applyImages(QByteArrayView images);
    bool applyOrder(QByteArrayView group);

    Database &m_database;
    std::uint64_t m_savedState;
    StepKind m_lastKind = StepKind::Step; // of the group made last
    int m_depth = 0;
    bool m_inKept = false; // in the steps of before the save
    QByteArray m_group;    // the operations of the outermost group so far, or of those steps
    int m_groups = 0;
};

} // namespace qir
