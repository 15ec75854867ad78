#include "tests/component/InPlaceFixture.h"

#include <QDir>

#include <algorithm>
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
        damaged[damaged.size() / 2] = char(damaged[damaged.size() / 2] ^ 1);
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

} // namespace
} // namespace qir
