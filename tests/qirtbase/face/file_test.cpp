#include "base/FileOps.h"
#include "qirtbase/clsQirDatabase.h"
#include "tests/qirtbase/file/StorageSupport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace qir;

namespace {

class ComponentFile : public testing::Test {
protected:
    ComponentFile() { database = fresh(); }

    static std::unique_ptr<clsQirDatabase> fresh() {
        return std::make_unique<clsQirDatabase>(FileOps::system(), testOptions());
    }
    QString path(const QString &name = u"PUMPS.DDB"_s) const { return folder.filePath(name); }
    /// A saved file of one table with one record whose text is `text`.
    void makeFile(const QString &text, const QString &password = {}) {
        const auto made = fresh();
        ASSERT_TRUE(made->SetDatabaseFileName(path()));
        made->AddTable(u"Pumps"_s);
        if (!password.isEmpty())
            made->NewPassword(u""_s, password);
        write(*made, text);
        made->SaveDtb();
        made->setDtbHasChanged(false);
    }
    static void write(clsQirDatabase &target, const QString &text) {
        target.QIRTableRecordSource(u"Pumps"_s);
        target.setQIRTableRecordsPointerOut(1);
        target.QIRTableRecordSetByIndex(1, text);
    }
    /// The text in the file, loaded anew; "" and a failure when it cannot be loaded.
    QString textInFile(const QString &password = {}) const {
        const auto loaded = fresh();
        EXPECT_TRUE(loaded->LoadDtb(path(), password)) << loaded->LastError().toStdString();
        if (loaded->QIRTablesCount() == 0)
            return {};
        QStringList values;
        loaded->QIRTableRecordSource(u"Pumps"_s);
        loaded->GetQirRecord(1, values);
        return values.value(1);
    }

