#pragma once

#include "tests/tools/fake/FakeModel.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QVariant>

namespace qir {

/// The recording fake: the whole contract of the component on a plain model in memory, each call told to FakeRecorder
/// first. Members are called by name.
class FakeComponent : public QObject {
    Q_OBJECT
    Q_CLASSINFO("Kind", "fake")
    Q_PROPERTY(bool DtbHasChanged READ dtbHasChanged WRITE setDtbHasChanged)
    Q_PROPERTY(int QIRTablesCount READ tablesCount)
    Q_PROPERTY(int QirTableFieldsCount READ fieldsCount)
    Q_PROPERTY(int QirTableRecordsCount READ recordsCount)
    Q_PROPERTY(int QIRTableRecordsPointerOut READ recordsPointer WRITE setRecordsPointer)

public:
    FakeComponent();
    ~FakeComponent() override;

    bool dtbHasChanged() const;
    void setDtbHasChanged(bool changed);
    int tablesCount() const;
    int fieldsCount() const;
    int recordsCount() const;
    int recordsPointer() const;
    void setRecordsPointer(int record);

    Q_INVOKABLE bool LoadDtb(const QString &fileName, const QString &password);
    Q_INVOKABLE void SaveDtb();
    Q_INVOKABLE QString GetDatabaseFileName() const;
    Q_INVOKABLE bool SetDatabaseFileName(const QString &fileName);
    Q_INVOKABLE void NewPassword(const QString &current, const QString &replacement);
    Q_INVOKABLE QString LastError() const;

    Q_INVOKABLE QString QIRTableName(int table) const;
    Q_INVOKABLE bool ExistTable(const QString &name) const;
    Q_INVOKABLE void AddTable(const QString &name);
    Q_INVOKABLE void RenameTable(int table, const QString &name);
    Q_INVOKABLE void RemoveTable(int table);
    Q_INVOKABLE void QIRTableRecordSource(const QString &name);

    Q_INVOKABLE QString QIRTableFieldName(int field) const;
    Q_INVOKABLE int QIRTableFieldType(int field) const;
    Q_INVOKABLE int QIRTableFieldSize(int field) const;
    Q_INVOKABLE void AddField(const QString &name, int type, const QVariant &size = QVariant());
    Q_INVOKABLE void RenameField(int field, const QString &name);
    Q_INVOKABLE void RemoveField(int field);
    Q_INVOKABLE void ResizeField(int field, double size);

    Q_INVOKABLE void AddRecord();
    Q_INVOKABLE void RemoveRecord(int record);
    Q_INVOKABLE QVariant QIRTableRecordSetByIndex(int field) const;
    Q_INVOKABLE void QIRTableRecordSetByIndex(int field, const QVariant &value);
    Q_INVOKABLE void GetQirRecord(int record, QStringList &values) const;

    Q_INVOKABLE void BeginChanges();
    Q_INVOKABLE void EndChanges();
    Q_INVOKABLE void CancelChanges();

Q_SIGNALS:
    void Notice(const QString &text);

protected:
    /// Called by every member before it is recorded.
    virtual void beforeCall() const {}

    static constexpr qsizetype mostRecords = qsizetype{1} << 24;

    void called(const char *member, const QVariantList &arguments = {}) const;
    [[noreturn]] void raise(const QString &text) const;
    const fake::Table &current() const;
    fake::Table &current();
    int fieldIndex(int field) const;
    int recordIndex(int record) const;
    void appendRecord();
    void setChanged() { m_content.changed = true; }

private:
    enum class State { Created, Loaded, Failed };

protected:
    // Everything that an undone group takes back.
    struct Content {
        fake::Database database;
        int table = -1; // index of the current table
        int record = 0;
        bool changed = false;
    };

    void failGroups() const;
    int checkedIndex(int number, qsizetype count, const char *what) const;

private:
    QString checkedName(const QString &name) const;
    bool fails(const QString &why);
    void write();
    int tableIndex(int table) const;
    int findTable(const QString &name) const;
    QString freeTableName(const QString &name, int except) const;
    QString freeFieldName(const QString &name, int except) const;

    State m_state = State::Created;
    QString m_fileName;
    QString m_savedFileName; // the last that was loaded or saved under
    QString m_lastError;
    int m_instance;

protected:
    struct Group {
        Content before;
        bool failed = false;
    };
    Content m_content;
    mutable QList<Group> m_groups; // open ones, the outermost first
};

} // namespace qir
