#include "tests/qirtbase/file/InPlaceFixture.h"

#include <fcntl.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <future>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;

// A file that is read in a thread of its own while another one is loaded.

namespace qir {
namespace {

/// Tells of every file what it is given, as if nothing had changed.
class SameStatusFileOps : public ForwardingFileOps {
public:
    SameStatusFileOps(FileOps &under, const struct stat &status)
        : ForwardingFileOps(under)
        , m_status(status) {}

protected:
    SystemResult<struct stat> doStatusAt(int folder, const std::string &name, FollowLinks follow) override {
        return ForwardingFileOps::doStatusAt(folder, name, follow).map([this](const struct stat &status) {
            return S_ISREG(status.st_mode) ? m_status : status;
        });
    }

private:
    struct stat m_status;
};

class FileReadAhead : public InPlace {
protected:
    /// As most files are: last written some time ago.
    void age(const QString &file) const {
        const std::array<struct timespec, 2> past{{{1'000'000'000, 0}, {1'000'000'000, 0}}};
        ASSERT_EQ(::utimensat(AT_FDCWD, systemPath(file).c_str(), past.data(), 0), 0);
    }
    QString makeOld(const QString &name, const QByteArray &body, const QString &password = {}) {
        const QString file = make(name, body, password);
        age(file);
        return file;
    }
    /// The body that a load gives, and how often this thread has read for it.
    QByteArray load(DatabaseFile &database, const QString &file) {
        readsHere = 0;
        const auto body = database.load(file, {});
        return body ? *body : "ERROR: " + body.error().text.toUtf8();
    }

    const std::thread::id own = std::this_thread::get_id();
    std::atomic<int> readsHere = 0;
    std::atomic<int> readsBeside = 0;
    HookedFileOps ops{[this](FileCall call, const std::string & /*name*/) -> std::optional<SystemError> {
        if (call == FileCall::ReadAt)
            ++(std::this_thread::get_id() == own ? readsHere : readsBeside);
        if (call == FileCall::Close && std::this_thread::get_id() != own && readsBeside > 0 && !isRead.exchange(true))
            isRead.notify_one();
        return std::nullopt;
    }};
    std::atomic<bool> isRead = false; // by the thread beside
};

TEST_F(FileReadAhead, WhatWasReadAheadIsNotReadOnceMore) {
    const QString file = makeOld(u"a.ddb"_s, longBody);
    DatabaseFile plain(ops, options());
    EXPECT_EQ(load(plain, file), longBody);
    const int whole = readsHere;
    EXPECT_GT(whole, 1);
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.readAhead(file));
    EXPECT_EQ(load(database, file), longBody);
    EXPECT_EQ(readsHere, 1) << "the header, which tells that it is still this version";
    EXPECT_EQ(readsBeside, whole);
    EXPECT_EQ(database.fileName(), file);
    EXPECT_TRUE(database.save("next"));
    EXPECT_EQ(bodyOf(file), "next");
}

TEST_F(FileReadAhead, AFileThatWasReplacedMeanwhileIsReadAnew) {
    const QString file = makeOld(u"a.ddb"_s, longBody);
    makeOld(u"b.ddb"_s, "later");
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.readAhead(file));
    isRead.wait(false);
    ASSERT_EQ(std::rename(systemPath(path(u"b.ddb"_s)).c_str(), systemPath(file).c_str()), 0);
    EXPECT_EQ(load(database, file), "later");
}

TEST_F(FileReadAhead, AFileThatWasWrittenToMeanwhileIsReadAnew) {
    const QString file = makeOld(u"a.ddb"_s, longBody);
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.readAhead(file));
    isRead.wait(false);
    writeContent(file, containerBytes(QByteArray(longBody.size(), 'm')));
    EXPECT_EQ(load(database, file), QByteArray(longBody.size(), 'm'));
}

TEST_F(FileReadAhead, AFileWrittenToUnderItsOldTimeIsReadAnew) {
    const QString file = makeOld(u"a.ddb"_s, longBody);
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.readAhead(file));
    isRead.wait(false);
    writeContent(file, containerBytes(QByteArray(longBody.size(), 'm')));
    age(file);
    EXPECT_EQ(load(database, file), QByteArray(longBody.size(), 'm'));
}

// As a save of ours is that falls into the same tick of the clock.
TEST_F(FileReadAhead, AnotherVersionThatTheSystemTellsToBeTheSameFileIsReadAnew) {
    const QString file = makeOld(u"a.ddb"_s, longBody);
    const struct stat before = statusOf(file);
    SameStatusFileOps same(ops, before);
    DatabaseFile database(same, options());
    ASSERT_TRUE(database.readAhead(file));
    isRead.wait(false);
    FileHeader header;
    header.saveId[0] = 7;
    writeContent(file, containerBytes(QByteArray(longBody.size(), 'm'), {}, header));
    EXPECT_EQ(load(database, file), QByteArray(longBody.size(), 'm'));
}

