#include "db/QirDatabase.h"
#include "tests/tools/ComponentPath.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <map>
#include <set>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

// The databases that the build made.
struct SamplesTest : testing::Test {
    ComponentPath componentPath{{QStringLiteral(COMPONENT_FOLDER)}};

    static QString path(const QString &name) { return QStringLiteral(SAMPLES) + u'/' + name; }
    static QirDatabase opened(const QString &name, const QString &password = QString()) {
        QirDatabase database = QirDatabase::create();
        EXPECT_TRUE(database.LoadDtb(path(name), password)) << database.LastError().toStdString();
        return database;
    }
    static QString passwordOf(const QString &name) { return name == u"USERS.UDB"_s ? u"pump-house-7"_s : QString(); }

    /// Table names with everything in them as one text each.
    static std::map<QString, QString> contentOf(const QirDatabase &database) {
        std::map<QString, QString> content;
        for (int table = 1; table <= database.QIRTablesCount(); ++table) {
            const QString name = database.QIRTableName(table);
            database.QIRTableRecordSource(name);
            QString text;
            for (int field = 1; field <= database.QirTableFieldsCount(); ++field)
                text += database.QIRTableFieldName(field) + u'|';
            QStringList values;
            for (int record = 1; record <= database.QirTableRecordsCount(); ++record) {
                database.GetQirRecord(record, values);
                text += u'\n' + values.join(u'|');
            }
            content[name] = text;
        }
        return content;
    }
};

const QStringList names{u"PANEL.WDB"_s, u"PLANT.SDB"_s, u"PUMP-2.DDB"_s, u"PUMP.DDB"_s, u"STAFF.IDB"_s, u"USERS.UDB"_s};

TEST_F(SamplesTest, ThereIsOneOfEachKindAndASecondVersionOfOne) {
    EXPECT_EQ(QDir(QStringLiteral(SAMPLES)).entryList(QDir::Files, QDir::Name), names);
}

TEST_F(SamplesTest, EachHoldsSeveralTablesAndTogetherTheyUseEveryType) {
    std::set<int> types;
    for (const QString &name : names) {
        const QirDatabase database = opened(name, passwordOf(name));
        EXPECT_GE(database.QIRTablesCount(), 4) << name.toStdString();
        for (int table = 1; table <= database.QIRTablesCount(); ++table) {
            database.QIRTableRecordSource(database.QIRTableName(table));
            EXPECT_GE(database.QirTableRecordsCount(), 3);
            for (int field = 1; field <= database.QirTableFieldsCount(); ++field)
                types.insert(database.QIRTableFieldType(field).toInt());
        }
    }
    EXPECT_EQ(types, (std::set<int>{1, 2, 3, 4, 7, 8, 10}));
}

TEST_F(SamplesTest, OnlyTheUsersAreProtected) {
    for (const QString &name : names) {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.read(14).at(13) == '1', name == u"USERS.UDB"_s) << name.toStdString();
    }
    EXPECT_FALSE(QirDatabase::create().LoadDtb(path(u"USERS.UDB"_s), u""_s));
}

TEST_F(SamplesTest, TheTwoPumpsDifferInEverySort) {
    const auto first = contentOf(opened(u"PUMP.DDB"_s));
    const auto second = contentOf(opened(u"PUMP-2.DDB"_s));
    for (const QString &equal : {u"Curve"_s, u"Inputs"_s, u"Trend"_s})
        EXPECT_EQ(first.at(equal), second.at(equal));
    EXPECT_NE(first.at(u"Parameters"_s), second.at(u"Parameters"_s));
    EXPECT_EQ(second.at(u"Alarms"_s).count(u"Drawing"_s), 1);
    EXPECT_EQ(first.at(u"Alarms"_s).count(u"Drawing"_s), 0);
    EXPECT_TRUE(first.contains(u"Calibration"_s) && !second.contains(u"Calibration"_s));
    EXPECT_TRUE(second.contains(u"Motor"_s) && !first.contains(u"Motor"_s));
}

} // namespace

} // namespace qir
