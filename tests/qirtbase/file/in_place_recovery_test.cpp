#include "qirtbase/file/SafeCopy.h"
#include "tests/qirtbase/file/InPlaceFixture.h"

#include <QDir>
#include <QFileInfo>

#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;

// What stands under a name after a save in place was cut short or has failed, and who finds it: a save that failed is
// not carried out, and nothing but a mixture of the two versions is ever written over.

namespace qir {
namespace {

// ---- failed means failed

class FailedInPlace : public InPlace {
protected:
    /// Saves while the n-th of these calls fails; false where the save has no such call any more.
    bool failsAt(FileCall kind, int number) {
        const QString file = makeLinked("one");
        bool saving = false;
        int made = 0;
        HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
            return saving && call == kind && made++ == number ? std::optional(SystemError{EIO}) : std::nullopt;
        });
        DatabaseFile database(ops, options());
        EXPECT_TRUE(database.load(file, {}));
        saving = true;
        const auto saved = database.save(longBody);
        saving = false;
        const QByteArray wanted = saved || saved.error().text.contains(u"was saved"_s) ? longBody : "one";
        EXPECT_TRUE(bodyOf(file) == wanted)
            << fileCallName(kind) << ' ' << number << ": " << (saved ? "" : saved.error().text.toStdString());
        EXPECT_TRUE(rawBody(path(u"b.ddb"_s)) == wanted);
        EXPECT_TRUE(m_notices.isEmpty()) << m_notices.join(u'\n').toStdString();
        m_notices.clear();
        QFile::remove(path(u"a.ddb"_s));
        QFile::remove(path(u"b.ddb"_s));
        return made > number;
    }
};

TEST_F(FailedInPlace, ASaveThatFailedIsNotCarriedOutByTheNextOpen) {
    for (const FileCall kind : {FileCall::Sync, FileCall::WriteAt, FileCall::Truncate, FileCall::ReadAt,
                                FileCall::UnlinkAt, FileCall::LinkFile, FileCall::Allocate, FileCall::Status}) {
        int number = 0;
        while (failsAt(kind, number))
            ++number;
        EXPECT_GT(number, 0) << fileCallName(kind);
    }
}

TEST_F(FailedInPlace, NeitherWhenFromThenOnEverythingFails) {
    const QString file = makeLinked(longBody);
    tear(file, "new");
    EXPECT_TRUE(bodyOf(file) == longBody);
    EXPECT_TRUE(rawBody(file) == longBody);
}

// ---- a third file at the name

class ThirdFile : public InPlace {
protected:
    void SetUp() override {
        m_file = makeLinked(longBody);
        tear(m_file, "new");
    }
    /// The file that was being written is gone, or another name for it is left.
    void putByRenaming(const QByteArray &content) {
        writeContent(path(u"third"_s), content);
        ASSERT_EQ(::rename(systemPath(path(u"third"_s)).c_str(), systemPath(m_file).c_str()), 0);
    }
    void expectLeftAlone(const QByteArray &content, const std::string &what) {
        const QByteArray seen = bodyOf(m_file);
        EXPECT_TRUE(contentOf(m_file) == content) << what << " was changed by an open";
        EXPECT_EQ(m_notices.size(), 1) << what << ": " << m_notices.join(u'\n').toStdString();
        QList<QByteArray> kept;
        for (const QString &name : namesIn(state() + u"/rescue"_s)) {
            EXPECT_TRUE(m_notices.value(0).contains(name)) << m_notices.value(0).toStdString();
            kept.append(rawBody(state() + u"/rescue/"_s + name));
        }
        EXPECT_TRUE(kept.contains(longBody)) << what << ": the version before is gone";
        EXPECT_TRUE(kept.contains(QByteArray("new"))) << what << ": what was to be saved is gone";
        // Told and kept once.
        EXPECT_EQ(bodyOf(m_file), seen);
        EXPECT_EQ(m_notices.size(), 1) << what;
        EXPECT_EQ(namesIn(state() + u"/rescue"_s).size(), 2) << what;
    }
    /// What people put there.
    static std::vector<std::pair<std::string, QByteArray>> thirdFiles() {
        FileHeader other;
        other.fileId.fill(0x42);
        other.saveId.fill(0x43);
        FileHeader later = readBytes(containerBytes(longBody))->header;
        later.saveId.fill(0x44);
        QByteArray newer = containerBytes("from a later program");
        newer[14] = 2; // the version's number
        QByteArray damaged = containerBytes(longBody);
        damaged[damaged.size() / 2] = static_cast<char>(damaged[damaged.size() / 2] ^ 1);
        return {{"text", "a shopping list\n"},
                {"nothing", ""},
                {"one byte", "0"},
                {"a longer text", QByteArray("bread\n").repeated(30000)},
                {"zeros", QByteArray(50000, '\0')},
                {"another database", containerBytes("other", {}, other)},
                {"a later save", containerBytes("theirs", {}, later)},
                {"a file of a later program", newer},
                {"a damaged copy of the old version", damaged}};
    }

