#include "tests/tools/fake/FakeComponent.h"

#include "base/Collation.h"
#include "base/FileNames.h"
#include "tests/tools/fake/FakeRecorder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr qsizetype mostTables = 4096;
constexpr qsizetype mostFields = 1024;
constexpr int defaultTextSize = 50;

QString reached(const QString &fileName) {
    return reachIgnoringCase(fileName).value_or(fileName);
}

} // namespace

FakeComponent::FakeComponent()
    : m_instance(FakeRecorder::self().created(this)) {}

FakeComponent::~FakeComponent() {
    FakeRecorder::self().released(this, m_instance);
    const bool wanted = m_content.changed;
    if (!m_groups.isEmpty())
        m_content = m_groups.first().before;
    try {
        if (wanted && m_content.changed)
            write();
    } catch (const std::exception &) { // nobody is left to tell
    }
}

void FakeComponent::called(const char *member, const QVariantList &arguments) const {
    beforeCall();
    try {
        FakeRecorder::self().called(member, arguments, m_instance);
    } catch (...) {
        failGroups();
        throw;
    }
}

// An error in a group undoes the group when it ends.
void FakeComponent::failGroups() const {
    for (Group &group : m_groups)
        group.failed = true;
}

void FakeComponent::raise(const QString &text) const {
    failGroups();
    throw std::runtime_error(text.toStdString());
}

int FakeComponent::checkedIndex(int number, qsizetype count, const char *what) const {
    if (number < 1 || number > count)
        raise(u"There is no %1 %2."_s.arg(QString::fromLatin1(what)).arg(number));
    return number - 1;
}

QString FakeComponent::checkedName(const QString &name) const {
    if (const QString reason = fake::nameProblem(name); !reason.isEmpty())
        raise(reason);
    return fake::wellFormed(name);
}

// --- the file ---

bool FakeComponent::dtbHasChanged() const {
    called("DtbHasChanged");
    return m_content.changed;
}

void FakeComponent::setDtbHasChanged(bool changed) {
    called("DtbHasChanged", {changed});
    m_content.changed = changed;
}

bool FakeComponent::fails(const QString &why) {
    m_lastError = why;
    m_state = State::Failed;
    return false;
}

bool FakeComponent::LoadDtb(const QString &fileName, const QString &password) {
    called("LoadDtb", {fileName, password});
    if (m_state != State::Created)
        raise(u"This instance has loaded a database already."_s);
    const QString path = reached(fileName);
    QFile file(path);
    if (!QFileInfo(path).isFile())
        return fails(QFileInfo::exists(path) ? u"this is no regular file"_s : u"there is no such file"_s);
    if (!file.open(QIODevice::ReadOnly))
        return fails(file.errorString());
    const std::optional<fake::Database> database = fake::decode(file.readAll(), password, m_lastError);
    if (!database)
        return fails(m_lastError);
    m_state = State::Loaded;
    m_content = {*database, -1, 0, false};
    m_fileName = m_savedFileName = fileName;
    return true;
}

void FakeComponent::write() {
    if (m_state != State::Loaded || m_fileName.isEmpty())
        return;
    for (fake::Table &table : m_content.database.tables) {
        if (table.fields.isEmpty())
            table.records.clear(); // no file keeps them
    }
    if (m_content.table >= 0 && current().records.isEmpty())
        m_content.record = 0;
    QSaveFile file(reached(m_fileName));
    const QByteArray bytes = fake::encode(m_content.database);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        m_fileName = m_savedFileName.isEmpty() ? m_fileName : m_savedFileName;
        raise(u"The database cannot be saved: %1."_s.arg(file.errorString()));
    }
    m_savedFileName = m_fileName;
    m_content.changed = false;
}

void FakeComponent::SaveDtb() {
    called("SaveDtb");
    if (m_content.changed)
        write();
}

QString FakeComponent::GetDatabaseFileName() const {
    called("GetDatabaseFileName");
    return FakeRecorder::self().hidesFileName() ? QString() : m_fileName;
}

bool FakeComponent::SetDatabaseFileName(const QString &fileName) {
    called("SetDatabaseFileName", {fileName});
    const QFileInfo info(reached(fileName));
    if (FakeRecorder::self().refusesFileName() || m_state == State::Failed || fileName.isEmpty() ||
        !info.dir().exists() || (info.exists() && !info.isFile()))
        return false;
    m_state = State::Loaded;
    m_fileName = fileName;
    return true;
}

void FakeComponent::NewPassword(const QString &current, const QString &replacement) {
    called("NewPassword", {current, replacement});
    if (current != m_content.database.password)
        raise(u"The current password is wrong."_s);
    if (replacement == current)
        return;
    m_content.database.password = replacement;
    m_content.changed = true;
}

