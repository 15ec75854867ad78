#include "qirtbase/file/SafeCopy.h"
#include "tests/qirtbase/file/InPlaceFixture.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utime.h>

#include <cerrno>
#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

TEST_F(InPlace, HardLinksStayLinksToTheSameNewVersion) {
    const QString file = makeLinked("one");
    const ino_t inode = statusOf(file).st_ino;
    DatabaseFile database(FileOps::system(), options());
    ASSERT_TRUE(database.load(file, {}));
    for (const QByteArray &body : {longBody, QByteArray("short again"), QByteArray()}) {
        ASSERT_TRUE(database.save(body));
        EXPECT_EQ(statusOf(file).st_ino, inode);
        EXPECT_TRUE(rawBody(path(u"a.ddb"_s)) == body);
        EXPECT_TRUE(rawBody(path(u"b.ddb"_s)) == body);
    }
    EXPECT_EQ(safeCopies(), QStringList());
    EXPECT_EQ(m_notices, QStringList());
}

TEST_F(InPlace, AProtectedOneIsWrittenInPlaceToo) {
    const QString file = makeLinked("one");
    DatabaseFile database(FileOps::system(), options());
    ASSERT_TRUE(database.load(file, {}));
    ASSERT_TRUE(database.changePassword({}, u"p"_s));
    ASSERT_TRUE(database.save("two"));
    EXPECT_EQ(bodyOf(path(u"b.ddb"_s), u"p"_s), "two");
}

TEST_F(InPlace, AWholeSyncedCopyIsThereBeforeTheFirstByteChanges) {
    const QString file = makeLinked("one");
    int writes = 0;
    bool loaded = false;
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        if (call == FileCall::WriteAt && loaded && !safeCopies().isEmpty() && ++writes == 1) {
            EXPECT_EQ(rawBody(file), "one");
            const QByteArray before = contentOf(file);
            const QByteArray versions = contentOf(safeCopies()[0]).sliced(SafeCopyHead::size);
            EXPECT_TRUE(versions.startsWith(before));
            const auto after = readBytes(versions.sliced(before.size()));
            EXPECT_TRUE(after && after->body == longBody);
        }
        return std::nullopt;
    });
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.load(file, {}));
    loaded = true;
    ASSERT_TRUE(database.save(longBody));
    EXPECT_GT(writes, 0);
}

TEST_F(InPlace, AWriteThatWasCutShortIsUndoneByTheNextOpen) {
    const QString file = makeLinked(longBody);
    tear(file, "new");
    EXPECT_TRUE(rawBody(file).startsWith("ERROR"));
    EXPECT_EQ(safeCopies().size(), 2); // one of them leads there from the state folder
    EXPECT_TRUE(bodyOf(file) == longBody);
    ASSERT_EQ(m_notices.size(), 1);
    EXPECT_TRUE(m_notices[0].contains(u"cut short"_s));
    EXPECT_TRUE(rawBody(file) == longBody);
    EXPECT_TRUE(bodyOf(file) == longBody);
    EXPECT_EQ(m_notices.size(), 1);
    EXPECT_EQ(safeCopies().filter(m_folder.path() + u"/.qir"_s), QStringList());
}

TEST_F(InPlace, ItIsUndoneByAnOpenThroughAnotherLinkToo) {
    tear(makeLinked(longBody), "new");
    EXPECT_TRUE(bodyOf(path(u"b.ddb"_s)) == longBody);
    EXPECT_TRUE(rawBody(path(u"a.ddb"_s)) == longBody);
}

TEST_F(InPlace, AndThroughALinkInAnotherFolder) {
    QDir(m_folder.path()).mkdir(u"sub"_s);
    const QString file = makeLinked(longBody);
    const QString far = path(u"sub/far.ddb"_s);
    ASSERT_EQ(::link(systemPath(file).c_str(), systemPath(far).c_str()), 0);
    tear(file, "new");
    EXPECT_TRUE(bodyOf(far) == longBody);
    EXPECT_TRUE(rawBody(file) == longBody);
    EXPECT_TRUE(bodyOf(far) == longBody);
    EXPECT_EQ(m_notices.size(), 1);
    EXPECT_EQ(safeCopies(), QStringList());
}