    QString m_file;
};

TEST_F(ThirdFile, OneThatTookTheNameIsLeftAlone) {
    for (const auto &[what, content] : thirdFiles()) {
        QFile::remove(path(u"b.ddb"_s));
        putByRenaming(content);
        expectLeftAlone(content, what);
        QDir(m_folder.path()).removeRecursively();
        QDir().mkpath(m_folder.path());
        m_notices.clear();
        SetUp();
    }
}

TEST_F(ThirdFile, OneThatWasWrittenIntoTheFileIsLeftAlone) {
    for (const auto &[what, content] : thirdFiles()) {
        writeContent(m_file, content);
        expectLeftAlone(content, what);
        QDir(m_folder.path()).removeRecursively();
        QDir().mkpath(m_folder.path());
        m_notices.clear();
        SetUp();
    }
}

TEST_F(ThirdFile, OneThatIsWrittenWhileTheFileIsBeingMadeWholeIsLeftAlone) {
    const QByteArray content = "a shopping list";
    for (const int at : {0, 1}) { // the copy's, the file's
        int locks = 0;
        HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
            if (call == FileCall::Lock && locks++ == at)
                writeContent(m_file, content);
            return std::nullopt;
        });
        DatabaseFile reader(ops, options());
        EXPECT_FALSE(reader.load(m_file, {})) << "lock " << at;
        EXPECT_EQ(locks, at + 1);
        expectLeftAlone(content, "at lock " + std::to_string(at));
        QDir(m_folder.path()).removeRecursively();
        QDir().mkpath(m_folder.path());
        m_notices.clear();
        SetUp();
    }
}

TEST_F(ThirdFile, WhatSomebodyElseHasMadeWholeMeanwhileIsNotWrittenOnceMore) {
    int locks = 0;
    int writes = 0;
    HookedFileOps ops([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        if (call == FileCall::Lock && ++locks == 2)
            writeContent(m_file, containerBytes(longBody));
        writes += call == FileCall::WriteAt && locks == 2;
        return std::nullopt;
    });
    DatabaseFile reader(ops, options());
    const auto body = reader.load(m_file, {});
    ASSERT_TRUE(body) << body.error().text.toStdString();
    EXPECT_TRUE(*body == longBody);
    EXPECT_EQ(writes, 1); // the copy is made void
    EXPECT_EQ(safeCopies(), QStringList());
    EXPECT_EQ(m_notices, QStringList());
}

TEST_F(ThirdFile, TheOneThatWasBeingSavedKeepsItsCopyUnderAnotherName) {
    const QByteArray content = "a shopping list";
    putByRenaming(content);
    EXPECT_TRUE(bodyOf(m_file).startsWith("ERROR"));
    EXPECT_EQ(contentOf(m_file), content);
    ASSERT_EQ(m_notices.size(), 1);
    EXPECT_TRUE(m_notices[0].contains(u"'b.ddb'"_s)) << m_notices[0].toStdString();
    EXPECT_TRUE(bodyOf(path(u"b.ddb"_s)) == longBody);
    EXPECT_TRUE(rawBody(path(u"b.ddb"_s)) == longBody);
    EXPECT_TRUE(bodyOf(m_file).startsWith("ERROR"));
    EXPECT_EQ(contentOf(m_file), content);
    EXPECT_EQ(m_notices.size(), 2);
    EXPECT_EQ(namesIn(state() + u"/rescue"_s), QStringList());
}

// ---- anybody makes it whole