QString FakeComponent::LastError() const {
    called("LastError");
    return m_lastError;
}

// --- tables ---

int FakeComponent::tablesCount() const {
    called("QIRTablesCount");
    return static_cast<int>(m_content.database.tables.size());
}

int FakeComponent::tableIndex(int table) const {
    return checkedIndex(table, m_content.database.tables.size(), "table");
}

int FakeComponent::findTable(const QString &name) const {
    const QString key = collationKey(name);
    const auto &tables = m_content.database.tables;
    const auto found = std::ranges::find(tables, key, &fake::Table::key);
    return found == tables.end() ? -1 : static_cast<int>(found - tables.begin());
}

QString FakeComponent::freeTableName(const QString &name, int except) const {
    const QString kept = checkedName(name);
    const int found = findTable(kept);
    if (found >= 0 && found != except && !FakeRecorder::self().allowsDuplicates())
        raise(u"There is a table \"%1\" already."_s.arg(kept));
    return kept;
}

QString FakeComponent::QIRTableName(int table) const {
    called("QIRTableName", {table});
    return m_content.database.tables.at(tableIndex(table)).name;
}

bool FakeComponent::ExistTable(const QString &name) const {
    called("ExistTable", {name});
    return findTable(name) >= 0;
}

void FakeComponent::AddTable(const QString &name) {
    called("AddTable", {name});
    const QString kept = freeTableName(name, -1);
    if (m_content.database.tables.size() >= mostTables)
        raise(u"There are %1 tables already."_s.arg(mostTables));
    fake::Table table = fake::namedTable(kept);
    table.fields += {u"Field1"_s, 10, defaultTextSize};
    table.records += QVariantList{QString()};
    m_content.database.tables += table;
    m_content.changed = true;
}

void FakeComponent::RenameTable(int table, const QString &name) {
    called("RenameTable", {table, name});
    const int index = tableIndex(table);
    const QString kept = freeTableName(name, index);
    fake::Table &renamed = m_content.database.tables[index];
    if (renamed.name == kept)
        return;
    renamed.name = kept;
    renamed.key = collationKey(kept);
    m_content.changed = true;
}

void FakeComponent::RemoveTable(int table) {
    called("RemoveTable", {table});
    const int index = tableIndex(table);
    m_content.database.tables.removeAt(index);
    if (m_content.table == index) {
        m_content.table = -1;
        m_content.record = 0;
    } else if (m_content.table > index) {
        --m_content.table;
    }
    m_content.changed = true;
}

void FakeComponent::QIRTableRecordSource(const QString &name) {
    called("QIRTableRecordSource", {name});
    const int found = findTable(name);
    if (found < 0)
        raise(u"There is no table \"%1\"."_s.arg(name));
    m_content.table = found;
    m_content.record = 0;
}

const fake::Table &FakeComponent::current() const {
    if (m_content.table < 0)
        raise(u"No table is chosen."_s);
    return m_content.database.tables.at(m_content.table);
}

fake::Table &FakeComponent::current() {
    std::as_const(*this).current();
    return m_content.database.tables[m_content.table];
}

// --- fields ---

int FakeComponent::fieldsCount() const {
    called("QirTableFieldsCount");
    return m_content.table < 0 ? 0 : static_cast<int>(current().fields.size());
}

int FakeComponent::fieldIndex(int field) const {
    return checkedIndex(field, current().fields.size(), "field");
}

QString FakeComponent::freeFieldName(const QString &name, int except) const {
    const QString kept = checkedName(name);
    const QString key = collationKey(kept);
    const auto &fields = current().fields;
    for (int i = 0; i < fields.size(); ++i)
        if (i != except && collationKey(fields.at(i).name) == key)
            raise(u"There is a field \"%1\" already."_s.arg(kept));
    return kept;
}

QString FakeComponent::QIRTableFieldName(int field) const {
    called("QIRTableFieldName", {field});
    return current().fields.at(fieldIndex(field)).name;
}

int FakeComponent::QIRTableFieldType(int field) const {
    called("QIRTableFieldType", {field});
    return current().fields.at(fieldIndex(field)).type;
}

int FakeComponent::QIRTableFieldSize(int field) const {
    called("QIRTableFieldSize", {field});
    return current().fields.at(fieldIndex(field)).size;
}

