#include "qirtbase/clsQirDatabase.h"
#include "tests/qirtbase/file/StorageSupport.h"

#include <gtest/gtest.h>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <functional>
#include <span>
#include <vector>

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

/// What stands in the processor's registers: the system stores them on the stack of whoever gets a signal.
class Registers {
public:
    Registers()
        : m_stack(std::size_t{64} << 10) {
        stack_t stack{};
        stack.ss_sp = m_stack.data();
        stack.ss_size = m_stack.size();
        ::sigaltstack(&stack, &m_stackBefore);
        struct sigaction action {};
        action.sa_handler = [](int) {};
        action.sa_flags = SA_ONSTACK;
        ::sigaction(SIGUSR1, &action, &m_actionBefore);
    }
    Registers(const Registers &) = delete;
    Registers &operator=(const Registers &) = delete;
    ~Registers() {
        ::sigaction(SIGUSR1, &m_actionBefore, nullptr);
        ::sigaltstack(&m_stackBefore, nullptr);
    }

    void store() { ::raise(SIGUSR1); }
    bool held(std::span<const unsigned char> bytes) const { return !std::ranges::search(m_stack, bytes).empty(); }

private:
    std::vector<unsigned char> m_stack;
    stack_t m_stackBefore{};
    struct sigaction m_actionBefore {};
};

/// Filled byte by byte, so that no register holds more than one of them.
SecretBytes secretOf(std::size_t size) {
    SecretBytes secret(size);
    volatile unsigned char *bytes = secret.data();
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(31 * i + 7);
    return secret;
}

// What they hold goes to the stack with the next call that the loader binds, and stays there.
TEST(SecretBytesTest, ACopyLeavesNothingInTheRegisters) {
    constexpr std::size_t piece = 8;
    for (const std::size_t size : {16U, 32U, 64U, 200U}) {
        const SecretBytes secret = secretOf(size);
        Registers registers;
        const SecretBytes copy = secret.clone();
        registers.store();
        EXPECT_TRUE(copy.equals(secret));
        for (std::size_t at = 0; at + piece <= size; at += piece)
            EXPECT_FALSE(registers.held({secret.data() + at, piece})) << at << " of " << size;
    }
}

// That the look at the registers sees what is in them.
TEST(SecretBytesTest, ACopyInOneGoIsSeenInTheRegisters) {
    const SecretBytes secret = secretOf(32);
    SecretBytes copy(secret.size());
    Registers registers;
    const volatile std::size_t size = secret.size();
    std::memcpy(copy.data(), secret.data(), size);
    registers.store();
    EXPECT_TRUE(registers.held({secret.data(), 8}));
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
