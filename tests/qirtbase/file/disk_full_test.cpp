#include "tests/qirtbase/file/SmallDisk.h"
#include "tests/qirtbase/file/StorageSupport.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QFile>

#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

constexpr std::uint64_t pageSize = 4096;

/// What is saved, and how.
struct Kind {
    const char *name;
    QString password;
    bool isNew;
    int allocateError; ///< How a file system says that it takes no room ahead: the disk turns out full while writing.
};

class FullDisk : public testing::TestWithParam<Kind> {
protected:
    void SetUp() override {
        QString why;
        auto disk = SmallDisk::mount(2 << 20, why);
        if (!disk)
            GTEST_SKIP() << why.toStdString();
        m_disk.emplace(std::move(*disk));
    }
    QString file() const { return m_disk->path() + u"/a.ddb"_s; }
    QString bodyState(const QByteArray &oldBody, const QByteArray &newBody) const {
        const QByteArray content = contentOf(file());
        if (content.isNull())
            return u"missing"_s;
        const auto read = readBytes(content, GetParam().password);
        return !read                   ? u"damaged"_s
               : read->body == oldBody ? u"old"_s
               : read->body == newBody ? u"new"_s
                                       : u"strange"_s;
    }

    std::optional<SmallDisk> m_disk;
    HookedFileOps m_ops{[](FileCall call, const std::string &) -> std::optional<SystemError> {
        return call == FileCall::Allocate && GetParam().allocateError != 0
                   ? std::optional(SystemError{GetParam().allocateError})
                   : std::nullopt;
    }};
};

INSTANTIATE_TEST_SUITE_P(When, FullDisk,
                         testing::Values(Kind{"SavingAnOpenFile", {}, false, 0},
                                         Kind{"SavingAProtectedFile", u"p"_s, false, 0},
                                         Kind{"SavingANewFile", {}, true, 0},
                                         Kind{"SavingWithoutAllocation", {}, false, EOPNOTSUPP},
                                         Kind{"SavingANewFileWithoutAllocation", u"p"_s, true, EINVAL}),
                         [](const auto &kind) { return kind.param.name; });

TEST_P(FullDisk, AtEveryFreeSizeTheFileIsOldOrNewAndTheReasonShown) {
    const Kind &kind = GetParam();
    const QByteArray oldBody(20000, 'o');
    int saves = 0;
    int failures = 0;
    for (const qsizetype size : {static_cast<qsizetype>(30000), static_cast<qsizetype>(120000),
                                 static_cast<qsizetype>(350000), static_cast<qsizetype>(600000)}) {
        const QByteArray newBody(size, 'n');
        const std::uint64_t wanted = static_cast<std::uint64_t>(size) / pageSize + 4;
        for (std::uint64_t pages = 0; pages <= wanted; ++pages) {
            m_disk->releaseRoom();
            QFile::remove(file());
            if (!kind.isNew)
                writeContent(file(), containerBytes(oldBody, kind.password));
            DatabaseFile database(m_ops, testOptions());
            if (kind.isNew) {
                ASSERT_TRUE(database.setFileName(file()));
                ASSERT_TRUE(database.changePassword({}, kind.password));
            } else {
                ASSERT_TRUE(database.load(file(), kind.password));
            }
            m_disk->leaveFree(pages * pageSize);
            const std::uint64_t freeBefore = m_disk->freeBytes();
            const auto saved = database.save(newBody);
            ++saves;
            if (saved) {
                ASSERT_EQ(bodyState(oldBody, newBody), u"new"_s) << pages;
                continue;
            }
            ++failures;
            ASSERT_TRUE(saved.error().text.endsWith(u": the disk is full"_s)) << saved.error().text.toStdString();
            ASSERT_EQ(bodyState(oldBody, newBody), kind.isNew ? u"missing"_s : u"old"_s) << pages;
            ASSERT_EQ(m_disk->freeBytes(), freeBefore) << pages << ": something is left over";
            // With room again the same database is saved; a new one has lost its name with the failed first save.
            m_disk->releaseRoom();
            if (kind.isNew) {
                ASSERT_TRUE(database.setFileName(file()));
            }
            ASSERT_TRUE(database.save(newBody)) << pages;
            ++saves;
            ASSERT_EQ(bodyState(oldBody, newBody), u"new"_s) << pages;
        }
    }
    std::printf("%d saves, %d of them on a disk too full\n", saves, failures);
    EXPECT_GT(failures, 100);
    EXPECT_LT(failures, saves / 2 + 1);
}

class DiskWithoutNumbers : public testing::Test {};

TEST_F(DiskWithoutNumbers, ADiskThatTakesNoMoreFilesIsFull) {
    QString why;
    const auto disk = SmallDisk::mount(1 << 20, why, 3);
    if (!disk)
        GTEST_SKIP() << why.toStdString();
    const QString file = disk->path() + u"/a.ddb"_s;
    writeContent(file, containerBytes("old"));
    DatabaseFile database(FileOps::system(), testOptions());
    ASSERT_TRUE(database.load(file, {}));
    writeContent(disk->path() + u"/last"_s, {});
    const auto saved = database.save("new");
    ASSERT_FALSE(saved);
    EXPECT_TRUE(saved.error().text.endsWith(u": the disk is full"_s)) << saved.error().text.toStdString();
    EXPECT_EQ(readBytes(contentOf(file))->body, "old");
}

} // namespace
} // namespace qir
