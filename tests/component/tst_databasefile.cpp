#include "tests/component/StorageSupport.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

class DatabaseFileTest : public testing::Test {
protected:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    /// A file with this body, made in the ordinary way.
    QString make(const QString &name, const QByteArray &body, const QString &password = {}) {
        DatabaseFile file(FileOps::system(), testOptions());
        EXPECT_TRUE(file.setFileName(path(name)));
        EXPECT_TRUE(file.changePassword({}, password));
        EXPECT_TRUE(file.save(body));
        return path(name);
    }
    QByteArray bodyOf(const QString &file, const QString &password = {}) {
        DatabaseFile reader(FileOps::system(), testOptions());
        const auto body = reader.load(file, password);
        return body ? *body : QByteArray("ERROR: ") + body.error().text.toUtf8();
    }
    LoadError loadError(const QString &file, const QString &password = {}) {
        DatabaseFile reader(FileOps::system(), testOptions());
        const auto body = reader.load(file, password);
        EXPECT_FALSE(body) << file.toStdString();
        EXPECT_FALSE(reader.setFileName(path(u"never.ddb"_s))) << "a load that failed leaves nothing to save";
        EXPECT_EQ(reader.fileName(), QString());
        return body ? LoadError{} : body.error();
    }
    std::string folder() const { return systemPath(m_folder.path()); }

    QTemporaryDir m_folder;
};

mode_t modeOf(const QString &path) {
    struct stat status {};
    EXPECT_EQ(::stat(systemPath(path).c_str(), &status), 0);
    return status.st_mode & 07777;
}

ino_t inodeOf(const QString &path) {
    struct stat status {};
    EXPECT_EQ(::stat(systemPath(path).c_str(), &status), 0);
    return status.st_ino;
}

/// Sets the umask for a test's time.
class Umask {
public:
    explicit Umask(mode_t mask)
        : m_old(::umask(mask)) {}
    ~Umask() { ::umask(m_old); }

private:
    mode_t m_old;
};

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
        return decodeHeader(content.first(qsizetype(layout::lengthDigits + layout::headerLength)))->header;
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

// ---- saving

TEST_F(DatabaseFileTest, SavesFollowOneAnotherAndLeaveNothingBeside) {
    const QString file = make(u"a.ddb"_s, "0");
    DatabaseFile database(FileOps::system(), testOptions());
    ASSERT_TRUE(database.load(file, {}));
    for (int i = 1; i <= 5; ++i) {
        ASSERT_TRUE(database.save(QByteArray::number(i)));
        EXPECT_EQ(bodyOf(file), QByteArray::number(i));
    }
    EXPECT_EQ(namesIn(m_folder.path()), QStringList{u"a.ddb"_s});
}

TEST_F(DatabaseFileTest, WhatIsKeptOfTheHeaderIsWrittenBack) {
    FileHeader header;
    header.optionalBits = 4;
    header.extensions = QByteArray::fromHex("01000200abcd");
    writeContent(path(u"a.ddb"_s), containerBytes("one", {}, header));
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.load(path(u"a.ddb"_s), {}));
    ASSERT_TRUE(file.save("two"));
    const auto read = readBytes(contentOf(path(u"a.ddb"_s)));
    EXPECT_EQ(read->header.extensions, header.extensions);
    EXPECT_EQ(read->header.optionalBits, 4U);
    EXPECT_EQ(read->header.generation, 2U);
    EXPECT_EQ(read->body, "two");
}

TEST_F(DatabaseFileTest, ANewOpenFileFollowsTheUmaskAndAProtectedOneIsPrivate) {
    const Umask mask(022);
    EXPECT_EQ(modeOf(make(u"open.ddb"_s, "x")), 0644U);
    EXPECT_EQ(modeOf(make(u"protected.ddb"_s, "x", u"p"_s)), 0600U);
}

TEST_F(DatabaseFileTest, ModeAndGroupOfTheOldFileAreKept) {
    const QString file = make(u"a.ddb"_s, "x");
    ASSERT_EQ(::chmod(systemPath(file).c_str(), 0664), 0);
    const bool asRoot = ::geteuid() == 0;
    if (asRoot) {
        ASSERT_EQ(::chown(systemPath(file).c_str(), gid_t(-1), 12345), 0);
    }
    const Umask mask(077);
    DatabaseFile database(FileOps::system(), testOptions());
    ASSERT_TRUE(database.load(file, {}));
    ASSERT_TRUE(database.save("y"));
    EXPECT_EQ(modeOf(file), 0664U);
    struct stat status {};
    ASSERT_EQ(::stat(systemPath(file).c_str(), &status), 0);
    if (asRoot) {
        EXPECT_EQ(status.st_gid, 12345U);
    }
}

