#include "tests/qirtbase/file/DatabaseFileTest.h"
#include "tests/support/FailingFileOps.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

// ---- loading

TEST_F(DatabaseFileTest, AMissingFileIsMissing) {
    const LoadError error = loadError(path(u"none.ddb"_s));
    EXPECT_EQ(error.kind, LoadErrorKind::Missing);
    EXPECT_EQ(error.text, path(u"none.ddb"_s) + u": no such file or folder"_s);
}

TEST_F(DatabaseFileTest, AFileInAMissingFolderIsMissing) {
    EXPECT_EQ(loadError(path(u"none/none.ddb"_s)).kind, LoadErrorKind::Missing);
}

TEST_F(DatabaseFileTest, AFileBelowAFileIsMissing) {
    make(u"a.ddb"_s, "body");
    EXPECT_EQ(loadError(path(u"a.ddb/b.ddb"_s)).kind, LoadErrorKind::Missing);
}

TEST_F(DatabaseFileTest, ANameWhosePlaceWasToldIsNotSearchedFor) {
    for (const QString &folder : {u"Data"_s, u"data"_s})
        ASSERT_TRUE(QDir(m_folder.path()).mkdir(folder));
    make(u"Data/a.ddb"_s, "one");
    make(u"data/a.ddb"_s, "two");
    const QString name = path(u"DATA/A.DDB"_s);
    DatabaseFile file(FileOps::system(), testOptions());
    file.setPlace(name, path(u"data/a.ddb"_s));
    EXPECT_EQ(file.load(name, {}), QByteArray("two"));
    EXPECT_EQ(file.fileName(), name);
    ASSERT_TRUE(file.save("three"));
    EXPECT_EQ(bodyOf(path(u"data/a.ddb"_s)), "three");
    EXPECT_EQ(bodyOf(path(u"Data/a.ddb"_s)), "one");

    const QString next = path(u"DATA/NEW.DDB"_s);
    EXPECT_FALSE(file.setFileName(next));
    file.setPlace(next, path(u"Data/NEW.DDB"_s));
    ASSERT_TRUE(file.setFileName(next));
    ASSERT_TRUE(file.save("four"));
    EXPECT_EQ(bodyOf(path(u"Data/NEW.DDB"_s)), "four");
}

TEST_F(DatabaseFileTest, AFileBelowAFolderThatMayOnlyBePassedIsReachedWhereItsPlaceWasTold) {
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"Data"_s));
    const QString place = make(u"Data/a.ddb"_s, "one");
    const QString name = path(u"DATA/A.DDB"_s);
    HookedFileOps ops([](FileCall call, const std::string &) -> std::optional<SystemError> {
        return call == FileCall::Entries ? std::optional(SystemError{EACCES}) : std::nullopt;
    });
    DatabaseFile untold(ops, testOptions());
    EXPECT_FALSE(untold.load(name, {}));
    DatabaseFile told(ops, testOptions());
    told.setPlace(name, place);
    EXPECT_EQ(told.load(name, {}), QByteArray("one"));
}

TEST_F(DatabaseFileTest, WhatAPasswordCostsIsReadWhereThePlaceWasTold) {
    const QString place = make(u"a.ddb"_s, "one", u"secret"_s);
    writeContent(path(u"A.ddb"_s), containerBytes("two")); // made by its name it would be the other one
    const QString name = path(u"A.DDB"_s);
    DatabaseFile file(FileOps::system(), testOptions());
    EXPECT_FALSE(file.passwordCosts(name));
    file.setPlace(name, place);
    EXPECT_TRUE(file.passwordCosts(name));
    EXPECT_TRUE(file.prepareKey(name, u"secret"_s));
    EXPECT_EQ(file.load(name, u"secret"_s), QByteArray("one"));
}

TEST_F(DatabaseFileTest, AnEmptyNameIsMissing) {
    EXPECT_EQ(loadError({}).kind, LoadErrorKind::Missing);
}

TEST_F(DatabaseFileTest, AFolderIsNotAFile) {
    EXPECT_EQ(loadError(m_folder.path()).kind, LoadErrorKind::NotAFile);
}

TEST_F(DatabaseFileTest, ADeviceIsNotAFileAndIsNotOpened) {
    for (const char *device : {"/dev/zero", "/dev/null", "/dev/tty"}) {
        HookedFileOps ops({});
        ops.onOpen = [](unsigned) -> std::optional<SystemError> { throw std::logic_error("opened"); };
        DatabaseFile file(ops, testOptions());
        const auto body = file.load(QString::fromLatin1(device), {});
        ASSERT_FALSE(body);
        EXPECT_EQ(body.error().kind, LoadErrorKind::NotAFile);
    }
}