TEST_F(InPlace, AnotherDamagedFileIsNotTouchedWithIt) {
    tear(makeLinked(longBody), "new");
    FileHeader header;
    header.fileId.fill(77);
    QByteArray other = containerBytes("other", {}, header);
    other.back() = static_cast<char>(other.back() ^ 1);
    writeContent(path(u"c.ddb"_s), other);
    EXPECT_TRUE(bodyOf(path(u"c.ddb"_s)).startsWith("ERROR"));
    EXPECT_EQ(contentOf(path(u"c.ddb"_s)), other);
    EXPECT_EQ(safeCopies().size(), 2);
}

TEST_F(InPlace, TheSameInstanceMakesItWholeWithItsNextSave) {
    const QString file = makeLinked(longBody);
    bool fails = true;
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        return fails && call == FileCall::Truncate ? std::optional(SystemError{EIO}) : std::nullopt;
    });
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.load(file, {}));
    EXPECT_FALSE(database.save("two"));
    fails = false;
    const auto saved = database.save("three");
    ASSERT_TRUE(saved) << saved.error().text.toStdString();
    EXPECT_EQ(rawBody(file), "three");
    EXPECT_EQ(bodyOf(file), "three");
    EXPECT_EQ(safeCopies(), QStringList());
}

TEST_F(InPlace, WhatCannotBeMadeWholeIsReadFromTheCopy) {
    const QString file = makeLinked(longBody);
    tear(file, "new");
    const QByteArray torn = contentOf(file);
    HookedFileOps ops({});
    ops.onOpen = [](unsigned flags) { return flags & O_RDWR ? std::optional(SystemError{EROFS}) : std::nullopt; };
    DatabaseFile database(ops, options());
    const auto body = database.load(file, {});
    ASSERT_TRUE(body) << body.error().text.toStdString();
    EXPECT_TRUE(*body == longBody);
    ASSERT_EQ(m_notices.size(), 1);
    EXPECT_TRUE(m_notices[0].contains(u"the disk is read-only"_s)) << m_notices[0].toStdString();
    EXPECT_TRUE(contentOf(file) == torn);
    EXPECT_EQ(safeCopies().size(), 2);
    ops.onOpen = {};
    const auto saved = database.save("newer");
    ASSERT_TRUE(saved) << saved.error().text.toStdString();
    EXPECT_EQ(rawBody(file), "newer");
    EXPECT_EQ(rawBody(path(u"b.ddb"_s)), "newer");
    EXPECT_EQ(bodyOf(file), "newer");
    EXPECT_EQ(safeCopies().filter(m_folder.path() + u"/.qir"_s), QStringList());
}

TEST_F(InPlace, WhileTheWriterLivesNobodyUndoesIt) {
    const QString file = makeLinked(longBody);
    bool loaded = false;
    int met = 0;
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        if (loaded && call == FileCall::Truncate) {
            ++met;
            const QByteArray seen = bodyOf(file);
            EXPECT_TRUE(seen.contains("another program is saving it just now")) << seen.left(100).toStdString();
        }
        return std::nullopt;
    });
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.load(file, {}));
    loaded = true;
    ASSERT_TRUE(database.save("new"));
    EXPECT_EQ(met, 1);
    EXPECT_EQ(rawBody(file), "new");
}

TEST_F(InPlace, AnOpenInTheMiddleOfASaveShowsTheOldOrTheNewVersion) {
    int reads = 0;
    for (int at = 0; at <= reads; ++at) {
        const QString file = makeLinked("one");
        DatabaseFile writer(FileOps::system(), options());
        ASSERT_TRUE(writer.load(file, {}));
        reads = 0;
        HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
            if (call == FileCall::ReadAt && reads++ == at) {
                EXPECT_TRUE(writer.save(longBody));
            }
            return std::nullopt;
        });
        DatabaseFile reader(ops, options());
        const auto body = reader.load(file, {});
        EXPECT_TRUE(body && (*body == "one" || *body == longBody))
            << at << ": " << (body ? body->left(20).toStdString() : body.error().text.toStdString());
        QFile::remove(path(u"a.ddb"_s));
        QFile::remove(path(u"b.ddb"_s));
    }
    EXPECT_GT(reads, 2);
}

