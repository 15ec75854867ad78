#pragma once

#include "base/FileOps.h"
#include "qirtbase/file/DatabaseFile.h"
#include "qirtbase/journal/Journal.h"
#include "qirtbase/model/BodyCodec.h"
#include "qirtbase/model/Database.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QVariant>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qir {

/// A database in a file, for callers that know nothing of it but its members' names.
///
/// Every invokable, property and signal below is called by name from outside. Tables, fields and records count from 1.
/// Field and record members act on the current table, chosen by QIRTableRecordSource(); without one the counts are 0
/// and the other members fail. A member that cannot do what it was called for throws a std::exception whose what() is
/// the reason in UTF-8, fit to be shown, and has changed nothing. One thread.
///
/// States: fresh (an empty database without a name, which a load may still fill), open (loaded, or named), failed (a
/// load failed: every member but the plain ones below fails). Dying is the release: a database whose DtbHasChanged is
/// True is written then, if it has a name; what goes wrong is told by Notice() and never thrown.
class clsQirDatabase : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool DtbHasChanged READ DtbHasChanged WRITE setDtbHasChanged)
    Q_PROPERTY(bool LeaveJournal READ leaveJournal WRITE setLeaveJournal)
    Q_PROPERTY(bool LastSaveStands READ lastSaveStands)
    Q_PROPERTY(int QIRTablesCount READ QIRTablesCount)
    Q_PROPERTY(int QirTableFieldsCount READ QirTableFieldsCount)
    Q_PROPERTY(int QirTableRecordsCount READ QirTableRecordsCount)
    Q_PROPERTY(int QIRTableRecordsPointerOut READ QIRTableRecordsPointerOut WRITE setQIRTableRecordsPointerOut)

