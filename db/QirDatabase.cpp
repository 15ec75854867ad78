#include "db/QirDatabase.h"

#include "db/LastSave.h"
#include "platform/automation/AutomationError.h"
#include "platform/automation/ComponentLoader.h"
#include "platform/automation/Member.h"

#include <QMetaProperty>
#include <QtEndian>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

// Every member of the component by name; nowhere else stands one.
const Method<bool(QString, QString)> loadDtb{"LoadDtb"};
const Method<void()> saveDtb{"SaveDtb"};
const Property<bool> dtbHasChanged{"DtbHasChanged"};
const Method<QString()> getDatabaseFileName{"GetDatabaseFileName"};
const Method<bool(QString)> setDatabaseFileName{"SetDatabaseFileName"};
const Method<void(QString, QString)> newPassword{"NewPassword"};

const Property<int> tablesCount{"QIRTablesCount"};
const Method<QString(int)> tableName{"QIRTableName"};
const Method<bool(QString)> existTable{"ExistTable"};
const Method<void(QString)> addTable{"AddTable"};
const Method<void(int, QString)> renameTable{"RenameTable"};
const Method<void(int)> removeTable{"RemoveTable"};
const Method<void(QString)> tableRecordSource{"QIRTableRecordSource"};

const Property<int> fieldsCount{"QirTableFieldsCount"};
const Method<QString(int)> fieldName{"QIRTableFieldName"};
const Method<QVariant(int)> fieldType{"QIRTableFieldType"};
const Method<QVariant(int)> fieldSize{"QIRTableFieldSize"};
const Method<void(QString, int)> addField{"AddField"};
const Method<void(QString, int, double)> addSizedField{"AddField"};
const Method<void(int, QString)> renameField{"RenameField"};
const Method<void(int)> removeField{"RemoveField"};
const Method<void(int, double)> resizeField{"ResizeField"};

const Property<int> recordsCount{"QirTableRecordsCount"};
const Method<void()> addRecord{"AddRecord"};
const Method<void(int)> removeRecord{"RemoveRecord"};
const Property<int> recordsPointer{"QIRTableRecordsPointerOut"};
const Method<QVariant(int)> readField{"QIRTableRecordSetByIndex"};
const Method<void(int, QVariant)> writeField{"QIRTableRecordSetByIndex"};
const Method<void(int, QStringList &)> getQirRecord{"GetQirRecord"};

// A component may lack these.
const Method<void()> beginChanges{"BeginChanges"};
const Method<void()> endChanges{"EndChanges"};
const Method<void()> cancelChanges{"CancelChanges"};
const Method<QString()> lastError{"LastError"};
const Property<bool> leaveJournal{"LeaveJournal"};
const Method<QString(QString)> passwordNote{"PasswordNote"};
const Method<bool(QString)> beginLoad{"BeginLoad"};
const Method<bool(QString, QString)> beginUnlock{"BeginUnlock"};
const Method<bool()> unlockPending{"UnlockPending"};
const Method<void()> cancelUnlock{"CancelUnlock"};
const Method<void(QString, QString)> setFilePlace{"SetFilePlace"};
const Method<void(QString, QString)> beginStep{"BeginStep"};
const Method<void()> endStep{"EndStep"};
const Method<void()> undoStep{"Undo"};
const Method<void()> redoStep{"Redo"};
const Method<QString()> undoName{"UndoName"};
const Method<QString()> redoName{"RedoName"};
const Method<int()> stepsCount{"StepsCount"};
const Method<int()> stepsDone{"StepsDone"};
const Method<QString(int)> stepName{"StepName"};
const Method<double(int)> stepTime{"StepTime"};
const Method<bool()> stepsDropped{"StepsDropped"};
const Method<void(int)> goToStep{"GoToStep"};
const Method<QString()> changedTable{"ChangedTable"};
const Method<int()> changedRecord{"ChangedRecord"};
const Method<int()> changedField{"ChangedField"};
const Method<int()> changedTables{"ChangedTables"};
const Method<void(QString)> revertToSaved{"RevertToSaved"};
const Method<QVariant(int, int, int)> readColumn{"ReadColumn"};
const Method<void(int, int, QVariant)> writeColumn{"WriteColumn"};
const Method<void(QVariant)> recordsReordered{"RecordsReordered"};
const Method<void(int)> appendRecords{"AppendRecords"};
const Method<double()> tableRevision{"TableRevision"};

} // namespace

