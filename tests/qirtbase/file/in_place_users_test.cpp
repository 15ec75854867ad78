#include "qirtbase/file/SafeCopy.h"
#include "tests/qirtbase/file/StorageSupport.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;

// Several users of one machine share a file, for real: one is killed while saving it in place, another one opens it.

namespace qir {
namespace {

constexpr gid_t team = 54321;
constexpr uid_t owner = 54001;
constexpr uid_t member = 54002;
constexpr uid_t colleague = 54003;
constexpr uid_t stranger = 54004;
const QByteArray before(60000, 'b');
const QByteArray after(90000, 'a');

/// Writes in small pieces, so that a kill falls between them.
class SmallPieces : public HookedFileOps {
public:
    using HookedFileOps::HookedFileOps;

protected:
    std::size_t allowed(FileCall call, std::size_t size) override {
        return call == FileCall::WriteAt ? std::min<std::size_t>(size, 25000) : size;
    }
};

class Users : public testing::Test {
protected:
    enum class End { Good, Bad, Killed };

    void SetUp() override {
        if (::geteuid() != 0)
            GTEST_SKIP() << "not run: only root can be several users";
        ASSERT_EQ(::chmod(systemPath(m_folder.path()).c_str(), 0755), 0);
    }
    QString shared() const { return m_folder.filePath(u"shared"_s); }
    QString file() const { return shared() + u"/a.ddb"_s; }
    /// A folder and a file in it, new.
    void make(uid_t folderOwner, mode_t folderMode, mode_t fileMode) {
        QDir(shared()).removeRecursively();
        ASSERT_TRUE(QDir().mkdir(shared()));
        writeContent(file(), containerBytes(before));
        ASSERT_EQ(::chown(systemPath(file()).c_str(), owner, team), 0);
        ASSERT_EQ(::chmod(systemPath(file()).c_str(), fileMode), 0);
        ASSERT_EQ(::chown(systemPath(shared()).c_str(), folderOwner, team), 0);
        ASSERT_EQ(::chmod(systemPath(shared()).c_str(), folderMode), 0);
    }
    QString stateOf(uid_t user) const { return m_folder.filePath(u"state-%1"_s.arg(user)); }
    DatabaseFileOptions optionsOf(uid_t user) const {
        DatabaseFileOptions options = testOptions();
        options.stateFolder = stateOf(user) + u"/qir"_s;
        return options;
    }
    /// Does something as this user, in a process of its own.
    End as(uid_t user, gid_t group, const std::function<bool(const DatabaseFileOptions &)> &deed) const {
        const QByteArray state = QFile::encodeName(stateOf(user));
        if (::mkdir(state.constData(), 0700) == 0 && ::chown(state.constData(), user, group) != 0)
            return End::Bad;
        std::fflush(nullptr);
        const pid_t process = ::fork();
        if (process == 0) {
            const bool isUser = ::setgroups(1, &group) == 0 && ::setresgid(group, group, group) == 0 &&
                                ::setresuid(user, user, user) == 0;
            ::_exit(isUser && deed(optionsOf(user)) ? 0 : 1);
        }
        int status = 0;
        if (process < 0 || ::waitpid(process, &status, 0) != process)
            return End::Bad;
        return WIFSIGNALED(status) ? End::Killed : WEXITSTATUS(status) == 0 ? End::Good : End::Bad;
    }
    /// Saves the new version, and is killed before the n-th call of that.
    End saveKilledAt(uid_t user, gid_t group, int call) const {
        return as(user, group, [&](const DatabaseFileOptions &options) {
            int made = -1;
            SmallPieces ops([&](FileCall, const std::string &) -> std::optional<SystemError> {
                if (made >= 0 && made++ == call)
                    ::raise(SIGKILL);
                return std::nullopt;
            });
            DatabaseFile database(ops, options);
            if (!database.load(file(), {}))
                return false;
            made = 0;
            return database.save(after).has_value();
        });
    }
    /// Whether a user finds the old or the new version.
    End open(uid_t user, gid_t group) const {
        return as(user, group, [&](const DatabaseFileOptions &options) {
            DatabaseFile database(FileOps::system(), options);
            const auto body = database.load(file(), {});
            if (!body)
                std::fprintf(stderr, "user %u: %s\n", user, body.error().text.toUtf8().constData());
            return body && (*body == before || *body == after);
        });
    }
    QStringList copies() const {
        return QDir(shared()).entryList({u".qir-*.safe"_s}, QDir::Files | QDir::Hidden | QDir::System);
    }
    bool isTorn() const {
        const auto read = readBytes(contentOf(file()));
        return !read;
    }

