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

// ---- leftovers of saves that were killed

class Leftovers : public InPlace {
protected:
    /// A hidden file as a killed save leaves it.
    QString leave(const QByteArray &content, const char *tag) {
        static int number = 0;
        const QString name = u".qir-%1-%2.tmp"_s.arg(QLatin1StringView(tag)).arg(++number, 16, 16, QLatin1Char('0'));
        writeContent(path(name), content);
        return name;
    }
    void age(const QString &name) {
        const utimbuf times{1000, 1000};
        ASSERT_EQ(::utime(systemPath(path(name)).c_str(), &times), 0);
    }
    /// Saves the file once and gives what lies beside it afterwards.
    QStringList besidesAfterASave() {
        DatabaseFile database(FileOps::system(), options());
        EXPECT_TRUE(database.load(path(u"a.ddb"_s), {}));
        EXPECT_TRUE(database.save("new"));
        QStringList names = namesIn(m_folder.path());
        names.removeAll(u"a.ddb"_s);
        names.removeAll(u"state"_s);
        return names;
    }
    QByteArray versionWith(unsigned char saveId) {
        FileHeader header = readBytes(contentOf(path(u"a.ddb"_s)))->header;
        header.saveId.fill(saveId);
        return containerBytes("left behind", {}, header);
    }

    const QString m_file = make(u"a.ddb"_s, "one");
};

TEST_F(Leftovers, AReplacedVersionGoes) {
    leave(versionWith(0xab), "abababab");
    EXPECT_EQ(besidesAfterASave(), QStringList());
}

TEST_F(Leftovers, AVersionThatIsNotTheReplacedOneIsKeptWhereItShows) {
    leave(versionWith(0xab), "cdcdcdcd");
    const QStringList names = besidesAfterASave();
    ASSERT_EQ(names.size(), 1);
    EXPECT_TRUE(names[0].startsWith(u"a.ddb (conflict "_s));
    EXPECT_EQ(rawBody(path(names[0])), "left behind");
    EXPECT_EQ(m_notices.size(), 1);
}

TEST_F(Leftovers, AHalfWrittenOneGoesOnceItIsOld) {
    const QString young = leave(versionWith(0xab).chopped(3), "00000000");
    const QString old = leave(versionWith(0xab).chopped(3), "00000000");
    const QString empty = leave({}, "00000000");
    age(old);
    age(empty);
    EXPECT_EQ(besidesAfterASave(), QStringList{young});
}

TEST_F(Leftovers, WhatNoSaveHasWrittenStaysHoweverOld) {
    // A program that is killed right after the exchange may leave somebody's file under its hidden name.
    QByteArray newer = versionWith(0xab);
    newer[14] = 2; // the major version, and so the digest is wrong
    QStringList names{leave("somebody's text", "abababab"), leave(newer, "abababab")};
    for (const QString &name : names)
        age(name);
    const QString allocated = leave(QByteArray(300, '\0'), "abababab");
    age(allocated);
    EXPECT_EQ(besidesAfterASave(), names);
}

TEST_F(Leftovers, AnotherFilesVersionStays) {
    FileHeader header;
    header.fileId.fill(42);
    const QString name = leave(containerBytes("other", {}, header), "00000000");
    age(name);
    EXPECT_EQ(besidesAfterASave(), QStringList{name});
}

TEST_F(Leftovers, OneThatIsHeldStays) {
    const QString name = leave(versionWith(0xab), "abababab");
    const auto held = OpenFile::openAt(FileOps::system(), AT_FDCWD, systemPath(path(name)), O_RDWR);
    ASSERT_TRUE(FileOps::system().lock(held->descriptor(), LockKind::Exclusive));
    EXPECT_EQ(besidesAfterASave(), QStringList{name});
}

TEST_F(Leftovers, OtherHiddenNamesStay) {
    for (const QString &name : {u".qir-x.tmp"_s, u".qir"_s, u".hidden"_s, u".qir-abababab-1.tm"_s}) {
        writeContent(path(name), versionWith(0xab));
        age(name);
    }
    EXPECT_EQ(besidesAfterASave().size(), 4);
}

// ---- the last try

class Release : public InPlace {
protected:
    QStringList rescued() const { return namesIn(state() + u"/rescue"_s); }
};

