#pragma once

#include "base/FileOps.h"
#include "qirtbase/container/RandomSource.h"
#include "qirtbase/journal/JournalCodec.h"
#include "qirtbase/journal/JournalFile.h"
#include "qirtbase/model/Change.h"
#include "qirtbase/model/Database.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace qir {

/// What a journal is made with.
struct JournalOptions {
    QString stateFolder;                         ///< Journals stand in its folder "journal".
    RandomSource *random = nullptr;              ///< Outlives the journal.
    std::function<void(const QString &)> notice; ///< Told once when changes are not protected any more.
    /// Asked to call syncPending() within a second. Without it, and where it answers that it cannot, syncing happens
    /// with the next change that comes a second or more after the last time.
    std::function<bool()> syncLater;
    std::function<std::chrono::steady_clock::time_point()> clock = [] { return std::chrono::steady_clock::now(); };
};

/// The version of a file that changes start from.
struct JournalBase {
    QString name;    ///< As the user knows the file.
    FilePlace place; ///< Without a path no change can be kept.
    FileIdentifier fileId{};
    FileIdentifier saveId{};
    std::uint64_t bodySize = 0;
    std::uint64_t state = 0; ///< Its number in the database's history.
};

/// Keeps every change since the last save on disk, so that a crash of the program loses none. Each change is handed to
/// the system before the call that made it returns; a group is gathered and written in pieces, and counts as a whole. A
/// group that grows past a quarter of the body is kept as images of the tables that it changed.
///
/// Never throws and never stops an edit: when it cannot write it says so once and waits for the next save.
class Journal final : public ChangeListener {
public:
    Journal(FileOps &ops, JournalOptions options);
    ~Journal() override { stop(); }
    Journal(const Journal &) = delete;
    Journal &operator=(const Journal &) = delete;

    /// From now on listens to `database`, which is what the file holds. `keys` are the file's, and seal what is
    /// written, until reseal() gives others. No journal is made before the first change. One that was followed before
    /// is left as it is on disk.
    void follow(Database &database, JournalBase base, const ContainerKeys &keys);
    /// Right after follow(): begins a journal with the steps that the database has, so that they too survive a crash;
    /// as many of the last ones as keptStepsLimit() has room for. Where that fails they are lost in a crash.
    void keepSteps() noexcept;
    /// Goes on with a journal whose changes the database already has, and all of its steps. `changed` is whether the
    /// file has not got all of these changes.
    void adopt(JournalFile file, bool changed);
    /// Listens to nobody any more; what is on disk stays.
    void stop();

    /// What is written from now on is sealed with these; what was written is written anew at once.
    void reseal(const ContainerKeys &keys);
    /// The file is about to be replaced by a version with this save id: what stands before does not count for it.
    void saving(const FileIdentifier &saveId) noexcept;
    /// The changes are in the file, or were given up for good: nothing is left.
    void discard() noexcept;
    /// The changes were given up, but may be wanted back: kept aside for some days.
    void retire() noexcept;

    /// Forces to disk what was handed to the system. Where somebody has taken the journal away it is written anew, with
    /// all that has changed, and the user is told once.
    void syncPending() noexcept;
    bool hasRecords() const { return m_file.has_value() && m_file->offset() > 0; }
    /// How many bytes the steps of before a save may take in the journal of a database whose body has so many.
    static std::uint64_t keptStepsLimit(std::uint64_t bodySize);

    void changed(const Change &change) noexcept override;
    void groupBegan() noexcept override;
    void groupEnded() noexcept override;
    void groupUndone() noexcept override;
    void groupMarked(const StepMark &mark) noexcept override;
    void replaced(const Table *table) noexcept override;
    void reordered(const Table &table, std::span<const std::uint32_t> order) noexcept override;
    bool stepUndone() noexcept override;
    bool stepRedone() noexcept override;

private:
    bool isRecording() const { return m_database && !m_broken; }
    template<class Body>
    void guarded(Body body) noexcept;
    void note(const Change &change);
    void noteMark(JournalOperation mark);
    void gathered(qsizetype before);
    void forgetGroup();
    void finishGroup();
    void countStep(StepKind kind);
    void lookAtHistory();
    bool tellStep(JournalOperation mark, std::size_t &from, std::size_t &to) noexcept;
    void encodeGroupMark();
    void writeImages();
    void writeImage(const QByteArray &image);
    void writePending();
    bool appendPending();
    void dropKeptSteps();
    void syncInTime();
    void makeFile();
    bool hasChanges() const { return hasRecords() && m_file->offset() > m_keptEnd; }
    bool isLost() const;
    void writeAnew();
    std::size_t indexOf(const Table *table);
    void giveUp(const QString &reason);

    FileOps &m_ops;
    JournalOptions m_options;
    Database *m_database = nullptr;
    JournalBase m_base;
    ContainerKeys m_keys;
    bool m_keyInFile = false; // the keys are those of the file on disk
    std::optional<JournalFile> m_file;
    bool m_lossTold = false;
    bool m_broken = false;

    QByteArray m_pending;   // operations not yet written
    int m_depth = 0;        // of open groups
    int m_writtenDepth = 0; // of open groups in what is written; 0: nothing of the outermost one is
    bool m_groupChanged = false;
    bool m_asImages = false;           // the group has grown too large for single changes
    bool m_tablesChanged = false;      // the list of tables, in this group
    std::vector<bool> m_changedBefore; // for each open group whether the outermost one had changed something
    QByteArray m_order;                // all that the group has done is to bring the only one of m_touched into it
    std::uint64_t m_groupSize = 0;
    std::optional<StepMark> m_mark;       // of this group
    std::set<const Table *> m_touched;    // tables whose content changed in this group
    const Table *m_lastTouched = nullptr; // the one added last
    const Table *m_lastTable = nullptr;   // the one that changed last, and its number: changes come in runs
    std::size_t m_lastIndex = 0;

    // Of the database's steps, those that a replay of this journal knows: the last ones that are done, and of the
    // undone ones the first.
    std::size_t m_stepsDone = 0;
    std::size_t m_stepsUndone = 0;
    std::uint64_t m_state = 0;   // of the database's history when it was told last
    std::uint64_t m_taken = 0;   // so many steps had it taken then: one may lead to the state that it starts from
    std::uint64_t m_keptEnd = 0; // what stands before it in the journal are no unsaved changes

    bool m_unsynced = false;
    std::chrono::steady_clock::time_point m_lastSync{};
};

} // namespace qir
