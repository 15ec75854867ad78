#pragma once

#include "base/columns/ColumnBlock.h"
#include "platform/automation/AutomationObject.h"

#include <QMetaMethod>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cstdint>
#include <utility>
#include <vector>

namespace qir {

/// A database component, driven by member name. The only place that knows the names of its members. What is said here
/// of a member is what every component does; docs/component.md tells how one is found, and in what form it has them.
///
/// Owns its instance: moved, never copied, so that release() destroys the instance there and then, which may write
/// the file. Whoever else works with it borrows a reference. An empty one throws AutomationError at any call.
///
/// A member that cannot do what it was called for throws a std::exception whose what() is the reason in UTF-8, fit to
/// be shown; nothing has changed then: tables, current table and record, file name and flag are as before. A member
/// that the component lacks or has in another shape throws AutomationError. All calls come from one thread, the user
/// interface's; none waits for a user.
///
/// An instance is fresh (an empty database without a name), open (loaded or named) or failed (its load failed: the
/// counts are 0, what would change it throws, and it never writes). Tables, fields and records count from 1, in the
/// order of their adding; a removal closes the gap. There is at most one current table, and in it at most one current
/// record; the members on fields and records act on them. A number out of range throws, as does a name that is taken.
///
/// Names are kept as they are given, up to 255 code points. Two are the same when they differ only in case, in blanks
/// around them and in the markers " ?" and " !" that lists append (base/Collation.h); a name of nothing else is
/// refused.
///
/// Bounds: 4,096 tables, 1,024 fields and 16,777,216 records of a table, 65,535 code points of a text. What would pass
/// one throws.
class QirDatabase {
public:
    QirDatabase() = default;

    /// A new, fresh instance of "QIRTBase.clsQirDatabase". Throws AutomationError naming the identifier and the folders
    /// searched when no library serves it.
    static QirDatabase create();

    QirDatabase(QirDatabase &&) = default;
    QirDatabase &operator=(QirDatabase &&) = default;

    bool isEmpty() const { return m_object.isEmpty(); }
    /// Destroys the instance, if there is one; throws nothing. Groups of changes that are still open are undone; then a
    /// database that has a name and whose DtbHasChanged is True is written. What goes wrong is told by Notice. Does not
    /// wait for an unlocking that still goes on.
    void release() {
        changed();
        m_object.release();
    }
    /// The instance itself; null when empty.
    QObject *object() const { return m_object.object(); }
    /// A number that changes with every call here that may have changed a table, its fields or its records, and that no
    /// other instance ever has: what was found out about the tables holds as long as it stays.
    std::uint64_t revision() const { return m_revision; }

    // ------------------------------------------------------------------------------------------------------ the file

    /// Fills a fresh instance from a file, whose name is looked up ignoring case. `password` counts for protected files
    /// only. Then GetDatabaseFileName() is that name, DtbHasChanged() is False unless changes of a session that died
    /// were brought back, and no table is current. False where the file cannot be read, is none of these databases or
    /// is not opened by the password: the instance has failed then, LastError() tells why, the file is as it was.
    /// Throws when the instance is not fresh.
    bool LoadDtb(const QString &fileName, const QString &password) const;
    /// Writes the database to its file, the current name's, and sets DtbHasChanged to False; does nothing where that is
    /// False already. Tables without fields are left without records. Throws where it cannot be written, has no name or
    /// a group of changes is open: DtbHasChanged stays True, a file that was there is as before, and the name may be
    /// that of the last load or save again.
    void SaveDtb() const;
    /// A plain flag: True after each change of content, name of a table or field, or password; False after load and
    /// save. Writing what is there already is no change.
    bool DtbHasChanged() const;
    /// Takes `flag` as it is given: True makes SaveDtb() and the release write, False keeps them from it. Drops
    /// nothing.
    void setDtbHasChanged(bool flag) const;
    /// The name that the next save writes to, as it was given; "" when there is none.
    QString GetDatabaseFileName() const;
    /// Where the next save goes; a fresh instance becomes an open one. Does not set DtbHasChanged. False, with nothing
    /// changed, where no file can have that name (its folder is missing, or a folder has that name) and on a failed
    /// instance.
    bool SetDatabaseFileName(const QString &fileName) const;
    /// From the next save on `replacement` is the file's password; "" leaves it open to everybody. `current` is the
    /// present one, "" for an open file. Sets DtbHasChanged where the two differ. Throws when `current` is not the
    /// password, or a group of changes is open.
    void NewPassword(const QString &current, const QString &replacement) const;