TEST_F(DatabaseFileTest, ALinkKeepsBeingALink) {
    QDir(m_folder.path()).mkdir(u"sub"_s);
    make(u"sub/a.ddb"_s, "one");
    ASSERT_TRUE(QFile::link(u"sub/a.ddb"_s, path(u"link.ddb"_s)));
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.load(path(u"link.ddb"_s), {}));
    ASSERT_TRUE(file.save("two"));
    EXPECT_TRUE(QFileInfo(path(u"link.ddb"_s)).isSymLink());
    EXPECT_EQ(bodyOf(path(u"sub/a.ddb"_s)), "two");
    EXPECT_EQ(namesIn(m_folder.path()), (QStringList{u"link.ddb"_s, u"sub"_s}));
}

TEST_F(DatabaseFileTest, ALinkToNothingIsWhereANewFileGoes) {
    ASSERT_TRUE(QFile::link(u"target.ddb"_s, path(u"link.ddb"_s)));
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.setFileName(path(u"link.ddb"_s)));
    ASSERT_TRUE(file.save("one"));
    EXPECT_TRUE(QFileInfo(path(u"link.ddb"_s)).isSymLink());
    EXPECT_EQ(bodyOf(path(u"target.ddb"_s)), "one");
}

TEST_F(DatabaseFileTest, AFileThatWasRemovedIsWrittenAgain) {
    const QString file = make(u"a.ddb"_s, "one");
    DatabaseFile database(FileOps::system(), testOptions());
    ASSERT_TRUE(database.load(file, {}));
    ASSERT_TRUE(QFile::remove(file));
    ASSERT_TRUE(database.save("two"));
    EXPECT_EQ(bodyOf(file), "two");
}

TEST_F(DatabaseFileTest, AFolderThatVanishedIsAnErrorAndSavingWorksOnceItIsBack) {
    QDir(m_folder.path()).mkdir(u"sub"_s);
    const QString file = make(u"sub/a.ddb"_s, "one");
    DatabaseFile database(FileOps::system(), testOptions());
    ASSERT_TRUE(database.load(file, {}));
    ASSERT_TRUE(QDir(m_folder.path()).rename(u"sub"_s, u"away"_s));
    EXPECT_EQ(database.save("two").error().text, file + u": could not be saved: its folder is gone"_s);
    EXPECT_EQ(bodyOf(path(u"away/a.ddb"_s)), "one");
    ASSERT_TRUE(QDir(m_folder.path()).rename(u"away"_s, u"sub"_s));
    EXPECT_TRUE(database.save("two"));
    EXPECT_EQ(bodyOf(file), "two");
}

TEST_F(DatabaseFileTest, AFolderRemovedInTheMiddleOfASaveIsAnError) {
    QDir(m_folder.path()).mkdir(u"sub"_s);
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        if (call == FileCall::Sync)
            QDir(path(u"sub"_s)).removeRecursively();
        return std::nullopt;
    });
    DatabaseFile database(ops, testOptions());
    ASSERT_TRUE(database.setFileName(path(u"sub/a.ddb"_s)));
    const auto saved = database.save("one");
    ASSERT_FALSE(saved);
    EXPECT_TRUE(saved.error().text.endsWith(u"no such file or folder"_s)) << saved.error().text.toStdString();
}

TEST_F(DatabaseFileTest, ReadOnlyAndFullDisksAreErrorsInWords) {
    const QString file = make(u"a.ddb"_s, "one");
    const std::pair<int, QString> cases[] = {{EROFS, u"the disk is read-only"_s},
                                             {ENOSPC, u"the disk is full"_s},
                                             {EDQUOT, u"the disk quota is used up"_s},
                                             {EACCES, u"no permission"_s}};
    for (const auto &[number, words] : cases) {
        HookedFileOps ops({});
        ops.onOpen = [number = number](unsigned flags) {
            return flags & O_RDWR ? std::optional(SystemError{number}) : std::nullopt;
        };
        DatabaseFile database(ops, testOptions());
        ASSERT_TRUE(database.load(file, {}));
        const auto saved = database.save("two");
        ASSERT_FALSE(saved);
        EXPECT_EQ(saved.error().text, file + u": could not be saved: "_s + words);
        EXPECT_EQ(bodyOf(file), "one");
    }
}

