#include "tests/qirtbase/file/DatabaseFileTest.h"
#include "tests/support/FailingFileOps.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

ino_t inodeOf(const QString &path) {
    struct stat status {};
    EXPECT_EQ(::stat(systemPath(path).c_str(), &status), 0);
    return status.st_ino;
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

TEST_F(DatabaseFileTest, ADatabaseThatCameAfterItsNameWasChosenWithTheSameSizeAndTimeIsKept) {
    for (const bool isLinked : {false, true}) {
        const QString folder = path(isLinked ? u"linked"_s : u"single"_s);
        ASSERT_TRUE(QDir().mkdir(folder));
        const QString name = folder + u"/a.ddb"_s;
        writeContent(name, otherVersion("one"));
        if (isLinked && ::link(systemPath(name).c_str(), systemPath(folder + u"/b.ddb"_s).c_str()) != 0)
            FAIL() << "no hard link";
        FileHeader third;
        third.fileId.fill(4);
        third.saveId.fill(8);
        DatabaseFile file(FileOps::system(), testOptions());
        ASSERT_TRUE(file.setFileName(name));
        rewriteUnseen(name, containerBytes("two", {}, third));
        ASSERT_TRUE(file.save("mine"));
        EXPECT_EQ(bodyOf(name), "mine");
        QList<QByteArray> bodies;
        for (const QString &left : namesIn(folder))
            bodies.append(bodyOf(folder + u'/' + left));
        EXPECT_TRUE(bodies.contains("two")) << "the other database is lost";
        EXPECT_FALSE(bodies.contains("one"));
    }
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
            changed.back() = static_cast<char>(changed.back() ^ 1);
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

} // namespace
} // namespace qir