TEST_F(DatabaseFileTest, APipeIsNotAFileAndDoesNotBlock) {
    ASSERT_EQ(::mkfifo((folder() + "/pipe").c_str(), 0600), 0);
    EXPECT_EQ(loadError(path(u"pipe"_s)).kind, LoadErrorKind::NotAFile);
}

TEST_F(DatabaseFileTest, AFileThatMayNotBeReadIsUnreadable) {
    const QString file = make(u"a.ddb"_s, "body");
    HookedFileOps ops([](FileCall call, const std::string &) -> std::optional<SystemError> {
        return call == FileCall::OpenAt ? std::optional(SystemError{EACCES}) : std::nullopt;
    });
    DatabaseFile reader(ops, testOptions());
    const auto body = reader.load(file, {});
    ASSERT_FALSE(body);
    EXPECT_EQ(body.error().kind, LoadErrorKind::Unreadable);
    EXPECT_EQ(body.error().text, file + u": it cannot be opened: no permission"_s);
}

TEST_F(DatabaseFileTest, ADiskErrorWhileReadingIsUnreadable) {
    const QString file = make(u"a.ddb"_s, "body");
    HookedFileOps ops([](FileCall call, const std::string &) -> std::optional<SystemError> {
        return call == FileCall::ReadAt ? std::optional(SystemError{EIO}) : std::nullopt;
    });
    DatabaseFile reader(ops, testOptions());
    EXPECT_EQ(reader.load(file, {}).error().kind, LoadErrorKind::Unreadable);
}

TEST_F(DatabaseFileTest, AnEmptyFileIsEmpty) {
    writeContent(path(u"a.ddb"_s), {});
    EXPECT_EQ(loadError(path(u"a.ddb"_s)).kind, LoadErrorKind::Empty);
}

TEST_F(DatabaseFileTest, AFileOfNineBytesIsNoDatabaseOrTruncated) {
    writeContent(path(u"a.ddb"_s), "123 56789");
    EXPECT_EQ(loadError(path(u"a.ddb"_s)).kind, LoadErrorKind::NotADatabase);
    writeContent(path(u"b.ddb"_s), "000000019");
    EXPECT_EQ(loadError(path(u"b.ddb"_s)).kind, LoadErrorKind::Truncated);
}

TEST_F(DatabaseFileTest, ATextIsNotADatabase) {
    writeContent(path(u"a.ddb"_s), QByteArray(10000, 'x'));
    EXPECT_EQ(loadError(path(u"a.ddb"_s)).kind, LoadErrorKind::NotADatabase);
    writeContent(path(u"b.ddb"_s), "0000000192" + QByteArray(10000, 'x'));
    EXPECT_EQ(loadError(path(u"b.ddb"_s)).kind, LoadErrorKind::NotADatabase);
}

TEST_F(DatabaseFileTest, AProtectedFileNeedsItsPassword) {
    const QString file = make(u"a.ddb"_s, "body", u"secret"_s);
    EXPECT_EQ(loadError(file, u"Secret"_s).kind, LoadErrorKind::WrongPassword);
    EXPECT_EQ(loadError(file, u"Secret"_s).text, file + u": the password does not open it"_s);
    EXPECT_EQ(loadError(file).text, file + u": it is protected and needs a password"_s);
    EXPECT_EQ(bodyOf(file, u"secret"_s), "body");
}

TEST_F(DatabaseFileTest, ALinkIsFollowed) {
    make(u"a.ddb"_s, "body");
    ASSERT_TRUE(QFile::link(u"a.ddb"_s, path(u"link.ddb"_s)));
    EXPECT_EQ(bodyOf(path(u"link.ddb"_s)), "body");
}

TEST_F(DatabaseFileTest, ALinkToItselfIsRefused) {
    ASSERT_TRUE(QFile::link(u"loop.ddb"_s, path(u"loop.ddb"_s)));
    EXPECT_EQ(loadError(path(u"loop.ddb"_s)).kind, LoadErrorKind::Unreadable);
}

