#include "tests/cli/Program.h"

#include "db/QirDatabase.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// The component that keeps a journal.
class CrashTest : public ProgramTest {
protected:
    /// An editor that types a value into the file and is killed before it saves.
    void typeAndDie(int speed) const {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const QirDatabase database = QirDatabase::create();
            if (database.LoadDtb(path(u"PUMP.DDB"_s), QString())) {
                database.QIRTableRecordSource(u"Pumps"_s);
                database.setQIRTableRecordsPointerOut(1);
                database.setQIRTableRecordSetByIndex(2, speed);
                ::raise(SIGKILL);
            }
            ::_exit(1);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    }
    /// What the next editor shows in that place.
    int speedShown() const {
        const QirDatabase database = QirDatabase::create();
        EXPECT_TRUE(database.LoadDtb(path(u"PUMP.DDB"_s), QString()));
        database.QIRTableRecordSource(u"Pumps"_s);
        database.setQIRTableRecordsPointerOut(1);
        const int speed = database.QIRTableRecordSetByIndex(2).toInt();
        database.setDtbHasChanged(false);
        return speed;
    }
};

INSTANTIATE_TEST_SUITE_P(Of, CrashTest, testing::Values(CLI_COMPONENTS),
                         [](const auto &component) { return component.param.name; });

TEST_P(CrashTest, CommandsThatReadLeaveAKilledEditorsChangesToTheNextEditor) {
    if (std::strcmp(GetParam().name, "Real") != 0)
        GTEST_SKIP() << "the fake keeps no journal";
    makePumps();
    const QByteArray file = bytesOf(u"PUMP.DDB"_s);
    typeAndDie(4711);
    done({u"info"_s, u"PUMP.DDB"_s});
    done({u"tables"_s, u"PUMP.DDB"_s});
    done({u"verify"_s, u"PUMP.DDB"_s});
    done({u"diff"_s, u"PUMP.DDB"_s, u"PUMP.DDB"_s});
    EXPECT_FALSE(done({u"dump"_s, u"--format=json"_s, u"PUMP.DDB"_s}).contains("4711"));
    EXPECT_EQ(bytesOf(u"PUMP.DDB"_s), file);
    EXPECT_EQ(speedShown(), 4711);
}

} // namespace

} // namespace qir
