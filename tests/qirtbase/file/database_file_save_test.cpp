#include "tests/qirtbase/file/DatabaseFileTest.h"
#include "tests/support/FailingFileOps.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

mode_t modeOf(const QString &path) {
    struct stat status {};
    EXPECT_EQ(::stat(systemPath(path).c_str(), &status), 0);
    return status.st_mode & 07777;
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

TEST_F(DatabaseFileTest, TheLastSaveStandsUntilSomebodyElseWrites) {
    const QString file = make(u"a.ddb"_s, "0");
    const QString other = make(u"b.ddb"_s, "0");
    DatabaseFile database(FileOps::system(), testOptions());
    ASSERT_TRUE(database.load(file, {}));
    EXPECT_FALSE(database.lastSaveStands()) << "nothing was saved yet";
    const auto standsAfter = [&](const std::function<void()> &act) {
        EXPECT_TRUE(database.setFileName(file));
        EXPECT_TRUE(database.save("1"));
        EXPECT_TRUE(database.lastSaveStands());
        act();
        return database.lastSaveStands();
    };
    const QByteArray otherContent = contentOf(other);
    EXPECT_TRUE(standsAfter([] {}));
    EXPECT_TRUE(standsAfter([&] { bodyOf(file); }));
    EXPECT_FALSE(standsAfter([&] { writeContent(file, contentOf(file) + "x"); }));
    EXPECT_FALSE(standsAfter([&] { writeContent(file, otherContent); }));
    EXPECT_FALSE(standsAfter([&] { EXPECT_EQ(::rename(systemPath(other).c_str(), systemPath(file).c_str()), 0); }));
    EXPECT_FALSE(standsAfter([&] { EXPECT_TRUE(QFile::remove(file)); }));
    EXPECT_TRUE(standsAfter([&] { EXPECT_EQ(::link(systemPath(file).c_str(), systemPath(other).c_str()), 0); }));
    EXPECT_TRUE(standsAfter([] {})) << "written in place, since it has another name";
    EXPECT_FALSE(standsAfter([&] { writeContent(other, otherContent); })) << "by that name";
}

TEST_F(DatabaseFileTest, WhatStoodThereWhenTheNameWasChosenGivesWayAndWhatCameLaterIsKept) {
    const QString file = make(u"a.ddb"_s, "0");
    const QString chosen = m_folder.filePath(u"b.ddb"_s);
    const auto copies = [&] { return namesIn(m_folder.path()).filter(u"(conflict "_s); };
    const auto saveAs = [&](const std::function<void()> &before, const std::function<void()> &between) {
        DatabaseFile database(FileOps::system(), testOptions());
        EXPECT_TRUE(database.load(file, {}));
        before();
        EXPECT_TRUE(database.setFileName(chosen));
        between();
        EXPECT_TRUE(database.save("1"));
        EXPECT_EQ(bodyOf(chosen), "1");
    };
    saveAs([&] { writeContent(chosen, "somebody's words"); }, [] {});
    EXPECT_EQ(copies(), QStringList());
    saveAs([&] { writeContent(chosen, "somebody's words"); }, [&] { writeContent(chosen, "and more of them"); });
    ASSERT_EQ(copies().size(), 1);
    const QString copy = m_folder.filePath(copies().first());
    EXPECT_EQ(contentOf(copy), "and more of them");
    ASSERT_TRUE(QFile::remove(copy));
    saveAs([&] { ASSERT_TRUE(QFile::remove(chosen)); }, [&] { writeContent(chosen, "a file that is new"); });
    ASSERT_EQ(copies().size(), 1);
    EXPECT_EQ(contentOf(m_folder.filePath(copies().first())), "a file that is new");
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
            const bool unnamed = (flags & O_TMPFILE) == static_cast<unsigned>(O_TMPFILE);
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