// ---- file systems that know less

struct Lack {
    const char *name;
    bool unnamedFiles;
    bool exchange;
    bool noReplace;
    bool hardLinks;
    bool allocation;
};

class DatabaseFileOn : public DatabaseFileTest, public testing::WithParamInterface<Lack> {
protected:
    DatabaseFileOn()
        : m_ops([](FileCall call, const std::string &) -> std::optional<SystemError> {
            if (call == FileCall::LinkFile && !GetParam().hardLinks)
                return SystemError{EPERM};
            if (call == FileCall::Allocate && !GetParam().allocation)
                return SystemError{EOPNOTSUPP};
            return std::nullopt;
        }) {
        m_ops.onOpen = [](unsigned flags) {
            const bool unnamed = (flags & O_TMPFILE) == unsigned(O_TMPFILE);
            return unnamed && !GetParam().unnamedFiles ? std::optional(SystemError{EOPNOTSUPP}) : std::nullopt;
        };
        m_ops.onRename = [](unsigned flags) {
            const bool lacks = (flags == RENAME_EXCHANGE && !GetParam().exchange) ||
                               (flags == RENAME_NOREPLACE && !GetParam().noReplace);
            return lacks ? std::optional(SystemError{EINVAL}) : std::nullopt;
        };
    }

    HookedFileOps m_ops;
};

INSTANTIATE_TEST_SUITE_P(Lacking, DatabaseFileOn,
                         testing::Values(Lack{"Nothing", true, true, true, true, true},
                                         Lack{"Exchange", true, false, true, true, true},
                                         Lack{"UnnamedFiles", false, true, true, true, true},
                                         Lack{"HardLinks", false, true, true, false, true},
                                         Lack{"NearlyAll", false, false, false, false, false}),
                         [](const auto &lack) { return lack.param.name; });

TEST_P(DatabaseFileOn, NewFilesAndLaterSavesWorkAndLeaveNothingBeside) {
    DatabaseFile file(m_ops, testOptions());
    ASSERT_TRUE(file.setFileName(path(u"a.ddb"_s)));
    for (const char *body : {"one", "two", "three"}) {
        const auto saved = file.save(body);
        ASSERT_TRUE(saved) << saved.error().text.toStdString();
        EXPECT_EQ(bodyOf(path(u"a.ddb"_s)), body);
    }
    EXPECT_EQ(namesIn(m_folder.path()), QStringList{u"a.ddb"_s});
}

TEST_P(DatabaseFileOn, AnotherProgramsSaveIsAConflict) {
    const QString name = make(u"a.ddb"_s, "one");
    DatabaseFile file(m_ops, testOptions());
    ASSERT_TRUE(file.load(name, {}));
    writeContent(name, containerBytes("theirs"));
    EXPECT_FALSE(file.save("mine"));
    EXPECT_EQ(bodyOf(name), "theirs");
    EXPECT_EQ(namesIn(m_folder.path()), QStringList{u"a.ddb"_s});
}

TEST_P(DatabaseFileOn, AFileMadeUnderTheNewNameMeanwhileIsNotReplaced) {
    bool written = false;
    HookedFileOps ops(
        [&](FileCall call, const std::string &) -> std::optional<SystemError> {
            if (call == FileCall::Sync && !std::exchange(written, true))
                writeContent(path(u"a.ddb"_s), "theirs");
            return std::nullopt;
        },
        m_ops);
    DatabaseFile file(ops, testOptions());
    ASSERT_TRUE(file.setFileName(path(u"a.ddb"_s)));
    const auto saved = file.save("mine");
    ASSERT_FALSE(saved);
    EXPECT_TRUE(saved.error().text.contains(u"another program has just made"_s));
    EXPECT_EQ(contentOf(path(u"a.ddb"_s)), "theirs");
    EXPECT_EQ(namesIn(m_folder.path()), QStringList{u"a.ddb"_s});
}

// ---- conflicts