QirDatabase QirDatabase::create() {
    return QirDatabase(createObject(u"QIRTBase.clsQirDatabase"_s));
}

bool QirDatabase::relayNotices(const QObject &receiver, const QMetaMethod &member) const {
    if (isEmpty())
        return false;
    const QMetaObject *metaObject = object()->metaObject();
    const int signal = metaObject->indexOfSignal("Notice(QString)");
    return signal >= 0 && QObject::connect(object(), metaObject->method(signal), &receiver, member);
}

bool QirDatabase::LoadDtb(const QString &fileName, const QString &password) const {
    changed();
    return loadDtb(m_object, fileName, password);
}

void QirDatabase::SaveDtb() const {
    saveDtb(m_object);
}

bool QirDatabase::DtbHasChanged() const {
    return dtbHasChanged.read(m_object);
}

void QirDatabase::setDtbHasChanged(bool flag) const {
    dtbHasChanged.write(m_object, flag);
}

QString QirDatabase::GetDatabaseFileName() const {
    return getDatabaseFileName(m_object);
}

bool QirDatabase::SetDatabaseFileName(const QString &fileName) const {
    return setDatabaseFileName(m_object, fileName);
}

void QirDatabase::NewPassword(const QString &current, const QString &replacement) const {
    newPassword(m_object, current, replacement);
}

int QirDatabase::QIRTablesCount() const {
    return tablesCount.read(m_object);
}

QString QirDatabase::QIRTableName(int table) const {
    return tableName(m_object, table);
}

bool QirDatabase::ExistTable(const QString &name) const {
    return existTable(m_object, name);
}

void QirDatabase::AddTable(const QString &name) const {
    changed();
    addTable(m_object, name);
}

void QirDatabase::RenameTable(int table, const QString &name) const {
    changed();
    renameTable(m_object, table, name);
}

void QirDatabase::RemoveTable(int table) const {
    changed();
    removeTable(m_object, table);
}

void QirDatabase::QIRTableRecordSource(const QString &name) const {
    tableRecordSource(m_object, name);
}

int QirDatabase::QirTableFieldsCount() const {
    return fieldsCount.read(m_object);
}

QString QirDatabase::QIRTableFieldName(int field) const {
    return fieldName(m_object, field);
}

QVariant QirDatabase::QIRTableFieldType(int field) const {
    return fieldType(m_object, field);
}

QVariant QirDatabase::QIRTableFieldSize(int field) const {
    return fieldSize(m_object, field);
}

void QirDatabase::AddField(const QString &name, int type) const {
    changed();
    addField(m_object, name, type);
}

void QirDatabase::AddField(const QString &name, int type, double size) const {
    changed();
    addSizedField(m_object, name, type, size);
}

void QirDatabase::RenameField(int field, const QString &name) const {
    changed();
    renameField(m_object, field, name);
}

void QirDatabase::RemoveField(int field) const {
    changed();
    removeField(m_object, field);
}

void QirDatabase::ResizeField(int field, double size) const {
    changed();
    resizeField(m_object, field, size);
}

int QirDatabase::QirTableRecordsCount() const {
    return recordsCount.read(m_object);
}

void QirDatabase::AddRecord() const {
    changed();
    addRecord(m_object);
}

void QirDatabase::RemoveRecord(int record) const {
    changed();
    removeRecord(m_object, record);
}

int QirDatabase::QIRTableRecordsPointerOut() const {
    return recordsPointer.read(m_object);
}

void QirDatabase::setQIRTableRecordsPointerOut(int record) const {
    recordsPointer.write(m_object, record);
}