TEST_F(DatabaseFileTest, ANameIsReachedIgnoringCaseAndKeptAsGiven) {
    QDir(m_folder.path()).mkdir(u"Data"_s);
    make(u"Data/Pump.ddb"_s, "body");
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.load(path(u"DATA/PUMP.DDB"_s), {}));
    EXPECT_EQ(file.fileName(), path(u"DATA/PUMP.DDB"_s));
    ASSERT_TRUE(file.save("new"));
    EXPECT_EQ(bodyOf(path(u"Data/Pump.ddb"_s)), "new");
    EXPECT_EQ(namesIn(path(u"Data"_s)), QStringList{u"Pump.ddb"_s});
}

TEST_F(DatabaseFileTest, TwoNamesThatDifferInCaseOnlyAreAnErrorWithBoth) {
    writeContent(path(u"Pump.ddb"_s), containerBytes("one"));
    writeContent(path(u"pump.ddb"_s), containerBytes("two"));
    const LoadError error = loadError(path(u"PUMP.DDB"_s));
    EXPECT_EQ(error.kind, LoadErrorKind::AmbiguousName);
    EXPECT_TRUE(error.text.contains(u"'Pump.ddb' and 'pump.ddb'"_s)) << error.text.toStdString();
    EXPECT_EQ(bodyOf(path(u"pump.ddb"_s)), "two");
    DatabaseFile file(FileOps::system(), testOptions());
    EXPECT_FALSE(file.setFileName(path(u"PUMP.DDB"_s)));
}

TEST_F(DatabaseFileTest, AFailedLoadNeverWrites) {
    writeContent(path(u"a.ddb"_s), "text");
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_FALSE(file.load(path(u"a.ddb"_s), {}));
    EXPECT_TRUE(file.save("body"));
    EXPECT_FALSE(file.setFileName(path(u"b.ddb"_s)));
    EXPECT_FALSE(file.changePassword({}, u"x"_s));
    EXPECT_EQ(contentOf(path(u"a.ddb"_s)), "text");
    EXPECT_EQ(namesIn(m_folder.path()), QStringList{u"a.ddb"_s});
}

TEST_F(DatabaseFileTest, ABodyThatMadeNoSenseLeavesTheFileAlone) {
    make(u"a.ddb"_s, "nonsense");
    const QByteArray before = contentOf(path(u"a.ddb"_s));
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.load(path(u"a.ddb"_s), {}));
    file.fail();
    EXPECT_EQ(file.fileName(), QString());
    EXPECT_TRUE(file.save("body"));
    EXPECT_EQ(contentOf(path(u"a.ddb"_s)), before);
}

// ---- names

TEST_F(DatabaseFileTest, ANewDatabaseWithoutANameIsNotWritten) {
    DatabaseFile file(FileOps::system(), testOptions());
    file.createNew();
    EXPECT_TRUE(file.save("body"));
    EXPECT_TRUE(namesIn(m_folder.path()).isEmpty());
}

TEST_F(DatabaseFileTest, NamesThatCannotBeTakenAreRefusedAndTheOldOneStays) {
    make(u"a.ddb"_s, "body");
    ASSERT_EQ(::mkfifo((folder() + "/pipe").c_str(), 0600), 0);
    QDir(m_folder.path()).mkdir(u"sub"_s);
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.load(path(u"a.ddb"_s), {}));
    for (const QString &name : {QString(), m_folder.path(), path(u"sub"_s), path(u"sub/"_s), path(u"none/b.ddb"_s),
                                path(u"pipe"_s), path(u"a.ddb/b.ddb"_s), u"/dev/null"_s, path(QString(300, u'x')),
                                path(u"a\0b"_s), u"/proc/self/b.ddb"_s, path(u".."_s)})
        EXPECT_FALSE(file.setFileName(name)) << name.toStdString();
    EXPECT_EQ(file.fileName(), path(u"a.ddb"_s));
    EXPECT_TRUE(file.save("new"));
    EXPECT_EQ(bodyOf(path(u"a.ddb"_s)), "new");
}

TEST_F(DatabaseFileTest, TakingANameLeavesNoTrace) {
    DatabaseFile file(FileOps::system(), testOptions());
    EXPECT_TRUE(file.setFileName(path(u"new.ddb"_s)));
    EXPECT_EQ(file.fileName(), path(u"new.ddb"_s));
    EXPECT_TRUE(namesIn(m_folder.path()).isEmpty());
}

TEST_F(DatabaseFileTest, AFolderThatTakesNoFileIsRefused) {
    HookedFileOps ops({});
    ops.onOpen = [](unsigned flags) { return flags & O_RDWR ? std::optional(SystemError{EACCES}) : std::nullopt; };
    DatabaseFile file(ops, testOptions());
    EXPECT_FALSE(file.setFileName(path(u"new.ddb"_s)));
    EXPECT_EQ(file.fileName(), QString());
}

