#pragma once

#include "platform/automation/AutomationObject.h"

#include <QMetaMethod>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cstdint>
#include <utility>

namespace qir {

/// A database component, driven by member name. The only place that knows the names of its members.
///
/// Owns its instance: moved, never copied, so that release() destroys the instance there and then, which may write
/// the file. Whoever else works with it borrows a reference. An empty one throws AutomationError at any call.
/// Every call throws what the component throws (std::exception, text for the user), and AutomationError when the
/// component lacks the member or has it in another shape. Tables, fields and records count from 1.
class QirDatabase {
public:
    QirDatabase() = default;

    /// A new instance of "QIRTBase.clsQirDatabase". Throws AutomationError naming the identifier and the folders
    /// searched when no library serves it.
    static QirDatabase create();

    QirDatabase(QirDatabase &&) = default;
    QirDatabase &operator=(QirDatabase &&) = default;

    bool isEmpty() const { return m_object.isEmpty(); }
    /// Destroys the instance, if there is one; throws nothing.
    void release() {
        changed();
        m_object.release();
    }
    /// The instance itself; null when empty.
    QObject *object() const { return m_object.object(); }
    /// Another number after every call here that may have changed a table, its fields or its records, and never one
    /// that another instance has had: what was found out about the tables holds while it stays.
    std::uint64_t revision() const { return m_revision; }
    /// Connects the instance's Notice(QString) signal to a slot or signal of `receiver` that takes a QString. False,
    /// with nothing done, when the component has no such signal: it may lack it.
    bool relayNotices(const QObject &receiver, const QMetaMethod &member) const;

    bool LoadDtb(const QString &fileName, const QString &password) const;
    void SaveDtb() const;
    bool DtbHasChanged() const;
    void setDtbHasChanged(bool changed) const;
    QString GetDatabaseFileName() const;
    bool SetDatabaseFileName(const QString &fileName) const;
    void NewPassword(const QString &current, const QString &replacement) const;

    int QIRTablesCount() const;
    QString QIRTableName(int table) const;
    bool ExistTable(const QString &name) const;
    void AddTable(const QString &name) const;
    void RenameTable(int table, const QString &name) const;
    void RemoveTable(int table) const;
    void QIRTableRecordSource(const QString &name) const;

    int QirTableFieldsCount() const;
    QString QIRTableFieldName(int field) const;
    QVariant QIRTableFieldType(int field) const;
    QVariant QIRTableFieldSize(int field) const;
    void AddField(const QString &name, int type) const;
    void AddField(const QString &name, int type, double size) const;
    void RenameField(int field, const QString &name) const;
    void RemoveField(int field) const;
    void ResizeField(int field, double size) const;

    int QirTableRecordsCount() const;
    void AddRecord() const;
    void RemoveRecord(int record) const;
    int QIRTableRecordsPointerOut() const;
    void setQIRTableRecordsPointerOut(int record) const;
    QVariant QIRTableRecordSetByIndex(int field) const;
    /// The same into a variant that keeps its memory, for loops over many cells.
    void readQIRTableRecordSetByIndex(int field, QVariant &value) const;
    void setQIRTableRecordSetByIndex(int field, const QVariant &value) const;
    /// Fills values[1..fields count] with the texts of a record; values[0] is unused. The list keeps its memory. Throws
    /// AutomationError when the component filled in less.
    void GetQirRecord(int record, QStringList &values) const;

    /// Members that a component may lack: the calls do nothing then, LastError() gives "", and CancelChanges() ends the
    /// group as it stands. Use ChangeGroup. A component that has one in another shape is an error as elsewhere.
    void BeginChanges() const;
    void EndChanges() const;
    void CancelChanges() const;
    QString LastError() const;
    /// For callers without a user to tell, before LoadDtb(): the unsaved changes of a session that died stay for the
    /// next editor.
    void setLeaveJournal(bool leave) const;
    /// What to tell whoever is asked for a file's password; "" for nothing.
    QString PasswordNote(const QString &fileName) const;
    /// Lets the component make ready, beside the caller, what takes long in LoadDtb() of the same file and password.
    /// False, with nothing begun, where it has nothing to make ready or lacks the member.
    bool BeginUnlock(const QString &fileName, const QString &password) const;
    /// True while that goes on.
    bool UnlockPending() const;
    void CancelUnlock() const;
    /// Before a name is given to LoadDtb() or SetDatabaseFileName(): the path of the file that it stands for, where a
    /// search ignoring case would not find it.
    void SetFilePlace(const QString &fileName, const QString &place) const;
    bool hasFilePlaces() const;

private:
    explicit QirDatabase(AutomationObject object)
        : m_object(std::move(object)) {}

    void changed() const { m_revision = ++lastRevision; }

    static inline std::uint64_t lastRevision = 0;

    AutomationObject m_object;
    mutable std::uint64_t m_revision = ++lastRevision;
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

} // namespace qir