    // ---------------------------------------------------------------------------------------------------- the tables

    /// 0 on a fresh or failed instance.
    int QIRTablesCount() const;
    /// The name as it was given; throws for a number that no table has.
    QString QIRTableName(int table) const;
    /// Whether a table has this name, told apart as above; False for a name that none could have.
    bool ExistTable(const QString &name) const;
    /// Appends a table of one text field and one record. Current table and record stay.
    void AddTable(const QString &name) const;
    /// The table keeps its place, and stays current where it is.
    void RenameTable(int table, const QString &name) const;
    /// Removing the current table leaves none current.
    void RemoveTable(int table) const;
    /// Makes a table current, with no current record. Throws when there is none of this name.
    void QIRTableRecordSource(const QString &name) const;

    // ------------------------------------------------------------------------------- the fields of the current table
    // All but the count throw without one.

    /// 0 without a current table.
    int QirTableFieldsCount() const;
    /// The name as it was given, without type and size.
    QString QIRTableFieldName(int field) const;
    /// A number: a code of FieldType.
    QVariant QIRTableFieldType(int field) const;
    /// A number: the characters that a text field holds at most; of no meaning for any other type.
    QVariant QIRTableFieldSize(int field) const;
    /// Appends a field; in the records that are there it is 0 or "". `type` is a code of FieldType, any other is
    /// refused. `size` counts for text fields only, is rounded and kept within 0 to 65535; 50 where it is not given.
    void AddField(const QString &name, int type) const;
    void AddField(const QString &name, int type, double size) const;
    /// The field keeps its place, type and values. The name it has already is no change.
    void RenameField(int field, const QString &name) const;
    /// Removing the last field leaves the records.
    void RemoveField(int field) const;
    /// `size` as in AddField(). Texts that are longer are cut, and stay so. Does nothing to a field that is no text.
    void ResizeField(int field, double size) const;

    // ------------------------------------------------------------------------------ the records of the current table
    // All but the count throw without one.

    /// 0 without a current table.
    int QirTableRecordsCount() const;
    /// Appends a record of zeros and empty texts. The current record stays.
    void AddRecord() const;
    /// The current record stays current, whatever its number is then; removing it leaves none.
    void RemoveRecord(int record) const;
    /// The current record, 0 for none.
    int QIRTableRecordsPointerOut() const;
    /// 0 makes none current.
    void setQIRTableRecordsPointerOut(int record) const;
    /// The value of a field of the current record, a QString for text and a number for every other type. Throws without
    /// a current record.
    QVariant QIRTableRecordSetByIndex(int field) const;
    /// The same into a variant that keeps its memory, for loops over many cells.
    void readQIRTableRecordSetByIndex(int field, QVariant &value) const;
    /// Stores the nearest value that the field holds: bool 0, or 1 for every other number; byte, int and long the
    /// nearest whole number, halves to the even one, within 0 to 255 and 16 and 32 bits with sign; double and date the
    /// nearest finite number, bit for bit; text as many code points as fit, a lone surrogate as U+FFFD. A text given
    /// for a number counts as the number that it begins with (base/LeadingNumber.h), a number given for a text as its
    /// text. Throws without a current record, and for a value that is neither number nor text.
    void setQIRTableRecordSetByIndex(int field, const QVariant &value) const;
    /// Fills values[1..fields count] with the texts of a record; values[0] is unused. Numbers stand there as the
    /// shortest decimal that reads back. The list keeps its memory, the current record stays. Throws AutomationError
    /// when the component filled in less.
    void GetQirRecord(int record, QStringList &values) const;

    // ------------------------------------------------------------------------------- members that a component may lack
    // One that it has in another shape is an error, as elsewhere.

    /// Connects the instance's signal Notice(QString), something that the user should know although no command failed,
    /// to a slot or signal of `receiver` that takes a QString. It may come at any call, at the release and between
    /// calls; texts are fit to be shown. False, with nothing done, where the component lacks it: the user learns
    /// nothing then.
    bool relayNotices(const QObject &receiver, const QMetaMethod &member) const;

