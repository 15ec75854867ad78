#include "qirtbase/clsQirDatabase.h"

#include <QtPlugin>

namespace qir {

/// The real component as it was before whole columns could be moved: values go record by record and cell by cell.
class RecordsDatabase final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool DtbHasChanged READ DtbHasChanged WRITE setDtbHasChanged)
    Q_PROPERTY(bool LeaveJournal READ leaveJournal WRITE setLeaveJournal)
    Q_PROPERTY(int QIRTablesCount READ QIRTablesCount)
    Q_PROPERTY(int QirTableFieldsCount READ QirTableFieldsCount)
    Q_PROPERTY(int QirTableRecordsCount READ QirTableRecordsCount)
    Q_PROPERTY(int QIRTableRecordsPointerOut READ QIRTableRecordsPointerOut WRITE setQIRTableRecordsPointerOut)

public:
    RecordsDatabase() { QObject::connect(&m_database, &clsQirDatabase::Notice, this, &RecordsDatabase::Notice); }

    bool DtbHasChanged() const { return m_database.DtbHasChanged(); }
    void setDtbHasChanged(bool changed) { m_database.setDtbHasChanged(changed); }
    bool leaveJournal() const { return m_database.leaveJournal(); }
    void setLeaveJournal(bool leave) { m_database.setLeaveJournal(leave); }
    int QIRTablesCount() const { return m_database.QIRTablesCount(); }
    int QirTableFieldsCount() const { return m_database.QirTableFieldsCount(); }
    int QirTableRecordsCount() const { return m_database.QirTableRecordsCount(); }
    int QIRTableRecordsPointerOut() const { return m_database.QIRTableRecordsPointerOut(); }
    void setQIRTableRecordsPointerOut(int record) { m_database.setQIRTableRecordsPointerOut(record); }

    Q_INVOKABLE bool LoadDtb(const QString &fileName, const QString &password) {
        return m_database.LoadDtb(fileName, password);
    }
    Q_INVOKABLE QString PasswordNote(const QString &fileName) { return m_database.PasswordNote(fileName); }
    Q_INVOKABLE bool BeginLoad(const QString &fileName) { return m_database.BeginLoad(fileName); }
    Q_INVOKABLE bool BeginUnlock(const QString &fileName, const QString &password) {
        return m_database.BeginUnlock(fileName, password);
    }
    Q_INVOKABLE bool UnlockPending() { return m_database.UnlockPending(); }
    Q_INVOKABLE void CancelUnlock() { m_database.CancelUnlock(); }
    Q_INVOKABLE QString LastError() { return m_database.LastError(); }
    Q_INVOKABLE void SaveDtb() { m_database.SaveDtb(); }
    Q_INVOKABLE QString GetDatabaseFileName() { return m_database.GetDatabaseFileName(); }
    Q_INVOKABLE bool SetDatabaseFileName(const QString &fileName) { return m_database.SetDatabaseFileName(fileName); }
    Q_INVOKABLE void SetFilePlace(const QString &fileName, const QString &place) {
        m_database.SetFilePlace(fileName, place);
    }
    Q_INVOKABLE void NewPassword(const QString &current, const QString &replacement) {
        m_database.NewPassword(current, replacement);
    }
    Q_INVOKABLE QString QIRTableName(int table) { return m_database.QIRTableName(table); }
    Q_INVOKABLE bool ExistTable(const QString &name) { return m_database.ExistTable(name); }
    Q_INVOKABLE void AddTable(const QString &name) { m_database.AddTable(name); }
    Q_INVOKABLE void RenameTable(int table, const QString &name) { m_database.RenameTable(table, name); }
    Q_INVOKABLE void RemoveTable(int table) { m_database.RemoveTable(table); }
    Q_INVOKABLE void QIRTableRecordSource(const QString &name) { m_database.QIRTableRecordSource(name); }
    Q_INVOKABLE QString QIRTableFieldName(int field) { return m_database.QIRTableFieldName(field); }
    Q_INVOKABLE int QIRTableFieldType(int field) { return m_database.QIRTableFieldType(field); }
    Q_INVOKABLE int QIRTableFieldSize(int field) { return m_database.QIRTableFieldSize(field); }
    Q_INVOKABLE void AddField(const QString &name, int type, double size = 50) {
        m_database.AddField(name, type, size);
    }
    Q_INVOKABLE void RenameField(int field, const QString &name) { m_database.RenameField(field, name); }
    Q_INVOKABLE void RemoveField(int field) { m_database.RemoveField(field); }
    Q_INVOKABLE void ResizeField(int field, double size) { m_database.ResizeField(field, size); }
    Q_INVOKABLE void AddRecord() { m_database.AddRecord(); }
    Q_INVOKABLE void RemoveRecord(int record) { m_database.RemoveRecord(record); }
    Q_INVOKABLE QVariant QIRTableRecordSetByIndex(int field) { return m_database.QIRTableRecordSetByIndex(field); }
    Q_INVOKABLE void QIRTableRecordSetByIndex(int field, const QVariant &value) {
        m_database.QIRTableRecordSetByIndex(field, value);
    }
    Q_INVOKABLE void GetQirRecord(int record, QStringList &values) { m_database.GetQirRecord(record, values); }
    Q_INVOKABLE void BeginChanges() { m_database.BeginChanges(); }
    Q_INVOKABLE void EndChanges() { m_database.EndChanges(); }
    Q_INVOKABLE void CancelChanges() { m_database.CancelChanges(); }
    Q_INVOKABLE void BeginStep(const QString &name, const QString &key) { m_database.BeginStep(name, key); }
    Q_INVOKABLE void EndStep() { m_database.EndStep(); }
    Q_INVOKABLE void Undo() { m_database.Undo(); }
    Q_INVOKABLE void Redo() { m_database.Redo(); }
    Q_INVOKABLE QString UndoName() { return m_database.UndoName(); }
    Q_INVOKABLE QString RedoName() { return m_database.RedoName(); }
    Q_INVOKABLE int StepsCount() { return m_database.StepsCount(); }
    Q_INVOKABLE int StepsDone() { return m_database.StepsDone(); }
    Q_INVOKABLE QString StepName(int step) { return m_database.StepName(step); }
    Q_INVOKABLE double StepTime(int step) { return m_database.StepTime(step); }
    Q_INVOKABLE bool StepsDropped() { return m_database.StepsDropped(); }
    Q_INVOKABLE void GoToStep(int done) { m_database.GoToStep(done); }
    Q_INVOKABLE QString ChangedTable() { return m_database.ChangedTable(); }
    Q_INVOKABLE int ChangedRecord() { return m_database.ChangedRecord(); }
    Q_INVOKABLE int ChangedField() { return m_database.ChangedField(); }
    Q_INVOKABLE int ChangedTables() { return m_database.ChangedTables(); }
    Q_INVOKABLE void RevertToSaved(const QString &name) { m_database.RevertToSaved(name); }

Q_SIGNALS:
    void Notice(const QString &text);

private:
    clsQirDatabase m_database;
};

class RecordsPlugin final : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "QIR.Component/1" FILE "records.json")

public:
    Q_INVOKABLE QObject *CreateInstance(const QString &progId) {
        return progId == u"QIRTBase.clsQirDatabase" ? new RecordsDatabase : nullptr;
    }
};

} // namespace qir

#include "RecordsComponent.moc"
