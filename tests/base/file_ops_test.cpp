#include "base/FileOps.h"
#include "base/StagedFile.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

class FileOpsTest : public testing::Test {
protected:
    std::string at(const std::string &name) const { return systemPath(m_folder.path()) + '/' + name; }
    OpenFile create(const std::string &name, QByteArrayView content = {}) {
        auto file = OpenFile::openAt(m_ops, AT_FDCWD, at(name), O_CREAT | O_EXCL | O_RDWR, 0600);
        EXPECT_TRUE(file);
        EXPECT_TRUE(writeFully(m_ops, file->descriptor(), content));
        return std::move(*file);
    }
    QByteArray content(const std::string &name) {
        QFile file(QFile::decodeName(at(name).c_str()));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    OpenFile folder() { return std::move(*OpenFile::openAt(m_ops, AT_FDCWD, at("."), O_RDONLY | O_DIRECTORY)); }
    QStringList names() const {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir m_folder;
    FileOps &m_ops = FileOps::system();
};

TEST_F(FileOpsTest, FailuresGiveTheSystemsNumber) {
    EXPECT_EQ(m_ops.openAt(AT_FDCWD, at("none"), O_RDONLY).error().number, ENOENT);
    EXPECT_EQ(m_ops.statusAt(AT_FDCWD, at("none"), FollowLinks::Yes).error().number, ENOENT);
    EXPECT_EQ(m_ops.entries(AT_FDCWD, at("none")).error().number, ENOENT);
    EXPECT_EQ(m_ops.unlinkAt(AT_FDCWD, at("none")).error().number, ENOENT);
    EXPECT_EQ(m_ops.sync(-1).error().number, EBADF);
    EXPECT_EQ(m_ops.status(-1).error().number, EBADF);
    char byte = 0;
    EXPECT_EQ(m_ops.readAt(-1, {&byte, 1}, 0).error().number, EBADF);
    EXPECT_EQ(m_ops.write(-1, "x").error().number, EBADF);
    EXPECT_EQ(m_ops.makeFolder(AT_FDCWD, at("."), 0700).error().number, EEXIST);
}

TEST_F(FileOpsTest, AnOffsetBeyondWhatTheSystemCountsIsTooLarge) {
    const OpenFile file = create("a");
    char byte = 0;
    EXPECT_EQ(m_ops.readAt(file.descriptor(), {&byte, 1}, ~std::uint64_t{0}).error().number, EFBIG);
    EXPECT_EQ(m_ops.allocate(file.descriptor(), ~std::uint64_t{0}).error().number, EFBIG);
    EXPECT_EQ(m_ops.truncate(file.descriptor(), ~std::uint64_t{0}).error().number, EFBIG);
    EXPECT_EQ(m_ops.writeAt(file.descriptor(), "x", ~std::uint64_t{0}).error().number, EFBIG);
}

TEST_F(FileOpsTest, EntriesAreTheNamesWithoutTheDots) {
    create("a");
    create(".b");
    auto entries = m_ops.entries(AT_FDCWD, at("."));
    ASSERT_TRUE(entries);
    std::sort(entries->begin(), entries->end());
    EXPECT_EQ(*entries, (std::vector<std::string>{".b", "a"}));
}

TEST_F(FileOpsTest, ReadingFullyStopsAtTheEndOfTheFile) {
    const OpenFile file = create("a", "hello");
    std::array<char, 8> bytes{};
    EXPECT_EQ(readFully(m_ops, file.descriptor(), bytes, 1).value(), 4U);
    EXPECT_EQ(std::string(bytes.data()), "ello");
    EXPECT_EQ(readFully(m_ops, file.descriptor(), bytes, 100).value(), 0U);
}

TEST_F(FileOpsTest, WritingFullyGoesOnAfterShortWrites) {
    FailingFileOps ops({.at = 0, .kind = Fault::Kind::ShortCount, .forever = true});
    const OpenFile file = create("a");
    EXPECT_TRUE(writeFully(ops, file.descriptor(), "hello"));
    EXPECT_EQ(ops.calls(), 5);
    EXPECT_EQ(content("a"), "hello");
}

TEST_F(FileOpsTest, AWriteOfNothingIsAnErrorAndNoEndlessLoop) {
    class : public ForwardingFileOps {
        std::size_t allowed(FileCall, std::size_t) override { return 0; }
    } ops;
    const OpenFile file = create("a");
    EXPECT_EQ(writeFully(ops, file.descriptor(), "hello").error().number, EIO);
}

TEST_F(FileOpsTest, AnInterruptedCallIsMadeAgain) {
    FailingFileOps ops({.at = 0, .number = EINTR});
    EXPECT_TRUE(ops.statusAt(AT_FDCWD, at("."), FollowLinks::Yes));
    EXPECT_EQ(ops.calls(), 2);
}

TEST_F(FileOpsTest, ACallInterruptedForEverEnds) {
    FailingFileOps ops({.at = 0, .number = EINTR, .forever = true});
    EXPECT_EQ(ops.statusAt(AT_FDCWD, at("."), FollowLinks::Yes).error().number, EINTR);
    EXPECT_EQ(ops.calls(), FileOps::interruptedTries);
}

TEST_F(FileOpsTest, ALockExcludesOtherDescriptionsOfThisProcessToo) {
    const OpenFile one = create("a");
    const OpenFile two = std::move(*OpenFile::openAt(m_ops, AT_FDCWD, at("a"), O_RDWR));
    EXPECT_TRUE(m_ops.lock(one.descriptor(), LockKind::Exclusive));
    EXPECT_EQ(m_ops.lock(two.descriptor(), LockKind::Shared).error().number, EWOULDBLOCK);
    EXPECT_TRUE(m_ops.lock(one.descriptor(), LockKind::Shared));
    EXPECT_TRUE(m_ops.lock(two.descriptor(), LockKind::Shared));
    EXPECT_TRUE(m_ops.lock(one.descriptor(), LockKind::Release));
    EXPECT_TRUE(m_ops.lock(two.descriptor(), LockKind::Exclusive));
}

TEST_F(FileOpsTest, ALockEndsWithItsDescriptor) {
    OpenFile one = create("a");
    const OpenFile two = std::move(*OpenFile::openAt(m_ops, AT_FDCWD, at("a"), O_RDWR));
    EXPECT_TRUE(m_ops.lock(one.descriptor(), LockKind::Exclusive));
    one.reset();
    EXPECT_TRUE(m_ops.lock(two.descriptor(), LockKind::Exclusive));
}

TEST_F(FileOpsTest, AttributesAreSetAndReadWhereTheFileSystemHasThem) {
    const OpenFile file = create("a");
    const auto set = m_ops.setAttribute(file.descriptor(), "user.test", "value");
    if (!set)
        GTEST_SKIP() << "the file system has no attributes";
    EXPECT_EQ(m_ops.attributeNames(file.descriptor()).value(), std::vector<std::string>{"user.test"});
    EXPECT_EQ(m_ops.attribute(file.descriptor(), "user.test").value(), "value");
}

TEST_F(FileOpsTest, EveryErrorHasWords) {
    EXPECT_EQ(systemErrorWords({ENOSPC}), u"the disk is full"_s);
    EXPECT_EQ(systemErrorWords({EDQUOT}), u"the disk quota is used up"_s);
    EXPECT_EQ(systemErrorWords({EROFS}), u"the disk is read-only"_s);
    EXPECT_EQ(systemErrorWords({EACCES}), u"no permission"_s);
    for (int number = 1; number < 134; ++number)
        EXPECT_FALSE(systemErrorWords({number}).isEmpty()) << number;
}

// ---- resolved paths

TEST_F(FileOpsTest, APathResolvesToItsFolderAndName) {
    create("a");
    const auto resolved = ResolvedPath::of(m_ops, at("a"));
    ASSERT_TRUE(resolved);
    EXPECT_EQ(resolved->name, "a");
    EXPECT_TRUE(m_ops.statusAt(resolved->folder.descriptor(), "a", FollowLinks::No));
}

TEST_F(FileOpsTest, LinksAreFollowedToTheirEndRelativeToWhereTheyStand) {
    ASSERT_EQ(::mkdir(at("sub").c_str(), 0700), 0);
    ASSERT_EQ(::mkdir(at("sub/deep").c_str(), 0700), 0);
    create("sub/target");
    ASSERT_EQ(::symlink("../target", at("sub/deep/two").c_str()), 0);
    ASSERT_EQ(::symlink("sub/deep/two", at("one").c_str()), 0);
    const auto resolved = ResolvedPath::of(m_ops, at("one"));
    ASSERT_TRUE(resolved);
    EXPECT_EQ(resolved->name, "target");
    EXPECT_TRUE(m_ops.statusAt(resolved->folder.descriptor(), "target", FollowLinks::No));
}

TEST_F(FileOpsTest, AnAbsoluteLinkIsFollowedToo) {
    create("target");
    ASSERT_EQ(::symlink(at("target").c_str(), at("one").c_str()), 0);
    EXPECT_EQ(ResolvedPath::of(m_ops, at("one"))->name, "target");
}

TEST_F(FileOpsTest, ARelativePathStartsAtTheCurrentFolder) {
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(m_folder.path()));
    create("a");
    const auto resolved = ResolvedPath::of(m_ops, "a");
    ASSERT_TRUE(QDir::setCurrent(before));
    ASSERT_TRUE(resolved);
    EXPECT_TRUE(m_ops.statusAt(resolved->folder.descriptor(), "a", FollowLinks::No));
}

TEST_F(FileOpsTest, PathsThatNameNoFileAreRefused) {
    ASSERT_EQ(::symlink("loop", at("loop").c_str()), 0);
    EXPECT_EQ(ResolvedPath::of(m_ops, at("loop")).error().number, ELOOP);
    EXPECT_EQ(ResolvedPath::of(m_ops, at("none/a")).error().number, ENOENT);
    EXPECT_EQ(ResolvedPath::of(m_ops, "").error().number, ENOENT);
    EXPECT_EQ(ResolvedPath::of(m_ops, at("")).error().number, EISDIR);
    EXPECT_EQ(ResolvedPath::of(m_ops, at("..")).error().number, EISDIR);
}

// ---- staged files

class Staged : public FileOpsTest, public testing::WithParamInterface<bool> {
protected:
    Staged() {
        m_hooked.onOpen = [](unsigned flags) {
            const bool unnamed = (flags & O_TMPFILE) == static_cast<unsigned>(O_TMPFILE);
            return unnamed && !GetParam() ? std::optional(SystemError{EOPNOTSUPP}) : std::nullopt;
        };
    }
    StagedFile stage(QByteArrayView text) {
        auto staged = StagedFile::create(m_hooked, m_open.descriptor(), 0600);
        EXPECT_TRUE(staged);
        EXPECT_TRUE(writeFully(m_ops, staged->descriptor(), text));
        return std::move(*staged);
    }