    /// Begins a group of changes, which EndChanges() keeps and CancelChanges() undoes; groups nest. Use ChangeGroup.
    /// Where the component lacks the three, the calls do nothing: each change stands alone, and what was written before
    /// an error stays.
    void BeginChanges() const;
    /// Keeps the changes of the innermost group; undoes them where a member has thrown since it began.
    void EndChanges() const;
    /// Undoes the innermost group, groups within it that were ended included: content, current table and record and
    /// DtbHasChanged are as it found them. Where the component lacks it alone EndChanges() is called.
    void CancelChanges() const;
    /// Why the last LoadDtb() returned False, fit to be shown; "" otherwise, and where the component lacks it: no
    /// reason is shown then.
    QString LastError() const;
    /// For callers without a user to tell, before LoadDtb(): True leaves the unsaved changes of a session that died for
    /// the next editor, and keeps no such record of this one. Nothing happens where the component lacks it.
    void setLeaveJournal(bool leave) const;
    /// What to tell whoever is asked for a file's password, fit to be shown: that trying one costs more than usual. ""
    /// for nothing to tell, for a file that is missing or no database, and where the component lacks it.
    QString PasswordNote(const QString &fileName) const;
    /// On a fresh instance: begins, in the background, to read a file that needs no password. LoadDtb() of it or a
    /// release is called next and may wait for it; LoadDtb() gives the file as it stands at its own time. False, with
    /// nothing begun, where the file is protected or cannot be read, and where the component lacks it.
    bool BeginLoad(const QString &fileName) const;
    /// On a fresh instance: begins, in the background, what takes long in LoadDtb() of this file with this password.
    /// LoadDtb() of the same two is called next, once UnlockPending() is False or after CancelUnlock(). False, with
    /// nothing begun, where there is nothing to make ready, and where the component lacks this or UnlockPending():
    /// LoadDtb() takes its time then. Does not tell whether the password is right; only LoadDtb() tries it.
    bool BeginUnlock(const QString &fileName, const QString &password) const;
    /// True while that goes on; asked again and again. False where nothing was begun.
    bool UnlockPending() const;
    /// Gives up what was begun, without waiting for it; does nothing where nothing was. Where the component lacks it,
    /// LoadDtb() may wait for the end.
    void CancelUnlock() const;
    /// Called before LoadDtb() or SetDatabaseFileName() gets a name: tells the path of the file that this very name
    /// stands for, where a search ignoring case would find another one or none. GetDatabaseFileName() is still the
    /// name. Nothing happens where the component lacks it; hasFilePlaces() tells beforehand.
    void SetFilePlace(const QString &fileName, const QString &place) const;
    bool hasFilePlaces() const;

    // Taking back. A step is what the user did at once. Where the component lacks one of the members from BeginStep()
    // to ChangedTables() it has none of them: hasSteps() is False, no step begins, and nothing can be taken back.

    bool hasSteps() const;
    /// From here to EndStep() all changes are one step, which is told to the user by this name. Use ChangeStep. A step
    /// joins the one before it where both have the same key, which is not "", and nothing was undone, made again or
    /// saved in between. Within a group or another step it is part of that. A change outside steps and groups is a step
    /// of its own, an outermost group too; the component names them. A new step drops those that were undone.
    void BeginStep(const QString &name, const QString &key) const;
    /// Keeps the changes, also where a member has thrown since.
    void EndStep() const;
    /// Writes back what stood before the last step, or makes the one again that was undone last: new changes, which
    /// leave DtbHasChanged() False where they lead to what is saved, unless it was set True or the password differs. No
    /// record is current then; the current table stays, or one of its name; none where that is gone. Throw where there
    /// is no such step, or within a group or step.
    void Undo() const;
    void Redo() const;
    /// The name of what they would take, fit to be shown; "" where there is nothing.
    QString UndoName() const;
    QString RedoName() const;
    /// How many steps there are, undone ones included, and how many are done.
    int StepsCount() const;
    int StepsDone() const;
    /// Of a step, from 1 on: its name, and when it was made, in milliseconds since 1970; 0 where that is not known.
    QString StepName(int step) const;
    double StepTime(int step) const;
    /// True where the steps made first are no more: their memory was needed.
    bool StepsDropped() const;
    /// Undoes or makes again until so many steps are done.
    void GoToStep(int done) const;
    /// Where the last of Undo(), Redo(), GoToStep() and RevertToSaved() changed something: a table that is there, and
    /// in it perhaps a record and a field; "" and 0 for none.
    QString ChangedTable() const;
    int ChangedRecord() const;
    int ChangedField() const;
    /// In how many tables it did.
    int ChangedTables() const;

