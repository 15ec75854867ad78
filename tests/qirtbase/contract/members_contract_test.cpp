#include "tests/qirtbase/contract/ContractTest.h"

#include <QMetaMethod>
#include <QMetaProperty>

#include <map>
#include <set>
#include <string>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

const std::set<std::string> knownTypes{"bool", "int", "double", "QString", "QVariant"};
const std::set<std::string> methods{"LoadDtb",
                                    "SaveDtb",
                                    "GetDatabaseFileName",
                                    "SetDatabaseFileName",
                                    "NewPassword",
                                    "QIRTableName",
                                    "ExistTable",
                                    "AddTable",
                                    "RenameTable",
                                    "RemoveTable",
                                    "AddField",
                                    "RenameField",
                                    "RemoveField",
                                    "ResizeField",
                                    "QIRTableFieldName",
                                    "QIRTableFieldType",
                                    "QIRTableFieldSize",
                                    "AddRecord",
                                    "RemoveRecord",
                                    "GetQirRecord",
                                    "BeginChanges",
                                    "EndChanges",
                                    "LastError",
                                    "QIRTableRecordSource",
                                    "CancelChanges"};
const std::set<std::string> properties{"DtbHasChanged", "QIRTablesCount", "QirTableFieldsCount", "QirTableRecordsCount",
                                       "QIRTableRecordsPointerOut"};
const std::string readAndWritten = "QIRTableRecordSetByIndex"; // the one indexed property that is written

TEST_P(ContractTest, EachMethodIsThereOnceWithTypesThatTheConventionKnows) {
    const QirDatabase database = QirDatabase::create();
    const QMetaObject *metaObject = database.object()->metaObject();
    std::map<std::string, int> seen;
    for (int i = QObject::staticMetaObject.methodCount(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        const std::string name = method.name().toStdString();
        if (!methods.contains(name) && name != readAndWritten)
            continue;
        EXPECT_NE(method.methodType(), QMetaMethod::Signal) << name;
        if (!(method.attributes() & QMetaMethod::Cloned)) // the same with a default argument
            ++seen[name];
        const std::string result = method.typeName();
        EXPECT_TRUE(result == "void" || knownTypes.contains(result)) << name << " gives " << result;
        for (const QByteArray &type : method.parameterTypes())
            EXPECT_TRUE(knownTypes.contains(type.toStdString()) || (name == "GetQirRecord" && type == "QStringList&"))
                << name << " takes " << type.constData();
    }
    for (const std::string &name : methods)
        EXPECT_EQ(seen[name], 1) << name;
    EXPECT_EQ(seen[readAndWritten], 2);
}

TEST_P(ContractTest, EachPropertyIsThereOnceWithATypeThatTheConventionKnows) {
    const QirDatabase database = QirDatabase::create();
    const QMetaObject *metaObject = database.object()->metaObject();
    std::map<std::string, int> seen;
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        if (!properties.contains(property.name()))
            continue;
        ++seen[property.name()];
        EXPECT_TRUE(knownTypes.contains(property.typeName())) << property.name();
        EXPECT_TRUE(property.isReadable()) << property.name();
    }
    for (const std::string &name : properties)
        EXPECT_EQ(seen[name], 1) << name;
}

TEST_P(ContractTest, NoticeIsASignal) {
    const QirDatabase database = QirDatabase::create();
    const QMetaObject *metaObject = database.object()->metaObject();
    const int index = metaObject->indexOfSignal("Notice(QString)");
    EXPECT_GE(index, 0);
}

} // namespace

} // namespace qir
