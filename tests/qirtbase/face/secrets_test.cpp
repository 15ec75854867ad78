#include "qirtbase/clsQirDatabase.h"
#include "tests/qirtbase/file/StorageSupport.h"

#include <gtest/gtest.h>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

using namespace Qt::StringLiterals;

// What a protected file asks of the process that opens it. A program of its own: others keep keys from test to test.

namespace qir {
namespace {

bool leavesCoreDumps() {
    return ::prctl(PR_GET_DUMPABLE) == 1;
}

class Secrets : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(::prctl(PR_SET_DUMPABLE, 1), 0);
        clsQirDatabase database(FileOps::system(), options());
        ASSERT_TRUE(database.SetDatabaseFileName(file()));
        database.AddTable(u"T"_s);
        ASSERT_TRUE(leavesCoreDumps());
        database.NewPassword({}, u"p"_s);
        ASSERT_FALSE(leavesCoreDumps()) << "from the moment that there is a key";
        database.SaveDtb();
    }

    DatabaseFileOptions options() const {
        DatabaseFileOptions options;
        options.costs = cheapCosts;
        options.stateFolder = m_folder.filePath(u"state"_s);
        return options;
    }
    QString file() const { return m_folder.filePath(u"A.DDB"_s); }

    /// What `work` says, done by somebody who is not root: by us where we are not.
    bool asOrdinaryUser(const std::function<bool()> &work) const {
        constexpr uid_t nobody = 65534;
        if (::geteuid() != 0)
            return work();
        const pid_t child = ::fork();
        if (child == 0) {
            const std::string path = systemPath(m_folder.path());
            const bool changed = ::chown(path.c_str(), nobody, nobody) == 0 &&
                                 ::chown(systemPath(file()).c_str(), nobody, nobody) == 0 && ::setgid(nobody) == 0 &&
                                 ::setuid(nobody) == 0;
            bool done = false;
            try {
                done = changed && work();
            } catch (const std::exception &error) {
                std::fprintf(stderr, "%s\n", error.what());
            }
            std::fflush(nullptr);
            ::_exit(done ? 0 : 1);
        }
        int status = 0;
        return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    QuickFolder m_folder;
};

TEST_F(Secrets, NoCoreDumpIsLeftWhileAProtectedFileIsOpen) {
    EXPECT_TRUE(leavesCoreDumps());
    {
        clsQirDatabase left(FileOps::system(), options());
        ASSERT_TRUE(left.LoadDtb(file(), u"p"_s));
        EXPECT_FALSE(leavesCoreDumps());
        {
            clsQirDatabase right(FileOps::system(), options());
            ASSERT_TRUE(right.LoadDtb(file(), u"p"_s));
        }
        EXPECT_FALSE(leavesCoreDumps()) << "the other one is still open";
    }
    EXPECT_TRUE(leavesCoreDumps());
}

TEST_F(Secrets, AFileThatIsNotOpenedLeavesCoreDumpsAsTheyWere) {
    clsQirDatabase refused(FileOps::system(), options());
    ASSERT_FALSE(refused.LoadDtb(file(), u"wrong"_s));
    EXPECT_TRUE(leavesCoreDumps());
}

TEST_F(Secrets, AFileWhosePasswordIsTakenAwayLeavesCoreDumpsAgain) {
    clsQirDatabase database(FileOps::system(), options());
    ASSERT_TRUE(database.LoadDtb(file(), u"p"_s));
    database.NewPassword(u"p"_s, {});
    database.SaveDtb();
    EXPECT_TRUE(leavesCoreDumps());
}

TEST_F(Secrets, AProgramThatWantsNoCoreDumpsGetsNoneAfterwardsEither) {
    ASSERT_EQ(::prctl(PR_SET_DUMPABLE, 0), 0);
    {
        clsQirDatabase database(FileOps::system(), options());
        ASSERT_TRUE(database.LoadDtb(file(), u"p"_s));
    }
    EXPECT_FALSE(leavesCoreDumps());
    ASSERT_EQ(::prctl(PR_SET_DUMPABLE, 1), 0);
}

// The system then gives what it shows of the process to root, and saving names its new file by it.
TEST_F(Secrets, AnOrdinaryUserSavesAProtectedFileAllTheSame) {
    EXPECT_TRUE(asOrdinaryUser([this] {
        clsQirDatabase database(FileOps::system(), options());
        if (!database.LoadDtb(file(), u"p"_s) || leavesCoreDumps())
            return false;
        database.AddTable(u"U"_s);
        database.SaveDtb();
        const QString other = m_folder.filePath(u"B.DDB"_s);
        if (!database.SetDatabaseFileName(other))
            return false;
        database.setDtbHasChanged(true);
        database.SaveDtb();
        clsQirDatabase again(FileOps::system(), options());
        return again.LoadDtb(other, u"p"_s) && again.QIRTablesCount() == 2;
    }));
}

TEST(SecretBytesTest, NoCoreDumpIsLeftFromTheFirstToTheLastOfThem) {
    ASSERT_EQ(::prctl(PR_SET_DUMPABLE, 1), 0);
    {
        SecretBytes empty;
        EXPECT_TRUE(leavesCoreDumps());
        SecretBytes first(8);
        EXPECT_FALSE(leavesCoreDumps());
        SecretBytes moved(std::move(first));
        empty = std::move(moved);
        EXPECT_FALSE(leavesCoreDumps());
        const SecretBytes copy = empty.clone();
        empty.clear();
        EXPECT_FALSE(leavesCoreDumps());
    }
    EXPECT_TRUE(leavesCoreDumps());
    SecretBytes cut(8);
    cut.shorten(4);
    EXPECT_FALSE(leavesCoreDumps());
    cut.shorten(0);
    EXPECT_TRUE(leavesCoreDumps());
}

} // namespace
} // namespace qir
