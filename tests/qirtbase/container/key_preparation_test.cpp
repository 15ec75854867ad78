#include "qirtbase/file/KeyPreparation.h"
#include "tests/qirtbase/file/StorageSupport.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <sys/stat.h>

#include <atomic>
#include <condition_variable>
#include <ctime>
#include <memory>
#include <mutex>
#include <new>

using namespace Qt::StringLiterals;

// What is spent on a file whose numbers for the key derivation are high.

namespace qir {
namespace {

SecretBytes secret(const char *text) {
    return passwordBytes(QString::fromLatin1(text));
}

/// A derivation that waits until it is let go, and counts.
class Gate {
public:
    KeyDeriver deriver() {
        return [state = m_state](const SecretBytes &password, const KdfParameters &) -> LoadResult<SecretBytes> {
            std::unique_lock lock(state->mutex);
            ++state->begun;
            state->changed.notify_all();
            state->changed.wait(lock, [&] { return state->open; });
            ++state->ended;
            state->changed.notify_all();
            return password.clone();
        };
    }
    void open() {
        const std::lock_guard lock(m_state->mutex);
        m_state->open = true;
        m_state->changed.notify_all();
    }
    void waitUntilBegun(int count) {
        wait([&] { return m_state->begun >= count; });
    }
    void waitUntilEnded(int count) {
        wait([&] { return m_state->ended >= count; });
    }
    int begun() {
        const std::lock_guard lock(m_state->mutex);
        return m_state->begun;
    }
    ~Gate() { open(); }

private:
    template<class Condition>
    void wait(Condition condition) {
        std::unique_lock lock(m_state->mutex);
        m_state->changed.wait(lock, condition);
    }

    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        bool open = false;
        int begun = 0;
        int ended = 0;
    };
    std::shared_ptr<State> m_state = std::make_shared<State>(); // the threads may outlive the test
};

TEST(KeyPreparation, RunsBesideItsOwner) {
    Gate gate;
    KeyPreparation prepared;
    EXPECT_FALSE(prepared.isPending());
    prepared.start(gate.deriver(), secret("p"), {});
    gate.waitUntilBegun(1);
    EXPECT_TRUE(prepared.isPending());
    gate.open();
    const auto key = prepared.take(secret("p"), {}); // waits
    ASSERT_TRUE(key && *key);
    EXPECT_TRUE((*key)->equals(secret("p")));
    EXPECT_FALSE(prepared.isPending());
    EXPECT_FALSE(prepared.take(secret("p"), {}));
}

TEST(KeyPreparation, IsOfOnePasswordAndItsNumbers) {
    Gate gate;
    gate.open();
    KeyPreparation prepared;
    prepared.start(gate.deriver(), secret("p"), {});
    EXPECT_FALSE(prepared.take(secret("q"), {}));
    prepared.start(gate.deriver(), secret("p"), {});
    KdfParameters other;
    other.salt[3] = 1;
    EXPECT_FALSE(prepared.take(secret("p"), other));
    prepared.start(gate.deriver(), secret("p"), {});
    other = {};
    other.costs.passes = 4;
    EXPECT_FALSE(prepared.take(secret("p"), other));
}

TEST(KeyPreparation, GivenUpIsNotWaitedFor) {
    Gate gate;
    {
        KeyPreparation prepared;
        prepared.start(gate.deriver(), secret("p"), {});
        gate.waitUntilBegun(1);
        prepared.cancel();
        EXPECT_FALSE(prepared.isPending());
        prepared.start(gate.deriver(), secret("p"), {});
        // Its owner dies here; the derivation goes on.
    }
    gate.open();
    gate.waitUntilEnded(1);
}

TEST(KeyPreparation, OfThoseThatTakeMostMemoryOneRunsAtATimeAndOneGivenUpBeforeItsTurnNeverDoes) {
    Gate gate;
    KdfParameters most;
    most.costs.memoryKiB = memoryMaxKiB;
    KeyPreparation first;
    KeyPreparation second;
    KeyPreparation third;
    first.start(gate.deriver(), secret("1"), most);
    gate.waitUntilBegun(1);
    second.start(gate.deriver(), secret("2"), most);
    third.start(gate.deriver(), secret("3"), most);
    second.cancel();
    EXPECT_EQ(gate.begun(), 1);
    gate.open();
    EXPECT_TRUE(third.take(secret("3"), most));
    EXPECT_TRUE(first.take(secret("1"), most));
    EXPECT_EQ(gate.begun(), 2);
}

TEST(KeyPreparation, AUsualOneDoesNotWaitForOneThatTakesMostMemory) {
    Gate gate;
    Gate usual;
    KdfParameters most;
    most.costs.memoryKiB = memoryMaxKiB;
    KeyPreparation first;
    first.start(gate.deriver(), secret("1"), most);
    gate.waitUntilBegun(1);
    first.cancel();
    usual.open();
    KeyPreparation second;
    second.start(usual.deriver(), secret("2"), {});
    EXPECT_TRUE(second.take(secret("2"), {}));
}

TEST(KeyPreparation, LackOfMemoryIsAnErrorNotACrash) {
    KeyPreparation prepared;
    prepared.start(
        [](const SecretBytes &, const KdfParameters &) -> LoadResult<SecretBytes> { throw std::bad_alloc(); },
        secret("p"), {});
    const auto key = prepared.take(secret("p"), {});
    ASSERT_TRUE(key);
    ASSERT_FALSE(*key);
    EXPECT_EQ(key->error().kind, LoadErrorKind::Limits);
}

class LoadCosts : public testing::Test {
protected:
    DatabaseFileOptions options() {
        DatabaseFileOptions made = testOptions();
        made.deriveKey = [this, derive = made.deriveKey](const SecretBytes &password, const KdfParameters &parameters) {
            ++derivations;
            return derive(password, parameters);
        };
        return made;
    }
    /// A protected file whose one chunk is damaged.
    void makeDamaged() const {
        QByteArray bytes = containerBytes("body", u"p"_s);
        bytes.back() = static_cast<char>(bytes.back() ^ 1);
        writeContent(name, bytes);
    }
    void setAge(std::time_t seconds) const {
        const timespec time{std::time(nullptr) - seconds, 0};
        const timespec times[2]{time, time};
        ASSERT_EQ(::utimensat(AT_FDCWD, systemPath(name).c_str(), times, 0), 0);
    }
    /// How often the file is opened for reading when it is loaded, and refused.
    int readsOf(const QString &password) {
        int reads = 0;
        HookedFileOps ops([&](FileCall call, const std::string &file) -> std::optional<SystemError> {
            reads += call == FileCall::OpenAt && file == systemPath(name);
            return std::nullopt;
        });
        DatabaseFile file(ops, options());
        const auto body = file.load(name, password);
        EXPECT_FALSE(body);
        EXPECT_EQ(body.error().kind, LoadErrorKind::Damaged);
        return reads;
    }