TEST_F(Release, SavesLikeASave) {
    const QString file = make(u"a.ddb"_s, "one");
    DatabaseFile database(FileOps::system(), options());
    ASSERT_TRUE(database.load(file, {}));
    database.saveAtRelease("two");
    EXPECT_EQ(rawBody(file), "two");
    EXPECT_EQ(m_notices, QStringList());
    EXPECT_EQ(rescued(), QStringList());
}

TEST_F(Release, AConflictWritesARescueFileAndSaysSo) {
    const QString file = make(u"PUMP.DDB"_s, "one");
    DatabaseFile database(FileOps::system(), options());
    ASSERT_TRUE(database.load(file, {}));
    FileHeader theirs;
    theirs.saveId.fill(9);
    writeContent(file, containerBytes("theirs", {}, theirs));
    database.saveAtRelease("mine");
    EXPECT_EQ(rawBody(file), "theirs");
    ASSERT_EQ(rescued().size(), 1);
    EXPECT_TRUE(rescued()[0].startsWith(u"PUMP (rescued "_s) && rescued()[0].endsWith(u").DDB"_s))
        << rescued()[0].toStdString();
    EXPECT_EQ(rawBody(state() + u"/rescue/"_s + rescued()[0]), "mine");
    ASSERT_EQ(m_notices.size(), 1);
    EXPECT_TRUE(m_notices[0].contains(rescued()[0]));
    EXPECT_TRUE(m_notices[0].contains(u"was changed by another program"_s));
}

TEST_F(Release, AVanishedFolderWritesARescueFileToo) {
    QDir(m_folder.path()).mkdir(u"sub"_s);
    const QString file = make(u"sub/a.ddb"_s, "one");
    DatabaseFile database(FileOps::system(), options());
    ASSERT_TRUE(database.load(file, {}));
    QDir(path(u"sub"_s)).removeRecursively();
    database.saveAtRelease("two");
    ASSERT_EQ(rescued().size(), 1);
    EXPECT_EQ(rawBody(state() + u"/rescue/"_s + rescued()[0]), "two");
}

TEST_F(Release, ARescueFileIsProtectedLikeItsDatabase) {
    const QString file = make(u"a.ddb"_s, "one", u"p"_s);
    DatabaseFile database(FileOps::system(), options());
    ASSERT_TRUE(database.load(file, u"p"_s));
    writeContent(file, "something else");
    database.saveAtRelease("secret text");
    ASSERT_EQ(rescued().size(), 1);
    const QByteArray content = contentOf(state() + u"/rescue/"_s + rescued()[0]);
    EXPECT_FALSE(content.contains("secret"));
    EXPECT_EQ(readBytes(content, u"p"_s)->body, "secret text");
    EXPECT_EQ(statusOf(state() + u"/rescue/"_s + rescued()[0]).st_mode & 07777, 0600U);
    EXPECT_EQ(statusOf(state()).st_mode & 07777, 0700U);
}

TEST_F(Release, WhenNothingWorksThatIsSaid) {
    const QString file = make(u"a.ddb"_s, "one");
    HookedFileOps ops({});
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.load(file, {}));
    ops.onOpen = [](unsigned flags) { return flags & O_RDWR ? std::optional(SystemError{ENOSPC}) : std::nullopt; };
    database.saveAtRelease("two");
    ASSERT_EQ(m_notices.size(), 1);
    EXPECT_TRUE(m_notices[0].contains(u"could not be kept"_s));
    EXPECT_EQ(rawBody(file), "one");
}

TEST_F(Release, AListenerThatThrowsDoesNoHarm) {
    const QString file = make(u"a.ddb"_s, "one");
    DatabaseFileOptions throwing = options();
    throwing.notice = [](const QString &) { throw std::runtime_error("no"); };
    DatabaseFile database(FileOps::system(), throwing);
    ASSERT_TRUE(database.load(file, {}));
    writeContent(file, "something else");
    database.saveAtRelease("two");
    EXPECT_EQ(rescued().size(), 1);
}

TEST_F(Release, ADatabaseWithoutANameIsNotWritten) {
    DatabaseFile database(FileOps::system(), options());
    database.createNew();
    database.saveAtRelease("two");
    EXPECT_EQ(rescued(), QStringList());
}

} // namespace
} // namespace qir