public:
    /// `ops` must outlive the instance.
    explicit clsQirDatabase(FileOps &ops = FileOps::system(), DatabaseFileOptions options = {});
    ~clsQirDatabase() override;

    // ------------------------------------------------------------------------------------------------------ the file

    /// Fills a fresh instance from a file, reached ignoring case. False when it cannot be read: LastError() tells why,
    /// and the instance has failed. Throws when the instance is not fresh.
    Q_INVOKABLE bool LoadDtb(const QString &fileName, const QString &password);
    /// What to tell whoever is asked for the file's password when trying one costs more than on the files that are
    /// written here; "" where it does not, and for any other file.
    Q_INVOKABLE QString PasswordNote(const QString &fileName);
    /// Starts to read a file that is open to everybody, in a thread of its own; LoadDtb() of the same name then takes
    /// what was read, unless something else stands there by then. False where nothing was started. Only on a fresh
    /// instance; a release waits for the thread.
    Q_INVOKABLE bool BeginLoad(const QString &fileName);
    /// Makes ready what takes long in LoadDtb() of the same file and password, in a thread of its own. False where
    /// there is nothing to make ready: LoadDtb() is quick then, or fails. Only on a fresh instance.
    Q_INVOKABLE bool BeginUnlock(const QString &fileName, const QString &password);
    /// True while that is going on.
    Q_INVOKABLE bool UnlockPending();
    /// Gives it up at once; LoadDtb() starts anew then.
    Q_INVOKABLE void CancelUnlock();
    /// Why the last LoadDtb() returned False; "" otherwise.
    Q_INVOKABLE QString LastError() const { return m_lastError; }
    /// Writes a changed database to its file and clears the changed flag. Does nothing when nothing has changed. Throws
    /// when it cannot be written or has no name; the flag stays True and the file is the old one then.
    Q_INVOKABLE void SaveDtb();
    /// Whether the file is the very one that the last SaveDtb() wrote; False before one.
    bool lastSaveStands() const { return m_file.lastSaveStands(); }
    /// "" when there is none.
    Q_INVOKABLE QString GetDatabaseFileName() const;
    /// Where the next save goes; a fresh instance becomes an open one. False, with nothing changed, where the name
    /// cannot be taken.
    Q_INVOKABLE bool SetDatabaseFileName(const QString &fileName);
    /// Names are often kept in upper case, and a search ignoring case may find another file than the one meant, or
    /// none. From now on LoadDtb() and SetDatabaseFileName() take this very name for the file at `place`.
    Q_INVOKABLE void SetFilePlace(const QString &fileName, const QString &place);
    /// From the next save on `replacement` opens the file; "" leaves it open to everybody. Throws when `current` is not
    /// the password.
    Q_INVOKABLE void NewPassword(const QString &current, const QString &replacement);

    /// A plain flag: set by any modification, cleared by a save and by a way back to what is saved, and taken as it is
    /// given.
    bool DtbHasChanged() const { return m_changed; }
    void setDtbHasChanged(bool changed) { m_changed = m_changedAnyway = changed; }

    /// For callers that only read: set True before the load, unsaved changes of a session that died stay where they are
    /// for the next editor, changes are not kept safe against a crash, and no steps are kept.
    bool leaveJournal() const { return m_leaveJournal; }
    void setLeaveJournal(bool leave) { m_leaveJournal = leave; }

    // ---------------------------------------------------------------------------------------------------- the tables

    int QIRTablesCount() const { return static_cast<int>(m_database.tableCount()); }
    Q_INVOKABLE QString QIRTableName(int table);
    /// Names are the same when they differ only in case, surrounding blanks and compare markers.
    Q_INVOKABLE bool ExistTable(const QString &name);
    /// Appends a table of one text field and one record; the current table stays.
    Q_INVOKABLE void AddTable(const QString &name);
    Q_INVOKABLE void RenameTable(int table, const QString &name);
    /// Removing the current table leaves none.
    Q_INVOKABLE void RemoveTable(int table);
    /// Makes a table current; no record is current then.
    Q_INVOKABLE void QIRTableRecordSource(const QString &name);

    // ------------------------------------------------------------------------------- the fields of the current table

    int QirTableFieldsCount() const;
    Q_INVOKABLE QString QIRTableFieldName(int field);
    /// One of the codes of ColumnType.
    Q_INVOKABLE int QIRTableFieldType(int field);
    /// Characters that a text field holds at most; 0 for every other type.
    Q_INVOKABLE int QIRTableFieldSize(int field);
    /// `size` counts for text fields only; it is rounded and kept within 0 to 65535.
    Q_INVOKABLE void AddField(const QString &name, int type, double size = 50);
    Q_INVOKABLE void RenameField(int field, const QString &name);
    Q_INVOKABLE void RemoveField(int field);
    /// Cuts texts that are longer; does nothing to a field that is no text.
    Q_INVOKABLE void ResizeField(int field, double size);

    // ------------------------------------------------------------------------------ the records of the current table

    int QirTableRecordsCount() const;
    /// Appends a record of zeros and empty texts; the current record stays.
    Q_INVOKABLE void AddRecord();
    /// The current record stays current, whatever its number is now; removing it leaves none.
    Q_INVOKABLE void RemoveRecord(int record);
    /// The current record, 0 for none.
    int QIRTableRecordsPointerOut() const { return static_cast<int>(m_currentRecord); }
    void setQIRTableRecordsPointerOut(int record);
    /// The value of a field of the current record: an int for bool (0 or 1), byte, int and long, a double for double
    /// and date, a QString for text.
    Q_INVOKABLE QVariant QIRTableRecordSetByIndex(int field);
    /// Stores the nearest value that the field holds. A text given for a number counts as the number that it begins
    /// with, a number given for a text as its text.
    Q_INVOKABLE void QIRTableRecordSetByIndex(int field, const QVariant &value);
    /// Fills values[1..fields] with the texts of a record and values[0] with "". The list and its strings keep their
    /// memory where nobody shares them. The current record stays.
    Q_INVOKABLE void GetQirRecord(int record, QStringList &values);

    // ------------------------------------------------------------------------------ whole columns of the current table
    // Blocks are those of base/columns/ColumnBlock.h.

    /// Values of a field from record `first` on, at least one and at most `count`: as many as stand together, whose
    /// memory the block shares.
    Q_INVOKABLE QVariant ReadColumn(int field, int first, int count);
    /// Replaces values from record `first` on; each is stored as QIRTableRecordSetByIndex() stores it. The block is one
    /// of the field's type.
    Q_INVOKABLE void WriteColumn(int field, int first, const QVariant &block);
    Q_INVOKABLE void RecordsReordered(const QVariant &order);
    /// AddRecord() as often as `count` says.
    Q_INVOKABLE void AppendRecords(int count);
    /// Another number whenever fields or records of the current table have changed; no two states and no two tables
    /// have the same.
    Q_INVOKABLE double TableRevision();

    // --------------------------------------------------------------------------------------------- groups of changes

    /// From here to the matching EndChanges() all changes are one; groups nest. One that is still open at the release
    /// is undone.
    Q_INVOKABLE void BeginChanges();
    /// Keeps the changes of the group; undoes them when a member has thrown since BeginChanges().
    Q_INVOKABLE void EndChanges();
    /// Undoes the changes of the group: tables, current table and record, and the changed flag are as they were.
    Q_INVOKABLE void CancelChanges();

    // --------------------------------------------------------------------------------------- steps and the way back

    /// From here to the matching EndStep() all changes are one step of that name, which Undo() takes back at once. What
    /// was changed before an error stays. Within a group or another step it is part of that. A step joins the one
    /// before it where both have the same key, which is not "", and nothing was undone or saved in between.
    Q_INVOKABLE void BeginStep(const QString &name, const QString &key);
    Q_INVOKABLE void EndStep();
    /// Take the last step back, or make again the one that was taken back last: as a new change, of which DtbHasChanged
    /// tells whether it leads to what is saved. No record is current then, and no table where the current one has gone.
    Q_INVOKABLE void Undo();
    Q_INVOKABLE void Redo();
    /// Their names; "" where there is none.
    Q_INVOKABLE QString UndoName() const;
    Q_INVOKABLE QString RedoName() const;
    /// All steps, those that were taken back included, and how many are done. They count from 1.
    Q_INVOKABLE int StepsCount() const { return static_cast<int>(m_database.history().count()); }
    Q_INVOKABLE int StepsDone() const { return static_cast<int>(m_database.history().done()); }
    Q_INVOKABLE QString StepName(int step);
    /// Milliseconds since 1970; 0 where it is not known.
    Q_INVOKABLE double StepTime(int step);
    /// True where steps that were made first are no more, for want of room.
    Q_INVOKABLE bool StepsDropped() const { return m_database.history().hasDropped(); }
    /// Takes back or makes again until so many steps are done.
    Q_INVOKABLE void GoToStep(int done);
    /// Where the last of Undo(), Redo(), GoToStep() and RevertToSaved() changed something: the name of a table that is
    /// there, and in it a record and a field; "" and 0 for none.
    Q_INVOKABLE QString ChangedTable() const { return m_changedTable; }
    Q_INVOKABLE int ChangedRecord() const { return m_changedRecord; }
    Q_INVOKABLE int ChangedField() const { return m_changedField; }
    /// In how many tables they did.
    Q_INVOKABLE int ChangedTables() const { return m_changedTables; }
    /// Makes all tables what the file holds, in a step of that name.
    Q_INVOKABLE void RevertToSaved(const QString &name);