TEST_F(DatabaseFileTest, AnotherProgramsVersionIsNotOverwritten) {
    const QString name = make(u"a.ddb"_s, "one");
    for (const QByteArray &theirs :
         {containerBytes("theirs"), containerBytes("theirs", u"p"_s), QByteArray("text"), QByteArray()}) {
        DatabaseFile file(FileOps::system(), testOptions());
        ASSERT_TRUE(file.load(name, {}));
        const QByteArray before = contentOf(name);
        writeContent(name, theirs);
        const auto saved = file.save("mine");
        ASSERT_FALSE(saved);
        EXPECT_EQ(saved.error().text, name + u": was changed by another program since it was opened; use Save As"_s);
        EXPECT_EQ(contentOf(name), theirs.isNull() ? QByteArray("") : theirs);
        writeContent(name, before);
    }
}

TEST_F(DatabaseFileTest, TheOtherPanesVersionIsNotOverwritten) {
    const QString name = make(u"a.ddb"_s, "one");
    DatabaseFile left(FileOps::system(), testOptions());
    DatabaseFile right(FileOps::system(), testOptions());
    ASSERT_TRUE(left.load(name, {}));
    ASSERT_TRUE(right.load(name, {}));
    ASSERT_TRUE(left.save("left"));
    const auto saved = right.save("right");
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error().text, name + u": was changed in the other pane since it was opened; use Save As"_s);
    EXPECT_EQ(bodyOf(name), "left");
    EXPECT_TRUE(left.save("left again"));
}

TEST_F(DatabaseFileTest, AfterAConflictSaveAsUnderTheSameNameKeepsTheOtherVersion) {
    const QString name = make(u"a.ddb"_s, "one");
    QStringList notices;
    DatabaseFileOptions options = testOptions();
    options.notice = [&](const QString &text) { notices.append(text); };
    DatabaseFile mine(FileOps::system(), options);
    DatabaseFile theirs(FileOps::system(), testOptions());
    ASSERT_TRUE(mine.load(name, {}));
    ASSERT_TRUE(theirs.load(name, {}));
    ASSERT_TRUE(theirs.save("theirs"));
    ASSERT_FALSE(mine.save("mine"));
    ASSERT_TRUE(mine.setFileName(name));
    ASSERT_TRUE(mine.save("mine"));
    EXPECT_EQ(bodyOf(name), "mine");
    const QStringList names = namesIn(m_folder.path());
    ASSERT_EQ(names.size(), 2);
    EXPECT_TRUE(names[1].startsWith(u"a.ddb (conflict "_s)) << names[1].toStdString();
    EXPECT_EQ(bodyOf(path(names[1])), "theirs");
    ASSERT_EQ(notices.size(), 1);
    EXPECT_TRUE(notices[0].contains(names[1]));
}

TEST_F(DatabaseFileTest, ASaveThatSlipsInBetweenIsKeptAsAConflictCopy) {
    const QString name = make(u"a.ddb"_s, "one");
    bool slipped = false;
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        if (call == FileCall::LinkFile && !std::exchange(slipped, true)) {
            DatabaseFile other(FileOps::system(), testOptions());
            EXPECT_TRUE(other.load(name, {}));
            EXPECT_TRUE(other.save("theirs"));
        }
        return std::nullopt;
    });
    QStringList notices;
    DatabaseFileOptions options = testOptions();
    options.notice = [&](const QString &text) { notices.append(text); };
    DatabaseFile file(ops, options);
    ASSERT_TRUE(file.load(name, {}));
    EXPECT_TRUE(file.save("mine"));
    EXPECT_EQ(bodyOf(name), "mine");
    const QStringList names = namesIn(m_folder.path());
    ASSERT_EQ(names.size(), 2);
    EXPECT_EQ(bodyOf(path(names[1])), "theirs");
    EXPECT_EQ(notices.size(), 1);
    EXPECT_TRUE(file.save("mine again"));
}

QByteArray otherVersion(const QByteArray &body) {
    FileHeader header;
    header.fileId.fill(3);
    header.saveId.fill(7);
    return containerBytes(body, {}, header);
}