TEST_F(FileReadAhead, AnotherFileThanTheOneReadAheadIsLoaded) {
    const QString file = makeOld(u"a.ddb"_s, longBody);
    const QString other = makeOld(u"b.ddb"_s, "other");
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.readAhead(file));
    EXPECT_EQ(load(database, other), "other");
}

TEST_F(FileReadAhead, AProtectedFileAndOneThatCannotBeReadAreNot) {
    DatabaseFile database(ops, options());
    EXPECT_FALSE(database.readAhead(makeOld(u"a.ddb"_s, "secret", u"p"_s)));
    EXPECT_FALSE(database.readAhead(path(u"missing.ddb"_s)));
    EXPECT_FALSE(database.readAhead({}));
    writeContent(path(u"text.ddb"_s), "no database");
    EXPECT_FALSE(database.readAhead(path(u"text.ddb"_s)));
    EXPECT_EQ(readsBeside, 0);
    EXPECT_EQ(load(database, makeOld(u"b.ddb"_s, "open")), "open");
    EXPECT_FALSE(database.readAhead(path(u"b.ddb"_s))) << "a loaded one has nothing to begin";
}

// Between the look at its header and the read it may become one.
TEST_F(FileReadAhead, AFileThatBecomesProtectedMeanwhileAsksForItsPassword) {
    const QString file = makeOld(u"a.ddb"_s, longBody);
    std::promise<void> replaced;
    std::future<void> wait = replaced.get_future();
    HookedFileOps slow([&](FileCall, const std::string &) -> std::optional<SystemError> {
        if (std::this_thread::get_id() != own && wait.valid())
            std::exchange(wait, {}).get();
        return std::nullopt;
    });
    DatabaseFile database(slow, options());
    ASSERT_TRUE(database.readAhead(file));
    makeOld(u"a.ddb"_s, "secret", u"p"_s);
    replaced.set_value();
    const auto body = database.load(file, u"p"_s);
    ASSERT_TRUE(body) << body.error().text.toStdString();
    EXPECT_EQ(*body, "secret");
    EXPECT_TRUE(database.isProtected());
}

TEST_F(FileReadAhead, WhatIsWrongWithTheFileIsToldByTheLoad) {
    QByteArray bytes = containerBytes(longBody);
    bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 1);
    const QString file = path(u"a.ddb"_s);
    writeContent(file, bytes);
    age(file);
    DatabaseFile plain(FileOps::system(), options());
    const auto told = plain.load(file, {});
    ASSERT_FALSE(told);
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.readAhead(file));
    const auto body = database.load(file, {});
    ASSERT_FALSE(body);
    EXPECT_EQ(body.error().text, told.error().text);
}

TEST_F(FileReadAhead, ASaveInPlaceThatWasCutShortIsUndoneAndToldOnce) {
    const QString file = makeLinked(longBody);
    tear(file, QByteArray(3 * longBody.size(), 'n'));
    m_notices.clear();
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.readAhead(file));
    EXPECT_EQ(load(database, file), longBody);
    EXPECT_EQ(m_notices.size(), 1) << m_notices.join(u'\n').toStdString();
    EXPECT_EQ(safeCopies(), QStringList());
}

TEST_F(FileReadAhead, ASaveInPlaceThatWasCutShortIsToldOnceWhereItCannotBeUndone) {
    const QString file = makeLinked(longBody);
    tear(file, QByteArray(3 * longBody.size(), 'n'));
    m_notices.clear();
    ops.onOpen = [](unsigned flags) {
        return (flags & O_ACCMODE) == O_RDONLY ? std::nullopt : std::optional(SystemError{EROFS});
    };
    DatabaseFile database(ops, options());
    ASSERT_TRUE(database.readAhead(file));
    isRead.wait(false);
    age(file); // so that it is read anew
    EXPECT_EQ(load(database, file), longBody);
    EXPECT_EQ(m_notices.size(), 1) << m_notices.join(u'\n').toStdString();
}

TEST_F(FileReadAhead, ItsEndWaitsForTheThread) {
    const QString file = makeOld(u"a.ddb"_s, longBody);
    std::atomic<bool> closed = false;
    HookedFileOps watched([&](FileCall call, const std::string &) -> std::optional<SystemError> {
        if (call == FileCall::Close && std::this_thread::get_id() != own)
            closed = true;
        return std::nullopt;
    });
    {
        DatabaseFile database(watched, options());
        ASSERT_TRUE(database.readAhead(file));
    }
    EXPECT_TRUE(closed);
}

} // namespace
} // namespace qir