TEST_F(InPlace, TwoWritersInPlaceDoNotMix) {
    const QString file = makeLinked(longBody);
    bool loaded = false;
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        if (loaded && call == FileCall::Truncate) {
            loaded = false;
            DatabaseFile other(FileOps::system(), options());
            EXPECT_FALSE(other.load(file, {}));
        }
        return std::nullopt;
    });
    DatabaseFile database(ops, options());
    DatabaseFile second(FileOps::system(), options());
    ASSERT_TRUE(database.load(file, {}));
    ASSERT_TRUE(second.load(file, {}));
    loaded = true;
    ASSERT_TRUE(database.save("first"));
    EXPECT_TRUE(second.save("second").error().text.contains(u"in the other pane"_s));
    EXPECT_EQ(rawBody(file), "first");
}

TEST_F(InPlace, WithoutASafePlaceForTheCopyNothingIsWritten) {
    const QString file = makeLinked("one");
    writeContent(state(), "a file where the folder should be");
    DatabaseFile database(FileOps::system(), options());
    ASSERT_TRUE(database.load(file, {}));
    const auto saved = database.save("two");
    ASSERT_FALSE(saved);
    EXPECT_TRUE(saved.error().text.contains(u"no safe copy of it could be made"_s)) << saved.error().text.toStdString();
    EXPECT_EQ(rawBody(file), "one");
}

TEST_F(InPlace, WhileAnotherProgramHoldsTheFileItIsNotWritten) {
    const QString file = makeLinked("one");
    DatabaseFile database(FileOps::system(), options());
    ASSERT_TRUE(database.load(file, {}));
    {
        FileOps &ops = FileOps::system();
        const auto other = OpenFile::openAt(ops, AT_FDCWD, systemPath(file), O_RDWR);
        ASSERT_TRUE(other && ops.lock(other->descriptor(), LockKind::Exclusive));
        const auto saved = database.save("two");
        ASSERT_FALSE(saved);
        EXPECT_TRUE(saved.error().text.endsWith(u"try again"_s)) << saved.error().text.toStdString();
        EXPECT_EQ(rawBody(file), "one");
    }
    EXPECT_TRUE(database.save("two"));
}

/// A file system that does not exchange names; `meanwhile` happens right before the version would be published.
class NoExchange : public InPlace {
protected:
    NoExchange() {
        m_ops.onRename = [this](unsigned flags) -> std::optional<SystemError> {
            if (flags && meanwhile)
                std::exchange(meanwhile, {})();
            return flags ? std::optional(SystemError{EINVAL}) : std::nullopt;
        };
    }
    /// A version that another program made of the file.
    void writeTheirs(const QString &file) {
        FileHeader theirs = readBytes(contentOf(file))->header;
        theirs.saveId.fill(0xee);
        ASSERT_TRUE(QFile::remove(file));
        writeContent(file, containerBytes("theirs", {}, theirs));
    }

    HookedFileOps m_ops{{}};
    std::function<void()> meanwhile;
};

TEST_F(NoExchange, AVersionThatSlippedInBetweenIsAConflict) {
    const QString file = make(u"a.ddb"_s, "one");
    DatabaseFile database(m_ops, options());
    ASSERT_TRUE(database.load(file, {}));
    meanwhile = [&] { writeTheirs(file); };
    const auto saved = database.save("two");
    ASSERT_FALSE(saved);
    EXPECT_TRUE(saved.error().text.contains(u"was changed by another program"_s)) << saved.error().text.toStdString();
    EXPECT_EQ(rawBody(file), "theirs");
}

TEST_F(NoExchange, AFileThatWasRemovedInBetweenIsMadeAnew) {
    const QString file = make(u"a.ddb"_s, "one");
    DatabaseFile database(m_ops, options());
    ASSERT_TRUE(database.load(file, {}));
    meanwhile = [&] { QFile::remove(file); };
    ASSERT_TRUE(database.save("two"));
    EXPECT_EQ(rawBody(file), "two");
}

TEST_F(NoExchange, SomebodysVersionThatIsToGiveWayIsKept) {
    const QString file = make(u"a.ddb"_s, "one");
    DatabaseFile database(m_ops, options());
    ASSERT_TRUE(database.load(file, {}));
    writeTheirs(file);
    ASSERT_TRUE(database.setFileName(file));
    ASSERT_TRUE(database.save("two"));
    EXPECT_EQ(rawBody(file), "two");
    ASSERT_EQ(m_notices.size(), 1);
    const QStringList kept = namesIn(m_folder.path()).filter(u"(conflict"_s);
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(rawBody(path(kept[0])), "theirs");
}