class Anybody : public InPlace {
protected:
    QByteArray bodyElsewhere(const QString &file) {
        DatabaseFileOptions elsewhere = options();
        elsewhere.stateFolder = m_stranger.filePath(u"state"_s);
        DatabaseFile reader(FileOps::system(), elsewhere);
        const auto body = reader.load(file, {});
        return body ? *body : QByteArray("ERROR: ") + body.error().text.toUtf8();
    }
    QuickFolder m_stranger;
};

TEST_F(Anybody, SomebodyElseMakesItWholeToo) {
    const QString file = makeLinked(longBody);
    tear(file, "new");
    EXPECT_TRUE(bodyElsewhere(file) == longBody);
    EXPECT_TRUE(rawBody(file) == longBody);
    EXPECT_EQ(m_notices.size(), 1);
    // What leads to the copy goes when its owner comes by.
    EXPECT_EQ(safeCopies().size(), 1);
    EXPECT_TRUE(bodyOf(file) == longBody);
    EXPECT_EQ(safeCopies(), QStringList());
    EXPECT_EQ(m_notices.size(), 1);
}

TEST_F(Anybody, AtAnotherPathToo) {
    QDir(m_folder.path()).mkdir(u"here"_s);
    const QString file = path(u"here/a.ddb"_s);
    writeContent(file, containerBytes(longBody));
    ASSERT_EQ(::link(systemPath(file).c_str(), systemPath(path(u"here/b.ddb"_s)).c_str()), 0);
    tear(file, "new");
    ASSERT_TRUE(QDir().rename(path(u"here"_s), path(u"there"_s)));
    EXPECT_TRUE(bodyElsewhere(path(u"there/a.ddb"_s)) == longBody);
    EXPECT_TRUE(rawBody(path(u"there/b.ddb"_s)) == longBody);
}

TEST_F(Anybody, ACopyOfTheFileIsReadButNotWrittenOver) {
    const QString file = makeLinked(longBody);
    tear(file, "new");
    const QByteArray torn = contentOf(file);
    // As a restored disk has it: the same folder with other inodes.
    QDir(m_folder.path()).mkdir(u"restored"_s);
    for (const QString &name : {u"a.ddb"_s, QFileInfo(safeCopies()[0]).fileName()})
        ASSERT_TRUE(QFile::copy(path(name), path(u"restored/"_s + name)));
    DatabaseFileOptions elsewhere = options();
    elsewhere.stateFolder = m_stranger.filePath(u"state"_s);
    DatabaseFile database(FileOps::system(), elsewhere);
    const auto body = database.load(path(u"restored/a.ddb"_s), {});
    ASSERT_TRUE(body) << body.error().text.toStdString();
    EXPECT_TRUE(*body == longBody);
    EXPECT_TRUE(contentOf(path(u"restored/a.ddb"_s)) == torn);
    EXPECT_EQ(m_notices.size(), 1);
    // Saving it makes it whole, and its copy is of no use any more.
    ASSERT_TRUE(database.save("newer"));
    EXPECT_EQ(bodyElsewhere(path(u"restored/a.ddb"_s)), "newer");
    EXPECT_EQ(namesIn(path(u"restored"_s)), QStringList{u"a.ddb"_s});
    EXPECT_EQ(m_notices.size(), 1);
}

TEST_F(Anybody, ASaveThatReplacesWhatWasLeftHalfWrittenTakesTheCopyAway) {
    const QString file = makeLinked(longBody);
    DatabaseFile database(FileOps::system(), options());
    ASSERT_TRUE(database.load(file, {}));
    tear(file, "new");
    // The other name goes, and the first bytes are still those of the version before: a file like any other.
    ASSERT_TRUE(QFile::remove(path(u"b.ddb"_s)));
    QFile torn(file);
    ASSERT_TRUE(torn.open(QIODevice::ReadWrite) && torn.write(containerBytes(longBody).first(5000)) == 5000);
    torn.close();
    ASSERT_TRUE(database.save("newer"));
    EXPECT_EQ(bodyOf(file), "newer");
    EXPECT_EQ(m_notices, QStringList());
    EXPECT_EQ(namesIn(state() + u"/rescue"_s), QStringList());
}

