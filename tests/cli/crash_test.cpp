#include "tests/cli/Program.h"

#include "db/QirDatabase.h"

#include <QDir>

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
    CrashTest() { qputenv("XDG_STATE_HOME", path(u"state"_s).toLocal8Bit()); }

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

TEST_P(CrashTest, CommandsThatChangeTheFileNeitherSaveNorLoseThem) {
    if (std::strcmp(GetParam().name, "Real") != 0)
        GTEST_SKIP() << "the fake keeps no journal";
    makePumps();
    typeAndDie(4711);
    write(u"more.csv"_s, "Name\nfirst\n");
    EXPECT_EQ(run({u"import"_s, u"PUMP.DDB"_s, u"Pumps"_s, u"more.csv"_s}).status, 2); // there is such a table
    // Saved by another program: the editor's changes are kept as a file of their own then.
    done({u"import"_s, u"PUMP.DDB"_s, u"More"_s, u"more.csv"_s});
    EXPECT_FALSE(done({u"dump"_s, u"--format=json"_s, u"PUMP.DDB"_s}).contains("4711"));
    EXPECT_NE(speedShown(), 4711);
    const QString folder = path(u"state/qir/rescue/"_s);
    int found = 0;
    for (const QString &name : QDir(folder).entryList(QDir::Files)) {
        const QirDatabase kept = QirDatabase::create();
        kept.setLeaveJournal(true);
        if (name.startsWith(u"PUMP "_s) && kept.LoadDtb(folder + name, QString())) {
            kept.QIRTableRecordSource(u"Pumps"_s);
            kept.setQIRTableRecordsPointerOut(1);
            found += kept.QIRTableRecordSetByIndex(2).toInt() == 4711;
        }
    }
    EXPECT_EQ(found, 1);
}

} // namespace

} // namespace qir
