#include "qirtbase/file/SafeCopy.h"
#include "tests/qirtbase/file/StorageSupport.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <grp.h>
#include <pwd.h>
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
        testStateFolder(); // made once, not by each process
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
    QString home() const { return m_folder.filePath(u"home"_s); }
    /// The file in the shared folder is another name of one that stands where only root comes.
    void makeLinked(uid_t folderOwner, mode_t folderMode, mode_t fileMode) {
        make(folderOwner, folderMode, fileMode);
        QDir(home()).removeRecursively();
        QDir(stateOf(member)).removeRecursively(); // what leads to the copies of files that are gone
        ASSERT_TRUE(QDir().mkdir(home()));
        ASSERT_EQ(::chmod(systemPath(home()).c_str(), 0700), 0);
        ASSERT_EQ(::link(systemPath(file()).c_str(), systemPath(home() + u"/a.ddb"_s).c_str()), 0);
    }
    QString copyPath() const { return shared() + u"/.qir-0123456789abcdef.safe"_s; }
    /// A copy that says of the file as it is that it is the new version, to be undone.
    QByteArray forgedCopy() const {
        const QByteArray there = contentOf(file());
        struct stat status {};
        EXPECT_EQ(::stat(systemPath(file()).c_str(), &status), 0);
        VersionsDigest digest;
        digest.add(m_evil);
        digest.add(there);
        const SafeCopyHead head{.inode = status.st_ino,
                                .name = placeHash("a.ddb"),
                                .baseSize = static_cast<std::uint64_t>(m_evil.size()),
                                .nextSize = static_cast<std::uint64_t>(there.size()),
                                .digest = digest.value()};
        return head.encode() + m_evil + there;
    }
    End plant(uid_t user, gid_t group, const QString &at, const QByteArray &content) const {
        return as(user, group, [&](const DatabaseFileOptions &) {
            QFile copy(at);
            return copy.open(QIODevice::WriteOnly) && copy.write(content) == content.size() && copy.flush();
        });
    }
    void expectUntouched(const std::string &what) const {
        const QByteArray there = contentOf(file());
        for (const auto &[user, group] : {std::pair(owner, team), std::pair(uid_t(0), gid_t(0))})
            EXPECT_EQ(open(user, group), End::Good) << what << ", opened by " << user;
        EXPECT_TRUE(contentOf(file()) == there && there == containerBytes(before)) << what;
    }

    const QByteArray m_evil = containerBytes("evil");
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
    const QByteArray forged = forgedCopy();
    ASSERT_EQ(plant(stranger, stranger, copyPath(), forged), End::Good);
    ASSERT_EQ(open(owner, team), End::Good);
    EXPECT_EQ(contentOf(file()), there);
    // The same from the owner's own hand is what it says.
    ASSERT_TRUE(QFile::remove(copyPath()));
    ASSERT_EQ(plant(owner, team, copyPath(), forged), End::Good);
    EXPECT_EQ(open(owner, team), End::Bad);
    EXPECT_EQ(contentOf(file()), m_evil);
}

/// Whoever may replace one of the names of a file may not therefore write what stands under the others.
TEST_F(Users, ACopyFromWhoMayNotWriteAFileOfSeveralNamesIsNotBelieved) {
    for (const mode_t mode : {0777, 01777, 02777, 0770}) {
        for (const mode_t fileMode : {0644, 0664}) {
            const bool isMember = mode == 0770;
            if (isMember && fileMode == 0664) // who may come in may write it
                continue;
            makeLinked(0, mode, fileMode);
            ASSERT_EQ(plant(stranger, isMember ? team : stranger, copyPath(), forgedCopy()), End::Good);
            expectUntouched("folder " + std::to_string(mode) + ", file " + std::to_string(fileMode));
        }
    }
}

TEST_F(Users, TheOwnerOfTheFolderMayNotWriteAFileOfSeveralNamesEither) {
    for (const mode_t mode : {0755, 01755, 0770}) {
        makeLinked(stranger, mode, 0664);
        ASSERT_EQ(plant(stranger, stranger, copyPath(), forgedCopy()), End::Good);
        expectUntouched("folder " + std::to_string(mode));
        // Nor whoever was let in for a moment.
        ASSERT_TRUE(QFile::remove(copyPath()));
        ASSERT_EQ(::chmod(systemPath(shared()).c_str(), 0777), 0);
        ASSERT_EQ(plant(colleague, stranger, copyPath(), forgedCopy()), End::Good);
        ASSERT_EQ(::chmod(systemPath(shared()).c_str(), mode), 0);
        expectUntouched("folder " + std::to_string(mode) + ", another one's copy");
    }
}

