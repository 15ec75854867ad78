#include "tests/qirtbase/file/StorageSupport.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

using namespace Qt::StringLiterals;

// A file that is marked read-only, in a folder in which it could be replaced.

namespace qir {
namespace {

class ReadOnlyFile : public testing::Test {
protected:
    ReadOnlyFile() {
        writeContent(name, containerBytes("old"));
        mark(0444);
        before = contentOf(name);
        EXPECT_EQ(::stat(systemPath(name).c_str(), &status), 0);
    }
    void mark(mode_t mode) const { EXPECT_EQ(::chmod(systemPath(name).c_str(), mode), 0); }
    QString path(const QString &file) const { return folder.filePath(file); }
    DatabaseFileOptions options() {
        DatabaseFileOptions made = testOptions();
        made.stateFolder = path(u"state"_s);
        made.notice = [this](const QString &text) { told.append(text); };
        return made;
    }
    void expectUntouched() const {
        struct stat now {};
        ASSERT_EQ(::stat(systemPath(name).c_str(), &now), 0);
        EXPECT_EQ(now.st_ino, status.st_ino);
        EXPECT_EQ(now.st_mode, status.st_mode);
        EXPECT_EQ(contentOf(name), before);
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"a.ddb"_s});
    }
    QString refusal() const { return name + u": could not be saved: it is marked read-only; use Save As"_s; }

    QTemporaryDir folder;
    QString name = path(u"a.ddb"_s);
    QByteArray before;
    struct stat status {};
    QStringList told;
};

TEST_F(ReadOnlyFile, IsReadAndNotReplaced) {
    DatabaseFile file(FileOps::system(), options());
    ASSERT_EQ(file.load(name, {}).value(), "old");
    const auto saved = file.save("new");
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error().text, refusal());
    expectUntouched();
}

TEST_F(ReadOnlyFile, IsSavedOnceItMayBeWrittenAgain) {
    DatabaseFile file(FileOps::system(), options());
    ASSERT_TRUE(file.load(name, {}));
    ASSERT_FALSE(file.save("new"));
    mark(0644);
    ASSERT_TRUE(file.save("new"));
    EXPECT_EQ(readBytes(contentOf(name))->body, "new");
}

TEST_F(ReadOnlyFile, IsSavedUnderAnotherName) {
    DatabaseFile file(FileOps::system(), options());
    ASSERT_TRUE(file.load(name, {}));
    ASSERT_FALSE(file.save("new"));
    ASSERT_TRUE(file.setFileName(path(u"b.ddb"_s)));
    ASSERT_TRUE(file.save("new"));
    EXPECT_EQ(readBytes(contentOf(path(u"b.ddb"_s)))->body, "new");
    EXPECT_EQ(contentOf(name), before);
}

TEST_F(ReadOnlyFile, IsNoNameToSaveUnder) {
    writeContent(path(u"b.ddb"_s), containerBytes("other"));
    DatabaseFile file(FileOps::system(), options());
    ASSERT_TRUE(file.load(path(u"b.ddb"_s), {}));
    EXPECT_FALSE(file.setFileName(name));
    EXPECT_EQ(file.fileName(), path(u"b.ddb"_s));
    EXPECT_EQ(contentOf(name), before);
}

TEST_F(ReadOnlyFile, MarkedAfterTheNameWasChosenIsNotReplaced) {
    mark(0644);
    DatabaseFile file(FileOps::system(), options());
    ASSERT_TRUE(file.setFileName(name));
    mark(0444);
    const auto saved = file.save("new");
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error().text, refusal());
    expectUntouched();
}

TEST_F(ReadOnlyFile, IsNotReplacedThroughALink) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"links"_s));
    ASSERT_TRUE(QFile::link(name, path(u"links/a.ddb"_s)));
    DatabaseFile file(FileOps::system(), options());
    ASSERT_TRUE(file.load(path(u"links/a.ddb"_s), {}));
    EXPECT_FALSE(file.save("new"));
    expectUntouched();
}

TEST_F(ReadOnlyFile, WithASecondHardLinkIsNotWrittenInPlace) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"links"_s));
    ASSERT_EQ(::link(systemPath(name).c_str(), systemPath(path(u"links/a.ddb"_s)).c_str()), 0);
    DatabaseFile file(FileOps::system(), options());
    ASSERT_TRUE(file.load(name, {}));
    EXPECT_EQ(file.save("new").error().text, refusal());
    expectUntouched();
}

TEST_F(ReadOnlyFile, KeepsTheChangesOfTheReleaseInARescueFile) {
    DatabaseFile file(FileOps::system(), options());
    ASSERT_TRUE(file.load(name, {}));
    EXPECT_EQ(file.saveAtRelease("new"), DatabaseFile::Released::Rescued);
    expectUntouched();
    const QStringList rescued = namesIn(path(u"state/rescue"_s));
    ASSERT_EQ(rescued.size(), 1);
    const QString kept = path(u"state/rescue/"_s + rescued.first());
    EXPECT_EQ(readBytes(contentOf(kept))->body, "new");
    EXPECT_EQ(told, QStringList{refusal() + u"\n\nThe changes are kept in '"_s + kept + u"'."_s});
}

/// Somebody else's file, or one of ours without our own permission: the system says so when it is asked.
TEST_F(ReadOnlyFile, IsOneThatTheSystemDoesNotLetUsWrite) {
    mark(0644);
    HookedFileOps ops({});
    for (const int number : {EACCES, EPERM}) {
        DatabaseFile file(ops, options());
        ASSERT_TRUE(file.load(name, {}));
        ops.onOpen = [number](unsigned flags) {
            return (flags & O_ACCMODE) == O_WRONLY ? std::optional(SystemError{number}) : std::nullopt;
        };
        EXPECT_EQ(file.save("new").error().text, refusal());
        EXPECT_FALSE(file.setFileName(name));
        ops.onOpen = {};
    }
    EXPECT_EQ(contentOf(name), before);
}

TEST_F(ReadOnlyFile, IsNotOneThatOnlyItsGroupMayWrite) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "not run: only root may write what only a group may";
    mark(0464);
    DatabaseFile file(FileOps::system(), options());
    ASSERT_TRUE(file.load(name, {}));
    EXPECT_TRUE(file.save("new"));
}

} // namespace
} // namespace qir