TEST_F(Anybody, EveryCallOfMakingItWholeMayFail) {
    std::vector<Fault> kinds{{.kind = Fault::Kind::ShortCount}};
    for (const int number : {EIO, ENOSPC, EACCES, EROFS, EINTR})
        kinds.push_back({.kind = Fault::Kind::Undone, .number = number});
    for (const int number : {EIO, EINTR})
        kinds.push_back({.kind = Fault::Kind::Done, .number = number});
    const QByteArray old(300, 'o'); // read byte by byte too
    int cases = 0;
    for (Fault fault : kinds)
        for (const bool forEver : {false, true}) {
            bool isMet = true;
            for (fault.at = 0, fault.forever = forEver; isMet; ++fault.at, ++cases) {
                const QString file = makeLinked(old);
                tear(file, "new");
                FailingFileOps ops(fault);
                {
                    DatabaseFile reader(ops, options());
                    const auto body = reader.load(file, {});
                    EXPECT_TRUE(!body || *body == old) << "call " << fault.at << ", errno " << fault.number;
                }
                isMet = ops.faultMet();
                EXPECT_TRUE(bodyOf(file) == old) << "call " << fault.at << ", errno " << fault.number;
                EXPECT_TRUE(rawBody(file) == old) << "call " << fault.at << ", errno " << fault.number;
                ASSERT_TRUE(QFile::remove(file) && QFile::remove(path(u"b.ddb"_s)));
                ASSERT_EQ(namesIn(state() + u"/rescue"_s), QStringList());
                for (const QString &left :
                     safeCopies()) // what cannot be removed stays, and is another file's next time
                    QFile::remove(left);
            }
        }
    std::printf("%d cases\n", cases);
}

TEST_F(Anybody, AProtectedFilesCopyShowsNothing) {
    const QByteArray secret = QByteArray("the pump's secret ").repeated(3000);
    const QString file = make(u"a.ddb"_s, secret, u"p"_s);
    ASSERT_EQ(::link(systemPath(file).c_str(), systemPath(path(u"b.ddb"_s)).c_str()), 0);
    ASSERT_EQ(::chmod(systemPath(file).c_str(), 0640), 0);
    tear(file, "the valve's secret", u"p"_s);
    ASSERT_EQ(safeCopies().size(), 2);
    for (const QString &copy : safeCopies())
        EXPECT_FALSE(contentOf(copy).contains("secret"));
    EXPECT_EQ(statusOf(safeCopies()[0]).st_mode & 07777, 0640U);
    EXPECT_EQ(statusOf(safeCopies()[1]).st_mode & 07777, 0600U);
    EXPECT_TRUE(bodyOf(file, u"p"_s) == secret);
}

// ---- what is no safe copy

class HostileCopy : public InPlace {
protected:
    void SetUp() override {
        struct stat status {};
        ASSERT_EQ(::stat(systemPath(m_file).c_str(), &status), 0);
        VersionsDigest digest;
        digest.add(m_base);
        digest.add(m_there);
        m_head = {.inode = status.st_ino,
                  .name = placeHash("a.ddb"),
                  .baseSize = static_cast<std::uint64_t>(m_base.size()),
                  .nextSize = static_cast<std::uint64_t>(m_there.size()),
                  .digest = digest.value()};
    }
    void expectIgnored(const QByteArray &copy, const char *what) {
        writeContent(m_copy, copy);
        EXPECT_EQ(bodyOf(m_file), "there") << what;
        EXPECT_EQ(contentOf(m_file), m_there) << what;
        QFile::remove(m_copy);
    }

    const QString m_file = make(u"a.ddb"_s, "there");
    const QString m_copy = path(u".qir-0123456789abcdef.safe"_s);
    const QByteArray m_there = contentOf(m_file);
    const QByteArray m_base = containerBytes("base");
    SafeCopyHead m_head;
};

TEST_F(HostileCopy, AWholeOneIsBelieved) {
    writeContent(m_copy, m_head.encode() + m_base + m_there);
    EXPECT_EQ(bodyOf(m_file), "base");
    EXPECT_EQ(contentOf(m_file), m_base);
}

TEST_F(HostileCopy, ADamagedOneIsNot) {
    const QByteArray whole = m_head.encode() + m_base + m_there;
    for (qsizetype at = 0; at < whole.size(); at += at < static_cast<qsizetype>(SafeCopyHead::size) ? 1 : 41) {
        QByteArray damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 4);
        expectIgnored(damaged, "a flipped bit");
        expectIgnored(whole.first(at), "cut short");
    }
    expectIgnored(whole + "x", "too long");
}

