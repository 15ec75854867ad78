#include "tests/qirtbase/contract/ContractTest.h"

#include "platform/automation/AutomationError.h"
#include "tests/tools/fake/FakeControl.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace qir {

Content Content::of(const QirDatabase &database) {
    Content content;
    const int tables = database.QIRTablesCount();
    for (int t = 1; t <= tables; ++t) {
        Table table{database.QIRTableName(t), {}, {}};
        database.QIRTableRecordSource(table.name);
        const int fields = database.QirTableFieldsCount();
        for (int f = 1; f <= fields; ++f)
            table.fields.push_back({database.QIRTableFieldName(f), database.QIRTableFieldType(f).toInt(),
                                    database.QIRTableFieldSize(f).toInt()});
        const int records = database.QirTableRecordsCount();
        QStringList values;
        for (int r = 1; r <= records; ++r) {
            database.GetQirRecord(r, values);
            table.records.push_back(values);
        }
        content.tables.push_back(std::move(table));
    }
    return content;
}

void PrintTo(const Content &content, std::ostream *out) {
    for (const Content::Table &table : content.tables) {
        *out << "\n" << table.name.toStdString() << ":";
        for (const Content::Field &field : table.fields)
            *out << " " << field.name.toStdString() << "[" << field.type << ":" << field.size << "]";
        for (const QStringList &record : table.records)
            *out << "\n  " << record.join(u'|').toStdString();
    }
}

ContractTest::ContractTest()
    : m_columns(GetParam().columns)
    , m_componentPath({QString::fromUtf8(GetParam().folder)}) {
    FakeControl::get().setSteps(true); // for the fake among them
}

QirDatabase ContractTest::made(const QString &name) const {
    QirDatabase database = QirDatabase::create();
    EXPECT_TRUE(database.SetDatabaseFileName(path(name)));
    return database;
}

QirDatabase ContractTest::pumps(const QString &name) const {
    QirDatabase database = made(name);
    addBareTable(database, u"Pumps"_s);
    database.AddField(u"Name"_s, 10, 20);
    database.AddField(u"Speed"_s, 4);
    database.AddField(u"Head"_s, 7);
    for (int record = 1; record <= 2; ++record) {
        database.AddRecord();
        setValue(database, record, 1, u"P-%1"_s.arg(record));
        setValue(database, record, 2, 1000 + record);
        setValue(database, record, 3, 2.5 * record);
    }
    database.setQIRTableRecordsPointerOut(1);
    database.setDtbHasChanged(false);
    return database;
}

QirDatabase ContractTest::loaded(const QString &name, const QString &password) const {
    QirDatabase database = QirDatabase::create();
    EXPECT_TRUE(database.LoadDtb(path(name), password)) << database.LastError().toStdString();
    return database;
}

void ContractTest::save(const QirDatabase &database) {
    database.setDtbHasChanged(true);
    database.SaveDtb();
    database.setDtbHasChanged(false);
}

void ContractTest::addBareTable(const QirDatabase &database, const QString &name) {
    database.AddTable(name);
    database.QIRTableRecordSource(name);
    database.RemoveRecord(1);
    database.RemoveField(1);
}

QVariant ContractTest::value(const QirDatabase &database, int record, int field) {
    database.setQIRTableRecordsPointerOut(record);
    return database.QIRTableRecordSetByIndex(field);
}

void ContractTest::setValue(const QirDatabase &database, int record, int field, const QVariant &value) {
    database.setQIRTableRecordsPointerOut(record);
    database.setQIRTableRecordSetByIndex(field, value);
}

QString ContractTest::text(const QirDatabase &database, int record, int field) {
    QStringList values;
    database.GetQirRecord(record, values);
    return values.at(field);
}

QByteArray ContractTest::bytesOf(const QString &file) {
    QFile read(file);
    EXPECT_TRUE(read.open(QIODevice::ReadOnly)) << file.toStdString();
    return read.readAll();
}

void ContractTest::writeBytes(const QString &file, const QByteArray &bytes) {
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::WriteOnly)) << file.toStdString();
    ASSERT_EQ(written.write(bytes), bytes.size());
}

void ContractTest::expectRefused(const QirDatabase &database, const std::function<void()> &call) {
    const Content before = Content::of(database);
    database.QIRTableRecordSource(u"Pumps"_s);
    database.setQIRTableRecordsPointerOut(1);
    database.setDtbHasChanged(false);
    const int fields = database.QirTableFieldsCount();
    try {
        call();
        ADD_FAILURE() << "no error was raised";
    } catch (const AutomationError &error) {
        ADD_FAILURE() << "the binding failed: " << error.what();
    } catch (const std::exception &error) {
        EXPECT_STRNE(error.what(), "");
    }
    EXPECT_FALSE(database.DtbHasChanged());
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 1);
    EXPECT_EQ(database.QirTableFieldsCount(), fields) << "another table is current";
    EXPECT_EQ(Content::of(database), before);
    database.QIRTableRecordSource(u"Pumps"_s);
    database.setQIRTableRecordsPointerOut(1);
}

std::vector<ContractComponent> contractComponents() {
    return {CONTRACT_COMPONENTS};
}

std::string contractTitle(const testing::TestParamInfo<ContractComponent> &info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Component, ContractTest, testing::ValuesIn(contractComponents()), contractTitle);

} // namespace qir
