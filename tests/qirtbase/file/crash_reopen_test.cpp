#include "tests/qirtbase/file/CrashStates.h"
#include "tests/qirtbase/file/SaveScenarios.h"
#include "tests/support/Counts.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;

// The power fails at every moment of a save in place, and whoever opens the file next is not who saved it: another user
// or another machine, whose state folder knows nothing; by another name or another path; on a disk that was restored;
// after another file was put there. The old or the new version is shown, and an open changes no bytes that are neither.

namespace qir {
namespace {

/// How the next one comes to the file.
struct Reopener {
    const char *name;
    bool sameState = false; ///< With the state folder of who saved it.
    bool sameInodes = true; ///< False: all was restored from a copy of the disk.
    bool otherLink = false; ///< By another name of the file.
    bool otherPath = false; ///< The folder was moved.
};

constexpr Reopener reopeners[] = {{"the same user", true},
                                  {"another machine"},
                                  {"by another name", false, true, true},
                                  {"at another path", false, true, false, true},
                                  {"from a copy of the disk", false, false},
                                  {"from a copy of the disk, the same user", true, false},
                                  {"from a copy of the disk, at another path", true, false, false, true}};

class Reopen : public testing::TestWithParam<Scenario> {
protected:
    void record(qsizetype size, RecordingFileOps &ops);
    void check(const DiskState &state, const CrashStates::Moment &moment);
    void reopen(const DiskState &state, bool isDone, const Reopener &reopener);
    void reopenThirdFile(const DiskState &state, int number);
    void wrong(const QString &what);

    QString path() const { return m_root + u'/' + GetParam().fileName; }
    LoadResult<QByteArray> load(FileOps &ops, const QString &path, bool sameState) {
        DatabaseFileOptions options = optionsIn(sameState ? QFileInfo(path).path() : m_folder.filePath(u"stranger"_s));
        DatabaseFile reader(ops, options);
        return reader.load(path, GetParam().password);
    }
    std::vector<QByteArray> thirdFiles() const;

