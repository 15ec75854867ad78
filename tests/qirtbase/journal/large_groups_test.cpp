#include "tests/qirtbase/journal/JournalTest.h"

#include <gtest/gtest.h>

#include <QFile>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

/// A group of changes of about this many bytes, with a body of `bodySize`.
class LargeGroups : public JournalTest {
protected:
    void change(std::uint64_t bytes) {
        const QString text(180, u'x');
        for (std::uint64_t done = 0; done < bytes; done += 200)
            setName(done / 200 % 3, text + QString::number(done));
    }
    void openWith(std::uint64_t bodySize) {
        bench.base().bodySize = bodySize;
        bench.open();
    }
    qint64 size() const { return QFile(bench.journalPath()).size(); }
};
QIR_FOR_BOTH_FILES(LargeGroups);

TEST_P(LargeGroups, AreWrittenInPiecesAndCountAsAWhole) {
    openWith(1 << 22);
    bench.database().beginGroup();
    change(500000);
    EXPECT_GT(size(), 300000);
    const QByteArray saved = pumps();
    bench.crash();
    bench.open();
    EXPECT_EQ(bench.body(), saved); // not ended: nothing of it
    bench.database().beginGroup();
    change(500000);
    bench.database().endGroup();
    EXPECT_EQ(bench.body(), crashAndOpen());
}

TEST_P(LargeGroups, BeyondAQuarterOfTheBodyAreKeptAsAnImageOfTheTable) {
    openWith(100000);
    bench.database().beginGroup();
    change(1000000);
    bench.database().endGroup();
    EXPECT_LT(size(), 5000);
    EXPECT_EQ(bench.body(), crashAndOpen());
}

TEST_P(LargeGroups, WhosePiecesWereWrittenStartOverAsAnImage) {
    openWith(1 << 20);
    bench.database().beginGroup();
    change(1 << 20);
    bench.database().endGroup();
    EXPECT_LT(size(), 400000);
    setName(0, u"after"_s);
    EXPECT_EQ(bench.body(), crashAndOpen());
}

TEST_P(LargeGroups, ThatChangeTheListOfTablesAreKeptAsAnImageOfAll) {
    openWith(1000);
    bench.database().beginGroup();
    change(20000);
    bench.database().addTable(u"Second"_s);
    bench.database().setText(bench.database().table(1), 0, 0, u"in the second"_s);
    bench.database().endGroup();
    bench.database().setText(bench.database().table(1), 0, 0, u"after"_s);
    EXPECT_EQ(bench.body(), crashAndOpen());
}

TEST_P(LargeGroups, OfSeveralTablesAreKeptAsAnImageOfEach) {
    bench.database().addTable(u"Second"_s);
    bench.database().addTable(u"Third"_s);
    bench.setSaved(bench.body());
    bench.journal().discard();
    openWith(1000);
    bench.database().beginGroup();
    change(20000);
    bench.database().setText(bench.database().table(2), 0, 0, u"in the third"_s);
    change(20000);
    bench.database().endGroup();
    bench.database().setText(bench.database().table(1), 0, 0, u"after"_s);
    EXPECT_EQ(bench.body(), crashAndOpen());
}

TEST_P(LargeGroups, ThatAreUndoneLeaveNothing) {
    for (const std::uint64_t bodySize : {1 << 22, 1 << 20, 1000}) {
        openWith(bodySize);
        setName(0, u"before"_s);
        bench.database().beginGroup();
        change(400000);
        bench.database().undoGroup();
        setName(1, u"after"_s);
        EXPECT_EQ(bench.body(), crashAndOpen());
        bench.journal().discard();
    }
}

TEST_P(LargeGroups, WithOthersWithinAreWrittenInPiecesAndCountAsAWhole) {
    for (const std::uint64_t bodySize : {1 << 22, 1 << 20, 1000}) {
        openWith(bodySize);
        bench.database().beginGroup();
        setName(0, u"outer"_s);
        bench.database().beginGroup();
        bench.database().beginGroup();
        change(400000);
        bench.database().endGroup();
        bench.database().endGroup();
        setName(1, u"outer again"_s);
        bench.database().endGroup();
        setName(2, u"after"_s);
        EXPECT_EQ(bench.body(), crashAndOpen()) << bodySize;
        EXPECT_EQ(nameAt(2), u"after"_s) << bodySize;
        bench.journal().discard();
    }
}

TEST_P(LargeGroups, ThatAreUndoneWithOthersWithinLeaveNothing) {
    for (const std::uint64_t bodySize : {1 << 22, 1 << 20, 1000}) {
        openWith(bodySize);
        setName(0, u"before"_s);
        bench.database().beginGroup();
        bench.database().beginGroup();
        change(400000);
        bench.database().endGroup();
        bench.database().undoGroup();
        setName(1, u"after"_s);
        EXPECT_EQ(bench.body(), crashAndOpen()) << bodySize;
        EXPECT_EQ(nameAt(1), u"after"_s) << bodySize;
        bench.journal().discard();
    }
}

TEST_P(LargeGroups, OfManyEmptyOnesComeBack) {
    openWith(1 << 22);
    bench.database().beginGroup();
    for (int i = 0; i < 1200000; ++i) {
        bench.database().beginGroup();
        bench.database().endGroup();
    }
    setName(0, u"in the end"_s);
    bench.database().endGroup();
    EXPECT_EQ(bench.body(), crashAndOpen());
    EXPECT_EQ(nameAt(0), u"in the end"_s);
}

TEST_P(LargeGroups, AnImageOfManyPiecesComesBack) {
    bench.database().resizeField(table(), 2, 60000);
    for (int i = 0; i < 50; ++i)
        bench.database().addRecord(table());
    bench.setSaved(bench.body());
    bench.journal().discard();
    bench.open();
    bench.database().beginGroup();
    for (std::size_t i = 0; i < 50; ++i)
        setName(i, QString(60000, QChar(u'a' + static_cast<int>(i % 26))));
    bench.database().endGroup();
    EXPECT_GT(size(), 3000000);
    EXPECT_TRUE(bench.body() == crashAndOpen());
}

} // namespace
} // namespace qir