    QuickFolder m_folder;
};

TEST_F(Users, AColleagueMakesWholeWhatAKilledMemberHasLeftAndSavesIt) {
    int torn = 0;
    int kills = 0;
    for (;; ++kills) {
        make(owner, 0770, 0660);
        const End end = saveKilledAt(member, team, kills);
        if (end == End::Good)
            break;
        ASSERT_EQ(end, End::Killed);
        torn += isTorn();
        ASSERT_EQ(open(colleague, team), End::Good) << "killed at call " << kills;
        ASSERT_FALSE(isTorn()) << "killed at call " << kills;
        ASSERT_EQ(as(colleague, team,
                     [&](const DatabaseFileOptions &options) {
                         DatabaseFile database(FileOps::system(), options);
                         return database.load(file(), {}).has_value() && database.save("theirs").has_value();
                     }),
                  End::Good)
            << "killed at call " << kills;
        ASSERT_EQ(readBytes(contentOf(file()))->body, "theirs");
        EXPECT_EQ(copies(), QStringList()) << "killed at call " << kills;
    }
    std::printf("%d kills, %d of them left a torn file, each made whole by another user\n", kills, torn);
    EXPECT_GT(torn, 0);
}

TEST_F(Users, WhoMayOnlyReadSeesTheVersionBeforeAndChangesNothing) {
    int torn = 0;
    for (int call = 0;; ++call) {
        make(owner, 0775, 0664);
        const End end = saveKilledAt(member, team, call);
        if (end == End::Good)
            break;
        ASSERT_EQ(end, End::Killed);
        const QByteArray there = contentOf(file());
        torn += isTorn();
        ASSERT_EQ(open(stranger, stranger), End::Good) << "killed at call " << call;
        ASSERT_TRUE(contentOf(file()) == there) << "killed at call " << call;
    }
    EXPECT_GT(torn, 0);
}

TEST_F(Users, ACopyIsOpenToThoseWhoMayUseTheFileAndToNobodyElse) {
    int seen = 0;
    for (int call = 0;; ++call) {
        make(owner, 0777, 0660);
        const End end = saveKilledAt(member, team, call);
        if (end == End::Good)
            break;
        for (const QString &name : copies()) {
            struct stat status {};
            ASSERT_EQ(::stat(systemPath(shared() + u'/' + name).c_str(), &status), 0);
            EXPECT_EQ(status.st_mode & 07777, 0660U);
            EXPECT_EQ(status.st_gid, team);
            ++seen;
        }
    }
    EXPECT_GT(seen, 0);
}

TEST_F(Users, AMemberByEverybodysRightDoesNotOpenTheCopyToAnotherGroup) {
    int seen = 0;
    for (int call = 0;; ++call) {
        make(owner, 0777, 0606);
        const End end = saveKilledAt(stranger, stranger, call);
        if (end == End::Good)
            break;
        for (const QString &name : copies()) {
            struct stat status {};
            ASSERT_EQ(::stat(systemPath(shared() + u'/' + name).c_str(), &status), 0);
            EXPECT_EQ(status.st_mode & S_IRWXG & ~((status.st_mode & S_IRWXO) << 3), 0U);
            ++seen;
        }
        ASSERT_EQ(open(owner, owner), End::Good) << "killed at call " << call;
    }
    EXPECT_GT(seen, 0);
}

/// In a folder for everybody where nobody may replace another's file.
TEST_F(Users, AForgedCopyIsNotBelieved) {
    make(0, 01777, 0644);
    const QByteArray there = contentOf(file());
    const QByteArray evil = containerBytes("evil");
    struct stat status {};
    ASSERT_EQ(::stat(systemPath(file()).c_str(), &status), 0);
    VersionsDigest digest;
    digest.add(evil);
    digest.add(there);
    const SafeCopyHead head{.inode = status.st_ino,
                            .name = placeHash("a.ddb"),
                            .baseSize = static_cast<std::uint64_t>(evil.size()),
                            .nextSize = static_cast<std::uint64_t>(there.size()),
                            .digest = digest.value()};
    const auto plant = [&](const DatabaseFileOptions &) {
        writeContent(shared() + u"/.qir-0123456789abcdef.safe"_s, head.encode() + evil + there);
        return true;
    };
    ASSERT_EQ(as(stranger, stranger, plant), End::Good);
    ASSERT_EQ(open(owner, team), End::Good);
    EXPECT_EQ(contentOf(file()), there);
    // The same from the owner's own hand is what it says.
    ASSERT_TRUE(QFile::remove(shared() + u"/.qir-0123456789abcdef.safe"_s));
    ASSERT_EQ(as(owner, team, plant), End::Good);
    EXPECT_EQ(open(owner, team), End::Bad);
    EXPECT_EQ(contentOf(file()), evil);
}

} // namespace
} // namespace qir