TEST_F(HostileCopy, SizesThatLieAreRefused) {
    constexpr std::uint64_t most = ~std::uint64_t{0};
    for (const std::uint64_t size : {std::uint64_t{0}, m_head.baseSize - 1, m_head.baseSize + 1, most / 2, most}) {
        SafeCopyHead head = m_head;
        head.baseSize = size;
        expectIgnored(head.encode() + m_base + m_there, "the size of the version before");
        head.nextSize = m_head.baseSize + m_head.nextSize - size; // the sum is right, modulo 2^64
        if (size > m_head.baseSize + m_head.nextSize)
            expectIgnored(head.encode() + m_base + m_there, "both sizes");
    }
}

TEST_F(HostileCopy, OneThatIsNearlyAllHoleIsNotRead) {
    m_head.nextSize = std::uint64_t{20} << 30;
    writeContent(m_copy, m_head.encode() + m_base + m_there);
    const auto size = SafeCopyHead::size + m_head.baseSize + m_head.nextSize;
    ASSERT_EQ(::truncate(systemPath(m_copy).c_str(), static_cast<off_t>(size)), 0);
    int reads = 0;
    HookedFileOps ops([&](FileCall call, const std::string &) {
        reads += call == FileCall::ReadAt;
        return reads > 100 ? std::optional(SystemError{EIO}) : std::nullopt;
    });
    DatabaseFile reader(ops, options());
    const auto body = reader.load(m_file, {});
    ASSERT_TRUE(body) << body.error().text.toStdString();
    EXPECT_EQ(*body, "there");
    EXPECT_LT(reads, 20);
}

TEST_F(HostileCopy, OneThatIsLargeAndWrittenIsBelieved) {
    const QByteArray large(std::size_t{1} << 25, '\0'); // as sparse as bytes that are written can be
    VersionsDigest digest;
    digest.add(large);
    digest.add(m_there);
    m_head.baseSize = static_cast<std::uint64_t>(large.size());
    m_head.digest = digest.value();
    writeContent(m_copy, m_head.encode() + large + m_there);
    EXPECT_TRUE(bodyOf(m_file).startsWith("ERROR"));
    EXPECT_TRUE(contentOf(m_file) == large);
}

TEST_F(HostileCopy, WhatIsNoFileIsPassedBy) {
    ASSERT_EQ(::mkfifo(systemPath(m_copy).c_str(), 0600), 0);
    EXPECT_EQ(bodyOf(m_file), "there");
    ASSERT_TRUE(QFile::remove(m_copy));
    ASSERT_TRUE(QDir().mkdir(m_copy));
    EXPECT_EQ(bodyOf(m_file), "there");
    ASSERT_TRUE(QDir().rmdir(m_copy));
    writeContent(path(u"copy"_s), m_head.encode() + m_base + m_there);
    ASSERT_TRUE(QFile::link(path(u"copy"_s), m_copy));
    EXPECT_EQ(bodyOf(m_file), "there");
    ASSERT_TRUE(QFile::remove(m_copy));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string name = systemPath(m_copy);
    ASSERT_LT(name.size(), sizeof address.sun_path);
    name.copy(address.sun_path, name.size());
    const OpenFile socket(FileOps::system(), ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(::bind(socket.descriptor(), reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    EXPECT_EQ(bodyOf(m_file), "there");
    EXPECT_EQ(m_notices, QStringList());
}

TEST_F(HostileCopy, APointerLeadsToCopiesOfTheFileOnly) {
    QDir().mkpath(state() + u"/inplace"_s);
    const QString pointer = state() + u"/inplace/.qir-0123456789abcdef.safe"_s;
    for (const std::string &target : {systemPath(m_file), systemPath(path(u"nowhere/.qir-0123456789abcdef.safe"_s)),
                                      std::string("x"), std::string("/"), std::string(8000, 'p')}) {
        writeContent(pointer, SafeCopyPointer{m_head.inode, target}.encode());
        EXPECT_EQ(bodyOf(m_file), "there");
        EXPECT_EQ(contentOf(m_file), m_there);
    }
    EXPECT_EQ(m_notices, QStringList());
}

} // namespace
} // namespace qir