    HookedFileOps m_hooked{{}};
    OpenFile m_open = folder();
};

INSTANTIATE_TEST_SUITE_P(Files, Staged, testing::Bool(),
                         [](const auto &unnamed) { return unnamed.param ? "Unnamed" : "Named"; });

TEST_P(Staged, VanishesWhenNotPublished) {
    { const StagedFile staged = stage("new"); }
    EXPECT_TRUE(names().isEmpty());
}

TEST_P(Staged, PublishesUnderANewName) {
    {
        StagedFile staged = stage("new");
        EXPECT_TRUE(staged.publishNew("a"));
    }
    EXPECT_EQ(content("a"), "new");
    EXPECT_EQ(names().size(), 1);
}

TEST_P(Staged, NeverPublishesOverATakenNameByAccident) {
    create("a", "old");
    {
        StagedFile staged = stage("new");
        EXPECT_EQ(staged.publishNew("a").error().number, EEXIST);
    }
    EXPECT_EQ(content("a"), "old");
    EXPECT_EQ(names().size(), 1);
}

TEST_P(Staged, ExchangesAndHandsOverWhatStoodThere) {
    create("a", "old");
    StagedFile staged = stage("new");
    ASSERT_EQ(staged.exchangeWith("a").value(), StagedFile::Exchanged::Yes);
    EXPECT_EQ(content("a"), "new");
    EXPECT_EQ(content(staged.temporaryName()), "old");
    EXPECT_TRUE(staged.removeTemporary());
    EXPECT_EQ(names().size(), 1);
}

TEST_P(Staged, KeepsWhatStoodThereUnderAnotherName) {
    create("a", "old");
    create("taken", "taken");
    {
        StagedFile staged = stage("new");
        ASSERT_TRUE(staged.exchangeWith("a"));
        EXPECT_EQ(staged.renameTemporary("taken").error().number, EEXIST);
        EXPECT_TRUE(staged.renameTemporary("kept"));
    }
    EXPECT_EQ(content("kept"), "old");
    EXPECT_EQ(content("taken"), "taken");
    EXPECT_EQ(names().size(), 3);
}

TEST_P(Staged, WithNothingToExchangeWithNothingHappens) {
    {
        StagedFile staged = stage("new");
        EXPECT_EQ(staged.exchangeWith("a").error().number, ENOENT);
    }
    EXPECT_TRUE(names().isEmpty());
}

TEST_P(Staged, AnExchangeThatWasDoneAlthoughItReportedFailureCounts) {
    create("a", "old");
    class DoneButFailed : public ForwardingFileOps {
    public:
        using ForwardingFileOps::ForwardingFileOps;

    protected:
        std::optional<SystemError> after(FileCall call) override {
            return call == FileCall::RenameAt || call == FileCall::LinkFile ? std::optional(SystemError{EINTR})
                                                                            : std::nullopt;
        }
    } ops(m_hooked);
    auto staged = StagedFile::create(ops, m_open.descriptor(), 0600);
    ASSERT_TRUE(staged);
    EXPECT_EQ(staged->exchangeWith("a").value(), StagedFile::Exchanged::Yes);
    EXPECT_EQ(content("a"), "");
    EXPECT_EQ(content(staged->temporaryName()), "old");
}

TEST_P(Staged, AnExchangeOfUnknownOutcomeLeavesTheHiddenNameAlone) {
    create("a", "old");
    bool renamed = false;
    HookedFileOps ops(
        [&](FileCall call, const std::string &) -> std::optional<SystemError> {
            return renamed && call == FileCall::StatusAt ? std::optional(SystemError{EIO}) : std::nullopt;
        },
        m_hooked);
    ops.onRename = [&](unsigned) {
        renamed = true;
        return std::optional(SystemError{EIO});
    };
    {
        auto staged = StagedFile::create(ops, m_open.descriptor(), 0600);
        ASSERT_TRUE(staged);
        EXPECT_EQ(staged->exchangeWith("a").error().number, EIO);
    }
    EXPECT_EQ(content("a"), "old");
    EXPECT_EQ(names().size(), 2);
}

TEST_P(Staged, ReplacesWhereExchangingIsNotSupported) {
    create("a", "old");
    m_hooked.onRename = [](unsigned flags) {
        return flags == RENAME_EXCHANGE ? std::optional(SystemError{EINVAL}) : std::nullopt;
    };
    {
        StagedFile staged = stage("new");
        ASSERT_EQ(staged.exchangeWith("a").value(), StagedFile::Exchanged::NotSupported);
        EXPECT_EQ(content("a"), "old");
        EXPECT_TRUE(staged.publishOver("a"));
    }
    EXPECT_EQ(content("a"), "new");
    EXPECT_EQ(names().size(), 1);
}

} // namespace
} // namespace qir