TEST_F(InPlace, AFullDiskIsFoundBeforeTheFirstByteChanges) {
    const QString file = makeLinked("one");
    int allocations = 0;
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        return call == FileCall::Allocate && ++allocations == 1 ? std::optional(SystemError{ENOSPC}) : std::nullopt;
    });
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.load(file, {}));
    EXPECT_EQ(database.save("two").error().text, file + u": could not be saved: the disk is full"_s);
    EXPECT_EQ(rawBody(file), "one");
    EXPECT_EQ(safeCopies(), QStringList());
}

TEST_F(InPlace, AnothersVersionThatGivesWayIsKept) {
    const QString file = makeLinked("one");
    DatabaseFile database(FileOps::system(), options());
    ASSERT_TRUE(database.load(file, {}));
    FileHeader theirs = readBytes(contentOf(file))->header;
    theirs.saveId.fill(5);
    writeContent(file, containerBytes("theirs", {}, theirs));
    ASSERT_TRUE(database.setFileName(file));
    ASSERT_TRUE(database.save("mine"));
    EXPECT_EQ(rawBody(file), "mine");
    const QStringList kept = namesIn(m_folder.path()).filter(u"(conflict "_s);
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(rawBody(path(kept[0])), "theirs");
    EXPECT_EQ(m_notices.size(), 1);
}

TEST_F(InPlace, AFolderThatTakesNoNewFileStillLetsItsFileBeSaved) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may write into any folder";
    const QString file = make(u"a.ddb"_s, "one");
    ASSERT_EQ(::chmod(systemPath(m_folder.path()).c_str(), 0500), 0);
    DatabaseFileOptions elsewhere = options();
    const QuickFolder stateFolder;
    elsewhere.stateFolder = stateFolder.path();
    {
        DatabaseFile database(FileOps::system(), elsewhere);
        ASSERT_TRUE(database.load(file, {}));
        EXPECT_TRUE(database.save("two"));
        EXPECT_FALSE(database.setFileName(path(u"new.ddb"_s)));
        EXPECT_TRUE(database.setFileName(file));
    }
    ASSERT_EQ(::chmod(systemPath(m_folder.path()).c_str(), 0700), 0);
    EXPECT_EQ(rawBody(file), "two");
}

TEST_F(InPlace, AForeignOwnersFileKeepsItsOwner) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make a file of another owner";
    const QString file = make(u"a.ddb"_s, "one");
    ASSERT_EQ(::chown(systemPath(file).c_str(), 1234, 5678), 0);
    ASSERT_EQ(::chmod(systemPath(file).c_str(), 0666), 0);
    HookedFileOps ops([](FileCall call, const std::string &) -> std::optional<SystemError> {
        return call == FileCall::SetOwner ? std::optional(SystemError{EPERM}) : std::nullopt;
    });
    const ino_t inode = statusOf(file).st_ino;
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.load(file, {}));
    ASSERT_TRUE(database.save("two"));
    EXPECT_EQ(rawBody(file), "two");
    EXPECT_EQ(statusOf(file).st_uid, 1234U);
    EXPECT_EQ(statusOf(file).st_gid, 5678U);
    EXPECT_EQ(statusOf(file).st_ino, inode);
}

TEST_F(InPlace, TheUsersAttributesAreKeptWhenTheFileIsReplaced) {
    const QTemporaryDir folder; // attributes are not there on every file system
    const QString file = folder.filePath(u"a.ddb"_s);
    writeContent(file, containerBytes("one"));
    if (::setxattr(systemPath(file).c_str(), "user.origin", "plant 7", 7, 0) != 0)
        GTEST_SKIP() << "the file system has no attributes";
    DatabaseFile database(FileOps::system(), options());
    ASSERT_TRUE(database.load(file, {}));
    ASSERT_TRUE(database.save("two"));
    char value[16]{};
    EXPECT_EQ(::getxattr(systemPath(file).c_str(), "user.origin", value, sizeof value), 7);
    EXPECT_STREQ(value, "plant 7");
}

} // namespace
} // namespace qir