/// Another program writes another version over the bytes of a file: the same size, in place, with the time set back.
void rewriteUnseen(const QString &name, const QByteArray &bytes) {
    const std::string path = systemPath(name);
    struct stat before {};
    ASSERT_EQ(::stat(path.c_str(), &before), 0);
    ASSERT_EQ(before.st_size, bytes.size());
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_EQ(file.write(bytes), bytes.size());
    file.close();
    const struct timespec times[] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

TEST_F(DatabaseFileTest, AVersionThatSlipsInWithTheSameSizeAndTimeIsKeptAsAConflictCopy) {
    const QString name = make(u"a.ddb"_s, "one");
    bool slipped = false;
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        if (call == FileCall::LinkFile && !std::exchange(slipped, true))
            rewriteUnseen(name, otherVersion("two"));
        return std::nullopt;
    });
    QStringList notices;
    DatabaseFileOptions options = testOptions();
    options.notice = [&](const QString &text) { notices.append(text); };
    DatabaseFile file(ops, options);
    ASSERT_TRUE(file.load(name, {}));
    EXPECT_TRUE(file.save("mine"));
    EXPECT_EQ(bodyOf(name), "mine");
    const QStringList names = namesIn(m_folder.path());
    ASSERT_EQ(names.size(), 2) << "the other version is lost";
    EXPECT_EQ(bodyOf(path(names[1])), "two");
    ASSERT_EQ(notices.size(), 1);
    EXPECT_TRUE(notices[0].contains(u"another program"_s));
}

TEST_F(DatabaseFileTest, AVersionThatSlipsInWithTheSameSizeAndTimeIsNotOverwrittenInPlace) {
    const QString name = make(u"a.ddb"_s, "one");
    ASSERT_EQ(::link(systemPath(name).c_str(), systemPath(path(u"b.ddb"_s)).c_str()), 0);
    bool slipped = false;
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        if (call == FileCall::Lock && !std::exchange(slipped, true))
            rewriteUnseen(name, otherVersion("two"));
        return std::nullopt;
    });
    DatabaseFile file(ops, testOptions());
    ASSERT_TRUE(file.load(name, {}));
    slipped = false; // a lock of the load does not count
    const auto saved = file.save("mine");
    ASSERT_FALSE(saved);
    EXPECT_TRUE(saved.error().text.contains(u"was changed by another program"_s)) << saved.error().text.toStdString();
    EXPECT_EQ(bodyOf(name), "two");
}

/// On a file system without exchanges somebody writes between the two looks at what stands there.
TEST_F(DatabaseFileTest, AVersionThatSlipsInWithTheSameSizeAndTimeIsNotReplacedWithoutAnExchange) {
    const QString name = make(u"a.ddb"_s, "one");
    HookedFileOps ops({});
    ops.onRename = [&](unsigned flags) -> std::optional<SystemError> {
        if (flags != RENAME_EXCHANGE)
            return std::nullopt;
        rewriteUnseen(name, otherVersion("two"));
        return SystemError{EINVAL};
    };
    DatabaseFile file(ops, testOptions());
    ASSERT_TRUE(file.load(name, {}));
    const auto saved = file.save("mine");
    ASSERT_FALSE(saved);
    EXPECT_TRUE(saved.error().text.contains(u"was changed by another program"_s)) << saved.error().text.toStdString();
    EXPECT_EQ(bodyOf(name), "two");
}

TEST_F(DatabaseFileTest, WhatCannotBeLookedAtAgainIsKeptWithoutBlamingAnybody) {
    const QString name = make(u"a.ddb"_s, "one");
    struct Case {
        FileCall failing;
        bool replaceMeant;
    };
    for (const auto &[failing, replaceMeant] : {Case{FileCall::StatusAt, false}, Case{FileCall::OpenAt, false},
                                                Case{FileCall::StatusAt, true}, Case{FileCall::OpenAt, true}}) {
        bool exchanged = false;
        HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
            return exchanged && call == failing ? std::optional(SystemError{EIO}) : std::nullopt;
        });
        ops.onRename = [&](unsigned flags) -> std::optional<SystemError> {
            exchanged = exchanged || flags == RENAME_EXCHANGE;
            return std::nullopt;
        };
        QStringList notices;
        DatabaseFileOptions options = testOptions();
        options.notice = [&](const QString &text) { notices.append(text); };
        DatabaseFile file(ops, options);
        ASSERT_TRUE(file.load(name, {}));
        ASSERT_TRUE(!replaceMeant || file.setFileName(name));
        const QByteArray before = bodyOf(name);
        (void)file.save("two");
        EXPECT_TRUE(exchanged);
        EXPECT_EQ(bodyOf(name), "two");
        const QStringList kept = namesIn(m_folder.path()).filter(u"(conflict "_s);
        ASSERT_EQ(kept.size(), 1);
        EXPECT_EQ(bodyOf(path(kept[0])), before);
        const QString told = notices.join(u'\n');
        EXPECT_TRUE(told.contains(u"could not be looked at"_s)) << told.toStdString();
        EXPECT_FALSE(told.contains(u"another program"_s)) << told.toStdString();
        QFile::remove(path(kept[0]));
    }
}

