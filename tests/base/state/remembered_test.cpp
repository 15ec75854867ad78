#include "base/state/Remembered.h"

#include "tests/support/FailingFileOps.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace qir {
namespace {

using namespace Qt::StringLiterals;

class RememberedTest : public testing::Test {
protected:
    QString folder() const { return m_root.filePath(u"state/qir"_s); }
    QString statePath() const { return folder() + u"/editor.json"_s; }
    Remembered another() const { return Remembered(folder()); }
    void put(const QByteArray &bytes) const {
        QDir().mkpath(folder());
        QFile file(statePath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray stored() const {
        QFile file(statePath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Nothing is known, and what is noted from now on stays.
    void expectEmptyAndUsable() const {
        Remembered state = another();
        EXPECT_EQ(state.files(), QStringList());
        EXPECT_TRUE(state.pairs().isEmpty());
        EXPECT_EQ(state.folder(), QString());
        EXPECT_EQ(state.kind(), QString());
        EXPECT_FALSE(state.windowPlace());
        EXPECT_FALSE(state.keepsProtected());
        EXPECT_EQ(state.keyFields({u"/A"_s, u"/B"_s}, u"T"_s), QStringList());
        state.noteFile(u"/A.DDB"_s, Protection::Open);
        EXPECT_EQ(state.files(), QStringList{u"/A.DDB"_s});
        EXPECT_EQ(another().files(), QStringList{u"/A.DDB"_s});
    }

    QTemporaryDir m_root;
};

TEST_F(RememberedTest, WithoutAFileNothingIsKnownAndNothingIsMade) {
    EXPECT_TRUE(another().files().isEmpty());
    EXPECT_FALSE(QFileInfo::exists(folder()));
    expectEmptyAndUsable();
}

TEST_F(RememberedTest, TheNewestFileStandsFirstOnceAndTenAreKept) {
    Remembered state = another();
    for (int i = 0; i < 12; ++i)
        state.noteFile(u"/F%1.DDB"_s.arg(i), Protection::Open);
    state.noteFile(u"/F5.DDB"_s, Protection::Open);
    const QStringList files = another().files();
    EXPECT_EQ(files.size(), 10);
    EXPECT_EQ(files.first(), u"/F5.DDB"_s);
    EXPECT_EQ(files.count(u"/F5.DDB"_s), 1);
    EXPECT_EQ(files.last(), u"/F2.DDB"_s);
}

TEST_F(RememberedTest, PairsAreKeptByTheirSides) {
    Remembered state = another();
    const FilePair one{u"/A"_s, u"/B"_s};
    const FilePair turned{u"/B"_s, u"/A"_s};
    state.notePair(one, Protection::Open);
    state.notePair(turned, Protection::Open);
    state.notePair(one, Protection::Open);
    EXPECT_EQ(another().pairs(), (QList<FilePair>{one, turned}));
}

TEST_F(RememberedTest, TwoEditorsAddToEachOther) {
    Remembered one = another();
    Remembered two = another();
    one.noteFile(u"/A"_s, Protection::Open);
    two.noteFile(u"/B"_s, Protection::Open);
    EXPECT_EQ(one.files(), (QStringList{u"/B"_s, u"/A"_s}));
}

TEST_F(RememberedTest, KeyFieldsBelongToAPairAndATable) {
    Remembered state = another();
    const FilePair pair{u"/A"_s, u"/B"_s};
    state.noteKeyFields(pair, u"T"_s, {u"Id"_s, u"Time"_s}, Protection::Open);
    state.noteKeyFields(pair, u"U"_s, {u"Name"_s}, Protection::Open);
    EXPECT_EQ(another().keyFields(pair, u"T"_s), (QStringList{u"Id"_s, u"Time"_s}));
    EXPECT_EQ(another().keyFields(pair, u"U"_s), (QStringList{u"Name"_s}));
    EXPECT_EQ(another().keyFields({u"/B"_s, u"/A"_s}, u"T"_s), QStringList());
    state.noteKeyFields(pair, u"T"_s, {}, Protection::Open);
    EXPECT_EQ(another().keyFields(pair, u"T"_s), QStringList());
    EXPECT_EQ(another().keyFields(pair, u"U"_s), (QStringList{u"Name"_s}));
}

TEST_F(RememberedTest, NothingIsKeptOfProtectedFilesUnlessTheUserAllowsIt) {
    const FilePair pair{u"/SECRET.DDB"_s, u"/B"_s};
    Remembered state = another();
    state.noteFile(u"/SECRET.DDB"_s, Protection::Protected);
    state.notePair(pair, Protection::Protected);
    state.noteKeyFields(pair, u"T"_s, {u"Id"_s}, Protection::Protected);
    state.noteChosen(u"/hidden/SECRET.DDB"_s, Protection::Protected);
    EXPECT_FALSE(stored().contains("SECRET"));
    EXPECT_FALSE(stored().contains("hidden"));
    EXPECT_EQ(state.folder(), u"/hidden"_s) << "this session's dialogs";
    EXPECT_TRUE(state.setKeepsProtected(true));
    state.noteFile(u"/SECRET.DDB"_s, Protection::Protected);
    state.notePair(pair, Protection::Protected);
    state.noteKeyFields(pair, u"T"_s, {u"Id"_s}, Protection::Protected);
    EXPECT_EQ(another().files(), QStringList{u"/SECRET.DDB"_s});
    EXPECT_EQ(another().pairs().size(), 1);
    EXPECT_EQ(another().keyFields(pair, u"T"_s), QStringList{u"Id"_s});
    EXPECT_TRUE(state.setKeepsProtected(false));
    EXPECT_FALSE(stored().contains("SECRET"));
}

TEST_F(RememberedTest, TheFolderOfAProtectedFileIsForgottenWithItsName) {
    Remembered state = another();
    EXPECT_TRUE(state.setKeepsProtected(true));
    state.noteChosen(u"/hidden/SECRET.SDB"_s, Protection::Protected);
    EXPECT_EQ(another().folder(), u"/hidden"_s);
    EXPECT_TRUE(state.setKeepsProtected(false));
    EXPECT_FALSE(stored().contains("hidden"));
    EXPECT_FALSE(stored().contains("SDB"));
    // That of an open file stays, chosen after a protected one too.
    EXPECT_TRUE(state.setKeepsProtected(true));
    state.noteChosen(u"/hidden/SECRET.SDB"_s, Protection::Protected);
    state.noteChosen(u"/plain/A.DDB"_s, Protection::Open);
    EXPECT_TRUE(state.setKeepsProtected(false));
    EXPECT_EQ(another().folder(), u"/plain"_s);
    EXPECT_EQ(another().kind(), u"DDB"_s);
}

TEST_F(RememberedTest, AFileThatBecameProtectedLeavesTheList) {
    Remembered state = another();
    state.noteFile(u"/A"_s, Protection::Open);
    state.noteFile(u"/A"_s, Protection::Protected);
    EXPECT_TRUE(another().files().isEmpty());
}

TEST_F(RememberedTest, AFileThatIsGoneTakesItsPairsAlong) {
    Remembered state = another();
    state.noteFile(u"/A"_s, Protection::Open);
    state.notePair({u"/A"_s, u"/B"_s}, Protection::Open);
    state.notePair({u"/C"_s, u"/B"_s}, Protection::Open);
    state.dropFile(u"/A"_s);
    EXPECT_TRUE(another().files().isEmpty());
    EXPECT_EQ(another().pairs(), (QList<FilePair>{{u"/C"_s, u"/B"_s}}));
}

TEST_F(RememberedTest, ForgettingLeavesTheUsersChoicesAlone) {
    Remembered state = another();
    state.noteFile(u"/A"_s, Protection::Open);
    state.notePair({u"/A"_s, u"/B"_s}, Protection::Open);
    state.noteKeyFields({u"/A"_s, u"/B"_s}, u"T"_s, {u"Id"_s}, Protection::Open);
    state.noteChosen(u"/dir/A.WDB"_s, Protection::Open);
    state.noteWindowPlace({QRect(1, 2, 300, 400), true});
    state.setChoice(u"colours"_s, u"dark"_s);
    EXPECT_TRUE(state.forget());
    EXPECT_EQ(another().choice(u"colours"_s, u"system"_s), u"dark"_s);
    state.setChoice(u"colours"_s, u"system"_s);
    EXPECT_FALSE(stored().contains("/A"));
    EXPECT_FALSE(stored().contains("dir"));
    EXPECT_FALSE(another().windowPlace());
    EXPECT_EQ(state.folder(), QString());
}

TEST_F(RememberedTest, TheWindowsPlaceAndTheChosenFolderComeBack) {
    Remembered state = another();
    state.noteWindowPlace({QRect(-5, 7, 1200, 800), false});
    state.noteChosen(u"/dir/A.wdb"_s, Protection::Open);
    ASSERT_TRUE(another().windowPlace());
    EXPECT_EQ(another().windowPlace()->frame, QRect(-5, 7, 1200, 800));
    EXPECT_FALSE(another().windowPlace()->maximized);
    EXPECT_EQ(another().folder(), u"/dir"_s);
    EXPECT_EQ(another().kind(), u"WDB"_s);
}

TEST_F(RememberedTest, ADamagedFileCostsNothingButTheState) {
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray("{"), QByteArray("\0\xff\xfe garbage", 11), QByteArray("[]"), QByteArray("null"),
          QByteArray("{\"files\": 7, \"pairs\": \"x\", \"keyFields\": {}, \"window\": [], \"folder\": 1, \"kind\": {},"
                     "\"choices\": \"no\"}"),
          QByteArray("{\"files\": [1, null, {}, {\"path\": 5}, {\"path\": \"relative\"}, {\"path\": \"/a\\u0000b\"}],"
                     "\"pairs\": [{\"left\": \"/A\"}, [], {\"left\": 1, \"right\": 2}],"
                     "\"keyFields\": [{\"left\": \"/A\", \"right\": \"/B\", \"tables\": {\"T\": [1, {}, null]}}],"
                     "\"window\": {\"x\": \"1\", \"width\": -4, \"height\": 1e300}}"),
          QByteArray("[").repeated(5000)}) {
        SCOPED_TRACE(bytes.left(60).toStdString());
        put(bytes);
        expectEmptyAndUsable();
    }
}

TEST_F(RememberedTest, AHugeFileIsNotRead) {
    put("{\"files\": [{\"path\": \"/HUGE\"}], \"x\": \"" + QByteArray(StateFile::mostBytes, 'x') + "\"}");
    expectEmptyAndUsable();
}

TEST_F(RememberedTest, KeyFieldsThatWouldMakeTheFileTooLargeAreGivenUp) {
    Remembered state = another();
    state.noteFile(u"/A"_s, Protection::Open);
    state.noteKeyFields({u"/A"_s, u"/B"_s}, u"T"_s, {QString(StateFile::mostBytes, u'x')}, Protection::Open);
    EXPECT_EQ(another().files(), QStringList{u"/A"_s});
    EXPECT_LT(stored().size(), 1000);
}

TEST_F(RememberedTest, ALinkIsNotFollowedAndGivesWayItself) {
    const QString target = m_root.filePath(u"DATA.DDB"_s);
    QFile file(target);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{\"files\": [{\"path\": \"/BAIT\"}]}");
    file.close();
    QDir().mkpath(folder());
    ASSERT_TRUE(QFile::link(target, statePath()));
    expectEmptyAndUsable();
    EXPECT_EQ(QFileInfo(target).size(), 30);
    EXPECT_FALSE(QFileInfo(statePath()).isSymLink());
}

TEST_F(RememberedTest, WhatOthersMayWriteOrIsNoFileIsNotTaken) {
    put("{\"files\": [{\"path\": \"/BAIT\"}]}");
    ASSERT_EQ(::chmod(systemPath(statePath()).c_str(), 0666), 0);
    expectEmptyAndUsable();
    QFile::remove(statePath());
    ASSERT_EQ(::mkfifo(systemPath(statePath()).c_str(), 0600), 0);
    expectEmptyAndUsable();
}

TEST_F(RememberedTest, NumbersOutOfBoundsAreCutAndUnknownKindsLeftOut) {
    put(R"({"kind": "BAK", "window": {"x": 2147483647, "y": -2147483648, "width": 2147483647, "height": 2147483647}})");
    const auto place = another().windowPlace();
    ASSERT_TRUE(place);
    EXPECT_LE(place->frame.right(), 200'000);
    EXPECT_GE(place->frame.top(), -100'000);
    EXPECT_EQ(another().kind(), QString());
    another().noteChosen(u"/A.BAK"_s, Protection::Open);
    EXPECT_EQ(another().kind(), QString());
    another().noteChosen(u"/A.idb"_s, Protection::Open);
    EXPECT_EQ(another().kind(), u"IDB"_s);
}

TEST_F(RememberedTest, WhereNothingCanBeWrittenTheStateHoldsForTheSession) {
    for (const bool folderInTheWay : {false, true}) {
        QDir(m_root.path()).removeRecursively();
        QDir().mkpath(folderInTheWay ? statePath() : m_root.path());
        if (!folderInTheWay) { // a file stands where the state folder would
            QFile file(m_root.filePath(u"state"_s));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
        Remembered state = another();
        state.noteFile(u"/A"_s, Protection::Open);
        state.noteFile(u"/B"_s, Protection::Open);
        EXPECT_EQ(state.files(), (QStringList{u"/B"_s, u"/A"_s}));
        EXPECT_TRUE(another().files().isEmpty());
        EXPECT_FALSE(state.forget());
        EXPECT_TRUE(state.files().isEmpty());
        EXPECT_FALSE(state.setKeepsProtected(true));
        EXPECT_FALSE(state.setKeepsProtected(false));
    }
}

TEST_F(RememberedTest, AFailedCallLeavesTheOldStateOrTheNewOne) {
    another().noteFile(u"/OLD"_s, Protection::Open);
    for (int at = 0;; ++at) {
        ASSERT_LT(at, 200);
        FailingFileOps ops({.at = at, .number = EIO});
        Remembered(folder(), ops).noteFile(u"/NEW"_s, Protection::Open);
        const QStringList files = another().files();
        const bool isOld = files.contains(u"/OLD"_s);
        const bool isNew = files.value(0) == u"/NEW"_s;
        EXPECT_TRUE(isOld || isNew) << at;
        if (!ops.faultMet())
            break;
        QFile::remove(statePath());
        another().noteFile(u"/OLD"_s, Protection::Open);
    }
}

} // namespace
} // namespace qir