QVariant QirDatabase::QIRTableRecordSetByIndex(int field) const {
    return readField(m_object, field);
}

void QirDatabase::readQIRTableRecordSetByIndex(int field, QVariant &value) const {
    readField.read(m_object, value, field);
}

void QirDatabase::setQIRTableRecordSetByIndex(int field, const QVariant &value) const {
    changed();
    writeField(m_object, field, value);
}

void QirDatabase::GetQirRecord(int record, QStringList &values) const {
    getQirRecord(m_object, record, values);
    const int fields = QirTableFieldsCount();
    if (values.size() <= fields)
        throw AutomationError(u"%1: %2 gave back %3 elements for a record of %4 fields."_s.arg(
            QString::fromLatin1(m_object.object()->metaObject()->className()), getQirRecord.signature(),
            QString::number(values.size()), QString::number(fields)));
}

void QirDatabase::BeginChanges() const {
    if (beginChanges.isIn(m_object))
        beginChanges(m_object);
    if (m_openGroups++ == 0)
        m_groupBegin = m_revision;
}

void QirDatabase::EndChanges() const {
    m_openGroups = std::max(m_openGroups - 1, 0);
    if (m_revision != m_groupBegin)
        changed(); // what was written may be undone now
    if (endChanges.isIn(m_object))
        endChanges(m_object);
}

void QirDatabase::CancelChanges() const {
    changed();
    if (!cancelChanges.isIn(m_object)) {
        EndChanges();
        return;
    }
    m_openGroups = std::max(m_openGroups - 1, 0);
    cancelChanges(m_object);
}

QString QirDatabase::LastError() const {
    return lastError.isIn(m_object) ? lastError(m_object) : QString();
}

void QirDatabase::setLeaveJournal(bool leave) const {
    if (leaveJournal.isIn(m_object))
        leaveJournal.write(m_object, leave);
}

QString QirDatabase::PasswordNote(const QString &fileName) const {
    return passwordNote.isIn(m_object) ? passwordNote(m_object, fileName) : QString();
}

bool QirDatabase::BeginLoad(const QString &fileName) const {
    return beginLoad.isIn(m_object) && beginLoad(m_object, fileName);
}

bool QirDatabase::BeginUnlock(const QString &fileName, const QString &password) const {
    // Of no use without a way to learn when it is done.
    return beginUnlock.isIn(m_object) && unlockPending.isIn(m_object) && beginUnlock(m_object, fileName, password);
}

bool QirDatabase::UnlockPending() const {
    return unlockPending.isIn(m_object) && unlockPending(m_object);
}

void QirDatabase::CancelUnlock() const {
    if (cancelUnlock.isIn(m_object))
        cancelUnlock(m_object);
}

bool QirDatabase::hasFilePlaces() const {
    return setFilePlace.isIn(m_object);
}

void QirDatabase::SetFilePlace(const QString &fileName, const QString &place) const {
    if (hasFilePlaces())
        setFilePlace(m_object, fileName, place);
}

bool QirDatabase::hasColumns() const {
    return readColumn.isIn(m_object) && writeColumn.isIn(m_object) && appendRecords.isIn(m_object) &&
           tableRevision.isIn(m_object);
}

ColumnBlock QirDatabase::ReadColumn(int field, int first, int count) const {
    const auto wrong = [&](const QString &what) -> AutomationError {
        return AutomationError(u"%1: %2 gave back what it must not: %3"_s.arg(
            QString::fromLatin1(m_object.object()->metaObject()->className()), readColumn.signature(), what));
    };
    const Result<ColumnBlock> block = ColumnBlock::fromVariant(readColumn(m_object, field, first, count));
    if (!block)
        throw wrong(block.error().text);
    if (block->count() < 1 || block->count() > count)
        throw wrong(u"%1 values, asked for 1 to %2."_s.arg(block->count()).arg(count));
    return *block;
}