TEST_F(DatabaseFileTest, AConflictCopyOfAVeryLongNameStillGetsAName) {
    const QString stem = u"\u00e9"_s.repeated(125); // 250 bytes
    const QString name = make(stem + u".ddb"_s, "one");
    DatabaseFile mine(FileOps::system(), testOptions());
    DatabaseFile theirs(FileOps::system(), testOptions());
    ASSERT_TRUE(mine.load(name, {}));
    ASSERT_TRUE(theirs.load(name, {}));
    ASSERT_TRUE(theirs.save("theirs"));
    ASSERT_TRUE(mine.setFileName(name));
    ASSERT_TRUE(mine.save("mine"));
    EXPECT_EQ(namesIn(m_folder.path()).filter(u"(conflict "_s).size(), 1);
}

TEST_F(DatabaseFileTest, AFileRemovedJustBeforeTheExchangeIsWrittenAgain) {
    const QString name = make(u"a.ddb"_s, "one");
    HookedFileOps ops({});
    ops.onRename = [&](unsigned) -> std::optional<SystemError> {
        QFile::remove(name);
        return std::nullopt;
    };
    DatabaseFile file(ops, testOptions());
    ASSERT_TRUE(file.load(name, {}));
    const auto saved = file.save("two");
    EXPECT_TRUE(saved) << saved.error().text.toStdString();
    EXPECT_EQ(bodyOf(name), "two");
    EXPECT_EQ(namesIn(m_folder.path()), QStringList{u"a.ddb"_s});
}

TEST_F(DatabaseFileTest, AnOldVersionThatCannotBeRemovedIsTold) {
    const QString name = make(u"a.ddb"_s, "one");
    HookedFileOps ops([](FileCall call, const std::string &) -> std::optional<SystemError> {
        return call == FileCall::UnlinkAt ? std::optional(SystemError{EPERM}) : std::nullopt;
    });
    QStringList notices;
    DatabaseFileOptions options = testOptions();
    options.notice = [&](const QString &text) { notices.append(text); };
    DatabaseFile file(ops, options);
    ASSERT_TRUE(file.load(name, {}));
    EXPECT_TRUE(file.save("two"));
    EXPECT_EQ(bodyOf(name), "two");
    EXPECT_EQ(notices.size(), 1);
}

TEST_F(DatabaseFileTest, WhatDoesNotReadBackIsNotPublished) {
    const QString name = make(u"a.ddb"_s, "one");
    class : public ForwardingFileOps { // a disk that loses a bit on the way
        SystemResult<std::size_t> doWriteAt(int file, QByteArrayView bytes, std::uint64_t offset) override {
            QByteArray changed = bytes.toByteArray();
            changed.back() = char(changed.back() ^ 1);
            return ForwardingFileOps::doWriteAt(file, changed, offset);
        }
    } ops;
    DatabaseFile file(ops, testOptions());
    ASSERT_TRUE(file.load(name, {}));
    const ino_t before = inodeOf(name);
    const auto saved = file.save("two");
    ASSERT_FALSE(saved);
    EXPECT_TRUE(saved.error().text.contains(u"does not read back"_s));
    EXPECT_EQ(inodeOf(name), before);
    EXPECT_EQ(bodyOf(name), "one");
    EXPECT_EQ(namesIn(m_folder.path()), QStringList{u"a.ddb"_s});
}

// ---- passwords