void FakeComponent::AddField(const QString &name, int type, const QVariant &size) {
    called("AddField", size.isValid() ? QVariantList{name, type, size} : QVariantList{name, type});
    fake::Table &table = current();
    const QString kept = freeFieldName(name, -1);
    if (!fake::isType(type))
        raise(u"There is no type %1."_s.arg(type));
    if (table.fields.size() >= mostFields)
        raise(u"There are %1 fields already."_s.arg(mostFields));
    const fake::Field field{kept, type, fake::fittedSize(type, size.isValid() ? size.toDouble() : defaultTextSize)};
    table.fields += field;
    for (QVariantList &record : table.records)
        record += fake::fitted(field, QString());
    m_content.changed = true;
}

void FakeComponent::RenameField(int field, const QString &name) {
    called("RenameField", {field, name});
    const int index = fieldIndex(field);
    const QString kept = freeFieldName(name, index);
    QString &old = current().fields[index].name;
    if (old == kept)
        return;
    old = kept;
    m_content.changed = true;
}

void FakeComponent::RemoveField(int field) {
    called("RemoveField", {field});
    const int index = fieldIndex(field);
    fake::Table &table = current();
    table.fields.removeAt(index);
    for (QVariantList &record : table.records)
        record.removeAt(index);
    m_content.changed = true;
}

void FakeComponent::ResizeField(int field, double size) {
    called("ResizeField", {field, size});
    const int index = fieldIndex(field);
    fake::Table &table = current();
    fake::Field &resized = table.fields[index];
    const int fittedSize = fake::fittedSize(resized.type, size);
    if (resized.size == fittedSize)
        return;
    resized.size = fittedSize;
    for (QVariantList &record : table.records)
        record[index] = fake::fitted(resized, record.at(index));
    m_content.changed = true;
}

// --- records ---

int FakeComponent::recordsCount() const {
    called("QirTableRecordsCount");
    return m_content.table < 0 ? 0 : static_cast<int>(current().records.size());
}

int FakeComponent::recordIndex(int record) const {
    return checkedIndex(record, current().records.size(), "record");
}

int FakeComponent::recordsPointer() const {
    called("QIRTableRecordsPointerOut");
    return m_content.record;
}

void FakeComponent::setRecordsPointer(int record) {
    called("QIRTableRecordsPointerOut", {record});
    if (record != 0 || m_content.table < 0)
        recordIndex(record);
    m_content.record = record;
}

void FakeComponent::AddRecord() {
    called("AddRecord");
    if (current().records.size() >= mostRecords)
        raise(u"There are %1 records already."_s.arg(mostRecords));
    appendRecord();
}

void FakeComponent::appendRecord() {
    fake::Table &table = current();
    QVariantList record;
    for (const fake::Field &field : std::as_const(table.fields))
        record += fake::fitted(field, QString());
    table.records += record;
    m_content.changed = true;
}

void FakeComponent::RemoveRecord(int record) {
    called("RemoveRecord", {record});
    const int index = recordIndex(record);
    current().records.removeAt(index);
    if (m_content.record == record)
        m_content.record = 0;
    else if (m_content.record > record)
        --m_content.record;
    m_content.changed = true;
}

QVariant FakeComponent::QIRTableRecordSetByIndex(int field) const {
    called("QIRTableRecordSetByIndex", {field});
    return current().records.at(recordIndex(m_content.record)).at(fieldIndex(field));
}

void FakeComponent::QIRTableRecordSetByIndex(int field, const QVariant &value) {
    called("QIRTableRecordSetByIndex", {field, value});
    const int record = recordIndex(m_content.record);
    const int index = fieldIndex(field);
    const QVariant kept = fake::fitted(current().fields.at(index), value);
    if (fake::same(std::as_const(*this).current().records.at(record).at(index), kept))
        return;
    current().records[record][index] = kept;
    m_content.changed = true;
}

void FakeComponent::GetQirRecord(int record, QStringList &values) const {
    called("GetQirRecord", {record});
    const QVariantList &found = current().records.at(recordIndex(record));
    values.resize(found.size() + 1);
    values[0] = QString();
    for (qsizetype k = 0; k < found.size(); ++k)
        values[k + 1] = fake::textOf(found.at(k));
}

// --- groups ---

void FakeComponent::BeginChanges() {
    called("BeginChanges");
    m_groups += Group{m_content, false};
}

void FakeComponent::EndChanges() {
    called("EndChanges");
    if (m_groups.isEmpty())
        raise(u"No group of changes is open."_s);
    const Group group = m_groups.takeLast();
    if (group.failed)
        m_content = group.before;
}

void FakeComponent::CancelChanges() {
    called("CancelChanges");
    if (m_groups.isEmpty())
        raise(u"No group of changes is open."_s);
    m_content = m_groups.takeLast().before;
}

} // namespace qir