TEST_F(DatabaseFileTest, ANewNameGetsItsOwnFileAndIdentity) {
    make(u"a.ddb"_s, "one");
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.load(path(u"a.ddb"_s), {}));
    ASSERT_TRUE(file.setFileName(path(u"b.ddb"_s)));
    EXPECT_EQ(file.fileName(), path(u"b.ddb"_s));
    ASSERT_TRUE(file.save("two"));
    EXPECT_EQ(bodyOf(path(u"a.ddb"_s)), "one");
    EXPECT_EQ(bodyOf(path(u"b.ddb"_s)), "two");
    const auto headerOf = [](const QByteArray &content) {
        return decodeHeader(content.first(static_cast<qsizetype>(layout::lengthDigits + layout::headerLength)))->header;
    };
    const FileHeader one = headerOf(contentOf(path(u"a.ddb"_s)));
    const FileHeader two = headerOf(contentOf(path(u"b.ddb"_s)));
    EXPECT_NE(one.fileId, two.fileId);
    EXPECT_EQ(two.generation, one.generation + 1);
}

TEST_F(DatabaseFileTest, AChosenNameReplacesWhatStandsThere) {
    writeContent(path(u"b.ddb"_s), "some text");
    make(u"c.ddb"_s, "another database");
    make(u"a.ddb"_s, "one");
    for (const QString &name : {u"b.ddb"_s, u"c.ddb"_s}) {
        DatabaseFile file(FileOps::system(), testOptions());
        ASSERT_TRUE(file.load(path(u"a.ddb"_s), {}));
        ASSERT_TRUE(file.setFileName(path(name)));
        ASSERT_TRUE(file.save("two"));
        EXPECT_EQ(bodyOf(path(name)), "two");
    }
    EXPECT_EQ(namesIn(m_folder.path()), (QStringList{u"a.ddb"_s, u"b.ddb"_s, u"c.ddb"_s}));
}

TEST_F(DatabaseFileTest, ANewFileGetsTheNameAsGivenInTheFolderReached) {
    QDir(m_folder.path()).mkdir(u"data"_s);
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.setFileName(path(u"DATA/NEW.DDB"_s)));
    ASSERT_TRUE(file.save("body"));
    EXPECT_EQ(namesIn(path(u"data"_s)), QStringList{u"NEW.DDB"_s});
}

TEST_F(DatabaseFileTest, WhenTheFirstSaveUnderANewNameFailsTheOldNameComesBack) {
    make(u"a.ddb"_s, "one");
    QDir(m_folder.path()).mkdir(u"sub"_s);
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.load(path(u"a.ddb"_s), {}));
    ASSERT_TRUE(file.setFileName(path(u"sub/b.ddb"_s)));
    ASSERT_TRUE(QDir(m_folder.path()).rmdir(u"sub"_s));
    const auto saved = file.save("two");
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error().text, path(u"sub/b.ddb"_s) + u": could not be saved: its folder is gone"_s);
    EXPECT_EQ(file.fileName(), path(u"a.ddb"_s));
    EXPECT_TRUE(file.save("three"));
    EXPECT_EQ(bodyOf(path(u"a.ddb"_s)), "three");
}

TEST_F(DatabaseFileTest, OnceSavedUnderANewNameALaterFailureKeepsIt) {
    QDir(m_folder.path()).mkdir(u"sub"_s);
    make(u"a.ddb"_s, "one");
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.load(path(u"a.ddb"_s), {}));
    ASSERT_TRUE(file.setFileName(path(u"sub/b.ddb"_s)));
    ASSERT_TRUE(file.save("two"));
    ASSERT_TRUE(QDir(path(u"sub"_s)).removeRecursively());
    EXPECT_FALSE(file.save("three"));
    EXPECT_EQ(file.fileName(), path(u"sub/b.ddb"_s));
}

TEST_F(DatabaseFileTest, ARelativeNameStaysWhereItWasWhenTheCurrentFolderChanges) {
    const QString before = QDir::currentPath();
    QDir::setCurrent(m_folder.path());
    make(u"a.ddb"_s, "one");
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.load(u"a.ddb"_s, {}));
    QDir::setCurrent(before);
    EXPECT_TRUE(file.save("two"));
    EXPECT_EQ(file.fileName(), u"a.ddb"_s);
    EXPECT_EQ(bodyOf(path(u"a.ddb"_s)), "two");
}

} // namespace
} // namespace qir
