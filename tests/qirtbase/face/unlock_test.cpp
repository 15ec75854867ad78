#include "qirtbase/clsQirDatabase.h"
#include "tests/qirtbase/file/StorageSupport.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

// What a host does that does not want to stand still while a password becomes a key.

namespace qir {
namespace {

class ComponentUnlock : public testing::Test {
protected:
    /// Counts the derivations, and which thread does them.
    DatabaseFileOptions options() {
        DatabaseFileOptions made = testOptions();
        made.deriveKey = [this, derive = made.deriveKey](const SecretBytes &password, const KdfParameters &parameters) {
            ++derivations;
            if (std::this_thread::get_id() == own)
                ++derivationsHere;
            return derive(password, parameters);
        };
        return made;
    }
    void make(KdfCosts costs = cheapCosts) {
        DatabaseFileOptions with = testOptions();
        with.costs = costs;
        clsQirDatabase made(FileOps::system(), with);
        ASSERT_TRUE(made.SetDatabaseFileName(path));
        made.AddTable(u"Pumps"_s);
        made.NewPassword({}, u"p"_s);
        made.SaveDtb();
    }

    QTemporaryDir folder;
    QString path = folder.filePath(u"A.DDB"_s);
    const std::thread::id own = std::this_thread::get_id();
    std::atomic<int> derivations = 0;
    std::atomic<int> derivationsHere = 0;
};

TEST_F(ComponentUnlock, TheKeyIsDerivedInAThreadOfItsOwnAndOnlyOnce) {
    make();
    clsQirDatabase database(FileOps::system(), options());
    ASSERT_TRUE(database.BeginUnlock(path, u"p"_s));
    while (database.UnlockPending())
        std::this_thread::yield();
    ASSERT_TRUE(database.LoadDtb(path, u"p"_s)) << database.LastError().toStdString();
    EXPECT_EQ(database.QIRTablesCount(), 1);
    EXPECT_EQ(derivations, 1);
    EXPECT_EQ(derivationsHere, 0);
}

TEST_F(ComponentUnlock, ALoadThatDoesNotWaitForItWaitsItself) {
    make();
    clsQirDatabase database(FileOps::system(), options());
    ASSERT_TRUE(database.BeginUnlock(path, u"p"_s));
    ASSERT_TRUE(database.LoadDtb(path, u"p"_s));
    EXPECT_EQ(derivations, 1);
    EXPECT_FALSE(database.UnlockPending());
}

TEST_F(ComponentUnlock, CancelledTheLoadStartsAnew) {
    make();
    clsQirDatabase database(FileOps::system(), options());
    ASSERT_TRUE(database.BeginUnlock(path, u"p"_s));
    database.CancelUnlock();
    EXPECT_FALSE(database.UnlockPending());
    ASSERT_TRUE(database.LoadDtb(path, u"p"_s));
    EXPECT_EQ(derivationsHere, 1);
}

TEST_F(ComponentUnlock, AWrongPasswordIsRefusedForThatReason) {
    make();
    clsQirDatabase database(FileOps::system(), options());
    ASSERT_TRUE(database.BeginUnlock(path, u"q"_s));
    EXPECT_FALSE(database.LoadDtb(path, u"q"_s));
    EXPECT_EQ(database.LastError(), path + u": the password does not open it"_s);
    EXPECT_EQ(derivations, 1);
}

TEST_F(ComponentUnlock, OnlyAFreshInstanceHasSomethingToUnlock) {
    make();
    clsQirDatabase database(FileOps::system(), options());
    ASSERT_TRUE(database.LoadDtb(path, u"p"_s));
    EXPECT_FALSE(database.BeginUnlock(path, u"p"_s));
    clsQirDatabase changed(FileOps::system(), options());
    changed.AddTable(u"T"_s);
    EXPECT_FALSE(changed.BeginUnlock(path, u"p"_s));
    changed.setDtbHasChanged(false);
}

TEST_F(ComponentUnlock, TheNoteTellsOfMoreThanTheUsualCosts) {
    make({5, 16 * 1024});
    clsQirDatabase database(FileOps::system(), options());
    EXPECT_EQ(database.PasswordNote(path),
              u"This file asks for more than usual: trying a password takes about 10 times "
              u"as long, and 16 MiB of memory."_s);
    EXPECT_EQ(derivations, 0);
    DatabaseFileOptions with = options();
    with.costs = {100, 8 * 1024};
    clsQirDatabase other(FileOps::system(), with);
    EXPECT_EQ(other.PasswordNote(path),
              u"This file asks for more than usual: trying a password takes 16 MiB of memory."_s);
}

TEST_F(ComponentUnlock, ThereIsNoNoteOnAUsualFileNorOnOneThatIsNotProtected) {
    clsQirDatabase database(FileOps::system(), options());
    EXPECT_EQ(database.PasswordNote(path), QString());
    EXPECT_EQ(database.PasswordNote({}), QString());
    make();
    EXPECT_EQ(database.PasswordNote(path), QString());
    writeContent(path, containerBytes("body"));
    EXPECT_EQ(database.PasswordNote(path), QString());
    writeContent(path, "text");
    EXPECT_EQ(database.PasswordNote(path), QString());
}

TEST_F(ComponentUnlock, ThereIsNoNoteWhereTheNumbersAreRefused) {
    FileHeader header;
    QByteArray bytes = containerBytes("body", u"p"_s, header);
    bytes[10 + 80] = 65; // passes
    sealHeader(bytes, nullptr);
    writeContent(path, bytes);
    clsQirDatabase database(FileOps::system(), options());
    EXPECT_EQ(database.PasswordNote(path), QString());
    EXPECT_FALSE(database.BeginUnlock(path, u"p"_s));
}

} // namespace
} // namespace qir