    QuickFolder m_folder;
    QString m_root = m_folder.filePath(u"disk"_s);
    QByteArray m_before;
    QByteArray m_after;
    int m_checked = 0;
    int m_undone = 0;
    int m_wrong = 0;
};

void Reopen::wrong(const QString &what) {
    if (++m_wrong <= 5)
        ADD_FAILURE() << GetParam().name << ": " << what.toStdString();
}

void Reopen::record(qsizetype size, RecordingFileOps &ops) {
    const Scenario &scenario = GetParam();
    QDir(m_root).removeRecursively();
    ASSERT_TRUE(QDir().mkpath(m_root));
    scenario.prepare(m_root);
    writeContent(path(), scenario.before);
    m_before = scenario.before;
    DatabaseFile file(ops, optionsIn(m_root));
    ASSERT_TRUE(scenario.begin(file, m_root));
    ops.start(systemPath(m_root));
    const auto saved = file.save(unlikePages(size));
    ASSERT_TRUE(saved) << saved.error().text.toStdString();
    ops.mark(1, 1);
    m_after = contentOf(path());
}

void Reopen::check(const DiskState &state, const CrashStates::Moment &moment) {
    for (const Reopener &reopener : reopeners)
        reopen(state, moment.low > 0, reopener);
    reopenThirdFile(state, m_checked);
}

void Reopen::reopen(const DiskState &state, bool isDone, const Reopener &reopener) {
    const Scenario &scenario = GetParam();
    QString root = m_root;
    const FormerInodes inodes = putOnDisk(state, systemPath(root));
    SameInodes same(inodes);
    FileOps &ops = reopener.sameInodes ? static_cast<FileOps &>(same) : FileOps::system();
    if (reopener.otherPath) {
        root = m_folder.filePath(u"moved"_s);
        ASSERT_TRUE(QDir().rename(m_root, root));
    }
    const bool hasOther = reopener.otherLink && QFile::exists(root + u"/b.ddb"_s);
    const QString name = root + (hasOther ? u"/b.ddb"_s : u'/' + scenario.fileName);
    const QByteArray there = contentOf(name);
    const auto body = load(ops, name, reopener.sameState);
    const QByteArray now = contentOf(name);
    if (reopener.otherPath) {
        ASSERT_TRUE(QDir().rename(root, m_root));
    }
    ++m_checked;
    const QString who = QString::fromLatin1(reopener.name);
    // A copy in the state folder is found by its owner only, and by the path or the file itself.
    const bool isFound = reopener.sameState && (reopener.sameInodes || !reopener.otherPath);
    const bool mayRefuse = scenario.copyElsewhere && !isFound && there != m_before && there != m_after;
    if (!body && !mayRefuse)
        wrong(who + u": refused: "_s + body.error().text);
    else if (body && *body != bodyIn(m_after, scenario.password) &&
             (isDone || *body != bodyIn(m_before, scenario.password)))
        wrong(who + u": neither the old nor the new version is shown"_s);
    if (now != there && now != m_before)
        wrong(who + u": an open has changed the file to something else"_s);
    if (now != there && !reopener.sameInodes)
        wrong(who + u": a file that was not being saved is written over"_s);
    m_undone += now != there;
}

std::vector<QByteArray> Reopen::thirdFiles() const {
    FileHeader later = readBytes(m_before, GetParam().password)->header;
    later.saveId.fill(0x44);
    QByteArray newer = m_before;
    newer[14] = 2; // the version's number
    QByteArray damaged = m_before;
    damaged.back() = static_cast<char>(damaged.back() ^ 1);
    QByteArray patched = m_after;
    patched[patched.size() / 2] = static_cast<char>(patched[patched.size() / 2] ^ 1);
    return {"a shopping list\n",
            "",
            newer,
            damaged,
            patched,
            containerBytes("theirs", {}, later),
            QByteArray(m_after.size(), '\0'),
            m_after + "more"};
}

/// A third file takes the name, or is written into the file, by turns.
void Reopen::reopenThirdFile(const DiskState &state, int number) {
    const std::vector<QByteArray> files = thirdFiles();
    const QByteArray &third = files[static_cast<std::size_t>(number) % files.size()];
    SameInodes ops(putOnDisk(state, systemPath(m_root)));
    const bool isOther = number / static_cast<int>(files.size()) % 2 == 0;
    if (isOther) {
        writeContent(m_root + u"/third"_s, third);
        ASSERT_EQ(std::rename(systemPath(m_root + u"/third"_s).c_str(), systemPath(path()).c_str()), 0);
    } else {
        writeContent(path(), third);
    }
    (void)load(ops, path(), number % 3 == 0);
    ++m_checked;
    if (contentOf(path()) != third)
        wrong(u"third file %1, %2: an open has changed it"_s.arg(number % static_cast<int>(files.size()))
                  .arg(isOther ? u"that took the name"_s : u"that was written into the file"_s));
}

TEST_P(Reopen, AnybodyFindsTheOldOrTheNewVersionAndNothingElseIsWrittenOver) {
    const auto statesPerMoment = static_cast<std::size_t>(countFrom("QIR_CRASH_STATES_PER_MOMENT", 30));
    std::size_t different = 0;
    for (const qsizetype size :
         {static_cast<qsizetype>(5), static_cast<qsizetype>(9000), static_cast<qsizetype>(70000)}) {
        HookedFileOps system({});
        GetParam().lacks(system);
        RecordingFileOps ops(system);
        record(size, ops);
        different += CrashStates(ops).visit(statesPerMoment / 3 + 1,
                                            [&](const DiskState &state, const auto &moment) { check(state, moment); });
    }
    std::printf("%s: %zu different states, %d checks, %d times made whole, %d wrong\n", GetParam().name, different,
                m_checked, m_undone, m_wrong);
    EXPECT_EQ(m_wrong, 0);
    EXPECT_GT(different, 3U);
    EXPECT_GT(m_undone, 0);
}

/// Making a file whole may be cut short too.
TEST_P(Reopen, APowerFailureWhileAFileIsMadeWholeIsNoHarm) {
    const Scenario &scenario = GetParam();
    std::size_t different = 0;
    for (const qsizetype size : {static_cast<qsizetype>(5), static_cast<qsizetype>(70000)}) {
        QDir(m_root).removeRecursively();
        ASSERT_TRUE(QDir().mkpath(m_root));
        scenario.prepare(m_root);
        m_before = containerBytes(unlikePages(30000), scenario.password);
        writeContent(path(), m_before);
        {
            bool isSaving = false;
            bool isDead = false;
            HookedFileOps system([&](FileCall call, const std::string &) -> std::optional<SystemError> {
                isDead = isDead || (isSaving && call == FileCall::Truncate);
                return isDead && call != FileCall::Close ? std::optional(SystemError{EIO}) : std::nullopt;
            });
            HookedFileOps lacking({}, system);
            scenario.lacks(lacking);
            DatabaseFile file(lacking, optionsIn(m_root));
            ASSERT_TRUE(file.load(path(), scenario.password));
            isSaving = true;
            ASSERT_FALSE(file.save(unlikePages(size)));
        }
        ASSERT_NE(contentOf(path()), m_before);
        RecordingFileOps ops;
        ops.start(systemPath(m_root));
        ASSERT_TRUE(load(ops, path(), true));
        ops.mark(1, 1);
        ASSERT_EQ(contentOf(path()), m_before);
        different += CrashStates(ops).visit(300, [&](const DiskState &state, const auto &) {
            SameInodes same(putOnDisk(state, systemPath(m_root)));
            const auto body = load(same, path(), true);
            ++m_checked;
            if (!body || *body != bodyIn(m_before, scenario.password))
                wrong(body ? u"it is another version"_s : body.error().text);
        });
    }
    std::printf("%s, made whole: %zu different states, %d checks, %d wrong\n", scenario.name, different, m_checked,
                m_wrong);
    EXPECT_EQ(m_wrong, 0);
    EXPECT_GT(different, 3U);
}

std::vector<Scenario> inPlaceScenarios() {
    std::vector<Scenario> all = scenarios();
    std::erase_if(all, [](const Scenario &scenario) { return !scenario.inPlace; });
    return all;
}

INSTANTIATE_TEST_SUITE_P(Of, Reopen, testing::ValuesIn(inPlaceScenarios()),
                         [](const auto &scenario) { return scenario.param.name; });

} // namespace
} // namespace qir