    /// Makes all tables those of the file as it was loaded or saved last, in a step of this name. Throws where that
    /// version stands there no more. Only where hasRevert().
    void RevertToSaved(const QString &name) const;
    bool hasRevert() const;

    /// Whether the component has the four below, which move whole columns of the current table. Where it lacks one of
    /// them none is called: values go cell by cell.
    bool hasColumns() const;
    /// Values of a field from record `first` on, as a block of its type (base/columns/ColumnBlock.h): at least one and
    /// at most `count`, as many as the component keeps together; ask again for the next. Numbers and texts are those
    /// that QIRTableRecordSetByIndex() gives. The block stays as it is whatever changes, and shares its memory with
    /// the component until then. Throws for a record that is not there and a `count` below 1; that there are fewer
    /// records than `count` is no error. Throws AutomationError where the component gave back no such block.
    ColumnBlock ReadColumn(int field, int first, int count) const;
    /// Replaces the values of a field from record `first` on, which is there, by those of a block of its type; each is
    /// stored as setQIRTableRecordSetByIndex() stores it. The component may go on with the block's memory. Throws for
    /// a block of another type, one that reaches beyond the last record, and texts that are no UTF-8.
    void WriteColumn(int field, int first, const ColumnBlock &block) const;
    /// What was written in the step that goes on, or the group, has put the current table's records into another order
    /// and has done nothing else to it: the record at i, from 0 on, is the one that stood at order[i]. Taking that back
    /// needs less memory then. Nothing happens where it was something else, and where the component lacks it. Throws
    /// where `order` does not have each record once.
    void RecordsReordered(const std::vector<std::uint32_t> &order) const;
    /// AddRecord() as often as `count`, 0 or more, says: all or none.
    void AppendRecords(int count) const;
    /// Another number after each call that has changed fields or records of the current table, a cancelled group
    /// included: while it stays, what was read holds. No two states of an instance have the same.
    double TableRevision() const;

private:
    explicit QirDatabase(AutomationObject object)
        : m_object(std::move(object)) {}

    void changed() const { m_revision = ++lastRevision; }

    static inline std::uint64_t lastRevision = 0;

    AutomationObject m_object;
    mutable std::uint64_t m_revision = ++lastRevision;
    mutable std::uint64_t m_groupBegin = 0; // the revision when the outermost open group began
    mutable int m_openGroups = 0;
};

/// A group of changes of one component, around a command that writes more than one cell: BeginChanges() when made,
/// EndChanges() by commit(). One that dies without commit (an error on the way) calls CancelChanges(), which undoes
/// what the group wrote; a component without that member gets EndChanges(). Does nothing more once the component was
/// released meanwhile. The database must outlive the group where it is.
class ChangeGroup {
public:
    explicit ChangeGroup(const QirDatabase &database);
    ~ChangeGroup();
    ChangeGroup(const ChangeGroup &) = delete;
    ChangeGroup &operator=(const ChangeGroup &) = delete;

    /// Ends the group; throws what the component throws.
    void commit();

private:
    const QirDatabase &m_database;
    QPointer<QObject> m_object;
    bool m_open = true;
};

/// A step of one component, around what a command writes for the user: BeginStep() when made, EndStep() when it dies.
/// Does nothing where the component has no steps, or was released meanwhile. The database must outlive it where it is.
class ChangeStep {
public:
    explicit ChangeStep(const QirDatabase &database, const QString &name, const QString &key = {});
    ~ChangeStep();
    ChangeStep(const ChangeStep &) = delete;
    ChangeStep &operator=(const ChangeStep &) = delete;

private:
    const QirDatabase &m_database;
    QPointer<QObject> m_object; // null without a step
};

} // namespace qir