TEST_F(DatabaseFileTest, APasswordIsSetChangedAndTakenAway) {
    const QString name = make(u"a.ddb"_s, "one");
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.load(name, {}));
    EXPECT_FALSE(file.isProtected());
    ASSERT_TRUE(file.changePassword({}, u"first"_s));
    EXPECT_TRUE(file.isProtected());
    EXPECT_EQ(bodyOf(name), "one"); // until the save nothing on disk changes
    ASSERT_TRUE(file.save("two"));
    EXPECT_EQ(bodyOf(name, u"first"_s), "two");
    EXPECT_EQ(contentOf(name).at(13), '1');

    ASSERT_TRUE(file.changePassword(u"first"_s, u"second"_s));
    ASSERT_TRUE(file.save("three"));
    EXPECT_EQ(loadError(name, u"first"_s).kind, LoadErrorKind::WrongPassword);
    EXPECT_EQ(bodyOf(name, u"second"_s), "three");

    ASSERT_TRUE(file.changePassword(u"second"_s, {}));
    EXPECT_FALSE(file.isProtected());
    ASSERT_TRUE(file.save("four"));
    EXPECT_EQ(bodyOf(name), "four");
    EXPECT_EQ(contentOf(name).at(13), '0');
}

TEST_F(DatabaseFileTest, AWrongCurrentPasswordChangesNothing) {
    const QString name = make(u"a.ddb"_s, "one", u"right"_s);
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.load(name, u"right"_s));
    for (const QString &wrong : {u"wrong"_s, QString(), u"Right"_s, u"right "_s}) {
        const auto changed = file.changePassword(wrong, u"new"_s);
        ASSERT_FALSE(changed);
        EXPECT_EQ(changed.error().text, u"the current password is wrong"_s);
    }
    ASSERT_TRUE(file.save("two"));
    EXPECT_EQ(bodyOf(name, u"right"_s), "two");
}

TEST_F(DatabaseFileTest, AnOpenFilesCurrentPasswordIsTheEmptyOne) {
    const QString name = make(u"a.ddb"_s, "one");
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.load(name, u"ignored"_s));
    EXPECT_FALSE(file.changePassword(u"ignored"_s, u"new"_s));
    EXPECT_TRUE(file.changePassword({}, {}));
    EXPECT_FALSE(file.isProtected());
}

TEST_F(DatabaseFileTest, SavingAProtectedFileDerivesNoKey) {
    const QString name = make(u"a.ddb"_s, "one", u"p"_s);
    DatabaseFileOptions options = testOptions();
    int derivations = 0;
    options.deriveKey = [&, derive = options.deriveKey](const SecretBytes &password, const KdfParameters &parameters) {
        ++derivations;
        return derive(password, parameters);
    };
    DatabaseFile file(FileOps::system(), options);
    ASSERT_TRUE(file.load(name, u"p"_s));
    EXPECT_EQ(derivations, 1);
    ASSERT_TRUE(file.save("two"));
    ASSERT_TRUE(file.save("three"));
    EXPECT_EQ(derivations, 1);
    EXPECT_EQ(bodyOf(name, u"p"_s), "three");
}

TEST_F(DatabaseFileTest, ALoadedFileKeepsItsCosts) {
    FileHeader header;
    writeContent(path(u"a.ddb"_s), containerBytes("one", u"p"_s, header));
    DatabaseFileOptions options = testOptions();
    options.costs = {2, 9 * 1024};
    DatabaseFile file(FileOps::system(), options);
    ASSERT_TRUE(file.load(path(u"a.ddb"_s), u"p"_s));
    ASSERT_TRUE(file.save("two"));
    EXPECT_EQ(readBytes(contentOf(path(u"a.ddb"_s)), u"p"_s)->header.kdf.costs.passes, 1U);
    ASSERT_TRUE(file.changePassword(u"p"_s, u"q"_s));
    ASSERT_TRUE(file.save("three"));
    const auto read = readBytes(contentOf(path(u"a.ddb"_s)), u"q"_s);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->header.kdf.costs.passes, 2U);
    EXPECT_EQ(read->header.kdf.costs.memoryKiB, 9U * 1024);
}

TEST_F(DatabaseFileTest, EverySaveSealsAnew) {
    const QString name = make(u"a.ddb"_s, "same", u"p"_s);
    DatabaseFile file(FileOps::system(), testOptions());
    ASSERT_TRUE(file.load(name, u"p"_s));
    const QByteArray before = contentOf(name);
    ASSERT_TRUE(file.save("same"));
    const QByteArray after = contentOf(name);
    EXPECT_EQ(before.size(), after.size());
    EXPECT_NE(before.last(21), after.last(21));
    EXPECT_NE(before.mid(42, 32), after.mid(42, 32));
}

} // namespace
} // namespace qir