    QTemporaryDir folder;
    std::unique_ptr<clsQirDatabase> database;
};

TEST_F(ComponentFile, AFreshInstanceHasNoNameAndNoTables) {
    EXPECT_EQ(database->GetDatabaseFileName(), u""_s);
    EXPECT_EQ(database->QIRTablesCount(), 0);
    EXPECT_FALSE(database->DtbHasChanged());
    EXPECT_EQ(database->LastError(), u""_s);
}

TEST_F(ComponentFile, NamingAFreshInstanceMakesAnEmptyOpenDatabase) {
    EXPECT_TRUE(database->SetDatabaseFileName(path()));
    EXPECT_EQ(database->GetDatabaseFileName(), path());
    EXPECT_FALSE(database->DtbHasChanged());
    EXPECT_FALSE(QFile::exists(path()));
    database->setDtbHasChanged(true);
    database->SaveDtb();
    EXPECT_FALSE(database->DtbHasChanged());
    const auto loaded = fresh();
    EXPECT_TRUE(loaded->LoadDtb(path(), u""_s));
    EXPECT_EQ(loaded->QIRTablesCount(), 0);
}

TEST_F(ComponentFile, WhatIsSavedLoadsAgain) {
    makeFile(u"väl😀"_s);
    EXPECT_TRUE(database->LoadDtb(path(), u""_s));
    EXPECT_EQ(database->GetDatabaseFileName(), path());
    EXPECT_FALSE(database->DtbHasChanged());
    EXPECT_EQ(database->QIRTableName(1), u"Pumps"_s);
    EXPECT_EQ(database->QirTableFieldsCount(), 0); // no table is current yet
    EXPECT_EQ(textInFile(), u"väl😀"_s);
}

TEST_F(ComponentFile, AnUnchangedDatabaseIsNotWritten) {
    makeFile(u"a"_s);
    const QByteArray before = contentOf(path());
    ASSERT_TRUE(database->LoadDtb(path(), u""_s));
    database->SaveDtb();
    EXPECT_EQ(contentOf(path()), before);
}

TEST_F(ComponentFile, TheFlagAloneForcesAWrite) {
    makeFile(u"a"_s);
    ASSERT_TRUE(database->LoadDtb(path(), u""_s));
    ASSERT_TRUE(database->SetDatabaseFileName(path(u"COPY.DDB"_s)));
    database->setDtbHasChanged(true);
    database->SaveDtb();
    EXPECT_TRUE(QFile::exists(path(u"COPY.DDB"_s)));
    EXPECT_FALSE(database->DtbHasChanged());
}

TEST_F(ComponentFile, TheReleaseWritesAChangedDatabase) {
    makeFile(u"old"_s);
    ASSERT_TRUE(database->LoadDtb(path(), u""_s));
    write(*database, u"new"_s);
    database.reset();
    EXPECT_EQ(textInFile(), u"new"_s);
}

TEST_F(ComponentFile, TheReleaseDoesNotWriteWithTheFlagFalse) {
    makeFile(u"old"_s);
    const QByteArray before = contentOf(path());
    ASSERT_TRUE(database->LoadDtb(path(), u""_s));
    write(*database, u"new"_s);
    database->setDtbHasChanged(false);
    database.reset();
    EXPECT_EQ(contentOf(path()), before);
}

TEST_F(ComponentFile, TheReleaseUndoesAGroupStillOpenAndWritesTheRest) {
    makeFile(u"old"_s);
    ASSERT_TRUE(database->LoadDtb(path(), u""_s));
    write(*database, u"before the group"_s);
    database->BeginChanges();
    write(*database, u"in the group"_s);
    database->BeginChanges();
    write(*database, u"in the inner group"_s);
    database.reset();
    EXPECT_EQ(textInFile(), u"before the group"_s);
}

TEST_F(ComponentFile, TheReleaseOfAnOpenGroupAloneWritesNothing) {
    makeFile(u"old"_s);
    const QByteArray before = contentOf(path());
    ASSERT_TRUE(database->LoadDtb(path(), u""_s));
    database->BeginChanges();
    write(*database, u"in the group"_s);
    database.reset();
    EXPECT_EQ(contentOf(path()), before);
}

TEST_F(ComponentFile, WithoutANameNothingIsWritten) {
    QDir::setCurrent(folder.path());
    database->AddTable(u"T"_s);
    EXPECT_THROW(database->SaveDtb(), std::exception);
    EXPECT_TRUE(database->DtbHasChanged());
    database.reset();
    EXPECT_EQ(namesIn(folder.path()), QStringList());
}

TEST_F(ComponentFile, AFailedSaveTellsWhyAndKeepsTheChanges) {
    makeFile(u"old"_s);
    ASSERT_TRUE(database->LoadDtb(path(), u""_s));
    write(*database, u"new"_s);
    const QString hidden = folder.filePath(u"elsewhere"_s);
    QTemporaryDir other;
    const QString moved = other.filePath(u"moved"_s);
    ASSERT_TRUE(QDir().mkdir(hidden));
    ASSERT_TRUE(database->SetDatabaseFileName(hidden + u"/X.DDB"_s));
    ASSERT_TRUE(QDir().rmdir(hidden));
    try {
        database->SaveDtb();
        FAIL() << "saved into a folder that is gone";
    } catch (const std::exception &error) {
        EXPECT_NE(std::string(error.what()), "");
    }
    EXPECT_TRUE(database->DtbHasChanged());
    EXPECT_EQ(database->GetDatabaseFileName(), path()); // the old name came back
    EXPECT_EQ(textInFile(), u"old"_s);
    database->SaveDtb();
    EXPECT_EQ(textInFile(), u"new"_s);
}

TEST_F(ComponentFile, AReleaseThatCannotWriteSaysSoAndThrowsNothing) {
    makeFile(u"old"_s);
    ASSERT_TRUE(database->LoadDtb(path(), u""_s));
    write(*database, u"new"_s);
    ASSERT_TRUE(QFile::remove(path()));
    ASSERT_TRUE(QDir().rmdir(folder.path()));
    QStringList notices;
    QObject::connect(database.get(), &clsQirDatabase::Notice, [&](const QString &text) { notices.append(text); });
    database.reset();
    EXPECT_EQ(notices.size(), 1);
}

TEST_F(ComponentFile, AReleaseSurvivesAListenerThatThrows) {
    makeFile(u"old"_s);
    ASSERT_TRUE(database->LoadDtb(path(), u""_s));
    write(*database, u"new"_s);
    ASSERT_TRUE(QFile::remove(path()));
    ASSERT_TRUE(QDir().rmdir(folder.path()));
    int told = 0;
    QObject::connect(database.get(), &clsQirDatabase::Notice, [&] {
        ++told;
        throw std::runtime_error("listener");
    });
    database.reset();
    EXPECT_GE(told, 1);
}

TEST_F(ComponentFile, ALoadThatFailsTellsWhyAndHasNoName) {
    EXPECT_FALSE(database->LoadDtb(path(), u""_s));
    EXPECT_NE(database->LastError(), u""_s);
    EXPECT_TRUE(database->LastError().startsWith(path()));
    EXPECT_EQ(database->GetDatabaseFileName(), u""_s);
    EXPECT_EQ(database->QIRTablesCount(), 0);
    EXPECT_FALSE(database->DtbHasChanged());
}

TEST_F(ComponentFile, AfterALoadThatFailedTheInstanceIsOfNoUse) {
    EXPECT_FALSE(database->LoadDtb(path(), u""_s));
    EXPECT_THROW(database->AddTable(u"T"_s), std::exception);
    EXPECT_THROW(database->NewPassword(u""_s, u"x"_s), std::exception);
    EXPECT_THROW(database->BeginChanges(), std::exception);
    EXPECT_FALSE(database->SetDatabaseFileName(path()));
    database->setDtbHasChanged(true);
    EXPECT_THROW(database->SaveDtb(), std::exception);
    database.reset();
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(ComponentFile, ASecondLoadIsAnError) {
    makeFile(u"a"_s);
    ASSERT_TRUE(database->LoadDtb(path(), u""_s));
    EXPECT_THROW(database->LoadDtb(path(), u""_s), std::exception);
    EXPECT_EQ(database->QIRTablesCount(), 1);
    EXPECT_EQ(database->GetDatabaseFileName(), path());
    const auto failed = fresh();
    EXPECT_FALSE(failed->LoadDtb(path(u"MISSING.DDB"_s), u""_s));
    EXPECT_THROW(failed->LoadDtb(path(), u""_s), std::exception);
    const auto named = fresh();
    ASSERT_TRUE(named->SetDatabaseFileName(path(u"NEW.DDB"_s)));
    EXPECT_THROW(named->LoadDtb(path(), u""_s), std::exception);
    const auto edited = fresh();
    edited->AddTable(u"T"_s);
    EXPECT_THROW(edited->LoadDtb(path(), u""_s), std::exception);
}

TEST_F(ComponentFile, ABodyThatIsNoDatabaseIsRefused) {
    writeContent(path(), containerBytes("no tables in here"));
    EXPECT_FALSE(database->LoadDtb(path(), u""_s));
    EXPECT_TRUE(database->LastError().startsWith(path()));
    EXPECT_EQ(database->GetDatabaseFileName(), u""_s);
    database->setDtbHasChanged(true);
    const QByteArray before = contentOf(path());
    database.reset();
    EXPECT_EQ(contentOf(path()), before);
}

TEST_F(ComponentFile, TheReasonsAreToldApart) {
    makeFile(u"a"_s, u"secret"_s);
    const QByteArray good = contentOf(path());
    QStringList reasons;
    const auto reasonOf = [&](const QString &password) {
        const auto loaded = fresh();
        EXPECT_FALSE(loaded->LoadDtb(path(), password));
        reasons.append(loaded->LastError());
    };
    reasonOf(u"wrong"_s);
    QByteArray damaged = good;
    damaged[damaged.size() - 1] = static_cast<char>(damaged.at(damaged.size() - 1) ^ 1);
    writeContent(path(), damaged);
    reasonOf(u"secret"_s);
    writeContent(path(), good.chopped(1));
    reasonOf(u"secret"_s);
    writeContent(path(), containerBytes(QByteArray::fromHex("070100000000000000000000")));
    reasonOf(u""_s);
    QFile::remove(path());
    reasonOf(u""_s);
    EXPECT_EQ(reasons.removeDuplicates(), 0) << reasons.join(u'\n').toStdString();
}

TEST_F(ComponentFile, ANameThatCannotBeTakenChangesNothing) {
    makeFile(u"a"_s);
    ASSERT_TRUE(database->LoadDtb(path(), u""_s));
    for (const QString &name : {folder.path(), path(u"missing/X.DDB"_s), u"/dev/null"_s, u""_s}) {
        EXPECT_FALSE(database->SetDatabaseFileName(name)) << name.toStdString();
        EXPECT_EQ(database->GetDatabaseFileName(), path());
    }
    EXPECT_FALSE(database->DtbHasChanged());
}

TEST_F(ComponentFile, ANewPasswordProtectsFromTheNextSaveOn) {
    makeFile(u"a"_s);
    ASSERT_TRUE(database->LoadDtb(path(), u""_s));
    database->NewPassword(u""_s, u"secret"_s);
    EXPECT_TRUE(database->DtbHasChanged());
    EXPECT_EQ(textInFile(), u"a"_s);
    database->SaveDtb();
    EXPECT_EQ(contentOf(path()).at(13), '1');
    EXPECT_EQ(textInFile(u"secret"_s), u"a"_s);
    EXPECT_FALSE(fresh()->LoadDtb(path(), u"wrong"_s));
    EXPECT_FALSE(fresh()->LoadDtb(path(), u""_s));
}

TEST_F(ComponentFile, AnEmptyNewPasswordOpensTheFile) {
    makeFile(u"a"_s, u"secret"_s);
    ASSERT_TRUE(database->LoadDtb(path(), u"secret"_s));
    database->NewPassword(u"secret"_s, u""_s);
    database->SaveDtb();
    EXPECT_EQ(contentOf(path()).at(13), '0');
    EXPECT_EQ(textInFile(), u"a"_s);
}

TEST_F(ComponentFile, AWrongCurrentPasswordIsAnErrorThatChangesNothing) {
    makeFile(u"a"_s, u"secret"_s);
    ASSERT_TRUE(database->LoadDtb(path(), u"secret"_s));
    EXPECT_THROW(database->NewPassword(u"wrong"_s, u"other"_s), std::exception);
    EXPECT_THROW(database->NewPassword(u""_s, u"other"_s), std::exception);
    EXPECT_FALSE(database->DtbHasChanged());
    database->setDtbHasChanged(true);
    database->SaveDtb();
    EXPECT_EQ(textInFile(u"secret"_s), u"a"_s);
}

TEST_F(ComponentFile, TheSamePasswordAgainIsNoChange) {
    makeFile(u"a"_s, u"secret"_s);
    ASSERT_TRUE(database->LoadDtb(path(), u"secret"_s));
    database->NewPassword(u"secret"_s, u"secret"_s);
    EXPECT_FALSE(database->DtbHasChanged());
}

} // namespace