Q_SIGNALS:
    /// Something that the user should know although no command failed.
    void Notice(const QString &text);

private:
    enum class State { Fresh, Open, Failed };

    /// What a group goes back to besides the tables.
    struct Group {
        bool changed;
        bool changedAnyway;
        Table *currentTable;
        std::size_t currentRecord;
        bool failed;
        bool isStep = false;
    };

    template<class Body>
    auto guarded(Body body) -> decltype(body());
    void requireUsable() const;
    std::size_t tableIndex(int table) const;
    Table &currentTable() const;
    std::size_t fieldIndex(int field) const;
    std::size_t recordIndex(int record) const;
    std::size_t stepIndex(int step) const;
    std::size_t currentRecordIndex() const;
    void undoGroup();
    void endGroup();
    void requireNoGroup(const char *what) const;
    void takeStep(bool undoes);
    void countChangedTables(std::size_t firstStep, std::size_t endStep);
    void keepSteps();
    void tablesReplaced(const QString &currentTable);
    QString currentTableName() const { return m_currentTable ? m_currentTable->name().text : QString(); }
    QString stepName(std::size_t step) const;
    void tellOfDroppedSteps();
    bool isUnused() const;
    bool loadFile(const QString &fileName, const QString &password);
    void failLoad(const QString &reason);
    JournalOptions journalOptions();
    void becomeAsSaved();
    void recoverChanges(std::uint64_t bodySize, const QString &password);
    JournalBase journalBase(std::uint64_t bodySize) const;
    void followFile(std::uint64_t bodySize);
    void expectKeys();
    void followKeys();
    void tellOfFile(const QStringList &notices);
    bool syncLater();
    void release() noexcept;

    FileOps &m_ops;
    State m_state = State::Fresh;
    bool m_changed = false;
    bool m_changedAnyway = false;   // in more than the tables, or by order: no way back makes it saved
    std::uint64_t m_savedState = 0; // of the history
    bool m_droppedTold = false;
    bool m_hadPassword = false; // in this session, before a save
    std::size_t m_stepBudget;   // bytes
    QString m_changedTable;
    int m_changedRecord = 0;
    int m_changedField = 0;
    int m_changedTables = 0;
    Database m_database;
    Table *m_currentTable = nullptr;
    std::size_t m_currentRecord = 0; // from 1; 0 for none
    std::vector<Group> m_groups;
    QString m_lastError;
    DatabaseFile m_file;
    Journal m_journal;
    FileIdentifier m_journalsFileId{}; // the file whose journals are sealed with m_journalsKeys
    ContainerKeys m_journalsKeys;
    QTimer m_syncTimer;
    bool m_leaveJournal = false;
};

} // namespace qir
