#include "base/FileNames.h"
#include "tests/support/FailingFileOps.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

class FileNames : public testing::Test {
protected:
    /// Makes an empty file and the folders on its way; a name that ends in a slash is a folder.
    void add(const QString &name) {
        const QString whole = path(name);
        ASSERT_TRUE(QDir().mkpath(whole.left(whole.lastIndexOf(u'/'))));
        if (!name.endsWith(u'/')) {
            QFile file(whole);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }
    QString path(const QString &name) const { return m_folder.path() + u'/' + name; }
    /// What a name below the folder reaches, the folder left out again; the error's text where there is none.
    QString reached(const QString &name) const {
        const auto result = reachIgnoringCase(path(name));
        return result ? result->mid(m_folder.path().size() + 1) : u"error: "_s + result.error().text;
    }

    QTemporaryDir m_folder;
};

TEST_F(FileNames, TheExactEntryComesFirst) {
    add(u"pump.ddb"_s);
    add(u"PUMP.DDB"_s);
    EXPECT_EQ(reached(u"PUMP.DDB"_s), u"PUMP.DDB"_s);
    EXPECT_EQ(reached(u"pump.ddb"_s), u"pump.ddb"_s);
}

TEST_F(FileNames, AnEntryThatDiffersOnlyInCaseIsReached) {
    add(u"Pump.ddb"_s);
    EXPECT_EQ(reached(u"PUMP.DDB"_s), u"Pump.ddb"_s);
}

TEST_F(FileNames, FolderByFolderEachPartIsReached) {
    add(u"Data/Pumps/main.ddb"_s);
    EXPECT_EQ(reached(u"DATA/PUMPS/MAIN.DDB"_s), u"Data/Pumps/main.ddb"_s);
    EXPECT_EQ(reached(u"data/Pumps/Main.Ddb"_s), u"Data/Pumps/main.ddb"_s);
}

TEST_F(FileNames, AnExactFolderIsTakenEvenWhereOnlyAnotherHoldsTheFile) {
    add(u"DATA/"_s);
    add(u"data/a.ddb"_s);
    EXPECT_EQ(reached(u"DATA/A.DDB"_s), u"DATA/A.DDB"_s);
}

TEST_F(FileNames, TwoEntriesNoneExactAreRefusedNamingBoth) {
    add(u"Pump.ddb"_s);
    add(u"pump.ddb"_s);
    EXPECT_EQ(reached(u"PUMP.DDB"_s),
              u"error: 'Pump.ddb' and 'pump.ddb' in '"_s + m_folder.path() + u"/' differ only in case"_s);
}

TEST_F(FileNames, TwoFoldersNoneExactAreRefusedToo) {
    add(u"Data/a.ddb"_s);
    add(u"data/b.ddb"_s);
    EXPECT_TRUE(reached(u"DATA/A.DDB"_s).startsWith(u"error: 'Data' and 'data'"_s));
}

TEST_F(FileNames, ANewFileGetsTheLastPartAsGivenInTheFolderReached) {
    add(u"Data/"_s);
    EXPECT_EQ(reached(u"DATA/NEW.DDB"_s), u"Data/NEW.DDB"_s);
}

TEST_F(FileNames, FromAMissingFolderOnThePathStaysAsGiven) {
    add(u"Data/"_s);
    EXPECT_EQ(reached(u"DATA/NONE/NEW.DDB"_s), u"Data/NONE/NEW.DDB"_s);
}

TEST_F(FileNames, CaseIsThatOfUnicode) {
    add(u"stra\u00dfe-\u00e9\u0142.ddb"_s);
    EXPECT_EQ(reached(u"STRASSE-\u00c9\u0141.DDB"_s), u"stra\u00dfe-\u00e9\u0142.ddb"_s);
}

TEST_F(FileNames, AFolderIsReachedLikeAFile) {
    add(u"Data/"_s);
    EXPECT_EQ(reached(u"DATA"_s), u"Data"_s);
    EXPECT_EQ(reached(u"DATA/"_s), u"Data/"_s);
}

TEST_F(FileNames, DotsAndDoubledSlashesAreParts) {
    add(u"Data/a.ddb"_s);
    EXPECT_EQ(reached(u"DATA/../DATA/./A.DDB"_s), u"Data/../Data/./a.ddb"_s);
    EXPECT_EQ(reached(u"DATA//A.DDB"_s), u"Data//a.ddb"_s);
}

TEST_F(FileNames, ADanglingLinkIsAnEntry) {
    ASSERT_TRUE(QFile::link(u"nowhere"_s, path(u"link.ddb"_s)));
    EXPECT_EQ(reached(u"LINK.DDB"_s), u"link.ddb"_s);
}

TEST_F(FileNames, APathBelowAFileStaysAsGiven) {
    add(u"a.ddb"_s);
    EXPECT_EQ(reached(u"A.DDB/B"_s), u"a.ddb/B"_s);
}

TEST_F(FileNames, RelativePathsStartAtTheCurrentFolder) {
    add(u"Data/a.ddb"_s);
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(m_folder.path()));
    EXPECT_EQ(reachIgnoringCase(u"DATA/A.DDB"_s).value(), u"Data/a.ddb"_s);
    EXPECT_EQ(reachIgnoringCase(u"NEW.DDB"_s).value(), u"NEW.DDB"_s);
    ASSERT_TRUE(QDir::setCurrent(before));
}

TEST_F(FileNames, AnEmptyPathStaysEmpty) {
    EXPECT_EQ(reachIgnoringCase({}).value(), QString());
}

TEST_F(FileNames, ANameWithANullCharacterIsRefused) {
    EXPECT_TRUE(reached(u"a\0b"_s).startsWith(u"error: "_s));
}

TEST_F(FileNames, AFolderThatMayNotBeListedStillGivesItsExactEntries) {
    add(u"Data/a.ddb"_s);
    HookedFileOps ops([](FileCall call, const std::string &) -> std::optional<SystemError> {
        return call == FileCall::Entries ? std::optional(SystemError{EACCES}) : std::nullopt;
    });
    EXPECT_EQ(reachIgnoringCase(ops, path(u"Data/a.ddb"_s)).value(), path(u"Data/a.ddb"_s));
    EXPECT_EQ(reachIgnoringCase(ops, path(u"Data/A.DDB"_s)).value(), path(u"Data/A.DDB"_s));
}

} // namespace
} // namespace qir
