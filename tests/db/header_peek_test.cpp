#include "db/HeaderPeek.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

class HeaderPeekTest : public testing::Test {
protected:
    QString path() const { return m_folder.filePath(u"A.DDB"_s); }
    std::optional<QByteArray> peekAt(const QByteArray &bytes) const {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        return peekHeader(path());
    }

private:
    QTemporaryDir m_folder;
};

TEST_F(HeaderPeekTest, GivesTheFirstFourBytesOfAHeader) {
    EXPECT_EQ(peekAt("0000000006QIR1zz and what follows"), QByteArray("QIR1"));
    EXPECT_EQ(peekAt("0000000004QIR1"), QByteArray("QIR1"));
    EXPECT_EQ(peekAt("         4QIR0"), QByteArray("QIR0"));
}

TEST_F(HeaderPeekTest, GivesAllOfAHeaderThatIsShorter) {
    EXPECT_EQ(peekAt("0000000002QIR1"), QByteArray("QI"));
    EXPECT_EQ(peekAt("0000000000QIR1"), QByteArray());
}

TEST_F(HeaderPeekTest, GivesNothingOfAFileThatDoesNotBeginWithALength) {
    EXPECT_EQ(peekAt("no number and so on"), std::nullopt);
    EXPECT_EQ(peekAt("-000000004QIR1"), std::nullopt);
    EXPECT_EQ(peekAt("          QIR1"), std::nullopt);
}

TEST_F(HeaderPeekTest, GivesNothingOfAFileThatIsTooShort) {
    EXPECT_EQ(peekAt(""), std::nullopt);
    EXPECT_EQ(peekAt("0000000000"), std::nullopt);
    EXPECT_EQ(peekAt("0000000005QIR1"), std::nullopt);
    EXPECT_EQ(peekAt("9999999999QIR1"), std::nullopt);
}

TEST_F(HeaderPeekTest, LooksIntoFilesOnly) {
    EXPECT_EQ(peekHeader(path()), std::nullopt);
    EXPECT_EQ(peekHeader(u"/"_s), std::nullopt);
    ASSERT_EQ(::mkfifo(path().toLocal8Bit().constData(), 0600), 0);
    EXPECT_EQ(peekHeader(path()), std::nullopt) << "nobody writes into it: to open it would be to wait";
}

} // namespace

} // namespace qir