TEST_F(Users, ACopyThatMoreMayWriteThanTheFileIsNotBelieved) {
    for (const uid_t maker : {uid_t(0), owner}) {
        makeLinked(0, 0777, 0664);
        writeContent(copyPath(), "");
        ASSERT_EQ(::chown(systemPath(copyPath()).c_str(), maker, stranger), 0);
        ASSERT_EQ(::chmod(systemPath(copyPath()).c_str(), 0666), 0);
        ASSERT_EQ(plant(colleague, colleague, copyPath(), forgedCopy()), End::Good);
        expectUntouched("writable for all");
        ASSERT_EQ(::chmod(systemPath(copyPath()).c_str(), 0664), 0);
        expectUntouched("writable for another group");
    }
}

/// An administrator who runs a program with a user's settings.
TEST_F(Users, ACopyInTheStateFolderFromWhoMayNotWriteTheFileIsNotBelieved) {
    make(0, 0755, 0644);
    const QString folder = stateOf(0) + u"/qir/inplace"_s;
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString copy = folder + u"/.qir-0123456789abcdef.safe"_s;
    ASSERT_EQ(::chown(systemPath(folder).c_str(), stranger, stranger), 0);
    ASSERT_EQ(::chmod(systemPath(folder).c_str(), 0700), 0);
    ASSERT_EQ(::chmod(systemPath(stateOf(0)).c_str(), 0755), 0);
    ASSERT_EQ(plant(stranger, stranger, copy, forgedCopy()), End::Good);
    expectUntouched("a copy");
    // One that leads to a folder of his.
    const QString lair = m_folder.filePath(u"lair"_s);
    ASSERT_TRUE(QDir().mkdir(lair));
    ASSERT_EQ(::chown(systemPath(lair).c_str(), stranger, stranger), 0);
    const QString led = lair + u"/.qir-0123456789abcdef.safe"_s;
    ASSERT_EQ(plant(stranger, stranger, led, forgedCopy()), End::Good);
    struct stat status {};
    ASSERT_EQ(::stat(systemPath(file()).c_str(), &status), 0);
    ASSERT_EQ(plant(stranger, stranger, copy, SafeCopyPointer{status.st_ino, systemPath(led)}.encode()), End::Good);
    expectUntouched("a pointer");
}

TEST_F(Users, AColleaguesCopyOfAFileOfSeveralNamesIsBelieved) {
    for (const auto &[folderOwner, folderMode] : {std::pair(uid_t(0), mode_t(0770)), std::pair(owner, mode_t(02770))}) {
        int torn = 0;
        for (int call = 0;; ++call) {
            makeLinked(folderOwner, folderMode, 0660);
            const End end = saveKilledAt(member, team, call);
            if (end == End::Good)
                break;
            ASSERT_EQ(end, End::Killed);
            torn += isTorn();
            ASSERT_EQ(open(colleague, team), End::Good) << "killed at call " << call;
            ASSERT_FALSE(isTorn()) << "killed at call " << call;
            EXPECT_EQ(copies(), QStringList()) << "killed at call " << call;
        }
        EXPECT_GT(torn, 0);
    }
}

/// In a folder for everybody a copy tells nothing of its maker's groups, but the machine's list of users does.
TEST_F(Users, WhoIsKnownToBeOfTheFilesGroupIsBelieved) {
    constexpr uid_t known = 1;
    const struct passwd *entry = ::getpwuid(known);
    if (!entry || entry->pw_gid == 0)
        GTEST_SKIP() << "not run: the machine has no such user";
    const gid_t group = entry->pw_gid;
    const auto shareWithGroup = [&](uid_t maker) {
        makeLinked(0, 02777, 0664);
        ASSERT_EQ(::chown(systemPath(shared()).c_str(), 0, group), 0);
        ASSERT_EQ(::chown(systemPath(file()).c_str(), owner, group), 0);
        ASSERT_EQ(plant(maker, maker == known ? group : stranger, copyPath(), forgedCopy()), End::Good);
    };
    shareWithGroup(stranger); // whose file gets that group from the folder
    expectUntouched("a stranger's");
    shareWithGroup(known);
    EXPECT_EQ(open(owner, team), End::Bad);
    EXPECT_EQ(contentOf(file()), m_evil);
}

} // namespace
} // namespace qir
