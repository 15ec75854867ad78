#include "qirtbase/clsQirDatabase.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QPluginLoader>

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;
using namespace qir;

namespace {

struct Member {
    const char *signature;
    const char *result;
};

/// Every member that other programs call, as they find it.
const std::vector<Member> methods = {
    {"LoadDtb(QString,QString)", "bool"},
    {"SaveDtb()", "void"},
    {"GetDatabaseFileName()", "QString"},
    {"SetDatabaseFileName(QString)", "bool"},
    {"NewPassword(QString,QString)", "void"},
    {"LastError()", "QString"},
    {"PasswordNote(QString)", "QString"},
    {"BeginLoad(QString)", "bool"},
    {"BeginUnlock(QString,QString)", "bool"},
    {"UnlockPending()", "bool"},
    {"CancelUnlock()", "void"},
    {"SetFilePlace(QString,QString)", "void"},
    {"QIRTableName(int)", "QString"},
    {"ExistTable(QString)", "bool"},
    {"AddTable(QString)", "void"},
    {"RenameTable(int,QString)", "void"},
    {"RemoveTable(int)", "void"},
    {"QIRTableRecordSource(QString)", "void"},
    {"QIRTableFieldName(int)", "QString"},
    {"QIRTableFieldType(int)", "int"},
    {"QIRTableFieldSize(int)", "int"},
    {"AddField(QString,int)", "void"},
    {"AddField(QString,int,double)", "void"},
    {"RenameField(int,QString)", "void"},
    {"RemoveField(int)", "void"},
    {"ResizeField(int,double)", "void"},
    {"AddRecord()", "void"},
    {"RemoveRecord(int)", "void"},
    {"QIRTableRecordSetByIndex(int)", "QVariant"},
    {"QIRTableRecordSetByIndex(int,QVariant)", "void"},
    {"GetQirRecord(int,QStringList&)", "void"},
    {"ReadColumn(int,int,int)", "QVariant"},
    {"WriteColumn(int,int,QVariant)", "void"},
    {"AppendRecords(int)", "void"},
    {"TableRevision()", "double"},
    {"RecordsReordered(QVariant)", "void"},
    {"BeginChanges()", "void"},
    {"EndChanges()", "void"},
    {"CancelChanges()", "void"},
    {"BeginStep(QString,QString)", "void"},
    {"EndStep()", "void"},
    {"Undo()", "void"},
    {"Redo()", "void"},
    {"UndoName()", "QString"},
    {"RedoName()", "QString"},
    {"StepsCount()", "int"},
    {"StepsDone()", "int"},
    {"StepName(int)", "QString"},
    {"StepTime(int)", "double"},
    {"StepsDropped()", "bool"},
    {"GoToStep(int)", "void"},
    {"ChangedTable()", "QString"},
    {"ChangedRecord()", "int"},
    {"ChangedField()", "int"},
    {"ChangedTables()", "int"},
    {"RevertToSaved(QString)", "void"},
    {"Notice(QString)", "void"},
};

TEST(ComponentFace, HasEachMethodOnce) {
    const QMetaObject &face = clsQirDatabase::staticMetaObject;
    for (const auto &[signature, result] : methods) {
        const int index = face.indexOfMethod(signature);
        ASSERT_GE(index, 0) << signature;
        EXPECT_STREQ(face.method(index).typeName(), result) << signature;
    }
    EXPECT_EQ(face.methodCount() - face.methodOffset(), static_cast<int>(methods.size()));
    EXPECT_EQ(face.method(face.indexOfMethod("Notice(QString)")).methodType(), QMetaMethod::Signal);
}

TEST(ComponentFace, HasEachProperty) {
    const QMetaObject &face = clsQirDatabase::staticMetaObject;
    const auto property = [&](const char *name) { return face.property(face.indexOfProperty(name)); };
    for (const char *name : {"QIRTablesCount", "QirTableFieldsCount", "QirTableRecordsCount"}) {
        EXPECT_EQ(property(name).typeId(), QMetaType::Int) << name;
        EXPECT_FALSE(property(name).isWritable()) << name;
    }
    EXPECT_EQ(property("QIRTableRecordsPointerOut").typeId(), QMetaType::Int);
    EXPECT_TRUE(property("QIRTableRecordsPointerOut").isWritable());
    EXPECT_EQ(property("DtbHasChanged").typeId(), QMetaType::Bool);
    EXPECT_TRUE(property("DtbHasChanged").isWritable());
}

TEST(ComponentFace, ErrorsPassThroughACallByName) {
    clsQirDatabase database;
    EXPECT_THROW(database.setProperty("QIRTableRecordsPointerOut", 5), std::exception);
    EXPECT_THROW(QMetaObject::invokeMethod(&database, "RemoveTable", Q_ARG(int, 1)), std::exception);
}

/// The library as the build made it.
class Library : public testing::Test {
protected:
    Library()
        : loader(QDir(qEnvironmentVariable("QIR_COMPONENT_PATH")).filePath(u"QIRTBase"_s)) {}
    QObject *create(const QString &progId) {
        QObject *made = nullptr;
        QMetaObject::invokeMethod(loader.instance(), "CreateInstance", Q_RETURN_ARG(QObject *, made),
                                  Q_ARG(QString, progId));
        return made;
    }

    QPluginLoader loader;
};

TEST_F(Library, NamesItsInterfaceAndIdentifiersWithoutBeingLoaded) {
    const QJsonObject metadata = loader.metaData();
    EXPECT_EQ(metadata.value(u"IID"_s).toString(), u"QIR.Component/1"_s);
    EXPECT_EQ(metadata.value(u"MetaData"_s).toObject().value(u"ProgIDs"_s).toArray(),
              QJsonArray{u"QIRTBase.clsQirDatabase"_s});
    EXPECT_FALSE(loader.isLoaded());
}

TEST_F(Library, MakesInstancesThatTheCallerOwns) {
    const std::unique_ptr<QObject> first(create(u"QIRTBase.clsQirDatabase"_s));
    const std::unique_ptr<QObject> second(create(u"QIRTBase.clsQirDatabase"_s));
    ASSERT_TRUE(first && second) << loader.errorString().toStdString();
    EXPECT_NE(first.get(), second.get());
    EXPECT_EQ(first->parent(), nullptr);
    EXPECT_EQ(first->property("QIRTablesCount").toInt(), 0);
    EXPECT_TRUE(QMetaObject::invokeMethod(first.get(), "AddTable", Q_ARG(QString, u"T"_s)));
    EXPECT_EQ(first->property("QIRTablesCount").toInt(), 1);
    EXPECT_EQ(second->property("QIRTablesCount").toInt(), 0);
}

TEST_F(Library, MakesNothingForAnotherIdentifier) {
    EXPECT_EQ(create(u"QIRTBase.clsOther"_s), nullptr);
    EXPECT_EQ(create(u""_s), nullptr);
}

TEST_F(Library, ErrorsLeaveItAsStandardExceptions) {
    const std::unique_ptr<QObject> database(create(u"QIRTBase.clsQirDatabase"_s));
    ASSERT_TRUE(database);
    try {
        QMetaObject::invokeMethod(database.get(), "AddRecord");
        FAIL() << "no error";
    } catch (const std::exception &error) {
        EXPECT_STREQ(error.what(), "No table is selected.");
    }
}

} // namespace