    QTemporaryDir folder;
    QString name = folder.filePath(u"a.ddb"_s);
    std::atomic<int> derivations = 0;
};

TEST_F(LoadCosts, AYoungDamagedFileIsReadAgainWithTheKeyOfTheFirstReading) {
    makeDamaged();
    setAge(0);
    EXPECT_GT(readsOf(u"p"_s), 1);
    EXPECT_EQ(derivations, 1);
}

TEST_F(LoadCosts, ATimeToComeDoesNotMakeADamagedFileYoung) {
    for (const std::time_t ahead : {std::time_t{60}, std::time_t{86400}, std::time_t{1000000000}}) {
        makeDamaged();
        setAge(-ahead);
        derivations = 0;
        EXPECT_EQ(readsOf(u"p"_s), 1) << ahead << " s ahead";
        EXPECT_EQ(derivations, 1);
    }
}

TEST_F(LoadCosts, TheKeysOfALoadAreForgottenAtItsEnd) {
    writeContent(name, containerBytes("body", u"p"_s));
    DatabaseFile file(FileOps::system(), options());
    ASSERT_TRUE(file.load(name, u"p"_s));
    const KdfParameters parameters = file.keysOnDisk().kdf;
    ASSERT_TRUE(file.keyDeriver()(secret("p"), parameters));
    EXPECT_EQ(derivations, 1);
    file.endLoad();
    ASSERT_TRUE(file.keyDeriver()(secret("p"), parameters));
    EXPECT_EQ(derivations, 2);
}

TEST_F(LoadCosts, APreparedKeyIsUsedByTheLoad) {
    writeContent(name, containerBytes("body", u"p"_s));
    DatabaseFile file(FileOps::system(), options());
    ASSERT_TRUE(file.prepareKey(name, u"p"_s));
    EXPECT_EQ(file.load(name, u"p"_s).value(), "body");
    EXPECT_EQ(derivations, 1);
}

TEST_F(LoadCosts, APreparedKeyOfAnotherPasswordIsNotUsed) {
    writeContent(name, containerBytes("body", u"p"_s));
    DatabaseFile file(FileOps::system(), options());
    ASSERT_TRUE(file.prepareKey(name, u"q"_s));
    while (file.preparedKey().isPending()) {
    }
    EXPECT_EQ(file.load(name, u"p"_s).value(), "body");
}

TEST_F(LoadCosts, AWrongPasswordIsRefusedWithThePreparedKeyToo) {
    writeContent(name, containerBytes("body", u"p"_s));
    DatabaseFile file(FileOps::system(), options());
    ASSERT_TRUE(file.prepareKey(name, u"q"_s));
    EXPECT_EQ(file.load(name, u"q"_s).error().kind, LoadErrorKind::WrongPassword);
    EXPECT_EQ(derivations, 1);
}

TEST_F(LoadCosts, ThereIsNothingToPrepareWithoutAProtectedFileThatCanBeOpened) {
    DatabaseFile file(FileOps::system(), options());
    EXPECT_FALSE(file.prepareKey({}, u"p"_s));
    EXPECT_FALSE(file.prepareKey(name, u"p"_s));
    writeContent(name, "text");
    EXPECT_FALSE(file.prepareKey(name, u"p"_s));
    writeContent(name, containerBytes("body"));
    EXPECT_FALSE(file.prepareKey(name, u"p"_s));
    writeContent(name, containerBytes("body", u"p"_s));
    EXPECT_FALSE(file.prepareKey(name, {}));
    EXPECT_FALSE(file.prepareKey(folder.path(), u"p"_s));
    EXPECT_FALSE(file.preparedKey().isPending());
    EXPECT_EQ(derivations, 0);
    EXPECT_TRUE(file.load(name, u"p"_s)) << "as a fresh instance can";
}

} // namespace
} // namespace qir
