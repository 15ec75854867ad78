#include "tests/qirtbase/contract/ContractTest.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

// The first ten characters count the header that follows, whose fourth byte tells protected files.
char protectionByte(const QByteArray &bytes) {
    bool isNumber = false;
    const int headerLength = bytes.first(10).toInt(&isNumber);
    EXPECT_TRUE(isNumber);
    EXPECT_GE(headerLength, 4);
    EXPECT_GE(bytes.size(), 10 + headerLength);
    return bytes.at(13);
}

TEST_P(ContractTest, WhatIsSavedIsLoadedAgain) {
    Content written;
    {
        const QirDatabase database = pumps();
        addBareTable(database, u"Nothing"_s);
        database.AddTable(u"Ämter \U0001F600"_s);
        addBareTable(database, u"All"_s);
        for (const int type : {1, 2, 3, 4, 7, 8, 10})
            database.AddField(u"F%1"_s.arg(type), type);
        for (int record = 1; record <= 3; ++record) {
            database.AddRecord();
            for (int field = 1; field <= 7; ++field)
                setValue(database, record, field, record == 2 ? QVariant(-1.0 / 3) : QVariant(u"7\u00e9\u20ac\t"_s));
        }
        save(database);
        written = Content::of(database);
    }
    const QirDatabase database = loaded(u"TEST.DDB"_s);
    EXPECT_EQ(Content::of(database), written);
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_P(ContractTest, AnEmptyDatabaseIsSavedAndLoaded) {
    save(made());
    EXPECT_EQ(loaded(u"TEST.DDB"_s).QIRTablesCount(), 0);
}

TEST_P(ContractTest, ALoadThatWasBegunIsTheSameLoad) {
    const QirDatabase written = pumps();
    save(written);
    for (const bool known : {true, false}) {
        const QirDatabase database = QirDatabase::create();
        (void)database.BeginLoad(path(known ? u"TEST.DDB"_s : u"MISSING.DDB"_s));
        ASSERT_TRUE(database.LoadDtb(path(u"TEST.DDB"_s), {}));
        EXPECT_EQ(Content::of(database), Content::of(written));
        EXPECT_FALSE(database.DtbHasChanged());
        EXPECT_FALSE(database.BeginLoad(path(u"TEST.DDB"_s))) << "it is in use";
    }
    const QirDatabase released = QirDatabase::create();
    (void)released.BeginLoad(path(u"TEST.DDB"_s));
}

TEST_P(ContractTest, TheFileNameIsTheOneLoadedOrSet) {
    const QirDatabase fresh = QirDatabase::create();
    EXPECT_EQ(fresh.GetDatabaseFileName(), u""_s);
    save(made());
    const QirDatabase database = loaded(u"TEST.DDB"_s);
    EXPECT_EQ(database.GetDatabaseFileName(), path(u"TEST.DDB"_s));
    EXPECT_TRUE(database.SetDatabaseFileName(path(u"OTHER.DDB"_s)));
    EXPECT_EQ(database.GetDatabaseFileName(), path(u"OTHER.DDB"_s));
}

TEST_P(ContractTest, ANewNameIsWhereTheNextSaveGoes) {
    save(pumps());
    const QByteArray before = bytesOf(path(u"TEST.DDB"_s));
    const QirDatabase database = loaded(u"TEST.DDB"_s);
    EXPECT_TRUE(database.SetDatabaseFileName(path(u"OTHER.DDB"_s)));
    database.AddTable(u"Valves"_s);
    save(database);
    EXPECT_EQ(bytesOf(path(u"TEST.DDB"_s)), before);
    EXPECT_EQ(loaded(u"OTHER.DDB"_s).QIRTablesCount(), 2);
}

TEST_P(ContractTest, SavingUnderANewNameWritesAlsoWhatDidNotChange) {
    save(pumps());
    const QirDatabase database = loaded(u"TEST.DDB"_s);
    ASSERT_TRUE(database.SetDatabaseFileName(path(u"COPY.DDB"_s)));
    save(database);
    EXPECT_EQ(Content::of(loaded(u"COPY.DDB"_s)), Content::of(database));
}

TEST_P(ContractTest, ANameThatCannotBeTakenIsAnsweredWithFalseAndChangesNothing) {
    const QirDatabase database = pumps();
    QDir(path(u"."_s)).mkdir(u"FOLDER"_s);
    for (const QString &name : {path(u"MISSING/X.DDB"_s), path(u"FOLDER"_s), u"/dev/null"_s}) {
        EXPECT_FALSE(database.SetDatabaseFileName(name)) << name.toStdString();
        EXPECT_EQ(database.GetDatabaseFileName(), path(u"TEST.DDB"_s));
    }
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_P(ContractTest, ReleasingAChangedDatabaseWritesIt) {
    {
        QirDatabase database = pumps();
        save(database);
        setValue(database, 2, 1, u"Changed"_s);
        database.release();
    }
    const QirDatabase database = loaded(u"TEST.DDB"_s);
    database.QIRTableRecordSource(u"Pumps"_s);
    EXPECT_EQ(text(database, 2, 1), u"Changed"_s);
}

TEST_P(ContractTest, ReleasingWithTheFlagFalseWritesNothing) {
    {
        const QirDatabase database = pumps();
        save(database);
    }
    const QByteArray before = bytesOf(path(u"TEST.DDB"_s));
    {
        QirDatabase database = loaded(u"TEST.DDB"_s);
        database.AddTable(u"Valves"_s);
        EXPECT_TRUE(database.DtbHasChanged());
        database.setDtbHasChanged(false);
        database.release();
    }
    EXPECT_EQ(bytesOf(path(u"TEST.DDB"_s)), before);
}

TEST_P(ContractTest, ReleasingInTheMiddleOfAGroupWithTheFlagFalseWritesNothing) {
    {
        const QirDatabase database = pumps();
        save(database);
    }
    const QByteArray before = bytesOf(path(u"TEST.DDB"_s));
    {
        QirDatabase database = loaded(u"TEST.DDB"_s);
        database.AddTable(u"Valves"_s); // changed before the group began, too
        database.BeginChanges();
        database.AddTable(u"Alarms"_s);
        database.setDtbHasChanged(false);
        database.release();
    }
    EXPECT_EQ(bytesOf(path(u"TEST.DDB"_s)), before);
}

TEST_P(ContractTest, TheFlagIsAPlainFlagThatDropsNothing) {
    const QirDatabase database = pumps();
    setValue(database, 1, 1, u"Changed"_s);
    database.setDtbHasChanged(false);
    EXPECT_FALSE(database.DtbHasChanged());
    EXPECT_EQ(text(database, 1, 1), u"Changed"_s);
    database.setDtbHasChanged(true);
    EXPECT_TRUE(database.DtbHasChanged());
}

TEST_P(ContractTest, ANewDatabaseThatWasNeverMarkedIsNotWritten) {
    {
        QirDatabase database = made();
        database.setDtbHasChanged(false);
        database.release();
    }
    EXPECT_FALSE(QFile::exists(path(u"TEST.DDB"_s)));
}

TEST_P(ContractTest, WithoutANameNothingIsWritten) {
    {
        QirDatabase database = QirDatabase::create();
        database.setDtbHasChanged(true);
        database.release();
    }
    EXPECT_TRUE(QDir(path(u"."_s)).isEmpty());
}

TEST_P(ContractTest, WhatIsNoDatabaseFileIsNotLoaded) {
    QDir(path(u"."_s)).mkdir(u"FOLDER"_s);
    writeBytes(path(u"EMPTY.DDB"_s), "");
    writeBytes(path(u"NINE.DDB"_s), "000000000");
    writeBytes(path(u"TEN.DDB"_s), "0000000004");
    writeBytes(path(u"TEXT.DDB"_s), "Nothing of a database stands in here, but it is a file of some length.");
    for (const QString &name : {path(u"MISSING.DDB"_s), path(u"FOLDER"_s), u"/dev/zero"_s, path(u"EMPTY.DDB"_s),
                                path(u"NINE.DDB"_s), path(u"TEN.DDB"_s), path(u"TEXT.DDB"_s)}) {
        QirDatabase database = QirDatabase::create();
        EXPECT_FALSE(database.LoadDtb(name, u""_s)) << name.toStdString();
        EXPECT_NE(database.LastError(), u""_s) << name.toStdString();
        EXPECT_EQ(database.GetDatabaseFileName(), u""_s) << name.toStdString();
    }
}

TEST_P(ContractTest, ATruncatedFileIsNotLoaded) {
    save(pumps());
    const QByteArray whole = bytesOf(path(u"TEST.DDB"_s));
    for (const qsizetype size : {whole.size() - 1, whole.size() / 2, qsizetype{14}, qsizetype{11}}) {
        writeBytes(path(u"CUT.DDB"_s), whole.first(size));
        const QirDatabase database = QirDatabase::create();
        EXPECT_FALSE(database.LoadDtb(path(u"CUT.DDB"_s), u""_s)) << size;
        EXPECT_NE(database.LastError(), u""_s);
    }
}

TEST_P(ContractTest, AnInstanceWhoseLoadFailedNeverWrites) {
    const QByteArray bytes = "Nothing of a database stands in here.";
    writeBytes(path(u"TEXT.DDB"_s), bytes);
    {
        QirDatabase database = QirDatabase::create();
        EXPECT_FALSE(database.LoadDtb(path(u"TEXT.DDB"_s), u""_s));
        database.setDtbHasChanged(true);
        database.release();
    }
    EXPECT_EQ(bytesOf(path(u"TEXT.DDB"_s)), bytes);
}

TEST_P(ContractTest, ASecondLoadIntoOneInstanceIsRefused) {
    save(pumps());
    const QirDatabase database = loaded(u"TEST.DDB"_s);
    EXPECT_THROW((void)database.LoadDtb(path(u"TEST.DDB"_s), u""_s), std::exception);
    EXPECT_EQ(database.QIRTablesCount(), 1);
    EXPECT_EQ(database.GetDatabaseFileName(), path(u"TEST.DDB"_s));
}

TEST_P(ContractTest, TheHeaderTellsAnOpenFileFromAProtectedOne) {
    QirDatabase database = pumps();
    save(database);
    EXPECT_NE(protectionByte(bytesOf(path(u"TEST.DDB"_s))), '1');
    database.NewPassword(u""_s, u"pass word"_s);
    save(database);
    EXPECT_EQ(protectionByte(bytesOf(path(u"TEST.DDB"_s))), '1');
    database.NewPassword(u"pass word"_s, u""_s);
    save(database);
    EXPECT_NE(protectionByte(bytesOf(path(u"TEST.DDB"_s))), '1');
}

TEST_P(ContractTest, AProtectedFileOpensWithItsPasswordOnly) {
    {
        const QirDatabase database = pumps();
        database.NewPassword(u""_s, u"pass wörd"_s);
        EXPECT_TRUE(database.DtbHasChanged());
        save(database);
    }
    for (const QString &password : {u""_s, u"pass word"_s, u"pass wörd "_s}) {
        const QirDatabase database = QirDatabase::create();
        EXPECT_FALSE(database.LoadDtb(path(u"TEST.DDB"_s), password));
        EXPECT_NE(database.LastError(), u""_s);
        EXPECT_EQ(database.GetDatabaseFileName(), u""_s);
    }
    const QirDatabase database = loaded(u"TEST.DDB"_s, u"pass wörd"_s);
    EXPECT_EQ(database.QIRTablesCount(), 1);
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_P(ContractTest, AWrongCurrentPasswordIsRefusedAndChangesNothing) {
    const QirDatabase database = pumps();
    database.NewPassword(u""_s, u"right"_s);
    save(database);
    expectRefused(database, [&] { database.NewPassword(u"wrong"_s, u"new"_s); });
    expectRefused(database, [&] { database.NewPassword(u""_s, u"new"_s); });
    save(database);
    EXPECT_EQ(loaded(u"TEST.DDB"_s, u"right"_s).QIRTablesCount(), 1);
}

TEST_P(ContractTest, AFailedSaveKeepsTheChangesAndTheOldName) {
    QDir(path(u"."_s)).mkdir(u"GONE"_s);
    const QirDatabase database = pumps();
    save(database);
    const QByteArray before = bytesOf(path(u"TEST.DDB"_s));
    ASSERT_TRUE(database.SetDatabaseFileName(path(u"GONE/NEW.DDB"_s)));
    setValue(database, 1, 1, u"Changed"_s);
    ASSERT_TRUE(QDir(path(u"GONE"_s)).removeRecursively());
    EXPECT_THAT([&] { database.SaveDtb(); }, testing::Throws<std::exception>());
    EXPECT_TRUE(database.DtbHasChanged());
    EXPECT_EQ(database.GetDatabaseFileName(), path(u"TEST.DDB"_s));
    EXPECT_EQ(bytesOf(path(u"TEST.DDB"_s)), before);
    EXPECT_EQ(text(database, 1, 1), u"Changed"_s);
    database.SaveDtb();
    const QirDatabase again = loaded(u"TEST.DDB"_s);
    again.QIRTableRecordSource(u"Pumps"_s);
    EXPECT_EQ(text(again, 1, 1), u"Changed"_s);
}

} // namespace

} // namespace qir