void QirDatabase::RecordsReordered(const std::vector<std::uint32_t> &order) const {
    if (!recordsReordered.isIn(m_object))
        return;
    QByteArray bytes(static_cast<qsizetype>(order.size() * sizeof(std::uint32_t)), Qt::Uninitialized);
    qToLittleEndian<std::uint32_t>(order.data(), static_cast<qsizetype>(order.size()), bytes.data());
    recordsReordered(m_object, bytes);
}

void QirDatabase::WriteColumn(int field, int first, const ColumnBlock &block) const {
    changed();
    writeColumn(m_object, field, first, block.toVariant());
}

void QirDatabase::AppendRecords(int count) const {
    changed();
    appendRecords(m_object, count);
}

double QirDatabase::TableRevision() const {
    return tableRevision(m_object);
}

bool QirDatabase::hasSteps() const {
    const auto hasAll = [this](const auto &...members) { return (members.isIn(m_object) && ...); };
    return !isEmpty() &&
           hasAll(beginStep, endStep, undoStep, redoStep, undoName, redoName, stepsCount, stepsDone, stepName, stepTime,
                  stepsDropped, goToStep, changedTable, changedRecord, changedField, changedTables);
}

void QirDatabase::BeginStep(const QString &name, const QString &key) const {
    beginStep(m_object, name, key);
}

void QirDatabase::EndStep() const {
    endStep(m_object);
}

void QirDatabase::Undo() const {
    changed();
    undoStep(m_object);
}

void QirDatabase::Redo() const {
    changed();
    redoStep(m_object);
}

QString QirDatabase::UndoName() const {
    return undoName(m_object);
}

QString QirDatabase::RedoName() const {
    return redoName(m_object);
}

int QirDatabase::StepsCount() const {
    return stepsCount(m_object);
}

int QirDatabase::StepsDone() const {
    return stepsDone(m_object);
}

QString QirDatabase::StepName(int step) const {
    return stepName(m_object, step);
}

double QirDatabase::StepTime(int step) const {
    return stepTime(m_object, step);
}

bool QirDatabase::StepsDropped() const {
    return stepsDropped(m_object);
}

void QirDatabase::GoToStep(int done) const {
    changed();
    goToStep(m_object, done);
}

QString QirDatabase::ChangedTable() const {
    return changedTable(m_object);
}

int QirDatabase::ChangedRecord() const {
    return changedRecord(m_object);
}

int QirDatabase::ChangedField() const {
    return changedField(m_object);
}

int QirDatabase::ChangedTables() const {
    return changedTables(m_object);
}

void QirDatabase::RevertToSaved(const QString &name) const {
    changed();
    revertToSaved(m_object, name);
}

bool QirDatabase::hasRevert() const {
    return !isEmpty() && revertToSaved.isIn(m_object);
}

std::optional<bool> lastSaveStands(const QirDatabase &database) {
    if (database.isEmpty())
        return std::nullopt;
    const QMetaObject *metaObject = database.object()->metaObject();
    const int property = metaObject->indexOfProperty("LastSaveStands");
    return property < 0 ? std::nullopt : std::optional(metaObject->property(property).read(database.object()).toBool());
}

ChangeStep::ChangeStep(const QirDatabase &database, const QString &name, const QString &key)
    : m_database(database) {
    if (!database.hasSteps())
        return;
    database.BeginStep(name, key);
    m_object = database.object();
}

ChangeStep::~ChangeStep() {
    if (!m_object)
        return;
    try {
        m_database.EndStep();
    } catch (const std::exception &) { // the changes stand all the same
    }
}

ChangeGroup::ChangeGroup(const QirDatabase &database)
    : m_database(database)
    , m_object(database.object()) {
    m_database.BeginChanges();
}

ChangeGroup::~ChangeGroup() {
    if (!m_open || !m_object)
        return;
    try {
        m_database.CancelChanges();
    } catch (const std::exception &) { // the error that ends the command is already on its way
    }
}

void ChangeGroup::commit() {
    if (m_object)
        m_database.EndChanges();
    m_open = false;
}

} // namespace qir
